// SPDX-License-Identifier: MIT

#include "rotor/StringTokenizer.h"

namespace {

constexpr QLatin1Char KeySeparator('=');

} // namespace

bool StringTokenizer::Tokenize(QString line, QString& key, QString& value)
{
    const auto position = static_cast<qint16>(line.indexOf(KeySeparator));
    if (position <= 0) {
        return false;
    }
    key = line.left(position + 1).trimmed();
    value = line.mid(position + 1).trimmed();
    return true;
}

bool StringTokenizer::HasToken(QString line)
{
    return line.indexOf(KeySeparator) > 0;
}
