// SPDX-License-Identifier: MIT

#include "tests/dissector/CaptureFile.h"

#include <QDataStream>
#include <QFile>

namespace {

constexpr int IpHeader = 20;
constexpr int TcpHeader = 20;
constexpr quint32 LongestPacket = 65535;
constexpr quint32 RawIp = 101;

} // namespace

void CaptureFile::NewUnit()
{
    ++unit.address;
    NewConnection();
}

void CaptureFile::NewConnection()
{
    tool.port = tool.port == 49999 ? 30000 : quint16(tool.port + 1);
    tool.sequence = 1;
    unit.sequence = 1;
}

void CaptureFile::FromTool(const QByteArray& bytes, int lacking)
{
    Segment(tool, unit, bytes, lacking);
}

void CaptureFile::FromUnit(const QByteArray& bytes)
{
    Segment(unit, tool, bytes, 0);
}

bool CaptureFile::Save(const QString& path) const
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        return false;
    }
    QDataStream out(&file);
    out << quint32(0xA1B2C3D4) << quint16(2) << quint16(4) << quint32(0) << quint32(0)
        << LongestPacket << RawIp;
    out.writeRawData(packets.constData(), packets.size());
    return out.status() == QDataStream::Ok && file.flush();
}

void CaptureFile::Segment(End& from, End& to, const QByteArray& bytes, int lacking)
{
    QDataStream out(&packets, QIODevice::Append);
    const auto length = static_cast<quint32>(IpHeader + TcpHeader + bytes.size());
    out << quint32(microseconds / 1000000) << quint32(microseconds % 1000000)
        << quint32(length - static_cast<quint32>(lacking)) << length;
    out << quint16(0x4500) << quint16(length) << quint32(0) << quint8(64) << quint8(6) << quint16(0)
        << from.address << to.address;
    out << from.port << to.port << from.sequence << to.sequence << quint16(0x5018) << quint16(8192)
        << quint32(0);
    out.writeRawData(bytes.constData(), bytes.size() - lacking);
    from.sequence += static_cast<quint32>(bytes.size());
    ++packetCount;
}
