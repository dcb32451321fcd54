#include "tests/support/scripted/ScriptedLink.h"

#include "platform/Sleep.h"
#include "platform/Sockets.h"

#include <QMap>
#include <QMutex>

#include <algorithm>
#include <chrono>
#include <limits>
#include <thread>

namespace scripted {
namespace {

struct Script
{
    QStringList events;
    int now = 0;
    QByteArray input;
    QMap<int, QByteArray> later;
    std::function<void(const QByteArray&)> whenSent;
    std::function<void(int)> whenSlept;
    bool closed = false;
    int endsOfStream = 0;
    int sendsLeft = std::numeric_limits<int>::max();
    int takeAtMost = std::numeric_limits<int>::max();
    ConnectResult connectResult = ConnectResult::Succeeds;
    bool failStart = false;
    bool failOpen = false;
    bool failOptions = false;
    bool failResolution = false;
};

// The connecting thread comes here too.
QMutex guard;
Script script;
platform::SocketHandle latestHandle = 0;

void Note(const QString& event)
{
    const QMutexLocker locker(&guard);
    script.events.append(event);
}

ConnectResult CurrentConnectResult()
{
    const QMutexLocker locker(&guard);
    return script.connectResult;
}

void TakeWhatIsDue()
{
    while (!script.later.isEmpty() && script.later.firstKey() <= script.now) {
        script.input.append(script.later.first());
        script.later.erase(script.later.begin());
    }
}

} // namespace

void Reset()
{
    const QMutexLocker locker(&guard);
    script = Script();
}

QStringList Events()
{
    const QMutexLocker locker(&guard);
    return script.events;
}

QStringList Actions()
{
    QStringList actions = Events();
    actions.erase(
        std::remove_if(actions.begin(), actions.end(),
            [](const QString& event) { return event.startsWith(QLatin1String("sleep ")); }),
        actions.end());
    return actions;
}

QList<int> Sleeps()
{
    QList<int> sleeps;
    const QStringList events = Events();
    for (const QString& event : events) {
        if (event.startsWith(QLatin1String("sleep "))) {
            sleeps.append(event.mid(6).toInt());
        }
    }
    return sleeps;
}

void ForgetEvents()
{
    const QMutexLocker locker(&guard);
    script.events.clear();
}

int Now()
{
    const QMutexLocker locker(&guard);
    return script.now;
}

void Deliver(const QByteArray& bytes)
{
    DeliverAfter(0, bytes);
}

void DeliverAfter(int ms, const QByteArray& bytes)
{
    const QMutexLocker locker(&guard);
    script.later[script.now + ms].append(bytes);
    TakeWhatIsDue();
}

void WhenSent(const std::function<void(const QByteArray&)>& answer)
{
    script.whenSent = answer;
}

void WhenSlept(const std::function<void(int)>& action)
{
    script.whenSlept = action;
}

void CloseByPeer(int endsOfStream)
{
    const QMutexLocker locker(&guard);
    script.closed = true;
    script.endsOfStream = endsOfStream;
}

void FailSendsFrom(int call)
{
    script.sendsLeft = call - 1;
}

void TakeAtMost(int bytes)
{
    script.takeAtMost = bytes;
}

void SetConnectResult(ConnectResult result)
{
    const QMutexLocker locker(&guard);
    script.connectResult = result;
}

void FailStart()
{
    script.failStart = true;
}

void FailOpen()
{
    script.failOpen = true;
}

void FailOptions()
{
    script.failOptions = true;
}

void FailResolution()
{
    script.failResolution = true;
}

} // namespace scripted

namespace platform {

using scripted::guard;
using scripted::Note;
using scripted::script;

void Sleep(unsigned milliseconds)
{
    Note(QStringLiteral("sleep %1").arg(milliseconds));
    int now = 0;
    {
        const QMutexLocker locker(&guard);
        script.now += static_cast<int>(milliseconds);
        now = script.now;
        scripted::TakeWhatIsDue();
    }
    if (script.whenSlept) {
        script.whenSlept(now);
    }
}

int StartSockets(std::uint16_t version)
{
    Note(QStringLiteral("start %1").arg(version));
    return script.failStart ? 1 : 0;
}

SocketHandle OpenSocket(std::uint16_t type)
{
    Note(QStringLiteral("open %1").arg(type));
    return script.failOpen ? InvalidSocket : ++scripted::latestHandle;
}

int EnableSocketOption(SocketHandle, SocketOption option)
{
    static const QMap<SocketOption, QString> Names{
        {SocketOption::ReuseAddress, QStringLiteral("reuse address")},
        {SocketOption::OutOfBandInline, QStringLiteral("out of band inline")},
        {SocketOption::Broadcast, QStringLiteral("broadcast")}};
    Note(QStringLiteral("option ") + Names.value(option));
    return script.failOptions ? -1 : 0;
}

bool ResolveHost(const char* host, std::uint32_t& address)
{
    Note(QStringLiteral("resolve ") + QString::fromLatin1(host));
    address = 0x0100007F;
    return !script.failResolution;
}

int ConnectSocket(SocketHandle, std::uint32_t, std::uint16_t port)
{
    Note(QStringLiteral("connect %1").arg(port));
    scripted::ConnectResult result = scripted::CurrentConnectResult();
    if (result == scripted::ConnectResult::Hangs) {
        std::this_thread::sleep_for(std::chrono::hours(1)); // until the thread is ended
    }
    while (result == scripted::ConnectResult::SucceedsWhenTold) {
        std::this_thread::yield();
        result = scripted::CurrentConnectResult();
    }
    return result == scripted::ConnectResult::Succeeds ? 0 : -1;
}

int MakeSocketNonBlocking(SocketHandle)
{
    Note(QStringLiteral("nonblocking"));
    return 0;
}

int ReceiveFromSocket(SocketHandle socket, char* buffer, int length)
{
    if (socket == InvalidSocket) {
        return -1;
    }
    const QMutexLocker locker(&guard);
    if (script.input.isEmpty()) {
        return script.closed && script.endsOfStream-- > 0 ? 0 : -1;
    }
    const int count = std::min(length, script.input.size());
    std::copy_n(script.input.cbegin(), count, buffer);
    script.input.remove(0, count);
    return count;
}

int SendToSocket(SocketHandle socket, const char* buffer, int length)
{
    if (socket == InvalidSocket || script.sendsLeft-- <= 0) {
        Note(QStringLiteral("send fails"));
        return -1;
    }
    const QByteArray bytes(buffer, std::min(length, script.takeAtMost));
    Note(QStringLiteral("send ") + QString::fromLatin1(bytes.toHex().toUpper()));
    if (script.whenSent) {
        script.whenSent(bytes);
    }
    return bytes.size();
}

void CloseSocket(SocketHandle)
{
    Note(QStringLiteral("close"));
}

int LastSocketError()
{
    return 1;
}

} // namespace platform
