// SPDX-License-Identifier: MIT

#pragma once

#include <QMetaType>
#include <QString>

/// One host that a search has found.
struct sDEVICE
{
    QString ipAddress;  ///< dotted, as the search built it
    QString macAddress; ///< six pairs of lower-case hexadecimal digits with colons between them
};

Q_DECLARE_TYPEINFO(sDEVICE, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(sDEVICE)
