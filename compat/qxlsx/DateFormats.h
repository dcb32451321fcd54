// SPDX-License-Identifier: MIT

#pragma once

#include <QMap>
#include <QVector>

namespace QXlsx {

class Package;
class XmlPart;

/// Which of a workbook's cell styles show a number as a date or a time.
class DateFormats
{
public:
    /// Takes the part of the styles. False when it is not there or not well-formed.
    bool Read(Package& package, const QString& part);

    /// By the index of the style; false for one that is not there.
    bool IsDate(int style) const;

private:
    void ReadNumberFormats(XmlPart& xml);
    void ReadCellStyles(XmlPart& xml);
    bool IsDateFormat(int format) const;

    QMap<int, bool> isCustomFormatDate; ///< by the number of the format
    QVector<int> styleFormats;          ///< by the index of the style
};

} // namespace QXlsx
