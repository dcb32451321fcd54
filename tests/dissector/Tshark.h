// SPDX-License-Identifier: MIT

#pragma once

#include <QMetaType>
#include <QString>
#include <QStringList>
#include <QVector>

/// A field of the dissector as tshark shows it.
struct sDISSECTED_FIELD
{
    /// With "vx440." in front.
    QString name;
    QString value;
    /// As the tree shows it, with label and unit.
    QString text;
    /// Of the field's bytes in its frame; the size is 0 where the dissector worked the field out.
    int position;
    int size;
};

/// A packet in which the dissector found something. `frame` counts the packets of the capture
/// from 1.
struct sDISSECTED_PACKET
{
    int frame;
    QVector<sDISSECTED_FIELD> fields;

    /// The values of all fields of that name, which is given without "vx440.".
    QStringList Values(const char* name) const;
    bool Has(const char* name) const { return !Values(name).isEmpty(); }
    /// The names of the expert information, without what they all begin with.
    QStringList Experts() const;
};

struct sDISSECTION
{
    /// What went wrong with the run itself, or what Lua complained of; empty when all was well.
    QString error;
    QVector<sDISSECTED_PACKET> packets;

    /// The experts of all packets, each as "FRAME NAME".
    QStringList Experts() const;
    /// Without fields when the dissector found nothing in that frame.
    sDISSECTED_PACKET Packet(int frame) const;
};

enum class Passes
{
    One,
    Two
};
Q_DECLARE_METATYPE(Passes)

/// Has tshark read a capture with the dissector of this tree, and no other settings or plugins.
sDISSECTION Dissect(const QString& capture, Passes passes = Passes::Two);

/// How many packets of a capture match a display filter; -1 when tshark fails.
int CountPackets(const QString& capture, const QString& filter, Passes passes);

bool TsharkIsInstalled();
