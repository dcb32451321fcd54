// SPDX-License-Identifier: MIT

#include "simulator/HostInterface.h"

#include <QProcess>
#include <QStringList>
#include <QUdpSocket>

namespace simulator {

namespace {

constexpr int LongestRunMs = 5000;
constexpr quint16 DiscardPort = 9;

bool RunIp(const QStringList& arguments, QString& error)
{
    QProcess ip;
    ip.start(QStringLiteral("ip"), arguments);
    const bool ended = ip.waitForFinished(LongestRunMs);
    if (ended && ip.exitStatus() == QProcess::NormalExit && ip.exitCode() == 0) {
        return true;
    }
    const QString said = QString::fromLocal8Bit(ip.readAllStandardError()).trimmed();
    error = QStringLiteral("ip %1: %2")
                .arg(arguments.join(QLatin1Char(' ')), said.isEmpty() ? ip.errorString() : said);
    return false;
}

QString WithPrefix(const QHostAddress& address, const QHostAddress& mask)
{
    const quint32 bits = mask.toIPv4Address();
    const uint prefix = bits == 0xffffffffU ? 32 : qCountLeadingZeroBits(~bits);
    return QStringLiteral("%1/%2").arg(address.toString()).arg(prefix);
}

} // namespace

HostInterface::HostInterface(const QString& name)
    : name(name)
{
}

bool HostInterface::ReplaceAddress(const QHostAddress& oldAddress, const QHostAddress& oldMask,
    const QHostAddress& newAddress, const QHostAddress& newMask, QString& error) const
{
    const QString address = QStringLiteral("address");
    const QString dev = QStringLiteral("dev");
    const bool deleted =
        RunIp({address, QStringLiteral("del"), WithPrefix(oldAddress, oldMask), dev, name}, error);
    QString addError;
    const bool added = RunIp(
        {address, QStringLiteral("add"), WithPrefix(newAddress, newMask), dev, name}, addError);
    if (!added) {
        error = addError;
    }
    return deleted && added;
}

bool HostInterface::SetMac(const QByteArray& mac, QString& error) const
{
    return RunIp({QStringLiteral("link"), QStringLiteral("set"), QStringLiteral("dev"), name,
                     QStringLiteral("address"), QString::fromLatin1(mac.toHex(':'))},
        error);
}

void HostInterface::AnnounceTo(const QHostAddress& neighbour)
{
    QUdpSocket().writeDatagram(QByteArray(), neighbour, DiscardPort);
}

} // namespace simulator
