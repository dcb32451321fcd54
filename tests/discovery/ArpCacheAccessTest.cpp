#include "tests/support/scripted/ScriptedNeighbours.h"

#include "discovery/CArpCacheAccess.h"

#include <QtTest>

class ArpCacheAccessTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { ScriptedNeighbours::Reset(); }

    void aDefaultObjectAsksForNothing()
    {
        {
            const CArpCacheAccess access;
        }
        QVERIFY(ScriptedNeighbours::Calls().isEmpty());
    }

    void anObjectForAnAddressResolvesItOnce()
    {
        const CArpCacheAccess access(platform::ParseIpv4Address("192.168.7.9"));
        QCOMPARE(ScriptedNeighbours::Calls(), QStringList{"resolve 192.168.7.9"});
    }

    void aResolutionGivesSourceZeroEightOnesAndLengthSix()
    {
        const CArpCacheAccess access(platform::ParseIpv4Address("192.168.7.9"));
        const ScriptedNeighbours::Request request = ScriptedNeighbours::LatestResolution();
        QCOMPARE(request.source, 0U);
        QCOMPARE(request.length, 6U);
        QCOMPARE(request.physicalAddress, QVector<quint8>(8, 0xFF));
    }

    void clearingDeletesEveryRowAndIsFalseNevertheless()
    {
        ScriptedNeighbours::Add("192.168.1.30", "02:4c:7e:00:00:30");
        ScriptedNeighbours::Add("192.168.1.4", "02:4c:7e:00:00:04");
        QVERIFY(!CArpCacheAccess().ClearArpCache());
        QVERIFY(ScriptedNeighbours::Addresses().isEmpty());
        QCOMPARE(ScriptedNeighbours::Calls(),
            (QStringList{"read", "delete 192.168.1.4", "delete 192.168.1.30"}));
    }

    void clearingAnEmptyTableDeletesNothing()
    {
        QVERIFY(!CArpCacheAccess().ClearArpCache());
        QVERIFY(ScriptedNeighbours::Calls("delete").isEmpty());
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

    void aKnownAddressGivesItsMacInLowerCase()
    {
        ScriptedNeighbours::Add("10.0.0.1", "AA:BB:CC:DD:EE:FF");
        ScriptedNeighbours::Add("10.0.0.2", "02:4C:7E:01:0B:F0");
        QString mac;
        QVERIFY(CArpCacheAccess().GetMacFromArpCache(mac, "10.0.0.2"));
        QCOMPARE(mac, "02:4c:7e:01:0b:f0");
        QCOMPARE(ScriptedNeighbours::Calls(), QStringList{"read"});
    }

    void anAddressWithoutARowLeavesTheMacAsItWas_data()
    {
        QTest::addColumn<QString>("ip");
        QTest::addRow("another address") << "10.0.0.3";
        QTest::addRow("leading zero in the last octet") << "10.0.0.02";
        QTest::addRow("leading zero in an earlier octet") << "10.00.0.2";
        QTest::addRow("beginning of an address") << "10.0.0.";
        QTest::addRow("longer than an address") << "10.0.0.22";
        QTest::addRow("blank behind") << "10.0.0.2 ";
        QTest::addRow("empty") << QString();
    }

    void anAddressWithoutARowLeavesTheMacAsItWas()
    {
        QFETCH(QString, ip);
        ScriptedNeighbours::Add("10.0.0.2", "02:4c:7e:00:00:02");
        QString mac = "as it was";
        QVERIFY(!CArpCacheAccess().GetMacFromArpCache(mac, ip));
        QCOMPARE(mac, "as it was");
    }

    void anEmptyTableHasNoAddress()
    {
        QString mac = "as it was";
        QVERIFY(!CArpCacheAccess().GetMacFromArpCache(mac, "10.0.0.2"));
        QCOMPARE(mac, "as it was");
    }

    void ofTwoRowsForOneAddressTheFirstCounts()
    {
        ScriptedNeighbours::Add("10.0.0.2", "02:4c:7e:00:00:aa");
        ScriptedNeighbours::Add("10.0.0.2", "02:4c:7e:00:00:bb");
        QString mac;
        QVERIFY(CArpCacheAccess().GetMacFromArpCache(mac, "10.0.0.2"));
        QCOMPARE(mac, "02:4c:7e:00:00:aa");
    }

    void aRowThatIsNotResolvedIsAHitWithZeros()
    {
        ScriptedNeighbours::Add("10.0.0.2", "00:00:00:00:00:00");
        QString mac;
        QVERIFY(CArpCacheAccess().GetMacFromArpCache(mac, "10.0.0.2"));
        QCOMPARE(mac, "00:00:00:00:00:00");
    }

    void everyRowOfALargeTableIsFound()
    {
        for (int octet = 1; octet <= 255; ++octet) {
            ScriptedNeighbours::Add(QString("10.0.0.%1").arg(octet).toLatin1(),
                QString("02:4c:7e:00:00:%1").arg(octet, 2, 16, QLatin1Char('0')).toLatin1());
        }
        for (int octet = 1; octet <= 255; ++octet) {
            QString mac;
            QVERIFY(CArpCacheAccess().GetMacFromArpCache(mac, QString("10.0.0.%1").arg(octet)));
            QCOMPARE(mac, QString("02:4c:7e:00:00:%1").arg(octet, 2, 16, QLatin1Char('0')));
        }
    }
};

QTEST_APPLESS_MAIN(ArpCacheAccessTest)
#include "ArpCacheAccessTest.moc"
