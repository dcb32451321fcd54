// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// Takes a line of a configuration file apart at its first "=".
class StringTokenizer
{
public:
    StringTokenizer() = delete;

    /// The key keeps its "=". Both texts are trimmed. False, with both as they were, when the line
    /// has no "=" or begins with it. The place of the "=" is held in 16 bits: behind 32767
    /// characters it is not found, or taken for one further in front.
    static bool Tokenize(QString line, QString& key, QString& value);

    /// Whether the line has a "=" behind its first character, however far.
    static bool HasToken(QString line);
};
