// SPDX-License-Identifier: MIT

#pragma once

#include "shell/CTabBaseClass.h"

#include <QFile>
#include <QStringList>

class QLineEdit;

namespace Ui {
class TabBoardDataNew;
}

/// The hardware data of the unit's two EEPROM regions. It has no page in the tool's window. There
/// it only reads the data into the model after each connection to firmware 3.0 or later.
///
/// A `set` is a CDeviceDatabase::Set.
class CTabBoardDataNew : public CTabBaseClass
{
    Q_OBJECT

public:
    explicit CTabBoardDataNew(QWidget* parent);
    ~CTabBoardDataNew() override;

    /// Shows what the unit's firmware generation can do. From 3.0 on it reads both blocks, which
    /// takes two seconds.
    void ConnectionStatusChanged() override;
    void UpdateControls() override;

public slots:
    void DeviceDataFileSelector();
    void BoardDataFileSelector();
    /// These write the first 1200 bytes of the chosen file, without the last of them, and read the
    /// blocks back. A file that cannot be read counts as empty.
    void DeviceDataWriteButtonClicked();
    void BoardDataWriteButtonClicked();
    /// Saves both regions as files and reads the blocks. Takes twelve seconds.
    void DataReadButtonClicked();
    /// For firmware below 3.0: gives the unit the part and serial number in the fields and connects
    /// anew.
    void SendOldFirmwareDataButtonClicked();

private:
    enum FileKind
    {
        DeviceFile,
        BoardFile
    };

    void BindFields();
    void ConnectButtons();
    void ShowGeneration(bool old);
    void SelectDataFile(FileKind kind);
    void WriteDataFile(quint16 offset, QFile& file);
    void Forget(QFile& file, QLineEdit* shown);
    bool ReadBlockData();
    void ApplyRowToDatabase(const QStringList& texts, int set);

    QScopedPointer<Ui::TabBoardDataNew> ui;
    // Between the choice and the writing these have a name, but are closed.
    QFile DeviceDataFile;
    QFile BoardDataFile;
};
