#pragma once

#include "options/CDeviceOptions.h"
#include "shell/CTabBaseClass.h"

class CCustomProgressDialog;
class QGroupBox;
class QLayout;

namespace Ui {
class TabOptions;
}

/// What the unit is fitted with: a group of read-only lines for each kind of module, which stays as
/// it is until a reading succeeds. The buttons for a workbook and for sending work, and are hidden.
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
    /// Sends the options and then their descriptions. Refused descriptions leave the unit with the
    /// new options. Blocks for the acknowledgements, ten seconds and more for one that does not
    /// come.
    virtual void SendOptionsToDeviceButtonClicked();
    /// Blocks for the two answers, two seconds and more for one that does not come.
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
