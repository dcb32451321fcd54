// SPDX-License-Identifier: MIT

#include "link/CDeviceCommunication.h"
#include "model/CDeviceDatabase.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"
#include "tests/support/scripted/ConnectingThread.h"
#include "tests/support/scripted/ScriptedLink.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QtTest>

namespace {

void Answer(const QByteArray& frame)
{
    if (frame == "*IDN?\r") {
        scripted::Deliver("ZELMA&KOVINTH,VX440,4400.1290.02/000129,3.2\r");
    } else if (frame == "CF0\r") {
        scripted::DeliverAfter(1000, QByteArray(75, '\0'));
    } else if (frame.startsWith("CF3\r") || frame == "CF8\r") {
        scripted::Deliver("1\r");
    }
}

QTabWidget* Pages()
{
    return Find<QTabWidget>("tabWidget");
}

// What the slots of buttons leave behind while it lives: frames, texts and file dialogs. These are
// cancelled.
class Traces
{
public:
    Traces()
        : frames(scripted::Actions())
        , words(AllWords())
    {
        QObject::connect(TheDeviceDatabase(), &QAbstractItemModel::dataChanged, &context,
            [this](const QModelIndex& cell) { seen.append(cell.data().toString()); });
        QObject::connect(&watch, &QTimer::timeout, &context, [this] {
            auto* const dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            if (dialog != nullptr) {
                seen.append(dialog->windowTitle());
                dialog->reject();
            }
        });
        watch.start(0);
    }

    QStringList Seen() const
    {
        QStringList all = seen;
        if (scripted::Actions() != frames) {
            all.append("something was sent");
        }
        if (AllWords() != words) {
            all.append("parameters were changed");
        }
        return all;
    }

private:
    static QVector<ushort> AllWords()
    {
        QVector<ushort> words;
        for (const int motor : {0, 1}) {
            for (int parameter = 0; parameter < 12; ++parameter) {
                words.append(TheDeviceDatabase()->GetMotorParameter(motor, parameter));
            }
        }
        return words;
    }

    QStringList frames;
    QVector<ushort> words;
    QStringList seen;
    QObject context;
    QTimer watch;
};

// Presses every button of the window that can be pressed, each by a click, a key and a screen
// reader's way.
int PressEveryButton()
{
    int pressed = 0;
    for (int page = 0; page < Pages()->count(); ++page) {
        Pages()->setCurrentIndex(page);
        const auto buttons = MainWindow()->findChildren<QAbstractButton*>();
        for (QAbstractButton* const button : buttons) {
            if (button->isVisible() && button->isEnabled() &&
                button->objectName().startsWith("btn")) {
                Click(button);
                button->setFocus();
                Press(Qt::Key_Space);
                button->click();
                ++pressed;
            }
        }
    }
    return pressed;
}

} // namespace

/// Keys and clicks that come while the slot of a button is still running, behind its dialog.
class UserInputTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void init()
    {
        WarningsFail::init();
        TheDeviceCommunication()->Disconnect();
        scripted::Reset();
        scripted::WhenSlept([](int) { AwaitConnectingThread(); });
        scripted::WhenSent(Answer);
    }

    void noButtonWorksInsideTheSlotOfAnother_data()
    {
        QTest::addColumn<QString>("page");
        QTest::addColumn<QString>("button");
        const QPair<const char*, const char*> rows[] = {{"Info", "btnConnect"},
            {"Update FW", "btnSelectFirmware"}, {"Update FW", "btnLoadFirmware"},
            {"Update FW", "btnUpdateFirmware"}, {"IP Configuration", "btnSendIpAddress"},
            {"Azimuth Configuration", "btnReadFromFile"},
            {"Azimuth Configuration", "btnWriteToFile"},
            {"Pol/Eval Configuration", "btnReadFromFile"},
            {"Pol/Eval Configuration", "btnWriteToFile"}, {"Options", "btnReadOptionsFromDevice"},
            {"Detect Z&K Device", "btnFindDevices"}};
        for (const auto& [page, button] : rows) {
            QTest::addRow("%s %s", page, button) << QString(page) << QString(button);
        }
    }
    void noButtonWorksInsideTheSlotOfAnother()
    {
        QFETCH(QString, page);
        QFETCH(QString, button);
        Prepare();
        ShowPage(page.toLatin1().constData());
        QWidget* const first = Find<QAbstractButton>(button.toLatin1().constData());
        QVERIFY(first->isEnabled());

        QStringList traces{"no dialog came"};
        int pressed = 0;
        const auto bother = [&](QDialog& dialog) {
            dialog.hide();
            dialog.close();
            const Traces left;
            pressed = PressEveryButton();
            QCoreApplication::processEvents();
            traces = left.Seen();
        };
        scripted::SetConnectResult(scripted::ConnectResult::Fails); // an attempt shows its dialog
        WhenShown<QDialog>(
            bother, [](const QDialog& dialog) { return dialog.objectName() != "MainDialog"; });
        Click(first);
        QCOMPARE(traces, QStringList());
        QVERIFY(pressed >= 10);
    }

    void aButtonWorksAgainWhenTheSlotHasEnded()
    {
        ShowPage("Azimuth Configuration");
        for (int time = 0; time < 2; ++time) {
            QString asked;
            ClickAndChooseFile(Find<QAbstractButton>("btnReadFromFile"), QString(),
                [&asked](const QFileDialog& dialog) { asked = dialog.windowTitle(); });
            QCOMPARE(asked, "Select Device Configuration file");
        }
    }

    // A window manager may close a window whose close button is hidden.
    void aKeyBehindTheInstallationsDialogDoesNotInstallAgain()
    {
        Prepare();
        ShowPage("Update FW");
        auto* const install = Find<QAbstractButton>("btnUpdateFirmware");
        bool stayed = false;
        WhenShown<QProgressDialog>([&](QProgressDialog& dialog) {
            CloseByTitleBar(&dialog);
            stayed = dialog.isVisible();
            Press(Qt::Key_Space);
        });
        install->setFocus();
        Press(Qt::Key_Space);
        QVERIFY(stayed);
        const QStringList sent = scripted::Actions().filter(QRegularExpression("^send 4346350D"));
        QCOMPARE(sent.size(), 1);
        QCOMPARE(StatusLine(), "Firmware Updated successfully to v3.2\r.");
    }

private:
    // Everything is enabled: a unit is there, and an image was sent.
    void Prepare()
    {
        ConnectTo("127.0.0.1");
        ShowPage("Update FW");
        QFile image(folder.filePath("image.cyacd"));
        QVERIFY(image.open(QIODevice::WriteOnly) && image.write("image") > 0);
        image.close();
        ClickAndChooseFile(Find<QAbstractButton>("btnSelectFirmware"), image.fileName());
        Click(Find<QAbstractButton>("btnLoadFirmware"));
        QVERIFY(Find<QAbstractButton>("btnUpdateFirmware")->isEnabled());
        ShowPage("IP Configuration");
        Overtype(Find<QLineEdit>("txtNewIpAddress"), "127.0.0.2");
        Overtype(Find<QLineEdit>("txtNewSubnetMask"), "255.0.0.0");
        ShowPage("Detect Z&K Device");
        Overtype(Find<QLineEdit>("txtStartIpAddress"), "127.0.0.1");
        Overtype(Find<QLineEdit>("txtEndIpAddress"), "127.0.0.3");
    }

    QTemporaryDir folder;
};

VX440_WINDOW_TEST_MAIN(UserInputTest)
#include "UserInputTest.moc"
