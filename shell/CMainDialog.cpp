// SPDX-License-Identifier: MIT

#include "shell/CMainDialog.h"

#include "discovery/CTabDetectZKDevices.h"
#include "firmware/CTabLoadFirmware.h"
#include "hardware/CTabBoardDataNew.h"
#include "identity/CTabInfo.h"
#include "identity/CTabIpConfiguration.h"
#include "link/CDeviceCommunication.h"
#include "link/ConnectToDevice.h"
#include "link/DeviceReconfiguration.h"
#include "model/CDeviceDatabase.h"
#include "options/CTabOptions.h"
#include "rotor/CTabMotorConfiguration.h"
#include "rotor/RotorCatalogue.h"
#include "shell/CCustomProgressDialog.h"
#include "ui_MainDialog.h"
#include "widgets/MaskedFields.h"
#include "widgets/ModelMapper.h"
#include "widgets/UserInput.h"

#include <QAccessible>
#include <QEvent>
#include <QIcon>
#include <QImageReader>
#include <QPixmap>
#include <QTabBar>

namespace {

constexpr int WholeLoad = 100;

// Each file is sharp at its own size. Without its format Qt would load all its image plugins to
// find it out.
QIcon LoadIcon()
{
    QIcon icon;
    for (const char* const file :
        {":/ZkCrest_16_32_48.png", ":/ZkCrest_32.png", ":/ZkCrest_16.png"}) {
        QImageReader reader(QString::fromLatin1(file), "png");
        reader.setAutoDetectImageFormat(false);
        icon.addPixmap(QPixmap::fromImageReader(&reader));
    }
    return icon;
}

} // namespace

CMainDialog::CMainDialog(QWidget* parent)
    : QDialog(parent)
    , ui(new Ui::MainDialog)
{
}

CMainDialog::~CMainDialog()
{
    QVector<CTabBaseClass*> owned;
    owned.swap(tabs);
    qDeleteAll(owned);
}

void CMainDialog::SetupDialog()
{
    ui->setupUi(this);
    setWindowTitle(QStringLiteral("Z&K VX440 Access Application"));
    CreateTabs();
    setWindowIcon(LoadIcon());
    ui->txtIpAddress->setInputMask(QStringLiteral("000.000.000.000"));
    ui->txtIpAddress->installEventFilter(this);
    ui->txtIpAddress->setText(QStringLiteral("192.168.0.129"));
    ui->txtIpAddress->setFocus(); // with its text selected when the window shows
    AddPages();
    ui->lblAppStatus->setText(QString());
    BindStatusTexts();
}

void CMainDialog::CreateTabs()
{
    infoTab = new CTabInfo(ui->tabWidget);
    firmwareTab = new CTabLoadFirmware(ui->tabWidget);
    ipTab = new CTabIpConfiguration(ui->tabWidget);
    detectTab = new CTabDetectZKDevices(ui->tabWidget);
    azimuthTab = new CTabMotorConfiguration(ui->tabWidget, Motor::Azimuth);
    polarTab = new CTabMotorConfiguration(ui->tabWidget, Motor::Polar);
    boardDataTab = new CTabBoardDataNew(nullptr);
    optionsTab = new CTabOptions(ui->tabWidget);
    tabs = {infoTab, optionsTab, firmwareTab, ipTab, detectTab, azimuthTab, polarTab, boardDataTab};
}

// The board data tab has no page: it takes part in the passes and stays out of sight.
void CMainDialog::AddPages()
{
    const struct
    {
        QWidget* tab;
        QString title;
    } pages[] = {
        {infoTab, QStringLiteral("Info")},
        {firmwareTab, QStringLiteral("Update FW")},
        {ipTab, QStringLiteral("IP Configuration")},
        {azimuthTab, QStringLiteral("Azimuth Configuration")},
        {polarTab, QStringLiteral("Pol/Eval Configuration")},
        {optionsTab, QStringLiteral("Options")},
        {detectTab, QStringLiteral("Detect Z&K Device")},
    };
    ui->tabWidget->clear();
    for (const auto& page : pages) {
        const int index = ui->tabWidget->addTab(page.tab, page.title);
        ui->tabWidget->tabBar()->setAccessibleTabName(index, page.title);
    }
}

void CMainDialog::BindStatusTexts()
{
    const QByteArray text = QByteArrayLiteral("text");
    mapper.reset(NewModelMapper());
    mapper->addMapping(ui->btnConnect, CDeviceDatabase::ConnectButtonColumn, text);
    mapper->addMapping(ui->lblAppStatus, CDeviceDatabase::ApplicationStatusColumn, text);
    mapper->addMapping(ui->lblConnectionStatus, CDeviceDatabase::ConnectionStatusColumn, text);
    mapper->toFirst();
    connect(TheDeviceDatabase(), &QAbstractItemModel::dataChanged, ui->lblAppStatus,
        [this](const QModelIndex& cell) {
            if (cell.column() == CDeviceDatabase::ApplicationStatusColumn) {
                QAccessibleEvent alert(ui->lblAppStatus, QAccessible::Alert);
                QAccessible::updateAccessibility(&alert);
            }
        });
}

void CMainDialog::ConnectSignals()
{
    ConnectClick(ui->btnConnect, this, &CMainDialog::ConnectButtonClicked);
    connect(ui->txtIpAddress, &QLineEdit::returnPressed, ui->btnConnect, &QPushButton::click);
    connect(ipTab, &CTabIpConfiguration::SignalIpChanged, this, &CMainDialog::IpAddressChanged);
    connect(TheDeviceCommunication(), &CDeviceCommunication::ConnectionLost, this,
        &CMainDialog::CheckForConnectionLoss);
    connect(firmwareTab, &CTabLoadFirmware::ReconnectAfterFirmwareUpDate, this,
        &CMainDialog::ReconnectAfterFirmwareUpdate);
    connect(this, &CMainDialog::AttemptedReconnection, firmwareTab,
        &CTabLoadFirmware::ValidateFirmwareUpdate);
    connect(polarTab, &CTabMotorConfiguration::ReadFromUi, azimuthTab,
        &CTabMotorConfiguration::ReadParamValuesFromUi);
    connect(azimuthTab, &CTabMotorConfiguration::ReadFromUi, polarTab,
        &CTabMotorConfiguration::ReadParamValuesFromUi);
}

void CMainDialog::DisableBoardDataTab(int) {}

void CMainDialog::HideBoardDataTab(int index)
{
    QWidget* const page = ui->tabWidget->widget(index);
    if (page == boardDataTab) {
        page->setVisible(page->isEnabled());
    }
}

void CMainDialog::ConnectButtonClicked()
{
    const QString address = ui->txtIpAddress->text();
    ui->lblAppStatus->setText(QString());
    TheDeviceDatabase()->ResetData();
    TheDeviceDatabase()->SetIpAddress(address);
    if (ConnectToDevice(ConnectionRetries, address)) {
        LoadDeviceInfo();
    }
    UpdateTabs();
}

void CMainDialog::IpAddressChanged()
{
    ui->txtIpAddress->setText(TheDeviceDatabase()->GetIpAddress());
}

void CMainDialog::ReconnectAfterFirmwareUpdate()
{
    if (ConnectToDevice(ConnectionRetries, TheDeviceDatabase()->GetIpAddress())) {
        ReadDeviceInfo();
    }
    emit AttemptedReconnection();
}

void CMainDialog::CheckForConnectionLoss()
{
    if (TheDeviceCommunication()->IsConnected()) {
        return;
    }
    TheDeviceDatabase()->SetConnectionStatus(CDeviceDatabase::ConnectionNotConnected);
    UpdateTabs();
}

void CMainDialog::LoadDeviceInfo()
{
    CCustomProgressDialog dialog(QStringLiteral("Loading Device Info ..."), 0, WholeLoad, this);
    dialog.setValue(1);
    ProcessEventsBesidesInput();
    const int step = WholeLoad / tabs.size();
    int progress = 0;
    for (CTabBaseClass* const tab : qAsConst(tabs)) {
        tab->ConnectionStatusChanged();
        progress += step;
        dialog.setValue(progress);
        if (dialog.wasCanceled()) {
            break;
        }
    }
    dialog.close();
}

void CMainDialog::UpdateTabs()
{
    for (CTabBaseClass* const tab : qAsConst(tabs)) {
        tab->UpdateControls();
    }
}

bool CMainDialog::eventFilter(QObject* watched, QEvent* event)
{
    return FilterMaskedFields({ui->txtIpAddress}, QLatin1Char('.'), watched, event);
}
