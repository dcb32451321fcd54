// SPDX-License-Identifier: MIT

#pragma once

#include "shell/CTabBaseClass.h"

namespace Ui {
class TabIpConfiguration;
}

/// Gives the connected unit another IP address and subnet mask, or another MAC address, and
/// connects anew. The fields follow the model. What the user types stays in them until the model
/// next changes them. The controls for the MAC address are hidden, and nothing calls their slot.
class CTabIpConfiguration : public CTabBaseClass
{
    Q_OBJECT

public:
    explicit CTabIpConfiguration(QWidget* parent);
    ~CTabIpConfiguration() override;

    void UpdateControls() override;

    /// Makes the fields take an address as a whole, see FilterMaskedFields().
    bool eventFilter(QObject* watched, QEvent* event) override;

signals:
    /// The unit has the address and the mask of the fields, and the model knows them.
    void SignalIpChanged();

public slots:
    void ConnectionStatusChanged() override;

    /// Sends address and mask, unless the model has the same, and connects to the new address.
    /// Blocks for 100 ms and then as ConnectToDevice() does. After a failure the model keeps the
    /// new address, and the button stays as it was until the tab next hears of the link.
    void SendIpAddressButtonClicked();

    /// Sends the MAC address in the way of the unit's firmware, unless the model has the same.
    /// Connects to the same IP address in both cases. Blocks as ConnectToDevice() does.
    void SendMacAddressButtonClicked();

private:
    QScopedPointer<Ui::TabIpConfiguration> ui;
};
