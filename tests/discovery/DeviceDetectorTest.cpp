// SPDX-License-Identifier: MIT

#include "discovery/CDeviceDetector.h"
#include "shell/CCustomProgressDialog.h"
#include "tests/discovery/Answers.h"
#include "tests/support/Warnings.h"

#include <QPaintEvent>
#include <QProgressBar>
#include <QtTest>

namespace {

// Counts the times that it is painted as a whole. Its bar alone repaints itself at each new value.
class PaintedDialog : public QProgressDialog
{
public:
    int paints = 0;

protected:
    void paintEvent(QPaintEvent* event) override
    {
        paints += event->rect() == rect() ? 1 : 0;
        QProgressDialog::paintEvent(event);
    }
};

// One search with everything that happens in it, in order.
class RecordedSearch
{
public:
    RecordedSearch()
        : dialog(QString(), 0, 0)
    {
        QObject::connect(dialog.findChild<QProgressBar*>(), &QProgressBar::valueChanged, &dialog,
            [this](int value) { steps << QString("progress %1").arg(value); });
        QObject::connect(&detector, &CDeviceDetector::DeviceFound, &dialog, [this](sDEVICE device) {
            steps << "found " + device.ipAddress + ' ' + device.macAddress;
            found << device.ipAddress;
        });
        ScriptedNeighbours::SetOnCall([this](const QString& call) { steps << call; });
        ScriptedClock::SetDuringWait([this](unsigned milliseconds) {
            steps << QString("wait %1").arg(milliseconds);
            ScriptedThreads::RunAll();
        });
    }

    bool Run(const QString& startIp, const QString& endIp)
    {
        return detector.SearchDevices(startIp, endIp, &dialog);
    }

    CDeviceDetector detector;
    CCustomProgressDialog dialog;
    QStringList steps;
    QStringList found;
};

// The calls that resolve the addresses of a network, one after the other.
QStringList Resolutions(const char* network, int first, int last)
{
    QStringList calls;
    for (int octet = first; octet <= last; ++octet) {
        calls << QString("resolve %1.%2").arg(network).arg(octet);
    }
    return calls;
}

} // namespace

class DeviceDetectorTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void init()
    {
        WarningsFail::init();
        ResetScripts();
    }

    void aRangeIsValidByItsLastOctetsOnly()
    {
        const struct
        {
            const char* start;
            const char* end;
            bool valid;
        } rows[] = {
            {"192.168.1.1", "192.168.1.255", true},
            {"192.168.1.7", "192.168.1.7", true},
            {"192.168.1.255", "192.168.1.255", true},
            {"192.168.1.8", "192.168.1.7", false},
            {"192.168.1.0", "192.168.1.7", false},
            {"192.168.1.1", "192.168.1.0", false},
            {"192.168.1.0", "192.168.1.0", false},
            {"192.168.1.1", "192.168.1.256", false},
            {"192.168.1.256", "192.168.1.300", false},
            {"192.168.1.1", "10.20.30.20", true},
            {"192.168.200.1", "1.1.1.20", true},
            {"192.168.1.", "192.168.1.7", false},
            {"192.168.1.1", "192.168.1.", false},
            {"192.168.1.x", "192.168.1.7", false},
            {"192.168.1.-1", "192.168.1.7", false},
            {"192.168.1", "192.168.1.7", false},
            {"", "", false},
            {"...1", "...2", true},
            {"192.168.1.65537", "192.168.1.65538", true}, // the low 16 bits count
            {"192.168.1.1.9", "192.168.1.2", true},
        };
        for (const auto& row : rows) {
            QVERIFY2(CDeviceDetector().IsValidIpRange(row.start, row.end) == row.valid, row.start);
        }
    }

    void aRefusedRangeDoesNothingAtAll()
    {
        const QPair<const char*, const char*> rows[] = {{"192.168.1.8", "192.168.1.7"},
            {"192.168.1.0", "192.168.1.7"}, {"192.168.1.1", "192.168.1.0"},
            {"192.168.1.1", "192.168.1.256"}, {"192.168.1.", "192.168.1.7"},
            {"192.168.1", "192.168.1.7"}, {"192.168.1.1.9", "192.168.1.7"},
            {"192.168.1.1", "192.168.1.7.9"}, {"...", "..."}, {"", ""}};
        ScriptedNeighbours::Add("192.168.1.7", "02:4c:7e:00:00:07");
        RecordedSearch search;
        for (const auto& [start, end] : rows) {
            QVERIFY2(!search.Run(start, end), start);
        }
        QCOMPARE(search.steps, QStringList());
        QCOMPARE(ScriptedThreads::Starts(), 0);
        QCOMPARE(search.dialog.maximum(), 0);
    }

    void aSearchTakesItsStepsInOrderAndASecondOneTheSame()
    {
        ScriptedNeighbours::Add("192.168.1.8", "02:4c:7e:00:00:09");
        RecordedSearch search;
        ScriptedNeighbours::SetOnCall([&search](const QString& call) {
            search.steps << call;
            if (call == "resolve 192.168.1.8") {
                ScriptedNeighbours::Add("192.168.1.8", "00:11:22:33:44:55");
            }
        });
        const QStringList steps = QString("read\ndelete 192.168.1.8\n"
                                          "progress 7\nwait 5\nresolve 192.168.1.7\nwait 80\n"
                                          "progress 8\nwait 5\nresolve 192.168.1.8\nwait 80\n"
                                          "wait 100\nprogress 15\nread\nprogress 16\nread\n"
                                          "found 192.168.1.8 00:11:22:33:44:55")
                                      .split('\n');
        for (int time = 0; time < 2; ++time) {
            search.steps.clear();
            QVERIFY(search.Run("192.168.1.7", "192.168.1.8"));
            QCOMPARE(search.steps, steps);
        }
    }

    void aWholeNetworkWaits85MillisecondsAnAddressAnd100AtTheEnd()
    {
        RecordedSearch search;
        QVERIFY(search.Run("192.168.1.1", "192.168.1.255"));
        QCOMPARE(ScriptedThreads::Starts(), 255);
        QVector<unsigned> waits;
        for (int octet = 1; octet <= 255; ++octet) {
            waits << 5 << 80;
        }
        QCOMPARE(ScriptedClock::Waits(), waits << 100);
        QCOMPARE(ScriptedNeighbours::Calls("resolve"), Resolutions("192.168.1", 1, 255));
    }

    void aThreadMayPickItsAddressUpAsLateAsTheEndOfTheStep()
    {
        RecordedSearch search;
        ScriptedClock::SetDuringWait([](unsigned milliseconds) {
            if (milliseconds == 80) {
                ScriptedThreads::RunAll();
            }
        });
        QVERIFY(search.Run("10.0.0.1", "10.0.0.2"));
        QCOMPARE(ScriptedNeighbours::Calls("resolve"), Resolutions("10.0.0", 1, 2));
    }

    // Of the end address only the last octet counts. Zeros in front of a last octet do not.
    void theStartAddressGivesTheNetwork()
    {
        const struct
        {
            const char* start;
            const char* end;
            QStringList resolutions;
        } rows[] = {
            {"192.168.1.255", "192.168.1.255", Resolutions("192.168.1", 255, 255)},
            {"192.168.1.1", "10.20.30.20", Resolutions("192.168.1", 1, 20)},
            {"10.0.0.008", "10.0.0.009", Resolutions("10.0.0", 8, 9)},
        };
        for (const auto& row : rows) {
            ResetScripts();
            RecordedSearch search;
            QVERIFY(search.Run(row.start, row.end));
            QCOMPARE(ScriptedNeighbours::Calls("resolve"), row.resolutions);
        }
    }

    void aStartAddressWithALeadingZeroFindsNothing()
    {
        for (const char* const start : {"010.20.30.1", "10.020.30.1", "10.20.030.1"}) {
            ResetScripts();
            RecordedSearch search;
            LetAnswer({{"10.20.30.1", "02:4c:7e:00:00:01"}, {"8.20.30.1", "02:4c:7e:00:00:01"},
                {"10.16.30.1", "02:4c:7e:00:00:01"}, {"10.20.24.1", "02:4c:7e:00:00:01"}});
            QVERIFY(search.Run(start, "10.20.30.2"));
            QCOMPARE(search.found, QStringList());
        }
    }

    void everyHitIsEmittedInAscendingOrderBeforeAnyFiltering()
    {
        RecordedSearch search;
        LetAnswer({{"10.0.0.20", "02:4c:7e:00:00:20"}, {"10.0.0.3", "00:00:00:00:00:00"},
            {"10.0.0.100", "aa:bb:cc:dd:ee:ff"}, {"10.0.0.101", "02:4c:7e:00:01:01"},
            {"10.0.1.50", "02:4c:7e:00:00:50"}});
        QVERIFY(search.Run("10.0.0.1", "10.0.0.100"));
        QCOMPARE(search.found, (QStringList{"10.0.0.3", "10.0.0.20", "10.0.0.100"}));
    }

    void aRefusedThreadStartLosesOnlyItsResolution()
    {
        ScriptedThreads::RefuseStarts();
        LetStay({"10.0.0.2", "02:4c:7e:00:00:02"});
        RecordedSearch search;
        QVERIFY(search.Run("10.0.0.1", "10.0.0.3"));
        QCOMPARE(ScriptedThreads::Starts(), 3);
        QCOMPARE(ScriptedClock::Now(), 3U * 85U + 100U);
        QCOMPARE(search.found, QStringList{"10.0.0.2"});
    }

    void progressReachesItsMaximumExactlyAtTheLastAddressOfPassTwo()
    {
        RecordedSearch search;
        QVERIFY(search.Run("10.0.0.3", "10.0.0.12"));
        QCOMPARE(search.dialog.minimum(), 3);
        QCOMPARE(search.dialog.maximum(), 24);
        QStringList expected;
        for (int octet = 3; octet <= 12; ++octet) {
            expected << QString("progress %1").arg(octet);
        }
        for (int octet = 3; octet <= 12; ++octet) {
            expected << QString("progress %1").arg(12 + octet);
        }
        QCOMPARE(search.steps.filter("progress"), expected);
        QVERIFY(search.steps.indexOf("wait 100") < search.steps.indexOf("progress 15"));
    }

    void theDialogIsRepaintedAtEachStepOfPassOne()
    {
        PaintedDialog dialog;
        dialog.setAutoClose(false);
        dialog.setMinimumDuration(0);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        QVector<int> paintsAtWaits;
        ScriptedClock::SetDuringWait([&](unsigned milliseconds) {
            ScriptedThreads::RunAll();
            if (milliseconds == 5) {
                paintsAtWaits << dialog.paints;
            }
        });
        const int before = dialog.paints;
        CDeviceDetector detector;
        QVERIFY(detector.SearchDevices("10.0.0.1", "10.0.0.4", &dialog));
        QCOMPARE(paintsAtWaits, (QVector<int>{before + 1, before + 2, before + 3, before + 4}));
        QCOMPARE(dialog.paints, before + 8);
    }

    // In either wait of an address: after the short one its thread was started, after the long one
    // that of the next address is.
    void closingInPassOneIsSeenAfter5MillisecondsAndListsNothing()
    {
        for (const unsigned wait : {5U, 80U}) {
            ResetScripts();
            LetStay({"10.0.0.1", "02:4c:7e:00:00:01"});
            RecordedSearch search;
            ScriptedClock::SetDuringWait([&](unsigned milliseconds) {
                if (milliseconds == wait && ScriptedThreads::Starts() == (wait == 5 ? 2 : 1)) {
                    search.dialog.close();
                }
                ScriptedThreads::RunAll();
            });
            QVERIFY(!search.Run("10.0.0.1", "10.0.0.9"));
            QCOMPARE(ScriptedClock::Waits(), (QVector<unsigned>{5, 80, 5, 100}));
            QCOMPARE(ScriptedThreads::Starts(), 2);
            QCOMPARE(ScriptedNeighbours::Calls("read").size(), 1); // for the clearing
            QCOMPARE(search.found, QStringList());
        }
    }

    void closingInPassTwoKeepsWhatWasFoundSoFar()
    {
        RecordedSearch search;
        LetAnswer({{"10.0.0.1", "02:4c:7e:00:00:01"}, {"10.0.0.2", "02:4c:7e:00:00:02"},
            {"10.0.0.3", "02:4c:7e:00:00:03"}});
        connect(&search.detector, &CDeviceDetector::DeviceFound, this, [&](sDEVICE device) {
            if (device.ipAddress == "10.0.0.2") {
                search.dialog.close();
            }
        });
        QVERIFY(!search.Run("10.0.0.1", "10.0.0.9"));
        QCOMPARE(search.found, (QStringList{"10.0.0.1", "10.0.0.2"}));
    }

    void aThreadOfASearchEndsWithOne()
    {
        CDeviceDetector detector;
        QVERIFY(detector.StartThread());
        QCOMPARE(ScriptedThreads::RunNext(), 1);
        QVERIFY(detector.GetName().isEmpty());
    }

    void aMacAddressIsResolvedInTheCallersThreadAndReadFromTheTable()
    {
        ScriptedNeighbours::SetOnCall([](const QString& call) {
            if (call.startsWith("resolve")) {
                ScriptedNeighbours::Add("10.0.0.2", "02:4C:7E:00:00:0F");
            }
        });
        QString mac = "of before";
        QVERIFY(CDeviceDetector().ResolveMacAddress("10.0.0.2", mac));
        QCOMPARE(mac, "02:4c:7e:00:00:0f");
        QCOMPARE(ScriptedNeighbours::Calls(), (QStringList{"resolve 10.0.0.2", "read"}));
        QCOMPARE(ScriptedThreads::Starts(), 0);
        const ScriptedNeighbours::Request request = ScriptedNeighbours::LatestResolution();
        QCOMPARE(request.source, 0U);
        QCOMPARE(request.length, 6U);
        QCOMPARE(request.physicalAddress, QVector<quint8>(8, 0xFF));
    }

    void aMacAddressThatIsNotFoundIsEmpty()
    {
        for (const char* const ip : {"10.0.0.2", ""}) {
            QString mac = "of before";
            QVERIFY(!CDeviceDetector().ResolveMacAddress(ip, mac));
            QVERIFY(mac.isEmpty());
        }
        QCOMPARE(ScriptedNeighbours::Calls("resolve"),
            (QStringList{"resolve 10.0.0.2", "resolve 255.255.255.255"}));
    }

    void theRecordIsAMetaTypeUnderItsName()
    {
        CDeviceDetector detector;
        QVERIFY(QSignalSpy(&detector, &CDeviceDetector::DeviceFound).isValid());
        const int type = QMetaType::type("sDEVICE");
        QCOMPARE(type, qMetaTypeId<sDEVICE>());
        QVERIFY(QTypeInfo<sDEVICE>::isComplex);
        QVERIFY(!QTypeInfo<sDEVICE>::isStatic);
        QVERIFY(QMetaType::typeFlags(type).testFlag(QMetaType::MovableType));
    }
};

QTEST_MAIN(DeviceDetectorTest)
#include "DeviceDetectorTest.moc"
