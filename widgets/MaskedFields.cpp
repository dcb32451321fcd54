// SPDX-License-Identifier: MIT

#include "widgets/MaskedFields.h"

#include <QAction>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QFocusEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QRegularExpression>

#include <algorithm>

namespace {

QString ClipboardText(QClipboard::Mode mode)
{
    return QGuiApplication::clipboard()->text(mode);
}

bool IsIpNumber(const QString& text)
{
    static const QRegularExpression digits(QStringLiteral("\\A[0-9]{1,3}\\z"));
    return digits.match(text).hasMatch() && text.toInt() <= 255;
}

bool IsMacNumber(const QString& text)
{
    static const QRegularExpression digits(QStringLiteral("\\A[0-9A-Fa-f]{2}\\z"));
    return digits.match(text).hasMatch();
}

// The numbers of an address. Blanks around a number are dropped, since a copied field has them.
// Empty for a text that is no address.
QStringList NumbersOf(const QString& text, QLatin1Char separator)
{
    const bool isMac = separator == QLatin1Char(':');
    QStringList numbers = text.split(separator);
    for (QString& number : numbers) {
        number = number.trimmed();
    }
    const bool isAddress =
        numbers.size() == (isMac ? 6 : 4) &&
        std::all_of(numbers.cbegin(), numbers.cend(), isMac ? IsMacNumber : IsIpNumber);
    return isAddress ? numbers : QStringList();
}

void Paste(QLineEdit& field, const QString& text, QLatin1Char separator)
{
    const QStringList numbers = NumbersOf(text, separator);
    if (!numbers.isEmpty()) {
        field.selectAll();
        field.insert(numbers.join(separator));
    }
}

bool FilterClick(QLineEdit& field, const QMouseEvent& event, QLatin1Char separator)
{
    if (event.type() == QEvent::MouseButtonRelease && event.button() == Qt::MiddleButton) {
        Paste(field, ClipboardText(QClipboard::Selection), separator);
        return true;
    }
    if (event.type() != QEvent::MouseButtonPress || !field.text().remove(separator).isEmpty()) {
        return false;
    }
    field.setCursorPosition(0);
    return true;
}

bool FilterFocus(QLineEdit& field, QFocusEvent& event)
{
    switch (event.reason()) {
    case Qt::TabFocusReason:
    case Qt::BacktabFocusReason:
    case Qt::ShortcutFocusReason:
        field.event(&event);
        field.selectAll();
        return true;
    default:
        return false;
    }
}

bool FilterKey(QLineEdit& field, const QKeyEvent& event, QLatin1Char separator)
{
    if (!event.matches(QKeySequence::Paste)) {
        return false;
    }
    Paste(field, ClipboardText(QClipboard::Clipboard), separator);
    return true;
}

// Shows the standard menu. "Paste" in it does what the key does.
bool ShowMenu(QLineEdit& field, const QContextMenuEvent& event, QLatin1Char separator)
{
    QMenu* const menu = field.createStandardContextMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const QList<QAction*> actions = menu->actions();
    for (QAction* const action : actions) {
        const QString textWithoutKey = action->text().section(QLatin1Char('\t'), 0, 0);
        if (textWithoutKey == QLineEdit::tr("&Paste")) {
            action->disconnect(&field);
            QObject::connect(action, &QAction::triggered, &field, [&field, separator] {
                Paste(field, ClipboardText(QClipboard::Clipboard), separator);
            });
        }
    }
    menu->popup(event.globalPos());
    return true;
}

bool FilterEvent(QLineEdit& field, QEvent& event, QLatin1Char separator)
{
    switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
        return FilterClick(field, static_cast<const QMouseEvent&>(event), separator);
    case QEvent::FocusIn:
        return FilterFocus(field, static_cast<QFocusEvent&>(event));
    case QEvent::KeyPress:
        return FilterKey(field, static_cast<const QKeyEvent&>(event), separator);
    case QEvent::ContextMenu:
        return ShowMenu(field, static_cast<const QContextMenuEvent&>(event), separator);
    case QEvent::Drop:
        Paste(field, static_cast<const QDropEvent&>(event).mimeData()->text(), separator);
        return true;
    default:
        return false;
    }
}

} // namespace

bool FilterMaskedFields(std::initializer_list<QLineEdit*> fields, QLatin1Char separator,
    const QObject* watched, QEvent* event)
{
    const auto field = std::find(fields.begin(), fields.end(), watched);
    return field != fields.end() && FilterEvent(**field, *event, separator);
}
