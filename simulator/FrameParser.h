#pragma once

#include "simulator/Command.h"

namespace simulator {

/// Cuts the byte stream of one connection into frames. It does not matter how the bytes are
/// portioned: one by one they give what they give at once. It has no clock: its owner says when the
/// input has been quiet, which ends the payloads whose length the wire does not tell. It holds some
/// kilobytes at most.
class FrameParser
{
public:
    explicit FrameParser(Generation generation);

    /// The frames that these bytes complete, in order.
    QVector<Frame> Take(const QByteArray& bytes);

    /// The input is quiet, or has ended. Completes a payload that quiet completes, and leaves any
    /// other beginning of a frame as it is.
    QVector<Frame> InputQuiet();

    /// Whether InputQuiet() would complete a frame now.
    bool WaitsForQuiet() const;

private:
    void TakeMnemonicByte(char byte, QVector<Frame>& frames);
    void TakePayloadByte(char byte, QVector<Frame>& frames);
    void FinishUnknown(QVector<Frame>& frames);
    void FinishFrame(QVector<Frame>& frames);

    Generation generation;
    /// Null while the mnemonic is read.
    const CommandRule* rule = nullptr;
    QByteArray mnemonic;
    QByteArray payload;
};

} // namespace simulator
