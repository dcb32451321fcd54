// SPDX-License-Identifier: MIT

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
    void aTextIsJudgedWhateverTheUsersLocale_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QValidator::State>("upTo100");
        QTest::addColumn<QValidator::State>("upTo65535");
        const auto add = [](std::initializer_list<const char*> texts, QValidator::State upTo100,
                             QValidator::State upTo65535) {
            for (const char* const text : texts) {
                QTest::addRow("\"%s\"", text) << QString::fromUtf8(text) << upTo100 << upTo65535;
            }
        };
        add({""}, QValidator::Intermediate, QValidator::Intermediate);
        add({"0", "7", "007", "100"}, QValidator::Acceptable, QValidator::Acceptable);
        add({"101", "200", "999", "0101", "1000", "65535"}, QValidator::Invalid,
            QValidator::Acceptable);
        // Among them is the digit one of Arabic.
        add({"-", "-1", "1.5", "1,5", "1,000", "1.000", "1e1", "0x1", "1 0", "\u0661", "65536",
                "99999", "065536", "100000", "2147483648", "4294967296", "18446744073709551616"},
            QValidator::Invalid, QValidator::Invalid);
    }
    void aTextIsJudgedWhateverTheUsersLocale()
    {
        QFETCH(QString, text);
        QFETCH(QValidator::State, upTo100);
        QFETCH(QValidator::State, upTo65535);
        const QLocale before;
        for (const auto& locale :
            {before, QLocale(QLocale::German), QLocale(QLocale::Arabic), QLocale(QLocale::Hindi)}) {
            QLocale::setDefault(locale);
            for (const int maximum : {Percent, Word}) {
                QString judged = text;
                int position = text.size();
                QCOMPARE(CTableValueValidator(0, maximum).validate(judged, position),
                    maximum == Percent ? upTo100 : upTo65535);
                QCOMPARE(judged, text);
                QCOMPARE(position, text.size());
            }
        }
        QLocale::setDefault(before);
    }

    void theBoundsAreThoseGiven()
    {
        const CTableValueValidator validator(0, Percent);
        QCOMPARE(validator.bottom(), 0);
        QCOMPARE(validator.top(), 100);
    }

    void aKeyThatWouldGoAboveTheMaximumIsNotTaken()
    {
        const struct
        {
            int maximum;
            const char* typed;
            const char* taken;
        } entries[] = {{Percent, "101", "10"}, {Percent, "100", "100"}, {Percent, "1000", "100"},
            {Percent, "255", "25"}, {Word, "65536", "6553"}, {Word, "65535", "65535"},
            {Word, "655350", "65535"}, {Word, "70000", "7000"}, {Word, "-1a2", "12"}};
        for (const auto& entry : entries) {
            QLineEdit edit;
            edit.setValidator(new CTableValueValidator(0, entry.maximum, &edit));
            QTest::keyClicks(&edit, entry.typed);
            QCOMPARE(edit.text(), entry.taken);
            QVERIFY2(edit.hasAcceptableInput(), entry.typed);
        }
    }
};

QTEST_MAIN(TableValueValidatorTest)
#include "TableValueValidatorTest.moc"
