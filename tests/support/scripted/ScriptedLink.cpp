// SPDX-License-Identifier: MIT

#include "tests/support/scripted/ScriptedLink.h"

#include "platform/Sleep.h"
#include "platform/Sockets.h"

#include <QMap>

#include <algorithm>
#include <chrono>
#include <limits>
#include <memory>
#include <mutex>
#include <thread>

namespace scripted {
namespace {

struct Script
{
    QStringList events;
    int now = 0;
    QByteArray input;
    QMap<int, QByteArray> later;
    // Shared with the call that is under way: what an action keeps is its own.
    std::shared_ptr<std::function<void(const QByteArray&)>> whenSent;
    std::shared_ptr<std::function<void(int)>> whenSlept;
    std::shared_ptr<std::function<void()>> whenConnected;
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

// The connecting thread comes here too: whoever touches these holds the lock. It is one that the
// thread sanitizer knows, which Qt's is not.
std::mutex guard;
Script script;
platform::SocketHandle latestHandle = 0;

template<class Value>
Value Get(Value Script::*member)
{
    const std::lock_guard<std::mutex> lock(guard);
    return script.*member;
}

template<class Value>
void Set(Value Script::*member, const Value& value)
{
    const std::lock_guard<std::mutex> lock(guard);
    script.*member = value;
}

void Note(const QString& event)
{
    const std::lock_guard<std::mutex> lock(guard);
    script.events.append(event);
}

// False when this send is to fail.
bool TakeSend()
{
    const std::lock_guard<std::mutex> lock(guard);
    return script.sendsLeft-- > 0;
}

// For those who hold the lock.
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
    const std::lock_guard<std::mutex> lock(guard);
    script = Script();
}

QStringList Events()
{
    return Get(&Script::events);
}

QStringList Actions()
{
    QStringList actions = Events();
    actions.erase(std::remove_if(actions.begin(), actions.end(),
                      [](const QString& event) { return event.startsWith("sleep "); }),
        actions.end());
    return actions;
}

QList<int> Sleeps()
{
    QList<int> sleeps;
    const QStringList events = Events();
    for (const QString& event : events) {
        if (event.startsWith("sleep ")) {
            sleeps.append(event.mid(6).toInt());
        }
    }
    return sleeps;
}

void ForgetEvents()
{
    Set(&Script::events, {});
}

int Now()
{
    return Get(&Script::now);
}

void Deliver(const QByteArray& bytes)
{
    DeliverAfter(0, bytes);
}

void DeliverAfter(int ms, const QByteArray& bytes)
{
    const std::lock_guard<std::mutex> lock(guard);
    script.later[script.now + ms].append(bytes);
    TakeWhatIsDue();
}

void WhenSent(const std::function<void(const QByteArray&)>& answer)
{
    Set(&Script::whenSent, std::make_shared<std::function<void(const QByteArray&)>>(answer));
}

void WhenSlept(const std::function<void(int)>& action)
{
    Set(&Script::whenSlept, std::make_shared<std::function<void(int)>>(action));
}

void CloseByPeer(int endsOfStream)
{
    const std::lock_guard<std::mutex> lock(guard);
    script.closed = true;
    script.endsOfStream = endsOfStream;
}

void FailSendsFrom(int call)
{
    Set(&Script::sendsLeft, call - 1);
}

void TakeAtMost(int bytes)
{
    Set(&Script::takeAtMost, bytes);
}

void SetConnectResult(ConnectResult result)
{
    Set(&Script::connectResult, result);
}

void WhenConnected(const std::function<void()>& action)
{
    Set(&Script::whenConnected, std::make_shared<std::function<void()>>(action));
}

void FailStart()
{
    Set(&Script::failStart, true);
}

void FailOpen()
{
    Set(&Script::failOpen, true);
}

void FailOptions()
{
    Set(&Script::failOptions, true);
}

void FailResolution()
{
    Set(&Script::failResolution, true);
}

} // namespace scripted

namespace platform {

using scripted::Get;
using scripted::guard;
using scripted::Note;
using scripted::Script;
using scripted::script;

void Sleep(unsigned milliseconds)
{
    Note(QString("sleep %1").arg(milliseconds));
    int now = 0;
    {
        const std::lock_guard<std::mutex> lock(guard);
        script.now += static_cast<int>(milliseconds);
        now = script.now;
        scripted::TakeWhatIsDue();
    }
    const auto action = Get(&Script::whenSlept);
    if (action && *action) {
        (*action)(now);
    }
}

int StartSockets(std::uint16_t version)
{
    Note(QString("start %1").arg(version));
    return Get(&Script::failStart) ? 1 : 0;
}

SocketHandle OpenSocket(std::uint16_t type)
{
    Note(QString("open %1").arg(type));
    const std::lock_guard<std::mutex> lock(guard);
    return script.failOpen ? InvalidSocket : ++scripted::latestHandle;
}

int EnableSocketOption(SocketHandle, SocketOption option)
{
    static const QMap<SocketOption, QString> Names{{SocketOption::ReuseAddress, "reuse address"},
        {SocketOption::OutOfBandInline, "out of band inline"},
        {SocketOption::Broadcast, "broadcast"}};
    Note(QString("option ") + Names.value(option));
    return Get(&Script::failOptions) ? -1 : 0;
}

bool ResolveHost(const char* host, std::uint32_t& address)
{
    Note(QString("resolve ") + QString::fromLatin1(host));
    address = 0x0100007F;
    return !Get(&Script::failResolution);
}

int ConnectSocket(SocketHandle, std::uint32_t, std::uint16_t port)
{
    Note(QString("connect %1").arg(port));
    scripted::ConnectResult result = Get(&Script::connectResult);
    if (result == scripted::ConnectResult::Hangs) {
        std::this_thread::sleep_for(std::chrono::hours(1)); // until the thread is ended
    }
    while (result == scripted::ConnectResult::SucceedsWhenTold) {
        std::this_thread::yield();
        result = Get(&Script::connectResult);
    }
    return result == scripted::ConnectResult::Succeeds ? 0 : -1;
}

int MakeSocketNonBlocking(SocketHandle)
{
    const auto action = Get(&Script::whenConnected);
    if (action && *action) {
        (*action)();
    }
    Note("nonblocking");
    return 0;
}

int ReceiveFromSocket(SocketHandle socket, char* buffer, int length)
{
    if (socket == InvalidSocket) {
        return -1;
    }
    const std::lock_guard<std::mutex> lock(guard);
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
    if (socket == InvalidSocket || !scripted::TakeSend()) {
        Note("send fails");
        return -1;
    }
    const QByteArray bytes(buffer, std::min(length, Get(&Script::takeAtMost)));
    Note(QString("send ") + QString::fromLatin1(bytes.toHex().toUpper()));
    const auto answer = Get(&Script::whenSent);
    if (answer && *answer) {
        (*answer)(bytes);
    }
    return bytes.size();
}

void CloseSocket(SocketHandle)
{
    Note("close");
}

int LastSocketError()
{
    return 1;
}

} // namespace platform
