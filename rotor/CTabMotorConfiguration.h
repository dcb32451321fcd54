#pragma once

#include "shell/CTabBaseClass.h"

#include <QStringList>
#include <QVector>

class QLineEdit;

namespace Ui {
class TabMotorConfiguration;
}

/// The parameters of one motor. The table follows the model; what the user types reaches the model
/// only when ReadParamValuesFromUi() runs. Receiving, sending and reading a file handle this motor
/// alone; a written file holds both.
class CTabMotorConfiguration : public CTabBaseClass
{
    Q_OBJECT

public:
    /// `motor`: 0 azimuth, 1 polar. Leaves zeros and the rotor type 1 in the model's columns of the
    /// motor, as the blank entry of the rotor list does.
    CTabMotorConfiguration(QWidget* parent, int motor);
    ~CTabMotorConfiguration() override;

    /// Guards the table's edits: a key that leaves a text above the maximum of the table's current
    /// row sets it to that maximum and says so. Keeps keys from the table itself, and the wheel
    /// from the closed rotor list.
    bool eventFilter(QObject* watched, QEvent* event) override;

    /// Shows what the unit's firmware generation knows, then receives as the button does.
    void ConnectionStatusChanged() override;
    void UpdateControls() override;

signals:
    /// The tables of both motors are wanted in the model.
    void ReadFromUi();

public slots:
    /// Stores the table in the model, row by row up to the first value out of range, which leaves
    /// its message as the motor's validation error. An empty message: all is stored.
    void ReadParamValuesFromUi();
    /// Stores the tables of both motors, asks for a file and writes all that is known of the unit
    /// into it. A value out of range in either table: no file.
    void WriteMotorConfigurationButtonClicked();
    /// Asks for a file and takes this motor's parameters from it. Nothing is sent.
    void ReadMotorConfigurationButtonClicked();
    /// Stores the table and sends the motor's parameters. The unit does not confirm them.
    void SendConfigurationButtonClicked();
    /// Reads the motor's parameters and the subnet mask from the unit. Blocks for a second.
    void ReceiveConfigurationButtonClicked();
    void ResetToDefaultButtonClicked();
    /// Puts the preset of that row of the rotor list into the model; a row that there is not does
    /// nothing. Nothing is sent.
    void ChangeRotorType(int index);

private:
    void SetUpTable();
    void SetUpCell(int row);
    void TellCell(int row, const QString& text);
    void OrderTabKey();
    void ConnectButtons();
    void FillRotorList();

    QLineEdit* CellEdit(int row) const;
    QString RowHeader(int row) const;
    QString SendTable();
    bool IsLeftToOthers(const QObject* watched, const QEvent& event) const;
    // Takes back a key that made an invalid text longer, or put in what is no digit.
    static void KeepFromGrowing(QLineEdit& edit, QString before);
    void GuardRange(QLineEdit& edit);

    QString WriteTables();
    QString SaveToChosenFile();
    bool WriteConfigurationFile(QString fileName);
    QString ReadChosenFile();
    // `error` is for an invalid line alone; the lines above it are stored.
    bool ReadConfigurationFile(QString fileName, QString& error, int motor);

    bool ReadMotorConfigurationFromDevice(int motor);
    QVector<ushort> CollectMotorValues() const;

    QScopedPointer<Ui::TabMotorConfiguration> ui;
    qint32 motor;
    QStringList headerLabels;
};
