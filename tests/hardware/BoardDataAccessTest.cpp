#include "hardware/CBoardDataAccess.h"
#include "link/CDeviceCommunication.h"
#include "shell/CCustomProgressDialog.h"
#include "tests/support/Warnings.h"
#include "tests/support/scripted/ScriptedLink.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtEndian>
#include <QtTest>

namespace {

constexpr int RegionSize = 1200;

// A mandatory block: part number 12345678.02, hardware code 3, product index 1.05, a serial number,
// 2026-03-09, test instruction index -0.01.
QByteArray Block(const char* serialLittleEndian, const char* name)
{
    return QByteArray::fromHex("0200000000000000000000004E61BC0002036900") +
           QByteArray::fromHex(serialLittleEndian) + QByteArray::fromHex("695C0000FFFF") +
           QByteArray(name).leftJustified(14, '\0');
}

// A region of that block and of bytes that tell where they stand.
QByteArray Region(const QByteArray& block, int seed)
{
    QByteArray region = block;
    while (region.size() < RegionSize) {
        region.append(static_cast<char>((region.size() * seed) % 251));
    }
    return region;
}

const QByteArray DeviceRegion = Region(Block("15CD5B07", "DEVICE"), 7); // 123456789
const QByteArray BoardRegion = Region(Block("D2040000", "BOARD"), 11);  // 1234

const QString DeviceFile = "VX440Read_VX440_123456.bin";
const QString BoardFile = "VX440Read_VX440_001234.bin";

const QStringList TenRequests{"send 4346370D00FF0000", "send 4346370D00FF00FF",
    "send 4346370D00FF01FE", "send 4346370D00FF02FD", "send 4346370D00B403FC",
    "send 4346370D00FF04B0", "send 4346370D00FF05AF", "send 4346370D00FF06AE",
    "send 4346370D00FF07AD", "send 4346370D00B408AC"};

QByteArray OfAnotherType(QByteArray region)
{
    region[0] = 100;
    return region;
}

QByteArray Bytes(const QVector<uchar>& image)
{
    return QByteArray(reinterpret_cast<const char*>(image.constData()), image.size());
}

QVector<uchar> Image(const QByteArray& bytes)
{
    QVector<uchar> image(bytes.size());
    std::copy(bytes.cbegin(), bytes.cend(), image.begin());
    return image;
}

QByteArray Content(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

QStringList Texts(const char* texts)
{
    return QString::fromLatin1(texts).split('|');
}

} // namespace

class BoardDataAccessTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void init();

    void theBlockOfARegionIsARow_data();
    void theBlockOfARegionIsARow();
    void whatIsNoBlockGivesNoTexts_data();
    void whatIsNoBlockGivesNoTexts();
    void aBlockThatCannotBeAskedForGivesNoTexts();

    void bothRegionsTakeTenRequestsOfASecond();
    void bothRegionsAreSavedUnderTheirSerialNumbers();
    void filesThatStoodThereAreReplacedWhole();
    void twoBlocksOfOneSerialNumberShareAFile();
    void theDialogCountsRequestsAndBearsTheLast();
    void theBoardRegionAloneDecides_data();
    void theBoardRegionAloneDecides();
    void aLinkLostAtAnyRequestFails_data();
    void aLinkLostAtAnyRequestFails();
    void withoutADirectoryTheReadingFails();

    void aRegionIsReadInRequestsOf255Bytes_data();
    void aRegionIsReadInRequestsOf255Bytes();
    void aRegionOfNothingSendsNothing();
    void aRegionReplacesWhatTheImageHeld();

    void anImageWithoutAValidBlockLeavesNoFile_data();
    void anImageWithoutAValidBlockLeavesNoFile();
    void theSmallestImageIsSaved();

private:
    QDir Eeprom() const;
    QStringList Files() const { return Eeprom().entryList(QDir::Files, QDir::Name); }
    QByteArray File(const QString& name) const { return Content(Eeprom().filePath(name)); }

    QScopedPointer<QTemporaryDir> folder;
    QByteArray memory;
    QVector<int> progress; // before each request
    QScopedPointer<CCustomProgressDialog> dialog;
    CBoardDataAccess access;
    QVector<uchar> image;
};

// The unit answers what its memory holds, as far as that goes.
void BoardDataAccessTest::init()
{
    WarningsFail::init();
    folder.reset(new QTemporaryDir);
    qputenv("PROGRAMDATA", QFile::encodeName(folder->path()));
    memory = DeviceRegion + BoardRegion;
    progress.clear();
    image = {1, 2, 3};
    dialog.reset(new CCustomProgressDialog("Reading", 0, 7));
    scripted::Reset();
    scripted::WhenSent([this](const QByteArray& frame) {
        progress.append(dialog->value());
        const int size = qFromBigEndian<quint16>(frame.constData() + 4);
        const int offset = qFromBigEndian<quint16>(frame.constData() + 6);
        scripted::DeliverAfter(1000, memory.mid(offset, size));
    });
    TheDeviceCommunication()->StartConnection("127.0.0.1");
    TheDeviceCommunication()->wait();
    scripted::ForgetEvents();
}

QDir BoardDataAccessTest::Eeprom() const
{
    return QDir(folder->filePath("Zelma-Kovinth/VX440/Eeprom"));
}

void BoardDataAccessTest::theBlockOfARegionIsARow_data()
{
    QTest::addColumn<int>("offset");
    QTest::addColumn<QString>("request");
    QTest::addColumn<QStringList>("row");
    QTest::newRow("device") << 0 << "send 4346370D00400000"
                            << Texts("VX440|DEVICE|123456/789|1234.5678.02|02|03|01.05|00.-1|"
                                     "2026-03-09");
    QTest::newRow("board") << 1200 << "send 4346370D004004B0"
                           << Texts("VX440|BOARD|001234/000|1234.5678.02|02|03|01.05|00.-1|"
                                    "2026-03-09");
}

void BoardDataAccessTest::theBlockOfARegionIsARow()
{
    QFETCH(int, offset);
    QFETCH(QString, request);
    QStringList texts = Texts("left|over");
    QVERIFY(access.ReadBlockTexts(TheDeviceCommunication(), texts, quint16(offset)));
    QTEST(texts, "row");
    QCOMPARE(scripted::Events(), (QStringList{"sleep 10", request, "sleep 1000"}));
    QCOMPARE(Files(), QStringList());
}

void BoardDataAccessTest::whatIsNoBlockGivesNoTexts_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::newRow("silence") << QByteArray();
    QTest::newRow("one byte") << DeviceRegion.left(1);
    QTest::newRow("a block of another type") << OfAnotherType(DeviceRegion);
    QTest::newRow("erased") << QByteArray(64, '\xFF');
    QTest::newRow("zeros") << QByteArray(64, '\0');
    QTest::newRow("garbage") << QByteArray(64, '\xA5');
}

void BoardDataAccessTest::whatIsNoBlockGivesNoTexts()
{
    QFETCH(QByteArray, answer);
    memory = answer;
    QStringList texts = Texts("left|over");
    QVERIFY(!access.ReadBlockTexts(TheDeviceCommunication(), texts, 0));
    QCOMPARE(texts, QStringList());
}

void BoardDataAccessTest::aBlockThatCannotBeAskedForGivesNoTexts()
{
    scripted::FailSendsFrom(1);
    QStringList texts = Texts("left|over");
    QVERIFY(!access.ReadBlockTexts(TheDeviceCommunication(), texts, 0));
    QCOMPARE(texts, QStringList());
    QVERIFY(!TheDeviceCommunication()->IsConnected());
}

void BoardDataAccessTest::bothRegionsTakeTenRequestsOfASecond()
{
    QVERIFY(access.ReadEepromImages(TheDeviceCommunication(), image, dialog.data()));
    QCOMPARE(scripted::Actions(), TenRequests);
    QCOMPARE(scripted::Sleeps().count(1000), 10);
    QCOMPARE(Bytes(image), BoardRegion);
}

void BoardDataAccessTest::bothRegionsAreSavedUnderTheirSerialNumbers()
{
    QVERIFY(access.ReadEepromImages(TheDeviceCommunication(), image, dialog.data()));
    QCOMPARE(Files(), (QStringList{BoardFile, DeviceFile}));
    QCOMPARE(File(DeviceFile), DeviceRegion);
    QCOMPARE(File(BoardFile), BoardRegion);
}

void BoardDataAccessTest::filesThatStoodThereAreReplacedWhole()
{
    QDir().mkpath(Eeprom().path());
    for (const QString& name : {DeviceFile, BoardFile}) {
        QFile file(Eeprom().filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(QByteArray(3000, 'x')), qint64(3000));
    }
    QVERIFY(access.ReadEepromImages(TheDeviceCommunication(), image, dialog.data()));
    QCOMPARE(File(DeviceFile), DeviceRegion);
    QCOMPARE(File(BoardFile), BoardRegion);
}

void BoardDataAccessTest::twoBlocksOfOneSerialNumberShareAFile()
{
    const QByteArray board = Region(Block("14CD5B07", "BOARD"), 11); // 123456788
    memory = DeviceRegion + board;
    QVERIFY(access.ReadEepromImages(TheDeviceCommunication(), image, dialog.data()));
    QCOMPARE(Files(), QStringList{DeviceFile});
    QCOMPARE(File(DeviceFile), board);
}

void BoardDataAccessTest::theDialogCountsRequestsAndBearsTheLast()
{
    dialog->setValue(3);
    QVERIFY(access.ReadEepromImages(TheDeviceCommunication(), image, dialog.data()));
    QCOMPARE(progress, (QVector<int>{0, 255, 510, 765, 1020, 1275, 1530, 1785, 2040, 2295}));
    QCOMPARE(dialog->minimum(), 0);
    QCOMPARE(dialog->maximum(), 2400);
    QVERIFY(dialog->isVisible());
    QVERIFY(!dialog->wasCanceled());
    dialog->setValue(2400);
    QVERIFY(!dialog->isVisible());
}

void BoardDataAccessTest::theBoardRegionAloneDecides_data()
{
    QTest::addColumn<QByteArray>("memory");
    QTest::addColumn<bool>("result");
    QTest::addColumn<QStringList>("files");
    const QByteArray erased(RegionSize, '\xFF');
    const QStringList both{BoardFile, DeviceFile};
    QTest::newRow("both good") << DeviceRegion + BoardRegion << true << both;
    QTest::newRow("device erased") << erased + BoardRegion << true << QStringList{BoardFile};
    QTest::newRow("device of another type")
        << OfAnotherType(DeviceRegion) + BoardRegion << true << QStringList{BoardFile};
    QTest::newRow("board erased") << DeviceRegion + erased << false << QStringList{DeviceFile};
    QTest::newRow("board of another type")
        << DeviceRegion + OfAnotherType(BoardRegion) << false << QStringList{DeviceFile};
    QTest::newRow("both erased") << erased + erased << false << QStringList();
    QTest::newRow("silence") << QByteArray() << false << QStringList();
}

void BoardDataAccessTest::theBoardRegionAloneDecides()
{
    QFETCH(QByteArray, memory);
    QFETCH(bool, result);
    QFETCH(QStringList, files);
    this->memory = memory;
    QCOMPARE(access.ReadEepromImages(TheDeviceCommunication(), image, dialog.data()), result);
    QCOMPARE(scripted::Actions(), TenRequests);
    QCOMPARE(Files(), files);
}

void BoardDataAccessTest::aLinkLostAtAnyRequestFails_data()
{
    QTest::addColumn<int>("request");
    for (int request = 1; request <= 10; ++request) {
        QTest::addRow("request %d", request) << request;
    }
}

// A failed request ends its region; the second region is begun all the same.
void BoardDataAccessTest::aLinkLostAtAnyRequestFails()
{
    QFETCH(int, request);
    scripted::FailSendsFrom(request);
    QVERIFY(!access.ReadEepromImages(TheDeviceCommunication(), image, dialog.data()));
    QVERIFY(!TheDeviceCommunication()->IsConnected());
    const bool inDevice = request <= 5;
    QCOMPARE(scripted::Sleeps().count(1000), inDevice ? request + 1 : request);
    QCOMPARE(image.size(), inDevice ? 0 : (request - 6) * 255);
    QCOMPARE(Files(), inDevice ? QStringList() : QStringList{DeviceFile});
}

void BoardDataAccessTest::withoutADirectoryTheReadingFails()
{
    qputenv("PROGRAMDATA", QFile::encodeName(folder->filePath("missing")));
    QVERIFY(!access.ReadEepromImages(TheDeviceCommunication(), image, dialog.data()));
    QCOMPARE(scripted::Actions(), TenRequests);
    QVERIFY(QDir(folder->path()).isEmpty());
}

void BoardDataAccessTest::aRegionIsReadInRequestsOf255Bytes_data()
{
    QTest::addColumn<int>("offset");
    QTest::addColumn<int>("size");
    QTest::addColumn<QStringList>("requests");
    QTest::addColumn<bool>("result");
    const auto row = [](int offset, int size, const QStringList& requests, bool result) {
        QTest::addRow("%d bytes from %d", size, offset) << offset << size << requests << result;
    };
    row(0, 1, {"send 4346370D00010000"}, false);
    row(0, 43, {"send 4346370D002B0000"}, false);
    row(0, 44, {"send 4346370D002C0000"}, true);
    row(1200, 255, {"send 4346370D00FF04B0"}, true);
    row(1200, 256, {"send 4346370D00FF04B0", "send 4346370D000105AF"}, true);
    row(0, 510, {"send 4346370D00FF0000", "send 4346370D00FF00FF"}, true);
    row(0, 1200, TenRequests.mid(0, 5), true);
}

void BoardDataAccessTest::aRegionIsReadInRequestsOf255Bytes()
{
    QFETCH(int, offset);
    QFETCH(int, size);
    QFETCH(QStringList, requests);
    dialog->setMaximum(2400);
    QTEST(access.ReadEepromRegion(
              TheDeviceCommunication(), image, quint16(offset), quint16(size), dialog.data()),
        "result");
    QCOMPARE(scripted::Actions(), requests);
    QCOMPARE(Bytes(image), memory.mid(offset, size));
}

void BoardDataAccessTest::aRegionOfNothingSendsNothing()
{
    QVERIFY(!access.ReadEepromRegion(TheDeviceCommunication(), image, 0, 0, dialog.data()));
    QCOMPARE(scripted::Events(), QStringList());
    QVERIFY(image.isEmpty());
    QVERIFY(Files().isEmpty());
}

void BoardDataAccessTest::aRegionReplacesWhatTheImageHeld()
{
    image = Image(BoardRegion);
    QVERIFY(access.ReadEepromRegion(TheDeviceCommunication(), image, 0, 100, dialog.data()));
    QCOMPARE(Bytes(image), DeviceRegion.left(100));
    QCOMPARE(Files(), QStringList{DeviceFile});
}

void BoardDataAccessTest::anImageWithoutAValidBlockLeavesNoFile_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("none") << QByteArray();
    QTest::newRow("a header") << DeviceRegion.left(8);
    QTest::newRow("a block that lacks a byte") << DeviceRegion.left(43);
    QTest::newRow("another type") << OfAnotherType(DeviceRegion);
    QTest::newRow("erased") << QByteArray(RegionSize, '\xFF');
}

void BoardDataAccessTest::anImageWithoutAValidBlockLeavesNoFile()
{
    QFETCH(QByteArray, bytes);
    QVERIFY(!access.SaveRegionImage(Image(bytes)));
    QVERIFY(Files().isEmpty());
}

void BoardDataAccessTest::theSmallestImageIsSaved()
{
    const QVector<uchar> block = Image(DeviceRegion.left(44));
    QVERIFY(access.SaveRegionImage(block));
    QCOMPARE(File(DeviceFile), DeviceRegion.left(44));
    QCOMPARE(Bytes(block), DeviceRegion.left(44));
}

QTEST_MAIN(BoardDataAccessTest)

#include "BoardDataAccessTest.moc"
