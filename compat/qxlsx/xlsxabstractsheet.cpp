// SPDX-License-Identifier: MIT

#include "xlsxabstractsheet.h"

namespace QXlsx {

AbstractSheet::AbstractSheet(Workbook* workbook)
    : owner(workbook)
{
}

AbstractSheet::~AbstractSheet() = default;

Workbook* AbstractSheet::workbook() const
{
    return owner;
}

} // namespace QXlsx
