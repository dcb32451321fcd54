#include "tests/support/OwnNetwork.h"

#include "platform/NeighbourTable.h"
#include "tests/platform/linux/NoDescriptors.h"

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
const QString SecondHost = "192.168.77.130";

QString IpText(quint32 address)
{
    std::array<char, 16> text{};
    platform::FormatIpv4Address(address, text.data(), int(text.size()));
    return QString::fromLatin1(text.data());
}

quint32 Address(const QString& text)
{
    return platform::ParseIpv4Address(text.toLatin1().constData());
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
            return QByteArray(reinterpret_cast<const char*>(row.physicalAddress), 6).toHex(':');
        }
    }
    return "no row";
}

struct Answer
{
    unsigned error;
    quint32 length;
    QByteArray bytes;
};

Answer Resolve(const QString& ip, quint32 length = 6, quint32 source = 0)
{
    std::array<quint8, 8> address{};
    address.fill(0xFF);
    const unsigned error = platform::ResolveNeighbour(Address(ip), source, address.data(), &length);
    return {error, length,
        QByteArray(reinterpret_cast<const char*>(address.data()), int(address.size())).toHex(':')};
}

} // namespace

class NeighbourTableTest : public QObject
{
    Q_OBJECT

private:
    OwnNetwork network;

    void MustRun(const char* ipArguments)
    {
        QVERIFY2(network.Ip(QString::fromLatin1(ipArguments)), qPrintable(network.Error()));
    }

private slots:
    void initTestCase()
    {
        QVERIFY2(OwnNetwork::IsAllowed(), "to be run in a network namespace of its own");
        QVERIFY2(network.Lay(), qPrintable(network.Error()));
        if (!OwnNetwork::IsUnprivileged()) {
            QVERIFY2(network.AddHost(FirstHost, "02:4c:7e:00:00:20"), qPrintable(network.Error()));
            QVERIFY2(network.AddHost(SecondHost, "aa:bb:cc:00:01:30"), qPrintable(network.Error()));
        }
    }

    void init()
    {
        if (!OwnNetwork::IsUnprivileged()) {
            MustRun("neigh flush all nud all");
            // Three tries of 100 ms each, where the kernel as delivered takes a second for each.
            MustRun("ntable change name arp_cache dev silent retrans 100");
        }
    }

    void aTableThatCannotBeReadIsEmpty()
    {
        MustRun("neigh add 192.168.77.9 lladdr 02:4c:7e:00:00:09 dev silent nud permanent");
        QCOMPARE(AddressesInTable(), QStringList{"192.168.77.9"});
        const NoDescriptors limit;
        QCOMPARE(AddressesInTable(), QStringList());
    }

    void rowsComeInAscendingOrderOfTheirOctets()
    {
        MustRun("neigh add 192.168.77.200 lladdr 02:4c:7e:00:02:00 dev silent nud permanent");
        MustRun("neigh add 10.20.0.1 lladdr 02:4c:7e:00:00:01 dev silent nud permanent");
        MustRun("neigh add 192.168.77.9 lladdr 02:4c:7e:00:00:09 dev silent nud permanent");
        MustRun("neigh add 10.3.0.2 lladdr 02:4c:7e:00:00:02 dev silent nud permanent");
        MustRun("neigh add 192.168.77.100 lladdr 02:4c:7e:00:01:00 dev silent nud permanent");
        QCOMPARE(AddressesInTable(), (QStringList{"10.3.0.2", "10.20.0.1", "192.168.77.9",
                                         "192.168.77.100", "192.168.77.200"}));
        QCOMPARE(MacInTable("192.168.77.100"), QByteArray("02:4c:7e:00:01:00"));
    }

    void aWholeNetworkOfRowsIsRead()
    {
        for (int octet = 2; octet <= 254; ++octet) {
            MustRun(QString("neigh add 192.168.77.%1 lladdr 02:4c:7e:00:00:%2 dev silent")
                        .arg(octet)
                        .arg(octet, 2, 16, QLatin1Char('0'))
                        .toLatin1());
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
        QCOMPARE(MacInTable("192.168.77.66"), QByteArray("00:00:00:00:00:00"));
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
        MustRun("neigh add 192.168.77.9 lladdr 02:4c:7e:00:00:09 dev silent nud permanent");
        MustRun("neigh add 192.168.77.10 lladdr 02:4c:7e:00:00:0a dev silent nud permanent");
        const std::vector<platform::NeighbourRow> rows = platform::ReadNeighbourTable();
        QCOMPARE(platform::DeleteNeighbour(rows[0]), 0U);
        QCOMPARE(AddressesInTable(), QStringList{"192.168.77.10"});
        QCOMPARE(platform::DeleteNeighbour(rows[0]), unsigned(ENOENT));
    }

    void deletingWithoutPrivilegeGivesTheErrorNumber()
    {
        if (!OwnNetwork::IsUnprivileged()) {
            MustRun("neigh add 192.168.77.9 lladdr 02:4c:7e:00:00:09 dev silent nud permanent");
            QCOMPARE(OwnNetwork::RunUnprivileged(QTest::currentTestFunction()), 0);
            return;
        }
        const std::vector<platform::NeighbourRow> rows = platform::ReadNeighbourTable();
        QCOMPARE(rows.size(), size_t(1));
        QCOMPARE(platform::DeleteNeighbour(rows[0]), unsigned(EPERM));
        QCOMPARE(platform::ReadNeighbourTable().size(), size_t(1));
    }

    void aHostThatAnswersIsResolvedIntoTheTable_data()
    {
        QTest::addColumn<QString>("ip");
        QTest::addColumn<QByteArray>("mac");
        QTest::addRow("first") << FirstHost << QByteArray("02:4c:7e:00:00:20");
        QTest::addRow("second") << SecondHost << QByteArray("aa:bb:cc:00:01:30");
    }

    void aHostThatAnswersIsResolvedIntoTheTable()
    {
        QFETCH(QString, ip);
        QFETCH(QByteArray, mac);
        const Answer answer = Resolve(ip);
        QCOMPARE(answer.error, 0U);
        QCOMPARE(answer.length, 6U);
        QCOMPARE(answer.bytes, mac + ":ff:ff");
        QCOMPARE(MacInTable(ip), mac);
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
        QCOMPARE(answer.bytes, QByteArray("02:4c:7e:00:ff:ff:ff:ff"));
    }

    void roomForMoreThanAnAddressGetsSixBytes() { QCOMPARE(Resolve(FirstHost, 8).length, 6U); }

    void aGivenSourceMustBeAnAddressOfThisMachine()
    {
        QCOMPARE(Resolve(FirstHost, 6, Address("192.168.77.1")).error, 0U);
        QCOMPARE(Resolve(FirstHost, 6, Address("192.168.77.2")).error, unsigned(EADDRNOTAVAIL));
    }

    void anEntryThatIsKnownIsAnAnswer_data()
    {
        QTest::addColumn<QByteArray>("state");
        QTest::addRow("permanent") << QByteArray("permanent");
        QTest::addRow("stale") << QByteArray("stale");
        QTest::addRow("reachable") << QByteArray("reachable");
    }

    void anEntryThatIsKnownIsAnAnswer()
    {
        QFETCH(QByteArray, state);
        MustRun("neigh add 192.168.77.9 lladdr 02:4c:7e:00:00:09 dev silent nud " + state);
        const Answer answer = Resolve("192.168.77.9");
        QCOMPARE(answer.error, 0U);
        QCOMPARE(answer.bytes, QByteArray("02:4c:7e:00:00:09:ff:ff"));
    }

    void aSilentAddressFailsWhenTheKernelGivesUp()
    {
        const Answer answer = Resolve("192.168.77.66");
        QCOMPARE(answer.error, unsigned(EHOSTUNREACH));
        QCOMPARE(answer.bytes, QByteArray("ff:ff:ff:ff:ff:ff:ff:ff"));
        // A second try is a new one: the kernel's remembered failure is no answer.
        QCOMPARE(Resolve("192.168.77.66").error, unsigned(EHOSTUNREACH));
    }

    void anAddressThatIsNotOnAnAttachedNetworkIsNotEvenTried_data()
    {
        QTest::addColumn<QString>("ip");
        QTest::addRow("behind a gateway") << "10.1.2.3";
        QTest::addRow("without a route") << "172.16.0.1";
        QTest::addRow("refused by a route") << "172.17.0.1";
        QTest::addRow("own address") << "192.168.77.1";
        QTest::addRow("loopback") << "127.0.0.1";
        QTest::addRow("broadcast of the network") << "192.168.77.255";
        QTest::addRow("broadcast") << "255.255.255.255";
        QTest::addRow("multicast") << "224.0.0.1";
        QTest::addRow("no address") << "no address";
    }

    void anAddressThatIsNotOnAnAttachedNetworkIsNotEvenTried()
    {
        QFETCH(QString, ip);
        MustRun("route replace 10.1.2.0/24 via 192.168.77.40");
        MustRun("route replace unreachable 172.17.0.0/24");
        const Answer answer = Resolve(ip);
        QCOMPARE(answer.error, unsigned(ENETUNREACH));
        QCOMPARE(answer.bytes, QByteArray("ff:ff:ff:ff:ff:ff:ff:ff"));
        QCOMPARE(AddressesInTable(), QStringList()); // not the gateway either
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

    void aTextNamesAnAddressAsTheSystemReadsIt_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArray>("octets");
        const auto add = [](const char* text, const char* octets) {
            QTest::addRow("%s", text) << QByteArray(text) << QByteArray::fromHex(octets);
        };
        add("192.168.1.129", "c0a80181");
        add("0.0.0.0", "00000000");
        add("255.255.255.255", "ffffffff");
        add("010.0.0.1", "08000001");
        add("1.2.3", "01020003");
        add("256.1.1.1", "ffffffff");
        add("1.2.3.4.5", "ffffffff");
        add("...", "ffffffff");
        add("", "ffffffff");
        add("host", "ffffffff");
    }

    void aTextNamesAnAddressAsTheSystemReadsIt()
    {
        QFETCH(QByteArray, text);
        const quint32 address = platform::ParseIpv4Address(text.constData());
        QTEST(QByteArray(reinterpret_cast<const char*>(&address), 4), "octets");
    }

    void anAddressIsWrittenWithoutPadding()
    {
        for (const char* text : {"0.0.0.0", "1.20.3.4", "192.168.1.129", "255.255.255.255"}) {
            QCOMPARE(IpText(platform::ParseIpv4Address(text)), QString::fromLatin1(text));
        }
    }
};

QTEST_GUILESS_MAIN(NeighbourTableTest)
#include "NeighbourTableTest.moc"
