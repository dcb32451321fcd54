#include "hardware/CZKHardwareComponent.h"
#include "tests/support/Warnings.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

#include <type_traits>

namespace {

constexpr char Variable[] = "PROGRAMDATA";

// A mandatory block: part number 12345678.02, hardware code 3, product index 1.05, serial number
// 123456789, 2026-03-09, test instruction index -0.01.
const QByteArray Block = QByteArray::fromHex("0200010002000300"
                                             "04000000"
                                             "4E61BC0002036900"
                                             "15CD5B07"
                                             "695C0500FFFF") +
                         QByteArray("VX440\0\0\0\0\0\0\0\0\0", 14);

QVector<uchar> Image(const QByteArray& bytes)
{
    QVector<uchar> image;
    for (const char byte : bytes) {
        image.append(static_cast<uchar>(byte));
    }
    return image;
}

QVector<uchar> ImageOfType(int type)
{
    QByteArray bytes = Block;
    bytes[0] = static_cast<char>(type & 0xFF);
    bytes[1] = static_cast<char>(type >> 8);
    return Image(bytes);
}

QStringList Texts(const char* texts)
{
    return QString::fromLatin1(texts).split('|');
}

const QStringList GoodRow =
    Texts("VX440|VX440|123456/789|1234.5678.02|02|03|01.05|00.-1|2026-03-09");
const QStringList NoBlockRow = Texts("VX440|Not loaded|--|--|--|--|--|--");
const QStringList EmptyBlockRow =
    Texts("VX440||000000/000|0000.0000.00|00|00|00.00|00.00|1980-00-00");

QStringList Row(CZKHardwareComponent& component, quint8 group)
{
    QStringList texts;
    component.AppendRowTexts(texts, group);
    return texts;
}

QByteArray Content(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

} // namespace

class ZKHardwareComponentTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void init();

    void theColumnsHaveTheirNamesInOrder();
    void theDirectoryStandsBelowProgramData();
    void theDirectoryIsMadeOnTheWay();
    void aDirectoryThatIsThereIsLeftAsItIs();
    void withoutTheVariableThePathStartsAtTheSeparator();
    void theVariableIsReadAnewOnEveryCall();
    void aDirectoryThatCannotBeMadeIsNotReported();

    void aNewComponentHasNoBlock();
    void aMandatoryBlockIsParsed();
    void anImageIsJudgedByItsLength();
    void anImageOfAnotherTypeIsRefused_data();
    void anImageOfAnotherTypeIsRefused();
    void aRefusedHeaderKeepsTheOldBlock();
    void aBodyCutShortTakesTheOldBlockAway();
    void theCallersImageStays();
    void onlyItsOwnGroupIsAnswered();
    void textsAreAppendedBehindThoseThatAreThere();

    void anImageIsNamedAfterItsSerialNumber_data();
    void anImageIsNamedAfterItsSerialNumber();
    void aSavedImageIsTheFile();
    void aFileThatStoodThereIsReplacedWhole();
    void anImageOfNoBytesIsAnEmptyFile();
    void whereNoFileCanBeMadeNothingIsSaved_data();
    void whereNoFileCanBeMadeNothingIsSaved();
    void anOrdinaryUsersClosedFilesAreNotReplaced_data();
    void anOrdinaryUsersClosedFilesAreNotReplaced();

private:
    QString EepromDirectory() const { return folder->path() + Tail; }

    static const QString Tail;
    QScopedPointer<QTemporaryDir> folder;
};

const QString ZKHardwareComponentTest::Tail =
    QDir::toNativeSeparators("/Zelma-Kovinth/VX440/Eeprom/");

static_assert(std::has_virtual_destructor<CZKHardwareComponent>::value, "it is made to be derived");

namespace {

struct Component : CZKHardwareComponent
{
    explicit Component(quint8 group = 0)
        : CZKHardwareComponent("directory", "VX440", 3, 0, 64, group)
    {
    }
};

bool Parse(CZKHardwareComponent& component, const QVector<uchar>& image)
{
    bool ok = false;
    const bool result = component.ParseImage(image, ok);
    bool otherwise = true;
    return result == ok && component.ParseImage(image, otherwise) == otherwise && result;
}

} // namespace

void ZKHardwareComponentTest::init()
{
    WarningsFail::init();
    folder.reset(new QTemporaryDir);
    qputenv(Variable, QFile::encodeName(folder->path()));
}

void ZKHardwareComponentTest::theColumnsHaveTheirNamesInOrder()
{
    QCOMPARE(BoardDataColumns, Texts("Component|Name|Serial No.|Part No.|Variant|HW code|Prod. "
                                     "Index|Test Instruction Index|Prod. Date"));
}

void ZKHardwareComponentTest::theDirectoryStandsBelowProgramData()
{
    QCOMPARE(GetEepromDirectory(), EepromDirectory());
}

void ZKHardwareComponentTest::theDirectoryIsMadeOnTheWay()
{
    QVERIFY(QDir(folder->path()).isEmpty());
    GetEepromDirectory();
    QVERIFY(QDir(EepromDirectory()).exists());
}

void ZKHardwareComponentTest::aDirectoryThatIsThereIsLeftAsItIs()
{
    GetEepromDirectory();
    QFile file(EepromDirectory() + "kept");
    QVERIFY(file.open(QIODevice::WriteOnly));
    GetEepromDirectory();
    QVERIFY(file.exists());
}

// The test's user may not make a directory there; in a container he may, and it goes again.
void ZKHardwareComponentTest::withoutTheVariableThePathStartsAtTheSeparator()
{
    const QString top = "/Zelma-Kovinth";
    const bool wasThere = QDir(top).exists();
    qunsetenv(Variable);
    QCOMPARE(GetEepromDirectory(), Tail);
    if (!wasThere) {
        QDir(top).removeRecursively();
    }
}

void ZKHardwareComponentTest::theVariableIsReadAnewOnEveryCall()
{
    GetEepromDirectory();
    const QTemporaryDir other;
    qputenv(Variable, QFile::encodeName(other.path()));
    QCOMPARE(GetEepromDirectory(), other.path() + Tail);
    QVERIFY(QDir(other.path() + Tail).exists());
}

void ZKHardwareComponentTest::aDirectoryThatCannotBeMadeIsNotReported()
{
    const QString missing = folder->filePath("missing");
    qputenv(Variable, QFile::encodeName(missing));
    QCOMPARE(GetEepromDirectory(), missing + Tail);
    QVERIFY(!QDir(missing).exists());
}

void ZKHardwareComponentTest::aNewComponentHasNoBlock()
{
    Component component;
    QCOMPARE(Row(component, 0), NoBlockRow);
    QCOMPARE(Row(component, 1), NoBlockRow);
    QVERIFY(!QDir("directory").exists());
}

void ZKHardwareComponentTest::aMandatoryBlockIsParsed()
{
    Component component;
    QVERIFY(Parse(component, Image(Block)));
    QCOMPARE(Row(component, 0), GoodRow);
    Component longer;
    QVERIFY(Parse(longer, Image(Block + QByteArray(1156, '\xFF'))));
    QCOMPARE(Row(longer, 0), GoodRow);
}

void ZKHardwareComponentTest::anImageIsJudgedByItsLength()
{
    for (int size = 0; size <= Block.size(); ++size) {
        Component component;
        QCOMPARE(Parse(component, Image(Block.left(size))), size >= 44);
        // With 8 bytes the header alone would fit.
        QCOMPARE(Row(component, 0), size <= 8 ? NoBlockRow : size < 44 ? EmptyBlockRow : GoodRow);
    }
}

void ZKHardwareComponentTest::anImageOfAnotherTypeIsRefused_data()
{
    QTest::addColumn<int>("type");
    for (const int type : {0, 1, 3, 100, 110, 120, 200, 300, 0x0200, 65535}) {
        QTest::addRow("%d", type) << type;
    }
}

void ZKHardwareComponentTest::anImageOfAnotherTypeIsRefused()
{
    QFETCH(int, type);
    Component component;
    QVERIFY(!Parse(component, ImageOfType(type)));
    QCOMPARE(Row(component, 0), NoBlockRow);
}

void ZKHardwareComponentTest::aRefusedHeaderKeepsTheOldBlock()
{
    Component component;
    QVERIFY(Parse(component, Image(Block)));
    for (const QVector<uchar>& refused :
        {ImageOfType(100), Image(Block.left(8)), Image(QByteArray(44, '\xFF')), Image({})}) {
        QVERIFY(!Parse(component, refused));
        QCOMPARE(Row(component, 0), GoodRow);
    }
}

void ZKHardwareComponentTest::aBodyCutShortTakesTheOldBlockAway()
{
    Component component;
    QVERIFY(Parse(component, Image(Block)));
    QVERIFY(!Parse(component, Image(Block.left(43))));
    QCOMPARE(Row(component, 0), EmptyBlockRow);
    QVERIFY(Parse(component, Image(Block)));
    QCOMPARE(Row(component, 0), GoodRow);
}

void ZKHardwareComponentTest::theCallersImageStays()
{
    const QVector<uchar> image = Image(Block);
    Component component;
    bool ok = false;
    QVERIFY(component.ParseImage(image, ok));
    QCOMPARE(image, Image(Block));
}

void ZKHardwareComponentTest::onlyItsOwnGroupIsAnswered()
{
    for (const int own : {0, 1, 255}) {
        Component component(static_cast<quint8>(own));
        QVERIFY(Parse(component, Image(Block)));
        for (const int asked : {0, 1, 255}) {
            QCOMPARE(
                Row(component, static_cast<quint8>(asked)), own == asked ? GoodRow : QStringList());
        }
    }
}

void ZKHardwareComponentTest::textsAreAppendedBehindThoseThatAreThere()
{
    Component component;
    QStringList texts = Texts("first");
    component.AppendRowTexts(texts, 0);
    QCOMPARE(texts, Texts("first") + NoBlockRow);
}

void ZKHardwareComponentTest::anImageIsNamedAfterItsSerialNumber_data()
{
    QTest::addColumn<QByteArray>("littleEndian");
    QTest::addColumn<QString>("name");
    QTest::newRow("nine digits") << QByteArray("15CD5B07") << "VX440Read_VX440_123456.bin";
    QTest::newRow("four digits") << QByteArray("D2040000") << "VX440Read_VX440_001234.bin";
    QTest::newRow("printed as negative") << QByteArray("00000080") << "VX440Read_VX440_-21474.bin";
}

void ZKHardwareComponentTest::anImageIsNamedAfterItsSerialNumber()
{
    QFETCH(QByteArray, littleEndian);
    QByteArray block = Block;
    Component component;
    QVERIFY(Parse(component, Image(block.replace(20, 4, QByteArray::fromHex(littleEndian)))));
    QTEST(component.ReadImageFileName(), "name");
}

void ZKHardwareComponentTest::aSavedImageIsTheFile()
{
    QByteArray bytes;
    for (int i = 0; i < 1200; ++i) {
        bytes.append(static_cast<char>(i % 251));
    }
    QVERIFY(Component().SaveImage("a.bin", Image(bytes)));
    QCOMPARE(Content(EepromDirectory() + "a.bin"), bytes);
    QCOMPARE(QDir(EepromDirectory()).entryList(QDir::Files), Texts("a.bin"));
}

void ZKHardwareComponentTest::aFileThatStoodThereIsReplacedWhole()
{
    const QByteArray longer(5000, 'x');
    QVERIFY(Component().SaveImage("a.bin", Image(longer)));
    QVERIFY(Component().SaveImage("a.bin", Image(Block)));
    QCOMPARE(Content(EepromDirectory() + "a.bin"), Block);
}

void ZKHardwareComponentTest::anImageOfNoBytesIsAnEmptyFile()
{
    QVERIFY(Component().SaveImage("a.bin", {}));
    QCOMPARE(Content(EepromDirectory() + "a.bin"), QByteArray());
}

void ZKHardwareComponentTest::whereNoFileCanBeMadeNothingIsSaved_data()
{
    QTest::addColumn<QString>("data");
    QTest::addColumn<QString>("name");
    QTest::newRow("the directory cannot be made") << "missing"
                                                  << "a.bin";
    QTest::newRow("a file has the directory's name") << "file"
                                                     << "a.bin";
    QTest::newRow("a directory has the file's name") << QString() << "taken";
}

void ZKHardwareComponentTest::whereNoFileCanBeMadeNothingIsSaved()
{
    QFETCH(QString, data);
    QFETCH(QString, name);
    QDir().mkpath(EepromDirectory() + "taken");
    QFile file(folder->filePath("file"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    qputenv(Variable, QFile::encodeName(folder->filePath(data)));
    QVERIFY(!Component().SaveImage(name, Image(Block)));
    QVERIFY(!QDir(folder->filePath("missing")).exists());
}

void ZKHardwareComponentTest::anOrdinaryUsersClosedFilesAreNotReplaced_data()
{
    QTest::addColumn<QString>("closed");
    QTest::newRow("a file that is read-only") << "a.bin";
    QTest::newRow("a folder that is read-only, and the file is new") << QString();
}

void ZKHardwareComponentTest::anOrdinaryUsersClosedFilesAreNotReplaced()
{
    QFETCH(QString, closed);
    QVERIFY(Component().SaveImage("a.bin", Image("before")));
    const QString path = EepromDirectory() + closed;
    QVERIFY(QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::ExeOwner));
    if (QFileInfo(path).isWritable()) {
        QSKIP("this user may write every file");
    }
    const QString name = closed.isEmpty() ? "b.bin" : closed;
    QVERIFY(!Component().SaveImage(name, Image(Block)));
    QCOMPARE(Content(EepromDirectory() + "a.bin"), QByteArray("before"));
    QVERIFY(QFile::setPermissions(
        path, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner));
}

QTEST_GUILESS_MAIN(ZKHardwareComponentTest)

#include "ZKHardwareComponentTest.moc"
