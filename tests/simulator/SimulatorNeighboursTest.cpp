// SPDX-License-Identifier: MIT

#include "tests/simulator/Client.h"
#include "tests/support/NetworkTest.h"
#include "tests/support/SimulatorProcess.h"

#include <QtTest>

namespace {

// What this machine knows of a neighbour.
QString Neighbour(const QString& address)
{
    return OwnNetwork::IpOutput(QString("neigh show ") + address);
}

} // namespace

/// A unit that is a host of its own in the network: what its neighbours see of its changes.
class SimulatorNeighboursTest : public NetworkTest
{
    Q_OBJECT

private:
    static QStringList Options(const char* firmware)
    {
        return {"--interface", "host", "--firmware", firmware};
    }

private slots:
    // A client whose connection brings nothing from the unit must not have to wait until its system
    // gives the old MAC address up.
    void aNewMacIsKnownToTheClientAtOnce_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<QByteArray>("firmware");
        QTest::addColumn<QByteArray>("command");
        const QByteArray mac = QByteArray::fromHex("024C7E0001AA");
        const QByteArray address = QByteArray::fromHex("C0A84D16FFFFFF00");
        QTest::newRow("short CF2") << "192.168.77.21" << QByteArray("3.10") << "CF2\r" + mac;
        QTest::newRow("long CF2") << "192.168.77.22" << QByteArray("2.50")
                                  << "CF2\r" + QByteArray(40, '\1') + mac + address +
                                         QByteArray(73, '\0');
    }
    void aNewMacIsKnownToTheClientAtOnce()
    {
        QFETCH(QString, address);
        QFETCH(QByteArray, firmware);
        QFETCH(QByteArray, command);
        MustAddHost(address, "02:4c:7e:00:01:29");
        SimulatorProcess unit(Options(firmware), address, network.InLatestHost());
        QVERIFY(unit.IsReady());
        Client client(address);
        QVERIFY(Neighbour(address).contains("02:4c:7e:00:01:29"));
        client.Send(command);
        QCOMPARE(unit.LineThatBegins("CF2").left(4), "CF2 ");
        QTRY_VERIFY(Neighbour(address).contains("02:4c:7e:00:01:aa"));
        QCOMPARE(Client(address).Ask("CF8\r", 2), QByteArray("0\r"));
        QCOMPARE(unit.State("mac"), "02:4C:7E:00:01:AA");
    }

    void aNewAddressIsKnownToTheClientBeforeItAsks()
    {
        const QString moved = "192.168.77.24";
        MustAddHost("192.168.77.23", "02:4c:7e:00:01:29");
        QVERIFY(network.Ip(QString("route add %1/32 dev to2 src 192.168.77.1").arg(moved)));
        SimulatorProcess unit(Options("3.10"), "192.168.77.23", network.InLatestHost());
        Client client("192.168.77.23");
        client.Send("CF1\r" + QByteArray::fromHex("C0A84D18FFFF0000"));
        QCOMPARE(unit.LineThatBegins("ready"), "ready 192.168.77.24:50000");
        QTRY_VERIFY(Neighbour(moved).contains("02:4c:7e:00:01:29"));
        QCOMPARE(Client(moved).Ask("CF8\r", 2), QByteArray("0\r"));
        QCOMPARE(unit.State("mask"), "255.255.0.0");
    }
};

QTEST_GUILESS_MAIN(SimulatorNeighboursTest)
#include "SimulatorNeighboursTest.moc"
