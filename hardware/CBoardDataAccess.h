// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QStringList>
#include <QVector>

class CDeviceCommunication;
class QProgressDialog;

/// Reads the two regions of the unit's EEPROM, the device's and the board's. A request takes a
/// second, even when it cannot be sent. Bytes that the unit leaves out read as 255, and nothing
/// tells so but a block that is not valid. Serves one operation.
class CBoardDataAccess : public QObject
{
    Q_OBJECT

public:
    /// The offsets and the length of the two regions.
    static constexpr quint16 DeviceRegion = 0;
    static constexpr quint16 BoardRegion = 1200;
    static constexpr quint16 RegionSize = 1200;

    CBoardDataAccess() = default;

    /// Replaces `texts` by the row of the block at that offset, see BoardDataColumns. False, with
    /// no texts, when there is no valid block or the link is lost.
    bool ReadBlockTexts(CDeviceCommunication* communication, QStringList& texts, quint16 offset);

    /// Reads both regions and saves each. `image` ends with the board region, which alone decides
    /// the result. Takes ten seconds, and sets the range of `dialog` to 0 to 2400.
    bool ReadEepromImages(
        CDeviceCommunication* communication, QVector<uchar>& image, QProgressDialog* dialog);

    /// Replaces `image` by `size` bytes from that offset on, in requests of 255 bytes at most, and
    /// saves it. Raises the value of `dialog` by 255 with each.
    bool ReadEepromRegion(CDeviceCommunication* communication, QVector<uchar>& image,
        quint16 offset, quint16 size, QProgressDialog* dialog);

    /// Saves an image under a name made of the serial number in its block. False, with no file
    /// made, when that block is not valid.
    bool SaveRegionImage(const QVector<uchar>& image);
};
