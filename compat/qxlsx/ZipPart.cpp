// SPDX-License-Identifier: MIT

#include "ZipPart.h"

#include <QFile>

#include <array>
#include <limits>

namespace QXlsx {

namespace {

// How minizip reads the file. Its own functions take only file names in the 8-bit encoding of the
// system.
QFile* File(voidpf stream)
{
    return static_cast<QFile*>(stream);
}

voidpf Open(voidpf, const void* path, int)
{
    auto file = std::make_unique<QFile>(*static_cast<const QString*>(path));
    return file->open(QIODevice::ReadOnly) ? file.release() : nullptr;
}

uLong Read(voidpf, voidpf stream, void* buffer, uLong size)
{
    const qint64 count = File(stream)->read(static_cast<char*>(buffer), qint64(size));
    return count > 0 ? uLong(count) : 0;
}

uLong Write(voidpf, voidpf, const void*, uLong)
{
    return 0;
}

ZPOS64_T Tell(voidpf, voidpf stream)
{
    return ZPOS64_T(File(stream)->pos());
}

long Seek(voidpf, voidpf stream, ZPOS64_T offset, int origin)
{
    qint64 from = 0;
    if (origin == ZLIB_FILEFUNC_SEEK_CUR) {
        from = File(stream)->pos();
    } else if (origin == ZLIB_FILEFUNC_SEEK_END) {
        from = File(stream)->size();
    }
    // Places are what the file claims. None is beyond its end.
    const qint64 size = File(stream)->size();
    const bool isInside = offset <= ZPOS64_T(size) && from <= size - qint64(offset);
    return isInside && File(stream)->seek(from + qint64(offset)) ? 0 : -1;
}

int Close(voidpf, voidpf stream)
{
    delete File(stream);
    return 0;
}

int Error(voidpf, voidpf stream)
{
    return File(stream)->error() == QFileDevice::NoError ? 0 : -1;
}

} // namespace

ZipFile OpenZip(const QString& path)
{
    zlib_filefunc64_def functions{Open, Read, Write, Tell, Seek, Close, Error, nullptr};
    return ZipFile(unzOpen2_64(&path, &functions));
}

ZipPart::ZipPart(const QString& path, unz64_file_pos place)
    : zip(OpenZip(path))
{
    if (zip && unzGoToFilePos64(zip.get(), &place) == UNZ_OK &&
        unzOpenCurrentFile(zip.get()) == UNZ_OK) {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }
}

ZipPart::~ZipPart() = default;

bool ZipPart::Unpack(qint64& left)
{
    unz_file_info64 claimed;
    if (!isOpen() || unzGetCurrentFileInfo64(
                         zip.get(), &claimed, nullptr, 0, nullptr, 0, nullptr, 0) != UNZ_OK) {
        return false;
    }
    std::array<char, 16 * 1024> block;
    qint64 length = 0;
    qint64 count = 0;
    do {
        count = read(block.data(), block.size());
        length += qMax<qint64>(count, 0);
    } while (count > 0 && length <= left);
    left -= length;
    return left >= 0 && ZPOS64_T(length) == claimed.uncompressed_size &&
           unzCloseCurrentFile(zip.get()) == UNZ_OK;
}

qint64 ZipPart::readData(char* data, qint64 maximum)
{
    const qint64 count = qMin<qint64>(maximum, std::numeric_limits<int>::max());
    return unzReadCurrentFile(zip.get(), data, static_cast<unsigned>(count));
}

} // namespace QXlsx
