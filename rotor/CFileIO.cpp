// SPDX-License-Identifier: MIT

#include "rotor/CFileIO.h"

#include <QFileInfo>
#include <QStringView>

namespace {

constexpr QLatin1Char CommentCharacter('#');
constexpr QLatin1Char KeySeparator('=');
constexpr QLatin1Char LineFeed('\n');
constexpr QLatin1Char CarriageReturn('\r');

constexpr int BlockLength = 4096;

// Opening a pipe could wait for ever, and reading a device never end.
bool IsPipeOrDevice(const QString& fileName)
{
    const QFileInfo info(fileName);
    return info.exists() && !info.isFile();
}

bool IsComment(const QString& line)
{
    return line.startsWith(CommentCharacter);
}

bool IsBlank(const QString& line)
{
    return QStringView(line).trimmed().isEmpty();
}

} // namespace

CFileIO::CFileIO(QString fileName)
    : fileName(fileName)
{
}

CFileIO::~CFileIO() = default;

bool CFileIO::OpenForRead()
{
    return Open(QIODevice::ReadOnly);
}

bool CFileIO::OpenForWrite()
{
    return Open(QIODevice::WriteOnly);
}

bool CFileIO::Open(QIODevice::OpenMode mode)
{
    if (fileName.isEmpty()) {
        return false;
    }
    stream.reset();
    file.reset(new QFile(fileName));
    atEnd = false;
    lineTooLong = false;
    ahead = {};
    isOpen = !IsPipeOrDevice(fileName) && file->open(mode);
    if (isOpen) {
        stream.reset(new QTextStream(file.data()));
    }
    return isOpen;
}

bool CFileIO::IsAtEnd() const
{
    return atEnd;
}

bool CFileIO::IsLineTooLong() const
{
    return lineTooLong;
}

int CFileIO::ReadLine(QString& line)
{
    line.clear();
    if (!isOpen) {
        return 0;
    }
    QString text;
    do {
        text = ReadToLineFeed();
        if (lineTooLong) {
            break;
        }
        if (atEnd || text.isEmpty()) {
            return 0;
        }
    } while (IsComment(text) || IsBlank(text));
    line = text;
    return 1;
}

QString CFileIO::ReadToLineFeed()
{
    QString text;
    QChar character;
    int length = 0;
    while (ReadCharacter(character) && character != LineFeed) {
        if (++length > MaximumLineLength) {
            lineTooLong = true;
            break;
        }
        if (character != CarriageReturn) {
            text.append(character);
        }
    }
    return text;
}

// The stream's own way to give single characters is slow: it looks ahead over each run of blanks.
bool CFileIO::ReadCharacter(QChar& character)
{
    if (ahead.position == ahead.text.size()) {
        ahead = {stream->read(BlockLength)};
    }
    atEnd = ahead.text.isEmpty();
    if (!atEnd) {
        character = ahead.text.at(ahead.position++);
    }
    return !atEnd;
}

bool CFileIO::WriteBanner()
{
    return Write(QStringLiteral("#---------------------------------------------\n"
                                "# VX 440 Config\n"
                                "# Do NOT Edit, file is generated automatically\n"
                                "#---------------------------------------------\n"
                                "\n"));
}

bool CFileIO::WriteKeyValue(QString key, QString value)
{
    return Write(key + KeySeparator + value + LineFeed);
}

bool CFileIO::Write(const QString& text)
{
    if (!isOpen) {
        return false;
    }
    *stream << text;
    stream->flush(); // a full disk shows here
    return stream->status() == QTextStream::Ok;
}
