// SPDX-License-Identifier: MIT

#pragma once

#include "hardware/CZKEepromBlockHeader.h"

#include <QString>

/// The block of 44 bytes that names a piece of hardware: the header and a body of 36 bytes. It has
/// no checksum, and its fields are not tested.
class CZKMandatoryEepromBlock : public CZKEepromBlockHeader
{
public:
    static constexpr int NameLength = 14;

    /// With the words of a header that was parsed, and a body of zeros.
    explicit CZKMandatoryEepromBlock(const CZKEepromBlockHeader& header);
    ~CZKMandatoryEepromBlock() override;

    /// The vector must stand behind the header. False, with nothing taken, when there are fewer
    /// than 36 bytes.
    bool ParseBody(QVector<uchar>& bytes);

    /// Bytes of 0 and from 128 on are left out wherever they stand.
    QString GetNameText() const;
    /// "123456/789", and "001234/000" for a number of at most six digits. From 2147483648 on it is
    /// printed as a negative number, with the slash at the same place.
    QString GetSerialNumberText() const;
    /// "1234.5678.02": the number and its variant.
    QString GetPartNumberText() const;
    QString GetVariantText() const;
    QString GetHwCodeText() const;
    /// "01.05"; "-1.-5" for an index below zero.
    QString GetProductIndexText() const;
    QString GetTestInstructionIndexText() const;
    /// "2026-03-09"
    QString GetProductionDateText() const;

    quint32 BodyWord0 = 0; ///< nothing is known of it
    quint32 PartNumber = 0;
    quint8 Variant = 0;
    quint8 HwCode = 0;
    qint16 ProductIndex = 0; ///< hundredths
    quint32 SerialNumber = 0;
    quint16 ProductionDate = 0;      ///< as in a FAT file system
    quint16 BodyWord1 = 0;           ///< nothing is known of it
    qint16 TestInstructionIndex = 0; ///< hundredths
    uchar Name[NameLength] = {};
};
