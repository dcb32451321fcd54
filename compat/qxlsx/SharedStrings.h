// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

namespace QXlsx {

class Package;
class XmlPart;

/// The plain text of the current element, a string of a workbook: its runs joined, without the
/// phonetic hints beside them.
QString PlainText(XmlPart& xml);

/// The texts that cells name by their index.
class SharedStrings
{
public:
    /// False when the part is not there or not well-formed.
    bool Read(Package& package, const QString& part);

    /// Empty for an index that no text has.
    QString Text(int index) const;

private:
    QStringList texts;
};

} // namespace QXlsx
