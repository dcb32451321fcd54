#pragma once

#include <QObject>
#include <QStringList>

/// Base of a test class in which a warning of the program fails the test function that caused it,
/// and a window that it waited for in vain the function, too. A class with an init() of its own
/// calls this one first, one with a cleanup() of its own this one last.
class WarningsFail : public QObject
{
    Q_OBJECT

protected slots:
    void init();
    void cleanup();
};
