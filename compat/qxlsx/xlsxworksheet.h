// SPDX-License-Identifier: MIT

#pragma once

#include "xlsxabstractsheet.h"
#include "xlsxcelllocation.h"

#include <QVector>

namespace QXlsx {

/// A sheet of cells.
class Worksheet : public AbstractSheet
{
public:
    /// All cells that the file has for the sheet, blank ones too, in ascending row and column. Also
    /// gives the highest row and the highest column among them, or -1 for both without any cell. Of
    /// two cells in one place the later one counts.
    QVector<CellLocation> getFullCells(int* maxRow, int* maxCol);

private:
    friend class WorkbookReader;
    Worksheet(Workbook* workbook, const QVector<CellLocation>& cells);

    const QVector<CellLocation> cells;
};

} // namespace QXlsx
