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

    /// False when the file cannot be opened, or has no name.
    bool OpenForRead();
    /// Empties the file. False when it cannot be opened, or has no name.
    bool OpenForWrite();

    /// Whether ReadLine() has met the end of the file.
    bool IsAtEnd() const;

    /// The next line that is neither a comment nor made of blanks, without its line feed and
    /// without any carriage return: 1. An empty line is not passed over, but gives 0 and an empty
    /// text; so do the end of the file, with what stands behind the last line feed, and a file that
    /// is not open. Takes memory for the longest line.
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

    // What was read ahead, and where the next character stands in it.
    QString block;
    int blockPosition = 0;
};
