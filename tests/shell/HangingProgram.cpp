// SPDX-License-Identifier: MIT

// The program with a user in a hurry: starts what its argument says, closes the progress dialog
// while a thread of it hangs, then the window. Prints "closing" just before that.
//
// HangingProgram connect|search ADDRESS

#include "shell/CVX440_AccessApplication.h"
#include "tests/support/WindowTest.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

#include <cstdio>

namespace {

void CloseAll()
{
    std::puts("closing");
    std::fflush(stdout);
    MainWindow()->close();
}

// A few events later the attempt or the search is at work.
void CloseProgressSoon()
{
    QTimer::singleShot(300, MainWindow(), [] { CloseByTitleBar(VisibleProgress()); });
}

void Act(const QString& what, const QString& address)
{
    WhenProgressShows(CloseProgressSoon);
    if (what == "connect") {
        ConnectTo(address);
    } else {
        ShowPage("Detect Z&K Device");
        Overtype(Find<QLineEdit>("txtStartIpAddress"), address);
        Overtype(Find<QLineEdit>("txtEndIpAddress"), address.section('.', 0, 2) + ".255");
        Click(Find<QPushButton>("btnFindDevices"));
    }
    CloseAll();
}

} // namespace

int main(int argc, char** argv)
{
    const QString what = QString::fromLatin1(argv[1]);
    const QString address = QString::fromLatin1(argv[2]);
    QObject user;
    QMetaObject::invokeMethod(
        &user, [&] { Act(what, address); }, Qt::QueuedConnection);
    const CVX440_AccessApplication application(argc, argv);
    return 0;
}
