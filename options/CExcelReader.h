#pragma once

#include <QObject>
#include <QString>
#include <QVector>

/// The texts of a workbook's sheets, each a matrix of the rows from 1 to the last one and the
/// columns from A to the last one that hold a cell. What holds none is an empty text.
class CExcelReader : public QObject
{
    Q_OBJECT

public:
    /// Reads all sheets, the first one at index 0; a chart is a sheet without rows. False when the
    /// file is no workbook, or cannot be read; there are no sheets then.
    ///
    /// A matrix of more than two million texts is not made, nor one that together with those before
    /// it is: its sheet has no rows.
    bool ReadFile(QString path);

    quint16 GetSheetCount() const;

    /// Empty for an index beyond the sheets.
    QVector<QVector<QString>> GetSheet(quint16 index) const;

    /// -1 for an index beyond the sheets.
    int GetRowCount(quint16 index) const;

    /// That of the first row; -1 for an index beyond the sheets, and for a sheet without rows.
    int GetColumnCount(quint16 index) const;

private:
    QVector<QVector<QVector<QString>>> Sheets;
};
