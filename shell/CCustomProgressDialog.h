// SPDX-License-Identifier: MIT

#pragma once

#include <QProgressDialog>

/// The progress dialog of every long operation. It blocks the window behind it, shows at once, has
/// no cancel button and ignores Escape. Only the close button of its title bar cancels. While it is
/// up, its setValue() is the one place that lets events through.
class CCustomProgressDialog : public QProgressDialog
{
    Q_OBJECT

public:
    /// With `minimum` and `maximum` both 0 it shows that something goes on, not how far it is.
    /// Without a parent it still blocks the program's main window and stays above it.
    CCustomProgressDialog(
        const QString& label, int minimum, int maximum, QWidget* parent = nullptr);

    /// True takes the close button off the title bar, and lets the user close the dialog in no
    /// other way. False does nothing.
    void SetCloseButtonHidden(bool hide);

protected:
    bool event(QEvent* event) override;
};
