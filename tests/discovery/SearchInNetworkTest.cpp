// SPDX-License-Identifier: MIT

#include "discovery/CDeviceDetector.h"
#include "discovery/CTabDetectZKDevices.h"
#include "shell/CCustomProgressDialog.h"
#include "tests/support/NetworkTest.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"

#include <QElapsedTimer>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

#include <memory>

namespace {

QStringList Search(const QWidget& tab, const char* start, const char* end)
{
    tab.findChild<QLineEdit*>("txtStartIpAddress")->setText(start);
    tab.findChild<QLineEdit*>("txtEndIpAddress")->setText(end);
    tab.findChild<QPushButton*>("btnFindDevices")->click();
    return ListedDevices(tab);
}

} // namespace

// Searches with nothing scripted: the system's clock, threads and table in a network of their own.
class SearchInNetworkTest : public NetworkTest
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        NetworkTest::initTestCase();
        if (!OwnNetwork::IsUnprivileged()) {
            MustAddHost("192.168.77.12", "02:4c:7e:00:00:12");
            MustAddHost("192.168.77.6", "02:4c:7e:00:00:06");
            MustAddHost("192.168.77.9", "aa:bb:cc:00:00:09");
        }
    }

    void init()
    {
        WarningsFail::init();
        if (!OwnNetwork::IsUnprivileged()) {
            MustRun("neigh flush all nud all");
        }
    }

    void onlyTheUnitsAmongOtherHostsAndSilentAddressesAreListedInAscendingOrder()
    {
        const CTabDetectZKDevices tab(nullptr);
        QCOMPARE(Search(tab, "192.168.77.1", "192.168.77.14"),
            (QStringList{"192.168.77.6 02:4c:7e:00:00:06", "192.168.77.12 02:4c:7e:00:00:12"}));
    }

    void theSameIsListedWithoutAnyPrivilege()
    {
        QCOMPARE(OwnNetwork::RunUnprivileged(
                     "onlyTheUnitsAmongOtherHostsAndSilentAddressesAreListedInAscendingOrder"),
            0);
    }

    void aUnitThatIsGoneIsListedOnlyWhereItsEntryCannotBeDeleted()
    {
        if (!OwnNetwork::IsUnprivileged()) {
            MustRun("neigh add 192.168.77.200 lladdr 02:4c:7e:00:02:00 dev silent nud permanent");
            QCOMPARE(OwnNetwork::RunUnprivileged(QTest::currentTestFunction()), 0);
        }
        const CTabDetectZKDevices tab(nullptr);
        QCOMPARE(Search(tab, "192.168.77.200", "192.168.77.201"),
            OwnNetwork::IsUnprivileged() ? QStringList{"192.168.77.200 02:4c:7e:00:02:00"}
                                         : QStringList());
    }

    void everyHostInTheTableIsFoundSilentOnesToo()
    {
        CDeviceDetector detector;
        QStringList found;
        connect(&detector, &CDeviceDetector::DeviceFound, this,
            [&found](sDEVICE device) { found << device.ipAddress + ' ' + device.macAddress; });
        CCustomProgressDialog progress(QString(), 0, 0);
        QVERIFY(detector.SearchDevices("192.168.77.9", "192.168.77.10", &progress));
        QCOMPARE(found,
            (QStringList{"192.168.77.9 aa:bb:cc:00:00:09", "192.168.77.10 00:00:00:00:00:00"}));
    }

    void thereIsNoMacAddressBehindAGatewayOrOnThisMachine()
    {
        for (const char* const ip : {"10.1.2.3", "192.168.77.1", "127.0.0.1", ""}) {
            QString mac = "of before";
            QVERIFY2(!CDeviceDetector().ResolveMacAddress(ip, mac), ip);
            QVERIFY2(mac.isEmpty(), ip);
        }
    }

    // The last one: the process ends right behind it, with threads that still wait.
    void theTabMayGoWhileSilentAddressesAreWaitedFor()
    {
        auto tab = std::make_unique<CTabDetectZKDevices>(nullptr);
        QCOMPARE(Search(*tab, "192.168.77.100", "192.168.77.110"), QStringList());
        QElapsedTimer timer;
        timer.start();
        tab.reset();
        QVERIFY2(timer.elapsed() < 1000, "the kernel gives up after three seconds");
    }
};

QTEST_MAIN(SearchInNetworkTest)
#include "SearchInNetworkTest.moc"
