// SPDX-License-Identifier: MIT

// One run of random use, in a network of its own.
//
// vx440-soak SEED

#include "hardware/CTabBoardDataNew.h"
#include "shell/CVX440_AccessApplication.h"
#include "tests/soak/User.h"
#include "tests/support/OwnNetwork.h"
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

/// Random actions, the same ones again, and the end of the program. What is held is measured after
/// each of these passes, with the same unit connected; where it has grown, there are more of them.
class Run : public QObject
{
public:
    explicit Run(quint32 seed)
        : user(seed, watch)
    {
    }

    /// Goes on from the event loop of the program, until it closes the window.
    void Begin()
    {
        ShowWhatIsHidden();
        watch.Begin();
        user.Begin();
        QTimer::singleShot(0, this, &Run::TakeStep);
    }

    /// To be called behind the end of the program.
    int ExitCode() const { return ended && watch.Failures() == 0 ? 0 : 1; }

private:
    void TakeStep()
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

    void Rest()
    {
        std::puts("rest");
        user.Rest();
        QTimer::singleShot(SettleMs, this, &Run::Measure);
    }

    void Measure()
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

    void End()
    {
        std::puts("end");
        user.Leave();
        ended = !MainWindow()->isVisible();
        if (!ended) {
            watch.Fail("the window did not close");
            MainWindow()->hide();
        }
    }

    int step = 0;
    int pass = 0;
    bool ended = false;
    Watch watch;
    User user;
    Resources afterLastPass{};
};

bool LayNetwork(OwnNetwork& network)
{
    return network.Lay() && network.AddSilentHost("192.168.77.200") &&
           network.AddHost("192.168.77.12", "02:4c:7e:0a:00:12");
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2 || !OwnNetwork::IsAllowed()) {
        std::fputs("to be run by scripts/soak\n", stderr);
        return 2;
    }
    OwnNetwork network;
    if (!LayNetwork(network)) {
        std::fprintf(stderr, "%s\n", qPrintable(network.Error()));
        return 2;
    }
    Run run(QByteArray(argv[1]).toUInt());
    QMetaObject::invokeMethod(&run, &Run::Begin, Qt::QueuedConnection);
    {
        const CVX440_AccessApplication application(argc, argv);
    }
    return run.ExitCode();
}
