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
    void anImageOfThisSizeHasTheseBlocks_data()
    {
        QTest::addColumn<int>("imageSize");
        QTest::addColumn<quint32>("streamSize");
        QTest::addColumn<QVector<int>>("lengths");
        QTest::newRow("no byte") << 0 << 64U << QVector<int>{64};
        QTest::newRow("1") << 1 << 65U << QVector<int>{65};
        QTest::newRow("1135") << 1135 << 1199U << QVector<int>{1199};
        QTest::newRow("1136: one full block") << 1136 << 1200U << QVector<int>{1200};
        QTest::newRow("1137: a second block of 1") << 1137 << 1201U << QVector<int>{1200, 1};
        QTest::newRow("1200") << 1200 << 1264U << QVector<int>{1200, 64};
        QTest::newRow("2336: two full blocks") << 2336 << 2400U << QVector<int>{1200, 1200};
    }
    void anImageOfThisSizeHasTheseBlocks()
    {
        QFETCH(int, imageSize);
        const QByteArray image(imageSize, 'x');
        const FirmwareStream stream(image);
        QTEST(stream.Size(), "streamSize");
        QTEST(DataLengths(stream), "lengths");
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
};

QTEST_GUILESS_MAIN(FirmwareStreamTest)
#include "FirmwareStreamTest.moc"
