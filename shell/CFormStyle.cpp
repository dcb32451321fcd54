// SPDX-License-Identifier: MIT

#include "shell/CFormStyle.h"

#include "shell/CMainDialog.h"
#include "shell/CTabBaseClass.h"

#include <QPainter>
#include <QStyleOptionButton>
#include <QStyleOptionFrame>
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

// Whether the widget is in the main window, or in a page that stands alone. A dialog has a window
// of its own.
bool IsOfAForm(const QWidget& widget)
{
    const QWidget* const window = widget.window();
    return qobject_cast<const CMainDialog*>(window) != nullptr ||
           qobject_cast<const CTabBaseClass*>(window) != nullptr;
}

template<class Option>
Option WithLiteralAmpersands(const Option& option)
{
    Option literal(option);
    literal.text.replace(QLatin1Char('&'), QLatin1String("&&"));
    return literal;
}

QRect FilledPart(const QStyleOptionProgressBar& bar)
{
    const QRect inside = bar.rect.adjusted(1, 1, -1, -1);
    const double done = double(qint64(bar.progress) - bar.minimum);
    const double whole = double(qint64(bar.maximum) - bar.minimum);
    const QSize filled(qRound(inside.width() * qBound(0.0, done / whole, 1.0)), inside.height());
    return {inside.topLeft(), filled};
}

// False when the base style is to draw the part.
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
    if (element == CE_ProgressBar) {
        for (const ControlElement part :
            {CE_ProgressBarGroove, CE_ProgressBarContents, CE_ProgressBarLabel}) {
            drawControl(part, option, painter, widget);
        }
        return;
    }
    const auto* const bar = qstyleoption_cast<const QStyleOptionProgressBar*>(option);
    if (bar != nullptr && DrawBarPart(element, *bar, *painter)) {
        return;
    }
    const bool isOfAForm = widget != nullptr && IsOfAForm(*widget);
    const auto* const tab = qstyleoption_cast<const QStyleOptionTab*>(option);
    const auto* const button = qstyleoption_cast<const QStyleOptionButton*>(option);
    if (isOfAForm && tab != nullptr && element == CE_TabBarTabLabel) {
        const auto literal = WithLiteralAmpersands(*tab);
        QProxyStyle::drawControl(element, &literal, painter, widget);
    } else if (isOfAForm && button != nullptr && element == CE_PushButtonLabel) {
        const auto literal = WithLiteralAmpersands(*button);
        QProxyStyle::drawControl(element, &literal, painter, widget);
    } else {
        QProxyStyle::drawControl(element, option, painter, widget);
    }
}

void CFormStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
    QPainter* painter, const QWidget* widget) const
{
    const auto* const frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
    if (frame != nullptr && element == PE_PanelLineEdit && frame->state.testFlag(State_ReadOnly)) {
        QStyleOptionFrame ground(*frame);
        ground.palette.setBrush(QPalette::Base, frame->palette.window());
        QProxyStyle::drawPrimitive(element, &ground, painter, widget);
        return;
    }
    if (element != PE_FrameGroupBox) {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        return;
    }
    const int title = qMax(pixelMetric(PM_IndicatorHeight), option->fontMetrics.height());
    const QRect border = option->rect.adjusted(0, title + GroupTitleGap, 0, 0);
    const QColor window = option->palette.window().color();
    painter->fillRect(border, window.darker(GroupBorderDarkness));
    painter->fillRect(border.adjusted(1, 1, -1, -1), window.darker(GroupDarkness));
}

QSize CFormStyle::sizeFromContents(
    ContentsType type, const QStyleOption* option, const QSize& size, const QWidget* widget) const
{
    QSize result = QProxyStyle::sizeFromContents(type, option, size, widget);
    const auto* const tab = qstyleoption_cast<const QStyleOptionTab*>(option);
    if (tab != nullptr && widget != nullptr && IsOfAForm(*widget)) {
        const int measured = tab->fontMetrics.size(Qt::TextShowMnemonic, tab->text).width();
        result.rwidth() += tab->fontMetrics.size(Qt::TextSingleLine, tab->text).width() - measured;
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
