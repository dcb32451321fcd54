// SPDX-License-Identifier: MIT

#include "link/RavoSocket.h"
#include "tests/support/Warnings.h"
#include "tests/support/scripted/ScriptedLink.h"

#include <QtTest>

class RavoSocketTest : public WarningsFail
{
    Q_OBJECT

private:
    static int ThrownBy(ushort type)
    {
        try {
            RavoSocket socket(type);
        } catch (RavoSocket::RavoSocketException exception) {
            return exception;
        }
        return -1;
    }

private slots:
    void init()
    {
        WarningsFail::init();
        scripted::Reset();
    }

    // Runs first: the sockets are started once in a process, and a failed start may be tried again.
    void aFailedStartThrowsSetupFailedAndTheNextSocketStartsAgain()
    {
        scripted::FailStart();
        QCOMPARE(ThrownBy(1), 1);
        QCOMPARE(scripted::Events(), QStringList{"start 257"});
        scripted::Reset();
        QCOMPARE(ThrownBy(1), -1);
        QCOMPARE(scripted::Events().first(), "start 257");
    }

    void aSecondSocketDoesNotStartTheSocketsAgainAndNoneIsClosedAtItsEnd()
    {
        QCOMPARE(ThrownBy(1), -1);
        QCOMPARE(ThrownBy(1), -1);
        QVERIFY(!scripted::Events().contains("start 257"));
        QVERIFY(!scripted::Events().contains("close"));
    }

    void aTypeThatIsNeitherStreamNorDatagramThrowsInvalidType()
    {
        for (const ushort type : {ushort(0), ushort(3), ushort(65535)}) {
            QCOMPARE(ThrownBy(type), 0);
            QCOMPARE(scripted::Events(), QStringList());
        }
    }

    void aSocketGetsTheOptionsOfItsType()
    {
        const RavoSocket stream(1);
        const RavoSocket datagram(2);
        QCOMPARE(scripted::Events(),
            (QStringList{"open 1", "option reuse address", "option out of band inline", "open 2",
                "option reuse address", "option broadcast"}));
    }

    void aSocketThatCannotBeOpenedOrSetThrowsSetupFailedAndStaysOpen()
    {
        scripted::FailOptions();
        QCOMPARE(ThrownBy(1), 1);
        scripted::FailOpen();
        QCOMPARE(ThrownBy(1), 1);
        QVERIFY(!scripted::Events().contains("close"));
    }

    void connectGivesZeroOnSuccess()
    {
        RavoSocket socket(1);
        scripted::ForgetEvents();
        QCOMPARE(socket.Connect("127.0.0.1", 50000), ushort(0));
        QCOMPARE(scripted::Events(), (QStringList{"resolve 127.0.0.1", "connect 50000"}));
    }

    void connectToAnUnresolvableHostGives65535AndDoesNotConnect()
    {
        scripted::FailResolution();
        RavoSocket socket(1);
        scripted::ForgetEvents();
        QCOMPARE(int(socket.Connect("nobody.invalid", 50000)), 65535);
        QCOMPARE(scripted::Events(), QStringList{"resolve nobody.invalid"});
    }

    void aRefusedConnectGives65535AfterAMillisecondAndLeavesTheSocketOpen()
    {
        scripted::SetConnectResult(scripted::ConnectResult::Fails);
        RavoSocket socket(1);
        scripted::ForgetEvents();
        QCOMPARE(int(socket.Connect("127.0.0.1", 50000)), 65535);
        QCOMPARE(scripted::Events().mid(1), (QStringList{"connect 50000", "sleep 1"}));
    }
};

QTEST_APPLESS_MAIN(RavoSocketTest)
#include "RavoSocketTest.moc"
