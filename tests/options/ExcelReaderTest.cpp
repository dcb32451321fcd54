// SPDX-License-Identifier: MIT

#include "options/CExcelReader.h"

#include "tests/support/Warnings.h"
#include "tests/support/workbooks/WorkbookParts.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <cstdio>
#include <tuple>

namespace {

using Matrix = QVector<QVector<QString>>;

// Rows are separated by ";", cells by "|".
Matrix MatrixOf(const QString& text)
{
    Matrix matrix;
    const QStringList rows = text.isEmpty() ? QStringList() : text.split(';');
    for (const QString& row : rows) {
        matrix.append(row.split('|').toVector());
    }
    return matrix;
}

QString TextOf(const Matrix& matrix)
{
    QStringList rows;
    for (const QVector<QString>& row : matrix) {
        rows.append(QStringList(row.toList()).join('|'));
    }
    return rows.join(';');
}

// The pattern for each number from 1, which may stand in it three times.
QByteArray Numbered(int count, const char* pattern)
{
    QByteArray text;
    for (int number = 1; number <= count; ++number) {
        char buffer[100];
        std::snprintf(buffer, sizeof buffer, pattern, number, number, number);
        text += buffer;
    }
    return text;
}

// With a number each in column A.
QByteArray TwentyTwoRows()
{
    return Numbered(22, "<row r='%d'><c r='A%d'><v>%d</v></c></row>");
}

QByteArray CellAt(const QByteArray& row, const QByteArray& reference)
{
    return "<row r='" + row + "'><c r='" + reference + "'><v>x</v></c></row>";
}

} // namespace

class ExcelReaderTest : public WarningsFail
{
    Q_OBJECT

    QString NewPath() { return folder.filePath(QString::number(++paths)); }

    QString NewFile(const QByteArray& content)
    {
        QFile file(NewPath());
        const bool isWritten =
            file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
        return isWritten ? file.fileName() : QString();
    }

    QString NewWorkbook(const WorkbookParts& parts)
    {
        const QString path = NewPath();
        return WriteZip(path, parts) ? path : QString();
    }

    // What the program says that reads a workbook twice with little memory and time; empty when it
    // had not enough.
    static QString ReadWithinLimits(const QString& path)
    {
        QProcess reader;
        QStringList words = QString(VX440_WITHIN_LIMITS).split(' ', Qt::SkipEmptyParts);
        words << QString(VX440_READER) << path;
        const QString program = words.takeFirst();
        reader.start(program, words);
        reader.waitForFinished(250'000);
        if (reader.exitStatus() != QProcess::NormalExit || reader.exitCode() != 0) {
            return QString();
        }
        QStringList answers =
            QString::fromLocal8Bit(reader.readAllStandardOutput().replace("\r\n", "\n"))
                .split('\n', Qt::SkipEmptyParts);
        return answers.size() == 2 && answers.removeDuplicates() == 1 ? answers.first() : QString();
    }

    // The rows of a sheet, and its cells as they are read.
    template<int Count>
    void CheckSheets(const std::pair<const char*, const char*> (&sheets)[Count])
    {
        for (const auto& [rows, cells] : sheets) {
            CExcelReader reader;
            QVERIFY(reader.ReadFile(NewWorkbook(WorkbookWithSheets({rows}))));
            QCOMPARE(reader.GetSheetCount(), quint16(1));
            QVERIFY2(reader.GetSheet(0) == MatrixOf(cells), rows);
        }
    }

    QTemporaryDir folder;
    int paths = 0;

private slots:
    void beforeReadingThereAreNoSheets()
    {
        const CExcelReader reader;
        QCOMPARE(reader.GetSheetCount(), quint16(0));
        QCOMPARE(reader.GetSheet(0), Matrix());
        QCOMPARE(reader.GetRowCount(0), -1);
        QCOMPARE(reader.GetColumnCount(0), -1);
    }

    // What the programs that people use made of the same sheet. They differ in how they write each
    // kind of value, and openpyxl reckons no formula.
    void theWorkbooksOfOtherPrograms()
    {
        const QStringList rows{"VX440 options|Descriptions",
            "44259|", // a date
            "VX440-DCF|Feed <one> & 12 V",
            "|", // blank cells with a colour
            "VX440-ATT|a,b,c,d,e,f",
            "VX440-FIL|passed over", // internal: a formula
            "VX440-FIL|", "none|", "VX440-F1|144 MHz",
            "VX440-F2|432",  // description: a number
            "5|1296.25",     // both numbers
            "VX440-F4|42",   // description: a formula
            "VX440-F5|true", // internal: rich text; description: a boolean
            "VX440-F6|  two  blanks  ", "VX440-F7|Größe µ €", "0|", "0|", "0|", "0|",
            "VX440-RAZ|North mast",
            "VX440-RPO|44259", // description: a date
            "end|"};
        QStringList rowsOfOpenpyxl = rows;
        rowsOfOpenpyxl[11] = "VX440-F4|";
        rowsOfOpenpyxl[20] = "VX440-RPO|44259.5"; // with a time of the day
        const QString notes = "||;||note";
        const std::tuple<const char*, QStringList, QString, QString> files[] = {
            {"libreoffice.xlsx", rows, notes, ""}, {"gnumeric.xlsx", rows, notes, ""},
            {"openpyxl.xlsx", rowsOfOpenpyxl, "", notes}}; // its second sheet is a chart
        for (const auto& [file, first, second, third] : files) {
            CExcelReader reader;
            QVERIFY2(reader.ReadFile(QString(VX440_WORKBOOKS) + file), file);
            QCOMPARE(reader.GetSheetCount(), quint16(3));
            QCOMPARE(TextOf(reader.GetSheet(0)).split(';'), first);
            QCOMPARE(TextOf(reader.GetSheet(1)), second);
            QCOMPARE(TextOf(reader.GetSheet(2)), third);
            QCOMPARE(reader.GetRowCount(0), 22);
            QCOMPARE(reader.GetColumnCount(0), 2);
        }
    }

    void aSheetIsAsLargeAsItsLastCell()
    {
        const std::pair<const char*, const char*> rows[] = {
            {"<row r='7'/>", ""},
            {"<row r='2'><c r='B2'><v>b</v></c></row>", "|;|b"},
            {"<row r='1'><c r='A1'><v>a</v></c></row><row r='3'><c r='B3' s='1'/></row>", "a|;|;|"},
            // Without references the cells stand in order; what stands nowhere is left out.
            {"<row><c><v>a</v></c><c/><c><v>c</v></c></row><row><c><v>d</v></c></row>", "a||c;d||"},
            {"<row><c><v>a</v></c></row><row><c r='a9'><v>x</v></c></row>", "a"},
            {"<row><c r='9'><v>x</v></c></row>", ""},
            {"<row r='0'><c/></row>", ""},
            {"<row r='0'><c><v>x</v></c></row><row><c><v>a</v></c></row>", "a"},
        };
        CheckSheets(rows);
    }

    void theSheetsTogetherHaveTwoMillionTexts()
    {
        // By their last cells: a thousand rows of two thousand columns, half of them, and three
        // columns that have one text too many.
        const QByteArray all = CellAt("1000", "BXX1000");
        const QByteArray half = CellAt("500", "BXX500");
        const QByteArray tooMany = CellAt("666667", "C666667");
        const std::pair<QVector<QByteArray>, QVector<int>> rows[] = {{{all}, {1000}},
            {{tooMany}, {0}}, {{half, half}, {500, 500}},
            {{half, CellAt("501", "BXX501"), half}, {500, 0, 500}},
            {{half, half, CellAt("1", "A1")}, {500, 500, 0}}};
        for (const auto& [sheets, rowCounts] : rows) {
            CExcelReader reader;
            QVERIFY(reader.ReadFile(NewWorkbook(WorkbookWithSheets(sheets))));
            QCOMPARE(int(reader.GetSheetCount()), rowCounts.size());
            for (int sheet = 0; sheet < rowCounts.size(); ++sheet) {
                QCOMPARE(reader.GetRowCount(quint16(sheet)), rowCounts.at(sheet));
            }
        }
    }

    void everyValueIsAText()
    {
        const std::pair<const char*, const char*> rows[] = {
            {"<row><c><v>5</v></c><c t='n'><v>5</v></c></row>", "5|5"},
            {"<row><c t='n'><v>0.1</v></c></row>", "0.1"},
            {"<row><c t='b'><v>1</v></c><c t='b'><v>0</v></c></row>", "true|false"},
            {"<row><c><f>6*7</f><v>42</v></c></row>", "42"},
            {"<row><c t='inlineStr'><is><t> a  b </t></is></c></row>", " a  b "},
        };
        CheckSheets(rows);
    }

    void sheetsAreReadInOrder()
    {
        WorkbookParts parts = WorkbookWithSheets({"<row><c><v>1</v></c></row>",
            "<row><c><v>2</v></c></row>", "<row><c><v>3</v></c></row>"});
        SetSheets(parts,
            "<sheet name='Z' r:id='c'/><sheet name='M' r:id='a'/><sheet name='A' r:id='b'/>",
            "<Relationship Id='a' Type='TYPE/worksheet' Target='worksheets/sheet1.xml'/>"
            "<Relationship Id='b' Type='TYPE/worksheet' Target='/xl/worksheets/sheet2.xml'/>"
            "<Relationship Id='c' Type='TYPE/worksheet' Target='worksheets/sheet3.xml'/>");
        CExcelReader reader;
        QVERIFY(reader.ReadFile(NewWorkbook(parts)));
        QCOMPARE(reader.GetSheetCount(), quint16(3));
        QCOMPARE(reader.GetSheet(0), MatrixOf("3"));
        QCOMPARE(reader.GetSheet(1), MatrixOf("1"));
        QCOMPARE(reader.GetSheet(2), MatrixOf("2"));
    }

    void aChartIsASheetWithoutRows()
    {
        WorkbookParts parts = WorkbookWithSheets({"<row><c><v>1</v></c></row>"});
        SetSheets(parts, "<sheet name='Chart' r:id='c'/><sheet name='Sheet1' r:id='a'/>",
            "<Relationship Id='a' Type='TYPE/worksheet' Target='worksheets/sheet1.xml'/>"
            "<Relationship Id='c' Type='TYPE/chartsheet' Target='chart.xml'/>");
        parts["xl/chart.xml"] = "<chartsheet/>";
        CExcelReader reader;
        QVERIFY(reader.ReadFile(NewWorkbook(parts)));
        QCOMPARE(reader.GetSheetCount(), quint16(2));
        QCOMPARE(reader.GetRowCount(0), 0);
        QCOMPARE(reader.GetColumnCount(0), -1);
        QCOMPARE(reader.GetSheet(1), MatrixOf("1"));
    }

    void beyondTheSheetsThereIsNothing()
    {
        CExcelReader reader;
        QVERIFY(reader.ReadFile(
            NewWorkbook(WorkbookWithSheets({"<row><c/><c/><c/></row><row><c/></row>"}))));
        QCOMPARE(reader.GetRowCount(0), 2);
        QCOMPARE(reader.GetColumnCount(0), 3);
        for (const quint16 index : {1, 2, 65535}) {
            QCOMPARE(reader.GetSheet(index), Matrix());
            QCOMPARE(reader.GetRowCount(index), -1);
            QCOMPARE(reader.GetColumnCount(index), -1);
        }
    }

    void anySuffixDoes()
    {
        const QString path = folder.filePath("options.cfg");
        QVERIFY(WriteZip(path, WorkbookWithSheets({"<row><c><v>a</v></c></row>"})));
        CExcelReader reader;
        QVERIFY(reader.ReadFile(path));
        QCOMPARE(reader.GetSheet(0), MatrixOf("a"));
    }

    void readingAgainForgetsWhatWasRead()
    {
        CExcelReader reader;
        QVERIFY(reader.ReadFile(
            NewWorkbook(WorkbookWithSheets({"<row><c/></row>", "<row><c/></row>"}))));
        QCOMPARE(reader.GetSheetCount(), quint16(2));
        QVERIFY(reader.ReadFile(NewWorkbook(WorkbookWithSheets({"<row><c/></row>"}))));
        QCOMPARE(reader.GetSheetCount(), quint16(1));
        QVERIFY(!reader.ReadFile(NewPath()));
        QCOMPARE(reader.GetSheetCount(), quint16(0));
        QCOMPARE(reader.GetRowCount(0), -1);
    }

    void aHostileFileIs_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("answer");
        const QString refused = "refused, sheets: 0, rows: -1, columns: -1";
        const auto row = [](const char* name, const QString& path, const char* answer) {
            QTest::newRow(name) << path << QString(answer);
        };
        const auto refusedRow = [&](const char* name, const QString& path) {
            QTest::newRow(name) << path << refused;
        };
        const auto sheets = [this](const QVector<QByteArray>& rowsOfSheets) {
            return NewWorkbook(WorkbookWithSheets(rowsOfSheets));
        };

        row("none: it is read", sheets({TwentyTwoRows()}), "read, sheets: 1, rows: 22, columns: 1");
        refusedRow("not there", NewPath());
        refusedRow("a folder", folder.path());
        refusedRow("no zip", NewFile("no zip"));
        refusedRow("endless", "/dev/zero");
        refusedRow("a hundred million zeros", NewFile(QByteArray(100'000'000, '\0')));

        // Places far away: the first sheet's matrix is not made, any other one's does not count.
        const QByteArray lastCell = CellAt("1048576", "XFD1048576");
        row("its last cell on the first sheet", sheets({lastCell}),
            "read, sheets: 1, rows: 0, columns: -1");
        row("its last cell on another sheet", sheets({TwentyTwoRows(), lastCell}),
            "read, sheets: 2, rows: 22, columns: 1");
        row("its last cell on a hundred sheets",
            sheets(QVector<QByteArray>{TwentyTwoRows()} + QVector<QByteArray>(99, lastCell)),
            "read, sheets: 100, rows: 22, columns: 1");
        row("its last column", sheets({TwentyTwoRows() + CellAt("22", "XFD22")}),
            "read, sheets: 1, rows: 22, columns: 16384");
        row("its last row", sheets({TwentyTwoRows() + CellAt("1048576", "A1048576")}),
            "read, sheets: 1, rows: 1048576, columns: 1");
        row("a row that no sheet has", sheets({CellAt("2147483647", "ZZZ2147483647")}),
            "read, sheets: 1, rows: 0, columns: -1");

        const QByteArray column =
            Numbered(1'000'000, "<row r='%d'><c r='A%d' t='n'><v>%d</v></c></row>");
        refusedRow("a million cells in a column", sheets({column}));
        refusedRow("a million cells in a square",
            sheets({("<row>" + QByteArray("<c><v>1</v></c>").repeated(1000) + "</row>")
                        .repeated(1000)}));
        row("nearly a million blank cells",
            sheets({"<row>" + QByteArray("<c/>").repeated(990'000) + "</row>"}),
            "read, sheets: 1, rows: 1, columns: 990000");
        row("three hundred thousand cells in a column",
            sheets({column.left(column.indexOf("<row r='280001'>"))}),
            "read, sheets: 1, rows: 280000, columns: 1");

        WorkbookParts shared = WorkbookWithSheets({TwentyTwoRows()});
        SetSharedStrings(shared, QByteArray("<si/>").repeated(10'000'000));
        refusedRow("ten million shared texts", NewWorkbook(shared));
        const QByteArray longText = "<c><v>" + QByteArray(90'000, 'x') + "</v></c>";
        refusedRow("texts of sixty million characters",
            sheets({"<row>" + longText.repeated(700) + "</row>"}));
        row("texts of ten million characters",
            sheets({"<row>" + longText.repeated(120) + "</row>"}),
            "read, sheets: 1, rows: 1, columns: 120");

        WorkbookParts large = WorkbookWithSheets({TwentyTwoRows()});
        QByteArray gigabyte(1 << 30, ' ');
        gigabyte += "<worksheet/>";
        large["xl/worksheets/sheet1.xml"].swap(gigabyte);
        refusedRow("a gigabyte", NewWorkbook(large));
        large.clear();

        QByteArray laughs = "<!DOCTYPE lol [<!ENTITY lol0 'lol'>";
        for (char i = '1'; i <= '9'; ++i) {
            const char before = static_cast<char>(i - 1);
            laughs += QByteArray("<!ENTITY lol") + i + " '" +
                      (QByteArray("&lol") + before + ";").repeated(10) + "'>";
        }
        WorkbookParts laughing = WorkbookWithSheets({QByteArray()});
        laughing["xl/worksheets/sheet1.xml"] =
            laughs +
            "]><worksheet><sheetData><row><c><v>&lol9;</v></c></row></sheetData></worksheet>";
        refusedRow("a thousand million laughs", NewWorkbook(laughing));

        const QByteArray attributes = Numbered(1'000'000, " a%d=''");
        refusedRow("a million attributes", sheets({"<row" + attributes + "/>"}));
        const QByteArray tag = "<row" + attributes.left(attributes.lastIndexOf(' ', 90'000)) + "/>";
        refusedRow("many tags of many attributes", sheets({tag.repeated(20)}));
        refusedRow("elements in elements", sheets({QByteArray("<a>").repeated(5'000'000)}));
        refusedRow("sixteen million elements", sheets({QByteArray("<a/>").repeated(16'000'000)}));
        // The prefix stands in front of nine thousand others.
        const QByteArray prefixes = "<a" + Numbered(99, " xmlns:p%02d='u'") + ">";
        row("many prefixes",
            sheets({"<row xmlns:p00='u'>" + prefixes.repeated(90) +
                    QByteArray("<p00:c/>").repeated(300'000) + QByteArray("</a>").repeated(90) +
                    "</row>"}),
            "read, sheets: 1, rows: 0, columns: -1");

        WorkbookParts deep = WorkbookWithSheets({TwentyTwoRows()});
        while (deep.size() < 1000) {
            const QString number = QString::number(deep.size());
            deep[(number + QString("/x").repeated(126)).left(255)] = QByteArray();
        }
        row("a hundred thousand folders in folders", NewWorkbook(deep),
            "read, sheets: 1, rows: 22, columns: 1");

        // A record of a zip's directory for each 47 bytes, and a folder in folders for each two.
        const QByteArray record = QByteArray("PK\1\2") + QByteArray(24, '\0') +
                                  QByteArray("\1\0", 2) + QByteArray(16, '\0') + "x";
        const QByteArray end = QByteArray("PK\5\6") + QByteArray(18, '\0');
        const QByteArray part = QByteArray("PK\3\4") + QByteArray(26, '\0');
        refusedRow("a million records", NewFile(part + record.repeated(1'000'000) + end));
        refusedRow("two million parts", NewFile(part.repeated(2'000'000) + end));
        const QByteArray deepRecord = QByteArray("PK\1\2") + QByteArray(24, '\0') +
                                      QByteArray("\xF8\x07", 2) + QByteArray(16, '\0') +
                                      QByteArray("x/").repeated(0x7F8 / 2);
        refusedRow("more folders in folders", NewFile(part + deepRecord.repeated(900) + end));
    }
    void aHostileFileIs()
    {
        QFETCH(QString, path);
        QVERIFY(!path.isEmpty());
        QTEST(ReadWithinLimits(path), "answer");
        if (path.startsWith(folder.path() + '/')) {
            QFile::remove(path);
        }
    }

    void aWorkbookCutShortIsRefused()
    {
        QFile file(QString(VX440_WORKBOOKS "libreoffice.xlsx"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray content = file.readAll();
        for (int length = 1; length < content.size(); length += 61) {
            QVERIFY2(!CExcelReader().ReadFile(NewFile(content.left(length))),
                qPrintable(QString::number(length)));
        }
        QVERIFY(!CExcelReader().ReadFile(NewFile(content.left(content.size() - 1))));
        QVERIFY(CExcelReader().ReadFile(NewFile(content)));
    }

    void aFileClosedToTheUserIsRefused()
    {
        const QString path = NewWorkbook(WorkbookWithSheets({TwentyTwoRows()}));
        const bool isClosed = QFile::setPermissions(path, QFile::Permissions());
        if (!isClosed || QFile(path).open(QIODevice::ReadOnly)) {
            QSKIP("this user may read every file");
        }
        QVERIFY(!CExcelReader().ReadFile(path));
    }

    void aPipeIsRefused()
    {
        const QString path = NewPath();
        if (QProcess::execute("mkfifo", {path}) != 0) {
            QSKIP("this system has no pipes with a name");
        }
        QCOMPARE(ReadWithinLimits(path), "refused, sheets: 0, rows: -1, columns: -1");
    }
};

QTEST_GUILESS_MAIN(ExcelReaderTest)

#include "ExcelReaderTest.moc"
