#include "simulator/Unit.h"
#include "simulator/EepromImage.h"
#include "tests/simulator/FirmwareBlocks.h"

#include <QtTest>

using namespace simulator;

class UnitTest : public QObject
{
    Q_OBJECT

private slots:
    void theIdentityHasFourFields();
    void theBlockHasTheLayoutOfItsGeneration_data();
    void theBlockHasTheLayoutOfItsGeneration();
    void aVersionSelectsItsGeneration_data();
    void aVersionSelectsItsGeneration();
    void wordsAreReplacedAsFarAsTheyCame();
    void anUnchangedAddressMovesNothing();
    void theAddressZeroIsNotTaken();
    void theLongConfigurationChangesEverything();
    void aLongConfigurationWithoutAnIdentityKeepsIt_data();
    void aLongConfigurationWithoutAnIdentityKeepsIt();
    void theShortConfigurationChangesTheMacOnly();
    void anEepromWriteIsRefusedOutOfRange_data();
    void anEepromWriteIsRefusedOutOfRange();
    void anEepromWriteIsReadBack();
    void bytesBehindTheEepromReadAsErased();
    void theFactoryEepromHasTwoGoodBlocks();
    void optionTextsAreKept();
    void anUpdateNeedsAWholeImage();
    void anUpdateRaisesTheVersion_data();
    void anUpdateRaisesTheVersion();
    void refusedCommandsChangeNothing();
    void aWrongAnswerIsNotTheRightOne();
};

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
        QCOMPARE(Answer(unit, Command::FirmwareBlock, block), QByteArray("1\r"));
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

void UnitTest::theIdentityHasFourFields()
{
    Unit unit(Settings());
    QCOMPARE(Answer(unit, Command::ReadIdentity),
        QByteArray("ZELMA&KOVINTH,VX440,1234.5678.02/123456,3.10\r"));
}

void UnitTest::theBlockHasTheLayoutOfItsGeneration_data()
{
    QTest::addColumn<QString>("firmware");
    QTest::addColumn<QByteArray>("block");
    const QByteArray end("024C7E000129C0A80081FFFFFE0000000000000000000000000000");
    QTest::addRow("67 bytes below 3.0") << "2.99"
                                        << "01F40003009600010002000A000B000C07D00014"
                                           "00630004003C0005000600070008000901F50015" +
                                               end;
    QTest::addRow("75 bytes from 3.0") << "3.0"
                                       << "01F40003009600010002000A000B000C07D0001400320001"
                                          "00630004003C0005000600070008000901F500150033FFFF" +
                                              end;
}

void UnitTest::theBlockHasTheLayoutOfItsGeneration()
{
    QFETCH(QString, firmware);
    QFETCH(QByteArray, block);
    Unit unit(Settings(firmware));
    QCOMPARE(Answer(unit, Command::ReadConfiguration).toHex().toUpper(), block);
}

void UnitTest::aVersionSelectsItsGeneration_data()
{
    QTest::addColumn<QString>("firmware");
    QTest::addColumn<int>("size");
    QTest::addRow("2.99") << "2.99" << 67;
    QTest::addRow("3.0") << "3.0" << 75;
    QTest::addRow("3.01") << "3.01" << 75;
    QTest::addRow("empty") << QString() << 67;
    QTest::addRow("no number") << "new" << 67;
}

void UnitTest::aVersionSelectsItsGeneration()
{
    QFETCH(QString, firmware);
    QFETCH(int, size);
    Unit unit(Settings(firmware));
    QCOMPARE(Answer(unit, Command::ReadConfiguration).size(), size);
}

void UnitTest::wordsAreReplacedAsFarAsTheyCame()
{
    Unit unit(Settings());
    const QByteArray before = Answer(unit, Command::ReadConfiguration);
    const QByteArray words = QByteArray::fromHex("0102030405");
    QCOMPARE(Answer(unit, Command::SetAzimuth, QByteArray()), QByteArray());
    QCOMPARE(Answer(unit, Command::ReadConfiguration), before);
    QCOMPARE(Answer(unit, Command::SetAzimuth, words), QByteArray());
    QCOMPARE(Answer(unit, Command::ReadConfiguration), words.left(4) + before.mid(4));
    const QByteArray polar(24, 'p');
    QCOMPARE(Answer(unit, Command::SetPolar, polar), QByteArray());
    QCOMPARE(Answer(unit, Command::ReadConfiguration),
        words.left(4) + before.mid(4, 20) + polar + before.mid(48));
}

void UnitTest::anUnchangedAddressMovesNothing()
{
    Unit unit(Settings());
    QCOMPARE(
        Do(unit, Command::SetAddress, QByteArray::fromHex("C0A80081FFFFFE00")).effects, Effects());
    QCOMPARE(Do(unit, Command::SetAddress, QByteArray::fromHex("C0A80081FFFFFF00")).effects,
        Effects(Effect::AddressChanged));
    QCOMPARE(Do(unit, Command::SetAddress, QByteArray::fromHex("C0A80082FFFFFF00")).effects,
        Effects(Effect::AddressChanged));
    QCOMPARE(unit.State().address.toString(), "192.168.0.130");
    QCOMPARE(unit.State().mask.toString(), "255.255.255.0");
}

void UnitTest::theAddressZeroIsNotTaken()
{
    Unit unit(Settings());
    QCOMPARE(
        Do(unit, Command::SetAddress, QByteArray::fromHex("00000000FFFFFF00")).effects, Effects());
    QCOMPARE(unit.State().address.toString(), "192.168.0.129");
}

void UnitTest::theLongConfigurationChangesEverything()
{
    Unit unit(Settings("2.5"));
    const QByteArray block = LongConfiguration("ZELMA&KOVINTH,VX440,4400.1290.03/000777\r");
    QCOMPARE(block.size(), 127);
    const Outcome outcome = Do(unit, Command::Configure, block);
    QCOMPARE(outcome.answer, QByteArray());
    QCOMPARE(outcome.effects, Effect::MacChanged | Effect::AddressChanged);
    QCOMPARE(Answer(unit, Command::ReadConfiguration), block.left(67));
    QCOMPARE(Answer(unit, Command::ReadIdentity),
        QByteArray("ZELMA&KOVINTH,VX440,4400.1290.03/000777,2.5\r"));
    QCOMPARE(unit.State().azimuth.mid(10), (QVector<quint16>{50, 1}));
    QCOMPARE(Do(unit, Command::Configure, block).effects, Effects());
}

void UnitTest::aLongConfigurationWithoutAnIdentityKeepsIt_data()
{
    QTest::addColumn<QByteArray>("identity");
    QTest::addRow("empty") << QByteArray();
    QTest::addRow("two fields") << QByteArray("ZELMA&KOVINTH,VX440\r");
    QTest::addRow("no slash") << QByteArray("ZELMA&KOVINTH,VX440,123\r");
    QTest::addRow("two slashes") << QByteArray("ZELMA&KOVINTH,VX440,1/2/3\r");
}

void UnitTest::aLongConfigurationWithoutAnIdentityKeepsIt()
{
    QFETCH(QByteArray, identity);
    Unit unit(Settings("2.5"));
    Do(unit, Command::Configure, LongConfiguration(identity));
    QCOMPARE(unit.State().part, "1234.5678.02");
    QCOMPARE(unit.State().serial, "123456");
}

void UnitTest::theShortConfigurationChangesTheMacOnly()
{
    Unit unit(Settings());
    const QByteArray before = Answer(unit, Command::ReadConfiguration);
    const QByteArray mac = QByteArray::fromHex("024C7E0002AA");
    QCOMPARE(Do(unit, Command::Configure, mac).effects, Effects(Effect::MacChanged));
    QCOMPARE(Answer(unit, Command::ReadConfiguration), before.left(48) + mac + before.mid(54));
    QCOMPARE(Do(unit, Command::Configure, mac).effects, Effects());
}

void UnitTest::anEepromWriteIsRefusedOutOfRange_data()
{
    QTest::addColumn<int>("offset");
    QTest::addColumn<int>("size");
    QTest::addColumn<QByteArray>("answer");
    const QByteArray done("1\r");
    const QByteArray refused("0\r");
    QTest::addRow("the whole first region") << 0 << 1200 << done;
    QTest::addRow("the whole second region") << 1200 << 1200 << done;
    QTest::addRow("nothing") << 0 << 0 << done;
    QTest::addRow("nothing at the end") << 2400 << 0 << done;
    QTest::addRow("the last byte") << 2399 << 1 << done;
    QTest::addRow("more than a frame has") << 0 << 1201 << refused;
    QTest::addRow("one byte behind the end") << 1201 << 1200 << refused;
    QTest::addRow("behind the end") << 2400 << 1 << refused;
    QTest::addRow("far behind the end") << 65535 << 1 << refused;
}

void UnitTest::anEepromWriteIsRefusedOutOfRange()
{
    QFETCH(int, offset);
    QFETCH(int, size);
    QFETCH(QByteArray, answer);
    Unit unit(Settings());
    QByteArray expected = unit.State().eeprom;
    const QByteArray data = firmwarestream::Image(size);
    const Outcome outcome =
        Do(unit, Command::WriteEeprom, firmwarestream::BigEndian(quint16(offset)) + data);
    QCOMPARE(outcome.answer, answer);
    const bool done = answer == "1\r";
    QCOMPARE(outcome.effects, done ? Effects(Effect::EepromChanged) : Effects());
    if (done) {
        expected.replace(offset, size, data);
    }
    QCOMPARE(unit.State().eeprom, expected);
    QCOMPARE(Answer(unit, Command::WriteEeprom, "x"), QByteArray("0\r"));
}

void UnitTest::anEepromWriteIsReadBack()
{
    Unit unit(Settings());
    Do(unit, Command::WriteEeprom, QByteArray::fromHex("04B1") + "abcdef");
    QCOMPARE(
        Answer(unit, Command::ReadEeprom, QByteArray::fromHex("000404B2")), QByteArray("bcde"));
    QCOMPARE(Answer(unit, Command::ReadEeprom, QByteArray::fromHex("00FF0000")),
        unit.State().eeprom.left(255));
    QCOMPARE(Answer(unit, Command::ReadEeprom, QByteArray::fromHex("00000000")), QByteArray());
}

void UnitTest::bytesBehindTheEepromReadAsErased()
{
    Unit unit(Settings());
    Do(unit, Command::WriteEeprom, QByteArray::fromHex("095F41"));
    QCOMPARE(Answer(unit, Command::ReadEeprom, QByteArray::fromHex("0003095F")).toHex(),
        QByteArray("41ffff"));
    QCOMPARE(Answer(unit, Command::ReadEeprom, QByteArray::fromHex("0002FFFF")).toHex(),
        QByteArray("ffff"));
}

void UnitTest::theFactoryEepromHasTwoGoodBlocks()
{
    const QByteArray eeprom = FactoryEeprom("1234.5678.02", "123456");
    QCOMPARE(eeprom.size(), 2400);
    // Type 2, part number 12345678, variant 2, hardware code 1, index 1.00, serial number 123456,
    // 2024-03-09, test instruction 1.05, name.
    QCOMPARE(eeprom.left(44).toHex().toUpper(), QByteArray("0200000000000000"
                                                           "00000000"
                                                           "4E61BC00"
                                                           "02"
                                                           "01"
                                                           "6400"
                                                           "40E20100"
                                                           "6958"
                                                           "0000"
                                                           "6900"
                                                           "5658343430000000000000000000"));
    QCOMPARE(eeprom.mid(1200, 2).toHex(), QByteArray("0200"));
    QCOMPARE(eeprom.mid(1230, 14), QByteArray("VX440-CTRL\0\0\0\0", 14));
    QCOMPARE(eeprom.mid(44, 1156), QByteArray(1156, '\xff'));
    QCOMPARE(eeprom.mid(1244), QByteArray(1156, '\xff'));
}

void UnitTest::optionTextsAreKept()
{
    Unit unit(Settings());
    QCOMPARE(Answer(unit, Command::ReadOptions), QByteArray("VX440-DCF,0\r"));
    QCOMPARE(Answer(unit, Command::ReadOptionDescriptions), QByteArray("one;two,three\r"));
    QCOMPARE(Answer(unit, Command::SetOptions, "a,b"), QByteArray("1\r"));
    QCOMPARE(Answer(unit, Command::SetOptionDescriptions, "c;d"), QByteArray("1\r"));
    QCOMPARE(Answer(unit, Command::ReadOptions), QByteArray("a,b\r"));
    QCOMPARE(Answer(unit, Command::ReadOptionDescriptions), QByteArray("c;d\r"));
}

void UnitTest::anUpdateNeedsAWholeImage()
{
    Unit unit(Settings());
    QCOMPARE(Answer(unit, Command::ValidateUpdate), QByteArray("0\r"));

    QCOMPARE(
        Do(unit, Command::StartUpdate, QByteArray(255, 'x')).effects, Effects(Effect::Restarting));
    unit.FinishUpdate();
    QCOMPARE(Answer(unit, Command::ValidateUpdate), QByteArray("0\r"));
    QCOMPARE(unit.State().firmware, "3.10");

    const QByteArray image = firmwarestream::Image(3000);
    SendImage(unit, image);
    QCOMPARE(Answer(unit, Command::ValidateUpdate), QByteArray("0\r"));
    unit.FinishUpdate();
    QCOMPARE(Answer(unit, Command::ValidateUpdate), QByteArray("1\r"));
    QCOMPARE(unit.State().firmware, "3.11");
    QCOMPARE(unit.FirmwareImage(), image);

    unit.FinishUpdate();
    QCOMPARE(Answer(unit, Command::ValidateUpdate), QByteArray("0\r"));
    QCOMPARE(unit.State().firmware, "3.11");
}

void UnitTest::anUpdateRaisesTheVersion_data()
{
    QTest::addColumn<QString>("firmware");
    QTest::addColumn<QString>("newFirmware");
    QTest::addColumn<QString>("updated");
    QTest::addRow("next minor number") << "3.1" << QString() << "3.2";
    QTest::addRow("leading zero") << "3.09" << QString() << "3.10";
    QTest::addRow("one digit more") << "2.9" << QString() << "2.10";
    QTest::addRow("no number") << "beta" << QString() << "beta";
    QTest::addRow("as told") << "2.5"
                             << "3.2"
                             << "3.2";
}

void UnitTest::anUpdateRaisesTheVersion()
{
    QFETCH(QString, firmware);
    QFETCH(QString, newFirmware);
    QFETCH(QString, updated);
    UnitSettings settings = Settings(firmware);
    settings.newFirmware = newFirmware;
    Unit unit(settings);
    SendImage(unit, firmwarestream::Image(1));
    unit.FinishUpdate();
    QCOMPARE(unit.State().firmware, updated);
}

void UnitTest::refusedCommandsChangeNothing()
{
    struct Row
    {
        Command command;
        QByteArray payload;
        QByteArray answer;
    };
    const QVector<Row> rows = {
        {Command::SetAddress, QByteArray::fromHex("7F000002FF000000"), ""},
        {Command::Configure, QByteArray(6, 'm'), ""},
        {Command::FirmwareBlock, firmwarestream::Blocks(firmwarestream::Image(9)).first(), "0\r"},
        {Command::FirmwareChecksum, QByteArray(8, '\0'), ""},
        {Command::StartUpdate, QByteArray(255, '\0'), ""},
        {Command::WriteEeprom, QByteArray(10, '\0'), "0\r"},
        {Command::ValidateUpdate, QByteArray(), "0\r"},
        {Command::SetOptions, "x", "0\r"},
        {Command::SetOptionDescriptions, "x", "0\r"},
        {Command::SetAzimuth, QByteArray(24, 'w'), ""},
        {Command::SetPolar, QByteArray(24, 'w'), ""},
        {Command::ReadOptions, QByteArray(), "VX440-DCF,0\r"},
    };
    Unit unit(Settings());
    const auto before = unit.Report();
    for (const Row& row : rows) {
        const Outcome outcome = unit.Refuse(Frame{row.command, row.payload});
        QCOMPARE(outcome.answer, row.answer);
        QCOMPARE(outcome.effects, Effects());
    }
    QCOMPARE(unit.Report(), before);
}

void UnitTest::aWrongAnswerIsNotTheRightOne()
{
    const Unit unit(Settings());
    const auto wrong = [&unit](Command command, const QByteArray& payload = QByteArray()) {
        return unit.WrongAnswer(Frame{command, payload});
    };
    QCOMPARE(wrong(Command::ReadIdentity), QByteArray("ZELMA&KOVINTH,VX440,1234.5678.02/123456\r"));
    QCOMPARE(wrong(Command::ReadConfiguration).size(), 67);
    QCOMPARE(wrong(Command::ReadEeprom, QByteArray::fromHex("00400000")),
        unit.State().eeprom.mid(1200, 64));
    QCOMPARE(
        wrong(Command::ReadEeprom, QByteArray::fromHex("004004B0")), unit.State().eeprom.left(64));
    QCOMPARE(wrong(Command::ReadOptions), QByteArray("VX440-DCF\r"));
    QCOMPARE(wrong(Command::ReadOptionDescriptions), QByteArray("one\r"));
    QCOMPARE(wrong(Command::WriteEeprom), QByteArray("2\r"));
    QCOMPARE(wrong(Command::ValidateUpdate), QByteArray("2\r"));
    QCOMPARE(wrong(Command::SetAzimuth), QByteArray());
    QCOMPARE(
        Unit(Settings("2.0")).WrongAnswer(Frame{Command::ReadConfiguration, QByteArray()}).size(),
        75);
}

QTEST_APPLESS_MAIN(UnitTest)
#include "UnitTest.moc"
