// SPDX-License-Identifier: MIT

#include "identity/CTabIpConfiguration.h"

#include "link/CDeviceCommunication.h"
#include "link/ConnectToDevice.h"
#include "link/DeviceReconfiguration.h"
#include "model/CDeviceDatabase.h"
#include "platform/Sleep.h"
#include "shell/CCustomProgressDialog.h"
#include "ui_TabIpConfiguration.h"
#include "widgets/MaskedFields.h"
#include "widgets/ModelMapper.h"
#include "widgets/UserInput.h"

#include <QEvent>
#include <QHostAddress>
#include <QLineEdit>

namespace {

constexpr unsigned AddressChangeMs = 100;

QString MacChangedText()
{
    return QStringLiteral("Mac address changed successfully.");
}

// The text for an address that was not understood.
QString FormOf(const QHostAddress& address, const QString& nameOfNone)
{
    const QString form = address.toString();
    return form.isEmpty() ? nameOfNone : form;
}

// `error` is not shown to the user. `*changed` becomes true when a frame went out.
bool ChangeAddressAndMask(
    const QString& address, const QString& mask, QString& error, bool* changed)
{
    QHostAddress parsed;
    if (!parsed.setAddress(address)) {
        error = FormOf(parsed, QStringLiteral("Empty IP Address "));
        return false;
    }
    if (!parsed.setAddress(mask)) {
        error = FormOf(parsed, QStringLiteral("Empty Subnet Mask "));
        return false;
    }
    return ChangeIpConfiguration(address, mask, error, changed);
}

bool ChangeMac(const QString& mac, QString& error)
{
    return TheDeviceDatabase()->IsFirmwareBelowVersion3() ? ChangeMacViaConfiguration(mac, error)
                                                          : ChangeMacDirect(mac, error);
}

} // namespace

CTabIpConfiguration::CTabIpConfiguration(QWidget* parent)
    : CTabBaseClass(parent)
    , ui(new Ui::TabIpConfiguration)
{
    ui->setupUi(this);
    ui->btnSendIpAddress->setShortcut(QKeySequence()); // or its ampersand makes Alt+Space press it
    ui->btnSendIpAddress->setEnabled(false);
    ui->btnSendMacAddress->setEnabled(false);
    ui->lblMacAddress->hide();
    ui->txtNewMacAddress->hide();
    ui->btnSendMacAddress->hide();
    for (QLineEdit* const field :
        {ui->txtNewIpAddress, ui->txtNewSubnetMask, ui->txtNewMacAddress}) {
        field->installEventFilter(this);
    }
    ConnectClick(ui->btnSendIpAddress, this, &CTabIpConfiguration::SendIpAddressButtonClicked);

    mapper.reset(NewModelMapper());
    mapper->addMapping(ui->txtNewIpAddress, CDeviceDatabase::IpAddressColumn);
    mapper->addMapping(ui->txtNewSubnetMask, CDeviceDatabase::SubnetMaskColumn);
    mapper->addMapping(ui->txtNewMacAddress, CDeviceDatabase::MacAddressColumn);
    mapper->toFirst();
}

CTabIpConfiguration::~CTabIpConfiguration() = default;

void CTabIpConfiguration::ConnectionStatusChanged()
{
    UpdateControls();
}

void CTabIpConfiguration::UpdateControls()
{
    ui->btnSendIpAddress->setEnabled(TheDeviceCommunication()->IsConnected());
}

bool CTabIpConfiguration::eventFilter(QObject* watched, QEvent* event)
{
    return FilterMaskedFields(
               {ui->txtNewIpAddress, ui->txtNewSubnetMask}, QLatin1Char('.'), watched, event) ||
           FilterMaskedFields({ui->txtNewMacAddress}, QLatin1Char(':'), watched, event);
}

void CTabIpConfiguration::SendIpAddressButtonClicked()
{
    CDeviceDatabase* const database = TheDeviceDatabase();
    if (!TheDeviceCommunication()->IsConnected()) {
        UpdateControls();
        database->SetApplicationStatus(QStringLiteral("Not Connected to any device"));
        return;
    }
    const QString address = ui->txtNewIpAddress->text();
    const QString mask = ui->txtNewSubnetMask->text();
    database->SetApplicationStatus(QStringLiteral("Changing Ip Address & Subset Mask ... "));
    QString error;
    bool changed = false;
    bool ok = ChangeAddressAndMask(address, mask, error, &changed);
    platform::Sleep(AddressChangeMs);
    if (ok && changed) {
        database->SetIpAddress(address);
        database->SetSubnetMask(mask);
        ok = ConnectToDevice(ConnectionRetries, address);
    } else if (ok) {
        database->SetApplicationStatus(
            QStringLiteral("Ip Address & Subnet Mask changed successfully."));
    }
    if (!ok || !TheDeviceCommunication()->IsConnected()) {
        database->SetApplicationStatus(QStringLiteral("Ip Address & Subset Mask change failed."));
        return;
    }
    database->SetApplicationStatus(
        QStringLiteral("Ip Address & Subset Mask changed successfully."));
    emit SignalIpChanged();
}

void CTabIpConfiguration::SendMacAddressButtonClicked()
{
    CDeviceDatabase* const database = TheDeviceDatabase();
    const QString mac = ui->txtNewMacAddress->text();
    QString error;
    bool ok = database->ValidateMacAddress(mac, error);
    const bool same = database->GetMacAddress().toUpper() == mac;
    database->SetApplicationStatus(QStringLiteral("Setting new MAC address for the device ... "));
    const CCustomProgressDialog dialog(
        QStringLiteral("Changing device MAC address... "), 0, 0, this);
    if (!ok) {
        database->SetApplicationStatus(error);
    } else if (same) {
        database->SetApplicationStatus(MacChangedText());
    } else {
        ok = ChangeMac(mac, error);
    }
    if (ok) {
        ok = ConnectToDevice(ConnectionRetries, database->GetIpAddress());
    }
    if (!ok || !TheDeviceCommunication()->IsConnected()) {
        database->SetApplicationStatus(QStringLiteral("Mac address change failed."));
        return;
    }
    database->SetApplicationStatus(MacChangedText());
    database->SetMacAddress(mac);
}
