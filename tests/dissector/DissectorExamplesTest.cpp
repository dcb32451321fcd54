// SPDX-License-Identifier: MIT

#include "tests/dissector/CaptureFile.h"
#include "tests/dissector/Tshark.h"
#include "tests/support/Warnings.h"
#include "tests/support/pages/ProtocolPage.h"

#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>

namespace {

/// What the dissector has to show of an example, each as "NAME=VALUE" without "vx440.", in the
/// order of the tree.
struct sEXPECTED
{
    QString example;
    QStringList request;
    QStringList answer;
};

/// The frames of an example in a capture; 0 for an answer that there is not.
struct sFRAMES
{
    int request;
    int answer;
};

QStringList Lines(const char* text)
{
    return QString::fromLatin1(text).split('\n');
}

const QStringList Places =
    Lines("dc_feed_1\ndc_feed_2\nattenuator\nbank_1\nbank_2\namplifier\n"
          "bank_1.filter_1\nbank_1.filter_2\nbank_1.filter_3\nbank_1.filter_4\n"
          "bank_1.filter_5\nbank_1.filter_6\nbank_2.filter_1\nbank_2.filter_2\n"
          "bank_2.filter_3\nbank_2.filter_4\nbank_2.filter_5\nazimuth\npolar");

const char Azimuth[] = "500 3 150 1 2 10 0 0 2000 20";
const char NewAzimuth[] = "500 3 150 1 2 10 0 0 2000 20 50 1";
const char Polar[] = "99 3 60 1 2 5 7 8 500 21";
const char NewPolar[] = "99 3 60 1 2 5 7 8 500 21 45 0";

QStringList Motor(const char* motor, const char* words)
{
    static const QStringList Names =
        Lines("smd\nmhd\nsd\nss\npd\nod\nors\nols\nmmhl\nmot\nsms\ntype");
    const QStringList values = QString::fromLatin1(words).split(' ');
    QStringList fields;
    for (int id = 0; id < values.size(); ++id) {
        fields.append(QString("motor.%1.%2=%3").arg(motor, Names.at(id), values.at(id)));
    }
    return fields;
}

QStringList Fitted(const char* kind, const char* text, char separator)
{
    const QStringList texts = QString::fromLatin1(text).split(QLatin1Char(separator));
    QStringList fields{QString("%1s=%2").arg(kind, text)};
    for (int place = 0; place < Places.size(); ++place) {
        fields.append(QString("%1.%2=%3").arg(kind, Places.at(place), texts.value(place)));
    }
    return fields;
}

const QStringList Options =
    Fitted("option", "VX440-DCF,0,0,0,0,VX440-A1,0,0,0,0,0,0,0,0,0,0,0,0,0", ',');
const QStringList Descriptions =
    Fitted("description", "Feed 13.8 V;0;0;0;0;Mast preamplifier;0;0;0;0;0;0;0;0;0;0;0;0;0", ';');

QString Bytes(const char* name, const QByteArray& bytes)
{
    return QString("%1=%2").arg(name, QString::fromLatin1(bytes.toHex(':')));
}

QString Zeros(int count, const char* name = "zero")
{
    return Bytes(name, QByteArray(count, '\0'));
}

const QStringList Addresses = Lines("mac=02:4c:7e:00:01:29\nip=192.168.0.129\nmask=255.255.255.0");

const QStringList IdentityFields =
    Lines("identity.maker=ZELMA&KOVINTH\nidentity.product=VX440\n"
          "identity.part_number=1234.5678.02\nidentity.serial_number=123456");

const QByteArray EepromBytes =
    QByteArray::fromHex("0200000000000000000000004E61BC000207690015CD5B07695C00006400") +
    QByteArray("VX440").leftJustified(14, '\0');

const QStringList EepromBlock =
    QStringList{"eeprom.block=", "eeprom.block.type=2", Zeros(10, "eeprom.block.reserved")} +
    Lines("eeprom.block.part_number=12345678\neeprom.block.variant=2\neeprom.block.code=7\n"
          "eeprom.block.index=105\neeprom.block.serial_number=123456789\n"
          "eeprom.block.date=2026-03-09") +
    QStringList{Zeros(2, "eeprom.block.reserved"), "eeprom.block.test_index=100",
        "eeprom.block.name=VX440"};

// A block with a right sum, as far as its data.
QStringList FirmwareBlock(int length, const char* sum, int number, const QByteArray& data)
{
    return {QString("block.length=%1").arg(length), QString("block.sum=%1").arg(sum),
        QString("block.sequence=%1").arg(number), Zeros(14),
        QString("block.sum.calculated=%1").arg(sum), "block.sum.status=1",
        Bytes("block.data", data)};
}

const QStringList FirstOfTwo =
    FirmwareBlock(1200, "0xdca5", 0,
        QByteArray(5, '\0') + "\4\x71" + QByteArray(57, '\0') + QByteArray(1136, '\xA5')) +
    QStringList{Zeros(3), "image.length=1137", Zeros(57)};

const QStringList Done = Lines("acknowledgement=1");
const QStringList Refused = Lines("acknowledgement=0\nexpert.refused=");
const QStringList Unverified = Lines("end.sum.status=2\nend.length.status=2");

const QStringList Old{"generation=below 3.0"};
const QStringList New{"generation=3.0 and later"};

QVector<sEXPECTED> Expected()
{
    return {
        {"*IDN?", {},
            Lines("identity=ZELMA&KOVINTH,VX440,1234.5678.02/123456,3.10") + IdentityFields +
                Lines("identity.firmware=3.10") + New},
        {"CF0 old", {},
            Old + Motor("azimuth", Azimuth) + Motor("polar", Polar) + Addresses +
                QStringList{Zeros(13, "uninterpreted")}},
        {"CF0 new", {},
            New + Motor("azimuth", NewAzimuth) + Motor("polar", NewPolar) + Addresses +
                QStringList{Zeros(13, "uninterpreted")}},
        {"CF7", Lines("eeprom.length=64\neeprom.offset=0"),
            QStringList{"eeprom.offset=0",
                Bytes("eeprom.data", EepromBytes + QByteArray(20, '\xFF')),
                "eeprom.region=device"} +
                EepromBlock},
        {"CF7 short answer", Lines("eeprom.length=4\neeprom.offset=2220"),
            Lines("eeprom.offset=2220\neeprom.data=12:34\neeprom.region=board\nexpert.length=")},
        {"GET:OPTION:INTERNAL?", {}, Options},
        {"GET:OPTION:DESC?", {}, Descriptions},
        {"CF1", Lines("ip=192.168.0.130\nmask=255.255.255.0"), {}},
        {"CF2 short", Lines("form=short\nmac=02:4c:7e:00:01:2a"), {}},
        {"CF2 long",
            Lines("form=long") + Motor("azimuth", Azimuth) + Motor("polar", Polar) + Addresses +
                QStringList{Zeros(13)} + Lines("identity=ZELMA&KOVINTH,VX440,1234.5678.02/123456") +
                IdentityFields + QStringList{Zeros(20)},
            {}},
        {"HCF old", Motor("azimuth", Azimuth), {}},
        {"HCF new", Motor("azimuth", NewAzimuth), {}},
        {"VCF old", Motor("polar", Azimuth), {}},
        {"VCF new", Motor("polar", NewAzimuth), {}},
        {"CF4", Lines("end.sum=0x00000636\nend.length=84") + Unverified, {}},
        {"CF4 of two", Lines("end.sum=0x0000dcff\nend.length=1201") + Unverified, {}},
        {"CF5", {Zeros(255, "filler")}, {}},
        {"CF3",
            FirmwareBlock(84, "0x0636", 0,
                QByteArray(6, '\0') + '\x14' + QByteArray(57, '\0') + "VX440 sample image\r\n") +
                QStringList{Zeros(3), "image.length=20", Zeros(57), Zeros(1116, "block.padding")},
            Done},
        {"CF3 first of two", FirstOfTwo, Done},
        {"CF3 last of two",
            FirmwareBlock(1, "0x005a", 1, "\x5A") + QStringList{Zeros(1199, "block.padding")},
            Done},
        {"CF3 refused", FirstOfTwo, Refused},
        {"CF6",
            QStringList{
                "eeprom.offset=1200", Bytes("eeprom.data", EepromBytes), "eeprom.region=board"} +
                EepromBlock,
            Done},
        {"CF8", {}, Done},
        {"CF8 refused", {}, Refused},
        {"CF9", Options, Done},
        {"CF9 refused", Options, Refused},
        {"CF10", Descriptions, Done},
    };
}

/// Fields that every packet has, or that lead to others.
bool IsFrameOrLink(const QString& name)
{
    static const QStringList Names = Lines("request\nanswer\nrequest_in\nanswer_in\ntime\ncommand\n"
                                           "motor.azimuth\nmotor.polar\nsegments\nbegins_in");
    return Names.contains(name);
}

QStringList Shown(const sDISSECTED_PACKET& packet)
{
    QStringList shown;
    for (const sDISSECTED_FIELD& field : packet.fields) {
        const QString name = field.name.section('.', 1);
        if (!IsFrameOrLink(name)) {
            shown.append(name + QLatin1Char('=') + field.value);
        }
    }
    return shown;
}

/// The command as the catalogue of the page names it.
QString CommandOf(const sDISSECTED_PACKET& packet)
{
    return (packet.Values("command") + packet.Values("form")).join(' ');
}

/// The bytes in a segment of one size and others of another.
QVector<QByteArray> Segments(QByteArray bytes, int first, int others)
{
    QVector<QByteArray> segments;
    for (int size = first; !bytes.isEmpty(); size = others) {
        segments.append(bytes.left(size));
        bytes.remove(0, size);
    }
    return segments;
}

constexpr int Whole = 10000;

sFRAMES Write(
    CaptureFile& capture, const sWIRE_EXAMPLE& example, int first = Whole, int others = Whole)
{
    capture.NewUnit();
    for (const QByteArray& bytes : Segments(example.request, first, others)) {
        capture.FromTool(bytes);
    }
    const int request = capture.PacketCount();
    capture.Wait(5);
    for (const QByteArray& bytes : Segments(example.answer, first, others)) {
        capture.FromUnit(bytes);
    }
    capture.Wait(20);
    return {request, example.answer.isEmpty() ? 0 : capture.PacketCount()};
}

/// Whether a field begins at that byte of the frame or answer.
bool BeginsAt(const sDISSECTED_PACKET& packet, int offset)
{
    const int begin = packet.fields.first().position;
    return std::any_of(
        packet.fields.cbegin(), packet.fields.cend(), [&](const sDISSECTED_FIELD& field) {
            return field.name != "vx440.request" && field.name != "vx440.answer" &&
                   field.size > 0 && field.position - begin == offset;
        });
}

/// How many bytes of the first field no other shows, and how many others show beyond it.
int BytesWithoutField(const sDISSECTED_PACKET& packet)
{
    const sDISSECTED_FIELD whole = packet.fields.first();
    QByteArray covered(whole.size, '-');
    for (const sDISSECTED_FIELD& field : packet.fields.mid(1)) {
        covered.replace(field.position - whole.position, field.size, QByteArray(field.size, 'x'));
    }
    return covered.count('-') + covered.size() - whole.size;
}

/// The values that a table of a block tells: the parameters of each motor in a row, and addresses
/// or the fields of an EEPROM block.
QStringList ValuesOfBlock(const sDISSECTED_PACKET& packet)
{
    QMap<QString, QStringList> words;
    QStringList others;
    const bool isEeprom = packet.Has("eeprom.block");
    for (const sDISSECTED_FIELD& field : packet.fields) {
        const QString name = field.name.section('.', 1);
        const bool isOfBlock = name.startsWith("eeprom.block.") && !name.endsWith("reserved");
        if (name.startsWith("motor.") && name.count('.') == 2) {
            words[name.section('.', 1, 1)].append(field.value);
        } else if (name == "mac") {
            others.append(field.value.toUpper());
        } else if (name == "ip" || name == "mask" || (isEeprom && isOfBlock)) {
            others.append(field.value);
        }
    }
    QStringList motors;
    for (const QStringList& values : qAsConst(words)) {
        motors.append(values.join(' '));
    }
    return motors + others;
}

} // namespace

class DissectorExamplesTest : public WarningsFail
{
    Q_OBJECT

private:
    const ProtocolPage page{PROTOCOL_PAGE};
    QTemporaryDir folder;
    QMap<QString, sFRAMES> frames;
    sDISSECTION dissection;

    sDISSECTED_PACKET Packet(int frame) const { return dissection.Packet(frame); }

    sDISSECTION Run(const CaptureFile& capture)
    {
        const QString path = folder.filePath("examples.pcap");
        return capture.Save(path) ? Dissect(path) : sDISSECTION{path, {}};
    }

    // The values of the block of so many bytes.
    QStringList Told(int size) const
    {
        QStringList told;
        for (const QString& section : page.Commands()) {
            for (const sPAGE_TABLE& table : page.TablesOf(section)) {
                if (table.header.value(2) == QString("Block of %1 bytes").arg(size)) {
                    told = table.Column(3);
                }
            }
        }
        told.removeAll(QString());
        return told;
    }

    // The fields of all examples, with a first segment of each of these sizes and others, are those
    // of the examples in one segment.
    void CompareWithWhole(const QVector<int>& firsts, int others)
    {
        CaptureFile capture;
        QVector<QPair<QString, sFRAMES>> written;
        for (const int first : firsts) {
            for (const sWIRE_EXAMPLE& example : page.Examples()) {
                written.append({example.name, Write(capture, example, first, others)});
            }
        }
        const sDISSECTION cut = Run(capture);
        QCOMPARE(cut.error, QString());
        QCOMPARE(cut.packets.size(), capture.PacketCount());
        for (const auto& one : qAsConst(written)) {
            const sFRAMES whole = frames[one.first];
            QCOMPARE(Shown(cut.Packet(one.second.request)), Shown(Packet(whole.request)));
            QCOMPARE(Shown(cut.Packet(one.second.answer)), Shown(Packet(whole.answer)));
        }
        for (const sDISSECTED_PACKET& packet : cut.packets) {
            QVERIFY(packet.Has("part") != (packet.Has("request") || packet.Has("answer")));
        }
    }

private slots:
    void initTestCase()
    {
        if (!TsharkIsInstalled()) {
            QSKIP("tshark is not installed");
        }
        CaptureFile capture;
        for (const sWIRE_EXAMPLE& example : page.Examples()) {
            frames.insert(example.name, Write(capture, example));
        }
        dissection = Run(capture);
        QCOMPARE(dissection.error, QString());
        QCOMPARE(dissection.packets.size(), capture.PacketCount());
    }

    void anExampleHasTheFieldsThatThePageTells()
    {
        QStringList tried;
        for (const sEXPECTED& expected : Expected()) {
            const QString name = expected.example;
            tried.append(name);
            const sDISSECTED_PACKET request = Packet(frames[name].request);
            QVERIFY2(request.Has("request"), qPrintable(name));
            QCOMPARE(CommandOf(request), page.Example(name).section);
            QCOMPARE(Shown(request), expected.request);
            QVERIFY2(
                page.Example(name).answer.isEmpty() == expected.answer.isEmpty(), qPrintable(name));
            if (frames[name].answer > 0) {
                const sDISSECTED_PACKET answer = Packet(frames[name].answer);
                QVERIFY2(answer.Has("answer"), qPrintable(name));
                QCOMPARE(CommandOf(answer), request.Values("command").value(0));
                QCOMPARE(Shown(answer), expected.answer);
            }
        }
        tried.sort();
        QCOMPARE(tried, QStringList(frames.keys()));
    }

    void everyCommandOfTheCatalogueHasAnExampleThatIsSeenAsIt()
    {
        QStringList seen;
        for (const sFRAMES& both : qAsConst(frames)) {
            seen.append(CommandOf(Packet(both.request)));
        }
        seen.removeDuplicates();
        seen.sort();
        QStringList commands = page.TablesOf("Catalogue").value(0).Column(0);
        commands.sort();
        QCOMPARE(seen, commands);
    }

    void everyByteOfAnExampleIsInAField()
    {
        for (const sDISSECTED_PACKET& packet : qAsConst(dissection.packets)) {
            QCOMPARE(BytesWithoutField(packet), 0);
        }
    }

    void aFieldBeginsWhereARowOfThePageBegins()
    {
        for (const sWIRE_EXAMPLE& example : page.Examples()) {
            for (const sPAGE_TABLE& table : page.TablesOf(example.section)) {
                const QString title = table.header.value(2);
                const bool isAnswer =
                    title == QString("Block of %1 bytes").arg(example.answer.size());
                const QByteArray& bytes = isAnswer ? example.answer : example.request;
                const sFRAMES both = frames[example.name];
                for (const QString& offset : table.Column(0)) {
                    const bool isMeant = isAnswer || title.startsWith("Request");
                    QVERIFY2(
                        !isMeant || offset.toInt() >= bytes.size() ||
                            BeginsAt(Packet(isAnswer ? both.answer : both.request), offset.toInt()),
                        qPrintable(example.name + ' ' + title + ' ' + offset));
                }
            }
        }
    }

    void theFieldsHaveTheValuesOfTheTablesOfBlocks()
    {
        QCOMPARE(ValuesOfBlock(Packet(frames["CF0 old"].answer)), Told(67));
        QCOMPARE(ValuesOfBlock(Packet(frames["CF0 new"].answer)), Told(75));
        QCOMPARE(ValuesOfBlock(Packet(frames["CF2 long"].request)), Told(127));
        QCOMPARE(ValuesOfBlock(Packet(frames["CF6"].request)), Told(44));
        QCOMPARE(ValuesOfBlock(Packet(frames["CF7"].answer)), Told(44));
        QVERIFY(!Told(67).isEmpty() && !Told(75).isEmpty());
        QVERIFY(!Told(127).isEmpty() && !Told(44).isEmpty());
    }

    void theParametersHaveTheNamesOfTheirTable()
    {
        const sPAGE_TABLE table = page.TablesOf("Rotator parameters").value(0);
        QStringList told;
        for (const QStringList& row : table.rows) {
            const QString mnemonic = row.value(1);
            told.append(
                mnemonic.isEmpty()
                    ? "type Rotor type"
                    : QString("%1 %2 (%3)").arg(mnemonic.toLower(), row.value(2), mnemonic));
        }
        QStringList shown;
        for (const sDISSECTED_FIELD& field : Packet(frames["HCF new"].request).fields) {
            if (field.name.startsWith("vx440.motor.azimuth.")) {
                shown.append(
                    field.name.section('.', 3) + QLatin1Char(' ') + field.text.section(':', 0, 0));
            }
        }
        QCOMPARE(shown, told);
    }

    void onlyThePercentageHasAUnitAmongTheParameters()
    {
        QStringList percentages;
        for (const sDISSECTED_FIELD& field : Packet(frames["CF0 new"].answer).fields) {
            if (field.text.endsWith('%')) {
                percentages.append(field.text);
            }
        }
        QCOMPARE(
            percentages, Lines("Slow Motion Speed (SMS): 50 %\nSlow Motion Speed (SMS): 45 %"));
    }

    void anAcknowledgementHasTheResultOfItsRow()
    {
        const sPAGE_TABLE table = page.TablesOf("Frames").value(1);
        CaptureFile capture;
        QStringList told;
        for (const QStringList& row : table.rows) {
            const bool any = row.value(0) == "any other";
            capture.NewUnit();
            capture.FromTool("CF8\r");
            capture.FromUnit(any ? QByteArray("OK") : QByteArray::fromHex(row.value(0).toLatin1()));
            told.append(row.value(1));
        }
        const sDISSECTION seen = Run(capture);
        QStringList shown;
        for (const sDISSECTED_PACKET& packet : seen.packets) {
            shown += packet.Values("acknowledgement");
        }
        QCOMPARE(shown, told);
        QCOMPARE(seen.Experts(), Lines("4 refused\n6 not_understood\n8 not_understood"));
    }

    void theGenerationIsToldAsThePageTells()
    {
        const sPAGE_TABLE table = page.TablesOf("Firmware generations").value(0);
        const QMap<QByteArray, int> columns{{"no number", 1}, {"2.99", 1}, {"3.0", 2}, {"3.01", 2}};
        CaptureFile capture;
        QStringList told;
        for (auto version = columns.cbegin(); version != columns.cend(); ++version) {
            const int words = table.Row("words for each rotator").value(version.value()).toInt();
            capture.NewUnit();
            capture.FromTool("*IDN?\r");
            capture.FromUnit("a,b,c/d," + version.key() + '\r');
            capture.Wait(20);
            // Cut where the other generation's frame would end, or begin to be too long.
            const QByteArray frame = "HCF\r" + QByteArray(2 * words, '\1');
            capture.FromTool(frame.left(24));
            capture.Wait(1);
            capture.FromTool(frame.mid(24) + "CF8\r");
            told.append(
                table.header.value(version.value()) + QLatin1Char(' ') + QString::number(words));
        }
        const sDISSECTION seen = Run(capture);
        QCOMPARE(seen.error, QString());
        QStringList shown;
        for (const sDISSECTED_PACKET& packet : seen.packets) {
            const QStringList generation = packet.Values("generation");
            if (!generation.isEmpty()) {
                shown.append(generation);
            }
            int words = 0;
            for (const sDISSECTED_FIELD& field : packet.fields) {
                words += field.value == "257" ? 1 : 0;
            }
            if (words > 0) {
                shown.last() += QLatin1Char(' ') + QString::number(words);
            }
        }
        QCOMPARE(shown, told);
    }

    void theAnswerAndItsRequestNameEachOther()
    {
        for (const sFRAMES& both : qAsConst(frames)) {
            const QStringList none;
            const QStringList answer =
                both.answer ? QStringList{QString::number(both.answer)} : none;
            const QStringList request =
                both.answer ? QStringList{QString::number(both.request)} : none;
            QCOMPARE(Packet(both.request).Values("answer_in"), answer);
            QCOMPARE(Packet(both.answer).Values("request_in"), request);
        }
    }

    void theTimeBetweenThemIsShown()
    {
        const sDISSECTED_PACKET answer = Packet(frames["CF0 new"].answer);
        QCOMPARE(answer.Values("time").size(), 1);
        QVERIFY(qAbs(answer.Values("time").at(0).toDouble() - 0.005) < 0.00001);
    }

    void examplesInSegmentsOfOneByteShowTheSame() { CompareWithWhole({1}, 1); }

    void examplesCutInTwoShowTheSame()
    {
        CompareWithWhole({1, 3, 4, 5, 10, 23, 24, 27, 61}, Whole);
    }
};

QTEST_APPLESS_MAIN(DissectorExamplesTest)
#include "DissectorExamplesTest.moc"
