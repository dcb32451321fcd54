#include "tests/support/Warnings.h"
#include "tests/support/workbooks/WorkbookParts.h"

#include "xlsxabstractsheet.h"
#include "xlsxcell.h"
#include "xlsxcelllocation.h"
#include "xlsxdocument.h"
#include "xlsxworkbook.h"
#include "xlsxworksheet.h"

#include <QTemporaryDir>
#include <QtTest>

namespace {

const QString Sheet1 = "Sheet1";

// "row,column", and behind a blank what the cell holds, by its type.
QString Described(const QXlsx::CellLocation& location)
{
    const QVariant value = location.cell->value();
    const QString type = QString(value.isValid() ? value.typeName() : "nothing");
    return QString("%1,%2 %3 %4")
        .arg(location.row)
        .arg(location.col)
        .arg(type, value.toString())
        .trimmed();
}

QStringList Described(const QVector<QXlsx::CellLocation>& cells)
{
    QStringList texts;
    for (const QXlsx::CellLocation& cell : cells) {
        texts.append(Described(cell));
    }
    return texts;
}

QXlsx::Worksheet* FirstWorksheet(const QXlsx::Document& document)
{
    return dynamic_cast<QXlsx::Worksheet*>(document.sheet(document.sheetNames().value(0)));
}

} // namespace

class DocumentTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void initTestCase();

    void aCellGives_data();
    void aCellGives();
    void aStyleIsADateByItsNumberFormat_data();
    void aStyleIsADateByItsNumberFormat();
    void cellsStandWhere_data();
    void cellsStandWhere();
    void cellsComeInAscendingOrderAndTheLaterOfTwoStays();
    void blanksOfALayoutBetweenElementsDoNotCount();
    void prefixesOfElementsDoNotMatter();
    void aPartInUtf16IsRead();
    void aTargetIs_data();
    void aTargetIs();
    void sheetsComeInTheOrderOfTheirTabs();
    void aChartIsASheetWithoutCells();
    void theFirstSheetIsActiveUntilAnotherIsMade();
    void aWorkbookWithoutSheetsIsLoaded();

    void aPackageThatLacksAPartIsNotLoaded_data();
    void aPackageThatLacksAPartIsNotLoaded();
    void aPartThatIsNotWellFormedIsNotLoaded_data();
    void aPartThatIsNotWellFormedIsNotLoaded();
    void aPackageCutShortAnywhereIsNotLoaded();
    void aChangedByteNeverStopsTheProgram();
    void whatIsNoPackageIsNotLoaded_data();
    void whatIsNoPackageIsNotLoaded();
    void aPartThatIsLongerThanItClaimsIsNotLoaded();
    void aPartOfAnotherChecksumIsNotLoaded();
    void aFileNameOfAnyLettersIsRead();
    void beyondABoundNothingIsLoaded_data();
    void beyondABoundNothingIsLoaded();
    void withinTheBoundsAllIsLoaded_data();
    void withinTheBoundsAllIsLoaded();

private:
    QString NewPath();
    QString NewFile(const QByteArray& content);
    QString NewWorkbook(const WorkbookParts& parts);
    QString NewWorkbook(const QByteArray& rows);

    QTemporaryDir folder;
    int paths = 0;
};

void DocumentTest::initTestCase()
{
    QVERIFY(folder.isValid());
}

QString DocumentTest::NewPath()
{
    return folder.filePath(QString::number(++paths));
}

QString DocumentTest::NewFile(const QByteArray& content)
{
    QFile file(NewPath());
    const bool isWritten = file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
    return isWritten ? file.fileName() : QString();
}

QString DocumentTest::NewWorkbook(const WorkbookParts& parts)
{
    const QString path = NewPath();
    return WriteZip(path, parts) ? path : QString();
}

QString DocumentTest::NewWorkbook(const QByteArray& rows)
{
    return NewWorkbook(WorkbookWithSheets({rows}));
}

void DocumentTest::aCellGives_data()
{
    QTest::addColumn<QByteArray>("cell");
    QTest::addColumn<QString>("value");
    const auto row = [](const char* name, const char* cell, const char* value) {
        QTest::newRow(name) << QByteArray(cell) << QString(value);
    };
    row("nothing when blank", "<c/>", "nothing");
    row("nothing when blank with a style", "<c s='1'/>", "nothing");
    row("nothing when blank with a type", "<c t='n'/>", "nothing");
    row("a text without a type", "<c><v>5</v></c>", "QString 5");
    row("the text as it stands", "<c><v>5.0E2</v></c>", "QString 5.0E2");
    row("an empty text", "<c><v/></c>", "QString");
    row("a double", "<c t='n'><v>5.0E2</v></c>", "double 500");
    row("a double with a fraction", "<c t='n'><v>1296.25</v></c>", "double 1296.25");
    row("true", "<c t='b'><v>1</v></c>", "bool true");
    row("false", "<c t='b'><v>0</v></c>", "bool false");
    row("a shared text", "<c t='s'><v>0</v></c>", "QString plain");
    row("a shared rich text", "<c t='s'><v>1</v></c>", "QString one two");
    row("a shared text without its phonetics", "<c t='s'><v>2</v></c>", "QString kanji");
    row("an empty shared text", "<c t='s'><v>3</v></c>", "QString");
    row("a shared text in two sections", "<c t='s'><v>4</v></c>", "QString a<b&c\u20AC");
    row("no shared text at this index", "<c t='s'><v>5</v></c>", "QString");
    row("no shared text below zero", "<c t='s'><v>-1</v></c>", "QString");
    row("a shared text with the style of dates", "<c t='s' s='1'><v>0</v></c>", "QString plain");
    row("an inline text", "<c t='inlineStr'><is><t>in</t></is></c>", "QString in");
    row("an inline rich text",
        "<c t='inlineStr'><is><r><rPr><b/></rPr><t>in</t></r><r><t>line</t></r>"
        "</is></c>",
        "QString inline");
    row("the text of a formula", "<c t='str'><f>A1</f><v>last</v></c>", "QString last");
    row("the number of a formula", "<c><f>6*7</f><v>42</v></c>", "QString 42");
    row("nothing of a formula never reckoned", "<c><f>6*7</f></c>", "nothing");
    row("an error", "<c t='e'><v>#DIV/0!</v></c>", "QString #DIV/0!");
    row("a date", "<c s='1'><v>44259.0</v></c>", "double 44259");
    row("a date that is a number", "<c t='n' s='1'><v>44259.5</v></c>", "double 44259.5");
    row("the text of a formula with the style of dates", "<c t='str' s='1'><v>5.0</v></c>",
        "QString 5.0");
    row("a value beside an inline text's type", "<c t='inlineStr' s='1'><v>5.0</v></c>",
        "QString 5.0");
    row("an error with the style of dates", "<c t='e' s='1'><v>5.0</v></c>", "QString 5.0");
    row("a date of an unknown type", "<c t='other' s='1'><v>5.0</v></c>", "double 5");
    row("a written date", "<c t='d'><v>2021-03-04</v></c>", "QString 2021-03-04");
    row("a text of an unknown type", "<c t='other'><v>x</v></c>", "QString x");
    row("a text of a style that is not there", "<c s='99'><v>5.0</v></c>", "QString 5.0");
    row("a text beside what extends it", "<c><extLst><ext><v>no</v></ext></extLst><v>5</v></c>",
        "QString 5");
}

void DocumentTest::aCellGives()
{
    QFETCH(QByteArray, cell);
    QFETCH(QString, value);
    WorkbookParts parts = WorkbookWithSheets({"<row>" + cell + "</row>"});
    SetSharedStrings(parts,
        "<si><t>plain</t></si>"
        "<si><r><t>one</t></r><r><rPr><b/></rPr><t xml:space='preserve'> two</t></r></si>"
        "<si><t>kanji</t><rPh sb='0' eb='1'><t>hint</t></rPh></si>"
        "<si/>"
        "<si><t>a&lt;b<![CDATA[&c]]>&#8364;</t></si>");
    SetStyles(parts, "<cellXfs><xf numFmtId='0'/><xf numFmtId='14'/></cellXfs>");
    const QXlsx::Document document(NewWorkbook(parts));
    QVERIFY(document.isLoadPackage());

    int rows = 0;
    int columns = 0;
    const QVector<QXlsx::CellLocation> cells =
        FirstWorksheet(document)->getFullCells(&rows, &columns);
    QCOMPARE(Described(cells), QStringList((QString("1,1 ") + value).trimmed()));
    QCOMPARE(rows, 1);
    QCOMPARE(columns, 1);
}

void DocumentTest::aStyleIsADateByItsNumberFormat_data()
{
    QTest::addColumn<QByteArray>("number");
    QTest::addColumn<QByteArray>("code");
    QTest::addColumn<bool>("isDate");
    for (const int builtIn : {14, 18, 22, 27, 36, 45, 47, 50, 58}) {
        QTest::addRow("built in, %d", builtIn)
            << QByteArray::number(builtIn) << QByteArray() << true;
    }
    for (const int builtIn : {0, 1, 13, 23, 26, 37, 44, 48, 49, 59}) {
        QTest::addRow("built in, %d", builtIn)
            << QByteArray::number(builtIn) << QByteArray() << false;
    }
    const auto row = [](const char* code, bool isDate) {
        QTest::newRow(code) << QByteArray("164") << QString(code).toHtmlEscaped().toUtf8()
                            << isDate;
    };
    row("yyyy-mm-dd", true);
    row("DD.MM.YYYY", true);
    row("hh:mm", true);
    row("[h]:00", true);
    row("[mm]:00", true);
    row("[$-407]d. mmmm", true);
    row("[Red]0.0", false);
    row("[$EUR] 0.00", false);
    row("General", false);
    row("0.00E+00", false);
    row("0 \"days\"", false);
    row("0 \"days", false);
    row("0\\d", false);
    row("0_d", false);
    row("0;yyyy", false);
    row("[h", true);
    row("", false);
    QTest::newRow("a built-in number with a format of its own")
        << QByteArray("14") << QByteArray("0.00") << false;
}

void DocumentTest::aStyleIsADateByItsNumberFormat()
{
    QFETCH(QByteArray, number);
    QFETCH(QByteArray, code);
    QFETCH(bool, isDate);
    WorkbookParts parts = WorkbookWithSheets({"<row><c s='1'><v>5.0</v></c></row>"});
    const QByteArray formats = code.isNull() ? QByteArray()
                                             : "<numFmts><numFmt numFmtId='" + number +
                                                   "' formatCode='" + code + "'/></numFmts>";
    SetStyles(parts, formats +
                         "<cellStyleXfs><xf numFmtId='0'/></cellStyleXfs><cellXfs>"
                         "<xf numFmtId='0'/><xf numFmtId='" +
                         number + "'/></cellXfs>");
    const QXlsx::Document document(NewWorkbook(parts));
    QVERIFY(document.isLoadPackage());
    int rows = 0;
    int columns = 0;
    QCOMPARE(Described(FirstWorksheet(document)->getFullCells(&rows, &columns)),
        QStringList(QString(isDate ? "1,1 double 5" : "1,1 QString 5.0")));
}

void DocumentTest::cellsStandWhere_data()
{
    QTest::addColumn<QByteArray>("rows");
    QTest::addColumn<QString>("places"); // of row and column, then the highest of both
    const auto row = [](const char* name, const char* rows, const char* places) {
        QTest::newRow(name) << QByteArray(rows) << QString(places);
    };
    row("no rows", "", "-1,-1");
    row("an empty row", "<row r='7'/>", "-1,-1");
    row("their reference says", "<row r='2'><c r='B2'/><c r='AA2'/></row>", "2,2 2,27 2,27");
    row("dollars of the reference do not matter", "<row><c r='$B$2'/></row>", "2,2 2,2");
    row("they follow one another without references", "<row><c/><c/></row><row><c/></row>",
        "1,1 1,2 2,1 2,2");
    row("their row says", "<row r='5'><c/></row><row><c/></row>", "5,1 6,1 6,1");
    row("they follow the one with a reference", "<row r='2'><c r='D2'/><c/></row>", "2,4 2,5 2,5");
    row("the reference goes before the row", "<row r='2'><c r='A9'/></row>", "9,1 9,1");
    row("the last place of a sheet", "<row><c r='XFD1048576'/></row>",
        "1048576,16384 1048576,16384");
    row("the last place of a reference", "<row><c r='ZZZ2147483647'/></row>",
        "2147483647,18278 2147483647,18278");
    row("nowhere by four letters", "<row><c r='AAAA1'/></row>", "-1,-1 -1,-1");
    row("nowhere by small letters", "<row><c r='a1'/></row>", "-1,-1 -1,-1");
    row("nowhere without a row", "<row><c r='A'/></row>", "-1,-1 -1,-1");
    row("nowhere without a column", "<row><c r='1'/></row>", "-1,-1 -1,-1");
    row("nowhere below row 1", "<row><c r='A0'/></row>", "-1,-1 -1,-1");
    row("nowhere by more digits than a number has", "<row><c r='A99999999999'/></row>",
        "-1,-1 -1,-1");
    row("nowhere by anything else", "<row><c r='A1:B2'/></row>", "-1,-1 -1,-1");
    row("the greatest row has none behind it", "<row r='2147483647'/><row><c/></row>",
        "2147483647,1 2147483647,1");
}

void DocumentTest::cellsStandWhere()
{
    QFETCH(QByteArray, rows);
    const QXlsx::Document document(NewWorkbook(rows));
    QVERIFY(document.isLoadPackage());
    int maxRow = 0;
    int maxColumn = 0;
    QStringList places;
    const QVector<QXlsx::CellLocation> cells =
        FirstWorksheet(document)->getFullCells(&maxRow, &maxColumn);
    for (const QXlsx::CellLocation& cell : cells) {
        places.append(QString("%1,%2").arg(cell.row).arg(cell.col));
    }
    places.append(QString("%1,%2").arg(maxRow).arg(maxColumn));
    QTEST(places.join(' '), "places");
}

void DocumentTest::cellsComeInAscendingOrderAndTheLaterOfTwoStays()
{
    const QXlsx::Document document(
        NewWorkbook("<row r='3'><c r='B3'><v>b3</v></c><c r='A3'><v>a3</v></c></row>"
                    "<row r='1'><c r='C1'><v>first</v></c><c r='C1'><v>second</v></c></row>"));
    int rows = 0;
    int columns = 0;
    QCOMPARE(Described(FirstWorksheet(document)->getFullCells(&rows, &columns)),
        QStringList({"1,3 QString second", "3,1 QString a3", "3,2 QString b3"}));
    QCOMPARE(rows, 3);
    QCOMPARE(columns, 3);
}

void DocumentTest::blanksOfALayoutBetweenElementsDoNotCount()
{
    const QXlsx::Document document(
        NewWorkbook("\n <row>\n  <c t='inlineStr'>\n   <is>\n    <t> x </t>\n"
                    "   </is>\n  </c>\n </row>\n"));
    int rows = 0;
    int columns = 0;
    const QVector<QXlsx::CellLocation> cells =
        FirstWorksheet(document)->getFullCells(&rows, &columns);
    QCOMPARE(cells.size(), 1);
    QCOMPARE(cells.first().cell->value().toString(), " x ");
}

void DocumentTest::prefixesOfElementsDoNotMatter()
{
    WorkbookParts parts = WorkbookWithSheets({QByteArray()});
    parts["xl/worksheets/sheet1.xml"] =
        "<x:worksheet xmlns:x='http://schemas.openxmlformats.org/spreadsheetml/2006/main'>"
        "<x:sheetData><x:row><x:c><x:v>5</x:v></x:c></x:row></x:sheetData></x:worksheet>";
    parts["xl/workbook.xml"].replace("r:id", "rel:id").replace("xmlns:r=", "xmlns:rel=");
    const QXlsx::Document document(NewWorkbook(parts));
    QVERIFY(document.isLoadPackage());
    int rows = 0;
    int columns = 0;
    QCOMPARE(Described(FirstWorksheet(document)->getFullCells(&rows, &columns)),
        QStringList("1,1 QString 5"));
}

void DocumentTest::aPartInUtf16IsRead()
{
    const QString sheet = "\uFEFF<worksheet><sheetData><row><c><v>\u20AC</v></c></row></sheetData>"
                          "</worksheet>";
    WorkbookParts parts = WorkbookWithSheets({QByteArray()});
    parts["xl/worksheets/sheet1.xml"] =
        QByteArray(reinterpret_cast<const char*>(sheet.utf16()), sheet.size() * 2);
    const QXlsx::Document document(NewWorkbook(parts));
    QVERIFY(document.isLoadPackage());
    int rows = 0;
    int columns = 0;
    QCOMPARE(Described(FirstWorksheet(document)->getFullCells(&rows, &columns)),
        QStringList("1,1 QString \u20AC"));
}

void DocumentTest::aTargetIs_data()
{
    QTest::addColumn<QByteArray>("target");
    QTest::addColumn<bool>("isLoaded");
    QTest::newRow("beside the workbook") << QByteArray("worksheets/sheet1.xml") << true;
    QTest::newRow("from the root") << QByteArray("/xl/worksheets/sheet1.xml") << true;
    QTest::newRow("over the folder above") << QByteArray("../xl/worksheets/sheet1.xml") << true;
    QTest::newRow("with a dot") << QByteArray("./worksheets/sheet1.xml") << true;
    QTest::newRow("not there") << QByteArray("sheet1.xml") << false;
    QTest::newRow("a folder") << QByteArray("worksheets") << false;
    QTest::newRow("empty") << QByteArray() << false;
    QTest::newRow("outside the package") << QByteArray("../../../etc/passwd") << false;
}

void DocumentTest::aTargetIs()
{
    QFETCH(QByteArray, target);
    WorkbookParts parts = WorkbookWithSheets({"<row><c><v>5</v></c></row>"});
    SetSheets(parts, "<sheet name='Sheet1' sheetId='1' r:id='a'/>",
        "<Relationship Id='a' Type='TYPE/worksheet' Target='" + target + "'/>");
    QTEST(QXlsx::Document(NewWorkbook(parts)).isLoadPackage(), "isLoaded");
}

void DocumentTest::sheetsComeInTheOrderOfTheirTabs()
{
    WorkbookParts parts = WorkbookWithSheets({"<row><c r='A1'/></row>", "<row><c r='A2'/></row>"});
    SetSheets(parts, "<sheet name='Z &amp; z' r:id='b'/><sheet name='A' r:id='a'/>",
        "<Relationship Id='a' Type='TYPE/worksheet' Target='worksheets/sheet1.xml'/>"
        "<Relationship Id='b' Type='TYPE/worksheet' Target='worksheets/sheet2.xml'/>");
    const QXlsx::Document document(NewWorkbook(parts));
    QCOMPARE(document.sheetNames(), QStringList({"Z & z", "A"}));
    QCOMPARE(document.sheet("B"), static_cast<QXlsx::AbstractSheet*>(nullptr));
    int rows = 0;
    int columns = 0;
    FirstWorksheet(document)->getFullCells(&rows, &columns);
    QCOMPARE(rows, 2);
}

void DocumentTest::aChartIsASheetWithoutCells()
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
    QVERIFY(dynamic_cast<QXlsx::Worksheet*>(document.sheet(Sheet1)) != nullptr);
}

void DocumentTest::theFirstSheetIsActiveUntilAnotherIsMade()
{
    const QXlsx::Document document(NewWorkbook(WorkbookWithSheets({QByteArray(), QByteArray()})));
    QXlsx::AbstractSheet* const first = document.sheet(Sheet1);
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

void DocumentTest::aWorkbookWithoutSheetsIsLoaded()
{
    const QXlsx::Document document(NewWorkbook(WorkbookWithSheets({})));
    QVERIFY(document.isLoadPackage());
    QCOMPARE(document.sheetNames(), QStringList());
}

namespace {

WorkbookParts FullWorkbook()
{
    WorkbookParts parts =
        WorkbookWithSheets({"<row><c t='s'><v>0</v></c></row>", "<row><c/></row>"});
    SetSharedStrings(parts, "<si><t>text</t></si>");
    SetStyles(parts, "<cellXfs><xf numFmtId='0'/></cellXfs>");
    return parts;
}

void AddRowForEachPart()
{
    QTest::addColumn<QString>("part");
    const QStringList names = FullWorkbook().keys();
    for (const QString& name : names) {
        QTest::newRow(qPrintable(name)) << name;
    }
}

} // namespace

void DocumentTest::aPackageThatLacksAPartIsNotLoaded_data()
{
    AddRowForEachPart();
}

void DocumentTest::aPackageThatLacksAPartIsNotLoaded()
{
    QFETCH(QString, part);
    WorkbookParts parts = FullWorkbook();
    QVERIFY(QXlsx::Document(NewWorkbook(parts)).isLoadPackage());
    QCOMPARE(parts.remove(part), 1);
    const QXlsx::Document document(NewWorkbook(parts));
    QVERIFY(!document.isLoadPackage());
    QCOMPARE(document.sheetNames(), QStringList());
    QCOMPARE(document.sheet(Sheet1), static_cast<QXlsx::AbstractSheet*>(nullptr));
}

void DocumentTest::aPartThatIsNotWellFormedIsNotLoaded_data()
{
    AddRowForEachPart();
}

void DocumentTest::aPartThatIsNotWellFormedIsNotLoaded()
{
    QFETCH(QString, part);
    const WorkbookParts whole = FullWorkbook();
    const QByteArray content = whole.value(part);
    const QByteArray brokenOnes[] = {QByteArray(), content.left(content.size() - 1),
        content + "<a/>", content + "x", "<a>" + content, QByteArray("no XML"),
        QByteArray(100, '\0'),
        "<!DOCTYPE a>" +
            content.mid(content.lastIndexOf("?>") < 0 ? 0 : content.indexOf("?>") + 2)};
    for (const QByteArray& broken : brokenOnes) {
        WorkbookParts parts = whole;
        parts[part] = broken;
        QVERIFY2(!QXlsx::Document(NewWorkbook(parts)).isLoadPackage(), broken.constData());
    }
}

void DocumentTest::aPackageCutShortAnywhereIsNotLoaded()
{
    QFile file(NewWorkbook(FullWorkbook()));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray content = file.readAll();
    const QString path = NewFile(content);
    QVERIFY(QXlsx::Document(path).isLoadPackage());
    for (int length = 0; length < content.size(); ++length) {
        QVERIFY(QFile::resize(path, 0));
        QFile cut(path);
        QVERIFY(cut.open(QIODevice::WriteOnly));
        QCOMPARE(cut.write(content.left(length)), qint64(length));
        cut.close();
        QVERIFY2(!QXlsx::Document(path).isLoadPackage(), qPrintable(QString::number(length)));
    }
}

void DocumentTest::aChangedByteNeverStopsTheProgram()
{
    QFile file(NewWorkbook(FullWorkbook()));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray content = file.readAll();
    const QString path = NewPath();
    for (int position = 0; position < content.size(); ++position) {
        QByteArray changed = content;
        changed[position] = static_cast<char>(changed.at(position) ^ (position % 2 ? 1 : 0x80));
        QFile broken(path);
        QVERIFY(broken.open(QIODevice::WriteOnly));
        QCOMPARE(broken.write(changed), qint64(changed.size()));
        broken.close();
        const QXlsx::Document document(path);
        QVERIFY(document.isLoadPackage() || document.sheetNames().isEmpty());
    }
}

void DocumentTest::whatIsNoPackageIsNotLoaded_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("no name") << QString();
    QTest::newRow("not there") << NewPath();
    QTest::newRow("a folder") << folder.path();
    QTest::newRow("a device without an end") << "/dev/zero";
    QTest::newRow("an empty file") << NewFile("");
    QTest::newRow("a text file") << NewFile("VX440-DCF\n");
    QTest::newRow("a text file that begins like a zip") << NewFile("PK\3\4 VX440-DCF\n");
    QTest::newRow("an empty zip") << NewWorkbook(WorkbookParts());
}

void DocumentTest::whatIsNoPackageIsNotLoaded()
{
    QFETCH(QString, path);
    QVERIFY(!QXlsx::Document(path).isLoadPackage());
}

void DocumentTest::aPartThatIsLongerThanItClaimsIsNotLoaded()
{
    QFile file(NewWorkbook(FullWorkbook()));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QByteArray content = file.readAll();
    // In the directory, the length of a part stands 24 bytes behind the beginning of its record.
    const int record = content.indexOf("PK\1\2");
    QVERIFY(record > 0);
    content[record + 24] = static_cast<char>(content.at(record + 24) + 1);
    QVERIFY(!QXlsx::Document(NewFile(content)).isLoadPackage());
}

void DocumentTest::aPartOfAnotherChecksumIsNotLoaded()
{
    // What cannot be packed any shorter stands in the file as it is.
    QByteArray picture;
    for (int byte = 0; byte < 256; ++byte) {
        picture.append(static_cast<char>(byte));
    }
    WorkbookParts parts = WorkbookWithSheets({QByteArray()});
    parts["media/picture"] = picture;
    QFile file(NewWorkbook(parts));
    QVERIFY(file.open(QIODevice::ReadWrite));
    QByteArray content = file.readAll();
    const int at = content.indexOf(picture);
    QVERIFY(at >= 0);
    QVERIFY(QXlsx::Document(file.fileName()).isLoadPackage());
    content[at] = 'x';
    QVERIFY(file.seek(0) && file.write(content) == content.size() && file.flush());
    QVERIFY(!QXlsx::Document(file.fileName()).isLoadPackage());
}

void DocumentTest::aFileNameOfAnyLettersIsRead()
{
    const QString path = folder.filePath("\u00FC\u20AC \u4E00.xlsx");
    QVERIFY(QFile::rename(NewWorkbook(QByteArray()), path));
    QVERIFY(QXlsx::Document(path).isLoadPackage());
}

namespace {

void AddRowsForBounds(bool isBeyond)
{
    QTest::addColumn<WorkbookParts>("parts");
    const int more = isBeyond ? 1 : 0;
    const auto withRows = [](const char* name, const QByteArray& rows) {
        QTest::newRow(name) << WorkbookWithSheets({rows});
    };
    const auto withPart = [](const char* name, const QString& part, const QByteArray& content) {
        WorkbookParts parts = WorkbookWithSheets({QByteArray()});
        parts[part] = content;
        QTest::newRow(name) << parts;
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
    withRows("the length of a text",
        "<row><c><v>" + QByteArray(isBeyond ? 120'000 : 3 * 32767, 'x') + "</v></c></row>");
    withRows("the length of a tag",
        "<row a='" + QByteArray(isBeyond ? 120'000 : 3 * 32767, 'x') + "'/>");
    withRows("elements", QByteArray("<a/>").repeated(isBeyond ? 1'000'000 : 999'900));
    withRows("the length of all texts",
        "<row>" + ("<c><v>" + QByteArray(80'000, 'x') + "</v></c>").repeated(isBeyond ? 200 : 199) +
            "</row>");
    withPart("the length of all parts", "media/picture",
        QByteArray(64 * 1024 * 1024 - (isBeyond ? 0 : 5'000), '\0'));
    withPart("the length of a name", QString(255 + more, 'n'), QByteArray());

    WorkbookParts many = WorkbookWithSheets({QByteArray()});
    while (many.size() < 1000 + more) {
        many[QString("media/%1").arg(many.size())] = QByteArray();
    }
    QTest::newRow("parts") << many;

    QByteArray relationships;
    for (int i = 1; i < 1000 + more; ++i) {
        relationships += "<Relationship Id='r" + QByteArray::number(i) + "'/>";
    }
    WorkbookParts related = WorkbookWithSheets({QByteArray()});
    related["xl/_rels/workbook.xml.rels"].replace("</Rel", relationships + "</Rel");
    QTest::newRow("relationships") << related;
}

} // namespace

Q_DECLARE_METATYPE(WorkbookParts)

void DocumentTest::beyondABoundNothingIsLoaded_data()
{
    AddRowsForBounds(true);

    WorkbookParts parts = WorkbookWithSheets({QByteArray()});
    SetSheets(parts, "<sheet name='A' r:id='a'/><sheet name='B' r:id='a'/>",
        "<Relationship Id='a' Type='TYPE/worksheet' Target='worksheets/sheet1.xml'/>");
    QTest::newRow("a part for two sheets") << parts;

    QByteArray laughs = "<!DOCTYPE lol [<!ENTITY lol0 'lol'>";
    for (char i = '1'; i <= '9'; ++i) {
        const char before = static_cast<char>(i - 1);
        laughs += QByteArray("<!ENTITY lol") + i + " '" +
                  (QByteArray("&lol") + before + ";").repeated(10) + "'>";
    }
    for (const auto& part :
        {"xl/worksheets/sheet1.xml", "xl/workbook.xml", "[Content_Types].xml", "_rels/.rels"}) {
        WorkbookParts laughing = WorkbookWithSheets({QByteArray()});
        laughing[part] = laughs + "]><lol>&lol9;</lol>";
        QTest::addRow("a thousand million laughs in %s", qPrintable(part)) << laughing;
    }
}

void DocumentTest::beyondABoundNothingIsLoaded()
{
    QFETCH(WorkbookParts, parts);
    QVERIFY(!QXlsx::Document(NewWorkbook(parts)).isLoadPackage());
}

void DocumentTest::withinTheBoundsAllIsLoaded_data()
{
    AddRowsForBounds(false);
}

void DocumentTest::withinTheBoundsAllIsLoaded()
{
    QFETCH(WorkbookParts, parts);
    QVERIFY(QXlsx::Document(NewWorkbook(parts)).isLoadPackage());
}

QTEST_GUILESS_MAIN(DocumentTest)

#include "DocumentTest.moc"
