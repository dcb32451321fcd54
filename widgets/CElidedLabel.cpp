// SPDX-License-Identifier: MIT

#include "widgets/CElidedLabel.h"

#include "widgets/PlainToolTip.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>

#include <algorithm>

namespace {

// Characters that are kept of each end of a text: more than the window has room for.
constexpr int LongestEnd = 500;
constexpr int MinimumLetters = 3;
constexpr QChar Ellipsis(0x2026);

bool BreaksLine(QChar character)
{
    return character.category() == QChar::Other_Control ||
           character == QChar(QChar::LineSeparator) ||
           character == QChar(QChar::ParagraphSeparator);
}

// Nobody can see more of a long text than its two ends.
QString OneLineOf(const QString& text)
{
    QString line = text;
    if (text.size() > 2 * LongestEnd) {
        line = text.left(LongestEnd) + Ellipsis + text.right(LongestEnd);
    }
    std::replace_if(line.begin(), line.end(), BreaksLine, QLatin1Char(' '));
    return line;
}

} // namespace

CElidedLabel::CElidedLabel(QWidget* parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
}

QSize CElidedLabel::sizeHint() const
{
    return {MinimumLetters * fontMetrics().averageCharWidth(), fontMetrics().height()};
}

QSize CElidedLabel::minimumSizeHint() const
{
    return sizeHint();
}

bool CElidedLabel::IsElided() const
{
    return fontMetrics().horizontalAdvance(OneLineOf(text())) > contentsRect().width();
}

bool CElidedLabel::event(QEvent* event)
{
    if (event->type() == QEvent::ToolTip && IsElided()) {
        ShowPlainToolTip(static_cast<const QHelpEvent&>(*event), text(), this);
        return true;
    }
    return QLabel::event(event);
}

void CElidedLabel::paintEvent(QPaintEvent*)
{
    const QRect area = contentsRect();
    const QString shown =
        fontMetrics().elidedText(OneLineOf(text()), Qt::ElideMiddle, area.width());
    const int flags = QStyle::visualAlignment(layoutDirection(), alignment()) | Qt::TextSingleLine;
    QPainter painter(this);
    style()->drawItemText(&painter, area, flags, palette(), isEnabled(), shown, foregroundRole());
}
