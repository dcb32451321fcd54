// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QVector>

/// A text as a statement of the sources builds it.
struct sSOURCE_TEXT
{
    /// Each part that is no literal, and each argument, is "<>".
    QString text;
    /// What is around it up to the next semicolon or brace, without its literals.
    QString statement;
    /// The name of the file, without its folder.
    QString file;
};

/// The texts of C++ source code: string literals, and those that a chain of "+" puts together. A
/// part of a chain that stands in brackets and holds literals, as a choice does, gives one text for
/// each of them. Escape sequences stay as they are written.
QVector<sSOURCE_TEXT> TextsOfSource(const QString& source, const QString& file);

/// Those of all .cpp files of a folder. None for a folder that is not there.
QVector<sSOURCE_TEXT> TextsOfFolder(const QString& path);
