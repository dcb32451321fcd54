// SPDX-License-Identifier: MIT

#include "tests/platform/Resolve.h"
#include "tests/support/NetworkTest.h"
#include "tests/support/scripted/ScriptedClock.h"

#include <QtTest>

#include <cerrno>

namespace {

const QString SilentIp = "192.168.77.66";

using Waits = QVector<unsigned>;

} // namespace

/// How a resolution waits for the kernel: the clock is scripted, and the kernel neither has an
/// answer nor gives up until it is told so.
class NeighbourWaitTest : public NetworkTest
{
    Q_OBJECT

private:
    // As the third wait begins.
    void InThirdWait(const QString& change)
    {
        ScriptedClock::SetDuringWait([this, change](unsigned) {
            if (ScriptedClock::Waits().size() == 3) {
                MustRun(QString("neigh replace %1 dev silent ").arg(SilentIp) + change);
            }
        });
    }

private slots:
    void init()
    {
        WarningsFail::init();
        ScriptedClock::Reset();
        MustRun("neigh flush all nud all");
        MustRun("ntable change name arp_cache dev silent retrans 1000000");
    }

    void anAnswerThatComesLateIsSeenInTheLookBehindIt()
    {
        InThirdWait("lladdr 02:4c:7e:00:00:66 nud reachable");
        const Answer answer = Resolve(SilentIp);
        QCOMPARE(answer.error, 0U);
        QCOMPARE(answer.bytes, "02:4c:7e:00:00:66:ff:ff");
        QCOMPARE(ScriptedClock::Waits(), (Waits{10, 20, 40}));
    }

    void whatTheKernelHasGivenUpIsNotWaitedForAnyMore()
    {
        InThirdWait("nud failed");
        QCOMPARE(Resolve(SilentIp).error, unsigned(EHOSTUNREACH));
        QCOMPARE(ScriptedClock::Waits(), (Waits{10, 20, 40}));
    }

    void anAnswerThatIsThereIsNotWaitedFor()
    {
        MustRun(QString("neigh add %1 lladdr 02:4c:7e:00:00:66 dev silent").arg(SilentIp));
        QCOMPARE(Resolve(SilentIp).error, 0U);
        QCOMPARE(ScriptedClock::Waits(), Waits());
    }

    void anAddressThatTheKernelKeepsTryingIsLeftAfterTwentySeconds()
    {
        QCOMPARE(Resolve(SilentIp).error, unsigned(EHOSTUNREACH));
        QCOMPARE(ScriptedClock::Waits(), (Waits{10, 20, 40, 80} + Waits(124, 160)));
    }
};

QTEST_GUILESS_MAIN(NeighbourWaitTest)
#include "NeighbourWaitTest.moc"
