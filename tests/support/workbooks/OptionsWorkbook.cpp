// SPDX-License-Identifier: MIT

#include "tests/support/workbooks/OptionsWorkbook.h"

#include "tests/support/workbooks/WorkbookParts.h"

#include <algorithm>

namespace {

QByteArray Cell(const char* column, const QByteArray& row, const QString& text)
{
    if (text.isNull()) {
        return QByteArray();
    }
    return "<c r=\"" + (column + row) + "\" t=\"inlineStr\"><is><t xml:space=\"preserve\">" +
           text.toHtmlEscaped().toUtf8() + "</t></is></c>";
}

} // namespace

bool WriteOptionsWorkbook(
    const QString& path, const QStringList& names, const QStringList& descriptions)
{
    QByteArray rows;
    for (int row = 0; row < std::max(names.size(), descriptions.size()); ++row) {
        const QByteArray number = QByteArray::number(row + 1);
        rows += "<row r=\"" + number + "\">" + Cell("A", number, names.value(row)) +
                Cell("B", number, descriptions.value(row)) + "</row>";
    }
    return WriteZip(path, WorkbookWithSheets({rows}));
}
