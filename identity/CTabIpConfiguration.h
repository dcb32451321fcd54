#pragma once

#include "shell/CTabBaseClass.h"

namespace Ui {
class TabIpConfiguration;
}

/// Gives the connected unit another IP address and subnet mask, or another MAC address, and
/// connects anew. The fields follow the model; what the user types stays in them until the model
/// next tells them otherwise. The controls for the MAC address are hidden, and nothing leads to
/// their slot.
class CTabIpConfiguration : public CTabBaseClass
{
    Q_OBJECT

public:
    explicit CTabIpConfiguration(QWidget* parent);
    ~CTabIpConfiguration() override;

    void UpdateControls() override;

    /// Lets a click into an empty field put the cursor at its start.
    bool eventFilter(QObject* watched, QEvent* event) override;

signals:
    /// The unit has the address and the mask of the fields, and the model knows them.
    void SignalIpChanged();

public slots:
    void ConnectionStatusChanged() override;

    /// Sends address and mask, unless they are those of the model, and connects to the new address:
    /// blocks for 100 ms and as ConnectToDevice() does. When that fails, the model keeps the new
    /// address, and the button stays as it was until the tab is next told of the link.
    void SendIpAddressButtonClicked();

    /// Sends the MAC address in the way of the unit's firmware, unless it is that of the model, and
    /// in both cases connects to the same address: blocks as ConnectToDevice() does.
    void SendMacAddressButtonClicked();

private:
    QScopedPointer<Ui::TabIpConfiguration> ui;
};
