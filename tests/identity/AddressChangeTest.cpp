// SPDX-License-Identifier: MIT

#include "identity/CTabIpConfiguration.h"
#include "link/CDeviceCommunication.h"
#include "model/CDeviceDatabase.h"
#include "tests/support/Notified.h"
#include "tests/support/Warnings.h"
#include "tests/support/scripted/ScriptedLink.h"

#include <QLineEdit>
#include <QProgressDialog>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QtTest>

#include <functional>

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
    return scripted::Actions().filter(QRegularExpression("^(send|resolve)"));
}

QString LabelAndRange(const QProgressDialog& dialog)
{
    return QString("%1 %2 to %3")
        .arg(dialog.labelText())
        .arg(dialog.minimum())
        .arg(dialog.maximum());
}

// What attempts wait that end without a link.
const QList<int> AllPolls = QList<int>{10, 100} + QVector<int>(800, 100).toList();

} // namespace

/// The two slots step by step: every text of the status line, every wait and every frame, by a
/// scripted clock and link.
class AddressChangeTest : public WarningsFail
{
    Q_OBJECT

private:
    Notified notified;
    QSet<QString> dialogs;
    QScopedPointer<CTabIpConfiguration> tab;

    void ChangeAddress(const QString& address, const QString& mask = OldMask)
    {
        tab->findChild<QLineEdit*>("txtNewIpAddress")->setText(address);
        tab->findChild<QLineEdit*>("txtNewSubnetMask")->setText(mask);
        tab->SendIpAddressButtonClicked();
    }

    void ChangeMac(const QString& mac)
    {
        tab->findChild<QLineEdit*>("txtNewMacAddress")->setText(mac);
        tab->SendMacAddressButtonClicked();
    }

    // What neither slot may change when it fails before a frame went out.
    static bool IsAllAsItWas()
    {
        const CDeviceDatabase& database = *TheDeviceDatabase();
        return database.GetIpAddress() == OldAddress && database.GetSubnetMask() == OldMask &&
               database.GetMacAddress() == OldMac;
    }

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

private slots:
    void init()
    {
        WarningsFail::init();
        Connect();
        tab.reset(new CTabIpConfiguration(nullptr));
        tab->UpdateControls();
        // The connecting thread runs beside the scripted clock: it succeeds in the first wait.
        scripted::SetConnectResult(scripted::ConnectResult::SucceedsWhenTold);
        scripted::WhenSlept([this](int) {
            for (const QWidget* const window : QApplication::topLevelWidgets()) {
                const auto* const dialog = qobject_cast<const QProgressDialog*>(window);
                dialogs +=
                    dialog != nullptr ? QSet<QString>{LabelAndRange(*dialog)} : QSet<QString>();
            }
            if (TheDeviceCommunication()->isRunning()) {
                scripted::SetConnectResult(scripted::ConnectResult::Succeeds);
                TheDeviceCommunication()->wait();
            }
        });
        notified.statuses.clear();
        dialogs.clear();
    }

    void theButtonFollowsTheLinkByEitherOfTheTwoCalls()
    {
        auto* const button = tab->findChild<QPushButton*>("btnSendIpAddress");
        const std::function<void()> calls[] = {
            [this] { tab->ConnectionStatusChanged(); }, [this] { tab->UpdateControls(); }};
        for (const auto& call : calls) {
            button->setEnabled(false);
            call();
            QVERIFY(button->isEnabled());
        }
        TheDeviceCommunication()->Disconnect();
        for (const auto& call : calls) {
            button->setEnabled(true);
            call();
            QVERIFY(!button->isEnabled());
        }
        QVERIFY(!tab->findChild<QPushButton*>("btnSendMacAddress")->isEnabled());
    }

    void anAddressIsChangedInTheseSteps_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<QString>("mask");
        QTest::addColumn<QString>("sent");
        QTest::addColumn<QString>("sought");
        const auto row = [](const char* name, const QString& address, const QString& mask,
                             const char* sent, const char* sought) {
            QTest::newRow(name) << address << mask << QString(sent) << QString(sought);
        };
        row("both", NewAddress, NewMask, "7F000009FFFF0000", "127.0.0.9");
        row("only the mask: both travel", OldAddress, NewMask, "7F000001FFFF0000", "127.0.0.1");
        row("only the address: both travel", NewAddress, OldMask, "7F000009FF000000", "127.0.0.9");
        row("largest mask", NewAddress, "255.255.255.255", "7F000009FFFFFFFF", "127.0.0.9");
        row("mask of zeros", NewAddress, "0.0.0.0", "7F00000900000000", "127.0.0.9");
        row("the same with zeros", "127.000.000.001", OldMask, "7F000001FF000000", "127.0.0.1");
        // The unit reads the digits as decimal, the tool's own address as octal.
        row("leading zero", "127.0.0.010", OldMask, "7F00000AFF000000", "127.0.0.8");
    }
    void anAddressIsChangedInTheseSteps()
    {
        QFETCH(QString, address);
        QFETCH(QString, mask);
        QFETCH(QString, sent);
        QFETCH(QString, sought);
        const QSignalSpy spy(tab.get(), &CTabIpConfiguration::SignalIpChanged);
        ChangeAddress(address, mask);
        QCOMPARE(SentAndSought(), (QStringList{"send 4346310D" + sent, "resolve " + sought}));
        QCOMPARE(scripted::Sleeps(), (QList<int>{10, 100, 100}));
        QCOMPARE(notified.statuses, (QStringList{ChangingAddress, AddressChanged}));
        QCOMPARE(spy.size(), 1);
        QVERIFY(TheDeviceCommunication()->IsConnected());
        QCOMPARE(TheDeviceDatabase()->GetIpAddress(), sought);
        QCOMPARE(TheDeviceDatabase()->GetSubnetMask(), mask);
    }

    void nothingToChangeIsASuccessWithoutAFrameOrAConnection()
    {
        const QSignalSpy spy(tab.get(), &CTabIpConfiguration::SignalIpChanged);
        ChangeAddress(OldAddress, OldMask);
        QCOMPARE(scripted::Events(), QStringList{"sleep 100"});
        QCOMPARE(notified.statuses, (QStringList{ChangingAddress, AddressSame, AddressChanged}));
        QCOMPARE(spy.size(), 1);
    }

    void aTextThatIsNoAddressSendsNothingAndTakes100Ms()
    {
        const std::pair<QString, QString> typed[] = {{"", NewMask}, {"127.0.", NewMask},
            {"127..0.9", NewMask}, {"127.0.0.256", NewMask}, {"127.0.0.08", NewMask},
            {NewAddress, ""}, {NewAddress, "255.255"}, {NewAddress, "255.255.256.0"}, {"", ""}};
        const QSignalSpy spy(tab.get(), &CTabIpConfiguration::SignalIpChanged);
        for (const auto& [address, mask] : typed) {
            scripted::ForgetEvents();
            notified.statuses.clear();
            ChangeAddress(address, mask);
            QCOMPARE(scripted::Events(), QStringList{"sleep 100"});
            QCOMPARE(notified.statuses, (QStringList{ChangingAddress, AddressFailed}));
            QVERIFY2(IsAllAsItWas(), qPrintable(address + ' ' + mask));
        }
        QCOMPARE(spy.size(), 0);
        QVERIFY(TheDeviceCommunication()->IsConnected());
    }

    void aSendThatFailsEndsWithoutAnAttempt()
    {
        scripted::FailSendsFrom(1);
        const QSignalSpy spy(tab.get(), &CTabIpConfiguration::SignalIpChanged);
        ChangeAddress(NewAddress);
        QCOMPARE(scripted::Events(), (QStringList{"sleep 10", "send fails", "sleep 100"}));
        QCOMPARE(notified.statuses, (QStringList{ChangingAddress, AddressFailed}));
        QCOMPARE(spy.size(), 0);
        QVERIFY(!TheDeviceCommunication()->IsConnected());
        QVERIFY(IsAllAsItWas());
    }

    void aUnitThatIsNotAtItsNewAddressLeavesTheModelThere()
    {
        scripted::SetConnectResult(scripted::ConnectResult::Hangs);
        scripted::WhenSlept(nullptr);
        const QSignalSpy spy(tab.get(), &CTabIpConfiguration::SignalIpChanged);
        ChangeAddress(NewAddress, NewMask);
        QCOMPARE(scripted::Sleeps(), AllPolls);
        QCOMPARE(
            notified.statuses, (QStringList{ChangingAddress, ConnectionFailed, AddressFailed}));
        QCOMPARE(spy.size(), 0);
        QCOMPARE(TheDeviceDatabase()->GetIpAddress(), NewAddress);
        QCOMPARE(TheDeviceDatabase()->GetSubnetMask(), NewMask);
        QCOMPARE(TheDeviceDatabase()->ConnectionStatusText(), "Not Connected ");
        // Nobody has told the tab: the next click only says so and disables the button.
        const auto* const button = tab->findChild<QPushButton*>("btnSendIpAddress");
        QVERIFY(button->isEnabled());
        scripted::ForgetEvents();
        notified.statuses.clear();
        tab->SendIpAddressButtonClicked();
        QCOMPARE(notified.statuses, QStringList{"Not Connected to any device"});
        QCOMPARE(scripted::Events(), QStringList());
        QVERIFY(!button->isEnabled());
    }

    void aMacAddressIsChangedInTheWayOfTheFirmware_data()
    {
        QTest::addColumn<bool>("isNew");
        QTest::newRow("3.10\r") << true;
        QTest::newRow("3.0\r") << true;
        QTest::newRow("2.99\r") << false;
        QTest::newRow("") << false;
    }
    void aMacAddressIsChangedInTheWayOfTheFirmware()
    {
        QFETCH(bool, isNew);
        TheDeviceDatabase()->SetFirmwareVersion(QTest::currentDataTag());
        ChangeMac(NewMac);
        const QString shortForm = "send 4346320D024C7E00012A";
        const QString longForm = "send 4346320D" + QString("0000").repeated(20) + "024C7E00012A" +
                                 "7F000001" + "FF000000";
        const QStringList done = SentAndSought();
        QCOMPARE(done.size(), 2);
        QVERIFY2(done.first().startsWith(isNew ? shortForm : longForm), qPrintable(done.first()));
        QCOMPARE(done.first().size(), QString("send ").size() + 2 * (isNew ? 10 : 131));
        QCOMPARE(done.last(), "resolve 127.0.0.1");
        QCOMPARE(scripted::Sleeps(), isNew ? QList<int>({10, 100, 100}) : QList<int>({10, 100}));
        QCOMPARE(notified.statuses, isNew ? QStringList({SettingMac, MacChanged})
                                          : QStringList({SettingMac, ChangingMac, MacChanged}));
        QCOMPARE(TheDeviceDatabase()->GetMacAddress(), NewMac);
    }

    void theMacAddressThatTheUnitHasIsNotSentButConnectedTo()
    {
        ChangeMac(OldMac);
        QCOMPARE(SentAndSought(), QStringList{"resolve 127.0.0.1"});
        QCOMPARE(notified.statuses, (QStringList{SettingMac, MacChanged, MacChanged}));
        QVERIFY(IsAllAsItWas());
    }

    void aMacAddressThatIsNoneSendsNothing()
    {
        const QString invalid = "Invalid Mac address.";
        const QString broadcast = "Invalid Mac address. Do not set a broadcast address";
        const std::pair<QString, QString> typed[] = {{"", invalid}, {"02:4C:7E", invalid},
            {"02:4c:7e:00:01:2a", invalid}, {"A2:4C:7E:00:01:29", broadcast},
            {"FF:FF:FF:FF:FF:FF", broadcast}};
        for (const auto& [mac, error] : typed) {
            notified.statuses.clear();
            ChangeMac(mac);
            QCOMPARE(scripted::Events(), QStringList());
            QCOMPARE(notified.statuses, (QStringList{SettingMac, error, MacFailed}));
            QVERIFY2(IsAllAsItWas(), qPrintable(mac));
        }
    }

    void aMacAddressThatCannotBeSentStaysAsItWas_data()
    {
        QTest::addColumn<QStringList>("texts");
        QTest::newRow("3.10\r") << QStringList{SettingMac, MacFailed};
        QTest::newRow("2.50\r") << QStringList{SettingMac, ChangingMac, MacFailed};
    }
    void aMacAddressThatCannotBeSentStaysAsItWas()
    {
        TheDeviceDatabase()->SetFirmwareVersion(QTest::currentDataTag());
        scripted::FailSendsFrom(1);
        ChangeMac(NewMac);
        QCOMPARE(SentAndSought(), QStringList{"send fails"});
        QTEST(notified.statuses, "texts");
        QVERIFY(IsAllAsItWas());
        QVERIFY(!TheDeviceCommunication()->IsConnected());
    }

    void aUnitThatIsNotThereWithItsNewMacAddressLeavesTheModelAsItWas()
    {
        scripted::SetConnectResult(scripted::ConnectResult::Hangs);
        scripted::WhenSlept(nullptr);
        ChangeMac(NewMac);
        QCOMPARE(scripted::Sleeps(), AllPolls);
        QCOMPARE(notified.statuses, (QStringList{SettingMac, ConnectionFailed, MacFailed}));
        QVERIFY(IsAllAsItWas());
        QCOMPARE(TheDeviceDatabase()->ConnectionStatusText(), "Not Connected ");
    }

    void aChangeOfTheMacAddressHasAProgressDialogBesideThatOfTheConnection()
    {
        ChangeMac(NewMac);
        QCOMPARE(dialogs, (QSet<QString>{"Changing device MAC address...  0 to 0",
                              "Connecting to VX440 (Attempt 1) ... 0 to 0"}));
        QVERIFY(tab->findChild<QProgressDialog*>() == nullptr);
    }
};

QTEST_MAIN(AddressChangeTest)
#include "AddressChangeTest.moc"
