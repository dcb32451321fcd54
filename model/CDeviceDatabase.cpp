// SPDX-License-Identifier: MIT

#include "model/CDeviceDatabase.h"

#include "rotor/RotorCatalogue.h"

#include <QHostAddress>
#include <QRegularExpression>
#include <QSharedPointer>

namespace {

constexpr ushort NoSuchParameter = 65535;
constexpr int SerialNumberLength = 6;

struct StatusTexts
{
    const char* button;
    const char* status; // %1 is the unit's address
};

// In the order of the codes.
constexpr StatusTexts ConnectionTexts[] = {
    {"Connected", "Connected to %1"},
    {"Connecting", "Connecting to %1 ..."},
    {"Connect", "Not Connected "},
    {"Connect", "Connection Failed"},
    {"Connect", "Reconnecting to %1"},
};
constexpr StatusTexts UnknownConnectionTexts{"Connect", ""};

StatusTexts TextsOfConnectionStatus(int code)
{
    const bool known = code >= 0 && code <= CDeviceDatabase::ConnectionReconnecting;
    return known ? ConnectionTexts[code] : UnknownConnectionTexts;
}

bool IsMotor(int motor)
{
    return motor == Motor::Azimuth || motor == Motor::Polar;
}

int ColumnOfMotorParameter(int motor, int parameter)
{
    switch (motor) {
    case Motor::Azimuth:
        return CDeviceDatabase::FirstAzimuthColumn + parameter;
    case Motor::Polar:
        return CDeviceDatabase::FirstPolarColumn + parameter;
    default:
        return CDeviceDatabase::ColumnCount;
    }
}

const QSharedPointer<CDeviceDatabase> theDeviceDatabase(new CDeviceDatabase);

} // namespace

CDeviceDatabase::CDeviceDatabase()
    : textOfColumn{
          nullptr,
          &applicationStatus,
          nullptr,
          &ipAddress,
          &macAddress,
          &subnetMask,
          &firmwareVersion,
          &partNumber[0],
          &variant,
          &productIndex[0],
          &serialNumber[0],
          &productionDate[0],
          &testInstructionIndex[0],
          &boardName[0],
          &partNumber[1],
          &productIndex[1],
          &serialNumber[1],
          &productionDate[1],
          &testInstructionIndex[1],
          &boardName[1],
      }
{
    ResetData();
}

CDeviceDatabase::~CDeviceDatabase() = default;

int CDeviceDatabase::rowCount(const QModelIndex& /*parent*/) const
{
    return 1;
}

int CDeviceDatabase::columnCount(const QModelIndex& /*parent*/) const
{
    return ColumnCount;
}

QVariant CDeviceDatabase::data(const QModelIndex& index, int role) const
{
    const int column = index.column();
    const bool readable = role == Qt::DisplayRole || role == Qt::EditRole;
    if (!index.isValid() || !readable || column >= ColumnCount) {
        return QVariant();
    }
    if (column >= FirstAzimuthColumn) {
        return MotorParameterOfColumn(column);
    }
    switch (column) {
    case ConnectButtonColumn:
        return QString(QLatin1String(TextsOfConnectionStatus(connectionStatus).button));
    case ConnectionStatusColumn:
        return ConnectionStatusText();
    default:
        return *textOfColumn[column];
    }
}

QVariant CDeviceDatabase::MotorParameterOfColumn(int column) const
{
    const int motor = column < FirstPolarColumn ? Motor::Azimuth : Motor::Polar;
    const int parameter = column - ColumnOfMotorParameter(motor, 0);

    const int value = HasMotorParameter(parameter) ? GetMotorParameter(motor, parameter) : 0;
    if (parameter == Parameter::RotorType) {
        return RotorTypeNames.value(value);
    }
    return value;
}

QString CDeviceDatabase::GetIpAddress() const
{
    return ipAddress;
}

QString CDeviceDatabase::GetMacAddress() const
{
    return macAddress;
}

QString CDeviceDatabase::GetSubnetMask() const
{
    return subnetMask;
}

QString CDeviceDatabase::GetPartNumber() const
{
    return partNumber[0];
}

QString CDeviceDatabase::GetSerialNumber() const
{
    return serialNumber[0];
}

QString CDeviceDatabase::GetFirmwareVersion() const
{
    return firmwareVersion;
}

QString CDeviceDatabase::ConnectionStatusText() const
{
    QString text = QLatin1String(TextsOfConnectionStatus(connectionStatus).status);
    return text.replace(QLatin1String("%1"), ipAddress);
}

// The azimuth motor's store decides for both motors whether a parameter exists.
bool CDeviceDatabase::HasMotorParameter(int parameter) const
{
    return motorParameters[Motor::Azimuth].contains(parameter);
}

ushort CDeviceDatabase::GetMotorParameter(int motor, int parameter, bool* found) const
{
    const bool exists = HasMotorParameter(parameter);
    if (found != nullptr) {
        *found = exists;
    }
    if (!exists) {
        return NoSuchParameter;
    }
    return IsMotor(motor) ? motorParameters[motor].value(parameter) : ushort(0);
}

bool CDeviceDatabase::GetMotorParameters(int motor, QMap<int, ushort>& out) const
{
    if (!IsMotor(motor)) {
        return false;
    }
    const QMap<int, ushort>& parameters = motorParameters[motor];
    for (auto parameter = parameters.cbegin(); parameter != parameters.cend(); ++parameter) {
        out.insert(parameter.key(), parameter.value());
    }
    return true;
}

QString CDeviceDatabase::GetMotorValidationError(int motor) const
{
    return IsMotor(motor) ? motorValidationError[motor] : QString();
}

bool CDeviceDatabase::GetUnsupportedFlag() const
{
    return unsupported;
}

bool CDeviceDatabase::IsFirmwareBelowVersion3() const
{
    return firmwareVersion.toFloat() < FirstNewFirmware;
}

// The second test refuses every address whose first digit is a letter. That is meant.
bool CDeviceDatabase::ValidateMacAddress(QString mac, QString& error) const
{
    static const QRegularExpression pattern(QStringLiteral("([0-9A-F]{2}[:-]){5}([0-9A-F]{2})"));

    if (mac.isEmpty()) {
        error = QStringLiteral("MAC address is empty!");
        return false;
    }
    if (QStringLiteral("abcdef").contains(mac.front(), Qt::CaseInsensitive)) {
        error = QStringLiteral("Invalid Mac address. Do not set a broadcast address");
        return false;
    }
    if (!pattern.match(mac).hasMatch()) {
        error = QStringLiteral("Invalid Mac address.");
        return false;
    }
    return true;
}

void CDeviceDatabase::SetConnectionStatus(int code)
{
    connectionStatus = code;
    NotifyColumnChanged(ConnectButtonColumn);
    NotifyColumnChanged(ConnectionStatusColumn);
}

void CDeviceDatabase::SetApplicationStatus(QString text)
{
    StoreText(ApplicationStatusColumn, text);
}

bool CDeviceDatabase::SetIpAddress(QString text)
{
    return StoreIpAddress(IpAddressColumn, text);
}

bool CDeviceDatabase::SetSubnetMask(QString text)
{
    return StoreIpAddress(SubnetMaskColumn, text);
}

void CDeviceDatabase::SetMacAddress(QString text)
{
    StoreText(MacAddressColumn, text.toUpper());
}

void CDeviceDatabase::SetFirmwareVersion(QString text)
{
    StoreText(FirmwareVersionColumn, text);
}

void CDeviceDatabase::SetPartNumber(QString text, int set)
{
    StoreTextOfSet(set, PartNumber0Column, PartNumber1Column, text);
}

void CDeviceDatabase::SetVariant(QString text, int /*set*/)
{
    StoreText(VariantColumn, text);
}

void CDeviceDatabase::SetProductIndex(QString text, int set)
{
    StoreTextOfSet(set, ProductIndex0Column, ProductIndex1Column, text);
}

void CDeviceDatabase::SetSerialNumber(QString text, int set)
{
    StoreTextOfSet(set, SerialNumber0Column, SerialNumber1Column, text.left(SerialNumberLength));
}

void CDeviceDatabase::SetProductionDate(QString text, int set)
{
    StoreTextOfSet(set, ProductionDate0Column, ProductionDate1Column, text);
}

void CDeviceDatabase::SetTestInstructionIndex(QString text, int set)
{
    StoreTextOfSet(set, TestInstructionIndex0Column, TestInstructionIndex1Column, text);
}

void CDeviceDatabase::SetBoardName(QString text, int set)
{
    StoreTextOfSet(set, BoardName0Column, BoardName1Column, text);
}

void CDeviceDatabase::SetMotorParameters(int motor, QVector<ushort> values)
{
    for (int parameter = 0; parameter < values.size(); ++parameter) {
        SetMotorParameter(motor, parameter, values.at(parameter));
    }
}

void CDeviceDatabase::SetMotorParameter(int motor, int parameter, ushort value)
{
    if (IsMotor(motor)) {
        motorParameters[motor].insert(parameter, value);
    }
    NotifyColumnChanged(ColumnOfMotorParameter(motor, parameter));
}

void CDeviceDatabase::SetMotorValidationError(int motor, QString text)
{
    if (IsMotor(motor)) {
        motorValidationError[motor] = text;
    }
}

void CDeviceDatabase::ResetData()
{
    static constexpr Column ClearedTexts[] = {
        PartNumber1Column,
        PartNumber0Column,
        ProductIndex1Column,
        ProductIndex0Column,
        ProductionDate1Column,
        ProductionDate0Column,
        TestInstructionIndex1Column,
        TestInstructionIndex0Column,
        SerialNumber1Column,
        SerialNumber0Column,
        BoardName1Column,
        BoardName0Column,
        FirmwareVersionColumn,
    };

    SetConnectionStatus(ConnectionNotConnected);
    unsupported = false;
    SetApplicationStatus(QString());
    SetIpAddress(QString());
    SetMacAddress(QString());
    SetSubnetMask(QString());
    for (const Column column : ClearedTexts) {
        StoreText(column, QString());
    }
    for (const int motor : {Motor::Azimuth, Motor::Polar}) {
        motorParameters[motor].clear();
        motorValidationError[motor].clear();
    }
}

bool CDeviceDatabase::NormalizeIpAddress(const QString& text, QString& out)
{
    QHostAddress address;
    const bool valid = address.setAddress(text);
    out = valid ? address.toString() : QString();
    return valid;
}

bool CDeviceDatabase::StoreIpAddress(Column column, const QString& text)
{
    QString normalized;
    const bool valid = NormalizeIpAddress(text, normalized);
    StoreText(column, normalized);
    return valid;
}

void CDeviceDatabase::StoreText(Column column, const QString& text)
{
    *textOfColumn[column] = text;
    NotifyColumnChanged(column);
}

void CDeviceDatabase::StoreTextOfSet(
    int set, Column columnOfSet0, Column columnOfSet1, const QString& text)
{
    switch (set) {
    case DeviceSet:
        StoreText(columnOfSet0, text);
        break;
    case BoardSet:
        StoreText(columnOfSet1, text);
        break;
    default:
        break;
    }
}

void CDeviceDatabase::NotifyColumnChanged(int column)
{
    const QModelIndex cell = index(0, column);
    // Twice the display role: the widgets are notified with a list of this form.
    emit dataChanged(cell, cell, QVector<int>(2, Qt::DisplayRole));
}

CDeviceDatabase* TheDeviceDatabase()
{
    return theDeviceDatabase.data();
}
