// SPDX-License-Identifier: MIT

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
    void aFileOfAHundredMegabytesTakesWhatItsLongestLineDoes()
    {
        // Two bytes a character, and room to grow; and some memory for the window.
        const struct
        {
            int lineLength;
            double mostKb;
            const char* told;
        } files[] = {{50, 4.0 * 1024, "Read file successfully."},
            {1000 * 1000, 12.0 * 1024, "Read file successfully."},
            {HundredMegabytes, 4.0 * 2 * LongestLine / 1024, "Invalid line:xxx"}}; // no line feed
        ShowPage("Azimuth Configuration");
        Read(MakeFile(1000, 50)); // what a first dialog takes
        for (const auto& file : files) {
            const QString path = MakeFile(HundredMegabytes, file.lineLength);
            QVERIFY(ForgetPeakMemory());
            const double before = MemoryInUseKb();
            Read(path);
            QVERIFY(StatusLine().startsWith(file.told));
            const double taken = PeakMemoryKb() - before;
            QVERIFY2(taken < file.mostKb, qPrintable(QString::number(taken)));
        }
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
