// SPDX-License-Identifier: MIT

#include "SharedStrings.h"

#include "XmlPart.h"

namespace QXlsx {

QString PlainText(XmlPart& xml)
{
    QString text;
    while (xml.NextChild()) {
        if (xml.Is(QLatin1String("t"))) {
            text += xml.ElementText();
        } else if (xml.Is(QLatin1String("r"))) {
            text += PlainText(xml);
        } else {
            xml.SkipElement();
        }
    }
    text.squeeze();
    return text;
}

bool SharedStrings::Read(Package& package, const QString& part)
{
    XmlPart xml(package, part);
    while (xml.NextChild()) {
        if (xml.Is(QLatin1String("si"))) {
            texts.append(PlainText(xml));
        } else {
            xml.SkipElement();
        }
    }
    return xml.Finish();
}

QString SharedStrings::Text(int index) const
{
    return texts.value(index);
}

} // namespace QXlsx
