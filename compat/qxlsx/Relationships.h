// SPDX-License-Identifier: MIT

#pragma once

#include <QHash>
#include <QString>

namespace QXlsx {

class Package;

/// Which parts a part of a package refers to, by the names that it has for them.
class Relationships
{
public:
    /// Those of `part`; of the package itself where the name is empty. False when the package lacks
    /// them, or they are not well-formed or more than a package has parts.
    bool Read(Package& package, const QString& part);

    /// The part's name in the package, and the end of its type such as "/worksheet". Both empty for
    /// an id that is not there.
    QString Target(const QString& id) const;
    bool IsOfType(const QString& id, QLatin1String type) const;
    /// The target of one relationship of a type; empty where there is none.
    QString TargetOfType(QLatin1String type) const;

private:
    struct Relationship
    {
        QString type;
        QString target;
    };
    QHash<QString, Relationship> relationships; ///< by id
};

} // namespace QXlsx
