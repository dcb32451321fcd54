// SPDX-License-Identifier: MIT

#include "rotor/StringTokenizer.h"
#include "tests/support/Warnings.h"

#include <QtTest>

#include <type_traits>

namespace {

const QString Untouched = "untouched";

QString LineWithSeparatorAt(int position)
{
    return QString(position, 'k') + "=value";
}

} // namespace

class StringTokenizerTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void aLineIsTakenApartAtItsFirstSign()
    {
        const QStringList lines[] = {
            {"key=value", "key=", "value"},
            {"key =  value", "key =", "value"}, // one blank stays inside
            {"  key=value  ", "key=", "value"},
            {"\tkey=\tvalue\t", "key=", "value"},
            {"a b=c d", "a b=", "c d"},
            {"a=b=c", "a=", "b=c"},
            {"key=", "key=", ""},
            {"key=   ", "key=", ""},
            {" =value", "=", "value"},
            {"k=", "k=", ""},
        };
        for (const QStringList& line : lines) {
            QString key = Untouched;
            QString value = Untouched;
            QVERIFY2(StringTokenizer::HasToken(line.first()), qPrintable(line.first()));
            QVERIFY(StringTokenizer::Tokenize(line.first(), key, value));
            QCOMPARE(key, line.at(1));
            QCOMPARE(value, line.at(2));
        }
    }

    void aLineWithoutATokenLeavesBothTextsAlone()
    {
        for (const char* const line : {"", "key value", "=value", "=a=b", "="}) {
            QString key = Untouched;
            QString value = Untouched;
            QVERIFY2(!StringTokenizer::HasToken(line), line);
            QVERIFY2(!StringTokenizer::Tokenize(line, key, value), line);
            QCOMPARE(key, Untouched);
            QCOMPARE(value, Untouched);
        }
    }

    void aTokenIsSeenHoweverFar()
    {
        for (const int position : {1, 32767, 32768, 65535, 65536, 65537}) {
            QVERIFY2(StringTokenizer::HasToken(LineWithSeparatorAt(position)),
                qPrintable(QString::number(position)));
        }
    }

    void thePlaceOfTheSignIsHeldIn16Bits()
    {
        // The place, and the length of the key: 0 where the sign is not found, 2 where it is found
        // too far in front.
        const QMap<int, int> lengths{{32767, 32768}, {32768, 0}, {65536, 0}, {65537, 2}};
        for (auto place = lengths.cbegin(); place != lengths.cend(); ++place) {
            const QString line = LineWithSeparatorAt(place.key());
            const bool found = place.value() > 0;
            QString key = Untouched;
            QString value = Untouched;
            QCOMPARE(StringTokenizer::Tokenize(line, key, value), found);
            QCOMPARE(key, found ? line.left(place.value()) : Untouched);
            QCOMPARE(value, found ? line.mid(place.value()) : Untouched);
        }
    }

    void noObjectCanBeMade() { QVERIFY(!std::is_default_constructible<StringTokenizer>::value); }
};

QTEST_APPLESS_MAIN(StringTokenizerTest)
#include "StringTokenizerTest.moc"
