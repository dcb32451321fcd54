// SPDX-License-Identifier: MIT

#include "rotor/CTableValueValidator.h"

#include <QLocale>

CTableValueValidator::CTableValueValidator(int minimum, int maximum, QObject* parent)
    : QIntValidator(minimum, maximum, parent)
{
    QLocale plain = QLocale::c();
    plain.setNumberOptions(QLocale::RejectGroupSeparator);
    setLocale(plain);
}

QValidator::State CTableValueValidator::validate(QString& text, int& position) const
{
    const State state = QIntValidator::validate(text, position);
    return state == Intermediate && text.toLongLong() > top() ? Invalid : state;
}
