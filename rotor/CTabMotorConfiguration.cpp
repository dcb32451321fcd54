// SPDX-License-Identifier: MIT

#include "rotor/CTabMotorConfiguration.h"

#include "link/CDeviceCommunication.h"
#include "model/CDeviceDatabase.h"
#include "rotor/CDeviceParameters.h"
#include "rotor/CFileIO.h"
#include "rotor/CTableValueValidator.h"
#include "rotor/ConfigurationFileLines.h"
#include "rotor/RotorCatalogue.h"
#include "ui_TabMotorConfiguration.h"
#include "widgets/ModelMapper.h"
#include "widgets/UserInput.h"

#include <QAbstractItemView>
#include <QFileDialog>
#include <QHeaderView>
#include <QHostAddress>
#include <QLineEdit>

#include <algorithm>

namespace {

constexpr int ValueColumn = 0;
constexpr int RowHeaderWidth = 250;
constexpr int ValueWidth = 150;

int ColumnOf(int motor, int parameter)
{
    const int first = motor == Motor::Azimuth ? CDeviceDatabase::FirstAzimuthColumn
                                              : CDeviceDatabase::FirstPolarColumn;
    return first + parameter;
}

const QVector<sROTOR_PRESET>& PresetsOf(int motor)
{
    return motor == Motor::Azimuth ? AzimuthRotorPresets : PolarRotorPresets;
}

const QMap<int, ushort>& ResetDefaultsOf(int motor)
{
    return motor == Motor::Azimuth ? AzimuthResetDefaults : PolarResetDefaults;
}

// In the layout of the unit's firmware.
CDeviceParameters UnitParameters()
{
    return CDeviceParameters(TheDeviceDatabase()->GetFirmwareVersion().toFloat());
}

QString NotConnectedText()
{
    return QStringLiteral("Not connected to any device.");
}

QString EmptyFileNameText()
{
    return QStringLiteral("Empty filename!!");
}

QString FileFilter()
{
    return QStringLiteral("files *.txt");
}

bool IsMadeOfDigits(const QString& text)
{
    return std::all_of(text.begin(), text.end(), [](QChar character) {
        return character >= QLatin1Char('0') && character <= QLatin1Char('9');
    });
}

bool IsKeyEvent(const QEvent& event)
{
    return event.type() == QEvent::KeyPress || event.type() == QEvent::KeyRelease;
}

} // namespace

CTabMotorConfiguration::CTabMotorConfiguration(QWidget* parent, int motor)
    : CTabBaseClass(parent)
    , ui(new Ui::TabMotorConfiguration)
    , motor(motor)
{
    ui->setupUi(this);
    ui->btnSendToDevice->setEnabled(false);
    ui->btnReceiveFromDevice->setEnabled(false);
    SetUpTable();
    OrderTabKey();
    ConnectButtons();
    FillRotorList();
}

CTabMotorConfiguration::~CTabMotorConfiguration() = default;

void CTabMotorConfiguration::SetUpTable()
{
    for (int row = 0; row < MotorParameterRanges.size(); ++row) {
        headerLabels.append(RowHeader(row));
    }
    QTableWidget* const table = ui->tblMotorConfiguration;
    table->setRowCount(headerLabels.size());
    table->setColumnCount(1);
    table->setVerticalHeaderLabels(headerLabels);
    table->setHorizontalHeaderLabels({QStringLiteral("Value")}); // for screen readers
    table->horizontalHeader()->setVisible(false);
    table->verticalHeader()->setFixedWidth(RowHeaderWidth);
    table->setColumnWidth(ValueColumn, ValueWidth);
    table->verticalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    table->setSortingEnabled(false);

    table->installEventFilter(this);
    ui->listRotors->installEventFilter(this);

    mapper.reset(NewModelMapper());
    for (int row = 0; row < MotorParameterRanges.size(); ++row) {
        SetUpCell(row);
    }
    mapper->addMapping(ui->txtRotorType, ColumnOf(motor, Parameter::RotorType));
    mapper->toFirst();
}

void CTabMotorConfiguration::SetUpCell(int row)
{
    const sMOTOR_PARAM_RANGE& range = MotorParameterRanges.at(row);
    auto* const edit = new QLineEdit(QStringLiteral("0"), ui->tblMotorConfiguration);
    edit->setObjectName(QString::number(row));
    edit->setAccessibleName(headerLabels.at(row));
    edit->setValidator(new CTableValueValidator(range.minimum, range.maximum, edit));
    edit->installEventFilter(this);
    ui->tblMotorConfiguration->setCellWidget(row, ValueColumn, edit);
    TellCell(row, edit->text());
    connect(edit, &QLineEdit::textChanged, this,
        [this, row](const QString& text) { TellCell(row, text); });
    mapper->addMapping(edit, ColumnOf(motor, range.parameterId));
}

// A screen reader sees the cell and not the edit that lies on it.
void CTabMotorConfiguration::TellCell(int row, const QString& text)
{
    QTableWidget* const table = ui->tblMotorConfiguration;
    if (table->item(row, ValueColumn) == nullptr) {
        table->setItem(row, ValueColumn, new QTableWidgetItem);
    }
    table->item(row, ValueColumn)->setData(Qt::AccessibleTextRole, text);
}

// The edits are made after the form's widgets. The Tab key walks them where the table stands.
void CTabMotorConfiguration::OrderTabKey()
{
    QWidget* previous = ui->tblMotorConfiguration;
    for (int row = 0; row < headerLabels.size(); ++row) {
        setTabOrder(previous, CellEdit(row));
        previous = CellEdit(row);
    }
    ui->tblMotorConfiguration->setFocusPolicy(Qt::NoFocus);
}

void CTabMotorConfiguration::ConnectButtons()
{
    ConnectClick(
        ui->btnReadFromFile, this, &CTabMotorConfiguration::ReadMotorConfigurationButtonClicked);
    ConnectClick(
        ui->btnWriteToFile, this, &CTabMotorConfiguration::WriteMotorConfigurationButtonClicked);
    ConnectClick(
        ui->btnSendToDevice, this, &CTabMotorConfiguration::SendConfigurationButtonClicked);
    ConnectClick(
        ui->btnReceiveFromDevice, this, &CTabMotorConfiguration::ReceiveConfigurationButtonClicked);
    ConnectClick(ui->btnReset, this, &CTabMotorConfiguration::ResetToDefaultButtonClicked);
    connect(this, &CTabMotorConfiguration::ReadFromUi, this,
        &CTabMotorConfiguration::ReadParamValuesFromUi);
    connect(ui->listRotors, qOverload<int>(&QComboBox::currentIndexChanged), this,
        &CTabMotorConfiguration::ChangeRotorType);
}

void CTabMotorConfiguration::FillRotorList()
{
    for (const sROTOR_PRESET& preset : PresetsOf(motor)) {
        ui->listRotors->addItem(preset.name);
    }
    ui->listRotors->setItemData(0, QStringLiteral("No rotor"), Qt::AccessibleTextRole);
    ui->listRotors->view()->setAccessibleName(ui->listRotors->accessibleName());
}

QLineEdit* CTabMotorConfiguration::CellEdit(int row) const
{
    return qobject_cast<QLineEdit*>(ui->tblMotorConfiguration->cellWidget(row, ValueColumn));
}

QString CTabMotorConfiguration::RowHeader(int row) const
{
    return MotorNames.value(motor) + QLatin1Char(' ') + MotorParameterRanges.at(row).label;
}

void CTabMotorConfiguration::ConnectionStatusChanged()
{
    UpdateControls();
    const bool hidden =
        TheDeviceCommunication()->IsConnected() && TheDeviceDatabase()->IsFirmwareBelowVersion3();
    ui->tblMotorConfiguration->setRowHidden(headerLabels.size() - 1, hidden);
    ui->listRotors->setHidden(hidden);
    ui->txtRotorType->setHidden(hidden);
    ui->lblRotorName->setHidden(hidden);
    ui->lblRotorType->setHidden(hidden);
    ReceiveConfigurationButtonClicked();
}

void CTabMotorConfiguration::UpdateControls()
{
    const bool connected = TheDeviceCommunication()->IsConnected();
    ui->btnSendToDevice->setEnabled(connected);
    ui->btnReceiveFromDevice->setEnabled(connected);
}

void CTabMotorConfiguration::ChangeRotorType(int index)
{
    ushort rotorType = RotorType::Unknown;
    if (motor == Motor::Azimuth || motor == Motor::Polar) {
        if (index < 0 || index >= PresetsOf(motor).size()) {
            return;
        }
        const sROTOR_PRESET& preset = PresetsOf(motor).at(index);
        rotorType = preset.rotorType;
        ui->txtRotorType->setText(RotorTypeNames.value(rotorType));
        TheDeviceDatabase()->SetMotorParameters(motor, preset.values);
    }
    TheDeviceDatabase()->SetMotorParameter(motor, Parameter::RotorType, rotorType);
}

void CTabMotorConfiguration::ResetToDefaultButtonClicked()
{
    const QMap<int, ushort>& defaults = ResetDefaultsOf(motor);
    for (auto value = defaults.cbegin(); value != defaults.cend(); ++value) {
        TheDeviceDatabase()->SetMotorParameter(motor, value.key(), value.value());
    }
}

void CTabMotorConfiguration::ReadParamValuesFromUi()
{
    for (int row = 0; row < MotorParameterRanges.size(); ++row) {
        const QLineEdit* const edit = CellEdit(row);
        if (edit == nullptr) {
            continue;
        }
        const sMOTOR_PARAM_RANGE& range = MotorParameterRanges.at(row);
        QString text = edit->text();
        int position = 0;
        if (edit->validator()->validate(text, position) != QValidator::Acceptable) {
            TheDeviceDatabase()->SetMotorValidationError(motor,
                QStringLiteral("Invalid value for ") + MotorNames.value(motor) + QLatin1Char(' ') +
                    MotorParameterNames.value(range.parameterId) + QLatin1Char('!'));
            return;
        }
        TheDeviceDatabase()->SetMotorParameter(
            motor, range.parameterId, static_cast<ushort>(text.toInt()));
    }
    TheDeviceDatabase()->SetMotorValidationError(motor, QString());
}

QVector<ushort> CTabMotorConfiguration::CollectMotorValues() const
{
    QVector<ushort> values;
    if (motor == Motor::NoMotor) {
        return values;
    }
    const int count = UnitParameters().GetParameterCount();
    for (int parameter = 0; parameter < count; ++parameter) {
        values.append(TheDeviceDatabase()->GetMotorParameter(motor, parameter));
    }
    return values;
}

void CTabMotorConfiguration::SendConfigurationButtonClicked()
{
    CDeviceDatabase* const database = TheDeviceDatabase();
    database->SetApplicationStatus(QStringLiteral("Sending ") + MotorNames.value(motor) +
                                   QStringLiteral(" Motor Configuration .. "));
    ReadParamValuesFromUi();
    database->SetApplicationStatus(SendTable());
}

// Gives the text that the status line ends with. It is the same for a value out of range as for a
// missing link.
QString CTabMotorConfiguration::SendTable()
{
    if (!TheDeviceDatabase()->GetMotorValidationError(motor).isEmpty() ||
        !TheDeviceCommunication()->IsConnected()) {
        UpdateControls();
        return NotConnectedText();
    }
    const QVector<ushort> values = CollectMotorValues();
    if (values.size() != UnitParameters().GetParameterCount()) {
        return QStringLiteral("Error! Invalid number of Motor configuration params.");
    }
    TheDeviceCommunication()->SendMotorConfiguration(motor, values);
    return MotorNames.value(motor) + QStringLiteral(" Motor configuration sent successfully.");
}

bool CTabMotorConfiguration::ReadMotorConfigurationFromDevice(int motor)
{
    CDeviceDatabase* const database = TheDeviceDatabase();
    CDeviceParameters parameters = UnitParameters();
    const ushort size = parameters.GetDeviceBlockSize();
    // In words, as the decoder takes it, with room for the odd byte at the end.
    QVector<ushort> block((size + 1) / 2, 0);
    if (!TheDeviceCommunication()->ReadConfiguration(
            reinterpret_cast<uchar*>(block.data()), size)) {
        return false;
    }
    parameters.ParseDeviceBlock(block.data());
    for (int parameter = 0; parameter < parameters.GetParameterCount(); ++parameter) {
        const ushort value = (parameters.*ParameterAccessors[parameter])(static_cast<short>(motor));
        database->SetMotorParameter(motor, parameter, value);
    }
    database->SetSubnetMask(parameters.GetSubnetMask());
    return true;
}

void CTabMotorConfiguration::ReceiveConfigurationButtonClicked()
{
    CDeviceDatabase* const database = TheDeviceDatabase();
    if (!TheDeviceCommunication()->IsConnected()) {
        UpdateControls();
        database->SetApplicationStatus(NotConnectedText());
        return;
    }
    database->SetApplicationStatus(QStringLiteral("Recieving Configuration from Device .. "));
    if (!ReadMotorConfigurationFromDevice(motor)) {
        database->SetApplicationStatus(
            QStringLiteral("Device motor configuration could not be read!"));
        return;
    }
    database->SetSubnetMask(QHostAddress(database->GetSubnetMask()).toString());
    database->SetApplicationStatus(QStringLiteral("Device motor configuration read successfully!"));
}

void CTabMotorConfiguration::WriteMotorConfigurationButtonClicked()
{
    CDeviceDatabase* const database = TheDeviceDatabase();
    database->SetApplicationStatus(
        QStringLiteral("Preparing to write device configuration to file .."));
    emit ReadFromUi();
    database->SetApplicationStatus(WriteTables());
}

// These give the text that the status line ends with.
QString CTabMotorConfiguration::WriteTables()
{
    for (const int any : {Motor::Azimuth, Motor::Polar}) {
        const QString error = TheDeviceDatabase()->GetMotorValidationError(any);
        if (!error.isEmpty()) {
            return error;
        }
    }
    return SaveToChosenFile();
}

QString CTabMotorConfiguration::SaveToChosenFile()
{
    const QString suffix = QStringLiteral(".txt");
    QString fileName = QFileDialog::getSaveFileName(
        this, QStringLiteral("Select file to save configuration"), QString(), FileFilter());
    if (fileName.isEmpty()) {
        return EmptyFileNameText();
    }
    if (!fileName.endsWith(suffix)) {
        fileName.append(suffix);
    }
    if (!WriteConfigurationFile(fileName)) {
        return QStringLiteral("Could not write device configuration to file !!");
    }
    return QStringLiteral("Saved to file ") + fileName;
}

bool CTabMotorConfiguration::WriteConfigurationFile(QString fileName)
{
    CFileIO file(fileName);
    return file.OpenForWrite() && file.WriteBanner() && WriteIdentityLines(file) &&
           WriteParameterLines(file, Motor::Azimuth) && WriteParameterLines(file, Motor::Polar);
}

void CTabMotorConfiguration::ReadMotorConfigurationButtonClicked()
{
    TheDeviceDatabase()->SetApplicationStatus(
        QStringLiteral("Reading Device configuration from file .."));
    TheDeviceDatabase()->SetApplicationStatus(ReadChosenFile());
}

QString CTabMotorConfiguration::ReadChosenFile()
{
    const QString fileName = QFileDialog::getOpenFileName(
        this, QStringLiteral("Select Device Configuration file"), QString(), FileFilter());
    if (fileName.isEmpty()) {
        return EmptyFileNameText();
    }
    QString error;
    if (!ReadConfigurationFile(fileName, error, motor)) {
        return error;
    }
    return QStringLiteral("Read file successfully.");
}

bool CTabMotorConfiguration::ReadConfigurationFile(QString fileName, QString& error, int motor)
{
    CFileIO file(fileName);
    if (!file.OpenForRead()) {
        return false;
    }
    while (!file.IsAtEnd()) {
        QString line;
        file.ReadLine(line);
        if (file.IsLineTooLong() || !ApplyConfigurationLine(line, motor)) {
            error = QStringLiteral("Invalid line:") + line;
            return false;
        }
    }
    return true;
}

bool CTabMotorConfiguration::eventFilter(QObject* watched, QEvent* event)
{
    if (IsLeftToOthers(watched, *event)) {
        event->ignore();
        return true;
    }
    auto* const edit = qobject_cast<QLineEdit*>(watched);
    if (edit == nullptr || !IsKeyEvent(*event)) {
        return CTabBaseClass::eventFilter(watched, event);
    }
    const QString before = edit->text();
    watched->event(event); // the key takes effect first
    KeepFromGrowing(*edit, before);
    GuardRange(*edit);
    return true;
}

// The wheel over the closed list would replace the whole table. A key that a field does not take
// would end up in another field.
bool CTabMotorConfiguration::IsLeftToOthers(const QObject* watched, const QEvent& event) const
{
    const bool isWheelOverList = watched == ui->listRotors && event.type() == QEvent::Wheel;
    const bool isKeyOfTable = watched == ui->tblMotorConfiguration && IsKeyEvent(event);
    return isWheelOverList || isKeyOfTable;
}

// A value above the maximum can come from the unit or a file. A line edit with such a text takes
// every key.
void CTabMotorConfiguration::KeepFromGrowing(QLineEdit& edit, QString before)
{
    int position = edit.cursorPosition();
    if (edit.validator()->validate(before, position) != QValidator::Invalid) {
        return;
    }
    if (edit.text().size() > before.size() || !IsMadeOfDigits(edit.text())) {
        edit.setText(before);
    }
}

void CTabMotorConfiguration::GuardRange(QLineEdit& edit)
{
    const int row = ui->tblMotorConfiguration->currentRow();
    if (row < 0 || row >= MotorParameterRanges.size()) {
        return;
    }
    const sMOTOR_PARAM_RANGE& range = MotorParameterRanges.at(row);
    if (edit.text().toInt() <= range.maximum) {
        return;
    }
    edit.setText(QString::number(range.maximum));
    TheDeviceDatabase()->SetApplicationStatus(
        QStringLiteral("Warning: %1 must be in in range 0 - %2")
            .arg(ParameterMnemonic(range.label))
            .arg(range.maximum));
}
