#include "rotor/CDeviceParameters.h"

#include <QStringList>
#include <QtEndian>

#include <algorithm>

namespace {

constexpr float FirstNewFirmware = 3.0F;
constexpr int Motors = 2;
constexpr int RotorType = 11;
constexpr ushort NoRotorType = 65535;
constexpr int MacSize = 6;

// The block behind the words of both motors, in bytes from its start: 6 of the MAC address, 4 of
// the address, 4 of the mask, 13 that the unit keeps to itself.
struct BlockLayout
{
    ushort parameters;
    int macAddress;
    int ipAddress;
    int subnetMask;
    ushort size;
};

constexpr BlockLayout OldLayout{10, 40, 46, 50, 67};
constexpr BlockLayout NewLayout{12, 48, 54, 58, 75};

const BlockLayout& LayoutFor(bool legacy)
{
    return legacy ? OldLayout : NewLayout;
}

ushort TakeWord(ushort* block, int index)
{
    return qFromBigEndian(block[index]);
}

// Four octets at a byte offset, which is even. The words are swapped where they stand.
QString FormatIpAddress(ushort* block, int offset)
{
    QStringList octets;
    for (int word = offset / 2; word < offset / 2 + 2; ++word) {
        block[word] = TakeWord(block, word);
        octets << QString::number(block[word] >> 8) << QString::number(block[word] & 0xFF);
    }
    return octets.join(QLatin1Char('.'));
}

QString FormatMacAddress(const ushort* block, int offset)
{
    const auto* const bytes = reinterpret_cast<const uchar*>(block) + offset;
    QStringList pairs;
    for (int i = 0; i < MacSize; ++i) {
        pairs << QStringLiteral("%1").arg(bytes[i], 2, 16, QLatin1Char('0'));
    }
    return pairs.join(QLatin1Char(':'));
}

} // namespace

CDeviceParameters::CDeviceParameters(float firmwareVersion)
    : firmwareVersion(firmwareVersion)
    , legacyLayout(FirstNewFirmware > firmwareVersion)
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

void CDeviceParameters::ParseDeviceBlock(ushort* block)
{
    if (block == nullptr) {
        return;
    }
    const BlockLayout& layout = LayoutFor(legacyLayout);
    for (int motor = 0; motor < Motors; ++motor) {
        for (int parameter = 0; parameter < layout.parameters; ++parameter) {
            motorParams[motor].insert(
                parameter, TakeWord(block, motor * layout.parameters + parameter));
        }
    }
    ipAddress = FormatIpAddress(block, layout.ipAddress);
    subnetMask = FormatIpAddress(block, layout.subnetMask);
    macAddress = FormatMacAddress(block, layout.macAddress);
}

ushort CDeviceParameters::Value(short motor, int parameter)
{
    if (motor < 0 || motor >= Motors) {
        return 0;
    }
    return motorParams[motor][parameter];
}

ushort CDeviceParameters::GetSlowMotionDifference(short motor)
{
    return Value(motor, 0);
}

ushort CDeviceParameters::GetMotionHangUpDifference(short motor)
{
    return Value(motor, 1);
}

ushort CDeviceParameters::GetStepDifference(short motor)
{
    return Value(motor, 2);
}

ushort CDeviceParameters::GetStepSleep(short motor)
{
    return Value(motor, 3);
}

ushort CDeviceParameters::GetPulseDuration(short motor)
{
    return Value(motor, 4);
}

ushort CDeviceParameters::GetMaxPositionDifference(short motor)
{
    return Value(motor, 5);
}

ushort CDeviceParameters::GetMaxPositionFromRight(short motor)
{
    return Value(motor, 6);
}

ushort CDeviceParameters::GetMaxPositionFromLeft(short motor)
{
    return Value(motor, 7);
}

ushort CDeviceParameters::GetMaxMotionHangUpLoop(short motor)
{
    return Value(motor, 8);
}

ushort CDeviceParameters::GetLoopsInside(short motor)
{
    return Value(motor, 9);
}

ushort CDeviceParameters::GetSlowMotionSpeed(short motor)
{
    return Value(motor, 10);
}

ushort CDeviceParameters::GetRotorType(short motor)
{
    if (motor < 0 || motor >= Motors || !motorParams[motor].contains(RotorType)) {
        return NoRotorType;
    }
    return motorParams[motor].value(RotorType);
}

QString CDeviceParameters::GetSubnetMask() const
{
    return subnetMask;
}
