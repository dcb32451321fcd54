#include "link/CDeviceCommunication.h"
#include "model/CDeviceDatabase.h"
#include "tests/hardware/BoardDataWindow.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QToolButton>
#include <QWindow>
#include <QtTest>

namespace {

QByteArray Content(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

QString Hex(const QByteArray& bytes)
{
    return QString::fromLatin1(bytes.toHex().toUpper());
}

// Part number 12345678.02, product index 1.05, serial number 123456789, 2026-03-09, name REWRITTEN.
const QByteArray Block = QByteArray::fromHex("0200000000000000000000004E61BC0002036900"
                                             "15CD5B07695C0000D200") +
                         QByteArray("REWRITTEN\0\0\0\0\0", 14);

QByteArray RegionFile(int size)
{
    QByteArray content = Block;
    while (content.size() < size) {
        content.append(static_cast<char>(content.size() % 251));
    }
    return content.left(size);
}

} // namespace

/// Writes to the simulated unit, in the program, by clicks.
class BoardDataWriteFlowTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void aFileReachesTheUnitButForItsLastByte_data();
    void aFileReachesTheUnitButForItsLastByte();
    void anAnswerOfTheUnitIsTold_data();
    void anAnswerOfTheUnitIsTold();
    void anOldUnitGetsItsNumbersAndKeepsItsMotors();

private:
    void WriteFile(const QByteArray& region, const QByteArray& content);
    void Retype(const char* field, const QString& text);
    QString Saved() const { return folder.filePath("saved.eeprom"); }
    QStringList UnitOptions() const { return {"--save-eeprom", Saved()}; }

    QTemporaryDir folder;
    std::unique_ptr<BoardDataWindow> window;
};

void BoardDataWriteFlowTest::initTestCase()
{
    qputenv("PROGRAMDATA", QFile::encodeName(folder.path()));
    window = std::make_unique<BoardDataWindow>();
}

void BoardDataWriteFlowTest::cleanupTestCase()
{
    TheDeviceCommunication()->Disconnect();
    window.reset();
}

void BoardDataWriteFlowTest::WriteFile(const QByteArray& region, const QByteArray& content)
{
    QFile file(folder.filePath("data.bin"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
    file.close();
    ClickAndChoose(window->Child<QToolButton>(("btn" + region + "DataFileSelector").constData()),
        file.fileName());
    Click(window->Child<QPushButton>(("btnWrite" + region + "Data").constData()));
}

void BoardDataWriteFlowTest::Retype(const char* field, const QString& text)
{
    Click(window->Child<QLineEdit>(field));
    QWindow* const keys = window->Tab()->windowHandle();
    QTest::keyClick(keys, Qt::Key_A, Qt::ControlModifier);
    for (const QChar character : text) {
        QTest::keyClick(keys, character.toLatin1());
    }
}

void BoardDataWriteFlowTest::aFileReachesTheUnitButForItsLastByte_data()
{
    QTest::addColumn<QByteArray>("region");
    QTest::addColumn<int>("offset");
    QTest::addColumn<QVector<int>>("sizes");
    QTest::newRow("device") << QByteArray("Device") << 0 << QVector<int>{1200};
    QTest::newRow("board") << QByteArray("Board") << 1200
                           << QVector<int>{0, 1, 2, 1199, 1200, 1500};
}

void BoardDataWriteFlowTest::aFileReachesTheUnitButForItsLastByte()
{
    QFETCH(QByteArray, region);
    QFETCH(int, offset);
    QFETCH(QVector<int>, sizes);
    SimulatorProcess unit(UnitOptions());
    QVERIFY(unit.IsReady());
    ConnectTo(unit.Address());
    WriteFile(region, Block + '\0'); // so that the memory is in the file
    QByteArray memory = Content(Saved());
    QCOMPARE(memory.mid(offset, Block.size()), Block);
    const QString address = offset == 0 ? "0000" : "04B0";
    const QStringList reading{"CF7 00400000", "CF7 004004B0"};
    for (const int size : qAsConst(sizes)) {
        unit.Forget();
        const QByteArray content = RegionFile(size);
        const QByteArray sent = content.left(qMin(size, 1200)).chopped(size > 0 ? 1 : 0);
        WriteFile(region, content);
        QCOMPARE(unit.Commands(), QStringList{QString("CF6 ") + address + Hex(sent)} + reading);
        QCOMPARE(Content(Saved()), memory.replace(offset, sent.size(), sent));
        QCOMPARE(StatusLine(), "Data written to the device successfully.");
    }
    QCOMPARE(window->TextOf(("txt" + region + "Name").constData()), "REWRITTEN");
    QCOMPARE(window->TextOf(("txt" + region + "SerialNumber").constData()), "123456");
}

void BoardDataWriteFlowTest::anAnswerOfTheUnitIsTold_data()
{
    QTest::addColumn<QString>("fault");
    QTest::addColumn<QString>("status");
    QTest::newRow("refused") << "refusing"
                             << "EEPROM data write failed!";
    QTest::newRow("no answer") << "silent"
                               << "An error occoured during transmission.";
    QTest::newRow("reset") << "resetting"
                           << "An error occoured during transmission.";
}

void BoardDataWriteFlowTest::anAnswerOfTheUnitIsTold()
{
    QFETCH(QString, fault);
    SimulatorProcess unit(UnitOptions() + QStringList{"--fault", fault + ":CF6"});
    QVERIFY(unit.IsReady());
    ConnectTo(unit.Address());
    const QString name = window->TextOf("txtDeviceName");
    unit.Forget();
    WriteFile("Device", Block + '\0');
    QTEST(StatusLine(), "status");
    QCOMPARE(unit.Commands(), QStringList{QString("CF6 0000") + Hex(Block)});
    QCOMPARE(window->TextOf("txtDeviceName"), name);
    QCOMPARE(window->TextOf("txtDeviceDataFile"), QString());
    QVERIFY(!window->IsEnabled("btnWriteDeviceData"));
}

void BoardDataWriteFlowTest::anOldUnitGetsItsNumbersAndKeepsItsMotors()
{
    const QString azimuth = "501,502,503,504,505,506,507,508,509,510";
    const QString polar = "601,602,603,604,605,606,607,608,609,610";
    SimulatorProcess unit({"--firmware", "2.99", "--azimuth", azimuth, "--polar", polar});
    QVERIFY(unit.IsReady());
    ConnectTo(unit.Address());
    QCOMPARE(unit.Commands(),
        (QStringList{"*IDN?", "GET:OPTION:INTERNAL?", "GET:OPTION:DESC?", "CF0", "CF0"}));
    QVERIFY(!window->IsVisible("boxBoard"));
    TheDeviceDatabase()->SetMacAddress("02:4C:7E:00:01:29"); // the loopback has none
    Retype("txtDevicePartNumber", "9876.5432.10");
    Retype("txtDeviceSerialNumber", "424242");
    unit.Forget();

    Click(window->Child<QPushButton>("btnWriteOld"));

    QCOMPARE(StatusLine(), "Board Data updated successfully. ");
    QCOMPARE(ConnectionLine(), QString("Connected to ") + unit.Address());
    QVERIFY(unit.WaitForLine("connected "));
    const QStringList commands = unit.Commands();
    QCOMPARE(commands.size(), 1);
    QCOMPARE(commands.first().size(), 4 + 2 * 127);
    QCOMPARE(unit.State("part"), "9876.5432.10");
    QCOMPARE(unit.State("serial"), "424242");
    QCOMPARE(unit.State("mac"), "02:4C:7E:00:01:29");
    QCOMPARE(unit.State("azimuth"), azimuth);
    QCOMPARE(unit.State("polar"), polar);
    QCOMPARE(unit.State("address"), unit.Address());
    QCOMPARE(window->TextOf("txtDevicePartNumber"), "9876.5432.10");
    QCOMPARE(window->TextOf("txtDeviceSerialNumber"), "424242");
}

// Qt's dialog keeps its last folder in the user's settings: not in those of whoever runs the test.
int main(int argc, char** argv)
{
    const QTemporaryDir settings;
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(settings.path()));
    BoardDataWriteFlowTest test;
    return RunInTheProgram(test, argc, argv);
}

#include "BoardDataWriteFlowTest.moc"
