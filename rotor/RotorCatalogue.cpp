#include "rotor/RotorCatalogue.h"

#include <QStringList>

namespace {

constexpr quint16 Potentiometer = 0;
constexpr quint16 Pulse = 1;

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
    {0, QStringLiteral("Azimuth")},
    {1, QStringLiteral("Polar")},
    {2, QStringLiteral("UnknownMotor")},
};

const QMap<int, QString> RotorTypeNames{
    {Potentiometer, QStringLiteral("Potentiometer")},
    {Pulse, QStringLiteral("Pulse")},
    {2, QStringLiteral("Unknow Type")},
};

const QMap<int, QString> MotorParameterNames{
    {0, QStringLiteral("Slow Motion Difference (SMD)")},
    {1, QStringLiteral("Motion Hang Up Difference (MHD)")},
    {2, QStringLiteral("Step Difference (SD)")},
    {3, QStringLiteral("Step Sleep (SS)")},
    {4, QStringLiteral("Pulse Duration (PD)")},
    {5, QStringLiteral("Max Position Difference (OD)")},
    {6, QStringLiteral("Max Position From Right (ORS)")},
    {7, QStringLiteral("Max Position From Left (OLS)")},
    {8, QStringLiteral("Max Motion Hang Up Loop (MMHL)")},
    {9, QStringLiteral("Loops Inside (MOT)")},
    {10, QStringLiteral("Slow Motion Speed (SMS)")},
};

const QVector<sMOTOR_PARAM_RANGE> MotorParameterRanges{
    Word(0), Word(1), Word(2), Word(5), Word(6), Word(7), Word(8), Word(9), Percentage(10)};

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
