// SPDX-License-Identifier: MIT

#pragma once

#include "xlsxcell.h"

#include <memory>

namespace QXlsx {

/// A cell and its place. Row and column count from 1 and are what the file claims. Both are -1
/// where it names no place.
class CellLocation
{
public:
    int col = -1;
    int row = -1;
    std::shared_ptr<Cell> cell;
};

} // namespace QXlsx
