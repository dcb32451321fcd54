// SPDX-License-Identifier: MIT

#include "widgets/UserInput.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QScopedValueRollback>

namespace {

bool running = false;

bool IsReturn(const QKeyEvent& key)
{
    return !key.isAutoRepeat() && (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter);
}

// A button leaves Return to the default button of its dialog. Here there is no default button.
class ReturnPresses : public QObject
{
public:
    explicit ReturnPresses(QAbstractButton* button)
        : QObject(button)
        , button(*button)
    {
    }

    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() != QEvent::KeyPress || !IsReturn(static_cast<const QKeyEvent&>(*event))) {
            return false;
        }
        button.click();
        return true;
    }

private:
    QAbstractButton& button;
};

} // namespace

void PressByReturn(QAbstractButton* button)
{
    button->installEventFilter(new ReturnPresses(button));
}

void RunAlone(const std::function<void()>& work)
{
    if (running) {
        return;
    }
    const QScopedValueRollback<bool> busy(running, true);
    work();
}

void ProcessEventsBesidesInput()
{
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}
