// SPDX-License-Identifier: MIT

#include "Package.h"

#include "ZipPart.h"

#include <QFileInfo>
#include <QtEndian>

#include <array>

namespace QXlsx {

namespace {

// A zip begins with the first of these, and ends with a record that begins with the second. That
// record holds the length of the comment behind it: 16 bits, little end first.
const QByteArray PartRecord = QByteArrayLiteral("PK\3\4");
const QByteArray LastRecord = QByteArrayLiteral("PK\5\6");
constexpr int CommentLengthOffset = 20;
constexpr int LastRecordLength = 22;
constexpr int MaximumCommentLength = 0xFFFF;

bool HasItsEnd(const QByteArray& tail)
{
    const int last = tail.lastIndexOf(LastRecord);
    if (last < 0 || last + LastRecordLength > tail.size()) {
        return false;
    }
    const int commentLength =
        qFromLittleEndian<quint16>(tail.constData() + last + CommentLengthOffset);
    return last + LastRecordLength + commentLength <= tail.size();
}

} // namespace

Package::Package(const QString& path)
    : path(path)
{
}

bool Package::Open()
{
    return IsWholeZip() && ReadDirectory() && UnpacksAsItClaims();
}

bool Package::IsWholeZip() const
{
    // Opening what is no file, such as a pipe, could take forever.
    if (!QFileInfo(path).isFile()) {
        return false;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > MaximumUnpacked ||
        file.read(PartRecord.size()) != PartRecord) {
        return false;
    }
    const qint64 tail = file.size() - LastRecordLength - MaximumCommentLength;
    return file.seek(qMax<qint64>(tail, 0)) && HasItsEnd(file.readAll());
}

bool Package::ReadDirectory()
{
    const ZipFile zip = OpenZip(path);
    unz_global_info64 directory;
    if (!zip || unzGetGlobalInfo64(zip.get(), &directory) != UNZ_OK ||
        directory.number_entry > MaximumParts) {
        return false;
    }
    for (ZPOS64_T i = 0; i < directory.number_entry; ++i) {
        std::array<char, MaximumNameLength + 1> name;
        unz_file_info64 part;
        unz64_file_pos place;
        const bool isThere = (i == 0 || unzGoToNextFile(zip.get()) == UNZ_OK) &&
                             unzGetCurrentFileInfo64(zip.get(), &part, name.data(), name.size(),
                                 nullptr, 0, nullptr, 0) == UNZ_OK &&
                             unzGetFilePos64(zip.get(), &place) == UNZ_OK;
        if (!isThere || part.size_filename > MaximumNameLength) {
            return false;
        }
        places.insert(QString::fromUtf8(name.data(), int(part.size_filename)), place);
    }
    return true;
}

bool Package::UnpacksAsItClaims() const
{
    qint64 left = MaximumUnpacked;
    for (const unz64_file_pos& place : places) {
        if (!ZipPart(path, place).Unpack(left)) {
            return false;
        }
    }
    return true;
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
