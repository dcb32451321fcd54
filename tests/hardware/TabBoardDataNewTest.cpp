// SPDX-License-Identifier: MIT

#include "link/CDeviceCommunication.h"
#include "model/CDeviceDatabase.h"
#include "shell/CMainDialog.h"
#include "tests/hardware/BoardDataWindow.h"
#include "tests/hardware/EepromImages.h"
#include "tests/support/Notified.h"
#include "tests/support/PrivateMember.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"
#include "tests/support/scripted/ConnectingThread.h"
#include "tests/support/scripted/ScriptedLink.h"

#include <QDir>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QProgressBar>
#include <QPushButton>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QToolButton>
#include <QWindow>
#include <QtEndian>
#include <QtTest>

#include <memory>
#include <tuple>

struct ReadBlockData
{
    using Type = bool (CTabBoardDataNew::*)();
    friend Type MemberOf(ReadBlockData);
};
template struct PrivateMember<ReadBlockData, &CTabBoardDataNew::ReadBlockData>;

namespace {

constexpr int StatusColumn = CDeviceDatabase::ApplicationStatusColumn;

const QByteArray DeviceBlock = Block("15CD5B07", "VX440"); // 123456789
// Part number 44010450.07, product index -0.01, serial number 1234, 1980-00-00, test instruction
// index 0.
const QByteArray BoardBlock = QByteArray::fromHex("020000000000000000000000D28B9F020701FFFF"
                                                  "D2040000000000000000") +
                              QByteArray("VX440-CTRL\0\0\0\0", 14);
const QStringList DeviceTexts = Texts("1234.5678.02|01.05|123456|2026-03-09|02.10|VX440");
const QStringList BoardTexts = Texts("4401.0450.07|00.-1|001234|1980-00-00|00.00|VX440-CTRL");
const QStringList NoTexts = Texts("|||||");

// The fields of a region, without its name.
constexpr const char* Fields[] = {
    "PartNumber", "ProductIndex", "SerialNumber", "ProductionDate", "TestInstructionIndex", "Name"};

const QStringList BlockRequests = Texts("send 4346370D00400000|send 4346370D004004B0");

const QStringList EmptyWrite = Texts("send 4346360D04B0") + BlockRequests;

const QString NotConnected = "Not connected to any device!";
const QString Writing = "Writing data to the device ..";
const QString Written = "Data written to the device successfully.";
const QString NoClearAnswer = "An error occoured during transmission.";
const QString WriteFailed = "EEPROM data write failed!";
const QString Reading = "Reading EEPROM data from device ..";
const QString ReadDone = "Successfully read from device EEPROM.";
const QString ReadFailed = "Could not read data from device EEPROM.";
const QString Valid = "Eeprom data valid";
const QString Invalid = "Eeprom data invalid";

const QByteArray Erased(RegionSize, '\xFF');

QByteArray Region(const QByteArray& block)
{
    return (block + Erased).left(RegionSize);
}

CDeviceDatabase& Model()
{
    return *TheDeviceDatabase();
}

QString ColumnText(int column)
{
    return Model().index(0, column).data().toString();
}

// What a progress dialog was like when it came up: its label, its bar's name, its range, value and
// modality; and the status.
QVariantList ProgressOf(const std::function<void()>& work)
{
    QVariantList progress;
    WhenProgressShows([&progress] {
        const QProgressDialog* const dialog = VisibleProgress();
        progress = {dialog->labelText(), dialog->findChild<QProgressBar*>()->accessibleName(),
            dialog->minimum(), dialog->maximum(), dialog->value(), int(dialog->windowModality()),
            StatusLine()};
    });
    work();
    return progress;
}

// Whether a progress dialog is up each time that the application's status is set.
class DialogAtStatus
{
public:
    DialogAtStatus()
    {
        QObject::connect(
            &Model(), &QAbstractItemModel::dataChanged, &context, [this](const QModelIndex& cell) {
                if (cell.column() == StatusColumn) {
                    wasUp.append(VisibleProgress() != nullptr);
                }
            });
    }

    QVector<bool> wasUp;

private:
    QObject context;
};

} // namespace

/// The tab inside the program, with a unit that the test scripts: no wait takes any time.
class TabBoardDataNewTest : public WarningsFail
{
    Q_OBJECT

    // New firmware, connected, with a good block in each region, and no file chosen.
    void StartAnew()
    {
        folder = std::make_unique<QTemporaryDir>();
        qputenv("PROGRAMDATA", QFile::encodeName(folder->path()));
        memory.clear();
        acknowledgement = "1\r";
        scripted::Reset();
        scripted::WhenSent([this](const QByteArray& frame) { Answer(frame); });
        Model().ResetData();
        Model().SetVariant(QString());
        Model().SetIpAddress("127.0.0.1");
        Connect();
        ConnectToFirmware("3.10\r"); // which reads nothing yet
        window->Tab()->UpdateControls();
        for (const char* const region : {"Device", "Board"}) {
            if (!FileOf(region).isEmpty()) {
                ChooseFile(region, QString());
            }
        }
        memory = Region(DeviceBlock) + Region(BoardBlock);
        Model().SetApplicationStatus("before");
        scripted::ForgetEvents();
    }

    static void Connect()
    {
        TheDeviceCommunication()->StartConnection("127.0.0.1");
        AwaitConnectingThread();
    }

    static void Disconnect()
    {
        TheDeviceCommunication()->Disconnect();
        scripted::ForgetEvents();
    }

    void ConnectToFirmware(const QString& version)
    {
        Model().SetFirmwareVersion(version);
        window->Tab()->ConnectionStatusChanged();
    }

    // As a unit does; a refused write changes nothing.
    void Answer(const QByteArray& frame)
    {
        const QByteArray payload = frame.mid(4);
        if (frame.startsWith("CF7\r")) {
            const int size = qFromBigEndian<quint16>(payload.constData());
            const int offset = qFromBigEndian<quint16>(payload.constData() + 2);
            scripted::DeliverAfter(1000, memory.mid(offset, size));
        }
        if (frame.startsWith("CF6\r")) {
            progressAtWrite = VisibleProgress()->value();
            if (acknowledgement == "1\r") {
                const int offset = qFromBigEndian<quint16>(payload.constData());
                memory.replace(offset, payload.size() - 2, payload.mid(2));
            }
            scripted::DeliverAfter(5, acknowledgement);
        }
    }

    QString MakeFile(const QByteArray& content, const char* name = "data.bin")
    {
        QFile file(folder->filePath(name));
        const bool made = file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
        return made ? file.fileName() : QString();
    }

    // An empty path cancels.
    AskedForFile ChooseFile(const QByteArray& region, const QString& path) const
    {
        return ClickAndChooseFile(
            window->Child<QToolButton>("btn" + region + "DataFileSelector"), path);
    }
    QString FileOf(const QByteArray& region) const
    {
        return window->TextOf("txt" + region + "DataFile");
    }
    bool CanWrite(const QByteArray& region) const
    {
        return window->IsEnabled("btnWrite" + region + "Data");
    }
    void ClickWrite(const QByteArray& region) const
    {
        Click(window->Child<QPushButton>("btnWrite" + region + "Data"));
    }
    void Write(const QByteArray& region, const QString& path) const
    {
        ChooseFile(region, path);
        ClickWrite(region);
    }
    void ReadAll() const { Click(window->Child<QPushButton>("btnReadAll")); }

    template<class Widget>
    QString NameOf(const QByteArray& widget) const
    {
        return window->Child<Widget>(widget)->accessibleName();
    }

    QStringList FieldTexts(const QByteArray& region) const
    {
        QStringList texts;
        for (const char* const field : Fields) {
            texts.append(window->TextOf("txt" + region + field));
        }
        return texts;
    }

    std::unique_ptr<BoardDataWindow> window;
    std::unique_ptr<QTemporaryDir> folder;
    QByteArray memory;
    QByteArray acknowledgement;
    int progressAtWrite = 0;

private slots:
    void initTestCase()
    {
        window = std::make_unique<BoardDataWindow>();
        for (const char* const button :
            {"btnWriteOld", "btnReadAll", "btnWriteDeviceData", "btnWriteBoardData"}) {
            QVERIFY2(!window->IsEnabled(button), button);
        }
    }

    void cleanupTestCase()
    {
        TheDeviceCommunication()->Disconnect();
        window.reset();
    }

    void init()
    {
        WarningsFail::init();
        StartAnew();
    }

    void theToolsWindowNeverShowsIt()
    {
        const auto* const pages = Find<QTabWidget>("tabWidget");
        for (int page = 0; page < pages->count(); ++page) {
            QVERIFY(qobject_cast<CTabBoardDataNew*>(pages->widget(page)) == nullptr);
        }
    }

    void theDialogsSlotsShowAPageOnly()
    {
        auto* const dialog = qobject_cast<CMainDialog*>(MainWindow());
        auto* const pages = Find<QTabWidget>("tabWidget");
        CTabBoardDataNew* const tab = window->Tab();
        tab->hide();
        for (int index = -1; index <= pages->count(); ++index) {
            dialog->DisableBoardDataTab(index);
            dialog->HideBoardDataTab(index);
            QVERIFY(!tab->isVisible());
        }
        const int current = pages->currentIndex();
        const int page = pages->addTab(tab, "Board Data");
        pages->setCurrentIndex(page);
        for (const bool enabled : {false, true}) {
            tab->setEnabled(enabled);
            dialog->DisableBoardDataTab(page);
            QCOMPARE(tab->isEnabled(), enabled);
            dialog->HideBoardDataTab(page);
            QCOMPARE(tab->isVisible(), enabled);
        }
        pages->removeTab(page);
        pages->setCurrentIndex(current);
        tab->setParent(MainWindow(), Qt::Window);
        tab->show();
    }

    // A box is followed by what stands in it.
    void theWidgetsStandInTheirOrder()
    {
        QCOMPARE(window->Tab()->objectName(), "TabBoardDataNew");
        QCOMPARE(window->Tab()->minimumSize(), QSize(850, 310));
        QCOMPARE(window->Tab()->maximumSize(), QSize(850, 340));
        QStringList seen;
        for (const char* const name :
            {"groupBox", "boxBoard", "widOldFirmwareItems", "widNewFirmwareItems"}) {
            const auto* const box = window->Child<QWidget>(name);
            QCOMPARE(box->parentWidget(), window->Tab());
            for (const QObject* const widget :
                QObjectList{const_cast<QWidget*>(box)} + box->children()) {
                const QString text =
                    widget->property("title").toString() + widget->property("text").toString();
                seen.append(
                    QString("%1 %2 %3")
                        .arg(widget->metaObject()->className(), widget->objectName(), text));
            }
        }
        QCOMPARE(seen,
            Texts("QGroupBox groupBox Device|QLineEdit txtDevicePartNumber |"
                  "QLabel lblDeviceTestInstructionIndex Test instruction index|"
                  "QLineEdit txtDeviceProductionDate |QLineEdit txtDeviceTestInstructionIndex |"
                  "QLineEdit txtDeviceSerialNumber |QLineEdit txtDeviceName |"
                  "QLabel lblDeviceProductIndex Product index|"
                  "QLabel lblDevicePartNumber Part number|QLineEdit txtDeviceProductIndex |"
                  "QLabel lblDeviceSerialNumber Serial number|QLabel lblDeviceName Name|"
                  "QLabel lblDeviceProductionDate Production  date|"
                  "QGroupBox boxBoard Board|QLabel lblBoardProductionDate Production  date|"
                  "QLabel lblBoardName Name|"
                  "QLabel lblBoardTestInstructionIndex Test instruction index|"
                  "QLineEdit txtBoardPartNumber |QLabel lblBoardPartNumber Part number|"
                  "QLabel lblBoardProductIndex Product index|"
                  "QLabel lblBoardSerialNumber Serial number|QLineEdit txtBoardSerialNumber |"
                  "QLineEdit txtBoardTestInstructionIndex |QLineEdit txtBoardProductionDate |"
                  "QLineEdit txtBoardName |QLineEdit txtBoardProductIndex |"
                  "QWidget widOldFirmwareItems |QPushButton btnWriteOld Write to Device|"
                  "QWidget widNewFirmwareItems |QPushButton btnReadAll Read All|"
                  "QToolButton btnDeviceDataFileSelector ...|QLineEdit txtBoardDataFile |"
                  "QPushButton btnWriteDeviceData Write Device Data|"
                  "QToolButton btnBoardDataFileSelector ...|"
                  "QLabel lblBoardDataFile Board Data file|"
                  "QLabel lblDeviceDataFile Device Data file|QLineEdit txtDeviceDataFile |"
                  "QPushButton btnWriteBoardData Write Board Data"));
    }

    void theWidgetsHaveTheirLook()
    {
        for (const char* const box : {"groupBox", "boxBoard"}) {
            QCOMPARE(window->Child<QGroupBox>(box)->styleSheet(),
                "QGroupBox\n{\n    font-size: 12px;\n    font-weight: bold;\n}");
        }
        const auto edits = window->Tab()->findChildren<QLineEdit*>();
        QCOMPARE(edits.size(), 14);
        for (const QLineEdit* const edit : edits) {
            QVERIFY2(edit->isReadOnly(), qPrintable(edit->objectName()));
        }
        const auto buttons = window->Tab()->findChildren<QPushButton*>();
        QCOMPARE(buttons.size(), 4);
        for (const QPushButton* const button : buttons) {
            QVERIFY2(
                !button->autoDefault() && !button->isDefault(), qPrintable(button->objectName()));
        }
    }

    void aScreenReaderGetsANameOfEachField()
    {
        const char* const names[] = {"part number", "product index", "serial number",
            "production date", "test instruction index", "name"};
        for (const QByteArray region : {"Device", "Board"}) {
            for (int field = 0; field < 6; ++field) {
                QCOMPARE(NameOf<QLineEdit>("txt" + region + Fields[field]),
                    QString(region + ' ' + names[field]));
            }
            QCOMPARE(
                NameOf<QLineEdit>("txt" + region + "DataFile"), QString(region + " data file"));
            QCOMPARE(NameOf<QToolButton>("btn" + region + "DataFileSelector"),
                QString("Select " + region.toLower() + " data file"));
        }
    }

    // The buttons that are disabled are passed over.
    void theTabKeyWalksInReadingOrder()
    {
        window->Tab()->activateWindow();
        Click(window->Child<QLineEdit>("txtDevicePartNumber"));
        QStringList walked;
        for (int step = 0; step < 16; ++step) {
            walked.append(QApplication::focusWidget()->objectName());
            QTest::keyClick(window->Tab()->windowHandle(), Qt::Key_Tab);
        }
        QStringList expected;
        for (const QByteArray region : {"txtDevice", "txtBoard"}) {
            for (const char* const field : Fields) {
                expected.append(region + field);
            }
        }
        QCOMPARE(walked, expected + Texts("txtDeviceDataFile|btnDeviceDataFileSelector|btnReadAll|"
                                          "txtBoardDataFile"));
    }

    void noTextIsCut()
    {
        const auto labels = window->Tab()->findChildren<QLabel*>();
        for (const QLabel* const label : labels) {
            const QSize text = label->fontMetrics().size(0, label->text());
            QVERIFY2(
                label->size().expandedTo(text) == label->size(), qPrintable(label->objectName()));
        }
        const auto buttons = window->Tab()->findChildren<QAbstractButton*>();
        for (const QAbstractButton* const button : buttons) {
            constexpr int frame = 8;
            const QSize text = button->fontMetrics().size(0, button->text());
            QVERIFY2(text.width() + frame <= button->width() && text.height() < button->height(),
                qPrintable(button->objectName()));
        }
        for (const QByteArray field : Fields) {
            const auto* const edit = window->Child<QLineEdit>("txtBoard" + field);
            QVERIFY2(
                edit->fontMetrics().horizontalAdvance("WWWWWWWWWWWWWW") < edit->width(), field);
        }
    }

    // New from 3.00 on; a text that is no number is old.
    void theGenerationDecidesWhatIsOnShow()
    {
        const std::pair<const char*, bool> rows[] = {{"3.00\r", false}, {"2.99\r", true},
            {"3.10", false}, {"", true}, {"V3.1", true}, {"3.0", false}};
        for (const auto& [version, old] : rows) {
            scripted::ForgetEvents();
            Model().SetApplicationStatus("before");
            ConnectToFirmware(version);
            QCOMPARE(scripted::Actions(), old ? QStringList() : BlockRequests);
            QCOMPARE(StatusLine(), old ? "before" : Valid);

            for (const char* const ofNew :
                {"widNewFirmwareItems", "btnReadAll", "btnDeviceDataFileSelector", "boxBoard"}) {
                QCOMPARE(window->IsVisible(ofNew), !old);
            }
            QCOMPARE(window->IsVisible("widOldFirmwareItems"), old);
            QCOMPARE(window->IsVisible("btnWriteOld"), old);
            QVERIFY(window->IsVisible("groupBox"));
            for (const QByteArray field : Fields) {
                const bool inUse = field == "PartNumber" || field == "SerialNumber";
                const QByteArray name = "txtDevice" + field;
                QCOMPARE(window->IsEnabled(name), inUse || !old);
                QCOMPARE(window->IsEnabled("lblDevice" + field), inUse || !old);
                QCOMPARE(window->Child<QLineEdit>(name)->isReadOnly(), !(inUse && old));
            }
        }
    }

    void newFirmwareWithoutALinkSaysSo()
    {
        Disconnect();
        window->Tab()->ConnectionStatusChanged();
        QCOMPARE(StatusLine(), NotConnected);
        QVERIFY(!(window->Tab()->*MemberOf(ReadBlockData()))());
        QCOMPARE(scripted::Events(), QStringList());
    }

    // What is missing of an answer cannot be told from data.
    void theBlocksFillTheirColumns()
    {
        const QByteArray device = Region(DeviceBlock);
        const QByteArray board = Region(BoardBlock);
        const QStringList deviceCut = DeviceTexts.mid(0, 5) + Texts("VX");
        const QStringList boardCut = BoardTexts.mid(0, 5) + Texts("VX");
        const std::tuple<QByteArray, QStringList, QStringList, const char*, QString> rows[] = {
            {device + board, DeviceTexts, BoardTexts, "07", Valid},
            {OfType(device, 110) + board, NoTexts, BoardTexts, "07", Valid},
            {Erased + board, NoTexts, BoardTexts, "07", Valid},
            {device + OfType(board, 110), DeviceTexts, NoTexts, "02", Invalid},
            {device + Erased, DeviceTexts, NoTexts, "02", Invalid},
            {"", NoTexts, NoTexts, "", Invalid},
            {DeviceBlock.left(1), NoTexts, NoTexts, "", Invalid},
            {DeviceBlock.left(32), deviceCut, NoTexts, "02", Invalid},
            {device + BoardBlock.left(32), DeviceTexts, boardCut, "07", Valid},
            {QByteArray(2400, '\x5A'), NoTexts, NoTexts, "", Invalid},
        };
        for (const auto& [held, deviceTexts, boardTexts, variant, status] : rows) {
            StartAnew();
            memory = held;
            const Notified notified;
            window->Tab()->ConnectionStatusChanged();
            QCOMPARE(FieldTexts("Device"), deviceTexts);
            QCOMPARE(FieldTexts("Board"), boardTexts);
            QCOMPARE(ColumnText(8), variant);
            QCOMPARE(StatusLine(), status);
            QCOMPARE(notified.statuses, QStringList(status));
            QCOMPARE(scripted::Actions(), BlockRequests);
        }
    }

    void theColumnsAreNotifiedInTheOrderOfTheRow()
    {
        const Notified notified;
        window->Tab()->ConnectionStatusChanged();
        QCOMPARE(notified.columns,
            (QVector<int>{13, 10, 7, 8, 9, 12, 11, 19, 16, 14, 8, 15, 18, 17, StatusColumn}));
    }

    void aLinkLostWhileReadingABlockIsInvalid()
    {
        for (const int request : {1, 2}) {
            StartAnew();
            scripted::FailSendsFrom(request);
            window->Tab()->ConnectionStatusChanged();
            QCOMPARE(FieldTexts("Device"), request == 1 ? NoTexts : DeviceTexts);
            QCOMPARE(FieldTexts("Board"), NoTexts);
            QCOMPARE(StatusLine(), Invalid);
            QCOMPARE(ConnectionLine(), "Not Connected ");
            QVERIFY(!window->IsEnabled("btnReadAll"));
        }
    }

    void theLinkAndTheFilesDecideWhatIsEnabled()
    {
        const QString file = MakeFile("abc");
        for (const bool connected : {false, true}) {
            connected ? Connect() : TheDeviceCommunication()->Disconnect();
            for (const bool deviceFile : {false, true}) {
                for (const bool boardFile : {false, true}) {
                    // In this order: choosing a board file drops the device's.
                    ChooseFile("Board", boardFile ? file : QString());
                    ChooseFile("Device", deviceFile ? file : QString());
                    QCOMPARE(FileOf("Board"), boardFile ? "data.bin" : "");
                    QCOMPARE(FileOf("Device"), deviceFile ? "data.bin" : "");
                    QCOMPARE(CanWrite("Device"), connected && deviceFile);
                    QCOMPARE(CanWrite("Board"), connected && boardFile);
                    QCOMPARE(window->IsEnabled("btnReadAll"), connected);
                    QCOMPARE(window->IsEnabled("btnWriteOld"), connected);
                }
            }
        }
    }

    void aLostLinkDisablesTheButtons()
    {
        ChooseFile("Board", MakeFile("abc"));
        scripted::FailSendsFrom(1);
        ReadAll();
        for (const char* const button : {"btnReadAll", "btnWriteBoardData", "btnWriteOld"}) {
            QVERIFY2(!window->IsEnabled(button), button);
        }
        QCOMPARE(StatusLine(), ReadFailed);
    }

    void theFileDialogAsksAndItsAnswerIsShownWithoutItsDirectory()
    {
        for (const QByteArray region : {"Device", "Board"}) {
            const AskedForFile asked = ChooseFile(region, MakeFile("abc", region + ".bin"));
            QCOMPARE(asked.times, 1);
            QCOMPARE(asked.title, "Open bin files");
            QCOMPARE(asked.filters, Texts("files *.bin"));
            QCOMPARE(asked.name, QString());
            QCOMPARE(asked.mode, QFileDialog::ExistingFile);
            QCOMPARE(FileOf(region), region + ".bin");
        }
        QCOMPARE(StatusLine(), "before");
        QCOMPARE(scripted::Events(), QStringList());
    }

    void choosingABoardFileDropsTheDeviceFile()
    {
        for (const bool chosen : {true, false}) {
            ChooseFile("Device", MakeFile("abc"));
            QVERIFY(CanWrite("Device"));
            ChooseFile("Board", chosen ? MakeFile("abc", "board.bin") : QString());
            QVERIFY(!CanWrite("Device"));
            QCOMPARE(FileOf("Device"), "data.bin");
            QCOMPARE(CanWrite("Board"), chosen);
        }
    }

    // What the reading back has said is told only for a moment.
    void aFileIsWrittenButForItsLastByte()
    {
        for (const QByteArray region : {"Device", "Board"}) {
            for (const int size : {0, 1, 2, 1199, 1200, 1201, 1500}) {
                const int taken = qMin(size, 1200);
                const QByteArray sent = Filled({}, taken).chopped(size > 0 ? 1 : 0);
                const bool isBlock = region == "Device" || sent.isEmpty();
                ChooseFile(region, MakeFile(Filled({}, size)));
                scripted::ForgetEvents();
                const Notified notified;
                const DialogAtStatus dialog;
                const ShownProgress dialogs;

                const QVariantList progress = ProgressOf([&] { ClickWrite(region); });

                const QString address = region == "Device" ? "0000" : "04B0";
                QCOMPARE(scripted::Actions(),
                    QStringList("send 4346360D" + address + Hex(sent)) + BlockRequests);
                const QString label = QString("Sending %1 bytes...").arg(taken);
                QCOMPARE(progress, (QVariantList{label, "Send data ...", 0, taken, -1,
                                       int(Qt::WindowModal), Writing}));
                QCOMPARE(progressAtWrite, taken - 1);
                // At its end it goes of its own accord. Without a byte it has none.
                QCOMPARE(dialog.wasUp, (QVector<bool>{true, true, true, taken == 0}));
                QCOMPARE(dialogs.ClosedLabels(), QStringList(label));
                QCOMPARE(notified.statuses,
                    (QStringList{Writing, Written, isBlock ? Valid : Invalid, Written}));
                QVERIFY(VisibleProgress() == nullptr);
            }
        }
    }

    void aWriteFailureIsToldAndLeavesTheModel()
    {
        const std::pair<QByteArray, QString> rows[] = {{"0\r", WriteFailed}, {"", NoClearAnswer},
            {"2\r", NoClearAnswer}, {"xy", NoClearAnswer}};
        for (const auto& [answer, status] : rows) {
            acknowledgement = answer;
            ChooseFile("Board", MakeFile("abc"));
            scripted::ForgetEvents();
            const Notified notified;
            ClickWrite("Board");
            QCOMPARE(StatusLine(), status);
            QCOMPARE(notified.statuses, (QStringList{Writing, status, status}));
            QCOMPARE(notified.columns, QVector<int>(3, StatusColumn));
            QCOMPARE(scripted::Actions(), Texts("send 4346360D04B06162"));
            QVERIFY(TheDeviceCommunication()->IsConnected());
            QVERIFY(!CanWrite("Board"));
            QVERIFY(VisibleProgress() == nullptr);
        }
    }

    void aWriteOnALinkThatWasClosedHereSaysSo()
    {
        ChooseFile("Device", MakeFile("abc"));
        Disconnect();
        ClickWrite("Device");
        QCOMPARE(StatusLine(), NotConnected);
        QCOMPARE(scripted::Events(), QStringList());
        QCOMPARE(FileOf("Device"), QString());
        QVERIFY(!CanWrite("Device"));
    }

    void theResultIsPaintedBeforeTheFileIsForgotten()
    {
        for (const bool connected : {true, false}) {
            ChooseFile("Device", MakeFile("abc"));
            if (!connected) {
                Disconnect();
            }
            QObject context;
            QStringList shown;
            WhenStatusIs(context, connected ? Written : NotConnected,
                [&] { InTheNextTurn(context, [&] { shown.append(FileOf("Device")); }); });
            ClickWrite("Device");
            // It is told again behind the reading.
            QCOMPARE(shown, connected ? Texts("data.bin|data.bin") : Texts("data.bin"));
        }
    }

    void aFileThatIsGoneIsWrittenAsNothing()
    {
        const QString path = MakeFile("abc");
        ChooseFile("Board", path);
        QVERIFY(QFile::remove(path));
        const Notified notified;
        ClickWrite("Board");
        QCOMPARE(scripted::Actions(), EmptyWrite);
        const QString told = path + " File could not be found or open";
        QCOMPARE(notified.statuses, (QStringList{Writing, told, Valid, told}));
    }

    // It would wait here for ever.
    void aPipeIsWrittenAsNothing()
    {
        const QString path = MakeFile("abc");
        ChooseFile("Board", path);
        QVERIFY(QFile::remove(path));
        if (QProcess::execute("mkfifo", {path}) != 0) {
            QSKIP("this system has no pipes with a name");
        }
        ClickWrite("Board");
        QCOMPARE(scripted::Actions(), EmptyWrite);
        QCOMPARE(StatusLine(), path + " File could not be found or open");
    }

    void aFileWithoutPermissionIsWrittenAsNothing()
    {
        const QString path = MakeFile("abc");
        const bool isClosed = QFile::setPermissions(path, QFileDevice::Permissions());
        if (!isClosed || QFileInfo(path).isReadable()) {
            QSKIP("this user may read every file");
        }
        Write("Board", path);
        QCOMPARE(scripted::Actions(), EmptyWrite);
        QCOMPARE(StatusLine(), path + " File could not be found or open");
    }

    void aRefusalIsToldInPlaceOfTheMissingFile()
    {
        acknowledgement = "0\r";
        ChooseFile("Device", MakeFile("abc"));
        QVERIFY(QFile::remove(folder->filePath("data.bin")));
        ClickWrite("Device");
        QCOMPARE(StatusLine(), WriteFailed);
    }

    void whatWasWrittenIsReadBack()
    {
        memory.fill('\xFF');
        Write("Device", MakeFile(DeviceBlock + '\0'));
        QCOMPARE(FieldTexts("Device"), DeviceTexts);
        Write("Board", MakeFile(Region(BoardBlock)));
        QCOMPARE(FieldTexts("Board"), BoardTexts);
        QCOMPARE(memory, Region(DeviceBlock) + Region(BoardBlock));
    }

    void aWriteForgetsItsFileAlone()
    {
        ChooseFile("Board", MakeFile("abc", "board.bin"));
        ChooseFile("Device", MakeFile("abc", "device.bin"));
        ClickWrite("Device");
        QCOMPARE(FileOf("Device"), QString());
        QVERIFY(!CanWrite("Device"));
        QCOMPARE(FileOf("Board"), "board.bin");
        QVERIFY(CanWrite("Board"));
        ClickWrite("Board");
        QCOMPARE(FileOf("Board"), QString());
        QVERIFY(!CanWrite("Board"));
    }

    void readingAllSavesBothRegionsAndTellsWhatItDoes()
    {
        const Notified notified;
        const DialogAtStatus dialog;
        const QVariantList progress = ProgressOf([this] { ReadAll(); });
        QCOMPARE(scripted::Actions().size(), 12);
        QCOMPARE(scripted::Actions().mid(10), BlockRequests);
        QCOMPARE(
            QDir(folder->filePath("Zelma-Kovinth/VX440/Eeprom")).entryList(QDir::Files, QDir::Name),
            Texts("VX440Read_VX440_001234.bin|VX440Read_VX440_123456.bin"));
        QCOMPARE(FieldTexts("Device"), DeviceTexts);
        QCOMPARE(FieldTexts("Board"), BoardTexts);
        const QString label = "Reading EEPROM in progress...";
        QCOMPARE(progress, (QVariantList{label, label, 0, 2400, 1, int(Qt::WindowModal), Reading}));
        QCOMPARE(notified.statuses, (QStringList{Reading, Valid, ReadDone}));
        QCOMPARE(dialog.wasUp, (QVector<bool>{true, true, false}));
        QVERIFY(VisibleProgress() == nullptr);
    }

    void theResultIsPaintedBeforeTheReadingIsOver()
    {
        QObject context;
        bool over = false;
        bool overAtPaint = true;
        connect(window->Child<QPushButton>("btnReadAll"), &QPushButton::clicked, &context,
            [&] { over = true; });
        WhenStatusIs(
            context, ReadDone, [&] { InTheNextTurn(context, [&] { overAtPaint = over; }); });
        ReadAll();
        QVERIFY(!overAtPaint);
    }

    void aBadBoardRegionFailsTheReading()
    {
        memory = Region(DeviceBlock) + Erased;
        const Notified notified;
        ReadAll();
        QCOMPARE(notified.statuses, (QStringList{Reading, ReadFailed}));
        QCOMPARE(notified.columns, QVector<int>(2, StatusColumn));
        QCOMPARE(scripted::Actions().size(), 10);
    }

    void withoutALinkReadAllDoesNothing()
    {
        Disconnect();
        window->Child<QPushButton>("btnReadAll")->setEnabled(true);
        const Notified notified;
        ReadAll();
        QCOMPARE(notified.columns, QVector<int>());
        QCOMPARE(scripted::Events(), QStringList());
        QVERIFY(VisibleProgress() == nullptr);
    }

    void aClosedProgressDialogDoesNotEndTheReading()
    {
        WhenProgressShows([] { CloseByTitleBar(VisibleProgress()); });
        ReadAll();
        QCOMPARE(scripted::Actions().size(), 12);
        QCOMPARE(StatusLine(), ReadDone);
        QVERIFY(VisibleProgress() == nullptr);
    }

    void anOldUnitGetsItsNumbers()
    {
        Model().SetMacAddress("02:4C:7E:00:01:29");
        Model().SetSubnetMask("255.0.0.0");
        for (int id = 0; id < 12; ++id) {
            Model().SetMotorParameter(0, id, static_cast<ushort>(0x1100 + id));
            Model().SetMotorParameter(1, id, static_cast<ushort>(0x2200 + id));
        }
        ConnectToFirmware("2.50");
        window->Child<QLineEdit>("txtDevicePartNumber")->setText("1111.2222.33");
        window->Child<QLineEdit>("txtDeviceSerialNumber")->setText("987654321");
        scripted::WhenSlept([](int) { AwaitConnectingThread(); });
        const Notified notified;
        Click(window->Child<QPushButton>("btnWriteOld"));

        const QString frame = scripted::Actions().value(0);
        QCOMPARE(frame.size(), 5 + 2 * 131);
        QVERIFY(frame.startsWith("send 4346320D"
                                 "1100110111021103110411051106110711081109"
                                 "2200220122022203220422052206220722082209"
                                 "024C7E000129"
                                 "7F000001FF000000"));
        QVERIFY(frame.contains(Hex("ZELMA&KOVINTH,VX440,1111.2222.33/987654321\r")));
        QVERIFY(scripted::Actions().contains("connect 50000"));
        QCOMPARE(
            notified.statuses, Texts("Changing Board Data ...|Board Data updated successfully. "));
        QCOMPARE(notified.columns.mid(notified.columns.size() - 4),
            (QVector<int>{10, 7, 4, StatusColumn}));
        QCOMPARE(ColumnText(7), "1111.2222.33");
        QCOMPARE(ColumnText(10), "987654");
        QCOMPARE(ColumnText(4), "02:4C:7E:00:01:29");
        QCOMPARE(ConnectionLine(), "Connected to 127.0.0.1");
    }

    void anOldUnitThatIsLostSaysSo()
    {
        for (const bool reached : {false, true}) {
            StartAnew();
            ConnectToFirmware("2.50");
            window->Child<QLineEdit>("txtDevicePartNumber")->setText("1111.2222.33");
            if (reached) {
                scripted::SetConnectResult(scripted::ConnectResult::Fails);
            } else {
                scripted::FailSendsFrom(1);
            }
            Click(window->Child<QPushButton>("btnWriteOld"));
            QCOMPARE(StatusLine(), "Board Data update failed!.");
            QCOMPARE(scripted::Actions().contains("connect 50000"), reached);
            QCOMPARE(ColumnText(7), QString());
            QCOMPARE(ConnectionLine(), "Not Connected ");
        }
    }
};

VX440_WINDOW_TEST_MAIN(TabBoardDataNewTest)

#include "TabBoardDataNewTest.moc"
