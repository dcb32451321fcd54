// SPDX-License-Identifier: MIT

#pragma once

#include "tests/support/Warnings.h"

#include <QApplication>
#include <QFileDialog>
#include <QProgressDialog>
#include <QTimer>
#include <QWidget>

#include <functional>

// A window test runs inside the program itself: the application object shows its dialog, and the
// test functions run in the dialog's own event loop. Mouse and key events enter where the window
// system's do, so that a window which is blocked does not get them.

/// The program's window.
QWidget* MainWindow();

/// A widget of the window by its class and object name; of the current page where several have it.
template<class Widget>
Widget* Find(const char* name)
{
    const auto found = MainWindow()->findChildren<Widget*>(name);
    for (Widget* const widget : found) {
        if (widget->isVisible()) {
            return widget;
        }
    }
    return found.isEmpty() ? nullptr : found.first();
}

/// A click with the left button into the middle of a widget.
void Click(QWidget* widget);
/// Clicks the title of a page.
void ShowPage(const char* title);
/// Keys to whatever has the focus in the window.
void Type(const QString& text);
void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
/// Replaces the text of a field by clicking it and typing.
void Overtype(QWidget* field, const QString& text);
/// Asks a widget for its tool tip, as a mouse does that rests on it. Whether it takes the question.
/// If not, what lies behind it was asked, too.
bool AskForTip(QWidget* widget);
/// Asks a window to close as its title bar's button does.
void CloseByTitleBar(QWidget* window);

/// Runs `action` once, from the event loop, as soon as a window of that class is up of which
/// `wanted` holds. A test function of WarningsFail fails that ends without it.
template<class Window>
void WhenShown(
    const std::function<void(Window&)>& action,
    const std::function<bool(const Window&)>& wanted = [](const Window&) { return true; })
{
    auto* const watch = new QTimer(qApp);
    watch->setObjectName(WatchName);
    QObject::connect(watch, &QTimer::timeout, watch, [watch, action, wanted] {
        const QWidgetList windows = QApplication::topLevelWidgets();
        for (QWidget* const any : windows) {
            auto* const window = qobject_cast<Window*>(any);
            if (window != nullptr && window->isVisible() && wanted(*window)) {
                watch->stop();
                watch->deleteLater();
                action(*window);
                return;
            }
        }
    });
    watch->start(0);
}

/// What a file dialog showed when it came up.
struct AskedForFile
{
    QString title;
    QStringList filters;
    QString name;
    QFileDialog::FileMode mode = QFileDialog::AnyFile;
    QFileDialog::AcceptMode acceptMode = QFileDialog::AcceptOpen;
    int times = 0; // 0 when no dialog came
};

/// Clicks a button and answers the file dialog that it opens by keys. An empty path cancels. `look`
/// sees the dialog first.
AskedForFile ClickAndChooseFile(
    QWidget* button, const QString& path,
    const std::function<void(QFileDialog&)>& look = [](QFileDialog&) {});

/// The progress dialog that is up, or null.
QProgressDialog* VisibleProgress();
/// Runs `action` once, from the event loop, as soon as a progress dialog is up.
void WhenProgressShows(const std::function<void()>& action);

/// Counts the progress dialogs that come up while it lives.
class ShownProgress : public QObject
{
public:
    ShownProgress();
    int Count() const { return labels.size(); }
    /// Their labels, as they were when they came up.
    QStringList Labels() const { return labels; }
    /// The labels of those that were closed, in that order. One that is deleted is not closed.
    QStringList ClosedLabels() const { return closedLabels; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QStringList labels;
    QStringList closedLabels;
};

/// Calls `action` each time that the application's status is set to `text`, at once, as long as
/// `context` lives.
void WhenStatusIs(QObject& context, const QString& text, const std::function<void()>& action);
/// Calls `action` when the event loop has its next turn, unless `context` has gone by then. What
/// waits to be painted is painted in that turn, too.
void InTheNextTurn(QObject& context, const std::function<void()>& action);

/// The rows of the list of found devices, "ADDRESS MAC" each. `parent` is the page or its window.
QStringList ListedDevices(const QWidget& parent);

/// The text of the application's status line, and of the connection's.
QString StatusLine();
QString ConnectionLine();

/// Types an address and clicks Connect. Comes back when the program has.
void ConnectTo(const QString& address);

/// Runs `work` in the event loop of the program, then closes the window. What `work` returned, or 1
/// when the program ended without it.
int RunInTheProgram(const std::function<int()>& work, int argc, char** argv);
/// Runs the test object inside the program. `argc` and `argv` go to both. The result of the tests.
int RunInTheProgram(QObject& test, int argc, char** argv);

#define VX440_WINDOW_TEST_MAIN(TestClass)                                                          \
    int main(int argc, char** argv)                                                                \
    {                                                                                              \
        TestClass test;                                                                            \
        return RunInTheProgram(test, argc, argv);                                                  \
    }
