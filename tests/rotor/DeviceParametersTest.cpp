// SPDX-License-Identifier: MIT

#include "rotor/CDeviceParameters.h"
#include "tests/support/Warnings.h"

#include <QtTest>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <random>

namespace {

using Accessor = ushort (CDeviceParameters::*)(short) const;

// Accessor n reads parameter n.
constexpr std::array<Accessor, 12> Accessors{&CDeviceParameters::GetSlowMotionDifference,
    &CDeviceParameters::GetMotionHangUpDifference, &CDeviceParameters::GetStepDifference,
    &CDeviceParameters::GetStepSleep, &CDeviceParameters::GetPulseDuration,
    &CDeviceParameters::GetMaxPositionDifference, &CDeviceParameters::GetMaxPositionFromRight,
    &CDeviceParameters::GetMaxPositionFromLeft, &CDeviceParameters::GetMaxMotionHangUpLoop,
    &CDeviceParameters::GetLoopsInside, &CDeviceParameters::GetSlowMotionSpeed,
    &CDeviceParameters::GetRotorType};

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

// A generation's block, as the unit's manual has it.
struct Layout
{
    float firmware;
    int size;
    int words; // of a motor
    int addresses;
    const char* countingMask; // in the counting block
};

constexpr Layout Old{2.99F, 67, 10, 46, "150.151.152.153"};
constexpr Layout New{3.0F, 75, 12, 54, "158.159.160.161"};
constexpr Layout Layouts[] = {Old, New};

struct Decoded
{
    int words[2][12];
    QString subnetMask;
    QByteArray blockAfterwards;
};

Decoded Decode(const QByteArray& block, const Layout& layout)
{
    Decoded decoded{{}, QString(), block};
    const auto byte = [&](int offset) { return int(uchar(block.at(offset))); };
    for (int motor = 0; motor < 2; ++motor) {
        decoded.words[motor][11] = 65535;
        for (int id = 0; id < layout.words; ++id) {
            const int offset = 2 * (motor * layout.words + id);
            decoded.words[motor][id] = byte(offset) * 256 + byte(offset + 1);
        }
    }
    const int mask = layout.addresses + 4;
    decoded.subnetMask = QString::asprintf(
        "%d.%d.%d.%d", byte(mask), byte(mask + 1), byte(mask + 2), byte(mask + 3));
    for (int offset = layout.addresses; offset < layout.addresses + 8; offset += 2) {
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
                return QString::asprintf("motor %d, parameter %d: %d instead of %d", motor, id,
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

class DeviceParametersTest : public WarningsFail
{
    Q_OBJECT

private slots:
    // The carriage return comes from the unit's answer. What is no number, or a negative one, is
    // old.
    void theFirmwareTextSelectsTheLayout()
    {
        const QStringList oldVersions{"2.99", "2.99\r", "", "V3.10", "3.1.0", "-3.5"};
        const QStringList newVersions{"3.0", "3.01", "3.10\r"};
        for (const QString& version : oldVersions + newVersions) {
            const CDeviceParameters parameters(version.toFloat());
            const bool old = oldVersions.contains(version);
            QCOMPARE(int(parameters.GetParameterCount()), old ? 10 : 12);
            QCOMPARE(int(parameters.GetDeviceBlockSize()), old ? 67 : 75);
        }
    }

    void aParameterStandsBigEndianAtItsOffset()
    {
        for (const Layout& layout : Layouts) {
            for (int word = 0; word < 2 * layout.words; ++word) {
                QByteArray block(layout.size, '\0');
                block[2 * word] = '\x01';
                block[2 * word + 1] = '\xF4';
                CDeviceParameters parameters(layout.firmware);
                parameters.ParseDeviceBlock(WordsOf(block));
                for (int other = 0; other < 2 * layout.words; ++other) {
                    const auto motor = short(other / layout.words);
                    const int value = (parameters.*Accessors[other % layout.words])(motor);
                    QCOMPARE(value, other == word ? 500 : 0);
                }
            }
        }
    }

    void theMaskIsReadAtItsOffsetAndOnlyTheAddressWordsAreSwappedInPlace()
    {
        for (const Layout& layout : Layouts) {
            QByteArray block = CountingBlock(layout.size);
            CDeviceParameters parameters(layout.firmware);
            parameters.ParseDeviceBlock(WordsOf(block));
            QCOMPARE(parameters.GetSubnetMask(), layout.countingMask);
            const Decoded expected = Decode(CountingBlock(layout.size), layout);
            QCOMPARE(block.toHex(), expected.blockAfterwards.toHex());
        }
    }

    void anOldBlockLeavesSpeedAndTypeMissing()
    {
        QByteArray block = CountingBlock(Old.size);
        CDeviceParameters parameters(Old.firmware);
        parameters.ParseDeviceBlock(WordsOf(block));
        for (const short motor : {short(0), short(1)}) {
            QCOMPARE(int(parameters.GetRotorType(motor)), 65535);
            QCOMPARE(int(parameters.GetSlowMotionSpeed(motor)), 0);
        }
    }

    void readingAMissingParameterDoesNotMakeItExist()
    {
        const CDeviceParameters parameters(New.firmware);
        for (int twice = 0; twice < 2; ++twice) {
            QCOMPARE(int(parameters.GetRotorType(0)), 65535);
            QCOMPARE(int(parameters.GetRotorType(1)), 65535);
        }
    }

    void nothingDecodedReadsAsMissing()
    {
        const CDeviceParameters parameters(New.firmware);
        for (int id = 0; id < 12; ++id) {
            for (const short motor : {short(0), short(1)}) {
                QCOMPARE(int((parameters.*Accessors[id])(motor)), id == 11 ? 65535 : 0);
            }
        }
        QCOMPARE(parameters.GetSubnetMask(), QString());
    }

    // The motor 2 means none.
    void noSuchMotorReadsAsMissing()
    {
        QByteArray block = CountingBlock(New.size);
        CDeviceParameters parameters(New.firmware);
        parameters.ParseDeviceBlock(WordsOf(block));
        for (const int motor : {2, 3, 32767, -1, -32768}) {
            for (int id = 0; id < 12; ++id) {
                QCOMPARE(int((parameters.*Accessors[id])(short(motor))), id == 11 ? 65535 : 0);
            }
        }
    }

    void aNullBlockChangesNothing()
    {
        QByteArray block = CountingBlock(New.size);
        const Decoded expected = Decode(block, New);
        CDeviceParameters parameters(New.firmware);
        parameters.ParseDeviceBlock(nullptr);
        QCOMPARE(int(parameters.GetRotorType(0)), 65535);
        QCOMPARE(parameters.GetSubnetMask(), QString());

        parameters.ParseDeviceBlock(WordsOf(block));
        parameters.ParseDeviceBlock(nullptr);
        QCOMPARE(DifferenceTo(expected, parameters), QString());
    }

    void aSecondBlockReplacesTheFirst()
    {
        QByteArray first = CountingBlock(Old.size);
        QByteArray second(Old.size, '\xFF');
        const Decoded expected = Decode(second, Old);
        CDeviceParameters parameters(Old.firmware);
        parameters.ParseDeviceBlock(WordsOf(first));
        parameters.ParseDeviceBlock(WordsOf(second));
        QCOMPARE(DifferenceTo(expected, parameters), QString());
    }

    void aBlockMayStandAtAnOddAddress()
    {
        const QByteArray block = CountingBlock(Old.size);
        alignas(ushort) uchar room[1 + Old.size];
        std::memcpy(room + 1, block.constData(), Old.size);
        CDeviceParameters parameters(Old.firmware);
        parameters.ParseDeviceBlock(reinterpret_cast<ushort*>(room + 1));
        QCOMPARE(DifferenceTo(Decode(block, Old), parameters), QString());
    }

    // Here it is for AddressSanitizer to see what is read or written behind the block's last byte.
    void theBlocksLengthIsNotExceeded()
    {
        for (const Layout& layout : Layouts) {
            const QByteArray bytes = CountingBlock(layout.size);
            const std::unique_ptr<uchar[]> exactly(new uchar[layout.size]);
            std::memcpy(exactly.get(), bytes.constData(), layout.size);
            CDeviceParameters parameters(layout.firmware);
            parameters.ParseDeviceBlock(reinterpret_cast<ushort*>(exactly.get()));
            QCOMPARE(int(exactly[layout.size - 1]), layout.size - 1 + 100);
        }
    }

    void anIpAddressIsDecimalWithoutPadding()
    {
        for (const char* const text :
            {"192.168.0.129", "0.0.0.0", "255.255.255.255", "1.2.3.100"}) {
            QByteArray bytes;
            for (const QByteArray& octet : QByteArray(text).split('.')) {
                bytes.append(char(octet.toInt()));
            }
            QCOMPARE(CDeviceParameters::FormatIpAddress(
                         reinterpret_cast<const uchar*>(bytes.constData())),
                text);
        }
    }

    void aMacAddressIsPaddedLowerCaseHexadecimal()
    {
        for (const char* const text :
            {"02:4c:7e:00:01:0a", "00:00:00:00:00:00", "ff:ff:ff:ff:ff:ff", "01:23:45:67:89:ab"}) {
            const QByteArray bytes = QByteArray::fromHex(text);
            QCOMPARE(CDeviceParameters::FormatMacAddress(
                         reinterpret_cast<const uchar*>(bytes.constData())),
                text);
        }
    }

    void randomBlocksDecodeAsTheManualSays()
    {
        constexpr int Blocks = 100000;
        std::mt19937 random(440); // the same blocks in every run
        std::uniform_int_distribution<int> byte(0, 255);
        for (int i = 0; i < Blocks; ++i) {
            const Layout& layout = Layouts[i % 2];
            QByteArray block(layout.size, '\0');
            std::generate(block.begin(), block.end(), [&] { return char(byte(random)); });
            const Decoded expected = Decode(block, layout);
            CDeviceParameters parameters(layout.firmware);
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
