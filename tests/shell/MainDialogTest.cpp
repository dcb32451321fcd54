#include "link/CDeviceCommunication.h"
#include "model/CDeviceDatabase.h"
#include "shell/CMainDialog.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"

#include <QComboBox>
#include <QFileInfo>
#include <QGroupBox>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTableWidget>
#include <QWindow>
#include <QtTest>

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

/// Takes the keys that come to a widget.
class KeyWatch : public QObject
{
public:
    explicit KeyWatch(QWidget* widget) { widget->installEventFilter(this); }

    bool Seen() const { return seen; }

    bool eventFilter(QObject*, QEvent* event) override
    {
        seen = seen || event->type() == QEvent::KeyPress;
        return event->type() == QEvent::KeyPress;
    }

private:
    bool seen = false;
};

/// Counts the progress dialogs that come up while it lives.
class ShownProgress : public QObject
{
public:
    ShownProgress() { qApp->installEventFilter(this); }

    int Count() const { return count; }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Show && qobject_cast<QProgressDialog*>(watched) != nullptr) {
            ++count;
        }
        return false;
    }

private:
    int count = 0;
};

} // namespace

class MainDialogTest : public WarningsFail
{
    Q_OBJECT

private:
    static QString Address() { return TextOf("txtIpAddress"); }
    static QTabWidget* Tabs() { return Find<QTabWidget>("tabWidget"); }

private slots:
    // Runs first: the window as it comes up.
    void theWindowComesUpNotConnectedOnTheDefaultAddress()
    {
        QCOMPARE(MainWindow()->windowTitle(), "Z&K VX440 Access Application");
        QCOMPARE(Address(), "192.168.0.129");
        QCOMPARE(Find<QPushButton>("btnConnect")->text(), "Connect");
        QCOMPARE(ConnectionLine(), "Not Connected ");
        QCOMPARE(StatusLine(), QString());
        QVERIFY(!TheDeviceCommunication()->IsConnected());
        for (int column = 3; column < 20; ++column) {
            QCOMPARE(ColumnText(column), QString());
        }
        for (const int column : {31, 43}) {
            QCOMPARE(ColumnText(column), "Pulse"); // the blank entry of the rotor list
        }
    }

    void thePagesStandInTheirOrderAndTheFirstIsCurrent()
    {
        const QStringList order{"Info", "Update FW", "IP Configuration", "Azimuth Configuration",
            "Pol/Eval Configuration", "Options", "Detect Z&K Device"};
        QCOMPARE(Tabs()->currentIndex(), 0);
        QStringList titles;
        for (int page = 0; page < Tabs()->count(); ++page) {
            titles.append(Tabs()->tabText(page));
        }
        QCOMPARE(titles, order);
    }

    void theWindowGivesItsLinesTheirRoom()
    {
        QCOMPARE(Find<QGroupBox>("groupBox")->minimumHeight(), 50);
        QCOMPARE(Find<QTabWidget>("tabWidget")->minimumHeight(), 20);
        QCOMPARE(Find<QLabel>("lblConnectionStatus")->minimumSize(), QSize(100, 20));
        QCOMPARE(Find<QLabel>("lblConnectionStatus")->maximumSize(), QSize(200, 20));
        QCOMPARE(Find<QLabel>("lblConnectionStatus")->indent(), 6);
        const Qt::WindowFlags buttons = Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint;
        QCOMPARE(MainWindow()->windowFlags() & buttons, buttons);
    }

    void theIconHasItsThreeSizes()
    {
        const QList<QSize> sizes = MainWindow()->windowIcon().availableSizes();
        for (const int size : {16, 32, 48}) {
            QVERIFY(sizes.contains(QSize(size, size)));
        }
    }

    void aClickIntoTheEmptyAddressPutsTheCursorAtItsStart()
    {
        auto* const field = Find<QLineEdit>("txtIpAddress");
        Overtype(field, QString());
        field->setCursorPosition(9);
        Click(field);
        QCOMPARE(field->cursorPosition(), 0);
    }

    void aClickIntoAnAddressWithADigitGoesWhereItIs()
    {
        auto* const field = Find<QLineEdit>("txtIpAddress");
        field->setText("1");
        field->setCursorPosition(0);
        QTest::mouseClick(MainWindow()->windowHandle(), Qt::LeftButton, Qt::NoModifier,
            field->mapTo(MainWindow(), QPoint(field->width() - 4, field->height() / 2)));
        QVERIFY(field->cursorPosition() > 0);
    }

    void anAddressThatIsNoneFailsWithoutAnAttempt_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::newRow("bare mask") << QString();
        QTest::newRow("half typed") << "192.168.";
        QTest::newRow("octet of 256") << "192.168.0.256";
    }
    void anAddressThatIsNoneFailsWithoutAnAttempt()
    {
        QFETCH(QString, typed);
        const ShownProgress progress;
        ConnectTo(typed);
        QCOMPARE(StatusLine(), "Connection failed! ");
        QCOMPARE(ConnectionLine(), "Not Connected ");
        QCOMPARE(progress.Count(), 0);
    }

    void returnInTheAddressConnects()
    {
        Overtype(Find<QLineEdit>("txtIpAddress"), QString());
        TheDeviceDatabase()->SetApplicationStatus(QString());
        Press(Qt::Key_Return);
        QCOMPARE(StatusLine(), "Connection failed! ");
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
        ShowPage("Info");
    }

    void theTabKeyWalksTheFieldsInReadingOrder_data()
    {
        QTest::addColumn<QString>("page");
        QTest::addColumn<QStringList>("order");
        const auto row = [](const char* page, const QStringList& fields) {
            QTest::newRow(page) << QString::fromLatin1(page) << fields;
        };
        row("Info", {"txtMacAddress", "txtPartNumber", "txtProductIndex", "txtSerialNumber",
                        "txtVersionNumber"});
        row("IP Configuration", {"txtNewIpAddress", "txtNewSubnetMask"});
        row("Azimuth Configuration",
            {"0", "1", "2", "3", "4", "5", "6", "7", "8", "btnReadFromFile", "btnWriteToFile",
                "btnReset", "listRotors", "txtRotorType"});
        row("Detect Z&K Device",
            {"txtStartIpAddress", "txtEndIpAddress", "btnFindDevices", "tblDetectDevices"});
    }
    void theTabKeyWalksTheFieldsInReadingOrder()
    {
        QFETCH(QString, page);
        QFETCH(QStringList, order);
        ShowPage(page.toLatin1().constData());
        Click(Find<QLineEdit>("txtIpAddress"));
        QStringList walked;
        for (int steps = 0; steps < order.size() + 3; ++steps) {
            Press(Qt::Key_Tab);
            walked.append(QApplication::focusWidget()->objectName());
        }
        const QStringList bar{"btnConnect", "qt_tabwidget_tabbar"};
        QCOMPARE(walked, bar + order + QStringList{"txtIpAddress"});
        ShowPage("Info");
    }

    void escapeBringsTheModelsValueBackIntoAField()
    {
        ShowPage("Azimuth Configuration");
        TheDeviceDatabase()->SetMotorParameter(0, 0, 5);
        Overtype(Cell(0), "77");
        Press(Qt::Key_Escape);
        QCOMPARE(Cell(0)->text(), "5");
        QVERIFY(MainWindow()->isVisible());
        ShowPage("Info");
    }

    // The key goes on to the window, which would close.
    void aButtonLeavesEscapeToTheWindow()
    {
        QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        escape.accept();
        auto* const button = Find<QPushButton>("btnConnect");
        KeyWatch watch(MainWindow());
        QCoreApplication::sendEvent(button, &escape);
        QVERIFY(watch.Seen());
    }

    void returnPressesTheButtonThatHasTheFocus()
    {
        ShowPage("Azimuth Configuration");
        Overtype(Cell(0), "77");
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
            TheDeviceDatabase()->SetMotorParameter(0, 0, 1);
            Find<QPushButton>("btnReset")->setFocus();
            Press(key);
            QCOMPARE(Cell(0)->text(), "30");
        }
        ShowPage("Info");
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
        ShowPage("Info");
    }

    void connectingShowsWhoTheUnitIs_data()
    {
        QTest::addColumn<QString>("version");
        QTest::addColumn<bool>("newFirmware");
        QTest::newRow("new firmware") << "3.10" << true;
        QTest::newRow("old firmware") << "2.99" << false;
        QTest::newRow("the first of the new") << "3.0" << true;
    }
    void connectingShowsWhoTheUnitIs()
    {
        QFETCH(QString, version);
        QFETCH(bool, newFirmware);
        SimulatorProcess unit({"--firmware", version, "--part", "1234.5678.02", "--serial",
            "000777", "--azimuth", "1,2,3,4,5,6,7,8,9,10,11,0", "--polar",
            "101,102,103,104,105,106,107,108,109,110,99,1", "--mask", "255.255.0.0"});
        QVERIFY(unit.IsReady());
        const ShownProgress progress;
        ConnectTo(unit.Address());
        QVERIFY(progress.Count() > 0);
        QCOMPARE(ConnectionLine(), QString("Connected to ") + unit.Address());
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
        ShowPage("Info");
    }

    void aLeadingZeroMakesAnOctetOctal()
    {
        SimulatorProcess unit({}, "127.255.0.8");
        QVERIFY(unit.IsReady());
        ConnectTo("127.255.000.010");
        QCOMPARE(ConnectionLine(), "Connected to 127.255.0.8");
        TheDeviceCommunication()->Disconnect();
    }

    void connectingWhileConnectedClosesTheOldLinkAndReadsAnew()
    {
        SimulatorProcess unit;
        QVERIFY(unit.IsReady());
        ConnectTo(unit.Address());
        unit.Forget();
        Click(Find<QPushButton>("btnConnect"));
        QCOMPARE(ConnectionLine(), QString("Connected to ") + unit.Address());
        QVERIFY(unit.WaitForLine("disconnected"));
        QVERIFY(unit.WaitForLine("connected "));
        QCOMPARE(unit.Commands(), LoadCommands(true));
    }

    void whileItLoadsTheWindowTakesNoClicksAndNoClose()
    {
        SimulatorProcess unit;
        QVERIFY(unit.IsReady());
        Overtype(Find<QLineEdit>("txtIpAddress"), unit.Address());
        bool tried = false;
        const auto bother = [&tried](QProgressDialog& loading) {
            tried = true;
            Click(Find<QPushButton>("btnConnect"));
            ShowPage("Detect Z&K Device");
            CloseByTitleBar(MainWindow());
            QTest::keyClick(loading.windowHandle(), Qt::Key_Escape);
        };
        WhenShown<QProgressDialog>(bother, [](const QProgressDialog& dialog) {
            return dialog.labelText() == "Loading Device Info ...";
        });
        Click(Find<QPushButton>("btnConnect"));
        QVERIFY(tried);
        QVERIFY(MainWindow()->isVisible());
        QCOMPARE(Tabs()->currentIndex(), 0);
        QCOMPARE(unit.Commands(), LoadCommands(true));
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

    void aLostLinkTellsTheUserAndKeepsWhatIsKnown()
    {
        SimulatorProcess unit;
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
        ShowPage("Info");
        QCOMPARE(TextOf("txtPartNumber"), part);
    }

    void afterALossTheUserConnectsAgain()
    {
        SimulatorProcess unit;
        QVERIFY(unit.IsReady());
        ConnectTo(unit.Address());
        QVERIFY(unit.Tell("drop"));
        ShowPage("Azimuth Configuration");
        Click(Find<QPushButton>("btnReceiveFromDevice"));
        QCOMPARE(ConnectionLine(), "Not Connected ");
        Click(Find<QPushButton>("btnConnect"));
        QCOMPARE(ConnectionLine(), QString("Connected to ") + unit.Address());
        QVERIFY(Find<QPushButton>("btnSendToDevice")->isEnabled());
        ShowPage("Info");
    }

    void theFocusStaysWhereTheUserPutIt_data()
    {
        QTest::addColumn<QString>("page");
        QTest::addColumn<QString>("button");
        QTest::newRow("Connect") << "Info"
                                 << "btnConnect";
        QTest::newRow("reading options") << "Options"
                                         << "btnReadOptionsFromDevice";
        QTest::newRow("receiving") << "Azimuth Configuration"
                                   << "btnReceiveFromDevice";
        QTest::newRow("sending") << "Pol/Eval Configuration"
                                 << "btnSendToDevice";
        QTest::newRow("changing the address") << "IP Configuration"
                                              << "btnSendIpAddress";
        QTest::newRow("searching") << "Detect Z&K Device"
                                   << "btnFindDevices";
    }
    void theFocusStaysWhereTheUserPutIt()
    {
        QFETCH(QString, page);
        QFETCH(QString, button);
        SimulatorProcess unit;
        QVERIFY(unit.IsReady());
        ConnectTo(unit.Address());
        ShowPage(page.toLatin1().constData());
        if (page.startsWith("Detect")) {
            Overtype(Find<QLineEdit>("txtStartIpAddress"), "127.0.0.1");
            Overtype(Find<QLineEdit>("txtEndIpAddress"), "127.0.0.2");
        }
        auto* const pressed = Find<QPushButton>(button.toLatin1().constData());
        pressed->setFocus(Qt::TabFocusReason);
        for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return}) {
            Press(key);
            MainWindow()->activateWindow(); // where no window manager does
            QVERIFY(QTest::qWaitForWindowActive(MainWindow()));
            QCOMPARE(QApplication::focusWidget(), pressed);
        }
        QVERIFY(pressed->isEnabled());
        QVERIFY(TheDeviceCommunication()->IsConnected());
    }
};

VX440_WINDOW_TEST_MAIN(MainDialogTest)
#include "MainDialogTest.moc"
