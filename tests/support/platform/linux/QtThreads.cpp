// SPDX-License-Identifier: MIT

// What the thread sanitizer has to know of Qt's threads. Qt is not built with it, and orders its
// threads by locks of its own that it does not see. The program's definitions come before those in
// Qt's library.

#include <QThread>
#include <QVariant>

#include <dlfcn.h>
#include <sanitizer/tsan_interface.h>

extern "C" void __tsan_ignore_thread_begin();
extern "C" void __tsan_ignore_thread_end();

namespace {

using Start = void (*)(QThread*, QThread::Priority);
using Wait = bool (*)(QThread*, QDeadlineTimer);

template<class Function>
Function InQt(const char* name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

// The watchdog of QtTest and the reader of a file dialog share data with the main thread by Qt's
// locks alone. Nothing of the tool runs in them.
bool IsQtsOwn(const QThread& thread)
{
    const QByteArray name = thread.metaObject()->className();
    return name == "QThread" || name == "QFileInfoGatherer";
}

void Begin(const QThread& thread)
{
    if (IsQtsOwn(thread)) {
        __tsan_ignore_thread_begin();
    }
}

void End(QThread& thread)
{
    if (IsQtsOwn(thread)) {
        __tsan_ignore_thread_end();
    }
    __tsan_release(&thread);
}

} // namespace

void QThread::start(Priority priority)
{
    static const auto start = InQt<Start>("_ZN7QThread5startENS_8PriorityE");
    constexpr char watched[] = "watched";
    if (!property(watched).toBool()) {
        setProperty(watched, true);
        connect(
            this, &QThread::started, this, [this] { Begin(*this); }, Qt::DirectConnection);
        // Emitted in the thread, also when it is terminated.
        connect(
            this, &QThread::finished, this, [this] { End(*this); }, Qt::DirectConnection);
    }
    start(this, priority);
}

// Who has waited for a thread comes behind all that it did.
bool QThread::wait(QDeadlineTimer deadline)
{
    static const auto wait = InQt<Wait>("_ZN7QThread4waitE14QDeadlineTimer");
    const bool ended = wait(this, deadline);
    if (ended) {
        __tsan_acquire(this);
    }
    return ended;
}
