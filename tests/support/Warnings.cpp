#include "tests/support/Warnings.h"

#include <QMutex>
#include <QtTest>

namespace {

QtMessageHandler testHandler = nullptr;
QMutex guard;
QStringList warnings;

// What the offscreen platform says of itself at each window of a fixed size.
bool IsOfThePlatform(const QString& message)
{
    return message.startsWith(QLatin1String("This plugin does not support"));
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
    QCOMPARE(seen, QStringList());
}
