// SPDX-License-Identifier: MIT

#include "simulator/FirmwareTransfer.h"
#include "tests/simulator/FirmwareBlocks.h"
#include "tests/support/Warnings.h"

#include <QtTest>

using namespace firmwarestream;
using simulator::FirmwareTransfer;

namespace {

void TakeAll(FirmwareTransfer& transfer, const QByteArray& image)
{
    for (const QByteArray& block : Blocks(image)) {
        QVERIFY(transfer.TakeBlock(block));
    }
}

QByteArray WithNextByte(QByteArray bytes, int offset)
{
    bytes[offset] = char(bytes.at(offset) + 1);
    return bytes;
}

} // namespace

class FirmwareTransferTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void anImageOfAnySizeIsTaken()
    {
        const QPair<int, int> sizesAndBlocks[] = {
            {0, 1}, {1136, 1}, {1137, 2}, {1200, 2}, {2336, 2}, {200000, 167}};
        for (const auto& row : sizesAndBlocks) {
            const QByteArray image = Image(row.first);
            QCOMPARE(Blocks(image).size(), row.second);
            FirmwareTransfer transfer;
            TakeAll(transfer, image);
            QVERIFY(!transfer.IsWhole());
            QVERIFY(transfer.TakeChecksum(Checksum(image)));
            QVERIFY(transfer.IsWhole());
            QCOMPARE(transfer.Image(), image);
        }
    }

    // Of 1064 bytes of data: their length, both bytes of their sum and of the number, the bytes
    // that are zero, the data, and what is zero behind them.
    void aFirstBlockIsRefusedWithAWrongByte()
    {
        const QByteArray block = Blocks(Image(1000)).first();
        for (const int offset : {1, 2, 3, 4, 5, 6, 19, 500, 20 + 1064, 1219}) {
            FirmwareTransfer transfer;
            const bool isTaken = transfer.TakeBlock(WithNextByte(block, offset));
            QVERIFY2(!isTaken && transfer.Image().isEmpty(), qPrintable(QString::number(offset)));
        }
    }

    void aBlockOfAnotherSizeIsRefused()
    {
        const QByteArray block = Blocks(Image(1000)).first();
        FirmwareTransfer transfer;
        QVERIFY(!transfer.TakeBlock(block.left(1219)));
        QVERIFY(!transfer.TakeBlock(block + '\0'));
        QVERIFY(!transfer.TakeBlock(QByteArray()));
        QVERIFY(transfer.TakeBlock(block));
    }

    void aDataLengthOf0OrOf1201IsRefused()
    {
        const QByteArray block = Blocks(Image(2000)).first();
        FirmwareTransfer transfer;
        QVERIFY(!transfer.TakeBlock(QByteArray(block).replace(0, 2, BigEndian(quint16(1201)))));
        QVERIFY(transfer.TakeBlock(block));
        QVERIFY(!transfer.TakeBlock(Block(QByteArray(), 1)));
    }

    void aLaterBlockWithAnotherNumberIsRefused()
    {
        const QVector<QByteArray> blocks = Blocks(Image(5000));
        const QByteArray data = blocks.at(2).mid(20);
        FirmwareTransfer transfer;
        QVERIFY(transfer.TakeBlock(blocks.at(0)));
        QVERIFY(transfer.TakeBlock(blocks.at(1)));
        for (const int number : {1, 3, 0x0200}) {
            QVERIFY(!transfer.TakeBlock(Block(data, number)));
        }
        QVERIFY(transfer.TakeBlock(Block(data, 2)));
    }

    void aFirstBlockWithoutAWholeHeadIsRefused()
    {
        FirmwareTransfer transfer;
        QVERIFY(!transfer.TakeBlock(Block(Stream(QByteArray()).left(63), 0)));
        for (const int nonZero : {0, 2, 7, 63}) {
            QByteArray stream = Stream(Image(100));
            stream[nonZero] = '\1';
            QVERIFY(!transfer.TakeBlock(Block(stream, 0)));
        }
    }

    void moreThanTheHeadNamesIsRefused()
    {
        FirmwareTransfer transfer;
        QVERIFY(!transfer.TakeBlock(Block(Stream(Image(100)) + 'x', 0)));

        const QByteArray stream = Stream(Image(1137));
        QVERIFY(transfer.TakeBlock(Block(stream.left(1200), 0)));
        QVERIFY(!transfer.TakeBlock(Block(stream.mid(1200) + 'x', 1)));
        QVERIFY(transfer.TakeBlock(Block(stream.mid(1200), 1)));
        QVERIFY(!transfer.TakeBlock(Block("x", 2)));
    }

    void aBlockBehindOneThatWasNotFullIsRefused()
    {
        const QByteArray stream = Stream(Image(3000));
        FirmwareTransfer transfer;
        QVERIFY(transfer.TakeBlock(Block(stream.left(1199), 0)));
        QVERIFY(!transfer.TakeBlock(Block(stream.mid(1199, 1200), 1)));
    }

    void aRefusedBlockCanBeSentAgain()
    {
        const QByteArray image = Image(3000);
        FirmwareTransfer transfer;
        for (const QByteArray& block : Blocks(image)) {
            QVERIFY(!transfer.TakeBlock(WithNextByte(block, 30)));
            QVERIFY(transfer.TakeBlock(block));
        }
        QVERIFY(transfer.TakeChecksum(Checksum(image)));
    }

    void blockZeroBeginsAnew()
    {
        const QByteArray image = Image(2000);
        FirmwareTransfer transfer;
        QVERIFY(transfer.TakeBlock(Blocks(Image(7777)).at(0)));
        QVERIFY(transfer.TakeBlock(Blocks(Image(7777)).at(1)));
        TakeAll(transfer, image);
        QVERIFY(transfer.TakeChecksum(Checksum(image)));
        QCOMPARE(transfer.Image(), image);
        QVERIFY(transfer.TakeBlock(Blocks(image).first()));
        QVERIFY(!transfer.IsWhole());
    }

    void aWrongChecksumIsNotWhole()
    {
        const QByteArray image = Image(3000);
        for (int offset = 0; offset < 8; ++offset) {
            FirmwareTransfer transfer;
            TakeAll(transfer, image);
            QVERIFY(!transfer.TakeChecksum(WithNextByte(Checksum(image), offset)));
            QVERIFY(!transfer.IsWhole());
        }
    }

    void aPartOfAnImageIsNotWhole()
    {
        FirmwareTransfer transfer;
        QVERIFY(!transfer.TakeChecksum(QByteArray(8, '\0')));
        QVERIFY(!transfer.TakeChecksum(BigEndian(0U) + BigEndian(64U)));
        const QByteArray block = Blocks(Image(3000)).first();
        QVERIFY(transfer.TakeBlock(block));
        const QByteArray fitting = QByteArray(2, '\0') + block.mid(2, 2) + BigEndian(1200U);
        QVERIFY(!transfer.TakeChecksum(fitting));
    }

    void aSpentImageIsNotWhole()
    {
        const QByteArray image = Image(10);
        FirmwareTransfer transfer;
        TakeAll(transfer, image);
        QVERIFY(transfer.TakeChecksum(Checksum(image)));
        transfer.Spend();
        QVERIFY(!transfer.IsWhole());
        QCOMPARE(transfer.Image(), image);
    }
};

QTEST_APPLESS_MAIN(FirmwareTransferTest)
#include "FirmwareTransferTest.moc"
