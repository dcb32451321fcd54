#include "rotor/StringTokenizer.h"

#include <QtTest>

#include <type_traits>

namespace {

const QString Untouched = "untouched";

QString LineWithSeparatorAt(int position)
{
    return QString(position, 'k') + "=value";
}

} // namespace

class StringTokenizerTest : public QObject
{
    Q_OBJECT

private slots:
    void aLineIsTakenApartAtItsFirstSign_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("value");
        const struct
        {
            const char* name;
            const char* line;
            const char* key;
            const char* value;
        } rows[] = {
            {"no blanks", "key=value", "key=", "value"},
            {"blanks around the sign: one before it stays inside", "key =  value",
                "key =", "value"},
            {"blanks around the line go", "  key=value  ", "key=", "value"},
            {"tabs are trimmed too", "\tkey=\tvalue\t", "key=", "value"},
            {"blanks inside stay", "a b=c d", "a b=", "c d"},
            {"further signs belong to the value", "a=b=c", "a=", "b=c"},
            {"a value may be missing", "key=", "key=", ""},
            {"a value may be blank", "key=   ", "key=", ""},
            {"a key may be blank", " =value", "=", "value"},
            {"the shortest line", "k=", "k=", ""},
        };
        for (const auto& row : rows) {
            QTest::newRow(row.name) << QString(row.line) << QString(row.key) << QString(row.value);
        }
    }
    void aLineIsTakenApartAtItsFirstSign()
    {
        QFETCH(QString, line);
        QString key = Untouched;
        QString value = Untouched;
        QVERIFY(StringTokenizer::HasToken(line));
        QVERIFY(StringTokenizer::Tokenize(line, key, value));
        QTEST(key, "key");
        QTEST(value, "value");
    }

    void aLineWithoutATokenLeavesBothTextsAlone_data()
    {
        QTest::addColumn<QString>("line");
        QTest::newRow("empty") << QString();
        QTest::newRow("no sign") << "key value";
        QTest::newRow("begins with the sign") << "=value";
        QTest::newRow("begins with the sign and has another") << "=a=b";
        QTest::newRow("the sign alone") << "=";
    }
    void aLineWithoutATokenLeavesBothTextsAlone()
    {
        QFETCH(QString, line);
        QString key = Untouched;
        QString value = Untouched;
        QVERIFY(!StringTokenizer::HasToken(line));
        QVERIFY(!StringTokenizer::Tokenize(line, key, value));
        QCOMPARE(key, Untouched);
        QCOMPARE(value, Untouched);
    }

    void aTokenIsSeenHoweverFar()
    {
        for (const int position : {1, 32767, 32768, 65535, 65536, 65537}) {
            QVERIFY2(StringTokenizer::HasToken(LineWithSeparatorAt(position)),
                qPrintable(QString::number(position)));
        }
    }

    void thePlaceOfTheSignIsHeldIn16Bits_data()
    {
        QTest::addColumn<int>("position");
        QTest::addColumn<int>("keyLength"); // 0: not found
        QTest::newRow("the last that fits") << 32767 << 32768;
        QTest::newRow("the first that does not") << 32768 << 0;
        QTest::newRow("the last that is not found") << 65536 << 0;
        QTest::newRow("found too far in front") << 65537 << 2;
    }
    void thePlaceOfTheSignIsHeldIn16Bits()
    {
        QFETCH(int, position);
        QFETCH(int, keyLength);
        const QString line = LineWithSeparatorAt(position);
        QString key = Untouched;
        QString value = Untouched;
        QCOMPARE(StringTokenizer::Tokenize(line, key, value), keyLength > 0);
        QCOMPARE(key, keyLength > 0 ? line.left(keyLength) : Untouched);
        QCOMPARE(value, keyLength > 0 ? line.mid(keyLength) : Untouched);
    }

    void noObjectCanBeMade() { QVERIFY(!std::is_default_constructible<StringTokenizer>::value); }
};

QTEST_APPLESS_MAIN(StringTokenizerTest)
#include "StringTokenizerTest.moc"
