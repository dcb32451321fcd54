#include "rotor/CTableValueValidator.h"
#include "tests/support/Warnings.h"

#include <QLineEdit>
#include <QLocale>
#include <QtTest>

namespace {

constexpr int Percent = 100;
constexpr int Word = 65535;

} // namespace

class TableValueValidatorTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void aTextIs_data()
    {
        QTest::addColumn<int>("maximum");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QValidator::State>("state");
        const auto add = [](int maximum, const char* text, QValidator::State state) {
            QTest::addRow("\"%s\" up to %d", text, maximum)
                << maximum << QString::fromUtf8(text) << state;
        };
        for (const int maximum : {Percent, Word}) {
            add(maximum, "", QValidator::Intermediate);
            add(maximum, "0", QValidator::Acceptable);
            add(maximum, "7", QValidator::Acceptable);
            add(maximum, "007", QValidator::Acceptable);
            add(maximum, "100", QValidator::Acceptable);
            add(maximum, "-", QValidator::Invalid);
            add(maximum, "-1", QValidator::Invalid);
            add(maximum, "1.5", QValidator::Invalid);
            add(maximum, "1,5", QValidator::Invalid);
            add(maximum, "1,000", QValidator::Invalid);
            add(maximum, "1.000", QValidator::Invalid);
            add(maximum, "1e1", QValidator::Invalid);
            add(maximum, "0x1", QValidator::Invalid);
            add(maximum, "1 0", QValidator::Invalid);
            add(maximum, "\u0661", QValidator::Invalid); // the digit one of Arabic
            add(maximum, "65536", QValidator::Invalid);
            add(maximum, "99999", QValidator::Invalid);
            add(maximum, "065536", QValidator::Invalid);
            add(maximum, "100000", QValidator::Invalid);
            add(maximum, "2147483648", QValidator::Invalid);
            add(maximum, "4294967296", QValidator::Invalid);
            add(maximum, "18446744073709551616", QValidator::Invalid);
        }
        for (const char* const text : {"101", "200", "999", "0101", "1000", "65535"}) {
            add(Percent, text, QValidator::Invalid);
            add(Word, text, QValidator::Acceptable);
        }
    }

    void aTextIs()
    {
        QFETCH(int, maximum);
        QFETCH(QString, text);
        QFETCH(QValidator::State, state);
        const CTableValueValidator validator(0, maximum);
        QString judged = text;
        int position = text.size();
        QCOMPARE(validator.validate(judged, position), state);
        QCOMPARE(judged, text);
        QCOMPARE(position, text.size());
    }

    void theUsersLocaleChangesNothing_data() { aTextIs_data(); }

    void theUsersLocaleChangesNothing()
    {
        const QLocale before;
        for (const auto language : {QLocale::German, QLocale::Arabic, QLocale::Hindi}) {
            QLocale::setDefault(QLocale(language));
            aTextIs();
        }
        QLocale::setDefault(before);
    }

    void theBoundsAreThoseGiven()
    {
        const CTableValueValidator validator(0, Percent);
        QCOMPARE(validator.bottom(), 0);
        QCOMPARE(validator.top(), 100);
    }

    void aKeyThatWouldGoAboveTheMaximumIsNotTaken_data()
    {
        QTest::addColumn<int>("maximum");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("taken");
        const auto add = [](int maximum, const char* typed, const char* taken) {
            QTest::addRow("%s up to %d", typed, maximum)
                << maximum << QString::fromLatin1(typed) << QString::fromLatin1(taken);
        };
        add(Percent, "101", "10");
        add(Percent, "100", "100");
        add(Percent, "1000", "100");
        add(Percent, "255", "25");
        add(Word, "65536", "6553");
        add(Word, "65535", "65535");
        add(Word, "655350", "65535");
        add(Word, "70000", "7000");
        add(Word, "-1a2", "12");
    }

    void aKeyThatWouldGoAboveTheMaximumIsNotTaken()
    {
        QFETCH(int, maximum);
        QFETCH(QString, typed);
        QFETCH(QString, taken);
        QLineEdit edit;
        edit.setValidator(new CTableValueValidator(0, maximum, &edit));
        QTest::keyClicks(&edit, typed);
        QCOMPARE(edit.text(), taken);
        QVERIFY(edit.hasAcceptableInput());
    }
};

QTEST_MAIN(TableValueValidatorTest)

#include "TableValueValidatorTest.moc"
