// SPDX-License-Identifier: MIT

#include "xlsxworkbook.h"

#include "xlsxabstractsheet.h"

namespace QXlsx {

Workbook::Workbook() = default;

Workbook::~Workbook() = default;

bool Workbook::setActiveSheet(int index)
{
    if (Sheet(index) == nullptr) {
        return false;
    }
    activeIndex = index;
    return true;
}

AbstractSheet* Workbook::activeSheet() const
{
    return Sheet(activeIndex);
}

AbstractSheet* Workbook::Sheet(int index) const
{
    const bool exists = index >= 0 && index < names.size();
    return exists ? sheets[static_cast<size_t>(index)].get() : nullptr;
}

} // namespace QXlsx
