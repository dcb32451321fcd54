// SPDX-License-Identifier: MIT

#include "platform/NeighbourTable.h"
#include "tests/platform/Resolve.h"
#include "tests/platform/linux/ArrivingPackets.h"
#include "tests/platform/linux/DescriptorLimit.h"
#include "tests/support/NetworkTest.h"
#include "tests/support/Warnings.h"
#include "tests/support/platform/ProcessResources.h"

#include <QElapsedTimer>
#include <QUdpSocket>
#include <QtTest>

#include <array>
#include <atomic>
#include <cerrno>
#include <thread>
#include <vector>

namespace {

const QString FirstHost = "192.168.77.20";

const QPair<QString, QByteArray> Hosts[] = {
    {FirstHost, "02:4c:7e:00:00:20"}, {"192.168.77.130", "aa:bb:cc:00:01:30"}};

QString IpText(quint32 address)
{
    std::array<char, 16> text{};
    platform::FormatIpv4Address(address, text.data(), int(text.size()));
    return QString::fromLatin1(text.data());
}

QByteArray MacIn(const platform::NeighbourRow& row)
{
    return QByteArray(reinterpret_cast<const char*>(row.physicalAddress), 6).toHex(':');
}

QStringList AddressesInTable()
{
    QStringList addresses;
    for (const platform::NeighbourRow& row : platform::ReadNeighbourTable()) {
        addresses << IpText(row.ipAddress);
    }
    return addresses;
}

QByteArray MacInTable(const QString& ip)
{
    for (const platform::NeighbourRow& row : platform::ReadNeighbourTable()) {
        if (row.ipAddress == Address(ip)) {
            return MacIn(row);
        }
    }
    return "no row";
}

} // namespace

class NeighbourTableTest : public NetworkTest
{
    Q_OBJECT

private:
    void AddNeighbour(const QString& ip, const QString& mac, const QString& state = "permanent")
    {
        MustRun(QString("neigh add %1 lladdr %2 dev silent nud %3").arg(ip, mac, state));
    }

private slots:
    void initTestCase()
    {
        NetworkTest::initTestCase();
        if (!OwnNetwork::IsUnprivileged()) {
            for (const auto& host : Hosts) {
                MustAddHost(host.first, host.second);
            }
        }
    }

    void init()
    {
        WarningsFail::init();
        if (!OwnNetwork::IsUnprivileged()) {
            MustRun("neigh flush all nud all");
            // Three tries of 100 ms each, where the kernel as delivered takes a second for each.
            MustRun("ntable change name arp_cache dev silent retrans 100");
        }
    }

    void aTableThatCannotBeReadIsEmpty()
    {
        AddNeighbour("192.168.77.9", "02:4c:7e:00:00:09");
        QCOMPARE(AddressesInTable(), QStringList{"192.168.77.9"});
        const DescriptorLimit limit(0);
        QCOMPARE(AddressesInTable(), QStringList());
    }

    void whereNothingMoreCanBeOpenedTheErrorTellsHowFarItCame()
    {
        AddNeighbour("192.168.77.9", "02:4c:7e:00:00:09");
        const std::vector<platform::NeighbourRow> rows = platform::ReadNeighbourTable();
        {
            const DescriptorLimit limit(0);
            QCOMPARE(Resolve("192.168.77.9").error, unsigned(EIO));
            QCOMPARE(platform::DeleteNeighbour(rows[0]), unsigned(EIO));
        }
        const DescriptorLimit limit(1); // the table can be asked, and no datagram sent
        QCOMPARE(Resolve("192.168.77.9").error, unsigned(EMFILE));
        QCOMPARE(AddressesInTable(), QStringList{"192.168.77.9"});
    }

    void nothingStaysOpen()
    {
        AddNeighbour("192.168.77.9", "02:4c:7e:00:00:09");
        const int handles = OpenHandles();
        QCOMPARE(Resolve("192.168.77.9").error, 0U);
        QVERIFY(Resolve("172.16.0.1").error != 0);
        QCOMPARE(platform::DeleteNeighbour(platform::ReadNeighbourTable().front()), 0U);
        QCOMPARE(OpenHandles(), handles);
    }

    void rowsComeInAscendingOrderOfTheirOctets()
    {
        AddNeighbour("192.168.77.200", "02:4c:7e:00:02:00");
        AddNeighbour("10.20.0.1", "02:4c:7e:00:00:01");
        AddNeighbour("192.168.77.9", "02:4c:7e:00:00:09");
        AddNeighbour("10.3.0.2", "02:4c:7e:00:00:02");
        AddNeighbour("192.168.77.100", "02:4c:7e:00:01:00");
        QCOMPARE(AddressesInTable(), (QStringList{"10.3.0.2", "10.20.0.1", "192.168.77.9",
                                         "192.168.77.100", "192.168.77.200"}));
        QCOMPARE(MacInTable("192.168.77.100"), "02:4c:7e:00:01:00");
    }

    void rowsOfOneAddressStayInTheSystemsOrder()
    {
        AddNeighbour("192.168.77.9", "02:4c:7e:00:00:09");
        MustRun("neigh add 192.168.77.9 lladdr 02:4c:7e:00:01:09 dev to0");
        QList<QByteArray> macs;
        for (const platform::NeighbourRow& row : platform::ReadNeighbourTable()) {
            macs << MacIn(row);
        }
        const QByteArray table = OwnNetwork::IpOutput("neigh show 192.168.77.9").toLatin1();
        QCOMPARE(macs.size(), 2);
        QVERIFY2(table.indexOf(macs[0]) < table.indexOf(macs[1]), table.constData());
    }

    void aWholeNetworkOfRowsIsRead()
    {
        for (int octet = 2; octet <= 254; ++octet) {
            AddNeighbour(QString("192.168.77.%1").arg(octet),
                "02:4c:7e:00:00:" + QString::number(octet, 16));
        }
        const std::vector<platform::NeighbourRow> rows = platform::ReadNeighbourTable();
        QCOMPARE(rows.size(), size_t(253));
        for (int octet = 2; octet <= 254; ++octet) {
            const platform::NeighbourRow& row = rows[size_t(octet - 2)];
            QCOMPARE(IpText(row.ipAddress), QString("192.168.77.%1").arg(octet));
            QCOMPARE(int(row.physicalAddress[5]), octet);
            QCOMPARE(row.physicalAddressLength, 6U);
        }
    }

    void aRowWithoutALinkLayerAddressReadsAsZeros()
    {
        QVERIFY(Resolve("192.168.77.66").error != 0);
        QCOMPARE(MacInTable("192.168.77.66"), "00:00:00:00:00:00");
    }

    void theKernelsOwnEntriesAreLeftOut()
    {
        QUdpSocket socket;
        socket.writeDatagram("x", QHostAddress("127.0.0.1"), 9);
        socket.writeDatagram("x", QHostAddress("224.0.0.1"), 9);
        socket.writeDatagram("x", QHostAddress("192.168.77.255"), 9);
        QVERIFY(OwnNetwork::IpOutput("-4 neigh show nud noarp").contains("NOARP"));
        QCOMPARE(AddressesInTable(), QStringList());
    }

    void oneRowIsDeleted()
    {
        AddNeighbour("192.168.77.9", "02:4c:7e:00:00:09");
        AddNeighbour("192.168.77.10", "02:4c:7e:00:00:0a");
        const std::vector<platform::NeighbourRow> rows = platform::ReadNeighbourTable();
        QCOMPARE(platform::DeleteNeighbour(rows[0]), 0U);
        QCOMPARE(AddressesInTable(), QStringList{"192.168.77.10"});
        QCOMPARE(platform::DeleteNeighbour(rows[0]), unsigned(ENOENT));
    }

    void deletingWithoutPrivilegeGivesTheErrorNumber()
    {
        if (!OwnNetwork::IsUnprivileged()) {
            AddNeighbour("192.168.77.9", "02:4c:7e:00:00:09");
            QCOMPARE(OwnNetwork::RunUnprivileged(QTest::currentTestFunction()), 0);
            return;
        }
        const std::vector<platform::NeighbourRow> rows = platform::ReadNeighbourTable();
        QCOMPARE(rows.size(), size_t(1));
        QCOMPARE(platform::DeleteNeighbour(rows[0]), unsigned(EPERM));
        QCOMPARE(platform::ReadNeighbourTable().size(), size_t(1));
    }

    void aHostThatAnswersIsResolvedIntoTheTable()
    {
        for (const auto& host : Hosts) {
            const Answer answer = Resolve(host.first);
            QCOMPARE(answer.error, 0U);
            QCOMPARE(answer.length, 6U);
            QCOMPARE(answer.bytes, host.second + ":ff:ff");
            QCOMPARE(MacInTable(host.first), host.second);
        }
    }

    void resolvingNeedsNoPrivilege()
    {
        if (!OwnNetwork::IsUnprivileged()) {
            QCOMPARE(OwnNetwork::RunUnprivileged(QTest::currentTestFunction()), 0);
            return;
        }
        QCOMPARE(Resolve(FirstHost).error, 0U);
    }

    void theAnswerIsCutToItsRoom()
    {
        const Answer answer = Resolve(FirstHost, 4);
        QCOMPARE(answer.error, 0U);
        QCOMPARE(answer.length, 4U);
        QCOMPARE(answer.bytes, "02:4c:7e:00:ff:ff:ff:ff");
    }

    void roomForMoreThanAnAddressGetsSixBytes() { QCOMPARE(Resolve(FirstHost, 8).length, 6U); }

    void aGivenSourceMustBeAnAddressOfThisMachine()
    {
        QCOMPARE(Resolve(FirstHost, 6, Address("192.168.77.1")).error, 0U);
        QCOMPARE(Resolve(FirstHost, 6, Address("192.168.77.2")).error, unsigned(EADDRNOTAVAIL));
        QCOMPARE(Resolve(FirstHost, 6, Address("127.0.0.1")).error, unsigned(EINVAL)); // never out
    }

    void whatIsSentIsOneZeroByteToTheDiscardPort()
    {
        AddNeighbour("192.168.77.9", "02:4c:7e:00:00:09");
        ArrivingPackets packets("nobody"); // the other end of the silent interface
        QCOMPARE(Resolve("192.168.77.9").error, 0U);
        const QByteArray packet = packets.Next();
        QCOMPARE(packet.mid(9, 1).toHex(), "11"); // UDP
        QCOMPARE(packet.mid(16, 4).toHex(), "c0a84d09");
        QCOMPARE(packet.mid(22, 2).toHex(), "0009"); // the port
        QCOMPARE(packet.mid(28).toHex(), "00");
    }

    void anEntryThatIsKnownIsAnAnswer()
    {
        for (const char* state : {"permanent", "stale", "reachable"}) {
            MustRun("neigh flush all nud all");
            AddNeighbour("192.168.77.9", "02:4c:7e:00:00:09", state);
            const Answer answer = Resolve("192.168.77.9");
            QCOMPARE(answer.error, 0U);
            QCOMPARE(answer.bytes, "02:4c:7e:00:00:09:ff:ff");
        }
    }

    void aSilentAddressFailsWhenTheKernelGivesUp()
    {
        const Answer answer = Resolve("192.168.77.66");
        QCOMPARE(answer.error, unsigned(EHOSTUNREACH));
        QCOMPARE(answer.bytes, "ff:ff:ff:ff:ff:ff:ff:ff");
        // A second try is a new one: the kernel's remembered failure is no answer.
        QCOMPARE(Resolve("192.168.77.66").error, unsigned(EHOSTUNREACH));
    }

    // Behind a gateway, without a route, refused by a route, our own, loopback, broadcast of the
    // network and of all, multicast, and none.
    void anAddressThatIsNotOnAnAttachedNetworkIsNotEvenTried()
    {
        MustRun("route replace 10.1.2.0/24 via 192.168.77.40");
        MustRun("route replace unreachable 172.17.0.0/24");
        for (const char* ip : {"10.1.2.3", "172.16.0.1", "172.17.0.1", "192.168.77.1", "127.0.0.1",
                 "192.168.77.255", "255.255.255.255", "224.0.0.1", "no address"}) {
            const Answer answer = Resolve(ip);
            QVERIFY2(answer.error == unsigned(ENETUNREACH), ip);
            QCOMPARE(answer.bytes, "ff:ff:ff:ff:ff:ff:ff:ff");
            QCOMPARE(AddressesInTable(), QStringList()); // not the gateway either
        }
    }

    void silentAddressesAreWaitedForAtTheSameTime()
    {
        QElapsedTimer timer;
        timer.start();
        Resolve("192.168.77.66");
        const qint64 one = timer.restart();
        std::atomic<int> unreachable{0};
        std::vector<std::thread> threads;
        for (int octet = 150; octet < 190; ++octet) {
            threads.emplace_back([octet, &unreachable] {
                const QString ip = QString("192.168.77.%1").arg(octet);
                unreachable += Resolve(ip).error == EHOSTUNREACH ? 1 : 0;
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        QCOMPARE(unreachable.load(), 40);
        QVERIFY2(timer.elapsed() < 10 * one, "one after the other would take 40 times as long");
    }
};

QTEST_GUILESS_MAIN(NeighbourTableTest)
#include "NeighbourTableTest.moc"
