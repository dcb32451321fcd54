// SPDX-License-Identifier: MIT

#pragma once

#include "ForwardDevice.h"

#include <unzip.h>

#include <memory>

namespace QXlsx {

struct ZipCloser
{
    void operator()(unzFile zip) const { unzClose(zip); }
};
using ZipFile = std::unique_ptr<void, ZipCloser>;

/// The zip of this name, at its first part; null when it cannot be read or has no directory.
ZipFile OpenZip(const QString& path);

/// A part of a zip, unpacked as it is read. Each has the file open on its own.
class ZipPart : public ForwardDevice
{
public:
    ZipPart(const QString& path, unz64_file_pos place);
    ~ZipPart() override;

    /// Reads the part to its end. False when its checksum is not what the zip claims, or it has
    /// fewer bytes than this length.
    bool IsWhole(qint64 length);

protected:
    qint64 readData(char* data, qint64 maximum) override;

private:
    const ZipFile zip;
};

} // namespace QXlsx
