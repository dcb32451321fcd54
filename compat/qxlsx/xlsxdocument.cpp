// SPDX-License-Identifier: MIT

#include "xlsxdocument.h"

#include "WorkbookReader.h"
#include "xlsxabstractsheet.h"
#include "xlsxworkbook.h"

namespace QXlsx {

Document::Document(const QString& xlsxName, QObject* parent)
    : QObject(parent)
    , workbook(WorkbookReader(xlsxName).Read())
{
}

Document::~Document() = default;

bool Document::isLoadPackage() const
{
    return workbook != nullptr;
}

QStringList Document::sheetNames() const
{
    return workbook ? workbook->names : QStringList();
}

AbstractSheet* Document::sheet(const QString& sheetName) const
{
    return workbook ? workbook->Sheet(workbook->names.indexOf(sheetName)) : nullptr;
}

} // namespace QXlsx
