// SPDX-License-Identifier: MIT

#pragma once

#include <QFile>
#include <QObject>
#include <QScopedPointer>
#include <QString>
#include <QTextStream>

/// A configuration file, line by line. A comment begins with "#" in the first column. Other lines
/// have a key, a "=" and a value. The file stays open from a successful open until the object goes.
///
/// Lines end with a line feed. A byte-order mark tells the encoding of what is read. Without one,
/// and for what is written, the locale tells it.
class CFileIO : public QObject
{
    Q_OBJECT

public:
    explicit CFileIO(QString fileName);
    ~CFileIO() override;

    /// In characters, with carriage returns. No file that this tool wrote comes near it.
    static constexpr int MaximumLineLength = 16 * 1024 * 1024;

    /// False when the file cannot be opened, has no name, or is a pipe, a device or a folder.
    bool OpenForRead();
    /// Empties the file. False as OpenForRead().
    bool OpenForWrite();

    /// Whether ReadLine() has met the end of the file.
    bool IsAtEnd() const;
    /// Whether ReadLine() has met a line above MaximumLineLength.
    bool IsLineTooLong() const;

    /// Reads the next line that is neither a comment nor made of blanks, without its line feed and
    /// without carriage returns, and gives 1.
    ///
    /// Gives 0 and an empty text for an empty line, for a file that is not open, and at the end of
    /// the file. Text behind the last line feed is lost.
    ///
    /// Gives 1 and the beginning of a line above MaximumLineLength, even of a comment. Nothing
    /// behind it is to be read.
    int ReadLine(QString& line);

    /// Writes the comment that each file begins with, and an empty line. The two writers give false
    /// when the file is not open or has not taken all of the text.
    bool WriteBanner();
    bool WriteKeyValue(QString key, QString value);

private:
    bool Open(QIODevice::OpenMode mode);
    QString ReadToLineFeed();
    bool ReadCharacter(QChar& character);
    bool Write(const QString& text);

    // What was read, and where the next character stands in it.
    struct ReadAhead
    {
        QString text;
        int position = 0;
    };

    // The stream goes before its file, which closes as it goes.
    QScopedPointer<QFile> file;
    QScopedPointer<QTextStream> stream;
    QString fileName;
    bool isOpen = false;
    bool atEnd = false;
    bool lineTooLong = false;
    ReadAhead ahead;
};
