#include "simulator/FirmwareTransfer.h"
#include "tests/simulator/FirmwareBlocks.h"

#include <QtTest>

using namespace firmwarestream;
using simulator::FirmwareTransfer;

class FirmwareTransferTest : public QObject
{
    Q_OBJECT

private slots:
    void anImageOfAnySizeIsTaken_data();
    void anImageOfAnySizeIsTaken();
    void aFirstBlockIsRefusedWithAWrongByte_data();
    void aFirstBlockIsRefusedWithAWrongByte();
    void aBlockOfAnotherSizeIsRefused();
    void aDataLengthOf1201IsRefused();
    void aDataLengthOf0IsRefused();
    void aLaterBlockWithAnotherNumberIsRefused_data();
    void aLaterBlockWithAnotherNumberIsRefused();
    void aFirstBlockShorterThanTheHeadIsRefused();
    void moreThanTheHeadNamesIsRefused();
    void aBlockBehindOneThatWasNotFullIsRefused();
    void aRefusedBlockCanBeSentAgain();
    void blockZeroBeginsAnew();
    void aWrongChecksumIsNotWhole_data();
    void aWrongChecksumIsNotWhole();
    void anImageThatIsNotCompleteIsNotWhole();
    void aChecksumWithoutBlocksIsNotWhole();
    void aSpentImageIsNotWhole();
};

namespace {

void TakeAll(FirmwareTransfer& transfer, const QByteArray& image)
{
    for (const QByteArray& block : Blocks(image)) {
        QVERIFY(transfer.TakeBlock(block));
    }
}

} // namespace

void FirmwareTransferTest::anImageOfAnySizeIsTaken_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("blocks");
    QTest::addRow("empty: one block of 64") << 0 << 1;
    QTest::addRow("1136 bytes: one full block") << 1136 << 1;
    QTest::addRow("1137 bytes: a second block of 1") << 1137 << 2;
    QTest::addRow("1200 bytes") << 1200 << 2;
    QTest::addRow("2336 bytes: two full blocks") << 2336 << 2;
    QTest::addRow("200000 bytes") << 200000 << 167;
}

void FirmwareTransferTest::anImageOfAnySizeIsTaken()
{
    QFETCH(int, size);
    QFETCH(int, blocks);
    const QByteArray image = Image(size);
    QCOMPARE(Blocks(image).size(), blocks);
    FirmwareTransfer transfer;
    TakeAll(transfer, image);
    QVERIFY(!transfer.IsWhole());
    QVERIFY(transfer.TakeChecksum(Checksum(image)));
    QVERIFY(transfer.IsWhole());
    QCOMPARE(transfer.Image(), image);
}

void FirmwareTransferTest::aFirstBlockIsRefusedWithAWrongByte_data()
{
    QTest::addColumn<int>("offset");
    QTest::addRow("data length") << 1;
    QTest::addRow("sum, high byte") << 2;
    QTest::addRow("sum, low byte") << 3;
    QTest::addRow("number, high byte") << 4;
    QTest::addRow("number, low byte") << 5;
    QTest::addRow("first byte that must be zero") << 6;
    QTest::addRow("last byte that must be zero") << 19;
    QTest::addRow("a byte of the data") << 500;
    QTest::addRow("first byte behind the data") << 20 + 1064;
    QTest::addRow("last byte behind the data") << 1219;
}

void FirmwareTransferTest::aFirstBlockIsRefusedWithAWrongByte()
{
    QFETCH(int, offset);
    QByteArray block = Blocks(Image(1000)).first();
    block[offset] = char(block.at(offset) + 1);
    FirmwareTransfer transfer;
    QVERIFY(!transfer.TakeBlock(block));
    QVERIFY(transfer.Image().isEmpty());
}

void FirmwareTransferTest::aBlockOfAnotherSizeIsRefused()
{
    const QByteArray block = Blocks(Image(1000)).first();
    FirmwareTransfer transfer;
    QVERIFY(!transfer.TakeBlock(block.left(1219)));
    QVERIFY(!transfer.TakeBlock(block + '\0'));
    QVERIFY(!transfer.TakeBlock(QByteArray()));
    QVERIFY(transfer.TakeBlock(block));
}

void FirmwareTransferTest::aDataLengthOf1201IsRefused()
{
    QByteArray block = Blocks(Image(2000)).first();
    block.replace(0, 2, BigEndian(quint16(1201)));
    FirmwareTransfer transfer;
    QVERIFY(!transfer.TakeBlock(block));
}

void FirmwareTransferTest::aDataLengthOf0IsRefused()
{
    FirmwareTransfer transfer;
    QVERIFY(transfer.TakeBlock(Blocks(Image(2000)).first()));
    QVERIFY(!transfer.TakeBlock(Block(QByteArray(), 1)));
}

void FirmwareTransferTest::aLaterBlockWithAnotherNumberIsRefused_data()
{
    QTest::addColumn<int>("number");
    QTest::addRow("the one before") << 1;
    QTest::addRow("one too many") << 3;
    QTest::addRow("the bytes swapped") << 0x0200;
}

void FirmwareTransferTest::aLaterBlockWithAnotherNumberIsRefused()
{
    QFETCH(int, number);
    const QVector<QByteArray> blocks = Blocks(Image(5000));
    FirmwareTransfer transfer;
    QVERIFY(transfer.TakeBlock(blocks.at(0)));
    QVERIFY(transfer.TakeBlock(blocks.at(1)));
    QVERIFY(!transfer.TakeBlock(Block(blocks.at(2).mid(20), number)));
    QVERIFY(transfer.TakeBlock(Block(blocks.at(2).mid(20), 2)));
}

void FirmwareTransferTest::aFirstBlockShorterThanTheHeadIsRefused()
{
    FirmwareTransfer transfer;
    QVERIFY(!transfer.TakeBlock(Block(Stream(QByteArray()).left(63), 0)));
    for (const int nonZero : {0, 2, 7, 63}) {
        QByteArray stream = Stream(Image(100));
        stream[nonZero] = '\1';
        QVERIFY(!transfer.TakeBlock(Block(stream, 0)));
    }
}

void FirmwareTransferTest::moreThanTheHeadNamesIsRefused()
{
    FirmwareTransfer transfer;
    QVERIFY(!transfer.TakeBlock(Block(Stream(Image(100)) + 'x', 0)));

    const QByteArray stream = Stream(Image(1137));
    QVERIFY(transfer.TakeBlock(Block(stream.left(1200), 0)));
    QVERIFY(!transfer.TakeBlock(Block(stream.mid(1200) + 'x', 1)));
    QVERIFY(transfer.TakeBlock(Block(stream.mid(1200), 1)));
    QVERIFY(!transfer.TakeBlock(Block("x", 2)));
}

void FirmwareTransferTest::aBlockBehindOneThatWasNotFullIsRefused()
{
    const QByteArray stream = Stream(Image(3000));
    FirmwareTransfer transfer;
    QVERIFY(transfer.TakeBlock(Block(stream.left(1199), 0)));
    QVERIFY(!transfer.TakeBlock(Block(stream.mid(1199, 1200), 1)));
}

void FirmwareTransferTest::aRefusedBlockCanBeSentAgain()
{
    const QByteArray image = Image(3000);
    FirmwareTransfer transfer;
    for (const QByteArray& block : Blocks(image)) {
        QByteArray broken = block;
        broken[30] = char(broken.at(30) + 1);
        QVERIFY(!transfer.TakeBlock(broken));
        QVERIFY(transfer.TakeBlock(block));
    }
    QVERIFY(transfer.TakeChecksum(Checksum(image)));
}

void FirmwareTransferTest::blockZeroBeginsAnew()
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

void FirmwareTransferTest::aWrongChecksumIsNotWhole_data()
{
    QTest::addColumn<int>("offset");
    for (int offset = 0; offset < 8; ++offset) {
        QTest::addRow("byte %d", offset) << offset;
    }
}

void FirmwareTransferTest::aWrongChecksumIsNotWhole()
{
    QFETCH(int, offset);
    const QByteArray image = Image(3000);
    FirmwareTransfer transfer;
    TakeAll(transfer, image);
    QByteArray checksum = Checksum(image);
    checksum[offset] = char(checksum.at(offset) + 1);
    QVERIFY(!transfer.TakeChecksum(checksum));
    QVERIFY(!transfer.IsWhole());
}

void FirmwareTransferTest::anImageThatIsNotCompleteIsNotWhole()
{
    const QByteArray block = Blocks(Image(3000)).first();
    FirmwareTransfer transfer;
    QVERIFY(transfer.TakeBlock(block));
    const QByteArray fitting =
        BigEndian(quint32(qFromBigEndian<quint16>(block.constData() + 2))) + BigEndian(1200U);
    QVERIFY(!transfer.TakeChecksum(fitting));
}

void FirmwareTransferTest::aChecksumWithoutBlocksIsNotWhole()
{
    FirmwareTransfer transfer;
    QVERIFY(!transfer.TakeChecksum(QByteArray(8, '\0')));
    QVERIFY(!transfer.TakeChecksum(BigEndian(0U) + BigEndian(64U)));
}

void FirmwareTransferTest::aSpentImageIsNotWhole()
{
    const QByteArray image = Image(10);
    FirmwareTransfer transfer;
    TakeAll(transfer, image);
    QVERIFY(transfer.TakeChecksum(Checksum(image)));
    transfer.Spend();
    QVERIFY(!transfer.IsWhole());
    QCOMPARE(transfer.Image(), image);
}

QTEST_APPLESS_MAIN(FirmwareTransferTest)
#include "FirmwareTransferTest.moc"
