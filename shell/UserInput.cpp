#include "shell/UserInput.h"

#include <QCoreApplication>
#include <QScopedValueRollback>

namespace {

bool running = false;

} // namespace

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
