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

    /// Takes a block of GetDeviceBlockSize() bytes as it came, words big-endian. Swaps the words of
    /// the addresses in place: a block is decoded once. Null does nothing.
    void ParseDeviceBlock(ushort* block);

    // The decoded words by motor: 0 for one that the block did not hold, and for a motor other than
    // 0 and 1.
    ushort GetSlowMotionDifference(short motor);
    ushort GetMotionHangUpDifference(short motor);
    ushort GetStepDifference(short motor);
    ushort GetStepSleep(short motor);
    ushort GetPulseDuration(short motor);
    ushort GetMaxPositionDifference(short motor);
    ushort GetMaxPositionFromRight(short motor);
    ushort GetMaxPositionFromLeft(short motor);
    ushort GetMaxMotionHangUpLoop(short motor);
    ushort GetLoopsInside(short motor);
    ushort GetSlowMotionSpeed(short motor);
    /// 65535 where the others give 0.
    ushort GetRotorType(short motor);

    /// Dotted text, empty before a block was decoded.
    QString GetSubnetMask() const;

private:
    ushort Value(short motor, int parameter);

    float firmwareVersion;
    bool legacyLayout;
    QMap<qint32, ushort> motorParams[2];
    QString ipAddress;
    QString macAddress;
    QString subnetMask;
};
