#include "shell/CFormStyle.h"

#include <QPainter>
#include <QStyleOptionProgressBar>
#include <QStyleOptionTab>

namespace {

// In percent of the window's colour.
constexpr int GroupDarkness = 102;
constexpr int GroupBorderDarkness = 112;
constexpr int GroupTitleGap = 3;

bool HasExtent(const QStyleOptionProgressBar& bar)
{
    return bar.minimum < bar.maximum;
}

QRect FilledPart(const QStyleOptionProgressBar& bar)
{
    const QRect inside = bar.rect.adjusted(1, 1, -1, -1);
    const double done = double(qint64(bar.progress) - bar.minimum);
    const double whole = double(qint64(bar.maximum) - bar.minimum);
    const QSize filled(qRound(inside.width() * qBound(0.0, done / whole, 1.0)), inside.height());
    return {inside.topLeft(), filled};
}

// False for what is drawn as the base style does.
bool DrawBarPart(
    QStyle::ControlElement element, const QStyleOptionProgressBar& bar, QPainter& painter)
{
    if (element == QStyle::CE_ProgressBarGroove) {
        painter.fillRect(bar.rect, bar.palette.dark());
        painter.fillRect(bar.rect.adjusted(1, 1, -1, -1), bar.palette.base());
        return true;
    }
    if (element == QStyle::CE_ProgressBarContents && HasExtent(bar)) {
        painter.fillRect(FilledPart(bar), bar.palette.highlight());
        return true;
    }
    return false;
}

} // namespace

CFormStyle::CFormStyle()
    : QProxyStyle(QStringLiteral("Fusion"))
{
}

void CFormStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
    const QWidget* widget) const
{
    const auto* const bar = qstyleoption_cast<const QStyleOptionProgressBar*>(option);
    if (bar != nullptr && element == CE_ProgressBar) {
        for (const ControlElement part :
            {CE_ProgressBarGroove, CE_ProgressBarContents, CE_ProgressBarLabel}) {
            drawControl(part, option, painter, widget);
        }
    } else if (bar == nullptr || !DrawBarPart(element, *bar, *painter)) {
        QProxyStyle::drawControl(element, option, painter, widget);
    }
}

void CFormStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
    QPainter* painter, const QWidget* widget) const
{
    if (element != PE_FrameGroupBox) {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        return;
    }
    const int title = qMax(pixelMetric(PM_IndicatorHeight), option->fontMetrics.height());
    const QRect frame = option->rect.adjusted(0, title + GroupTitleGap, 0, 0);
    const QColor window = option->palette.window().color();
    painter->fillRect(frame, window.darker(GroupBorderDarkness));
    painter->fillRect(frame.adjusted(1, 1, -1, -1), window.darker(GroupDarkness));
}

void CFormStyle::drawItemText(QPainter* painter, const QRect& rectangle, int flags,
    const QPalette& palette, bool enabled, const QString& text, QPalette::ColorRole textRole) const
{
    const int asItStands = flags & ~(Qt::TextShowMnemonic | Qt::TextHideMnemonic);
    QProxyStyle::drawItemText(painter, rectangle, asItStands, palette, enabled, text, textRole);
}

QSize CFormStyle::sizeFromContents(
    ContentsType type, const QStyleOption* option, const QSize& size, const QWidget* widget) const
{
    QSize result = QProxyStyle::sizeFromContents(type, option, size, widget);
    if (const auto* const tab = qstyleoption_cast<const QStyleOptionTab*>(option)) {
        const int measured = tab->fontMetrics.size(Qt::TextShowMnemonic, tab->text).width();
        result.rwidth() += tab->fontMetrics.size(0, tab->text).width() - measured;
    }
    return result;
}

QRect CFormStyle::subElementRect(
    SubElement element, const QStyleOption* option, const QWidget* widget) const
{
    switch (element) {
    case SE_ProgressBarGroove:
    case SE_ProgressBarContents:
    case SE_ProgressBarLabel:
        return option->rect;
    default:
        return QProxyStyle::subElementRect(element, option, widget);
    }
}
