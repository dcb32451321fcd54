#include "tests/support/scripted/ScriptedClock.h"
#include "tests/support/scripted/ScriptedNeighbours.h"
#include "tests/support/scripted/ScriptedThreads.h"

#include "discovery/CDeviceDetector.h"
#include "shell/CCustomProgressDialog.h"

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
            steps << QString("found ") + device.ipAddress + QLatin1Char(' ') + device.macAddress;
            found << device.ipAddress;
        });
        ScriptedNeighbours::SetOnCall([this](const QString& call) { steps << call; });
        ScriptedClock::SetDuringWait([this](unsigned milliseconds) {
            steps << QString("wait %1").arg(milliseconds);
            ScriptedThreads::RunAll();
        });
    }

    bool Run(const char* startIp, const char* endIp)
    {
        return detector.SearchDevices(
            QString::fromLatin1(startIp), QString::fromLatin1(endIp), &dialog);
    }

    CDeviceDetector detector;
    CCustomProgressDialog dialog;
    QStringList steps;
    QStringList found;
};

QStringList Lines(const char* text)
{
    return QString::fromLatin1(text).split('\n');
}

} // namespace

class DeviceDetectorTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        ScriptedThreads::RunAll();
        ScriptedThreads::Reset();
        ScriptedClock::Reset();
        ScriptedNeighbours::Reset();
    }

    void aRangeIsValidByItsLastOctetsOnly_data()
    {
        QTest::addColumn<QString>("start");
        QTest::addColumn<QString>("end");
        QTest::addColumn<bool>("valid");
        const auto add = [](const char* start, const char* end, bool valid) {
            QTest::addRow("%s to %s", start, end)
                << QString::fromLatin1(start) << QString::fromLatin1(end) << valid;
        };
        add("192.168.1.1", "192.168.1.255", true);
        add("192.168.1.7", "192.168.1.7", true);
        add("192.168.1.255", "192.168.1.255", true);
        add("192.168.1.8", "192.168.1.7", false);
        add("192.168.1.0", "192.168.1.7", false);
        add("192.168.1.1", "192.168.1.0", false);
        add("192.168.1.0", "192.168.1.0", false);
        add("192.168.1.1", "192.168.1.256", false);
        add("192.168.1.256", "192.168.1.300", false);
        add("192.168.1.1", "10.20.30.20", true);
        add("192.168.200.1", "1.1.1.20", true);
        add("192.168.1.", "192.168.1.7", false);
        add("192.168.1.1", "192.168.1.", false);
        add("192.168.1.x", "192.168.1.7", false);
        add("192.168.1.-1", "192.168.1.7", false);
        add("192.168.1", "192.168.1.7", false);
        add("", "", false);
        add("...1", "...2", true);
        add("192.168.1.65537", "192.168.1.65538", true); // the low 16 bits count
        add("192.168.1.1.9", "192.168.1.2", true);
    }

    void aRangeIsValidByItsLastOctetsOnly()
    {
        QFETCH(QString, start);
        QFETCH(QString, end);
        QTEST(CDeviceDetector().IsValidIpRange(start, end), "valid");
    }

    void aRefusedRangeDoesNothingAtAll_data()
    {
        QTest::addColumn<QByteArray>("start");
        QTest::addColumn<QByteArray>("end");
        QTest::addRow("start above end") << QByteArray("192.168.1.8") << QByteArray("192.168.1.7");
        QTest::addRow("start with last octet 0")
            << QByteArray("192.168.1.0") << QByteArray("192.168.1.7");
        QTest::addRow("end with last octet 0")
            << QByteArray("192.168.1.1") << QByteArray("192.168.1.0");
        QTest::addRow("end above 255") << QByteArray("192.168.1.1") << QByteArray("192.168.1.256");
        QTest::addRow("empty last part") << QByteArray("192.168.1.") << QByteArray("192.168.1.7");
        QTest::addRow("three parts") << QByteArray("192.168.1") << QByteArray("192.168.1.7");
        QTest::addRow("five parts in the start")
            << QByteArray("192.168.1.1.9") << QByteArray("192.168.1.7");
        QTest::addRow("five parts in the end")
            << QByteArray("192.168.1.1") << QByteArray("192.168.1.7.9");
        QTest::addRow("bare masks") << QByteArray("...") << QByteArray("...");
        QTest::addRow("empty") << QByteArray() << QByteArray();
    }

    void aRefusedRangeDoesNothingAtAll()
    {
        QFETCH(QByteArray, start);
        QFETCH(QByteArray, end);
        ScriptedNeighbours::Add("192.168.1.7", "02:4c:7e:00:00:07");
        RecordedSearch search;
        QVERIFY(!search.Run(start.constData(), end.constData()));
        QCOMPARE(search.steps, QStringList());
        QCOMPARE(ScriptedThreads::Starts(), 0);
        QCOMPARE(search.dialog.maximum(), 0);
    }

    void aSearchTakesItsStepsInOrder()
    {
        ScriptedNeighbours::Add("192.168.1.9", "02:4c:7e:00:00:09");
        RecordedSearch search;
        ScriptedNeighbours::SetOnCall([&search](const QString& call) {
            search.steps << call;
            if (call == "resolve 192.168.1.8") {
                ScriptedNeighbours::Add("192.168.1.8", "00:11:22:33:44:55");
            }
        });
        QVERIFY(search.Run("192.168.1.7", "192.168.1.8"));
        QCOMPARE(search.steps, Lines("read\ndelete 192.168.1.9\n"
                                     "progress 7\nwait 5\nresolve 192.168.1.7\nwait 80\n"
                                     "progress 8\nwait 5\nresolve 192.168.1.8\nwait 80\n"
                                     "wait 100\n"
                                     "progress 15\nread\n"
                                     "progress 16\nread\nfound 192.168.1.8 00:11:22:33:44:55"));
    }

    void aWholeNetworkWaits85MillisecondsAnAddressAnd100AtTheEnd()
    {
        RecordedSearch search;
        QVERIFY(search.Run("192.168.1.1", "192.168.1.255"));
        QCOMPARE(ScriptedThreads::Starts(), 255);
        QCOMPARE(ScriptedClock::Now(), 255U * 85U + 100U);
        QVector<unsigned> waits;
        for (int octet = 1; octet <= 255; ++octet) {
            waits << 5 << 80;
        }
        QCOMPARE(ScriptedClock::Waits(), waits << 100);
    }

    void eachThreadResolvesItsOwnAddress()
    {
        RecordedSearch search;
        QVERIFY(search.Run("192.168.1.1", "192.168.1.255"));
        QStringList expected;
        for (int octet = 1; octet <= 255; ++octet) {
            expected << QString("resolve 192.168.1.%1").arg(octet);
        }
        QCOMPARE(ScriptedNeighbours::Calls("resolve"), expected);
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
        QCOMPARE(ScriptedNeighbours::Calls("resolve"),
            (QStringList{"resolve 10.0.0.1", "resolve 10.0.0.2"}));
    }

    void startAndEndWithLastOctet255TryOneAddress()
    {
        RecordedSearch search;
        QVERIFY(search.Run("192.168.1.255", "192.168.1.255"));
        QCOMPARE(ScriptedNeighbours::Calls("resolve"), QStringList{"resolve 192.168.1.255"});
    }

    void theStartAddressGivesTheNetworkWhateverTheEndAddressSays()
    {
        RecordedSearch search;
        QVERIFY(search.Run("192.168.1.1", "10.20.30.20"));
        const QStringList resolved = ScriptedNeighbours::Calls("resolve");
        QCOMPARE(resolved.size(), 20);
        QCOMPARE(resolved.first(), "resolve 192.168.1.1");
        QCOMPARE(resolved.last(), "resolve 192.168.1.20");
    }

    void aStartAddressWithALeadingZeroFindsNothing_data()
    {
        QTest::addColumn<QByteArray>("start");
        QTest::addRow("first octet") << QByteArray("010.20.30.1");
        QTest::addRow("second octet") << QByteArray("10.020.30.1");
        QTest::addRow("third octet") << QByteArray("10.20.030.1");
    }

    void aStartAddressWithALeadingZeroFindsNothing()
    {
        QFETCH(QByteArray, start);
        RecordedSearch search;
        ScriptedClock::SetDuringWait([](unsigned milliseconds) {
            ScriptedThreads::RunAll();
            if (milliseconds == 100) {
                ScriptedNeighbours::Add("10.20.30.1", "02:4c:7e:00:00:01");
                ScriptedNeighbours::Add("8.20.30.1", "02:4c:7e:00:00:01");
                ScriptedNeighbours::Add("10.16.30.1", "02:4c:7e:00:00:01");
                ScriptedNeighbours::Add("10.20.24.1", "02:4c:7e:00:00:01");
            }
        });
        QVERIFY(search.Run(start.constData(), "10.20.30.2"));
        QCOMPARE(search.found, QStringList());
    }

    void aLastOctetWithLeadingZerosIsReadAsANumber()
    {
        RecordedSearch search;
        QVERIFY(search.Run("10.0.0.008", "10.0.0.009"));
        QCOMPARE(ScriptedNeighbours::Calls("resolve"),
            (QStringList{"resolve 10.0.0.8", "resolve 10.0.0.9"}));
    }

    void everyHitIsEmittedInAscendingOrderBeforeAnyFiltering()
    {
        RecordedSearch search;
        ScriptedClock::SetDuringWait([](unsigned milliseconds) {
            ScriptedThreads::RunAll();
            if (milliseconds == 100) {
                ScriptedNeighbours::Add("10.0.0.20", "02:4c:7e:00:00:20");
                ScriptedNeighbours::Add("10.0.0.3", "00:00:00:00:00:00");
                ScriptedNeighbours::Add("10.0.0.100", "aa:bb:cc:dd:ee:ff");
                ScriptedNeighbours::Add("10.0.0.101", "02:4c:7e:00:01:01");
                ScriptedNeighbours::Add("10.0.1.50", "02:4c:7e:00:00:50");
            }
        });
        QVERIFY(search.Run("10.0.0.1", "10.0.0.100"));
        QCOMPARE(search.found, (QStringList{"10.0.0.3", "10.0.0.20", "10.0.0.100"}));
    }

    void hostsOfEarlierTrafficAreFoundWhenTheyCannotBeDeleted()
    {
        ScriptedNeighbours::Add("10.0.0.2", "02:4c:7e:00:00:02");
        ScriptedNeighbours::RefuseDeletesAfter(0);
        RecordedSearch search;
        QVERIFY(search.Run("10.0.0.1", "10.0.0.3"));
        QCOMPARE(search.found, QStringList{"10.0.0.2"});
    }

    void aRefusedThreadStartLosesOnlyItsResolution()
    {
        ScriptedThreads::RefuseStarts();
        ScriptedNeighbours::Add("10.0.0.2", "02:4c:7e:00:00:02");
        ScriptedNeighbours::RefuseDeletesAfter(0);
        RecordedSearch search;
        QVERIFY(search.Run("10.0.0.1", "10.0.0.3"));
        QCOMPARE(ScriptedThreads::Starts(), 3);
        QCOMPARE(ScriptedClock::Now(), 3U * 85U + 100U);
        QCOMPARE(search.found, QStringList{"10.0.0.2"});
    }

    void progressReachesItsMaximumExactlyAtTheLastAddressOfPassTwo()
    {
        RecordedSearch search;
        QStringList progressAtMaximum;
        connect(search.dialog.findChild<QProgressBar*>(), &QProgressBar::valueChanged, this,
            [&](int value) {
                if (value == search.dialog.maximum()) {
                    progressAtMaximum
                        << QString("%1 after %2 ms").arg(value).arg(ScriptedClock::Now());
                }
            });
        QVERIFY(search.Run("10.0.0.3", "10.0.0.12"));
        QCOMPARE(search.dialog.minimum(), 3);
        QCOMPARE(search.dialog.maximum(), 24);
        QCOMPARE(progressAtMaximum, QStringList{"24 after 950 ms"});
        QStringList expected;
        for (int value = 3; value <= 12; ++value) {
            expected << QString("progress %1").arg(value);
        }
        for (int value = 15; value <= 24; ++value) {
            expected << QString("progress %1").arg(value);
        }
        QCOMPARE(search.steps.filter("progress"), expected);
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

    void closingInPassOneIsSeenAfter5MillisecondsAndListsNothing()
    {
        ScriptedNeighbours::Add("10.0.0.1", "02:4c:7e:00:00:01");
        ScriptedNeighbours::RefuseDeletesAfter(0);
        RecordedSearch search;
        ScriptedClock::SetDuringWait([&](unsigned) {
            if (ScriptedThreads::Starts() == 2) {
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

    void closingInTheLongWaitOfAnAddressStillStartsTheNextThread()
    {
        RecordedSearch search;
        ScriptedClock::SetDuringWait([&](unsigned milliseconds) {
            if (milliseconds == 80) {
                search.dialog.close();
            }
            ScriptedThreads::RunAll();
        });
        QVERIFY(!search.Run("10.0.0.1", "10.0.0.9"));
        QCOMPARE(ScriptedClock::Waits(), (QVector<unsigned>{5, 80, 5, 100}));
    }

    void closingInPassTwoKeepsWhatWasFoundSoFar()
    {
        RecordedSearch search;
        ScriptedClock::SetDuringWait([](unsigned milliseconds) {
            ScriptedThreads::RunAll();
            if (milliseconds == 100) {
                ScriptedNeighbours::Add("10.0.0.1", "02:4c:7e:00:00:01");
                ScriptedNeighbours::Add("10.0.0.2", "02:4c:7e:00:00:02");
                ScriptedNeighbours::Add("10.0.0.3", "02:4c:7e:00:00:03");
            }
        });
        connect(&search.detector, &CDeviceDetector::DeviceFound, this, [&](sDEVICE device) {
            if (device.ipAddress == "10.0.0.2") {
                search.dialog.close();
            }
        });
        QVERIFY(!search.Run("10.0.0.1", "10.0.0.9"));
        QCOMPARE(search.found, (QStringList{"10.0.0.1", "10.0.0.2"}));
    }

    void aSecondSearchRunsLikeTheFirst()
    {
        RecordedSearch search;
        QVERIFY(search.Run("10.0.0.1", "10.0.0.2"));
        const QStringList first = search.steps;
        search.steps.clear();
        QVERIFY(search.Run("10.0.0.1", "10.0.0.2"));
        QCOMPARE(search.steps, first);
    }

    void aThreadOfASearchEndsWithOne()
    {
        CDeviceDetector detector;
        QVERIFY(detector.StartThread());
        QCOMPARE(ScriptedThreads::RunNext(), 1);
    }

    void theNameIsDropped() { QVERIFY(CDeviceDetector().GetName().isEmpty()); }

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
        QString mac = "of before";
        QVERIFY(!CDeviceDetector().ResolveMacAddress("10.0.0.2", mac));
        QVERIFY(mac.isEmpty());
    }

    void theMacAddressOfNoAddressIsEmpty()
    {
        QString mac = "of before";
        QVERIFY(!CDeviceDetector().ResolveMacAddress(QString(), mac));
        QVERIFY(mac.isEmpty());
        QCOMPARE(ScriptedNeighbours::Calls("resolve"), QStringList{"resolve 255.255.255.255"});
    }

    void theRecordIsAMetaTypeUnderItsName()
    {
        CDeviceDetector detector;
        const QSignalSpy found(&detector, &CDeviceDetector::DeviceFound);
        QVERIFY(found.isValid());
        const int type = QMetaType::type("sDEVICE");
        QCOMPARE(type, qMetaTypeId<sDEVICE>());
        QVERIFY(QTypeInfo<sDEVICE>::isComplex);
        QVERIFY(!QTypeInfo<sDEVICE>::isStatic);
        QVERIFY(QMetaType::typeFlags(type).testFlag(QMetaType::MovableType));
    }
};

QTEST_MAIN(DeviceDetectorTest)
#include "DeviceDetectorTest.moc"
