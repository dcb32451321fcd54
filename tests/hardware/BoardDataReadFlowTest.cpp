#include "link/CDeviceCommunication.h"
#include "model/CDeviceDatabase.h"
#include "tests/hardware/BoardDataWindow.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"

#include <QDir>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

namespace {

constexpr int RegionSize = 1200;

QStringList Texts(const char* texts)
{
    return QString(texts).split('|');
}

// A block with that serial number, part number 12345678.02 and product index 1.05, and bytes behind
// it that tell where they stand.
QByteArray Region(const char* serialLittleEndian, const char* name, int seed)
{
    QByteArray region = QByteArray::fromHex("0200000000000000000000004E61BC0002036900") +
                        QByteArray::fromHex(serialLittleEndian) +
                        QByteArray::fromHex("695C0000D200") +
                        QByteArray(name).leftJustified(14, '\0');
    while (region.size() < RegionSize) {
        region.append(static_cast<char>((region.size() * seed) % 251));
    }
    return region;
}

const QByteArray DeviceRegion = Region("15CD5B07", "DEVICE", 7); // 123456789
const QByteArray BoardRegion = Region("00000080", "BOARD", 11);  // printed as -21474/83648

const QString DeviceFile = "VX440Read_VX440_123456.bin";
const QString BoardFile = "VX440Read_VX440_-21474.bin";

const QString Valid = "Eeprom data valid";
const QString Invalid = "Eeprom data invalid";

QByteArray Content(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

QStringList Names()
{
    return {TheDeviceDatabase()->index(0, 13).data().toString(),
        TheDeviceDatabase()->index(0, 19).data().toString()};
}

} // namespace

/// Reads from the simulated unit, in the program, by clicks.
class BoardDataReadFlowTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();

    void connectingShowsTheProductIndex();
    void bothRegionsComeAsFiles();
    void aFaultOfABlockIsSeenInTheModel_data();
    void aFaultOfABlockIsSeenInTheModel();
    void aFaultOfARegionIsTold_data();
    void aFaultOfARegionIsTold();
    void aMemoryWithoutABoardBlockIsTold_data();
    void aMemoryWithoutABoardBlockIsTold();

private:
    QString MakeFile(const QByteArray& content);
    QDir Eeprom() const;

    QTemporaryDir folder;
    int files = 0;
    std::unique_ptr<BoardDataWindow> window;
    std::unique_ptr<SimulatorProcess> unit;
};

void BoardDataReadFlowTest::initTestCase()
{
    qputenv("PROGRAMDATA", QFile::encodeName(folder.path()));
    window = std::make_unique<BoardDataWindow>();
    unit = std::make_unique<SimulatorProcess>(
        QStringList{"--eeprom", MakeFile(DeviceRegion + BoardRegion)});
    QVERIFY(unit->IsReady());
}

void BoardDataReadFlowTest::cleanupTestCase()
{
    TheDeviceCommunication()->Disconnect();
    window.reset();
}

void BoardDataReadFlowTest::init()
{
    WarningsFail::init();
    QVERIFY(unit->Tell("clear"));
    if (ConnectionLine() != QString("Connected to ") + unit->Address()) {
        ConnectTo(unit->Address());
    }
    unit->Forget();
    QDir(Eeprom()).removeRecursively();
    for (const int set : {0, 1}) {
        TheDeviceDatabase()->SetBoardName("kept", set);
    }
}

QString BoardDataReadFlowTest::MakeFile(const QByteArray& content)
{
    QFile file(folder.filePath(QString::number(++files)));
    const bool made = file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
    return made ? file.fileName() : QString();
}

QDir BoardDataReadFlowTest::Eeprom() const
{
    return QDir(folder.filePath("Zelma-Kovinth/VX440/Eeprom"));
}

void BoardDataReadFlowTest::connectingShowsTheProductIndex()
{
    ShowPage("Info");
    ConnectTo(unit->Address());
    QCOMPARE(unit->Commands(),
        Texts("*IDN?|GET:OPTION:INTERNAL?|GET:OPTION:DESC?|CF0|CF0|CF7 00400000|CF7 004004B0"));
    QCOMPARE(StatusLine(), Valid);
    QCOMPARE(Find<QLineEdit>("txtProductIndex")->text(), "01.05");
    QCOMPARE(Find<QLineEdit>("txtPartNumber")->text(), "1234.5678.02");
    QCOMPARE(Find<QLineEdit>("txtSerialNumber")->text(), "123456");
    QCOMPARE(Names(), Texts("DEVICE|BOARD"));
}

void BoardDataReadFlowTest::bothRegionsComeAsFiles()
{
    QVERIFY(QDir().mkpath(Eeprom().path()));
    QFile before(Eeprom().filePath(BoardFile));
    QVERIFY(before.open(QIODevice::WriteOnly));
    QCOMPARE(before.write(QByteArray(5000, 'x')), qint64(5000));
    before.close();

    Click(window->Child<QPushButton>("btnReadAll"));

    QCOMPARE(
        unit->Commands(), Texts("CF7 00FF0000|CF7 00FF00FF|CF7 00FF01FE|CF7 00FF02FD|CF7 00B403FC|"
                                "CF7 00FF04B0|CF7 00FF05AF|CF7 00FF06AE|CF7 00FF07AD|CF7 00B408AC|"
                                "CF7 00400000|CF7 004004B0"));
    QCOMPARE(StatusLine(), "Successfully read from device EEPROM.");
    QCOMPARE(Eeprom().entryList(QDir::Files).size(), 2);
    QCOMPARE(Content(Eeprom().filePath(DeviceFile)), DeviceRegion);
    QCOMPARE(Content(Eeprom().filePath(BoardFile)), BoardRegion);
    QCOMPARE(Names(), Texts("DEVICE|BOARD"));
}

void BoardDataReadFlowTest::aFaultOfABlockIsSeenInTheModel_data()
{
    QTest::addColumn<QString>("fault");
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QString>("status");
    const auto row = [](const char* fault, const char* names, const QString& status) {
        QTest::newRow(fault) << QString(fault) << Texts(names) << status;
    };
    row("silent:CF7:1", "kept|BOARD", Valid);
    row("silent:CF7:2", "DEVICE|kept", Invalid);
    row("garbage:CF7:1", "kept|BOARD", Valid);
    row("garbage:CF7:2", "DEVICE|kept", Invalid);
    row("bytewise:CF7", "DEVICE|BOARD", Valid);
    // Half an answer ends inside the name, and the other region's block is one: data for the tool.
    row("short:CF7:1", "DE|BOARD", Valid);
    row("short:CF7:2", "DEVICE|BO", Valid);
    row("wrong:CF7:1", "BOARD|BOARD", Valid);
    row("wrong:CF7:2", "DEVICE|DEVICE", Valid);
    row("resetting:CF7:2", "DEVICE|kept", Invalid);
    row("resetting:CF7:1", "kept|kept", Invalid);
}

void BoardDataReadFlowTest::aFaultOfABlockIsSeenInTheModel()
{
    QFETCH(QString, fault);
    QVERIFY(unit->Tell(QString("fault ") + fault));
    window->Tab()->ConnectionStatusChanged();
    QTEST(Names(), "names");
    QTEST(StatusLine(), "status");
    if (fault.startsWith("resetting")) {
        // A reset behind the last request is noticed by the next command.
        window->Tab()->ConnectionStatusChanged();
        QCOMPARE(ConnectionLine(), "Not Connected ");
        QVERIFY(!window->IsEnabled("btnReadAll"));
    }
}

void BoardDataReadFlowTest::aFaultOfARegionIsTold_data()
{
    QTest::addColumn<QString>("fault");
    QTest::addColumn<bool>("read");
    QTest::addColumn<QStringList>("files");
    const auto row = [](const char* fault, bool read, const QStringList& files) {
        QTest::newRow(fault) << QString(fault) << read << files;
    };
    row("silent:CF7:1", true, {BoardFile});
    row("silent:CF7:6", false, {DeviceFile});
    row("resetting:CF7:8", false, {DeviceFile});
    row("resetting:CF7:3", false, {});
}

void BoardDataReadFlowTest::aFaultOfARegionIsTold()
{
    QFETCH(QString, fault);
    QFETCH(bool, read);
    QVERIFY(unit->Tell(QString("fault ") + fault));
    Click(window->Child<QPushButton>("btnReadAll"));
    QCOMPARE(StatusLine(),
        read ? "Successfully read from device EEPROM." : "Could not read data from device EEPROM.");
    QTEST(Eeprom().entryList(QDir::Files), "files");
    QCOMPARE(Names(), read ? Texts("DEVICE|BOARD") : Texts("kept|kept"));
    const bool connected = ConnectionLine() == QString("Connected to ") + unit->Address();
    QCOMPARE(connected, fault.startsWith("silent"));
}

void BoardDataReadFlowTest::aMemoryWithoutABoardBlockIsTold_data()
{
    QTest::addColumn<QByteArray>("memory");
    QTest::newRow("erased") << QByteArray(2 * RegionSize, '\xFF');
    QTest::newRow("of another type") << DeviceRegion + '\x64' + BoardRegion.mid(1);
}

void BoardDataReadFlowTest::aMemoryWithoutABoardBlockIsTold()
{
    QFETCH(QByteArray, memory);
    SimulatorProcess other({"--eeprom", MakeFile(memory)});
    QVERIFY(other.IsReady());
    ConnectTo(other.Address());
    QCOMPARE(StatusLine(), Invalid);
    const bool erased = memory.startsWith('\xFF');
    QCOMPARE(Find<QLineEdit>("txtProductIndex")->text(), erased ? QString() : "01.05");
    Click(window->Child<QPushButton>("btnReadAll"));
    QCOMPARE(StatusLine(), "Could not read data from device EEPROM.");
    QCOMPARE(Eeprom().entryList(QDir::Files), erased ? QStringList() : QStringList{DeviceFile});
}

VX440_WINDOW_TEST_MAIN(BoardDataReadFlowTest)

#include "BoardDataReadFlowTest.moc"
