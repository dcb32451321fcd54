#include "model/CDeviceDatabase.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"
#include "tests/support/platform/SystemFiles.h"

#include <QComboBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QTabWidget>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QtTest>

namespace {

using Words = QVector<ushort>;

constexpr int Azimuth = 0;
constexpr int Polar = 1;
constexpr const char* NameOf[] = {"Azimuth", "Polar"};
constexpr const char* TitleOf[] = {"Azimuth Configuration", "Pol/Eval Configuration"};

const Words ModelWords[] = {{301, 302, 303, 304, 305, 306, 307, 308, 309, 310, 31, 0},
    {401, 402, 403, 1, 405, 406, 407, 408, 409, 65535, 41, 1}};

const QByteArray Head = "#---------------------------------------------\n"
                        "# VX 440 Config\n"
                        "# Do NOT Edit, file is generated automatically\n"
                        "#---------------------------------------------\n"
                        "\n"
                        "Identnumber=PN-7\n"
                        "Serialnumber=SN0815\n"
                        "MAC=02:4C:7E:00:00:81\n"
                        "IP=192.168.0.77\n"
                        "Subnet=255.255.255.0\n";
const QByteArray AzimuthLines = "Azimuth Slow Motion Difference (SMD)=301\n"
                                "Azimuth Motion Hang Up Difference (MHD)=302\n"
                                "Azimuth Step Difference (SD)=303\n"
                                "Azimuth Step Sleep (SS)=304\n"
                                "Azimuth Pulse Duration (PD)=305\n"
                                "Azimuth Max Position Difference (OD)=306\n"
                                "Azimuth Max Position From Right (ORS)=307\n"
                                "Azimuth Max Position From Left (OLS)=308\n"
                                "Azimuth Max Motion Hang Up Loop (MMHL)=309\n"
                                "Azimuth Loops Inside (MOT)=310\n";
const QByteArray PolarLines = "Polar Slow Motion Difference (SMD)=401\n"
                              "Polar Motion Hang Up Difference (MHD)=402\n"
                              "Polar Step Difference (SD)=403\n"
                              "Polar Step Sleep (SS)=1\n"
                              "Polar Pulse Duration (PD)=405\n"
                              "Polar Max Position Difference (OD)=406\n"
                              "Polar Max Position From Right (ORS)=407\n"
                              "Polar Max Position From Left (OLS)=408\n"
                              "Polar Max Motion Hang Up Loop (MMHL)=409\n"
                              "Polar Loops Inside (MOT)=65535\n";
const QByteArray OldFile = Head + AzimuthLines + PolarLines;
const QByteArray NewFile = Head + AzimuthLines + "Azimuth Slow Motion Speed (SMS)=31\n" +
                           PolarLines + "Polar Slow Motion Speed (SMS)=41\n";

const QString EmptyFileName = "Empty filename!!";
const QString ReadDone = "Read file successfully.";
const QString WriteFailed = "Could not write device configuration to file !!";

CDeviceDatabase& Model()
{
    return *TheDeviceDatabase();
}

template<class Widget>
Widget* Child(int motor, const char* name)
{
    const auto* const pages = Find<QTabWidget>("tabWidget");
    for (int page = 0; page < pages->count(); ++page) {
        if (pages->tabText(page) == QString(TitleOf[motor])) {
            return pages->widget(page)->findChild<Widget*>(QString(name));
        }
    }
    return nullptr;
}

QLineEdit* Edit(int motor, int row)
{
    return qobject_cast<QLineEdit*>(
        Child<QTableWidget>(motor, "tblMotorConfiguration")->cellWidget(row, 0));
}

Words Stored(int motor)
{
    Words words;
    for (int parameter = 0; parameter < 12; ++parameter) {
        words.append(Model().GetMotorParameter(motor, parameter));
    }
    return words;
}

Words With(Words words, int parameter, int value)
{
    words[parameter] = static_cast<ushort>(value);
    return words;
}

struct Asked
{
    QString title;
    QStringList filters;
    QString name;
    QFileDialog::AcceptMode mode = QFileDialog::AcceptOpen;
    QString status;
    int times = 0;
};

void Note(Asked& asked, const QFileDialog& dialog)
{
    asked.title = dialog.windowTitle();
    asked.filters = dialog.nameFilters();
    asked.name = dialog.findChild<QLineEdit*>("fileNameEdit")->text();
    asked.mode = dialog.acceptMode();
    asked.status = StatusLine();
    ++asked.times;
}

// Presses a button and answers its file dialog; an empty path cancels.
Asked Press(int motor, const char* button, const QString& path)
{
    ShowPage(TitleOf[motor]);
    Asked asked;
    ClickAndChooseFile(Child<QPushButton>(motor, button), path,
        [&asked](const QFileDialog& dialog) { Note(asked, dialog); });
    return asked;
}

Asked Read(int motor, const QString& path)
{
    return Press(motor, "btnReadFromFile", path);
}

Asked Write(int motor, const QString& path)
{
    return Press(motor, "btnWriteToFile", path);
}

QByteArray Content(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

void AddMotors()
{
    QTest::addColumn<int>("motor");
    QTest::newRow("azimuth") << Azimuth;
    QTest::newRow("polar") << Polar;
}

void AddMotorsAndGenerations()
{
    QTest::addColumn<int>("motor");
    QTest::addColumn<QString>("firmware");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("lines");
    for (const int motor : {Azimuth, Polar}) {
        QTest::addRow("%s old", NameOf[motor]) << motor << "2.99" << OldFile << 30;
        QTest::addRow("%s unknown", NameOf[motor]) << motor << QString() << OldFile << 30;
        QTest::addRow("%s new", NameOf[motor]) << motor << "3.0" << NewFile << 32;
    }
}

} // namespace

class ConfigurationFileTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void initTestCase();

    void aWrittenFileHoldsTheseBytes_data() { AddMotorsAndGenerations(); }
    void aWrittenFileHoldsTheseBytes();
    void aWrittenFileIsReadByEitherTab_data() { AddMotorsAndGenerations(); }
    void aWrittenFileIsReadByEitherTab();
    void theSaveDialogAsks_data() { AddMotors(); }
    void theSaveDialogAsks();
    void theOpenDialogAsks_data() { AddMotors(); }
    void theOpenDialogAsks();
    void aCancelledDialogChangesNothing_data() { AddMotors(); }
    void aCancelledDialogChangesNothing();
    void whatIsTypedInEitherTableIsWritten_data() { AddMotors(); }
    void whatIsTypedInEitherTableIsWritten();
    void aCellOutOfRangeWritesNoFile_data();
    void aCellOutOfRangeWritesNoFile();
    void theAzimuthsErrorComesFirst();
    void aNameIsGivenItsSuffix_data();
    void aNameIsGivenItsSuffix();
    void anExistingFileIsReplacedAfterAQuestion();
    void aFileThatCannotBeWrittenSaysSo_data();
    void aFileThatCannotBeWrittenSaysSo();
    void aFileThatCannotBeOpenedLeavesAnEmptyStatus();
    void aFileWithoutPermissionLeavesAnEmptyStatus();
    void aLineIsJudged_data();
    void aLineIsJudged();
    void anInvalidLineStopsTheReading_data();
    void anInvalidLineStopsTheReading();
    void aLineWithoutEndIsShownAsFarAsItWasRead_data();
    void aLineWithoutEndIsShownAsFarAsItWasRead();
    void aPipeOrADeviceLeavesAnEmptyStatus_data();
    void aPipeOrADeviceLeavesAnEmptyStatus();
    void theOtherMotorsLinesAreIgnored_data() { AddMotors(); }
    void theOtherMotorsLinesAreIgnored();
    void aReadFileKeepsTheRotorAndItsType_data() { AddMotors(); }
    void aReadFileKeepsTheRotorAndItsType();
    void oldFirmwareTakesTheSpeedLineToo();

private:
    QString NewPath();
    QString MakeFile(const QByteArray& content);
    QString MakeLockedFile();
    void Begin(const QString& firmware = QString());

    QTemporaryDir folder;
    int paths = 0;
};

void ConfigurationFileTest::initTestCase()
{
    QVERIFY(folder.isValid());
}

QString ConfigurationFileTest::NewPath()
{
    return folder.filePath(QString("f%1.txt").arg(++paths));
}

QString ConfigurationFileTest::MakeFile(const QByteArray& content)
{
    const QString path = NewPath();
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        return QString();
    }
    return path;
}

// One that an ordinary user can neither read nor write.
QString ConfigurationFileTest::MakeLockedFile()
{
    const QString path = folder.filePath("locked.txt");
    QFile file(path);
    if (!file.exists() && file.open(QIODevice::WriteOnly)) {
        file.write("Azimuth (SMD)=7\n");
        file.setPermissions(QFileDevice::Permissions());
    }
    return path;
}

void ConfigurationFileTest::Begin(const QString& firmware)
{
    Model().SetFirmwareVersion(firmware);
    Model().SetPartNumber("PN-7");
    Model().SetSerialNumber("SN0815");
    Model().SetMacAddress("02:4c:7e:00:00:81");
    Model().SetIpAddress("192.168.0.77");
    Model().SetSubnetMask("255.255.255.0");
    for (const int motor : {Azimuth, Polar}) {
        Model().SetMotorParameters(motor, ModelWords[motor]);
        Model().SetMotorValidationError(motor, QString());
    }
    Model().SetApplicationStatus("before");
}

void ConfigurationFileTest::aWrittenFileHoldsTheseBytes()
{
    QFETCH(int, motor);
    QFETCH(QString, firmware);
    QFETCH(QByteArray, content);
    Begin(firmware);
    const QString path = NewPath();
    Write(motor, path);
    QCOMPARE(StatusLine(), QString("Saved to file ") + path);
    QCOMPARE(Content(path), content);
    QTEST(content.count('\n'), "lines");
}

void ConfigurationFileTest::aWrittenFileIsReadByEitherTab()
{
    QFETCH(int, motor);
    QFETCH(QString, firmware);
    QFETCH(int, lines);
    Begin(firmware);
    const QString path = NewPath();
    Write(motor, path);
    Model().ResetData();
    const Words fresh[] = {Stored(Azimuth), Stored(Polar)};
    const int words = lines == 32 ? 11 : 10;
    for (const int reader : {1 - motor, motor}) {
        Read(reader, path);
        QCOMPARE(StatusLine(), ReadDone);
    }
    for (const int any : {Azimuth, Polar}) {
        QCOMPARE(Stored(any), ModelWords[any].mid(0, words) + fresh[any].mid(words));
    }
    QCOMPARE(Model().GetPartNumber(), QString());
    QCOMPARE(Model().GetSerialNumber(), QString());
    QCOMPARE(Model().GetMacAddress(), QString());
    QCOMPARE(Model().GetIpAddress(), QString());
    QCOMPARE(Model().GetSubnetMask(), QString());
}

void ConfigurationFileTest::theSaveDialogAsks()
{
    QFETCH(int, motor);
    Begin();
    const Asked asked = Write(motor, QString());
    QCOMPARE(asked.times, 1);
    QCOMPARE(asked.title, "Select file to save configuration");
    QCOMPARE(asked.name, QString());
    QCOMPARE(asked.mode, QFileDialog::AcceptSave);
    QCOMPARE(asked.filters.join(' '), "files *.txt");
    QCOMPARE(asked.status, "Preparing to write device configuration to file ..");
}

void ConfigurationFileTest::theOpenDialogAsks()
{
    QFETCH(int, motor);
    Begin();
    const Asked asked = Read(motor, QString());
    QCOMPARE(asked.times, 1);
    QCOMPARE(asked.title, "Select Device Configuration file");
    QCOMPARE(asked.name, QString());
    QCOMPARE(asked.mode, QFileDialog::AcceptOpen);
    QCOMPARE(asked.filters.join(' '), "files *.txt");
    QCOMPARE(asked.status, "Reading Device configuration from file ..");
}

void ConfigurationFileTest::aCancelledDialogChangesNothing()
{
    QFETCH(int, motor);
    for (const auto press : {Read, Write}) {
        Begin();
        press(motor, QString());
        QCOMPARE(StatusLine(), EmptyFileName);
        QCOMPARE(Stored(Azimuth), ModelWords[Azimuth]);
        QCOMPARE(Stored(Polar), ModelWords[Polar]);
    }
}

void ConfigurationFileTest::whatIsTypedInEitherTableIsWritten()
{
    QFETCH(int, motor);
    Begin();
    Edit(Azimuth, 0)->setText("71");
    Edit(Polar, 7)->setText("72");
    const QString path = NewPath();
    Write(motor, path);
    const QByteArray content = Content(path);
    QVERIFY(content.contains("\nAzimuth Slow Motion Difference (SMD)=71\n"));
    QVERIFY(content.contains("\nPolar Loops Inside (MOT)=72\n"));
}

void ConfigurationFileTest::aCellOutOfRangeWritesNoFile_data()
{
    QTest::addColumn<int>("motor");
    QTest::addColumn<int>("badMotor");
    for (const int motor : {Azimuth, Polar}) {
        for (const int bad : {Azimuth, Polar}) {
            QTest::addRow("%s with a bad %s", NameOf[motor], NameOf[bad]) << motor << bad;
        }
    }
}

void ConfigurationFileTest::aCellOutOfRangeWritesNoFile()
{
    QFETCH(int, motor);
    QFETCH(int, badMotor);
    Begin();
    Edit(badMotor, 0)->setText("71");
    Edit(badMotor, 1)->setText(QString());
    Edit(badMotor, 2)->setText("73");
    ShowPage(TitleOf[motor]);
    Click(Child<QPushButton>(motor, "btnWriteToFile")); // no dialog: a dialog would not come back
    QCOMPARE(StatusLine(), QString("Invalid value for %1 Motion Hang Up Difference (MHD)!")
                               .arg(QString(NameOf[badMotor])));
    QCOMPARE(Stored(badMotor), With(ModelWords[badMotor], 0, 71));
}

void ConfigurationFileTest::theAzimuthsErrorComesFirst()
{
    Begin();
    Edit(Azimuth, 2)->setText(QString());
    Edit(Polar, 0)->setText(QString());
    ShowPage(TitleOf[Polar]);
    Click(Child<QPushButton>(Polar, "btnWriteToFile"));
    QCOMPARE(StatusLine(), "Invalid value for Azimuth Step Difference (SD)!");
}

void ConfigurationFileTest::aNameIsGivenItsSuffix_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("written");
    QTest::newRow("with the suffix") << "a.txt"
                                     << "a.txt";
    QTest::newRow("without one") << "b"
                                 << "b.txt";
    QTest::newRow("another suffix") << "c.cfg"
                                    << "c.cfg.txt";
    QTest::newRow("in upper case") << "d.TXT"
                                   << "d.TXT.txt";
}

void ConfigurationFileTest::aNameIsGivenItsSuffix()
{
    QFETCH(QString, name);
    QFETCH(QString, written);
    Begin();
    Write(Azimuth, folder.filePath(name));
    QCOMPARE(StatusLine(), QString("Saved to file ") + folder.filePath(written));
    QCOMPARE(Content(folder.filePath(written)), OldFile);
    QCOMPARE(QFile::exists(folder.filePath(name)), name == written);
}

void ConfigurationFileTest::anExistingFileIsReplacedAfterAQuestion()
{
    Begin();
    const QString path = MakeFile(NewFile + NewFile);
    int questions = 0;
    WhenShown<QMessageBox>([&questions](QMessageBox& question) {
        ++questions;
        QTest::mouseClick(question.button(QMessageBox::Yes), Qt::LeftButton);
    });
    Write(Azimuth, path);
    QCOMPARE(questions, 1);
    QCOMPARE(Content(path), OldFile);
}

void ConfigurationFileTest::aFileThatCannotBeWrittenSaysSo_data()
{
    QTest::addColumn<int>("motor");
    QTest::addColumn<QString>("name");
    for (const int motor : {Azimuth, Polar}) {
        QTest::addRow("%s no such folder", NameOf[motor]) << motor << "missing/a.txt";
        QTest::addRow("%s a folder of that name", NameOf[motor]) << motor << "taken";
        if (HasDeviceFiles()) {
            QTest::addRow("%s a device", NameOf[motor]) << motor << "device";
        }
        QTest::addRow("%s no permission", NameOf[motor]) << motor << "locked";
    }
}

void ConfigurationFileTest::aFileThatCannotBeWrittenSaysSo()
{
    QFETCH(int, motor);
    QFETCH(QString, name);
    QDir(folder.path()).mkpath("taken.txt");
    QFile::link("/dev/null", folder.filePath("device.txt"));
    const QString locked = MakeLockedFile();
    if (locked.contains(name) && QFileInfo(locked).isWritable()) {
        QSKIP("this user may write every file");
    }
    Begin();
    Write(motor, folder.filePath(name));
    QCOMPARE(StatusLine(), WriteFailed);
    QVERIFY(!QFile::exists(folder.filePath("missing")));
}

// A file that goes while the dialog is up: the dialog itself takes none that is not there.
void ConfigurationFileTest::aFileThatCannotBeOpenedLeavesAnEmptyStatus()
{
    Begin();
    const QString path = MakeFile(OldFile);
    WhenShown<QFileDialog>([path](QFileDialog& dialog) {
        QObject::connect(&dialog, &QFileDialog::finished, &dialog, [path] { QFile::remove(path); });
    });
    Read(Azimuth, path);
    QVERIFY(!QFile::exists(path));
    QCOMPARE(StatusLine(), QString());
    QCOMPARE(Stored(Azimuth), ModelWords[Azimuth]);
}

void ConfigurationFileTest::aFileWithoutPermissionLeavesAnEmptyStatus()
{
    const QString path = MakeLockedFile();
    if (QFileInfo(path).isReadable()) {
        QSKIP("this user may read every file");
    }
    Begin();
    Read(Azimuth, path);
    QCOMPARE(StatusLine(), QString());
    QCOMPARE(Stored(Azimuth), ModelWords[Azimuth]);
}

void ConfigurationFileTest::aLineIsJudged_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("parameter"); // of the azimuth; -1 for none
    QTest::addColumn<int>("value");
    const auto row = [](const char* name, const QByteArray& content, int parameter, int value) {
        QTest::newRow(name) << content << parameter << value;
    };
    constexpr const char* Mnemonics[] = {
        "SMD", "MHD", "SD", "SS", "PD", "OD", "ORS", "OLS", "MMHL", "MOT", "SMS"};
    for (int parameter = 0; parameter < 11; ++parameter) {
        QTest::addRow("the mnemonic %s is enough", Mnemonics[parameter])
            << "Azimuth (" + QByteArray(Mnemonics[parameter]) + ")=7\n"
            << parameter << 7;
    }
    row("no brackets needed", "Azimuth SMD=7\n", 0, 7);
    row("part of the motor's name is enough", "Azi SMD=7\n", 0, 7);
    row("blanks around everything", "  Azimuth (SMD)  =  7  \n", 0, 7);
    row("carriage return and line feed", "\r\nAzimuth (SMD)=7\r\n", 0, 7);
    row("a byte-order mark",
        "\xEF\xBB\xBF"
        "Azimuth (SMD)=7\n",
        0, 7);
    row("no last line feed", "Azimuth (SMD)=7\nAzimuth (SS)=8", 0, 7);
    row("a single line without a line feed", "Azimuth (SMD)=7", -1, 0);
    row("the last of two lines stays", "Azimuth (SMD)=7\nAzimuth (SMD)=8\n", 0, 8);
    row("the last of two mnemonics counts", "Azimuth SMD SS=7\n", 3, 7);
    row("16 bits", "Azimuth (SMD)=65535\n", 0, 65535);
    row("one above 16 bits is cut", "Azimuth (SMD)=65536\n", 0, 0);
    row("above 16 bits is cut", "Azimuth (SMD)=70000\n", 0, 4464);
    row("below 0 is cut", "Azimuth (SMD)=-1\n", 0, 65535);
    row("no number is 0", "Azimuth (SMD)=seven\n", 0, 0);
    row("no value is 0", "Azimuth (SMD)=\n", 0, 0);
    row("hexadecimal is 0", "Azimuth (SMD)=0x10\n", 0, 0);
    row("far too large is 0", "Azimuth (SMD)=99999999999\n", 0, 0);
    row("above the table's range", "Azimuth (SMS)=200\n", 10, 200);
    row("empty file", "", -1, 0);
    row("an unknown key is ignored", "Foo=5\nAzimuth (SMD)=7\n", 0, 7);
    row("an unknown key of two words is ignored", "Foo bar=5\nAzimuth (SMD)=7\n", 0, 7);
    row("the identity is ignored",
        "Identnumber=1\nSerialnumber=2\nMAC=3\nIP=1.2.3.4\nSubnet=5\nAzimuth (SMD)=7\n", 0, 7);
    row("a line without a sign is ignored", "Azimuth XX\nSMD\nAzimuth (SMD)=7\n", 0, 7);
    row("a line that begins with the sign is ignored", "=Azimuth XX=5\nAzimuth SMD=7\n", 0, 7);
    row("a comment is ignored", "#Azimuth XX=5\nAzimuth (SMD)=7\n", 0, 7);
    row("empty lines are ignored", "\n\n   \nAzimuth (SMD)=7\n\n", 0, 7);
    row("a sign behind 32767 characters is not found",
        "Azimuth SMD" + QByteArray(32768, 'x') + "=5\n", -1, 0);
}

void ConfigurationFileTest::aLineIsJudged()
{
    QFETCH(QByteArray, content);
    QFETCH(int, parameter);
    QFETCH(int, value);
    Begin();
    Read(Azimuth, MakeFile(content));
    QCOMPARE(StatusLine(), ReadDone);
    QCOMPARE(Stored(Azimuth),
        parameter < 0 ? ModelWords[Azimuth] : With(ModelWords[Azimuth], parameter, value));
    QCOMPARE(Stored(Polar), ModelWords[Polar]);
    if (parameter == 0) {
        QCOMPARE(Edit(Azimuth, 0)->text(), QString::number(value));
    }
}

void ConfigurationFileTest::anInvalidLineStopsTheReading_data()
{
    QTest::addColumn<int>("motor");
    QTest::addColumn<QString>("line");
    constexpr const char* Lines[] = {"Azimuth XX=5", "SMD=5", "Polar XX=5", "azimuth (SMD)=5",
        "Azimuth smd=5", "  Azimuth XX = 5 ", " # SMD=5", "Azimuth\t(SMD)=5", "Unknown SMD=5",
        "UnknownMotor SMD=5", "o SMD=5", "A b=5"};
    for (const int motor : {Azimuth, Polar}) {
        for (const char* const line : Lines) {
            QTest::addRow("%s %s", NameOf[motor], line) << motor << QString(line);
        }
    }
}

void ConfigurationFileTest::anInvalidLineStopsTheReading()
{
    QFETCH(int, motor);
    QFETCH(QString, line);
    Begin();
    const QByteArray name = NameOf[motor];
    Read(motor, MakeFile(name + " (SMD)=7\n" + line.toLatin1() + "\r\n" + name + " (SS)=8\n"));
    QCOMPARE(StatusLine(), QString("Invalid line:") + line);
    QCOMPARE(Stored(motor), With(ModelWords[motor], 0, 7));
    QCOMPARE(Stored(1 - motor), ModelWords[1 - motor]);
}

void ConfigurationFileTest::aLineWithoutEndIsShownAsFarAsItWasRead_data()
{
    QTest::addColumn<QByteArray>("start");
    QTest::newRow("no token") << QByteArray("x");
    QTest::newRow("a comment") << QByteArray("#");
    QTest::newRow("a valid key") << QByteArray("Azimuth (SMD)=7");
}

void ConfigurationFileTest::aLineWithoutEndIsShownAsFarAsItWasRead()
{
    constexpr int Longest = 16 * 1024 * 1024;
    QFETCH(QByteArray, start);
    const QByteArray line = start + QByteArray(2 * Longest, 'x');
    Begin();
    Read(Azimuth, MakeFile("Azimuth (SD)=8\n" + line + "\nAzimuth (OD)=9\n"));
    QCOMPARE(StatusLine(), QString("Invalid line:") + QString(line.left(Longest)));
    QCOMPARE(Stored(Azimuth), With(ModelWords[Azimuth], 2, 8));
}

void ConfigurationFileTest::aPipeOrADeviceLeavesAnEmptyStatus_data()
{
    if (!HasDeviceFiles()) {
        QSKIP("this system has neither pipes nor devices among its files");
    }
    QTest::addColumn<QString>("path");
    const QString pipe = folder.filePath("pipe.txt");
    if (QProcess::execute("mkfifo", {pipe}) == 0) {
        QTest::newRow("a pipe") << pipe;
    }
    const QString device = folder.filePath("endless.txt");
    if (QFile::link("/dev/full", device)) {
        QTest::newRow("a device") << device;
    }
}

void ConfigurationFileTest::aPipeOrADeviceLeavesAnEmptyStatus()
{
    QFETCH(QString, path);
    Begin();
    Read(Azimuth, path);
    QCOMPARE(StatusLine(), QString());
    QCOMPARE(Stored(Azimuth), ModelWords[Azimuth]);
}

void ConfigurationFileTest::theOtherMotorsLinesAreIgnored()
{
    QFETCH(int, motor);
    Begin();
    Read(motor, MakeFile("Azimuth (SMD)=7\nPolar (SMD)=8\n"));
    QCOMPARE(StatusLine(), ReadDone);
    QCOMPARE(Stored(motor), With(ModelWords[motor], 0, motor == Azimuth ? 7 : 8));
    QCOMPARE(Stored(1 - motor), ModelWords[1 - motor]);
}

void ConfigurationFileTest::aReadFileKeepsTheRotorAndItsType()
{
    QFETCH(int, motor);
    auto* const rotors = Child<QComboBox>(motor, "listRotors");
    rotors->setCurrentIndex(1);
    Begin();
    const QString type = Child<QLineEdit>(motor, "txtRotorType")->text();
    Model().SetMotorParameters(motor, Words(11, 0));
    Read(motor, MakeFile(NewFile));
    QCOMPARE(Stored(motor), ModelWords[motor]);
    QCOMPARE(rotors->currentIndex(), 1);
    QCOMPARE(Child<QLineEdit>(motor, "txtRotorType")->text(), type);
}

void ConfigurationFileTest::oldFirmwareTakesTheSpeedLineToo()
{
    Begin("2.99");
    Read(Azimuth, MakeFile("Azimuth Slow Motion Speed (SMS)=55\n"));
    QCOMPARE(Stored(Azimuth), With(ModelWords[Azimuth], 10, 55));
}

// Qt's dialog keeps its last folder in the user's settings: not in those of whoever runs the test.
int main(int argc, char** argv)
{
    const QTemporaryDir settings;
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(settings.path()));
    ConfigurationFileTest test;
    return RunInTheProgram(test, argc, argv);
}

#include "ConfigurationFileTest.moc"
