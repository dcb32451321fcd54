// SPDX-License-Identifier: MIT

#pragma once

#include "options/CDeviceOptions.h"
#include "shell/CTabBaseClass.h"

class CCustomProgressDialog;
class QGroupBox;
class QLayout;

namespace Ui {
class TabOptions;
}

/// Shows what the unit is fitted with, as a group of read-only lines for each kind of module. The
/// groups stay as they are until a reading succeeds. The buttons for a workbook and for sending
/// work, but are hidden.
class CTabOptions : public CTabBaseClass
{
    Q_OBJECT

public:
    explicit CTabOptions(QWidget* parent);
    ~CTabOptions() override;

    void UpdateControls() override;

public slots:
    /// Reads the options from any unit that the tab serves.
    void ConnectionStatusChanged() override;
    /// Asks for a workbook and shows what it lists. Nothing is sent; a cancelled dialog counts as
    /// an invalid file.
    virtual void ReadOptionsFileButtonClicked();
    /// Sends the options and then their descriptions. When the unit refuses the descriptions, it
    /// keeps the new options. Blocks for the acknowledgements. One that does not come takes ten
    /// seconds or more.
    virtual void SendOptionsToDeviceButtonClicked();
    /// Blocks for the two answers. One that does not come takes two seconds or more.
    virtual void ReadOptionsFromDeviceButtonClicked();

private:
    QString SelectOptionsFile();
    bool ReadRecord(CCustomProgressDialog& progress);
    QString SendRecord(CCustomProgressDialog& progress);

    void RebuildOptionGroups();
    void BuildOptionGroup(int group, OptionItems items);
    void ClearLayout(QLayout* layout);

    QScopedPointer<Ui::TabOptions> ui;
    QScopedPointer<CDeviceOptions> Options;
};
