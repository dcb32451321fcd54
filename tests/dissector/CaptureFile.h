// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

/// A packet capture, written byte by byte as a test wants it. Time passes only when it is told to.
class CaptureFile
{
public:
    /// The connection of the packets that follow: a new one, to a unit that no earlier one was to.
    void NewUnit();
    /// The same to the unit of the connection before.
    void NewConnection();

    void Wait(double milliseconds) { microseconds += static_cast<quint64>(milliseconds * 1000); }
    /// One segment each. `lacking`: how many bytes at its end the capture does not have.
    void FromTool(const QByteArray& bytes, int lacking = 0);
    void FromUnit(const QByteArray& bytes);

    int PacketCount() const { return packetCount; }
    /// False when the file cannot be written.
    bool Save(const QString& path) const;

private:
    struct End
    {
        quint32 address;
        quint16 port;
        quint32 sequence;
    };

    void Segment(End& from, End& to, const QByteArray& bytes, int lacking);

    QByteArray packets;
    int packetCount = 0;
    quint64 microseconds = 0;
    End tool{0x0A000001, 40000, 1};
    End unit{0x0A010000, 50000, 1};
};
