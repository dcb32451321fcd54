// SPDX-License-Identifier: MIT

#pragma once

#include <QMap>
#include <QObject>
#include <QString>

/// Decodes the configuration block with which the unit answers CF0, in the layout of its firmware
/// generation. Serves one operation.
class CDeviceParameters : public QObject
{
    Q_OBJECT

public:
    /// Firmware below 3.0 has the old layout.
    explicit CDeviceParameters(float firmwareVersion);
    ~CDeviceParameters() override;

    /// Words for each motor in HCF and VCF: 10 or 12.
    ushort GetParameterCount() const;
    /// Bytes to request with CF0: 67 or 75.
    ushort GetDeviceBlockSize() const;

    /// Takes a block of GetDeviceBlockSize() bytes as it came, with big-endian words and at any
    /// alignment. Swaps the bytes of the words of IP address and mask in place, so a block can be
    /// decoded only once. Null does nothing.
    void ParseDeviceBlock(ushort* words);

    // The decoded words by motor: 0 for one that the block did not hold, and for a motor other than
    // 0 and 1.
    ushort GetSlowMotionDifference(short motor) const;
    ushort GetMotionHangUpDifference(short motor) const;
    ushort GetStepDifference(short motor) const;
    ushort GetStepSleep(short motor) const;
    ushort GetPulseDuration(short motor) const;
    ushort GetMaxPositionDifference(short motor) const;
    ushort GetMaxPositionFromRight(short motor) const;
    ushort GetMaxPositionFromLeft(short motor) const;
    ushort GetMaxMotionHangUpLoop(short motor) const;
    ushort GetLoopsInside(short motor) const;
    ushort GetSlowMotionSpeed(short motor) const;
    /// 65535 where the others give 0.
    ushort GetRotorType(short motor) const;

    /// Dotted text, empty before a block was decoded.
    QString GetSubnetMask() const;

    /// The text of four bytes in transmission order, each in decimal without padding.
    static QString FormatIpAddress(const uchar* bytes);
    /// The text of six bytes: two lower-case digits each, joined by ':'.
    static QString FormatMacAddress(const uchar* bytes);

private:
    ushort Value(short motor, int parameter, ushort missing = 0) const;

    float firmwareVersion;
    bool legacyLayout;
    QMap<qint32, ushort> motorParams[2];
    QString ipAddress;
    QString macAddress;
    QString subnetMask;
};

/// By parameter id.
constexpr ushort (CDeviceParameters::*ParameterAccessors[])(short) const = {
    &CDeviceParameters::GetSlowMotionDifference,
    &CDeviceParameters::GetMotionHangUpDifference,
    &CDeviceParameters::GetStepDifference,
    &CDeviceParameters::GetStepSleep,
    &CDeviceParameters::GetPulseDuration,
    &CDeviceParameters::GetMaxPositionDifference,
    &CDeviceParameters::GetMaxPositionFromRight,
    &CDeviceParameters::GetMaxPositionFromLeft,
    &CDeviceParameters::GetMaxMotionHangUpLoop,
    &CDeviceParameters::GetLoopsInside,
    &CDeviceParameters::GetSlowMotionSpeed,
    &CDeviceParameters::GetRotorType,
};
