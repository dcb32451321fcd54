// SPDX-License-Identifier: MIT

#include "simulator/Unit.h"

#include "simulator/EepromImage.h"

#include <QCryptographicHash>
#include <QRegularExpression>
#include <QStringList>
#include <QtEndian>

#include <utility>

namespace simulator {

namespace {

const QByteArray& Done()
{
    static const QByteArray acknowledgement("1\r");
    return acknowledgement;
}

const QByteArray& Refused()
{
    static const QByteArray acknowledgement("0\r");
    return acknowledgement;
}

const QByteArray& Acknowledgement(bool done)
{
    return done ? Done() : Refused();
}

// The long CF2.
constexpr int AzimuthOffset = 0;
constexpr int PolarOffset = 20;
constexpr int MacOffset = 40;
constexpr int AddressOffset = 46;
constexpr int IdentityOffset = 67;

constexpr int MacSize = 6;
constexpr int AddressAndMaskSize = 8;
constexpr int UninterpretedSize = 13; // at the end of what CF0 answers
constexpr int EepromOffsetSize = 2;
constexpr int LargestEepromWrite = 1200;
constexpr int RegionSize = EepromSize / 2;
constexpr char Erased = '\xff';

int WordCount(Generation generation)
{
    return generation == Generation::Below3 ? 10 : WordsPerMotor;
}

quint16 WordAt(const QByteArray& bytes, int offset)
{
    return qFromBigEndian<quint16>(bytes.constData() + offset);
}

QHostAddress AddressAt(const QByteArray& bytes, int offset)
{
    return QHostAddress(qFromBigEndian<quint32>(bytes.constData() + offset));
}

void AppendWords(QByteArray& bytes, const QVector<quint16>& words, int count)
{
    for (const quint16 word : words.mid(0, count)) {
        bytes.append(static_cast<char>(word >> 8)).append(static_cast<char>(word & 0xff));
    }
}

void AppendAddress(QByteArray& bytes, const QHostAddress& address)
{
    const quint32 stored = qToBigEndian(address.toIPv4Address());
    bytes.append(reinterpret_cast<const char*>(&stored), sizeof(stored));
}

// Sets as many words as the bytes hold. The others stay.
void SetWords(QVector<quint16>& words, const QByteArray& bytes)
{
    const int count = qMin(words.size(), bytes.size() / 2);
    for (int word = 0; word < count; ++word) {
        words[word] = WordAt(bytes, 2 * word);
    }
}

QByteArray WithoutLastField(const QByteArray& text, char separator)
{
    return text.left(qMax(0, text.lastIndexOf(separator))) + '\r';
}

QString NextMinorVersion(const QString& version)
{
    static const QRegularExpression form(QStringLiteral("^(.*\\.)([0-9]{1,9})$"));
    const QRegularExpressionMatch match = form.match(version);
    if (!match.hasMatch()) {
        return version;
    }
    const QString minor = match.captured(2);
    return match.captured(1) +
           QString::number(minor.toUInt() + 1).rightJustified(minor.size(), QLatin1Char('0'));
}

QString WordsText(const QVector<quint16>& words)
{
    QStringList texts;
    for (const quint16 word : words) {
        texts.append(QString::number(word));
    }
    return texts.join(QLatin1Char(','));
}

QString Sha256(const QByteArray& bytes)
{
    const QByteArray hash = QCryptographicHash::hash(bytes, QCryptographicHash::Sha256);
    return QString::fromLatin1(hash.toHex());
}

QString YesOrNo(bool yes)
{
    return yes ? QStringLiteral("yes") : QStringLiteral("no");
}

} // namespace

Unit::Unit(const UnitSettings& settings)
    : state(settings)
{
}

Outcome Unit::CarryOut(const Frame& frame)
{
    switch (frame.command) {
    case Command::Unknown:
        return {};
    case Command::ReadIdentity:
        return {Identity(), {}};
    case Command::ReadConfiguration:
        return {ConfigurationBlock(CurrentGeneration()), {}};
    case Command::SetAddress:
        return SetAddress(frame.payload);
    case Command::Configure:
        return CurrentGeneration() == Generation::Below3 ? SetConfiguration(frame.payload)
                                                         : SetMac(frame.payload);
    case Command::FirmwareBlock:
        return {Acknowledgement(transfer.TakeBlock(frame.payload)), {}};
    case Command::FirmwareChecksum:
        return TakeChecksum(frame.payload);
    case Command::StartUpdate:
        return {QByteArray(), Effect::Restarting};
    case Command::WriteEeprom:
        return WriteEeprom(frame.payload);
    case Command::ReadEeprom:
        return {EepromBytes(frame.payload), {}};
    case Command::ValidateUpdate:
        return {Acknowledgement(updateValid), {}};
    case Command::SetOptions:
        state.options = frame.payload;
        return {Done(), {}};
    case Command::SetOptionDescriptions:
        state.optionDescriptions = frame.payload;
        return {Done(), {}};
    case Command::SetAzimuth:
        SetWords(state.azimuth, frame.payload);
        return {};
    case Command::SetPolar:
        SetWords(state.polar, frame.payload);
        return {};
    case Command::ReadOptions:
        return {state.options + '\r', {}};
    case Command::ReadOptionDescriptions:
        return {state.optionDescriptions + '\r', {}};
    }
    return {};
}

Outcome Unit::Refuse(const Frame& frame)
{
    const CommandRule* rule = FindCommand(frame.command);
    if (rule != nullptr && rule->answer == AnswerKind::Data) {
        return CarryOut(frame);
    }
    if (rule != nullptr && rule->answer == AnswerKind::Acknowledgement) {
        return {Refused(), {}};
    }
    return {};
}

QByteArray Unit::WrongAnswer(const Frame& frame) const
{
    switch (frame.command) {
    case Command::ReadIdentity:
        return WithoutLastField(Identity(), ',');
    case Command::ReadOptions:
        return WithoutLastField(state.options, ',');
    case Command::ReadOptionDescriptions:
        return WithoutLastField(state.optionDescriptions, ';');
    case Command::ReadConfiguration:
        return ConfigurationBlock(
            CurrentGeneration() == Generation::Below3 ? Generation::From3 : Generation::Below3);
    case Command::ReadEeprom: {
        QByteArray request = frame.payload;
        const int offset = (WordAt(request, 2) + RegionSize) % EepromSize;
        request[2] = static_cast<char>(offset >> 8);
        request[3] = static_cast<char>(offset & 0xff);
        return EepromBytes(request);
    }
    default: {
        const CommandRule* rule = FindCommand(frame.command);
        const bool acknowledged = rule != nullptr && rule->answer == AnswerKind::Acknowledgement;
        return acknowledged ? QByteArrayLiteral("2\r") : QByteArray();
    }
    }
}

void Unit::KeepAddress(const QHostAddress& address, const QHostAddress& mask)
{
    state.address = address;
    state.mask = mask;
}

void Unit::FinishUpdate()
{
    updateValid = transfer.IsWhole();
    if (updateValid) {
        state.firmware =
            state.newFirmware.isEmpty() ? NextMinorVersion(state.firmware) : state.newFirmware;
    }
    transfer.Spend();
}

QVector<QPair<QString, QString>> Unit::Report() const
{
    const int wordCount = WordCount(CurrentGeneration());
    const QByteArray image = transfer.Image();
    return {
        {QStringLiteral("firmware"), state.firmware},
        {QStringLiteral("part"), state.part},
        {QStringLiteral("serial"), state.serial},
        {QStringLiteral("mac"), QString::fromLatin1(state.mac.toHex(':').toUpper())},
        {QStringLiteral("address"), state.address.toString()},
        {QStringLiteral("mask"), state.mask.toString()},
        {QStringLiteral("azimuth"), WordsText(state.azimuth.mid(0, wordCount))},
        {QStringLiteral("polar"), WordsText(state.polar.mid(0, wordCount))},
        {QStringLiteral("options"), QString::fromLatin1(state.options)},
        {QStringLiteral("option-descriptions"), QString::fromLatin1(state.optionDescriptions)},
        {QStringLiteral("eeprom-sha256"), Sha256(state.eeprom)},
        {QStringLiteral("image-bytes"), QString::number(image.size())},
        {QStringLiteral("image-sha256"), Sha256(image)},
        {QStringLiteral("image-whole"), YesOrNo(transfer.IsWhole())},
        {QStringLiteral("update-valid"), YesOrNo(updateValid)},
    };
}

QByteArray Unit::Identity() const
{
    const QString identity = QStringLiteral("ZELMA&KOVINTH,VX440,%1/%2,%3\r");
    return identity.arg(state.part, state.serial, state.firmware).toLatin1();
}

QByteArray Unit::ConfigurationBlock(Generation generation) const
{
    QByteArray block;
    AppendWords(block, state.azimuth, WordCount(generation));
    AppendWords(block, state.polar, WordCount(generation));
    block.append(state.mac);
    AppendAddress(block, state.address);
    AppendAddress(block, state.mask);
    block.append(UninterpretedSize, '\0');
    return block;
}

QByteArray Unit::EepromBytes(const QByteArray& request) const
{
    const int length = WordAt(request, 0);
    const int offset = WordAt(request, 2);
    return state.eeprom.mid(offset, length).leftJustified(length, Erased);
}

Outcome Unit::SetAddress(const QByteArray& addressAndMask)
{
    const QHostAddress address = AddressAt(addressAndMask, 0);
    const QHostAddress mask = AddressAt(addressAndMask, 4);
    const bool same = address == state.address && mask == state.mask;
    if (same || address == QHostAddress(QHostAddress::AnyIPv4)) {
        return {};
    }
    state.address = address;
    state.mask = mask;
    return {QByteArray(), Effect::AddressChanged};
}

Outcome Unit::SetMac(const QByteArray& mac)
{
    if (mac == state.mac) {
        return {};
    }
    state.mac = mac;
    return {QByteArray(), Effect::MacChanged};
}

Outcome Unit::SetConfiguration(const QByteArray& block)
{
    SetWords(state.azimuth, block.mid(AzimuthOffset, PolarOffset - AzimuthOffset));
    SetWords(state.polar, block.mid(PolarOffset, MacOffset - PolarOffset));
    SetIdentity(block.mid(IdentityOffset));
    const Effects effects = SetMac(block.mid(MacOffset, MacSize)).effects |
                            SetAddress(block.mid(AddressOffset, AddressAndMaskSize)).effects;
    return {QByteArray(), effects};
}

void Unit::SetIdentity(const QByteArray& identity)
{
    const QString text = QString::fromLatin1(identity.left(identity.indexOf('\r')));
    const QStringList partAndSerial = text.section(QLatin1Char(','), 2, 2).split(QLatin1Char('/'));
    if (partAndSerial.size() == 2) {
        state.part = partAndSerial.first();
        state.serial = partAndSerial.last();
    }
}

Outcome Unit::WriteEeprom(const QByteArray& offsetAndData)
{
    if (offsetAndData.size() < EepromOffsetSize) {
        return {Refused(), {}};
    }
    const int offset = WordAt(offsetAndData, 0);
    const QByteArray data = offsetAndData.mid(EepromOffsetSize);
    if (data.size() > LargestEepromWrite || offset + data.size() > EepromSize) {
        return {Refused(), {}};
    }
    state.eeprom.replace(offset, data.size(), data);
    return {Done(), Effect::EepromChanged};
}

Outcome Unit::TakeChecksum(const QByteArray& checksum)
{
    if (!transfer.TakeChecksum(checksum)) {
        return {};
    }
    return {QByteArray(), Effect::ImageComplete};
}

} // namespace simulator
