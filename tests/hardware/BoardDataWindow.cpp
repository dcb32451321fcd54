#include "tests/hardware/BoardDataWindow.h"

#include "tests/support/WindowTest.h"

#include <QLineEdit>
#include <QTimer>
#include <QWindow>
#include <QtTest>

namespace {

CTabBoardDataNew* TabOfTheProgram()
{
    const QWidgetList widgets = QApplication::allWidgets();
    for (QWidget* const widget : widgets) {
        if (auto* const tab = qobject_cast<CTabBoardDataNew*>(widget)) {
            return tab;
        }
    }
    return nullptr;
}

QFileDialog* VisibleFileDialog()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* const window : windows) {
        auto* const dialog = qobject_cast<QFileDialog*>(window);
        if (dialog != nullptr && dialog->isVisible()) {
            return dialog;
        }
    }
    return nullptr;
}

void Note(AskedForFile& asked, const QFileDialog& dialog)
{
    asked.title = dialog.windowTitle();
    asked.filters = dialog.nameFilters();
    asked.name = dialog.findChild<QLineEdit*>("fileNameEdit")->text();
    asked.mode = dialog.fileMode();
    ++asked.times;
}

// The list of suggestions may take the first Return.
void Answer(QFileDialog& dialog, const QString& path)
{
    dialog.findChild<QLineEdit*>("fileNameEdit")->setText(path);
    while (dialog.isVisible()) {
        QTest::keyClick(dialog.windowHandle(), path.isEmpty() ? Qt::Key_Escape : Qt::Key_Return);
        QCoreApplication::processEvents();
    }
}

} // namespace

// The window belongs to the program's own, whose modal dialog blocks all others.
BoardDataWindow::BoardDataWindow()
    : tab(TabOfTheProgram())
{
    tab->setParent(MainWindow(), Qt::Window);
    tab->show();
}

BoardDataWindow::~BoardDataWindow()
{
    tab->hide();
    tab->setParent(nullptr);
}

QString BoardDataWindow::TextOf(const char* edit) const
{
    return Child<QLineEdit>(edit)->text();
}

AskedForFile ClickAndChoose(QWidget* button, const QString& path)
{
    AskedForFile asked;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, &watch, [&] {
        if (QFileDialog* const dialog = VisibleFileDialog()) {
            watch.stop();
            Note(asked, *dialog);
            Answer(*dialog, path);
        }
    });
    watch.start(0);
    Click(button);
    return asked;
}
