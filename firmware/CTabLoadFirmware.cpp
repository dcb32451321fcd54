// SPDX-License-Identifier: MIT

#include "firmware/CTabLoadFirmware.h"

#include "firmware/FirmwareStream.h"
#include "link/CDeviceCommunication.h"
#include "model/CDeviceDatabase.h"
#include "platform/Sleep.h"
#include "shell/CCustomProgressDialog.h"
#include "ui_TabLoadFirmware.h"
#include "widgets/UserInput.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QtEndian>

#include <array>

namespace {

constexpr int InstallationPasses = 300;
constexpr unsigned InstallationPassMs = 100;

constexpr ushort StoppedSilently = 65535;

// A block as it travels: its fields big-endian, then the data. What is not named is zero.
constexpr int DataLengthOffset = 0;
constexpr int SumOffset = 2;
constexpr int SequenceOffset = 4;
constexpr int DataOffset = 20;
using Block = std::array<uchar, DataOffset + FirmwareStream::DataSize>;

/// One transfer. It sends each block once, and waits for its acknowledgement before the next.
class Transfer
{
public:
    Transfer(const FirmwareStream& stream, CCustomProgressDialog& progress)
        : stream(stream)
        , progress(progress)
    {
    }

    /// Whether all blocks went through. If not, `error` tells why. It stays as it is when there is
    /// nothing to tell. With no block to send the unit's last acknowledgement decides.
    bool SendBlocks(QString& error)
    {
        for (quint16 block = 0; block < stream.BlockCount(); ++block) {
            Block payload{};
            quint16 sum = 0;
            if (!FillBlock(block, payload, sum)) {
                error = QStringLiteral("FW send cancelled!");
                return false;
            }
            TheDeviceCommunication()->SendFirmwareBlock(payload.data());
            if (!IsAcknowledged(error)) {
                return false;
            }
            totalSum += sum;
            ++sequence;
        }
        return TheDeviceCommunication()->GetLastResult() == CDeviceCommunication::AckDone;
    }

    bool SendChecksum() const
    {
        const std::array sumAndSize{qToBigEndian(totalSum), qToBigEndian(stream.Size())};
        return TheDeviceCommunication()->SendFirmwareChecksum(
            reinterpret_cast<const uchar*>(sumAndSize.data()));
    }

private:
    // Looks at the dialog for each byte. False when the user has closed it.
    bool FillBlock(quint16 block, Block& payload, quint16& sum)
    {
        for (quint32 j = 0; j < FirmwareStream::DataSize; ++j) {
            const uchar byte = stream.At(block * FirmwareStream::DataSize + j);
            payload[DataOffset + j] = byte;
            sum = static_cast<quint16>(sum + byte);
            progress.setValue(position++);
            if (progress.wasCanceled()) {
                return false;
            }
        }
        qToBigEndian(stream.DataLength(block), payload.data() + DataLengthOffset);
        qToBigEndian(sum, payload.data() + SumOffset);
        qToBigEndian(sequence, payload.data() + SequenceOffset);
        return true;
    }

    static bool IsAcknowledged(QString& error)
    {
        switch (TheDeviceCommunication()->GetLastResult()) {
        case CDeviceCommunication::AckDone:
            return true;
        case CDeviceCommunication::AckRefused:
            error = QStringLiteral("An error occoured during transmission");
            return false;
        case StoppedSilently:
            return false;
        default:
            error = QStringLiteral("unknown error");
            return false;
        }
    }

    const FirmwareStream& stream;
    CCustomProgressDialog& progress;
    int position = 0;
    quint16 sequence = 0;
    quint32 totalSum = 0;
};

// False when not all of the file could be read. A pipe or a device is no file: it may have no end.
bool ReadImage(QFile& file, QByteArray& image)
{
    if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly)) {
        return false;
    }
    image = file.readAll();
    const bool whole = file.error() == QFileDevice::NoError && image.size() >= file.size();
    file.close();
    return whole;
}

} // namespace

CTabLoadFirmware::CTabLoadFirmware(QWidget* parent)
    : CTabBaseClass(parent)
    , ui(new Ui::TabLoadFirmware)
{
    ui->setupUi(this);
    ui->btnLoadFirmware->setEnabled(false);
    ui->btnUpdateFirmware->setEnabled(false);
    ui->lblCompatibility->setVisible(false);
    ConnectClick(ui->btnSelectFirmware, this, &CTabLoadFirmware::FirmwareFileSelectButtonClicked);
    ConnectClick(ui->btnLoadFirmware, this, &CTabLoadFirmware::FirmwareLoadButtonClicked);
    ConnectClick(ui->btnUpdateFirmware, this, &CTabLoadFirmware::FirmwareUpdateButtonClicked);
}

CTabLoadFirmware::~CTabLoadFirmware() = default;

void CTabLoadFirmware::ConnectionStatusChanged()
{
    const CDeviceDatabase* const database = TheDeviceDatabase();
    const bool compatible = !database->IsFirmwareBelowVersion3() || !database->GetUnsupportedFlag();
    if (compatible) {
        UpdateControls();
    }
    ui->lblCompatibility->setVisible(!compatible);
    setEnabled(compatible);
}

void CTabLoadFirmware::UpdateControls()
{
    const bool connected = TheDeviceCommunication()->IsConnected();
    ui->btnLoadFirmware->setEnabled(connected && !firmwareFile.fileName().isEmpty());
    ui->btnUpdateFirmware->setEnabled(connected && firmwareSent && !updatePendingValidation);
}

void CTabLoadFirmware::FirmwareFileSelectButtonClicked()
{
    firmwareFile.setFileName(QFileDialog::getOpenFileName(
        this, QStringLiteral("Select Firmware File"), QString(), QStringLiteral("files *.cyacd")));
    ui->txtFirmwareFile->setText(QFileInfo(firmwareFile).fileName());
    UpdateControls();
}

void CTabLoadFirmware::FirmwareLoadButtonClicked()
{
    CDeviceDatabase* const database = TheDeviceDatabase();
    if (!TheDeviceCommunication()->IsConnected()) {
        database->SetApplicationStatus(QStringLiteral("Not connected to any device."));
        return;
    }
    database->SetApplicationStatus(QStringLiteral("Sending Firmware file to the Device .."));
    ProcessEventsBesidesInput();
    QString error;
    firmwareSent = SendFirmwareFile(error);
    updatePendingValidation = false;
    database->SetApplicationStatus(
        firmwareSent ? QStringLiteral("Firmware sent to device successfully!") : error);
    UpdateControls();
}

bool CTabLoadFirmware::SendFirmwareFile(QString& error)
{
    const bool exists = firmwareFile.exists();
    if (!TheDeviceCommunication()->IsConnected()) {
        return false;
    }
    QByteArray image;
    const bool available = exists && ReadImage(firmwareFile, image);
    if (exists && !available) {
        error = firmwareFile.fileName() + QStringLiteral(" File could not be found or open");
        image.clear();
    }
    const FirmwareStream stream(image);
    CCustomProgressDialog progress(
        QStringLiteral("Do Firmware Update..."), 0, static_cast<int>(stream.Size()), this);
    progress.setLabelText(QStringLiteral("Sending %1 bytes...").arg(stream.Size()));
    progress.setAutoReset(false); // else it would close while the last block is on its way
    Transfer transfer(stream, progress);
    const bool acknowledged = available && transfer.SendBlocks(error);
    progress.setValue(stream.BlockCount());
    const bool sent = acknowledged && transfer.SendChecksum();
    progress.close();
    ProcessEventsBesidesInput();
    return sent;
}

void CTabLoadFirmware::FirmwareUpdateButtonClicked()
{
    CDeviceDatabase* const database = TheDeviceDatabase();
    database->SetApplicationStatus(QStringLiteral("Updating firmware .."));
    ProcessEventsBesidesInput();
    TheDeviceCommunication()->StartFirmwareUpdate();
    updateProgressDialog.reset(
        new CCustomProgressDialog(QStringLiteral("Firmware Update in progress... "), 0, 0, this));
    updateProgressDialog->SetCloseButtonHidden(true);
    for (int pass = 0; pass < InstallationPasses; ++pass) {
        updateProgressDialog->setValue(pass);
        platform::Sleep(InstallationPassMs);
    }
    TheDeviceCommunication()->Disconnect();
    firmwareSent = false;
    updatePendingValidation = true;
    UpdateControls();
    database->SetApplicationStatus(QStringLiteral("Validating Firmware Update .. "));
    emit ReconnectAfterFirmwareUpDate();
    ProcessEventsBesidesInput();
}

RAVOBoolean CTabLoadFirmware::ValidateFirmwareUpdate()
{
    CDeviceDatabase* const database = TheDeviceDatabase();
    const bool validated =
        TheDeviceCommunication()->IsConnected() && TheDeviceCommunication()->ValidateFirmware();
    database->SetApplicationStatus(validated
                                       ? QStringLiteral("Firmware Updated successfully to v") +
                                             database->GetFirmwareVersion() + QLatin1Char('.')
                                       : QStringLiteral("Firmware Update Failed!"));
    ProcessEventsBesidesInput();
    if (updateProgressDialog != nullptr) {
        updateProgressDialog->close();
        updateProgressDialog.reset();
    }
    return validated ? 1 : 0;
}
