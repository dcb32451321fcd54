// SPDX-License-Identifier: MIT

#include "model/CDeviceDatabase.h"
#include "shell/CTabBaseClass.h"
#include "shell/CVX440_AccessApplication.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"

#include <QDir>
#include <QPluginLoader>
#include <QTemporaryDir>
#include <QtTest>

#include <functional>

namespace {

// As whoever starts it does, with nothing set up for the tests.
void RunProgram(const std::function<void()>& work)
{
    char name[] = "ProgramTest";
    char* arguments[] = {name, nullptr};
    int count = 1;
    QObject user;
    const auto working = [&work] {
        work();
        MainWindow()->close();
    };
    QMetaObject::invokeMethod(&user, working, Qt::QueuedConnection);
    const CVX440_AccessApplication application(count, arguments);
}

QVector<CTabBaseClass*> AllTabs()
{
    QVector<CTabBaseClass*> tabs;
    const QWidgetList widgets = QApplication::allWidgets();
    for (QWidget* const widget : widgets) {
        if (auto* const tab = qobject_cast<CTabBaseClass*>(widget)) {
            tabs.append(tab);
        }
    }
    return tabs;
}

QStringList LoadedImagePlugins()
{
    QStringList loaded;
    const QStringList folders = QCoreApplication::libraryPaths();
    for (const QString& folder : folders) {
        const auto plugins = QDir(folder + "/imageformats").entryInfoList(QDir::Files);
        for (const QFileInfo& plugin : plugins) {
            if (QPluginLoader(plugin.canonicalFilePath()).isLoaded()) {
                loaded.append(plugin.fileName());
            }
        }
    }
    return loaded;
}

} // namespace

/// The program as a whole, which runs once: its beginning and its end.
class ProgramTest : public WarningsFail
{
    Q_OBJECT

    QTemporaryDir folder;
    QString part = "not looked at";
    QStringList plugins{"not looked at"};
    bool isScaled = false;
    QStringList endedTabs;

    void LookAround()
    {
        part = TheDeviceDatabase()->GetPartNumber();
        MainWindow()->grab();
        plugins = LoadedImagePlugins();
        isScaled = QCoreApplication::testAttribute(Qt::AA_EnableHighDpiScaling) &&
                   QCoreApplication::testAttribute(Qt::AA_UseHighDpiPixmaps) &&
                   QGuiApplication::highDpiScaleFactorRoundingPolicy() ==
                       Qt::HighDpiScaleFactorRoundingPolicy::PassThrough;
        for (const CTabBaseClass* const tab : AllTabs()) {
            connect(tab, &QObject::destroyed,
                [this, name = tab->objectName()] { endedTabs.append(name); });
        }
    }

private slots:
    void initTestCase()
    {
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(folder.path())); // Qt warns without one
        TheDeviceDatabase()->SetPartNumber("of before");
        RunProgram([this] { LookAround(); });
    }

    void itBeginsWithAnEmptyModel() { QCOMPARE(part, QString()); }

    // Qt would load all of them for a single picture whose format it is not told.
    void itLoadsNoPluginForImages() { QCOMPARE(plugins, QStringList()); }

    void itGrowsWithTheDotsOfItsScreen() { QVERIFY(isScaled); }

    void itEndsItsTabsInTheOrderOfThePasses()
    {
        QCOMPARE(endedTabs, (QStringList{"TabInfo", "TabOptions", "TabLoadFirmware",
                                "TabIpConfiguration", "TabDetectZKDevices", "TabMotorConfiguration",
                                "TabMotorConfiguration", "TabBoardDataNew"}));
    }
};

QTEST_APPLESS_MAIN(ProgramTest)
#include "ProgramTest.moc"
