#include "tests/docs/SourceTexts.h"
#include "tests/support/Warnings.h"
#include "tests/support/pages/StatusRows.h"

#include <QDir>
#include <QRegularExpression>
#include <QSet>
#include <QtTest>

#include <algorithm>

namespace {

const QStringList Folders{
    "shell", "link", "model", "discovery", "identity", "rotor", "firmware", "hardware", "options"};

// What these hold is shown in tables and lists, or names fonts.
const QStringList FilesWithoutStatusTexts{
    "RotorCatalogue.cpp", "CZKHardwareComponent.cpp", "FormLook.cpp", "PlainToolTip.cpp"};

// Texts that read like those of the status line and are none.
const QStringList OtherTexts{
    // the pages
    "Update FW",
    "IP Configuration",
    "Azimuth Configuration",
    "Pol/Eval Configuration",
    "Detect Z&K Device",
    // what a screen reader calls the first rotor
    "No rotor",
    // the front of the units' MAC addresses
    "02:4C:7E:",
    // positions of the attenuator and of the amplifier
    "Att. 3dB",
    "Att. 6dB",
    "Att. 10dB",
    "Att. 20dB",
    "Att. 40dB",
    "HF AMP",
    "V/UHF AMP",
    "SHF AMP",
    // the filter of a file dialog, from a function
    "files *.txt",
    // what a tool tip wraps around a text
    "<p style='white-space:pre-wrap'><></p>",
    // errors for a caller that does not show them
    "Empty IP Address ",
    "Empty Subnet Mask ",
};

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

QVector<sSOURCE_TEXT> PossibleStatusTexts()
{
    QVector<sSOURCE_TEXT> found;
    for (const QString& folder : Folders) {
        found += TextsOfFolder(QDir(QStringLiteral(SOURCE_FOLDER)).filePath(folder));
    }
    found.erase(std::remove_if(found.begin(), found.end(),
                    [](const sSOURCE_TEXT& text) { return !MayBeStatusText(text); }),
        found.end());
    return found;
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

} // namespace

class StatusTextsTest : public WarningsFail
{
    Q_OBJECT

private:
    const QString page = UsingPage();
    const QVector<sSTATUS_ROW> rows = StatusRowsOf(page);

private slots:
    void theTextsOfAStatementAreFound_data();
    void theTextsOfAStatementAreFound();

    void everyFolderHasSources_data();
    void everyFolderHasSources();

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
        QSet<QString> files;
        QSet<QString> texts;
        const QVector<sSOURCE_TEXT> possible = PossibleStatusTexts();
        for (const sSOURCE_TEXT& found : possible) {
            files.insert(found.file);
            texts.insert(found.text);
        }
        for (const QString& file : FilesWithoutStatusTexts) {
            QVERIFY2(files.contains(file), qPrintable(file));
        }
        for (const QString& text : OtherTexts) {
            QVERIFY2(texts.contains(text), qPrintable(text));
        }
    }
};

void StatusTextsTest::theTextsOfAStatementAreFound_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QStringList>("texts");
    const auto add = [](const char* name, const char* source, const QStringList& texts) {
        QTest::newRow(name) << QString::fromLatin1(source) << texts;
    };
    const QString one = "one ";
    add("a literal", R"(f(QStringLiteral("one "));)", {one});
    add("a bare literal", R"({"one ", "two"},)", {one, "two"});
    add("blanks within the brackets", "QLatin1String(\n  \"one \" )", {one});
    add("adjacent literals", "f(\"on\"\n  \"e \");", {one});
    add("a value behind a literal", R"(x = QStringLiteral("one ") + line;)", {"one <>"});
    add("a value in front", R"(x = file.fileName() + QStringLiteral("one ");)", {"<>one "});
    add("a call's only argument", R"(f(QStringLiteral("one ") + line);)", {"one <>"});
    add("characters",
        R"(x = a->b(c) + QLatin1Char(' ') + QStringLiteral("one ") + QLatin1Char('!');)",
        {"<> one !"});
    add("arguments", R"(QStringLiteral("one %1 of %2").arg(a).arg(b))", {"one <> of <>"});
    add("a choice of texts", R"(x = a ? QStringLiteral("one ") : QStringLiteral("two") + b;)",
        {one, "two<>"});
    add("a choice within a text", R"(f("one " + (a ? QStringLiteral("two") : "three"));)",
        {"one two", "one three"});
    add("a comment", "// \"one \"\nf(\"two\"); // isn't \"three\"", {"two"});
    add("an include", "#include \"one \"\nf(\"two\");", {"two"});
    add("a character alone", "f(a + QLatin1Char(' ') + b, 2'000'000);", {});
    add("an escaped quote", R"(f("a \"b\" ");)", {"a \\\"b\\\" "});
}

void StatusTextsTest::theTextsOfAStatementAreFound()
{
    QFETCH(QString, source);
    QStringList found;
    const QVector<sSOURCE_TEXT> texts = TextsOfSource(source, "a.cpp");
    for (const sSOURCE_TEXT& text : texts) {
        found.append(text.text);
        QCOMPARE(text.file, "a.cpp");
    }
    QTEST(found, "texts");
}

void StatusTextsTest::everyFolderHasSources_data()
{
    QTest::addColumn<QString>("folder");
    for (const QString& folder : Folders) {
        QTest::newRow(qPrintable(folder)) << folder;
    }
}

void StatusTextsTest::everyFolderHasSources()
{
    QFETCH(QString, folder);
    QVERIFY(!TextsOfFolder(QDir(QStringLiteral(SOURCE_FOLDER)).filePath(folder)).isEmpty());
}

QTEST_APPLESS_MAIN(StatusTextsTest)
#include "StatusTextsTest.moc"
