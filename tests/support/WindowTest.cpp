#include "tests/support/WindowTest.h"

#include "shell/CVX440_AccessApplication.h"

#include <QLabel>
#include <QLineEdit>
#include <QTabBar>
#include <QTabWidget>
#include <QTimer>
#include <QWindow>
#include <QtTest>

namespace {

template<class Window>
Window* TopLevel(const std::function<bool(const QWidget*)>& wanted)
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* const window : windows) {
        auto* const found = qobject_cast<Window*>(window);
        if (found != nullptr && wanted(found)) {
            return found;
        }
    }
    return nullptr;
}

void ClickAt(QWidget* widget, const QPoint& position)
{
    QTest::mouseClick(widget->window()->windowHandle(), Qt::LeftButton, Qt::NoModifier,
        widget->mapTo(widget->window(), position));
}

} // namespace

QWidget* MainWindow()
{
    return TopLevel<QWidget>(
        [](const QWidget* window) { return window->objectName() == QLatin1String("MainDialog"); });
}

void Click(QWidget* widget)
{
    ClickAt(widget, widget->rect().center());
}

void ShowPage(const char* title)
{
    auto* const bar = Find<QTabWidget>("tabWidget")->tabBar();
    for (int page = 0; page < bar->count(); ++page) {
        if (bar->tabText(page) == QLatin1String(title)) {
            ClickAt(bar, bar->tabRect(page).center());
        }
    }
}

void Type(const QString& text)
{
    for (const QChar character : text) {
        QTest::keyClick(MainWindow()->windowHandle(), character.toLatin1());
    }
}

void Press(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(MainWindow()->windowHandle(), key, modifiers);
}

void Overtype(QWidget* field, const QString& text)
{
    Click(field);
    Press(Qt::Key_A, Qt::ControlModifier);
    Press(Qt::Key_Delete);
    Press(Qt::Key_Home);
    Type(text);
}

void CloseByTitleBar(QWidget* window)
{
    window->windowHandle()->close();
    QCoreApplication::processEvents();
}

QProgressDialog* VisibleProgress()
{
    return TopLevel<QProgressDialog>([](const QWidget* window) { return window->isVisible(); });
}

void WhenProgressShows(const std::function<void()>& action)
{
    auto* const watch = new QTimer;
    QObject::connect(watch, &QTimer::timeout, watch, [watch, action] {
        if (VisibleProgress() != nullptr) {
            watch->stop();
            watch->deleteLater();
            action();
        }
    });
    watch->start(0);
}

QString StatusLine()
{
    return Find<QLabel>("lblAppStatus")->text();
}

QString ConnectionLine()
{
    return Find<QLabel>("lblConnectionStatus")->text();
}

void ConnectTo(const QString& address)
{
    Overtype(Find<QLineEdit>("txtIpAddress"), address);
    Click(Find<QWidget>("btnConnect"));
}

int RunInTheProgram(const std::function<int()>& work, int argc, char** argv)
{
    int result = 1;
    QObject context;
    QMetaObject::invokeMethod(
        &context,
        [&] {
            result = work();
            MainWindow()->close();
        },
        Qt::QueuedConnection);
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    const CVX440_AccessApplication application(argc, argv);
    return result;
}

int RunInTheProgram(QObject& test, int argc, char** argv)
{
    return RunInTheProgram([&] { return QTest::qExec(&test, argc, argv); }, argc, argv);
}
