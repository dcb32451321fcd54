// SPDX-License-Identifier: MIT

#pragma once

#include <QDataWidgetMapper>
#include <QDialog>
#include <QScopedPointer>
#include <QVector>

class CTabBaseClass;
class CTabBoardDataNew;
class CTabDetectZKDevices;
class CTabInfo;
class CTabIpConfiguration;
class CTabLoadFirmware;
class CTabMotorConfiguration;
class CTabOptions;

namespace Ui {
class MainDialog;
}

/// The window: the connection bar on top, the tabs, the status line below. Its widgets follow the
/// model. Only the work of the connect button is its own.
class CMainDialog : public QDialog
{
    Q_OBJECT

public:
    /// The dialog is empty until the application has set it up.
    explicit CMainDialog(QWidget* parent = nullptr);
    ~CMainDialog() override;

    bool eventFilter(QObject* watched, QEvent* event) override;

signals:
    /// Emitted when the reconnection after a firmware update was tried. IsConnected() tells how it
    /// ended.
    void AttemptedReconnection();
    // Kept, though nothing emits them: see docs/kept-on-purpose.md.
    void AttemptedReconnectionAfterIpChange();
    void AttemptedReconnectionAfterMacChange();
    void RunAfterConnection();

public slots:
    void DisableBoardDataTab(int index);
    void HideBoardDataTab(int index);
    /// Forgets all that is known of the unit and connects to the address in the bar. Blocks as
    /// ConnectToDevice() does, and then as long as the tabs read from the unit.
    void ConnectButtonClicked();
    /// Shows the model's address in the bar.
    void IpAddressChanged();
    void ReconnectAfterFirmwareUpdate();
    /// Tells the user and the tabs when the link is down.
    void CheckForConnectionLoss();

private:
    friend class CVX440_AccessApplication;

    void SetupDialog();
    void CreateTabs();
    void AddPages();
    void BindStatusTexts();
    void ConnectSignals();
    void LoadDeviceInfo();
    void UpdateTabs();

    QScopedPointer<QDataWidgetMapper> mapper;
    QScopedPointer<Ui::MainDialog> ui; // goes before the mapper
    CTabMotorConfiguration* polarTab = nullptr;
    CTabMotorConfiguration* azimuthTab = nullptr;
    CTabInfo* infoTab = nullptr;
    CTabLoadFirmware* firmwareTab = nullptr;
    CTabIpConfiguration* ipTab = nullptr;
    CTabDetectZKDevices* detectTab = nullptr;
    CTabBoardDataNew* boardDataTab = nullptr;
    CTabOptions* optionsTab = nullptr;
    // All of them, in the order of the passes. They are deleted in this order.
    QVector<CTabBaseClass*> tabs;
};
