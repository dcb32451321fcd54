#pragma once

#include <QObject>
#include <QStringList>

/// Base of a test class in which a warning of the program fails the test function that caused it.
class WarningsFail : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
};
