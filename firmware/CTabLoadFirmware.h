// SPDX-License-Identifier: MIT

#pragma once

#include "link/RAVOBoolean.h"
#include "shell/CTabBaseClass.h"

#include <QFile>

class CCustomProgressDialog;

namespace Ui {
class TabLoadFirmware;
}

/// The three steps of a firmware update: choose an image, copy it into the unit, let the unit
/// install it. The tool does not look into the image. The unit judges it.
class CTabLoadFirmware : public CTabBaseClass
{
    Q_OBJECT

public:
    explicit CTabLoadFirmware(QWidget* parent);
    ~CTabLoadFirmware() override;

    void ConnectionStatusChanged() override;
    void UpdateControls() override;

signals:
    /// Emitted when the unit has had its time to install and the link is down. The receiver tries
    /// to connect again and calls ValidateFirmwareUpdate() before the emission comes back.
    void ReconnectAfterFirmwareUpDate();

public slots:
    void FirmwareFileSelectButtonClicked();
    /// Blocks under a progress dialog until the whole image is acknowledged, or something ends it.
    void FirmwareLoadButtonClicked();
    /// Blocks for the 30 seconds in which the unit installs, and then for the reconnection.
    void FirmwareUpdateButtonClicked();
    /// Tells the unit that the update is taken over, tells the user, and closes the update's
    /// dialog. 1 when the unit could be told, whatever it answered, otherwise 0. Waits for the
    /// answer. Without one that takes ten seconds or more.
    RAVOBoolean ValidateFirmwareUpdate();

private:
    bool SendFirmwareFile(QString& error);

    QScopedPointer<Ui::TabLoadFirmware> ui;
    QFile firmwareFile;
    /// The image now in the unit came from a transfer that succeeded.
    bool firmwareSent = false;
    /// The last step taken was an update, or none was taken yet.
    bool updatePendingValidation = true;
    /// Open from the start of an update to its validation, otherwise null.
    QScopedPointer<CCustomProgressDialog> updateProgressDialog;
};
