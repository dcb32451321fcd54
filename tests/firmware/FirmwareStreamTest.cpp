// SPDX-License-Identifier: MIT

#include "firmware/FirmwareStream.h"
#include "tests/support/Warnings.h"

#include <QtTest>

namespace {

QByteArray BytesOf(const FirmwareStream& stream, quint32 from, quint32 length)
{
    QByteArray bytes;
    for (quint32 position = from; position < from + length; ++position) {
        bytes.append(static_cast<char>(stream.At(position)));
    }
    return bytes;
}

QVector<int> DataLengths(const FirmwareStream& stream)
{
    QVector<int> lengths;
    for (quint32 block = 0; block < stream.BlockCount(); ++block) {
        lengths.append(stream.DataLength(block));
    }
    return lengths;
}

} // namespace

class FirmwareStreamTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void anImageOfThisSizeHasTheseBlocks()
    {
        const QMap<int, QVector<int>> lengthsOfSize{{0, {64}}, {1, {65}}, {1135, {1199}},
            {1136, {1200}}, {1137, {1200, 1}}, {1200, {1200, 64}}, {2336, {1200, 1200}}};
        for (const int size : lengthsOfSize.keys()) {
            const QByteArray image(size, 'x');
            const FirmwareStream stream(image);
            QCOMPARE(stream.Size(), quint32(size + 64));
            QCOMPARE(DataLengths(stream), lengthsOfSize.value(size));
        }
    }

    void theBlockCountHasSixteenBits()
    {
        const QByteArray image(65536 * 1200 + 1200 - 64, '\0');
        QCOMPARE(int(FirmwareStream(image).BlockCount()), 1);
    }

    void theHeadIsZeroButForTheBigEndianLengthAtThree()
    {
        const QByteArray image(0x0001A2B3, 'x');
        QCOMPARE(BytesOf(FirmwareStream(image), 0, 64),
            QByteArray::fromHex("0000000001A2B3") + QByteArray(57, '\0'));
    }

    void theImageFollowsTheHeadUnchangedAndZerosFollowIt()
    {
        const QByteArray image = QByteArray::fromHex("00FF800D7F");
        QCOMPARE(BytesOf(FirmwareStream(image), 62, 10),
            QByteArray::fromHex("0000") + image + QByteArray::fromHex("000000"));
    }

    void whatStandsBehindTheImageInMemoryIsNotOfTheStream()
    {
        const QByteArray image = QByteArray::fromRawData("abcXYZ", 3);
        QCOMPARE(BytesOf(FirmwareStream(image), 64, 5), QByteArray("abc\0\0", 5));
    }
};

QTEST_GUILESS_MAIN(FirmwareStreamTest)
#include "FirmwareStreamTest.moc"
