// SPDX-License-Identifier: MIT

#include "link/CDeviceCommunication.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/Warnings.h"
#include "tests/support/platform/ProcessResources.h"

#include <QDir>
#include <QSignalSpy>
#include <QtTest>

/// The real link against a unit, again and again.
class LinkLifetimeTest : public WarningsFail
{
    Q_OBJECT

private:
    static bool Connect(const SimulatorProcess& unit)
    {
        TheDeviceCommunication()->StartConnection(unit.Address().toLatin1());
        TheDeviceCommunication()->wait();
        return TheDeviceCommunication()->IsConnected();
    }

private slots:
    void aThousandConnectsLeakNeitherDescriptorsNorThreads()
    {
        for (const bool disconnecting : {true, false}) { // a new attempt over a link ends that too
            const SimulatorProcess unit;
            QVERIFY(unit.IsReady());
            QVERIFY(Connect(unit));
            if (disconnecting) {
                TheDeviceCommunication()->Disconnect();
            }
            const int handles = OpenHandles();
            const int threads = RunningThreads();
            for (int i = 0; i < 1000; ++i) {
                QVERIFY(Connect(unit));
                if (disconnecting) {
                    TheDeviceCommunication()->Disconnect();
                }
            }
            QCOMPARE(OpenHandles(), handles);
            // A thread that has been waited for may still be going.
            QTRY_VERIFY(RunningThreads() <= threads);
        }
        TheDeviceCommunication()->Disconnect();
    }

    void aRefusedConnectIsNoConnection()
    {
        TheDeviceCommunication()->StartConnection("127.0.0.1"); // nobody listens there
        TheDeviceCommunication()->wait();
        QVERIFY(!TheDeviceCommunication()->IsConnected());
    }

    void aStaleStreamNeverReachesADescriptorThatIsGivenOutAgain()
    {
        const SimulatorProcess unit;
        QVERIFY(unit.IsReady());
        QVERIFY(Connect(unit));
        TheDeviceCommunication()->Disconnect();
        QFile taker(
            QDir::tempPath() + QString("/vx440-taker-%1").arg(QCoreApplication::applicationPid()));
        QVERIFY(taker.open(QIODevice::ReadWrite)); // has the socket's number now
        const QSignalSpy lost(TheDeviceCommunication(), &CDeviceCommunication::ConnectionLost);
        QVERIFY(!TheDeviceCommunication()->SendMotorConfiguration(0, {1, 2, 3}));
        QCOMPARE(lost.count(), 1);
        QCOMPARE(taker.size(), qint64(0));
        taker.remove();
    }

    void aUnitThatResetsEndsTheLinkAtTheNextSendAndNoSignalKillsTheProcess()
    {
        SimulatorProcess unit;
        QVERIFY(unit.IsReady());
        QVERIFY(Connect(unit));
        QVERIFY(unit.WaitForLine("connected "));
        QVERIFY(unit.Tell("drop"));
        const QSignalSpy lost(TheDeviceCommunication(), &CDeviceCommunication::ConnectionLost);
        QVERIFY(!TheDeviceCommunication()->SendMotorConfiguration(0, {1}));
        QVERIFY(!TheDeviceCommunication()->IsConnected());
        QCOMPARE(lost.count(), 1);
    }

    void aReadAfterAResetComesBack()
    {
        SimulatorProcess unit;
        QVERIFY(unit.IsReady());
        QVERIFY(Connect(unit));
        QVERIFY(unit.WaitForLine("connected "));
        QVERIFY(unit.Tell("fault resetting:CF0"));
        uchar block[75] = {};
        QVERIFY(!TheDeviceCommunication()->ReadConfiguration(block, sizeof block));
        QVERIFY(!TheDeviceCommunication()->ReadConfiguration(block, sizeof block));
        QVERIFY(!TheDeviceCommunication()->IsConnected());
    }
};

QTEST_GUILESS_MAIN(LinkLifetimeTest)
#include "LinkLifetimeTest.moc"
