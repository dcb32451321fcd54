// SPDX-License-Identifier: MIT

#include "discovery/CArpCacheAccess.h"
#include "tests/support/Warnings.h"
#include "tests/support/scripted/ScriptedNeighbours.h"

#include <QtTest>

namespace {

// The MAC address that the table has for an address. Without one, what was left of the text before.
QString MacOf(const QString& ip)
{
    QString mac = "as it was";
    const bool found = CArpCacheAccess().GetMacFromArpCache(mac, ip);
    return found ? mac : "none: " + mac;
}

} // namespace

class ArpCacheAccessTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void init()
    {
        WarningsFail::init();
        ScriptedNeighbours::Reset();
    }

    void aDefaultObjectAsksForNothing()
    {
        [[maybe_unused]] const CArpCacheAccess unused;
        QVERIFY(ScriptedNeighbours::Calls().isEmpty());
    }

    void anObjectForAnAddressResolvesItOnceWithSourceZeroEightOnesAndLengthSix()
    {
        const CArpCacheAccess access(platform::ParseIpv4Address("192.168.7.9"));
        QCOMPARE(ScriptedNeighbours::Calls(), QStringList{"resolve 192.168.7.9"});
        const ScriptedNeighbours::Request request = ScriptedNeighbours::LatestResolution();
        QCOMPARE(request.source, 0U);
        QCOMPARE(request.length, 6U);
        QCOMPARE(request.physicalAddress, QVector<quint8>(8, 0xFF));
    }

    void clearingDeletesEveryRowAndIsFalseNevertheless()
    {
        QVERIFY(!CArpCacheAccess().ClearArpCache());
        QCOMPARE(ScriptedNeighbours::Calls(), QStringList{"read"});
        ScriptedNeighbours::Reset();
        ScriptedNeighbours::Add("192.168.1.30", "02:4c:7e:00:00:30");
        ScriptedNeighbours::Add("192.168.1.4", "02:4c:7e:00:00:04");
        QVERIFY(!CArpCacheAccess().ClearArpCache());
        QVERIFY(ScriptedNeighbours::Addresses().isEmpty());
        QCOMPARE(ScriptedNeighbours::Calls(),
            (QStringList{"read", "delete 192.168.1.4", "delete 192.168.1.30"}));
    }

    void clearingStopsAtTheFirstRefusal()
    {
        ScriptedNeighbours::Add("10.0.0.1", "02:4c:7e:00:00:01");
        ScriptedNeighbours::Add("10.0.0.2", "02:4c:7e:00:00:02");
        ScriptedNeighbours::Add("10.0.0.3", "02:4c:7e:00:00:03");
        ScriptedNeighbours::RefuseDeletesAfter(1);
        QVERIFY(!CArpCacheAccess().ClearArpCache());
        QCOMPARE(ScriptedNeighbours::Calls("delete"),
            (QStringList{"delete 10.0.0.1", "delete 10.0.0.2"}));
        QCOMPARE(ScriptedNeighbours::Addresses(), (QStringList{"10.0.0.2", "10.0.0.3"}));
    }

    void aKnownAddressGivesItsMacInLowerCaseOfOneRead()
    {
        ScriptedNeighbours::Add("10.0.0.1", "AA:BB:CC:DD:EE:FF");
        ScriptedNeighbours::Add("10.0.0.2", "02:4C:7E:01:0B:F0");
        QCOMPARE(MacOf("10.0.0.2"), "02:4c:7e:01:0b:f0");
        QCOMPARE(ScriptedNeighbours::Calls(), QStringList{"read"});
    }

    void anAddressWithoutARowLeavesTheMacAsItWas()
    {
        QCOMPARE(MacOf("10.0.0.2"), "none: as it was");
        ScriptedNeighbours::Add("10.0.0.2", "02:4c:7e:00:00:02");
        for (const char* const ip :
            {"10.0.0.3", "10.0.0.02", "10.00.0.2", "10.0.0.", "10.0.0.22", "10.0.0.2 ", ""}) {
            QCOMPARE(MacOf(ip), "none: as it was");
        }
    }

    void ofTwoRowsForOneAddressTheFirstCounts()
    {
        ScriptedNeighbours::Add("10.0.0.2", "02:4c:7e:00:00:aa");
        ScriptedNeighbours::Add("10.0.0.2", "02:4c:7e:00:00:bb");
        QCOMPARE(MacOf("10.0.0.2"), "02:4c:7e:00:00:aa");
    }

    void aRowThatIsNotResolvedIsAHitWithZeros()
    {
        ScriptedNeighbours::Add("10.0.0.2", "00:00:00:00:00:00");
        QCOMPARE(MacOf("10.0.0.2"), "00:00:00:00:00:00");
    }

    void everyRowOfALargeTableIsFound()
    {
        const auto ip = [](int octet) { return QString("10.0.0.%1").arg(octet); };
        const auto mac = [](int octet) {
            return QString("02:4c:7e:00:00:%1").arg(octet, 2, 16, QChar('0'));
        };
        for (int octet = 1; octet <= 255; ++octet) {
            ScriptedNeighbours::Add(ip(octet).toLatin1(), mac(octet).toLatin1());
        }
        for (int octet = 1; octet <= 255; ++octet) {
            QCOMPARE(MacOf(ip(octet)), mac(octet));
        }
    }
};

QTEST_GUILESS_MAIN(ArpCacheAccessTest)
#include "ArpCacheAccessTest.moc"
