// SPDX-License-Identifier: MIT

#include "rotor/CDeviceParameters.h"

#include "model/CDeviceDatabase.h"
#include "rotor/RotorCatalogue.h"

#include <QStringList>
#include <QtEndian>

#include <utility>

namespace {

constexpr ushort NoRotorType = 65535;
constexpr int MacSize = 6;
constexpr int AddressSize = 4;

// The words of each motor, and the bytes of the whole block. Behind the words of both motors there
// are the MAC address, the IP address, the mask, and 13 bytes that the unit keeps to itself.
struct BlockLayout
{
    ushort parameters;
    ushort size;
};

constexpr BlockLayout OldLayout{10, 67};
constexpr BlockLayout NewLayout{12, 75};

const BlockLayout& LayoutFor(bool legacy)
{
    return legacy ? OldLayout : NewLayout;
}

// The word may stand at any address.
ushort WordAt(const uchar* bytes)
{
    return qFromBigEndian<ushort>(bytes);
}

// Swaps the bytes of both words of the address in place.
QString TakeIpAddress(uchar* bytes)
{
    const QString address = CDeviceParameters::FormatIpAddress(bytes);
    std::swap(bytes[0], bytes[1]);
    std::swap(bytes[2], bytes[3]);
    return address;
}

} // namespace

CDeviceParameters::CDeviceParameters(float firmwareVersion)
    : firmwareVersion(firmwareVersion)
    , legacyLayout(CDeviceDatabase::FirstNewFirmware > firmwareVersion)
{
}

CDeviceParameters::~CDeviceParameters() = default;

ushort CDeviceParameters::GetParameterCount() const
{
    return LayoutFor(legacyLayout).parameters;
}

ushort CDeviceParameters::GetDeviceBlockSize() const
{
    return LayoutFor(legacyLayout).size;
}

void CDeviceParameters::ParseDeviceBlock(ushort* words)
{
    if (words == nullptr) {
        return;
    }
    auto* next = reinterpret_cast<uchar*>(words);
    for (QMap<qint32, ushort>& params : motorParams) {
        for (int parameter = 0; parameter < GetParameterCount(); ++parameter) {
            params.insert(parameter, WordAt(next));
            next += sizeof(ushort);
        }
    }
    macAddress = FormatMacAddress(next);
    ipAddress = TakeIpAddress(next + MacSize);
    subnetMask = TakeIpAddress(next + MacSize + AddressSize);
}

ushort CDeviceParameters::Value(short motor, int parameter, ushort missing) const
{
    const bool exists = motor == Motor::Azimuth || motor == Motor::Polar;
    return exists ? motorParams[motor].value(parameter, missing) : missing;
}

ushort CDeviceParameters::GetSlowMotionDifference(short motor) const
{
    return Value(motor, Parameter::SlowMotionDifference);
}

ushort CDeviceParameters::GetMotionHangUpDifference(short motor) const
{
    return Value(motor, Parameter::MotionHangUpDifference);
}

ushort CDeviceParameters::GetStepDifference(short motor) const
{
    return Value(motor, Parameter::StepDifference);
}

ushort CDeviceParameters::GetStepSleep(short motor) const
{
    return Value(motor, Parameter::StepSleep);
}

ushort CDeviceParameters::GetPulseDuration(short motor) const
{
    return Value(motor, Parameter::PulseDuration);
}

ushort CDeviceParameters::GetMaxPositionDifference(short motor) const
{
    return Value(motor, Parameter::MaxPositionDifference);
}

ushort CDeviceParameters::GetMaxPositionFromRight(short motor) const
{
    return Value(motor, Parameter::MaxPositionFromRight);
}

ushort CDeviceParameters::GetMaxPositionFromLeft(short motor) const
{
    return Value(motor, Parameter::MaxPositionFromLeft);
}

ushort CDeviceParameters::GetMaxMotionHangUpLoop(short motor) const
{
    return Value(motor, Parameter::MaxMotionHangUpLoop);
}

ushort CDeviceParameters::GetLoopsInside(short motor) const
{
    return Value(motor, Parameter::LoopsInside);
}

ushort CDeviceParameters::GetSlowMotionSpeed(short motor) const
{
    return Value(motor, Parameter::SlowMotionSpeed);
}

ushort CDeviceParameters::GetRotorType(short motor) const
{
    return Value(motor, Parameter::RotorType, NoRotorType);
}

QString CDeviceParameters::GetSubnetMask() const
{
    return subnetMask;
}

QString CDeviceParameters::FormatIpAddress(const uchar* bytes)
{
    QStringList octets;
    for (int i = 0; i < AddressSize; ++i) {
        octets << QString::number(bytes[i]);
    }
    return octets.join(QLatin1Char('.'));
}

QString CDeviceParameters::FormatMacAddress(const uchar* bytes)
{
    QStringList pairs;
    for (int i = 0; i < MacSize; ++i) {
        pairs << QStringLiteral("%1").arg(bytes[i], 2, 16, QLatin1Char('0'));
    }
    return pairs.join(QLatin1Char(':'));
}
