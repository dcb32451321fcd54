// SPDX-License-Identifier: MIT

#pragma once

#include "xlsxcelllocation.h"

#include <QVector>

#include <deque>
#include <memory>

namespace QXlsx {

class DateFormats;
class Package;
class SharedStrings;
class XmlPart;

/// Reads the cells of one worksheet's part.
class SheetReader
{
public:
    SheetReader(const SharedStrings& strings, const DateFormats& dates);

    /// False when the part is not there or not well-formed.
    bool Read(Package& package, const QString& part);

    /// In ascending row and column, each place once. To be called once.
    QVector<CellLocation> TakeCells();

private:
    void ReadRows(XmlPart& xml);
    void ReadRow(XmlPart& xml);
    void ReadCell(XmlPart& xml);
    QVariant ReadValue(XmlPart& xml);
    QVariant Value(const QString& text, const QString& type, int style) const;

    const SharedStrings& strings;
    const DateFormats& dates;

    // A row or cell that does not say where it stands follows the one before.
    int row = 0;
    int column = 0;

    QVector<CellLocation> cells;
    // Holds the cells of all locations. With an allocation for each they would take twice the
    // memory.
    const std::shared_ptr<std::deque<Cell>> store;
};

} // namespace QXlsx
