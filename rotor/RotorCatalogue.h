// SPDX-License-Identifier: MIT

#pragma once

#include <QMap>
#include <QString>
#include <QVector>

// The vocabulary of the two rotators: the numbers and names of motors and parameters, and the
// values that the vendor gives for each rotor model. The tables are constant, and made before the
// window.

/// The number of a motor, in the model and in the unit.
namespace Motor {
enum Index
{
    Azimuth = 0,
    Polar = 1,
    NoMotor = 2,
};
} // namespace Motor

/// The number of a parameter, which is its place on the wire and in the model.
namespace Parameter {
enum Id
{
    SlowMotionDifference = 0,
    MotionHangUpDifference = 1,
    StepDifference = 2,
    StepSleep = 3,
    PulseDuration = 4,
    MaxPositionDifference = 5,
    MaxPositionFromRight = 6,
    MaxPositionFromLeft = 7,
    MaxMotionHangUpLoop = 8,
    LoopsInside = 9,
    SlowMotionSpeed = 10,
    RotorType = 11,
    NoParameter, // behind the last
};
} // namespace Parameter

/// What the parameter RotorType holds.
namespace RotorType {
enum Code
{
    Potentiometer = 0,
    Pulse = 1,
    Unknown = 2,
};
} // namespace RotorType

/// A row of the table in which the user edits a motor's parameters.
struct sMOTOR_PARAM_RANGE
{
    qint32 parameterId;
    QString label;
    quint16 minimum;
    quint16 maximum;
};

/// A rotor model: its name in the list, its rotor type code, and the parameters up to
/// SlowMotionSpeed.
struct sROTOR_PRESET
{
    QString name;
    quint16 rotorType;
    QVector<ushort> values;
};

/// By motor index, with a name for no motor.
extern const QMap<int, QString> MotorNames;
/// By rotor type code.
extern const QMap<int, QString> RotorTypeNames;
/// By parameter id. The rotor type has no label.
extern const QMap<int, QString> MotorParameterNames;
/// In the order of the table's rows. StepSleep and PulseDuration are not for the user.
extern const QVector<sMOTOR_PARAM_RANGE> MotorParameterRanges;
/// The vendor's presets, in the order of the rotor list; the first is a blank entry.
extern const QVector<sROTOR_PRESET> AzimuthRotorPresets;
extern const QVector<sROTOR_PRESET> PolarRotorPresets;
/// The vendor's factory values by parameter id, without a rotor type.
extern const QMap<int, ushort> AzimuthResetDefaults;
extern const QMap<int, ushort> PolarResetDefaults;

/// The text in the brackets at the end of a label: "SMD" of "Slow Motion Difference (SMD)".
QString ParameterMnemonic(QString label);
