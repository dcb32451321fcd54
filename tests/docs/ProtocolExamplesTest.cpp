// SPDX-License-Identifier: MIT

#include "link/CDeviceCommunication.h"
#include "link/ConnectToDevice.h"
#include "link/DeviceReconfiguration.h"
#include "model/CDeviceDatabase.h"
#include "rotor/CDeviceParameters.h"
#include "rotor/RotorCatalogue.h"
#include "tests/simulator/FirmwareBlocks.h"
#include "tests/support/Warnings.h"
#include "tests/support/pages/ProtocolPage.h"
#include "tests/support/scripted/ScriptedLink.h"

#include <QtTest>

#include <algorithm>
#include <functional>
#include <memory>

// Makes the tool send a command, and tells in words what it makes of the answer.
using Call = std::function<QString(CDeviceCommunication&)>;

struct sCALL
{
    QString example;
    Call call;
    QString outcome;
};
Q_DECLARE_METATYPE(sCALL)

namespace {

const QVector<ushort> ProSisTel{500, 3, 150, 1, 2, 10, 0, 0, 2000, 20};
const QVector<ushort> NewProSisTel{500, 3, 150, 1, 2, 10, 0, 0, 2000, 20, 50, 1};
const QVector<ushort> Polar{99, 3, 60, 1, 2, 5, 7, 8, 500, 21};

const QStringList Commands{"*IDN?", "CF0", "CF1", "CF2 short", "CF2 long", "CF3", "CF4", "CF5",
    "CF6", "CF7", "CF8", "CF9", "CF10", "HCF", "VCF", "GET:OPTION:INTERNAL?", "GET:OPTION:DESC?"};

const QString Options = "VX440-DCF,0,0,0,0,VX440-A1,0,0,0,0,0,0,0,0,0,0,0,0,0";
const QString Descriptions = "Feed 13.8 V;0;0;0;0;Mast preamplifier;0;0;0;0;0;0;0;0;0;0;0;0;0";

// The 44 bytes at the front of an EEPROM region.
const QByteArray EepromBlock = QByteArray::fromHex("0200000000000000"
                                                   "00000000"
                                                   "4E61BC00" // 12345678
                                                   "02076900"
                                                   "15CD5B07" // 123456789
                                                   "695C00006400") +
                               QByteArray("VX440").leftJustified(14, '\0');

const uchar* Unsigned(const QByteArray& bytes)
{
    return reinterpret_cast<const uchar*>(bytes.constData());
}

QString Hex(const QByteArray& bytes)
{
    return QString::fromLatin1(bytes.toHex(' ').toUpper());
}

const QByteArray SmallFile("VX440 sample image\r\n");
const QByteArray TwoBlockFile = QByteArray(1136, '\xA5') + '\x5A';

QMap<int, ushort> ById(const QVector<ushort>& values)
{
    QMap<int, ushort> parameters;
    for (int id = 0; id < values.size(); ++id) {
        parameters.insert(id, values.at(id));
    }
    return parameters;
}

QString Sent(bool sent)
{
    return sent ? "sent" : "not sent";
}

QString Acknowledged(bool returned, const CDeviceCommunication& device)
{
    return QString("%1, result %2").arg(returned ? "true" : "false").arg(device.GetLastResult());
}

QString WordsOf(CDeviceParameters& parameters, short motor)
{
    QStringList words;
    for (int id = 0; id < parameters.GetParameterCount(); ++id) {
        words.append(QString::number((parameters.*ParameterAccessors[id])(motor)));
    }
    return words.join(' ');
}

// The words of both motors and the mask, as the tool decodes them.
QStringList Decoded(float firmware, const QByteArray& block)
{
    CDeviceParameters parameters(firmware);
    QVector<ushort> words((block.size() + 1) / 2);
    memcpy(words.data(), block.constData(), static_cast<size_t>(block.size()));
    parameters.ParseDeviceBlock(words.data());
    return {WordsOf(parameters, 0), WordsOf(parameters, 1), parameters.GetSubnetMask()};
}

QString ReadConfiguration(CDeviceCommunication& device, float firmware)
{
    QByteArray block(CDeviceParameters(firmware).GetDeviceBlockSize(), '\0');
    if (!device.ReadConfiguration(
            reinterpret_cast<uchar*>(block.data()), static_cast<ushort>(block.size()))) {
        return "no configuration";
    }
    return Decoded(firmware, block).join(" | ");
}

QString ReadEeprom(CDeviceCommunication& device, ushort length, ushort offset)
{
    QByteArray request = firmwarestream::BigEndian(length) + firmwarestream::BigEndian(offset);
    QVector<uchar> out;
    if (!device.ReadEeprom(reinterpret_cast<uchar*>(request.data()), out)) {
        return "not sent";
    }
    return Hex(QByteArray(reinterpret_cast<const char*>(out.constData()), out.size()));
}

QString SendLongConfiguration(CDeviceCommunication& device)
{
    const QString identity = BuildDeviceIdentity("1234.5678.02", "123456");
    return Sent(device.SendDeviceConfiguration(identity, "02:4C:7E:00:01:29", "192.168.0.129",
        "255.255.255.0", ById(NewProSisTel), ById(Polar)));
}

Call FirmwareBlockCall(const QByteArray& file, int index)
{
    return [file, index](CDeviceCommunication& device) {
        const QByteArray block = firmwarestream::Blocks(file).at(index);
        return Acknowledged(device.SendFirmwareBlock(Unsigned(block)), device);
    };
}

Call FirmwareEndCall(const QByteArray& file)
{
    return [file](CDeviceCommunication& device) {
        return Sent(device.SendFirmwareChecksum(Unsigned(firmwarestream::Checksum(file))));
    };
}

Call MotorCall(int channel, const QVector<ushort>& values)
{
    return [channel, values](CDeviceCommunication& device) {
        return Sent(device.SendMotorConfiguration(channel, values));
    };
}

Call ConfigurationCall(float firmware)
{
    return [firmware](CDeviceCommunication& device) { return ReadConfiguration(device, firmware); };
}

QString SendOptions(CDeviceCommunication& device)
{
    return Acknowledged(device.SendOptions(Options), device);
}

QString Validate(CDeviceCommunication& device)
{
    return Acknowledged(device.ValidateFirmware(), device);
}

// All of them: those that read, those that change without an answer, and those that are
// acknowledged.
QVector<sCALL> Calls()
{
    const QString sent = "sent";
    const QString done = "true, result 1";
    const QString refused = "false, result 0";
    return {
        {"*IDN?", [](auto& d) { return d.ReadIdentity(); },
            "ZELMA&KOVINTH,VX440,1234.5678.02/123456,3.10\r"},
        {"CF0 old", ConfigurationCall(2.99F),
            "500 3 150 1 2 10 0 0 2000 20 | 99 3 60 1 2 5 7 8 500 21 | 255.255.255.0"},
        {"CF0 new", ConfigurationCall(3.0F),
            "500 3 150 1 2 10 0 0 2000 20 50 1 | 99 3 60 1 2 5 7 8 500 21 45 0 | "
            "255.255.255.0"},
        {"CF7", [](auto& d) { return ReadEeprom(d, 64, 0); },
            Hex(EepromBlock + QByteArray(20, '\xFF'))},
        {"CF7 short answer", [](auto& d) { return ReadEeprom(d, 4, 2220); }, "12 34 FF FF"},
        {"GET:OPTION:INTERNAL?", [](auto& d) { return d.ReadOptions(); }, Options + '\r'},
        {"GET:OPTION:DESC?", [](auto& d) { return d.ReadOptionDescriptions(); },
            Descriptions + '\r'},
        {"CF1",
            [](auto& d) {
                return Sent(
                    d.SendIpConfiguration(Unsigned(QByteArray("\xC0\xA8\0\x82\xFF\xFF\xFF\0", 8))));
            },
            sent},
        {"CF2 short", [](auto& d) { return Sent(d.SendMacAddress("02:4C:7E:00:01:2A")); }, sent},
        {"CF2 long", SendLongConfiguration, sent},
        {"HCF old", MotorCall(0, ProSisTel), sent},
        {"HCF new", MotorCall(0, NewProSisTel), sent},
        {"VCF old", MotorCall(1, ProSisTel), sent},
        {"VCF new", MotorCall(1, NewProSisTel), sent},
        {"CF4", FirmwareEndCall(SmallFile), sent},
        {"CF4 of two", FirmwareEndCall(TwoBlockFile), sent},
        {"CF5", [](auto& d) { return Sent(d.StartFirmwareUpdate()); }, sent},
        {"CF3", FirmwareBlockCall(SmallFile, 0), done},
        {"CF3 first of two", FirmwareBlockCall(TwoBlockFile, 0), done},
        {"CF3 last of two", FirmwareBlockCall(TwoBlockFile, 1), done},
        {"CF3 refused", FirmwareBlockCall(TwoBlockFile, 0), refused},
        {"CF6",
            [](auto& d) {
                const QByteArray block = QByteArray::fromHex("04B0") + EepromBlock;
                return Acknowledged(d.WriteEeprom(Unsigned(block), 44), d);
            },
            done},
        {"CF8", Validate, done},
        {"CF8 refused", Validate, "true, result 0"},
        {"CF9", SendOptions, done},
        {"CF9 refused", SendOptions, refused},
        {"CF10", [](auto& d) { return Acknowledged(d.SendOptionDescriptions(Descriptions), d); },
            done},
    };
}

// What a command of that kind of answer waits for when the answer is there at once.
QList<int> WaitsFor(const QString& kind, int answerLength)
{
    QList<int> waits{10};
    if (kind == "block") {
        waits.append(1000);
    } else if (kind == "acknowledgement") {
        waits.append(1);
    } else if (kind == "text") {
        waits.append(QVector<int>(answerLength, 1).toList());
    }
    return waits;
}

// The big-endian numbers of so many bytes each.
QString NumbersOf(const QByteArray& bytes, int size, const char* separator)
{
    QStringList numbers;
    for (int i = 0; i + size <= bytes.size(); i += size) {
        numbers.append(QString::number(bytes.mid(i, size).toHex().toInt(nullptr, 16)));
    }
    return numbers.join(separator);
}

// The bytes of a block's field, written as the field's kind is.
QString FieldText(const QString& content, const QByteArray& bytes)
{
    if (content.contains("parameters")) {
        return NumbersOf(bytes, 2, " ");
    }
    if (content == "MAC address") {
        return QString::fromLatin1(bytes.toHex(':').toUpper());
    }
    const bool isAddress = content == "IP address" || content == "subnet mask";
    return isAddress ? NumbersOf(bytes, 1, ".") : QString();
}

bool IsRequestTable(const sPAGE_TABLE& table)
{
    return table.header.value(2).startsWith("Request");
}

std::unique_ptr<CDeviceCommunication> Connected()
{
    scripted::Reset();
    auto device = std::make_unique<CDeviceCommunication>();
    device->StartConnection("127.0.0.1");
    device->wait();
    scripted::ForgetEvents();
    return device;
}

// Whether the fields of a table follow each other from 0 to the end of a frame of that length.
bool Covers(const sPAGE_TABLE& table, int length)
{
    int end = 0;
    for (const QStringList& field : table.rows) {
        const bool open = field.at(1) == "n";
        const int size = open ? length - end : field.at(1).toInt();
        if (field.at(0) != QString::number(end) || size < 1) {
            return false;
        }
        end += size;
    }
    return end == length;
}

} // namespace

class ProtocolExamplesTest : public WarningsFail
{
    Q_OBJECT

private:
    const ProtocolPage page{PROTOCOL_PAGE};

    sPAGE_TABLE TableOf(const QString& section) const { return page.TablesOf(section).value(0); }

    sPAGE_TABLE BlockTable(const QString& section, const QString& title) const
    {
        const QVector<sPAGE_TABLE> tables = page.TablesOf(section);
        const auto found = std::find_if(tables.cbegin(), tables.cend(),
            [&title](const sPAGE_TABLE& table) { return table.header.value(2) == title; });
        return found == tables.cend() ? sPAGE_TABLE() : *found;
    }

    // Milliseconds and times of a row of the table of waits.
    QList<int> Wait(const QString& name) const
    {
        const QStringList row = TableOf("Waits").Row(name);
        return {row.value(1).toInt(), row.value(2).section(' ', 0, 0).toInt()};
    }

    // The length and the number of sleeps that are all alike, as Wait() gives them.
    static QList<int> Slept(const QList<int>& sleeps)
    {
        const bool alike = sleeps.count(sleeps.value(0)) == sleeps.size();
        return alike ? QList<int>{sleeps.value(0), sleeps.size()} : QList<int>();
    }

private slots:
    void everyLineOfTheExamplesCanBeRead() { QCOMPARE(page.Errors(), QStringList()); }

    void theSectionsAreTheCommands() { QCOMPARE(page.Commands(), Commands); }

    void theCatalogueHasTheCommandsInOrder() { QCOMPARE(TableOf("Catalogue").Column(0), Commands); }

    void everyCommandHasATableAndAnExampleInItsSection()
    {
        for (const QString& command : Commands) {
            const QVector<sPAGE_TABLE> tables = page.TablesOf(command);
            QVERIFY2(
                std::any_of(tables.cbegin(), tables.cend(), IsRequestTable), qPrintable(command));
            const QVector<sWIRE_EXAMPLE> examples = page.ExamplesOf(command);
            QVERIFY2(!examples.isEmpty(), qPrintable(command));
            for (const sWIRE_EXAMPLE& example : examples) {
                QCOMPARE((example.name + ' ').left(command.size() + 1), command + ' ');
            }
        }
    }

    void theExamplesAreThoseThatAreTriedHere()
    {
        QStringList onThePage;
        for (const sWIRE_EXAMPLE& example : page.Examples()) {
            onThePage.append(example.name);
        }
        QStringList tried;
        const QVector<sCALL> calls = Calls();
        for (const sCALL& call : calls) {
            tried.append(call.example);
        }
        onThePage.sort();
        tried.sort();
        QCOMPARE(onThePage, tried);
    }

    void theToolSendsTheExampleAndUnderstandsItsAnswer_data()
    {
        QTest::addColumn<sCALL>("call");
        const QVector<sCALL> calls = Calls();
        for (const sCALL& call : calls) {
            QTest::newRow(qPrintable(call.example)) << call;
        }
    }
    void theToolSendsTheExampleAndUnderstandsItsAnswer()
    {
        QFETCH(sCALL, call);
        const auto device = Connected();
        const sWIRE_EXAMPLE example = page.Example(call.example);
        QByteArray sent;
        scripted::WhenSent([&sent, &example](const QByteArray& frame) {
            sent.append(frame);
            scripted::Deliver(example.answer);
        });
        QCOMPARE(call.call(*device), call.outcome);
        QCOMPARE(Hex(sent), Hex(example.request));
        QCOMPARE(scripted::Actions().size(), 1);

        const QString kind = TableOf("Catalogue").Row(example.section).value(2);
        QCOMPARE(example.answer.isEmpty(), kind == "none");
        QCOMPARE(scripted::Sleeps(), WaitsFor(kind, example.answer.size()));
    }

    void theCatalogueTellsTheLengthOfTheFrame()
    {
        for (const sWIRE_EXAMPLE& example : page.Examples()) {
            const QStringList told =
                TableOf("Catalogue").Row(example.section).value(1).split(" + ");
            const int size = example.request.size();
            const bool isOpen = told.value(1) == "n";
            QVERIFY2(
                isOpen ? size > told.at(0).toInt() : told == QStringList(QString::number(size)),
                qPrintable(example.name));
        }
    }

    void aTableOfTheSectionCoversTheFrameAndNoTableIsOfNone()
    {
        for (const QString& command : Commands) {
            const QVector<sWIRE_EXAMPLE> examples = page.ExamplesOf(command);
            QVector<sPAGE_TABLE> tables = page.TablesOf(command);
            const auto end = std::partition(tables.begin(), tables.end(), IsRequestTable);
            for (const sWIRE_EXAMPLE& example : examples) {
                QVERIFY2(
                    std::any_of(tables.begin(), end,
                        [&](const auto& table) { return Covers(table, example.request.size()); }),
                    qPrintable(example.name));
            }
            for (auto table = tables.begin(); table != end; ++table) {
                QVERIFY2(std::any_of(examples.cbegin(), examples.cend(),
                             [&](const auto& one) { return Covers(*table, one.request.size()); }),
                    qPrintable(table->header.join(' ')));
            }
        }
    }

    void theBlocksOfConfigurationHoldWhatTheirTablesTell()
    {
        const struct
        {
            QString section;
            QString title;
            QByteArray block;
        } rows[] = {{"CF0", "Block of 67 bytes", page.Example("CF0 old").answer},
            {"CF0", "Block of 75 bytes", page.Example("CF0 new").answer},
            {"CF2 long", "Block of 127 bytes", page.Example("CF2 long").request.mid(4)}};
        for (const auto& row : rows) {
            const sPAGE_TABLE table = BlockTable(row.section, row.title);
            QCOMPARE(row.title, QString("Block of %1 bytes").arg(row.block.size()));
            QVERIFY2(Covers(table, row.block.size()), qPrintable(row.title));
            for (const QStringList& field : table.rows) {
                const QByteArray bytes = row.block.mid(field.at(0).toInt(), field.at(1).toInt());
                QCOMPARE(field.at(3), FieldText(field.at(2), bytes));
            }
        }
    }

    void theToolDecodesFromTheBlocksWhatTheirTablesTell()
    {
        for (const float firmware : {2.99F, 3.0F}) {
            const QByteArray block = page.Example(firmware < 3 ? "CF0 old" : "CF0 new").answer;
            const QString title = QString("Block of %1 bytes").arg(block.size());
            const QStringList told = BlockTable("CF0", title).Column(3);
            QCOMPARE(Decoded(firmware, block),
                (QStringList{told.value(0), told.value(1), told.value(4)}));
        }
    }

    void theGenerationsAreWhatTheyAreToTheTool()
    {
        const sPAGE_TABLE table = TableOf("Firmware generations");
        const QPair<QString, bool> versions[] = {
            {"x", true}, {"2.99", true}, {"3.0", false}, {"3.01", false}};
        for (const auto& one : versions) {
            const QString version = one.first;
            const bool isOld = one.second;
            const auto told = [&table, isOld](const char* row) {
                return table.Row(row).value(isOld ? 1 : 2).toInt();
            };
            TheDeviceDatabase()->SetFirmwareVersion(version + '\r');
            QCOMPARE(TheDeviceDatabase()->IsFirmwareBelowVersion3(), isOld);
            const CDeviceParameters parameters(version.toFloat());
            const int words = parameters.GetParameterCount();
            QCOMPARE(words, told("words for each rotator"));
            QCOMPARE(int(parameters.GetDeviceBlockSize()), told("bytes of the CF0 answer"));
            QCOMPARE(4 + 2 * words, told("bytes of the HCF and VCF frames"));
            QCOMPARE(page.Example(isOld ? "CF2 long" : "CF2 short").request.size(),
                told("bytes of the CF2 frame that changes the MAC address"));
        }
    }

    void theParametersHaveTheNamesThatTheToolShows()
    {
        const sPAGE_TABLE table = TableOf("Rotator parameters");
        QCOMPARE(table.rows.size(), 12);
        for (int id = 0; id < 11; ++id) {
            const QString label = MotorParameterNames.value(id);
            const QStringList row = table.Row(QString::number(id));
            QCOMPARE(row.value(1), ParameterMnemonic(label));
            QCOMPARE(QString("%1 (%2)").arg(row.value(2), row.value(1)), label);
            QCOMPARE(row.value(3), id < 10 ? "all" : "3.0 and later");
        }
        QCOMPARE(table.Row("11").value(1), QString());
    }

    void anAcknowledgementMeansToTheToolWhatItsRowTells()
    {
        const struct
        {
            const char* row;
            const char* answer;
            int polls;
        } rows[] = {{"31 0D", "1\r", 1}, {"30 0D", "0\r", 1}, {"32 0D", "2\r", 10000},
            {"any other", "OK", 1}};
        for (const auto& row : rows) {
            const auto device = Connected();
            scripted::WhenSent([&row](const QByteArray&) { scripted::Deliver(row.answer); });
            device->ValidateFirmware();
            const sPAGE_TABLE table = page.TablesOf("Frames").value(1);
            QCOMPARE(table.Row(row.row).value(1), QString::number(device->GetLastResult()));
            QCOMPARE(scripted::Sleeps().size(), 1 + row.polls);
        }
    }

    void theDrainTakesAsLongAsItsRowTells()
    {
        const auto device = Connected();
        device->SendMotorConfiguration(0, {});
        QCOMPARE(Slept(scripted::Sleeps()), Wait("drain"));
        scripted::ForgetEvents();
        scripted::Deliver("abc");
        device->SendMotorConfiguration(0, {});
        QCOMPARE(scripted::Sleeps(), (QList<int>{10, 10, 10, 10}));
    }

    void aSilentUnitIsWaitedForAsLongAsTheRowTells()
    {
        const QPair<const char*, Call> rows[] = {
            {"reply delay of CF0 and CF7", ConfigurationCall(3.0F)},
            {"reply delay of CF0 and CF7", [](auto& d) { return ReadEeprom(d, 4, 0); }},
            {"poll of an acknowledgement", SendOptions},
            {"pass of a text", [](auto& d) { return d.ReadIdentity(); }},
            {"pass of a text", [](auto& d) { return d.ReadOptions(); }}};
        for (const auto& row : rows) {
            const auto device = Connected();
            row.second(*device);
            QCOMPARE(Slept(scripted::Sleeps().mid(1)), Wait(row.first));
        }
    }

    void anAnswerThatBeginsLateReadsAsThePageTells()
    {
        const auto device = Connected();
        const auto answerLate = [](const QByteArray&) { scripted::DeliverAfter(3, "A\r"); };
        scripted::WhenSent(answerLate);
        QCOMPARE(device->ReadIdentity(), QString(3, QChar(0)) + "A\r");
        QCOMPARE(device->ReadOptions(), "A\r");
    }

    void theShortCf2IsFollowedByTheWaitOfItsRow()
    {
        scripted::Reset();
        TheDeviceCommunication()->StartConnection("127.0.0.1");
        TheDeviceCommunication()->wait();
        scripted::ForgetEvents();
        QString error;
        QVERIFY(ChangeMacDirect("02:4C:7E:00:01:2A", error));
        QCOMPARE(Slept(scripted::Sleeps().mid(1)), Wait("behind the short CF2"));
        TheDeviceCommunication()->Disconnect();
    }

    void anAttemptToConnectIsPolledAsItsRowTellsAndMadeFourTimes()
    {
        scripted::Reset();
        TheDeviceDatabase()->SetIpAddress("127.0.0.1");
        scripted::SetConnectResult(scripted::ConnectResult::Fails);
        QVERIFY(ConnectToDevice(3, QString()));
        const QList<int> poll = Wait("poll of a connection attempt");
        QCOMPARE(scripted::Sleeps().count(poll.at(0)), 4 * poll.at(1));
        QCOMPARE(poll, (QList<int>{100, 200}));
        QVERIFY(scripted::Events().contains("connect 50000"));
    }
};

QTEST_MAIN(ProtocolExamplesTest)
#include "ProtocolExamplesTest.moc"
