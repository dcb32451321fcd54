// SPDX-License-Identifier: MIT

#include "tests/support/Warnings.h"
#include "tests/support/workbooks/WorkbookParts.h"

#include "Package.h"
#include "xlsxabstractsheet.h"
#include "xlsxcell.h"
#include "xlsxcelllocation.h"
#include "xlsxdocument.h"
#include "xlsxworkbook.h"
#include "xlsxworksheet.h"

#include <QTemporaryDir>
#include <QtEndian>
#include <QtTest>

namespace {

struct sROW
{
    const char* given;
    const char* found;
};

QXlsx::Worksheet* FirstWorksheet(const QXlsx::Document& document)
{
    return dynamic_cast<QXlsx::Worksheet*>(document.sheet(document.sheetNames().value(0)));
}

// "row,column", and behind a blank what the cell holds, by its type.
QString Described(const QXlsx::CellLocation& location)
{
    const QVariant value = location.cell->value();
    const QString text = value.toString();
    return QString("%1,%2 %3%4")
        .arg(location.row)
        .arg(location.col)
        .arg(value.isValid() ? value.typeName() : "nothing", text.isEmpty() ? text : ' ' + text);
}

// The cells of the first sheet, and behind them the highest row and column.
QString CellsOf(const QXlsx::Document& document)
{
    if (!document.isLoadPackage()) {
        return "not loaded";
    }
    int rows = 0;
    int columns = 0;
    QString texts;
    const auto cells = FirstWorksheet(document)->getFullCells(&rows, &columns);
    for (const QXlsx::CellLocation& cell : cells) {
        texts += Described(cell) + " | ";
    }
    return texts + QString("%1,%2").arg(rows).arg(columns);
}

WorkbookParts FullWorkbook()
{
    WorkbookParts parts =
        WorkbookWithSheets({"<row><c t='s'><v>0</v></c></row>", "<row><c/></row>"});
    SetSharedStrings(parts, "<si><t>text</t></si>");
    SetStyles(parts, "<cellXfs><xf numFmtId='0'/></cellXfs>");
    return parts;
}

// A workbook for each bound, within it or beyond it.
QMap<QString, WorkbookParts> WorkbooksAtBounds(bool isBeyond)
{
    QMap<QString, WorkbookParts> all;
    const int more = isBeyond ? 1 : 0;
    const auto withRows = [&all](const char* name, const QByteArray& rows) {
        all[name] = WorkbookWithSheets({rows});
    };
    const auto withPart = [&all](const char* name, const QString& part, const QByteArray& content) {
        all[name] = WorkbookWithSheets({QByteArray()});
        all[name][part] = content;
    };

    // In a document of "worksheet" and "sheetData".
    const int depth = 100 - 2 + more;
    withRows("elements in elements",
        QByteArray("<a>").repeated(depth) + QByteArray("</a>").repeated(depth));
    QByteArray attributes;
    for (int i = 0; i < 100 + more; ++i) {
        attributes += " a" + QByteArray::number(i) + "=''";
    }
    withRows("attributes of an element", "<row" + attributes + "/>");
    // They are read in pieces of 8 KiB, of which a token may take 13 beside the one it begins in.
    const QByteArray longest(isBeyond ? 14 * 8192 : 13 * 8192, 'x');
    withRows("the length of a text", "<row><c><v>" + longest + "</v></c></row>");
    withRows("the length of a tag", "<row a='" + longest + "'/>");
    // All but 30 stand here.
    withRows("tokens", QByteArray("<!---->").repeated(1'999'999 - 30 + more));
    withRows("the length of all texts",
        "<row>" + ("<c><v>" + QByteArray(80'000, 'x') + "</v></c>").repeated(isBeyond ? 200 : 199) +
            "</row>");
    int others = 0;
    for (const QByteArray& part : WorkbookWithSheets({QByteArray()})) {
        others += part.size();
    }
    withPart("the length of all parts", "media/picture",
        QByteArray(64 * 1024 * 1024 - others + more, '\0'));
    withPart("the length of a name", QString(255 + more, 'n'), QByteArray());

    WorkbookParts many = WorkbookWithSheets({QByteArray()});
    while (many.size() < 1000 + more) {
        many[QString("media/%1").arg(many.size())] = QByteArray();
    }
    all["parts"] = many;

    QByteArray relationships;
    for (int i = 1; i < 1000 + more; ++i) {
        relationships += "<Relationship Id='r" + QByteArray::number(i) + "'/>";
    }
    WorkbookParts related = WorkbookWithSheets({QByteArray()});
    related["xl/_rels/workbook.xml.rels"].replace("</Rel", relationships + "</Rel");
    all["relationships"] = related;
    return all;
}

} // namespace

class DocumentTest : public WarningsFail
{
    Q_OBJECT

private:
    QTemporaryDir folder;
    int paths = 0;

    QString NewPath() { return folder.filePath(QString::number(++paths)); }

    QString NewWorkbook(const WorkbookParts& parts)
    {
        const QString path = NewPath();
        return WriteZip(path, parts) ? path : QString();
    }

    QString NewWorkbook(const QByteArray& rows) { return NewWorkbook(WorkbookWithSheets({rows})); }

    QByteArray PackageOf(const WorkbookParts& parts)
    {
        QFile file(NewWorkbook(parts));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    // In a file that is always the same.
    QString Written(const QByteArray& content) const
    {
        QFile file(folder.filePath("package"));
        const bool isWritten =
            file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
        return isWritten ? file.fileName() : QString();
    }

    static bool IsLoaded(const QString& path) { return QXlsx::Document(path).isLoadPackage(); }

    // How the value 5.0 reads with the style of this number format.
    QString Styled(const QByteArray& number, const QByteArray& code = {})
    {
        WorkbookParts parts = WorkbookWithSheets({"<row><c s='1'><v>5.0</v></c></row>"});
        const QByteArray format =
            "<numFmts><numFmt numFmtId='" + number + "' formatCode='" + code + "'/></numFmts>";
        SetStyles(parts, (code.isNull() ? QByteArray() : format) +
                             "<cellStyleXfs><xf numFmtId='0'/></cellStyleXfs><cellXfs>"
                             "<xf numFmtId='0'/><xf numFmtId='" +
                             number + "'/></cellXfs>");
        return CellsOf(QXlsx::Document(NewWorkbook(parts)));
    }

private slots:
    void initTestCase() { QVERIFY(folder.isValid()); }

    void aCellGives()
    {
        // A style of dates is s='1'.
        static const sROW rows[] = {
            {"<c/>", "nothing"},
            {"<c s='1'/>", "nothing"},
            {"<c t='n'/>", "nothing"},
            {"<c><v>5</v></c>", "QString 5"},
            {"<c><v>5.0E2</v></c>", "QString 5.0E2"},
            {"<c><v/></c>", "QString"},
            {"<c t='n'><v>5.0E2</v></c>", "double 500"},
            {"<c t='n'><v>1296.25</v></c>", "double 1296.25"},
            {"<c t='b'><v>1</v></c>", "bool true"},
            {"<c t='b'><v>0</v></c>", "bool false"},
            {"<c t='s'><v>0</v></c>", "QString plain"},
            {"<c t='s'><v>1</v></c>", "QString one two"},
            {"<c t='s'><v>2</v></c>", "QString kanji"},
            {"<c t='s'><v>3</v></c>", "QString"},
            {"<c t='s'><v>4</v></c>", "QString a<b&c\u20AC"},
            {"<c t='s'><v>5</v></c>", "QString"},
            {"<c t='s'><v>-1</v></c>", "QString"},
            {"<c t='s' s='1'><v>0</v></c>", "QString plain"},
            {"<c t='inlineStr'><is><t>in</t></is></c>", "QString in"},
            {"<c t='inlineStr'><is><r><rPr><b/></rPr><t>in</t></r><r><t>line</t></r></is></c>",
                "QString inline"},
            {"<c t='str'><f>A1</f><v>last</v></c>", "QString last"},
            {"<c><f>6*7</f><v>42</v></c>", "QString 42"},
            {"<c><f>6*7</f></c>", "nothing"},
            {"<c t='e'><v>#DIV/0!</v></c>", "QString #DIV/0!"},
            {"<c s='1'><v>44259.0</v></c>", "double 44259"},
            {"<c t='n' s='1'><v>44259.5</v></c>", "double 44259.5"},
            {"<c t='str' s='1'><v>5.0</v></c>", "QString 5.0"},
            {"<c t='inlineStr' s='1'><v>5.0</v></c>", "QString 5.0"},
            {"<c t='e' s='1'><v>5.0</v></c>", "QString 5.0"},
            {"<c t='other' s='1'><v>5.0</v></c>", "double 5"},
            {"<c t='d'><v>2021-03-04</v></c>", "QString 2021-03-04"},
            {"<c t='other'><v>x</v></c>", "QString x"},
            {"<c s='99'><v>5.0</v></c>", "QString 5.0"},
            {"<c><extLst><ext><v>no</v></ext></extLst><v>5</v></c>", "QString 5"},
            {"<c><v>5<x>6</x>7</v></c>", "QString 57"},
        };
        for (const sROW& row : rows) {
            WorkbookParts parts = WorkbookWithSheets({QByteArray("<row>") + row.given + "</row>"});
            SetSharedStrings(parts,
                "<other><si><t>no</t></si></other>"
                "<si><t>plain</t></si>"
                "<si><r><t>one</t></r><r><rPr><b/></rPr><t xml:space='preserve'> two</t></r></si>"
                "<si><t>kanji</t><rPh sb='0' eb='1'><t>hint</t></rPh></si>"
                "<si/>"
                "<si><t>a&lt;b<![CDATA[&c]]>&#8364;</t></si>");
            SetStyles(parts, "<cellXfs><xf numFmtId='0'/><xf numFmtId='14'/></cellXfs>");
            QCOMPARE(row.given + (' ' + CellsOf(QXlsx::Document(NewWorkbook(parts)))),
                QString("%1 1,1 %2 | 1,1").arg(row.given, row.found));
        }
    }

    void aStyleIsADateByItsNumberFormat()
    {
        const QString date = "1,1 double 5 | 1,1";
        const QString none = "1,1 QString 5.0 | 1,1";
        for (const int builtIn : {14, 18, 22, 27, 36, 45, 47, 50, 58}) {
            QCOMPARE(Styled(QByteArray::number(builtIn)), date);
        }
        for (const int builtIn : {0, 1, 13, 23, 26, 37, 44, 48, 49, 59}) {
            QCOMPARE(Styled(QByteArray::number(builtIn)), none);
        }
        for (const char* code : {"yyyy-mm-dd", "DD.MM.YYYY", "hh:mm", "[h]:00", "[mm]:00", "[SS]",
                 "[$-407]d. mmmm", "[h", "[]yyyy", "&quot;&quot;yyyy"}) {
            QVERIFY2(Styled("164", code) == date, code);
        }
        for (const char* code : {"[Red]0.0", "[Magenta]0.0", "[]0.0", "[$EUR] 0.00", "General",
                 "0.00E+00", "0 &quot;days&quot;", "0 &quot;days", "0\\d", "0_d", "0;yyyy", ""}) {
            QVERIFY2(Styled("164", code) == none, code);
        }
        QCOMPARE(Styled("14", "0.00"), none);
    }

    void cellsStandWhere()
    {
        // Behind the rows and columns of the cells the highest of both.
        static const sROW rows[] = {
            {"", "-1,-1"},
            {"<row r='7'/>", "-1,-1"},
            {"<row r='2'><c r='B2'/><c r='AA2'/></row>", "2,2 2,27 2,27"},
            {"<row><c r='$B$2'/></row>", "2,2 2,2"},
            {"<row><c/><c/></row><row><c/></row>", "1,1 1,2 2,1 2,2"},
            {"<row r='5'><c/></row><row><c/></row>", "5,1 6,1 6,1"},
            {"<row r='2'><c r='D2'/><c/></row>", "2,4 2,5 2,5"},
            {"<row r='2'><c r='A9'/></row>", "9,1 9,1"},
            {"<row><c r='XFD1048576'/></row>", "1048576,16384 1048576,16384"},
            {"<row><c r='ZZZ2147483647'/></row>", "2147483647,18278 2147483647,18278"},
            {"<row><c r='AAAA1'/></row>", "-1,-1 -1,-1"},
            {"<row><c r='a1'/></row>", "-1,-1 -1,-1"},
            {"<row><c r='A'/></row>", "-1,-1 -1,-1"},
            {"<row><c r='1'/></row>", "-1,-1 -1,-1"},
            {"<row><c r='A0'/></row>", "-1,-1 -1,-1"},
            {"<row><c r='A99999999999'/></row>", "-1,-1 -1,-1"},
            {"<row><c r='A1:B2'/></row>", "-1,-1 -1,-1"},
            {"<row r='2147483647'/><row><c/></row>", "2147483647,1 2147483647,1"},
            {"<other><row r='9'><c/></row></other><row r='2'><other/><c/></row>", "2,1 2,1"},
        };
        for (const sROW& row : rows) {
            const QString cells = CellsOf(QXlsx::Document(NewWorkbook(QByteArray(row.given))));
            QCOMPARE(row.given + (' ' + QString(cells).remove(" nothing |")),
                QString("%1 %2").arg(row.given, row.found));
        }
    }

    void cellsComeInAscendingOrderAndTheLaterOfTwoStays()
    {
        const QXlsx::Document document(
            NewWorkbook("<row r='3'><c r='B3'><v>b3</v></c><c r='A3'><v>a3</v></c></row>"
                        "<row r='1'><c r='C1'><v>first</v></c><c r='C1'><v>second</v></c></row>"));
        QCOMPARE(CellsOf(document), "1,3 QString second | 3,1 QString a3 | 3,2 QString b3 | 3,3");
    }

    void aPlaceNamesNoneUntilItIsSet()
    {
        const QXlsx::CellLocation location;
        QCOMPARE(location.row, -1);
        QCOMPARE(location.col, -1);
    }

    void aTextTakesNoMoreMemoryThanItsCharacters()
    {
        const QXlsx::Document document(NewWorkbook(
            "<row><c><v>a text of one run, and no short one</v></c><c t='inlineStr'><is>"
            "<r><t>a text </t></r><r><t>of two runs, and no short one</t></r></is></c>"
            "</row>"));
        int rows = 0;
        int columns = 0;
        const auto cells = FirstWorksheet(document)->getFullCells(&rows, &columns);
        QCOMPARE(cells.size(), 2);
        for (const QXlsx::CellLocation& location : cells) {
            const QString text = location.cell->value().toString();
            QVERIFY(!text.isEmpty());
            QCOMPARE(text.capacity(), text.size());
        }
    }

    void blanksOfALayoutBetweenElementsDoNotCount()
    {
        const QXlsx::Document document(
            NewWorkbook("\n <row>\n  <c t='inlineStr'>\n   <is>\n    <t> x </t>\n"
                        "   </is>\n  </c>\n </row>\n"));
        QCOMPARE(CellsOf(document), "1,1 QString  x  | 1,1");
    }

    void prefixesOfElementsDoNotMatter()
    {
        WorkbookParts parts = WorkbookWithSheets({QByteArray()});
        parts["xl/worksheets/sheet1.xml"] =
            "<x:worksheet xmlns:x='http://schemas.openxmlformats.org/spreadsheetml/2006/main'>"
            "<x:sheetData><x:row><x:c><x:v>5</x:v></x:c></x:row></x:sheetData></x:worksheet>";
        parts["xl/workbook.xml"].replace("r:id", "rel:id").replace("xmlns:r=", "xmlns:rel=");
        QCOMPARE(CellsOf(QXlsx::Document(NewWorkbook(parts))), "1,1 QString 5 | 1,1");
    }

    void aPartInUtf16IsRead()
    {
        const QString sheet =
            "\uFEFF<worksheet><sheetData><row><c><v>\u20AC</v></c></row></sheetData>"
            "</worksheet>";
        WorkbookParts parts = WorkbookWithSheets({QByteArray()});
        parts["xl/worksheets/sheet1.xml"] =
            QByteArray(reinterpret_cast<const char*>(sheet.utf16()), sheet.size() * 2);
        QCOMPARE(CellsOf(QXlsx::Document(NewWorkbook(parts))), "1,1 QString \u20AC | 1,1");
    }

    void aTargetIsAPartOfThePackage()
    {
        const QPair<QByteArray, bool> rows[] = {{"worksheets/sheet1.xml", true},
            {"/xl/worksheets/sheet1.xml", true}, {"../xl/worksheets/sheet1.xml", true},
            {"./worksheets/sheet1.xml", true}, {"sheet1.xml", false}, {"worksheets", false},
            {"", false}, {"../../../etc/passwd", false}};
        for (const auto& row : rows) {
            WorkbookParts parts = WorkbookWithSheets({"<row><c><v>5</v></c></row>"});
            SetSheets(parts, "<sheet name='Sheet1' sheetId='1' r:id='a'/>",
                "<Relationship Id='a' Type='TYPE/worksheet' Target='" + row.first + "'/>");
            QVERIFY2(IsLoaded(NewWorkbook(parts)) == row.second, row.first.constData());
        }
    }

    void sheetsComeInTheOrderOfTheirTabs()
    {
        WorkbookParts parts =
            WorkbookWithSheets({"<row><c r='A1'/></row>", "<row><c r='A2'/></row>"});
        SetSheets(parts, "<sheet name='Z &amp; z' r:id='b'/><sheet name='A' r:id='a'/>",
            "<Relationship Id='a' Type='TYPE/worksheet' Target='worksheets/sheet1.xml'/>"
            "<Relationship Id='b' Type='TYPE/worksheet' Target='worksheets/sheet2.xml'/>");
        const QXlsx::Document document(NewWorkbook(parts));
        QCOMPARE(document.sheetNames(), QStringList({"Z & z", "A"}));
        QCOMPARE(document.sheet("B"), static_cast<QXlsx::AbstractSheet*>(nullptr));
        QCOMPARE(CellsOf(document), "2,1 nothing | 2,1");
    }

    void aChartIsASheetWithoutCells()
    {
        WorkbookParts parts = WorkbookWithSheets({QByteArray()});
        SetSheets(parts, "<sheet name='Chart' r:id='c'/><sheet name='Sheet1' r:id='a'/>",
            "<Relationship Id='a' Type='TYPE/worksheet' Target='worksheets/sheet1.xml'/>"
            "<Relationship Id='c' Type='TYPE/chartsheet' Target='chart.xml'/>");
        parts["xl/chart.xml"] = "<chartsheet/>";
        const QXlsx::Document document(NewWorkbook(parts));
        QVERIFY(document.isLoadPackage());
        QVERIFY(document.sheet("Chart") != nullptr);
        QCOMPARE(FirstWorksheet(document), static_cast<QXlsx::Worksheet*>(nullptr));
        QVERIFY(dynamic_cast<QXlsx::Worksheet*>(document.sheet("Sheet1")) != nullptr);
    }

    void theFirstSheetIsActiveUntilAnotherIsMade()
    {
        const QXlsx::Document document(
            NewWorkbook(WorkbookWithSheets({QByteArray(), QByteArray()})));
        QXlsx::AbstractSheet* const first = document.sheet("Sheet1");
        QXlsx::AbstractSheet* const second = document.sheet("Sheet2");
        QXlsx::Workbook* const workbook = first->workbook();
        QCOMPARE(second->workbook(), workbook);
        QCOMPARE(workbook->activeSheet(), first);
        QVERIFY(workbook->setActiveSheet(1));
        QCOMPARE(workbook->activeSheet(), second);
        QVERIFY(!workbook->setActiveSheet(2));
        QVERIFY(!workbook->setActiveSheet(-1));
        QCOMPARE(workbook->activeSheet(), second);
    }

    void aWorkbookWithoutSheetsIsLoaded()
    {
        const QXlsx::Document document(NewWorkbook(WorkbookWithSheets({})));
        QVERIFY(document.isLoadPackage());
        QCOMPARE(document.sheetNames(), QStringList());
    }

    void aPackageThatLacksAPartIsNotLoaded()
    {
        const WorkbookParts whole = FullWorkbook();
        QVERIFY(IsLoaded(NewWorkbook(whole)));
        const QStringList names = whole.keys();
        for (const QString& name : names) {
            WorkbookParts parts = whole;
            parts.remove(name);
            const QXlsx::Document document(NewWorkbook(parts));
            QVERIFY2(!document.isLoadPackage(), qPrintable(name));
            QCOMPARE(document.sheetNames(), QStringList());
            QCOMPARE(document.sheet("Sheet1"), static_cast<QXlsx::AbstractSheet*>(nullptr));
        }
    }

    void aPartThatIsNotWellFormedIsNotLoaded()
    {
        const WorkbookParts whole = FullWorkbook();
        for (auto part = whole.cbegin(); part != whole.cend(); ++part) {
            const QByteArray& content = part.value();
            const QByteArray brokenOnes[] = {QByteArray(), content.left(content.size() - 1),
                content + "<a/>", content + "x", "<a>" + content, "no XML", QByteArray(100, '\0'),
                "<!DOCTYPE a>" +
                    content.mid(content.lastIndexOf("?>") < 0 ? 0 : content.indexOf("?>") + 2)};
            for (const QByteArray& broken : brokenOnes) {
                WorkbookParts parts = whole;
                parts[part.key()] = broken;
                QVERIFY2(!IsLoaded(NewWorkbook(parts)), part.key().toLatin1() + ": " + broken);
            }
        }
    }

    void aPackageCutShortAnywhereIsNotLoaded()
    {
        const QByteArray content = PackageOf(FullWorkbook());
        QVERIFY(IsLoaded(Written(content)));
        for (int length = 0; length < content.size(); ++length) {
            const QString path = Written(content.left(length));
            QVERIFY2(!path.isEmpty() && !IsLoaded(path), qPrintable(QString::number(length)));
        }
    }

    void aChangedByteNeverStopsTheProgram()
    {
        const QByteArray content = PackageOf(FullWorkbook());
        for (int position = 0; position < content.size(); ++position) {
            QByteArray changed = content;
            changed[position] = static_cast<char>(changed.at(position) ^ (position % 2 ? 1 : 0x80));
            const QXlsx::Document document(Written(changed));
            QVERIFY(document.isLoadPackage() || document.sheetNames().isEmpty());
        }
    }

    void whatIsNoPackageIsNotLoaded()
    {
        for (const QString& path : {QString(), NewPath(), folder.path(), QString("/dev/zero"),
                 NewWorkbook(WorkbookParts())}) {
            QVERIFY2(!IsLoaded(path), qPrintable(path));
        }
        for (const char* content : {"", "VX440-DCF\n", "PK\3\4 VX440-DCF\n"}) {
            QVERIFY2(!IsLoaded(Written(content)), content);
        }
        for (const char* before : {"x", "PK\3!"}) {
            QVERIFY2(!IsLoaded(Written(before + PackageOf(FullWorkbook()))), before);
        }
    }

    void aCommentBehindThePackageMayBeThereAndIsNotCutShort()
    {
        const QByteArray comment = "a unit with two feeds";
        QByteArray content = PackageOf(FullWorkbook());
        // Its length is the last that the package has.
        content[content.size() - 2] = static_cast<char>(comment.size());
        content += comment;
        QVERIFY(IsLoaded(Written(content)));
        for (int cut = 1; cut <= comment.size(); ++cut) {
            QVERIFY(!IsLoaded(Written(content.left(content.size() - cut))));
        }
    }

    // A long one may have much in it that unpacks to nothing.
    void aFileOfMoreThan64MebibytesIsNotLoaded()
    {
        QByteArray content = PackageOf(FullWorkbook());
        // The parts stand at the front, and their directory behind a hole. Where it begins is what
        // the package ends with, but for 6 bytes.
        const int directory = content.indexOf("PK\1\2");
        const int end = content.size();
        for (const int more : {0, 1}) {
            const int hole = 64 * 1024 * 1024 + more - end;
            qToLittleEndian<quint32>(
                static_cast<quint32>(directory + hole), content.data() + end - 6);
            QFile file(NewPath());
            QVERIFY(file.open(QIODevice::WriteOnly) &&
                    file.write(content.constData(), directory) == directory &&
                    file.seek(directory + hole) &&
                    file.write(content.mid(directory)) == end - directory);
            file.close();
            QCOMPARE(IsLoaded(file.fileName()), more == 0);
            QVERIFY(file.remove());
        }
    }

    void aPartIsReadFromTheFrontOnly()
    {
        const WorkbookParts parts = FullWorkbook();
        QXlsx::Package package(NewWorkbook(parts));
        QVERIFY(package.Open());
        const auto part = package.Part("xl/workbook.xml");
        QVERIFY(part->isSequential());
        QCOMPARE(part->readAll(), parts["xl/workbook.xml"]);
        QVERIFY(package.Part("xl/another.xml") == nullptr);
    }

    void aPartThatIsLongerThanItClaimsIsNotLoaded()
    {
        QByteArray content = PackageOf(FullWorkbook());
        // In the directory, the length of a part stands 24 bytes behind the beginning of its
        // record.
        const int record = content.indexOf("PK\1\2");
        QVERIFY(record > 0);
        content[record + 24] = static_cast<char>(content.at(record + 24) + 1);
        QVERIFY(!IsLoaded(Written(content)));
    }

    void aPartOfAnotherChecksumIsNotLoaded()
    {
        // What cannot be packed any shorter stands in the file as it is.
        QByteArray picture;
        for (int byte = 0; byte < 256; ++byte) {
            picture.append(static_cast<char>(byte));
        }
        WorkbookParts parts = WorkbookWithSheets({QByteArray()});
        parts["media/picture"] = picture;
        QByteArray content = PackageOf(parts);
        const int at = content.indexOf(picture);
        QVERIFY(at >= 0);
        QVERIFY(IsLoaded(Written(content)));
        content[at] = 'x';
        QVERIFY(!IsLoaded(Written(content)));
    }

    void aFileNameOfAnyLettersIsRead()
    {
        const QString path = folder.filePath("\u00FC\u20AC \u4E00.xlsx");
        QVERIFY(QFile::rename(NewWorkbook(QByteArray()), path));
        QVERIFY(IsLoaded(path));
    }

    void withinTheBoundsAllIsLoadedAndBeyondThemNothing()
    {
        for (const bool isBeyond : {false, true}) {
            const QMap<QString, WorkbookParts> all = WorkbooksAtBounds(isBeyond);
            for (auto one = all.cbegin(); one != all.cend(); ++one) {
                QVERIFY2(IsLoaded(NewWorkbook(one.value())) != isBeyond, qPrintable(one.key()));
            }
        }
    }

    void aPartForTwoSheetsIsNotLoaded()
    {
        WorkbookParts parts = WorkbookWithSheets({QByteArray()});
        SetSheets(parts, "<sheet name='A' r:id='a'/><sheet name='B' r:id='a'/>",
            "<Relationship Id='a' Type='TYPE/worksheet' Target='worksheets/sheet1.xml'/>");
        QVERIFY(!IsLoaded(NewWorkbook(parts)));
    }

    void aThousandMillionLaughsAreNotLoaded()
    {
        QByteArray laughs = "<!DOCTYPE lol [<!ENTITY lol0 'lol'>";
        for (char i = '1'; i <= '9'; ++i) {
            const char before = static_cast<char>(i - 1);
            laughs += QByteArray("<!ENTITY lol") + i + " '" +
                      (QByteArray("&lol") + before + ";").repeated(10) + "'>";
        }
        for (const char* part :
            {"xl/worksheets/sheet1.xml", "xl/workbook.xml", "[Content_Types].xml", "_rels/.rels"}) {
            WorkbookParts laughing = WorkbookWithSheets({QByteArray()});
            laughing[part] = laughs + "]><lol>&lol9;</lol>";
            QVERIFY2(!IsLoaded(NewWorkbook(laughing)), part);
        }
    }
};

QTEST_GUILESS_MAIN(DocumentTest)
#include "DocumentTest.moc"
