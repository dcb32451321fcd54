// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

#include <memory>
#include <vector>

namespace QXlsx {

class AbstractSheet;

/// The sheets of a document, in the order of their tabs.
class Workbook
{
    Q_DISABLE_COPY(Workbook)

public:
    ~Workbook();

    /// By the index of the sheet, from 0. False, without a change, beyond the sheets.
    bool setActiveSheet(int index);
    /// The first sheet until another was made active; null in a workbook without sheets.
    AbstractSheet* activeSheet() const;

private:
    friend class Document;
    friend class WorkbookReader;
    Workbook();

    AbstractSheet* Sheet(int index) const;

    QStringList names;
    std::vector<std::unique_ptr<AbstractSheet>> sheets; ///< by the same index as their names
    int activeIndex = 0;
};

} // namespace QXlsx
