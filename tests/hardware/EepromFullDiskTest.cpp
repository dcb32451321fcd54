// SPDX-License-Identifier: MIT

#include "hardware/CBoardDataAccess.h"
#include "tests/hardware/EepromImages.h"
#include "tests/support/SmallDisk.h"
#include "tests/support/Warnings.h"

#include <QDir>
#include <QtTest>

namespace {

constexpr char Variable[] = "PROGRAMDATA";
constexpr char Mark[] = "VX440_TEST_ON_A_SMALL_DISK";

} // namespace

class EepromFullDiskTest : public WarningsFail
{
    Q_OBJECT

private slots:
    // Runs itself again where a disk of its own is mounted.
    void anImageThatFindsNoRoomIsNotSaved()
    {
        if (!qEnvironmentVariableIsSet(Mark)) {
            qputenv(Mark, "1");
            const int result = RunAgainOnASmallDisk(Variable);
            if (result == -1) {
                QSKIP("this system does not let the test mount a disk");
            }
            QCOMPARE(result, 0);
            return;
        }
        const QVector<uchar> region = Image(Filled(Block("15CD5B07", "VX440"), RegionSize));
        CBoardDataAccess access;
        QVERIFY(access.SaveRegionImage(region));
        const QString folder = QFile::decodeName(qgetenv(Variable));
        QVERIFY(QFile::remove(folder + "/Zelma-Kovinth/VX440/Eeprom/VX440Read_VX440_123456.bin"));

        QFile rest(folder + "/rest");
        QVERIFY(FillSmallDisk(rest));

        QVERIFY(!access.SaveRegionImage(region));
        QVERIFY(rest.resize(0));
        QVERIFY(access.SaveRegionImage(region));
    }
};

QTEST_GUILESS_MAIN(EepromFullDiskTest)

#include "EepromFullDiskTest.moc"
