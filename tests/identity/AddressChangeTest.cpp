#include "identity/CTabIpConfiguration.h"
#include "link/CDeviceCommunication.h"
#include "model/CDeviceDatabase.h"
#include "tests/support/Warnings.h"
#include "tests/support/scripted/ScriptedLink.h"

#include <QLineEdit>
#include <QProgressDialog>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

namespace {

const QString OldAddress = "127.0.0.1";
const QString NewAddress = "127.0.0.9";
const QString OldMask = "255.0.0.0";
const QString NewMask = "255.255.0.0";
const QString OldMac = "02:4C:7E:00:01:29";
const QString NewMac = "02:4C:7E:00:01:2A";

const QString ChangingAddress = "Changing Ip Address & Subset Mask ... ";
const QString AddressFailed = "Ip Address & Subset Mask change failed.";
const QString AddressSame = "Ip Address & Subnet Mask changed successfully.";
const QString AddressChanged = "Ip Address & Subset Mask changed successfully.";
const QString SettingMac = "Setting new MAC address for the device ... ";
const QString ChangingMac = "Changing MAC Address ...";
const QString MacFailed = "Mac address change failed.";
const QString MacChanged = "Mac address changed successfully.";
const QString ConnectionFailed = "Connection failed! ";

// What was sent, and which address an attempt went to.
QStringList SentAndSought()
{
    QStringList kept;
    const QStringList actions = scripted::Actions();
    for (const QString& action : actions) {
        if (action.startsWith("send") || action.startsWith("resolve")) {
            kept.append(action);
        }
    }
    return kept;
}

// The polls of the attempts that end without a link.
QList<int> WithAllPolls(const QList<int>& before)
{
    return before + QVector<int>(800, 100).toList();
}

} // namespace

/// The two slots step by step: every text of the status line, every wait and every frame, by a
/// scripted clock and link.
class AddressChangeTest : public WarningsFail
{
    Q_OBJECT

private:
    QStringList statusTexts;
    QStringList labels;
    QScopedPointer<CTabIpConfiguration> tab;

    QLineEdit* Field(const char* name) const { return tab->findChild<QLineEdit*>(QString(name)); }

    static void Connect()
    {
        scripted::Reset();
        TheDeviceDatabase()->ResetData();
        TheDeviceDatabase()->SetIpAddress(OldAddress);
        TheDeviceDatabase()->SetSubnetMask(OldMask);
        TheDeviceDatabase()->SetMacAddress(OldMac);
        TheDeviceDatabase()->SetFirmwareVersion("3.10\r");
        TheDeviceCommunication()->StartConnection(OldAddress.toLatin1());
        TheDeviceCommunication()->wait();
        scripted::ForgetEvents();
    }

    static void LetConnectHang()
    {
        scripted::SetConnectResult(scripted::ConnectResult::Hangs);
        scripted::WhenSlept(nullptr);
    }

    void NoteDialogs()
    {
        const QWidgetList windows = QApplication::topLevelWidgets();
        for (QWidget* const window : windows) {
            const auto* const dialog = qobject_cast<QProgressDialog*>(window);
            if (dialog != nullptr && !labels.contains(dialog->labelText())) {
                labels.append(dialog->labelText());
            }
        }
    }

private slots:
    void initTestCase()
    {
        connect(TheDeviceDatabase(), &QAbstractItemModel::dataChanged, this,
            [this](const QModelIndex& cell) {
                if (cell.column() == 1) {
                    statusTexts.append(cell.data().toString());
                }
            });
    }

    void init()
    {
        WarningsFail::init();
        Connect();
        tab.reset(new CTabIpConfiguration(nullptr));
        tab->UpdateControls();
        // The connecting thread runs beside the scripted clock: it succeeds in the first wait.
        scripted::SetConnectResult(scripted::ConnectResult::SucceedsWhenTold);
        scripted::WhenSlept([this](int) {
            NoteDialogs();
            if (TheDeviceCommunication()->isRunning()) {
                scripted::SetConnectResult(scripted::ConnectResult::Succeeds);
                TheDeviceCommunication()->wait();
            }
        });
        statusTexts.clear();
        labels.clear();
    }

    void anAddressIsChangedInTheseSteps_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<QString>("mask");
        QTest::addColumn<QStringList>("sentAndSought");
        QTest::addColumn<QList<int>>("sleeps");
        QTest::addColumn<QStringList>("texts");
        QTest::newRow("both changed")
            << NewAddress << NewMask
            << QStringList{"send 4346310D7F000009FFFF0000", "resolve 127.0.0.9"}
            << QList<int>{10, 100, 100} << QStringList{ChangingAddress, AddressChanged};
        QTest::newRow("only the mask changed: both travel")
            << OldAddress << NewMask
            << QStringList{"send 4346310D7F000001FFFF0000", "resolve 127.0.0.1"}
            << QList<int>{10, 100, 100} << QStringList{ChangingAddress, AddressChanged};
        QTest::newRow("only the address changed: both travel")
            << NewAddress << OldMask
            << QStringList{"send 4346310D7F000009FF000000", "resolve 127.0.0.9"}
            << QList<int>{10, 100, 100} << QStringList{ChangingAddress, AddressChanged};
        QTest::newRow("nothing to change: no frame and no connection")
            << OldAddress << OldMask << QStringList() << QList<int>{100}
            << QStringList{ChangingAddress, AddressSame, AddressChanged};
        QTest::newRow("the same written with zeros is sent")
            << "127.000.000.001" << OldMask
            << QStringList{"send 4346310D7F000001FF000000", "resolve 127.0.0.1"}
            << QList<int>{10, 100, 100} << QStringList{ChangingAddress, AddressChanged};
        QTest::newRow("255 in every place of the mask")
            << NewAddress << "255.255.255.255"
            << QStringList{"send 4346310D7F000009FFFFFFFF", "resolve 127.0.0.9"}
            << QList<int>{10, 100, 100} << QStringList{ChangingAddress, AddressChanged};
        QTest::newRow("a mask of zeros")
            << NewAddress << "0.0.0.0"
            << QStringList{"send 4346310D7F00000900000000", "resolve 127.0.0.9"}
            << QList<int>{10, 100, 100} << QStringList{ChangingAddress, AddressChanged};
    }
    void anAddressIsChangedInTheseSteps()
    {
        QFETCH(QString, address);
        QFETCH(QString, mask);
        Field("txtNewIpAddress")->setText(address);
        Field("txtNewSubnetMask")->setText(mask);
        const QSignalSpy spy(tab.get(), &CTabIpConfiguration::SignalIpChanged);
        tab->SendIpAddressButtonClicked();
        QTEST(SentAndSought(), "sentAndSought");
        QTEST(scripted::Sleeps(), "sleeps");
        QTEST(statusTexts, "texts");
        QCOMPARE(spy.size(), 1);
        QVERIFY(TheDeviceCommunication()->IsConnected());
        QCOMPARE(TheDeviceDatabase()->GetSubnetMask(), mask);
    }

    // The unit reads the digits as decimal, the tool's own address as octal.
    void leadingZerosSendTheUnitToAnotherAddressThanTheToolSeeks()
    {
        Field("txtNewIpAddress")->setText("127.0.0.010");
        tab->SendIpAddressButtonClicked();
        QCOMPARE(
            SentAndSought(), (QStringList{"send 4346310D7F00000AFF000000", "resolve 127.0.0.8"}));
        QCOMPARE(TheDeviceDatabase()->GetIpAddress(), "127.0.0.8");
    }

    void aTextThatIsNoAddressSendsNothingAndTakes100Ms_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<QString>("mask");
        QTest::newRow("empty address") << QString() << NewMask;
        QTest::newRow("half an address") << "127.0." << NewMask;
        QTest::newRow("a hole in the address") << "127..0.9" << NewMask;
        QTest::newRow("octet of 256") << "127.0.0.256" << NewMask;
        QTest::newRow("octet of 08") << "127.0.0.08" << NewMask;
        QTest::newRow("empty mask") << NewAddress << QString();
        QTest::newRow("half a mask") << NewAddress << "255.255";
        QTest::newRow("mask with 256") << NewAddress << "255.255.256.0";
        QTest::newRow("both empty") << QString() << QString();
    }
    void aTextThatIsNoAddressSendsNothingAndTakes100Ms()
    {
        QFETCH(QString, address);
        QFETCH(QString, mask);
        Field("txtNewIpAddress")->setText(address);
        Field("txtNewSubnetMask")->setText(mask);
        const QSignalSpy spy(tab.get(), &CTabIpConfiguration::SignalIpChanged);
        tab->SendIpAddressButtonClicked();
        QCOMPARE(scripted::Events(), QStringList{"sleep 100"});
        QCOMPARE(statusTexts, (QStringList{ChangingAddress, AddressFailed}));
        QCOMPARE(spy.size(), 0);
        QVERIFY(TheDeviceCommunication()->IsConnected());
        QCOMPARE(TheDeviceDatabase()->GetIpAddress(), OldAddress);
        QCOMPARE(TheDeviceDatabase()->GetSubnetMask(), OldMask);
    }

    void withoutALinkTheClickOnlySaysSoAndDisablesTheButton()
    {
        const auto* const button = tab->findChild<QPushButton*>("btnSendIpAddress");
        QVERIFY(button->isEnabled());
        TheDeviceCommunication()->Disconnect();
        scripted::ForgetEvents();
        tab->SendIpAddressButtonClicked();
        QCOMPARE(statusTexts, QStringList{"Not Connected to any device"});
        QCOMPARE(scripted::Events(), QStringList());
        QVERIFY(!button->isEnabled());
    }

    void aSendThatFailsEndsWithoutAnAttempt()
    {
        Field("txtNewIpAddress")->setText(NewAddress);
        scripted::FailSendsFrom(1);
        const QSignalSpy spy(tab.get(), &CTabIpConfiguration::SignalIpChanged);
        tab->SendIpAddressButtonClicked();
        QCOMPARE(scripted::Events(), (QStringList{"sleep 10", "send fails", "sleep 100"}));
        QCOMPARE(statusTexts, (QStringList{ChangingAddress, AddressFailed}));
        QCOMPARE(spy.size(), 0);
        QVERIFY(!TheDeviceCommunication()->IsConnected());
        QCOMPARE(TheDeviceDatabase()->GetIpAddress(), OldAddress);
    }

    void aUnitThatIsNotAtItsNewAddressLeavesTheModelThere()
    {
        Field("txtNewIpAddress")->setText(NewAddress);
        Field("txtNewSubnetMask")->setText(NewMask);
        LetConnectHang();
        const QSignalSpy spy(tab.get(), &CTabIpConfiguration::SignalIpChanged);
        tab->SendIpAddressButtonClicked();
        QCOMPARE(scripted::Sleeps(), WithAllPolls({10, 100}));
        QCOMPARE(statusTexts, (QStringList{ChangingAddress, ConnectionFailed, AddressFailed}));
        QCOMPARE(spy.size(), 0);
        QCOMPARE(TheDeviceDatabase()->GetIpAddress(), NewAddress);
        QCOMPARE(TheDeviceDatabase()->GetSubnetMask(), NewMask);
        QCOMPARE(TheDeviceDatabase()->ConnectionStatusText(), "Not Connected ");
        // Nobody has told the tab: the next click does.
        const auto* const button = tab->findChild<QPushButton*>("btnSendIpAddress");
        QVERIFY(button->isEnabled());
        tab->SendIpAddressButtonClicked();
        QCOMPARE(statusTexts.last(), "Not Connected to any device");
        QVERIFY(!button->isEnabled());
    }

    void aMacAddressIsChangedInTheWayOfTheFirmware_data()
    {
        QTest::addColumn<QString>("version");
        QTest::addColumn<QString>("frameBegins");
        QTest::addColumn<int>("frameBytes");
        QTest::addColumn<QList<int>>("sleeps");
        QTest::addColumn<QStringList>("texts");
        const QStringList newTexts{SettingMac, MacChanged};
        const QStringList oldTexts{SettingMac, ChangingMac, MacChanged};
        const QString shortForm = "send 4346320D024C7E00012A";
        const QString longForm = QString("send 4346320D") + QString("0000").repeated(20) +
                                 QString("024C7E00012A") + QString("7F000001") + "FF000000";
        const QList<int> newSleeps{10, 100, 100};
        const QList<int> oldSleeps{10, 100};
        QTest::newRow("3.10: short") << "3.10\r" << shortForm << 10 << newSleeps << newTexts;
        QTest::newRow("3.0: short") << "3.0\r" << shortForm << 10 << newSleeps << newTexts;
        QTest::newRow("2.99: long") << "2.99\r" << longForm << 131 << oldSleeps << oldTexts;
        QTest::newRow("unknown: long") << QString() << longForm << 131 << oldSleeps << oldTexts;
    }
    void aMacAddressIsChangedInTheWayOfTheFirmware()
    {
        QFETCH(QString, version);
        QFETCH(QString, frameBegins);
        QFETCH(int, frameBytes);
        TheDeviceDatabase()->SetFirmwareVersion(version);
        Field("txtNewMacAddress")->setText(NewMac);
        tab->SendMacAddressButtonClicked();
        const QStringList done = SentAndSought();
        QCOMPARE(done.size(), 2);
        QVERIFY2(done.first().startsWith(frameBegins), qPrintable(done.first()));
        QCOMPARE(done.first().size(), QString("send ").size() + 2 * frameBytes);
        QCOMPARE(done.last(), "resolve 127.0.0.1");
        QTEST(scripted::Sleeps(), "sleeps");
        QTEST(statusTexts, "texts");
        QCOMPARE(TheDeviceDatabase()->GetMacAddress(), NewMac);
    }

    void theMacAddressThatTheUnitHasIsNotSentButConnectedTo()
    {
        Field("txtNewMacAddress")->setText(OldMac);
        tab->SendMacAddressButtonClicked();
        QCOMPARE(SentAndSought(), QStringList{"resolve 127.0.0.1"});
        QCOMPARE(statusTexts, (QStringList{SettingMac, MacChanged, MacChanged}));
        QCOMPARE(TheDeviceDatabase()->GetMacAddress(), OldMac);
    }

    void aMacAddressThatIsNoneSendsNothing_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("error");
        QTest::newRow("empty") << QString() << "Invalid Mac address.";
        QTest::newRow("half typed") << "02:4C:7E"
                                    << "Invalid Mac address.";
        QTest::newRow("lower case") << "02:4c:7e:00:01:2a"
                                    << "Invalid Mac address.";
        QTest::newRow("a letter in front") << "A2:4C:7E:00:01:29"
                                           << "Invalid Mac address. Do not set a broadcast address";
        QTest::newRow("all ones") << "FF:FF:FF:FF:FF:FF"
                                  << "Invalid Mac address. Do not set a broadcast address";
    }
    void aMacAddressThatIsNoneSendsNothing()
    {
        QFETCH(QString, typed);
        QFETCH(QString, error);
        Field("txtNewMacAddress")->setText(typed);
        tab->SendMacAddressButtonClicked();
        QCOMPARE(scripted::Events(), QStringList());
        QCOMPARE(statusTexts, (QStringList{SettingMac, error, MacFailed}));
        QCOMPARE(TheDeviceDatabase()->GetMacAddress(), OldMac);
    }

    void aMacAddressThatCannotBeSentStaysAsItWas_data()
    {
        QTest::addColumn<QString>("version");
        QTest::addColumn<QStringList>("texts");
        QTest::newRow("short form") << "3.10\r" << QStringList{SettingMac, MacFailed};
        QTest::newRow("long form") << "2.50\r" << QStringList{SettingMac, ChangingMac, MacFailed};
    }
    void aMacAddressThatCannotBeSentStaysAsItWas()
    {
        QFETCH(QString, version);
        TheDeviceDatabase()->SetFirmwareVersion(version);
        Field("txtNewMacAddress")->setText(NewMac);
        scripted::FailSendsFrom(1);
        tab->SendMacAddressButtonClicked();
        QCOMPARE(SentAndSought(), QStringList{"send fails"});
        QTEST(statusTexts, "texts");
        QCOMPARE(TheDeviceDatabase()->GetMacAddress(), OldMac);
    }

    void aUnitThatIsNotThereWithItsNewMacAddressLeavesTheModelAsItWas()
    {
        Field("txtNewMacAddress")->setText(NewMac);
        LetConnectHang();
        tab->SendMacAddressButtonClicked();
        QCOMPARE(scripted::Sleeps(), WithAllPolls({10, 100}));
        QCOMPARE(statusTexts, (QStringList{SettingMac, ConnectionFailed, MacFailed}));
        QCOMPARE(TheDeviceDatabase()->GetMacAddress(), OldMac);
    }

    void aChangeOfTheMacAddressHasAProgressDialogBesideThatOfTheConnection()
    {
        Field("txtNewMacAddress")->setText(NewMac);
        tab->SendMacAddressButtonClicked();
        labels.sort();
        QCOMPARE(labels, (QStringList{"Changing device MAC address... ",
                             "Connecting to VX440 (Attempt 1) ..."}));
        QVERIFY(tab->findChild<QProgressDialog*>() == nullptr);
    }
};

QTEST_MAIN(AddressChangeTest)
#include "AddressChangeTest.moc"
