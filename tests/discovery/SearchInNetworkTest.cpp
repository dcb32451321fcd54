#include "tests/support/OwnNetwork.h"

#include "discovery/CDeviceDetector.h"
#include "discovery/CTabDetectZKDevices.h"
#include "model/CDeviceDatabase.h"
#include "shell/CCustomProgressDialog.h"

#include <QElapsedTimer>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTimer>
#include <QtTest>

#include <memory>

namespace {

void SetRange(const QWidget& tab, const char* start, const char* end)
{
    tab.findChild<QLineEdit*>("txtStartIpAddress")->setText(QString::fromLatin1(start));
    tab.findChild<QLineEdit*>("txtEndIpAddress")->setText(QString::fromLatin1(end));
}

QStringList Search(const QWidget& tab)
{
    tab.findChild<QPushButton*>("btnFindDevices")->click();
    const auto* table = tab.findChild<QTableWidget*>("tblDetectDevices");
    QStringList rows;
    for (int row = 0; row < table->rowCount(); ++row) {
        rows << table->item(row, 0)->text() + QLatin1Char(' ') + table->item(row, 1)->text();
    }
    return rows;
}

} // namespace

// Searches with nothing scripted: the system's clock, threads and table in a network of their own.
class SearchInNetworkTest : public QObject
{
    Q_OBJECT

private:
    OwnNetwork network;

    void MustRun(const char* ipArguments)
    {
        QVERIFY2(network.Ip(QString::fromLatin1(ipArguments)), qPrintable(network.Error()));
    }

    void MustAddHost(const char* ip, const char* mac)
    {
        QVERIFY2(network.AddHost(QString::fromLatin1(ip), QString::fromLatin1(mac)),
            qPrintable(network.Error()));
    }

private slots:
    void initTestCase()
    {
        QVERIFY2(OwnNetwork::IsAllowed(), "to be run in a network namespace of its own");
        QVERIFY2(network.Lay(), qPrintable(network.Error()));
        if (!OwnNetwork::IsUnprivileged()) {
            MustAddHost("192.168.77.12", "02:4c:7e:00:00:12");
            MustAddHost("192.168.77.6", "02:4c:7e:00:00:06");
            MustAddHost("192.168.77.9", "aa:bb:cc:00:00:09");
        }
    }

    void init()
    {
        if (!OwnNetwork::IsUnprivileged()) {
            MustRun("neigh flush all nud all");
        }
    }

    void onlyTheUnitsAmongOtherHostsAndSilentAddressesAreListedInAscendingOrder()
    {
        const CTabDetectZKDevices tab(nullptr);
        SetRange(tab, "192.168.77.1", "192.168.77.14");
        QCOMPARE(Search(tab),
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
        SetRange(tab, "192.168.77.200", "192.168.77.201");
        QCOMPARE(Search(tab), OwnNetwork::IsUnprivileged()
                                  ? QStringList{"192.168.77.200 02:4c:7e:00:02:00"}
                                  : QStringList());
    }

    void everyHostInTheTableIsFoundSilentOnesToo()
    {
        CDeviceDetector detector;
        QStringList found;
        connect(&detector, &CDeviceDetector::DeviceFound, this, [&found](sDEVICE device) {
            found << device.ipAddress + QLatin1Char(' ') + device.macAddress;
        });
        CCustomProgressDialog progress(QString(), 0, 0);
        QVERIFY(detector.SearchDevices("192.168.77.9", "192.168.77.10", &progress));
        QCOMPARE(found,
            (QStringList{"192.168.77.9 aa:bb:cc:00:00:09", "192.168.77.10 00:00:00:00:00:00"}));
    }

    void theMacAddressOfOneHostIsResolved()
    {
        QString mac;
        QVERIFY(CDeviceDetector().ResolveMacAddress("192.168.77.6", mac));
        QCOMPARE(mac, "02:4c:7e:00:00:06");
    }

    void thereIsNoMacAddressBehindAGatewayOrOnThisMachine_data()
    {
        QTest::addColumn<QString>("ip");
        QTest::addRow("another network") << "10.1.2.3";
        QTest::addRow("own address") << "192.168.77.1";
        QTest::addRow("loopback") << "127.0.0.1";
        QTest::addRow("no address") << QString();
    }

    void thereIsNoMacAddressBehindAGatewayOrOnThisMachine()
    {
        QFETCH(QString, ip);
        QString mac = "of before";
        QVERIFY(!CDeviceDetector().ResolveMacAddress(ip, mac));
        QVERIFY(mac.isEmpty());
    }

    void closingTheDialogEndsTheSearchEarly()
    {
        CTabDetectZKDevices tab(nullptr);
        tab.show();
        QVERIFY(QTest::qWaitForWindowExposed(&tab));
        SetRange(tab, "192.168.77.1", "192.168.77.255");
        QTimer closing;
        connect(&closing, &QTimer::timeout, &tab, [&tab] {
            auto* dialog = tab.findChild<QProgressDialog*>();
            if (dialog != nullptr && dialog->isVisible() && dialog->value() >= 8) {
                dialog->close();
            }
        });
        closing.start(1);
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(Search(tab), QStringList());
        QVERIFY(timer.elapsed() < 255 * 85 / 2);
        const CDeviceDatabase* model = TheDeviceDatabase();
        QCOMPARE(model->data(model->index(0, 1)).toString(), "Detect Z&K Devices: Ready");
    }

    // The last one: the process ends right behind it, with threads that still wait.
    void theTabMayGoWhileSilentAddressesAreWaitedFor()
    {
        auto tab = std::make_unique<CTabDetectZKDevices>(nullptr);
        SetRange(*tab, "192.168.77.100", "192.168.77.110");
        QCOMPARE(Search(*tab), QStringList());
        QElapsedTimer timer;
        timer.start();
        tab.reset();
        QVERIFY2(timer.elapsed() < 1000, "the kernel gives up after three seconds");
    }
};

QTEST_MAIN(SearchInNetworkTest)
#include "SearchInNetworkTest.moc"
