#include "link/CDeviceCommunication.h"
#include "model/CDeviceDatabase.h"
#include "shell/CMainDialog.h"
#include "tests/hardware/BoardDataWindow.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"
#include "tests/support/scripted/ScriptedLink.h"

#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QProgressDialog>
#include <QPushButton>
#include <QStyleOptionGroupBox>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QToolButton>
#include <QWindow>
#include <QtEndian>
#include <QtTest>

#include <memory>

namespace {

constexpr int RegionSize = 1200;
constexpr int StatusColumn = 1;

QStringList Texts(const char* texts)
{
    return QString(texts).split('|');
}

// Part number 12345678.02, product index 1.05, serial number 123456789, 2026-03-09, test
// instruction index 2.10.
const QByteArray DeviceBlock = QByteArray::fromHex("0200000000000000000000004E61BC0002036900"
                                                   "15CD5B07695C0000D200") +
                               QByteArray("VX440\0\0\0\0\0\0\0\0\0", 14);
// Part number 44010450.07, product index -0.01, serial number 1234, 1980-00-00, test instruction
// index 0.
const QByteArray BoardBlock = QByteArray::fromHex("020000000000000000000000D28B9F020701FFFF"
                                                  "D2040000000000000000") +
                              QByteArray("VX440-CTRL\0\0\0\0", 14);
const QStringList DeviceTexts = Texts("1234.5678.02|01.05|123456|2026-03-09|02.10|VX440");
const QStringList BoardTexts = Texts("4401.0450.07|00.-1|001234|1980-00-00|00.00|VX440-CTRL");
const QStringList NoTexts{QString(), QString(), QString(), QString(), QString(), QString()};

constexpr const char* DeviceFields[] = {"txtDevicePartNumber", "txtDeviceProductIndex",
    "txtDeviceSerialNumber", "txtDeviceProductionDate", "txtDeviceTestInstructionIndex",
    "txtDeviceName"};
constexpr const char* BoardFields[] = {"txtBoardPartNumber", "txtBoardProductIndex",
    "txtBoardSerialNumber", "txtBoardProductionDate", "txtBoardTestInstructionIndex",
    "txtBoardName"};

const QStringList BlockRequests = Texts("send 4346370D00400000|send 4346370D004004B0");

const QString NotConnected = "Not connected to any device!";
const QString Written = "Data written to the device successfully.";
const QString NoClearAnswer = "An error occoured during transmission.";
const QString WriteFailed = "EEPROM data write failed!";

QByteArray Region(const QByteArray& block)
{
    return block + QByteArray(RegionSize - block.size(), '\xFF');
}

QByteArray OfAnotherType(QByteArray block)
{
    block[0] = 110;
    return block;
}

QString Hex(const QByteArray& bytes)
{
    return QString::fromLatin1(bytes.toHex().toUpper());
}

CDeviceDatabase& Model()
{
    return *TheDeviceDatabase();
}

QString ColumnText(int column)
{
    return Model().index(0, column).data().toString();
}

// What the model notifies as long as the object lives.
class Notified
{
    Q_DISABLE_COPY(Notified)

public:
    Notified()
    {
        connection = QObject::connect(
            &Model(), &QAbstractItemModel::dataChanged, [this](const QModelIndex& cell) {
                columns.append(cell.column());
                if (cell.column() == StatusColumn) {
                    statuses.append(cell.data().toString());
                }
            });
    }
    ~Notified() { QObject::disconnect(connection); }

    QVector<int> columns;
    QStringList statuses;

private:
    QMetaObject::Connection connection;
};

// What a progress dialog was like when it came up.
struct Progress
{
    QString label;
    int minimum = -1;
    int maximum = -1;
    Qt::WindowModality modality = Qt::NonModal;
    QString status;
};

} // namespace

/// The tab inside the program, with a unit that the test scripts: no wait takes any time.
class TabBoardDataNewTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();

    void theToolsWindowNeverShowsIt();
    void theDialogsSlotsShowAPageOnly();
    void theFormHasItsSizes();
    void everyWidgetIsThere_data();
    void everyWidgetIsThere();
    void theWidgetsStandInTheirOrder();
    void theGroupsHaveTheirLetters();
    void fieldsAreReadOnlyAndNamed();
    void theTabKeyWalksInReadingOrder();
    void noTextIsCut();
    void noButtonIsADefault();

    void aFieldFollowsItsColumn_data();
    void aFieldFollowsItsColumn();

    void theGenerationDecidesWhatIsOnShow_data();
    void theGenerationDecidesWhatIsOnShow();
    void newFirmwareWithoutALinkSaysSo();
    void newFirmwareShowsAgainWhatOldFirmwareHid();
    void theBlocksFillTheirColumns_data();
    void theBlocksFillTheirColumns();
    void theColumnsAreNotifiedInTheOrderOfTheRow();
    void aLinkLostWhileReadingABlockIsInvalid_data();
    void aLinkLostWhileReadingABlockIsInvalid();

    void theLinkAndTheFilesDecideWhatIsEnabled();
    void aLostLinkDisablesTheButtons();

    void theFileDialogAsks_data();
    void theFileDialogAsks();
    void aChosenFileIsShownWithoutItsDirectory();
    void aCancelledDialogForgetsTheFile_data();
    void aCancelledDialogForgetsTheFile();
    void choosingABoardFileDropsTheDeviceFile();
    void choosingADeviceFileKeepsTheBoardFile();
    void withoutALinkAChosenFileEnablesNothing();

    void aFileIsWrittenButForItsLastByte_data();
    void aFileIsWrittenButForItsLastByte();
    void aWriteFailureIsTold_data();
    void aWriteFailureIsTold();
    void aRefusalLeavesTheModel();
    void aWriteOnALinkThatWasClosedHereSaysSo();
    void aFileThatIsGoneIsWrittenAsNothing();
    void aPipeIsWrittenAsNothing();
    void aFileWithoutPermissionIsWrittenAsNothing();
    void aRefusalIsToldInPlaceOfTheMissingFile();
    void whatWasWrittenIsReadBack();
    void aWriteForgetsItsFileAlone();
    void writingTellsWhatItDoes();

    void readingAllSavesBothRegions();
    void readingAllTellsWhatItDoes();
    void aBadBoardRegionFailsTheReading();
    void aBadDeviceRegionGoesUnnoticed();
    void aDirectoryThatCannotBeMadeFailsTheReading();
    void aReadOnlyFileFailsTheReading();
    void withoutALinkReadAllDoesNothing();
    void aClosedProgressDialogDoesNotEndTheReading();

    void anOldUnitGetsItsNumbers();
    void anOldUnitThatCannotBeSentToSaysSo();
    void anOldUnitThatDoesNotComeBackSaysSo();

private:
    static void Connect();
    void ChooseFile(const QByteArray& region, const QString& path) const;
    void Answer(const QByteArray& frame);
    QString MakeFile(const QByteArray& content, const char* name = "data.bin");
    QStringList FieldTexts(const char* const (&fields)[6]) const;
    Progress ClickWithProgress(const char* button);

    std::unique_ptr<BoardDataWindow> window;
    std::unique_ptr<QTemporaryDir> folder;
    QByteArray memory;
    QByteArray acknowledgement;
};

void TabBoardDataNewTest::initTestCase()
{
    window = std::make_unique<BoardDataWindow>();
    for (const char* const button :
        {"btnWriteOld", "btnReadAll", "btnWriteDeviceData", "btnWriteBoardData"}) {
        QVERIFY2(!window->IsEnabled(button), button);
    }
}

void TabBoardDataNewTest::cleanupTestCase()
{
    TheDeviceCommunication()->Disconnect();
    window.reset();
}

// New firmware, connected, with a good block in each region.
void TabBoardDataNewTest::init()
{
    WarningsFail::init();
    folder = std::make_unique<QTemporaryDir>();
    qputenv("PROGRAMDATA", QFile::encodeName(folder->path()));
    memory = Region(DeviceBlock) + Region(BoardBlock);
    acknowledgement = "1\r";
    scripted::Reset();
    scripted::WhenSent([this](const QByteArray& frame) { Answer(frame); });
    Model().ResetData();
    Model().SetIpAddress("127.0.0.1");
    Model().SetFirmwareVersion("3.10\r");
    Connect();
    window->Tab()->ConnectionStatusChanged();
    window->Tab()->UpdateControls();
    for (const char* const region : {"Device", "Board"}) {
        if (!window->TextOf((QByteArray("txt") + region + "DataFile").constData()).isEmpty()) {
            ChooseFile(region, QString());
        }
    }
    for (const int set : {0, 1}) {
        Model().SetPartNumber(QString(), set);
        Model().SetProductIndex(QString(), set);
        Model().SetSerialNumber(QString(), set);
        Model().SetProductionDate(QString(), set);
        Model().SetTestInstructionIndex(QString(), set);
        Model().SetBoardName(QString(), set);
    }
    Model().SetVariant(QString());
    Model().SetApplicationStatus("before");
    scripted::ForgetEvents();
}

void TabBoardDataNewTest::Connect()
{
    TheDeviceCommunication()->StartConnection("127.0.0.1");
    TheDeviceCommunication()->wait();
}

// As a unit does; a refused write changes nothing.
void TabBoardDataNewTest::Answer(const QByteArray& frame)
{
    const QByteArray payload = frame.mid(4);
    if (frame.startsWith("CF7\r")) {
        const int size = qFromBigEndian<quint16>(payload.constData());
        const int offset = qFromBigEndian<quint16>(payload.constData() + 2);
        scripted::DeliverAfter(1000, memory.mid(offset, size));
    }
    if (frame.startsWith("CF6\r")) {
        if (acknowledgement == "1\r") {
            const int offset = qFromBigEndian<quint16>(payload.constData());
            memory.replace(offset, payload.size() - 2, payload.mid(2));
        }
        scripted::DeliverAfter(5, acknowledgement);
    }
}

// An empty path cancels.
void TabBoardDataNewTest::ChooseFile(const QByteArray& region, const QString& path) const
{
    ClickAndChoose(
        window->Child<QToolButton>(("btn" + region + "DataFileSelector").constData()), path);
}

QString TabBoardDataNewTest::MakeFile(const QByteArray& content, const char* name)
{
    QFile file(folder->filePath(QString(name)));
    const bool made = file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
    return made ? file.fileName() : QString();
}

QStringList TabBoardDataNewTest::FieldTexts(const char* const (&fields)[6]) const
{
    QStringList texts;
    for (const char* const field : fields) {
        texts.append(window->TextOf(field));
    }
    return texts;
}

Progress TabBoardDataNewTest::ClickWithProgress(const char* button)
{
    Progress progress;
    WhenProgressShows([&progress] {
        const QProgressDialog* const dialog = VisibleProgress();
        progress = {dialog->labelText(), dialog->minimum(), dialog->maximum(),
            dialog->windowModality(), StatusLine()};
    });
    Click(window->Child<QPushButton>(button));
    return progress;
}

void TabBoardDataNewTest::theToolsWindowNeverShowsIt()
{
    const auto* const pages = Find<QTabWidget>("tabWidget");
    for (int page = 0; page < pages->count(); ++page) {
        QVERIFY(qobject_cast<CTabBoardDataNew*>(pages->widget(page)) == nullptr);
    }
}

void TabBoardDataNewTest::theDialogsSlotsShowAPageOnly()
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

void TabBoardDataNewTest::theFormHasItsSizes()
{
    QCOMPARE(window->Tab()->objectName(), "TabBoardDataNew");
    QCOMPARE(window->Tab()->minimumSize(), QSize(850, 310));
    QCOMPARE(window->Tab()->maximumSize(), QSize(850, 340));
}

void TabBoardDataNewTest::everyWidgetIsThere_data()
{
    QTest::addColumn<QString>("className");
    QTest::addColumn<QString>("parent");
    QTest::addColumn<QString>("text");
    const auto row = [](const char* name, const char* className, const char* parent,
                         const char* text) {
        QTest::newRow(name) << QString(className) << QString(parent) << QString(text);
    };
    row("groupBox", "QGroupBox", "TabBoardDataNew", "Device");
    row("boxBoard", "QGroupBox", "TabBoardDataNew", "Board");
    row("widOldFirmwareItems", "QWidget", "TabBoardDataNew", "");
    row("widNewFirmwareItems", "QWidget", "TabBoardDataNew", "");
    for (const char* const field : DeviceFields) {
        row(field, "QLineEdit", "groupBox", "");
    }
    for (const char* const field : BoardFields) {
        row(field, "QLineEdit", "boxBoard", "");
    }
    row("lblDeviceTestInstructionIndex", "QLabel", "groupBox", "Test instruction index");
    row("lblDeviceProductIndex", "QLabel", "groupBox", "Product index");
    row("lblDevicePartNumber", "QLabel", "groupBox", "Part number");
    row("lblDeviceSerialNumber", "QLabel", "groupBox", "Serial number");
    row("lblDeviceName", "QLabel", "groupBox", "Name");
    row("lblDeviceProductionDate", "QLabel", "groupBox", "Production  date");
    row("lblBoardTestInstructionIndex", "QLabel", "boxBoard", "Test instruction index");
    row("lblBoardProductIndex", "QLabel", "boxBoard", "Product index");
    row("lblBoardPartNumber", "QLabel", "boxBoard", "Part number");
    row("lblBoardSerialNumber", "QLabel", "boxBoard", "Serial number");
    row("lblBoardName", "QLabel", "boxBoard", "Name");
    row("lblBoardProductionDate", "QLabel", "boxBoard", "Production  date");
    row("btnWriteOld", "QPushButton", "widOldFirmwareItems", "Write to Device");
    row("btnReadAll", "QPushButton", "widNewFirmwareItems", "Read All");
    row("btnDeviceDataFileSelector", "QToolButton", "widNewFirmwareItems", "...");
    row("txtBoardDataFile", "QLineEdit", "widNewFirmwareItems", "");
    row("btnWriteDeviceData", "QPushButton", "widNewFirmwareItems", "Write Device Data");
    row("btnBoardDataFileSelector", "QToolButton", "widNewFirmwareItems", "...");
    row("lblBoardDataFile", "QLabel", "widNewFirmwareItems", "Board Data file");
    row("lblDeviceDataFile", "QLabel", "widNewFirmwareItems", "Device Data file");
    row("txtDeviceDataFile", "QLineEdit", "widNewFirmwareItems", "");
    row("btnWriteBoardData", "QPushButton", "widNewFirmwareItems", "Write Board Data");
}

void TabBoardDataNewTest::everyWidgetIsThere()
{
    QFETCH(QString, className);
    const auto* const widget = window->Child<QWidget>(QTest::currentDataTag());
    QVERIFY(widget != nullptr);
    QCOMPARE(QString(widget->metaObject()->className()), className);
    QTEST(widget->parentWidget()->objectName(), "parent");
    const char* const property = className == "QGroupBox" ? "title" : "text";
    QTEST(widget->property(property).toString(), "text");
}

void TabBoardDataNewTest::theWidgetsStandInTheirOrder()
{
    QStringList names;
    for (const char* const box :
        {"groupBox", "boxBoard", "widOldFirmwareItems", "widNewFirmwareItems"}) {
        names.append(QString(box));
        const QObjectList& children = window->Child<QWidget>(box)->children();
        for (const QObject* const child : children) {
            names.append(child->objectName());
        }
    }
    QCOMPARE(names,
        Texts("groupBox|txtDevicePartNumber|lblDeviceTestInstructionIndex|txtDeviceProductionDate|"
              "txtDeviceTestInstructionIndex|txtDeviceSerialNumber|txtDeviceName|"
              "lblDeviceProductIndex|lblDevicePartNumber|txtDeviceProductIndex|"
              "lblDeviceSerialNumber|lblDeviceName|lblDeviceProductionDate|boxBoard|"
              "lblBoardProductionDate|lblBoardName|lblBoardTestInstructionIndex|"
              "txtBoardPartNumber|lblBoardPartNumber|lblBoardProductIndex|lblBoardSerialNumber|"
              "txtBoardSerialNumber|txtBoardTestInstructionIndex|txtBoardProductionDate|"
              "txtBoardName|txtBoardProductIndex|widOldFirmwareItems|btnWriteOld|"
              "widNewFirmwareItems|btnReadAll|btnDeviceDataFileSelector|txtBoardDataFile|"
              "btnWriteDeviceData|btnBoardDataFileSelector|lblBoardDataFile|lblDeviceDataFile|"
              "txtDeviceDataFile|btnWriteBoardData"));
}

void TabBoardDataNewTest::theGroupsHaveTheirLetters()
{
    for (const char* const box : {"groupBox", "boxBoard"}) {
        QCOMPARE(window->Child<QGroupBox>(box)->styleSheet(),
            "QGroupBox\n{\n    font-size: 12px;\n    font-weight: bold;\n}");
    }
}

void TabBoardDataNewTest::fieldsAreReadOnlyAndNamed()
{
    const auto edits = window->Tab()->findChildren<QLineEdit*>();
    QCOMPARE(edits.size(), 14);
    for (const QLineEdit* const edit : edits) {
        QVERIFY2(edit->isReadOnly(), qPrintable(edit->objectName()));
        QVERIFY2(!edit->accessibleName().isEmpty(), qPrintable(edit->objectName()));
    }
    const auto buttons = window->Tab()->findChildren<QToolButton*>();
    for (const QToolButton* const button : buttons) {
        QVERIFY2(!button->accessibleName().isEmpty(), qPrintable(button->objectName()));
    }
}

void TabBoardDataNewTest::theTabKeyWalksInReadingOrder()
{
    window->Tab()->activateWindow();
    Click(window->Child<QLineEdit>("txtDevicePartNumber"));
    QStringList walked;
    for (int step = 0; step < 16; ++step) {
        walked.append(QApplication::focusWidget()->objectName());
        QTest::keyClick(window->Tab()->windowHandle(), Qt::Key_Tab);
    }
    // The buttons that are disabled are passed over.
    QCOMPARE(
        walked, Texts("txtDevicePartNumber|txtDeviceProductIndex|txtDeviceSerialNumber|"
                      "txtDeviceProductionDate|txtDeviceTestInstructionIndex|txtDeviceName|"
                      "txtBoardPartNumber|txtBoardProductIndex|txtBoardSerialNumber|"
                      "txtBoardProductionDate|txtBoardTestInstructionIndex|txtBoardName|"
                      "txtDeviceDataFile|btnDeviceDataFileSelector|btnReadAll|txtBoardDataFile"));
}

void TabBoardDataNewTest::noTextIsCut()
{
    const auto labels = window->Tab()->findChildren<QLabel*>();
    for (const QLabel* const label : labels) {
        const QSize text = label->fontMetrics().size(0, label->text());
        QVERIFY2(text.width() <= label->width() && text.height() <= label->height(),
            qPrintable(label->objectName()));
    }
    const auto buttons = window->Tab()->findChildren<QAbstractButton*>();
    for (const QAbstractButton* const button : buttons) {
        constexpr int frame = 8;
        const QSize text = button->fontMetrics().size(0, button->text());
        QVERIFY2(text.width() + frame <= button->width() && text.height() < button->height(),
            qPrintable(button->objectName()));
    }
    for (const char* const field : BoardFields) {
        const auto* const edit = window->Child<QLineEdit>(field);
        const int text = edit->fontMetrics().horizontalAdvance("WWWWWWWWWWWWWW");
        QVERIFY2(text < edit->width(), field);
    }
}

void TabBoardDataNewTest::noButtonIsADefault()
{
    const auto buttons = window->Tab()->findChildren<QPushButton*>();
    QCOMPARE(buttons.size(), 4);
    for (const QPushButton* const button : buttons) {
        QVERIFY2(!button->autoDefault() && !button->isDefault(), qPrintable(button->objectName()));
    }
}

void TabBoardDataNewTest::aFieldFollowsItsColumn_data()
{
    QTest::addColumn<int>("column");
    for (int i = 0; i < 6; ++i) {
        const int columnOfDevice = i == 0 ? 7 : 8 + i; // the variant has no field
        QTest::newRow(DeviceFields[i]) << columnOfDevice;
        QTest::newRow(BoardFields[i]) << 14 + i;
    }
}

void TabBoardDataNewTest::aFieldFollowsItsColumn()
{
    QFETCH(int, column);
    const QMap<int, std::function<void()>> setters{
        {7, [] { Model().SetPartNumber("new", 0); }},
        {9, [] { Model().SetProductIndex("new", 0); }},
        {10, [] { Model().SetSerialNumber("new", 0); }},
        {11, [] { Model().SetProductionDate("new", 0); }},
        {12, [] { Model().SetTestInstructionIndex("new", 0); }},
        {13, [] { Model().SetBoardName("new", 0); }},
        {14, [] { Model().SetPartNumber("new", 1); }},
        {15, [] { Model().SetProductIndex("new", 1); }},
        {16, [] { Model().SetSerialNumber("new", 1); }},
        {17, [] { Model().SetProductionDate("new", 1); }},
        {18, [] { Model().SetTestInstructionIndex("new", 1); }},
        {19, [] { Model().SetBoardName("new", 1); }},
    };
    setters.value(column)();
    QCOMPARE(window->TextOf(QTest::currentDataTag()), "new");
    QCOMPARE((FieldTexts(DeviceFields) + FieldTexts(BoardFields)).count("new"), 1);
}

void TabBoardDataNewTest::theGenerationDecidesWhatIsOnShow_data()
{
    QTest::addColumn<QString>("version");
    QTest::addColumn<bool>("old");
    QTest::newRow("3.00 is new") << "3.00\r" << false;
    QTest::newRow("3.10 is new") << "3.10" << false;
    QTest::newRow("2.99 is old") << "2.99\r" << true;
    QTest::newRow("unknown is old") << QString() << true;
    QTest::newRow("no number is old") << "V3.1" << true;
}

void TabBoardDataNewTest::theGenerationDecidesWhatIsOnShow()
{
    QFETCH(QString, version);
    QFETCH(bool, old);
    Model().SetFirmwareVersion(version);
    window->Tab()->ConnectionStatusChanged();
    QCOMPARE(scripted::Actions(), old ? QStringList() : BlockRequests);
    QCOMPARE(StatusLine(), old ? "before" : "Eeprom data valid");

    QCOMPARE(window->IsVisible("widNewFirmwareItems"), !old);
    QCOMPARE(window->IsVisible("btnReadAll"), !old);
    QCOMPARE(window->IsVisible("btnDeviceDataFileSelector"), !old);
    QCOMPARE(window->IsVisible("boxBoard"), !old);
    QCOMPARE(window->IsVisible("widOldFirmwareItems"), old);
    QCOMPARE(window->IsVisible("btnWriteOld"), old);
    QVERIFY(window->IsVisible("groupBox"));
    for (const char* const of :
        {"ProductIndex", "ProductionDate", "TestInstructionIndex", "Name"}) {
        QCOMPARE(window->IsEnabled((QByteArray("lblDevice") + of).constData()), !old);
        QCOMPARE(window->IsEnabled((QByteArray("txtDevice") + of).constData()), !old);
        QVERIFY(window->Child<QLineEdit>((QByteArray("txtDevice") + of).constData())->isReadOnly());
    }
    for (const char* const field : {"txtDevicePartNumber", "txtDeviceSerialNumber"}) {
        QVERIFY(window->IsEnabled(field));
        QCOMPARE(window->Child<QLineEdit>(field)->isReadOnly(), !old);
    }
}

void TabBoardDataNewTest::newFirmwareWithoutALinkSaysSo()
{
    TheDeviceCommunication()->Disconnect();
    scripted::ForgetEvents();
    window->Tab()->ConnectionStatusChanged();
    QCOMPARE(StatusLine(), NotConnected);
    QCOMPARE(scripted::Events(), QStringList());
}

void TabBoardDataNewTest::newFirmwareShowsAgainWhatOldFirmwareHid()
{
    Model().SetFirmwareVersion("2.5");
    window->Tab()->ConnectionStatusChanged();
    Model().SetFirmwareVersion("3.0");
    window->Tab()->ConnectionStatusChanged();
    QVERIFY(window->IsVisible("widNewFirmwareItems"));
    QVERIFY(window->IsVisible("boxBoard"));
    QVERIFY(!window->IsVisible("widOldFirmwareItems"));
    QVERIFY(window->IsEnabled("txtDeviceName"));
    QVERIFY(window->Child<QLineEdit>("txtDeviceSerialNumber")->isReadOnly());
}

void TabBoardDataNewTest::theBlocksFillTheirColumns_data()
{
    QTest::addColumn<QByteArray>("memory");
    QTest::addColumn<QStringList>("device");
    QTest::addColumn<QStringList>("board");
    QTest::addColumn<QString>("variant");
    QTest::addColumn<QString>("status");
    const QByteArray device = Region(DeviceBlock);
    const QByteArray board = Region(BoardBlock);
    const QByteArray erased(RegionSize, '\xFF');
    const QString valid = "Eeprom data valid";
    const QString invalid = "Eeprom data invalid";
    QTest::newRow("both, and the board's variant stays")
        << device + board << DeviceTexts << BoardTexts << "07" << valid;
    QTest::newRow("a device of another type goes unnoticed")
        << OfAnotherType(device) + board << NoTexts << BoardTexts << "07" << valid;
    QTest::newRow("an erased device goes unnoticed")
        << erased + board << NoTexts << BoardTexts << "07" << valid;
    QTest::newRow("a board of another type")
        << device + OfAnotherType(board) << DeviceTexts << NoTexts << "02" << invalid;
    QTest::newRow("an erased board")
        << device + erased << DeviceTexts << NoTexts << "02" << invalid;
    QTest::newRow("silence") << QByteArray() << NoTexts << NoTexts << QString() << invalid;
    QTest::newRow("an answer of one byte")
        << DeviceBlock.left(1) << NoTexts << NoTexts << QString() << invalid;
    // What is missing cannot be told from data.
    QTest::newRow("an answer that ends inside the name")
        << DeviceBlock.left(32) << DeviceTexts.mid(0, 5) + Texts("VX") << NoTexts << "02"
        << invalid;
    QTest::newRow("garbage") << QByteArray(2400, '\x5A') << NoTexts << NoTexts << QString()
                             << invalid;
}

void TabBoardDataNewTest::theBlocksFillTheirColumns()
{
    QFETCH(QByteArray, memory);
    this->memory = memory;
    const Notified notified;
    window->Tab()->ConnectionStatusChanged();
    QTEST(FieldTexts(DeviceFields), "device");
    QTEST(FieldTexts(BoardFields), "board");
    QTEST(ColumnText(8), "variant");
    QTEST(StatusLine(), "status");
    QCOMPARE(notified.statuses.size(), 1);
    QCOMPARE(scripted::Actions(), BlockRequests);
}

void TabBoardDataNewTest::theColumnsAreNotifiedInTheOrderOfTheRow()
{
    const Notified notified;
    window->Tab()->ConnectionStatusChanged();
    QCOMPARE(notified.columns,
        (QVector<int>{13, 10, 7, 8, 9, 12, 11, 19, 16, 14, 8, 15, 18, 17, StatusColumn}));
}

void TabBoardDataNewTest::aLinkLostWhileReadingABlockIsInvalid_data()
{
    QTest::addColumn<int>("request");
    QTest::addColumn<QStringList>("device");
    QTest::newRow("the device's") << 1 << NoTexts;
    QTest::newRow("the board's") << 2 << DeviceTexts;
}

void TabBoardDataNewTest::aLinkLostWhileReadingABlockIsInvalid()
{
    QFETCH(int, request);
    scripted::FailSendsFrom(request);
    window->Tab()->ConnectionStatusChanged();
    QTEST(FieldTexts(DeviceFields), "device");
    QCOMPARE(FieldTexts(BoardFields), NoTexts);
    QCOMPARE(StatusLine(), "Eeprom data invalid");
    QCOMPARE(ConnectionLine(), "Not Connected ");
    QVERIFY(!window->IsEnabled("btnReadAll"));
}

void TabBoardDataNewTest::theLinkAndTheFilesDecideWhatIsEnabled()
{
    const QString file = MakeFile("abc");
    for (const bool connected : {false, true}) {
        connected ? Connect() : TheDeviceCommunication()->Disconnect();
        for (const bool deviceFile : {false, true}) {
            for (const bool boardFile : {false, true}) {
                // In this order: choosing a board file drops the device's.
                ChooseFile("Board", boardFile ? file : QString());
                ChooseFile("Device", deviceFile ? file : QString());
                QCOMPARE(window->IsEnabled("btnWriteDeviceData"), connected && deviceFile);
                QCOMPARE(window->IsEnabled("btnWriteBoardData"), connected && boardFile);
                QCOMPARE(window->IsEnabled("btnReadAll"), connected);
                QCOMPARE(window->IsEnabled("btnWriteOld"), connected);
            }
        }
    }
}

void TabBoardDataNewTest::aLostLinkDisablesTheButtons()
{
    ChooseFile("Board", MakeFile("abc"));
    scripted::FailSendsFrom(1);
    Click(window->Child<QPushButton>("btnReadAll"));
    for (const char* const button : {"btnReadAll", "btnWriteBoardData", "btnWriteOld"}) {
        QVERIFY2(!window->IsEnabled(button), button);
    }
    QCOMPARE(StatusLine(), "Could not read data from device EEPROM.");
}

void TabBoardDataNewTest::theFileDialogAsks_data()
{
    QTest::addColumn<QString>("button");
    QTest::newRow("device") << "btnDeviceDataFileSelector";
    QTest::newRow("board") << "btnBoardDataFileSelector";
}

void TabBoardDataNewTest::theFileDialogAsks()
{
    QFETCH(QString, button);
    const AskedForFile asked =
        ClickAndChoose(window->Tab()->findChild<QToolButton*>(button), QString());
    QCOMPARE(asked.times, 1);
    QCOMPARE(asked.title, "Open bin files");
    QCOMPARE(asked.filters, Texts("files *.bin"));
    QCOMPARE(asked.name, QString());
    QCOMPARE(asked.mode, QFileDialog::ExistingFile);
}

void TabBoardDataNewTest::aChosenFileIsShownWithoutItsDirectory()
{
    ChooseFile("Device", MakeFile("abc", "one.bin"));
    QCOMPARE(window->TextOf("txtDeviceDataFile"), "one.bin");
    QCOMPARE(window->TextOf("txtBoardDataFile"), QString());
    ChooseFile("Board", MakeFile("abc", "two.bin"));
    QCOMPARE(window->TextOf("txtBoardDataFile"), "two.bin");
    QCOMPARE(StatusLine(), "before");
    QCOMPARE(scripted::Events(), QStringList());
}

void TabBoardDataNewTest::aCancelledDialogForgetsTheFile_data()
{
    QTest::addColumn<QByteArray>("region");
    QTest::newRow("device") << QByteArray("Device");
    QTest::newRow("board") << QByteArray("Board");
}

void TabBoardDataNewTest::aCancelledDialogForgetsTheFile()
{
    QFETCH(QByteArray, region);
    ChooseFile(region, MakeFile("abc"));
    QVERIFY(window->IsEnabled(("btnWrite" + region + "Data").constData()));
    ChooseFile(region, QString());
    QVERIFY(!window->IsEnabled(("btnWrite" + region + "Data").constData()));
    QCOMPARE(window->TextOf(("txt" + region + "DataFile").constData()), QString());
}

void TabBoardDataNewTest::choosingABoardFileDropsTheDeviceFile()
{
    for (const bool chosen : {true, false}) {
        ChooseFile("Device", MakeFile("abc"));
        QVERIFY(window->IsEnabled("btnWriteDeviceData"));
        ChooseFile("Board", chosen ? MakeFile("abc", "board.bin") : QString());
        QVERIFY(!window->IsEnabled("btnWriteDeviceData"));
        QCOMPARE(window->TextOf("txtDeviceDataFile"), "data.bin");
        QCOMPARE(window->IsEnabled("btnWriteBoardData"), chosen);
    }
}

void TabBoardDataNewTest::choosingADeviceFileKeepsTheBoardFile()
{
    ChooseFile("Board", MakeFile("abc"));
    ChooseFile("Device", MakeFile("abc"));
    QVERIFY(window->IsEnabled("btnWriteDeviceData"));
    QVERIFY(window->IsEnabled("btnWriteBoardData"));
}

void TabBoardDataNewTest::withoutALinkAChosenFileEnablesNothing()
{
    TheDeviceCommunication()->Disconnect();
    ChooseFile("Device", MakeFile("abc"));
    QVERIFY(!window->IsEnabled("btnWriteDeviceData"));
    QCOMPARE(window->TextOf("txtDeviceDataFile"), "data.bin");
}

void TabBoardDataNewTest::aFileIsWrittenButForItsLastByte_data()
{
    QTest::addColumn<QByteArray>("region");
    QTest::addColumn<QString>("address");
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("sent");
    QTest::addColumn<QString>("label");
    const struct
    {
        const char* region;
        const char* address;
    } regions[] = {{"Device", "0000"}, {"Board", "04B0"}};
    const struct
    {
        int size;
        int sent;
        const char* label;
    } files[] = {
        {0, 0, "Sending 0 bytes..."},
        {1, 0, "Sending 1 bytes..."},
        {2, 1, "Sending 2 bytes..."},
        {1199, 1198, "Sending 1199 bytes..."},
        {1200, 1199, "Sending 1200 bytes..."},
        {1201, 1199, "Sending 1200 bytes..."},
        {1500, 1199, "Sending 1200 bytes..."},
    };
    for (const auto& region : regions) {
        for (const auto& file : files) {
            QTest::addRow("%s, %d bytes", region.region, file.size)
                << QByteArray(region.region) << QString(region.address) << file.size << file.sent
                << QString(file.label);
        }
    }
}

void TabBoardDataNewTest::aFileIsWrittenButForItsLastByte()
{
    QFETCH(QByteArray, region);
    QFETCH(QString, address);
    QFETCH(int, size);
    QFETCH(int, sent);
    QByteArray content;
    for (int i = 0; i < size; ++i) {
        content.append(static_cast<char>(i % 251));
    }
    ChooseFile(region, MakeFile(content));

    const Progress progress = ClickWithProgress(("btnWrite" + region + "Data").constData());

    const QString frame = QString("send 4346360D") + address + Hex(content.left(sent));
    QCOMPARE(scripted::Actions().value(0), frame);
    QCOMPARE(frame.size(), 5 + 2 * (sent + 6));
    QCOMPARE(scripted::Actions().mid(1), BlockRequests);
    QTEST(progress.label, "label");
    QCOMPARE(progress.minimum, 0);
    QCOMPARE(progress.maximum, qMin(size, 1200));
    QCOMPARE(progress.modality, Qt::WindowModal);
    QCOMPARE(progress.status, "Writing data to the device ..");
    QCOMPARE(StatusLine(), Written);
    QVERIFY(VisibleProgress() == nullptr);
}

void TabBoardDataNewTest::aWriteFailureIsTold_data()
{
    QTest::addColumn<QByteArray>("acknowledgement");
    QTest::addColumn<QString>("status");
    QTest::newRow("refused") << QByteArray("0\r") << WriteFailed;
    QTest::newRow("no answer") << QByteArray() << NoClearAnswer;
    QTest::newRow("an answer of 2") << QByteArray("2\r") << NoClearAnswer;
    QTest::newRow("garbage") << QByteArray("xy") << NoClearAnswer;
}

void TabBoardDataNewTest::aWriteFailureIsTold()
{
    QFETCH(QByteArray, acknowledgement);
    this->acknowledgement = acknowledgement;
    ChooseFile("Board", MakeFile("abc"));
    const Notified notified;
    Click(window->Child<QPushButton>("btnWriteBoardData"));
    QTEST(StatusLine(), "status");
    QCOMPARE(notified.statuses,
        (QStringList{"Writing data to the device ..", StatusLine(), StatusLine()}));
    QCOMPARE(scripted::Actions(), Texts("send 4346360D04B06162"));
    QVERIFY(TheDeviceCommunication()->IsConnected());
    QVERIFY(!window->IsEnabled("btnWriteBoardData"));
    QVERIFY(VisibleProgress() == nullptr);
}

void TabBoardDataNewTest::aRefusalLeavesTheModel()
{
    acknowledgement = "0\r";
    ChooseFile("Device", MakeFile(DeviceBlock));
    const Notified notified;
    Click(window->Child<QPushButton>("btnWriteDeviceData"));
    QCOMPARE(
        QSet<int>(notified.columns.cbegin(), notified.columns.cend()), QSet<int>{StatusColumn});
    QCOMPARE(FieldTexts(DeviceFields), NoTexts);
}

void TabBoardDataNewTest::aWriteOnALinkThatWasClosedHereSaysSo()
{
    ChooseFile("Device", MakeFile("abc"));
    TheDeviceCommunication()->Disconnect();
    scripted::ForgetEvents();
    Click(window->Child<QPushButton>("btnWriteDeviceData"));
    QCOMPARE(StatusLine(), NotConnected);
    QCOMPARE(scripted::Events(), QStringList());
    QCOMPARE(window->TextOf("txtDeviceDataFile"), QString());
    QVERIFY(!window->IsEnabled("btnWriteDeviceData"));
}

// What is read back leaves its own text only for a moment.
void TabBoardDataNewTest::aFileThatIsGoneIsWrittenAsNothing()
{
    const QString path = MakeFile("abc");
    ChooseFile("Device", path);
    QVERIFY(QFile::remove(path));
    const QString told = path + " File could not be found or open";
    const Notified notified;
    const Progress progress = ClickWithProgress("btnWriteDeviceData");
    QCOMPARE(progress.label, "Sending 0 bytes...");
    QCOMPARE(progress.maximum, 0);
    QCOMPARE(scripted::Actions(), Texts("send 4346360D0000") + BlockRequests);
    QCOMPARE(StatusLine(), told);
    QCOMPARE(notified.statuses,
        (QStringList{"Writing data to the device ..", told, "Eeprom data valid", told}));
}

// It would wait here for ever.
void TabBoardDataNewTest::aPipeIsWrittenAsNothing()
{
    const QString path = MakeFile("abc");
    ChooseFile("Board", path);
    QVERIFY(QFile::remove(path));
    if (QProcess::execute("mkfifo", {path}) != 0) {
        QSKIP("this system has no pipes with a name");
    }
    Click(window->Child<QPushButton>("btnWriteBoardData"));
    QVERIFY(QFile::remove(path));
    QCOMPARE(scripted::Actions(), Texts("send 4346360D04B0") + BlockRequests);
    QCOMPARE(StatusLine(), path + " File could not be found or open");
}

void TabBoardDataNewTest::aFileWithoutPermissionIsWrittenAsNothing()
{
    const QString path = MakeFile("abc");
    const bool isClosed = QFile::setPermissions(path, QFileDevice::Permissions());
    if (!isClosed || QFileInfo(path).isReadable()) {
        QSKIP("this user may read every file");
    }
    ChooseFile("Board", path);
    Click(window->Child<QPushButton>("btnWriteBoardData"));
    QCOMPARE(scripted::Actions(), Texts("send 4346360D04B0") + BlockRequests);
    QCOMPARE(StatusLine(), path + " File could not be found or open");
}

void TabBoardDataNewTest::aRefusalIsToldInPlaceOfTheMissingFile()
{
    acknowledgement = "0\r";
    const QString path = MakeFile("abc");
    ChooseFile("Device", path);
    QVERIFY(QFile::remove(path));
    Click(window->Child<QPushButton>("btnWriteDeviceData"));
    QCOMPARE(StatusLine(), WriteFailed);
}

void TabBoardDataNewTest::whatWasWrittenIsReadBack()
{
    memory.fill('\xFF');
    ChooseFile("Device", MakeFile(DeviceBlock + '\0'));
    Click(window->Child<QPushButton>("btnWriteDeviceData"));
    QCOMPARE(FieldTexts(DeviceFields), DeviceTexts);
    ChooseFile("Board", MakeFile(Region(BoardBlock)));
    Click(window->Child<QPushButton>("btnWriteBoardData"));
    QCOMPARE(FieldTexts(BoardFields), BoardTexts);
    QCOMPARE(memory, Region(DeviceBlock + '\0').replace(44, 1, "\xFF") + Region(BoardBlock));
}

void TabBoardDataNewTest::aWriteForgetsItsFileAlone()
{
    ChooseFile("Board", MakeFile("abc", "board.bin"));
    ChooseFile("Device", MakeFile("abc", "device.bin"));
    Click(window->Child<QPushButton>("btnWriteDeviceData"));
    QCOMPARE(window->TextOf("txtDeviceDataFile"), QString());
    QVERIFY(!window->IsEnabled("btnWriteDeviceData"));
    QCOMPARE(window->TextOf("txtBoardDataFile"), "board.bin");
    QVERIFY(window->IsEnabled("btnWriteBoardData"));
    Click(window->Child<QPushButton>("btnWriteBoardData"));
    QCOMPARE(window->TextOf("txtBoardDataFile"), QString());
    QVERIFY(!window->IsEnabled("btnWriteBoardData"));
}

void TabBoardDataNewTest::writingTellsWhatItDoes()
{
    ChooseFile("Board", MakeFile("abc"));
    const Notified notified;
    Click(window->Child<QPushButton>("btnWriteBoardData"));
    // The block is no block any more: that is told only for a moment.
    QCOMPARE(notified.statuses,
        (QStringList{"Writing data to the device ..", Written, "Eeprom data invalid", Written}));
}

void TabBoardDataNewTest::readingAllSavesBothRegions()
{
    Click(window->Child<QPushButton>("btnReadAll"));
    QCOMPARE(scripted::Actions(),
        Texts("send 4346370D00FF0000|send 4346370D00FF00FF|send 4346370D00FF01FE|"
              "send 4346370D00FF02FD|send 4346370D00B403FC|send 4346370D00FF04B0|"
              "send 4346370D00FF05AF|send 4346370D00FF06AE|send 4346370D00FF07AD|"
              "send 4346370D00B408AC") +
            BlockRequests);
    const QDir eeprom(folder->filePath("Zelma-Kovinth/VX440/Eeprom"));
    QCOMPARE(eeprom.entryList(QDir::Files, QDir::Name),
        Texts("VX440Read_VX440_001234.bin|VX440Read_VX440_123456.bin"));
    QCOMPARE(FieldTexts(DeviceFields), DeviceTexts);
    QCOMPARE(FieldTexts(BoardFields), BoardTexts);
}

void TabBoardDataNewTest::readingAllTellsWhatItDoes()
{
    const Notified notified;
    const Progress progress = ClickWithProgress("btnReadAll");
    QCOMPARE(progress.label, "Reading EEPROM in progress...");
    QCOMPARE(progress.minimum, 0);
    QCOMPARE(progress.maximum, 2400);
    QCOMPARE(progress.modality, Qt::WindowModal);
    QCOMPARE(progress.status, "Reading EEPROM data from device ..");
    QCOMPARE(notified.statuses, Texts("Reading EEPROM data from device ..|Eeprom data valid|"
                                      "Successfully read from device EEPROM."));
    QVERIFY(VisibleProgress() == nullptr);
}

void TabBoardDataNewTest::aBadBoardRegionFailsTheReading()
{
    memory = Region(DeviceBlock) + QByteArray(RegionSize, '\xFF');
    const Notified notified;
    Click(window->Child<QPushButton>("btnReadAll"));
    QCOMPARE(notified.statuses, Texts("Reading EEPROM data from device ..|"
                                      "Could not read data from device EEPROM."));
    QCOMPARE(scripted::Actions().size(), 10);
    QCOMPARE(FieldTexts(DeviceFields), NoTexts);
}

void TabBoardDataNewTest::aBadDeviceRegionGoesUnnoticed()
{
    memory = QByteArray(RegionSize, '\xFF') + Region(BoardBlock);
    Click(window->Child<QPushButton>("btnReadAll"));
    QCOMPARE(StatusLine(), "Successfully read from device EEPROM.");
    QCOMPARE(FieldTexts(DeviceFields), NoTexts);
    QCOMPARE(FieldTexts(BoardFields), BoardTexts);
}

void TabBoardDataNewTest::aDirectoryThatCannotBeMadeFailsTheReading()
{
    qputenv("PROGRAMDATA", QFile::encodeName(MakeFile("in its place")));
    Click(window->Child<QPushButton>("btnReadAll"));
    QCOMPARE(StatusLine(), "Could not read data from device EEPROM.");
    QCOMPARE(scripted::Actions().size(), 10);
}

void TabBoardDataNewTest::aReadOnlyFileFailsTheReading()
{
    Click(window->Child<QPushButton>("btnReadAll"));
    const QString board = folder->filePath("Zelma-Kovinth/VX440/Eeprom/VX440Read_VX440_001234.bin");
    QVERIFY(QFile::setPermissions(board, QFileDevice::ReadOwner));
    if (QFileInfo(board).isWritable()) {
        QSKIP("this user may write every file");
    }
    Click(window->Child<QPushButton>("btnReadAll"));
    QCOMPARE(StatusLine(), "Could not read data from device EEPROM.");
}

void TabBoardDataNewTest::withoutALinkReadAllDoesNothing()
{
    TheDeviceCommunication()->Disconnect();
    scripted::ForgetEvents();
    const Notified notified;
    Click(window->Child<QPushButton>("btnReadAll"));
    QCOMPARE(notified.columns, QVector<int>());
    QCOMPARE(scripted::Events(), QStringList());
    QVERIFY(VisibleProgress() == nullptr);
}

void TabBoardDataNewTest::aClosedProgressDialogDoesNotEndTheReading()
{
    WhenProgressShows([] { CloseByTitleBar(VisibleProgress()); });
    Click(window->Child<QPushButton>("btnReadAll"));
    QCOMPARE(scripted::Actions().size(), 12);
    QCOMPARE(StatusLine(), "Successfully read from device EEPROM.");
    QVERIFY(VisibleProgress() == nullptr);
}

void TabBoardDataNewTest::anOldUnitGetsItsNumbers()
{
    Model().SetFirmwareVersion("2.50");
    Model().SetMacAddress("02:4C:7E:00:01:29");
    Model().SetSubnetMask("255.0.0.0");
    for (int id = 0; id < 12; ++id) {
        Model().SetMotorParameter(0, id, static_cast<ushort>(0x1100 + id));
        Model().SetMotorParameter(1, id, static_cast<ushort>(0x2200 + id));
    }
    window->Tab()->ConnectionStatusChanged();
    window->Child<QLineEdit>("txtDevicePartNumber")->setText("1111.2222.33");
    window->Child<QLineEdit>("txtDeviceSerialNumber")->setText("987654321");
    scripted::WhenSlept([](int) { TheDeviceCommunication()->wait(); });
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
    QCOMPARE(notified.statuses, Texts("Changing Board Data ...|Board Data updated successfully. "));
    QCOMPARE(ColumnText(7), "1111.2222.33");
    QCOMPARE(ColumnText(10), "987654");
    QCOMPARE(ColumnText(4), "02:4C:7E:00:01:29");
    QCOMPARE(ConnectionLine(), "Connected to 127.0.0.1");
}

void TabBoardDataNewTest::anOldUnitThatCannotBeSentToSaysSo()
{
    Model().SetFirmwareVersion("2.50");
    window->Tab()->ConnectionStatusChanged();
    window->Child<QLineEdit>("txtDevicePartNumber")->setText("1111.2222.33");
    scripted::FailSendsFrom(1);
    Click(window->Child<QPushButton>("btnWriteOld"));
    QCOMPARE(StatusLine(), "Board Data update failed!.");
    QVERIFY(!scripted::Actions().contains("connect 50000"));
    QCOMPARE(ColumnText(7), QString());
    QCOMPARE(ConnectionLine(), "Not Connected ");
}

void TabBoardDataNewTest::anOldUnitThatDoesNotComeBackSaysSo()
{
    Model().SetFirmwareVersion("2.50");
    window->Tab()->ConnectionStatusChanged();
    window->Child<QLineEdit>("txtDevicePartNumber")->setText("1111.2222.33");
    scripted::SetConnectResult(scripted::ConnectResult::Fails);
    Click(window->Child<QPushButton>("btnWriteOld"));
    QCOMPARE(StatusLine(), "Board Data update failed!.");
    QCOMPARE(ColumnText(7), QString());
    QCOMPARE(ConnectionLine(), "Not Connected ");
}

// Qt's dialog keeps its last folder in the user's settings: not in those of whoever runs the test.
int main(int argc, char** argv)
{
    const QTemporaryDir settings;
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(settings.path()));
    TabBoardDataNewTest test;
    return RunInTheProgram(test, argc, argv);
}

#include "TabBoardDataNewTest.moc"
