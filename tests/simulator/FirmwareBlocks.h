// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QVector>
#include <QtEndian>

/// A firmware image as it is sent, for tests that send one.
namespace firmwarestream {

template<typename Number>
QByteArray BigEndian(Number number)
{
    const Number stored = qToBigEndian(number);
    return QByteArray(reinterpret_cast<const char*>(&stored), sizeof(stored));
}

inline quint32 Sum(const QByteArray& bytes)
{
    quint32 sum = 0;
    for (const char byte : bytes) {
        sum += quint8(byte);
    }
    return sum;
}

/// The head of 64 bytes and the image.
inline QByteArray Stream(const QByteArray& image)
{
    return QByteArray(3, '\0') + BigEndian(quint32(image.size())) + QByteArray(57, '\0') + image;
}

/// The 1220 bytes behind "CF3\r".
inline QByteArray Block(const QByteArray& data, int number)
{
    return BigEndian(quint16(data.size())) + BigEndian(quint16(Sum(data))) +
           BigEndian(quint16(number)) + QByteArray(14, '\0') + data +
           QByteArray(1200 - data.size(), '\0');
}

inline QVector<QByteArray> Blocks(const QByteArray& image)
{
    const QByteArray stream = Stream(image);
    QVector<QByteArray> blocks;
    for (int begin = 0; begin < stream.size(); begin += 1200) {
        blocks.append(Block(stream.mid(begin, 1200), blocks.size()));
    }
    return blocks;
}

/// The 8 bytes behind "CF4\r".
inline QByteArray Checksum(const QByteArray& image)
{
    quint32 sum = 0;
    for (const QByteArray& block : Blocks(image)) {
        sum += qFromBigEndian<quint16>(block.constData() + 2);
    }
    return BigEndian(sum) + BigEndian(quint32(image.size() + 64));
}

/// Bytes of a pattern that does not repeat within a block, high values among them.
inline QByteArray Image(int size)
{
    QByteArray image;
    while (image.size() < size) {
        image.append(char(image.size() * 7 + image.size() / 256 + 200));
    }
    return image;
}

} // namespace firmwarestream
