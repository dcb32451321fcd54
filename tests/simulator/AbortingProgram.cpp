// SPDX-License-Identifier: MIT

// A test program that does not come to its end: starts a unit, prints its address, and aborts once
// its standard input ends.

#include "tests/support/SimulatorProcess.h"

#include <QCoreApplication>

#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const SimulatorProcess unit;
    std::puts(qPrintable(unit.Address()));
    std::fflush(stdout);
    while (std::getchar() != EOF) {
    }
    std::abort();
}
