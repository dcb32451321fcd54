// SPDX-License-Identifier: MIT

#include "identity/CTabInfo.h"

#include "link/DeviceReconfiguration.h"
#include "model/CDeviceDatabase.h"
#include "ui_TabInfo.h"
#include "widgets/ModelMapper.h"

CTabInfo::CTabInfo(QWidget* parent)
    : CTabBaseClass(parent)
    , ui(new Ui::TabInfo)
{
    ui->setupUi(this);
    ui->txtMacAddress->setInputMask(QStringLiteral("HH:HH:HH:HH:HH:HH"));

    mapper.reset(NewModelMapper());
    mapper->addMapping(ui->txtMacAddress, CDeviceDatabase::MacAddressColumn);
    mapper->addMapping(ui->txtPartNumber, CDeviceDatabase::PartNumber0Column);
    mapper->addMapping(ui->txtProductIndex, CDeviceDatabase::ProductIndex0Column);
    mapper->addMapping(ui->txtSerialNumber, CDeviceDatabase::SerialNumber0Column);
    mapper->addMapping(ui->txtVersionNumber, CDeviceDatabase::FirmwareVersionColumn);
    mapper->toFirst();
}

CTabInfo::~CTabInfo() = default;

void CTabInfo::ConnectionStatusChanged()
{
    ReadDeviceInfo();
}
