// SPDX-License-Identifier: MIT

#include "SheetReader.h"

#include "DateFormats.h"
#include "SharedStrings.h"
#include "XmlPart.h"

#include <algorithm>
#include <limits>

namespace QXlsx {

namespace {

struct Place
{
    int row = -1;
    int column = -1;
};

// "A1" is row 1, column 1; dollar signs may stand before both. -1 for both where it is anything
// else.
Place PlaceOf(const QString& reference)
{
    constexpr int MaximumLetters = 3;
    int i = 0;
    const auto skipDollar = [&] {
        i += i < reference.size() && reference.at(i) == QLatin1Char('$');
    };

    skipDollar();
    const int firstLetter = i;
    int column = 0;
    while (i < reference.size() && reference.at(i) >= QLatin1Char('A') &&
           reference.at(i) <= QLatin1Char('Z') && i - firstLetter < MaximumLetters) {
        column = column * 26 + reference.at(i++).unicode() - 'A' + 1;
    }
    skipDollar();
    bool isNumber = false;
    const uint row = reference.midRef(i).toUInt(&isNumber);
    if (column == 0 || !isNumber || row == 0) {
        return Place();
    }
    return {static_cast<int>(qMin<uint>(row, std::numeric_limits<int>::max())), column};
}

int Following(int number)
{
    return number < std::numeric_limits<int>::max() ? number + 1 : number;
}

bool IsBefore(const CellLocation& a, const CellLocation& b)
{
    return a.row != b.row ? a.row < b.row : a.col < b.col;
}

bool IsSamePlace(const CellLocation& a, const CellLocation& b)
{
    return a.row == b.row && a.col == b.col;
}

} // namespace

SheetReader::SheetReader(const SharedStrings& strings, const DateFormats& dates)
    : strings(strings)
    , dates(dates)
    , store(std::make_shared<std::deque<Cell>>())
{
}

bool SheetReader::Read(Package& package, const QString& part)
{
    XmlPart xml(package, part);
    while (xml.NextChild()) {
        if (xml.Is(QLatin1String("sheetData"))) {
            ReadRows(xml);
        } else {
            xml.SkipElement();
        }
    }
    return xml.Finish();
}

void SheetReader::ReadRows(XmlPart& xml)
{
    while (xml.NextChild()) {
        if (xml.Is(QLatin1String("row"))) {
            ReadRow(xml);
        } else {
            xml.SkipElement();
        }
    }
}

void SheetReader::ReadRow(XmlPart& xml)
{
    const QString number = xml.Attribute(QLatin1String("r"));
    row = number.isNull() ? Following(row) : number.toInt();
    column = 0;
    while (xml.NextChild()) {
        if (xml.Is(QLatin1String("c"))) {
            ReadCell(xml);
        } else {
            xml.SkipElement();
        }
    }
}

void SheetReader::ReadCell(XmlPart& xml)
{
    const QString reference = xml.Attribute(QLatin1String("r"));
    const Place place = reference.isEmpty() ? Place{row, Following(column)} : PlaceOf(reference);
    column = place.column;

    CellLocation location;
    location.row = place.row;
    location.col = place.column;
    store->push_back(Cell(ReadValue(xml)));
    location.cell = std::shared_ptr<Cell>(store, &store->back());
    cells.append(location);
}

QVariant SheetReader::ReadValue(XmlPart& xml)
{
    const QString type = xml.Attribute(QLatin1String("t"));
    const int style = xml.Attribute(QLatin1String("s")).toInt();
    QVariant value;
    while (xml.NextChild()) {
        if (xml.Is(QLatin1String("v"))) {
            value = Value(xml.ElementText(), type, style);
        } else if (xml.Is(QLatin1String("is"))) {
            value = PlainText(xml);
        } else {
            xml.SkipElement();
        }
    }
    return value;
}

QVariant SheetReader::Value(const QString& text, const QString& type, int style) const
{
    if (type == QLatin1String("s")) {
        return strings.Text(text.toInt());
    }
    if (type == QLatin1String("b")) {
        return text.toInt() != 0;
    }
    const bool isText = type == QLatin1String("str") || type == QLatin1String("inlineStr") ||
                        type == QLatin1String("e");
    if (type == QLatin1String("n") || (!isText && dates.IsDate(style))) {
        return text.toDouble();
    }
    return text;
}

QVector<CellLocation> SheetReader::TakeCells()
{
    std::stable_sort(cells.begin(), cells.end(), IsBefore);
    // Of several cells in one place the last one stays.
    const auto first = std::unique(cells.rbegin(), cells.rend(), IsSamePlace).base();
    cells.erase(cells.begin(), first);
    return std::move(cells);
}

} // namespace QXlsx
