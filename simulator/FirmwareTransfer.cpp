// SPDX-License-Identifier: MIT

#include "simulator/FirmwareTransfer.h"

#include <QtEndian>

#include <algorithm>
#include <numeric>

namespace simulator {

namespace {

// A block as it travels.
constexpr int DataLengthOffset = 0;
constexpr int SumOffset = 2;
constexpr int NumberOffset = 4;
constexpr int ReservedOffset = 6;
constexpr int DataOffset = 20;
constexpr int BlockSize = 1220;
constexpr int FullDataLength = BlockSize - DataOffset;

// The head of the stream.
constexpr int HeadLength = 64;
constexpr int ImageLengthOffset = 3;
constexpr int ImageLengthEnd = ImageLengthOffset + 4;

quint16 WordAt(const QByteArray& bytes, int offset)
{
    return qFromBigEndian<quint16>(bytes.constData() + offset);
}

quint32 DwordAt(const QByteArray& bytes, int offset)
{
    return qFromBigEndian<quint32>(bytes.constData() + offset);
}

bool IsZero(const QByteArray& bytes)
{
    return std::all_of(bytes.cbegin(), bytes.cend(), [](char byte) { return byte == 0; });
}

quint16 SumOf(const QByteArray& bytes)
{
    return std::accumulate(bytes.cbegin(), bytes.cend(), quint16{0}, [](quint16 sum, char byte) {
        return static_cast<quint16>(sum + static_cast<uchar>(byte));
    });
}

bool IsWellFormed(const QByteArray& block)
{
    if (block.size() != BlockSize) {
        return false;
    }
    const int length = WordAt(block, DataLengthOffset);
    return length >= 1 && length <= FullDataLength &&
           IsZero(block.mid(ReservedOffset, DataOffset - ReservedOffset)) &&
           IsZero(block.mid(DataOffset + length)) &&
           SumOf(block.mid(DataOffset, length)) == WordAt(block, SumOffset);
}

bool BeginsWithHead(const QByteArray& data)
{
    return data.size() >= HeadLength && IsZero(data.left(ImageLengthOffset)) &&
           IsZero(data.mid(ImageLengthEnd, HeadLength - ImageLengthEnd));
}

} // namespace

bool FirmwareTransfer::TakeBlock(const QByteArray& block)
{
    if (!IsWellFormed(block)) {
        return false;
    }
    const QByteArray data = block.mid(DataOffset, WordAt(block, DataLengthOffset));
    const int number = WordAt(block, NumberOffset);

    const bool isFirst = number == 0;
    if (isFirst ? !BeginsWithHead(data) : !Continues(number)) {
        return false;
    }
    const quint32 namedLength = isFirst ? DwordAt(data, ImageLengthOffset) : imageLength;
    const qint64 before = isFirst ? 0 : stream.size();
    if (before + data.size() > HeadLength + qint64{namedLength}) {
        return false;
    }

    if (isFirst) {
        *this = FirmwareTransfer();
        imageLength = namedLength;
    }
    stream.append(data);
    totalSum += WordAt(block, SumOffset);
    ++blockCount;
    whole = false;
    return true;
}

bool FirmwareTransfer::TakeChecksum(const QByteArray& checksum)
{
    const qint64 size = stream.size();
    whole = blockCount > 0 && size == HeadLength + qint64{imageLength} &&
            DwordAt(checksum, 0) == totalSum && DwordAt(checksum, 4) == size;
    return whole;
}

QByteArray FirmwareTransfer::Image() const
{
    return stream.mid(HeadLength);
}

bool FirmwareTransfer::Continues(int number) const
{
    const bool earlierBlocksFull = stream.size() == blockCount * FullDataLength;
    return number == blockCount && earlierBlocksFull;
}

} // namespace simulator
