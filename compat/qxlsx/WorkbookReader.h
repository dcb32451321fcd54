// SPDX-License-Identifier: MIT

#pragma once

#include "DateFormats.h"
#include "Package.h"
#include "Relationships.h"
#include "SharedStrings.h"

#include <QVector>

#include <memory>

namespace QXlsx {

class Workbook;
class XmlPart;

/// Makes a workbook from the parts of its file.
class WorkbookReader
{
public:
    explicit WorkbookReader(const QString& path);
    ~WorkbookReader();

    /// Null when the file is not a whole package of a workbook within the bounds. To be called
    /// once.
    std::unique_ptr<Workbook> Read();

private:
    struct SheetEntry
    {
        QString name;
        QString relationship;
    };

    bool ReadRelationships();
    bool ReadSheetEntries();
    void ReadSheetEntries(XmlPart& xml);
    bool ReadStyles();
    bool ReadSharedStrings();
    bool ReadSheets();
    bool ReadWorksheet(const QString& part);
    bool ReadOtherSheet(const QString& part);

    Package package;
    QString workbookPart;
    Relationships relationships; ///< those of the workbook's part
    QVector<SheetEntry> entries;
    SharedStrings strings;
    DateFormats dates;
    std::unique_ptr<Workbook> workbook;
};

} // namespace QXlsx
