#include "bench/Flows.h"
#include "bench/Startup.h"
#include "bench/Table.h"
#include "tests/support/WindowTest.h"

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

int Measure(const Repetitions& repetitions)
{
    if (!QTest::qWaitForWindowExposed(MainWindow())) {
        return 1;
    }
    Table table;
    MeasureStartup(table, repetitions.startup);
    MeasureFlows(table, repetitions.flows);
    MeasureTransfer(table, repetitions.flows);
    MeasureSearch(table, {QStringLiteral("192.168.9.1"), QStringLiteral("192.168.9.255")},
        UnitsInNetwork, repetitions.search);
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
