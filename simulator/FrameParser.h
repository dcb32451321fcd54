// SPDX-License-Identifier: MIT

#pragma once

#include "simulator/Command.h"

namespace simulator {

/// Cuts the byte stream of one connection into frames. It does not matter in what portions the
/// bytes come. The parser has no clock: its owner says when the input has been quiet, which ends a
/// payload whose length the wire does not tell. It holds some kilobytes at most.
class FrameParser
{
public:
    explicit FrameParser(Generation generation);

    /// The frames that these bytes complete, in order.
    QVector<Frame> Take(const QByteArray& bytes);

    /// The input is quiet, or has ended. This completes a payload that ends by quiet. The beginning
    /// of any other frame stays as it is.
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
