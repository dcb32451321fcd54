#include "Package.h"

#include <QFileInfo>
#include <QtEndian>

#include <array>

namespace QXlsx {

namespace {

// What the records of a zip begin with, and where a record of the directory has the length of its
// name and the last one that of its comment. Both lengths are 16 bits, little end first.
const QByteArray PartRecord = QByteArrayLiteral("PK\3\4");
const QByteArray DirectoryRecord = QByteArrayLiteral("PK\1\2");
const QByteArray LastRecord = QByteArrayLiteral("PK\5\6");
constexpr int NameLengthOffset = 28;
constexpr int CommentLengthOffset = 20;
constexpr int LastRecordLength = 22;

int Word(const QByteArray& content, int offset)
{
    return offset + 2 <= content.size() ? qFromLittleEndian<quint16>(content.constData() + offset)
                                        : 0;
}

bool HasItsEnd(const QByteArray& content)
{
    const int last = content.lastIndexOf(LastRecord);
    const int commentLength = Word(content, last + CommentLengthOffset);
    return last >= 0 && last + LastRecordLength + commentLength <= content.size();
}

bool HasModestDirectory(const QByteArray& content)
{
    int parts = 0;
    for (int at = content.indexOf(DirectoryRecord); at >= 0;
         at = content.indexOf(DirectoryRecord, at + 1)) {
        const bool isNameShort = Word(content, at + NameLengthOffset) <= Package::MaximumNameLength;
        if (!isNameShort || ++parts > Package::MaximumParts) {
            return false;
        }
    }
    return content.count(PartRecord) <= Package::MaximumParts;
}

bool UnpacksAsItClaims(const KArchiveFile& part, qint64& left)
{
    const std::unique_ptr<QIODevice> device(part.createDevice());
    if (!device) {
        return false;
    }
    std::array<char, 16 * 1024> block;
    qint64 length = 0;
    while (length <= left) {
        const qint64 count = device->read(block.data(), block.size());
        if (count <= 0) {
            break;
        }
        length += count;
    }
    left -= length;
    return left >= 0 && length == part.size();
}

} // namespace

Package::Package(const QString& path)
    : file(path)
    , zip(&file)
{
}

Package::~Package() = default;

bool Package::Open()
{
    return IsWholeZip() && zip.open(QIODevice::ReadOnly) && UnpacksAsItClaims();
}

bool Package::IsWholeZip() const
{
    // Opening what is no file, such as a pipe, could take forever.
    if (!QFileInfo(file).isFile()) {
        return false;
    }
    QFile bytes(file.fileName());
    if (!bytes.open(QIODevice::ReadOnly) || bytes.size() > MaximumUnpacked) {
        return false;
    }
    const QByteArray content = bytes.readAll();
    return content.startsWith(PartRecord) && HasItsEnd(content) && HasModestDirectory(content);
}

bool Package::UnpacksAsItClaims() const
{
    qint64 left = MaximumUnpacked;
    QVector<const KArchiveDirectory*> folders{zip.directory()};
    while (!folders.isEmpty()) {
        const KArchiveDirectory* const folder = folders.takeLast();
        const QStringList names = folder->entries();
        for (const QString& name : names) {
            const KArchiveEntry* const entry = folder->entry(name);
            if (entry->isDirectory()) {
                folders.append(static_cast<const KArchiveDirectory*>(entry));
            } else if (!QXlsx::UnpacksAsItClaims(*static_cast<const KArchiveFile*>(entry), left)) {
                return false;
            }
        }
    }
    return true;
}

std::unique_ptr<QIODevice> Package::Part(const QString& name) const
{
    const KArchiveFile* const part = zip.directory()->file(name);
    return std::unique_ptr<QIODevice>(part != nullptr ? part->createDevice() : nullptr);
}

bool Package::TakeToken(int textLength)
{
    tokensLeft = qMax(0, tokensLeft - 1 - textLength / 8);
    return tokensLeft > 0;
}

} // namespace QXlsx
