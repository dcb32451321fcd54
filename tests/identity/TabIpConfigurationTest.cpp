// SPDX-License-Identifier: MIT

#include "identity/CTabIpConfiguration.h"
#include "link/CDeviceCommunication.h"
#include "model/CDeviceDatabase.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"

#include <QHostAddress>
#include <QLineEdit>
#include <QMetaMethod>
#include <QPushButton>
#include <QtTest>

namespace {

const QString AddressChanged = "Ip Address & Subset Mask changed successfully.";
const QString AddressFailed = "Ip Address & Subset Mask change failed.";
const QString NoUnit = "Not Connected to any device";

const QString Mask = "255.255.255.0";

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

QString AddressCommand(const QString& address, const QString& mask)
{
    const quint64 both = quint64(QHostAddress(address).toIPv4Address()) << 32;
    return QString("CF1 %1")
        .arg(both | QHostAddress(mask).toIPv4Address(), 16, 16, QChar('0'))
        .toUpper();
}

// Another loopback address that no other test uses.
QString Elsewhere(const QString& address)
{
    QStringList octets = address.split('.');
    octets[1] = QString::number(octets.at(1).toInt() + 100);
    return octets.join('.');
}

void TypeAddressAndMask(const QString& address, const QString& mask)
{
    Overtype(Field("txtNewIpAddress"), address);
    Overtype(Field("txtNewSubnetMask"), mask);
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
        TypeAddressAndMask(Elsewhere(unit.Address()), Mask);
        unit.Forget();
        QVERIFY(unit.Tell("drop"));
        Click(ChangeButton());
        QCOMPARE(StatusLine(), AddressFailed);
        QCOMPARE(ConnectionLine(), "Not Connected ");
        QCOMPARE(BarAddress(), unit.Address());
        QVERIFY(!ChangeButton()->isEnabled());
        QCOMPARE(unit.Commands(), QStringList());
    }

    void aUnitIsConnectedToAtItsNewAddress_data()
    {
        QTest::addColumn<QString>("firmware");
        QTest::addColumn<bool>("moves");
        QTest::newRow("new firmware") << "3.10" << true;
        QTest::newRow("old firmware") << "2.50" << true;
        QTest::newRow("only its mask is new") << "2.50" << false;
    }
    void aUnitIsConnectedToAtItsNewAddress()
    {
        QFETCH(QString, firmware);
        QFETCH(bool, moves);
        SimulatorProcess unit({"--firmware", firmware});
        QVERIFY(unit.IsReady());
        ConnectTo(unit.Address());
        unit.Forget();
        const QString address = moves ? Elsewhere(unit.Address()) : unit.Address();
        TypeAddressAndMask(address, "255.255.255.255");
        Click(ChangeButton());
        QCOMPARE(StatusLine(), AddressChanged);
        QCOMPARE(ConnectionLine(), "Connected to " + address);
        QCOMPARE(BarAddress(), address);
        QCOMPARE(Field("txtNewIpAddress")->text(), address);
        QCOMPARE(Field("txtNewSubnetMask")->text(), "255.255.255.255");
        QVERIFY(ChangeButton()->isEnabled());
        QVERIFY(unit.Lines().contains(QString("ready %1:50000").arg(address)));
        QCOMPARE(unit.Commands(), QStringList{AddressCommand(address, "255.255.255.255")});
        QVERIFY(unit.WaitForLine("connected "));

        Click(Find<QPushButton>("btnConnect"));
        QCOMPARE(ConnectionLine(), "Connected to " + address);
        QCOMPARE(Field("txtNewSubnetMask")->text(), "255.255.255.255");
    }

    void whatIsNoChangeOrNoAddressSendsNothing()
    {
        SimulatorProcess unit({"--firmware", "2.50"});
        QVERIFY(unit.IsReady());
        ConnectTo(unit.Address());
        unit.Forget();
        Overtype(Field("txtIpAddress"), "127.0.0.77");
        TypeAddressAndMask("127.0.", Mask);
        Click(ChangeButton());
        QCOMPARE(StatusLine(), AddressFailed);
        QCOMPARE(BarAddress(), "127.0.0.77");
        TypeAddressAndMask(unit.Address(), Mask);
        Click(ChangeButton());
        QCOMPARE(StatusLine(), AddressChanged);
        QCOMPARE(BarAddress(), unit.Address());
        QCOMPARE(ConnectionLine(), "Connected to " + unit.Address());
        QVERIFY(ChangeButton()->isEnabled());
        QCOMPARE(unit.Commands(), QStringList());
        QVERIFY(unit.Lines().filter("connected").isEmpty());
    }

    void afterAFailedReconnectionTheNextConnectReachesTheUnitThatDidNotMove()
    {
        SimulatorProcess unit({"--firmware", "2.50", "--fault", "refusing:CF1"});
        QVERIFY(unit.IsReady());
        ConnectTo(unit.Address());
        const QString moved = Elsewhere(unit.Address());
        TypeAddressAndMask(moved, "255.0.0.0");
        WhenProgressShows([] { CloseByTitleBar(VisibleProgress()); }); // waits for no attempt
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
        QCOMPARE(ConnectionLine(), "Connected to " + unit.Address());
        QCOMPARE(Field("txtNewIpAddress")->text(), unit.Address());
        QCOMPARE(Field("txtNewSubnetMask")->text(), Mask);
        QVERIFY(ChangeButton()->isEnabled());
    }
};

VX440_WINDOW_TEST_MAIN(TabIpConfigurationTest)
#include "TabIpConfigurationTest.moc"
