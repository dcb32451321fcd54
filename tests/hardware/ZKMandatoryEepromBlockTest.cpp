// SPDX-License-Identifier: MIT

#include "hardware/CZKMandatoryEepromBlock.h"
#include "tests/support/Warnings.h"

#include <QtEndian>
#include <QtTest>

#include <algorithm>
#include <tuple>

namespace {

constexpr int HeaderSize = 8;
constexpr int BodySize = 36;

// A mandatory block of zeros but for these bytes, lowest first.
QVector<uchar> BytesWith(int offset, const QByteArray& bytes)
{
    QVector<uchar> block(HeaderSize + BodySize, 0);
    block[0] = 2;
    std::copy(bytes.cbegin(), bytes.cend(), block.begin() + offset);
    return block;
}

CZKMandatoryEepromBlock Parsed(QVector<uchar> bytes)
{
    CZKEepromBlockHeader header;
    header.ParseHeader(bytes);
    CZKMandatoryEepromBlock block(header);
    block.ParseBody(bytes);
    return block;
}

// All fields but the name, in their order.
QVector<qint64> Numbers(const CZKMandatoryEepromBlock& block)
{
    return {block.BlockType, block.HeaderWord1, block.HeaderWord2, block.HeaderWord3,
        block.BodyWord0, block.PartNumber, block.Variant, block.HwCode, block.ProductIndex,
        block.SerialNumber, block.ProductionDate, block.BodyWord1, block.TestInstructionIndex};
}

QByteArray NameOf(const CZKMandatoryEepromBlock& block)
{
    return QByteArray(reinterpret_cast<const char*>(std::data(block.Name)), 14);
}

QStringList TextsOf(const CZKMandatoryEepromBlock& block)
{
    return {block.GetNameText(), block.GetSerialNumberText(), block.GetPartNumberText(),
        block.GetVariantText(), block.GetHwCodeText(), block.GetProductIndexText(),
        block.GetTestInstructionIndexText(), block.GetProductionDateText()};
}

// The texts of a block of zeros but for one field.
QStringList TextsWith(int offset, const QByteArray& bytes)
{
    return TextsOf(Parsed(BytesWith(offset, bytes)));
}

template<class Number>
QStringList TextsWith(int offset, Number number)
{
    number = qToLittleEndian(number);
    return TextsWith(offset, QByteArray(reinterpret_cast<const char*>(&number), sizeof number));
}

quint16 Date(int yearBits, int month, int day)
{
    return static_cast<quint16>(yearBits * 512 + month * 32 + day);
}

} // namespace

class ZKMandatoryEepromBlockTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void aNewBlockHasTheHeadersWordsAndABodyOfZeros()
    {
        CZKEepromBlockHeader header;
        header.BlockType = 2;
        header.HeaderWord1 = 11;
        header.HeaderWord2 = 12;
        header.HeaderWord3 = 13;
        const CZKMandatoryEepromBlock block(header);
        QCOMPARE(Numbers(block), (QVector<qint64>{2, 11, 12, 13, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
        QCOMPARE(NameOf(block), QByteArray(14, '\0'));
    }

    void everyFieldStandsLittleEndianAtItsOffset()
    {
        QVector<uchar> bytes;
        for (int i = 0; i < HeaderSize + BodySize; ++i) {
            bytes.append(static_cast<uchar>(0x20 + i));
        }
        const CZKMandatoryEepromBlock block = Parsed(bytes);
        QCOMPARE(
            Numbers(block), (QVector<qint64>{0x2120, 0x2322, 0x2524, 0x2726, 0x2B2A2928, 0x2F2E2D2C,
                                0x30, 0x31, 0x3332, 0x37363534, 0x3938, 0x3B3A, 0x3D3C}));
        QCOMPARE(NameOf(block), QByteArray(">?@ABCDEFGHIJK"));
    }

    void aBodyTakes36Bytes()
    {
        for (int size = 0; size <= 56; ++size) {
            CZKMandatoryEepromBlock block{CZKEepromBlockHeader()};
            QVector<uchar> bytes(size, 1);
            const bool enough = size >= 36;
            QCOMPARE(block.ParseBody(bytes), enough);
            QCOMPARE(bytes, QVector<uchar>(enough ? size - 36 : size, 1));
            QCOMPARE(block.PartNumber, enough ? 0x01010101U : 0U);
        }
    }

    void aBlockOf43BytesIsRefusedAndLeaves35()
    {
        QVector<uchar> bytes = BytesWith(0, {}).mid(0, 43);
        CZKEepromBlockHeader header;
        QVERIFY(header.ParseHeader(bytes));
        QCOMPARE(header.GetBlockKind(), 1);
        CZKMandatoryEepromBlock block(header);
        QVERIFY(!block.ParseBody(bytes));
        QCOMPARE(bytes.size(), 35);
    }

    void serialNumbers()
    {
        const std::pair<quint32, const char*> rows[] = {
            {0, "000000/000"},
            {1, "000001/000"},
            {1234, "001234/000"},
            {999999, "999999/000"},
            {1000000, "001000/000"},
            {1234567, "001234/567"},
            {99999999, "099999/999"},
            {100000000, "100000/000"},
            {123456789, "123456/789"},
            {999999999, "999999/999"},
            {1000000000, "100000/0000"},
            {2147483647, "214748/3647"},
            {2147483648, "-21474/83648"},
            {4294967295, "-00000/001"},
        };
        for (const auto& [number, text] : rows) {
            QCOMPARE(TextsWith(20, number).at(1), text);
        }
    }

    void partNumbers()
    {
        const std::tuple<quint32, quint8, const char*> rows[] = {
            {12345678, 2, "1234.5678.02"},
            {0, 0, "0000.0000.00"},
            {7, 255, "0000.0007.255"},
            {99999999, 99, "9999.9999.99"},
            {123456789, 1, "1234.56789.01"},
            {100000000, 10, "1000.00000.10"},
            {2147483647, 100, "2147.483647.100"},
            {2147483648, 1, "-214.7483648.01"},
            {4294967295, 1, "-000.0001.01"},
        };
        for (const auto& [number, variant, text] : rows) {
            QCOMPARE(TextsWith<quint64>(12, number | quint64(variant) << 32).at(2), text);
        }
    }

    void bytesAsTwoDigits()
    {
        const std::pair<quint8, const char*> rows[] = {
            {0, "00"}, {9, "09"}, {99, "99"}, {100, "100"}, {255, "255"}};
        for (const auto& [number, text] : rows) {
            QCOMPARE(TextsWith(16, number).mid(3, 2), (QStringList{text, "00"}));
            QCOMPARE(TextsWith(17, number).mid(3, 2), (QStringList{"00", text}));
        }
    }

    void indices()
    {
        const std::pair<qint16, const char*> rows[] = {{105, "01.05"}, {123, "01.23"}, {0, "00.00"},
            {9999, "99.99"}, {10000, "100.00"}, {32767, "327.67"}, {-1, "00.-1"}, {-99, "00.-99"},
            {-100, "-1.00"}, {-105, "-1.-5"}, {-32768, "-327.-68"}};
        for (const auto& [hundredths, text] : rows) {
            QCOMPARE(TextsWith(18, hundredths).mid(5, 2), (QStringList{text, "00.00"}));
            QCOMPARE(TextsWith(28, hundredths).mid(5, 2), (QStringList{"00.00", text}));
        }
    }

    void dates()
    {
        const std::pair<quint16, const char*> rows[] = {{Date(46, 3, 9), "2026-03-09"},
            {0, "1980-00-00"}, {Date(127, 0, 0), "2107-00-00"}, {Date(0, 15, 0), "1980-15-00"},
            {Date(0, 0, 31), "1980-00-31"}, {65535, "2107-15-31"}};
        for (const auto& [date, text] : rows) {
            QCOMPARE(TextsWith(24, date).at(7), text);
        }
    }

    // Zeros and bytes from 128 on are passed over; control characters stay.
    void names()
    {
        const std::pair<QByteArray, const char*> rows[] = {
            {"ABCDEFGHIJKLMN", "ABCDEFGHIJKLMN"},
            {QByteArray("AB\0CD\0\0\0\0\0\0\0\0\0", 14), "ABCD"},
            {QByteArray("\0X", 2), "X"},
            {"A\x7F\x80\xE4\xFFZ", "A\x7FZ"},
            {QByteArray(14, '\xFF'), ""},
        };
        for (const auto& [bytes, text] : rows) {
            QCOMPARE(TextsWith(30, bytes).first(), text);
        }
        for (int character = 0; character <= 255; ++character) {
            const bool stays = character > 0 && character < 128;
            QCOMPARE(TextsWith(30, QByteArray(14, char(character))).first(),
                QString(stays ? 14 : 0, QChar(character)));
        }
    }

    void zerosGiveTheirTexts()
    {
        QCOMPARE(
            TextsOf(Parsed(BytesWith(0, {}))), (QStringList{"", "000000/000", "0000.0000.00", "00",
                                                   "00", "00.00", "00.00", "1980-00-00"}));
    }

    void aTextChangesNothing()
    {
        const CZKMandatoryEepromBlock block = Parsed(BytesWith(8, QByteArray(36, '\xAB')));
        const QStringList first = TextsOf(block);
        QCOMPARE(TextsOf(block), first);
    }
};

QTEST_GUILESS_MAIN(ZKMandatoryEepromBlockTest)

#include "ZKMandatoryEepromBlockTest.moc"
