// SPDX-License-Identifier: MIT

#include "WorkbookReader.h"

#include "SheetReader.h"
#include "XmlPart.h"
#include "xlsxworkbook.h"
#include "xlsxworksheet.h"

#include <QSet>

namespace QXlsx {

namespace {

bool IsWellFormed(Package& package, const QString& part)
{
    return XmlPart(package, part).Finish();
}

} // namespace

WorkbookReader::WorkbookReader(const QString& path)
    : package(path)
    , workbook(new Workbook)
{
}

WorkbookReader::~WorkbookReader() = default;

std::unique_ptr<Workbook> WorkbookReader::Read()
{
    const bool isRead = package.Open() && ReadRelationships() && ReadSheetEntries() &&
                        ReadStyles() && ReadSharedStrings() && ReadSheets();
    return isRead ? std::move(workbook) : nullptr;
}

bool WorkbookReader::ReadRelationships()
{
    Relationships ofPackage;
    if (!IsWellFormed(package, QStringLiteral("[Content_Types].xml")) ||
        !ofPackage.Read(package, QString())) {
        return false;
    }
    workbookPart = ofPackage.TargetOfType(QLatin1String("/officeDocument"));
    return relationships.Read(package, workbookPart);
}

bool WorkbookReader::ReadSheetEntries()
{
    XmlPart xml(package, workbookPart);
    while (xml.NextChild()) {
        if (xml.Is(QLatin1String("sheets"))) {
            ReadSheetEntries(xml);
        } else {
            xml.SkipElement();
        }
    }
    return entries.size() <= Package::MaximumParts && xml.Finish();
}

void WorkbookReader::ReadSheetEntries(XmlPart& xml)
{
    while (xml.NextChild() && entries.size() <= Package::MaximumParts) {
        entries.append({xml.Attribute(QLatin1String("name")), xml.Attribute(QLatin1String("id"))});
        xml.SkipElement();
    }
}

bool WorkbookReader::ReadStyles()
{
    const QString part = relationships.TargetOfType(QLatin1String("/styles"));
    return part.isEmpty() || dates.Read(package, part);
}

bool WorkbookReader::ReadSharedStrings()
{
    const QString part = relationships.TargetOfType(QLatin1String("/sharedStrings"));
    return part.isEmpty() || strings.Read(package, part);
}

bool WorkbookReader::ReadSheets()
{
    QSet<QString> parts;
    for (const SheetEntry& entry : entries) {
        const QString part = relationships.Target(entry.relationship);
        // With one part for many sheets a small file would take long.
        if (parts.contains(part)) {
            return false;
        }
        parts.insert(part);
        const bool isWorksheet =
            relationships.IsOfType(entry.relationship, QLatin1String("/worksheet"));
        if (!(isWorksheet ? ReadWorksheet(part) : ReadOtherSheet(part))) {
            return false;
        }
        workbook->names.append(entry.name);
    }
    return true;
}

bool WorkbookReader::ReadWorksheet(const QString& part)
{
    SheetReader reader(strings, dates);
    if (!reader.Read(package, part)) {
        return false;
    }
    workbook->sheets.emplace_back(new Worksheet(workbook.get(), reader.TakeCells()));
    return true;
}

bool WorkbookReader::ReadOtherSheet(const QString& part)
{
    workbook->sheets.emplace_back(new AbstractSheet(workbook.get()));
    return IsWellFormed(package, part);
}

} // namespace QXlsx
