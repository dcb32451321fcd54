// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QVector>

/// A row of the tables of texts in docs/using.md.
struct sSTATUS_ROW
{
    QString text; ///< with "<>" for what stands in angle brackets
    QString meaning;
    QString advice;
};

/// The page, or nothing when it cannot be read.
QString UsingPage();

/// The rows of the page, or of a part of it, in order.
QVector<sSTATUS_ROW> StatusRowsOf(const QString& page);
