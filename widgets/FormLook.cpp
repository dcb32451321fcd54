// SPDX-License-Identifier: MIT

#include "widgets/FormLook.h"

#include <QFontInfo>

namespace {

// These families are equally narrow. The first one that is installed serves.
const QStringList NarrowFamilies{QStringLiteral("Liberation Sans"),
    QStringLiteral("DejaVu Sans Condensed"), QStringLiteral("Arial")};
constexpr int NarrowPixels = 11;

const QString WideFamily = QStringLiteral("DejaVu Sans");
constexpr int WidePixels = 10;

QFont FontOf(const QStringList& families, int pixels)
{
    QFont font(families.first()); // QFont() would be the application's font
    font.setFamilies(families);
    font.setPixelSize(pixels);
    // Shapes only the scripts that cannot be read without it: kerning costs time and 0.7 MB.
    font.setStyleStrategy(QFont::PreferNoShaping);
    font.resolve(QFont::AllPropertiesResolved);
    return font;
}

} // namespace

QFont FormFont()
{
    const QFont narrow = FontOf(NarrowFamilies, NarrowPixels);
    return NarrowFamilies.contains(QFontInfo(narrow).family()) ? narrow
                                                               : FontOf({WideFamily}, WidePixels);
}
