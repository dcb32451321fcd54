#include "tests/soak/Run.h"

#include "hardware/CTabBoardDataNew.h"
#include "tests/support/WindowTest.h"

#include <QPixmapCache>
#include <QPushButton>
#include <QTabWidget>

#include <cstdio>

namespace {

constexpr int StepsOfAPass = 20;
constexpr int FewestPasses = 2;
/// What still grows in the last of so many is no cache that fills.
constexpr int MostPasses = 4;
/// For what the toolkit puts off, such as the end of a tool tip.
constexpr int SettleMs = 1000;

// The pages hide some of their buttons, and the window a page: they are a part of the tool all the
// same.
void ShowWhatIsHidden()
{
    for (const char* const name :
        {"btnReadDeviceOptions", "btnSendDeviceOptions", "btnSendMacAddress"}) {
        Find<QPushButton>(name)->show();
    }
    Find<QWidget>("txtNewMacAddress")->show();
    const QWidgetList widgets = QApplication::allWidgets();
    for (QWidget* const widget : widgets) {
        if (auto* const page = qobject_cast<CTabBoardDataNew*>(widget)) {
            Find<QTabWidget>("tabWidget")->addTab(page, "EEPROM");
        }
    }
}

} // namespace

Run::Run(quint32 seed)
    : seed(seed)
    , user(seed, watch)
{
}

void Run::Begin()
{
    ShowWhatIsHidden();
    watch.Begin();
    user.Begin();
    QTimer::singleShot(0, this, &Run::TakeStep);
}

void Run::TakeStep()
{
    if (!MainWindow()->isVisible()) {
        watch.Fail("the window is gone");
        return;
    }
    if (step == StepsOfAPass) {
        Rest();
        return;
    }
    std::printf("pass %d, step %d: ", pass + 1, step);
    user.Act(step);
    watch.LookAtTheWindow();
    ++step;
    QTimer::singleShot(0, this, &Run::TakeStep);
}

void Run::Rest()
{
    std::puts("rest");
    user.Rest();
    QTimer::singleShot(SettleMs, this, &Run::Measure);
}

void Run::Measure()
{
    watch.LookAtTheWindow();
    QPixmapCache::clear();
    const Resources now = Resources::Now();
    const bool grown = pass > 0 && now.HasGrownFrom(afterLastPass);
    afterLastPass = now;
    step = 0;
    ++pass;
    if (pass < FewestPasses || (grown && pass < MostPasses)) {
        QTimer::singleShot(0, this, &Run::TakeStep);
        return;
    }
    if (grown) {
        watch.Fail("what is held grows with each pass");
    }
    End();
}

void Run::End()
{
    std::puts("end");
    user.Leave();
    ended = !MainWindow()->isVisible();
    if (!ended) {
        watch.Fail("the window did not close");
        MainWindow()->hide();
    }
}

int Run::ExitCode() const
{
    return ended && watch.Failures() == 0 ? 0 : 1;
}
