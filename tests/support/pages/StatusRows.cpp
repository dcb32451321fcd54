// SPDX-License-Identifier: MIT

#include "tests/support/pages/StatusRows.h"

#include <QFile>
#include <QRegularExpression>

QString UsingPage()
{
    QFile file(USING_PAGE);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

// A row of texts begins with a text in backticks, whose blanks count.
QVector<sSTATUS_ROW> StatusRowsOf(const QString& page)
{
    static const QRegularExpression row(
        R"(^\| `([^`]+)` \| ([^|]*)\| ([^|]*)\|$)", QRegularExpression::MultilineOption);
    static const QRegularExpression variable("<[^>]+>");
    QVector<sSTATUS_ROW> rows;
    auto found = row.globalMatch(page);
    while (found.hasNext()) {
        const QRegularExpressionMatch match = found.next();
        rows.append({match.captured(1).replace(variable, "<>"), match.captured(2).trimmed(),
            match.captured(3).trimmed()});
    }
    return rows;
}
