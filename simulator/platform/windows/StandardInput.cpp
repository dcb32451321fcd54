// SPDX-License-Identifier: MIT

#include "simulator/platform/StandardInput.h"

#include <QMutex>
#include <QObject>
#include <QSemaphore>

#include <thread>

#include <windows.h>

namespace simulator::platform {

namespace {

// Takes the bytes in the thread of the event loop. The thread that reads them shares this object,
// because it may still hang in its read when all others have gone.
class Taker
{
public:
    Taker(const std::function<void(char)>& take, const std::function<void()>& ended)
        : take(take)
        , ended(ended)
        , context(std::make_unique<QObject>())
    {
    }

    // The thread that reads calls these. Both return when the byte or the end has been taken, and
    // give false when nobody takes anything any more.
    bool GiveByte(char byte)
    {
        return Give([this, byte] { take(byte); });
    }
    bool GiveEnd() { return Give(ended); }

    void Close()
    {
        const QMutexLocker locker(&guard);
        context.reset();
        taken.release();
    }

private:
    bool Give(const std::function<void()>& call)
    {
        {
            const QMutexLocker locker(&guard);
            if (context == nullptr) {
                return false;
            }
            QMetaObject::invokeMethod(
                context.get(),
                [this, call] {
                    call();
                    taken.release();
                },
                Qt::QueuedConnection);
        }
        taken.acquire();
        return true;
    }

    const std::function<void(char)> take;
    const std::function<void()> ended;
    QMutex guard;
    std::unique_ptr<QObject> context;
    QSemaphore taken;
};

// A thread has to read, because the system does not tell an event loop what comes through a pipe or
// from a console.
void Read(HANDLE input, const std::shared_ptr<Taker>& taker)
{
    char byte = 0;
    DWORD count = 0;
    while (ReadFile(input, &byte, 1, &count, nullptr) != FALSE && count == 1) {
        if (!taker->GiveByte(byte)) {
            return;
        }
    }
    taker->GiveEnd();
}

} // namespace

class StandardInput::Source
{
public:
    Source(const std::function<void(char)>& take, const std::function<void()>& ended)
        : taker(std::make_shared<Taker>(take, ended))
    {
        std::thread(Read, GetStdHandle(STD_INPUT_HANDLE), taker).detach();
    }
    ~Source() { taker->Close(); }
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;

private:
    const std::shared_ptr<Taker> taker;
};

StandardInput::StandardInput(
    const std::function<void(char)>& take, const std::function<void()>& ended)
    : source(std::make_unique<Source>(take, ended))
{
}

StandardInput::~StandardInput() = default;

} // namespace simulator::platform
