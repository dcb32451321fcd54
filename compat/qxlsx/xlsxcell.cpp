// SPDX-License-Identifier: MIT

#include "xlsxcell.h"

namespace QXlsx {

Cell::Cell(const QVariant& value)
    : content(value)
{
}

QVariant Cell::value() const
{
    return content;
}

} // namespace QXlsx
