// SPDX-License-Identifier: MIT

#include "tests/dissector/CaptureFile.h"
#include "tests/dissector/Tshark.h"
#include "tests/support/Warnings.h"
#include "tests/support/pages/ProtocolPage.h"

#include <QDir>
#include <QDirIterator>
#include <QProcess>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

#include <functional>

namespace {

// The sessions without a fault.
const QStringList Sessions{
    "address-change.pcap", "firmware-update.pcap", "new-firmware.pcap", "old-firmware.pcap"};

QStringList Lines(const char* text)
{
    return QString::fromLatin1(text).split('\n', Qt::SkipEmptyParts);
}

QString Path(const QString& capture)
{
    return QStringLiteral(CAPTURES "/") + capture;
}

/// "COMMAND FINDING" of each finding, once. There is no command where there is none to blame.
QStringList Findings(const sDISSECTION& seen)
{
    QStringList findings;
    for (const sDISSECTED_PACKET& packet : seen.packets) {
        QString command;
        for (const sDISSECTED_FIELD& field : packet.fields) {
            if (field.name == "vx440.command") {
                command = field.value;
            } else if (field.name == "vx440.unasked") {
                command.clear();
            } else if (field.name.startsWith("vx440.expert.")) {
                findings.append(command + QLatin1Char(' ') + field.name.section('.', 2));
            }
        }
    }
    findings.sort();
    findings.removeDuplicates();
    return findings;
}

/// A segment may have several.
QStringList CommandsOf(const sDISSECTION& seen)
{
    QStringList commands;
    for (const sDISSECTED_PACKET& packet : seen.packets) {
        for (const sDISSECTED_FIELD& field : packet.fields) {
            if (field.name == "vx440.command" && packet.Has("request")) {
                commands.append(field.value);
            } else if (field.name == "vx440.form") {
                commands.last() += QLatin1Char(' ') + field.value;
            }
        }
    }
    return commands;
}

/// Of a field, with blanks in between.
QString ValuesOf(const sDISSECTION& seen, const char* name)
{
    QStringList values;
    for (const sDISSECTED_PACKET& packet : seen.packets) {
        values += packet.Values(name);
    }
    return values.join(' ');
}

/// Always the same numbers, so that a failure can be had again.
class Chance
{
public:
    int Below(int limit) { return int(random.bounded(limit)); }

    QByteArray Bytes(int count)
    {
        QByteArray bytes;
        for (int i = 0; i < count; ++i) {
            bytes.append(static_cast<char>(Below(256)));
        }
        return bytes;
    }

private:
    QRandomGenerator random{440};
};

// Bytes of the page's examples, some of them other bytes, or too few, or too many.
QByteArray Damaged(QByteArray bytes, Chance& chance)
{
    for (int changes = chance.Below(4); changes > 0 && !bytes.isEmpty(); --changes) {
        bytes[chance.Below(bytes.size())] = static_cast<char>(chance.Below(256));
    }
    if (chance.Below(3) == 0) {
        bytes.truncate(chance.Below(bytes.size() + 1));
    }
    return chance.Below(5) == 0 ? bytes + chance.Bytes(chance.Below(200)) : bytes;
}

void WriteInSegments(
    QByteArray bytes, Chance& chance, const std::function<void(const QByteArray&)>& segment)
{
    while (!bytes.isEmpty()) {
        const int size = chance.Below(3) == 0 ? 1 + chance.Below(bytes.size()) : bytes.size();
        segment(bytes.left(size));
        bytes.remove(0, size);
    }
}

} // namespace

/// The captures that are kept beside the dissector, and captures that no unit would give.
class DissectorCapturesTest : public WarningsFail
{
    Q_OBJECT

private:
    QTemporaryDir folder;
    QString everything;
    QMap<QString, sDISSECTION> seenIn;

    static QStringList Faults()
    {
        QProcess simulator;
        simulator.start(qEnvironmentVariable("VX440_SIMULATOR"), {"--list-faults"});
        simulator.waitForFinished();
        return Lines(simulator.readAllStandardOutput().constData());
    }

    // One behind the other: a capture is a head, which is the same for all, and packets.
    static QByteArray AllCaptures()
    {
        constexpr int head = 24;
        QByteArray bytes;
        QDirIterator captures(Path(""), {"*.pcap"}, QDir::Files, QDirIterator::Subdirectories);
        while (captures.hasNext()) {
            QFile capture(captures.next());
            capture.open(QIODevice::ReadOnly);
            const QByteArray content = capture.readAll();
            bytes.append(bytes.isEmpty() ? content : content.mid(head));
        }
        return bytes;
    }

    void CheckThatEverythingIsShown(const CaptureFile& capture)
    {
        const QString path = folder.filePath("capture.pcap");
        QVERIFY(capture.Save(path));
        for (const Passes passes : {Passes::One, Passes::Two}) {
            QCOMPARE(CountPackets(path, "vx440 && !_ws.lua.error && !_ws.malformed.expert", passes),
                capture.PacketCount());
        }
    }

private slots:
    void initTestCase()
    {
        if (!TsharkIsInstalled()) {
            QSKIP("tshark is not installed");
        }
        everything = folder.filePath("everything.pcap");
        QFile file(everything);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(AllCaptures());
        for (const QString& session : Sessions) {
            seenIn.insert(session, Dissect(Path(session)));
            QCOMPARE(seenIn[session].error, QString());
        }
    }

    void noSegmentIsLeftOut()
    {
        // What is sent again is seen once.
        const QString leftOut =
            "tcp.len > 0 && !vx440 && !tcp.analysis.keep_alive && "
            "!tcp.analysis.retransmission || _ws.lua.error || _ws.malformed.expert";
        QCOMPARE(CountPackets(everything, leftOut, Passes::One), 0);
        QCOMPARE(CountPackets(everything, leftOut, Passes::Two), 0);
    }

    void theSessionsHaveEveryCommandOfTheCatalogueAndNothingIsFound()
    {
        QCOMPARE(QDir(Path("")).entryList({"*.pcap"}, QDir::Files), Sessions);
        QStringList seen;
        for (const QString& session : Sessions) {
            QCOMPARE(Findings(seenIn[session]), QStringList());
            seen += CommandsOf(seenIn[session]);
        }
        seen.removeDuplicates();
        seen.sort();
        QStringList catalogue =
            ProtocolPage(PROTOCOL_PAGE).TablesOf("Catalogue").value(0).Column(0);
        catalogue.sort();
        QCOMPARE(seen, catalogue);
    }

    void theFirmwareOfTheUpdateIsVerifiedToItsEnd()
    {
        const sDISSECTION seen = seenIn["firmware-update.pcap"];
        QCOMPARE(CommandsOf(seen).join(' '), "*IDN? CF3 CF3 CF3 CF4 CF5 *IDN? CF8");
        const QPair<const char*, const char*> rows[] = {{"block.sum.status", "1 1 1"},
            {"block.sequence", "0 1 2"}, {"image.length", "3000"}, {"end.sum.status", "1"},
            {"end.length.status", "1"}, {"acknowledgement", "1 1 1 1"},
            {"identity.firmware", "3.10 3.11"}};
        for (const auto& row : rows) {
            QCOMPARE(ValuesOf(seen, row.first), row.second);
        }
    }

    void theUnitIsFoundAtItsNewAddress()
    {
        const sDISSECTION seen = seenIn["address-change.pcap"];
        QCOMPARE(CommandsOf(seen).join(' '), "*IDN? CF0 CF0 CF1 CF0 CF0");
        QCOMPARE(ValuesOf(seen, "ip"),
            "192.168.0.129 192.168.0.129 192.168.0.131 192.168.0.131 192.168.0.131");
    }

    void everyFaultOfTheSimulatorHasACaptureInWhichItIsFoundByWhatItDoes()
    {
        const QMap<QString, QString> rows{
            {"bytewise", "CF8 refused, HCF length, VCF length"},
            {"closing", "CF8 no_answer"},
            {"garbage", "*IDN? length, *IDN? not_understood, CF8 not_understood, GET:OPTION:DESC? "
                        "length, GET:OPTION:INTERNAL? length, HCF length, VCF length"},
            {"long", " unasked, CF8 not_understood, GET:OPTION:DESC? length, GET:OPTION:INTERNAL? "
                     "length"},
            {"refusing", "CF8 refused"},
            {"resetting", "CF8 no_answer"},
            {"short", "*IDN? length, *IDN? not_understood, CF0 length, CF7 length, CF8 length, CF8 "
                      "refused, GET:OPTION:DESC? length, GET:OPTION:INTERNAL? length"},
            {"silent", "*IDN? no_answer, CF0 no_answer, CF7 no_answer, CF8 no_answer, "
                       "GET:OPTION:DESC? no_answer, GET:OPTION:INTERNAL? no_answer"},
            {"slow", " unasked, CF0 no_answer, CF7 no_answer, CF8 not_understood, GET:OPTION:DESC? "
                     "length, GET:OPTION:INTERNAL? length"},
            {"wrong", "*IDN? not_understood, CF8 not_understood, GET:OPTION:DESC? length, "
                      "GET:OPTION:INTERNAL? length"},
        };
        QStringList faults = Faults();
        faults.sort();
        QCOMPARE(QStringList(rows.keys()), faults);
        QCOMPARE(QDir(Path("faults")).entryList(QDir::Files),
            (faults.join(".pcap ") + ".pcap").split(' '));
        for (auto row = rows.cbegin(); row != rows.cend(); ++row) {
            const sDISSECTION seen = Dissect(Path("faults/" + row.key() + ".pcap"));
            QCOMPARE(row.key() + ": " + Findings(seen).join(", "), row.key() + ": " + row.value());
        }
    }

    void theFiltersOfThePageFindSomethingInTheirCaptures()
    {
        const QVector<sPAGE_TABLE> tables =
            ProtocolPage(WIRESHARK_PAGE).TablesOf("What to look for");
        QVERIFY(tables.value(0).rows.size() >= 3);
        for (const QStringList& row : tables.value(0).rows) {
            QVERIFY2(CountPackets(Path(row.value(2)), row.value(0), Passes::Two) > 0,
                qPrintable(row.value(0)));
        }
        // The names are known: a filter with another one makes tshark fail.
        const QString names = tables.value(1).Column(0).join(" || ");
        QVERIFY(CountPackets(everything, names, Passes::One) > 0);
    }

    void thePageNamesEveryFinding()
    {
        QFile dissector(DISSECTOR);
        QVERIFY(dissector.open(QIODevice::ReadOnly));
        static const QRegularExpression Definition("define_expert\\(\"([a-z_]+)\"");
        auto found = Definition.globalMatch(QString::fromUtf8(dissector.readAll()));
        QStringList defined;
        while (found.hasNext()) {
            defined.append("vx440.expert." + found.next().captured(1));
        }
        QStringList named =
            ProtocolPage(WIRESHARK_PAGE).TablesOf("What to look for").value(1).Column(0);
        defined.sort();
        named.sort();
        QCOMPARE(named, defined);
    }

    void damagedFramesGiveNoError()
    {
        const ProtocolPage page(PROTOCOL_PAGE);
        Chance chance;
        CaptureFile capture;
        for (int round = 0; round < 20; ++round) {
            capture.NewUnit();
            for (const sWIRE_EXAMPLE& example : page.Examples()) {
                WriteInSegments(
                    Damaged(example.request, chance), chance, [&capture](const QByteArray& bytes) {
                        capture.FromTool(bytes, bytes.size() % 97 == 0);
                    });
                capture.Wait(chance.Below(2) * 12);
                WriteInSegments(Damaged(example.answer, chance), chance,
                    [&capture](const QByteArray& bytes) { capture.FromUnit(bytes); });
                capture.Wait(chance.Below(2) * 12);
            }
        }
        CheckThatEverythingIsShown(capture);
    }

    void randomBytesGiveNoError()
    {
        Chance chance;
        CaptureFile capture;
        for (int packet = 0; packet < 1000; ++packet) {
            if (packet % 50 == 0) {
                capture.NewUnit();
            }
            const QByteArray bytes = chance.Bytes(1 + chance.Below(1400));
            if (chance.Below(2) == 0) {
                capture.FromTool(bytes);
            } else {
                capture.FromUnit(bytes);
            }
            capture.Wait(chance.Below(20));
        }
        capture.FromTool(QByteArray(1400, '\r'));
        CheckThatEverythingIsShown(capture);
    }

    void anAnswerInManySegmentsIsPutTogether()
    {
        CaptureFile capture;
        capture.FromTool(QByteArray::fromHex("4346370D13880000"));
        for (int i = 0; i < 5000; ++i) {
            capture.FromUnit("x");
        }
        const QString path = folder.filePath("capture.pcap");
        QVERIFY(capture.Save(path));
        QCOMPARE(CountPackets(path, "vx440.answer && vx440.segments == 5000", Passes::Two), 1);
    }
};

QTEST_APPLESS_MAIN(DissectorCapturesTest)
#include "DissectorCapturesTest.moc"
