// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QString>

class QHelpEvent;
class QWidget;

/// Shows a text as it is written, at most its first 4000 characters. Qt's own tool tip would follow
/// markup in the text and load the files that it names.
void ShowPlainToolTip(const QHelpEvent& event, const QString& text, QWidget* widget);

/// Shows the tool tip of a widget by ShowPlainToolTip(). The widget owns this object.
class CPlainToolTip : public QObject
{
    Q_OBJECT

public:
    explicit CPlainToolTip(QWidget* widget);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget& widget;
};
