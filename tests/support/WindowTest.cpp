// SPDX-License-Identifier: MIT

#include "tests/support/WindowTest.h"

#include "model/CDeviceDatabase.h"
#include "shell/CVX440_AccessApplication.h"

#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QTabBar>
#include <QTabWidget>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QWindow>
#include <QtTest>

#include <memory>

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

// The keys of a user who answers a file dialog with this path. The list of suggestions may take the
// first Return. A dialog that does not close is given up: its program would wait for ever.
void Answer(QFileDialog& dialog, const QString& path)
{
    QWindow* const window = dialog.windowHandle();
    const auto* const name = dialog.findChild<QLineEdit*>("fileNameEdit");
    const bool takesKeys = QTest::qWaitFor([name] { return QApplication::focusWidget() == name; });
    for (const QChar character : path) {
        QTest::keyClick(window, character.toLatin1());
    }
    const bool closed = QTest::qWaitFor([&dialog, window] {
        QTest::keyClick(window, Qt::Key_Return);
        return !dialog.isVisible();
    });
    if (!closed) {
        dialog.reject();
    }
    QVERIFY(takesKeys && closed);
}

void Note(AskedForFile& asked, const QFileDialog& dialog)
{
    asked.title = dialog.windowTitle();
    asked.filters = dialog.nameFilters();
    asked.name = dialog.findChild<QLineEdit*>("fileNameEdit")->text();
    asked.mode = dialog.fileMode();
    asked.acceptMode = dialog.acceptMode();
    ++asked.times;
}

} // namespace

QWidget* MainWindow()
{
    return TopLevel<QWidget>(
        [](const QWidget* window) { return window->objectName() == "MainDialog"; });
}

void Click(QWidget* widget)
{
    ClickAt(widget, widget->rect().center());
}

void ShowPage(const char* title)
{
    auto* const bar = Find<QTabWidget>("tabWidget")->tabBar();
    for (int page = 0; page < bar->count(); ++page) {
        if (bar->tabText(page) == title) {
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

bool AskForTip(QWidget* widget)
{
    const QPoint middle = widget->rect().center();
    QHelpEvent event(QEvent::ToolTip, middle, widget->mapToGlobal(middle));
    QCoreApplication::sendEvent(widget, &event);
    return event.isAccepted();
}

void CloseByTitleBar(QWidget* window)
{
    window->windowHandle()->close();
    QCoreApplication::processEvents();
}

AskedForFile ClickAndChooseFile(
    QWidget* button, const QString& path, const std::function<void(QFileDialog&)>& look)
{
    const auto asked = std::make_shared<AskedForFile>();
    WhenShown<QFileDialog>([asked, path, look](QFileDialog& dialog) {
        Note(*asked, dialog);
        look(dialog);
        if (path.isEmpty()) {
            QTest::keyClick(dialog.windowHandle(), Qt::Key_Escape);
        } else {
            Answer(dialog, path);
        }
    });
    Click(button);
    return *asked;
}

QProgressDialog* VisibleProgress()
{
    return TopLevel<QProgressDialog>([](const QWidget* window) { return window->isVisible(); });
}

void WhenProgressShows(const std::function<void()>& action)
{
    WhenShown<QProgressDialog>([action](QProgressDialog&) { action(); });
}

ShownProgress::ShownProgress()
{
    qApp->installEventFilter(this);
}

bool ShownProgress::eventFilter(QObject* watched, QEvent* event)
{
    const auto* const dialog = qobject_cast<QProgressDialog*>(watched);
    if (dialog != nullptr && event->type() == QEvent::Show) {
        labels.append(dialog->labelText());
    }
    if (dialog != nullptr && event->type() == QEvent::Close) {
        closedLabels.append(dialog->labelText());
    }
    return false;
}

void WhenStatusIs(QObject& context, const QString& text, const std::function<void()>& action)
{
    QObject::connect(TheDeviceDatabase(), &QAbstractItemModel::dataChanged, &context,
        [text, action](const QModelIndex& cell) {
            if (cell.column() == CDeviceDatabase::ApplicationStatusColumn &&
                cell.data().toString() == text) {
                action();
            }
        });
}

void InTheNextTurn(QObject& context, const std::function<void()>& action)
{
    QMetaObject::invokeMethod(&context, action, Qt::QueuedConnection);
}

QStringList ListedDevices(const QWidget& parent)
{
    const auto* const table = parent.findChild<QTableWidget*>("tblDetectDevices");
    QStringList rows;
    for (int row = 0; row < table->rowCount(); ++row) {
        rows << table->item(row, 0)->text() + ' ' + table->item(row, 1)->text();
    }
    return rows;
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
    // A file dialog keeps its last folder in the user's settings: not in those of whoever runs
    // this.
    const QTemporaryDir settings;
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(settings.path()));
    if (qEnvironmentVariableIsSet("VX440_THEME_SETTINGS")) {
        QDir(settings.path()).mkdir("qt5ct");
        QFile::copy(
            qEnvironmentVariable("VX440_THEME_SETTINGS"), settings.filePath("qt5ct/qt5ct.conf"));
    }
    // Displays that nobody sees have 100 dots per inch, and the window would grow by a
    // twenty-fourth.
    qputenv("QT_SCALE_FACTOR_ROUNDING_POLICY", "Round");

    int result = 1;
    QObject context;
    QMetaObject::invokeMethod(
        &context,
        [&] {
            result = work();
            MainWindow()->close();
        },
        Qt::QueuedConnection);
    // The system's own take keys from the system only, and are no windows of this program.
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    const CVX440_AccessApplication application(argc, argv);
    return result;
}

int RunInTheProgram(QObject& test, int argc, char** argv)
{
    return RunInTheProgram([&] { return QTest::qExec(&test, argc, argv); }, argc, argv);
}
