#include "link/CDeviceCommunication.h"
#include "model/CDeviceDatabase.h"
#include "rotor/CTabMotorConfiguration.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"

#include <QAbstractItemView>
#include <QClipboard>
#include <QComboBox>
#include <QHeaderView>
#include <QIntValidator>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTableWidget>
#include <QWindow>
#include <QtTest>

#include <memory>

namespace {

using Words = QVector<ushort>;

constexpr int Azimuth = 0;
constexpr int Polar = 1;
constexpr int Motors[] = {Azimuth, Polar};
constexpr const char* NameOf[] = {"Azimuth", "Polar"};
constexpr const char* TitleOf[] = {"Azimuth Configuration", "Pol/Eval Configuration"};
constexpr const char* MnemonicOf[] = {"HCF", "VCF"};
constexpr int FirstColumnOf[] = {20, 32};

constexpr int Rows = 9;
constexpr int SpeedRow = 8;
constexpr int ParameterOfRow[Rows] = {0, 1, 2, 5, 6, 7, 8, 9, 10};
constexpr const char* LabelOfRow[Rows] = {
    "Slow Motion Difference (SMD)",
    "Motion Hang Up Difference (MHD)",
    "Step Difference (SD)",
    "Max Position Difference (OD)",
    "Max Position From Right (ORS)",
    "Max Position From Left (OLS)",
    "Max Motion Hang Up Loop (MMHL)",
    "Loops Inside (MOT)",
    "Slow Motion Speed (SMS)",
};

constexpr int StatusColumn = 1;
constexpr int MaskColumn = 5;

// What the simulated units hold, and what the model is given that shall differ from it.
const Words UnitWords[] = {{1001, 1002, 1003, 1004, 1005, 1006, 1007, 1008, 1009, 1010, 61, 1},
    {2001, 2002, 2003, 2004, 2005, 2006, 2007, 2008, 2009, 2010, 62, 0}};
const Words ModelWords[] = {{301, 302, 303, 304, 305, 306, 307, 308, 309, 310, 31, 0},
    {401, 402, 403, 404, 405, 406, 407, 408, 409, 410, 41, 1}};

const QString NotConnected = "Not connected to any device.";

QString WithName(const char* text, int motor)
{
    return QString(text).arg(QString(NameOf[motor]));
}

QString JoinedNumbers(const Words& words)
{
    QStringList texts;
    for (const ushort word : words) {
        texts.append(QString::number(word));
    }
    return texts.join(',');
}

CTabMotorConfiguration* Page(int motor)
{
    const auto* const pages = Find<QTabWidget>("tabWidget");
    for (int page = 0; page < pages->count(); ++page) {
        if (pages->tabText(page) == QString(TitleOf[motor])) {
            return qobject_cast<CTabMotorConfiguration*>(pages->widget(page));
        }
    }
    return nullptr;
}

template<class Widget>
Widget* Child(int motor, const char* name)
{
    return Page(motor)->findChild<Widget*>(QString(name));
}

QTableWidget* Table(int motor)
{
    return Child<QTableWidget>(motor, "tblMotorConfiguration");
}

QLineEdit* Edit(int motor, int row)
{
    return qobject_cast<QLineEdit*>(Table(motor)->cellWidget(row, 0));
}

QString RotorType(int motor)
{
    return Child<QLineEdit>(motor, "txtRotorType")->text();
}

QStringList TableTexts(int motor)
{
    QStringList texts;
    for (int row = 0; row < Rows; ++row) {
        texts.append(Edit(motor, row)->text());
    }
    return texts;
}

// The texts of a table that shows these words.
QStringList RowsOf(const Words& words)
{
    QStringList texts;
    for (const int parameter : ParameterOfRow) {
        texts.append(QString::number(words.at(parameter)));
    }
    return texts;
}

Words Stored(int motor)
{
    Words words;
    for (int parameter = 0; parameter < 12; ++parameter) {
        words.append(TheDeviceDatabase()->GetMotorParameter(motor, parameter));
    }
    return words;
}

QVector<int> MotorColumns(int motor, int count)
{
    QVector<int> columns;
    for (int parameter = 0; parameter < count; ++parameter) {
        columns.append(FirstColumnOf[motor] + parameter);
    }
    return columns;
}

QVector<int> RowColumns(int motor)
{
    QVector<int> columns;
    for (const int parameter : ParameterOfRow) {
        columns.append(FirstColumnOf[motor] + parameter);
    }
    return columns;
}

void ClickRowHeader(int motor, int row)
{
    QHeaderView* const header = Table(motor)->verticalHeader();
    const QPoint middle(
        header->width() / 2, header->sectionViewportPosition(row) + header->sectionSize(row) / 2);
    QTest::mouseClick(MainWindow()->windowHandle(), Qt::LeftButton, Qt::NoModifier,
        header->viewport()->mapTo(MainWindow(), middle));
}

void ChooseRotor(int motor, int entry)
{
    auto* const list = Child<QComboBox>(motor, "listRotors");
    Click(list);
    QWindow* const popup = list->view()->window()->windowHandle();
    QTest::keyClick(popup, Qt::Key_Home);
    for (int step = 0; step < entry; ++step) {
        QTest::keyClick(popup, Qt::Key_Down);
    }
    QTest::keyClick(popup, Qt::Key_Return);
}

void ClickSend(int motor)
{
    Click(Child<QPushButton>(motor, "btnSendToDevice"));
}

void ClickReceive(int motor)
{
    Click(Child<QPushButton>(motor, "btnReceiveFromDevice"));
}

// The table moves the focus with its current row. This parts the two.
void MakeCurrent(int motor, int row)
{
    const QSignalBlocker blocker(Table(motor)->selectionModel());
    Table(motor)->setCurrentCell(row, 0);
}

// Shows a motor's page with known values in the model, a known status and no current row.
void Begin(int motor)
{
    ShowPage(TitleOf[motor]);
    Child<QPushButton>(motor, "btnReset")->setFocus();
    for (const int any : Motors) {
        TheDeviceDatabase()->SetMotorParameters(any, ModelWords[any]);
        TheDeviceDatabase()->SetMotorValidationError(any, QString());
        Table(any)->setCurrentCell(-1, -1);
    }
    TheDeviceDatabase()->SetSubnetMask("255.255.255.252");
    TheDeviceDatabase()->SetApplicationStatus("before");
}

bool ButtonsAreEnabled(int motor, bool enabled)
{
    return Child<QPushButton>(motor, "btnSendToDevice")->isEnabled() == enabled &&
           Child<QPushButton>(motor, "btnReceiveFromDevice")->isEnabled() == enabled;
}

bool WhatOldFirmwareLacksIsHidden(int motor, bool hidden)
{
    if (Table(motor)->isRowHidden(SpeedRow) != hidden) {
        return false;
    }
    for (const char* const name : {"listRotors", "txtRotorType", "lblRotorName", "lblRotorType"}) {
        if (Child<QWidget>(motor, name)->isHidden() != hidden) {
            return false;
        }
    }
    return true;
}

// What the model notifies as long as the object lives.
class Notified
{
public:
    Notified()
    {
        connection = QObject::connect(
            TheDeviceDatabase(), &QAbstractItemModel::dataChanged, [this](const QModelIndex& cell) {
                columns.append(cell.column());
                if (cell.column() == StatusColumn) {
                    texts.append(cell.data().toString());
                }
            });
    }
    ~Notified() { QObject::disconnect(connection); }
    Q_DISABLE_COPY(Notified)

    QVector<int> columns;
    QStringList texts;

private:
    QMetaObject::Connection connection;
};

void AddMotors()
{
    QTest::addColumn<int>("motor");
    for (const int motor : Motors) {
        QTest::newRow(NameOf[motor]) << motor;
    }
}

void AddMotorsAndRows()
{
    QTest::addColumn<int>("motor");
    QTest::addColumn<int>("row");
    for (const int motor : Motors) {
        for (int row = 0; row < Rows; ++row) {
            QTest::addRow("%s row %d", NameOf[motor], row) << motor << row;
        }
    }
}

} // namespace

class TabMotorConfigurationTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    // Before any connection.
    void theProgramStartsWithTheBlankRotor_data() { AddMotors(); }
    void theProgramStartsWithTheBlankRotor();
    void aWidgetStandsInItsPlaceWithItsText_data();
    void aWidgetStandsInItsPlaceWithItsText();
    void theFormHasItsSizes();
    void theTableIsSetUp_data() { AddMotors(); }
    void theTableIsSetUp();
    void aRowHasItsHeaderEditAndBounds_data() { AddMotorsAndRows(); }
    void aRowHasItsHeaderEditAndBounds();
    void aValueOfTheModelShowsInItsRowOnly_data() { AddMotorsAndRows(); }
    void aValueOfTheModelShowsInItsRowOnly();
    void theRotorTypeFollowsTheModel_data() { AddMotors(); }
    void theRotorTypeFollowsTheModel();
    void aChosenRotorReplacesAllParameters_data();
    void aChosenRotorReplacesAllParameters();
    void theListOffersTheRotorsOfItsMotor();
    void resetKeepsTheTypeAndTheSelection_data();
    void resetKeepsTheTypeAndTheSelection();
    void aTypedValueReachesTheModelOnlyWhenTheTableIsRead_data() { AddMotorsAndRows(); }
    void aTypedValueReachesTheModelOnlyWhenTheTableIsRead();
    void anEmptyCellStopsTheReading_data() { AddMotorsAndRows(); }
    void anEmptyCellStopsTheReading();
    void aSpeedAboveTheMaximumStopsTheReading_data() { AddMotors(); }
    void aSpeedAboveTheMaximumStopsTheReading();
    void oneTabsSignalReadsBothTables_data() { AddMotors(); }
    void oneTabsSignalReadsBothTables();
    void aDigitAboveTheMaximumIsRefusedWithoutAWarning_data();
    void aDigitAboveTheMaximumIsRefusedWithoutAWarning();
    void aKeyInTheCurrentRowCutsAStoredValueToTheMaximum_data() { AddMotors(); }
    void aKeyInTheCurrentRowCutsAStoredValueToTheMaximum();
    void anyKeyInTheCurrentRowCutsAValueFromOutside_data();
    void anyKeyInTheCurrentRowCutsAValueFromOutside();
    void inAnotherCurrentRowNoKeyLengthensOrSpoilsAValueFromOutside_data() { AddMotorsAndRows(); }
    void inAnotherCurrentRowNoKeyLengthensOrSpoilsAValueFromOutside();
    void inAnotherCurrentRowBackspaceShortensAValueFromOutside_data() { AddMotors(); }
    void inAnotherCurrentRowBackspaceShortensAValueFromOutside();
    void anEntryThatTheRotorListHasNotDoesNothing_data();
    void anEntryThatTheRotorListHasNotDoesNothing();
    void noKeyReachesTheTable_data() { AddMotors(); }
    void noKeyReachesTheTable();
    void theWheelOverTheClosedListDoesNothing_data() { AddMotors(); }
    void theWheelOverTheClosedListDoesNothing();
    void theCellTellsAScreenReaderWhatItsFieldHolds_data() { AddMotorsAndRows(); }
    void theCellTellsAScreenReaderWhatItsFieldHolds();
    void aReleasedKeyIsGuardedToo();
    void withoutACurrentRowAKeyChangesNothing_data() { AddMotors(); }
    void withoutACurrentRowAKeyChangesNothing();
    void theCurrentRowAndNotTheEditsRowSetsTheMaximum();
    void aKeyTakesEffectOnce();
    void withoutALinkBothButtonsAreOffAndTheRestIsOn_data() { AddMotors(); }
    void withoutALinkBothButtonsAreOffAndTheRestIsOn();
    void sendingWithoutALinkSaysSo_data() { AddMotors(); }
    void sendingWithoutALinkSaysSo();
    void receivingWithoutALinkSaysSo_data() { AddMotors(); }
    void receivingWithoutALinkSaysSo();
    void aLoadWithoutALinkShowsEverything_data() { AddMotors(); }
    void aLoadWithoutALinkShowsEverything();
    void aTabForNoMotorStoresNothing();

    // A unit with new firmware.
    void connectingToNewFirmwareFillsBothTables_data() { AddMotors(); }
    void connectingToNewFirmwareFillsBothTables();
    void newFirmwareIsSentItsTwelveWords_data();
    void newFirmwareIsSentItsTwelveWords();
    void whatIsTypedIsSent_data() { AddMotors(); }
    void whatIsTypedIsSent();
    void aReceiveChangesItsMotorAndTheMask_data() { AddMotors(); }
    void aReceiveChangesItsMotorAndTheMask();
    void aLoadReceivesAsTheButtonDoes_data() { AddMotors(); }
    void aLoadReceivesAsTheButtonDoes();
    void anEmptyCellIsNotSentAndReadsAsAMissingLink_data() { AddMotors(); }
    void anEmptyCellIsNotSentAndReadsAsAMissingLink();
    void aSpeedOf200IsNotSent();
    void aTabForNoMotorHasTheWrongNumberOfWords();
    void aFailedReceiveLeavesTheModelAlone_data();
    void aFailedReceiveLeavesTheModelAlone();
    void aLinkThatWasClosedHereIsNoticedAtTheButton_data();
    void aLinkThatWasClosedHereIsNoticedAtTheButton();
    void aLinkLostAtASendStillReportsSuccess();
    void afterALossTheTablesStayAndWorkOnTheModel();

    // A unit with old firmware.
    void oldFirmwareHidesWhatItLacks_data() { AddMotors(); }
    void oldFirmwareHidesWhatItLacks();
    void oldFirmwareIsSentItsTenWords_data();
    void oldFirmwareIsSentItsTenWords();
    void aReceiveFromOldFirmwareLeavesSpeedAndTypeAlone_data() { AddMotors(); }
    void aReceiveFromOldFirmwareLeavesSpeedAndTypeAlone();
    void newFirmwareShowsAgainWhatOldFirmwareHid();
    void whatOldFirmwareHidComesBackWithoutALink();

private:
    // Connecting takes seconds: a unit that is connected already stays so.
    static bool Connect(SimulatorProcess& unit);

    std::unique_ptr<SimulatorProcess> newUnit;
    std::unique_ptr<SimulatorProcess> oldUnit;
};

void TabMotorConfigurationTest::initTestCase()
{
    const QStringList words{"--azimuth", JoinedNumbers(UnitWords[Azimuth]), "--polar",
        JoinedNumbers(UnitWords[Polar]), "--mask", "255.255.0.0", "--firmware"};
    newUnit = std::make_unique<SimulatorProcess>(words + QStringList{"3.10"});
    oldUnit = std::make_unique<SimulatorProcess>(words + QStringList{"2.99"});
    QVERIFY(newUnit->IsReady());
    QVERIFY(oldUnit->IsReady());
    QVERIFY(Page(Azimuth) != nullptr);
    QVERIFY(Page(Polar) != nullptr);
}

void TabMotorConfigurationTest::cleanupTestCase()
{
    TheDeviceCommunication()->Disconnect();
    newUnit.reset();
    oldUnit.reset();
}

bool TabMotorConfigurationTest::Connect(SimulatorProcess& unit)
{
    if (!TheDeviceCommunication()->IsConnected() ||
        TheDeviceDatabase()->GetIpAddress() != unit.Address()) {
        ConnectTo(unit.Address());
    }
    unit.Forget();
    return TheDeviceCommunication()->IsConnected();
}

void TabMotorConfigurationTest::theProgramStartsWithTheBlankRotor()
{
    QFETCH(int, motor);
    QCOMPARE(Stored(motor), (Words{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}));
    QCOMPARE(TableTexts(motor), RowsOf(Words(12, 0)));
    QCOMPARE(RotorType(motor), "Pulse");
    QCOMPARE(Child<QComboBox>(motor, "listRotors")->currentIndex(), 0);
    QVERIFY(ButtonsAreEnabled(motor, false));
}

void TabMotorConfigurationTest::aWidgetStandsInItsPlaceWithItsText_data()
{
    QTest::addColumn<int>("motor");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("className");
    QTest::addColumn<QRect>("geometry");
    QTest::addColumn<QString>("text");
    const struct
    {
        const char* name;
        const char* className;
        QRect geometry;
        const char* text;
    } widgets[] = {
        {"tblMotorConfiguration", "QTableWidget", {20, 20, 400, 281}, ""},
        {"btnReadFromFile", "QPushButton", {440, 20, 100, 23}, "Read from File"},
        {"btnWriteToFile", "QPushButton", {440, 50, 100, 23}, "Write to File"},
        {"btnReceiveFromDevice", "QPushButton", {440, 90, 100, 23}, "Recv from Device"},
        {"btnSendToDevice", "QPushButton", {440, 120, 100, 23}, "Send to Device"},
        {"lblRotorName", "QLabel", {440, 160, 80, 20}, "Rotor"},
        {"lblRotorType", "QLabel", {630, 160, 80, 20}, "Rotor Type"},
        {"txtRotorType", "QLineEdit", {630, 180, 160, 20}, "Pulse"},
        {"btnReset", "QPushButton", {630, 20, 100, 41}, "Reset to \nDefault Settings"},
        {"listRotors", "QComboBox", {440, 180, 161, 22}, ""},
    };
    for (const int motor : Motors) {
        for (const auto& widget : widgets) {
            QTest::addRow("%s %s", NameOf[motor], widget.name)
                << motor << QString(widget.name) << QString(widget.className) << widget.geometry
                << QString(widget.text);
        }
    }
}

void TabMotorConfigurationTest::aWidgetStandsInItsPlaceWithItsText()
{
    QFETCH(int, motor);
    QFETCH(QString, name);
    QFETCH(QString, className);
    QFETCH(QString, text);
    ShowPage(TitleOf[motor]);
    const auto* const widget = Page(motor)->findChild<QWidget*>(name);
    QVERIFY(widget != nullptr);
    QVERIFY(widget->isVisible());
    QCOMPARE(QString(widget->metaObject()->className()), className);
    QTEST(widget->geometry(), "geometry");
    QCOMPARE(widget->property("text").toString(), text);
    if (className == "QLabel") {
        QCOMPARE(widget->font().weight(), 75);
    }
}

void TabMotorConfigurationTest::theFormHasItsSizes()
{
    const CTabMotorConfiguration tab(nullptr, Azimuth);
    QCOMPARE(tab.size(), QSize(850, 340));
    QCOMPARE(tab.minimumSize(), QSize(850, 310));
    QCOMPARE(tab.baseSize(), QSize(850, 310));
    QCOMPARE(tab.maximumSize(), QSize(850, 340));
}

void TabMotorConfigurationTest::theTableIsSetUp()
{
    QFETCH(int, motor);
    ShowPage(TitleOf[motor]);
    const QTableWidget* const table = Table(motor);
    QCOMPARE(table->rowCount(), Rows);
    QCOMPARE(table->columnCount(), 1);
    QCOMPARE(table->columnWidth(0), 150);
    QCOMPARE(table->verticalHeader()->width(), 250);
    QCOMPARE(table->verticalHeader()->minimumWidth(), 250);
    QCOMPARE(table->verticalHeader()->maximumWidth(), 250);
    QCOMPARE(table->verticalHeader()->sectionResizeMode(0), QHeaderView::Stretch);
    QVERIFY(table->horizontalHeader()->isHidden());
    QVERIFY(!table->isSortingEnabled());
    QCOMPARE(table->sizeAdjustPolicy(), QAbstractScrollArea::AdjustToContents);
    QVERIFY(Child<QLineEdit>(motor, "txtRotorType")->isReadOnly());
}

void TabMotorConfigurationTest::aRowHasItsHeaderEditAndBounds()
{
    QFETCH(int, motor);
    QFETCH(int, row);
    const QString percent = row == SpeedRow ? "%" : QString();
    QCOMPARE(Table(motor)->verticalHeaderItem(row)->text(),
        QString(NameOf[motor]) + QLatin1Char(' ') + QString(LabelOfRow[row]) + percent);
    QCOMPARE(Edit(motor, row)->objectName(), QString::number(row));
    const auto* const validator = qobject_cast<const QIntValidator*>(Edit(motor, row)->validator());
    QVERIFY(validator != nullptr);
    QCOMPARE(validator->bottom(), 0);
    QCOMPARE(validator->top(), row == SpeedRow ? 100 : 65535);
}

void TabMotorConfigurationTest::aValueOfTheModelShowsInItsRowOnly()
{
    QFETCH(int, motor);
    QFETCH(int, row);
    Begin(motor);
    TheDeviceDatabase()->SetMotorParameter(motor, ParameterOfRow[row], 99);
    QStringList expected = RowsOf(ModelWords[motor]);
    expected[row] = "99";
    QCOMPARE(TableTexts(motor), expected);
    QCOMPARE(TableTexts(1 - motor), RowsOf(ModelWords[1 - motor]));
}

void TabMotorConfigurationTest::theRotorTypeFollowsTheModel()
{
    QFETCH(int, motor);
    Begin(motor);
    const QStringList texts{"Potentiometer", "Pulse", "Unknow Type", QString()};
    for (ushort type = 0; type < 4; ++type) {
        TheDeviceDatabase()->SetMotorParameter(motor, 11, type);
        QCOMPARE(RotorType(motor), texts.at(type));
    }
}

void TabMotorConfigurationTest::aChosenRotorReplacesAllParameters_data()
{
    QTest::addColumn<int>("motor");
    QTest::addColumn<int>("entry");
    QTest::addColumn<Words>("words");
    QTest::addColumn<QString>("type");
    const Words blank{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1};
    const Words proSisTel{500, 3, 150, 1, 2, 10, 0, 0, 2000, 20, 50, 1};
    const Words azimuth{70, 3, 22, 1, 2, 2, 0, 0, 500, 20, 50, 0};
    const Words yaesu{99, 3, 60, 1, 2, 5, 0, 0, 500, 20, 50, 0};
    const Words polar{200, 3, 60, 1, 2, 5, 0, 0, 500, 20, 50, 0};
    const QString pulse = "Pulse";
    const QString potentiometer = "Potentiometer";
    QTest::newRow("azimuth ProSisTel") << Azimuth << 1 << proSisTel << pulse;
    QTest::newRow("azimuth blank") << Azimuth << 0 << blank << pulse;
    QTest::newRow("azimuth YAESU G-2800") << Azimuth << 2 << azimuth << potentiometer;
    QTest::newRow("azimuth Winder AR/A1003") << Azimuth << 3 << azimuth << potentiometer;
    QTest::newRow("azimuth Winder AR/A1023") << Azimuth << 4 << azimuth << potentiometer;
    QTest::newRow("azimuth Winder AR/AE1049") << Azimuth << 5 << azimuth << potentiometer;
    QTest::newRow("azimuth TD552") << Azimuth << 6 << azimuth << potentiometer;
    QTest::newRow("polar ProSisTel") << Polar << 1 << proSisTel << pulse;
    QTest::newRow("polar blank") << Polar << 0 << blank << pulse;
    QTest::newRow("polar YAESU G-550") << Polar << 2 << yaesu << potentiometer;
    QTest::newRow("polar Winder AR/AE1049") << Polar << 3 << polar << potentiometer;
    QTest::newRow("polar TD552") << Polar << 4 << polar << potentiometer;
}

void TabMotorConfigurationTest::aChosenRotorReplacesAllParameters()
{
    QFETCH(int, motor);
    QFETCH(int, entry);
    QFETCH(Words, words);
    QFETCH(QString, type);
    ShowPage(TitleOf[motor]);
    ChooseRotor(motor, entry == 0 ? 1 : 0); // the same entry again is no change
    Begin(motor);
    const Notified notified;
    ChooseRotor(motor, entry);
    QCOMPARE(Child<QComboBox>(motor, "listRotors")->currentIndex(), entry);
    QCOMPARE(Stored(motor), words);
    QCOMPARE(TableTexts(motor), RowsOf(words));
    QCOMPARE(RotorType(motor), type);
    QCOMPARE(notified.columns, MotorColumns(motor, 12));
    QCOMPARE(Stored(1 - motor), ModelWords[1 - motor]);
    QCOMPARE(StatusLine(), "before");
}

void TabMotorConfigurationTest::theListOffersTheRotorsOfItsMotor()
{
    const auto entries = [](int motor) {
        QStringList texts;
        const auto* const list = Child<QComboBox>(motor, "listRotors");
        for (int entry = 0; entry < list->count(); ++entry) {
            texts.append(list->itemText(entry));
        }
        return texts;
    };
    QCOMPARE(
        entries(Azimuth), (QStringList{QString(), "ProSisTel", "YAESU G-2800", "Winder AR/A1003",
                              "Winder AR/A1023", "Winder AR/AE1049", "TD552"}));
    QCOMPARE(entries(Polar),
        (QStringList{QString(), "ProSisTel", "YAESU G-550", "Winder AR/AE1049", "TD552"}));
}

void TabMotorConfigurationTest::resetKeepsTheTypeAndTheSelection_data()
{
    QTest::addColumn<int>("motor");
    QTest::addColumn<int>("entry");
    QTest::addColumn<Words>("words");
    QTest::addColumn<QString>("type");
    const QString pulse = "Pulse";
    const QString potentiometer = "Potentiometer";
    QTest::newRow("azimuth, pulse")
        << Azimuth << 1 << Words{30, 1, 250, 1, 1, 2, 0, 0, 2000, 30, 100, 1} << pulse;
    QTest::newRow("azimuth, potentiometer")
        << Azimuth << 6 << Words{30, 1, 250, 1, 1, 2, 0, 0, 2000, 30, 100, 0} << potentiometer;
    QTest::newRow("polar, pulse") << Polar << 1
                                  << Words{20, 1, 250, 1, 1, 2, 0, 0, 2000, 30, 100, 1} << pulse;
    QTest::newRow("polar, potentiometer")
        << Polar << 4 << Words{20, 1, 250, 1, 1, 2, 0, 0, 2000, 30, 100, 0} << potentiometer;
}

void TabMotorConfigurationTest::resetKeepsTheTypeAndTheSelection()
{
    QFETCH(int, motor);
    QFETCH(int, entry);
    QFETCH(Words, words);
    QFETCH(QString, type);
    Begin(motor);
    ChooseRotor(motor, 0);
    ChooseRotor(motor, entry);
    const Notified notified;
    Click(Child<QPushButton>(motor, "btnReset"));
    QCOMPARE(notified.columns, MotorColumns(motor, 11));
    QCOMPARE(Stored(motor), words);
    QCOMPARE(TableTexts(motor), RowsOf(words));
    QCOMPARE(RotorType(motor), type);
    QCOMPARE(Child<QComboBox>(motor, "listRotors")->currentIndex(), entry);
    QCOMPARE(StatusLine(), "before");
}

void TabMotorConfigurationTest::aTypedValueReachesTheModelOnlyWhenTheTableIsRead()
{
    QFETCH(int, motor);
    QFETCH(int, row);
    Begin(motor);
    Overtype(Edit(motor, row), "87");
    Click(Edit(motor, (row + 1) % Rows)); // leaving the field does not store either
    QCOMPARE(Stored(motor), ModelWords[motor]);
    QCOMPARE(Edit(motor, row)->text(), "87");

    const Notified notified;
    Page(motor)->ReadParamValuesFromUi();
    Words expected = ModelWords[motor];
    expected[ParameterOfRow[row]] = 87;
    QCOMPARE(Stored(motor), expected);
    QCOMPARE(Stored(1 - motor), ModelWords[1 - motor]);
    QCOMPARE(notified.columns, RowColumns(motor));
    QCOMPARE(StatusLine(), "before");
}

void TabMotorConfigurationTest::anEmptyCellStopsTheReading()
{
    QFETCH(int, motor);
    QFETCH(int, row);
    Begin(motor);
    Words expected = ModelWords[motor];
    for (int any = 0; any < Rows; ++any) {
        Overtype(Edit(motor, any), any == row ? QString() : QString::number(80 + any));
        if (any < row) {
            expected[ParameterOfRow[any]] = static_cast<ushort>(80 + any);
        }
    }
    const QStringList texts = TableTexts(motor);
    QCOMPARE(texts.at(row), QString());
    const Notified notified;
    Page(motor)->ReadParamValuesFromUi();
    QCOMPARE(notified.columns, RowColumns(motor).mid(0, row));
    QCOMPARE(Stored(motor), expected);
    QCOMPARE(TableTexts(motor), texts);
    QCOMPARE(TheDeviceDatabase()->GetMotorValidationError(motor),
        QString("Invalid value for %1 %2!").arg(QString(NameOf[motor]), QString(LabelOfRow[row])));
    QCOMPARE(TheDeviceDatabase()->GetMotorValidationError(1 - motor), QString());
    QCOMPARE(StatusLine(), "before");

    Overtype(Edit(motor, row), "7");
    Page(motor)->ReadParamValuesFromUi();
    QCOMPARE(TheDeviceDatabase()->GetMotorValidationError(motor), QString());
}

void TabMotorConfigurationTest::aSpeedAboveTheMaximumStopsTheReading()
{
    QFETCH(int, motor);
    Begin(motor);
    TheDeviceDatabase()->SetMotorParameter(motor, 10, 101);
    const Notified notified;
    Page(motor)->ReadParamValuesFromUi();
    QCOMPARE(notified.columns, RowColumns(motor).mid(0, SpeedRow));
    QCOMPARE(TheDeviceDatabase()->GetMotorValidationError(motor),
        WithName("Invalid value for %1 Slow Motion Speed (SMS)!", motor));
}

void TabMotorConfigurationTest::oneTabsSignalReadsBothTables()
{
    QFETCH(int, motor);
    for (const int typed : Motors) {
        Begin(typed);
        Overtype(Edit(typed, 1), "87");
        QCOMPARE(int(Stored(typed).at(1)), int(ModelWords[typed].at(1)));
        emit Page(motor)->ReadFromUi();
        QCOMPARE(int(Stored(typed).at(1)), 87);
    }
}

void TabMotorConfigurationTest::aDigitAboveTheMaximumIsRefusedWithoutAWarning_data()
{
    QTest::addColumn<int>("motor");
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("taken");
    for (const int motor : Motors) {
        const auto add = [motor](int row, const char* typed, const char* taken) {
            QTest::addRow("%s row %d %s", NameOf[motor], row, typed)
                << motor << row << QString(typed) << QString(taken);
        };
        add(SpeedRow, "101", "10");
        add(SpeedRow, "100", "100");
        add(SpeedRow, "200", "20");
        add(SpeedRow, "99", "99");
        add(SpeedRow, "-5", "5");
        add(0, "65536", "6553");
        add(0, "65535", "65535");
    }
}

void TabMotorConfigurationTest::aDigitAboveTheMaximumIsRefusedWithoutAWarning()
{
    QFETCH(int, motor);
    QFETCH(int, row);
    QFETCH(QString, typed);
    QFETCH(QString, taken);
    Begin(motor);
    ClickRowHeader(motor, row);
    QCOMPARE(Table(motor)->currentRow(), row);
    Overtype(Edit(motor, row), typed);
    QCOMPARE(Edit(motor, row)->text(), taken);
    QCOMPARE(StatusLine(), "before");
}

void TabMotorConfigurationTest::aKeyInTheCurrentRowCutsAStoredValueToTheMaximum()
{
    QFETCH(int, motor);
    Begin(motor);
    TheDeviceDatabase()->SetMotorParameter(motor, 10, 200);
    ClickRowHeader(motor, SpeedRow);
    Click(Edit(motor, SpeedRow));
    QCOMPARE(Table(motor)->currentRow(), SpeedRow);
    QCOMPARE(Edit(motor, SpeedRow)->text(), "200");
    QCOMPARE(StatusLine(), "before");
    const Notified notified;
    Press(Qt::Key_Home);
    QCOMPARE(Edit(motor, SpeedRow)->text(), "100");
    QCOMPARE(StatusLine(), "Warning: SMS must be in in range 0 - 100");
    QCOMPARE(notified.columns, QVector<int>{StatusColumn});
    QCOMPARE(int(Stored(motor).at(10)), 200);
}

void TabMotorConfigurationTest::anyKeyInTheCurrentRowCutsAValueFromOutside_data()
{
    QTest::addColumn<int>("motor");
    QTest::addColumn<int>("key");
    for (const int motor : Motors) {
        for (const int key : {int(Qt::Key_X), int(Qt::Key_Minus), int(Qt::Key_5),
                 int(Qt::Key_Space), int(Qt::Key_Left), int(Qt::Key_Shift)}) {
            QTest::addRow("%s %x", NameOf[motor], unsigned(key)) << motor << key;
        }
    }
}

void TabMotorConfigurationTest::anyKeyInTheCurrentRowCutsAValueFromOutside()
{
    QFETCH(int, motor);
    QFETCH(int, key);
    Begin(motor);
    TheDeviceDatabase()->SetMotorParameter(motor, 10, 200);
    Click(Edit(motor, SpeedRow));
    QCOMPARE(Table(motor)->currentRow(), SpeedRow);
    Press(Qt::Key(key));
    QCOMPARE(Edit(motor, SpeedRow)->text(), "100");
    QCOMPARE(StatusLine(), "Warning: SMS must be in in range 0 - 100");
}

// Of the rows only the speed has a maximum that the model's values can pass.
void TabMotorConfigurationTest::inAnotherCurrentRowNoKeyLengthensOrSpoilsAValueFromOutside()
{
    QFETCH(int, motor);
    QFETCH(int, row);
    const QString outside = row == SpeedRow ? "200" : "99999";
    Begin(motor);
    QLineEdit* const edit = Edit(motor, row);
    Click(edit);
    edit->setText(outside);
    MakeCurrent(motor, -1);
    for (const int key :
        {int(Qt::Key_X), int(Qt::Key_Minus), int(Qt::Key_Space), int(Qt::Key_5), int(Qt::Key_7)}) {
        Press(Qt::Key(key));
        QCOMPARE(edit->text(), outside);
    }
    QGuiApplication::clipboard()->setText("5x");
    Press(Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(edit->text(), outside);
    edit->selectAll();
    Press(Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(edit->text(), outside);
    edit->selectAll();
    Press(Qt::Key_5);
    QCOMPARE(edit->text(), "5");
    QCOMPARE(StatusLine(), "before");
}

void TabMotorConfigurationTest::inAnotherCurrentRowBackspaceShortensAValueFromOutside()
{
    QFETCH(int, motor);
    Begin(motor);
    TheDeviceDatabase()->SetMotorParameter(motor, 10, 2000);
    Click(Edit(motor, SpeedRow));
    MakeCurrent(motor, 0);
    Press(Qt::Key_End);
    Press(Qt::Key_Backspace);
    QCOMPARE(Edit(motor, SpeedRow)->text(), "200");
    Press(Qt::Key_Backspace);
    QCOMPARE(Edit(motor, SpeedRow)->text(), "20");
    Press(Qt::Key_5);
    QCOMPARE(Edit(motor, SpeedRow)->text(), "20");
    QCOMPARE(StatusLine(), "before");
}

void TabMotorConfigurationTest::anEntryThatTheRotorListHasNotDoesNothing_data()
{
    QTest::addColumn<int>("motor");
    QTest::addColumn<int>("entry");
    for (const int motor : Motors) {
        const int entries = motor == Azimuth ? 7 : 5;
        for (const int entry : {-2, -1, entries, entries + 1, 1000000}) {
            QTest::addRow("%s %d", NameOf[motor], entry) << motor << entry;
        }
    }
}

void TabMotorConfigurationTest::anEntryThatTheRotorListHasNotDoesNothing()
{
    QFETCH(int, motor);
    QFETCH(int, entry);
    Begin(motor);
    const Notified notified;
    Page(motor)->ChangeRotorType(entry);
    QCOMPARE(notified.columns, QVector<int>());
    QCOMPARE(Stored(motor), ModelWords[motor]);
}

void TabMotorConfigurationTest::noKeyReachesTheTable()
{
    QFETCH(int, motor);
    Begin(motor);
    QCOMPARE(Table(motor)->focusPolicy(), Qt::NoFocus);
    Click(Edit(motor, 2));
    QCOMPARE(Table(motor)->currentRow(), 2);
    const QStringList texts = TableTexts(motor);
    for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_PageDown, Qt::Key_F2}) {
        Press(key);
        QCOMPARE(Table(motor)->currentRow(), 2);
        QCOMPARE(QApplication::focusWidget(), Edit(motor, 2));
    }
    ClickRowHeader(motor, 5);
    Press(Qt::Key_7);
    QTest::keyClick(Table(motor), Qt::Key_7);
    QCOMPARE(TableTexts(motor).mid(0, 2), texts.mid(0, 2));
    QCOMPARE(TableTexts(motor).mid(6), texts.mid(6));
}

void TabMotorConfigurationTest::theWheelOverTheClosedListDoesNothing()
{
    QFETCH(int, motor);
    Begin(motor);
    auto* const list = Child<QComboBox>(motor, "listRotors");
    const int before = list->currentIndex();
    for (const int turn : {-120, 120, 1200}) {
        QWheelEvent wheel(list->rect().center(), list->mapToGlobal(list->rect().center()), QPoint(),
            QPoint(0, turn), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(list, &wheel);
        QCOMPARE(list->currentIndex(), before);
    }
    QCOMPARE(Stored(motor), ModelWords[motor]);
}

void TabMotorConfigurationTest::theCellTellsAScreenReaderWhatItsFieldHolds()
{
    QFETCH(int, motor);
    QFETCH(int, row);
    Begin(motor);
    const QModelIndex cell = Table(motor)->model()->index(row, 0);
    QCOMPARE(cell.data(Qt::AccessibleTextRole).toString(), Edit(motor, row)->text());
    Overtype(Edit(motor, row), "7");
    QCOMPARE(cell.data(Qt::AccessibleTextRole).toString(), "7");
    QCOMPARE(cell.data().toString(), QString());
}

void TabMotorConfigurationTest::aReleasedKeyIsGuardedToo()
{
    Begin(Azimuth);
    TheDeviceDatabase()->SetMotorParameter(Azimuth, 10, 200);
    Click(Edit(Azimuth, SpeedRow));
    MakeCurrent(Azimuth, 0);
    QTest::keyPress(MainWindow()->windowHandle(), Qt::Key_Home);
    QCOMPARE(Edit(Azimuth, SpeedRow)->text(), "200");
    MakeCurrent(Azimuth, SpeedRow);
    QTest::keyRelease(MainWindow()->windowHandle(), Qt::Key_Home);
    QCOMPARE(Edit(Azimuth, SpeedRow)->text(), "100");
}

void TabMotorConfigurationTest::withoutACurrentRowAKeyChangesNothing()
{
    QFETCH(int, motor);
    Begin(motor);
    TheDeviceDatabase()->SetMotorParameter(motor, 10, 200);
    Click(Edit(motor, SpeedRow));
    MakeCurrent(motor, -1);
    QCOMPARE(Table(motor)->currentRow(), -1);
    Press(Qt::Key_Home);
    Press(Qt::Key_End);
    Type("1");
    QCOMPARE(Edit(motor, SpeedRow)->text(), "200");
    QCOMPARE(StatusLine(), "before");
}

void TabMotorConfigurationTest::theCurrentRowAndNotTheEditsRowSetsTheMaximum()
{
    Begin(Azimuth);
    TheDeviceDatabase()->SetMotorParameter(Azimuth, 10, 200);
    Click(Edit(Azimuth, SpeedRow));
    MakeCurrent(Azimuth, 0);
    Press(Qt::Key_Home);
    QCOMPARE(Edit(Azimuth, SpeedRow)->text(), "200");
    QCOMPARE(StatusLine(), "before");

    Click(Edit(Azimuth, 0));
    MakeCurrent(Azimuth, SpeedRow);
    Type("5");
    QCOMPARE(Edit(Azimuth, 0)->text(), "100");
    QCOMPARE(StatusLine(), "Warning: SMS must be in in range 0 - 100");
}

void TabMotorConfigurationTest::aKeyTakesEffectOnce()
{
    Begin(Azimuth);
    Overtype(Edit(Azimuth, 0), "1234");
    QCOMPARE(Edit(Azimuth, 0)->text(), "1234");
    Press(Qt::Key_Backspace);
    QCOMPARE(Edit(Azimuth, 0)->text(), "123");
}

void TabMotorConfigurationTest::withoutALinkBothButtonsAreOffAndTheRestIsOn()
{
    QFETCH(int, motor);
    Begin(motor);
    QVERIFY(ButtonsAreEnabled(motor, false));
    for (const char* const name :
        {"btnReadFromFile", "btnWriteToFile", "btnReset", "listRotors", "tblMotorConfiguration"}) {
        QVERIFY2(Child<QWidget>(motor, name)->isEnabled(), name);
    }
    ClickSend(motor);
    ClickReceive(motor);
    QCOMPARE(StatusLine(), "before");
}

void TabMotorConfigurationTest::sendingWithoutALinkSaysSo()
{
    QFETCH(int, motor);
    Begin(motor);
    Overtype(Edit(motor, 0), "87");
    const Notified notified;
    Page(motor)->SendConfigurationButtonClicked();
    QCOMPARE(notified.texts,
        (QStringList{WithName("Sending %1 Motor Configuration .. ", motor), NotConnected}));
    QCOMPARE(StatusLine(), NotConnected);
    QCOMPARE(int(Stored(motor).at(0)), 87);
}

void TabMotorConfigurationTest::receivingWithoutALinkSaysSo()
{
    QFETCH(int, motor);
    Begin(motor);
    const Notified notified;
    Page(motor)->ReceiveConfigurationButtonClicked();
    QCOMPARE(notified.columns, QVector<int>{StatusColumn});
    QCOMPARE(StatusLine(), NotConnected);
}

void TabMotorConfigurationTest::aLoadWithoutALinkShowsEverything()
{
    QFETCH(int, motor);
    Begin(motor);
    QVERIFY(TheDeviceDatabase()->IsFirmwareBelowVersion3());
    Page(motor)->ConnectionStatusChanged();
    QVERIFY(WhatOldFirmwareLacksIsHidden(motor, false));
    QVERIFY(ButtonsAreEnabled(motor, false));
    QCOMPARE(StatusLine(), NotConnected);
}

void TabMotorConfigurationTest::aTabForNoMotorStoresNothing()
{
    Begin(Azimuth);
    CTabMotorConfiguration tab(nullptr, 2);
    tab.ChangeRotorType(1);
    for (const int motor : Motors) {
        QCOMPARE(Stored(motor), ModelWords[motor]);
    }
}

void TabMotorConfigurationTest::connectingToNewFirmwareFillsBothTables()
{
    QFETCH(int, motor);
    QVERIFY(Connect(*newUnit));
    ShowPage(TitleOf[motor]);
    QCOMPARE(Stored(motor), UnitWords[motor]);
    QCOMPARE(TableTexts(motor), RowsOf(UnitWords[motor]));
    QCOMPARE(RotorType(motor), motor == Azimuth ? "Pulse" : "Potentiometer");
    QCOMPARE(TheDeviceDatabase()->GetSubnetMask(), "255.255.0.0");
    QVERIFY(WhatOldFirmwareLacksIsHidden(motor, false));
    QVERIFY(ButtonsAreEnabled(motor, true));
}

void TabMotorConfigurationTest::newFirmwareIsSentItsTwelveWords_data()
{
    QTest::addColumn<int>("motor");
    QTest::addColumn<int>("entry");
    QTest::addColumn<QString>("payload");
    QTest::newRow("azimuth ProSisTel")
        << Azimuth << 1 << "01f40003009600010002000a0000000007d0001400320001";
    QTest::newRow("azimuth TD552")
        << Azimuth << 6 << "0046000300160001000200020000000001f4001400320000";
    QTest::newRow("polar ProSisTel")
        << Polar << 1 << "01f40003009600010002000a0000000007d0001400320001";
    QTest::newRow("polar YAESU G-550")
        << Polar << 2 << "00630003003c0001000200050000000001f4001400320000";
}

void TabMotorConfigurationTest::newFirmwareIsSentItsTwelveWords()
{
    QFETCH(int, motor);
    QFETCH(int, entry);
    QFETCH(QString, payload);
    QVERIFY(Connect(*newUnit));
    Begin(motor);
    ChooseRotor(motor, 0);
    ChooseRotor(motor, entry);
    const Notified notified;
    ClickSend(motor);
    QCOMPARE(StatusLine(), WithName("%1 Motor configuration sent successfully.", motor));
    QVERIFY(newUnit->WaitForLine(QString(MnemonicOf[motor])));
    QCOMPARE(newUnit->Commands().size(), 1);
    QCOMPARE(newUnit->Commands().first().toLower(),
        QString(MnemonicOf[motor]).toLower() + QLatin1Char(' ') + payload);
    QCOMPARE(QByteArray(MnemonicOf[motor]).size() + 1 + payload.size() / 2, 28);
    QCOMPARE(notified.columns,
        QVector<int>{StatusColumn} + RowColumns(motor) + QVector<int>{StatusColumn});
    QCOMPARE(notified.texts, (QStringList{WithName("Sending %1 Motor Configuration .. ", motor),
                                 WithName("%1 Motor configuration sent successfully.", motor)}));
}

void TabMotorConfigurationTest::whatIsTypedIsSent()
{
    QFETCH(int, motor);
    QVERIFY(Connect(*newUnit));
    Begin(motor);
    Words expected = ModelWords[motor];
    for (int row = 0; row < Rows; ++row) {
        Overtype(Edit(motor, row), QString::number(51 + row));
        expected[ParameterOfRow[row]] = static_cast<ushort>(51 + row);
    }
    ClickSend(motor);
    QCOMPARE(StatusLine(), WithName("%1 Motor configuration sent successfully.", motor));
    QVERIFY(newUnit->WaitForLine(QString(MnemonicOf[motor])));
    QCOMPARE(newUnit->State(QString(NameOf[motor]).toLower()), JoinedNumbers(expected));
    QCOMPARE(Stored(motor), expected);
}

void TabMotorConfigurationTest::aReceiveChangesItsMotorAndTheMask()
{
    QFETCH(int, motor);
    QVERIFY(Connect(*newUnit));
    // The unit may hold what an earlier function sent.
    const QString held = newUnit->State(QString(NameOf[motor]).toLower());
    newUnit->Forget();
    Begin(motor);
    const int entry = Child<QComboBox>(motor, "listRotors")->currentIndex();
    const Notified notified;
    ClickReceive(motor);
    QCOMPARE(newUnit->Commands(), QStringList{"CF0"});
    QCOMPARE(notified.columns, QVector<int>{StatusColumn} + MotorColumns(motor, 12) +
                                   (QVector<int>{MaskColumn, MaskColumn, StatusColumn}));
    QCOMPARE(notified.texts, (QStringList{"Recieving Configuration from Device .. ",
                                 "Device motor configuration read successfully!"}));
    QCOMPARE(JoinedNumbers(Stored(motor)), held);
    QCOMPARE(TableTexts(motor), RowsOf(Stored(motor)));
    QCOMPARE(Stored(1 - motor), ModelWords[1 - motor]);
    QCOMPARE(TheDeviceDatabase()->GetSubnetMask(), "255.255.0.0");
    QCOMPARE(Child<QComboBox>(motor, "listRotors")->currentIndex(), entry);
    QCOMPARE(StatusLine(), "Device motor configuration read successfully!");
}

void TabMotorConfigurationTest::aLoadReceivesAsTheButtonDoes()
{
    QFETCH(int, motor);
    QVERIFY(Connect(*newUnit));
    Begin(motor);
    const Notified notified;
    Page(motor)->ConnectionStatusChanged();
    QCOMPARE(newUnit->Commands(), QStringList{"CF0"});
    QCOMPARE(notified.columns, QVector<int>{StatusColumn} + MotorColumns(motor, 12) +
                                   (QVector<int>{MaskColumn, MaskColumn, StatusColumn}));
    QVERIFY(WhatOldFirmwareLacksIsHidden(motor, false));
    QVERIFY(ButtonsAreEnabled(motor, true));
}

void TabMotorConfigurationTest::anEmptyCellIsNotSentAndReadsAsAMissingLink()
{
    QFETCH(int, motor);
    QVERIFY(Connect(*newUnit));
    Begin(motor);
    Overtype(Edit(motor, 2), "87");
    Overtype(Edit(motor, 3), QString());
    Overtype(Edit(motor, 4), "88");
    ClickSend(motor);
    QCOMPARE(StatusLine(), NotConnected);
    QVERIFY(ButtonsAreEnabled(motor, true));
    Words expected = ModelWords[motor];
    expected[2] = 87;
    QCOMPARE(Stored(motor), expected);

    // What is sent next is all that the unit gets.
    Overtype(Edit(motor, 3), "89");
    ClickSend(motor);
    QVERIFY(newUnit->WaitForLine(QString(MnemonicOf[motor])));
    QCOMPARE(newUnit->Commands().size(), 1);
    expected[5] = 89;
    expected[6] = 88;
    QCOMPARE(newUnit->State(QString(NameOf[motor]).toLower()), JoinedNumbers(expected));
}

void TabMotorConfigurationTest::aSpeedOf200IsNotSent()
{
    QVERIFY(Connect(*newUnit));
    Begin(Azimuth);
    TheDeviceDatabase()->SetMotorParameter(Azimuth, 10, 200);
    ClickSend(Azimuth);
    QCOMPARE(StatusLine(), NotConnected);
    ShowPage(TitleOf[Polar]);
    ClickSend(Polar);
    QVERIFY(newUnit->WaitForLine("VCF"));
    QCOMPARE(newUnit->Commands().size(), 1);
}

void TabMotorConfigurationTest::aTabForNoMotorHasTheWrongNumberOfWords()
{
    QVERIFY(Connect(*newUnit));
    Begin(Azimuth);
    CTabMotorConfiguration tab(nullptr, 2);
    const Notified notified;
    tab.SendConfigurationButtonClicked();
    QCOMPARE(notified.texts, (QStringList{"Sending UnknownMotor Motor Configuration .. ",
                                 "Error! Invalid number of Motor configuration params."}));
    ClickSend(Azimuth);
    QVERIFY(newUnit->WaitForLine("HCF"));
    QCOMPARE(newUnit->Commands().size(), 1);
}

void TabMotorConfigurationTest::aFailedReceiveLeavesTheModelAlone_data()
{
    QTest::addColumn<int>("motor");
    QTest::addColumn<QString>("fault");
    QTest::newRow("azimuth, no answer") << Azimuth << "silent";
    QTest::newRow("azimuth, half of the answer") << Azimuth << "short";
    QTest::newRow("azimuth, an answer that is too late") << Azimuth << "slow";
    QTest::newRow("polar, no answer") << Polar << "silent";
    QTest::newRow("polar, a connection that is reset") << Polar << "resetting";
}

void TabMotorConfigurationTest::aFailedReceiveLeavesTheModelAlone()
{
    QFETCH(int, motor);
    QFETCH(QString, fault);
    QVERIFY(Connect(*newUnit));
    Begin(motor);
    QVERIFY(newUnit->Tell(QString("fault ") + fault + ":CF0:1"));
    const Notified notified;
    ClickReceive(motor);
    QVERIFY(newUnit->Tell("clear"));
    QCOMPARE(notified.columns, (QVector<int>{StatusColumn, StatusColumn}));
    QCOMPARE(notified.texts, (QStringList{"Recieving Configuration from Device .. ",
                                 "Device motor configuration could not be read!"}));
    QCOMPARE(Stored(Azimuth), ModelWords[Azimuth]);
    QCOMPARE(Stored(Polar), ModelWords[Polar]);
    QCOMPARE(TheDeviceDatabase()->GetSubnetMask(), "255.255.255.252");
    QVERIFY(ButtonsAreEnabled(motor, true));
    TheDeviceCommunication()->Disconnect();
}

void TabMotorConfigurationTest::aLinkThatWasClosedHereIsNoticedAtTheButton_data()
{
    QTest::addColumn<int>("motor");
    QTest::addColumn<QString>("button");
    for (const int motor : Motors) {
        for (const char* const button : {"btnSendToDevice", "btnReceiveFromDevice"}) {
            QTest::addRow("%s %s", NameOf[motor], button) << motor << QString(button);
        }
    }
}

void TabMotorConfigurationTest::aLinkThatWasClosedHereIsNoticedAtTheButton()
{
    QFETCH(int, motor);
    QFETCH(QString, button);
    Begin(motor);
    Child<QPushButton>(motor, "btnSendToDevice")->setEnabled(true);
    Child<QPushButton>(motor, "btnReceiveFromDevice")->setEnabled(true);
    TheDeviceCommunication()->Disconnect();
    Click(Page(motor)->findChild<QPushButton*>(button));
    QCOMPARE(StatusLine(), NotConnected);
    QVERIFY(ButtonsAreEnabled(motor, false));
}

void TabMotorConfigurationTest::aLinkLostAtASendStillReportsSuccess()
{
    QVERIFY(Connect(*newUnit));
    Begin(Polar);
    QVERIFY(newUnit->Tell("drop"));
    ClickSend(Polar);
    QCOMPARE(StatusLine(), "Polar Motor configuration sent successfully.");
    QVERIFY(!TheDeviceCommunication()->IsConnected());
    QCOMPARE(ConnectionLine(), "Not Connected ");
    for (const int motor : Motors) {
        QVERIFY(ButtonsAreEnabled(motor, false));
    }
    QCOMPARE(newUnit->Commands(), QStringList());
}

void TabMotorConfigurationTest::afterALossTheTablesStayAndWorkOnTheModel()
{
    QVERIFY(Connect(*newUnit));
    Begin(Azimuth);
    QVERIFY(newUnit->Tell("drop"));
    ClickSend(Azimuth);
    QVERIFY(!TheDeviceCommunication()->IsConnected());
    for (const int motor : Motors) {
        QCOMPARE(TableTexts(motor), RowsOf(ModelWords[motor]));
        QVERIFY(WhatOldFirmwareLacksIsHidden(motor, false));
    }
    QCOMPARE(TheDeviceDatabase()->GetFirmwareVersion().trimmed(), "3.10");

    Begin(Azimuth);
    ClickSend(Azimuth);
    ClickReceive(Azimuth);
    QCOMPARE(StatusLine(), "before");
    Click(Child<QPushButton>(Azimuth, "btnReset"));
    QCOMPARE(Edit(Azimuth, 0)->text(), "30");
    ChooseRotor(Azimuth, 0);
    ChooseRotor(Azimuth, 1);
    QCOMPARE(Edit(Azimuth, 0)->text(), "500");
}

void TabMotorConfigurationTest::oldFirmwareHidesWhatItLacks()
{
    QFETCH(int, motor);
    QVERIFY(Connect(*oldUnit));
    ShowPage(TitleOf[motor]);
    QVERIFY(WhatOldFirmwareLacksIsHidden(motor, true));
    for (int row = 0; row < SpeedRow; ++row) {
        QVERIFY(!Table(motor)->isRowHidden(row));
    }
    for (const char* const name : {"btnReadFromFile", "btnWriteToFile", "btnReset",
             "btnReceiveFromDevice", "btnSendToDevice"}) {
        QVERIFY2(Child<QWidget>(motor, name)->isVisible(), name);
        QVERIFY2(Child<QWidget>(motor, name)->isEnabled(), name);
    }
    QCOMPARE(TableTexts(motor).mid(0, SpeedRow), RowsOf(UnitWords[motor]).mid(0, SpeedRow));
    QCOMPARE(TheDeviceDatabase()->GetSubnetMask(), "255.255.0.0");
}

void TabMotorConfigurationTest::oldFirmwareIsSentItsTenWords_data()
{
    QTest::addColumn<int>("motor");
    QTest::newRow("azimuth ProSisTel") << Azimuth;
    QTest::newRow("polar ProSisTel") << Polar;
}

void TabMotorConfigurationTest::oldFirmwareIsSentItsTenWords()
{
    QFETCH(int, motor);
    QVERIFY(Connect(*oldUnit));
    Begin(motor);
    Page(motor)->ChangeRotorType(1); // the list is hidden
    const QString payload = "01f40003009600010002000a0000000007d00014";
    for (int twice = 0; twice < 2; ++twice) {
        oldUnit->Forget();
        ClickSend(motor);
        QCOMPARE(StatusLine(), WithName("%1 Motor configuration sent successfully.", motor));
        QVERIFY(oldUnit->WaitForLine(QString(MnemonicOf[motor])));
        // A word too many would stand in front of the second frame.
        QCOMPARE(oldUnit->Commands().size(), 1);
        QCOMPARE(oldUnit->Commands().first().toLower(),
            QString(MnemonicOf[motor]).toLower() + QLatin1Char(' ') + payload);
    }
    QCOMPARE(QByteArray(MnemonicOf[motor]).size() + 1 + payload.size() / 2, 24);
}

void TabMotorConfigurationTest::aReceiveFromOldFirmwareLeavesSpeedAndTypeAlone()
{
    QFETCH(int, motor);
    QVERIFY(Connect(*oldUnit));
    const QString held = oldUnit->State(QString(NameOf[motor]).toLower());
    oldUnit->Forget();
    Begin(motor);
    const Notified notified;
    ClickReceive(motor);
    QCOMPARE(oldUnit->Commands(), QStringList{"CF0"});
    QCOMPARE(notified.columns, QVector<int>{StatusColumn} + MotorColumns(motor, 10) +
                                   (QVector<int>{MaskColumn, MaskColumn, StatusColumn}));
    QCOMPARE(JoinedNumbers(Stored(motor).mid(0, 10)), held);
    QCOMPARE(Stored(motor).mid(10), ModelWords[motor].mid(10));
    QCOMPARE(Stored(1 - motor), ModelWords[1 - motor]);
    QCOMPARE(TheDeviceDatabase()->GetSubnetMask(), "255.255.0.0");
    QCOMPARE(StatusLine(), "Device motor configuration read successfully!");
}

void TabMotorConfigurationTest::newFirmwareShowsAgainWhatOldFirmwareHid()
{
    QVERIFY(Connect(*oldUnit));
    QVERIFY(WhatOldFirmwareLacksIsHidden(Azimuth, true));
    QVERIFY(WhatOldFirmwareLacksIsHidden(Polar, true));
    QVERIFY(Connect(*newUnit));
    QVERIFY(WhatOldFirmwareLacksIsHidden(Azimuth, false));
    QVERIFY(WhatOldFirmwareLacksIsHidden(Polar, false));
}

void TabMotorConfigurationTest::whatOldFirmwareHidComesBackWithoutALink()
{
    QVERIFY(Connect(*oldUnit));
    TheDeviceCommunication()->Disconnect();
    for (const int motor : Motors) {
        Page(motor)->UpdateControls();
        QVERIFY(ButtonsAreEnabled(motor, false));
        QVERIFY(WhatOldFirmwareLacksIsHidden(motor, true)); // until the next load
        Page(motor)->ConnectionStatusChanged();
        QVERIFY(WhatOldFirmwareLacksIsHidden(motor, false));
        QCOMPARE(StatusLine(), NotConnected);
    }
}

VX440_WINDOW_TEST_MAIN(TabMotorConfigurationTest)

#include "TabMotorConfigurationTest.moc"
