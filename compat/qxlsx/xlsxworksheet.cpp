// SPDX-License-Identifier: MIT

#include "xlsxworksheet.h"

namespace QXlsx {

Worksheet::Worksheet(Workbook* workbook, const QVector<CellLocation>& cells)
    : AbstractSheet(workbook)
    , cells(cells)
{
}

QVector<CellLocation> Worksheet::getFullCells(int* maxRow, int* maxCol)
{
    *maxRow = -1;
    *maxCol = -1;
    for (const CellLocation& location : cells) {
        *maxRow = qMax(*maxRow, location.row);
        *maxCol = qMax(*maxCol, location.col);
    }
    return cells;
}

} // namespace QXlsx
