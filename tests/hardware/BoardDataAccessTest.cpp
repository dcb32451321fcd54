// SPDX-License-Identifier: MIT

#include "hardware/CBoardDataAccess.h"
#include "link/CDeviceCommunication.h"
#include "shell/CCustomProgressDialog.h"
#include "tests/hardware/EepromImages.h"
#include "tests/support/Warnings.h"
#include "tests/support/scripted/ConnectingThread.h"
#include "tests/support/scripted/ScriptedLink.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtEndian>
#include <QtTest>

#include <tuple>

namespace {

const QByteArray DeviceRegion = Filled(Block("15CD5B07", "DEVICE"), RegionSize, 7); // 123456789
const QByteArray BoardRegion = Filled(Block("D2040000", "BOARD"), RegionSize, 11);  // 1234
const QByteArray Erased(RegionSize, '\xFF');

const QString DeviceFile = "VX440Read_VX440_123456.bin";
const QString BoardFile = "VX440Read_VX440_001234.bin";

const QStringList TenRequests =
    Texts("send 4346370D00FF0000|send 4346370D00FF00FF|send 4346370D00FF01FE|"
          "send 4346370D00FF02FD|send 4346370D00B403FC|send 4346370D00FF04B0|"
          "send 4346370D00FF05AF|send 4346370D00FF06AE|send 4346370D00FF07AD|"
          "send 4346370D00B408AC");

} // namespace

class BoardDataAccessTest : public WarningsFail
{
    Q_OBJECT

    // Connected to a unit that answers what its memory holds, as far as that goes.
    void StartWith(const QByteArray& memory)
    {
        folder.reset(new QTemporaryDir);
        qputenv("PROGRAMDATA", QFile::encodeName(folder->path()));
        progress.clear();
        image = {1, 2, 3};
        dialog.reset(new CCustomProgressDialog("Reading", 0, 7));
        scripted::Reset();
        scripted::WhenSent([this, memory](const QByteArray& frame) {
            progress.append(dialog->value());
            const int size = qFromBigEndian<quint16>(frame.constData() + 4);
            const int offset = qFromBigEndian<quint16>(frame.constData() + 6);
            scripted::DeliverAfter(1000, memory.mid(offset, size));
        });
        TheDeviceCommunication()->StartConnection("127.0.0.1");
        AwaitConnectingThread();
        scripted::ForgetEvents();
    }

    bool ReadBlock(QStringList& texts, quint16 offset = 0)
    {
        return access.ReadBlockTexts(TheDeviceCommunication(), texts, offset);
    }
    bool ReadImages()
    {
        return access.ReadEepromImages(TheDeviceCommunication(), image, dialog.data());
    }
    bool ReadRegion(int offset, int size)
    {
        return access.ReadEepromRegion(
            TheDeviceCommunication(), image, quint16(offset), quint16(size), dialog.data());
    }

    QDir Eeprom() const { return QDir(folder->filePath("Zelma-Kovinth/VX440/Eeprom")); }
    QStringList Files() const { return Eeprom().entryList(QDir::Files, QDir::Name); }
    QByteArray File(const QString& name) const { return Content(Eeprom().filePath(name)); }

    QScopedPointer<QTemporaryDir> folder;
    QVector<int> progress; // before each request
    QScopedPointer<CCustomProgressDialog> dialog;
    CBoardDataAccess access;
    QVector<uchar> image;

private slots:
    void init()
    {
        WarningsFail::init();
        StartWith(DeviceRegion + BoardRegion);
    }

    void theBlockOfARegionIsARow()
    {
        const std::tuple<quint16, const char*, const char*> rows[] = {
            {0, "send 4346370D00400000",
                "VX440|DEVICE|123456/789|1234.5678.02|02|03|01.05|02.10|2026-03-09"},
            {1200, "send 4346370D004004B0",
                "VX440|BOARD|001234/000|1234.5678.02|02|03|01.05|02.10|2026-03-09"},
        };
        for (const auto& [offset, request, row] : rows) {
            scripted::ForgetEvents();
            QStringList texts = Texts("left|over");
            QVERIFY(ReadBlock(texts, offset));
            QCOMPARE(texts, Texts(row));
            QCOMPARE(scripted::Events(), (QStringList{"sleep 10", request, "sleep 1000"}));
        }
        QCOMPARE(Files(), QStringList());
    }

    void whatIsNoBlockGivesNoTexts()
    {
        for (const QByteArray& answer :
            {QByteArray(), DeviceRegion.left(1), OfType(DeviceRegion, 100), QByteArray(64, '\xFF'),
                QByteArray(64, '\0'), QByteArray(64, '\xA5')}) {
            StartWith(answer);
            QStringList texts = Texts("left|over");
            QVERIFY2(!ReadBlock(texts), answer.toHex());
            QCOMPARE(texts, QStringList());
        }
    }

    void aBlockThatCannotBeAskedForGivesNoTexts()
    {
        scripted::FailSendsFrom(1);
        QStringList texts = Texts("left|over");
        QVERIFY(!ReadBlock(texts));
        QCOMPARE(texts, QStringList());
        QVERIFY(!TheDeviceCommunication()->IsConnected());
    }

    void bothRegionsTakeTenRequestsOfASecond()
    {
        QVERIFY(ReadImages());
        QCOMPARE(scripted::Actions(), TenRequests);
        QCOMPARE(scripted::Sleeps().count(1000), 10);
        QCOMPARE(Bytes(image), BoardRegion);
    }

    // Under their serial numbers; what stood there is replaced whole.
    void bothRegionsAreSaved()
    {
        for (const bool stoodThere : {false, true}) {
            for (const QString& name : {DeviceFile, BoardFile}) {
                QFile file(Eeprom().filePath(name));
                QVERIFY(!stoodThere || (file.open(QIODevice::WriteOnly) &&
                                           file.write(QByteArray(3000, 'x')) == 3000));
            }
            QVERIFY(ReadImages());
            QCOMPARE(Files(), (QStringList{BoardFile, DeviceFile}));
            QCOMPARE(File(DeviceFile), DeviceRegion);
            QCOMPARE(File(BoardFile), BoardRegion);
        }
    }

    void twoBlocksOfOneSerialNumberShareAFile()
    {
        const QByteArray board = Filled(Block("14CD5B07", "BOARD"), RegionSize, 11); // 123456788
        StartWith(DeviceRegion + board);
        QVERIFY(ReadImages());
        QCOMPARE(Files(), QStringList{DeviceFile});
        QCOMPARE(File(DeviceFile), board);
    }

    void theDialogCountsRequestsAndBearsTheLast()
    {
        dialog->setValue(3);
        QVERIFY(ReadImages());
        QCOMPARE(progress, (QVector<int>{0, 255, 510, 765, 1020, 1275, 1530, 1785, 2040, 2295}));
        QCOMPARE(dialog->minimum(), 0);
        QCOMPARE(dialog->maximum(), 2400);
        QVERIFY(dialog->isVisible());
        QVERIFY(!dialog->wasCanceled());
        dialog->setValue(2400);
        QVERIFY(!dialog->isVisible());
    }

    void theBoardRegionAloneDecides()
    {
        const std::tuple<QByteArray, bool, QStringList> rows[] = {
            {DeviceRegion + BoardRegion, true, {BoardFile, DeviceFile}},
            {Erased + BoardRegion, true, {BoardFile}},
            {OfType(DeviceRegion, 100) + BoardRegion, true, {BoardFile}},
            {DeviceRegion + Erased, false, {DeviceFile}},
            {DeviceRegion + OfType(BoardRegion, 100), false, {DeviceFile}},
            {Erased + Erased, false, {}},
            {QByteArray(), false, {}},
        };
        for (const auto& [memory, result, files] : rows) {
            StartWith(memory);
            QCOMPARE(ReadImages(), result);
            QCOMPARE(scripted::Actions(), TenRequests);
            QCOMPARE(Files(), files);
        }
    }

    // A failed request ends its region; the second region is begun all the same.
    void aLinkLostAtAnyRequestFails()
    {
        for (int request = 1; request <= 10; ++request) {
            StartWith(DeviceRegion + BoardRegion);
            scripted::FailSendsFrom(request);
            QVERIFY(!ReadImages());
            QVERIFY(!TheDeviceCommunication()->IsConnected());
            const bool inDevice = request <= 5;
            QCOMPARE(scripted::Sleeps().count(1000), inDevice ? request + 1 : request);
            QCOMPARE(image.size(), inDevice ? 0 : (request - 6) * 255);
            QCOMPARE(Files(), inDevice ? QStringList() : QStringList{DeviceFile});
        }
    }

    void withoutADirectoryTheReadingFails()
    {
        qputenv("PROGRAMDATA", QFile::encodeName(folder->filePath("missing")));
        QVERIFY(!ReadImages());
        QCOMPARE(scripted::Actions(), TenRequests);
        QVERIFY(QDir(folder->path()).isEmpty());
    }

    void aRegionIsReadInRequestsOf255Bytes()
    {
        const std::tuple<int, int, QStringList, bool> rows[] = {
            {0, 1, {"send 4346370D00010000"}, false},
            {0, 43, {"send 4346370D002B0000"}, false},
            {0, 44, {"send 4346370D002C0000"}, true},
            {1200, 255, {"send 4346370D00FF04B0"}, true},
            {1200, 256, {"send 4346370D00FF04B0", "send 4346370D000105AF"}, true},
            {0, 510, {"send 4346370D00FF0000", "send 4346370D00FF00FF"}, true},
            {0, 1200, TenRequests.mid(0, 5), true},
        };
        for (const auto& [offset, size, requests, result] : rows) {
            scripted::ForgetEvents();
            dialog->setMaximum(2400);
            QCOMPARE(ReadRegion(offset, size), result);
            QCOMPARE(scripted::Actions(), requests);
            QCOMPARE(Bytes(image), (DeviceRegion + BoardRegion).mid(offset, size));
        }
    }

    void aRegionOfNothingSendsNothing()
    {
        QVERIFY(!ReadRegion(0, 0));
        QCOMPARE(scripted::Events(), QStringList());
        QVERIFY(image.isEmpty());
        QVERIFY(Files().isEmpty());
    }

    void anImageWithoutAValidBlockLeavesNoFile()
    {
        for (const QByteArray& bytes : {QByteArray(), DeviceRegion.left(8), DeviceRegion.left(43),
                 OfType(DeviceRegion, 100), Erased}) {
            QVERIFY2(!access.SaveRegionImage(Image(bytes)), bytes.toHex());
            QVERIFY(Files().isEmpty());
        }
    }

    void theSmallestImageIsSaved()
    {
        const QVector<uchar> block = Image(DeviceRegion.left(44));
        QVERIFY(access.SaveRegionImage(block));
        QCOMPARE(File(DeviceFile), DeviceRegion.left(44));
        QCOMPARE(Bytes(block), DeviceRegion.left(44));
    }
};

QTEST_MAIN(BoardDataAccessTest)

#include "BoardDataAccessTest.moc"
