// SPDX-License-Identifier: MIT

#include "hardware/CZKEepromBlockHeader.h"

#include <QMap>
#include <QtEndian>

namespace {

constexpr int HeaderSize = 8;

// By the stored code.
const QMap<quint16, int>& BlockKinds()
{
    static const QMap<quint16, int> kinds{{2, 1}, {100, 2}, {110, 3}, {120, 4}, {200, 5}, {300, 6}};
    return kinds;
}

template<class Number>
Number Consume(QVector<uchar>& bytes)
{
    const auto number = qFromLittleEndian<Number>(bytes.constData());
    bytes.remove(0, sizeof(Number));
    return number;
}

} // namespace

CZKEepromBlockHeader::~CZKEepromBlockHeader() = default;

quint8 CZKEepromBlockHeader::ConsumeByte(QVector<uchar>& bytes)
{
    return Consume<quint8>(bytes);
}

quint16 CZKEepromBlockHeader::ConsumeWord(QVector<uchar>& bytes)
{
    return Consume<quint16>(bytes);
}

quint32 CZKEepromBlockHeader::ConsumeDword(QVector<uchar>& bytes)
{
    return Consume<quint32>(bytes);
}

bool CZKEepromBlockHeader::ParseHeader(QVector<uchar>& bytes)
{
    if (bytes.size() < HeaderSize) {
        return false;
    }
    BlockType = ConsumeWord(bytes);
    HeaderWord1 = ConsumeWord(bytes);
    HeaderWord2 = ConsumeWord(bytes);
    HeaderWord3 = ConsumeWord(bytes);
    return true;
}

int CZKEepromBlockHeader::GetBlockKind() const
{
    return BlockKinds().value(BlockType, 0);
}
