// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

namespace simulator {

/// What a unit's firmware understands. Below 3.0 a motor has 10 words, from 3.0 on 12.
enum class Generation
{
    Below3,
    From3
};

/// The generation that a version text names. A text that is no number counts as below 3.0.
Generation GenerationOf(const QString& firmwareVersion);

enum class Command
{
    Unknown,
    ReadIdentity,
    ReadConfiguration,
    SetAddress,
    Configure,
    FirmwareBlock,
    FirmwareChecksum,
    StartUpdate,
    WriteEeprom,
    ReadEeprom,
    ValidateUpdate,
    SetOptions,
    SetOptionDescriptions,
    SetAzimuth,
    SetPolar,
    ReadOptions,
    ReadOptionDescriptions
};

/// How the end of a payload is known.
enum class PayloadEnd
{
    Length,        ///< all of its bytes are there
    LengthOrQuiet, ///< all of its bytes are there, or the input is quiet before that
    Quiet          ///< the input is quiet: the wire gives no length
};

enum class AnswerKind
{
    Nothing,
    Acknowledgement,
    Data
};

/// One command as the wire has it. The lengths are those of the payload, in bytes. For a payload
/// that ends by quiet alone they say how much is collected at most.
struct CommandRule
{
    Command command;
    const char* mnemonic;
    PayloadEnd end;
    int lengthBelow3;
    int lengthFrom3;
    AnswerKind answer;

    int Length(Generation generation) const;
};

/// All commands of the unit, in the order of the catalogue.
const QVector<CommandRule>& CommandRules();

/// Null when no command has this mnemonic.
const CommandRule* FindCommand(const QByteArray& mnemonic);

/// Null for Command::Unknown.
const CommandRule* FindCommand(Command command);

/// One command as it came in. The payload of Command::Unknown is what came in place of a mnemonic.
struct Frame
{
    Command command = Command::Unknown;
    QByteArray payload;
};

/// The frame as a line of the log: its mnemonic, or "unknown". A payload follows behind a blank, in
/// upper-case hexadecimal.
QString FrameText(const Frame& frame);

/// Upper-case hexadecimal without blanks.
QString HexText(const QByteArray& bytes);

} // namespace simulator
