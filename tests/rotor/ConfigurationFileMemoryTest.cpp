#include "tests/support/ProcessMemory.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"

#include <QPushButton>
#include <QTemporaryDir>
#include <QtTest>

namespace {

constexpr int HundredMegabytes = 100 * 1000 * 1000;
constexpr int LongestLine = 16 * 1024 * 1024; // that is read

} // namespace

/// What reading a large file takes, measured in the window as a user reads it.
class ConfigurationFileMemoryTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void aFileOfAHundredMegabytesTakesWhatItsLongestLineDoes_data()
    {
        QTest::addColumn<int>("lineLength");
        QTest::addColumn<double>("mostKb");
        QTest::addColumn<QString>("told");
        const QString read = "Read file successfully.";
        // Two bytes a character, and room to grow; and some memory for the window.
        QTest::newRow("lines of 50 bytes") << 50 << 4.0 * 1024 << read;
        QTest::newRow("lines of a megabyte") << 1000 * 1000 << 12.0 * 1024 << read;
        QTest::newRow("no line feed at all")
            << HundredMegabytes << 4.0 * 2 * LongestLine / 1024 << "Invalid line:xxx";
    }
    void aFileOfAHundredMegabytesTakesWhatItsLongestLineDoes()
    {
        QFETCH(int, lineLength);
        ShowPage("Azimuth Configuration");
        Read(MakeFile(1000, 50)); // what a first dialog takes
        const QString path = MakeFile(HundredMegabytes, lineLength);
        QVERIFY(ForgetPeakMemory());
        const double before = MemoryInUseKb();
        Read(path);
        QFETCH(QString, told);
        QVERIFY(StatusLine().startsWith(told));
        const double taken = PeakMemoryKb() - before;
        QFETCH(double, mostKb);
        QVERIFY2(taken < mostKb, qPrintable(QString::number(taken)));
    }

private:
    static void Read(const QString& path)
    {
        ClickAndChooseFile(Find<QPushButton>("btnReadFromFile"), path);
    }

    QString MakeFile(int size, int lineLength)
    {
        QFile file(folder.filePath(QString("%1.txt").arg(lineLength)));
        const QByteArray line = QByteArray(lineLength - 1, 'x') + '\n';
        bool written = file.open(QIODevice::WriteOnly);
        for (int done = 0; done < size && written; done += lineLength) {
            const int length = lineLength == size ? lineLength - 1 : lineLength;
            written = file.write(line.constData(), length) == length;
        }
        return written ? file.fileName() : QString();
    }

    QTemporaryDir folder;
};

VX440_WINDOW_TEST_MAIN(ConfigurationFileMemoryTest)
#include "ConfigurationFileMemoryTest.moc"
