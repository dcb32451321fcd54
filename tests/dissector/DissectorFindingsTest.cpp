// SPDX-License-Identifier: MIT

#include "tests/dissector/CaptureFile.h"
#include "tests/dissector/Tshark.h"
#include "tests/simulator/FirmwareBlocks.h"
#include "tests/support/Warnings.h"

#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <functional>

using Story = std::function<void(CaptureFile&)>;

namespace {

QByteArray FirmwareBlock(int number, const QByteArray& data)
{
    return "CF3\r" + firmwarestream::Block(data, number);
}

QByteArray FirmwareEnd(quint32 sum, quint32 length)
{
    return "CF4\r" + firmwarestream::BigEndian(sum) + firmwarestream::BigEndian(length);
}

QByteArray WithByte(QByteArray frame, int position, char byte)
{
    frame[position] = byte;
    return frame;
}

// What the first block of a stream may have, and any other.
const QByteArray Data = QByteArray(64, '\0') + QByteArray(1136, '\1');
const QByteArray FirstBlock = FirmwareBlock(0, Data);
const char NewIdentity[] = "a,b,c/d,3.10\r";
const char OldIdentity[] = "a,b,c/d,2.50\r";
const QByteArray TenWords(20, '\1');
const QByteArray TwelveWords(24, '\1');
const QByteArray OldBlock(67, '\1');
const QByteArray NewBlock(75, '\1');
const QByteArray ReadOfTwoBytes("CF7\r\0\2\0\0", 8);
const QByteArray Names("a,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0");

Story Sent(const QByteArray& bytes, int lacking = 0)
{
    return [=](CaptureFile& capture) { capture.FromTool(bytes, lacking); };
}

Story Received(const QByteArray& bytes)
{
    return [=](CaptureFile& capture) { capture.FromUnit(bytes); };
}

Story Waited(double milliseconds)
{
    return [=](CaptureFile& capture) { capture.Wait(milliseconds); };
}

const Story OfANewUnit = [](CaptureFile& capture) { capture.NewUnit(); };
const Story OfANewConnection = [](CaptureFile& capture) { capture.NewConnection(); };

// One behind the other.
Story All(const QVector<Story>& stories)
{
    return [=](CaptureFile& capture) {
        for (const Story& story : stories) {
            story(capture);
        }
    };
}

Story Exchanged(const QByteArray& request, const QByteArray& answer, double milliseconds = 1)
{
    const Story received = answer.isEmpty() ? Waited(0) : Received(answer);
    return All({Sent(request), Waited(milliseconds), received, Waited(20)});
}

Story KnowingTheUnit(const char* identity, const QByteArray& request, const QByteArray& answer = {})
{
    return All({Exchanged("*IDN?\r", identity), Exchanged(request, answer)});
}

// Two blocks, each acknowledged, and the end with these numbers.
Story Transfer(quint32 endSum, quint32 endLength)
{
    return All({Exchanged(FirstBlock, "1\r"), Exchanged(FirmwareBlock(1, "\5"), "1\r"),
        Sent(FirmwareEnd(endSum, endLength))});
}

/// An exchange with a unit of its own, and what is marked in it: "FRAME NAME|FRAME NAME".
struct sROW
{
    const char* name;
    Story story;
    const char* findings;
};

const Story CommandInABlock = [](CaptureFile& capture) {
    const QByteArray block =
        FirmwareBlock(1, QByteArray(500, 'A') + "CF3\r" + QByteArray(696, 'A'));
    All({Sent(block.left(524)), Waited(1), Exchanged(block.mid(524), "1\r")})(capture);
};

const sROW Rows[] = {
    {"done", Exchanged("CF8\r", "1\r"), ""},
    {"refused", Exchanged("CF8\r", "0\r"), "2 refused"},
    {"acknowledged by a digit alone", Exchanged("CF8\r", "1"), "2 length"},
    {"acknowledged as silence", Exchanged("CF8\r", "2\r"), "2 not_understood"},
    {"acknowledged behind silence", All({Exchanged("CF8\r", "2\r"), Received("1\r")}),
        "2 not_understood"},
    {"other bytes for an acknowledgement", Exchanged("CF8\r", "OK"), "2 not_understood"},

    {"silence", Sent("CF8\r"), "1 no_answer"},
    {"silence where none is due", Sent("HCF\r" + TenWords), ""},
    {"silence, and the next command", All({Exchanged("CF9\ra", {}), Exchanged("CF8\r", "1\r")}),
        "1 length|1 no_answer"},
    {"a read of nothing", Sent(QByteArray("CF7\r\0\0\0\0", 8)), ""},

    {"an acknowledgement in time", Exchanged("CF8\r", "1\r", 9900), ""},
    {"a late acknowledgement", Exchanged("CF8\r", "1\r", 10100), "2 late"},
    {"a block in time", Exchanged(ReadOfTwoBytes, "ab", 990), ""},
    {"a late block", Exchanged(ReadOfTwoBytes, "ab", 1010), "2 late"},
    {"a text in time", Exchanged("*IDN?\r", NewIdentity, 1990), ""},
    {"a late text", Exchanged("*IDN?\r", NewIdentity, 2010), "2 late"},

    {"bytes before any command", Received("x"), "1 unasked"},
    {"bytes behind a command without answer", Exchanged("CF5\r" + QByteArray(255, '\0'), "1\r"),
        "2 unasked"},
    {"bytes behind a whole answer", Exchanged("CF8\r", "11\r"), "2 not_understood|2 unasked"},
    {"bytes behind a refusal", Exchanged("CF8\r", "0\r\r"), "2 refused|2 unasked"},

    {"a right sum", Exchanged(FirstBlock, "1\r"), ""},
    {"a wrong sum", Exchanged(WithByte(FirstBlock, 7, FirstBlock.at(7) + 1), "0\r"),
        "1 sum|2 refused"},
    {"a sum that does not fit into its field",
        Exchanged(FirmwareBlock(9, QByteArray(1200, '\xFF')), "1\r"), ""},
    {"a block too many",
        All({Exchanged(FirstBlock, "1\r"), Exchanged(FirmwareBlock(2, Data), "0\r")}),
        "3 sequence|4 refused"},
    {"a block again that was refused",
        All({Exchanged(FirstBlock, "0\r"), Exchanged(FirmwareBlock(1, Data), "0\r")}),
        "2 refused|3 sequence|4 refused"},
    {"a transfer that begins anew",
        All({Exchanged(FirstBlock, "1\r"), Exchanged(FirstBlock, "1\r"),
            Exchanged(FirmwareBlock(1, Data), "1\r")}),
        ""},
    {"a transfer whose beginning is not there", Exchanged(FirmwareBlock(7, Data), "1\r"), ""},
    {"a block that is not zero where it has to be",
        Exchanged(WithByte(FirmwareBlock(0, "\1"), 10, '\1'), "0\r"), "1 not_zero|2 refused"},
    {"a block that is not zero behind its data",
        Exchanged(WithByte(FirmwareBlock(0, "\1"), 1223, '\1'), "0\r"), "1 not_zero|2 refused"},
    {"a right end", Transfer(1141, 1201), ""},
    {"an end with a wrong sum", Transfer(1142, 1201), "5 sum"},
    {"an end with a wrong length", Transfer(1141, 1202), "5 length"},

    {"a block without data", Exchanged(FirmwareBlock(0, {}), "0\r"), "1 length|2 refused"},
    {"a block with too many data", Exchanged(WithByte(FirstBlock, 5, '\xB1'), "0\r"),
        "1 length|2 refused"},
    {"half an answer", Exchanged("CF0\r", QByteArray(33, '\1')), "2 length"},
    {"the block of new firmware from a unit with new firmware",
        KnowingTheUnit(NewIdentity, "CF0\r", NewBlock), ""},
    {"the block of old firmware from a unit with new firmware",
        KnowingTheUnit(NewIdentity, "CF0\r", OldBlock), "4 length|4 length"},
    {"the block of new firmware from a unit with old firmware",
        KnowingTheUnit(OldIdentity, "CF0\r", NewBlock), "4 length"},
    {"words of old firmware for new firmware", KnowingTheUnit(NewIdentity, "HCF\r" + TenWords),
        "3 length"},
    {"words of new firmware for old firmware", KnowingTheUnit(OldIdentity, "VCF\r" + TwelveWords),
        "3 length"},
    {"words of the right number for old firmware", KnowingTheUnit(OldIdentity, "VCF\r" + TenWords),
        ""},
    {"a short CF2 for old firmware", KnowingTheUnit(OldIdentity, "CF2\rabcdef"), "3 length"},
    {"a frame that ends too soon", Sent("CF1\rabc"), "1 length"},
    {"an EEPROM write of 1200 bytes", Exchanged("CF6\r" + QByteArray(1202, '\0'), "1\r"), ""},
    {"an EEPROM write of 1201 bytes", Exchanged("CF6\r" + QByteArray(1203, '\0'), "0\r"),
        "1 length|2 refused"},
    {"a text frame of 1199 bytes", Exchanged("CF9\r" + Names.leftJustified(1195, '0'), "1\r"), ""},
    {"a text frame of 1200 bytes", Exchanged("CF9\r" + Names.leftJustified(1196, '0'), "0\r"),
        "1 length|2 refused"},
    {"18 names", Exchanged("CF9\r" + Names.mid(2), "1\r"), "1 length"},
    {"20 names", Exchanged("CF9\r" + Names + ",0", "1\r"), "1 length"},

    {"no command", Sent("CF11\r"), "1 no_command"},
    {"several times no command", Sent("CF11\rHELLO\r\rCF1"), "1 no_command|1 no_command"},
    {"100 commands in one segment", Sent(QByteArray("CF4\r12345678").repeated(100)), ""},
    {"more commands in one segment", Sent(QByteArray("CF4\r12345678").repeated(102)),
        "1 no_command"},
    {"no command without end", Sent(QByteArray(1000, 'x')), "1 no_command"},
    {"the beginning of a command", Sent("GET:OPTION:"), "1 no_command"},
    {"a command behind what is none", Exchanged("CF\rCF8\r", "1\r"), "1 no_command"},
    {"an identity of three fields", Exchanged("*IDN?\r", "a,b,c/d\r"), "2 not_understood"},
    {"an identity without a stroke", Exchanged("*IDN?\r", "a,b,c,3.10\r"), "2 not_understood"},
    {"an empty text", Exchanged("GET:OPTION:DESC?\r", "\r"), "2 not_understood"},
    {"a text without end", Exchanged("*IDN?\r", "a,b,c/d,3.10"), "2 length"},
    {"a command behind a segment of which the capture has a part",
        All({Sent("CF1\r\1\2\3\4\5\6\7\1", 3), Waited(1), Exchanged("CF8\r", "1\r")}),
        "1 length|1 not_captured"},
    {"a command behind a frame that lacks its end",
        All({Exchanged("CF5\r" + QByteArray(100, '\0'), {}), Exchanged("CF8\r", "1\r")}),
        "1 length"},
    {"an answer to a frame that lacks its end",
        All({Exchanged(FirstBlock.left(700), "1\r"), Exchanged(FirmwareBlock(1, Data), "1\r")}),
        "1 length"},

    {"more of a text frame",
        All({Sent("CF9\r" + Names.left(5)), Waited(9900), Exchanged(Names.mid(5), "1\r")}), ""},
    {"bytes behind the wait for an acknowledgement",
        All({Sent("CF9\r" + Names), Waited(10100), Sent("0")}), "1 no_answer|2 no_command"},
    {"bytes behind an acknowledged text frame", All({Exchanged("CF9\r" + Names, "1\r"), Sent("0")}),
        "3 no_command"},
    {"words of old firmware that the network has brought together",
        All({Sent("HCF\r" + TenWords), Waited(3), Sent("VCF\r" + TenWords), Waited(3),
            Exchanged("CF8\r", "1\r")}),
        ""},
    {"a command in two segments right behind words",
        All({Sent("HCF\r" + TenWords), Sent("V"), Sent("CF\r")}), ""},
    {"a command within the data of a block", CommandInABlock, ""},
    {"a command in the segment of words of old firmware", Sent("VCF\r" + TenWords + "CF8\r"),
        "1 no_answer"},
    {"words of old firmware for a unit whose block came in two segments",
        All({Sent("CF0\r"), Received(OldBlock), Received(NewBlock.mid(67)), Waited(20),
            Sent("HCF\r" + TenWords)}),
        "4 length"},
};

// What is marked in the frames behind `begin` up to `end`, which are counted from `begin`.
QString Findings(const sDISSECTION& seen, int begin, int end)
{
    QStringList findings;
    for (int frame = begin + 1; frame <= end; ++frame) {
        for (const QString& expert : seen.Packet(frame).Experts()) {
            findings.append(QString("%1 %2").arg(frame - begin).arg(expert));
        }
    }
    findings.sort();
    return findings.join('|');
}

} // namespace

/// What a person looks for in a capture, and what must not be taken for it.
class DissectorFindingsTest : public WarningsFail
{
    Q_OBJECT

private:
    QTemporaryDir folder;

    sDISSECTION Run(const CaptureFile& capture, Passes passes = Passes::Two)
    {
        const QString path = folder.filePath("story.pcap");
        return capture.Save(path) ? Dissect(path, passes) : sDISSECTION{path, {}};
    }

    sDISSECTION Run(const Story& story, Passes passes = Passes::Two)
    {
        CaptureFile capture;
        story(capture);
        return Run(capture, passes);
    }

    // A unit tells who it is, and another story follows.
    QStringList ExpertsOf(const char* identity, const Story& story)
    {
        return Run(All({OfANewUnit, Exchanged("*IDN?\r", identity), story})).Experts();
    }

private slots:
    void initTestCase()
    {
        if (!TsharkIsInstalled()) {
            QSKIP("tshark is not installed");
        }
    }

    void aFindingIsMarkedInItsFrame()
    {
        CaptureFile capture;
        QVector<int> ends{0};
        for (const sROW& row : Rows) {
            capture.NewUnit();
            row.story(capture);
            capture.Wait(20);
            ends.append(capture.PacketCount());
        }
        const sDISSECTION seen = Run(capture);
        QCOMPARE(seen.error, QString());
        for (int i = 0; i + 1 < ends.size(); ++i) {
            const QString found = Findings(seen, ends.at(i), ends.at(i + 1));
            QCOMPARE(QString("%1: %2").arg(Rows[i].name, found),
                QString("%1: %2").arg(Rows[i].name, Rows[i].findings));
        }
    }

    void theClosingFrameIsVerified()
    {
        const QPair<Story, const char*> rows[] = {{Transfer(1141, 1201), "1 1"},
            {Transfer(1140, 1201), "0 1"}, {Transfer(1141, 1200), "1 0"},
            {Sent(FirmwareEnd(1, 1)), "2 2"}};
        for (const auto& row : rows) {
            const sDISSECTED_PACKET end = Run(row.first).packets.last();
            QCOMPARE((end.Values("end.sum.status") + end.Values("end.length.status")).join(' '),
                row.second);
        }
    }

    void anAnswerOfWhichNothingElseComesIsShownAsFarAsItGoes()
    {
        for (const Passes passes : {Passes::One, Passes::Two}) {
            const sDISSECTED_PACKET answer =
                Run(Exchanged("CF0\r", QByteArray::fromHex("01F4000300")), passes).Packet(2);
            QCOMPARE(answer.Values("motor.azimuth.smd"), QStringList{"500"});
            QCOMPARE(answer.Values("motor.azimuth.mhd"), QStringList{"3"});
            QVERIFY(!answer.Has("motor.azimuth.sd"));
        }
    }

    void aTextWithoutEndSaysSo()
    {
        const sDISSECTED_PACKET answer = Run(Exchanged("*IDN?\r", "a,b,c/d,3.10")).Packet(2);
        QCOMPARE(answer.fields.last().name, "vx440.expert.length");
        QCOMPARE(answer.fields.last().text, "12 bytes and no carriage return");
    }

    void aFrameInPartsTellsWhereItIsShown()
    {
        const sDISSECTION seen = Run(All({Sent("CF1\r\300"), Sent(QByteArray::fromHex("A80082FF")),
            Sent(QByteArray::fromHex("FFFF00"))}));
        QCOMPARE(seen.Packet(1).Values("shown_in"), QStringList{"3"});
        QCOMPARE(seen.Packet(2).Values("part.of"), QStringList{"CF1"});
        QCOMPARE(seen.Packet(3).Values("begins_in"), QStringList{"1"});
        QCOMPARE(seen.Packet(3).Values("segments"), QStringList{"3"});
        QCOMPARE(seen.Packet(3).Values("ip"), QStringList{"192.168.0.130"});
    }

    void aTextIsShownBehindAZeroToo()
    {
        const sDISSECTED_PACKET answer =
            Run(Exchanged("*IDN?\r", QByteArray("a\0b,\xE4,c/d,3.10\r", 15))).Packet(2);
        QCOMPARE(answer.Values("identity.maker"), QStringList{"a\u2400b"});
        QCOMPARE(answer.Values("identity.product"), QStringList{"\u00E4"});
        QCOMPARE(answer.Values("identity"), QStringList{"a\u2400b,\u00E4,c/d,3.10"});
    }

    void theEndsOfTheRangesOfAnEepromBlockAreShown()
    {
        const QByteArray block = QByteArray::fromHex("020000000000000000000000"
                                                     "01000000"
                                                     "FFFEFFFF"
                                                     "00000080"
                                                     "9FFF0000"
                                                     "0080") +
                                 "a" + QByteArray(1, '\0') + "b" + QByteArray(11, '\0');
        const sDISSECTED_PACKET write =
            Run(Sent(QByteArray::fromHex("4346360D0000") + block)).Packet(1);
        QCOMPARE(write.Values("eeprom.region"), QStringList{"device"});
        QStringList shown;
        for (const char* field : {"part_number", "variant", "code", "index", "serial_number",
                 "date", "test_index", "name"}) {
            shown += write.Values(QByteArray("eeprom.block.") + field);
        }
        QCOMPARE(shown.join(' '), "1 255 254 -1 2147483648 2107-12-31 -32768 ab");
        QVERIFY(std::any_of(write.fields.cbegin(), write.fields.cend(),
            [](const sDISSECTED_FIELD& field) { return field.text.endsWith("-1 (-0.01)"); }));
    }

    void oneSessionDoesNotTellAnotherUnitsGeneration()
    {
        QCOMPARE(ExpertsOf(NewIdentity, All({OfANewUnit, Exchanged("HCF\r" + TenWords, {})})),
            QStringList());
    }

    void aMovedUnitKeepsItsGeneration()
    {
        // To the address of the next unit.
        const QByteArray move = QByteArray::fromHex("4346310D0A010002FFFFFF00");
        QCOMPARE(ExpertsOf(NewIdentity,
                     All({Exchanged(move, {}), OfANewUnit, Exchanged("HCF\r" + TenWords, {})})),
            QStringList{"4 length"});
    }

    void aUnitKeepsItsGenerationInTheNextConnection()
    {
        QCOMPARE(
            ExpertsOf(OldIdentity, All({OfANewConnection, Exchanged("HCF\r" + TwelveWords, {})})),
            QStringList{"3 length"});
    }
};

QTEST_APPLESS_MAIN(DissectorFindingsTest)
#include "DissectorFindingsTest.moc"
