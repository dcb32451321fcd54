// SPDX-License-Identifier: MIT

#pragma once

#include "hardware/CTabBoardDataNew.h"

/// The program's board data tab, which has no page, in a window of its own for as long as the
/// object lives. For tests that run inside the program.
class BoardDataWindow
{
    Q_DISABLE_COPY(BoardDataWindow)

public:
    BoardDataWindow();
    ~BoardDataWindow();

    CTabBoardDataNew* Tab() const { return tab; }

    template<class Widget>
    Widget* Child(const char* name) const
    {
        return tab->findChild<Widget*>(name);
    }

    bool IsEnabled(const char* name) const { return Child<QWidget>(name)->isEnabled(); }
    bool IsVisible(const char* name) const { return Child<QWidget>(name)->isVisible(); }
    QString TextOf(const char* edit) const;

private:
    CTabBoardDataNew* tab;
};
