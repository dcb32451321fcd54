#pragma once

#include "shell/CTabBaseClass.h"

namespace Ui {
class TabInfo;
}

/// Who the connected unit is. Shows the model's columns and offers no action; after a connection it
/// has the unit's identity read, on which the other tabs rely.
class CTabInfo : public CTabBaseClass
{
    Q_OBJECT

public:
    explicit CTabInfo(QWidget* parent);
    ~CTabInfo() override;

public slots:
    /// Reads the identity: blocks as ReadDeviceInfo() does.
    void ConnectionStatusChanged() override;

private:
    QScopedPointer<Ui::TabInfo> ui;
};
