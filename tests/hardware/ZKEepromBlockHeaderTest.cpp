#include "hardware/CZKEepromBlockHeader.h"

#include <QtTest>

namespace {

QVector<uchar> Counted(int size)
{
    QVector<uchar> bytes;
    for (int i = 0; i < size; ++i) {
        bytes.append(static_cast<uchar>(0x81 + i));
    }
    return bytes;
}

} // namespace

class ZKEepromBlockHeaderTest : public QObject
{
    Q_OBJECT

private slots:
    void aNewHeaderHoldsZeros()
    {
        const CZKEepromBlockHeader header;
        QCOMPARE(int(header.BlockType), 0);
        QCOMPARE(int(header.HeaderWord1), 0);
        QCOMPARE(int(header.HeaderWord2), 0);
        QCOMPARE(int(header.HeaderWord3), 0);
        QCOMPARE(header.GetBlockKind(), 0);
    }

    void aNumberIsTakenLowestByteFirstOffTheFront()
    {
        QVector<uchar> bytes = Counted(8);
        QCOMPARE(uint(CZKEepromBlockHeader::ConsumeByte(bytes)), 0x81U);
        QCOMPARE(bytes.size(), 7);
        QCOMPARE(uint(CZKEepromBlockHeader::ConsumeWord(bytes)), 0x8382U);
        QCOMPARE(bytes.size(), 5);
        QCOMPARE(uint(CZKEepromBlockHeader::ConsumeDword(bytes)), 0x87868584U);
        QCOMPARE(bytes, QVector<uchar>{0x88});
    }

    void theLastBytesCanBeTaken()
    {
        QVector<uchar> byte = Counted(1);
        QVector<uchar> word = Counted(2);
        QVector<uchar> dword = Counted(4);
        CZKEepromBlockHeader::ConsumeByte(byte);
        CZKEepromBlockHeader::ConsumeWord(word);
        CZKEepromBlockHeader::ConsumeDword(dword);
        QVERIFY(byte.isEmpty() && word.isEmpty() && dword.isEmpty());
    }

    void aHeaderTakesEightBytes_data()
    {
        QTest::addColumn<int>("size");
        QTest::newRow("exactly") << 8;
        QTest::newRow("with bytes behind them") << 44;
    }
    void aHeaderTakesEightBytes()
    {
        QFETCH(int, size);
        QVector<uchar> bytes = Counted(size);
        CZKEepromBlockHeader header;
        QVERIFY(header.ParseHeader(bytes));
        QCOMPARE(uint(header.BlockType), 0x8281U);
        QCOMPARE(uint(header.HeaderWord1), 0x8483U);
        QCOMPARE(uint(header.HeaderWord2), 0x8685U);
        QCOMPARE(uint(header.HeaderWord3), 0x8887U);
        QCOMPARE(bytes, Counted(size).mid(8));
    }

    void fewerThanEightBytesAreLeftAlone()
    {
        for (int size = 0; size < 8; ++size) {
            QVector<uchar> bytes = Counted(size);
            CZKEepromBlockHeader header;
            header.BlockType = 2;
            QVERIFY(!header.ParseHeader(bytes));
            QCOMPARE(bytes, Counted(size));
            QCOMPARE(int(header.BlockType), 2);
        }
    }

    void theCallersOtherCopyOfTheBytesStays()
    {
        QVector<uchar> bytes = Counted(44);
        const QVector<uchar> copy = bytes;
        CZKEepromBlockHeader().ParseHeader(bytes);
        QCOMPARE(copy, Counted(44));
    }

    void everyStoredCodeIsOfItsKind()
    {
        const QMap<int, int> kinds{{2, 1}, {100, 2}, {110, 3}, {120, 4}, {200, 5}, {300, 6}};
        CZKEepromBlockHeader header;
        for (int code = 0; code <= 65535; ++code) {
            header.BlockType = static_cast<quint16>(code);
            QCOMPARE(header.GetBlockKind(), kinds.value(code, 0));
        }
    }

    void aHeaderCanBeCopied()
    {
        CZKEepromBlockHeader header;
        QVector<uchar> bytes = Counted(8);
        QVERIFY(header.ParseHeader(bytes));
        const CZKEepromBlockHeader made(header);
        CZKEepromBlockHeader assigned;
        assigned = header;
        for (const CZKEepromBlockHeader& copy : {made, assigned}) {
            QCOMPARE(uint(copy.BlockType), 0x8281U);
            QCOMPARE(uint(copy.HeaderWord1), 0x8483U);
            QCOMPARE(uint(copy.HeaderWord2), 0x8685U);
            QCOMPARE(uint(copy.HeaderWord3), 0x8887U);
        }
    }
};

QTEST_APPLESS_MAIN(ZKEepromBlockHeaderTest)

#include "ZKEepromBlockHeaderTest.moc"
