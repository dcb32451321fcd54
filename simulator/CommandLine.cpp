// SPDX-License-Identifier: MIT

#include "simulator/CommandLine.h"

#include "simulator/EepromImage.h"

#include <QCommandLineParser>
#include <QFile>
#include <QRegularExpression>

namespace simulator {

namespace {

constexpr int OneDayMs = 24 * 60 * 60 * 1000;

struct OptionText
{
    const char* name;
    const char* valueName; ///< null for an option without a value
    const char* standard;  ///< null when it has no default
    const char* description;
};

const QVector<OptionText>& OptionTexts()
{
    static const QVector<OptionText> texts = {
        {"address", "IP", "127.0.0.1", "IPv4 address of the unit; the machine must have it."},
        {"port", "NUMBER", "50000", "TCP port; 0 takes a free one, which the ready line names."},
        {"mask", "MASK", "255.255.255.0", "Subnet mask of the unit."},
        {"interface", "NAME", nullptr,
            "Network interface that follows when the unit gets another address or MAC address, "
            "through the program ip. --address and --mask must be those it has. Without this "
            "option the unit just listens on its new address; where the machine does not have "
            "that, it says so and keeps the old one."},
        {"firmware", "VERSION", "3.10",
            "Firmware version. Below 3.0 the unit is one of the old kind: 10 words a motor and the "
            "long CF2."},
        {"new-firmware", "VERSION", nullptr,
            "Version after a firmware update. Without this option the minor number rises by one."},
        {"part", "TEXT", "4400.1290.02", "Part number."},
        {"serial", "TEXT", "000129", "Serial number."},
        {"mac", "MAC", "02:4C:7E:00:01:29", "MAC address that the unit reports."},
        {"azimuth", "WORDS", "500,3,150,1,2,10,0,0,2000,20,50,1",
            "Words of the azimuth rotator, up to 12 numbers from 0 to 65535; those left out are "
            "0."},
        {"polar", "WORDS", "99,3,60,1,2,5,0,0,500,20,50,0",
            "Words of the polar rotator, like --azimuth."},
        {"options", "TEXT",
            "VX440-DCF,0,VX440-ATT,VX440-FIL,0,VX440-A1+A2,VX440-F1,VX440-F2,VX440-F3,0,0,0,0,0,0,"
            "0,0,ProSisTel,YAESU G-550",
            "Internal option string."},
        {"option-descriptions", "TEXT",
            "Feed 12 V;0;Straight through,3 dB,6 dB,10 dB,20 dB,40 dB;0;0;Stage 1,Stage 2;"
            "Filter 1;Filter 2;Filter 3;0;0;0;0;0;0;0;0;Azimuth rotator;Polar rotator",
            "Option description string."},
        {"eeprom", "FILE", nullptr,
            "EEPROM to begin with, 2400 bytes. Without this option it has two good blocks."},
        {"save-eeprom", "FILE", nullptr, "Write the EEPROM to this file at every change."},
        {"save-firmware", "FILE", nullptr,
            "Write a firmware image to this file once all of it has come."},
        {"away-ms", "MS", "3000", "How long the unit is away for a firmware update."},
        {"slow-ms", "MS", "1500", "How long a slow answer takes."},
        {"fault", "KIND[:COMMAND[:NTH]]", nullptr,
            "Do this wrong with every command, or with every COMMAND, or with the NTH COMMAND "
            "only, "
            "counted from 1. Can be given more than once; the last that fits counts."},
        {"list-faults", nullptr, nullptr, "Print the names of the faults, one a line, and end."},
        {"end-with-input", nullptr, nullptr,
            "End when the standard input ends, as it does with the program that holds its other "
            "side."},
        {"trace", nullptr, nullptr, "Print what the unit sends as well, as \"> HEX\"."},
    };
    return texts;
}

QString Description()
{
    QString text = QStringLiteral(
        "A VX440 control unit without the hardware. One process is one unit. It listens on its\n"
        "address, answers as the unit does, and keeps what it is told until it ends.\n"
        "\n"
        "Examples:\n"
        "  vx440-simulator\n"
        "      a unit with new firmware on 127.0.0.1\n"
        "  vx440-simulator --address 127.0.0.2 --firmware 2.9\n"
        "      a second one with old firmware beside it\n"
        "  vx440-simulator --fault silent:CF0 --fault refusing:CF3:2\n"
        "      no answer to any CF0, and the second firmware block is refused\n"
        "\n"
        "Standard output, a line each:\n"
        "  ready ADDRESS:PORT      it listens; again after a move and after an update\n"
        "  connected PEER:PORT     a client is there\n"
        "  disconnected            a client is gone\n"
        "  COMMAND [HEX]           a command was taken, with its payload\n"
        "  unknown HEX             these bytes before a carriage return were no command\n"
        "\n"
        "Standard input while it runs, a line each, answered by \"ok\" or \"error TEXT\":\n"
        "  fault KIND[:COMMAND[:NTH]]   one more fault\n"
        "  clear                        no faults\n"
        "  drop                         reset the connections of all clients\n"
        "  close                        close the connections of all clients\n"
        "  state                        print all that the unit holds as \"state KEY VALUE\"\n"
        "  quit                         end\n"
        "\n"
        "The length of CF6, CF9 and CF10 is not on the wire: such a command ends when nothing has\n"
        "come for 50 ms. So does an HCF or VCF that has fewer words than the unit.\n"
        "\n"
        "Faults:\n");
    for (const FaultDescription& fault : FaultDescriptions()) {
        text += QStringLiteral("  %1 %2\n")
                    .arg(QString::fromLatin1(fault.name), -10)
                    .arg(QString::fromLatin1(fault.effect));
    }
    return text;
}

void AddOptions(QCommandLineParser& parser)
{
    for (const OptionText& text : OptionTexts()) {
        QCommandLineOption option(QString::fromLatin1(text.name));
        QString description = QString::fromLatin1(text.description);
        if (text.valueName != nullptr) {
            option.setValueName(QString::fromLatin1(text.valueName));
        }
        if (text.standard != nullptr) {
            option.setDefaultValue(QString::fromLatin1(text.standard));
            description += QStringLiteral(" Default: %1").arg(QString::fromLatin1(text.standard));
        }
        option.setDescription(description);
        parser.addOption(option);
    }
}

// Reads option values and keeps the first complaint.
class Reader
{
public:
    explicit Reader(const QCommandLineParser& parser)
        : parser(parser)
    {
    }

    QString Text(const char* name) const { return parser.value(QString::fromLatin1(name)); }
    bool IsSet(const char* name) const { return parser.isSet(QString::fromLatin1(name)); }

    int Number(const char* name, int maximum)
    {
        bool ok = false;
        const int number = Text(name).toInt(&ok);
        Require(ok && number >= 0 && number <= maximum, name);
        return number;
    }

    QHostAddress Address(const char* name)
    {
        const QHostAddress address(Text(name));
        Require(address.protocol() == QAbstractSocket::IPv4Protocol, name);
        return address;
    }

    QByteArray Mac(const char* name)
    {
        static const QRegularExpression form(
            QStringLiteral("^[0-9A-Fa-f]{2}(:[0-9A-Fa-f]{2}){5}$"));
        Require(form.match(Text(name)).hasMatch(), name);
        return QByteArray::fromHex(Text(name).toLatin1());
    }

    QVector<quint16> Words(const char* name)
    {
        QVector<quint16> words;
        const QStringList texts = Text(name).split(QLatin1Char(','), Qt::SkipEmptyParts);
        for (const QString& text : texts) {
            bool ok = false;
            words.append(text.trimmed().toUShort(&ok));
            Require(ok, name);
        }
        Require(words.size() <= WordsPerMotor, name);
        words.resize(WordsPerMotor);
        return words;
    }

    QByteArray Eeprom(const char* name)
    {
        if (!IsSet(name)) {
            return FactoryEeprom(Text("part"), Text("serial"));
        }
        QFile file(Text(name));
        const bool open = file.open(QIODevice::ReadOnly);
        const QByteArray bytes = open ? file.read(EepromSize + 1) : QByteArray();
        Require(bytes.size() == EepromSize, name);
        return bytes;
    }

    QVector<Fault> AllFaults(const char* name)
    {
        QVector<Fault> faults;
        const QStringList texts = parser.values(QString::fromLatin1(name));
        for (const QString& text : texts) {
            Fault fault;
            QString reason;
            Require(ParseFault(text, fault, reason), name, reason);
            faults.append(fault);
        }
        return faults;
    }

    QString Error() const { return error; }

private:
    void Require(bool condition, const char* name, const QString& reason)
    {
        if (!condition && error.isEmpty()) {
            error = QStringLiteral("bad value of --%1: %2").arg(QString::fromLatin1(name), reason);
        }
    }

    void Require(bool condition, const char* name) { Require(condition, name, Text(name)); }

    const QCommandLineParser& parser;
    QString error;
};

UnitSettings ReadUnit(Reader& reader)
{
    UnitSettings unit;
    unit.firmware = reader.Text("firmware");
    unit.newFirmware = reader.Text("new-firmware");
    unit.part = reader.Text("part");
    unit.serial = reader.Text("serial");
    unit.mac = reader.Mac("mac");
    unit.address = reader.Address("address");
    unit.mask = reader.Address("mask");
    unit.azimuth = reader.Words("azimuth");
    unit.polar = reader.Words("polar");
    unit.options = reader.Text("options").toLatin1();
    unit.optionDescriptions = reader.Text("option-descriptions").toLatin1();
    unit.eeprom = reader.Eeprom("eeprom");
    return unit;
}

ServerSettings ReadServer(Reader& reader)
{
    ServerSettings server;
    server.port = static_cast<quint16>(reader.Number("port", 65535));
    server.interfaceName = reader.Text("interface");
    server.saveEeprom = reader.Text("save-eeprom");
    server.saveFirmware = reader.Text("save-firmware");
    server.awayMs = reader.Number("away-ms", OneDayMs);
    server.slowMs = reader.Number("slow-ms", OneDayMs);
    server.trace = reader.IsSet("trace");
    return server;
}

} // namespace

bool ReadCommandLine(const QCoreApplication& application, CommandLine& commandLine, QString& error)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(Description());
    parser.addHelpOption();
    parser.addVersionOption();
    AddOptions(parser);
    parser.process(application);

    Reader reader(parser);
    commandLine.unit = ReadUnit(reader);
    commandLine.server = ReadServer(reader);
    commandLine.faults = reader.AllFaults("fault");
    commandLine.listFaults = reader.IsSet("list-faults");
    commandLine.endWithInput = reader.IsSet("end-with-input");
    error = reader.Error();
    if (error.isEmpty() && !parser.positionalArguments().isEmpty()) {
        error = QStringLiteral("unknown argument: %1").arg(parser.positionalArguments().first());
    }
    return error.isEmpty();
}

} // namespace simulator
