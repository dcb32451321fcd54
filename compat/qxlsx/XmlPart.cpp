// SPDX-License-Identifier: MIT

#include "XmlPart.h"

#include "ForwardDevice.h"
#include "Package.h"

namespace QXlsx {

namespace {

// A cell's text has at most 32767 characters, of at most three bytes each.
constexpr qint64 MaximumTokenLength = 100 * 1024;
constexpr int MaximumDepth = 100;
constexpr int MaximumAttributes = 100;

} // namespace

/// Passes the bytes of a part on, and ends where one token takes too many of them. The XML reader
/// would gather them all.
class XmlPart::Content : public ForwardDevice
{
public:
    explicit Content(std::unique_ptr<QIODevice> content)
        : content(std::move(content))
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    void BeginToken() { tokenLength = 0; }

protected:
    qint64 readData(char* data, qint64 maximum) override
    {
        if (!content || tokenLength > MaximumTokenLength) {
            return -1;
        }
        const qint64 count = content->read(data, maximum);
        tokenLength += count;
        return count;
    }

private:
    const std::unique_ptr<QIODevice> content;
    qint64 tokenLength = 0;
};

XmlPart::XmlPart(Package& package, const QString& name)
    : package(package)
    , content(std::make_unique<Content>(package.Part(name)))
    , reader(content.get())
{
    // Looking up prefixes takes long where there are many.
    reader.setNamespaceProcessing(false);
    NextChild();
}

XmlPart::~XmlPart() = default;

bool XmlPart::NextChild()
{
    for (;;) {
        switch (ReadToken()) {
        case QXmlStreamReader::StartElement:
            return true;
        case QXmlStreamReader::EndElement:
        case QXmlStreamReader::EndDocument:
        case QXmlStreamReader::Invalid:
            return false;
        default:
            break;
        }
    }
}

void XmlPart::SkipElement()
{
    const int outside = depth - 1;
    while (depth > outside && ReadToken() != QXmlStreamReader::Invalid) {
    }
}

QString XmlPart::ElementText()
{
    QString text;
    for (;;) {
        switch (ReadToken()) {
        case QXmlStreamReader::Characters:
            text += reader.text();
            break;
        case QXmlStreamReader::StartElement:
            SkipElement();
            break;
        case QXmlStreamReader::EndElement:
        case QXmlStreamReader::Invalid:
            text.squeeze();
            return text;
        default:
            break;
        }
    }
}

bool XmlPart::Is(QLatin1String name) const
{
    return reader.name() == name;
}

QString XmlPart::Attribute(QLatin1String name) const
{
    const QXmlStreamAttributes attributes = reader.attributes();
    for (const QXmlStreamAttribute& attribute : attributes) {
        if (attribute.name() == name) {
            return attribute.value().toString();
        }
    }
    return QString();
}

bool XmlPart::Finish()
{
    QXmlStreamReader::TokenType token;
    do {
        token = ReadToken();
    } while (token != QXmlStreamReader::EndDocument && token != QXmlStreamReader::Invalid);
    return token == QXmlStreamReader::EndDocument;
}

QXmlStreamReader::TokenType XmlPart::ReadToken()
{
    content->BeginToken();
    const QXmlStreamReader::TokenType token = reader.readNext();
    if (token == QXmlStreamReader::StartElement) {
        ++depth;
    } else if (token == QXmlStreamReader::EndElement) {
        --depth;
    }
    const bool isWithinBounds = package.TakeToken(reader.text().size()) &&
                                token != QXmlStreamReader::DTD && depth <= MaximumDepth &&
                                reader.attributes().size() <= MaximumAttributes;
    if (reader.hasError() || !isWithinBounds) {
        reader.raiseError(); // unlike the end of the content this is final
        return QXmlStreamReader::Invalid;
    }
    return token;
}

} // namespace QXlsx
