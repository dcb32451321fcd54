#include "hardware/CZKMandatoryEepromBlock.h"

#include <QtTest>

#include <cstdarg>
#include <cstdio>
#include <random>
#include <string>

namespace {

constexpr int HeaderSize = 8;
constexpr int BodySize = 36;

// What a block's body says.
struct Body
{
    quint32 partNumber = 0;
    quint8 variant = 0;
    quint8 hwCode = 0;
    qint16 productIndex = 0;
    quint32 serialNumber = 0;
    quint16 productionDate = 0;
    qint16 testInstructionIndex = 0;
    QByteArray name;
};

void Put(QVector<uchar>& bytes, int offset, qint64 number, int size)
{
    for (int i = 0; i < size; ++i) {
        bytes[offset + i] = static_cast<uchar>(number >> (8 * i));
    }
}

// The 44 bytes of a mandatory block, by their offsets.
QVector<uchar> BytesOf(const Body& body)
{
    QVector<uchar> bytes(HeaderSize + BodySize, 0);
    Put(bytes, 0, 2, 2);
    Put(bytes, 12, body.partNumber, 4);
    Put(bytes, 16, body.variant, 1);
    Put(bytes, 17, body.hwCode, 1);
    Put(bytes, 18, body.productIndex, 2);
    Put(bytes, 20, body.serialNumber, 4);
    Put(bytes, 24, body.productionDate, 2);
    Put(bytes, 28, body.testInstructionIndex, 2);
    for (int i = 0; i < body.name.size(); ++i) {
        Put(bytes, 30 + i, body.name.at(i), 1);
    }
    return bytes;
}

CZKMandatoryEepromBlock Parsed(QVector<uchar> bytes)
{
    CZKEepromBlockHeader header;
    header.ParseHeader(bytes);
    CZKMandatoryEepromBlock block(header);
    block.ParseBody(bytes);
    return block;
}

CZKMandatoryEepromBlock Parsed(const Body& body)
{
    return Parsed(BytesOf(body));
}

QStringList TextsOf(const CZKMandatoryEepromBlock& block)
{
    return {block.GetNameText(), block.GetSerialNumberText(), block.GetPartNumberText(),
        block.GetVariantText(), block.GetHwCodeText(), block.GetProductIndexText(),
        block.GetTestInstructionIndexText(), block.GetProductionDateText()};
}

// The C library's own formatter.
std::string Printed(const char* pattern, ...)
{
    char buffer[128];
    std::va_list arguments;
    va_start(arguments, pattern);
    std::vsnprintf(buffer, sizeof buffer, pattern, arguments);
    va_end(arguments);
    return buffer;
}

std::string IndexText(int hundredths)
{
    return Printed("%02i.%02i", hundredths / 100, hundredths % 100);
}

QStringList FormattedByTheLibrary(const Body& body)
{
    const long serial = static_cast<qint32>(body.serialNumber);
    std::string serialText =
        body.serialNumber > 999999 ? Printed("%09li", serial) : Printed("%06li000", serial);
    serialText.insert(6, "/");
    std::string partText =
        Printed("%08li.%02i", long(static_cast<qint32>(body.partNumber)), int(body.variant));
    partText.insert(4, ".");
    std::string name;
    for (const char character : body.name) {
        if (character > 0) {
            name += character;
        }
    }
    QStringList texts;
    for (const std::string& text : {name, serialText, partText, Printed("%02i", int(body.variant)),
             Printed("%02i", int(body.hwCode)), IndexText(body.productIndex),
             IndexText(body.testInstructionIndex),
             Printed("%04i-%02i-%02i", body.productionDate / 512 + 1980,
                 body.productionDate / 32 % 16, body.productionDate % 32)}) {
        texts.append(QString::fromLatin1(text.c_str()));
    }
    return texts;
}

quint16 Date(int yearBits, int month, int day)
{
    return static_cast<quint16>(yearBits * 512 + month * 32 + day);
}

} // namespace

class ZKMandatoryEepromBlockTest : public QObject
{
    Q_OBJECT

private slots:
    void aNewBlockHasTheHeadersWordsAndABodyOfZeros();
    void everyFieldStandsLittleEndianAtItsOffset_data();
    void everyFieldStandsLittleEndianAtItsOffset();
    void aBodyTakes36Bytes();
    void aBlockOf43BytesIsRefusedAndLeaves35();
    void fewerThan36BytesChangeNothing();

    void serialNumbers_data();
    void serialNumbers();
    void partNumbers_data();
    void partNumbers();
    void bytesAsTwoDigits_data();
    void bytesAsTwoDigits();
    void indices_data();
    void indices();
    void dates_data();
    void dates();
    void names_data();
    void names();
    void zerosGiveTheirTexts();
    void aTextChangesNothing();

    void theLimitsOfEachFieldPrintAsTheLibraryPrints();
    void randomBlocksPrintAsTheLibraryPrints();
};

void ZKMandatoryEepromBlockTest::aNewBlockHasTheHeadersWordsAndABodyOfZeros()
{
    CZKEepromBlockHeader header;
    header.BlockType = 2;
    header.HeaderWord1 = 11;
    header.HeaderWord2 = 12;
    header.HeaderWord3 = 13;
    const CZKMandatoryEepromBlock block(header);
    QCOMPARE(int(block.BlockType), 2);
    QCOMPARE(int(block.HeaderWord1), 11);
    QCOMPARE(int(block.HeaderWord2), 12);
    QCOMPARE(int(block.HeaderWord3), 13);
    QCOMPARE(block.BodyWord0 + block.PartNumber + block.Variant + block.HwCode +
                 block.SerialNumber + block.ProductionDate + block.BodyWord1,
        0U);
    QCOMPARE(int(block.ProductIndex), 0);
    QCOMPARE(int(block.TestInstructionIndex), 0);
    for (const uchar character : block.Name) {
        QCOMPARE(int(character), 0);
    }
}

void ZKMandatoryEepromBlockTest::everyFieldStandsLittleEndianAtItsOffset_data()
{
    QTest::addColumn<int>("offset");
    QTest::addColumn<qint64>("value");
    const auto row = [](const char* field, int offset, qint64 value) {
        QTest::newRow(field) << offset << value;
    };
    row("BlockType", 0, 0x2120);
    row("HeaderWord1", 2, 0x2322);
    row("HeaderWord2", 4, 0x2524);
    row("HeaderWord3", 6, 0x2726);
    row("BodyWord0", 8, 0x2B2A2928);
    row("PartNumber", 12, 0x2F2E2D2C);
    row("Variant", 16, 0x30);
    row("HwCode", 17, 0x31);
    row("ProductIndex", 18, 0x3332);
    row("SerialNumber", 20, 0x37363534);
    row("ProductionDate", 24, 0x3938);
    row("BodyWord1", 26, 0x3B3A);
    row("TestInstructionIndex", 28, 0x3D3C);
    row("Name", 30, 0x3E);
    row("Name's last", 43, 0x4B);
}

void ZKMandatoryEepromBlockTest::everyFieldStandsLittleEndianAtItsOffset()
{
    QFETCH(int, offset);
    QVector<uchar> bytes;
    for (int i = 0; i < HeaderSize + BodySize; ++i) {
        bytes.append(static_cast<uchar>(0x20 + i));
    }
    const CZKMandatoryEepromBlock block = Parsed(bytes);
    const QMap<int, qint64> fields{{0, block.BlockType}, {2, block.HeaderWord1},
        {4, block.HeaderWord2}, {6, block.HeaderWord3}, {8, block.BodyWord0},
        {12, block.PartNumber}, {16, block.Variant}, {17, block.HwCode}, {18, block.ProductIndex},
        {20, block.SerialNumber}, {24, block.ProductionDate}, {26, block.BodyWord1},
        {28, block.TestInstructionIndex}, {30, block.Name[0]}, {43, block.Name[13]}};
    QTEST(fields.value(offset), "value");
}

void ZKMandatoryEepromBlockTest::aBodyTakes36Bytes()
{
    CZKMandatoryEepromBlock block{CZKEepromBlockHeader()};
    QVector<uchar> bytes(36 + 20, 1);
    QVERIFY(block.ParseBody(bytes));
    QCOMPARE(bytes.size(), 20);
    bytes.resize(36);
    QVERIFY(block.ParseBody(bytes));
    QVERIFY(bytes.isEmpty());
}

void ZKMandatoryEepromBlockTest::aBlockOf43BytesIsRefusedAndLeaves35()
{
    QVector<uchar> bytes = BytesOf(Body()).mid(0, 43);
    CZKEepromBlockHeader header;
    QVERIFY(header.ParseHeader(bytes));
    QCOMPARE(header.GetBlockKind(), 1);
    CZKMandatoryEepromBlock block(header);
    QVERIFY(!block.ParseBody(bytes));
    QCOMPARE(bytes.size(), 35);
}

void ZKMandatoryEepromBlockTest::fewerThan36BytesChangeNothing()
{
    for (int size = 0; size < BodySize; ++size) {
        CZKMandatoryEepromBlock block{CZKEepromBlockHeader()};
        QVector<uchar> bytes(size, 1);
        QVERIFY(!block.ParseBody(bytes));
        QCOMPARE(bytes, QVector<uchar>(size, 1));
        QCOMPARE(block.PartNumber, 0U);
    }
}

void ZKMandatoryEepromBlockTest::serialNumbers_data()
{
    QTest::addColumn<quint32>("number");
    QTest::addColumn<QString>("text");
    const auto row = [](quint32 number, const char* text) {
        QTest::newRow(text) << number << QString::fromLatin1(text);
    };
    row(0, "000000/000");
    row(1234, "001234/000");
    row(999999, "999999/000");
    row(1000000, "001000/000");
    row(1234567, "001234/567");
    row(123456789, "123456/789");
    row(999999999, "999999/999");
    row(1000000000, "100000/0000");
    row(2147483647, "214748/3647");
    row(2147483648, "-21474/83648");
    row(4294967295, "-00000/001");
}

void ZKMandatoryEepromBlockTest::serialNumbers()
{
    QFETCH(quint32, number);
    Body body;
    body.serialNumber = number;
    QTEST(Parsed(body).GetSerialNumberText(), "text");
}

void ZKMandatoryEepromBlockTest::partNumbers_data()
{
    QTest::addColumn<quint32>("number");
    QTest::addColumn<int>("variant");
    QTest::addColumn<QString>("text");
    const auto row = [](quint32 number, int variant, const char* text) {
        QTest::newRow(text) << number << variant << QString::fromLatin1(text);
    };
    row(12345678, 2, "1234.5678.02");
    row(0, 0, "0000.0000.00");
    row(7, 255, "0000.0007.255");
    row(99999999, 99, "9999.9999.99");
    row(123456789, 1, "1234.56789.01");
    row(2147483648, 1, "-214.7483648.01");
    row(4294967295, 1, "-000.0001.01");
}

void ZKMandatoryEepromBlockTest::partNumbers()
{
    QFETCH(quint32, number);
    QFETCH(int, variant);
    Body body;
    body.partNumber = number;
    body.variant = static_cast<quint8>(variant);
    QTEST(Parsed(body).GetPartNumberText(), "text");
}

void ZKMandatoryEepromBlockTest::bytesAsTwoDigits_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("text");
    QTest::newRow("0") << 0 << "00";
    QTest::newRow("9") << 9 << "09";
    QTest::newRow("99") << 99 << "99";
    QTest::newRow("100") << 100 << "100";
    QTest::newRow("255") << 255 << "255";
}

void ZKMandatoryEepromBlockTest::bytesAsTwoDigits()
{
    QFETCH(int, number);
    Body variant;
    variant.variant = static_cast<quint8>(number);
    QTEST(Parsed(variant).GetVariantText(), "text");
    Body hwCode;
    hwCode.hwCode = static_cast<quint8>(number);
    QTEST(Parsed(hwCode).GetHwCodeText(), "text");
}

void ZKMandatoryEepromBlockTest::indices_data()
{
    QTest::addColumn<int>("hundredths");
    QTest::addColumn<QString>("text");
    const auto row = [](int hundredths, const char* text) {
        QTest::newRow(text) << hundredths << QString::fromLatin1(text);
    };
    row(105, "01.05");
    row(123, "01.23");
    row(0, "00.00");
    row(9999, "99.99");
    row(10000, "100.00");
    row(32767, "327.67");
    row(-1, "00.-1");
    row(-99, "00.-99");
    row(-100, "-1.00");
    row(-105, "-1.-5");
    row(-32768, "-327.-68");
}

void ZKMandatoryEepromBlockTest::indices()
{
    QFETCH(int, hundredths);
    Body product;
    product.productIndex = static_cast<qint16>(hundredths);
    QTEST(Parsed(product).GetProductIndexText(), "text");
    QCOMPARE(Parsed(product).GetTestInstructionIndexText(), "00.00");
    Body test;
    test.testInstructionIndex = static_cast<qint16>(hundredths);
    QTEST(Parsed(test).GetTestInstructionIndexText(), "text");
    QCOMPARE(Parsed(test).GetProductIndexText(), "00.00");
}

void ZKMandatoryEepromBlockTest::dates_data()
{
    QTest::addColumn<int>("date");
    QTest::addColumn<QString>("text");
    const auto row = [](int date, const char* text) {
        QTest::newRow(text) << date << QString::fromLatin1(text);
    };
    row(Date(46, 3, 9), "2026-03-09");
    row(0, "1980-00-00");
    row(Date(127, 0, 0), "2107-00-00");
    row(Date(0, 15, 0), "1980-15-00");
    row(Date(0, 0, 31), "1980-00-31");
    row(65535, "2107-15-31");
}

void ZKMandatoryEepromBlockTest::dates()
{
    QFETCH(int, date);
    Body body;
    body.productionDate = static_cast<quint16>(date);
    QTEST(Parsed(body).GetProductionDateText(), "text");
}

void ZKMandatoryEepromBlockTest::names_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    QTest::newRow("all fourteen characters") << QByteArray("ABCDEFGHIJKLMN") << "ABCDEFGHIJKLMN";
    QTest::newRow("a zero inside is passed over")
        << QByteArray("AB\0CD\0\0\0\0\0\0\0\0\0", 14) << "ABCD";
    QTest::newRow("a zero in front is passed over") << QByteArray("\0X", 2) << "X";
    QTest::newRow("bytes from 128 on are passed over")
        << QByteArray("A\x7F\x80\xE4\xFFZ") << "A\u007FZ";
    QTest::newRow("control characters stay") << QByteArray("\x01\n") << "\u0001\n";
    QTest::newRow("erased") << QByteArray(14, '\xFF') << QString();
}

void ZKMandatoryEepromBlockTest::names()
{
    QFETCH(QByteArray, bytes);
    Body body;
    body.name = bytes;
    QTEST(Parsed(body).GetNameText(), "text");
}

void ZKMandatoryEepromBlockTest::zerosGiveTheirTexts()
{
    QCOMPARE(TextsOf(Parsed(Body())), (QStringList{QString(), "000000/000", "0000.0000.00", "00",
                                          "00", "00.00", "00.00", "1980-00-00"}));
}

void ZKMandatoryEepromBlockTest::aTextChangesNothing()
{
    Body body;
    body.serialNumber = 4000000000;
    body.productIndex = -7;
    body.name = "NAME";
    const CZKMandatoryEepromBlock block = Parsed(body);
    const QStringList first = TextsOf(block);
    QCOMPARE(TextsOf(block), first);
}

void ZKMandatoryEepromBlockTest::theLimitsOfEachFieldPrintAsTheLibraryPrints()
{
    for (const quint32 number : {0U, 1U, 99999999U, 100000000U, 999999U, 1000000U, 999999999U,
             1000000000U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
        for (const int small : {0, 1, 9, 10, 99, 100, 127, 128, 255}) {
            for (const int index : {0, 1, 99, 100, 9999, 10000, 32767, -1, -99, -100, -32768}) {
                const Body body{number, quint8(small), quint8(255 - small), qint16(index),
                    0xFFFFFFFFU - number, quint16(index), qint16(-(index + 1)),
                    QByteArray(14, char(small))};
                QCOMPARE(TextsOf(Parsed(body)), FormattedByTheLibrary(body));
            }
        }
    }
}

void ZKMandatoryEepromBlockTest::randomBlocksPrintAsTheLibraryPrints()
{
    constexpr int Blocks = VX440_RANDOM_BLOCKS;
    std::mt19937 random(440); // the same blocks in every run
    const auto any = [&random] { return quint32(random()); };
    int negativeSerials = 0;
    int negativeIndices = 0;
    for (int i = 0; i < Blocks; ++i) {
        // Every length of a number, and not the long ones alone.
        const quint32 serial = any() >> any() % 32;
        const quint32 part = any() >> any() % 32;
        Body body{part, quint8(any()), quint8(any()), qint16(any()), serial, quint16(any()),
            qint16(any()), QByteArray(14, '\0')};
        for (char& character : body.name) {
            character = char(any());
        }
        const QStringList texts = TextsOf(Parsed(body));
        if (texts != FormattedByTheLibrary(body)) {
            QCOMPARE(texts, FormattedByTheLibrary(body));
        }
        negativeSerials += serial > 2147483647;
        negativeIndices += body.productIndex < 0 && body.testInstructionIndex < 0;
    }
    QVERIFY(negativeSerials > Blocks / 200);
    QVERIFY(negativeIndices > Blocks / 10);
}

QTEST_APPLESS_MAIN(ZKMandatoryEepromBlockTest)

#include "ZKMandatoryEepromBlockTest.moc"
