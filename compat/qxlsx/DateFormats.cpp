// SPDX-License-Identifier: MIT

#include "DateFormats.h"

#include "XmlPart.h"

#include <algorithm>

namespace QXlsx {

namespace {

struct Range
{
    int first;
    int last;
};

// The numbers of the formats for dates and times that every workbook has without writing them.
constexpr Range BuiltInDateFormats[] = {{14, 22}, {27, 36}, {45, 47}, {50, 58}};

bool IsBuiltInDateFormat(int format)
{
    return std::any_of(std::begin(BuiltInDateFormats), std::end(BuiltInDateFormats),
        [format](const Range& range) { return format >= range.first && format <= range.last; });
}

int End(const QString& code, QChar mark, int from)
{
    const int end = code.indexOf(mark, from);
    return end < 0 ? code.size() : end;
}

// Whether "[...]" is an elapsed time, as "[h]" or "[mm]", and not a colour, a currency or a
// condition.
bool IsElapsedTime(const QString& bracket)
{
    const QString unit = bracket.toLower();
    return !unit.isEmpty() && QStringLiteral("hms").contains(unit.at(0)) &&
           unit.count(unit.at(0)) == unit.size();
}

// A format shows a date when its first section, the one for positive numbers, has a letter of one
// outside quotes, escapes and brackets.
bool IsDateCode(const QString& code)
{
    for (int i = 0; i < code.size(); ++i) {
        switch (code.at(i).toLower().unicode()) {
        case '"':
            i = End(code, QLatin1Char('"'), i + 1);
            break;
        case '[': {
            const int end = End(code, QLatin1Char(']'), i + 1);
            if (IsElapsedTime(code.mid(i + 1, end - i - 1))) {
                return true;
            }
            i = end;
            break;
        }
        case '\\':
        case '_':
        case '*':
            ++i;
            break;
        case ';':
            return false;
        case 'd':
        case 'h':
        case 'm':
        case 's':
        case 'y':
            return true;
        default:
            break;
        }
    }
    return false;
}

} // namespace

bool DateFormats::Read(Package& package, const QString& part)
{
    XmlPart xml(package, part);
    while (xml.NextChild()) {
        if (xml.Is(QLatin1String("numFmts"))) {
            ReadNumberFormats(xml);
        } else if (xml.Is(QLatin1String("cellXfs"))) {
            ReadCellStyles(xml);
        } else {
            xml.SkipElement();
        }
    }
    return xml.Finish();
}

void DateFormats::ReadNumberFormats(XmlPart& xml)
{
    while (xml.NextChild()) {
        isCustomFormatDate.insert(xml.Attribute(QLatin1String("numFmtId")).toInt(),
            IsDateCode(xml.Attribute(QLatin1String("formatCode"))));
        xml.SkipElement();
    }
}

void DateFormats::ReadCellStyles(XmlPart& xml)
{
    while (xml.NextChild()) {
        styleFormats.append(xml.Attribute(QLatin1String("numFmtId")).toInt());
        xml.SkipElement();
    }
}

bool DateFormats::IsDate(int style) const
{
    return style >= 0 && style < styleFormats.size() && IsDateFormat(styleFormats.at(style));
}

bool DateFormats::IsDateFormat(int format) const
{
    return isCustomFormatDate.value(format, IsBuiltInDateFormat(format));
}

} // namespace QXlsx
