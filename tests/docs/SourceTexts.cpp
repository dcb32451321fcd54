// SPDX-License-Identifier: MIT

#include "tests/docs/SourceTexts.h"

#include <QDir>
#include <QRegularExpression>
#include <QStringList>

#include <algorithm>

namespace {

const QString Variable = "<>";

// A literal's place in a source is taken by one character of Unicode's private area, which gives
// its index.
constexpr ushort FirstPlace = 0xE000;
const QString Place = "[\\x{E000}-\\x{F8FF}]";

struct sLITERAL
{
    QString text;
    bool isString;
};

bool IsPlace(QChar character)
{
    return character.unicode() >= FirstPlace && character.unicode() <= 0xF8FF;
}

// A literal with what wraps it; adjacent ones are one.
const QRegularExpression& LiteralOrComment()
{
    static const QRegularExpression pattern(QStringLiteral(
        R"re(//[^\n]*|#include[^\n]*)re"
        R"re(|(?<wrapper>(?:QStringLiteral|QLatin1String|QLatin1Char|QByteArrayLiteral)\(\s*)?)re"
        R"re((?<literal>"(?:[^"\\\n]|\\.)*"(?:\s*"(?:[^"\\\n]|\\.)*")*|'(?:[^'\\\n]|\\.)')(?(wrapper)\s*\)))re"));
    return pattern;
}

sLITERAL LiteralOf(QString written)
{
    static const QRegularExpression between(R"re("\s*")re");
    static const QRegularExpression argument("%[1-9]");
    const bool isString = written.startsWith('"');
    written = written.mid(1, written.size() - 2);
    return {written.remove(between).replace(argument, Variable), isString};
}

// Takes the literals out of the source, and the comments away.
QString TakeLiterals(const QString& source, QVector<sLITERAL>& literals)
{
    QString rest;
    int end = 0;
    auto found = LiteralOrComment().globalMatch(source);
    while (found.hasNext()) {
        const QRegularExpressionMatch match = found.next();
        rest += source.midRef(end, match.capturedStart() - end);
        end = match.capturedEnd();
        const QString literal = match.captured("literal");
        if (!literal.isEmpty()) {
            rest += QChar(static_cast<ushort>(FirstPlace + literals.size()));
            literals.append(LiteralOf(literal));
        }
    }
    return rest + source.midRef(end);
}

// A literal, a value, or a choice in brackets; and several of them with "+" in between.
const QString Call = R"re((?:\([^()\x{E000}-\x{F8FF}]*\))?)re";
const QString Value = QString(R"re(\w+%1(?:(?:\.|->|::)\w+%1)*)re").arg(Call);
const QString Term = QString(R"re((?:%1|%2|\([^()+]*\)))re").arg(Place, Value);

const QRegularExpression& TermPattern()
{
    static const QRegularExpression pattern(Term);
    return pattern;
}

const QRegularExpression& ChainPattern()
{
    static const QRegularExpression pattern(QString(R"re(%1(?:\s*\+\s*%1)*)re").arg(Term));
    return pattern;
}

QVector<sLITERAL> LiteralsIn(const QString& code, const QVector<sLITERAL>& literals)
{
    QVector<sLITERAL> found;
    for (const QChar character : code) {
        if (IsPlace(character)) {
            found.append(literals.at(character.unicode() - FirstPlace));
        }
    }
    return found;
}

bool HasString(const QVector<sLITERAL>& literals)
{
    return std::any_of(literals.cbegin(), literals.cend(),
        [](const sLITERAL& literal) { return literal.isString; });
}

QStringList TextsOfChain(const QString& chain, const QVector<sLITERAL>& literals)
{
    QStringList texts{QString()};
    auto terms = TermPattern().globalMatch(chain);
    while (terms.hasNext()) {
        QVector<sLITERAL> parts = LiteralsIn(terms.next().captured(), literals);
        if (parts.isEmpty()) {
            parts.append({Variable, false});
        }
        QStringList longer;
        for (const QString& text : qAsConst(texts)) {
            for (const sLITERAL& part : qAsConst(parts)) {
                longer.append(text + part.text);
            }
        }
        texts = longer;
    }
    return texts;
}

QString WithoutPlaces(QString code)
{
    static const QRegularExpression place(Place);
    return code.remove(place);
}

} // namespace

QVector<sSOURCE_TEXT> TextsOfSource(const QString& source, const QString& file)
{
    static const QRegularExpression endOfStatement("[;{}]");
    QVector<sLITERAL> literals;
    const QStringList statements = TakeLiterals(source, literals).split(endOfStatement);
    QVector<sSOURCE_TEXT> found;
    for (const QString& statement : statements) {
        auto chains = ChainPattern().globalMatch(statement);
        while (chains.hasNext()) {
            const QString chain = chains.next().captured();
            if (!HasString(LiteralsIn(chain, literals))) {
                continue;
            }
            const QStringList texts = TextsOfChain(chain, literals);
            for (const QString& text : texts) {
                found.append({text, WithoutPlaces(statement), file});
            }
        }
    }
    return found;
}

QVector<sSOURCE_TEXT> TextsOfFolder(const QString& path)
{
    QVector<sSOURCE_TEXT> found;
    const QDir folder(path);
    const QStringList names = folder.entryList({"*.cpp"}, QDir::Files);
    for (const QString& name : names) {
        QFile file(folder.filePath(name));
        if (file.open(QIODevice::ReadOnly)) {
            found += TextsOfSource(QString::fromUtf8(file.readAll()), name);
        }
    }
    return found;
}
