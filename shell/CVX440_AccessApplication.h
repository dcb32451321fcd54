// SPDX-License-Identifier: MIT

#pragma once

#include <QApplication>
#include <QScopedPointer>

class CMainDialog;

/// The program, set up as a whole: resolution, resources, style, font, accessibility. Whoever needs
/// the program makes this object and sets nothing up itself.
///
/// The constructor shows the window, runs its event loop and returns when the user has closed it.
/// There is nothing left to do with the object then but to destroy it.
class CVX440_AccessApplication : public QApplication
{
    Q_OBJECT

public:
    /// `argc` and `argv` are Qt's own options; they must outlive the object.
    CVX440_AccessApplication(int& argc, char** argv);
    ~CVX440_AccessApplication() override;

private:
    QScopedPointer<CMainDialog> dialog;
};
