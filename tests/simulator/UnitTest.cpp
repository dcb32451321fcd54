// SPDX-License-Identifier: MIT

#include "simulator/Unit.h"
#include "simulator/EepromImage.h"
#include "tests/simulator/FirmwareBlocks.h"
#include "tests/support/Warnings.h"

#include <QtTest>

using namespace simulator;

namespace {

UnitSettings Settings(const QString& firmware = "3.10")
{
    UnitSettings settings;
    settings.firmware = firmware;
    settings.part = "1234.5678.02";
    settings.serial = "123456";
    settings.mac = QByteArray::fromHex("024C7E000129");
    settings.address = QHostAddress("192.168.0.129");
    settings.mask = QHostAddress("255.255.254.0");
    settings.azimuth = {500, 3, 150, 1, 2, 10, 11, 12, 2000, 20, 50, 1};
    settings.polar = {99, 4, 60, 5, 6, 7, 8, 9, 501, 21, 51, 65535};
    settings.options = "VX440-DCF,0";
    settings.optionDescriptions = "one;two,three";
    settings.eeprom = FactoryEeprom(settings.part, settings.serial);
    return settings;
}

Outcome Do(Unit& unit, Command command, const QByteArray& payload = QByteArray())
{
    return unit.CarryOut(Frame{command, payload});
}

QByteArray Answer(Unit& unit, Command command, const QByteArray& payload = QByteArray())
{
    return Do(unit, command, payload).answer;
}

void SendImage(Unit& unit, const QByteArray& image)
{
    for (const QByteArray& block : firmwarestream::Blocks(image)) {
        QCOMPARE(Answer(unit, Command::FirmwareBlock, block), "1\r");
    }
    const Outcome outcome = Do(unit, Command::FirmwareChecksum, firmwarestream::Checksum(image));
    QCOMPARE(outcome.answer, QByteArray());
    QCOMPARE(outcome.effects, Effects(Effect::ImageComplete));
}

QByteArray LongConfiguration(const QByteArray& identity)
{
    return QByteArray::fromHex("00010002000300040005000600070008FFFE000A"
                               "00110012001300140015001600170018FFFD001A"
                               "0211223344550A0000020AFF00000000000000000000000000000000")
               .left(54) +
           QByteArray(13, '\0') + identity.leftJustified(60, '\0', true);
}

} // namespace

class UnitTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void theIdentityHasFourFields()
    {
        Unit unit(Settings());
        QCOMPARE(
            Answer(unit, Command::ReadIdentity), "ZELMA&KOVINTH,VX440,1234.5678.02/123456,3.10\r");
    }

    void aVersionSelectsTheBlockOfItsGeneration()
    {
        const QByteArray end("024C7E000129C0A80081FFFFFE0000000000000000000000000000");
        const QByteArray below3 = "01F40003009600010002000A000B000C07D00014"
                                  "00630004003C0005000600070008000901F50015" +
                                  end;
        const QByteArray from3 = "01F40003009600010002000A000B000C07D0001400320001"
                                 "00630004003C0005000600070008000901F500150033FFFF" +
                                 end;
        const QPair<const char*, QByteArray> rows[] = {
            {"2.99", below3}, {"3.0", from3}, {"3.01", from3}, {"", below3}, {"new", below3}};
        for (const auto& row : rows) {
            Unit unit(Settings(row.first));
            QCOMPARE(Answer(unit, Command::ReadConfiguration).toHex().toUpper(), row.second);
        }
    }

    void wordsAreReplacedAsFarAsTheyCame()
    {
        Unit unit(Settings());
        const QByteArray before = Answer(unit, Command::ReadConfiguration);
        const QByteArray words = QByteArray::fromHex("0102030405");
        QCOMPARE(Answer(unit, Command::SetAzimuth, QByteArray()), "");
        QCOMPARE(Answer(unit, Command::ReadConfiguration), before);
        QCOMPARE(Answer(unit, Command::SetAzimuth, words), "");
        QCOMPARE(Answer(unit, Command::ReadConfiguration), words.left(4) + before.mid(4));
        const QByteArray polar(24, 'p');
        QCOMPARE(Answer(unit, Command::SetPolar, polar), "");
        QCOMPARE(Answer(unit, Command::ReadConfiguration),
            words.left(4) + before.mid(4, 20) + polar + before.mid(48));
    }

    void anUnchangedAddressMovesNothingAndTheAddressZeroIsNotTaken()
    {
        Unit unit(Settings());
        const auto effectsOf = [&unit](const char* addressAndMask) {
            return Do(unit, Command::SetAddress, QByteArray::fromHex(addressAndMask)).effects;
        };
        QCOMPARE(effectsOf("C0A80081FFFFFE00"), Effects());
        QCOMPARE(effectsOf("00000000FFFFFF00"), Effects());
        QCOMPARE(unit.State().address.toString(), "192.168.0.129");
        QCOMPARE(effectsOf("C0A80081FFFFFF00"), Effects(Effect::AddressChanged));
        QCOMPARE(effectsOf("C0A80082FFFFFF00"), Effects(Effect::AddressChanged));
        QCOMPARE(unit.State().address.toString(), "192.168.0.130");
        QCOMPARE(unit.State().mask.toString(), "255.255.255.0");
    }

    void theLongConfigurationChangesEverything()
    {
        Unit unit(Settings("2.5"));
        const QByteArray block = LongConfiguration("ZELMA&KOVINTH,VX440,4400.1290.03/000777\r");
        QCOMPARE(block.size(), 127);
        const Outcome outcome = Do(unit, Command::Configure, block);
        QCOMPARE(outcome.answer, QByteArray());
        QCOMPARE(outcome.effects, Effect::MacChanged | Effect::AddressChanged);
        QCOMPARE(Answer(unit, Command::ReadConfiguration), block.left(67));
        QCOMPARE(
            Answer(unit, Command::ReadIdentity), "ZELMA&KOVINTH,VX440,4400.1290.03/000777,2.5\r");
        QCOMPARE(unit.State().azimuth.mid(10), (QVector<quint16>{50, 1}));
        QCOMPARE(Do(unit, Command::Configure, block).effects, Effects());
    }

    void aLongConfigurationWithoutAnIdentityKeepsIt()
    {
        for (const char* identity : {"", "ZELMA&KOVINTH,VX440\r", "ZELMA&KOVINTH,VX440,123\r",
                 "ZELMA&KOVINTH,VX440,1/2/3\r"}) {
            Unit unit(Settings("2.5"));
            Do(unit, Command::Configure, LongConfiguration(identity));
            QCOMPARE(unit.State().part, "1234.5678.02");
            QCOMPARE(unit.State().serial, "123456");
        }
    }

    void theShortConfigurationChangesTheMacOnly()
    {
        Unit unit(Settings());
        const QByteArray before = Answer(unit, Command::ReadConfiguration);
        const QByteArray mac = QByteArray::fromHex("024C7E0002AA");
        QCOMPARE(Do(unit, Command::Configure, mac).effects, Effects(Effect::MacChanged));
        QCOMPARE(Answer(unit, Command::ReadConfiguration), before.left(48) + mac + before.mid(54));
        QCOMPARE(Do(unit, Command::Configure, mac).effects, Effects());
    }

    void anEepromWriteIsRefusedOutOfRange()
    {
        static const struct
        {
            int offset;
            int size;
            bool isDone;
        } rows[] = {{0, 1200, true}, {1200, 1200, true}, {0, 0, true}, {2400, 0, true},
            {2399, 1, true}, {0, 1201, false}, {1201, 1200, false}, {2400, 1, false},
            {65535, 1, false}};
        for (const auto& row : rows) {
            Unit unit(Settings());
            QByteArray expected = unit.State().eeprom;
            const QByteArray data = firmwarestream::Image(row.size);
            const Outcome outcome = Do(
                unit, Command::WriteEeprom, firmwarestream::BigEndian(quint16(row.offset)) + data);
            QCOMPARE(outcome.answer, row.isDone ? "1\r" : "0\r");
            QCOMPARE(outcome.effects, row.isDone ? Effects(Effect::EepromChanged) : Effects());
            if (row.isDone) {
                expected.replace(row.offset, row.size, data);
            }
            QCOMPARE(unit.State().eeprom, expected);
        }
        Unit unit(Settings());
        QCOMPARE(Answer(unit, Command::WriteEeprom, "x"), "0\r");
    }

    void anEepromWriteIsReadBackAndBehindTheEndAllIsErased()
    {
        Unit unit(Settings());
        Do(unit, Command::WriteEeprom, QByteArray::fromHex("04B1") + "abcdef");
        Do(unit, Command::WriteEeprom, QByteArray::fromHex("095F41"));
        const QPair<const char*, QByteArray> rows[] = {{"000404B2", "bcde"},
            {"00FF0000", unit.State().eeprom.left(255)}, {"00000000", ""},
            {"0003095F", "A\xFF\xFF"}, {"0002FFFF", "\xFF\xFF"}};
        for (const auto& row : rows) {
            QCOMPARE(Answer(unit, Command::ReadEeprom, QByteArray::fromHex(row.first)), row.second);
        }
    }

    void theFactoryEepromHasTwoGoodBlocks()
    {
        const QByteArray eeprom = FactoryEeprom("1234.5678.02", "123456");
        QCOMPARE(eeprom.size(), 2400);
        // Type 2, part number 12345678, variant 2, hardware code 1, index 1.00, serial number
        // 123456, 2024-03-09, test instruction 1.05, name.
        QCOMPARE(eeprom.left(44).toHex().toUpper(), "0200000000000000000000004E61BC0002016400"
                                                    "40E2010069580000"
                                                    "69005658343430000000000000000000");
        QCOMPARE(eeprom.mid(1200, 2).toHex(), "0200");
        QCOMPARE(eeprom.mid(1230, 14), QByteArray("VX440-CTRL\0\0\0\0", 14));
        QCOMPARE(eeprom.mid(44, 1156), QByteArray(1156, '\xff'));
        QCOMPARE(eeprom.mid(1244), QByteArray(1156, '\xff'));
    }

    void optionTextsAreKept()
    {
        Unit unit(Settings());
        QCOMPARE(Answer(unit, Command::ReadOptions), "VX440-DCF,0\r");
        QCOMPARE(Answer(unit, Command::ReadOptionDescriptions), "one;two,three\r");
        QCOMPARE(Answer(unit, Command::SetOptions, "a,b"), "1\r");
        QCOMPARE(Answer(unit, Command::SetOptionDescriptions, "c;d"), "1\r");
        QCOMPARE(Answer(unit, Command::ReadOptions), "a,b\r");
        QCOMPARE(Answer(unit, Command::ReadOptionDescriptions), "c;d\r");
    }

    void anUpdateNeedsAWholeImage()
    {
        Unit unit(Settings());
        QCOMPARE(Answer(unit, Command::ValidateUpdate), "0\r");

        QCOMPARE(Do(unit, Command::StartUpdate, QByteArray(255, 'x')).effects,
            Effects(Effect::Restarting));
        unit.FinishUpdate();
        QCOMPARE(Answer(unit, Command::ValidateUpdate), "0\r");
        QCOMPARE(unit.State().firmware, "3.10");

        const QByteArray image = firmwarestream::Image(3000);
        SendImage(unit, image);
        QCOMPARE(Answer(unit, Command::ValidateUpdate), "0\r");
        unit.FinishUpdate();
        QCOMPARE(Answer(unit, Command::ValidateUpdate), "1\r");
        QCOMPARE(unit.State().firmware, "3.11");
        QCOMPARE(unit.FirmwareImage(), image);

        unit.FinishUpdate();
        QCOMPARE(Answer(unit, Command::ValidateUpdate), "0\r");
        QCOMPARE(unit.State().firmware, "3.11");
    }

    void anUpdateRaisesTheVersion()
    {
        static const struct
        {
            const char* firmware;
            const char* newFirmware;
            const char* updated;
        } rows[] = {{"3.1", "", "3.2"}, {"3.09", "", "3.10"}, {"2.9", "", "2.10"},
            {"beta", "", "beta"}, {"2.5", "3.2", "3.2"}};
        for (const auto& row : rows) {
            UnitSettings settings = Settings(row.firmware);
            settings.newFirmware = row.newFirmware;
            Unit unit(settings);
            SendImage(unit, firmwarestream::Image(1));
            unit.FinishUpdate();
            QCOMPARE(unit.State().firmware, row.updated);
        }
    }

    void refusedCommandsChangeNothing()
    {
        const struct
        {
            Command command;
            QByteArray payload;
            const char* answer;
        } rows[] = {
            {Command::SetAddress, QByteArray::fromHex("7F000002FF000000"), ""},
            {Command::Configure, QByteArray(6, 'm'), ""},
            {Command::FirmwareBlock, firmwarestream::Blocks("image").first(), "0\r"},
            {Command::FirmwareChecksum, QByteArray(8, '\0'), ""},
            {Command::StartUpdate, QByteArray(255, '\0'), ""},
            {Command::WriteEeprom, QByteArray(10, '\0'), "0\r"},
            {Command::ValidateUpdate, "", "0\r"},
            {Command::SetOptions, "x", "0\r"},
            {Command::SetOptionDescriptions, "x", "0\r"},
            {Command::SetAzimuth, QByteArray(24, 'w'), ""},
            {Command::SetPolar, QByteArray(24, 'w'), ""},
            {Command::ReadOptions, "", "VX440-DCF,0\r"},
        };
        Unit unit(Settings());
        const auto before = unit.Report();
        for (const auto& row : rows) {
            const Outcome outcome = unit.Refuse(Frame{row.command, row.payload});
            QCOMPARE(outcome.answer, row.answer);
            QCOMPARE(outcome.effects, Effects());
        }
        QCOMPARE(unit.Report(), before);
    }

    void aWrongAnswerIsNotTheRightOne()
    {
        const Unit unit(Settings());
        const auto wrong = [&unit](Command command, const QByteArray& payload = QByteArray()) {
            return unit.WrongAnswer(Frame{command, payload});
        };
        QCOMPARE(wrong(Command::ReadIdentity), "ZELMA&KOVINTH,VX440,1234.5678.02/123456\r");
        QCOMPARE(wrong(Command::ReadConfiguration).size(), 67);
        QCOMPARE(wrong(Command::ReadEeprom, QByteArray::fromHex("00400000")),
            unit.State().eeprom.mid(1200, 64));
        QCOMPARE(wrong(Command::ReadEeprom, QByteArray::fromHex("004004B0")),
            unit.State().eeprom.left(64));
        QCOMPARE(wrong(Command::ReadOptions), "VX440-DCF\r");
        QCOMPARE(wrong(Command::ReadOptionDescriptions), "one\r");
        QCOMPARE(wrong(Command::WriteEeprom), "2\r");
        QCOMPARE(wrong(Command::ValidateUpdate), "2\r");
        QCOMPARE(wrong(Command::SetAzimuth), "");
        const Unit old(Settings("2.0"));
        QCOMPARE(old.WrongAnswer(Frame{Command::ReadConfiguration, {}}).size(), 75);
    }
};

QTEST_APPLESS_MAIN(UnitTest)
#include "UnitTest.moc"
