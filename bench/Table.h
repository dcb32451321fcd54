#pragma once

#include <QString>
#include <QVector>

/// The middle one of the values, of which there must be one at least.
double Median(QVector<double> values);

/// The table of results. A row compares what was measured with what it has to be measured by.
class Table
{
public:
    Table();

    /// Prints a row. `target` is the highest ratio that is good; 0 for none.
    void Add(
        const QString& name, const QString& unit, double measured, double reference, double target);

    bool AllReached() const { return allReached; }

private:
    bool allReached = true;
};
