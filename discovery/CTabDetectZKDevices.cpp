// SPDX-License-Identifier: MIT

#include "discovery/CTabDetectZKDevices.h"

#include "model/CDeviceDatabase.h"
#include "platform/Sleep.h"
#include "shell/CCustomProgressDialog.h"
#include "ui_TabDetectZKDevices.h"
#include "widgets/MaskedFields.h"
#include "widgets/UserInput.h"

#include <QEvent>
#include <QHeaderView>
#include <QTableWidgetItem>

namespace {

constexpr unsigned WaitWithEmptyStatusMs = 200;

QTableWidgetItem* NewReadOnlyItem(const QString& text)
{
    auto* item = new QTableWidgetItem(text);
    item->setFlags(Qt::ItemIsSelectable | Qt::ItemIsUserCheckable | Qt::ItemIsEnabled);
    return item;
}

bool IsUnit(const sDEVICE& device)
{
    return device.macAddress.startsWith(QLatin1String("02:4C:7E:"), Qt::CaseInsensitive);
}

void RemoveAllRows(QTableWidget* table)
{
    while (table->rowCount() > 0) {
        table->removeRow(table->rowCount() - 1);
    }
}

} // namespace

CTabDetectZKDevices::CTabDetectZKDevices(QWidget* parent)
    : CTabBaseClass(parent)
    , ui(new Ui::TabDetectZKDevices)
{
    ui->setupUi(this);
    ui->btnFindDevices->setShortcut(QKeySequence()); // or its ampersand makes Alt+K press it
    ui->tblDetectDevices->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    ui->txtStartIpAddress->installEventFilter(this);
    ui->txtEndIpAddress->installEventFilter(this);
    ConnectClick(ui->btnFindDevices, this, &CTabDetectZKDevices::FindZKDevicesButtonClicked);
    connect(&detector, &CDeviceDetector::DeviceFound, this,
        &CTabDetectZKDevices::SetDeviceToTableWidget);
}

CTabDetectZKDevices::~CTabDetectZKDevices() = default;

void CTabDetectZKDevices::ConnectionStatusChanged() {}

void CTabDetectZKDevices::UpdateControls() {}

bool CTabDetectZKDevices::eventFilter(QObject* watched, QEvent* event)
{
    return FilterMaskedFields(
        {ui->txtStartIpAddress, ui->txtEndIpAddress}, QLatin1Char('.'), watched, event);
}

void CTabDetectZKDevices::FindZKDevicesButtonClicked()
{
    CCustomProgressDialog progress(
        QStringLiteral("Searching Z&K Devices in progress... "), 0, 0, this);
    RemoveAllRows(ui->tblDetectDevices);
    TheDeviceDatabase()->SetApplicationStatus(QString());
    platform::Sleep(WaitWithEmptyStatusMs);
    TheDeviceDatabase()->SetApplicationStatus(QStringLiteral("Detect Z&K Devices: in progress"));
    detector.SearchDevices(ui->txtStartIpAddress->text(), ui->txtEndIpAddress->text(), &progress);
    TheDeviceDatabase()->SetApplicationStatus(QStringLiteral("Detect Z&K Devices: Ready"));
}

void CTabDetectZKDevices::SetDeviceToTableWidget(sDEVICE sDeviceToAdd)
{
    if (!IsUnit(sDeviceToAdd)) {
        return;
    }
    QTableWidget* table = ui->tblDetectDevices;
    const auto row = static_cast<quint16>(table->rowCount());
    QTableWidgetItem* ipAddress = NewReadOnlyItem(sDeviceToAdd.ipAddress);
    QTableWidgetItem* macAddress = NewReadOnlyItem(sDeviceToAdd.macAddress);
    table->insertRow(row);
    table->setItem(row, 0, ipAddress);
    table->setItem(row, 1, macAddress);
    table->viewport()->repaint();
}
