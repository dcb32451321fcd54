// SPDX-License-Identifier: MIT

#include "tests/dissector/Tshark.h"

#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QXmlStreamReader>

namespace {

constexpr int LongestRunMs = 60000;
const QString Program = "tshark";
const QString FieldPrefix = "vx440.";
const QString ExpertPrefix = "vx440.expert.";

QString Attribute(const QXmlStreamReader& xml, const char* name)
{
    return xml.attributes().value(name).toString();
}

void TakeField(const QXmlStreamReader& xml, sDISSECTION& dissection)
{
    const QString name = Attribute(xml, "name");
    if (Attribute(xml, "show").startsWith("Lua Error")) {
        dissection.error += Attribute(xml, "show");
    } else if (name.startsWith(FieldPrefix)) {
        dissection.packets.last().fields.append(
            {name, Attribute(xml, "show"), Attribute(xml, "showname"),
                Attribute(xml, "pos").toInt(), Attribute(xml, "size").toInt()});
    }
}

void ReadPackets(QXmlStreamReader& xml, sDISSECTION& dissection)
{
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        const QString name = Attribute(xml, "name");
        if (name == "_ws.malformed.expert") {
            // What Wireshark makes of a range beyond the bytes that there are.
            dissection.error += Attribute(xml, "showname");
        } else if (xml.name() == "packet") {
            dissection.packets.append(sDISSECTED_PACKET{0, {}});
        } else if (name == "frame.number") {
            dissection.packets.last().frame = Attribute(xml, "show").toInt();
        } else if (xml.name() == "field") {
            TakeField(xml, dissection);
        }
    }
}

struct sRUN
{
    QString error;
    QByteArray output;
};

// With the dissector, and without the settings and plugins that a user has.
sRUN RunTshark(Passes passes, const QString& capture, const QStringList& arguments)
{
    const QTemporaryDir nothing;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* folder : {"HOME", "WIRESHARK_CONFIG_DIR", "WIRESHARK_PLUGIN_DIR"}) {
        environment.insert(QString::fromLatin1(folder), nothing.path());
    }
    QProcess tshark;
    tshark.setProcessEnvironment(environment);
    const QStringList times = passes == Passes::Two ? QStringList{"-2"} : QStringList();
    tshark.start(Program,
        times + QStringList{"-n", "-X", QString("lua_script:") + DISSECTOR, "-r", capture} +
            arguments);
    const bool finished = tshark.waitForFinished(LongestRunMs) && tshark.exitCode() == 0;
    sRUN run{finished ? QString() : QString("tshark: ") + tshark.errorString(),
        tshark.readAllStandardOutput()};
    const QString complaints = QString::fromUtf8(tshark.readAllStandardError());
    if (complaints.contains("Lua", Qt::CaseInsensitive)) {
        run.error += complaints;
    }
    return run;
}

} // namespace

QStringList sDISSECTED_PACKET::Values(const char* name) const
{
    QStringList values;
    for (const sDISSECTED_FIELD& field : fields) {
        if (field.name == FieldPrefix + name) {
            values.append(field.value);
        }
    }
    return values;
}

QStringList sDISSECTED_PACKET::Experts() const
{
    QStringList experts;
    for (const sDISSECTED_FIELD& field : fields) {
        if (field.name.startsWith(ExpertPrefix)) {
            experts.append(field.name.mid(ExpertPrefix.size()));
        }
    }
    return experts;
}

QStringList sDISSECTION::Experts() const
{
    QStringList experts;
    for (const sDISSECTED_PACKET& packet : packets) {
        const QStringList names = packet.Experts();
        for (const QString& name : names) {
            experts.append(QString("%1 %2").arg(packet.frame).arg(name));
        }
    }
    return experts;
}

sDISSECTED_PACKET sDISSECTION::Packet(int frame) const
{
    for (const sDISSECTED_PACKET& packet : packets) {
        if (packet.frame == frame) {
            return packet;
        }
    }
    return {frame, {}};
}

bool TsharkIsInstalled()
{
    return !QStandardPaths::findExecutable(Program).isEmpty();
}

int CountPackets(const QString& capture, const QString& filter, Passes passes)
{
    const sRUN run = RunTshark(passes, capture, {"-Y", filter});
    return run.error.isEmpty() ? run.output.count('\n') : -1;
}

sDISSECTION Dissect(const QString& capture, Passes passes)
{
    const sRUN run = RunTshark(passes, capture,
        {"-T", "pdml", "-J", "frame vx440 _ws.malformed", "-Y", "vx440 || _ws.lua.error"});
    sDISSECTION dissection{run.error, {}};
    QXmlStreamReader xml(run.output);
    ReadPackets(xml, dissection);
    if (xml.hasError()) {
        dissection.error += xml.errorString();
    }
    return dissection;
}
