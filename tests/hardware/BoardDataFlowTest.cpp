// SPDX-License-Identifier: MIT

#include "link/CDeviceCommunication.h"
#include "model/CDeviceDatabase.h"
#include "tests/hardware/BoardDataWindow.h"
#include "tests/hardware/EepromImages.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"

#include <QDir>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QToolButton>
#include <QtTest>

#include <memory>
#include <tuple>

namespace {

const QByteArray DeviceRegion = Filled(Block("15CD5B07", "DEVICE"), RegionSize, 7); // 123456789
const QByteArray BoardRegion = Filled(Block("00000080", "BOARD"), RegionSize, 11);  // negative

const QString DeviceFile = "VX440Read_VX440_123456.bin";
const QString BoardFile = "VX440Read_VX440_-21474.bin";

const QString Valid = "Eeprom data valid";
const QString Invalid = "Eeprom data invalid";
const QString ReadFailed = "Could not read data from device EEPROM.";

const QStringList BlockRequests = Texts("CF7 00400000|CF7 004004B0");

QStringList Names()
{
    return {TheDeviceDatabase()->index(0, 13).data().toString(),
        TheDeviceDatabase()->index(0, 19).data().toString()};
}

} // namespace

/// Reads from the simulated unit and writes to it, in the program, by clicks.
class BoardDataFlowTest : public WarningsFail
{
    Q_OBJECT

    QDir Eeprom() const { return QDir(folder.filePath("Zelma-Kovinth/VX440/Eeprom")); }
    QStringList Files() const { return Eeprom().entryList(QDir::Files); }
    QByteArray SavedMemory() const { return Content(folder.filePath("saved.eeprom")); }

    QString MakeFile(const QByteArray& content)
    {
        QFile file(folder.filePath("data.bin"));
        const bool made = file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
        return made ? file.fileName() : QString();
    }

    void Write(const QByteArray& region, const QByteArray& content)
    {
        ClickAndChooseFile(
            window->Child<QToolButton>("btn" + region + "DataFileSelector"), MakeFile(content));
        Click(window->Child<QPushButton>("btnWrite" + region + "Data"));
    }

    // Without a fault, and connected.
    void StartAnew()
    {
        QVERIFY(unit->Tell("clear"));
        if (ConnectionLine() != "Connected to " + unit->Address()) {
            ConnectTo(unit->Address());
        }
        unit->Forget();
        Eeprom().removeRecursively();
        for (const int set : {0, 1}) {
            TheDeviceDatabase()->SetBoardName("kept", set);
        }
    }

    void ReadAll() { Click(window->Child<QPushButton>("btnReadAll")); }

    QTemporaryDir folder;
    std::unique_ptr<BoardDataWindow> window;
    std::unique_ptr<SimulatorProcess> unit;

private slots:
    void initTestCase()
    {
        qputenv("PROGRAMDATA", QFile::encodeName(folder.path()));
        window = std::make_unique<BoardDataWindow>();
        unit = std::make_unique<SimulatorProcess>(
            QStringList{"--eeprom", MakeFile(DeviceRegion + BoardRegion), "--save-eeprom",
                folder.filePath("saved.eeprom")});
        QVERIFY(unit->IsReady());
    }

    void cleanupTestCase()
    {
        TheDeviceCommunication()->Disconnect();
        window.reset();
    }

    void connectingShowsTheProductIndex()
    {
        ShowPage("Info");
        ConnectTo(unit->Address());
        QCOMPARE(unit->Commands(),
            Texts("*IDN?|GET:OPTION:INTERNAL?|GET:OPTION:DESC?|CF0|CF0") + BlockRequests);
        QCOMPARE(StatusLine(), Valid);
        QCOMPARE(Find<QLineEdit>("txtProductIndex")->text(), "01.05");
        QCOMPARE(Find<QLineEdit>("txtPartNumber")->text(), "1234.5678.02");
        QCOMPARE(Find<QLineEdit>("txtSerialNumber")->text(), "123456");
        QCOMPARE(Names(), Texts("DEVICE|BOARD"));
    }

    void bothRegionsComeAsFiles()
    {
        StartAnew();
        ReadAll();
        QCOMPARE(unit->Commands(),
            Texts("CF7 00FF0000|CF7 00FF00FF|CF7 00FF01FE|CF7 00FF02FD|CF7 00B403FC|"
                  "CF7 00FF04B0|CF7 00FF05AF|CF7 00FF06AE|CF7 00FF07AD|CF7 00B408AC") +
                BlockRequests);
        QCOMPARE(StatusLine(), "Successfully read from device EEPROM.");
        QCOMPARE(Files().size(), 2);
        QCOMPARE(Content(Eeprom().filePath(DeviceFile)), DeviceRegion);
        QCOMPARE(Content(Eeprom().filePath(BoardFile)), BoardRegion);
        QCOMPARE(Names(), Texts("DEVICE|BOARD"));
    }

    // Half an answer ends inside the name: what is missing cannot be told from data.
    void aFaultOfABlockIsSeenInTheModel()
    {
        const std::tuple<const char*, const char*, QString> rows[] = {
            {"silent:CF7:2", "DEVICE|kept", Invalid},
            {"short:CF7:1", "DE|BOARD", Valid},
        };
        for (const auto& [fault, names, status] : rows) {
            StartAnew();
            QVERIFY(unit->Tell(QString("fault ") + fault));
            window->Tab()->ConnectionStatusChanged();
            QCOMPARE(Names(), Texts(names));
            QCOMPARE(StatusLine(), status);
        }
    }

    void aFileReachesTheUnitButForItsLastByte()
    {
        StartAnew();
        const std::tuple<QByteArray, QString, int> rows[] = {
            {"Device", "0000", 1500}, {"Board", "04B0", 1200}};
        QByteArray memory = DeviceRegion + BoardRegion;
        for (const auto& [region, address, size] : rows) {
            unit->Forget();
            const QByteArray content = Filled(Block("D2040000", "REWRITTEN"), 1500).left(size);
            const QByteArray sent = content.left(1200).chopped(1);
            Write(region, content);
            QCOMPARE(unit->Commands(), QStringList("CF6 " + address + Hex(sent)) + BlockRequests);
            memory.replace(region == "Device" ? 0 : RegionSize, sent.size(), sent);
            QCOMPARE(SavedMemory(), memory);
            QCOMPARE(StatusLine(), "Data written to the device successfully.");
        }
        QCOMPARE(Names(), Texts("REWRITTEN|REWRITTEN"));
        QCOMPARE(window->TextOf("txtBoardSerialNumber"), "001234");
    }

    void anAnswerOfTheUnitIsTold()
    {
        const std::pair<QString, const char*> rows[] = {
            {"refusing", "EEPROM data write failed!"},
            {"garbage", "An error occoured during transmission."},
        };
        for (const auto& [fault, status] : rows) {
            StartAnew();
            QVERIFY(unit->Tell("fault " + fault + ":CF6"));
            Write("Device", DeviceRegion.left(45));
            QCOMPARE(StatusLine(), status);
            QCOMPARE(unit->Commands(), QStringList("CF6 0000" + Hex(DeviceRegion.left(44))));
            QCOMPARE(Names(), Texts("kept|kept"));
            QCOMPARE(window->TextOf("txtDeviceDataFile"), QString());
            QVERIFY(!window->IsEnabled("btnWriteDeviceData"));
        }
    }

    void aResetEndsTheReading()
    {
        StartAnew();
        QVERIFY(unit->Tell("fault resetting:CF7:3"));
        ReadAll();
        QCOMPARE(StatusLine(), ReadFailed);
        QCOMPARE(Files(), QStringList());
        QCOMPARE(Names(), Texts("kept|kept"));
        QCOMPARE(ConnectionLine(), "Not Connected ");
        QVERIFY(!window->IsEnabled("btnReadAll"));
    }

    void anOldUnitGetsItsNumbersAndKeepsItsMotors()
    {
        const QString azimuth = "501,502,503,504,505,506,507,508,509,510";
        const QString polar = "601,602,603,604,605,606,607,608,609,610";
        SimulatorProcess old({"--firmware", "2.99", "--azimuth", azimuth, "--polar", polar});
        QVERIFY(old.IsReady());
        ConnectTo(old.Address());
        QCOMPARE(old.Commands(), Texts("*IDN?|GET:OPTION:INTERNAL?|GET:OPTION:DESC?|CF0|CF0"));
        QVERIFY(!window->IsVisible("boxBoard"));
        TheDeviceDatabase()->SetMacAddress("02:4C:7E:00:01:29"); // the loopback has none
        window->Child<QLineEdit>("txtDevicePartNumber")->setText("9876.5432.10");
        window->Child<QLineEdit>("txtDeviceSerialNumber")->setText("424242");
        old.Forget();

        Click(window->Child<QPushButton>("btnWriteOld"));

        QCOMPARE(StatusLine(), "Board Data updated successfully. ");
        QCOMPARE(ConnectionLine(), "Connected to " + old.Address());
        QVERIFY(old.WaitForLine("connected "));
        QCOMPARE(old.Commands().size(), 1);
        QCOMPARE(old.Commands().first().size(), 4 + 2 * 127);
        QCOMPARE(old.State("part"), "9876.5432.10");
        QCOMPARE(old.State("serial"), "424242");
        QCOMPARE(old.State("mac"), "02:4C:7E:00:01:29");
        QCOMPARE(old.State("azimuth"), azimuth);
        QCOMPARE(old.State("polar"), polar);
        QCOMPARE(old.State("address"), old.Address());
        QCOMPARE(window->TextOf("txtDevicePartNumber"), "9876.5432.10");
        QCOMPARE(window->TextOf("txtDeviceSerialNumber"), "424242");
    }
};

VX440_WINDOW_TEST_MAIN(BoardDataFlowTest)

#include "BoardDataFlowTest.moc"
