// SPDX-License-Identifier: MIT

#include "bench/Table.h"

#include <QTextStream>

#include <algorithm>

namespace {

void PrintRow(const QString& name, const QString& measured, const QString& reference,
    const QString& ratio, const QString& target)
{
    QTextStream(stdout) << name.leftJustified(36) << measured.rightJustified(14)
                        << reference.rightJustified(14) << ratio.rightJustified(8) << "  " << target
                        << '\n';
}

} // namespace

double Median(QVector<double> values)
{
    const auto middle = values.begin() + values.size() / 2;
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

Table::Table()
{
    PrintRow(QString(), "measured", "reference", "ratio", "target");
}

void Table::Add(
    const QString& name, const QString& unit, double measured, double reference, double target)
{
    const QString form = QString("%1 ") + unit;
    const double ratio = measured / reference;
    const bool reached = target == 0 || ratio <= target;
    allReached = allReached && reached;
    PrintRow(name, form.arg(measured, 0, 'f', 1), form.arg(reference, 0, 'f', 1),
        QString::number(ratio, 'f', 3),
        target == 0 ? QString()
                    : QString("%1 %2").arg(target, 0, 'f', 2).arg(reached ? "reached" : "MISSED"));
}
