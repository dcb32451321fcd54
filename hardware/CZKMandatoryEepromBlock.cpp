#include "hardware/CZKMandatoryEepromBlock.h"

namespace {

constexpr int BodySize = 36;
constexpr quint32 LargestShortSerialNumber = 999999;
constexpr int SerialNumberSlash = 6;
constexpr int PartNumberPoint = 4;
constexpr int FirstYear = 1980;
constexpr uchar FirstOtherThanAscii = 128;

// At least that many characters, zeros in front behind the sign.
QString Padded(qint32 number, int width)
{
    return QString::asprintf("%0*i", width, number);
}

QString IndexText(qint16 hundredths)
{
    return Padded(hundredths / 100, 2) + QLatin1Char('.') + Padded(hundredths % 100, 2);
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
    const QString digits = isLong ? Padded(number, 9) : Padded(number, 6) + QStringLiteral("000");
    return QString(digits).insert(SerialNumberSlash, QLatin1Char('/'));
}

QString CZKMandatoryEepromBlock::GetPartNumberText() const
{
    const QString digits = Padded(static_cast<qint32>(PartNumber), 8);
    return QString(digits).insert(PartNumberPoint, QLatin1Char('.')) + QLatin1Char('.') +
           GetVariantText();
}

QString CZKMandatoryEepromBlock::GetVariantText() const
{
    return Padded(Variant, 2);
}

QString CZKMandatoryEepromBlock::GetHwCodeText() const
{
    return Padded(HwCode, 2);
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
    return Padded(year, 4) + QLatin1Char('-') + Padded(month, 2) + QLatin1Char('-') +
           Padded(day, 2);
}
