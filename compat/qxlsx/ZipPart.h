// SPDX-License-Identifier: MIT

#pragma once

#include <QIODevice>

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
class ZipPart : public QIODevice
{
public:
    ZipPart(const QString& path, unz64_file_pos place);
    ~ZipPart() override;

    /// Reads the whole part. Takes its length from the bytes that are left. False when too few are
    /// left, or when the length or the checksum is not what the zip claims.
    bool Unpack(qint64& left);

    bool isSequential() const override { return true; }

protected:
    qint64 readData(char* data, qint64 maximum) override;
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    const ZipFile zip;
};

} // namespace QXlsx
