// SPDX-License-Identifier: MIT

#include "tests/rotor/MotorPage.h"
#include "tests/support/platform/SystemFiles.h"

#include <QComboBox>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QTemporaryDir>

namespace {

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

Words With(Words words, int parameter, int value)
{
    words[parameter] = static_cast<ushort>(value);
    return words;
}

// Presses a button and answers its file dialog; an empty path cancels. What each dialog showed when
// it came up, and the status line meanwhile.
QStringList PressAndChoose(int motor, const char* button, const QString& path)
{
    ShowPage(TitleOf[motor]);
    QStringList seen;
    ClickAndChooseFile(Child<QPushButton>(motor, button), path, [&seen](const QFileDialog& dialog) {
        seen << dialog.windowTitle() << dialog.nameFilters()
             << dialog.findChild<QLineEdit*>("fileNameEdit")->text()
             << (dialog.acceptMode() == QFileDialog::AcceptSave ? "save" : "open") << StatusLine();
    });
    return seen;
}

QStringList Read(int motor, const QString& path)
{
    return PressAndChoose(motor, "btnReadFromFile", path);
}

QStringList Write(int motor, const QString& path)
{
    return PressAndChoose(motor, "btnWriteToFile", path);
}

QByteArray Content(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

} // namespace

class ConfigurationFileTest : public MotorPageTest
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(folder.isValid()); }

    void aWrittenFileHoldsTheseBytesAndIsReadByEitherTab()
    {
        const struct
        {
            const char* firmware;
            QByteArray content;
            int lines;
            int words;
        } generations[] = {
            {"2.99", OldFile, 30, 10}, {"", OldFile, 30, 10}, {"3.0", NewFile, 32, 11}};
        for (const auto& generation : generations) {
            Begin(generation.firmware);
            const QString path = NewPath();
            Write(motor, path);
            QCOMPARE(StatusLine(), "Saved to file " + path);
            QCOMPARE(Content(path), generation.content);
            QCOMPARE(generation.content.count('\n'), generation.lines);

            Model().ResetData();
            const Words fresh[] = {Stored(Azimuth), Stored(Polar)};
            for (const int reader : {other, motor}) {
                Read(reader, path);
                QCOMPARE(StatusLine(), ReadDone);
            }
            for (const int any : Motors) {
                QCOMPARE(Stored(any),
                    ModelWords[any].mid(0, generation.words) + fresh[any].mid(generation.words));
            }
            QCOMPARE(Model().GetPartNumber() + Model().GetSerialNumber() + Model().GetMacAddress() +
                         Model().GetIpAddress() + Model().GetSubnetMask(),
                QString());
        }
    }

    void theDialogsAsk()
    {
        Begin();
        QCOMPARE(Write(motor, QString()),
            (QStringList{"Select file to save configuration", "files *.txt", QString(), "save",
                "Preparing to write device configuration to file .."}));
        QCOMPARE(Read(motor, QString()),
            (QStringList{"Select Device Configuration file", "files *.txt", QString(), "open",
                "Reading Device configuration from file .."}));
    }

    void aCancelledDialogChangesNothing()
    {
        for (const auto press : {Read, Write}) {
            Begin();
            press(motor, QString());
            QCOMPARE(StatusLine(), "Empty filename!!");
            QCOMPARE(Stored(Azimuth), ModelWords[Azimuth]);
            QCOMPARE(Stored(Polar), ModelWords[Polar]);
        }
    }

    void whatIsTypedInEitherTableIsWritten()
    {
        Begin();
        Edit(Azimuth, 0)->setText("71");
        Edit(Polar, 7)->setText("72");
        const QString path = NewPath();
        Write(motor, path);
        const QByteArray content = Content(path);
        QVERIFY(content.contains("\nAzimuth Slow Motion Difference (SMD)=71\n"));
        QVERIFY(content.contains("\nPolar Loops Inside (MOT)=72\n"));
    }

    void aCellOutOfRangeWritesNoFile()
    {
        for (const int bad : Motors) {
            Begin();
            Edit(bad, 0)->setText("71");
            Edit(bad, 1)->setText(QString());
            Edit(bad, 2)->setText("73");
            ClickWrite();
            QCOMPARE(StatusLine(),
                QString("Invalid value for %1 Motion Hang Up Difference (MHD)!").arg(NameOf[bad]));
            QCOMPARE(Stored(bad), With(ModelWords[bad], 0, 71));
        }
    }

    void theAzimuthsErrorComesFirst()
    {
        Begin();
        Edit(Azimuth, 2)->setText(QString());
        Edit(Polar, 0)->setText(QString());
        ClickWrite();
        QCOMPARE(StatusLine(), "Invalid value for Azimuth Step Difference (SD)!");
    }

    void aNameIsGivenItsSuffix()
    {
        const QStringList names[] = {
            {"a.txt", "a.txt"}, {"b", "b.txt"}, {"c.cfg", "c.cfg.txt"}, {"d.TXT", "d.TXT.txt"}};
        const QTemporaryDir empty;
        for (const QStringList& name : names) {
            const QString typed = empty.filePath(name.first());
            const QString written = empty.filePath(name.last());
            Begin();
            Write(motor, typed);
            QCOMPARE(StatusLine(), "Saved to file " + written);
            QCOMPARE(Content(written), OldFile);
            QCOMPARE(QFile::exists(typed), typed == written);
        }
    }

    void anExistingFileIsReplacedAfterAQuestion()
    {
        Begin();
        const QString path = MakeFile(NewFile + NewFile);
        int questions = 0;
        WhenShown<QMessageBox>([&questions](QMessageBox& question) {
            ++questions;
            QTest::mouseClick(question.button(QMessageBox::Yes), Qt::LeftButton);
        });
        Write(motor, path);
        QCOMPARE(questions, 1);
        QCOMPARE(Content(path), OldFile);
    }

    void aFileThatCannotBeWrittenSaysSo()
    {
        QStringList names{"missing/a.txt", "taken"};
        QDir(folder.path()).mkpath("taken.txt");
        QFile::link("/dev/null", folder.filePath("device.txt"));
        if (HasDeviceFiles()) {
            names << "device";
        }
        if (!QFileInfo(MakeLockedFile()).isWritable()) { // some users may write every file
            names << "locked";
        }
        for (const QString& name : names) {
            Begin();
            Write(motor, folder.filePath(name));
            QCOMPARE(StatusLine(), "Could not write device configuration to file !!");
            QVERIFY2(!QFile::exists(folder.filePath("missing")), qPrintable(name));
        }
    }

    // A file that goes while the dialog is up: the dialog itself takes none that is not there.
    void aFileThatCannotBeOpenedLeavesAnEmptyStatus()
    {
        const QString path = MakeFile(OldFile);
        WhenShown<QFileDialog>([path](QFileDialog& dialog) {
            connect(&dialog, &QFileDialog::finished, &dialog, [path] { QFile::remove(path); });
        });
        ExpectNothingFrom(path);
        QVERIFY(!QFile::exists(path));
    }

    void aFileWithoutPermissionLeavesAnEmptyStatus()
    {
        const QString path = MakeLockedFile();
        if (QFileInfo(path).isReadable()) {
            QSKIP("this user may read every file");
        }
        ExpectNothingFrom(path);
    }

    // The lines are the azimuth's; for the other motor its name stands in them.
    void aLineIsJudged_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<int>("parameter"); // -1 for none
        QTest::addColumn<int>("value");
        const auto row = [](const char* name, const QByteArray& content, int parameter, int value) {
            QTest::newRow(name) << content << parameter << value;
        };
        constexpr const char* Mnemonics[] = {
            "SMD", "MHD", "SD", "SS", "PD", "OD", "ORS", "OLS", "MMHL", "MOT", "SMS"};
        for (int parameter = 0; parameter < 11; ++parameter) {
            const QByteArray mnemonic = Mnemonics[parameter];
            row(mnemonic + " is enough", "Azimuth (" + mnemonic + ")=7\n", parameter, 7);
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
    void aLineIsJudged()
    {
        QFETCH(QByteArray, content);
        QFETCH(int, parameter);
        QFETCH(int, value);
        const QByteArray name = NameOf[motor];
        Begin();
        Read(motor, MakeFile(content.replace("Azimuth", name).replace("Azi ", name.left(3) + ' ')));
        QCOMPARE(StatusLine(), ReadDone);
        QCOMPARE(Stored(motor),
            parameter < 0 ? ModelWords[motor] : With(ModelWords[motor], parameter, value));
        QCOMPARE(Stored(other), ModelWords[other]);
        if (parameter == 0) {
            QCOMPARE(Edit(motor, 0)->text(), QString::number(value));
        }
    }

    void anInvalidLineStopsTheReading()
    {
        const QByteArray name = NameOf[motor];
        for (const char* const line : {"Azimuth XX=5", "SMD=5", "Polar XX=5", "azimuth (SMD)=5",
                 "Azimuth smd=5", "  Azimuth XX = 5 ", " # SMD=5", "Azimuth\t(SMD)=5",
                 "Unknown SMD=5", "UnknownMotor SMD=5", "o SMD=5", "A b=5"}) {
            Begin();
            Read(motor, MakeFile(name + " (SMD)=7\n" + line + "\r\n" + name + " (SS)=8\n"));
            QCOMPARE(StatusLine(), QString("Invalid line:") + line);
            QCOMPARE(Stored(motor), With(ModelWords[motor], 0, 7));
            QCOMPARE(Stored(other), ModelWords[other]);
        }
    }

    void aLineWithoutEndIsShownAsFarAsItWasRead()
    {
        constexpr int Longest = 16 * 1024 * 1024;
        const QByteArray name = NameOf[motor];
        for (const QByteArray& start : {QByteArray("x"), QByteArray("#"), name + " (SMD)=7"}) {
            const QByteArray line = start + QByteArray(2 * Longest, 'x');
            Begin();
            Read(motor, MakeFile(name + " (SD)=8\n" + line + "\n" + name + " (OD)=9\n"));
            QCOMPARE(StatusLine(), "Invalid line:" + line.left(Longest));
            QCOMPARE(Stored(motor), With(ModelWords[motor], 2, 8));
        }
    }

    void aPipeOrADeviceLeavesAnEmptyStatus()
    {
        if (!HasDeviceFiles()) {
            QSKIP("this system has neither pipes nor devices among its files");
        }
        const QString pipe = NewPath();
        QCOMPARE(QProcess::execute("mkfifo", {pipe}), 0);
        ExpectNothingFrom(pipe);
        const QString device = NewPath();
        QVERIFY(QFile::link("/dev/full", device));
        ExpectNothingFrom(device);
    }

    void theOtherMotorsLinesAreIgnored()
    {
        Begin();
        Read(motor, MakeFile("Azimuth (SMD)=7\nPolar (SMD)=8\n"));
        QCOMPARE(StatusLine(), ReadDone);
        QCOMPARE(Stored(motor), With(ModelWords[motor], 0, motor == Azimuth ? 7 : 8));
        QCOMPARE(Stored(other), ModelWords[other]);
    }

    void aReadFileKeepsTheRotorAndItsType()
    {
        auto* const rotors = Child<QComboBox>(motor, "listRotors");
        rotors->setCurrentIndex(1);
        Begin();
        const QString type = ShownRotorType(motor);
        Model().SetMotorParameters(motor, Words(11, 0));
        Read(motor, MakeFile(NewFile));
        QCOMPARE(Stored(motor), ModelWords[motor]);
        QCOMPARE(rotors->currentIndex(), 1);
        QCOMPARE(ShownRotorType(motor), type);
    }

    void oldFirmwareTakesTheSpeedLineToo()
    {
        Begin("2.99");
        Read(motor, MakeFile(NameOf[motor] + QByteArray(" Slow Motion Speed (SMS)=55\n")));
        QCOMPARE(Stored(motor), With(ModelWords[motor], 10, 55));
    }

private:
    QString NewPath() { return folder.filePath(QString("f%1.txt").arg(++paths)); }

    QString MakeFile(const QByteArray& content)
    {
        const QString path = NewPath();
        QFile file(path);
        const bool made = file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
        return made ? path : QString();
    }

    // One that an ordinary user can neither read nor write.
    QString MakeLockedFile()
    {
        const QString path = folder.filePath("locked.txt");
        QFile file(path);
        if (!file.exists() && file.open(QIODevice::WriteOnly)) {
            file.write("Azimuth (SMD)=7\n");
            file.setPermissions(QFileDevice::Permissions());
        }
        return path;
    }

    static void Begin(const QString& firmware = QString())
    {
        Model().SetFirmwareVersion(firmware);
        Model().SetPartNumber("PN-7");
        Model().SetSerialNumber("SN0815");
        Model().SetMacAddress("02:4c:7e:00:00:81");
        Model().SetIpAddress("192.168.0.77");
        Model().SetSubnetMask("255.255.255.0");
        for (const int any : Motors) {
            Model().SetMotorParameters(any, ModelWords[any]);
            Model().SetMotorValidationError(any, QString());
        }
        Model().SetApplicationStatus("before");
    }

    // Without an answer to a file dialog: none may come up.
    void ClickWrite() const
    {
        ShowPage(TitleOf[motor]);
        Click(Child<QPushButton>(motor, "btnWriteToFile"));
    }

    void ExpectNothingFrom(const QString& path) const
    {
        Begin();
        Read(motor, path);
        QCOMPARE(StatusLine(), QString());
        QCOMPARE(Stored(motor), ModelWords[motor]);
    }

    QTemporaryDir folder;
    int paths = 0;
};

VX440_WINDOW_TEST_MAIN(ConfigurationFileTest)
#include "ConfigurationFileTest.moc"
