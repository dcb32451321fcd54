// SPDX-License-Identifier: MIT

#include "bench/Startup.h"

#include "bench/Table.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>

namespace {

constexpr double TimeTarget = 2;
constexpr double MemoryTarget = 1.4;

struct Measures
{
    QVector<double> milliseconds;
    QVector<double> megabytes;
};

void StartOnce(const QString& name, Measures& measures)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QElapsedTimer timer;
    timer.start();
    process.start(QCoreApplication::applicationDirPath() + QLatin1Char('/') + name, QStringList());
    process.waitForReadyRead();
    const double milliseconds = static_cast<double>(timer.nsecsElapsed()) / 1e6;
    process.waitForFinished();
    const QByteArray line = process.readAllStandardOutput().trimmed();
    if (!line.startsWith("painted ")) {
        qFatal("%s did not start", qPrintable(name));
    }
    measures.milliseconds.append(milliseconds);
    measures.megabytes.append(line.mid(8).toDouble() / 1024);
}

} // namespace

void MeasureStartup(Table& table, int repetitions)
{
    Measures tool;
    Measures empty;
    for (int i = 0; i < repetitions; ++i) {
        StartOnce("bench-startup-tool", tool);
        StartOnce("bench-startup-empty", empty);
    }
    table.Add("start-up beside an empty dialog", "ms", Median(tool.milliseconds),
        Median(empty.milliseconds), TimeTarget);
    table.Add("peak memory beside an empty dialog", "MB", Median(tool.megabytes),
        Median(empty.megabytes), MemoryTarget);
}
