#pragma once

#include <QObject>
#include <QStringList>

/// Base of a test class in which a warning of the program fails the test function that caused it. A
/// class with an init() of its own calls this one first.
class WarningsFail : public QObject
{
    Q_OBJECT

protected slots:
    void init();
    void cleanup();
};
