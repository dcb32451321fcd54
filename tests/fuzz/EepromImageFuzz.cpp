// SPDX-License-Identifier: MIT

// What the unit's EEPROM may hold: the two parsers of a block one after the other, and the
// component that judges an image and makes a row of texts of it.

#include "hardware/CZKHardwareComponent.h"
#include "tests/fuzz/FuzzTarget.h"

#include <algorithm>

namespace {

constexpr int HeaderSize = 8;
constexpr int BlockSize = 44;
constexpr int MandatoryCode = 2;
constexpr int Columns = 9;

QVector<uchar> Bytes(const uint8_t* data, size_t size)
{
    QVector<uchar> bytes(static_cast<int>(size));
    std::copy_n(data, size, bytes.begin());
    return bytes;
}

void RequireTheTextsOf(const CZKMandatoryEepromBlock& block)
{
    Require(block.GetNameText().size() <= CZKMandatoryEepromBlock::NameLength);
    Require(block.GetSerialNumberText().indexOf('/') == 6);
    Require(block.GetPartNumberText().indexOf('.') == 4);
    Require(block.GetPartNumberText().endsWith(QLatin1Char('.') + block.GetVariantText()));
    Require(block.GetHwCodeText().toInt() == block.HwCode);
    Require(block.GetProductIndexText().count('.') == 1);
    Require(block.GetTestInstructionIndexText().count('.') == 1);
    Require(block.GetProductionDateText().size() == 10);
}

// True when there is a valid block.
bool ParseStepByStep(QVector<uchar> bytes)
{
    const int size = bytes.size();
    CZKEepromBlockHeader header;
    if (!header.ParseHeader(bytes)) {
        Require(size < HeaderSize && bytes.size() == size);
        return false;
    }
    Require(bytes.size() == size - HeaderSize);
    CZKMandatoryEepromBlock block(header);
    const bool whole = block.ParseBody(bytes);
    Require(whole == (size >= BlockSize));
    Require(bytes.size() == size - (whole ? BlockSize : HeaderSize));
    RequireTheTextsOf(block);
    return whole && header.BlockType == MandatoryCode;
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QVector<uchar> image = Bytes(data, size);
    const bool valid = ParseStepByStep(image);

    CZKHardwareComponent component(QString(), "VX440", 3, 0, 64, 0);
    bool ok = !valid;
    Require(component.ParseImage(image, ok) == valid);
    Require(ok == valid);
    QStringList texts;
    component.AppendRowTexts(texts, 0);
    Require(!valid || texts.size() == Columns);
    Require(!valid || !component.ReadImageFileName().contains('/'));
    return 0;
}
