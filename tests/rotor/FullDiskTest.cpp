// SPDX-License-Identifier: MIT

#include "rotor/CFileIO.h"
#include "tests/support/SmallDisk.h"
#include "tests/support/Warnings.h"

#include <QTemporaryDir>
#include <QtTest>

namespace {

constexpr char FolderVariable[] = "VX440_TEST_FULL_DISK";

} // namespace

class FullDiskTest : public WarningsFail
{
    Q_OBJECT

private slots:
    // Runs itself again where a disk of its own is mounted.
    void aLineThatFindsNoRoomFails()
    {
        if (!qEnvironmentVariableIsSet(FolderVariable)) {
            const int result = RunAgainOnASmallDisk(FolderVariable);
            if (result == -1) {
                QSKIP("this system does not let the test mount a disk");
            }
            QCOMPARE(result, 0);
            return;
        }
        const QString folder = QFile::decodeName(qgetenv(FolderVariable));
        CFileIO file(folder + "/configuration.txt");
        QVERIFY(file.OpenForWrite());
        QVERIFY(file.WriteBanner());

        QFile rest(folder + "/rest");
        QVERIFY(FillSmallDisk(rest));

        // What is left of the file's own page still takes lines.
        int lines = 0;
        while (lines <= DiskPage && file.WriteKeyValue("key", "value")) {
            ++lines;
        }
        QVERIFY(lines < DiskPage / 10);
        QVERIFY(!file.WriteKeyValue("key", "value"));
    }
};

QTEST_GUILESS_MAIN(FullDiskTest)
#include "FullDiskTest.moc"
