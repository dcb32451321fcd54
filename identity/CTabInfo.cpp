#include "identity/CTabInfo.h"

#include "link/DeviceReconfiguration.h"
#include "model/CDeviceDatabase.h"
#include "ui_TabInfo.h"

CTabInfo::CTabInfo(QWidget* parent)
    : CTabBaseClass(parent)
    , ui(new Ui::TabInfo)
{
    ui->setupUi(this);
    ui->txtMacAddress->setInputMask(QStringLiteral("HH:HH:HH:HH:HH:HH"));

    mapper.reset(new QDataWidgetMapper);
    mapper->setModel(TheDeviceDatabase());
    mapper->addMapping(ui->txtMacAddress, 4);
    mapper->addMapping(ui->txtPartNumber, 7);
    mapper->addMapping(ui->txtProductIndex, 9);
    mapper->addMapping(ui->txtSerialNumber, 10);
    mapper->addMapping(ui->txtVersionNumber, 6);
    mapper->toFirst();
}

CTabInfo::~CTabInfo() = default;

void CTabInfo::ConnectionStatusChanged()
{
    ReadDeviceInfo();
}
