// SPDX-License-Identifier: MIT

#include "link/CDeviceCommunication.h"

#include "link/RavoSocket.h"
#include "platform/Sleep.h"

#include <QHostAddress>
#include <QSharedPointer>
#include <QStringList>
#include <QtEndian>

#include <algorithm>

namespace {

constexpr ushort StreamSocket = 1;
constexpr ushort DevicePort = 50000;

// What connectState holds.
enum ConnectState
{
    Connected,
    Idle = 2,
    AttemptFailed
};

constexpr char CarriageReturn = '\r';
constexpr unsigned ReplyDelayMs = 1000;
constexpr int TextPasses = 2000;
constexpr int AckPolls = 10000;

// What the unit answers. The last one is what the answer buffer holds before that.
const QByteArray DoneAnswer = QByteArrayLiteral("1\r");
const QByteArray RefusedAnswer = QByteArrayLiteral("0\r");
const QByteArray PendingAnswer = QByteArrayLiteral("2\r");

constexpr int FirmwareBlockSize = 1220;
constexpr int FirmwareUpdateFiller = 255;
constexpr int EepromAddressSize = 2;
constexpr int EepromRequestSize = 4;
constexpr int MaxEepromData = 1200;
constexpr int MaxTextFrame = 1199;
constexpr int MacSize = 6;

// The block of the long CF2.
constexpr int ConfigurationBlockSize = 127;
constexpr int MacOffset = 40;
constexpr int IpOffset = 46;
constexpr int MaskOffset = 50;
constexpr int IdentityOffset = 67;
constexpr int ConfigurationParameters = 10;
constexpr int ConfigurationMotorSize = 2 * ConfigurationParameters;

QByteArray Head(const char* mnemonic)
{
    return QByteArray(mnemonic) + CarriageReturn;
}

QByteArray Bytes(const uchar* data, int length)
{
    return QByteArray(reinterpret_cast<const char*>(data), length);
}

// The text's UTF-8 bytes in front of a zero, filled up with zeros to the number of its characters.
QByteArray BytesOfText(const QString& text)
{
    return QByteArray(text.toUtf8().constData()).leftJustified(text.length(), '\0');
}

QByteArray OctetsOfMac(const QString& mac)
{
    QByteArray octets;
    const QStringList parts = mac.split(QLatin1Char(':'));
    for (const QString& part : parts) {
        octets.append(static_cast<char>(part.toUInt(nullptr, 16)));
    }
    return octets;
}

// Writes the bytes into the block at that offset. Drops those that do not fit.
void Overwrite(QByteArray& block, int offset, const QByteArray& bytes)
{
    const int count = std::min(bytes.size(), block.size() - offset);
    block.replace(offset, count, bytes.constData(), count);
}

void PutMotor(QByteArray& block, int motor, const QMap<int, ushort>& parameters)
{
    uchar* const words = reinterpret_cast<uchar*>(block.data()) + motor * ConfigurationMotorSize;
    for (int id = 0; id < ConfigurationParameters; ++id) {
        qToBigEndian<quint16>(parameters.value(id), words + 2 * id);
    }
}

// Zeros for a text that is no address.
QByteArray OctetsOfAddress(const QString& text)
{
    QHostAddress address;
    address.setAddress(text);
    const auto octets = qToBigEndian<quint32>(address.toIPv4Address());
    return QByteArray(reinterpret_cast<const char*>(&octets), sizeof octets);
}

void PutIdentity(QByteArray& block, const QString& identity)
{
    QByteArray characters;
    for (const QChar character : identity) {
        characters.append(character.toLatin1());
    }
    Overwrite(block, IdentityOffset, characters);
}

const QSharedPointer<CDeviceCommunication> theDeviceCommunication(new CDeviceCommunication);

} // namespace

CDeviceCommunication::CDeviceCommunication()
    : brokenStream(platform::InvalidSocket)
    , connectState(Idle)
{
}

CDeviceCommunication::~CDeviceCommunication()
{
    EndAttempt();
    connectState = Idle;
}

bool CDeviceCommunication::StartConnection(QByteArray host)
{
    Disconnect();
    socket.reset(new RavoSocket(StreamSocket));
    connectState = Idle;
    this->host = host;
    setObjectName(QStringLiteral("CommunicationThread"));
    start(QThread::InheritPriority);
    return connected;
}

void CDeviceCommunication::Disconnect()
{
    EndAttempt();
    CloseSocket();
    connected = false;
}

bool CDeviceCommunication::IsConnected() const
{
    return connected;
}

ushort CDeviceCommunication::GetLastResult() const
{
    return lastResult;
}

// The thread must be gone before its socket is: closing does not wake a hanging connect, and the
// system gives the socket's number out again.
void CDeviceCommunication::EndAttempt()
{
    terminate();
    wait();
}

void CDeviceCommunication::CloseSocket()
{
    if (socket) {
        platform::CloseSocket(socket->Handle());
        socket.reset();
    }
}

void CDeviceCommunication::run()
{
    connected = false;
    if (socket->Connect(host.constData(), DevicePort) != 0) {
        connectState = AttemptFailed;
        return;
    }
    connected = true;
    connectState = Connected;
    stream.reset(new RavoSocketStream(socket->Handle()));
    platform::MakeSocketNonBlocking(socket->Handle());
    connected = true;
}

// The stream belongs to the attempt's thread until that has ended. The wait is short: the flag goes
// up a few steps before the end.
RavoSocketStream& CDeviceCommunication::Stream()
{
    if (isRunning()) {
        if (!connected) {
            return brokenStream;
        }
        wait();
    }
    return stream ? *stream : brokenStream;
}

QString CDeviceCommunication::ReadIdentity()
{
    SendFrame(Head("*IDN?"));
    QString text;
    char character = 0;
    for (int pass = 0; pass < TextPasses && character != CarriageReturn; ++pass) {
        Stream().Receive(&character, 1);
        text.append(QLatin1Char(character));
        platform::Sleep(1);
    }
    return text;
}

bool CDeviceCommunication::ReadConfiguration(uchar* buffer, ushort size)
{
    const bool sent = SendFrame(Head("CF0"));
    platform::Sleep(ReplyDelayMs);
    if (!sent) {
        return false;
    }
    QByteArray block(size, '\0');
    if (Stream().Receive(block.data(), size) == -1) {
        return false;
    }
    std::copy(block.cbegin(), block.cend(), buffer);
    return true;
}

bool CDeviceCommunication::SendIpConfiguration(const uchar* addressAndMask)
{
    return SendFrame(Head("CF1") + Bytes(addressAndMask, 8));
}

bool CDeviceCommunication::SendDeviceConfiguration(QString identity, QString mac, QString ip,
    QString mask, QMap<int, ushort> motor0, QMap<int, ushort> motor1)
{
    QByteArray block(ConfigurationBlockSize, '\0');
    PutMotor(block, 0, motor0);
    PutMotor(block, 1, motor1);
    Overwrite(block, MacOffset, OctetsOfMac(mac));
    Overwrite(block, IpOffset, OctetsOfAddress(ip));
    Overwrite(block, MaskOffset, OctetsOfAddress(mask));
    PutIdentity(block, identity);
    return SendFrame(Head("CF2") + block);
}

bool CDeviceCommunication::SendMacAddress(QString mac)
{
    mac = mac.toUpper();
    if (mac.length() <= 9) {
        return false;
    }
    QByteArray octets = OctetsOfMac(mac);
    if (octets.size() != MacSize) {
        octets.fill('\0', MacSize);
    }
    return SendFrame(Head("CF2") + octets);
}

bool CDeviceCommunication::SendFirmwareBlock(const uchar* block)
{
    lastResult = AckRefused;
    return SendAcknowledgedFrame(Head("CF3") + Bytes(block, FirmwareBlockSize));
}

bool CDeviceCommunication::SendFirmwareChecksum(const uchar* sumAndSize)
{
    return SendFrame(Head("CF4") + Bytes(sumAndSize, 8));
}

bool CDeviceCommunication::StartFirmwareUpdate()
{
    return SendFrame(Head("CF5") + QByteArray(FirmwareUpdateFiller, '\0'));
}

bool CDeviceCommunication::WriteEeprom(const uchar* block, ushort length)
{
    if (length > MaxEepromData) {
        return false;
    }
    return SendAcknowledgedFrame(Head("CF6") + Bytes(block, EepromAddressSize + length));
}

bool CDeviceCommunication::ReadEeprom(uchar* request, QVector<uchar>& out)
{
    const bool sent = SendFrame(Head("CF7") + Bytes(request, EepromRequestSize));
    platform::Sleep(ReplyDelayMs);
    if (!sent) {
        return false;
    }
    const quint16 length = qFromBigEndian<quint16>(request);
    qToUnaligned(length, request);
    QByteArray reply(std::max<int>(length, MaxEepromData), '\xFF');
    Stream().Receive(reply.data(), length);
    for (int i = 0; i < length; ++i) {
        out.append(static_cast<uchar>(reply.at(i)));
    }
    return true;
}

bool CDeviceCommunication::ValidateFirmware()
{
    const bool sent = SendFrame(Head("CF8"));
    if (sent) {
        lastResult = WaitForAck(AckPolls);
    }
    return sent;
}

bool CDeviceCommunication::SendOptions(QString text)
{
    return SendTextCommand(QStringLiteral("CF9"), text);
}

bool CDeviceCommunication::SendOptionDescriptions(QString text)
{
    return SendTextCommand(QStringLiteral("CF10"), text);
}

bool CDeviceCommunication::SendMotorConfiguration(int channel, QVector<ushort> values)
{
    if (channel != 0 && channel != 1) {
        return false;
    }
    QByteArray words(2 * values.size(), '\0');
    qToBigEndian<quint16>(values.constData(), values.size(), words.data());
    return SendFrame(Head(channel == 0 ? "HCF" : "VCF") + words);
}

QString CDeviceCommunication::ReadOptions()
{
    return QueryText(QStringLiteral("GET:OPTION:INTERNAL?"));
}

QString CDeviceCommunication::ReadOptionDescriptions()
{
    return QueryText(QStringLiteral("GET:OPTION:DESC?"));
}

bool CDeviceCommunication::SendFrame(const QByteArray& frame)
{
    QByteArray bytes = frame;
    return SendRaw(bytes.data(), static_cast<uint>(bytes.size())) != -1;
}

bool CDeviceCommunication::SendAcknowledgedFrame(const QByteArray& frame)
{
    if (!SendFrame(frame)) {
        return false;
    }
    lastResult = WaitForAck(AckPolls);
    return lastResult == AckDone;
}

bool CDeviceCommunication::SendTextCommand(QString mnemonic, QString text)
{
    const quint16 total = static_cast<quint16>(mnemonic.length() + 1 + text.length());
    if (total > MaxTextFrame) {
        return false;
    }
    const QByteArray frame = BytesOfText(mnemonic) + CarriageReturn + BytesOfText(text);
    return SendAcknowledgedFrame(frame.left(total)); // a text travels in a byte per character
}

// Collects only what came, where ReadIdentity() also fills the gaps. They differ on purpose.
QString CDeviceCommunication::QueryText(QString command)
{
    SendFrame(BytesOfText(command) + CarriageReturn);
    QString text;
    char character{};
    for (int pass = 0; pass < TextPasses && character != CarriageReturn; ++pass) {
        if (Stream().Receive(&character, 1) != -1) {
            text.append(QLatin1Char(character));
        }
        platform::Sleep(1);
    }
    return text;
}

int CDeviceCommunication::SendRaw(char* buffer, uint length)
{
    DrainInput();
    const int result = Stream().Send(buffer, static_cast<int>(length));
    if (result == -1) {
        connected = false;
        emit ConnectionLost();
    }
    return result;
}

void CDeviceCommunication::DrainInput()
{
    uchar scratch{};
    while (Stream().ReceiveWithTimeout(&scratch, 1, RavoSocketStream::PollMs) > 0) {
    }
}

ushort CDeviceCommunication::WaitForAck(int polls)
{
    QByteArray answer = PendingAnswer;
    do {
        Stream().Receive(answer.data(), answer.size());
        platform::Sleep(1);
        --polls;
    } while (answer == PendingAnswer && polls != 0);
    if (answer == DoneAnswer) {
        return AckDone;
    }
    return answer == RefusedAnswer ? AckRefused : AckUnclear;
}

CDeviceCommunication* TheDeviceCommunication()
{
    return theDeviceCommunication.data();
}
