// SPDX-License-Identifier: MIT

#include "rotor/RotorCatalogue.h"

#include <QStringList>

namespace {

using RotorType::Potentiometer;
using RotorType::Pulse;

constexpr quint16 NoLimit = 65535;
constexpr quint16 Percent = 100;

sMOTOR_PARAM_RANGE Word(int parameterId)
{
    return {parameterId, MotorParameterNames.value(parameterId), 0, NoLimit};
}

sMOTOR_PARAM_RANGE Percentage(int parameterId)
{
    return {parameterId, MotorParameterNames.value(parameterId) + QLatin1Char('%'), 0, Percent};
}

} // namespace

const QMap<int, QString> MotorNames{
    {Motor::Azimuth, QStringLiteral("Azimuth")},
    {Motor::Polar, QStringLiteral("Polar")},
    {Motor::NoMotor, QStringLiteral("UnknownMotor")},
};

const QMap<int, QString> RotorTypeNames{
    {Potentiometer, QStringLiteral("Potentiometer")},
    {Pulse, QStringLiteral("Pulse")},
    {RotorType::Unknown, QStringLiteral("Unknow Type")},
};

const QMap<int, QString> MotorParameterNames{
    {Parameter::SlowMotionDifference, QStringLiteral("Slow Motion Difference (SMD)")},
    {Parameter::MotionHangUpDifference, QStringLiteral("Motion Hang Up Difference (MHD)")},
    {Parameter::StepDifference, QStringLiteral("Step Difference (SD)")},
    {Parameter::StepSleep, QStringLiteral("Step Sleep (SS)")},
    {Parameter::PulseDuration, QStringLiteral("Pulse Duration (PD)")},
    {Parameter::MaxPositionDifference, QStringLiteral("Max Position Difference (OD)")},
    {Parameter::MaxPositionFromRight, QStringLiteral("Max Position From Right (ORS)")},
    {Parameter::MaxPositionFromLeft, QStringLiteral("Max Position From Left (OLS)")},
    {Parameter::MaxMotionHangUpLoop, QStringLiteral("Max Motion Hang Up Loop (MMHL)")},
    {Parameter::LoopsInside, QStringLiteral("Loops Inside (MOT)")},
    {Parameter::SlowMotionSpeed, QStringLiteral("Slow Motion Speed (SMS)")},
};

const QVector<sMOTOR_PARAM_RANGE> MotorParameterRanges{
    Word(Parameter::SlowMotionDifference),
    Word(Parameter::MotionHangUpDifference),
    Word(Parameter::StepDifference),
    Word(Parameter::MaxPositionDifference),
    Word(Parameter::MaxPositionFromRight),
    Word(Parameter::MaxPositionFromLeft),
    Word(Parameter::MaxMotionHangUpLoop),
    Word(Parameter::LoopsInside),
    Percentage(Parameter::SlowMotionSpeed),
};

// The columns: SMD, MHD, SD, SS, PD, OD, ORS, OLS, MMHL, MOT, SMS.
// clang-format off
const QVector<sROTOR_PRESET> AzimuthRotorPresets{
    {QString(),                         Pulse,         {0,   0, 0,   0, 0, 0,  0, 0, 0,    0,  0}},
    {QStringLiteral("ProSisTel"),       Pulse,         {500, 3, 150, 1, 2, 10, 0, 0, 2000, 20, 50}},
    {QStringLiteral("YAESU G-2800"),    Potentiometer, {70,  3, 22,  1, 2, 2,  0, 0, 500,  20, 50}},
    {QStringLiteral("Winder AR/A1003"), Potentiometer, {70,  3, 22,  1, 2, 2,  0, 0, 500,  20, 50}},
    {QStringLiteral("Winder AR/A1023"), Potentiometer, {70,  3, 22,  1, 2, 2,  0, 0, 500,  20, 50}},
    {QStringLiteral("Winder AR/AE1049"), Potentiometer, {70, 3, 22,  1, 2, 2,  0, 0, 500,  20, 50}},
    {QStringLiteral("TD552"),           Potentiometer, {70,  3, 22,  1, 2, 2,  0, 0, 500,  20, 50}},
};

const QVector<sROTOR_PRESET> PolarRotorPresets{
    {QString(),                         Pulse,         {0,   0, 0,   0, 0, 0,  0, 0, 0,    0,  0}},
    {QStringLiteral("ProSisTel"),       Pulse,         {500, 3, 150, 1, 2, 10, 0, 0, 2000, 20, 50}},
    {QStringLiteral("YAESU G-550"),     Potentiometer, {99,  3, 60,  1, 2, 5,  0, 0, 500,  20, 50}},
    {QStringLiteral("Winder AR/AE1049"), Potentiometer, {200, 3, 60, 1, 2, 5,  0, 0, 500,  20, 50}},
    {QStringLiteral("TD552"),           Potentiometer, {200, 3, 60,  1, 2, 5,  0, 0, 500,  20, 50}},
};

const QMap<int, ushort> AzimuthResetDefaults{
    {0, 30}, {1, 1}, {2, 250}, {3, 1}, {4, 1}, {5, 2}, {6, 0}, {7, 0}, {8, 2000}, {9, 30}, {10, 100}};

const QMap<int, ushort> PolarResetDefaults{
    {0, 20}, {1, 1}, {2, 250}, {3, 1}, {4, 1}, {5, 2}, {6, 0}, {7, 0}, {8, 2000}, {9, 30}, {10, 100}};
// clang-format on

QString ParameterMnemonic(QString label)
{
    QString mnemonic = QStringLiteral("(NONE)");
    const QStringList parts = label.split(QLatin1Char(' '));
    if (!parts.isEmpty()) {
        mnemonic = parts.last();
    }
    for (const char bracket : {')', '(', '%'}) {
        mnemonic.remove(QLatin1Char(bracket));
    }
    return mnemonic;
}
