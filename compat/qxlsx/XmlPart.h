// SPDX-License-Identifier: MIT

#pragma once

#include <QXmlStreamReader>

#include <memory>

namespace QXlsx {

class Package;

/// Reads an XML part of a package element by element. Names are local ones, without a namespace's
/// prefix.
///
/// Some things stand in no real workbook and only cost time and memory. They fail the part like bad
/// XML: a document type, elements nested more than 100 deep, a tag of more than 100 attributes, a
/// tag or text of more than 100 KiB, and more tokens than the package has left.
class XmlPart
{
    Q_DISABLE_COPY(XmlPart)

public:
    /// Begins in the part's outermost element. A part that the package lacks has failed. The
    /// package outlives the object.
    XmlPart(Package& package, const QString& name);
    ~XmlPart();

    /// Moves to the next element inside the current one. False at the end of the current one, and
    /// when the part has failed. Each element must be taken by one of the next two functions, or
    /// child by child.
    bool NextChild();
    void SkipElement();
    /// The text of the current element without that of the elements inside.
    QString ElementText();

    bool Is(QLatin1String name) const;
    /// Of the current element; a null text where it has none of that name.
    QString Attribute(QLatin1String name) const;

    /// Reads the rest, and tells whether all of the part was well-formed. Call it once.
    bool Finish();

private:
    class Content;

    QXmlStreamReader::TokenType ReadToken();

    Package& package;
    const std::unique_ptr<Content> content;
    QXmlStreamReader reader;
    int depth = 0;
};

} // namespace QXlsx
