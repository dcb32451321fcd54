// SPDX-License-Identifier: MIT

#pragma once

#include <QFile>
#include <QStringList>
#include <QVector>

#include <algorithm>

// What the tests put into a unit's memory, and what they find on the disk.

constexpr int RegionSize = 1200;

/// The texts between the bars.
inline QStringList Texts(const char* texts)
{
    return QString(texts).split('|');
}

inline QString Hex(const QByteArray& bytes)
{
    return bytes.toHex().toUpper();
}

/// A mandatory block: part number 12345678.02, hardware code 3, product index 1.05, 2026-03-09,
/// test instruction index 2.10. The words that nothing reads are not zero.
inline QByteArray Block(const char* serialLittleEndian, const char* name)
{
    return QByteArray::fromHex("0200010002000300040000004E61BC0002036900") +
           QByteArray::fromHex(serialLittleEndian) + QByteArray::fromHex("695C0500D200") +
           QByteArray(name).leftJustified(14, '\0');
}

/// The bytes, and behind them such as tell where they stand.
inline QByteArray Filled(QByteArray bytes, int size, int seed = 1)
{
    while (bytes.size() < size) {
        bytes.append(static_cast<char>((bytes.size() * seed) % 251));
    }
    return bytes;
}

inline QByteArray OfType(QByteArray block, int type)
{
    block[0] = static_cast<char>(type & 0xFF);
    block[1] = static_cast<char>(type >> 8);
    return block;
}

inline QVector<uchar> Image(const QByteArray& bytes)
{
    QVector<uchar> image(bytes.size());
    std::copy(bytes.cbegin(), bytes.cend(), image.begin());
    return image;
}

inline QByteArray Bytes(const QVector<uchar>& image)
{
    return QByteArray(reinterpret_cast<const char*>(image.constData()), image.size());
}

inline QByteArray Content(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}
