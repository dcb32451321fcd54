// SPDX-License-Identifier: MIT

#pragma once

#include "hardware/CZKMandatoryEepromBlock.h"

#include <QScopedPointer>
#include <QStringList>

/// What the texts of a row mean, by index.
extern const QStringList BoardDataColumns;

/// Where the images of EEPROM regions are kept: below the directory that the environment variable
/// PROGRAMDATA names, or below the root when it is unset. Ends with a separator. Makes the
/// directories that are not there; one that cannot be made shows only when a file in it is wanted.
QString GetEepromDirectory();

/// One named piece of hardware as one EEPROM region tells of it. Serves one operation.
class CZKHardwareComponent
{
    Q_DISABLE_COPY(CZKHardwareComponent)

public:
    /// `group` selects the call of AppendRowTexts() that is answered. Nothing is known of the code
    /// and the area.
    CZKHardwareComponent(QString directory, QString name, quint32 componentCode, quint32 areaStart,
        quint32 areaLength, quint8 group);
    virtual ~CZKHardwareComponent();

    /// Takes the mandatory block at the front of an image, which must have more than 8 bytes.
    /// False, also in `ok`, when there is none. False as well for a block that is cut short; that
    /// one replaces the block that was there, with a body of zeros.
    bool ParseImage(QVector<uchar> image, bool& ok);

    /// Appends a text for each of BoardDataColumns, if `group` is the component's. Without a block
    /// it appends eight texts that say so, whatever the group.
    void AppendRowTexts(QStringList& texts, quint8 group);

    /// A file name for the image of the region, made of the front of the block's serial number.
    /// There must be a block.
    QString ReadImageFileName() const;

    /// Replaces the file of that name in the EEPROM directory. True when all bytes were written.
    bool SaveImage(QString fileName, QVector<uchar> image);

private:
    QString FilePath;
    QString Name;
    // See docs/kept-on-purpose.md.
    [[maybe_unused]] quint32 AreaStart;
    [[maybe_unused]] quint32 AreaLength;
    [[maybe_unused]] quint32 ComponentCode;
    quint8 Group;
    QScopedPointer<CZKMandatoryEepromBlock> Block;
};
