// SPDX-License-Identifier: MIT

#include "options/CExcelReader.h"

#include "xlsxabstractsheet.h"
#include "xlsxcell.h"
#include "xlsxcelllocation.h"
#include "xlsxdocument.h"
#include "xlsxworkbook.h"
#include "xlsxworksheet.h"

namespace {

using Row = QVector<QString>;
using Sheet = QVector<Row>;

// With one cell far away a sheet can claim to have seventeen thousand million texts.
constexpr qint64 MaximumTexts = 2'000'000;

// Takes the size of the matrix off `textsLeft`.
Sheet TextsOf(QXlsx::Worksheet& worksheet, qint64& textsLeft)
{
    int rowCount = -1;
    int columnCount = -1;
    const QVector<QXlsx::CellLocation> cells = worksheet.getFullCells(&rowCount, &columnCount);
    const qint64 texts = qint64(rowCount) * columnCount;
    if (rowCount <= 0 || columnCount <= 0 || texts > textsLeft) {
        return Sheet();
    }
    textsLeft -= texts;

    Sheet sheet(rowCount, Row(columnCount));
    for (const QXlsx::CellLocation& location : cells) {
        if (location.row > 0 && location.col > 0) {
            sheet[location.row - 1][location.col - 1] = location.cell->value().toString();
        }
    }
    return sheet;
}

} // namespace

bool CExcelReader::ReadFile(QString path)
{
    const QXlsx::Document document(path);
    Sheets.clear();
    if (!document.isLoadPackage()) {
        return false;
    }
    qint64 textsLeft = MaximumTexts;
    const QStringList names = document.sheetNames();
    for (const QString& name : names) {
        QXlsx::AbstractSheet* const sheet = document.sheet(name);
        if (sheet == nullptr) {
            continue;
        }
        QXlsx::Workbook* const workbook = sheet->workbook();
        workbook->setActiveSheet(Sheets.size());
        QXlsx::AbstractSheet* const active = workbook->activeSheet();
        if (active == nullptr) {
            continue;
        }
        auto* const worksheet = dynamic_cast<QXlsx::Worksheet*>(active);
        Sheets.append(worksheet != nullptr ? TextsOf(*worksheet, textsLeft) : Sheet());
    }
    return true;
}

quint16 CExcelReader::GetSheetCount() const
{
    return static_cast<quint16>(Sheets.size());
}

QVector<QVector<QString>> CExcelReader::GetSheet(quint16 index) const
{
    return Sheets.value(index);
}

int CExcelReader::GetRowCount(quint16 index) const
{
    return index < Sheets.size() ? Sheets.at(index).size() : -1;
}

int CExcelReader::GetColumnCount(quint16 index) const
{
    return GetRowCount(index) > 0 ? Sheets.at(index).first().size() : -1;
}
