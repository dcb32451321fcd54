// SPDX-License-Identifier: MIT

#include "hardware/CZKEepromBlockHeader.h"
#include "tests/support/Warnings.h"

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

QVector<int> Words(const CZKEepromBlockHeader& header)
{
    return {header.BlockType, header.HeaderWord1, header.HeaderWord2, header.HeaderWord3};
}

const QVector<int> CountedWords{0x8281, 0x8483, 0x8685, 0x8887};

} // namespace

class ZKEepromBlockHeaderTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void aNewHeaderHoldsZeros()
    {
        const CZKEepromBlockHeader header;
        QCOMPARE(Words(header), QVector<int>(4));
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
        CZKEepromBlockHeader::ConsumeByte(bytes); // the last one can be taken
        QVERIFY(bytes.isEmpty());
    }

    void aHeaderTakesEightBytes()
    {
        for (const int size : {8, 44}) {
            QVector<uchar> bytes = Counted(size);
            const QVector<uchar> callersOtherCopy = bytes;
            CZKEepromBlockHeader header;
            QVERIFY(header.ParseHeader(bytes));
            QCOMPARE(Words(header), CountedWords);
            QCOMPARE(bytes, Counted(size).mid(8));
            QCOMPARE(callersOtherCopy, Counted(size));
        }
    }

    void fewerThanEightBytesAreLeftAlone()
    {
        for (int size = 0; size < 8; ++size) {
            QVector<uchar> bytes = Counted(size);
            CZKEepromBlockHeader header;
            header.BlockType = 2;
            QVERIFY(!header.ParseHeader(bytes));
            QCOMPARE(bytes, Counted(size));
            QCOMPARE(Words(header), (QVector<int>{2, 0, 0, 0}));
        }
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
        QCOMPARE(Words(made), CountedWords);
        QCOMPARE(Words(assigned), CountedWords);
    }
};

QTEST_GUILESS_MAIN(ZKEepromBlockHeaderTest)

#include "ZKEepromBlockHeaderTest.moc"
