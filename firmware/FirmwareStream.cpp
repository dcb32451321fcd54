// SPDX-License-Identifier: MIT

#include "firmware/FirmwareStream.h"

#include <QtEndian>

namespace {

// Within the head: 32 bits, big-endian.
constexpr int ImageLengthOffset = 3;

} // namespace

FirmwareStream::FirmwareStream(const QByteArray& image)
    : image(image.constData())
    , size(HeadSize + static_cast<quint32>(image.size()))
{
    qToBigEndian(static_cast<quint32>(image.size()), head.data() + ImageLengthOffset);
}

quint16 FirmwareStream::BlockCount() const
{
    return static_cast<quint16>((size + DataSize - 1) / DataSize);
}

quint16 FirmwareStream::DataLength(quint32 block) const
{
    return static_cast<quint16>(block == size / DataSize ? size % DataSize : DataSize);
}
