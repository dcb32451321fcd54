#pragma once

#include "hardware/CTabBoardDataNew.h"

#include <QFileDialog>
#include <QStringList>

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

/// What a file dialog asked.
struct AskedForFile
{
    QString title;
    QStringList filters;
    QString name;
    QFileDialog::FileMode mode = QFileDialog::AnyFile;
    QFileDialog::AcceptMode acceptMode = QFileDialog::AcceptOpen;
    int times = 0;
};

/// Clicks a button and answers its file dialog. An empty path cancels.
AskedForFile ClickAndChoose(QWidget* button, const QString& path);
