// SPDX-License-Identifier: MIT

#include "link/CDeviceCommunication.h"
#include "model/CDeviceDatabase.h"
#include "shell/CMainDialog.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"

#include <QAccessible>
#include <QComboBox>
#include <QFileInfo>
#include <QGroupBox>
#include <QIcon>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>
#include <QTableWidget>
#include <QWindow>
#include <QtTest>

#include <functional>
#include <memory>

namespace {

QString TextOf(const char* field)
{
    return Find<QLineEdit>(field)->text();
}

QString ColumnText(int column)
{
    return TheDeviceDatabase()->index(0, column).data().toString();
}

QLineEdit* Cell(int row)
{
    return qobject_cast<QLineEdit*>(
        Find<QTableWidget>("tblMotorConfiguration")->cellWidget(row, 0));
}

QStringList Cells()
{
    QStringList texts;
    for (int row = 0; row < 9; ++row) {
        texts.append(Cell(row)->text());
    }
    return texts;
}

// What a unit is asked after it has been connected to.
QStringList LoadCommands(bool newFirmware)
{
    QStringList commands{"*IDN?", "GET:OPTION:INTERNAL?", "GET:OPTION:DESC?", "CF0", "CF0"};
    if (newFirmware) {
        commands << "CF7 00400000"
                 << "CF7 004004B0";
    }
    return commands;
}

bool IsOfTheLoad(const QProgressDialog& dialog)
{
    return dialog.labelText() == "Loading Device Info ...";
}

/// Counts the events of an object that a condition holds for. Keys among them go no further.
class EventCount : public QObject
{
public:
    EventCount(QObject* watched, std::function<bool(QObject*, QEvent::Type)> wanted)
        : wanted(std::move(wanted))
    {
        watched->installEventFilter(this);
    }

    int count = 0;

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        const bool counts = wanted(watched, event->type());
        count += counts ? 1 : 0;
        return counts && event->type() == QEvent::KeyPress;
    }

private:
    std::function<bool(QObject*, QEvent::Type)> wanted;
};

} // namespace

class MainDialogTest : public WarningsFail
{
    Q_OBJECT

private:
    static QTabWidget* Tabs() { return Find<QTabWidget>("tabWidget"); }

private slots:
    void cleanup()
    {
        ShowPage("Info");
        WarningsFail::cleanup();
    }

    // Runs first: the window as it comes up.
    void theWindowComesUpNotConnectedOnTheDefaultAddressAndTheFirstPage()
    {
        QCOMPARE(MainWindow()->windowTitle(), "Z&K VX440 Access Application");
        QCOMPARE(TextOf("txtIpAddress"), "192.168.0.129");
        QCOMPARE(Find<QLineEdit>("txtIpAddress")->inputMask(), "000.000.000.000");
        QCOMPARE(Find<QPushButton>("btnConnect")->text(), "Connect");
        QCOMPARE(ConnectionLine(), "Not Connected ");
        QCOMPARE(StatusLine(), QString());
        QCOMPARE(Tabs()->currentIndex(), 0);
        QVERIFY(!TheDeviceCommunication()->IsConnected());
        for (int column = 3; column < 20; ++column) {
            QCOMPARE(ColumnText(column), QString());
        }
        for (const int column : {31, 43}) {
            QCOMPARE(ColumnText(column), "Pulse"); // the blank entry of the rotor list
        }
    }

    void thePagesStandInTheirOrder()
    {
        const QStringList order{"Info", "Update FW", "IP Configuration", "Azimuth Configuration",
            "Pol/Eval Configuration", "Options", "Detect Z&K Device"};
        QStringList titles;
        for (int page = 0; page < Tabs()->count(); ++page) {
            titles.append(Tabs()->tabText(page));
        }
        QCOMPARE(titles, order);
    }

    void theWindowGivesItsLinesTheirRoom()
    {
        QCOMPARE(Find<QWidget>("layoutWidget")->layout()->contentsMargins(), QMargins());
        QCOMPARE(Find<QGroupBox>("groupBox")->minimumSize(), QSize(0, 50));
        QCOMPARE(Find<QTabWidget>("tabWidget")->minimumSize(), QSize(0, 20));
        QCOMPARE(Find<QLabel>("lblConnectionStatus")->minimumSize(), QSize(100, 20));
        QCOMPARE(Find<QLabel>("lblConnectionStatus")->maximumSize(), QSize(200, 20));
        QCOMPARE(Find<QLabel>("lblConnectionStatus")->indent(), 6);
        QCOMPARE(Find<QLabel>("lblConnectionStatus")->margin(), 0);
        const Qt::WindowFlags buttons = Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint;
        QCOMPARE(MainWindow()->windowFlags() & buttons, buttons);
    }

    void aScreenReaderIsToldWhatTheWindowIsMadeOf()
    {
        for (int page = 0; page < Tabs()->count(); ++page) {
            QCOMPARE(Tabs()->tabBar()->accessibleTabName(page), Tabs()->tabText(page));
        }
        QCOMPARE(Tabs()->accessibleName(), "Pages");
        QCOMPARE(Find<QLineEdit>("txtIpAddress")->accessibleName(), "Device IP");
        QCOMPARE(QAccessible::queryAccessibleInterface(Find<QLabel>("lblAppStatus"))->role(),
            QAccessible::AlertMessage);
    }

    void theIconHasItsThreeSizes()
    {
        const QList<QSize> sizes = MainWindow()->windowIcon().availableSizes();
        for (const int size : {16, 32, 48}) {
            QVERIFY(sizes.contains(QSize(size, size)));
        }
    }

    void returnInAnotherFieldDoesNothing()
    {
        TheDeviceDatabase()->SetApplicationStatus("as it was");
        ShowPage("Azimuth Configuration");
        Overtype(Cell(0), "77");
        Press(Qt::Key_Return);
        Press(Qt::Key_Enter);
        QCOMPARE(StatusLine(), "as it was");
        QCOMPARE(Cell(0)->text(), "77");
        ShowPage("Detect Z&K Device");
        Overtype(Find<QLineEdit>("txtEndIpAddress"), "192.168.1.2");
        Press(Qt::Key_Return);
        QCOMPARE(StatusLine(), "as it was");
    }

    void theTabKeyWalksTheFieldsInReadingOrder()
    {
        const QPair<const char*, QStringList> rows[] = {
            {"Info", {"txtMacAddress", "txtPartNumber", "txtProductIndex", "txtSerialNumber",
                         "txtVersionNumber"}},
            {"Update FW", {"txtFirmwareFile", "btnSelectFirmware"}},
            {"IP Configuration", {"txtNewIpAddress", "txtNewSubnetMask"}},
            {"Azimuth Configuration",
                {"0", "1", "2", "3", "4", "5", "6", "7", "8", "btnReadFromFile", "btnWriteToFile",
                    "btnReset", "listRotors", "txtRotorType"}},
            {"Detect Z&K Device",
                {"txtStartIpAddress", "txtEndIpAddress", "btnFindDevices", "tblDetectDevices"}}};
        const QStringList bar{"btnConnect", "qt_tabwidget_tabbar"};
        for (const auto& [page, order] : rows) {
            ShowPage(page);
            Click(Find<QLineEdit>("txtIpAddress"));
            QStringList walked;
            for (int steps = 0; steps < order.size() + 3; ++steps) {
                Press(Qt::Key_Tab);
                walked.append(QApplication::focusWidget()->objectName());
            }
            QCOMPARE(walked, bar + order + QStringList{"txtIpAddress"});
        }
    }

    void escapeBringsTheModelsValueBackIntoAField()
    {
        ShowPage("Azimuth Configuration");
        TheDeviceDatabase()->SetMotorParameter(0, 0, 5);
        Overtype(Cell(0), "77");
        Press(Qt::Key_Escape);
        QCOMPARE(Cell(0)->text(), "5");
        QVERIFY(MainWindow()->isVisible());
    }

    // The key goes on to the window, which would close.
    void aButtonLeavesEscapeToTheWindow()
    {
        QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        escape.accept();
        auto* const button = Find<QPushButton>("btnConnect");
        const EventCount keys(
            MainWindow(), [](QObject*, QEvent::Type type) { return type == QEvent::KeyPress; });
        QCoreApplication::sendEvent(button, &escape);
        QCOMPARE(keys.count, 1);
    }

    void returnPressesTheButtonThatHasTheFocus()
    {
        ShowPage("Azimuth Configuration");
        Overtype(Cell(0), "77");
        const EventCount keys(
            MainWindow(), [](QObject*, QEvent::Type type) { return type == QEvent::KeyPress; });
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
            TheDeviceDatabase()->SetMotorParameter(0, 0, 1);
            Find<QPushButton>("btnReset")->setFocus();
            Press(key);
            QCOMPARE(Cell(0)->text(), "30");
        }
        QCOMPARE(keys.count, 0); // they end in the button
    }

    void theTabKeyLeavesAnEmptyCell()
    {
        ShowPage("Azimuth Configuration");
        Overtype(Cell(0), QString());
        QCOMPARE(Cell(0)->text(), QString());
        Press(Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), Cell(1));
        Press(Qt::Key_Backtab);
        QCOMPARE(QApplication::focusWidget(), Cell(0));
        Type("1");
    }

    void connectingShowsWhoTheUnitIs_data()
    {
        QTest::addColumn<bool>("newFirmware");
        QTest::newRow("3.10") << true;
        QTest::newRow("2.99") << false;
        QTest::newRow("3.0") << true;
    }
    void connectingShowsWhoTheUnitIs()
    {
        const QString version = QTest::currentDataTag();
        QFETCH(bool, newFirmware);
        SimulatorProcess unit({"--firmware", version, "--part", "1234.5678.02", "--serial",
            "000777", "--azimuth", "1,2,3,4,5,6,7,8,9,10,11,0", "--polar",
            "101,102,103,104,105,106,107,108,109,110,99,1", "--mask", "255.255.0.0"});
        QVERIFY(unit.IsReady());
        const ShownProgress progress;
        ConnectTo(unit.Address());
        QVERIFY(progress.Count() > 0);
        QCOMPARE(ConnectionLine(), "Connected to " + unit.Address());
        QCOMPARE(Find<QPushButton>("btnConnect")->text(), "Connected");
        QCOMPARE(StatusLine(),
            newFirmware ? "Eeprom data valid" : "Device motor configuration read successfully!");
        QCOMPARE(TextOf("txtPartNumber"), "1234.5678.02");
        QCOMPARE(TextOf("txtProductIndex"), newFirmware ? "01.00" : QString());
        QCOMPARE(TextOf("txtSerialNumber"), "000777");
        QCOMPARE(ColumnText(6), version + '\r');
        QCOMPARE(ColumnText(5), "255.255.0.0");
        QCOMPARE(unit.Commands(), LoadCommands(newFirmware));

        ShowPage("Azimuth Configuration");
        QCOMPARE(Cells().mid(0, 8), (QStringList{"1", "2", "3", "6", "7", "8", "9", "10"}));
        QCOMPARE(Find<QTableWidget>("tblMotorConfiguration")->isRowHidden(8), !newFirmware);
        for (const char* const hidden :
            {"listRotors", "txtRotorType", "lblRotorName", "lblRotorType"}) {
            QCOMPARE(Find<QWidget>(hidden)->isVisible(), newFirmware);
        }
        for (const char* const button : {"btnSendToDevice", "btnReceiveFromDevice"}) {
            QVERIFY(Find<QPushButton>(button)->isEnabled());
        }
        if (newFirmware) {
            QCOMPARE(Cell(8)->text(), "11");
            QCOMPARE(TextOf("txtRotorType"), "Potentiometer");
        }
        ShowPage("Pol/Eval Configuration");
        QCOMPARE(Cells().mid(0, 8),
            (QStringList{"101", "102", "103", "106", "107", "108", "109", "110"}));
        if (newFirmware) {
            QCOMPARE(Cell(8)->text(), "99");
            QCOMPARE(TextOf("txtRotorType"), "Pulse");
        }
    }

    void aLeadingZeroMakesAnOctetOctal()
    {
        SimulatorProcess unit({}, "127.255.0.8");
        QVERIFY(unit.IsReady());
        ConnectTo("127.255.000.010");
        QCOMPARE(ConnectionLine(), "Connected to 127.255.0.8");
        TheDeviceCommunication()->Disconnect();
    }

    // The dialog is there before the unit is asked anything.
    void whileItLoadsItShowsHowFarItIsAndTheWindowTakesNoClicksAndNoClose()
    {
        SimulatorProcess unit;
        QVERIFY(unit.IsReady());
        Overtype(Find<QLineEdit>("txtIpAddress"), unit.Address());
        QStringList asked{"no dialog came"};
        QVector<int> values;
        std::unique_ptr<EventCount> closes;
        const auto bother = [&](QProgressDialog& loading) {
            asked = unit.Commands();
            values = {loading.minimum(), loading.maximum(), loading.value()};
            connect(loading.findChild<QProgressBar*>(), &QProgressBar::valueChanged, this,
                [&values](int value) { values.append(value); });
            closes = std::make_unique<EventCount>(
                &loading, [](QObject*, QEvent::Type type) { return type == QEvent::Close; });
            Click(Find<QPushButton>("btnConnect"));
            ShowPage("Detect Z&K Device");
            CloseByTitleBar(MainWindow());
            QTest::keyClick(loading.windowHandle(), Qt::Key_Escape);
        };
        WhenShown<QProgressDialog>(bother, IsOfTheLoad);
        Click(Find<QPushButton>("btnConnect"));
        QCOMPARE(asked, QStringList());
        QCOMPARE(values, (QVector<int>{0, 100, 1, 12, 24, 36, 48, 60, 72, 84, 96}));
        QCOMPARE(closes->count, 1);
        QVERIFY(MainWindow()->isVisible());
        QCOMPARE(Tabs()->currentIndex(), 0);
        QCOMPARE(unit.Commands(), LoadCommands(true));
    }

    // By the return key, which connects. The pages learn that the link has gone.
    void anAddressThatIsNoneFailsWithoutAnAttempt()
    {
        SimulatorProcess unit({"--firmware", "2.50"});
        QVERIFY(unit.IsReady());
        ConnectTo(unit.Address());
        QVERIFY(Find<QPushButton>("btnSendIpAddress")->isEnabled());
        TheDeviceCommunication()->Disconnect(); // which tells nobody
        for (const char* const typed : {"", "192.168.", "192.168.0.256"}) {
            const ShownProgress progress;
            Overtype(Find<QLineEdit>("txtIpAddress"), typed);
            TheDeviceDatabase()->SetApplicationStatus(QString());
            Press(Qt::Key_Return);
            QCOMPARE(StatusLine(), "Connection failed! ");
            QCOMPARE(ConnectionLine(), "Not Connected ");
            QCOMPARE(progress.Count(), 0);
            QVERIFY(!Find<QPushButton>("btnSendIpAddress")->isEnabled());
        }
    }

    void connectingBeginsWithAnEmptyStatusLine()
    {
        Overtype(Find<QLineEdit>("txtIpAddress"), QString());
        TheDeviceDatabase()->SetApplicationStatus("as it was");
        QStringList seen;
        const auto noting = connect(TheDeviceDatabase(), &QAbstractItemModel::dataChanged, this,
            [&seen] { seen.append(StatusLine()); });
        Press(Qt::Key_Return);
        disconnect(noting);
        QVERIFY(!seen.contains("as it was"));
        QCOMPARE(StatusLine(), "Connection failed! ");
    }

    void closingTheDialogOfTheLoadLeavesTheRestUnread()
    {
        SimulatorProcess unit;
        QVERIFY(unit.IsReady());
        WhenShown<QProgressDialog>(
            [](QProgressDialog& dialog) { CloseByTitleBar(&dialog); }, IsOfTheLoad);
        ConnectTo(unit.Address());
        QCOMPARE(ConnectionLine(), "Connected to " + unit.Address());
        QCOMPARE(unit.Commands(), QStringList{"*IDN?"});
    }

    void whatComesFromOutsideIsNeverMarkup()
    {
        const QString markup = "<img src=\"/dev/zero\"><b>x</b>";
        TheDeviceDatabase()->SetApplicationStatus(markup);
        TheDeviceDatabase()->SetPartNumber(markup);
        TheDeviceDatabase()->SetSerialNumber(markup);
        TheDeviceDatabase()->SetFirmwareVersion(markup);
        TheDeviceDatabase()->SetMacAddress(markup);
        QCOMPARE(StatusLine(), markup);
        QCOMPARE(TextOf("txtPartNumber"), markup);
        int shown = 0;
        const auto labels = MainWindow()->findChildren<QLabel*>();
        for (const QLabel* const label : labels) {
            if (label->text().contains(markup)) {
                QCOMPARE(label->textFormat(), Qt::PlainText);
                ++shown;
            }
        }
        QCOMPARE(shown, 1);
        const auto widgets = MainWindow()->findChildren<QWidget*>();
        for (const QWidget* const widget : widgets) {
            QVERIFY(!widget->toolTip().contains(markup));
        }
        TheDeviceDatabase()->ResetData();
    }

    void connectingWhileConnectedClosesTheOldLinkAndReadsAnew()
    {
        SimulatorProcess unit({"--firmware", "2.50"});
        QVERIFY(unit.IsReady());
        ConnectTo(unit.Address());
        unit.Forget();
        Click(Find<QPushButton>("btnConnect"));
        QCOMPARE(ConnectionLine(), "Connected to " + unit.Address());
        QVERIFY(unit.WaitForLine("disconnected"));
        QVERIFY(unit.WaitForLine("connected "));
        QCOMPARE(unit.Commands(), LoadCommands(false));
    }

    void aLostLinkTellsTheUserAndKeepsWhatIsKnownUntilTheNextConnect()
    {
        SimulatorProcess unit({"--firmware", "2.50"});
        QVERIFY(unit.IsReady());
        ConnectTo(unit.Address());
        const QString part = TextOf("txtPartNumber");
        QVERIFY(!part.isEmpty());
        QVERIFY(unit.Tell("drop"));
        ShowPage("Azimuth Configuration");
        const QStringList cells = Cells();
        Click(Find<QPushButton>("btnReceiveFromDevice"));
        QCOMPARE(ConnectionLine(), "Not Connected ");
        QCOMPARE(StatusLine(), "Device motor configuration could not be read!");
        QCOMPARE(Find<QPushButton>("btnConnect")->text(), "Connect");
        QVERIFY(!Find<QPushButton>("btnSendToDevice")->isEnabled());
        QVERIFY(!Find<QPushButton>("btnReceiveFromDevice")->isEnabled());
        QCOMPARE(Cells(), cells);
        QCOMPARE(TextOf("txtPartNumber"), part);

        Click(Find<QPushButton>("btnConnect"));
        QCOMPARE(ConnectionLine(), "Connected to " + unit.Address());
        QVERIFY(Find<QPushButton>("btnSendToDevice")->isEnabled());
    }

    void anAnswerInSingleBytesIsReadLikeAWholeOne()
    {
        SimulatorProcess unit({"--fault", "bytewise", "--azimuth", "1,2,3,4,5,6,7,8,9,10,11,0"});
        QVERIFY(unit.IsReady());
        ConnectTo(unit.Address());
        ShowPage("Azimuth Configuration");
        QCOMPARE(Cells().mid(0, 8), (QStringList{"1", "2", "3", "6", "7", "8", "9", "10"}));
    }

    void aFaultOfTheIdentityLeavesTheUnitUnknownAndOld()
    {
        for (const char* const fault : {"silent:*IDN?", "wrong:*IDN?", "garbage:*IDN?"}) {
            SimulatorProcess unit({"--fault", fault});
            QVERIFY(unit.IsReady());
            ConnectTo(unit.Address());
            QCOMPARE(ConnectionLine(), "Connected to " + unit.Address());
            for (const char* const name :
                {"txtPartNumber", "txtSerialNumber", "txtVersionNumber"}) {
                QVERIFY2(TextOf(name).isEmpty(), fault);
            }
            ShowPage("Azimuth Configuration");
            QVERIFY2(!Find<QComboBox>("listRotors")->isVisible(), fault);
        }
    }

    void aResetAtAnyCommandOfTheLoadEndsNotConnected()
    {
        for (const char* const command :
            {"*IDN?", "GET:OPTION:INTERNAL?", "GET:OPTION:DESC?", "CF0:1", "CF7:1"}) {
            SimulatorProcess unit({"--fault", QString("resetting:") + command});
            QVERIFY(unit.IsReady());
            ConnectTo(unit.Address());
            QVERIFY2(ConnectionLine() == "Not Connected ", command);
            QCOMPARE(Find<QPushButton>("btnConnect")->text(), "Connect");
            ShowPage("Azimuth Configuration");
            QVERIFY(!Find<QPushButton>("btnSendToDevice")->isEnabled());
        }
    }

    void theFocusStaysWhereTheUserPutIt()
    {
        SimulatorProcess unit({"--firmware", "2.50"});
        QVERIFY(unit.IsReady());
        ConnectTo(unit.Address());
        ShowPage("Detect Z&K Device");
        Overtype(Find<QLineEdit>("txtStartIpAddress"), "127.0.0.1");
        Overtype(Find<QLineEdit>("txtEndIpAddress"), "127.0.0.2");
        const QPair<const char*, const char*> rows[] = {{"Info", "btnConnect"},
            {"Options", "btnReadOptionsFromDevice"},
            {"Azimuth Configuration", "btnReceiveFromDevice"},
            {"Pol/Eval Configuration", "btnSendToDevice"}, {"IP Configuration", "btnSendIpAddress"},
            {"Detect Z&K Device", "btnFindDevices"}};
        for (const auto& [page, button] : rows) {
            ShowPage(page);
            auto* const pressed = Find<QPushButton>(button);
            pressed->setFocus(Qt::TabFocusReason);
            for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return}) {
                Press(key);
                MainWindow()->activateWindow(); // where no window manager does
                QVERIFY(QTest::qWaitForWindowActive(MainWindow()));
                QVERIFY2(QApplication::focusWidget() == pressed, button);
            }
            QVERIFY2(pressed->isEnabled(), button);
            QVERIFY(TheDeviceCommunication()->IsConnected());
        }
    }
};

VX440_WINDOW_TEST_MAIN(MainDialogTest)
#include "MainDialogTest.moc"
