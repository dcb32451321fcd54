// SPDX-License-Identifier: MIT

#include <QApplication>
#include <QEvent>
#include <QFile>
#include <QTextStream>
#include <QTimer>
#include <QWidget>

namespace {

// The most memory that the process has had so far. ru_maxrss would also count the memory that the
// process had before it became this program.
QByteArray PeakMemoryKb()
{
    QFile status("/proc/self/status");
    if (status.open(QIODevice::ReadOnly)) {
        for (QByteArray line = status.readLine(); !line.isEmpty(); line = status.readLine()) {
            if (line.startsWith("VmHWM:")) {
                return line.simplified().split(' ').value(1);
            }
        }
    }
    return QByteArrayLiteral("0");
}

void SayAndClose()
{
    QTextStream(stdout) << "painted " << PeakMemoryKb() << '\n';
    QApplication::closeAllWindows();
}

/// Waits for the first window to be painted, then closes it.
class PaintWatch : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        const auto* const widget = qobject_cast<QWidget*>(watched);
        if (event->type() == QEvent::Paint && widget != nullptr && widget->isWindow()) {
            qApp->removeEventFilter(this);
            // The widgets in the window are painted after it, in the same pass.
            QTimer::singleShot(0, SayAndClose);
        }
        return false;
    }
};

void WatchForPaint()
{
    qApp->installEventFilter(new PaintWatch(qApp));
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(WatchForPaint)
