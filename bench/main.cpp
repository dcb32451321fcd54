// SPDX-License-Identifier: MIT

#include "bench/Flows.h"
#include "bench/Startup.h"
#include "bench/Table.h"
#include "tests/support/WindowTest.h"

#include <QFile>
#include <QTextStream>
#include <QtTest>

namespace {

struct Repetitions
{
    int startup;
    int flows;
    int search;
};

constexpr Repetitions Thorough{21, 5, 3};
constexpr Repetitions Quick{5, 1, 1};

// The network that scripts/bench lays.
constexpr int UnitsInNetwork = 2;

// In ticks of the kernel, of all processors, since the machine's start.
struct ProcessorTime
{
    double wanted;
    double stolen; // the part of it that the host of a virtual machine gave to others
};

ProcessorTime ProcessorTimeSoFar()
{
    QFile file("/proc/stat");
    if (!file.open(QIODevice::ReadOnly)) {
        return {0, 0};
    }
    // cpu, user, nice, system, idle, iowait, irq, softirq, steal
    const QList<QByteArray> fields = file.readLine().simplified().split(' ');
    ProcessorTime time{0, fields.value(8).toDouble()};
    for (const int field : {1, 2, 3, 6, 7, 8}) {
        time.wanted += fields.value(field).toDouble();
    }
    return time;
}

void SayWhatTheHostTook(const ProcessorTime& before)
{
    const ProcessorTime now = ProcessorTimeSoFar();
    const double wanted = now.wanted - before.wanted;
    const double percent = wanted > 0 ? 100 * (now.stolen - before.stolen) / wanted : 0;
    QTextStream(stdout) << QString(
        "%1 % of the processor time wanted meanwhile went to others on the host.\n")
                               .arg(percent, 0, 'f', 0);
}

int Measure(const Repetitions& repetitions)
{
    if (!QTest::qWaitForWindowExposed(MainWindow())) {
        return 1;
    }
    const ProcessorTime before = ProcessorTimeSoFar();
    Table table;
    MeasureStartup(table, repetitions.startup);
    MeasureFlows(table, repetitions.flows);
    MeasureTransfer(table, repetitions.flows);
    MeasureSearch(table, {"192.168.9.1", "192.168.9.255"}, UnitsInNetwork, repetitions.search);
    SayWhatTheHostTook(before);
    return table.AllReached() ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    const bool quick = argc == 2 && qstrcmp(argv[1], "--quick") == 0;
    if ((argc > 1 && !quick) || qEnvironmentVariableIsEmpty("VX440_IN_BENCH_NETWORK")) {
        // It searches a network that must be one made for it.
        QTextStream(stderr) << "vx440-bench: run scripts/bench [--quick]\n";
        return 2;
    }
    return RunInTheProgram([quick] { return Measure(quick ? Quick : Thorough); }, argc, argv);
}
