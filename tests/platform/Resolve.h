// SPDX-License-Identifier: MIT

#pragma once

#include "platform/NeighbourTable.h"

#include <QByteArray>
#include <QString>

#include <array>

/// What a resolution has given.
struct Answer
{
    unsigned error;
    quint32 length;
    QByteArray bytes; ///< all eight that there was room for, as hexadecimal pairs with colons
};

inline quint32 Address(const QString& text)
{
    return platform::ParseIpv4Address(text.toLatin1().constData());
}

inline Answer Resolve(const QString& ip, quint32 length = 6, quint32 source = 0)
{
    std::array<quint8, 8> address{};
    address.fill(0xFF);
    const unsigned error = platform::ResolveNeighbour(Address(ip), source, address.data(), &length);
    return {error, length,
        QByteArray(reinterpret_cast<const char*>(address.data()), int(address.size())).toHex(':')};
}
