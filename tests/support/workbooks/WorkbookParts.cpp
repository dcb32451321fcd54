// SPDX-License-Identifier: MIT

#include "tests/support/workbooks/WorkbookParts.h"

#include <QFile>

#include <zip.h>

namespace {

const QString WorkbookPart = "xl/workbook.xml";
const QString RelationshipsPart = "xl/_rels/workbook.xml.rels";

QByteArray WithTypes(QByteArray relationships)
{
    return relationships.replace(
        "TYPE", "http://schemas.openxmlformats.org/officeDocument/2006/relationships");
}

QByteArray Relationships(const QByteArray& elements)
{
    return "<?xml version=\"1.0\"?>\n<Relationships xmlns=\"http://schemas.openxmlformats.org/"
           "package/2006/relationships\">" +
           WithTypes(elements) + "</Relationships>";
}

QByteArray MainPart(const QByteArray& element, const QByteArray& content)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<" + element +
           " xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\" xmlns:r=\""
           "http://schemas.openxmlformats.org/officeDocument/2006/relationships\">" +
           content + "</" + element + ">";
}

void AddRelationship(WorkbookParts& parts, const QByteArray& relationship)
{
    parts[RelationshipsPart].replace(
        "</Relationships>", WithTypes(relationship) + "</Relationships>");
}

bool WritePart(zipFile zip, const QString& name, const QByteArray& content)
{
    return zipOpenNewFileInZip64(zip, name.toUtf8().constData(), nullptr, nullptr, 0, nullptr, 0,
               nullptr, Z_DEFLATED, Z_DEFAULT_COMPRESSION, 0) == ZIP_OK &&
           zipWriteInFileInZip(zip, content.constData(), static_cast<unsigned>(content.size())) ==
               ZIP_OK &&
           zipCloseFileInZip(zip) == ZIP_OK;
}

} // namespace

QByteArray WorksheetPart(const QByteArray& rows)
{
    return MainPart("worksheet", "<sheetData>" + rows + "</sheetData>");
}

WorkbookParts WorkbookWithSheets(const QVector<QByteArray>& rowsOfSheets)
{
    WorkbookParts parts;
    parts["[Content_Types].xml"] =
        "<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\"/>";
    parts["_rels/.rels"] = Relationships(
        "<Relationship Id=\"rId1\" Type=\"TYPE/officeDocument\" Target=\"xl/workbook.xml\"/>");
    QByteArray sheets;
    QByteArray relationships;
    for (int i = 1; i <= rowsOfSheets.size(); ++i) {
        const QByteArray number = QByteArray::number(i);
        sheets += "<sheet name=\"Sheet" + number + "\" sheetId=\"" + number + "\" r:id=\"rId" +
                  number + "\"/>";
        relationships += "<Relationship Id=\"rId" + number +
                         "\" Type=\"TYPE/worksheet\" Target=\"worksheets/sheet" + number +
                         ".xml\"/>";
        parts[QString("xl/worksheets/sheet%1.xml").arg(i)] = WorksheetPart(rowsOfSheets.at(i - 1));
    }
    SetSheets(parts, sheets, relationships);
    return parts;
}

void SetSheets(WorkbookParts& parts, const QByteArray& sheets, const QByteArray& relationships)
{
    parts[WorkbookPart] = MainPart("workbook", "<sheets>" + sheets + "</sheets>");
    parts[RelationshipsPart] = Relationships(relationships);
}

void SetSharedStrings(WorkbookParts& parts, const QByteArray& items)
{
    AddRelationship(parts,
        "<Relationship Id=\"strings\" Type=\"TYPE/sharedStrings\" Target=\"sharedStrings.xml\"/>");
    parts["xl/sharedStrings.xml"] = MainPart("sst", items);
}

void SetStyles(WorkbookParts& parts, const QByteArray& elements)
{
    AddRelationship(
        parts, "<Relationship Id=\"styles\" Type=\"TYPE/styles\" Target=\"styles.xml\"/>");
    parts["xl/styles.xml"] = MainPart("styleSheet", elements);
}

bool WriteZip(const QString& path, const WorkbookParts& parts)
{
    zipFile zip = zipOpen64(QFile::encodeName(path).constData(), APPEND_STATUS_CREATE);
    if (zip == nullptr) {
        return false;
    }
    bool isWritten = true;
    for (auto part = parts.begin(); part != parts.end(); ++part) {
        isWritten = isWritten && WritePart(zip, part.key(), part.value());
    }
    return zipClose(zip, nullptr) == ZIP_OK && isWritten;
}
