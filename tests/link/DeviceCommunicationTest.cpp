// SPDX-License-Identifier: MIT

#include "link/CDeviceCommunication.h"
#include "tests/support/Warnings.h"
#include "tests/support/scripted/ScriptedLink.h"

#include <QSignalSpy>
#include <QtTest>

#include <atomic>
#include <functional>
#include <thread>

namespace {

// Every frame goes out behind a look for stale bytes.
const int Drain = 10;

QVector<uchar> CountedBytes(int count)
{
    QVector<uchar> bytes(count);
    for (int i = 0; i < count; ++i) {
        bytes[i] = static_cast<uchar>((i * 7 + i / 256 * 31) & 0xFF);
    }
    return bytes;
}

QString HexOf(const QVector<uchar>& bytes, int count)
{
    return QString::fromLatin1(
        QByteArray(reinterpret_cast<const char*>(bytes.constData()), count).toHex().toUpper());
}

QMap<int, ushort> Parameters(ushort first)
{
    QMap<int, ushort> parameters;
    for (int id = 0; id < 12; ++id) {
        parameters.insert(id, static_cast<ushort>(first + id));
    }
    return parameters;
}

QString LongConfiguration(const QString& identity, const QString& mac, const QString& ip,
    const QString& mask, const QMap<int, ushort>& motor0, const QMap<int, ushort>& motor1)
{
    CDeviceCommunication device;
    device.StartConnection("127.0.0.1");
    device.wait();
    scripted::ForgetEvents();
    device.SendDeviceConfiguration(identity, mac, ip, mask, motor0, motor1);
    return scripted::Actions().value(0).mid(5);
}

struct Command
{
    const char* name;
    std::function<bool(CDeviceCommunication&)> send;
    QString frame;
    bool acknowledged;
};

const QVector<Command>& Commands()
{
    static const QVector<uchar> block = CountedBytes(1220);
    static const QVector<uchar> eeprom = CountedBytes(1202);
    static const QVector<ushort> words{500, 3, 65535};
    static const QVector<Command> all{
        {"CF1", [](auto& d) { return d.SendIpConfiguration(eeprom.constData()); },
            "4346310D" + HexOf(eeprom, 8), false},
        {"short CF2", [](auto& d) { return d.SendMacAddress("02:4c:7e:0a:0B:ff"); },
            "4346320D024C7E0A0BFF", false},
        {"CF3", [](auto& d) { return d.SendFirmwareBlock(block.constData()); },
            "4346330D" + HexOf(block, 1220), true},
        {"CF4", [](auto& d) { return d.SendFirmwareChecksum(block.constData()); },
            "4346340D" + HexOf(block, 8), false},
        {"CF5", [](auto& d) { return d.StartFirmwareUpdate(); },
            "4346350D" + QString("00").repeated(255), false},
        {"CF6", [](auto& d) { return d.WriteEeprom(eeprom.constData(), 1200); },
            "4346360D" + HexOf(eeprom, 1202), true},
        {"CF9", [](auto& d) { return d.SendOptions("a,b"); }, "4346390D612C62", true},
        {"CF10", [](auto& d) { return d.SendOptionDescriptions("a,b"); }, "434631300D612C62", true},
        {"HCF", [](auto& d) { return d.SendMotorConfiguration(0, words); }, "4843460D01F40003FFFF",
            false},
        {"VCF", [](auto& d) { return d.SendMotorConfiguration(1, words); }, "5643460D01F40003FFFF",
            false},
        {"HCF without values", [](auto& d) { return d.SendMotorConfiguration(0, {}); }, "4843460D",
            false},
    };
    return all;
}

// The unit answers each frame at once with these bytes.
void AnswerWith(const QByteArray& answer)
{
    scripted::WhenSent([answer](const QByteArray&) { scripted::Deliver(answer); });
}

} // namespace

class DeviceCommunicationTest : public WarningsFail
{
    Q_OBJECT

private:
    QScopedPointer<CDeviceCommunication> device;

    void Connect()
    {
        scripted::Reset();
        device.reset(new CDeviceCommunication);
        device->StartConnection("127.0.0.1");
        device->wait();
        scripted::ForgetEvents();
    }

    bool ReadEeprom(ushort length, QVector<uchar>& out)
    {
        uchar request[4] = {uchar(length / 256), uchar(length % 256), 0x04, 0xB0};
        return device->ReadEeprom(request, out);
    }

private slots:
    void init()
    {
        WarningsFail::init();
        Connect();
        QVERIFY(device->IsConnected());
    }

    void cleanup()
    {
        device.reset();
        WarningsFail::cleanup();
    }

    void connectingResolvesConnectsToPort50000AndStopsBlocking()
    {
        CDeviceCommunication fresh;
        QVERIFY(!fresh.IsConnected());
        fresh.StartConnection("127.0.0.9");
        fresh.wait();
        QCOMPARE(scripted::Actions(),
            (QStringList{"open 1", "option reuse address", "option out of band inline",
                "resolve 127.0.0.9", "connect 50000", "nonblocking"}));
        QVERIFY(fresh.IsConnected());
        QCOMPARE(fresh.objectName(), "CommunicationThread");
    }

    void aFailedAttemptLeavesTheFlagDownWithoutASignal()
    {
        scripted::SetConnectResult(scripted::ConnectResult::Fails);
        const QSignalSpy lost(device.get(), &CDeviceCommunication::ConnectionLost);
        device->StartConnection("127.0.0.1");
        device->wait();
        QVERIFY(!device->IsConnected());
        QCOMPARE(lost.count(), 0);
    }

    void aNewAttemptClosesTheOldSocketFirst()
    {
        device->StartConnection("127.0.0.1");
        device->wait();
        QCOMPARE(scripted::Actions().first(), "close");
    }

    void aNewAttemptEndsAHangingOneAtOnce()
    {
        scripted::SetConnectResult(scripted::ConnectResult::Hangs);
        device->StartConnection("127.0.0.1");
        scripted::SetConnectResult(scripted::ConnectResult::Succeeds);
        device->StartConnection("127.0.0.1");
        device->wait();
        QVERIFY(device->IsConnected());
    }

    void aHangingAttemptEndsWithTheObject()
    {
        scripted::SetConnectResult(scripted::ConnectResult::Hangs);
        device->StartConnection("127.0.0.1");
        device.reset();
    }

    void theDestructorDoesNotCloseTheSocket()
    {
        device.reset();
        QCOMPARE(scripted::Actions(), QStringList());
    }

    void disconnectClosesTheSocketWithoutASignal()
    {
        const QSignalSpy lost(device.get(), &CDeviceCommunication::ConnectionLost);
        device->Disconnect();
        QVERIFY(!device->IsConnected());
        QCOMPARE(scripted::Events(), QStringList{"close"});
        QCOMPARE(lost.count(), 0);
    }

    void disconnectWithoutASocketClearsTheFlagAndDoesNothingElse()
    {
        device->Disconnect();
        scripted::ForgetEvents();
        device->Disconnect();
        QVERIFY(!device->IsConnected());
        QCOMPARE(scripted::Events(), QStringList());
    }

    void aCommandBeforeAnyConnectionFailsLikeABrokenLink()
    {
        CDeviceCommunication fresh;
        const QSignalSpy lost(&fresh, &CDeviceCommunication::ConnectionLost);
        QVERIFY(!fresh.SendMotorConfiguration(0, {1}));
        QCOMPARE(lost.count(), 1);
    }

    void aCommandWhileAnAttemptHangsFailsLikeABrokenLink()
    {
        scripted::SetConnectResult(scripted::ConnectResult::Hangs);
        device->StartConnection("127.0.0.1");
        QVERIFY(!device->SendMotorConfiguration(0, {1}));
    }

    void theFlagRisesBeforeTheSocketStopsBlockingAndACommandWaitsForThat()
    {
        std::atomic<bool> flagBefore{false};
        scripted::WhenConnected([&] {
            flagBefore = device->IsConnected();
            for (int turn = 0; turn < 10000; ++turn) {
                std::this_thread::yield(); // so that a command that does not wait comes first
            }
        });
        device->StartConnection("127.0.0.1");
        while (!device->IsConnected()) {
            std::this_thread::yield();
        }
        QVERIFY(device->SendMotorConfiguration(0, {}));
        QVERIFY(flagBefore);
        QCOMPARE(scripted::Actions().mid(5),
            (QStringList{"connect 50000", "nonblocking", "send 4843460D"}));
    }

    void everyFrameIsOneSendBehindADrain()
    {
        for (const Command& command : Commands()) {
            Connect();
            AnswerWith(command.acknowledged ? "1\r" : "");
            QVERIFY2(command.send(*device), command.name);
            QStringList expected{"sleep 10", "send " + command.frame};
            if (command.acknowledged) {
                expected << "sleep 1";
                QCOMPARE(device->GetLastResult(), ushort(1));
            }
            QCOMPARE(scripted::Events(), expected);
        }
    }

    void aFailedSendClearsTheFlagAndSignalsOnce()
    {
        for (const Command& command : Commands()) {
            Connect();
            QVector<bool> flagsAtSignals;
            connect(device.get(), &CDeviceCommunication::ConnectionLost, device.get(),
                [&] { flagsAtSignals.append(device->IsConnected()); });
            scripted::FailSendsFrom(1);
            QVERIFY2(!command.send(*device), command.name);
            QVERIFY(!device->IsConnected());
            QCOMPARE(flagsAtSignals, QVector<bool>{false});
            QCOMPARE(scripted::Sleeps(), QList<int>{Drain});
        }
    }

    void staleBytesAreDrainedOneIn10Ms()
    {
        scripted::Deliver("xyz");
        device->SendMotorConfiguration(0, {});
        QCOMPARE(scripted::Sleeps(), (QList<int>{10, 10, 10, 10}));
    }

    void aRefusalIsFalseWithResult0()
    {
        for (const Command& command : Commands()) {
            Connect();
            AnswerWith("0\r");
            QVERIFY2(command.send(*device) == !command.acknowledged, command.name);
            QCOMPARE(device->GetLastResult(), ushort(0));
            QVERIFY(device->IsConnected());
            if (command.acknowledged) {
                QCOMPARE(scripted::Sleeps(), (QList<int>{Drain, 1})); // seen at the first poll
            }
        }
    }

    void silenceIsResult2After10000Polls()
    {
        for (const Command& command : Commands()) {
            Connect();
            QVERIFY2(command.send(*device) == !command.acknowledged, command.name);
            QVERIFY(device->IsConnected());
            if (command.acknowledged) {
                QCOMPARE(device->GetLastResult(), ushort(2));
                QCOMPARE(scripted::Sleeps().size(), 10001);
                QCOMPARE(scripted::Now(), Drain + 10000);
            }
        }
    }

    void otherBytesAreResult2AtOnce()
    {
        AnswerWith("7\r");
        QVERIFY(!device->SendOptions("a"));
        QCOMPARE(device->GetLastResult(), ushort(2));
        QCOMPARE(scripted::Sleeps(), (QList<int>{Drain, 1}));
    }

    void anAnswerOf2KeepsTheWaitGoing()
    {
        scripted::WhenSent([](const QByteArray&) {
            scripted::Deliver("2\r");
            scripted::DeliverAfter(50, "1\r");
        });
        QVERIFY(device->SendOptions("a"));
        QCOMPARE(scripted::Sleeps().size(), 1 + 51);
    }

    void anAcknowledgementIsSeenAtTheFirstPollBehindIt()
    {
        scripted::WhenSent([](const QByteArray&) { scripted::DeliverAfter(300, "1\r"); });
        QVERIFY(device->SendOptions("a"));
        QCOMPARE(scripted::Sleeps().size(), 1 + 301);
    }

    void aLoneDigitIsAnAcknowledgementAtItsFirstByte()
    {
        for (const QByteArray& digit : {QByteArray("1"), QByteArray("0")}) {
            Connect();
            scripted::WhenSent([digit](const QByteArray&) {
                scripted::Deliver(digit);
                scripted::DeliverAfter(500, "\r");
            });
            device->SendOptions("a");
            QCOMPARE(QByteArray::number(device->GetLastResult()), digit);
            QCOMPARE(scripted::Sleeps(), (QList<int>{Drain, 1}));
        }
    }

    void aFirmwareBlockThatCannotBeSentLeavesResult0()
    {
        AnswerWith("1\r");
        QVERIFY(device->SendOptions("a"));
        QCOMPARE(device->GetLastResult(), ushort(1));
        scripted::FailSendsFrom(1);
        QVERIFY(!device->SendFirmwareBlock(CountedBytes(1220).constData()));
        QCOMPARE(device->GetLastResult(), ushort(0));
    }

    void validationIsTrueOnceSentWhateverTheAnswer()
    {
        const QMap<QByteArray, int> resultOfAnswer{{"1\r", 1}, {"0\r", 0}, {"", 2}};
        for (const QByteArray& answer : resultOfAnswer.keys()) {
            Connect();
            AnswerWith(answer);
            QVERIFY(device->ValidateFirmware());
            QCOMPARE(int(device->GetLastResult()), resultOfAnswer.value(answer));
            QCOMPARE(scripted::Actions(), QStringList{"send 4346380D"});
        }
    }

    void validationIsFalseWhenItCannotBeSent()
    {
        scripted::FailSendsFrom(1);
        QVERIFY(!device->ValidateFirmware());
        QCOMPARE(scripted::Sleeps(), QList<int>{Drain});
    }

    void aTextFrameOf1199BytesIsSentAndOneOf1200IsNot()
    {
        AnswerWith("1\r");
        QVERIFY(!device->SendOptions(QString(1196, 'x')));
        QVERIFY(!device->SendOptionDescriptions(QString(1195, 'x')));
        QCOMPARE(scripted::Events(), QStringList());
        QVERIFY(device->SendOptions(QString(1195, 'x')));
        QVERIFY(device->SendOptionDescriptions(QString(1194, 'x')));
        for (const QString& frame : scripted::Actions()) {
            QCOMPARE(frame.size(), 5 + 2 * 1199);
        }
    }

    // The length of a text frame is held in 16 bits.
    void aTextOf65536CharactersIsSentAsItsHead()
    {
        AnswerWith("1\r");
        QVERIFY(device->SendOptions(QString(65536, 'x')));
        QCOMPARE(scripted::Actions(), QStringList{"send 4346390D"});
    }

    void aTextTravelsInAsManyBytesAsItHasCharacters()
    {
        AnswerWith("1\r");
        QVERIFY(device->SendOptions(QString::fromUtf8("\xC3\xA4z"))); // "äz" is three bytes
        QCOMPARE(scripted::Actions(), QStringList{"send 4346390DC3A4"});
    }

    void aTextTravelsUpToItsFirstZeroAndAsZerosBehindIt()
    {
        AnswerWith("1\r");
        QVERIFY(device->SendOptions(QString("a%1b").arg(QChar(0))));
        QCOMPARE(scripted::Actions(), QStringList{"send 4346390D610000"});
    }

    void theEepromWriteTakes1200BytesAndNoMore()
    {
        AnswerWith("1\r");
        const QVector<uchar> block = CountedBytes(1203);
        QVERIFY(device->WriteEeprom(block.constData(), 1200));
        QCOMPARE(scripted::Actions().first().size(), 5 + 2 * 1206);
        scripted::ForgetEvents();
        QVERIFY(!device->WriteEeprom(block.constData(), 1201));
        QCOMPARE(scripted::Events(), QStringList());
    }

    void anEepromWriteOfNothingSendsTheAddress()
    {
        AnswerWith("1\r");
        const uchar block[2] = {0x04, 0xB0};
        QVERIFY(device->WriteEeprom(block, 0));
        QCOMPARE(scripted::Actions(), QStringList{"send 4346360D04B0"});
    }

    void anotherChannelThanTheMotorsAndAMacAddressOf9CharactersAreNotSent()
    {
        QVERIFY(!device->SendMotorConfiguration(2, {1}));
        QVERIFY(!device->SendMotorConfiguration(-1, {1}));
        QVERIFY(!device->SendMacAddress("02:4C:7E:"));
        QCOMPARE(scripted::Events(), QStringList());
    }

    void aMacAddressWithoutSixPartsIsSentAsZeros()
    {
        for (const char* const mac : {"02:4C:7E:0", "02-4C-7E-01-02-03", "02:4C:7E:01:02:03:04"}) {
            scripted::ForgetEvents();
            QVERIFY2(device->SendMacAddress(mac), mac);
            QCOMPARE(scripted::Actions(), QStringList{"send 4346320D000000000000"});
        }
    }

    void theLongConfigurationHasItsFieldsInPlace()
    {
        const QString frame = LongConfiguration("ZELMA&KOVINTH,VX440,P/S\r", "02:4c:7E:00:01:29",
            "192.168.0.129", "255.255.255.0", Parameters(0x0100), Parameters(0x0200));
        QString motors;
        for (const int first : {0x0100, 0x0200}) {
            for (int id = 0; id < 10; ++id) {
                motors += QString("%1").arg(first + id, 4, 16, QLatin1Char('0')).toUpper();
            }
        }
        const QByteArray identity = QByteArray("ZELMA&KOVINTH,VX440,P/S\r").leftJustified(60, '\0');
        QCOMPARE(frame, "4346320D" + motors + QString("024C7E000129") + "C0A80081" + "FFFFFF00" +
                            QString("00").repeated(13) +
                            QString::fromLatin1(identity.toHex().toUpper()));
        QCOMPARE(frame.size(), 2 * 131);
    }

    void aMissingParameterTravelsAs0AndThoseFrom10OnDoNot()
    {
        const QMap<int, ushort> motor{{0, 1}, {9, 2}, {10, 0xAAAA}, {11, 0xBBBB}, {-1, 0xCCCC}};
        const QString words = "0001" + QString("0000").repeated(8) + "0002";
        for (const bool both : {false, true}) {
            const QString frame =
                LongConfiguration({}, {}, {}, {}, motor, both ? motor : QMap<int, ushort>());
            QCOMPARE(frame, "4346320D" + words + (both ? words : QString("0000").repeated(10)) +
                                QString("00").repeated(87));
        }
    }

    void anAddressThatDoesNotParseTravelsAs0()
    {
        const QString frame = LongConfiguration({}, {}, "192.168.0.256", "x", {}, {});
        QCOMPARE(frame.mid(8 + 2 * 46, 16), "0000000000000000");
    }

    void onlyTheFirst60CharactersOfTheIdentityTravel()
    {
        const QString frame = LongConfiguration(QString(500, 'i'), {}, {}, {}, {}, {});
        QCOMPARE(frame.size(), 2 * 131);
        QCOMPARE(frame.mid(8 + 2 * 67), QString("69").repeated(60));
    }

    void aMacAddressWithAnyNumberOfPartsStaysInTheBlock()
    {
        const QString mac = QString("11:").repeated(200) + "11";
        const QString frame = LongConfiguration("id", mac, "1.2.3.4", "5.6.7.8", {}, {});
        QCOMPARE(frame.size(), 2 * 131);
        QCOMPARE(frame.mid(8 + 2 * 40, 28), "1111111111110102030405060708");
    }

    void theIdentityEndsWithItsCarriageReturn()
    {
        AnswerWith("A,B,C/D,3.10\rrest");
        QCOMPARE(device->ReadIdentity(), "A,B,C/D,3.10\r");
        QCOMPARE(scripted::Sleeps(), QList<int>{Drain} + QVector<int>(13, 1).toList());
        QCOMPARE(scripted::Actions(), QStringList{"send 2A49444E3F0D"});
    }

    void theIdentityBeginsWithAZeroForEachMillisecondOfSilence()
    {
        scripted::WhenSent([](const QByteArray&) { scripted::DeliverAfter(3, "A\r"); });
        QCOMPARE(device->ReadIdentity(), QString(3, QChar(0)) + "A\r");
    }

    void theIdentityRepeatsTheLastCharacterInAGap()
    {
        scripted::WhenSent([](const QByteArray&) {
            scripted::Deliver("AB");
            scripted::DeliverAfter(4, "C\r");
        });
        QCOMPARE(device->ReadIdentity(), "ABBBC\r");
    }

    void aSilentUnitHasAnIdentityOf2000Zeros()
    {
        QCOMPARE(device->ReadIdentity(), QString(2000, QChar(0)));
        QCOMPARE(scripted::Now(), Drain + 2000);
        QVERIFY(device->IsConnected());
    }

    void aFailedSendOfTheIdentitySignalsOnceAndTheTextComesAfterThePasses()
    {
        const QSignalSpy lost(device.get(), &CDeviceCommunication::ConnectionLost);
        scripted::FailSendsFrom(1);
        QCOMPARE(device->ReadIdentity().size(), 2000);
        QCOMPARE(lost.count(), 1);
        QVERIFY(!device->IsConnected());
        QCOMPARE(scripted::Now(), Drain + 2000);
    }

    void aTextOfMoreThan2000CharactersIsCutAndTheRestIsLeftForTheDrain()
    {
        scripted::WhenSent([](const QByteArray& frame) {
            if (frame.startsWith("*IDN?") || frame.startsWith("GET:")) {
                scripted::Deliver(QByteArray(2003, 'x'));
            }
        });
        QCOMPARE(device->ReadIdentity(), QString(2000, 'x'));
        scripted::ForgetEvents();
        device->SendMotorConfiguration(0, {});
        QCOMPARE(scripted::Sleeps(), (QList<int>{10, 10, 10, 10}));
        QCOMPARE(device->ReadOptions(), QString(2000, 'x'));
    }

    void theOptionQueriesSendTheirTexts()
    {
        AnswerWith("x\r");
        QCOMPARE(device->ReadOptions(), "x\r");
        QCOMPARE(device->ReadOptionDescriptions(), "x\r");
        QCOMPARE(
            scripted::Actions(), (QStringList{"send 4745543A4F5054494F4E3A494E5445524E414C3F0D",
                                     "send 4745543A4F5054494F4E3A444553433F0D"}));
    }

    void theOptionQueriesCollectOnlyWhatCame()
    {
        scripted::WhenSent([](const QByteArray&) {
            scripted::DeliverAfter(5, "A");
            scripted::DeliverAfter(9, "B\r");
        });
        QCOMPARE(device->ReadOptions(), "AB\r");
    }

    void theOptionQueriesGoThroughTheirPassesInSilenceAndAfterAFailedSend()
    {
        QCOMPARE(device->ReadOptions(), QString());
        QCOMPARE(scripted::Now(), Drain + 2000);
        scripted::FailSendsFrom(1);
        QCOMPARE(device->ReadOptionDescriptions(), QString());
        QCOMPARE(scripted::Now(), 2 * (Drain + 2000));
        QVERIFY(!device->IsConnected());
    }

    void theConfigurationIsReadASecondAfterTheRequest()
    {
        scripted::WhenSent([](const QByteArray&) { scripted::DeliverAfter(1000, "abcd"); });
        uchar buffer[5] = {1, 2, 3, 4, 5};
        QVERIFY(device->ReadConfiguration(buffer, 4));
        QCOMPARE(QByteArray(reinterpret_cast<char*>(buffer), 5), QByteArray("abcd\x05"));
        QCOMPARE(scripted::Events(), (QStringList{"sleep 10", "send 4346300D", "sleep 1000"}));
    }

    void aShortOrLateConfigurationIsFalseAndLeavesTheBuffer()
    {
        for (const char* const answer : {"", "abc"}) {
            Connect();
            const QSignalSpy lost(device.get(), &CDeviceCommunication::ConnectionLost);
            AnswerWith(answer);
            uchar buffer[4] = {1, 2, 3, 4};
            QVERIFY(!device->ReadConfiguration(buffer, 4));
            QCOMPARE(
                QByteArray(reinterpret_cast<char*>(buffer), 4), QByteArray("\x01\x02\x03\x04"));
            QVERIFY(device->IsConnected());
            QCOMPARE(lost.count(), 0);
        }
    }

    void aConfigurationThatCannotBeAskedForStillTakesItsSecond()
    {
        scripted::FailSendsFrom(1);
        uchar buffer[4] = {};
        QVERIFY(!device->ReadConfiguration(buffer, 4));
        QCOMPARE(scripted::Sleeps(), (QList<int>{Drain, 1000}));
        QVERIFY(!device->IsConnected());
    }

    void theEepromReadAppendsWhatCameASecondLater()
    {
        scripted::WhenSent([](const QByteArray&) { scripted::DeliverAfter(1000, "abc"); });
        uchar request[4] = {0x00, 0x03, 0x04, 0xB0};
        QVector<uchar> out{9};
        QVERIFY(device->ReadEeprom(request, out));
        QCOMPARE(out, (QVector<uchar>{9, 'a', 'b', 'c'}));
        QCOMPARE(
            scripted::Events(), (QStringList{"sleep 10", "send 4346370D000304B0", "sleep 1000"}));
        quint16 length = 0; // turned into the host's order
        memcpy(&length, request, sizeof length);
        QCOMPARE(length, quint16(3));
    }

    void aSilentUnitGivesAsManyBytesOf255AsWereAskedForAndTrue()
    {
        for (const ushort length : {ushort(64), ushort(65535)}) {
            QVector<uchar> out;
            QVERIFY(ReadEeprom(length, out));
            QCOMPARE(out, QVector<uchar>(length, 255));
        }
    }

    void aShortEepromAnswerIsFilledWith255()
    {
        AnswerWith("ab");
        QVector<uchar> out;
        QVERIFY(ReadEeprom(4, out));
        QCOMPARE(out, (QVector<uchar>{'a', 'b', 255, 255}));
    }

    void anEepromRequestThatCannotBeSentIsFalseAfterItsSecond()
    {
        scripted::FailSendsFrom(1);
        QVector<uchar> out;
        QVERIFY(!ReadEeprom(4, out));
        QCOMPARE(out, QVector<uchar>());
        QCOMPARE(scripted::Sleeps(), (QList<int>{Drain, 1000}));
    }
};

QTEST_GUILESS_MAIN(DeviceCommunicationTest)
#include "DeviceCommunicationTest.moc"
