// SPDX-License-Identifier: MIT

#include "simulator/EepromImage.h"

#include <QtEndian>

namespace simulator {

namespace {

constexpr int BoardRegion = 1200;
constexpr quint16 MandatoryBlockType = 2;
constexpr int NameLength = 14;
constexpr char Erased = '\xff';

// What a hardware block tells. All numbers are little-endian in the memory.
struct HardwareData
{
    quint32 partNumber;
    quint8 variant;
    quint8 hardwareCode;
    qint16 productIndex;
    quint32 serialNumber;
    quint16 productionDate;
    qint16 testInstructionIndex;
    const char* name;
};

constexpr quint16 Date(int year, int month, int day)
{
    return static_cast<quint16>((year - 1980) << 9 | month << 5 | day);
}

template<typename Number>
void Append(QByteArray& bytes, Number number)
{
    const Number stored = qToLittleEndian(number);
    bytes.append(reinterpret_cast<const char*>(&stored), sizeof(stored));
}

QByteArray HardwareBlock(const HardwareData& data)
{
    QByteArray block;
    Append(block, MandatoryBlockType);
    block.append(6, '\0');
    Append(block, quint32{0});
    Append(block, data.partNumber);
    Append(block, data.variant);
    Append(block, data.hardwareCode);
    Append(block, data.productIndex);
    Append(block, data.serialNumber);
    Append(block, data.productionDate);
    Append(block, quint16{0});
    Append(block, data.testInstructionIndex);
    block.append(QByteArray(data.name).leftJustified(NameLength, '\0', true));
    return block;
}

QString DigitsOf(const QString& text)
{
    QString digits;
    for (const QChar character : text) {
        if (character.isDigit()) {
            digits.append(character);
        }
    }
    return digits;
}

} // namespace

QByteArray FactoryEeprom(const QString& part, const QString& serial)
{
    const QString partDigits = DigitsOf(part);
    const HardwareData device = {partDigits.left(8).toUInt(),
        static_cast<quint8>(partDigits.mid(8, 2).toUInt()), 1, 100, DigitsOf(serial).toUInt(),
        Date(2024, 3, 9), 105, "VX440"};
    const HardwareData board = {44010450, 2, 3, 210, 700129, Date(2024, 2, 26), 101, "VX440-CTRL"};

    QByteArray eeprom(EepromSize, Erased);
    const QByteArray deviceBlock = HardwareBlock(device);
    const QByteArray boardBlock = HardwareBlock(board);
    eeprom.replace(0, deviceBlock.size(), deviceBlock);
    eeprom.replace(BoardRegion, boardBlock.size(), boardBlock);
    return eeprom;
}

} // namespace simulator
