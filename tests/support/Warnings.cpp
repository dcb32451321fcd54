// SPDX-License-Identifier: MIT

#include "tests/support/Warnings.h"

#include <QMutex>
#include <QTimer>
#include <QtTest>

namespace {

QtMessageHandler testHandler = nullptr;
QMutex guard;
QStringList warnings;

// What the offscreen platform says of itself at each window of a fixed size.
bool IsOfThePlatform(const QString& message)
{
    return message.startsWith("This plugin does not support");
}

void Collect(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    if (type == QtWarningMsg || type == QtCriticalMsg) {
        const QMutexLocker locker(&guard);
        if (!IsOfThePlatform(message)) {
            warnings.append(message);
        }
    }
    testHandler(type, context, message);
}

// One that was left would look at what the test function had on its stack.
int EndWatches()
{
    const auto* const application = QCoreApplication::instance();
    if (application == nullptr) {
        return 0;
    }
    int waiting = 0;
    const auto watches = application->findChildren<QTimer*>(WatchName);
    for (QTimer* const watch : watches) {
        waiting += watch->isActive() ? 1 : 0;
        delete watch;
    }
    return waiting;
}

} // namespace

void WarningsFail::init()
{
    testHandler = qInstallMessageHandler(Collect);
}

void WarningsFail::cleanup()
{
    qInstallMessageHandler(testHandler);
    const QStringList seen = warnings;
    warnings.clear();
    const int waiting = EndWatches();
    QCOMPARE(seen, QStringList());
    QCOMPARE(waiting, 0);
}
