// SPDX-License-Identifier: MIT

#include "link/DeviceReconfiguration.h"

#include "discovery/CDeviceDetector.h"
#include "link/CDeviceCommunication.h"
#include "model/CDeviceDatabase.h"
#include "platform/Sleep.h"

#include <QByteArray>
#include <QMap>
#include <QStringList>

namespace {

constexpr unsigned MacChangeMs = 100;
constexpr int AddressOctets = 4;

struct DeviceInfo
{
    QString macAddress;
    QString partNumber;
    QString serialNumber;
    QString firmwareVersion;
};

// "maker,product,part/serial,version": the first two are not looked at.
void ParseIdentity(const QString& answer, DeviceInfo& info)
{
    const QStringList fields = answer.split(QLatin1Char(','));
    if (fields.size() <= 3) {
        return;
    }
    const QStringList numbers = fields.at(2).split(QLatin1Char('/'));
    if (numbers.size() < 2) {
        return;
    }
    info.partNumber = numbers.at(0);
    info.serialNumber = numbers.at(1);
    info.firmwareVersion = fields.at(3);
}

// Zero for a part that is missing; surplus parts are left out.
QByteArray OctetsOf(const QString& address)
{
    QByteArray octets;
    const QStringList parts = address.split(QLatin1Char('.'));
    for (const QString& part : parts) {
        octets.append(static_cast<char>(part.toUInt(nullptr, 10)));
    }
    return octets.leftJustified(AddressOctets, '\0', true);
}

} // namespace

void ReadDeviceInfo()
{
    CDeviceDatabase* const database = TheDeviceDatabase();
    DeviceInfo info;
    if (TheDeviceCommunication()->IsConnected()) {
        ParseIdentity(TheDeviceCommunication()->ReadIdentity(), info);
        CDeviceDetector().ResolveMacAddress(database->GetIpAddress(), info.macAddress);
    }
    database->SetMacAddress(info.macAddress);
    database->SetPartNumber(info.partNumber, CDeviceDatabase::DeviceSet);
    database->SetSerialNumber(info.serialNumber, CDeviceDatabase::DeviceSet);
    database->SetFirmwareVersion(info.firmwareVersion);
}

QString BuildDeviceIdentity(QString part, QString serial)
{
    return QStringLiteral("ZELMA&KOVINTH,VX440,") + part + QLatin1Char('/') + serial +
           QLatin1Char('\r');
}

bool ChangeDeviceConfiguration(QString serial, QString part, QString mac, QString description)
{
    CDeviceDatabase* const database = TheDeviceDatabase();
    database->SetApplicationStatus(
        QStringLiteral("Changing ") + description + QStringLiteral(" ..."));
    const QString ip = database->GetIpAddress();
    const QString mask = database->GetSubnetMask();
    QMap<int, ushort> motor0;
    QMap<int, ushort> motor1;
    const bool complete =
        database->GetMotorParameters(0, motor0) && database->GetMotorParameters(1, motor1);
    const QString identity = BuildDeviceIdentity(part, serial);
    return complete && TheDeviceCommunication()->SendDeviceConfiguration(
                           identity, mac, ip, mask, motor0, motor1);
}

bool ChangeMacViaConfiguration(QString mac, QString&)
{
    CDeviceDatabase* const database = TheDeviceDatabase();
    return ChangeDeviceConfiguration(
        database->GetSerialNumber(), database->GetPartNumber(), mac, QStringLiteral("MAC Address"));
}

bool ChangeMacDirect(QString mac, QString&)
{
    const bool sent = TheDeviceCommunication()->SendMacAddress(mac);
    platform::Sleep(MacChangeMs);
    return sent;
}

bool ChangeIpConfiguration(QString ip, QString mask, QString&, bool* changed)
{
    CDeviceDatabase* const database = TheDeviceDatabase();
    if (ip == database->GetIpAddress() && mask == database->GetSubnetMask()) {
        return true;
    }
    const QByteArray addressAndMask = OctetsOf(ip) + OctetsOf(mask);
    const bool sent = TheDeviceCommunication()->SendIpConfiguration(
        reinterpret_cast<const uchar*>(addressAndMask.constData()));
    if (sent) {
        *changed = true;
    }
    return sent;
}
