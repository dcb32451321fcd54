// SPDX-License-Identifier: MIT

#pragma once

#include "discovery/CDeviceDetector.h"
#include "shell/CTabBaseClass.h"

#include <QScopedPointer>

namespace Ui {
class TabDetectZKDevices;
}

/// Lists the units of an address range. A unit is known by the MAC address prefix of its maker
/// alone. Nothing connects to it, and the connection to a unit plays no part here.
class CTabDetectZKDevices : public CTabBaseClass
{
    Q_OBJECT

public:
    explicit CTabDetectZKDevices(QWidget* parent);
    ~CTabDetectZKDevices() override;

    void ConnectionStatusChanged() override;
    void UpdateControls() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

public slots:
    /// Searches the range of the two fields. Blocks until that is done, 22 s for a whole network,
    /// or until the user closes the progress dialog.
    void FindZKDevicesButtonClicked();

    /// Adds a row for a unit. Other hosts are dropped.
    void SetDeviceToTableWidget(sDEVICE sDeviceToAdd);

private:
    QScopedPointer<Ui::TabDetectZKDevices> ui;
    CDeviceDetector detector;
};
