// SPDX-License-Identifier: MIT

#include "hardware/CZKMandatoryEepromBlock.h"

namespace {

constexpr int BodySize = 36;
constexpr quint32 LargestShortSerialNumber = 999999;
constexpr int SerialNumberSlash = 6;
constexpr int PartNumberPoint = 4;
constexpr int FirstYear = 1980;
constexpr uchar FirstOtherThanAscii = 128;

QString TwoDigits(int number)
{
    return QString::asprintf("%02i", number);
}

QString IndexText(qint16 hundredths)
{
    return QString::asprintf("%02i.%02i", hundredths / 100, hundredths % 100);
}

} // namespace

CZKMandatoryEepromBlock::CZKMandatoryEepromBlock(const CZKEepromBlockHeader& header)
    : CZKEepromBlockHeader(header)
{
}

CZKMandatoryEepromBlock::~CZKMandatoryEepromBlock() = default;

bool CZKMandatoryEepromBlock::ParseBody(QVector<uchar>& bytes)
{
    if (bytes.size() < BodySize) {
        return false;
    }
    BodyWord0 = ConsumeDword(bytes);
    PartNumber = ConsumeDword(bytes);
    Variant = ConsumeByte(bytes);
    HwCode = ConsumeByte(bytes);
    ProductIndex = static_cast<qint16>(ConsumeWord(bytes));
    SerialNumber = ConsumeDword(bytes);
    ProductionDate = ConsumeWord(bytes);
    BodyWord1 = ConsumeWord(bytes);
    TestInstructionIndex = static_cast<qint16>(ConsumeWord(bytes));
    for (uchar& character : Name) {
        character = ConsumeByte(bytes);
    }
    return true;
}

QString CZKMandatoryEepromBlock::GetNameText() const
{
    QString text;
    for (const uchar character : Name) {
        if (character != 0 && character < FirstOtherThanAscii) {
            text.append(QLatin1Char(static_cast<char>(character)));
        }
    }
    return text;
}

QString CZKMandatoryEepromBlock::GetSerialNumberText() const
{
    const auto number = static_cast<qint32>(SerialNumber);
    const bool isLong = SerialNumber > LargestShortSerialNumber;
    QString text =
        isLong ? QString::asprintf("%09i", number) : QString::asprintf("%06i000", number);
    return text.insert(SerialNumberSlash, QLatin1Char('/'));
}

QString CZKMandatoryEepromBlock::GetPartNumberText() const
{
    QString text = QString::asprintf("%08i.%02i", static_cast<qint32>(PartNumber), Variant);
    return text.insert(PartNumberPoint, QLatin1Char('.'));
}

QString CZKMandatoryEepromBlock::GetVariantText() const
{
    return TwoDigits(Variant);
}

QString CZKMandatoryEepromBlock::GetHwCodeText() const
{
    return TwoDigits(HwCode);
}

QString CZKMandatoryEepromBlock::GetProductIndexText() const
{
    return IndexText(ProductIndex);
}

QString CZKMandatoryEepromBlock::GetTestInstructionIndexText() const
{
    return IndexText(TestInstructionIndex);
}

QString CZKMandatoryEepromBlock::GetProductionDateText() const
{
    const int year = FirstYear + (ProductionDate >> 9);
    const int month = (ProductionDate >> 5) & 0xF;
    const int day = ProductionDate & 0x1F;
    return QString::asprintf("%04i-%02i-%02i", year, month, day);
}
