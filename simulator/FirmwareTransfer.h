// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

namespace simulator {

/// A firmware image on its way into the unit. It comes as a stream: a head of 64 bytes, which names
/// the image's length, and the image itself. The stream comes in numbered blocks of up to 1200
/// bytes, and a checksum closes it. A block that does not fit is refused and changes nothing. A
/// good block with number 0 begins anew at any time.
class FirmwareTransfer
{
public:
    /// Takes the 1220 bytes of a block as they travel. False when the unit has to refuse the block:
    /// its length is not 1 to 1200, its sum or its number is wrong, a byte that must be zero is
    /// not, it goes beyond the length that the head names, or it follows a block that was not full.
    bool TakeBlock(const QByteArray& block);

    /// Takes the sum of all block sums and the size of the stream, 32 bits each, big-endian. False
    /// when one of them differs from what came, or the image is not complete.
    bool TakeChecksum(const QByteArray& checksum);

    /// Whether all of the image has come and its checksum was right.
    bool IsWhole() const { return whole; }

    /// The image has been used. It is not whole again before a checksum says so.
    void Spend() { whole = false; }

    /// What has come of the image so far, without the head.
    QByteArray Image() const;

private:
    bool Continues(int number) const;

    QByteArray stream;
    quint32 imageLength = 0;
    quint32 totalSum = 0;
    int blockCount = 0;
    bool whole = false;
};

} // namespace simulator
