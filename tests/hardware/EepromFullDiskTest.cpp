#include "hardware/CBoardDataAccess.h"
#include "tests/support/SmallDisk.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

namespace {

constexpr char Variable[] = "PROGRAMDATA";
constexpr char Mark[] = "VX440_TEST_ON_A_SMALL_DISK";

// A region whose block has the serial number 123456789.
QVector<uchar> Region()
{
    QVector<uchar> region(1200, 0);
    region[0] = 2;
    region[20] = 0x15;
    region[21] = 0xCD;
    region[22] = 0x5B;
    region[23] = 0x07;
    return region;
}

} // namespace

class EepromFullDiskTest : public QObject
{
    Q_OBJECT

private slots:
    void anImageThatFindsNoRoomIsNotSaved();
};

// Runs itself again where a disk of its own is mounted.
void EepromFullDiskTest::anImageThatFindsNoRoomIsNotSaved()
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
    CBoardDataAccess access;
    QVERIFY(access.SaveRegionImage(Region()));
    const QString folder = QFile::decodeName(qgetenv(Variable));
    const QDir eeprom(folder + "/Zelma-Kovinth/VX440/Eeprom");
    QVERIFY(QFile::remove(eeprom.filePath("VX440Read_VX440_123456.bin")));

    QFile rest(folder + "/rest");
    QVERIFY(FillSmallDisk(rest));

    QVERIFY(!access.SaveRegionImage(Region()));
    QVERIFY(rest.resize(0));
    QVERIFY(access.SaveRegionImage(Region()));
}

QTEST_GUILESS_MAIN(EepromFullDiskTest)

#include "EepromFullDiskTest.moc"
