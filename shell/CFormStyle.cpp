#include "shell/CFormStyle.h"

#include <QStyleOptionTab>

CFormStyle::CFormStyle()
    : QProxyStyle(QStringLiteral("Fusion"))
{
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
