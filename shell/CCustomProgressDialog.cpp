#include "shell/CCustomProgressDialog.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWindow>

namespace {

// The window that the user is left with when all progress dialogs are closed.
QWindow* VisibleMainWindow()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (const QWidget* window : windows) {
        if (window->isVisible() && window->windowHandle() != nullptr &&
            qobject_cast<const QProgressDialog*>(window) == nullptr) {
            return window->windowHandle();
        }
    }
    return nullptr;
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

} // namespace

CCustomProgressDialog::CCustomProgressDialog(
    const QString& label, int minimum, int maximum, QWidget* parent)
    : QProgressDialog(label, QString(), minimum, maximum, parent)
{
    setWindowModality(Qt::WindowModal);
    setCancelButton(nullptr);
    setMinimumDuration(0);
    if (parent == nullptr) {
        // A window-modal window blocks the windows that it is transient for, and no others.
        winId();
        windowHandle()->setTransientParent(VisibleMainWindow());
    }
}

void CCustomProgressDialog::SetCloseButtonHidden(bool hide)
{
    if (hide) {
        setWindowFlags(Qt::Window | Qt::WindowTitleHint | Qt::CustomizeWindowHint);
    }
}

bool CCustomProgressDialog::event(QEvent* event)
{
    if (IsEscape(*event)) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}
