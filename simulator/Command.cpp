// SPDX-License-Identifier: MIT

#include "simulator/Command.h"

#include <algorithm>

namespace simulator {

namespace {

// No open frame of the tool is longer than 1206 bytes.
constexpr int LongestOpenPayload = 4096;

constexpr int LongConfiguration = 127;
constexpr int MacAddress = 6;
constexpr int TenWords = 20;
constexpr int TwelveWords = 24;

} // namespace

Generation GenerationOf(const QString& firmwareVersion)
{
    return firmwareVersion.toFloat() < 3.0F ? Generation::Below3 : Generation::From3;
}

int CommandRule::Length(Generation generation) const
{
    return generation == Generation::Below3 ? lengthBelow3 : lengthFrom3;
}

const QVector<CommandRule>& CommandRules()
{
    using End = PayloadEnd;
    using Answer = AnswerKind;
    static const QVector<CommandRule> rules = {
        {Command::ReadIdentity, "*IDN?", End::Length, 0, 0, Answer::Data},
        {Command::ReadConfiguration, "CF0", End::Length, 0, 0, Answer::Data},
        {Command::SetAddress, "CF1", End::Length, 8, 8, Answer::Nothing},
        {Command::Configure, "CF2", End::Length, LongConfiguration, MacAddress, Answer::Nothing},
        {Command::FirmwareBlock, "CF3", End::Length, 1220, 1220, Answer::Acknowledgement},
        {Command::FirmwareChecksum, "CF4", End::Length, 8, 8, Answer::Nothing},
        {Command::StartUpdate, "CF5", End::Length, 255, 255, Answer::Nothing},
        {Command::WriteEeprom, "CF6", End::Quiet, LongestOpenPayload, LongestOpenPayload,
            Answer::Acknowledgement},
        {Command::ReadEeprom, "CF7", End::Length, 4, 4, Answer::Data},
        {Command::ValidateUpdate, "CF8", End::Length, 0, 0, Answer::Acknowledgement},
        {Command::SetOptions, "CF9", End::Quiet, LongestOpenPayload, LongestOpenPayload,
            Answer::Acknowledgement},
        {Command::SetOptionDescriptions, "CF10", End::Quiet, LongestOpenPayload, LongestOpenPayload,
            Answer::Acknowledgement},
        {Command::SetAzimuth, "HCF", End::LengthOrQuiet, TenWords, TwelveWords, Answer::Nothing},
        {Command::SetPolar, "VCF", End::LengthOrQuiet, TenWords, TwelveWords, Answer::Nothing},
        {Command::ReadOptions, "GET:OPTION:INTERNAL?", End::Length, 0, 0, Answer::Data},
        {Command::ReadOptionDescriptions, "GET:OPTION:DESC?", End::Length, 0, 0, Answer::Data},
    };
    return rules;
}

const CommandRule* FindCommand(const QByteArray& mnemonic)
{
    const QVector<CommandRule>& rules = CommandRules();
    const auto found = std::find_if(rules.cbegin(), rules.cend(),
        [&mnemonic](const CommandRule& rule) { return mnemonic == rule.mnemonic; });
    return found == rules.cend() ? nullptr : &*found;
}

const CommandRule* FindCommand(Command command)
{
    const QVector<CommandRule>& rules = CommandRules();
    const auto found = std::find_if(rules.cbegin(), rules.cend(),
        [command](const CommandRule& rule) { return command == rule.command; });
    return found == rules.cend() ? nullptr : &*found;
}

QString HexText(const QByteArray& bytes)
{
    return QString::fromLatin1(bytes.toHex().toUpper());
}

QString FrameText(const Frame& frame)
{
    const CommandRule* rule = FindCommand(frame.command);
    const QString name =
        rule != nullptr ? QString::fromLatin1(rule->mnemonic) : QStringLiteral("unknown");
    return frame.payload.isEmpty() ? name : name + QLatin1Char(' ') + HexText(frame.payload);
}

} // namespace simulator
