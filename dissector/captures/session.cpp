// SPDX-License-Identifier: MIT

#include "firmware/FirmwareStream.h"
#include "link/CDeviceCommunication.h"
#include "model/CDeviceDatabase.h"
#include "platform/Sleep.h"
#include "rotor/CDeviceParameters.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QMap>
#include <QTextStream>
#include <QtEndian>

#include <functional>

namespace {

constexpr unsigned InstallationMs = 30000;
constexpr unsigned MoveMs = 100;
constexpr int ImageSize = 3000;

/// One unit, and what the tool's link does to it.
struct Session
{
    CDeviceCommunication link;
    QByteArray address;
    float firmware = 0;

    bool Connect()
    {
        link.StartConnection(address);
        return link.wait() && link.IsConnected();
    }
};

using Step = std::function<void(Session&)>;

const uchar* Unsigned(const QByteArray& bytes)
{
    return reinterpret_cast<const uchar*>(bytes.constData());
}

void AppendBigEndian(QByteArray& bytes, quint32 number, int size)
{
    for (int i = size - 1; i >= 0; --i) {
        bytes.append(static_cast<char>(number >> (8 * i)));
    }
}

QMap<int, ushort> ById(const QVector<ushort>& words)
{
    QMap<int, ushort> parameters;
    for (int id = 0; id < words.size(); ++id) {
        parameters.insert(id, words.at(id));
    }
    return parameters;
}

QVector<ushort> Azimuth(const Session& session)
{
    const QVector<ushort> words{500, 3, 150, 1, 2, 10, 0, 0, 2000, 20, 50, 1};
    return words.mid(0, session.firmware < 3.0F ? 10 : 12);
}

QVector<ushort> Polar(const Session& session)
{
    const QVector<ushort> words{99, 3, 60, 1, 2, 5, 7, 8, 500, 21, 45, 0};
    return words.mid(0, session.firmware < 3.0F ? 10 : 12);
}

void ReadIdentity(Session& session)
{
    const QString version = session.link.ReadIdentity().section(',', 3).trimmed();
    session.firmware = version.toFloat();
}

// As the two motor tabs do.
void ReadConfiguration(Session& session)
{
    for (int motor = 0; motor < 2; ++motor) {
        QByteArray block(CDeviceParameters(session.firmware).GetDeviceBlockSize(), '\0');
        session.link.ReadConfiguration(
            reinterpret_cast<uchar*>(block.data()), static_cast<ushort>(block.size()));
    }
}

void ReadEeprom(Session& session, quint16 length, quint16 offset)
{
    QByteArray request;
    AppendBigEndian(request, length, 2);
    AppendBigEndian(request, offset, 2);
    QVector<uchar> out;
    session.link.ReadEeprom(reinterpret_cast<uchar*>(request.data()), out);
}

void WriteEeprom(Session& session)
{
    session.link.WriteEeprom(Unsigned(QByteArray::fromHex("04B002000000000000000000000"
                                                          "04E61BC000207690015CD5B07695C"
                                                          "00006400") +
                                      QByteArray("VX440").leftJustified(14, '\0')),
        44);
}

QByteArray Image()
{
    QByteArray image;
    for (int i = 0; i < ImageSize; ++i) {
        image.append("0123456789ABCDEF"[(i * 7) % 16]);
    }
    return image;
}

// Stops at the first block that is not acknowledged.
void SendFirmware(Session& session)
{
    const QByteArray image = Image();
    const FirmwareStream stream(image);
    quint32 sums = 0;
    for (quint16 index = 0; index < stream.BlockCount(); ++index) {
        QByteArray data;
        quint32 sum = 0;
        for (quint32 i = 0; i < FirmwareStream::DataSize; ++i) {
            const uchar byte = stream.At(index * FirmwareStream::DataSize + i);
            data.append(static_cast<char>(byte));
            sum += byte;
        }
        QByteArray block;
        AppendBigEndian(block, stream.DataLength(index), 2);
        AppendBigEndian(block, sum, 2);
        AppendBigEndian(block, index, 2);
        if (!session.link.SendFirmwareBlock(Unsigned(block + QByteArray(14, '\0') + data))) {
            return;
        }
        sums += sum & 0xFFFF;
    }
    QByteArray end;
    AppendBigEndian(end, sums, 4);
    AppendBigEndian(end, stream.Size(), 4);
    session.link.SendFirmwareChecksum(Unsigned(end));
}

void Install(Session& session)
{
    session.link.StartFirmwareUpdate();
    platform::Sleep(InstallationMs);
    session.link.Disconnect();
    session.Connect();
    ReadIdentity(session);
    session.link.ValidateFirmware();
}

void MoveTo(Session& session, const QByteArray& address)
{
    QByteArray addressAndMask;
    for (const QByteArray& octet : (address + ".255.255.255.0").split('.')) {
        addressAndMask.append(static_cast<char>(octet.toInt()));
    }
    session.link.SendIpConfiguration(Unsigned(addressAndMask));
    platform::Sleep(MoveMs);
    session.link.Disconnect();
    session.address = address;
    session.Connect();
}

void ChangeMac(Session& session)
{
    const QString mac = "02:4C:7E:00:01:2A";
    if (session.firmware < 3.0F) {
        session.link.SendDeviceConfiguration("ZELMA&KOVINTH,VX440,4400.1290.02/000129\r", mac,
            QString::fromLatin1(session.address), "255.255.255.0", ById(Azimuth(session)),
            ById(Polar(session)));
    } else {
        session.link.SendMacAddress(mac);
        platform::Sleep(MoveMs);
    }
    session.Connect();
}

void ReadOptions(Session& session)
{
    session.link.ReadOptions();
    session.link.ReadOptionDescriptions();
}

void WriteOptions(Session& session)
{
    session.link.SendOptions("VX440-DCF,0,0,0,0,VX440-A1,0,0,0,0,0,0,0,0,0,0,0,0,0");
    session.link.SendOptionDescriptions(
        "Feed 13.8 V;0;0;0;0;Mast preamplifier;0;0;0;0;0;0;0;0;0;0;0;0;0");
}

const QMap<QString, Step>& Steps()
{
    static const QMap<QString, Step> steps{
        {"identity", ReadIdentity},
        {"configuration", ReadConfiguration},
        {"options", ReadOptions},
        {"eeprom",
            [](Session& session) {
                ReadEeprom(session, 64, 0);
                ReadEeprom(session, 64, 1200);
            }},
        {"motors",
            [](Session& session) {
                session.link.SendMotorConfiguration(0, Azimuth(session));
                session.link.SendMotorConfiguration(1, Polar(session));
            }},
        {"write-options", WriteOptions},
        {"write-eeprom", WriteEeprom},
        {"mac", ChangeMac},
        {"move", [](Session& session) { MoveTo(session, "192.168.0.131"); }},
        {"firmware", SendFirmware},
        {"install", Install},
        {"validate", [](Session& session) { session.link.ValidateFirmware(); }},
    };
    return steps;
}

} // namespace

/// Lets the tool's link take some steps with a unit, for a capture of what travels.
int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    QTextStream complaints(stderr);
    const QStringList words = QCoreApplication::arguments();
    if (words.size() < 3) {
        complaints << "usage: vx440-session UNIT STEP...\nSteps: " << Steps().keys().join(' ')
                   << '\n';
        return 2;
    }
    Session session;
    session.address = words.at(1).toLatin1();
    if (!session.Connect()) {
        complaints << "no connection to " << words.at(1) << '\n';
        return 1;
    }
    for (const QString& word : words.mid(2)) {
        const Step step = Steps().value(word);
        if (!step) {
            complaints << "no such step: " << word << '\n';
            return 2;
        }
        step(session);
    }
    return 0;
}
