#pragma once

#include <QFile>
#include <QObject>
#include <QScopedPointer>
#include <QString>
#include <QTextStream>

/// A configuration file, line by line: comments from "#" in the first column, and lines of a key, a
/// "=" and a value. The file is open from a successful open until the object goes.
///
/// Lines end with a line feed. A byte-order mark decides the encoding of what is read; without one,
/// and for what is written, it is the locale's.
class CFileIO : public QObject
{
    Q_OBJECT

public:
    explicit CFileIO(QString fileName);
    ~CFileIO() override;

    /// In characters, carriage returns among them: no file that this tool wrote comes near it.
    static constexpr int MaximumLineLength = 16 * 1024 * 1024;

    /// False when the file cannot be opened, has no name, or is a pipe, a device or a folder.
    bool OpenForRead();
    /// Empties the file. False as OpenForRead().
    bool OpenForWrite();

    /// Whether ReadLine() has met the end of the file.
    bool IsAtEnd() const;
    /// Whether ReadLine() has met a line above MaximumLineLength.
    bool IsLineTooLong() const;

    /// The next line that is neither a comment nor made of blanks, without its line feed and
    /// without any carriage return: 1. An empty line is not passed over, but gives 0 and an empty
    /// text; so do the end of the file, with what stands behind the last line feed, and a file that
    /// is not open. A line above MaximumLineLength gives 1 and its beginning up to that length,
    /// whatever it is; nothing behind it is to be read.
    int ReadLine(QString& line);

    /// The comment that each file begins with, and an empty line. These two give false when the
    /// file is not open or has not taken all of the text.
    bool WriteBanner();
    bool WriteKeyValue(QString key, QString value);

private:
    bool Open(QIODevice::OpenMode mode);
    QString ReadToLineFeed();
    bool ReadCharacter(QChar& character);
    bool Write(const QString& text);

    QScopedPointer<QFile> file;
    QScopedPointer<QTextStream> stream;
    QString fileName;
    bool isOpen = false;
    bool atEnd = false;
    bool lineTooLong = false;

    // What was read ahead, and where the next character stands in it.
    QString block;
    int blockPosition = 0;
};
