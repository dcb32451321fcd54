// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QVector>

/// The parts of a workbook as a test makes it, by their name in the package.
using WorkbookParts = QMap<QString, QByteArray>;

/// A worksheet's part with these rows inside its "sheetData".
QByteArray WorksheetPart(const QByteArray& rows);

/// The smallest workbook with worksheets of these rows, named "Sheet1" and on. Their parts are
/// "xl/worksheets/sheet1.xml" and on, and the relationships to them "rId1" and on.
WorkbookParts WorkbookWithSheets(const QVector<QByteArray>& rowsOfSheets);

/// Sets what "xl/workbook.xml" has for its sheets, as "sheet" elements, and what its relationships
/// are, as "Relationship" elements. Their types may be written with "TYPE" for the common
/// beginning.
void SetSheets(WorkbookParts& parts, const QByteArray& sheets, const QByteArray& relationships);

/// Adds the part of the texts that cells share, "si" elements, and that of the styles, whose
/// elements are "numFmts" and "cellXfs".
void SetSharedStrings(WorkbookParts& parts, const QByteArray& items);
void SetStyles(WorkbookParts& parts, const QByteArray& elements);

/// False when the file could not be written.
bool WriteZip(const QString& path, const WorkbookParts& parts);
