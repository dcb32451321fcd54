#pragma once

#include <QObject>
#include <QString>

class QHelpEvent;
class QWidget;

/// Shows a text from outside as it is written, where a tool tip would take markup in it for its own
/// and load the files that it names. Of a longer text the first 4000 characters.
void ShowPlainToolTip(const QHelpEvent& event, const QString& text, QWidget* widget);

/// Shows the tool tip of a widget by ShowPlainToolTip(). Belongs to the widget.
class CPlainToolTip : public QObject
{
    Q_OBJECT

public:
    explicit CPlainToolTip(QWidget* widget);

    bool eventFilter(QObject* watched, QEvent* event) override;
};
