// SPDX-License-Identifier: MIT

#include "tests/simulator/FirmwareBlocks.h"
#include "tests/support/UnitLog.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"

#include <QComboBox>
#include <QDir>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QToolButton>
#include <QtTest>

using namespace firmwarestream;

namespace {

/// A unit of the demo network, and what becomes of it.
struct Unit
{
    const char* name;
    QString address;
    QString mac;
    QString serial;
    QString firmware;
    bool knowsRotors;
    QString azimuthDifference; ///< the first parameter that it is given
    QString azimuthCommand;
    QString polarCommand;
    QString newAddress;
    QString addressCommand;
    QString productIndex; ///< firmware 3.0 and later tells it, from the EEPROM
    QString loadedStatus; ///< what the status line ends with when the pages are filled
    QString nextFirmware;
};

const Unit Units[] = {
    {"new firmware", "192.168.0.129", "02:4C:7E:00:01:29", "000129", "3.10", true, "70",
        "HCF 0046000300160001000200020000000001F4001400320000",
        "VCF 01410003003C0001000200050000000001F4001900320000", "192.168.0.135",
        "CF1 C0A80087FFFF0000", "01.00", "Eeprom data valid", "3.11"},
    {"old firmware", "192.168.0.130", "02:4C:7E:00:01:30", "000130", "2.50", false, "450",
        "HCF 01C20003009600010002000A0000000007D00014",
        "VCF 01410003003C0001000200050000000001F40019", "192.168.0.136", "CF1 C0A80088FFFF0000", "",
        "Device motor configuration read successfully!", "2.51"},
};

const QString OldMask = "255.255.255.0";
const QString NewMask = "255.255.0.0";

/// What the pages ask a unit for when the tool has connected to it.
QStringList Loading(const Unit& unit)
{
    QStringList commands{"*IDN?", "GET:OPTION:INTERNAL?", "GET:OPTION:DESC?", "CF0", "CF0"};
    if (unit.knowsRotors) {
        commands << "CF7 00400000"
                 << "CF7 004004B0";
    }
    return commands;
}

QString InHex(const QByteArray& bytes)
{
    return QString::fromLatin1(bytes.toHex().toUpper());
}

/// The lines of an options page, from left to right and from top to bottom.
QStringList LinesOf(const char* box)
{
    QStringList lines;
    const auto fields = Find<QGroupBox>(box)->findChildren<QLineEdit*>();
    for (const QLineEdit* const field : fields) {
        lines.append(field->text());
    }
    return lines;
}

} // namespace

/// A technician works at the units of the demo network, one after the other in one window. Each
/// step is compared with what the window shows and with what the unit wrote down. The process ends
/// with 0 when the window has closed and all was right.
class WholeSessionTest : public WarningsFail
{
    Q_OBJECT

private:
    const Unit* unit = nullptr;
    QScopedPointer<UnitLog> record;
    int comparedCommands = 0;
    QTemporaryDir folder;
    QStringList movedUnits;

    void CompareLoaded(const QString& address)
    {
        QCOMPARE(ConnectionLine(), "Connected to " + address);
        QCOMPARE(Find<QPushButton>("btnConnect")->text(), "Connected");
        QCOMPARE(StatusLine(), unit->loadedStatus);
        CompareTaken(Loading(*unit));
    }

    // The version ends with the carriage return of the unit's answer.
    void CompareFields(const QVector<QPair<const char*, QString>>& fields)
    {
        QStringList shown;
        QStringList expected;
        for (const auto& field : fields) {
            const QString name = QString(field.first) + ' ';
            shown.append(name + Find<QLineEdit>(field.first)->text().trimmed());
            expected.append(name + field.second);
        }
        QCOMPARE(shown, expected);
    }

    // All that the unit wrote down since it was compared last: these and no others.
    void CompareTaken(const QStringList& commands)
    {
        QTRY_COMPARE(record->Commands().mid(comparedCommands), commands);
        comparedCommands += commands.size();
    }

    // With the path of the unit's file, which it gives back.
    QString AnswerFileDialogOf(const char* button)
    {
        const QString path = folder.filePath(unit->serial + ".txt");
        ClickAndChooseFile(Find<QPushButton>(button), path);
        return path;
    }

    void Connect()
    {
        ConnectTo(unit->address);
        CompareLoaded(unit->address);
    }

    void LookAtTheIdentity()
    {
        ShowPage("Info");
        CompareFields({{"txtMacAddress", unit->mac}, {"txtPartNumber", "4400.1290.02"},
            {"txtProductIndex", unit->productIndex}, {"txtSerialNumber", unit->serial},
            {"txtVersionNumber", unit->firmware}});
    }

    void LookAtTheAddresses()
    {
        ShowPage("IP Configuration");
        CompareFields({{"txtNewIpAddress", unit->address}, {"txtNewSubnetMask", OldMask}});
        QVERIFY(Find<QPushButton>("btnSendIpAddress")->isEnabled());
    }

    void LookAtTheRotators()
    {
        ShowPage("Azimuth Configuration");
        CompareFields({{"0", "500"}, {"1", "3"}, {"2", "150"}, {"3", "10"}, {"4", "0"}, {"5", "0"},
            {"6", "2000"}, {"7", "20"}});
        QCOMPARE(Find<QComboBox>("listRotors")->isVisible(), unit->knowsRotors);
        ShowPage("Pol/Eval Configuration");
        CompareFields({{"0", "99"}, {"1", "3"}, {"2", "60"}, {"3", "5"}, {"4", "0"}, {"5", "0"},
            {"6", "500"}, {"7", "20"}});
        QCOMPARE(Find<QComboBox>("listRotors")->isVisible(), unit->knowsRotors);
    }

    void LookAtTheOptions()
    {
        ShowPage("Options");
        Click(Find<QPushButton>("btnReadOptionsFromDevice"));
        QCOMPARE(StatusLine(), "Options read from device successfully.");
        CompareTaken({"GET:OPTION:INTERNAL?", "GET:OPTION:DESC?"});
        QCOMPARE(LinesOf("boxOptionAzimuthRotator").last(), "ProSisTel");
        QCOMPARE(LinesOf("boxOptionPolarRotator").last(), "YAESU G-550");
    }

    // A unit with old firmware knows no rotators by name: a parameter is typed.
    void ChangeTheAzimuthRotator()
    {
        ShowPage("Azimuth Configuration");
        if (unit->knowsRotors) {
            Click(Find<QComboBox>("listRotors"));
            Type("YAESU");
            Press(Qt::Key_Return);
            CompareFields({{"2", "22"}, {"8", "50"}, {"txtRotorType", "Potentiometer"}});
        } else {
            Overtype(Find<QLineEdit>("0"), unit->azimuthDifference);
        }
        CompareFields({{"0", unit->azimuthDifference}});
        Click(Find<QPushButton>("btnSendToDevice"));
        QCOMPARE(StatusLine(), "Azimuth Motor configuration sent successfully.");
        CompareTaken({unit->azimuthCommand});
    }

    void ChangeThePolarRotator()
    {
        ShowPage("Pol/Eval Configuration");
        Overtype(Find<QLineEdit>("0"), "321");
        Overtype(Find<QLineEdit>("7"), "25");
        Click(Find<QPushButton>("btnSendToDevice"));
        QCOMPARE(StatusLine(), "Polar Motor configuration sent successfully.");
        CompareTaken({unit->polarCommand});
        Click(Find<QPushButton>("btnReceiveFromDevice"));
        QCOMPARE(StatusLine(), "Device motor configuration read successfully!");
        CompareTaken({"CF0"});
        CompareFields({{"0", "321"}, {"7", "25"}});
    }

    void WriteTheFile()
    {
        const QString path = AnswerFileDialogOf("btnWriteToFile");
        QCOMPARE(StatusLine(), "Saved to file " + path);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QStringList lines = QString::fromLatin1(file.readAll()).split('\n');
        const QStringList wanted{"Identnumber=4400.1290.02", "Serialnumber=" + unit->serial,
            "MAC=" + unit->mac, "IP=" + unit->address, "Subnet=" + OldMask,
            "Azimuth Slow Motion Difference (SMD)=" + unit->azimuthDifference,
            "Polar Slow Motion Difference (SMD)=321", "Polar Loops Inside (MOT)=25"};
        for (const QString& line : wanted) {
            QVERIFY2(lines.contains(line), qPrintable(line));
        }
    }

    void ReadTheFile()
    {
        ShowPage("Azimuth Configuration");
        Overtype(Find<QLineEdit>("0"), "77");
        AnswerFileDialogOf("btnReadFromFile");
        QCOMPARE(StatusLine(), "Read file successfully.");
        CompareFields({{"0", unit->azimuthDifference}});
    }

    void ChangeTheAddress()
    {
        ShowPage("IP Configuration");
        Overtype(Find<QLineEdit>("txtNewIpAddress"), unit->newAddress);
        Overtype(Find<QLineEdit>("txtNewSubnetMask"), NewMask);
        Click(Find<QPushButton>("btnSendIpAddress"));
        QCOMPARE(StatusLine(), "Ip Address & Subset Mask changed successfully.");
        QCOMPARE(ConnectionLine(), "Connected to " + unit->newAddress);
        CompareFields({{"txtIpAddress", unit->newAddress}, {"txtNewIpAddress", unit->newAddress},
            {"txtNewSubnetMask", NewMask}});
        CompareTaken({unit->addressCommand});
        movedUnits.append(unit->newAddress + ' ' + unit->mac.toLower());
    }

    // In this range there is a computer, too.
    void FindTheUnitInTheSearch()
    {
        ShowPage("Detect Z&K Device");
        Overtype(Find<QLineEdit>("txtStartIpAddress"), "192.168.0.131");
        Overtype(Find<QLineEdit>("txtEndIpAddress"), "192.168.0.141");
        Click(Find<QPushButton>("btnFindDevices"));
        QCOMPARE(StatusLine(), "Detect Z&K Devices: Ready");
        QCOMPARE(ListedDevices(*MainWindow()), movedUnits);
    }

    void ConnectToTheNewAddress()
    {
        Click(Find<QPushButton>("btnConnect"));
        CompareLoaded(unit->newAddress);
        ShowPage("Info");
        CompareFields({{"txtMacAddress", unit->mac}, {"txtSerialNumber", unit->serial}});
        ShowPage("IP Configuration");
        CompareFields({{"txtNewIpAddress", unit->newAddress}, {"txtNewSubnetMask", NewMask}});
        ShowPage("Azimuth Configuration");
        CompareFields({{"0", unit->azimuthDifference}});
        ShowPage("Pol/Eval Configuration");
        CompareFields({{"0", "321"}, {"7", "25"}});
    }

    void SendTheFirmware()
    {
        QFile image(folder.filePath("VX440.cyacd"));
        QVERIFY(image.open(QIODevice::WriteOnly));
        const QByteArray content = Image(1136);
        QCOMPARE(image.write(content), qint64(content.size()));
        image.close();
        ShowPage("Update FW");
        QVERIFY(!Find<QPushButton>("btnUpdateFirmware")->isEnabled());
        ClickAndChooseFile(Find<QToolButton>("btnSelectFirmware"), image.fileName());
        CompareFields({{"txtFirmwareFile", "VX440.cyacd"}});
        Click(Find<QPushButton>("btnLoadFirmware"));
        QCOMPARE(StatusLine(), "Firmware sent to device successfully!");
        CompareTaken({"CF3 " + InHex(Blocks(content).first()), "CF4 " + InHex(Checksum(content))});
        QVERIFY(Find<QPushButton>("btnUpdateFirmware")->isEnabled());
    }

    void UpdateTheFirmware()
    {
        Click(Find<QPushButton>("btnUpdateFirmware"));
        QCOMPARE(StatusLine(), "Firmware Updated successfully to v" + unit->nextFirmware + "\r.");
        CompareTaken({"CF5 " + InHex(QByteArray(255, '\0')), "*IDN?", "CF8"});
        ShowPage("Info");
        CompareFields(
            {{"txtSerialNumber", unit->serial}, {"txtVersionNumber", unit->nextFirmware}});
    }

private slots:
    void aSessionAtAUnit_data()
    {
        QTest::addColumn<int>("number");
        int number = 0;
        for (const Unit& one : Units) {
            QTest::newRow(one.name) << number++;
        }
    }
    void aSessionAtAUnit()
    {
        QFETCH(int, number);
        unit = &Units[number];
        const QDir logs(qEnvironmentVariable("VX440_UNIT_LOGS"));
        record.reset(new UnitLog(logs.filePath(QString("unit-%1.log").arg(unit->address))));
        comparedCommands = 0;
        const struct
        {
            const char* name;
            void (WholeSessionTest::*take)();
        } steps[] = {
            {"connects", &WholeSessionTest::Connect},
            {"looks who the unit is", &WholeSessionTest::LookAtTheIdentity},
            {"looks at its addresses", &WholeSessionTest::LookAtTheAddresses},
            {"looks at its rotators", &WholeSessionTest::LookAtTheRotators},
            {"looks at its options and reads them again", &WholeSessionTest::LookAtTheOptions},
            {"changes the azimuth rotator and sends it",
                &WholeSessionTest::ChangeTheAzimuthRotator},
            {"changes the polar rotator, sends it and receives it",
                &WholeSessionTest::ChangeThePolarRotator},
            {"writes the configuration to a file", &WholeSessionTest::WriteTheFile},
            {"reads the azimuth rotator from the file", &WholeSessionTest::ReadTheFile},
            {"gives the unit another address", &WholeSessionTest::ChangeTheAddress},
            {"finds it there in the search", &WholeSessionTest::FindTheUnitInTheSearch},
            {"connects again and finds what was set", &WholeSessionTest::ConnectToTheNewAddress},
            {"sends a firmware image", &WholeSessionTest::SendTheFirmware},
            {"has it installed", &WholeSessionTest::UpdateTheFirmware},
        };
        for (const auto& step : steps) {
            qInfo("%s", step.name);
            (this->*step.take)();
            if (QTest::currentTestFailed()) {
                return;
            }
        }
    }
};

VX440_WINDOW_TEST_MAIN(WholeSessionTest)
#include "WholeSessionTest.moc"
