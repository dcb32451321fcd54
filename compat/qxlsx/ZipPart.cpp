// SPDX-License-Identifier: MIT

#include "ZipPart.h"

#include <QFile>

#include <limits>

namespace QXlsx {

namespace {

// How minizip reads the file. Its own functions take only file names in the 8-bit encoding of the
// system. It never writes.
QFile* File(voidpf stream)
{
    return static_cast<QFile*>(stream);
}

voidpf Open(voidpf, const void* path, int)
{
    auto file = std::make_unique<QFile>(*static_cast<const QString*>(path));
    return file->open(QIODevice::ReadOnly) ? file.release() : nullptr;
}

// Minizip takes each count for a failure that is not the size.
uLong Read(voidpf, voidpf stream, void* buffer, uLong size)
{
    return uLong(File(stream)->read(static_cast<char*>(buffer), qint64(size)));
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
    const ZPOS64_T place = ZPOS64_T(from) + offset;
    const bool isInside = place <= ZPOS64_T(File(stream)->size());
    return isInside && File(stream)->seek(qint64(place)) ? UNZ_OK : UNZ_ERRNO;
}

int Close(voidpf, voidpf stream)
{
    delete File(stream);
    return UNZ_OK;
}

int Error(voidpf, voidpf stream)
{
    return File(stream)->error();
}

} // namespace

ZipFile OpenZip(const QString& path)
{
    zlib_filefunc64_def functions{Open, Read, nullptr, Tell, Seek, Close, Error, nullptr};
    return ZipFile(unzOpen2_64(&path, &functions));
}

ZipPart::ZipPart(const QString& path, unz64_file_pos place)
    : zip(OpenZip(path))
{
    if (unzGoToFilePos64(zip.get(), &place) == UNZ_OK && unzOpenCurrentFile(zip.get()) == UNZ_OK) {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }
}

ZipPart::~ZipPart() = default;

bool ZipPart::IsWhole(qint64 length)
{
    return isOpen() && skip(length) == length && unzCloseCurrentFile(zip.get()) == UNZ_OK;
}

qint64 ZipPart::readData(char* data, qint64 maximum)
{
    const qint64 count = qMin<qint64>(maximum, std::numeric_limits<int>::max());
    return unzReadCurrentFile(zip.get(), data, static_cast<unsigned>(count));
}

} // namespace QXlsx
