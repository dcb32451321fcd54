// SPDX-License-Identifier: MIT

#pragma once

#include <QVector>

/// The first 8 of the 44 bytes at the beginning of each region of the unit's EEPROM, and the reader
/// of its numbers. Every reader takes its bytes off the front of the caller's vector. Numbers are
/// little-endian.
class CZKEepromBlockHeader
{
public:
    CZKEepromBlockHeader() = default;
    CZKEepromBlockHeader(const CZKEepromBlockHeader&) = default;
    CZKEepromBlockHeader& operator=(const CZKEepromBlockHeader&) = default;
    virtual ~CZKEepromBlockHeader();

    /// The vector must hold at least as many bytes: 1, 2 or 4.
    static quint8 ConsumeByte(QVector<uchar>& bytes);
    static quint16 ConsumeWord(QVector<uchar>& bytes);
    static quint32 ConsumeDword(QVector<uchar>& bytes);

    /// False, with nothing taken, when there are fewer than 8 bytes.
    bool ParseHeader(QVector<uchar>& bytes);

    /// 1 for the mandatory block, the only kind whose body has a known form. 2 to 6 for the other
    /// kinds that units hold. 0 for anything else.
    int GetBlockKind() const;

    quint16 BlockType = 0;
    // Nothing is known of these.
    quint16 HeaderWord1 = 0;
    quint16 HeaderWord2 = 0;
    quint16 HeaderWord3 = 0;
};
