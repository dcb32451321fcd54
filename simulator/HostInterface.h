#pragma once

#include <QHostAddress>
#include <QString>

namespace simulator {

/// The network interface that stands for the unit's own. Changes go through the program `ip`, which
/// needs the right to them; each call blocks until it is done, some milliseconds, five seconds at
/// most. False, with what `ip` said in `error`, when it fails.
class HostInterface
{
public:
    explicit HostInterface(const QString& name);

    /// Takes the old address off the interface and puts the new one on it, in this order: the other
    /// way round an address of the same network would go away together with the old one.
    bool ReplaceAddress(const QHostAddress& oldAddress, const QHostAddress& oldMask,
        const QHostAddress& newAddress, const QHostAddress& newMask, QString& error) const;

    /// `mac`: six bytes.
    bool SetMac(const QByteArray& mac, QString& error) const;

    /// Tells a neighbour the addresses that an interface has now, which it would otherwise learn
    /// only when it gives up the old ones. To be called after a change, for which the system
    /// forgets its neighbours: a datagram to the discard port then has it ask for this one by
    /// broadcast.
    static void AnnounceTo(const QHostAddress& neighbour);

private:
    QString name;
};

} // namespace simulator
