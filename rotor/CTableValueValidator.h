#pragma once

#include <QIntValidator>

/// Takes plain decimal digits from `minimum` to `maximum`, whatever the user's locale. A text above
/// the maximum is refused as it is typed, where a QIntValidator lets a number of the same length
/// pass.
class CTableValueValidator : public QIntValidator
{
    Q_OBJECT

public:
    CTableValueValidator(int minimum, int maximum, QObject* parent = nullptr);

    State validate(QString& text, int& position) const override;
};
