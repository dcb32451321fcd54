// SPDX-License-Identifier: MIT

#include "rotor/CFileIO.h"
#include "tests/support/Warnings.h"
#include "tests/support/platform/FileSizeLimit.h"
#include "tests/support/platform/SystemFiles.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <ctime>

namespace {

const QByteArray Banner = "#---------------------------------------------\n"
                          "# VX 440 Config\n"
                          "# Do NOT Edit, file is generated automatically\n"
                          "#---------------------------------------------\n"
                          "\n";

constexpr int HundredMegabytes = 100 * 1000 * 1000;

// What a call gives: its result, and the line behind it.
QString ReadLineOf(CFileIO& file)
{
    QString line = "untouched";
    const int result = file.ReadLine(line);
    return QString("%1:").arg(result) + line;
}

} // namespace

class FileIOTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(folder.isValid()); }

    void aFileThatIsNotOpenNeitherReadsNorWrites()
    {
        const QString path = NewFile("a=1\n");
        CFileIO file(path);
        QCOMPARE(ReadLineOf(file), "0:");
        QVERIFY(!file.IsAtEnd());
        QVERIFY(!file.IsLineTooLong());
        QVERIFY(!file.WriteBanner());
        QVERIFY(!file.WriteKeyValue("key", "value"));
        QCOMPARE(Content(path), QByteArray("a=1\n"));
    }

    void anEmptyNameOrAFolderCannotBeOpened()
    {
        for (const QString& path : {QString(), folder.path()}) {
            CFileIO file(path);
            QVERIFY(!file.OpenForRead());
            QVERIFY(!file.OpenForWrite());
            QVERIFY(!file.WriteBanner());
        }
    }

    void whatIsNotThereCannotBeRead()
    {
        const QString path = NewPath();
        CFileIO file(path);
        QVERIFY(!QFile::exists(path)); // making the object opens nothing
        QVERIFY(!file.IsAtEnd());
        QVERIFY(!file.OpenForRead());
        QVERIFY(!QFile::exists(path));
    }

    // A pipe would be waited for without end.
    void aPipeOrADeviceCannotBeOpened()
    {
        if (!HasDeviceFiles()) {
            QSKIP("this system has neither pipes nor devices among its files");
        }
        const QString pipe = NewPath();
        QCOMPARE(QProcess::execute("mkfifo", {pipe}), 0);
        const QString link = NewPath();
        QVERIFY(QFile::link("/dev/zero", link));
        for (const QString& path :
            {pipe, QString("/dev/null"), QString("/dev/zero"), QString("/dev/full"), link}) {
            CFileIO file(path);
            QVERIFY2(!file.OpenForRead(), qPrintable(path));
            QVERIFY2(!file.OpenForWrite(), qPrintable(path));
        }
    }

    void aFileInAFolderThatIsNotThereCannotBeWritten()
    {
        CFileIO file(NewPath() + "/file.txt");
        QVERIFY(!file.OpenForWrite());
        QVERIFY(!file.WriteBanner());
    }

    void aFailedOpenLeavesTheFileClosed()
    {
        const QString path = NewFile("a=1\n");
        CFileIO file(path);
        QVERIFY(file.OpenForRead());
        if (!QFile::remove(path)) {
            QSKIP("this system keeps a file that is open");
        }
        QVERIFY(!file.OpenForRead());
        QCOMPARE(ReadLineOf(file), "0:");
        QVERIFY(!file.WriteBanner());
    }

    void anyNameIsWrittenAndRead()
    {
        const QString part(100, 'n');
        // Umlauts, letters of no code page, and more than 260 characters.
        for (const QString& name : {QString("\u00C4\u00D6\u00DC \u00E4\u00F6\u00FC\u00DF.txt"),
                 QString("\u0416 \u4E00 \u20AC.txt"),
                 QStringList({part, part, part, part + ".txt"}).join('/')}) {
            const QFileInfo path(NewPath() + '/' + name);
            QVERIFY(QDir().mkpath(path.path()));
            {
                CFileIO file(path.filePath());
                QVERIFY(file.OpenForWrite());
                QVERIFY(file.WriteKeyValue("a", "1"));
            }
            QCOMPARE(QDir(path.path()).entryList(QDir::Files), {path.fileName()});
            CFileIO file(path.filePath());
            QVERIFY(file.OpenForRead());
            QCOMPARE(ReadLineOf(file), "1:a=1");
        }
    }

    void aFileIsReadLineByLine_data()
    {
        QTest::addColumn<QByteArray>("content");
        // What each call gives until the end: "1:" with the line, or "0:".
        QTest::addColumn<QStringList>("lines");
        const auto row = [](const char* name, const QByteArray& content, const char* lines) {
            QTest::newRow(name) << content << QString(lines).split('|');
        };
        row("empty file", "", "0:");
        row("one line", "a=1\n", "1:a=1|0:");
        row("two lines", "a=1\nb=2\n", "1:a=1|1:b=2|0:");
        row("a line without a sign", "abc\n", "1:abc|0:");
        row("no last line feed loses the line", "a=1\nb=2", "1:a=1|0:");
        row("a single line without a line feed is lost", "a=1", "0:");
        row("carriage returns before line feeds go", "a=1\r\nb=2\r\n", "1:a=1|1:b=2|0:");
        row("carriage returns go wherever they stand", "\ra\r=\r\r1\n", "1:a=1|0:");
        row("a carriage return ends no line", "a=1\rb=2\n", "1:a=1b=2|0:");
        row("a carriage return before a comment goes", "\r#a=1\nb=2\n", "1:b=2|0:");
        row("an empty line is not passed over", "\na=1\n\n\nb=2\n", "0:|1:a=1|0:|0:|1:b=2|0:");
        row("a line of a carriage return is an empty one", "\r\na=1\r\n", "0:|1:a=1|0:");
        row("a comment is passed over", "#a=1\n# b\n#\nc=3\n", "1:c=3|0:");
        row("a comment at the end", "a=1\n#b\n", "1:a=1|0:");
        row("a comment without its line feed", "a=1\n#b", "1:a=1|0:");
        row("a comment and then an empty line", "#b\n\na=1\n", "0:|1:a=1|0:");
        row("a blank before the sign of a comment makes it a line", " #a=1\n", "1: #a=1|0:");
        row("a line of blanks is passed over", "  \n\t\n \t \na=1\n", "1:a=1|0:");
        row("a line is not trimmed", "  a = 1 \t\n", "1:  a = 1 \t|0:");
        row("a sign of a comment inside a line stays", "a=1 # one\n", "1:a=1 # one|0:");
        const QByteArray longLine(3 * 4096, 'x');
        row("a line longer than what is read at once", longLine + "\nb=2\n",
            "1:" + longLine + "|1:b=2|0:");
        row("the banner", Banner + "a=1\n", "0:|1:a=1|0:");
    }
    void aFileIsReadLineByLine()
    {
        QFETCH(QByteArray, content);
        CFileIO file(NewFile(content));
        QVERIFY(file.OpenForRead());
        QStringList lines;
        while (!file.IsAtEnd()) {
            lines.append(ReadLineOf(file));
        }
        QTEST(lines, "lines");
    }

    void theByteOrderMarkDecidesTheEncoding()
    {
        // UTF-8, and UTF-16 of either byte order.
        for (const QByteArray& content :
            {QByteArray("\xEF\xBB\xBFk=\xC3\xA9\n"), QByteArray("\xFF\xFEk\0=\0\xE9\0\n\0", 10),
                QByteArray("\xFE\xFF\0k\0=\0\xE9\0\n", 10)}) {
            CFileIO file(NewFile(content));
            QVERIFY(file.OpenForRead());
            QCOMPARE(ReadLineOf(file), "1:k=\u00E9");
        }
    }

    void aLineHasAtMostSixteenMebibytes()
    {
        constexpr int Sixteen = 16 * 1024 * 1024;
        const QByteArray nine(9 << 20, 'x');
        const struct
        {
            QByteArray content;
            bool tooLong;
            int length;
        } files[] = {{QByteArray(Sixteen, 'x') + "\n", false, Sixteen},
            {QByteArray(Sixteen + 1, 'x') + "\n", true, Sixteen},
            {QByteArray(Sixteen + 1, 'x'), true, Sixteen},
            {"#" + QByteArray(Sixteen, 'x') + "\na=1\n", true, Sixteen},
            {QByteArray(Sixteen + 1, ' ') + "\na=1\n", true, Sixteen},
            {QByteArray(Sixteen + 1, '\r') + "a=1\n", true, 0},
            {nine + "\n" + nine + "\n", false, 9 << 20}}; // longer together
        for (const auto& any : files) {
            CFileIO file(NewFile(any.content));
            QVERIFY(file.OpenForRead());
            QVERIFY(!file.IsLineTooLong());
            QString line;
            QCOMPARE(int(file.ReadLine(line)), 1);
            QCOMPARE(file.IsLineTooLong(), any.tooLong);
            QCOMPARE(line.size(), any.length);
            QVERIFY(file.OpenForRead());
            QVERIFY(!file.IsLineTooLong());
        }
    }

    void theEndIsMetOnlyBehindTheLastLineAndStaysMet()
    {
        CFileIO file(NewFile("a=1\nb=2\n"));
        for (int opened = 0; opened < 2; ++opened) { // opening again begins anew, wherever it was
            QVERIFY(file.OpenForRead());
            QCOMPARE(ReadLineOf(file), "1:a=1");
            QVERIFY(file.OpenForRead());
            QVERIFY(!file.IsAtEnd());
            QCOMPARE(ReadLineOf(file), "1:a=1");
            QCOMPARE(ReadLineOf(file), "1:b=2");
            QVERIFY(!file.IsAtEnd());
            for (int twice = 0; twice < 2; ++twice) {
                QCOMPARE(ReadLineOf(file), "0:");
                QVERIFY(file.IsAtEnd());
            }
        }
    }

    void theBannerIsFiveLines()
    {
        const QString path = NewPath();
        CFileIO file(path);
        QVERIFY(file.OpenForWrite());
        QVERIFY(file.WriteBanner());
        QCOMPARE(Content(path), Banner);
    }

    void aKeyAndItsValueAreOneLineWhichIsInTheFileWhenTheCallReturns()
    {
        const QString path = NewPath();
        CFileIO file(path);
        QVERIFY(file.OpenForWrite());
        QVERIFY(file.WriteKeyValue("key", "value"));
        QCOMPARE(Content(path), QByteArray("key=value\n"));
        QVERIFY(file.WriteKeyValue("key", QString()));
        QCOMPARE(Content(path), QByteArray("key=value\nkey=\n"));
        QVERIFY(file.WriteKeyValue(" a b ", " c "));
        QCOMPARE(Content(path), QByteArray("key=value\nkey=\n a b = c \n"));
    }

    void openingForWritingEmptiesTheFile()
    {
        const QString path = NewFile("what was there before\n");
        CFileIO file(path);
        QVERIFY(file.OpenForWrite());
        QCOMPARE(Content(path), QByteArray());
    }

    void aDiskThatIsFullAfterAnyByteFailsItsLine()
    {
        if (!FileSizeLimit::IsThere()) {
            QSKIP("this system limits no file's size");
        }
        const QByteArray whole = Banner + "first=1\nsecond=22\n";
        for (int bytes = 0; bytes <= whole.size(); ++bytes) {
            const QString path = NewPath();
            {
                CFileIO file(path);
                QVERIFY(file.OpenForWrite());
                const FileSizeLimit limit(static_cast<quint64>(bytes));
                const bool first = file.WriteBanner();
                const bool second = file.WriteKeyValue("first", "1");
                const bool third = file.WriteKeyValue("second", "22");
                QCOMPARE(first, bytes >= Banner.size());
                QCOMPARE(second, bytes >= Banner.size() + 8);
                QCOMPARE(third, bytes >= whole.size());
            }
            QVERIFY(whole.startsWith(Content(path)));
        }
    }

    void afterAFailedLineNoOtherIsWritten()
    {
        if (!FileSizeLimit::IsThere()) {
            QSKIP("this system limits no file's size");
        }
        const QString path = NewPath();
        CFileIO file(path);
        QVERIFY(file.OpenForWrite());
        {
            const FileSizeLimit limit(4);
            QVERIFY(file.WriteKeyValue("a", "1"));
            QVERIFY(!file.WriteKeyValue("b", "2"));
        }
        QVERIFY(!file.WriteKeyValue("c", "3"));
        QVERIFY(!file.WriteBanner());
        QCOMPARE(Content(path), QByteArray("a=1\n"));
    }

    // Of the processor's time: how busy the machine is does not matter.
    void hundredMegabytesTakeLessThanTenSeconds()
    {
        // Comments, carriage returns, empty lines and blanks.
        for (const QByteArray& piece :
            {'#' + QByteArray(998, 'x') + '\n', QByteArray(999, '\r') + '\n',
                QByteArray(1000, '\n'), QByteArray(999, ' ') + '\n'}) {
            ReadHundredMegabytesOf(piece);
        }
    }

private:
    void ReadHundredMegabytesOf(const QByteArray& piece)
    {
        const QByteArray block = piece.repeated(1000 * 1000 / piece.size());
        const QString path = NewPath();
        QFile large(path);
        QVERIFY(large.open(QIODevice::WriteOnly));
        for (int written = 0; written < HundredMegabytes; written += block.size()) {
            QCOMPARE(large.write(block), qint64(block.size()));
        }
        large.close();
        const std::clock_t begin = std::clock();
        int lines = 0;
        {
            CFileIO file(path);
            QVERIFY(file.OpenForRead());
            while (!file.IsAtEnd()) {
                QString line;
                lines += file.ReadLine(line);
            }
        }
        const double seconds = double(std::clock() - begin) / CLOCKS_PER_SEC;
        QVERIFY(QFile::remove(path));
        QCOMPARE(lines, 0);
        qInfo("%.1f s", seconds);
        QVERIFY(seconds < 10 * VX440_SANITIZER_SLOWNESS);
    }

    QString NewPath() { return folder.filePath(QString::number(++paths)); }

    QString NewFile(const QByteArray& content)
    {
        const QString path = NewPath();
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
            return QString();
        }
        return path;
    }

    static QByteArray Content(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
    }

    QTemporaryDir folder;
    int paths = 0;
};

QTEST_GUILESS_MAIN(FileIOTest)
#include "FileIOTest.moc"
