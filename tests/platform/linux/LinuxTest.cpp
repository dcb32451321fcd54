// SPDX-License-Identifier: MIT

#include "platform/Sleep.h"
#include "platform/SocketHandles.h"
#include "platform/Sockets.h"
#include "platform/Threads.h"
#include "tests/platform/Resolve.h"
#include "tests/support/NetworkTest.h"
#include "tests/support/SimulatorProcess.h"

#include <QFile>
#include <QtTest>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <ctime>
#include <thread>

#include <pthread.h>
#include <sys/prctl.h>
#include <sys/socket.h>

// The linker leads the calls of the platform's sources to these.
extern "C" int RealSocket(int domain, int type, int protocol) asm("__real_socket");
extern "C" int ScriptedSocket(int domain, int type, int protocol) asm("__wrap_socket");
extern "C" int RealClose(int descriptor) asm("__real_close");
extern "C" int ScriptedClose(int descriptor) asm("__wrap_close");
extern "C" int RealReceive(void* kernel) asm("__real_nl_recvmsgs_default");
extern "C" int ScriptedReceive(void* kernel) asm("__wrap_nl_recvmsgs_default");

namespace {

constexpr quint16 Stream = 1;

int nextDescriptor = -1; // -1 for one of the system's
QVector<int> closedDescriptors;
int resultOfReceiving = 0; // 0 for that of the library

std::atomic<int> signalsTaken{0};

void TakeSignal(int)
{
    ++signalsTaken;
}

// A connect in a thread of its own.
class Connecting
{
public:
    Connecting(const QString& ip, quint16 port)
        : handle(platform::OpenSocket(Stream))
        , thread([this, ip, port] {
            result = platform::ConnectSocket(handle, Address(ip), port);
            error = platform::LastSocketError();
            hasPeer = HasPeer();
        })
    {
    }

    // Its calls of the system end with EINTR.
    void Interrupt(int times)
    {
        struct sigaction action
        {
        };
        action.sa_handler = TakeSignal;
        sigaction(SIGUSR1, &action, nullptr);
        for (int time = 0; time < times; ++time) {
            const int before = signalsTaken;
            pthread_kill(thread.native_handle(), SIGUSR1);
            while (signalsTaken == before) {
                std::this_thread::yield();
            }
        }
    }

    void AwaitEnd()
    {
        thread.join();
        platform::CloseSocket(handle);
    }

    int result = 1;
    int error = 0;
    bool hasPeer = false;

private:
    bool HasPeer() const
    {
        sockaddr_storage name{};
        socklen_t size = sizeof name;
        return ::getpeername(static_cast<int>(platform::SocketNumber(handle)),
                   reinterpret_cast<sockaddr*>(&name), &size) == 0;
    }

    platform::SocketHandle handle;
    std::thread thread;
};

int CountUp(void* count)
{
    ++*static_cast<std::atomic<int>*>(count);
    return 0;
}

int MappingsOfThisProcess()
{
    QFile file("/proc/self/maps");
    return file.open(QIODevice::ReadOnly) ? file.readAll().count('\n') : -1;
}

} // namespace

int ScriptedSocket(int domain, int type, int protocol)
{
    return nextDescriptor != -1 ? nextDescriptor : RealSocket(domain, type, protocol);
}

int ScriptedClose(int descriptor)
{
    closedDescriptors.append(descriptor);
    return RealClose(descriptor);
}

int ScriptedReceive(void* kernel)
{
    const int result = RealReceive(kernel);
    return resultOfReceiving != 0 ? resultOfReceiving : result;
}

/// What platform/ owes to this system alone.
class LinuxTest : public NetworkTest
{
    Q_OBJECT

private:
    // The kernel keeps what it has for a neighbour, and asks nobody, until it is told an answer.
    void AskNobody(const QString& device)
    {
        MustRun("neigh flush all nud all");
        MustRun(QString("ntable change name arp_cache dev %1 mcast_probes 0 app_probes 1 "
                        "retrans 1000000")
                    .arg(device));
    }

private slots:
    void initTestCase()
    {
        NetworkTest::initTestCase();
        MustAddHost("192.168.77.20", "02:4c:7e:00:00:20");
    }

    void cleanup()
    {
        nextDescriptor = -1;
        closedDescriptors.clear();
        resultOfReceiving = 0;
        WarningsFail::cleanup();
    }

    void aSleepLeavesTheProcessorToOthers()
    {
        const std::clock_t before = std::clock();
        platform::Sleep(200);
        QVERIFY(std::clock() - before < CLOCKS_PER_SEC / 10);
    }

    void theKernelAddsNothingToASleep()
    {
        platform::Sleep(1);
        QCOMPARE(prctl(PR_GET_TIMERSLACK), 1); // nanoseconds
    }

    void threadsThatHaveEndedLeaveNoStackBehind()
    {
        constexpr int Threads = 100;
        const int before = MappingsOfThisProcess();
        std::atomic<int> ended{0};
        for (int thread = 1; thread <= Threads; ++thread) {
            QVERIFY(platform::StartThread(CountUp, &ended) != platform::InvalidHandle);
            while (ended != thread) {
                std::this_thread::yield();
            }
        }
        QVERIFY(MappingsOfThisProcess() < before + Threads); // a few are kept for the next threads
    }

    void theErrorOfASocketThatDoesNotOpenIsTheSystems()
    {
        QCOMPARE(platform::OpenSocket(99), platform::InvalidSocket);
        QCOMPARE(platform::LastSocketError(), EINVAL);
        QCOMPARE(closedDescriptors, QVector<int>());
    }

    void aSocketWithANumberAbove65535IsClosedAgain()
    {
        nextDescriptor = 65535;
        const platform::SocketHandle handle = platform::OpenSocket(Stream);
        QVERIFY(handle != platform::InvalidSocket);
        QCOMPARE(closedDescriptors, QVector<int>());
        platform::CloseSocket(handle);
        QCOMPARE(closedDescriptors, QVector<int>{65535});

        nextDescriptor = 65536;
        QCOMPARE(platform::OpenSocket(Stream), platform::InvalidSocket);
        QCOMPARE(platform::LastSocketError(), EMFILE);
        QCOMPARE(closedDescriptors, (QVector<int>{65535, 65536}));
    }

    void aTableThatChangesWhileItIsReadHasItsRows()
    {
        MustRun("neigh flush all nud all");
        MustRun("neigh add 192.168.77.9 lladdr 02:4c:7e:00:00:09 dev silent");
        resultOfReceiving = -33; // NLE_DUMP_INTR
        QCOMPARE(platform::ReadNeighbourTable().size(), size_t(1));
        resultOfReceiving = -5; // NLE_NOMEM: some rows may be missing
        QCOMPARE(platform::ReadNeighbourTable().size(), size_t(0));
    }

    void aConnectThatSignalsInterruptGoesOnUntilItStands()
    {
        SimulatorProcess unit({}, "192.168.77.20", network.InLatestHost());
        QVERIFY(unit.IsReady());
        AskNobody("to0");
        Connecting connecting(unit.Address(), 50000);
        QTRY_VERIFY(OwnNetwork::IpOutput("neigh show dev to0").contains("INCOMPLETE"));
        connecting.Interrupt(10);
        MustRun("neigh replace 192.168.77.20 lladdr 02:4c:7e:00:00:20 dev to0 nud reachable");
        connecting.AwaitEnd();
        QCOMPARE(connecting.result, 0);
        QVERIFY(connecting.hasPeer);
    }

    void aConnectThatSignalsInterruptGoesOnUntilItFails()
    {
        AskNobody("silent");
        Connecting connecting("192.168.77.66", 50000);
        QTRY_VERIFY(OwnNetwork::IpOutput("neigh show dev silent").contains("INCOMPLETE"));
        connecting.Interrupt(10);
        MustRun("neigh replace 192.168.77.66 dev silent nud failed");
        connecting.AwaitEnd();
        QCOMPARE(connecting.result, -1);
        QCOMPARE(connecting.error, EHOSTUNREACH);
    }
};

QTEST_GUILESS_MAIN(LinuxTest)
#include "LinuxTest.moc"
