// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

#include <array>

/// The bytes that a firmware transfer sends in its blocks: a head of 64 bytes, then the image as it
/// is. The head holds the image's length, and zeros.
class FirmwareStream
{
public:
    /// Bytes of the stream in each block but the last.
    static constexpr quint32 DataSize = 1200;

    /// The image is not copied: it has to outlive the stream.
    explicit FirmwareStream(const QByteArray& image);

    /// In bytes, with the head.
    quint32 Size() const { return size; }
    /// As the unit counts them, in 16 bits.
    quint16 BlockCount() const;
    /// The bytes of the stream that the block with this index holds.
    quint16 DataLength(quint32 block) const;
    /// Zero behind the end.
    uchar At(quint32 position) const
    {
        if (position < HeadSize) {
            return head[position];
        }
        return position < size ? static_cast<uchar>(image[position - HeadSize]) : 0;
    }

private:
    static constexpr quint32 HeadSize = 64;

    const char* image;
    quint32 size;
    std::array<uchar, HeadSize> head{};
};
