// SPDX-License-Identifier: MIT

#include "simulator/FrameParser.h"

#include <utility>

namespace simulator {

namespace {

constexpr char CarriageReturn = '\r';

// Bytes without a carriage return are reported as unknown in pieces of this length.
constexpr int LongestMnemonic = 256;

} // namespace

FrameParser::FrameParser(Generation generation)
    : generation(generation)
{
}

QVector<Frame> FrameParser::Take(const QByteArray& bytes)
{
    QVector<Frame> frames;
    for (const char byte : bytes) {
        if (rule != nullptr) {
            TakePayloadByte(byte, frames);
        } else {
            TakeMnemonicByte(byte, frames);
        }
    }
    return frames;
}

QVector<Frame> FrameParser::InputQuiet()
{
    QVector<Frame> frames;
    if (WaitsForQuiet()) {
        FinishFrame(frames);
    }
    return frames;
}

bool FrameParser::WaitsForQuiet() const
{
    return rule != nullptr && rule->end != PayloadEnd::Length;
}

void FrameParser::TakeMnemonicByte(char byte, QVector<Frame>& frames)
{
    if (byte != CarriageReturn) {
        mnemonic.append(byte);
        if (mnemonic.size() == LongestMnemonic) {
            FinishUnknown(frames);
        }
        return;
    }
    rule = FindCommand(mnemonic);
    if (rule == nullptr) {
        FinishUnknown(frames);
    } else if (rule->Length(generation) == 0) {
        FinishFrame(frames);
    }
}

void FrameParser::TakePayloadByte(char byte, QVector<Frame>& frames)
{
    payload.append(byte);
    if (payload.size() == rule->Length(generation)) {
        FinishFrame(frames);
    }
}

void FrameParser::FinishUnknown(QVector<Frame>& frames)
{
    frames.append(Frame{Command::Unknown, std::exchange(mnemonic, QByteArray())});
}

void FrameParser::FinishFrame(QVector<Frame>& frames)
{
    frames.append(Frame{rule->command, std::exchange(payload, QByteArray())});
    mnemonic.clear();
    rule = nullptr;
}

} // namespace simulator
