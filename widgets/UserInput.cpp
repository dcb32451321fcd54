// SPDX-License-Identifier: MIT

#include "widgets/UserInput.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QScopedValueRollback>

namespace {

bool running = false;

// A button leaves Return to the default button of its dialog. Here there is no default button.
class ReturnPresses : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        auto* const button = qobject_cast<QAbstractButton*>(watched);
        if (button == nullptr || event->type() != QEvent::KeyPress || !IsReturn(*event)) {
            return false;
        }
        button->click();
        return true;
    }

private:
    static bool IsReturn(const QEvent& event)
    {
        const auto& key = static_cast<const QKeyEvent&>(event);
        return !key.isAutoRepeat() && (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter);
    }
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
