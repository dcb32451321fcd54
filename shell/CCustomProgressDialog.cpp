// SPDX-License-Identifier: MIT

#include "shell/CCustomProgressDialog.h"

#include <QApplication>
#include <QKeyEvent>
#include <QProgressBar>
#include <QWindow>

namespace {

bool IsMainWindow(const QWidget& window)
{
    return window.windowType() == Qt::Dialog && window.parentWidget() == nullptr &&
           qobject_cast<const QProgressDialog*>(&window) == nullptr;
}

// The program's main window, or null while it is hidden. A tool tip is no main window, nor is the
// dialog of another window.
const QWidget* VisibleMainWindow()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (const QWidget* const window : windows) {
        if (window->isVisible() && IsMainWindow(*window)) {
            return window;
        }
    }
    return nullptr;
}

// A window-modal window blocks only the windows that it is transient for. The window system may put
// it behind them unless it is marked as a dialog.
void StayAboveMainWindow(QWidget& dialog)
{
    dialog.winId(); // makes its window
    QWindow* const window = dialog.windowHandle();
    window->setFlags(window->flags() | Qt::Dialog);
    if (const QWidget* const mainWindow = VisibleMainWindow()) {
        window->setTransientParent(mainWindow->windowHandle());
    }
}

bool IsEscape(const QEvent& event)
{
    switch (event.type()) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
        return static_cast<const QKeyEvent&>(event).key() == Qt::Key_Escape;
    default:
        return false;
    }
}

// A window manager may close a window whose close button is hidden.
bool IsCloseInVain(const QWidget& window, const QEvent& event)
{
    return event.type() == QEvent::Close && event.spontaneous() &&
           !window.windowFlags().testFlag(Qt::WindowCloseButtonHint);
}

} // namespace

CCustomProgressDialog::CCustomProgressDialog(
    const QString& label, int minimum, int maximum, QWidget* parent)
    : QProgressDialog(label, QString(), minimum, maximum, parent)
{
    setWindowModality(Qt::WindowModal);
    setCancelButton(nullptr);
    setMinimumDuration(0);
    if (const QWidget* const mainWindow = VisibleMainWindow()) {
        setWindowTitle(mainWindow->windowTitle());
    }
    findChild<QProgressBar*>()->setAccessibleName(label);
    if (parent == nullptr) {
        StayAboveMainWindow(*this);
    }
}

void CCustomProgressDialog::SetCloseButtonHidden(bool hide)
{
    if (hide) {
        setWindowFlags(Qt::Window | Qt::WindowTitleHint | Qt::CustomizeWindowHint);
        StayAboveMainWindow(*this);
    }
}

bool CCustomProgressDialog::event(QEvent* event)
{
    const bool isEscape = IsEscape(*event);
    if (isEscape || IsCloseInVain(*this, *event)) {
        event->setAccepted(isEscape);
        return true;
    }
    return QWidget::event(event);
}
