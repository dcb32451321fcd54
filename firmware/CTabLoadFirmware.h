#pragma once

#include "link/RAVOBoolean.h"
#include "shell/CTabBaseClass.h"

#include <QFile>

class CCustomProgressDialog;

namespace Ui {
class TabLoadFirmware;
}

/// The three steps of a firmware update: choose an image, copy it into the unit, have the unit
/// install it. The image is not looked into; whether it is one is for the unit to say.
class CTabLoadFirmware : public CTabBaseClass
{
    Q_OBJECT

public:
    explicit CTabLoadFirmware(QWidget* parent);
    ~CTabLoadFirmware() override;

    void ConnectionStatusChanged() override;
    void UpdateControls() override;

signals:
    /// The unit has had its time to install and the link is down. Whoever takes this has tried to
    /// connect again, and has called ValidateFirmwareUpdate(), when the emission comes back.
    void ReconnectAfterFirmwareUpDate();

public slots:
    void FirmwareFileSelectButtonClicked();
    /// Blocks under a progress dialog until the whole image is acknowledged, or something ends it.
    void FirmwareLoadButtonClicked();
    /// Blocks for the 30 seconds in which the unit installs, and then for the reconnection.
    void FirmwareUpdateButtonClicked();
    /// Tells the unit that the update is taken over, tells the user, and closes the update's
    /// dialog. 1 when the unit could be told, whatever it answered; otherwise 0. Waits for the
    /// answer, ten seconds at least when there is none.
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
