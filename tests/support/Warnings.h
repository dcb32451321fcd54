// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QStringList>

/// The name of the timers, children of the application, that wait for a window.
constexpr char WatchName[] = "windowWatch";

/// The base of every test class. A warning of the program or of Qt fails the test function that
/// caused it. So does a window that the test function waited for in vain. A class with an init() of
/// its own calls this one first; one with a cleanup() of its own calls this one last.
class WarningsFail : public QObject
{
    Q_OBJECT

protected slots:
    void init();
    void cleanup();
};
