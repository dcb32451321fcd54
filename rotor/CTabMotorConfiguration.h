// SPDX-License-Identifier: MIT

#pragma once

#include "shell/CTabBaseClass.h"

#include <QStringList>
#include <QVector>

class QLineEdit;

namespace Ui {
class TabMotorConfiguration;
}

/// The parameters of one motor. The table follows the model. What the user types reaches the model
/// only when ReadParamValuesFromUi() runs. Receiving, sending and reading a file are for this motor
/// alone. A written file holds both.
class CTabMotorConfiguration : public CTabBaseClass
{
    Q_OBJECT

public:
    /// Leaves zeros and the rotor type Pulse in the model's columns of `motor`, as the blank entry
    /// of the rotor list does.
    CTabMotorConfiguration(QWidget* parent, int motor);
    ~CTabMotorConfiguration() override;

    /// Guards the table's edits. A key may leave a text above the maximum of the table's current
    /// row: the text then becomes that maximum, and the status line says so. Keeps keys from the
    /// table itself, and the wheel from the closed rotor list.
    bool eventFilter(QObject* watched, QEvent* event) override;

    /// Shows what the unit's firmware generation knows, then receives as the button does.
    void ConnectionStatusChanged() override;
    void UpdateControls() override;

signals:
    /// Asks both tabs to store their tables in the model.
    void ReadFromUi();

public slots:
    /// Stores the table in the model, row by row. Stops at the first value out of range, and leaves
    /// a message as the motor's validation error. That error is empty when all is stored.
    void ReadParamValuesFromUi();
    /// Stores the tables of both motors, asks for a file and writes all that is known of the unit
    /// into it. Writes no file when a value in either table is out of range.
    void WriteMotorConfigurationButtonClicked();
    /// Asks for a file and takes this motor's parameters from it. Nothing is sent.
    void ReadMotorConfigurationButtonClicked();
    /// Stores the table and sends the motor's parameters. The unit does not confirm them.
    void SendConfigurationButtonClicked();
    /// Reads the motor's parameters and the subnet mask from the unit. Blocks for a second.
    void ReceiveConfigurationButtonClicked();
    void ResetToDefaultButtonClicked();
    /// Puts the preset of that row of the rotor list into the model. Does nothing for a row that is
    /// not there. Nothing is sent.
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
    // Takes back a key that made an invalid text longer, or that was no digit.
    static void KeepFromGrowing(QLineEdit& edit, QString before);
    void GuardRange(QLineEdit& edit);

    QString WriteTables();
    QString SaveToChosenFile();
    bool WriteConfigurationFile(QString fileName);
    QString ReadChosenFile();
    // Sets `error` for an invalid line only. The lines above it are stored.
    bool ReadConfigurationFile(QString fileName, QString& error, int motor);

    bool ReadMotorConfigurationFromDevice(int motor);
    QVector<ushort> CollectMotorValues() const;

    QScopedPointer<Ui::TabMotorConfiguration> ui;
    qint32 motor;
    QStringList headerLabels;
};
