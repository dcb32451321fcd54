// SPDX-License-Identifier: MIT

#include "tests/simulator/Client.h"
#include "tests/simulator/FirmwareBlocks.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/Warnings.h"

#include <QCryptographicHash>
#include <QTemporaryDir>
#include <QtTest>

namespace {

using firmwarestream::BigEndian;

QString Line(const QByteArray& mnemonic, const QByteArray& payload)
{
    return QString::fromLatin1(mnemonic + ' ' + payload.toHex().toUpper());
}

QByteArray Fixed(int size)
{
    return firmwarestream::Image(size);
}

QByteArray FileContent(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString Sha256(const QByteArray& bytes)
{
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex());
}

void SendImage(Client& client, const QByteArray& image)
{
    for (const QByteArray& block : firmwarestream::Blocks(image)) {
        QCOMPARE(client.Ask("CF3\r" + block, 2), QByteArray("1\r"));
    }
    client.Send("CF4\r" + firmwarestream::Checksum(image));
}

} // namespace

class SimulatorCommandsTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void itSaysWhereItListensAndWhoComes()
    {
        SimulatorProcess simulator;
        QVERIFY(simulator.IsReady());
        {
            Client client(simulator.Address());
            QVERIFY(client.IsOpen());
            QVERIFY(!simulator.LineThatBegins("connected 127.").isNull());
        }
        QCOMPARE(simulator.LineThatBegins("disconnected"), "disconnected");
    }

    void itPrintsEveryCommandWithItsPayload_data()
    {
        QTest::addColumn<QByteArray>("mnemonic");
        QTest::addColumn<QByteArray>("payload");
        QTest::addRow("CF1") << QByteArray("CF1") << QByteArray(8, '\0');
        QTest::addRow("CF2") << QByteArray("CF2") << Fixed(6);
        QTest::addRow("CF3") << QByteArray("CF3") << Fixed(1220);
        QTest::addRow("CF4") << QByteArray("CF4") << Fixed(8);
        QTest::addRow("CF5") << QByteArray("CF5") << Fixed(255);
        QTest::addRow("CF6") << QByteArray("CF6") << Fixed(1202);
        QTest::addRow("CF7") << QByteArray("CF7") << QByteArray::fromHex("00400000");
        QTest::addRow("CF9") << QByteArray("CF9") << QByteArray("a,b");
        QTest::addRow("CF10") << QByteArray("CF10") << QByteArray("a;b");
        QTest::addRow("HCF") << QByteArray("HCF") << Fixed(24);
        QTest::addRow("VCF") << QByteArray("VCF") << Fixed(24);
        QTest::addRow("HCF with ten words") << QByteArray("HCF") << Fixed(20);
    }

    void itPrintsEveryCommandWithItsPayload()
    {
        QFETCH(QByteArray, mnemonic);
        QFETCH(QByteArray, payload);
        SimulatorProcess simulator;
        Client client(simulator.Address());
        client.Send(mnemonic + '\r' + payload);
        const QString expected = Line(mnemonic, payload);
        QCOMPARE(simulator.LineThatBegins(expected), expected);
    }

    void queriesAreAnsweredAsTheCommandLineSays()
    {
        SimulatorProcess simulator({"--part", "1111.2222.33", "--serial", "987654", "--firmware",
            "3.2", "--mac", "02:4c:7e:0a:0b:0c", "--mask", "255.0.0.0", "--azimuth", "1,2,3",
            "--polar", "65535", "--options", "a,b", "--option-descriptions", "c;d"});
        Client client(simulator.Address());
        client.Send("*IDN?\r");
        QCOMPARE(client.ReadText(), QByteArray("ZELMA&KOVINTH,VX440,1111.2222.33/987654,3.2\r"));
        client.Send("GET:OPTION:INTERNAL?\r");
        QCOMPARE(client.ReadText(), QByteArray("a,b\r"));
        client.Send("GET:OPTION:DESC?\r");
        QCOMPARE(client.ReadText(), QByteArray("c;d\r"));
        const QByteArray block = client.Ask("CF0\r", 75);
        QCOMPARE(block.left(24).toHex(), QByteArray("000100020003").leftJustified(48, '0'));
        QCOMPARE(block.mid(24, 24).toHex(), QByteArray("ffff").leftJustified(48, '0'));
        QCOMPARE(block.mid(48, 6).toHex(), QByteArray("024c7e0a0b0c"));
        QCOMPARE(block.mid(54, 4), BigEndian(QHostAddress(simulator.Address()).toIPv4Address()));
        QCOMPARE(block.mid(58).toHex(), QByteArray("ff000000").leftJustified(34, '0'));
        for (const char* query : {"*IDN?", "GET:OPTION:INTERNAL?", "GET:OPTION:DESC?", "CF0"}) {
            QCOMPARE(simulator.LineThatBegins(QString(query)), QString(query));
        }
    }

    void anOldUnitAnswers67BytesAndTakesTheLongConfiguration()
    {
        SimulatorProcess simulator({"--firmware", "2.9"});
        Client client(simulator.Address());
        const QByteArray before = client.Ask("CF0\r", 67);
        QCOMPARE(before.size(), 67);

        const QByteArray words = Fixed(40);
        const QByteArray mac = QByteArray::fromHex("024C7E112233");
        const QByteArray identity("ZELMA&KOVINTH,VX440,1234.5678.09/654321\r");
        const QByteArray wanted = words + mac + before.mid(46, 8) + QByteArray(13, '\0');
        client.Send("CF2\r" + wanted + identity.leftJustified(60, '\0'));
        QCOMPARE(client.Ask("CF0\r", 67), wanted);
        client.Send("*IDN?\r");
        QCOMPARE(client.ReadText(), QByteArray("ZELMA&KOVINTH,VX440,1234.5678.09/654321,2.9\r"));
    }

    void aNewUnitAnswers75BytesAndTakesTheShortConfiguration()
    {
        SimulatorProcess simulator;
        Client client(simulator.Address());
        const QByteArray before = client.Ask("CF0\r", 75);
        QCOMPARE(before.size(), 75);
        const QByteArray mac = QByteArray::fromHex("024C7E112233");
        client.Send("CF2\r" + mac);
        QCOMPARE(client.Ask("CF0\r", 75), before.left(48) + mac + before.mid(54));
        QCOMPARE(simulator.State("mac"), "02:4C:7E:11:22:33");
    }

    void wordsThatWereSentAreAnsweredNext()
    {
        SimulatorProcess simulator;
        Client client(simulator.Address());
        const QByteArray azimuth = Fixed(48).left(24);
        const QByteArray polar = Fixed(48).mid(24);
        client.Send("HCF\r" + azimuth);
        client.Send("VCF\r" + polar);
        QCOMPARE(client.Ask("CF0\r", 75).left(48), azimuth + polar);
        client.Send("HCF\r");
        QCOMPARE(simulator.LineThatBegins("CF0"), "CF0");
        QCOMPARE(simulator.LineThatBegins("HCF"), "HCF");
        QCOMPARE(client.Ask("CF0\r", 75).left(48), azimuth + polar);
    }

    void framesByteByByteGiveTheSameAnswers()
    {
        SimulatorProcess simulator;
        Client client(simulator.Address());
        const QByteArray words = Fixed(24);
        const QByteArray bytes = "HCF\r" + words + "CF0\r";
        for (const char byte : bytes) {
            client.Send(QByteArray(1, byte));
        }
        QCOMPARE(client.Read(75).left(24), words);
        QCOMPARE(simulator.LineThatBegins("HCF"), Line("HCF", words));
    }

    void anIncompleteFrameIsTakenWhenTheClientGoes()
    {
        SimulatorProcess simulator;
        {
            Client client(simulator.Address());
            client.Send("VCF\r\1\2");
        }
        QCOMPARE(simulator.LineThatBegins("VCF"), "VCF 0102");
        QCOMPARE(simulator.LineThatBegins("disconnected"), "disconnected");
    }

    void aNewClientIsServedBesideAnOldOne()
    {
        SimulatorProcess simulator;
        Client old(simulator.Address());
        old.Send("CF7\r\1");
        Client fresh(simulator.Address());
        QCOMPARE(fresh.Ask("CF8\r", 2), QByteArray("0\r"));
        QCOMPARE(old.Ask(QByteArray::fromHex("000000"), 256).size(), 256);
        QCOMPARE(simulator.State("clients"), "2");
    }

    void aClientThatReadsNothingIsNotReadEither()
    {
        constexpr int requests = 1000;
        constexpr int answerSize = 2 * 65535;
        SimulatorProcess simulator({"--fault", "long:CF7"});
        Client client(simulator.Address());
        client.Send(QByteArray("CF7\r" + QByteArray::fromHex("FFFF0000")).repeated(requests));
        const int atFirst = simulator.Lines().count("CF7 FFFF0000");
        // The system's buffers take a few megabytes of these 131.
        QVERIFY2(atFirst < requests / 2, qPrintable(QString::number(atFirst)));

        const QByteArray answer = client.Read(answerSize);
        QCOMPARE(answer.size(), answerSize);
        for (int count = 1; count < requests; ++count) {
            QVERIFY(client.Read(answerSize) == answer);
        }
        QCOMPARE(simulator.Lines().count("CF7 FFFF0000"), requests);
    }

    void theUnitMovesToItsNewAddress()
    {
        SimulatorProcess simulator;
        Client client(simulator.Address());
        const QString target = UnusedLoopbackAddress();
        const QByteArray payload =
            BigEndian(QHostAddress(target).toIPv4Address()) + QByteArray::fromHex("FFFF0000");
        client.Send("CF1\r" + payload);
        QCOMPARE(simulator.LineThatBegins("CF1"), Line("CF1", payload));
        QCOMPARE(simulator.LineThatBegins("ready"), QString("ready %1:50000").arg(target));

        Client late(simulator.Address());
        QVERIFY(!late.IsOpen());
        Client moved(target);
        QCOMPARE(moved.Ask("CF0\r", 75).mid(54, 8), payload);
        QVERIFY(client.IsOpen());
        client.Send("CF8\r");
        moved.Send("*IDN?\r");
        QVERIFY(moved.ReadText().startsWith("ZELMA"));
        // The old connection is not served: the next line is not its CF8.
        QCOMPARE(simulator.LineThatBegins("CF0"), "CF0");
        QVERIFY(!simulator.Lines().contains("CF8"));
    }

    void theUnitStaysWhereTheNewAddressIsNotThere()
    {
        SimulatorProcess simulator;
        Client client(simulator.Address());
        client.Send("CF1\r" + QByteArray::fromHex("C0000201FFFFFFFE"));
        QCOMPARE(
            simulator.LineThatBegins("ready"), QString("ready %1:50000").arg(simulator.Address()));
        QVERIFY(
            simulator.Errors().startsWith("vx440-simulator: cannot listen on 192.0.2.1:50000: "));
        QCOMPARE(client.Ask("CF8\r", 2), QByteArray("0\r"));
        QCOMPARE(Client(simulator.Address()).Ask("CF8\r", 2), QByteArray("0\r"));
        QCOMPARE(simulator.State("address"), simulator.Address());
        QCOMPARE(simulator.State("mask"), "255.255.255.0");
    }

    void aNewMaskAloneLeavesTheClientsAlone()
    {
        SimulatorProcess simulator;
        Client client(simulator.Address());
        const QByteArray address = BigEndian(QHostAddress(simulator.Address()).toIPv4Address());
        client.Send("CF1\r" + address + QByteArray::fromHex("FF000000"));
        QCOMPARE(
            simulator.LineThatBegins("ready"), QString("ready %1:50000").arg(simulator.Address()));
        QCOMPARE(client.Ask("CF8\r", 2), QByteArray("0\r"));
        QCOMPARE(simulator.State("mask"), "255.0.0.0");
    }

    void theEepromIsWrittenReadAndSaved()
    {
        QTemporaryDir directory;
        const QString path = directory.filePath("eeprom.bin");
        const QString saved = directory.filePath("saved.bin");
        QByteArray eeprom = Fixed(2400);
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(eeprom) == 2400 && file.flush());

        SimulatorProcess simulator({"--eeprom", path, "--save-eeprom", saved});
        Client client(simulator.Address());
        QCOMPARE(client.Ask(QByteArray("CF7\r") + QByteArray::fromHex("00FF04B0"), 255),
            eeprom.mid(1200, 255));
        QVERIFY(!QFile::exists(saved));

        const QByteArray data(1199, 'e');
        QCOMPARE(client.Ask("CF6\r" + QByteArray::fromHex("04B0") + data, 2), QByteArray("1\r"));
        eeprom.replace(1200, 1199, data);
        QCOMPARE(FileContent(saved), eeprom);
        QCOMPARE(simulator.State("eeprom-sha256"), Sha256(eeprom));
        QCOMPARE(client.Ask("CF6\r" + QByteArray::fromHex("04B2") + data, 2), QByteArray("0\r"));
        QCOMPARE(client.Ask("CF6\r" + QByteArray::fromHex("0000"), 2), QByteArray("1\r"));
        QCOMPARE(FileContent(saved), eeprom);
    }

    void theOptionsAreWrittenAndRead()
    {
        SimulatorProcess simulator;
        Client client(simulator.Address());
        QCOMPARE(client.Ask("CF9\rx,y", 2), QByteArray("1\r"));
        QCOMPARE(client.Ask("CF10\r" + QByteArray(1194, 'd'), 2), QByteArray("1\r"));
        QCOMPARE(client.Ask("GET:OPTION:INTERNAL?\r", 4), QByteArray("x,y\r"));
        QCOMPARE(client.Ask("GET:OPTION:DESC?\r", 1195), QByteArray(1194, 'd') + '\r');
    }

    void anUpdateTakesTheUnitAwayAndBringsTheNewVersion()
    {
        QTemporaryDir directory;
        const QString saved = directory.filePath("image.cyacd");
        SimulatorProcess simulator({"--save-firmware", saved, "--away-ms", "700"});
        const QByteArray image = Fixed(5000);
        Client client(simulator.Address());
        SendImage(client, image);
        client.Send("CF5\r" + QByteArray(255, '\0'));
        QVERIFY(client.WaitForEnd());
        QVERIFY(!Client(simulator.Address()).IsOpen());
        QCOMPARE(FileContent(saved), image);

        QVERIFY(!simulator.LineThatBegins("CF5 0000").isNull());
        QVERIFY(!simulator.LineThatBegins("ready ").isNull());
        Client again(simulator.Address());
        again.Send("*IDN?\r");
        QVERIFY(again.ReadText().endsWith(",3.11\r"));
        QCOMPARE(again.Ask("CF8\r", 2), QByteArray("1\r"));
        QCOMPARE(simulator.State("image-bytes"), "5000");
        QCOMPARE(simulator.State("image-sha256"), Sha256(image));
    }

    void anUpdateCanChangeTheGeneration()
    {
        SimulatorProcess simulator(
            {"--firmware", "2.9", "--new-firmware", "3.2", "--away-ms", "0"});
        Client client(simulator.Address());
        QCOMPARE(client.Ask("CF0\r", 67).size(), 67);
        SendImage(client, Fixed(100));
        client.Send("CF5\r" + QByteArray(255, '\0'));
        QVERIFY(client.WaitForEnd());
        QVERIFY(!simulator.LineThatBegins("ready ").isNull());
        Client again(simulator.Address());
        again.Send("HCF\r" + Fixed(24));
        QCOMPARE(again.Ask("CF0\r", 75).left(24), Fixed(24));
    }

    void anUpdateWithoutAnImageIsNotValid()
    {
        SimulatorProcess simulator({"--away-ms", "0"});
        Client client(simulator.Address());
        client.Send("CF5\r" + QByteArray(255, '\0'));
        QVERIFY(client.WaitForEnd());
        QVERIFY(!simulator.LineThatBegins("ready ").isNull());
        Client again(simulator.Address());
        QCOMPARE(again.Ask("CF8\r", 2), QByteArray("0\r"));
        QCOMPARE(simulator.State("firmware"), "3.10");
    }

    void aWrongFirmwareBlockIsRefused()
    {
        SimulatorProcess simulator;
        Client client(simulator.Address());
        const QVector<QByteArray> blocks = firmwarestream::Blocks(Fixed(3000));
        QCOMPARE(client.Ask("CF3\r" + blocks.at(1), 2), QByteArray("0\r"));
        QCOMPARE(client.Ask("CF3\r" + blocks.at(0), 2), QByteArray("1\r"));
        QCOMPARE(client.Ask("CF3\r" + blocks.at(2), 2), QByteArray("0\r"));
        QCOMPARE(client.Ask("CF3\r" + blocks.at(1), 2), QByteArray("1\r"));
        QCOMPARE(simulator.State("image-bytes"), "2336");
        QCOMPARE(simulator.State("image-whole"), "no");
    }
};

QTEST_GUILESS_MAIN(SimulatorCommandsTest)
#include "SimulatorCommandsTest.moc"
