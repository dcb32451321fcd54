// SPDX-License-Identifier: MIT

#include "hardware/CBoardDataAccess.h"

#include "hardware/CZKHardwareComponent.h"
#include "link/CDeviceCommunication.h"

#include <QProgressDialog>
#include <QtEndian>

#include <algorithm>
#include <array>

namespace {

constexpr quint16 BlockRequestSize = 64;
constexpr int LargestRequest = 255;

constexpr quint32 Vx440Code = 3;
constexpr quint8 ComponentGroup = 0;
constexpr quint8 OtherGroup = 1;

// The one component there is.
class Component : public CZKHardwareComponent
{
public:
    Component()
        : CZKHardwareComponent(GetEepromDirectory(), QStringLiteral("VX440"), Vx440Code, 0,
              BlockRequestSize, ComponentGroup)
    {
    }

    bool Parse(const QVector<uchar>& image)
    {
        bool parsed{};
        return ParseImage(image, parsed);
    }
};

bool ReadBytes(
    CDeviceCommunication* communication, QVector<uchar>& out, quint16 count, quint16 offset)
{
    std::array request{qToBigEndian(count), qToBigEndian(offset)};
    return communication->ReadEeprom(reinterpret_cast<uchar*>(request.data()), out);
}

} // namespace

bool CBoardDataAccess::ReadBlockTexts(
    CDeviceCommunication* communication, QStringList& texts, quint16 offset)
{
    texts.clear();
    Component component;
    QVector<uchar> image;
    if (!ReadBytes(communication, image, BlockRequestSize, offset) || !component.Parse(image)) {
        return false;
    }
    for (const quint8 group : {OtherGroup, ComponentGroup}) {
        component.AppendRowTexts(texts, group);
    }
    return true;
}

// The regions are saved here once more: the same bytes under the same name.
bool CBoardDataAccess::ReadEepromImages(
    CDeviceCommunication* communication, QVector<uchar>& image, QProgressDialog* dialog)
{
    const auto readAndSave = [&](quint16 offset) {
        return ReadEepromRegion(communication, image, offset, RegionSize, dialog) &&
               SaveRegionImage(image);
    };
    dialog->setMaximum(2 * RegionSize);
    dialog->setValue(0);
    readAndSave(DeviceRegion);
    return readAndSave(BoardRegion);
}

bool CBoardDataAccess::ReadEepromRegion(CDeviceCommunication* communication, QVector<uchar>& image,
    quint16 offset, quint16 size, QProgressDialog* dialog)
{
    image.clear();
    for (int done = 0; done < size; done += LargestRequest) {
        const auto chunk = static_cast<quint16>(std::min(LargestRequest, size - done));
        if (!ReadBytes(communication, image, chunk, static_cast<quint16>(offset + done))) {
            return false;
        }
        dialog->setValue(dialog->value() + LargestRequest);
    }
    return SaveRegionImage(image);
}

bool CBoardDataAccess::SaveRegionImage(const QVector<uchar>& image)
{
    Component component;
    return component.Parse(image) && component.SaveImage(component.ReadImageFileName(), image);
}
