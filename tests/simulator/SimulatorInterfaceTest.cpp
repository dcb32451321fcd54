// SPDX-License-Identifier: MIT

#include "tests/simulator/Client.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/Warnings.h"

#include <QTcpServer>
#include <QtTest>

namespace {

QString Ip(const char* arguments)
{
    QProcess ip;
    ip.start("ip", QString(arguments).split(' '));
    ip.waitForFinished();
    return QString::fromLocal8Bit(ip.readAllStandardOutput() + ip.readAllStandardError());
}

/// "ADDRESS/PREFIX" of the unit's interface, blanks between several.
QString Addresses()
{
    return Ip("-4 -br address show dev unit0").simplified().section(' ', 2);
}

const QString Address = "10.9.0.129";
const QStringList Options{"--mask", "255.255.255.0", "--interface", "unit0"};

void Move(SimulatorProcess& simulator, const char* addressAndMask, const char* ready)
{
    Client client("10.9.0.129");
    client.Send("CF1\r" + QByteArray::fromHex(addressAndMask));
    QCOMPARE(simulator.LineThatBegins("ready"), QString(ready));
}

} // namespace

/// Runs in a network of its own, in which it may make and change interfaces.
class SimulatorInterfaceTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void init()
    {
        QCOMPARE(Ip("link set lo up"), QString());
        QCOMPARE(Ip("link add tool0 type veth peer name unit0"), QString());
        QCOMPARE(Ip("link set unit0 up"), QString());
        QCOMPARE(Ip("address add 10.9.0.129/24 dev unit0"), QString());
    }

    void cleanup() { Ip("link del tool0"); }

    void aNewAddressOfTheSameNetworkReplacesTheOldOne()
    {
        SimulatorProcess simulator(Options, Address);
        Move(simulator, "0A090082FFFFFF00", "ready 10.9.0.130:50000");
        QCOMPARE(Addresses(), "10.9.0.130/24");
        QCOMPARE(Client("10.9.0.130").Ask("CF8\r", 2), QByteArray("0\r"));
    }

    void aNewAddressOfAnotherNetworkReplacesTheOldOne()
    {
        SimulatorProcess simulator(Options, Address);
        Move(simulator, "C0A80081FFFFF800", "ready 192.168.0.129:50000");
        QCOMPARE(Addresses(), "192.168.0.129/21");
    }

    void aNewMaskReplacesTheOldOneAndKeepsTheClient()
    {
        SimulatorProcess simulator(Options, Address);
        Client client("10.9.0.129");
        Move(simulator, "0A090081FFFF0000", "ready 10.9.0.129:50000");
        QCOMPARE(Addresses(), "10.9.0.129/16");
        QCOMPARE(client.Ask("CF8\r", 2), QByteArray("0\r"));
        QCOMPARE(Client("10.9.0.129").Ask("CF8\r", 2), QByteArray("0\r"));
    }

    void aNewMacIsThatOfTheInterface()
    {
        SimulatorProcess simulator(Options, Address);
        Client client("10.9.0.129");
        client.Send("CF2\r" + QByteArray::fromHex("024C7E000130"));
        QCOMPARE(client.Ask("CF8\r", 2), QByteArray("0\r"));
        QVERIFY(Ip("-br link show dev unit0").contains("02:4c:7e:00:01:30"));
    }

    void anAddressThatTheInterfaceLacksIsReportedAndTheMoveGoesOn()
    {
        SimulatorProcess simulator(Options + QStringList{"--mask", "255.255.0.0"}, Address);
        Move(simulator, "0A0A0001FF000000", "ready 10.10.0.1:50000");
        QVERIFY(simulator.Errors().startsWith(
            "vx440-simulator: ip address del 10.9.0.129/16 dev unit0: "));
        QCOMPARE(Addresses(), "10.9.0.129/24 10.10.0.1/8");
    }

    void whereTheUnitCannotListenItTakesItsOldAddressBack()
    {
        QCOMPARE(Ip("address add 10.9.0.200/32 dev tool0"), QString());
        QTcpServer other;
        QVERIFY(other.listen(QHostAddress("10.9.0.200"), 50000));
        SimulatorProcess simulator(Options, Address);
        Move(simulator, "0A0900C8FFFF0000", "ready 10.9.0.129:50000");
        QCOMPARE(Addresses(), "10.9.0.129/24");
        QCOMPARE(Client("10.9.0.129").Ask("CF8\r", 2), QByteArray("0\r"));
    }
};

QTEST_GUILESS_MAIN(SimulatorInterfaceTest)
#include "SimulatorInterfaceTest.moc"
