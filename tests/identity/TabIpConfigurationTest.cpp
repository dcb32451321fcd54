#include "identity/CTabIpConfiguration.h"
#include "link/CDeviceCommunication.h"
#include "link/ConnectToDevice.h"
#include "model/CDeviceDatabase.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"

#include <QHostAddress>
#include <QLabel>
#include <QLineEdit>
#include <QMetaMethod>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

namespace {

const QString AddressChanged = "Ip Address & Subset Mask changed successfully.";
const QString AddressFailed = "Ip Address & Subset Mask change failed.";
const QString NoUnit = "Not Connected to any device";
const QString MacChanged = "Mac address changed successfully.";
const QString MacFailed = "Mac address change failed.";

const QString Mask = "255.255.255.0";
const QString Mac = "02:4C:7E:00:01:29";
const QString NewMac = "02:4C:7E:00:01:2A";

QLineEdit* Field(const char* name)
{
    return Find<QLineEdit>(name);
}

QPushButton* ChangeButton()
{
    return Find<QPushButton>("btnSendIpAddress");
}

CTabIpConfiguration* Tab()
{
    return qobject_cast<CTabIpConfiguration*>(ChangeButton()->parentWidget());
}

QString BarAddress()
{
    return Field("txtIpAddress")->text();
}

QString OctetsInHex(const QString& address)
{
    return QString("%1")
        .arg(QHostAddress(address).toIPv4Address(), 8, 16, QLatin1Char('0'))
        .toUpper();
}

QString AddressCommand(const QString& address, const QString& mask)
{
    return QString("CF1 ") + OctetsInHex(address) + OctetsInHex(mask);
}

// Another loopback address that no other test uses.
QString Elsewhere(const QString& address)
{
    QStringList octets = address.split('.');
    octets[1] = QString::number(octets.at(1).toInt() + 100);
    return octets.join('.');
}

// The link alone, without what the pages read.
void Link(const SimulatorProcess& unit)
{
    CDeviceDatabase* const database = TheDeviceDatabase();
    database->ResetData();
    database->SetIpAddress(unit.Address());
    database->SetSubnetMask(Mask);
    database->SetMacAddress(Mac);
    database->SetFirmwareVersion("3.10\r");
    ConnectToDevice(3, unit.Address());
    Tab()->ConnectionStatusChanged();
    database->SetApplicationStatus(QString());
}

void TypeAddressAndMask(const QString& address, const QString& mask)
{
    Overtype(Field("txtNewIpAddress"), address);
    Overtype(Field("txtNewSubnetMask"), mask);
}

// The attempt that follows is not waited for.
void GiveTheNextAttemptUp()
{
    WhenProgressShows([] { CloseByTitleBar(VisibleProgress()); });
}

void ChangeMacTo(const QString& mac)
{
    Field("txtNewMacAddress")->setText(mac);
    Tab()->SendMacAddressButtonClicked();
}

} // namespace

class TabIpConfigurationTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void init()
    {
        WarningsFail::init();
        ShowPage("IP Configuration");
    }

    void cleanup()
    {
        TheDeviceCommunication()->Disconnect();
        WarningsFail::cleanup();
    }

    // Runs first: the page as it comes up.
    void thePageComesUpWithItsButtonsDisabledAndTheMacAddressHidden()
    {
        QVERIFY(!ChangeButton()->isEnabled());
        QVERIFY(!Find<QPushButton>("btnSendMacAddress")->isEnabled());
        QVERIFY(ChangeButton()->isVisible());
        for (const char* const hidden :
            {"lblMacAddress", "txtNewMacAddress", "btnSendMacAddress"}) {
            QVERIFY2(Tab()->findChild<QWidget*>(QString(hidden))->isHidden(), hidden);
        }
    }

    void theFieldsHaveTheirMasks()
    {
        QCOMPARE(Field("txtNewIpAddress")->inputMask(), "000.000.000.000");
        QCOMPARE(Field("txtNewSubnetMask")->inputMask(), "000.000.000.000");
        QCOMPARE(Field("txtNewMacAddress")->inputMask(), "HH:HH:HH:HH:HH:HH");
    }

    void theSignalAndTheSlotsStandInTheirOrder()
    {
        QStringList methods;
        const QMetaObject& type = CTabIpConfiguration::staticMetaObject;
        for (int method = type.methodOffset(); method < type.methodCount(); ++method) {
            methods.append(QString::fromLatin1(type.method(method).methodSignature()));
        }
        QCOMPARE(methods, (QStringList{"SignalIpChanged()", "ConnectionStatusChanged()",
                              "SendIpAddressButtonClicked()", "SendMacAddressButtonClicked()"}));
    }

    void theAmpersandOfTheButtonMakesNoShortcut() { QVERIFY(ChangeButton()->shortcut().isEmpty()); }

    void theButtonForTheMacAddressLeadsNowhere()
    {
        auto* const button = Find<QPushButton>("btnSendMacAddress");
        TheDeviceDatabase()->SetApplicationStatus("as it was");
        button->setEnabled(true);
        button->click();
        QCOMPARE(StatusLine(), "as it was");
        button->setEnabled(false);
    }

    void theFieldsFollowTheirColumns()
    {
        TheDeviceDatabase()->SetIpAddress("127.0.0.2");
        TheDeviceDatabase()->SetSubnetMask("255.128.0.0");
        TheDeviceDatabase()->SetMacAddress("02:4c:7e:0a:0b:0c");
        QCOMPARE(Field("txtNewIpAddress")->text(), "127.0.0.2");
        QCOMPARE(Field("txtNewSubnetMask")->text(), "255.128.0.0");
        QCOMPARE(Field("txtNewMacAddress")->text(), "02:4C:7E:0A:0B:0C");
    }

    void whatIsTypedStaysInTheFieldUntilTheModelSpeaks()
    {
        TheDeviceDatabase()->SetIpAddress("127.0.0.2");
        TheDeviceDatabase()->SetSubnetMask("255.128.0.0");
        TypeAddressAndMask("127.0.0.3", "255.0.0.0");
        Press(Qt::Key_Return);
        Press(Qt::Key_Tab);
        QCOMPARE(Field("txtNewIpAddress")->text(), "127.0.0.3");
        QCOMPARE(Field("txtNewSubnetMask")->text(), "255.0.0.0");
        QCOMPARE(TheDeviceDatabase()->GetIpAddress(), "127.0.0.2");
        QCOMPARE(TheDeviceDatabase()->GetSubnetMask(), "255.128.0.0");
        TheDeviceDatabase()->SetIpAddress("127.0.0.2");
        QCOMPARE(Field("txtNewIpAddress")->text(), "127.0.0.2");
        QCOMPARE(Field("txtNewSubnetMask")->text(), "255.0.0.0");
    }

    void aClickIntoAnEmptyFieldPutsTheCursorAtItsStart_data()
    {
        QTest::addColumn<QString>("digit");
        QTest::newRow("txtNewIpAddress") << "1";
        QTest::newRow("txtNewSubnetMask") << "2";
        QTest::newRow("txtNewMacAddress") << "A";
    }
    void aClickIntoAnEmptyFieldPutsTheCursorAtItsStart()
    {
        auto* const field = Field(QTest::currentDataTag());
        const bool hidden = field->isHidden();
        field->show();
        field->clear();
        field->setCursorPosition(9);
        Click(field);
        QCOMPARE(field->cursorPosition(), 0);
        field->setVisible(!hidden);
    }

    void aClickIntoAFieldWithADigitGoesWhereItIs_data()
    {
        aClickIntoAnEmptyFieldPutsTheCursorAtItsStart_data();
    }
    void aClickIntoAFieldWithADigitGoesWhereItIs()
    {
        QFETCH(QString, digit);
        auto* const field = Field(QTest::currentDataTag());
        const bool hidden = field->isHidden();
        field->show();
        field->setText(digit);
        field->setCursorPosition(0);
        Click(field);
        QVERIFY(field->cursorPosition() > 0);
        field->setVisible(!hidden);
    }

    void theButtonFollowsTheLink()
    {
        SimulatorProcess unit;
        QVERIFY(unit.IsReady());
        ConnectTo(unit.Address());
        QVERIFY(ChangeButton()->isEnabled());
        QVERIFY(!Find<QPushButton>("btnSendMacAddress")->isEnabled());
        QVERIFY(Find<QPushButton>("btnSendMacAddress")->isHidden());
        QCOMPARE(Field("txtNewIpAddress")->text(), unit.Address());
        QCOMPARE(Field("txtNewSubnetMask")->text(), Mask);
        QVERIFY(unit.Tell("drop"));
        ShowPage("Azimuth Configuration");
        Click(Find<QPushButton>("btnSendToDevice")); // notices the loss
        QVERIFY(!ChangeButton()->isEnabled());
    }

    void aUnitMovesAndIsConnectedToAtItsNewAddress_data()
    {
        QTest::addColumn<QString>("firmware");
        QTest::newRow("new firmware") << "3.10";
        QTest::newRow("old firmware") << "2.50";
    }
    void aUnitMovesAndIsConnectedToAtItsNewAddress()
    {
        QFETCH(QString, firmware);
        SimulatorProcess unit({"--firmware", firmware});
        QVERIFY(unit.IsReady());
        ConnectTo(unit.Address());
        unit.Forget();
        const QString moved = Elsewhere(unit.Address());
        TypeAddressAndMask(moved, "255.0.0.0");
        Click(ChangeButton());
        QCOMPARE(StatusLine(), AddressChanged);
        QCOMPARE(ConnectionLine(), QString("Connected to ") + moved);
        QCOMPARE(BarAddress(), moved);
        QCOMPARE(Field("txtNewIpAddress")->text(), moved);
        QCOMPARE(Field("txtNewSubnetMask")->text(), "255.0.0.0");
        QVERIFY(ChangeButton()->isEnabled());
        QVERIFY(unit.Lines().contains(QString("ready %1:50000").arg(moved)));
        QCOMPARE(unit.Commands(), QStringList{AddressCommand(moved, "255.0.0.0")});

        Click(Find<QPushButton>("btnConnect"));
        QCOMPARE(ConnectionLine(), QString("Connected to ") + moved);
        QCOMPARE(Field("txtNewSubnetMask")->text(), "255.0.0.0");
    }

    void aChangedMaskAloneTravelsWithTheAddressAndConnectsAnew()
    {
        SimulatorProcess unit;
        QVERIFY(unit.IsReady());
        Link(unit);
        unit.Forget();
        TypeAddressAndMask(unit.Address(), "255.255.0.0");
        Click(ChangeButton());
        QCOMPARE(StatusLine(), AddressChanged);
        QCOMPARE(ConnectionLine(), QString("Connected to ") + unit.Address());
        QCOMPARE(unit.Commands(), QStringList{AddressCommand(unit.Address(), "255.255.0.0")});
        QVERIFY(unit.WaitForLine("connected "));
        QCOMPARE(unit.State("mask"), "255.255.0.0");
    }

    void nothingToChangeSendsNothingAndTellsTheBar()
    {
        SimulatorProcess unit;
        QVERIFY(unit.IsReady());
        Link(unit);
        unit.Forget();
        Overtype(Field("txtIpAddress"), "127.0.0.77");
        const QSignalSpy spy(Tab(), &CTabIpConfiguration::SignalIpChanged);
        Click(ChangeButton());
        QCOMPARE(StatusLine(), AddressChanged);
        QCOMPARE(spy.size(), 1);
        QCOMPARE(BarAddress(), unit.Address());
        QCOMPARE(unit.Commands(), QStringList());
        QVERIFY(unit.Lines().filter("connected").isEmpty());
    }

    void aTypedTextThatIsNoAddressSendsNothing_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<QString>("mask");
        QTest::newRow("empty address") << QString() << Mask;
        QTest::newRow("half an address") << "127.0." << Mask;
        QTest::newRow("an octet of 256") << "127.0.0.256" << Mask;
        QTest::newRow("an octet of 08") << "127.0.0.08" << Mask;
        QTest::newRow("empty mask") << "127.0.0.9" << QString();
        QTest::newRow("half a mask") << "127.0.0.9"
                                     << "255.255";
        QTest::newRow("a mask with 256") << "127.0.0.9"
                                         << "255.255.255.256";
    }
    void aTypedTextThatIsNoAddressSendsNothing()
    {
        QFETCH(QString, address);
        QFETCH(QString, mask);
        SimulatorProcess unit;
        QVERIFY(unit.IsReady());
        Link(unit);
        TypeAddressAndMask(address, mask);
        const QString bar = BarAddress();
        Click(ChangeButton());
        QCOMPARE(StatusLine(), AddressFailed);
        QCOMPARE(ConnectionLine(), QString("Connected to ") + unit.Address());
        QCOMPARE(BarAddress(), bar);
        QVERIFY(ChangeButton()->isEnabled());
        QCOMPARE(TheDeviceDatabase()->GetIpAddress(), unit.Address());
        QCOMPARE(unit.Commands(), QStringList());
    }

    void anEmptyFieldHoldsNothingButThePointsOfItsMask()
    {
        Overtype(Field("txtNewIpAddress"), QString());
        QCOMPARE(Field("txtNewIpAddress")->text(), "...");
        Field("txtNewMacAddress")->clear();
        QCOMPARE(Field("txtNewMacAddress")->text(), ":::::");
    }

    void theLargestMaskIsTaken()
    {
        SimulatorProcess unit;
        QVERIFY(unit.IsReady());
        Link(unit);
        TypeAddressAndMask(unit.Address(), "255.255.255.255");
        Click(ChangeButton());
        QCOMPARE(StatusLine(), AddressChanged);
        QCOMPARE(unit.State("mask"), "255.255.255.255");
    }

    void withoutALinkTheClickSaysSoAndDisablesTheButton()
    {
        SimulatorProcess unit;
        QVERIFY(unit.IsReady());
        Link(unit);
        TheDeviceCommunication()->Disconnect(); // which tells nobody
        QVERIFY(ChangeButton()->isEnabled());
        Click(ChangeButton());
        QCOMPARE(StatusLine(), NoUnit);
        QVERIFY(!ChangeButton()->isEnabled());
    }

    void aSendThatFailsEndsNotConnected()
    {
        SimulatorProcess unit;
        QVERIFY(unit.IsReady());
        Link(unit);
        Overtype(Field("txtIpAddress"), unit.Address());
        const QString moved = Elsewhere(unit.Address());
        TypeAddressAndMask(moved, Mask);
        QVERIFY(unit.Tell("drop"));
        Click(ChangeButton());
        QCOMPARE(StatusLine(), AddressFailed);
        QCOMPARE(ConnectionLine(), "Not Connected ");
        QCOMPARE(BarAddress(), unit.Address());
        QCOMPARE(TheDeviceDatabase()->GetIpAddress(), unit.Address());
        QVERIFY(!ChangeButton()->isEnabled());
        QCOMPARE(unit.Commands(), QStringList());
    }

    void afterAFailedReconnectionTheNextConnectReachesTheUnitThatDidNotMove()
    {
        SimulatorProcess unit({"--fault", "refusing:CF1"});
        QVERIFY(unit.IsReady());
        ConnectTo(unit.Address());
        const QString moved = Elsewhere(unit.Address());
        TypeAddressAndMask(moved, "255.0.0.0");
        GiveTheNextAttemptUp();
        Click(ChangeButton());
        QCOMPARE(StatusLine(), AddressFailed);
        QCOMPARE(ConnectionLine(), "Not Connected ");
        QCOMPARE(Find<QPushButton>("btnConnect")->text(), "Connect");
        QCOMPARE(TheDeviceDatabase()->GetIpAddress(), moved);
        QCOMPARE(TheDeviceDatabase()->GetSubnetMask(), "255.0.0.0");
        QCOMPARE(BarAddress(), unit.Address());
        QVERIFY(ChangeButton()->isEnabled()); // nobody has told the page
        Click(ChangeButton());
        QCOMPARE(StatusLine(), NoUnit);
        QVERIFY(!ChangeButton()->isEnabled());

        Click(Find<QPushButton>("btnConnect"));
        QCOMPARE(ConnectionLine(), QString("Connected to ") + unit.Address());
        QCOMPARE(Field("txtNewIpAddress")->text(), unit.Address());
        QCOMPARE(Field("txtNewSubnetMask")->text(), Mask);
        QVERIFY(ChangeButton()->isEnabled());
    }

    // The unit takes the digits behind the zero as decimal, the tool its own copy as octal.
    void aUnitThatALeadingZeroSentElsewhereIsReachedByItsRealAddress()
    {
        SimulatorProcess unit;
        QVERIFY(unit.IsReady());
        Link(unit);
        Overtype(Field("txtIpAddress"), unit.Address());
        const QString network = Elsewhere(unit.Address()).section('.', 0, 2);
        TypeAddressAndMask(network + ".010", Mask);
        GiveTheNextAttemptUp();
        Click(ChangeButton());
        QCOMPARE(StatusLine(), AddressFailed);
        QCOMPARE(TheDeviceDatabase()->GetIpAddress(), network + ".8");
        QVERIFY(unit.WaitForLine(QString("ready %1.10:").arg(network)));
        QCOMPARE(unit.Commands(), QStringList{AddressCommand(network + ".10", Mask)});
        ConnectTo(network + ".10");
        QCOMPARE(ConnectionLine(), QString("Connected to %1.10").arg(network));
        QCOMPARE(unit.State("address"), network + ".10");
    }

    void aUnitThatIsGoneFailsTheChange()
    {
        auto unit = std::make_unique<SimulatorProcess>();
        QVERIFY(unit->IsReady());
        Link(*unit);
        TypeAddressAndMask(Elsewhere(unit->Address()), Mask);
        unit.reset();
        GiveTheNextAttemptUp();
        Click(ChangeButton());
        QCOMPARE(StatusLine(), AddressFailed);
        QCOMPARE(ConnectionLine(), "Not Connected ");
    }

    void theMacAddressTravelsInTheFormOfTheFirmware_data()
    {
        QTest::addColumn<QString>("firmware");
        QTest::addColumn<int>("bytes");
        QTest::newRow("new firmware") << "3.10" << 6;
        QTest::newRow("old firmware") << "2.50" << 127;
    }
    void theMacAddressTravelsInTheFormOfTheFirmware()
    {
        QFETCH(QString, firmware);
        QFETCH(int, bytes);
        SimulatorProcess unit({"--firmware", firmware, "--azimuth", "1,2,3,4,5,6,7,8,9,10",
            "--polar", "11,12,13,14,15,16,17,18,19,20"});
        QVERIFY(unit.IsReady());
        ConnectTo(unit.Address());
        unit.Forget();
        const QStringList kept{"azimuth", "polar", "part", "serial", "address", "mask"};
        QStringList before;
        for (const QString& key : kept) {
            before.append(unit.State(key));
        }
        unit.Forget();
        ChangeMacTo(NewMac);
        QCOMPARE(StatusLine(), MacChanged);
        QCOMPARE(ConnectionLine(), QString("Connected to ") + unit.Address());
        QCOMPARE(TheDeviceDatabase()->GetMacAddress(), NewMac);
        QVERIFY(unit.WaitForLine("connected "));
        QCOMPARE(unit.Commands().size(), 1);
        QCOMPARE(unit.Commands().first().size(), QString("CF2 ").size() + 2 * bytes);
        QCOMPARE(unit.State("mac"), NewMac);
        QStringList after;
        for (const QString& key : kept) {
            after.append(unit.State(key));
        }
        QCOMPARE(after, before);
    }

    void theSameMacAddressIsASuccessWithoutACommand()
    {
        SimulatorProcess unit;
        QVERIFY(unit.IsReady());
        Link(unit);
        unit.Forget();
        ChangeMacTo(Mac);
        QCOMPARE(StatusLine(), MacChanged);
        QVERIFY(unit.WaitForLine("connected "));
        QCOMPARE(unit.Commands(), QStringList());
    }

    void aMacAddressThatIsNoneFailsWithoutACommand_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::newRow("empty") << QString();
        QTest::newRow("half typed") << "02:4C";
        QTest::newRow("lower case") << "02:4c:7e:00:01:2a";
        QTest::newRow("a letter in front") << "F2:4C:7E:00:01:2A";
    }
    void aMacAddressThatIsNoneFailsWithoutACommand()
    {
        QFETCH(QString, typed);
        SimulatorProcess unit;
        QVERIFY(unit.IsReady());
        Link(unit);
        ChangeMacTo(typed);
        QCOMPARE(StatusLine(), MacFailed);
        QCOMPARE(TheDeviceDatabase()->GetMacAddress(), Mac);
        QCOMPARE(unit.Commands(), QStringList());
    }

    void aMacAddressThatCannotBeSentFails_data()
    {
        QTest::addColumn<QString>("version");
        QTest::newRow("new firmware") << "3.10\r";
        QTest::newRow("old firmware") << "2.50\r";
    }
    void aMacAddressThatCannotBeSentFails()
    {
        QFETCH(QString, version);
        SimulatorProcess unit;
        QVERIFY(unit.IsReady());
        Link(unit);
        TheDeviceDatabase()->SetFirmwareVersion(version);
        QVERIFY(unit.Tell("drop"));
        ChangeMacTo(NewMac);
        QCOMPARE(StatusLine(), MacFailed);
        QCOMPARE(ConnectionLine(), "Not Connected ");
        QCOMPARE(TheDeviceDatabase()->GetMacAddress(), Mac);
        QCOMPARE(unit.Commands(), QStringList());
    }

    void aUnitThatIsGoneFailsTheChangeOfItsMacAddress()
    {
        auto unit = std::make_unique<SimulatorProcess>();
        QVERIFY(unit->IsReady());
        Link(*unit);
        unit.reset();
        GiveTheNextAttemptUp();
        ChangeMacTo(NewMac);
        QCOMPARE(StatusLine(), MacFailed);
        QCOMPARE(ConnectionLine(), "Not Connected ");
        QCOMPARE(TheDeviceDatabase()->GetMacAddress(), Mac);
    }
};

VX440_WINDOW_TEST_MAIN(TabIpConfigurationTest)
#include "TabIpConfigurationTest.moc"
