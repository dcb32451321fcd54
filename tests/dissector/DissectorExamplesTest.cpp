#include "tests/dissector/CaptureFile.h"
#include "tests/dissector/Tshark.h"
#include "tests/support/pages/ProtocolPage.h"

#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <functional>

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

QStringList Options()
{
    return Fitted("option", "VX440-DCF,0,0,0,0,VX440-A1,0,0,0,0,0,0,0,0,0,0,0,0,0", ',');
}

QStringList Descriptions()
{
    return Fitted(
        "description", "Feed 13.8 V;0;0;0;0;Mast preamplifier;0;0;0;0;0;0;0;0;0;0;0;0;0", ';');
}

QString Zeros(int count, const char* name = "zero")
{
    return QString("%1=%2").arg(name, QString::fromLatin1(QByteArray(count, '\0').toHex(':')));
}

QString Bytes(const char* name, const QByteArray& bytes)
{
    return QString("%1=%2").arg(name, QString::fromLatin1(bytes.toHex(':')));
}

const QStringList Addresses = Lines("mac=02:4c:7e:00:01:29\nip=192.168.0.129\nmask=255.255.255.0");

QStringList IdentityFields()
{
    return Lines("identity.maker=ZELMA&KOVINTH\nidentity.product=VX440\n"
                 "identity.part_number=1234.5678.02\nidentity.serial_number=123456");
}

QStringList EepromBlock()
{
    return QStringList{"eeprom.block=", "eeprom.block.type=2", Zeros(10, "eeprom.block.reserved")} +
           Lines("eeprom.block.part_number=12345678\neeprom.block.variant=2\neeprom.block.code=7\n"
                 "eeprom.block.index=105\neeprom.block.serial_number=123456789\n"
                 "eeprom.block.date=2026-03-09") +
           QStringList{Zeros(2, "eeprom.block.reserved"), "eeprom.block.test_index=100",
               "eeprom.block.name=VX440"};
}

const QByteArray SmallFile("VX440 sample image\r\n");

QStringList FirmwareBlock(const char* lengthSumAndSequence, const char* calculated,
    const QByteArray& data, int fileLength = -1)
{
    QStringList fields = Lines(lengthSumAndSequence) +
                         QStringList{Zeros(14), QString("block.sum.calculated=%1").arg(calculated),
                             "block.sum.status=1", Bytes("block.data", data)};
    if (fileLength >= 0) {
        fields += {Zeros(3), QString("image.length=%1").arg(fileLength), Zeros(57)};
    }
    if (data.size() < 1200) {
        fields.append(Zeros(1200 - data.size(), "block.padding"));
    }
    return fields;
}

QByteArray Head(char high, char low)
{
    return QByteArray(5, '\0') + high + low + QByteArray(57, '\0');
}

QStringList FirstOfTwo()
{
    return FirmwareBlock("block.length=1200\nblock.sum=0xdca5\nblock.sequence=0", "0xdca5",
        Head(4, 0x71) + QByteArray(1136, '\xA5'), 1137);
}

const QStringList Done = Lines("acknowledgement=1");
const QStringList Refused = Lines("acknowledgement=0\nexpert.refused=");
const QStringList Unverified = Lines("end.sum.status=2\nend.length.status=2");

QStringList Old()
{
    return Lines("generation=below 3.0");
}
QStringList New()
{
    return Lines("generation=3.0 and later");
}

QVector<sEXPECTED> Reading()
{
    const QStringList unused{Zeros(13, "uninterpreted")};
    return {
        {"*IDN?", {},
            Lines("identity=ZELMA&KOVINTH,VX440,1234.5678.02/123456,3.10") + IdentityFields() +
                Lines("identity.firmware=3.10") + New()},
        {"CF0 old", {},
            Old() + Motor("azimuth", Azimuth) + Motor("polar", Polar) + Addresses + unused},
        {"CF0 new", {},
            New() + Motor("azimuth", NewAzimuth) + Motor("polar", NewPolar) + Addresses + unused},
        {"CF7", Lines("eeprom.length=64\neeprom.offset=0"),
            QStringList{"eeprom.offset=0",
                Bytes("eeprom.data",
                    QByteArray::fromHex(
                        "0200000000000000000000004E61BC000207690015CD5B07695C00006400") +
                        QByteArray("VX440").leftJustified(14, '\0') + QByteArray(20, '\xFF')),
                "eeprom.region=device"} +
                EepromBlock()},
        {"CF7 short answer", Lines("eeprom.length=4\neeprom.offset=2220"),
            Lines("eeprom.offset=2220\neeprom.data=12:34\neeprom.region=board\nexpert.length=")},
        {"GET:OPTION:INTERNAL?", {}, Options()},
        {"GET:OPTION:DESC?", {}, Descriptions()},
    };
}

QVector<sEXPECTED> Changing()
{
    return {
        {"CF1", Lines("ip=192.168.0.130\nmask=255.255.255.0"), {}},
        {"CF2 short", Lines("form=short\nmac=02:4c:7e:00:01:2a"), {}},
        {"CF2 long",
            Lines("form=long") + Motor("azimuth", Azimuth) + Motor("polar", Polar) + Addresses +
                QStringList{Zeros(13)} + Lines("identity=ZELMA&KOVINTH,VX440,1234.5678.02/123456") +
                IdentityFields() + QStringList{Zeros(20)},
            {}},
        {"HCF old", Motor("azimuth", Azimuth), {}},
        {"HCF new", Motor("azimuth", NewAzimuth), {}},
        {"VCF old", Motor("polar", Azimuth), {}},
        {"VCF new", Motor("polar", NewAzimuth), {}},
        {"CF4", Lines("end.sum=0x00000636\nend.length=84") + Unverified, {}},
        {"CF4 of two", Lines("end.sum=0x0000dcff\nend.length=1201") + Unverified, {}},
        {"CF5", {Zeros(255, "filler")}, {}},
    };
}

QVector<sEXPECTED> Acknowledged()
{
    const QStringList write{"eeprom.offset=1200",
        Bytes("eeprom.data",
            QByteArray::fromHex("0200000000000000000000004E61BC000207690015CD5B07695C00006400") +
                QByteArray("VX440").leftJustified(14, '\0')),
        "eeprom.region=board"};
    return {
        {"CF3",
            FirmwareBlock("block.length=84\nblock.sum=0x0636\nblock.sequence=0", "0x0636",
                Head(0, 20) + SmallFile, 20),
            Done},
        {"CF3 first of two", FirstOfTwo(), Done},
        {"CF3 last of two",
            FirmwareBlock("block.length=1\nblock.sum=0x005a\nblock.sequence=1", "0x005a", "\x5A"),
            Done},
        {"CF3 refused", FirstOfTwo(), Refused},
        {"CF6", write + EepromBlock(), Done},
        {"CF8", {}, Done},
        {"CF8 refused", {}, Refused},
        {"CF9", Options(), Done},
        {"CF9 refused", Options(), Refused},
        {"CF10", Descriptions(), Done},
    };
}

QVector<sEXPECTED> Expected()
{
    return Reading() + Changing() + Acknowledged();
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

/// Puts bytes into a capture, in as many segments as it likes.
using Segment = std::function<void(const QByteArray&)>;
using Writer = std::function<void(const QByteArray&, const Segment&)>;

sFRAMES Write(CaptureFile& capture, const sWIRE_EXAMPLE& example, const Writer& write)
{
    sFRAMES frames{0, 0};
    capture.NewUnit();
    write(example.request, [&capture](const QByteArray& bytes) { capture.FromTool(bytes); });
    frames.request = capture.PacketCount();
    if (!example.answer.isEmpty()) {
        capture.Wait(5);
        write(example.answer, [&capture](const QByteArray& bytes) { capture.FromUnit(bytes); });
        frames.answer = capture.PacketCount();
    }
    capture.Wait(20);
    return frames;
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

/// The bytes of the first field that no field within it shows.
QList<int> BytesWithoutField(const sDISSECTED_PACKET& packet)
{
    const sDISSECTED_FIELD whole = packet.fields.first();
    QVector<bool> covered(whole.size, false);
    for (const sDISSECTED_FIELD& field : packet.fields.mid(1)) {
        for (int i = 0; i < field.size; ++i) {
            covered[field.position - whole.position + i] = true;
        }
    }
    QList<int> bare;
    for (int i = 0; i < covered.size(); ++i) {
        if (!covered.at(i)) {
            bare.append(i);
        }
    }
    return bare;
}

} // namespace

class DissectorExamplesTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void theExamplesAreThoseThatAreTriedHere();
    void everyCommandOfTheCatalogueHasAnExampleThatIsSeenAsIt();
    void anExampleHasTheFieldsThatThePageTells_data() { AddExamples(); }
    void anExampleHasTheFieldsThatThePageTells();
    void everyByteOfAnExampleIsInAField_data() { AddExamples(); }
    void everyByteOfAnExampleIsInAField();
    void aFieldBeginsWhereARowOfThePageBegins_data();
    void aFieldBeginsWhereARowOfThePageBegins();
    void theFieldsHaveTheValuesOfTheTablesOfBlocks_data();
    void theFieldsHaveTheValuesOfTheTablesOfBlocks();
    void theParametersHaveTheNamesOfTheirTable();
    void onlyThePercentageHasAUnitAmongTheParameters();
    void anAcknowledgementHasTheResultOfItsRow();
    void theGenerationIsToldAsThePageTells();
    void theAnswerAndItsRequestNameEachOther();
    void theTimeBetweenThemIsShown();
    void examplesInSegmentsOfOneByteShowTheSame();
    void examplesCutInTwoShowTheSame();

private:
    void AddExamples() const;
    sDISSECTED_PACKET Packet(int frame) const { return dissection.Packet(frame); }
    void CompareWithWhole(const QVector<Writer>& ways);
    sDISSECTION Run(const CaptureFile& capture);

    const ProtocolPage page{PROTOCOL_PAGE};
    QTemporaryDir folder;
    QMap<QString, sFRAMES> frames;
    sDISSECTION dissection;
};

sDISSECTION DissectorExamplesTest::Run(const CaptureFile& capture)
{
    const QString path = folder.filePath("examples.pcap");
    return capture.Save(path) ? Dissect(path) : sDISSECTION{path, {}};
}

void DissectorExamplesTest::initTestCase()
{
    if (!TsharkIsInstalled()) {
        QSKIP("tshark is not installed");
    }
    CaptureFile capture;
    for (const sWIRE_EXAMPLE& example : page.Examples()) {
        frames.insert(example.name,
            Write(capture, example,
                [](const QByteArray& bytes, const Segment& segment) { segment(bytes); }));
    }
    dissection = Run(capture);
    QCOMPARE(dissection.error, QString());
    QCOMPARE(dissection.packets.size(), capture.PacketCount());
}

void DissectorExamplesTest::theExamplesAreThoseThatAreTriedHere()
{
    QStringList tried;
    for (const sEXPECTED& expected : Expected()) {
        tried.append(expected.example);
    }
    tried.sort();
    QCOMPARE(tried, QStringList(frames.keys()));
}

void DissectorExamplesTest::everyCommandOfTheCatalogueHasAnExampleThatIsSeenAsIt()
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

void DissectorExamplesTest::anExampleHasTheFieldsThatThePageTells()
{
    QFETCH(QString, name);
    const QVector<sEXPECTED> all = Expected();
    const auto expected = std::find_if(
        all.cbegin(), all.cend(), [&name](const sEXPECTED& one) { return one.example == name; });
    QVERIFY(expected != all.cend());
    const sDISSECTED_PACKET request = Packet(frames[name].request);
    QVERIFY(request.Has("request"));
    QCOMPARE(CommandOf(request), page.Example(name).section);
    QCOMPARE(Shown(request), expected->request);
    QCOMPARE(page.Example(name).answer.isEmpty(), expected->answer.isEmpty());
    if (frames[name].answer > 0) {
        const sDISSECTED_PACKET answer = Packet(frames[name].answer);
        QVERIFY(answer.Has("answer"));
        QCOMPARE(CommandOf(answer), request.Values("command").value(0));
        QCOMPARE(Shown(answer), expected->answer);
    }
}

void DissectorExamplesTest::everyByteOfAnExampleIsInAField()
{
    QFETCH(QString, name);
    QCOMPARE(BytesWithoutField(Packet(frames[name].request)), QList<int>());
    if (frames[name].answer > 0) {
        QCOMPARE(BytesWithoutField(Packet(frames[name].answer)), QList<int>());
    }
}

void DissectorExamplesTest::aFieldBeginsWhereARowOfThePageBegins_data()
{
    QTest::addColumn<QString>("example");
    QTest::addColumn<bool>("ofTheAnswer");
    QTest::addColumn<int>("offset");
    for (const sWIRE_EXAMPLE& example : page.Examples()) {
        const QVector<sPAGE_TABLE> tables = page.TablesOf(example.section);
        for (const sPAGE_TABLE& table : tables) {
            const QString title = table.header.value(2);
            const bool ofTheAnswer =
                title == QString("Block of %1 bytes").arg(example.answer.size());
            if (!title.startsWith("Request") && !ofTheAnswer) {
                continue;
            }
            for (const QString& offset : table.Column(0)) {
                const int size = ofTheAnswer ? example.answer.size() : example.request.size();
                if (offset.toInt() < size) {
                    QTest::newRow(qPrintable(
                        example.name + QLatin1Char(' ') + title + QLatin1Char(' ') + offset))
                        << example.name << ofTheAnswer << offset.toInt();
                }
            }
        }
    }
}

void DissectorExamplesTest::aFieldBeginsWhereARowOfThePageBegins()
{
    QFETCH(QString, example);
    QFETCH(bool, ofTheAnswer);
    QFETCH(int, offset);
    QVERIFY(
        BeginsAt(Packet(ofTheAnswer ? frames[example].answer : frames[example].request), offset));
}

void DissectorExamplesTest::theFieldsHaveTheValuesOfTheTablesOfBlocks_data()
{
    QTest::addColumn<QString>("example");
    QTest::addColumn<QString>("title");
    QTest::newRow("CF0 old") << "CF0 old"
                             << "Block of 67 bytes";
    QTest::newRow("CF0 new") << "CF0 new"
                             << "Block of 75 bytes";
    QTest::newRow("CF2 long") << "CF2 long"
                              << "Block of 127 bytes";
    QTest::newRow("CF6") << "CF6"
                         << "Block of 44 bytes";
    QTest::newRow("CF7") << "CF7"
                         << "Block of 44 bytes";
}

void DissectorExamplesTest::theFieldsHaveTheValuesOfTheTablesOfBlocks()
{
    QFETCH(QString, example);
    QFETCH(QString, title);
    QStringList told;
    for (const QString& section : page.Commands()) {
        for (const sPAGE_TABLE& table : page.TablesOf(section)) {
            if (table.header.value(2) == title) {
                told = table.Column(3);
            }
        }
    }
    told.removeAll(QString());
    QVERIFY(!told.isEmpty());

    const sFRAMES both = frames[example];
    const bool isFrame = title.contains("127") || example == "CF6";
    const sDISSECTED_PACKET packet = Packet(isFrame ? both.request : both.answer);
    QMap<QString, QStringList> words;
    QStringList shown;
    const bool isEeprom = packet.Has("eeprom.block");
    for (const sDISSECTED_FIELD& field : packet.fields) {
        const QString name = field.name.section('.', 1);
        if (name.startsWith("motor.") && name.count('.') == 2) {
            words[name.section('.', 1, 1)].append(field.value);
        } else if (name == "mac") {
            shown.append(field.value.toUpper());
        } else if (name == "ip" || name == "mask" ||
                   (isEeprom && name.startsWith("eeprom.block.") && !name.endsWith("reserved"))) {
            shown.append(field.value);
        }
    }
    QStringList motors;
    for (const QStringList& values : qAsConst(words)) {
        motors.append(values.join(' '));
    }
    QCOMPARE(motors + shown, told);
}

void DissectorExamplesTest::theParametersHaveTheNamesOfTheirTable()
{
    const sPAGE_TABLE table = page.TablesOf("Rotator parameters").value(0);
    QStringList told;
    for (const QStringList& row : table.rows) {
        const QString mnemonic = row.value(1);
        told.append(mnemonic.isEmpty()
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

void DissectorExamplesTest::onlyThePercentageHasAUnitAmongTheParameters()
{
    QStringList percentages;
    for (const sDISSECTED_FIELD& field : Packet(frames["CF0 new"].answer).fields) {
        if (field.text.endsWith('%')) {
            percentages.append(field.text);
        }
    }
    QCOMPARE(percentages, Lines("Slow Motion Speed (SMS): 50 %\nSlow Motion Speed (SMS): 45 %"));
}

void DissectorExamplesTest::anAcknowledgementHasTheResultOfItsRow()
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

void DissectorExamplesTest::theGenerationIsToldAsThePageTells()
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

void DissectorExamplesTest::theAnswerAndItsRequestNameEachOther()
{
    for (const sFRAMES& both : qAsConst(frames)) {
        const QStringList none;
        const QStringList answer = both.answer ? QStringList{QString::number(both.answer)} : none;
        const QStringList request = both.answer ? QStringList{QString::number(both.request)} : none;
        QCOMPARE(Packet(both.request).Values("answer_in"), answer);
        QCOMPARE(Packet(both.answer).Values("request_in"), request);
    }
}

void DissectorExamplesTest::theTimeBetweenThemIsShown()
{
    const sDISSECTED_PACKET answer = Packet(frames["CF0 new"].answer);
    QCOMPARE(answer.Values("time").size(), 1);
    QVERIFY(qAbs(answer.Values("time").at(0).toDouble() - 0.005) < 0.00001);
}

// The fields of all examples, written in each of these ways, are those of the examples in one
// segment.
void DissectorExamplesTest::CompareWithWhole(const QVector<Writer>& ways)
{
    CaptureFile capture;
    QVector<QPair<QString, sFRAMES>> written;
    for (const Writer& way : ways) {
        for (const sWIRE_EXAMPLE& example : page.Examples()) {
            written.append({example.name, Write(capture, example, way)});
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

void DissectorExamplesTest::examplesInSegmentsOfOneByteShowTheSame()
{
    CompareWithWhole({[](const QByteArray& bytes, const Segment& segment) {
        for (const char byte : bytes) {
            segment(QByteArray(1, byte));
        }
    }});
}

void DissectorExamplesTest::examplesCutInTwoShowTheSame()
{
    QVector<Writer> ways;
    for (const int first : {1, 3, 4, 5, 10, 23, 24, 27, 61}) {
        ways.append([first](const QByteArray& bytes, const Segment& segment) {
            segment(bytes.left(first));
            if (bytes.size() > first) {
                segment(bytes.mid(first));
            }
        });
    }
    CompareWithWhole(ways);
}

void DissectorExamplesTest::AddExamples() const
{
    QTest::addColumn<QString>("name");
    for (const sWIRE_EXAMPLE& example : page.Examples()) {
        QTest::newRow(qPrintable(example.name)) << example.name;
    }
}

QTEST_APPLESS_MAIN(DissectorExamplesTest)
#include "DissectorExamplesTest.moc"
