#pragma once

#include <QMap>
#include <QString>
#include <QVector>

// The vocabulary of the two rotators: what the unit's parameters are called, and the values that
// the vendor gives for each rotor model. The tables are constant, and made before the window.

/// A row of the table in which the user edits a motor's parameters.
struct sMOTOR_PARAM_RANGE
{
    qint32 parameterId;
    QString label;
    quint16 minimum;
    quint16 maximum;
};

/// A rotor model: its name in the list, its rotor type code, and the parameters 0 to 10.
struct sROTOR_PRESET
{
    QString name;
    quint16 rotorType;
    QVector<ushort> values;
};

/// By motor index: 0 azimuth, 1 polar, 2 for no motor.
extern const QMap<int, QString> MotorNames;
/// By rotor type code.
extern const QMap<int, QString> RotorTypeNames;
/// By parameter id, 0 to 10. The id is a parameter's place on the wire and in the model. Id 11 is
/// the rotor type code and has no label.
extern const QMap<int, QString> MotorParameterNames;
/// In the order of the table's rows. The parameters 3 and 4 are not for the user.
extern const QVector<sMOTOR_PARAM_RANGE> MotorParameterRanges;
/// The vendor's presets, in the order of the rotor list; the first is a blank entry.
extern const QVector<sROTOR_PRESET> AzimuthRotorPresets;
extern const QVector<sROTOR_PRESET> PolarRotorPresets;
/// The vendor's factory values by parameter id, without a rotor type.
extern const QMap<int, ushort> AzimuthResetDefaults;
extern const QMap<int, ushort> PolarResetDefaults;

/// What stands in the brackets at the end of a label: "SMD" of "Slow Motion Difference (SMD)".
QString ParameterMnemonic(QString label);
