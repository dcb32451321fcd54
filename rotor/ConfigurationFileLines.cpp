// SPDX-License-Identifier: MIT

#include "rotor/ConfigurationFileLines.h"

#include "model/CDeviceDatabase.h"
#include "rotor/CFileIO.h"
#include "rotor/RotorCatalogue.h"
#include "rotor/StringTokenizer.h"

namespace {

// The last motor whose name contains the beginning of the key, up to its first blank. The name for
// no motor counts as well: a beginning that it contains names no motor.
int MotorOfKey(const QString& key)
{
    const QString text = key.section(QLatin1Char(' '), 0, 0);
    int motor = Motor::NoMotor;
    for (auto name = MotorNames.cbegin(); name != MotorNames.cend(); ++name) {
        if (name.value().contains(text)) {
            motor = name.key();
        }
    }
    return motor;
}

// The last parameter whose mnemonic stands anywhere in the key.
int ParameterOfKey(const QString& key)
{
    int parameter = Parameter::NoParameter;
    for (auto label = MotorParameterNames.cbegin(); label != MotorParameterNames.cend(); ++label) {
        if (key.contains(ParameterMnemonic(label.value()))) {
            parameter = label.key();
        }
    }
    return parameter;
}

} // namespace

bool WriteIdentityLines(CFileIO& file)
{
    const CDeviceDatabase* const database = TheDeviceDatabase();
    return file.WriteKeyValue(QStringLiteral("Identnumber"), database->GetPartNumber()) &&
           file.WriteKeyValue(QStringLiteral("Serialnumber"), database->GetSerialNumber()) &&
           file.WriteKeyValue(QStringLiteral("MAC"), database->GetMacAddress()) &&
           file.WriteKeyValue(QStringLiteral("IP"), database->GetIpAddress()) &&
           file.WriteKeyValue(QStringLiteral("Subnet"), database->GetSubnetMask());
}

bool WriteParameterLines(CFileIO& file, int motor)
{
    const CDeviceDatabase* const database = TheDeviceDatabase();
    const int last =
        database->IsFirmwareBelowVersion3() ? Parameter::LoopsInside : Parameter::SlowMotionSpeed;
    bool written = true;
    for (int parameter = 0; written && parameter <= last; ++parameter) {
        const QString key =
            MotorNames.value(motor) + QLatin1Char(' ') + MotorParameterNames.value(parameter);
        written =
            file.WriteKeyValue(key, QString::number(database->GetMotorParameter(motor, parameter)));
    }
    return written;
}

bool ApplyConfigurationLine(const QString& line, int motor)
{
    QString key;
    QString value;
    if (!StringTokenizer::HasToken(line) || !StringTokenizer::Tokenize(line, key, value)) {
        return true;
    }
    const int motorOfLine = MotorOfKey(key);
    const int parameter = ParameterOfKey(key);
    const bool hasMotor = motorOfLine != Motor::NoMotor;
    const bool hasParameter = parameter != Parameter::NoParameter;
    if (hasMotor && hasParameter && motorOfLine == motor) {
        TheDeviceDatabase()->SetMotorParameter(
            motor, parameter, static_cast<ushort>(value.toInt()));
    }
    return hasMotor == hasParameter;
}
