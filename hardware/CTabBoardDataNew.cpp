// SPDX-License-Identifier: MIT

#include "hardware/CTabBoardDataNew.h"

#include "hardware/CBoardDataAccess.h"
#include "hardware/CZKHardwareComponent.h"
#include "link/CDeviceCommunication.h"
#include "link/ConnectToDevice.h"
#include "link/DeviceReconfiguration.h"
#include "model/CDeviceDatabase.h"
#include "shell/CCustomProgressDialog.h"
#include "ui_TabBoardDataNew.h"
#include "widgets/ModelMapper.h"
#include "widgets/UserInput.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QtEndian>

#include <array>

namespace {

constexpr int RegionSize = CBoardDataAccess::RegionSize;
constexpr int EepromSize = 2 * RegionSize;
constexpr int AddressSize = 2;

using RowSetter = void (CDeviceDatabase::*)(QString, int);

// By index of the board data columns.
constexpr RowSetter RowSetters[] = {
    nullptr,
    &CDeviceDatabase::SetBoardName,
    &CDeviceDatabase::SetSerialNumber,
    &CDeviceDatabase::SetPartNumber,
    &CDeviceDatabase::SetVariant,
    nullptr,
    &CDeviceDatabase::SetProductIndex,
    &CDeviceDatabase::SetTestInstructionIndex,
    &CDeviceDatabase::SetProductionDate,
};

QString NotConnectedText()
{
    return QStringLiteral("Not connected to any device!");
}

// Reads at most a region. When the file cannot be read, gives nothing and sets `message` to what
// the user is told. So it does for a pipe or a device, which may have no end.
QByteArray ReadRegionFrom(QFile& file, QString& message)
{
    QByteArray data;
    if (QFileInfo(file).isFile() && file.open(QIODevice::ReadOnly)) {
        data = file.read(RegionSize);
    } else {
        message = file.fileName() + QStringLiteral(" File could not be found or open");
    }
    file.close();
    return data;
}

QString WriteFailureText()
{
    return TheDeviceCommunication()->GetLastResult() == CDeviceCommunication::AckUnclear
               ? QStringLiteral("An error occoured during transmission.")
               : QStringLiteral("EEPROM data write failed!");
}

// The unit gets all but the last byte.
bool WriteRegion(quint16 offset, const QByteArray& data, QProgressDialog& dialog)
{
    std::array<uchar, AddressSize + RegionSize> block{};
    int last = 0;
    for (int i = 0; i < data.size(); ++i) {
        dialog.setValue(i);
        block[AddressSize + i] = static_cast<uchar>(data.at(i));
        last = i;
    }
    qToBigEndian(offset, block.data());
    return TheDeviceCommunication()->WriteEeprom(block.data(), static_cast<ushort>(last));
}

} // namespace

CTabBoardDataNew::CTabBoardDataNew(QWidget* parent)
    : CTabBaseClass(parent)
    , ui(new Ui::TabBoardDataNew)
{
    ui->setupUi(this);
    BindFields();
    ConnectButtons();
}

CTabBoardDataNew::~CTabBoardDataNew() = default;

void CTabBoardDataNew::BindFields()
{
    mapper.reset(NewModelMapper());
    mapper->addMapping(ui->txtDevicePartNumber, CDeviceDatabase::PartNumber0Column);
    mapper->addMapping(ui->txtDeviceProductIndex, CDeviceDatabase::ProductIndex0Column);
    mapper->addMapping(ui->txtDeviceSerialNumber, CDeviceDatabase::SerialNumber0Column);
    mapper->addMapping(ui->txtDeviceProductionDate, CDeviceDatabase::ProductionDate0Column);
    mapper->addMapping(
        ui->txtDeviceTestInstructionIndex, CDeviceDatabase::TestInstructionIndex0Column);
    mapper->addMapping(ui->txtDeviceName, CDeviceDatabase::BoardName0Column);
    mapper->addMapping(ui->txtBoardPartNumber, CDeviceDatabase::PartNumber1Column);
    mapper->addMapping(ui->txtBoardProductIndex, CDeviceDatabase::ProductIndex1Column);
    mapper->addMapping(ui->txtBoardSerialNumber, CDeviceDatabase::SerialNumber1Column);
    mapper->addMapping(ui->txtBoardProductionDate, CDeviceDatabase::ProductionDate1Column);
    mapper->addMapping(
        ui->txtBoardTestInstructionIndex, CDeviceDatabase::TestInstructionIndex1Column);
    mapper->addMapping(ui->txtBoardName, CDeviceDatabase::BoardName1Column);
    mapper->toFirst();
}

void CTabBoardDataNew::ConnectButtons()
{
    ConnectClick(ui->btnDeviceDataFileSelector, this, &CTabBoardDataNew::DeviceDataFileSelector);
    ConnectClick(ui->btnBoardDataFileSelector, this, &CTabBoardDataNew::BoardDataFileSelector);
    ConnectClick(ui->btnWriteDeviceData, this, &CTabBoardDataNew::DeviceDataWriteButtonClicked);
    ConnectClick(ui->btnWriteBoardData, this, &CTabBoardDataNew::BoardDataWriteButtonClicked);
    ConnectClick(ui->btnReadAll, this, &CTabBoardDataNew::DataReadButtonClicked);
    ConnectClick(ui->btnWriteOld, this, &CTabBoardDataNew::SendOldFirmwareDataButtonClicked);
}

void CTabBoardDataNew::ConnectionStatusChanged()
{
    const bool old = TheDeviceDatabase()->IsFirmwareBelowVersion3();
    ShowGeneration(old);
    if (!old) {
        ReadBlockData();
    }
}

// Of an old unit only the part and the serial number are known, and the user may change them.
void CTabBoardDataNew::ShowGeneration(bool old)
{
    ui->widNewFirmwareItems->setVisible(!old);
    ui->widOldFirmwareItems->setVisible(old);
    ui->boxBoard->setVisible(!old);
    QWidget* const unknownToOldUnits[] = {
        ui->lblDeviceProductIndex,
        ui->txtDeviceProductIndex,
        ui->lblDeviceProductionDate,
        ui->txtDeviceProductionDate,
        ui->lblDeviceTestInstructionIndex,
        ui->txtDeviceTestInstructionIndex,
        ui->lblDeviceName,
        ui->txtDeviceName,
    };
    for (QWidget* const widget : unknownToOldUnits) {
        widget->setEnabled(!old);
    }
    ui->txtDevicePartNumber->setReadOnly(!old);
    ui->txtDeviceSerialNumber->setReadOnly(!old);
}

void CTabBoardDataNew::UpdateControls()
{
    const bool connected = TheDeviceCommunication()->IsConnected();
    ui->btnWriteDeviceData->setEnabled(connected && !DeviceDataFile.fileName().isEmpty());
    ui->btnWriteBoardData->setEnabled(connected && !BoardDataFile.fileName().isEmpty());
    ui->btnReadAll->setEnabled(connected);
    ui->btnWriteOld->setEnabled(connected);
}

// The message speaks of the board region alone.
bool CTabBoardDataNew::ReadBlockData()
{
    CDeviceDatabase* const database = TheDeviceDatabase();
    CDeviceCommunication* const device = TheDeviceCommunication();
    if (!device->IsConnected()) {
        database->SetApplicationStatus(NotConnectedText());
        return false;
    }
    CBoardDataAccess access;
    QStringList texts;
    if (access.ReadBlockTexts(device, texts, CBoardDataAccess::DeviceRegion)) {
        ApplyRowToDatabase(texts, CDeviceDatabase::DeviceSet);
    }
    const bool valid = access.ReadBlockTexts(device, texts, CBoardDataAccess::BoardRegion);
    if (valid) {
        ApplyRowToDatabase(texts, CDeviceDatabase::BoardSet);
    }
    database->SetApplicationStatus(QStringLiteral("Eeprom data ") +
                                   (valid ? QStringLiteral("valid") : QStringLiteral("invalid")));
    return valid;
}

void CTabBoardDataNew::ApplyRowToDatabase(const QStringList& texts, int set)
{
    for (int column = 0; column < BoardDataColumns.size(); ++column) {
        if (const RowSetter setter = RowSetters[column]) {
            (TheDeviceDatabase()->*setter)(texts.at(column), set);
        }
    }
}

void CTabBoardDataNew::DeviceDataFileSelector()
{
    SelectDataFile(DeviceFile);
}

void CTabBoardDataNew::BoardDataFileSelector()
{
    SelectDataFile(BoardFile);
}

void CTabBoardDataNew::SelectDataFile(FileKind kind)
{
    DeviceDataFile.setFileName(QString()); // whichever kind is chosen
    const QString name = QFileDialog::getOpenFileName(
        this, QStringLiteral("Open bin files"), QString(), QStringLiteral("files *.bin"));
    QFile& file = kind == DeviceFile ? DeviceDataFile : BoardDataFile;
    QLineEdit* const shown = kind == DeviceFile ? ui->txtDeviceDataFile : ui->txtBoardDataFile;
    file.setFileName(name);
    shown->setText(QFileInfo(name).fileName());
    UpdateControls();
}

void CTabBoardDataNew::DeviceDataWriteButtonClicked()
{
    WriteDataFile(CBoardDataAccess::DeviceRegion, DeviceDataFile);
    Forget(DeviceDataFile, ui->txtDeviceDataFile);
}

void CTabBoardDataNew::BoardDataWriteButtonClicked()
{
    WriteDataFile(CBoardDataAccess::BoardRegion, BoardDataFile);
    Forget(BoardDataFile, ui->txtBoardDataFile);
}

void CTabBoardDataNew::Forget(QFile& file, QLineEdit* shown)
{
    file.setFileName(QString());
    shown->setText(file.fileName());
    UpdateControls();
}

void CTabBoardDataNew::WriteDataFile(quint16 offset, QFile& file)
{
    CDeviceDatabase* const database = TheDeviceDatabase();
    if (!TheDeviceCommunication()->IsConnected()) {
        database->SetApplicationStatus(NotConnectedText());
        ProcessEventsBesidesInput();
        return;
    }
    QString result = QStringLiteral("Data written to the device successfully.");
    const QByteArray data = ReadRegionFrom(file, result);

    CCustomProgressDialog dialog(QStringLiteral("Send data ..."), 0, data.size(), this);
    dialog.show();
    dialog.setLabelText(QStringLiteral("Sending %1 bytes...").arg(data.size()));
    database->SetApplicationStatus(QStringLiteral("Writing data to the device .."));
    ProcessEventsBesidesInput();

    const bool written = WriteRegion(offset, data, dialog);
    if (!written) {
        result = WriteFailureText();
    }
    database->SetApplicationStatus(result);
    if (written) {
        ReadBlockData();
    }
    dialog.setValue(data.size());
    database->SetApplicationStatus(result); // ReadBlockData() has set its own
    dialog.close();
    ProcessEventsBesidesInput();
}

void CTabBoardDataNew::DataReadButtonClicked()
{
    CDeviceCommunication* const device = TheDeviceCommunication();
    CDeviceDatabase* const database = TheDeviceDatabase();
    if (!device->IsConnected()) {
        return;
    }
    QString result = QStringLiteral("Successfully read from device EEPROM.");
    CCustomProgressDialog dialog(
        QStringLiteral("Reading EEPROM in progress..."), 0, EepromSize, this);
    dialog.show();
    database->SetApplicationStatus(QStringLiteral("Reading EEPROM data from device .."));
    dialog.setValue(1);
    ProcessEventsBesidesInput();

    QVector<uchar> image;
    if (CBoardDataAccess().ReadEepromImages(device, image, &dialog)) {
        ReadBlockData();
    } else {
        result = QStringLiteral("Could not read data from device EEPROM.");
    }
    dialog.setValue(EepromSize);
    database->SetApplicationStatus(result);
    ProcessEventsBesidesInput();
}

void CTabBoardDataNew::SendOldFirmwareDataButtonClicked()
{
    CDeviceDatabase* const database = TheDeviceDatabase();
    const QString serial = ui->txtDeviceSerialNumber->text();
    const QString part = ui->txtDevicePartNumber->text();
    const QString mac = database->GetMacAddress();
    const bool done = ChangeDeviceConfiguration(serial, part, mac, QStringLiteral("Board Data")) &&
                      ConnectToDevice(ConnectionRetries, database->GetIpAddress());
    if (!done || !TheDeviceCommunication()->IsConnected()) {
        database->SetApplicationStatus(QStringLiteral("Board Data update failed!."));
        return;
    }
    database->SetSerialNumber(serial, CDeviceDatabase::DeviceSet);
    database->SetPartNumber(part, CDeviceDatabase::DeviceSet);
    database->SetMacAddress(mac);
    database->SetApplicationStatus(QStringLiteral("Board Data updated successfully. "));
}
