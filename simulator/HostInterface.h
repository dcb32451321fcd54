// SPDX-License-Identifier: MIT

#pragma once

#include <QHostAddress>
#include <QString>

namespace simulator {

/// The network interface that stands for the unit's own. The program `ip` makes the changes, and
/// needs the right to make them. Each call blocks until `ip` is done, some milliseconds, five
/// seconds at most. When it fails, the call returns false, with what `ip` said in `error`.
class HostInterface
{
public:
    explicit HostInterface(const QString& name);

    /// Takes the old address off the interface and then puts the new one on it. The other way
    /// round, a new address of the same network would go away together with the old one.
    bool ReplaceAddress(const QHostAddress& oldAddress, const QHostAddress& oldMask,
        const QHostAddress& newAddress, const QHostAddress& newMask, QString& error) const;

    /// `mac`: six bytes.
    bool SetMac(const QByteArray& mac, QString& error) const;

    /// Tells a neighbour the addresses that an interface has now. Otherwise the neighbour would
    /// learn them only when it gives up the old ones. To be called after a change, when the system
    /// has forgotten its neighbours: it sends a datagram to the neighbour's discard port, and for
    /// that the system asks for the neighbour by broadcast.
    static void AnnounceTo(const QHostAddress& neighbour);

private:
    QString name;
};

} // namespace simulator
