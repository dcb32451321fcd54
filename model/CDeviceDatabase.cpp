#include "model/CDeviceDatabase.h"

#include "rotor/RotorCatalogue.h"

#include <QHostAddress>
#include <QRegularExpression>
#include <QSharedPointer>

namespace {

enum Column
{
    ConnectButton = 0,
    ApplicationStatus = 1,
    ConnectionStatusLine = 2,
    IpAddress = 3,
    MacAddress = 4,
    SubnetMask = 5,
    FirmwareVersion = 6,
    Variant = 8,
    FirstMotorColumn = 20,
    ColumnCount = 44,
};

// By data set. The two sets lay their columns out differently.
constexpr int PartNumber[] = {7, 14};
constexpr int ProductIndex[] = {9, 15};
constexpr int SerialNumber[] = {10, 16};
constexpr int ProductionDate[] = {11, 17};
constexpr int TestInstructionIndex[] = {12, 18};
constexpr int BoardName[] = {13, 19};

constexpr int ColumnsPerMotor = 12;
constexpr int Motors = 2;
constexpr int Azimuth = 0;
constexpr int RotorType = 11;
constexpr ushort NoSuchParameter = 65535;
constexpr int SerialNumberLength = 6;
constexpr float FirstNewFirmware = 3.0F;

bool IsMotor(int motor)
{
    return motor >= 0 && motor < Motors;
}

int MotorColumnOf(int motor, int parameter)
{
    return IsMotor(motor) ? FirstMotorColumn + motor * ColumnsPerMotor + parameter : ColumnCount;
}

const QSharedPointer<CDeviceDatabase> theDeviceDatabase(new CDeviceDatabase);

} // namespace

CDeviceDatabase::CDeviceDatabase()
{
    ResetData();
}

CDeviceDatabase::~CDeviceDatabase() = default;

int CDeviceDatabase::rowCount(const QModelIndex&) const
{
    return 1;
}

int CDeviceDatabase::columnCount(const QModelIndex&) const
{
    return ColumnCount;
}

QVariant CDeviceDatabase::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::EditRole)) {
        return QVariant();
    }
    const int column = index.column();
    if (column >= FirstMotorColumn && column < ColumnCount) {
        const int position = column - FirstMotorColumn;
        return MotorColumn(position / ColumnsPerMotor, position % ColumnsPerMotor);
    }
    switch (column) {
    case ConnectButton:
        return ConnectButtonText();
    case ApplicationStatus:
        return applicationStatus;
    case ConnectionStatusLine:
        return ConnectionStatusText();
    case IpAddress:
        return ipAddress;
    case MacAddress:
        return macAddress;
    case SubnetMask:
        return subnetMask;
    case FirmwareVersion:
        return firmwareVersion;
    case PartNumber[0]:
        return partNumber[0];
    case Variant:
        return variant;
    case ProductIndex[0]:
        return productIndex[0];
    case SerialNumber[0]:
        return serialNumber[0];
    case ProductionDate[0]:
        return productionDate[0];
    case TestInstructionIndex[0]:
        return testInstructionIndex[0];
    case BoardName[0]:
        return boardName[0];
    case PartNumber[1]:
        return partNumber[1];
    case ProductIndex[1]:
        return productIndex[1];
    case SerialNumber[1]:
        return serialNumber[1];
    case ProductionDate[1]:
        return productionDate[1];
    case TestInstructionIndex[1]:
        return testInstructionIndex[1];
    case BoardName[1]:
        return boardName[1];
    default:
        return QVariant();
    }
}

QVariant CDeviceDatabase::MotorColumn(int motor, int parameter) const
{
    bool found = false;
    const ushort stored = GetMotorParameter(motor, parameter, &found);
    const int value = found ? stored : 0;
    return parameter == RotorType ? QVariant(RotorTypeNames.value(value)) : QVariant(value);
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

QString CDeviceDatabase::ConnectButtonText() const
{
    switch (connectionStatus) {
    case ConnectionConnected:
        return QStringLiteral("Connected");
    case ConnectionConnecting:
        return QStringLiteral("Connecting");
    default:
        return QStringLiteral("Connect");
    }
}

QString CDeviceDatabase::ConnectionStatusText() const
{
    switch (connectionStatus) {
    case ConnectionConnected:
        return QStringLiteral("Connected to ") + ipAddress;
    case ConnectionConnecting:
        return QStringLiteral("Connecting to ") + ipAddress + QStringLiteral(" ...");
    case ConnectionNotConnected:
        return QStringLiteral("Not Connected ");
    case ConnectionFailed:
        return QStringLiteral("Connection Failed");
    case ConnectionReconnecting:
        return QStringLiteral("Reconnecting to ") + ipAddress;
    default:
        return QString();
    }
}

// The azimuth motor's store decides for both motors whether a parameter exists.
ushort CDeviceDatabase::GetMotorParameter(int motor, int parameter, bool* found) const
{
    const bool exists = motorParameters[Azimuth].contains(parameter);
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
    const QMap<int, ushort>& stored = motorParameters[motor];
    for (auto parameter = stored.cbegin(); parameter != stored.cend(); ++parameter) {
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
    return FirstNewFirmware > firmwareVersion.toFloat();
}

// The second test refuses every address whose first digit is a letter, and is meant to.
bool CDeviceDatabase::ValidateMacAddress(QString mac, QString& error) const
{
    static const QRegularExpression Pattern(QStringLiteral("([0-9A-F]{2}[:-]){5}([0-9A-F]{2})"));
    if (mac.isEmpty()) {
        error = QStringLiteral("MAC address is empty!");
        return false;
    }
    if (QStringLiteral("abcdef").contains(mac.at(0), Qt::CaseInsensitive)) {
        error = QStringLiteral("Invalid Mac address. Do not set a broadcast address");
        return false;
    }
    if (!Pattern.match(mac).hasMatch()) {
        error = QStringLiteral("Invalid Mac address.");
        return false;
    }
    return true;
}

void CDeviceDatabase::SetConnectionStatus(int code)
{
    connectionStatus = code;
    NotifyColumnChanged(ConnectButton);
    NotifyColumnChanged(ConnectionStatusLine);
}

void CDeviceDatabase::SetApplicationStatus(QString text)
{
    applicationStatus = text;
    NotifyColumnChanged(ApplicationStatus);
}

bool CDeviceDatabase::SetIpAddress(QString text)
{
    return SetAddress(ipAddress, IpAddress, text);
}

void CDeviceDatabase::SetMacAddress(QString text)
{
    macAddress = text.toUpper();
    NotifyColumnChanged(MacAddress);
}

bool CDeviceDatabase::SetSubnetMask(QString text)
{
    return SetAddress(subnetMask, SubnetMask, text);
}

void CDeviceDatabase::SetFirmwareVersion(QString text)
{
    firmwareVersion = text;
    NotifyColumnChanged(FirmwareVersion);
}

void CDeviceDatabase::SetPartNumber(QString text, int set)
{
    SetOfSet(partNumber, PartNumber, text, set);
}

void CDeviceDatabase::SetVariant(QString text, int)
{
    variant = text;
    NotifyColumnChanged(Variant);
}

void CDeviceDatabase::SetProductIndex(QString text, int set)
{
    SetOfSet(productIndex, ProductIndex, text, set);
}

void CDeviceDatabase::SetSerialNumber(QString text, int set)
{
    SetOfSet(serialNumber, SerialNumber, text.left(SerialNumberLength), set);
}

void CDeviceDatabase::SetProductionDate(QString text, int set)
{
    SetOfSet(productionDate, ProductionDate, text, set);
}

void CDeviceDatabase::SetTestInstructionIndex(QString text, int set)
{
    SetOfSet(testInstructionIndex, TestInstructionIndex, text, set);
}

void CDeviceDatabase::SetBoardName(QString text, int set)
{
    SetOfSet(boardName, BoardName, text, set);
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
    NotifyColumnChanged(MotorColumnOf(motor, parameter));
}

void CDeviceDatabase::SetMotorValidationError(int motor, QString text)
{
    if (IsMotor(motor)) {
        motorValidationError[motor] = text;
    }
}

void CDeviceDatabase::ResetData()
{
    SetConnectionStatus(ConnectionNotConnected);
    unsupported = false;
    SetApplicationStatus(QString());
    SetIpAddress(QString());
    SetMacAddress(QString());
    SetSubnetMask(QString());
    using Setter = void (CDeviceDatabase::*)(QString, int);
    constexpr Setter OfBothSets[] = {&CDeviceDatabase::SetPartNumber,
        &CDeviceDatabase::SetProductIndex, &CDeviceDatabase::SetProductionDate,
        &CDeviceDatabase::SetTestInstructionIndex, &CDeviceDatabase::SetSerialNumber,
        &CDeviceDatabase::SetBoardName};
    for (const Setter setter : OfBothSets) {
        (this->*setter)(QString(), 1);
        (this->*setter)(QString(), 0);
    }
    SetFirmwareVersion(QString());
    for (int motor = 0; motor < Motors; ++motor) {
        motorParameters[motor].clear();
        motorValidationError[motor].clear();
    }
}

void CDeviceDatabase::NotifyColumnChanged(int column)
{
    const QModelIndex cell = index(0, column);
    // Twice the display role: the widgets are notified with a list of this form.
    emit dataChanged(cell, cell, QVector<int>(2, Qt::DisplayRole));
}

bool CDeviceDatabase::SetAddress(QString& address, int column, const QString& text)
{
    const bool valid = NormalizeIpAddress(text, address);
    NotifyColumnChanged(column);
    return valid;
}

void CDeviceDatabase::SetOfSet(
    QString (&field)[2], const int (&columns)[2], const QString& text, int set)
{
    if (set == 0 || set == 1) {
        field[set] = text;
        NotifyColumnChanged(columns[set]);
    }
}

bool CDeviceDatabase::NormalizeIpAddress(const QString& text, QString& out)
{
    QHostAddress address;
    const bool valid = address.setAddress(text);
    out = valid ? address.toString() : QString();
    return valid;
}

CDeviceDatabase* TheDeviceDatabase()
{
    return theDeviceDatabase.data();
}
