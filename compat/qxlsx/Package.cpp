// SPDX-License-Identifier: MIT

#include "Package.h"

#include "ZipPart.h"

#include <QFileInfo>

#include <array>

namespace QXlsx {

namespace {

// A zip begins with it.
const QByteArray PartRecord = QByteArrayLiteral("PK\3\4");

// Whether there are no more parts than a workbook has, and the comment behind their directory is
// all there.
bool IsWholeAndBounded(unzFile zip)
{
    unz_global_info64 directory{};
    const bool isBounded = unzGetGlobalInfo64(zip, &directory) == UNZ_OK &&
                           directory.number_entry <= Package::MaximumParts;
    const int length = int(directory.size_comment);
    QByteArray comment(length, '\0');
    return isBounded && unzGetGlobalComment(zip, comment.data(), directory.size_comment) == length;
}

} // namespace

Package::Package(const QString& path)
    : path(path)
{
}

bool Package::Open()
{
    return BeginsAsZip() && ReadParts();
}

bool Package::BeginsAsZip() const
{
    QFile file(path);
    // Opening what is no file, such as a pipe, could take forever.
    return QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly) &&
           file.size() <= MaximumUnpacked && file.read(PartRecord.size()) == PartRecord;
}

bool Package::ReadParts()
{
    const ZipFile zip = OpenZip(path);
    quint64 left = MaximumUnpacked;
    int result = IsWholeAndBounded(zip.get()) ? unzGoToFirstFile(zip.get()) : UNZ_BADZIPFILE;
    while (result == UNZ_OK && ReadPart(zip.get(), left)) {
        result = unzGoToNextFile(zip.get());
    }
    return result == UNZ_END_OF_LIST_OF_FILE;
}

// Takes the part's length off what may be unpacked yet.
bool Package::ReadPart(unzFile zip, quint64& left)
{
    std::array<char, MaximumNameLength> name;
    unz_file_info64 part;
    const int result =
        unzGetCurrentFileInfo64(zip, &part, name.data(), name.size(), nullptr, 0, nullptr, 0);
    if (result != UNZ_OK || part.size_filename > MaximumNameLength ||
        part.uncompressed_size > left) {
        return false;
    }
    left -= part.uncompressed_size;
    unz64_file_pos place{};
    unzGetFilePos64(zip, &place);
    places.insert(QString::fromUtf8(name.data(), int(part.size_filename)), place);
    return ZipPart(path, place).IsWhole(qint64(part.uncompressed_size));
}

std::unique_ptr<QIODevice> Package::Part(const QString& name) const
{
    const auto place = places.constFind(name);
    return place != places.constEnd() ? std::make_unique<ZipPart>(path, *place) : nullptr;
}

bool Package::TakeToken(int textLength)
{
    tokensLeft = qMax(0, tokensLeft - 1 - textLength / 8);
    return tokensLeft > 0;
}

} // namespace QXlsx
