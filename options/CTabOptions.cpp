// SPDX-License-Identifier: MIT

#include "options/CTabOptions.h"

#include "link/CDeviceCommunication.h"
#include "model/CDeviceDatabase.h"
#include "shell/CCustomProgressDialog.h"
#include "ui_TabOptions.h"
#include "widgets/FormLook.h"
#include "widgets/PlainToolTip.h"
#include "widgets/UserInput.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QVBoxLayout>

namespace {

constexpr int ProgressEnd = 100;
// In pixels, so that the longest name of a rotator has room in bold letters.
constexpr int RotatorMargin = 6;

struct OptionGroup
{
    QGroupBox* Ui::TabOptions::*box;
    OptionItems CDeviceOptions::*items;
    bool isRotator;
};

constexpr OptionGroup OptionGroups[] = {
    {&Ui::TabOptions::boxDcf, &CDeviceOptions::DcFeedItems, false},
    {&Ui::TabOptions::boxAtt, &CDeviceOptions::AttenuatorItems, false},
    {&Ui::TabOptions::boxFilter1, &CDeviceOptions::Filter1Items, false},
    {&Ui::TabOptions::boxFilter2, &CDeviceOptions::Filter2Items, false},
    {&Ui::TabOptions::boxAmp, &CDeviceOptions::AmplifierItems, false},
    {&Ui::TabOptions::boxOptionAzimuthRotator, &CDeviceOptions::AzimuthRotatorItems, true},
    {&Ui::TabOptions::boxOptionPolarRotator, &CDeviceOptions::PolarRotatorItems, true},
};
constexpr int GroupCount = sizeof(OptionGroups) / sizeof(OptionGroups[0]);

QString WithoutControlCharacters(QString text)
{
    return text.remove(QLatin1Char('\r')).remove(QLatin1Char('\0')).remove(QLatin1Char('\n'));
}

} // namespace

CTabOptions::CTabOptions(QWidget* parent)
    : CTabBaseClass(parent)
    , ui(new Ui::TabOptions)
    , Options(new CDeviceOptions)
{
    ui->setupUi(this);
    ui->lblCompatibility->hide();
    for (const OptionGroup& group : OptionGroups) {
        (ui.get()->*group.box)->setFont(FormFont()); // not the one of a theme
    }
    ConnectClick(ui->btnReadDeviceOptions, this, &CTabOptions::ReadOptionsFileButtonClicked);
    ConnectClick(ui->btnSendDeviceOptions, this, &CTabOptions::SendOptionsToDeviceButtonClicked);
    ConnectClick(
        ui->btnReadOptionsFromDevice, this, &CTabOptions::ReadOptionsFromDeviceButtonClicked);
    ui->btnReadDeviceOptions->setEnabled(true);
    ui->btnReadDeviceOptions->hide();
    ui->btnSendDeviceOptions->hide();
}

CTabOptions::~CTabOptions() = default;

void CTabOptions::ConnectionStatusChanged()
{
    const CDeviceDatabase* const database = TheDeviceDatabase();
    const bool served = !(database->IsFirmwareBelowVersion3() && database->GetUnsupportedFlag());
    ui->lblCompatibility->setVisible(!served);
    setEnabled(served);
    if (served) {
        ReadOptionsFromDeviceButtonClicked();
        UpdateControls();
    }
}

void CTabOptions::UpdateControls()
{
    const bool connected = TheDeviceCommunication()->IsConnected();
    ui->btnSendDeviceOptions->setEnabled(connected && Options->IsValid());
    ui->btnReadOptionsFromDevice->setEnabled(connected);
}

void CTabOptions::ReadOptionsFileButtonClicked()
{
    QString message;
    if (Options->ReadOptionsFile(SelectOptionsFile(), message)) {
        RebuildOptionGroups();
        message = QStringLiteral("Options read from file successfully.");
    }
    TheDeviceDatabase()->SetApplicationStatus(message);
    UpdateControls();
}

QString CTabOptions::SelectOptionsFile()
{
    const QString fileName = QFileDialog::getOpenFileName(
        this, QStringLiteral("Select Options File"), QString(), QStringLiteral("*.xlsx *.cfg"));
    return QFileInfo(fileName).absoluteFilePath();
}

void CTabOptions::ReadOptionsFromDeviceButtonClicked()
{
    TheDeviceDatabase()->SetApplicationStatus(QStringLiteral("Reading options from device ..."));
    CCustomProgressDialog progress(
        QStringLiteral("Reading options from device ... "), 0, ProgressEnd, this);
    progress.setValue(10);
    const bool read = ReadRecord(progress);
    progress.setValue(ProgressEnd);
    progress.close();
    UpdateControls();
    TheDeviceDatabase()->SetApplicationStatus(
        read ? QStringLiteral("Options read from device successfully.")
             : QStringLiteral("Failed to read Options from device"));
}

bool CTabOptions::ReadRecord(CCustomProgressDialog& progress)
{
    CDeviceCommunication* const unit = TheDeviceCommunication();
    if (!unit->IsConnected()) {
        return false;
    }
    const QString internal = WithoutControlCharacters(unit->ReadOptions());
    progress.setValue(20);
    const QString descriptions = WithoutControlCharacters(unit->ReadOptionDescriptions());
    progress.setValue(40);
    if (!Options->ParseDeviceOptions(internal, descriptions)) {
        return false;
    }
    RebuildOptionGroups();
    return true;
}

void CTabOptions::SendOptionsToDeviceButtonClicked()
{
    TheDeviceDatabase()->SetApplicationStatus(QStringLiteral("Sending options to device ..."));
    CCustomProgressDialog progress(
        QStringLiteral("Sending options to device ... "), 0, ProgressEnd, this);
    progress.setValue(1);
    const QString message = SendRecord(progress);
    progress.setValue(ProgressEnd);
    progress.close();
    TheDeviceDatabase()->SetApplicationStatus(message);
}

// Gives the text that the status line ends with.
QString CTabOptions::SendRecord(CCustomProgressDialog& progress)
{
    CDeviceCommunication* const unit = TheDeviceCommunication();
    const QString internal = Options->GetInternalOptions();
    const QString descriptions = Options->GetOptionDescriptions();
    progress.setValue(20);
    const QString failure = QStringLiteral("Failed to send options to device!");
    if (!unit->IsConnected()) {
        return failure;
    }
    const bool sent = unit->SendOptions(internal);
    progress.setValue(50);
    if (!sent) {
        return failure;
    }
    if (!unit->SendOptionDescriptions(descriptions)) {
        return QStringLiteral("Failed to send option descriptions to device!");
    }
    return QStringLiteral("Options & description sent to device successfully.");
}

// The lines of a rotator's box are never removed. New ones cover them.
void CTabOptions::RebuildOptionGroups()
{
    for (const OptionGroup& group : OptionGroups) {
        if (!group.isRotator) {
            ClearLayout((ui.get()->*group.box)->layout());
        }
    }
    for (int group = 0; group < GroupCount; ++group) {
        BuildOptionGroup(group, Options.get()->*OptionGroups[group].items);
    }
}

void CTabOptions::BuildOptionGroup(int group, OptionItems items)
{
    if (group >= GroupCount) {
        return;
    }
    QGroupBox* const box = ui.get()->*OptionGroups[group].box;
    const auto coveredLines = box->findChildren<QLineEdit*>();
    for (QLineEdit* const line : coveredLines) {
        line->setFocusPolicy(Qt::NoFocus);
    }
    delete box->layout();
    auto* const layout = new QVBoxLayout;
    layout->setAlignment(Qt::AlignTop);
    QFont font = FormFont();
    if (OptionGroups[group].isRotator) {
        font.setWeight(QFont::Bold);
    }
    for (const auto& item : items) {
        const bool isBlank = item.first == QLatin1String("0");
        auto* const line = new QLineEdit(isBlank ? QString() : item.first, box);
        line->setReadOnly(true);
        line->setFont(font);
        line->setAlignment(Qt::AlignCenter);
        line->setToolTip(item.second);
        new CPlainToolTip(line);
        line->setAccessibleName(box->title());
        layout->addWidget(line);
        setTabOrder(line, ui->btnReadOptionsFromDevice); // which comes after all lines
    }
    box->setLayout(layout);
    if (OptionGroups[group].isRotator) {
        QMargins margins = layout->contentsMargins();
        margins.setLeft(RotatorMargin);
        margins.setRight(RotatorMargin);
        layout->setContentsMargins(margins);
    }
}

void CTabOptions::ClearLayout(QLayout* layout)
{
    if (layout == nullptr) {
        return;
    }
    while (QLayoutItem* const item = layout->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    delete layout;
}
