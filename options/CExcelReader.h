// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QString>
#include <QVector>

/// The texts of a workbook's sheets. Each sheet is a matrix from row 1 and column A to the last row
/// and the last column that hold a cell. A place without a cell is an empty text.
class CExcelReader : public QObject
{
    Q_OBJECT

public:
    /// Reads all sheets, the first one at index 0. A chart is a sheet without rows. False, and no
    /// sheets, when the file is no workbook or cannot be read.
    ///
    /// The matrices together hold at most two million texts. A sheet that would exceed this has no
    /// rows.
    bool ReadFile(QString path);

    quint16 GetSheetCount() const;

    /// Empty for an index beyond the sheets.
    QVector<QVector<QString>> GetSheet(quint16 index) const;

    /// -1 for an index beyond the sheets.
    int GetRowCount(quint16 index) const;

    /// The number of texts in the first row. -1 for an index beyond the sheets, and for a sheet
    /// without rows.
    int GetColumnCount(quint16 index) const;

private:
    QVector<QVector<QVector<QString>>> Sheets;
};
