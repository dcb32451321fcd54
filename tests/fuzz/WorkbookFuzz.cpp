// SPDX-License-Identifier: MIT

// The reader of workbooks. The first byte of the input chooses what the rest is: one part of a
// workbook that is whole otherwise, or the file itself.

#include "options/CExcelReader.h"
#include "tests/fuzz/FuzzTarget.h"
#include "tests/support/workbooks/WorkbookParts.h"

#include <QFile>
#include <QTemporaryDir>

namespace {

// Where the workbooks are written, one over the other.
struct Place
{
    Place()
        : path(folder.filePath("workbook"))
    {
    }

    const QTemporaryDir folder;
    const QString path;
};

// The whole workbook, with all parts that are read.
WorkbookParts WholeWorkbook()
{
    WorkbookParts parts = WorkbookWithSheets({"<row><c t='s' s='1'><v>0</v></c></row>"});
    SetSharedStrings(parts, "<si><t>text</t></si>");
    SetStyles(parts, "<cellXfs><xf numFmtId='0'/><xf numFmtId='14'/></cellXfs>");
    return parts;
}

void WriteInput(const QString& path, uint8_t choice, const QByteArray& content)
{
    WorkbookParts parts = WholeWorkbook();
    const QStringList names = parts.keys();
    const int index = choice % (names.size() + 1);
    if (index < names.size()) {
        parts[names.at(index)] = content;
        Require(WriteZip(path, parts));
    } else {
        QFile file(path);
        Require(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    }
}

void RequireEvenRows(const CExcelReader& reader, quint16 index)
{
    const QVector<QVector<QString>> sheet = reader.GetSheet(index);
    Require(sheet.size() == reader.GetRowCount(index));
    for (const QVector<QString>& row : sheet) {
        Require(row.size() == reader.GetColumnCount(index));
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const Place place;
    if (size == 0) {
        return 0;
    }
    WriteInput(place.path, data[0],
        QByteArray(reinterpret_cast<const char*>(data + 1), static_cast<int>(size) - 1));

    CExcelReader reader;
    const bool isRead = reader.ReadFile(place.path);
    Require(isRead || reader.GetSheetCount() == 0);
    for (quint16 index = 0; index < reader.GetSheetCount(); ++index) {
        RequireEvenRows(reader, index);
    }
    return 0;
}
