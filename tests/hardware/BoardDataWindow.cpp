// SPDX-License-Identifier: MIT

#include "tests/hardware/BoardDataWindow.h"

#include "tests/support/WindowTest.h"

#include <QLineEdit>

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
