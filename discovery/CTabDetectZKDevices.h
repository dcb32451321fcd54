#pragma once

#include "discovery/CDeviceDetector.h"
#include "shell/CTabBaseClass.h"

#include <QScopedPointer>

namespace Ui {
class TabDetectZKDevices;
}

/// The tab that lists the units of an address range. A unit is known by the maker's MAC address
/// prefix alone; nothing connects to it, and the connection to a unit plays no part here.
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
    /// Searches the range of the two fields and blocks until it has, 22 s for a whole network, or
    /// until its progress dialog is closed.
    void FindZKDevicesButtonClicked();

    /// Adds a row for a unit. Other hosts are dropped.
    void SetDeviceToTableWidget(sDEVICE sDeviceToAdd);

private:
    QScopedPointer<Ui::TabDetectZKDevices> ui;
    CDeviceDetector detector;
};
