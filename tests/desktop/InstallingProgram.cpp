// SPDX-License-Identifier: MIT

// The program with the dialog of an installation on show. Prints the numbers that the display knows
// both windows by, and goes on until its standard input ends.

#include "shell/CCustomProgressDialog.h"
#include "tests/support/WindowTest.h"

#include <QSocketNotifier>
#include <QTest>

#include <cstdio>

namespace {

int ShowInstallation()
{
    bool ended = false;
    QSocketNotifier input(0, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, [&ended] { ended = true; });
    CCustomProgressDialog dialog("Installing ...", 0, 0, MainWindow());
    dialog.SetCloseButtonHidden(true);
    dialog.setValue(0);
    std::printf("%llu %llu\n", qulonglong(MainWindow()->winId()), qulonglong(dialog.winId()));
    std::fflush(stdout);
    int pass = 0;
    while (!ended) {
        dialog.setValue(++pass);
        QTest::qWait(20);
    }
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    return RunInTheProgram(ShowInstallation, argc, argv);
}
