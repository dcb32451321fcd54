// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QRegularExpression>
#include <QSize>
#include <QVector>

/// What the process holds.
struct Resources
{
    qint64 bytes;
    int threads;
    int descriptors;
    /// On the page Options the lines of a rotator stay when new ones come to lie on them.
    int optionLines;

    static Resources Now();

    /// Prints the difference. A little more memory is no growth.
    bool HasGrownFrom(const Resources& before) const;
};

/// Looks at the window while it is used, and counts what must not be.
class Watch : public QObject
{
    Q_OBJECT

public:
    /// Begins to look at the status texts and at Qt's warnings. The window must be up.
    void Begin();

    /// Between two actions: no dialog is left open, and the pages have their room.
    void LookAtTheWindow();

    /// Says what is wrong and counts it.
    void Fail(const QString& text);

    int Failures() const { return failures; }

private:
    void LookAtStatus(const QString& text);

    QVector<QRegularExpression> knownTexts;
    QSize pages;
    int failures = 0;
};
