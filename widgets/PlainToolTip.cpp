// SPDX-License-Identifier: MIT

#include "widgets/PlainToolTip.h"

#include <QHelpEvent>
#include <QTextDocument>
#include <QToolTip>
#include <QWidget>

namespace {

constexpr int LongestText = 4000;
constexpr int LongestWord = 80;
constexpr QChar ZeroWidthSpace(0x200B);

// A line can only end where there is a place for it, and a path may have none.
QString WithPlacesToBreak(const QString& text)
{
    QString broken;
    int word = 0;
    for (const QChar character : text) {
        word = character.isSpace() ? 0 : word + 1;
        if (word > LongestWord && !character.isLowSurrogate()) {
            broken.append(ZeroWidthSpace);
            word = 1;
        }
        broken.append(character);
    }
    return broken;
}

} // namespace

void ShowPlainToolTip(const QHelpEvent& event, const QString& text, QWidget* widget)
{
    QString shown = text.left(LongestText);
    if (shown.size() > LongestWord || Qt::mightBeRichText(shown)) {
        shown = QStringLiteral("<p style='white-space:pre-wrap'>") +
                WithPlacesToBreak(shown).toHtmlEscaped() + QStringLiteral("</p>");
    }
    QToolTip::showText(event.globalPos(), shown, widget);
}

CPlainToolTip::CPlainToolTip(QWidget* widget)
    : QObject(widget)
    , widget(*widget)
{
    widget->installEventFilter(this);
}

bool CPlainToolTip::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::ToolTip || widget.toolTip().isEmpty()) {
        return QObject::eventFilter(watched, event);
    }
    ShowPlainToolTip(static_cast<const QHelpEvent&>(*event), widget.toolTip(), &widget);
    return true;
}
