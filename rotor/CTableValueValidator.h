// SPDX-License-Identifier: MIT

#pragma once

#include <QIntValidator>

/// Takes plain decimal digits from `minimum` to `maximum`, whatever the user's locale is. Refuses a
/// text above the maximum as it is typed. A QIntValidator lets a number of the same length pass.
class CTableValueValidator : public QIntValidator
{
    Q_OBJECT

public:
    CTableValueValidator(int minimum, int maximum, QObject* parent = nullptr);

    State validate(QString& text, int& position) const override;
};
