#pragma once

#include <QByteArray>

#include <array>

/// What travels in the blocks of a firmware transfer: a head of 64 bytes, which is zero but for the
/// image's length, and the image as it stands.
class FirmwareStream
{
public:
    /// Of the stream, in each block but the last.
    static constexpr quint32 DataSize = 1200;

    /// The image is looked at, not copied: it has to outlive the stream.
    explicit FirmwareStream(const QByteArray& image);

    /// In bytes, the head among them.
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
