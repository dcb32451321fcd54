#include "tests/dissector/CaptureFile.h"
#include "tests/dissector/Tshark.h"

#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <functional>

using Story = std::function<void(CaptureFile&)>;
Q_DECLARE_METATYPE(Story)

namespace {

QByteArray Number(int value, int size)
{
    QByteArray bytes;
    for (int i = size - 1; i >= 0; --i) {
        bytes.append(static_cast<char>(value >> (8 * i)));
    }
    return bytes;
}

int SumOf(const QByteArray& bytes)
{
    int sum = 0;
    for (const char byte : bytes) {
        sum += static_cast<uchar>(byte);
    }
    return sum;
}

QByteArray FirmwareBlock(int sequence, const QByteArray& data, int sumError = 0)
{
    return "CF3\r" + Number(data.size(), 2) + Number(SumOf(data) + sumError, 2) +
           Number(sequence, 2) + QByteArray(14, '\0') + data.leftJustified(1200, '\0');
}

QByteArray FirmwareEnd(int sum, int length)
{
    return "CF4\r" + Number(sum, 4) + Number(length, 4);
}

// What the first block of a stream may have, and any other.
const QByteArray Data = QByteArray(64, '\0') + QByteArray(1136, '\1');
const char NewIdentity[] = "a,b,c/d,3.10\r";
const char OldIdentity[] = "a,b,c/d,2.50\r";

void Exchange(CaptureFile& capture, const QByteArray& request, const QByteArray& answer,
    double milliseconds = 1)
{
    capture.FromTool(request);
    capture.Wait(milliseconds);
    if (!answer.isEmpty()) {
        capture.FromUnit(answer);
    }
    capture.Wait(20);
}

Story Exchanged(const QByteArray& request, const QByteArray& answer, double milliseconds = 1)
{
    return [=](CaptureFile& capture) { Exchange(capture, request, answer, milliseconds); };
}

Story Sent(const QByteArray& bytes)
{
    return [=](CaptureFile& capture) { capture.FromTool(bytes); };
}

Story KnowingTheUnit(const char* identity, const QByteArray& request, const QByteArray& answer = {})
{
    return [=](CaptureFile& capture) {
        Exchange(capture, "*IDN?\r", identity);
        Exchange(capture, request, answer);
    };
}

// Two blocks, each acknowledged, and the end with these numbers.
Story Transfer(int endSum, int endLength)
{
    return [=](CaptureFile& capture) {
        Exchange(capture, FirmwareBlock(0, Data), "1\r");
        Exchange(capture, FirmwareBlock(1, "\5"), "1\r");
        capture.FromTool(FirmwareEnd(endSum, endLength));
    };
}

QByteArray WithByte(QByteArray frame, int position, char byte)
{
    frame[position] = byte;
    return frame;
}

/// An exchange with a unit of its own, and what is marked in it: "FRAME NAME|FRAME NAME".
struct sROW
{
    const char* name;
    Story story;
    const char* findings;
};

class RowList
{
public:
    void operator()(const char* name, const Story& story, const char* findings = "")
    {
        rows.append({name, story, findings});
    }
    const QVector<sROW>& All() const { return rows; }

private:
    QVector<sROW> rows;
};

const QByteArray TenWords(20, '\1');
const QByteArray TwelveWords(24, '\1');
const QByteArray Names("a,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0");

void AddAcknowledgements(RowList& add)
{
    add("done", Exchanged("CF8\r", "1\r"));
    add("refused", Exchanged("CF8\r", "0\r"), "2 refused");
    add("acknowledged by a digit alone", Exchanged("CF8\r", "1"), "2 length");
    add("acknowledged as silence", Exchanged("CF8\r", "2\r"), "2 not_understood");
    add(
        "acknowledged behind silence",
        [](CaptureFile& capture) {
            Exchange(capture, "CF8\r", "2\r");
            capture.FromUnit("1\r");
        },
        "2 not_understood");
    add("other bytes for an acknowledgement", Exchanged("CF8\r", "OK"), "2 not_understood");
}

void AddSilence(RowList& add)
{
    add("silence", Sent("CF8\r"), "1 no_answer");
    add("silence where none is due", Sent("HCF\r" + TenWords));
    add(
        "silence, and the next command",
        [](CaptureFile& capture) {
            Exchange(capture, "CF9\ra", {});
            Exchange(capture, "CF8\r", "1\r");
        },
        "1 length|1 no_answer");
    add("a read of nothing", Sent(QByteArray("CF7\r\0\0\0\0", 8)));
}

void AddLateAnswers(RowList& add)
{
    add("an acknowledgement in time", Exchanged("CF8\r", "1\r", 9900));
    add("a late acknowledgement", Exchanged("CF8\r", "1\r", 10100), "2 late");
    add("a block in time", Exchanged(QByteArray("CF7\r\0\2\0\0", 8), "ab", 990));
    add("a late block", Exchanged(QByteArray("CF7\r\0\2\0\0", 8), "ab", 1010), "2 late");
    add("a text in time", Exchanged("*IDN?\r", NewIdentity, 1990));
    add("a late text", Exchanged("*IDN?\r", NewIdentity, 2010), "2 late");
}

void AddUnaskedBytes(RowList& add)
{
    add(
        "bytes before any command", [](CaptureFile& capture) { capture.FromUnit("x"); },
        "1 unasked");
    add("bytes behind a command without answer", Exchanged("CF5\r" + QByteArray(255, '\0'), "1\r"),
        "2 unasked");
    add("bytes behind a whole answer", Exchanged("CF8\r", "11\r"), "2 not_understood|2 unasked");
    add("bytes behind a refusal", Exchanged("CF8\r", "0\r\r"), "2 refused|2 unasked");
}

void AddTransfers(RowList& add)
{
    add("a right sum", Exchanged(FirmwareBlock(0, Data), "1\r"));
    add("a wrong sum", Exchanged(FirmwareBlock(0, Data, 1), "0\r"), "1 sum|2 refused");
    add("a sum that does not fit into its field",
        Exchanged(FirmwareBlock(9, QByteArray(1200, '\xFF')), "1\r"));
    add(
        "a block too many",
        [](CaptureFile& capture) {
            Exchange(capture, FirmwareBlock(0, Data), "1\r");
            Exchange(capture, FirmwareBlock(2, Data), "0\r");
        },
        "3 sequence|4 refused");
    add(
        "a block again that was refused",
        [](CaptureFile& capture) {
            Exchange(capture, FirmwareBlock(0, Data), "0\r");
            Exchange(capture, FirmwareBlock(1, Data), "0\r");
        },
        "2 refused|3 sequence|4 refused");
    add("a transfer that begins anew", [](CaptureFile& capture) {
        Exchange(capture, FirmwareBlock(0, Data), "1\r");
        Exchange(capture, FirmwareBlock(0, Data), "1\r");
        Exchange(capture, FirmwareBlock(1, Data), "1\r");
    });
    add("a transfer whose beginning is not there", Exchanged(FirmwareBlock(7, Data), "1\r"));
    add("a block that is not zero where it has to be",
        Exchanged(WithByte(FirmwareBlock(0, "\1"), 10, '\1'), "0\r"), "1 not_zero|2 refused");
    add("a block that is not zero behind its data",
        Exchanged(WithByte(FirmwareBlock(0, "\1"), 1223, '\1'), "0\r"), "1 not_zero|2 refused");
    add("a right end", Transfer(1141, 1201));
    add("an end with a wrong sum", Transfer(1142, 1201), "5 sum");
    add("an end with a wrong length", Transfer(1141, 1202), "5 length");
}

void AddLengths(RowList& add)
{
    add("a block without data", Exchanged(FirmwareBlock(0, {}), "0\r"), "1 length|2 refused");
    add("a block with too many data", Exchanged(WithByte(FirmwareBlock(0, Data), 5, '\xB1'), "0\r"),
        "1 length|2 refused");
    add("half an answer", Exchanged("CF0\r", QByteArray(33, '\1')), "2 length");
    add("the block of new firmware from a unit with new firmware",
        KnowingTheUnit(NewIdentity, "CF0\r", QByteArray(75, '\1')));
    add("the block of old firmware from a unit with new firmware",
        KnowingTheUnit(NewIdentity, "CF0\r", QByteArray(67, '\1')), "4 length|4 length");
    add("the block of new firmware from a unit with old firmware",
        KnowingTheUnit(OldIdentity, "CF0\r", QByteArray(75, '\1')), "4 length");
    add("words of old firmware for new firmware", KnowingTheUnit(NewIdentity, "HCF\r" + TenWords),
        "3 length");
    add("words of new firmware for old firmware",
        KnowingTheUnit(OldIdentity, "VCF\r" + TwelveWords), "3 length");
    add("words of the right number for old firmware",
        KnowingTheUnit(OldIdentity, "VCF\r" + TenWords));
    add("a short CF2 for old firmware", KnowingTheUnit(OldIdentity, "CF2\rabcdef"), "3 length");
    add("a frame that ends too soon", Sent("CF1\rabc"), "1 length");
    add("an EEPROM write of 1200 bytes", Exchanged("CF6\r" + QByteArray(1202, '\0'), "1\r"));
    add("an EEPROM write of 1201 bytes", Exchanged("CF6\r" + QByteArray(1203, '\0'), "0\r"),
        "1 length|2 refused");
    add("a text frame of 1199 bytes",
        Exchanged("CF9\r" + Names + QByteArray(1195 - Names.size(), '0'), "1\r"));
    add("a text frame of 1200 bytes",
        Exchanged("CF9\r" + Names + QByteArray(1196 - Names.size(), '0'), "0\r"),
        "1 length|2 refused");
    add("18 names", Exchanged("CF9\r" + Names.mid(2), "1\r"), "1 length");
    add("20 names", Exchanged("CF9\r" + Names + ",0", "1\r"), "1 length");
}

void AddBytesWithoutSense(RowList& add)
{
    add("no command", Sent("CF11\r"), "1 no_command");
    add("several times no command", Sent("CF11\rHELLO\r\rCF1"), "1 no_command|1 no_command");
    add("100 commands in one segment", Sent(QByteArray("CF4\r12345678").repeated(100)));
    add("more commands in one segment", Sent(QByteArray("CF4\r12345678").repeated(102)),
        "1 no_command");
    add("no command without end", Sent(QByteArray(1000, 'x')), "1 no_command");
    add("the beginning of a command", Sent("GET:OPTION:"), "1 no_command");
    add(
        "a command behind what is none",
        [](CaptureFile& capture) { Exchange(capture, "CF\rCF8\r", "1\r"); }, "1 no_command");
    add("an identity of three fields", Exchanged("*IDN?\r", "a,b,c/d\r"), "2 not_understood");
    add("an identity without a stroke", Exchanged("*IDN?\r", "a,b,c,3.10\r"), "2 not_understood");
    add("an empty text", Exchanged("GET:OPTION:DESC?\r", "\r"), "2 not_understood");
    add("a text without end", Exchanged("*IDN?\r", QByteArray("a,b,c/d,3.10")), "2 length");
    add(
        "a command behind a segment of which the capture has a part",
        [](CaptureFile& capture) {
            capture.FromTool("CF1\r\1\2\3\4\5\6\7\1", 3);
            capture.Wait(1);
            Exchange(capture, "CF8\r", "1\r");
        },
        "1 length|1 not_captured");
    add(
        "a command behind a frame that lacks its end",
        [](CaptureFile& capture) {
            Exchange(capture, "CF5\r" + QByteArray(100, '\0'), {});
            Exchange(capture, "CF8\r", "1\r");
        },
        "1 length");
    add(
        "an answer to a frame that lacks its end",
        [](CaptureFile& capture) {
            Exchange(capture, FirmwareBlock(0, Data).left(700), "1\r");
            Exchange(capture, FirmwareBlock(1, Data), "1\r");
        },
        "1 length");
}

void AddEndsOfFrames(RowList& add)
{
    add("more of a text frame", [](CaptureFile& capture) {
        capture.FromTool("CF9\r" + Names.left(5));
        capture.Wait(9900);
        Exchange(capture, Names.mid(5), "1\r");
    });
    add(
        "bytes behind the wait for an acknowledgement",
        [](CaptureFile& capture) {
            capture.FromTool("CF9\r" + Names);
            capture.Wait(10100);
            capture.FromTool("0");
        },
        "1 no_answer|2 no_command");
    add(
        "bytes behind an acknowledged text frame",
        [](CaptureFile& capture) {
            Exchange(capture, "CF9\r" + Names, "1\r");
            capture.FromTool("0");
        },
        "3 no_command");
    add("words of old firmware that the network has brought together", [](CaptureFile& capture) {
        capture.FromTool("HCF\r" + TenWords);
        capture.Wait(3);
        capture.FromTool("VCF\r" + TenWords);
        capture.Wait(3);
        Exchange(capture, "CF8\r", "1\r");
    });
    add("a command in two segments right behind words", [](CaptureFile& capture) {
        capture.FromTool("HCF\r" + TenWords);
        capture.FromTool("V");
        capture.FromTool("CF\r");
    });
    add("a command within the data of a block", [](CaptureFile& capture) {
        const QByteArray block =
            FirmwareBlock(1, QByteArray(500, 'A') + "CF3\r" + QByteArray(696, 'A'));
        capture.FromTool(block.left(524));
        capture.Wait(1);
        Exchange(capture, block.mid(524), "1\r");
    });
    add("a command in the segment of words of old firmware", Sent("VCF\r" + TenWords + "CF8\r"),
        "1 no_answer");
    add(
        "words of old firmware for a unit whose block came in two segments",
        [](CaptureFile& capture) {
            capture.FromTool("CF0\r");
            capture.FromUnit(QByteArray(67, '\1'));
            capture.FromUnit(QByteArray(8, '\1'));
            capture.Wait(20);
            capture.FromTool("HCF\r" + TenWords);
        },
        "4 length");
}

RowList MakeRows()
{
    RowList rows;
    for (const auto add : {AddAcknowledgements, AddSilence, AddLateAnswers, AddUnaskedBytes,
             AddTransfers, AddLengths, AddBytesWithoutSense, AddEndsOfFrames}) {
        add(rows);
    }
    return rows;
}

const QVector<sROW>& Rows()
{
    static const RowList rows = MakeRows();
    return rows.All();
}

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
class DissectorFindingsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void aFindingIsMarkedInItsFrame_data();
    void aFindingIsMarkedInItsFrame();
    void theClosingFrameIsVerified_data();
    void theClosingFrameIsVerified();
    void anAnswerOfWhichNothingElseComesIsShownAsFarAsItGoes();
    void aTextWithoutEndSaysSo();
    void aFrameInPartsTellsWhereItIsShown();
    void aTextIsShownBehindAZeroToo();
    void theEndsOfTheRangesOfAnEepromBlockAreShown();
    void oneSessionDoesNotTellAnotherUnitsGeneration();
    void aMovedUnitKeepsItsGeneration();
    void aUnitKeepsItsGenerationInTheNextConnection();

private:
    sDISSECTION Run(const CaptureFile& capture, Passes passes = Passes::Two);
    sDISSECTION Run(const Story& story, Passes passes = Passes::Two);

    QTemporaryDir folder;
};

sDISSECTION DissectorFindingsTest::Run(const CaptureFile& capture, Passes passes)
{
    const QString path = folder.filePath("story.pcap");
    return capture.Save(path) ? Dissect(path, passes) : sDISSECTION{path, {}};
}

sDISSECTION DissectorFindingsTest::Run(const Story& story, Passes passes)
{
    CaptureFile capture;
    story(capture);
    return Run(capture, passes);
}

void DissectorFindingsTest::initTestCase()
{
    if (!TsharkIsInstalled()) {
        QSKIP("tshark is not installed");
    }
}

void DissectorFindingsTest::aFindingIsMarkedInItsFrame_data()
{
    QTest::addColumn<QString>("found");
    QTest::addColumn<QString>("findings");
    CaptureFile capture;
    QVector<int> ends{0};
    for (const sROW& row : Rows()) {
        capture.NewUnit();
        row.story(capture);
        capture.Wait(20);
        ends.append(capture.PacketCount());
    }
    const sDISSECTION seen = Run(capture);
    QCOMPARE(seen.error, QString());
    for (int i = 0; i < Rows().size(); ++i) {
        QTest::newRow(Rows().at(i).name) << Findings(seen, ends.at(i), ends.at(i + 1))
                                         << QString::fromLatin1(Rows().at(i).findings);
    }
}

void DissectorFindingsTest::aFindingIsMarkedInItsFrame()
{
    QFETCH(QString, found);
    QFETCH(QString, findings);
    QCOMPARE(found, findings);
}

void DissectorFindingsTest::theClosingFrameIsVerified_data()
{
    QTest::addColumn<Story>("story");
    QTest::addColumn<QString>("status");
    QTest::newRow("both right") << Transfer(1141, 1201) << "1 1";
    QTest::newRow("wrong sum") << Transfer(1140, 1201) << "0 1";
    QTest::newRow("wrong length") << Transfer(1141, 1200) << "1 0";
    QTest::newRow("nothing to compare with") << Sent(FirmwareEnd(1, 1)) << "2 2";
}

void DissectorFindingsTest::theClosingFrameIsVerified()
{
    QFETCH(Story, story);
    QFETCH(QString, status);
    const sDISSECTED_PACKET end = Run(story).packets.last();
    QCOMPARE((end.Values("end.sum.status") + end.Values("end.length.status")).join(' '), status);
}

void DissectorFindingsTest::anAnswerOfWhichNothingElseComesIsShownAsFarAsItGoes()
{
    for (const Passes passes : {Passes::One, Passes::Two}) {
        const sDISSECTED_PACKET answer =
            Run(Exchanged("CF0\r", QByteArray::fromHex("01F4000300")), passes).Packet(2);
        QCOMPARE(answer.Values("motor.azimuth.smd"), QStringList{"500"});
        QCOMPARE(answer.Values("motor.azimuth.mhd"), QStringList{"3"});
        QVERIFY(!answer.Has("motor.azimuth.sd"));
    }
}

void DissectorFindingsTest::aTextWithoutEndSaysSo()
{
    const sDISSECTED_PACKET answer = Run(Exchanged("*IDN?\r", "a,b,c/d,3.10")).Packet(2);
    QCOMPARE(answer.fields.last().name, "vx440.expert.length");
    QCOMPARE(answer.fields.last().text, "12 bytes and no carriage return");
}

void DissectorFindingsTest::aFrameInPartsTellsWhereItIsShown()
{
    const sDISSECTION seen = Run([](CaptureFile& capture) {
        capture.FromTool("CF1\r\300");
        capture.FromTool(QByteArray::fromHex("A80082FF"));
        capture.FromTool(QByteArray::fromHex("FFFF00"));
    });
    QCOMPARE(seen.Packet(1).Values("shown_in"), QStringList{"3"});
    QCOMPARE(seen.Packet(2).Values("part.of"), QStringList{"CF1"});
    QCOMPARE(seen.Packet(3).Values("begins_in"), QStringList{"1"});
    QCOMPARE(seen.Packet(3).Values("segments"), QStringList{"3"});
    QCOMPARE(seen.Packet(3).Values("ip"), QStringList{"192.168.0.130"});
}

void DissectorFindingsTest::aTextIsShownBehindAZeroToo()
{
    const sDISSECTED_PACKET answer =
        Run(Exchanged("*IDN?\r", QByteArray("a\0b,\xE4,c/d,3.10\r", 15))).Packet(2);
    QCOMPARE(answer.Values("identity.maker"), QStringList{"a\u2400b"});
    QCOMPARE(answer.Values("identity.product"), QStringList{"\u00E4"});
    QCOMPARE(answer.Values("identity"), QStringList{"a\u2400b,\u00E4,c/d,3.10"});
}

void DissectorFindingsTest::theEndsOfTheRangesOfAnEepromBlockAreShown()
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
    QCOMPARE(write.Values("eeprom.block.part_number"), QStringList{"1"});
    QCOMPARE(write.Values("eeprom.block.variant"), QStringList{"255"});
    QCOMPARE(write.Values("eeprom.block.code"), QStringList{"254"});
    QCOMPARE(write.Values("eeprom.block.index"), QStringList{"-1"});
    QVERIFY(std::any_of(write.fields.cbegin(), write.fields.cend(),
        [](const sDISSECTED_FIELD& field) { return field.text.endsWith("-1 (-0.01)"); }));
    QCOMPARE(write.Values("eeprom.block.serial_number"), QStringList{"2147483648"});
    QCOMPARE(write.Values("eeprom.block.date"), QStringList{"2107-12-31"});
    QCOMPARE(write.Values("eeprom.block.test_index"), QStringList{"-32768"});
    QCOMPARE(write.Values("eeprom.block.name"), QStringList{"ab"});
}

void DissectorFindingsTest::oneSessionDoesNotTellAnotherUnitsGeneration()
{
    const sDISSECTION seen = Run([](CaptureFile& capture) {
        Exchange(capture, "*IDN?\r", NewIdentity);
        capture.NewUnit();
        Exchange(capture, "HCF\r" + QByteArray(20, '\1'), {});
    });
    QCOMPARE(seen.Experts(), QStringList());
}

void DissectorFindingsTest::aMovedUnitKeepsItsGeneration()
{
    const sDISSECTION seen = Run([](CaptureFile& capture) {
        capture.NewUnit();
        Exchange(capture, "*IDN?\r", NewIdentity);
        // The address of the next unit.
        Exchange(capture, QByteArray::fromHex("4346310D0A010002FFFFFF00"), {});
        capture.NewUnit();
        Exchange(capture, "HCF\r" + QByteArray(20, '\1'), {});
    });
    QCOMPARE(seen.Experts(), QStringList{"4 length"});
}

void DissectorFindingsTest::aUnitKeepsItsGenerationInTheNextConnection()
{
    const sDISSECTION seen = Run([](CaptureFile& capture) {
        capture.NewUnit();
        Exchange(capture, "*IDN?\r", OldIdentity);
        capture.NewConnection();
        Exchange(capture, "HCF\r" + QByteArray(24, '\1'), {});
    });
    QCOMPARE(seen.Experts(), QStringList{"3 length"});
}

QTEST_APPLESS_MAIN(DissectorFindingsTest)
#include "DissectorFindingsTest.moc"
