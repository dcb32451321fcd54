// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QVector>

/// The middle one of the values. There must be at least one.
double Median(QVector<double> values);

/// The table of results. A row compares a measured value with its reference.
class Table
{
public:
    Table();

    /// Prints a row. `target` is the highest ratio that is good, or 0 where there is no target.
    void Add(
        const QString& name, const QString& unit, double measured, double reference, double target);

    bool AllReached() const { return allReached; }

private:
    bool allReached = true;
};
