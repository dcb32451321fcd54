// SPDX-License-Identifier: MIT

#pragma once

#include <QHash>
#include <QString>

#include <unzip.h>

#include <memory>

class QIODevice;

namespace QXlsx {

/// The parts of a file that is a zip of XML files and others.
///
/// The file is not trusted. It is refused when it unpacks to more than 64 MiB, or has more names or
/// longer ones than a workbook ever needs.
class Package
{
    Q_DISABLE_COPY(Package)

public:
    static constexpr qint64 MaximumUnpacked = 64 * 1024 * 1024;
    static constexpr int MaximumParts = 1000;
    static constexpr int MaximumNameLength = 255;

    /// In the XML parts together: as many as four hundred thousand cells have. A text counts as one
    /// more for each 8 of its characters.
    static constexpr int MaximumTokens = 2'000'000;

    explicit Package(const QString& path);

    /// Whether the file is there and is a whole zip within the bounds. Unpacks every part once, to
    /// see that it has the length and the checksum that it claims.
    bool Open();

    /// The unpacked bytes of a part, to be read from the front only. Null when the package lacks
    /// the part.
    std::unique_ptr<QIODevice> Part(const QString& name) const;

    /// Counts a token that was read, with the length of its text. False when there were too many.
    bool TakeToken(int textLength);

private:
    bool BeginsAsZip() const;
    bool ReadParts();
    bool ReadPart(unzFile zip, quint64& left);

    const QString path;
    QHash<QString, unz64_file_pos> places; ///< of the parts, by their names
    int tokensLeft = MaximumTokens;
};

} // namespace QXlsx
