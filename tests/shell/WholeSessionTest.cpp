#include "tests/simulator/FirmwareBlocks.h"
#include "tests/support/UnitLog.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"

#include <QComboBox>
#include <QDir>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QToolButton>
#include <QtTest>

#include <iterator>

using namespace firmwarestream;

namespace {

/// A unit of the demo network, and what becomes of it.
struct Unit
{
    const char* name;
    const char* address;
    const char* mac;
    const char* serial;
    const char* firmware;
    bool knowsRotors;
    const char* azimuthDifference; ///< the first parameter that it is given
    const char* azimuthCommand;
    const char* polarCommand;
    const char* newAddress;
    const char* addressCommand;
    const char* productIndex; ///< firmware 3.0 and later tells it, from the EEPROM
    const char* loadedStatus; ///< what the status line ends with when the pages are filled
    const char* nextFirmware;
};

constexpr Unit Units[] = {
    {"new firmware", "192.168.0.129", "02:4C:7E:00:01:29", "000129", "3.10", true, "70",
        "HCF 0046000300160001000200020000000001F4001400320000",
        "VCF 01410003003C0001000200050000000001F4001900320000", "192.168.0.135",
        "CF1 C0A80087FFFF0000", "01.00", "Eeprom data valid", "3.11"},
    {"old firmware", "192.168.0.130", "02:4C:7E:00:01:30", "000130", "2.50", false, "450",
        "HCF 01C20003009600010002000A0000000007D00014",
        "VCF 01410003003C0001000200050000000001F40019", "192.168.0.136", "CF1 C0A80088FFFF0000", "",
        "Device motor configuration read successfully!", "2.51"},
};

constexpr char OldMask[] = "255.255.255.0";
constexpr char NewMask[] = "255.255.0.0";

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
    struct Step
    {
        const char* name;
        void (WholeSessionTest::*take)();
    };
    static const Step Steps[];

    const Unit* unit = nullptr;
    QScopedPointer<UnitLog> record;
    int comparedCommands = 0;
    QTemporaryDir folder;
    QStringList movedUnits;

    void Connect();
    void LookAtTheIdentity();
    void LookAtTheAddresses();
    void LookAtTheRotators();
    void LookAtTheFirmware();
    void LookAtTheOptions();
    void LookAtTheSearch();
    void ChangeTheAzimuthRotator();
    void ChangeThePolarRotator();
    void WriteTheFile();
    void ReadTheFile();
    void ChangeTheAddress();
    void FindTheUnitInTheSearch();
    void ConnectToTheNewAddress();
    void SendTheFirmware();
    void UpdateTheFirmware();

    void CompareLoaded(const char* address);
    void CompareFields(const QVector<QPair<const char*, const char*>>& fields);
    void CompareTaken(const QStringList& commands);
    QString AnswerFileDialogOf(const char* button);

private slots:
    void aSessionAtAUnit_data();
    void aSessionAtAUnit();
};

const WholeSessionTest::Step WholeSessionTest::Steps[] = {
    {"connects", &WholeSessionTest::Connect},
    {"looks who the unit is", &WholeSessionTest::LookAtTheIdentity},
    {"looks at the page for its firmware", &WholeSessionTest::LookAtTheFirmware},
    {"looks at its addresses", &WholeSessionTest::LookAtTheAddresses},
    {"looks at its rotators", &WholeSessionTest::LookAtTheRotators},
    {"looks at its options and reads them again", &WholeSessionTest::LookAtTheOptions},
    {"looks at the search", &WholeSessionTest::LookAtTheSearch},
    {"changes the azimuth rotator and sends it", &WholeSessionTest::ChangeTheAzimuthRotator},
    {"changes the polar rotator and sends it", &WholeSessionTest::ChangeThePolarRotator},
    {"writes the configuration to a file", &WholeSessionTest::WriteTheFile},
    {"reads the azimuth rotator from the file", &WholeSessionTest::ReadTheFile},
    {"gives the unit another address", &WholeSessionTest::ChangeTheAddress},
    {"finds it there in the search", &WholeSessionTest::FindTheUnitInTheSearch},
    {"connects again and finds what was set", &WholeSessionTest::ConnectToTheNewAddress},
    {"sends a firmware image", &WholeSessionTest::SendTheFirmware},
    {"has it installed", &WholeSessionTest::UpdateTheFirmware},
};

void WholeSessionTest::aSessionAtAUnit_data()
{
    QTest::addColumn<int>("number");
    int number = 0;
    for (const Unit& one : Units) {
        QTest::newRow(one.name) << number++;
    }
}

void WholeSessionTest::aSessionAtAUnit()
{
    QFETCH(int, number);
    unit = &Units[number];
    const QDir logs(qEnvironmentVariable("VX440_UNIT_LOGS"));
    record.reset(new UnitLog(logs.filePath(QString("unit-%1.log").arg(QString(unit->address)))));
    comparedCommands = 0;
    for (const Step& step : Steps) {
        qInfo("%s", step.name);
        (this->*step.take)();
        if (QTest::currentTestFailed()) {
            return;
        }
    }
}

void WholeSessionTest::Connect()
{
    ConnectTo(QString(unit->address));
    CompareLoaded(unit->address);
}

void WholeSessionTest::LookAtTheIdentity()
{
    ShowPage("Info");
    CompareFields({{"txtMacAddress", unit->mac}, {"txtPartNumber", "4400.1290.02"},
        {"txtProductIndex", unit->productIndex}, {"txtSerialNumber", unit->serial},
        {"txtVersionNumber", unit->firmware}});
}

void WholeSessionTest::LookAtTheFirmware()
{
    ShowPage("Update FW");
    QVERIFY(Find<QToolButton>("btnSelectFirmware")->isEnabled());
    QVERIFY(!Find<QPushButton>("btnUpdateFirmware")->isEnabled());
}

void WholeSessionTest::LookAtTheOptions()
{
    ShowPage("Options");
    Click(Find<QPushButton>("btnReadOptionsFromDevice"));
    QCOMPARE(StatusLine(), "Options read from device successfully.");
    CompareTaken({"GET:OPTION:INTERNAL?", "GET:OPTION:DESC?"});
    QCOMPARE(LinesOf("boxOptionAzimuthRotator").last(), "ProSisTel");
    QCOMPARE(LinesOf("boxOptionPolarRotator").last(), "YAESU G-550");
}

void WholeSessionTest::LookAtTheAddresses()
{
    ShowPage("IP Configuration");
    CompareFields({{"txtNewIpAddress", unit->address}, {"txtNewSubnetMask", OldMask}});
    QVERIFY(Find<QPushButton>("btnSendIpAddress")->isEnabled());
}

void WholeSessionTest::LookAtTheRotators()
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

void WholeSessionTest::LookAtTheSearch()
{
    ShowPage("Detect Z&K Device");
    QVERIFY(Find<QPushButton>("btnFindDevices")->isEnabled());
}

// A unit with old firmware knows no rotators by name: a parameter is typed.
void WholeSessionTest::ChangeTheAzimuthRotator()
{
    ShowPage("Azimuth Configuration");
    if (unit->knowsRotors) {
        Click(Find<QComboBox>("listRotors"));
        Type("YAESU");
        Press(Qt::Key_Return);
        CompareFields({{"2", "22"}, {"8", "50"}, {"txtRotorType", "Potentiometer"}});
    } else {
        Overtype(Find<QLineEdit>("0"), QString(unit->azimuthDifference));
    }
    CompareFields({{"0", unit->azimuthDifference}});
    Click(Find<QPushButton>("btnSendToDevice"));
    QCOMPARE(StatusLine(), "Azimuth Motor configuration sent successfully.");
    CompareTaken({QString(unit->azimuthCommand)});
}

void WholeSessionTest::ChangeThePolarRotator()
{
    ShowPage("Pol/Eval Configuration");
    Overtype(Find<QLineEdit>("0"), "321");
    Overtype(Find<QLineEdit>("7"), "25");
    Click(Find<QPushButton>("btnSendToDevice"));
    QCOMPARE(StatusLine(), "Polar Motor configuration sent successfully.");
    CompareTaken({QString(unit->polarCommand)});
}

void WholeSessionTest::WriteTheFile()
{
    const QString path = AnswerFileDialogOf("btnWriteToFile");
    QCOMPARE(StatusLine(), QString("Saved to file ") + path);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QStringList lines = QString::fromLatin1(file.readAll()).split('\n');
    const QStringList wanted{"Identnumber=4400.1290.02", QString("Serialnumber=") + unit->serial,
        QString("MAC=") + unit->mac, QString("IP=") + unit->address, QString("Subnet=") + OldMask,
        QString("Azimuth Slow Motion Difference (SMD)=") + unit->azimuthDifference,
        "Polar Slow Motion Difference (SMD)=321", "Polar Loops Inside (MOT)=25"};
    for (const QString& line : wanted) {
        QVERIFY2(lines.contains(line), qPrintable(line));
    }
}

void WholeSessionTest::ReadTheFile()
{
    ShowPage("Azimuth Configuration");
    Overtype(Find<QLineEdit>("0"), "77");
    AnswerFileDialogOf("btnReadFromFile");
    QCOMPARE(StatusLine(), "Read file successfully.");
    CompareFields({{"0", unit->azimuthDifference}});
}

void WholeSessionTest::ChangeTheAddress()
{
    ShowPage("IP Configuration");
    Overtype(Find<QLineEdit>("txtNewIpAddress"), QString(unit->newAddress));
    Overtype(Find<QLineEdit>("txtNewSubnetMask"), QString(NewMask));
    Click(Find<QPushButton>("btnSendIpAddress"));
    QCOMPARE(StatusLine(), "Ip Address & Subset Mask changed successfully.");
    QCOMPARE(ConnectionLine(), QString("Connected to ") + QString(unit->newAddress));
    CompareFields({{"txtIpAddress", unit->newAddress}, {"txtNewIpAddress", unit->newAddress},
        {"txtNewSubnetMask", NewMask}});
    CompareTaken({QString(unit->addressCommand)});
    movedUnits.append(QString(unit->newAddress) + QLatin1Char(' ') + QString(unit->mac).toLower());
}

// In this range there is a computer, too.
void WholeSessionTest::FindTheUnitInTheSearch()
{
    ShowPage("Detect Z&K Device");
    Overtype(Find<QLineEdit>("txtStartIpAddress"), "192.168.0.131");
    Overtype(Find<QLineEdit>("txtEndIpAddress"), "192.168.0.141");
    Click(Find<QPushButton>("btnFindDevices"));
    QCOMPARE(StatusLine(), "Detect Z&K Devices: Ready");
    QStringList found;
    const auto* const table = Find<QTableWidget>("tblDetectDevices");
    for (int row = 0; row < table->rowCount(); ++row) {
        found.append(table->item(row, 0)->text() + QLatin1Char(' ') + table->item(row, 1)->text());
    }
    QCOMPARE(found, movedUnits);
}

void WholeSessionTest::ConnectToTheNewAddress()
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

void WholeSessionTest::SendTheFirmware()
{
    QFile image(folder.filePath("VX440.cyacd"));
    QVERIFY(image.open(QIODevice::WriteOnly));
    const QByteArray content = Image(1136);
    QCOMPARE(image.write(content), qint64(content.size()));
    image.close();
    ShowPage("Update FW");
    ClickAndChooseFile(Find<QToolButton>("btnSelectFirmware"), image.fileName());
    CompareFields({{"txtFirmwareFile", "VX440.cyacd"}});
    Click(Find<QPushButton>("btnLoadFirmware"));
    QCOMPARE(StatusLine(), "Firmware sent to device successfully!");
    CompareTaken({QString("CF3 ") + InHex(Blocks(content).first()),
        QString("CF4 ") + InHex(Checksum(content))});
    QVERIFY(Find<QPushButton>("btnUpdateFirmware")->isEnabled());
}

void WholeSessionTest::UpdateTheFirmware()
{
    Click(Find<QPushButton>("btnUpdateFirmware"));
    QCOMPARE(StatusLine(),
        QString("Firmware Updated successfully to v") + QString(unit->nextFirmware) + "\r.");
    CompareTaken({QString("CF5 ") + InHex(QByteArray(255, '\0')), "*IDN?", "CF8"});
    ShowPage("Info");
    CompareFields({{"txtSerialNumber", unit->serial}, {"txtVersionNumber", unit->nextFirmware}});
}

void WholeSessionTest::CompareLoaded(const char* address)
{
    QCOMPARE(ConnectionLine(), QString("Connected to ") + QString(address));
    QCOMPARE(Find<QPushButton>("btnConnect")->text(), "Connected");
    QCOMPARE(StatusLine(), QString(unit->loadedStatus));
    CompareTaken(Loading(*unit));
}

// The version ends with the carriage return of the unit's answer.
void WholeSessionTest::CompareFields(const QVector<QPair<const char*, const char*>>& fields)
{
    QStringList shown;
    QStringList expected;
    for (const auto& field : fields) {
        const QString name = QString(field.first) + ' ';
        shown.append(name + Find<QLineEdit>(field.first)->text().trimmed());
        expected.append(name + QString(field.second));
    }
    QCOMPARE(shown, expected);
}

// All that the unit wrote down since it was compared last: these and no others.
void WholeSessionTest::CompareTaken(const QStringList& commands)
{
    QTRY_COMPARE(record->Commands().mid(comparedCommands), commands);
    comparedCommands += commands.size();
}

// With the path of the unit's file, which it gives back.
QString WholeSessionTest::AnswerFileDialogOf(const char* button)
{
    const QString path = folder.filePath(QString(unit->serial) + ".txt");
    ClickAndChooseFile(Find<QPushButton>(button), path);
    return path;
}

VX440_WINDOW_TEST_MAIN(WholeSessionTest)
#include "WholeSessionTest.moc"
