// SPDX-License-Identifier: MIT

#include "Relationships.h"

#include "Package.h"
#include "XmlPart.h"

#include <QDir>

namespace QXlsx {

namespace {

// Up to and with the last slash; empty for a part at the root.
QString Folder(const QString& part)
{
    return part.left(part.lastIndexOf(QLatin1Char('/')) + 1);
}

QString RelationshipsPart(const QString& part)
{
    const QString folder = Folder(part);
    return folder + QLatin1String("_rels/") + part.mid(folder.size()) + QLatin1String(".rels");
}

// A target begins with a slash at the package's root, without one at the folder of its part.
QString Resolved(const QString& target, const QString& part)
{
    const bool isAbsolute = target.startsWith(QLatin1Char('/'));
    return QDir::cleanPath(isAbsolute ? target.mid(1) : Folder(part) + target);
}

} // namespace

bool Relationships::Read(Package& package, const QString& part)
{
    XmlPart xml(package, RelationshipsPart(part));
    while (xml.NextChild() && relationships.size() <= Package::MaximumParts) {
        if (xml.Is(QLatin1String("Relationship"))) {
            relationships.insert(xml.Attribute(QLatin1String("Id")),
                {xml.Attribute(QLatin1String("Type")),
                    Resolved(xml.Attribute(QLatin1String("Target")), part)});
        }
        xml.SkipElement();
    }
    return relationships.size() <= Package::MaximumParts && xml.Finish();
}

QString Relationships::Target(const QString& id) const
{
    return relationships.value(id).target;
}

bool Relationships::IsOfType(const QString& id, QLatin1String type) const
{
    return relationships.value(id).type.endsWith(type);
}

QString Relationships::TargetOfType(QLatin1String type) const
{
    for (const Relationship& relationship : relationships) {
        if (relationship.type.endsWith(type)) {
            return relationship.target;
        }
    }
    return QString();
}

} // namespace QXlsx
