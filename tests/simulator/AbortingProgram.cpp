// A test program that does not come to its end: starts a unit, prints its address, and aborts once
// its standard input ends.
//
// AbortingProgram RunningSimulator|SimulatorProcess

#include "tests/simulator/RunningSimulator.h"
#include "tests/support/SimulatorProcess.h"

#include <QCoreApplication>

#include <cstdio>
#include <cstdlib>

namespace {

void AbortInTime(const QString& address)
{
    std::puts(qPrintable(address));
    std::fflush(stdout);
    while (std::getchar() != EOF) {
    }
    std::abort();
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    if (application.arguments().value(1) == "RunningSimulator") {
        const RunningSimulator unit;
        AbortInTime(RunningSimulator::Address(1));
    }
    const SimulatorProcess unit;
    AbortInTime(unit.Address());
}
