// SPDX-License-Identifier: MIT

#include "link/CDeviceCommunication.h"
#include "options/CTabOptions.h"
#include "tests/options/OptionsPage.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"
#include "tests/support/workbooks/OptionsWorkbook.h"

#include <QLabel>
#include <QTemporaryDir>
#include <QtTest>

#include <tuple>

namespace {

const QStringList Queries{"GET:OPTION:INTERNAL?", "GET:OPTION:DESC?"};

// The options of a simulated unit.
QStringList UnitWith(const QString& options, const QString& descriptions)
{
    return {"--options", options, "--option-descriptions", descriptions};
}

const QStringList FullUnit = UnitWith(FullOptions, FullDescriptions);
const QStringList EmptyUnit = UnitWith(NoOptions, NoDescriptions);

// Connects the link alone, without the window. False when the unit is not there.
bool Connect(const SimulatorProcess& unit)
{
    CDeviceCommunication* const link = TheDeviceCommunication();
    link->StartConnection(unit.Address().toLatin1());
    return unit.IsReady() && QTest::qWaitFor([link] { return link->IsConnected(); });
}

QString Sent(const char* mnemonic, const char* text)
{
    return QString(mnemonic) + ' ' + QByteArray(text).toHex().toUpper();
}

const QStringList SentOptions{Sent("CF9", FullOptions)};
const QStringList SentBoth = SentOptions + QStringList{Sent("CF10", FullDescriptions)};

} // namespace

/// What travels between the page and the simulated unit.
class OptionsTransferTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void cleanup()
    {
        TheDeviceCommunication()->Disconnect();
        WarningsFail::cleanup();
    }

    void connectingShowsWhatTheUnitIsFittedWith()
    {
        for (const char* const firmware : {"3.10", "2.50"}) {
            const SimulatorProcess unit(FullUnit + QStringList{"--firmware", firmware});
            ConnectTo(unit.Address());
            ShowPage("Options");
            const CTabOptions& page = *MainWindow()->findChild<CTabOptions*>();
            QVERIFY(page.isEnabled());
            QCOMPARE(Shown(page), FullGroups());
            for (int group = 0; group < Groups; ++group) {
                for (const QLineEdit* const line : Lines(page, group)) {
                    QTRY_VERIFY(line->isVisible());
                }
            }
            QVERIFY(!Find<QLabel>("lblCompatibility")->isVisible());
            QVERIFY(Find<QPushButton>("btnReadOptionsFromDevice")->isEnabled());
            QVERIFY(Find<QPushButton>("btnSendDeviceOptions")->isEnabled());
            QVERIFY(!Find<QPushButton>("btnSendDeviceOptions")->isVisible());
            QVERIFY(!Find<QPushButton>("btnReadDeviceOptions")->isVisible());
        }
    }

    void theButtonReadsAgainByMouseAndByKey()
    {
        SimulatorProcess unit(FullUnit + QStringList{"--firmware", "2.50"});
        ConnectTo(unit.Address());
        ShowPage("Options");
        unit.Forget();
        Click(Find<QPushButton>("btnReadOptionsFromDevice"));
        QCOMPARE(StatusLine(), ReadDone);
        Find<QPushButton>("btnReadOptionsFromDevice")->setFocus();
        Press(Qt::Key_Space);
        QCOMPARE(StatusLine(), ReadDone);
        QCOMPARE(unit.Commands(), Queries + Queries);
    }

    void aFaultOfTheUnitIsSeenInTheReading()
    {
        const std::pair<const char*, bool> rows[] = {
            {"silent:GET:OPTION:INTERNAL?", false}, {"bytewise", true}};
        for (const auto& [fault, done] : rows) {
            const SimulatorProcess unit(FullUnit + QStringList{"--fault", fault});
            CTabOptions page(nullptr);
            QVERIFY(Connect(unit));
            page.ReadOptionsFromDeviceButtonClicked();
            QCOMPARE(StatusLine(), done ? ReadDone : ReadFailed);
            QCOMPARE(Shown(page), done ? FullGroups() : QVector<QStringList>(Groups));
        }
    }

    void whatOneUnitHasAnotherCanBeGiven()
    {
        const SimulatorProcess first(FullUnit);
        SimulatorProcess second(EmptyUnit);
        CTabOptions page(nullptr);
        QVERIFY(Connect(first));
        page.ReadOptionsFromDeviceButtonClicked();
        QVERIFY(Connect(second));
        page.SendOptionsToDeviceButtonClicked();
        QCOMPARE(StatusLine(), SendDone);
        QCOMPARE(second.Commands(), SentBoth);
        QCOMPARE(second.State("options"), FullOptions);
        QCOMPARE(second.State("option-descriptions"), FullDescriptions);
        CTabOptions other(nullptr);
        other.ReadOptionsFromDeviceButtonClicked();
        QCOMPARE(Shown(other), FullGroups());
    }

    // Silence takes the ten seconds that an acknowledgement is waited for.
    void aFaultAtEitherStepEndsInItsText()
    {
        const std::tuple<const char*, const char*, QStringList, const char*, const char*> rows[] = {
            {"refusing:CF9", OptionsNotSent, SentOptions, NoOptions, NoDescriptions},
            {"garbage:CF9", OptionsNotSent, SentOptions, FullOptions, NoDescriptions},
            {"refusing:CF10", DescriptionsNotSent, SentBoth, FullOptions, NoDescriptions},
            {"silent:CF10", DescriptionsNotSent, SentBoth, FullOptions, FullDescriptions},
        };
        const SimulatorProcess full(FullUnit);
        for (const auto& [fault, status, sent, options, descriptions] : rows) {
            SimulatorProcess unit(EmptyUnit + QStringList{"--fault", fault});
            CTabOptions page(nullptr);
            QVERIFY(Connect(full));
            page.ReadOptionsFromDeviceButtonClicked();
            QVERIFY(Connect(unit));
            page.SendOptionsToDeviceButtonClicked();
            QCOMPARE(StatusLine(), status);
            QCOMPARE(unit.Commands(), sent);
            QCOMPARE(unit.State("options"), options);
            QCOMPARE(unit.State("option-descriptions"), descriptions);
        }
    }

    void aWorkbooksOptionsComeBackFromTheUnit()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath("sent.xlsx");
        QStringList names = FullNames();
        names[9] = "none"; // travels as 0
        names[15] = QString();
        QVERIFY(WriteOptionsWorkbook(path, names, FullTexts()));
        SimulatorProcess unit(EmptyUnit + QStringList{"--firmware", "2.50"});
        ConnectTo(unit.Address());
        ShowPage("Options");
        auto* const readFile = Find<QPushButton>("btnReadDeviceOptions");
        auto* const send = Find<QPushButton>("btnSendDeviceOptions");
        readFile->show();
        send->show();
        ClickAndChooseFile(readFile, path);
        const CTabOptions& page = *MainWindow()->findChild<CTabOptions*>();
        auto fromFile = Shown(page);
        QCOMPARE(fromFile[2][1], "none");
        Click(send);
        readFile->hide();
        send->hide();
        QCOMPARE(StatusLine(), SendDone);
        names[9] = "0";
        names[15] = "0";
        QCOMPARE(unit.State("options"), QStringList(names.mid(2, 19)).join(','));
        // The banks themselves have no description in a workbook.
        QCOMPARE(
            unit.State("option-descriptions"), QString(FullDescriptions).replace(";0;0;", ";;;"));

        CTabOptions other(nullptr);
        other.ReadOptionsFromDeviceButtonClicked();
        QCOMPARE(StatusLine(), ReadDone);
        fromFile[2][1].clear(); // the unit has no name for a filter that is not there
        QCOMPARE(Shown(other), fromFile);
        QCOMPARE(ToolTips(other), ToolTips(page));
    }
};

VX440_WINDOW_TEST_MAIN(OptionsTransferTest)

#include "OptionsTransferTest.moc"
