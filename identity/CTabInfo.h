// SPDX-License-Identifier: MIT

#pragma once

#include "shell/CTabBaseClass.h"

namespace Ui {
class TabInfo;
}

/// Shows who the connected unit is and offers no action. After a connection it reads the identity
/// of the unit, on which the other tabs rely.
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
