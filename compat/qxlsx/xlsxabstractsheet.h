// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

namespace QXlsx {

class Workbook;

/// A sheet of any kind: a Worksheet, or one that holds no cells, such as a chart.
class AbstractSheet
{
    Q_DISABLE_COPY(AbstractSheet)

public:
    virtual ~AbstractSheet();

    /// The workbook that owns the sheet.
    Workbook* workbook() const;

protected:
    explicit AbstractSheet(Workbook* workbook);

private:
    friend class WorkbookReader;

    Workbook* const owner;
};

} // namespace QXlsx
