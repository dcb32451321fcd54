// SPDX-License-Identifier: MIT

#include "link/RavoSocketStream.h"
#include "tests/support/Warnings.h"
#include "tests/support/scripted/ScriptedLink.h"

#include <QtTest>

class RavoSocketStreamTest : public WarningsFail
{
    Q_OBJECT

private:
    RavoSocketStream stream{7};
    char text[8] = {};
    uchar bytes[8] = {};

private slots:
    void init()
    {
        WarningsFail::init();
        scripted::Reset();
        std::fill(std::begin(text), std::end(text), '?');
        std::fill(std::begin(bytes), std::end(bytes), uchar('?'));
    }

    void receiveGivesTheCountWhenAllIsThere()
    {
        scripted::Deliver("abc");
        QCOMPARE(stream.Receive(text, 3), 3);
        QCOMPARE(QByteArray(text, 4), QByteArray("abc?"));
    }

    void receiveOfTwoWithOneWaitingFailsAndTheOneStaysInTheBuffer()
    {
        scripted::Deliver("a");
        QCOMPARE(stream.Receive(text, 2), -1);
        QCOMPARE(QByteArray(text, 2), QByteArray("a?"));
        QCOMPARE(stream.Receive(text, 1), -1);
        QCOMPARE(scripted::Sleeps(), QList<int>());
    }

    void receiveOfNothingTouchesNothing()
    {
        scripted::Deliver("a");
        for (const int length : {0, -1}) {
            QCOMPARE(stream.Receive(text, length), 0);
            QCOMPARE(stream.ReceiveWithTimeout(bytes, length, 100), 0);
            QCOMPARE(text[0], '?');
            QCOMPARE(bytes[0], uchar('?'));
        }
        QCOMPARE(stream.Receive(text, 1), 1);
        QCOMPARE(scripted::Events(), QStringList());
    }

    void theEndOfTheStreamAddsNothingAndTheReadGoesOn()
    {
        scripted::CloseByPeer(1000);
        QCOMPARE(stream.Receive(text, 1), -1); // only the failure behind the 1000 ends it
    }

    void receiveWithTimeoutSleepsOnceForEach10MsThatHaveBegun()
    {
        const QMap<int, int> looksOfTimeout{{-1, 0}, {0, 0}, {1, 1}, {10, 1}, {11, 2}, {20, 2}};
        for (auto timeout = looksOfTimeout.cbegin(); timeout != looksOfTimeout.cend(); ++timeout) {
            scripted::ForgetEvents();
            QCOMPARE(stream.ReceiveWithTimeout(bytes, 1, timeout.key()), 0);
            QCOMPARE(scripted::Sleeps(), QVector<int>(timeout.value(), 10).toList());
        }
    }

    void receiveWithTimeoutOfOnePassSleepsBeforeItReads()
    {
        scripted::DeliverAfter(10, "a");
        QCOMPARE(stream.ReceiveWithTimeout(bytes, 1, 10), 1);
        QCOMPARE(bytes[0], uchar('a'));
        QCOMPARE(scripted::Sleeps(), QList<int>{10});
    }

    void receiveWithTimeoutCountsPassesAndCollectsWhatComes()
    {
        scripted::DeliverAfter(10, "a");
        scripted::DeliverAfter(30, "b");
        QCOMPARE(stream.ReceiveWithTimeout(bytes, 3, 45), 2);
        QCOMPARE(QByteArray(reinterpret_cast<char*>(bytes), 3), QByteArray("ab?"));
        QCOMPARE(scripted::Sleeps(), (QList<int>{10, 10, 10, 10, 10}));
    }

    void receiveWithTimeoutStopsAtTheLastByte()
    {
        scripted::DeliverAfter(20, "ab");
        QCOMPARE(stream.ReceiveWithTimeout(bytes, 2, 1000), 2);
        QCOMPARE(scripted::Sleeps(), (QList<int>{10, 10}));
    }

    void sendGivesZeroAndNotACount()
    {
        QCOMPARE(stream.Send("abc", 3), 0);
        QCOMPARE(scripted::Events(), QStringList{"send 616263"});
    }

    void sendOfNothingTouchesNothing()
    {
        QCOMPARE(stream.Send("abc", 0), 0);
        QCOMPARE(stream.Send("abc", -1), 0);
        QCOMPARE(scripted::Events(), QStringList());
    }

    void sendGoesOnWhereTheSystemStopped()
    {
        scripted::TakeAtMost(2);
        QCOMPARE(stream.Send("abcde", 5), 0);
        QCOMPARE(scripted::Events(), (QStringList{"send 6162", "send 6364", "send 65"}));
    }

    void sendFailsWithMinusOneAndIsNotTriedAgain()
    {
        scripted::TakeAtMost(2);
        scripted::FailSendsFrom(2);
        QCOMPARE(stream.Send("abcde", 5), -1);
        QCOMPARE(scripted::Events(), (QStringList{"send 6162", "send fails"}));
    }
};

QTEST_APPLESS_MAIN(RavoSocketStreamTest)
#include "RavoSocketStreamTest.moc"
