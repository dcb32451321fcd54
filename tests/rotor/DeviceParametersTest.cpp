#include "rotor/CDeviceParameters.h"

#include <QtTest>

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <memory>
#include <random>

namespace {

using Accessor = ushort (CDeviceParameters::*)(short) const;

// Accessor n reads parameter n.
constexpr std::array<Accessor, 12> Accessors{
    &CDeviceParameters::GetSlowMotionDifference,
    &CDeviceParameters::GetMotionHangUpDifference,
    &CDeviceParameters::GetStepDifference,
    &CDeviceParameters::GetStepSleep,
    &CDeviceParameters::GetPulseDuration,
    &CDeviceParameters::GetMaxPositionDifference,
    &CDeviceParameters::GetMaxPositionFromRight,
    &CDeviceParameters::GetMaxPositionFromLeft,
    &CDeviceParameters::GetMaxMotionHangUpLoop,
    &CDeviceParameters::GetLoopsInside,
    &CDeviceParameters::GetSlowMotionSpeed,
    &CDeviceParameters::GetRotorType,
};

constexpr std::array<const char*, 12> AccessorNames{
    "GetSlowMotionDifference",
    "GetMotionHangUpDifference",
    "GetStepDifference",
    "GetStepSleep",
    "GetPulseDuration",
    "GetMaxPositionDifference",
    "GetMaxPositionFromRight",
    "GetMaxPositionFromLeft",
    "GetMaxMotionHangUpLoop",
    "GetLoopsInside",
    "GetSlowMotionSpeed",
    "GetRotorType",
};

constexpr float OldFirmware = 2.99F;
constexpr float NewFirmware = 3.0F;
constexpr int OldBlockSize = 67;
constexpr int NewBlockSize = 75;

// No byte is twice in it, so that a wrong place cannot give the right value.
QByteArray CountingBlock(int size)
{
    QByteArray block(size, '\0');
    for (int i = 0; i < size; ++i) {
        block[i] = char(i + 100);
    }
    return block;
}

ushort* WordsOf(QByteArray& block)
{
    return reinterpret_cast<ushort*>(block.data());
}

// What the unit's manual says of a block, put in the plainest words.
struct Decoded
{
    int words[2][12];
    QString subnetMask;
    QByteArray blockAfterwards;
};

Decoded DecodeOld(const QByteArray& block)
{
    Decoded decoded{{}, QString(), block};
    const auto byte = [&](int offset) { return int(uchar(block.at(offset))); };
    for (int id = 0; id < 10; ++id) {
        decoded.words[0][id] = byte(2 * id) * 256 + byte(2 * id + 1);
        decoded.words[1][id] = byte(20 + 2 * id) * 256 + byte(21 + 2 * id);
    }
    for (auto& words : decoded.words) {
        words[10] = 0;
        words[11] = 65535;
    }
    decoded.subnetMask = QString::asprintf("%d.%d.%d.%d", byte(50), byte(51), byte(52), byte(53));
    for (const int offset : {46, 48, 50, 52}) {
        decoded.blockAfterwards[offset] = block.at(offset + 1);
        decoded.blockAfterwards[offset + 1] = block.at(offset);
    }
    return decoded;
}

Decoded DecodeNew(const QByteArray& block)
{
    Decoded decoded{{}, QString(), block};
    const auto byte = [&](int offset) { return int(uchar(block.at(offset))); };
    for (int id = 0; id < 12; ++id) {
        decoded.words[0][id] = byte(2 * id) * 256 + byte(2 * id + 1);
        decoded.words[1][id] = byte(24 + 2 * id) * 256 + byte(25 + 2 * id);
    }
    decoded.subnetMask = QString::asprintf("%d.%d.%d.%d", byte(58), byte(59), byte(60), byte(61));
    for (const int offset : {54, 56, 58, 60}) {
        decoded.blockAfterwards[offset] = block.at(offset + 1);
        decoded.blockAfterwards[offset + 1] = block.at(offset);
    }
    return decoded;
}

// Empty when both agree, else the first thing that they do not agree on.
QString DifferenceTo(const Decoded& expected, const CDeviceParameters& parameters)
{
    for (short motor = 0; motor < 2; ++motor) {
        for (int id = 0; id < 12; ++id) {
            const int value = (parameters.*Accessors[id])(motor);
            if (value != expected.words[motor][id]) {
                return QString::asprintf("motor %d, %s: %d instead of %d", motor, AccessorNames[id],
                    value, expected.words[motor][id]);
            }
        }
    }
    if (parameters.GetSubnetMask() != expected.subnetMask) {
        return parameters.GetSubnetMask() + QString(" instead of ") + expected.subnetMask;
    }
    return QString();
}

} // namespace

class DeviceParametersTest : public QObject
{
    Q_OBJECT

private slots:
    void theFirmwareTextSelectsTheLayout_data()
    {
        QTest::addColumn<QString>("version");
        QTest::addColumn<int>("words");
        QTest::addColumn<int>("bytes");
        const auto add = [](const char* name, const char* version, int words, int bytes) {
            QTest::newRow(name) << QString::fromLatin1(version) << words << bytes;
        };
        add("2.99 is old", "2.99", 10, 67);
        add("3.0 is new", "3.0", 12, 75);
        add("3.01 is new", "3.01", 12, 75);
        add("3.10 with the carriage return of the answer is new", "3.10\r", 12, 75);
        add("2.99 with the carriage return of the answer is old", "2.99\r", 10, 67);
        add("an empty text is old", "", 10, 67);
        add("no number is old", "V3.10", 10, 67);
        add("a second point is old", "3.1.0", 10, 67);
        add("a negative number is old", "-3.5", 10, 67);
    }
    void theFirmwareTextSelectsTheLayout()
    {
        QFETCH(QString, version);
        const CDeviceParameters parameters(version.toFloat());
        QTEST(int(parameters.GetParameterCount()), "words");
        QTEST(int(parameters.GetDeviceBlockSize()), "bytes");
    }

    void aParameterStandsBigEndianAtItsOffset_data()
    {
        QTest::addColumn<float>("firmware");
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("offset");
        QTest::addColumn<int>("motor");
        QTest::addColumn<int>("id");
        for (int motor = 0; motor < 2; ++motor) {
            for (int id = 0; id < 10; ++id) {
                QTest::addRow("old, motor %d, %s", motor, AccessorNames[id])
                    << OldFirmware << OldBlockSize << motor * 20 + id * 2 << motor << id;
            }
            for (int id = 0; id < 12; ++id) {
                QTest::addRow("new, motor %d, %s", motor, AccessorNames[id])
                    << NewFirmware << NewBlockSize << motor * 24 + id * 2 << motor << id;
            }
        }
    }
    void aParameterStandsBigEndianAtItsOffset()
    {
        QFETCH(float, firmware);
        QFETCH(int, size);
        QFETCH(int, offset);
        QFETCH(int, motor);
        QFETCH(int, id);
        QByteArray block(size, '\0');
        block[offset] = '\x01';
        block[offset + 1] = '\xF4';

        CDeviceParameters parameters(firmware);
        parameters.ParseDeviceBlock(WordsOf(block));

        for (int otherMotor = 0; otherMotor < 2; ++otherMotor) {
            for (int otherId = 0; otherId < parameters.GetParameterCount(); ++otherId) {
                const int expected = otherMotor == motor && otherId == id ? 500 : 0;
                QCOMPARE(int((parameters.*Accessors[otherId])(short(otherMotor))), expected);
            }
        }
    }

    void theMaskIsReadAtItsOffset_data()
    {
        QTest::addColumn<float>("firmware");
        QTest::addColumn<int>("size");
        QTest::addColumn<QString>("mask");
        QTest::newRow("old at 50") << OldFirmware << OldBlockSize << "150.151.152.153";
        QTest::newRow("new at 58") << NewFirmware << NewBlockSize << "158.159.160.161";
    }
    void theMaskIsReadAtItsOffset()
    {
        QFETCH(float, firmware);
        QFETCH(int, size);
        QByteArray block = CountingBlock(size);
        CDeviceParameters parameters(firmware);
        parameters.ParseDeviceBlock(WordsOf(block));
        QTEST(parameters.GetSubnetMask(), "mask");
    }

    void onlyTheAddressWordsAreSwappedInPlace_data()
    {
        QTest::addColumn<float>("firmware");
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("addresses");
        QTest::newRow("old from 46 to 53") << OldFirmware << OldBlockSize << 46;
        QTest::newRow("new from 54 to 61") << NewFirmware << NewBlockSize << 54;
    }
    void onlyTheAddressWordsAreSwappedInPlace()
    {
        QFETCH(float, firmware);
        QFETCH(int, size);
        QFETCH(int, addresses);
        QByteArray block = CountingBlock(size);
        CDeviceParameters parameters(firmware);
        parameters.ParseDeviceBlock(WordsOf(block));

        QByteArray expected = CountingBlock(size);
        for (int offset = addresses; offset < addresses + 8; offset += 2) {
            std::swap(expected.data()[offset], expected.data()[offset + 1]);
        }
        QCOMPARE(block.toHex(), expected.toHex());
    }

    void anOldBlockLeavesSpeedAndTypeMissing()
    {
        QByteArray block = CountingBlock(OldBlockSize);
        CDeviceParameters parameters(OldFirmware);
        parameters.ParseDeviceBlock(WordsOf(block));
        for (const short motor : {short(0), short(1)}) {
            QCOMPARE(int(parameters.GetRotorType(motor)), 65535);
            QCOMPARE(int(parameters.GetSlowMotionSpeed(motor)), 0);
        }
    }

    void readingAMissingParameterDoesNotMakeItExist()
    {
        const CDeviceParameters parameters(NewFirmware);
        for (int twice = 0; twice < 2; ++twice) {
            QCOMPARE(int(parameters.GetRotorType(0)), 65535);
            QCOMPARE(int(parameters.GetRotorType(1)), 65535);
        }
    }

    void nothingDecodedReadsAsMissing_data()
    {
        QTest::addColumn<int>("id");
        QTest::addColumn<int>("value");
        for (int id = 0; id < 12; ++id) {
            QTest::newRow(AccessorNames[id]) << id << (id == 11 ? 65535 : 0);
        }
    }
    void nothingDecodedReadsAsMissing()
    {
        QFETCH(int, id);
        const CDeviceParameters parameters(NewFirmware);
        QTEST(int((parameters.*Accessors[id])(0)), "value");
        QTEST(int((parameters.*Accessors[id])(1)), "value");
        QCOMPARE(parameters.GetSubnetMask(), QString());
    }

    void noSuchMotorReadsAsMissing_data()
    {
        QTest::addColumn<int>("motor");
        QTest::newRow("2, which means no motor") << 2;
        QTest::newRow("3") << 3;
        QTest::newRow("the largest") << int(std::numeric_limits<short>::max());
        QTest::newRow("-1") << -1;
        QTest::newRow("the smallest") << int(std::numeric_limits<short>::min());
    }
    void noSuchMotorReadsAsMissing()
    {
        QFETCH(int, motor);
        QByteArray block = CountingBlock(NewBlockSize);
        CDeviceParameters parameters(NewFirmware);
        parameters.ParseDeviceBlock(WordsOf(block));
        for (int id = 0; id < 12; ++id) {
            QCOMPARE(int((parameters.*Accessors[id])(short(motor))), id == 11 ? 65535 : 0);
        }
    }

    void aNullBlockChangesNothing()
    {
        QByteArray block = CountingBlock(NewBlockSize);
        const Decoded expected = DecodeNew(block);
        CDeviceParameters parameters(NewFirmware);
        parameters.ParseDeviceBlock(nullptr);
        QCOMPARE(int(parameters.GetRotorType(0)), 65535);
        QCOMPARE(parameters.GetSubnetMask(), QString());

        parameters.ParseDeviceBlock(WordsOf(block));
        parameters.ParseDeviceBlock(nullptr);
        QCOMPARE(DifferenceTo(expected, parameters), QString());
    }

    void aSecondBlockReplacesTheFirst()
    {
        QByteArray first = CountingBlock(OldBlockSize);
        QByteArray second(OldBlockSize, '\xFF');
        const Decoded expected = DecodeOld(second);
        CDeviceParameters parameters(OldFirmware);
        parameters.ParseDeviceBlock(WordsOf(first));
        parameters.ParseDeviceBlock(WordsOf(second));
        QCOMPARE(DifferenceTo(expected, parameters), QString());
    }

    void aBlockMayStandAtAnOddAddress()
    {
        const QByteArray block = CountingBlock(OldBlockSize);
        alignas(ushort) uchar room[1 + OldBlockSize];
        std::memcpy(room + 1, block.constData(), OldBlockSize);
        CDeviceParameters parameters(OldFirmware);
        parameters.ParseDeviceBlock(reinterpret_cast<ushort*>(room + 1));
        QCOMPARE(DifferenceTo(DecodeOld(block), parameters), QString());
    }

    void theBlocksLengthIsNotExceeded_data()
    {
        QTest::addColumn<float>("firmware");
        QTest::addColumn<int>("size");
        QTest::newRow("old, of odd length") << OldFirmware << OldBlockSize;
        QTest::newRow("new, of odd length") << NewFirmware << NewBlockSize;
    }
    // Here it is for AddressSanitizer to see what is read or written behind the block's last byte.
    void theBlocksLengthIsNotExceeded()
    {
        QFETCH(float, firmware);
        QFETCH(int, size);
        const QByteArray bytes = CountingBlock(size);
        const std::unique_ptr<uchar[]> exactly(new uchar[size]);
        std::memcpy(exactly.get(), bytes.constData(), size);
        CDeviceParameters parameters(firmware);
        parameters.ParseDeviceBlock(reinterpret_cast<ushort*>(exactly.get()));
        QCOMPARE(int(exactly[size - 1]), size - 1 + 100);
    }

    void anIpAddressIsDecimalWithoutPadding_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("text");
        const auto add = [](const char* hex, const char* text) {
            QTest::newRow(text) << QByteArray::fromHex(hex) << QString::fromLatin1(text);
        };
        add("c0a80081", "192.168.0.129");
        add("00000000", "0.0.0.0");
        add("ffffffff", "255.255.255.255");
        add("01020364", "1.2.3.100");
    }
    void anIpAddressIsDecimalWithoutPadding()
    {
        QFETCH(QByteArray, bytes);
        QTEST(CDeviceParameters::FormatIpAddress(reinterpret_cast<const uchar*>(bytes.constData())),
            "text");
    }

    void aMacAddressIsPaddedLowerCaseHexadecimal_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("text");
        const auto add = [](const char* hex, const char* text) {
            QTest::newRow(text) << QByteArray::fromHex(hex) << QString::fromLatin1(text);
        };
        add("024c7e00010a", "02:4c:7e:00:01:0a");
        add("000000000000", "00:00:00:00:00:00");
        add("ffffffffffff", "ff:ff:ff:ff:ff:ff");
        add("0123456789ab", "01:23:45:67:89:ab");
    }
    void aMacAddressIsPaddedLowerCaseHexadecimal()
    {
        QFETCH(QByteArray, bytes);
        QTEST(
            CDeviceParameters::FormatMacAddress(reinterpret_cast<const uchar*>(bytes.constData())),
            "text");
    }

    void randomBlocksDecodeAsTheManualSays()
    {
        constexpr int Blocks = 100000;
        std::mt19937 random(440); // the same blocks in every run
        std::uniform_int_distribution<int> byte(0, 255);
        for (int i = 0; i < Blocks; ++i) {
            const bool old = i % 2 == 0;
            QByteArray block(old ? OldBlockSize : NewBlockSize, '\0');
            std::generate(block.begin(), block.end(), [&] { return char(byte(random)); });
            const Decoded expected = old ? DecodeOld(block) : DecodeNew(block);

            CDeviceParameters parameters(old ? OldFirmware : NewFirmware);
            parameters.ParseDeviceBlock(WordsOf(block));

            const QString difference = DifferenceTo(expected, parameters);
            QVERIFY2(difference.isEmpty(), qPrintable(QString("block %1: ").arg(i) + difference));
            QVERIFY2(block == expected.blockAfterwards,
                qPrintable(QString("block %1 is left otherwise").arg(i)));
        }
    }
};

QTEST_APPLESS_MAIN(DeviceParametersTest)
#include "DeviceParametersTest.moc"
