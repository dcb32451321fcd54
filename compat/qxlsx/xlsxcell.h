// SPDX-License-Identifier: MIT

#pragma once

#include <QVariant>

namespace QXlsx {

/// A cell of a worksheet, with the value that the file gives for it. For a formula that is its last
/// result.
class Cell
{
public:
    /// A QString, a double for what the file marks as a number or formats as a date, or a bool. Not
    /// valid for a cell without a value.
    QVariant value() const;

private:
    friend class SheetReader;
    explicit Cell(const QVariant& value);

    QVariant content;
};

} // namespace QXlsx
