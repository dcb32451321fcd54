// SPDX-License-Identifier: MIT

#include "tests/docs/SourceTexts.h"
#include "tests/support/Warnings.h"
#include "tests/support/pages/StatusRows.h"

#include <QDir>
#include <QRegularExpression>
#include <QSet>
#include <QtTest>

#include <algorithm>
#include <iterator>

namespace {

const QStringList Folders{"shell", "widgets", "link", "model", "discovery", "identity", "rotor",
    "firmware", "hardware", "options"};

// What these hold is shown in tables and lists, or names fonts.
const QStringList FilesWithoutStatusTexts{
    "RotorCatalogue.cpp", "CZKHardwareComponent.cpp", "FormLook.cpp", "PlainToolTip.cpp"};

// Texts that read like those of the status line and are none: names of pages, what a screen reader
// calls the first rotor, the front of the units' MAC addresses, positions of the attenuator and of
// the amplifier, the filter of a file dialog, what a tool tip wraps around a text, and errors for a
// caller that does not show them.
const QStringList OtherTexts{"Update FW", "IP Configuration", "Azimuth Configuration",
    "Pol/Eval Configuration", "Detect Z&K Device", "No rotor", "02:4C:7E:", "Att. 3dB", "Att. 6dB",
    "Att. 10dB", "Att. 20dB", "Att. 40dB", "HF AMP", "V/UHF AMP", "SHF AMP", "files *.txt",
    "<p style='white-space:pre-wrap'><></p>", "Empty IP Address ", "Empty Subnet Mask "};

// What a variable part of a text stands for, where the sources hold it: in backticks in the row.
QSet<QString> WordsOf(const QVector<sSTATUS_ROW>& rows)
{
    static const QRegularExpression word("`([^`]+)`");
    QSet<QString> words;
    for (const sSTATUS_ROW& row : rows) {
        auto found = word.globalMatch(row.meaning);
        while (row.text.contains("<>") && found.hasNext()) {
            words.insert(found.next().captured(1));
        }
    }
    return words;
}

QSet<QString> TextsOf(const QVector<sSTATUS_ROW>& rows)
{
    QSet<QString> texts;
    for (const sSTATUS_ROW& row : rows) {
        texts.insert(row.text);
    }
    return texts;
}

// Labels of progress dialogs, captions and the filters of file dialogs.
bool IsGivenToADialog(const sSOURCE_TEXT& found)
{
    static const QRegularExpression dialog(
        "CCustomProgressDialog|setLabelText|QFileDialog|setWindowTitle");
    return found.statement.contains(dialog);
}

// At once, or by a function that returns nothing but the text.
bool IsGivenToTheStatusLine(const sSOURCE_TEXT& found)
{
    static const QRegularExpression receiver(
        QStringLiteral(R"re(SetApplicationStatus|SetMotorValidationError)re"
                       R"re(|\b(error|message|result|failure)\s*=[^=]|^\s*return\s*$)re"));
    return found.statement.contains(receiver);
}

bool ReadsLikeAStatus(const QString& text)
{
    static const QRegularExpression sentence(QStringLiteral(R"re( |[.!:]$)re"));
    return text.contains(sentence);
}

// A text with a line feed is of a file.
bool MayBeStatusText(const sSOURCE_TEXT& found)
{
    return (IsGivenToTheStatusLine(found) || ReadsLikeAStatus(found.text)) &&
           !IsGivenToADialog(found) && !found.text.contains("\\n");
}

QString PathOf(const QString& folder)
{
    return QDir(SOURCE_FOLDER).filePath(folder);
}

QVector<sSOURCE_TEXT> PossibleStatusTexts()
{
    QVector<sSOURCE_TEXT> possible;
    for (const QString& folder : Folders) {
        const QVector<sSOURCE_TEXT> found = TextsOfFolder(PathOf(folder));
        std::copy_if(found.cbegin(), found.cend(), std::back_inserter(possible), MayBeStatusText);
    }
    return possible;
}

QSet<QString> StatusTexts()
{
    QSet<QString> texts;
    const QVector<sSOURCE_TEXT> possible = PossibleStatusTexts();
    for (const sSOURCE_TEXT& found : possible) {
        if (!FilesWithoutStatusTexts.contains(found.file) && !OtherTexts.contains(found.text)) {
            texts.insert(found.text);
        }
    }
    return texts;
}

QString Joined(const QSet<QString>& texts)
{
    QStringList list = texts.values();
    list.sort();
    return list.join(" / ");
}

struct sSTATEMENT
{
    const char* source;
    QStringList texts;
};

const sSTATEMENT Statements[] = {
    {R"(f(QStringLiteral("one "));)", {"one "}},
    {R"({"one ", "two"},)", {"one ", "two"}},
    {"QLatin1String(\n  \"one \" )", {"one "}},
    {"f(\"on\"\n  \"e \");", {"one "}},
    {R"(x = QStringLiteral("one ") + line;)", {"one <>"}},
    {R"(x = file.fileName() + QStringLiteral("one ");)", {"<>one "}},
    {R"(f(QStringLiteral("one ") + line);)", {"one <>"}},
    {R"(x = a->b(c) + QLatin1Char(' ') + QStringLiteral("one ") + QLatin1Char('!');)",
        {"<> one !"}},
    {R"(QStringLiteral("one %1 of %2").arg(a).arg(b))", {"one <> of <>"}},
    {R"(x = a ? QStringLiteral("one ") : QStringLiteral("two") + b;)", {"one ", "two<>"}},
    {R"(f("one " + (a ? QStringLiteral("two") : "three"));)", {"one two", "one three"}},
    {"// \"one \"\nf(\"two\"); // isn't \"three\"", {"two"}},
    {"#include \"one \"\nf(\"two\");", {"two"}},
    {"f(a + QLatin1Char(' ') + b, 2'000'000);", {}},
    {R"(f("a \"b\" ");)", {"a \\\"b\\\" "}},
};

} // namespace

class StatusTextsTest : public WarningsFail
{
    Q_OBJECT

private:
    const QString page = UsingPage();
    const QVector<sSTATUS_ROW> rows = StatusRowsOf(page);

private slots:
    void theTextsOfAStatementAreFound()
    {
        for (const sSTATEMENT& statement : Statements) {
            QStringList found;
            const auto texts = TextsOfSource(QString::fromLatin1(statement.source), "a.cpp");
            for (const sSOURCE_TEXT& text : texts) {
                found.append(text.text);
                QCOMPARE(text.file, "a.cpp");
            }
            QVERIFY2(found == statement.texts, statement.source);
        }
    }

    void everyFolderHasSources()
    {
        for (const QString& folder : Folders) {
            QVERIFY2(!TextsOfFolder(PathOf(folder)).isEmpty(), qPrintable(folder));
        }
    }

    void everyTextOfTheSourcesIsInTheTables()
    {
        QCOMPARE(Joined(StatusTexts() - TextsOf(rows) - WordsOf(rows)), QString());
    }

    void everyTextOfTheTablesIsInTheSources()
    {
        QVERIFY(!rows.isEmpty());
        QCOMPARE(Joined(TextsOf(rows) + WordsOf(rows) - StatusTexts()), QString());
    }

    void everyLineThatBeginsWithATextIsARow() { QCOMPARE(page.count("\n| `"), rows.size()); }

    void noTextStandsTwice() { QCOMPARE(TextsOf(rows).size(), rows.size()); }

    void everyTextHasAMeaning()
    {
        for (const sSTATUS_ROW& row : rows) {
            QVERIFY2(!row.meaning.isEmpty(), qPrintable(row.text));
        }
    }

    void everyFailureThatAPageLeadsToHasAnAdvice()
    {
        static const QRegularExpression failure(
            "fail|not |Invalid|error", QRegularExpression::CaseInsensitiveOption);
        const int hidden = page.indexOf("### Texts that no page leads to");
        QVERIFY(hidden > 0);
        const QVector<sSTATUS_ROW> shown = StatusRowsOf(page.left(hidden));
        for (const sSTATUS_ROW& row : shown) {
            const bool advised = !row.advice.isEmpty() || !row.text.contains(failure);
            QVERIFY2(advised, qPrintable(row.text));
        }
    }

    void everyExceptionIsNeeded()
    {
        QStringList seen;
        const QVector<sSOURCE_TEXT> possible = PossibleStatusTexts();
        for (const sSOURCE_TEXT& found : possible) {
            seen << found.file << found.text;
        }
        for (const QString& exception : FilesWithoutStatusTexts + OtherTexts) {
            QVERIFY2(seen.contains(exception), qPrintable(exception));
        }
    }
};

QTEST_APPLESS_MAIN(StatusTextsTest)
#include "StatusTextsTest.moc"
