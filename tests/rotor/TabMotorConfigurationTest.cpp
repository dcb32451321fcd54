// SPDX-License-Identifier: MIT

#include "link/CDeviceCommunication.h"
#include "rotor/RotorCatalogue.h"
#include "tests/rotor/MotorPage.h"
#include "tests/support/Notified.h"
#include "tests/support/scripted/ConnectingThread.h"
#include "tests/support/scripted/ScriptedLink.h"

#include <QAbstractItemView>
#include <QClipboard>
#include <QComboBox>
#include <QHeaderView>
#include <QIntValidator>
#include <QPushButton>
#include <QWindow>
#include <QtEndian>

#include <algorithm>
#include <functional>
#include <numeric>

namespace {

constexpr const char* MnemonicOf[] = {"HCF\r", "VCF\r"};
constexpr int FirstColumnOf[] = {20, 32};

constexpr int Rows = 9;
constexpr int SpeedRow = 8;
constexpr int ParameterOfRow[Rows] = {0, 1, 2, 5, 6, 7, 8, 9, 10};

constexpr int StatusColumn = 1;
constexpr int MaskColumn = 5;

constexpr const char* OldFirmware = "2.99";
constexpr const char* NewFirmware = "3.10";

// What the unit holds, and what the model is given that shall differ from it.
const Words UnitWords[] = {{1001, 1002, 1003, 1004, 1005, 1006, 1007, 1008, 1009, 1010, 61, 1},
    {2001, 2002, 2003, 2004, 2005, 2006, 2007, 2008, 2009, 2010, 62, 0}};
const Words ModelWords[] = {{301, 302, 303, 304, 305, 306, 307, 308, 309, 310, 31, 0},
    {401, 402, 403, 404, 405, 406, 407, 408, 409, 410, 41, 1}};

const QString NotConnected = "Not connected to any device.";

QByteArray BytesOf(const Words& words)
{
    QByteArray bytes(2 * words.size(), '\0');
    qToBigEndian<ushort>(words.constData(), words.size(), bytes.data());
    return bytes;
}

// What the unit answers when it is asked for its configuration.
QByteArray ConfigurationBlock(const char* firmware)
{
    const bool old = QByteArray(firmware) == OldFirmware;
    const int count = old ? 10 : 12;
    const QByteArray words =
        BytesOf(UnitWords[Azimuth].mid(0, count)) + BytesOf(UnitWords[Polar].mid(0, count));
    const QByteArray addresses = QByteArray::fromHex("024C7E0001297F000001FFFF0000");
    return (words + addresses).leftJustified(old ? 67 : 75, '\0');
}

QStringList SentFrames()
{
    return scripted::Actions().filter(QRegularExpression("^send"));
}

// The frames that send these words to a motor.
QStringList FramesOf(int motor, const Words& words)
{
    const QByteArray frame = MnemonicOf[motor] + BytesOf(words);
    return {"send " + QString::fromLatin1(frame.toHex().toUpper())};
}

QString WithName(const char* text, int motor)
{
    return QString(text).arg(NameOf[motor]);
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

QVector<int> MotorColumns(int motor, int count)
{
    QVector<int> columns(count);
    std::iota(columns.begin(), columns.end(), FirstColumnOf[motor]);
    return columns;
}

QVector<int> RowColumns(int motor, int rows = Rows)
{
    QVector<int> columns;
    for (int row = 0; row < rows; ++row) {
        columns.append(FirstColumnOf[motor] + ParameterOfRow[row]);
    }
    return columns;
}

QVector<int> ColumnsOfAReceive(int motor, int count)
{
    return QVector<int>{StatusColumn} + MotorColumns(motor, count) +
           QVector<int>{MaskColumn, MaskColumn, StatusColumn};
}

// What a screen reader is told of a cell.
QString ToldValue(int motor, int row)
{
    return Table(motor)->model()->index(row, 0).data(Qt::AccessibleTextRole).toString();
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

void ClickButton(int motor, const char* name)
{
    Click(Child<QPushButton>(motor, name));
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

// Shows it with a speed out of range, and the focus in that field.
void BeginWithSpeed(int motor, ushort speed)
{
    Begin(motor);
    TheDeviceDatabase()->SetMotorParameter(motor, 10, speed);
    Click(Edit(motor, SpeedRow));
}

void Connect(const char* firmware)
{
    scripted::WhenSent([firmware](const QByteArray& frame) {
        if (frame == "*IDN?\r") {
            scripted::Deliver(QByteArray("ZELMA&KOVINTH,VX440,P/S,") + firmware + '\r');
        } else if (frame == "CF0\r") {
            scripted::DeliverAfter(1000, ConfigurationBlock(firmware));
        }
    });
    ConnectTo("127.0.0.1");
}

void BeginConnected(int motor, const char* firmware)
{
    Connect(firmware);
    Begin(motor);
    scripted::ForgetEvents();
}

bool ButtonsAreEnabled(int motor, bool enabled)
{
    return Child<QPushButton>(motor, "btnSendToDevice")->isEnabled() == enabled &&
           Child<QPushButton>(motor, "btnReceiveFromDevice")->isEnabled() == enabled;
}

bool WhatOldFirmwareLacksIsHidden(int motor, bool hidden)
{
    const auto names = {"listRotors", "txtRotorType", "lblRotorName", "lblRotorType"};
    return Table(motor)->isRowHidden(SpeedRow) == hidden &&
           std::all_of(names.begin(), names.end(),
               [=](const char* name) { return Child<QWidget>(motor, name)->isHidden() == hidden; });
}

void AddRows()
{
    QTest::addColumn<int>("row");
    for (int row = 0; row < Rows; ++row) {
        QTest::addRow("row %d", row) << row;
    }
}

} // namespace

/// A motor's page over a scripted link.
class TabMotorConfigurationTest : public MotorPageTest
{
    Q_OBJECT

private slots:
    void init()
    {
        MotorPageTest::init();
        TheDeviceCommunication()->Disconnect();
        scripted::Reset();
        scripted::WhenSlept([](int) { AwaitConnectingThread(); });
    }

    // Before any connection.
    void theProgramStartsWithTheBlankRotor()
    {
        QCOMPARE(Stored(motor), (Words{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}));
        QCOMPARE(TableTexts(motor), RowsOf(Words(12, 0)));
        QCOMPARE(ShownRotorType(motor), "Pulse");
        QCOMPARE(Child<QComboBox>(motor, "listRotors")->currentIndex(), 0);
        QVERIFY(ButtonsAreEnabled(motor, false));
        for (int row = 0; row < Rows; ++row) {
            QCOMPARE(ToldValue(motor, row), "0");
        }
    }

    void theTableIsSetUp()
    {
        ShowPage(TitleOf[motor]);
        const QTableWidget* const table = Table(motor);
        QCOMPARE(table->rowCount(), Rows);
        QCOMPARE(table->columnCount(), 1);
        QCOMPARE(table->horizontalHeaderItem(0)->text(), "Value");
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

    void aRowHasItsHeaderEditAndBounds_data() { AddRows(); }
    void aRowHasItsHeaderEditAndBounds()
    {
        QFETCH(int, row);
        QCOMPARE(Table(motor)->verticalHeaderItem(row)->text(),
            NameOf[motor] + (" " + MotorParameterRanges.at(row).label));
        QCOMPARE(Edit(motor, row)->objectName(), QString::number(row));
        const auto* const bounds =
            qobject_cast<const QIntValidator*>(Edit(motor, row)->validator());
        QVERIFY(bounds != nullptr);
        QCOMPARE(bounds->bottom(), 0);
        QCOMPARE(bounds->top(), row == SpeedRow ? 100 : 65535);
    }

    void aValueOfTheModelShowsInItsRowOnly_data() { AddRows(); }
    void aValueOfTheModelShowsInItsRowOnly()
    {
        QFETCH(int, row);
        Begin(motor);
        TheDeviceDatabase()->SetMotorParameter(motor, ParameterOfRow[row], 99);
        QStringList expected = RowsOf(ModelWords[motor]);
        expected[row] = "99";
        QCOMPARE(TableTexts(motor), expected);
        QCOMPARE(TableTexts(other), RowsOf(ModelWords[other]));
    }

    void theRotorTypeFollowsTheModel()
    {
        Begin(motor);
        const QStringList texts{"Potentiometer", "Pulse", "Unknow Type", QString()};
        for (ushort type = 0; type < 4; ++type) {
            TheDeviceDatabase()->SetMotorParameter(motor, 11, type);
            QCOMPARE(ShownRotorType(motor), texts.at(type));
        }
    }

    void theListOffersTheRotorsOfItsMotorAndEachReplacesAllParameters()
    {
        const auto& presets = motor == Azimuth ? AzimuthRotorPresets : PolarRotorPresets;
        const auto* const list = Child<QComboBox>(motor, "listRotors");
        QCOMPARE(list->count(), presets.size());
        for (int entry = presets.size() - 1; entry >= 0; --entry) {
            const sROTOR_PRESET& preset = presets.at(entry);
            QCOMPARE(list->itemText(entry), preset.name);
            Begin(motor);
            const Notified notified;
            ChooseRotor(motor, entry);
            const Words words = preset.values + Words{preset.rotorType};
            QCOMPARE(list->currentIndex(), entry);
            QCOMPARE(Stored(motor), words);
            QCOMPARE(TableTexts(motor), RowsOf(words));
            QCOMPARE(ShownRotorType(motor), preset.rotorType == 1 ? "Pulse" : "Potentiometer");
            QCOMPARE(notified.columns, MotorColumns(motor, 12));
            QCOMPARE(Stored(other), ModelWords[other]);
            QCOMPARE(StatusLine(), "before");
        }
    }

    void resetKeepsTheTypeAndTheSelection()
    {
        Words words{30, 1, 250, 1, 1, 2, 0, 0, 2000, 30, 100, 1};
        words[0] = motor == Azimuth ? 30 : 20;
        Begin(motor);
        for (const int entry : {1, motor == Azimuth ? 6 : 4}) {
            words[11] = entry == 1 ? 1 : 0;
            ChooseRotor(motor, entry);
            const Notified notified;
            ClickButton(motor, "btnReset");
            QCOMPARE(notified.columns, MotorColumns(motor, 11));
            QCOMPARE(Stored(motor), words);
            QCOMPARE(TableTexts(motor), RowsOf(words));
            QCOMPARE(ShownRotorType(motor), entry == 1 ? "Pulse" : "Potentiometer");
            QCOMPARE(Child<QComboBox>(motor, "listRotors")->currentIndex(), entry);
            QCOMPARE(StatusLine(), "before");
        }
    }

    void aTypedValueReachesTheModelOnlyWhenTheTableIsRead_data() { AddRows(); }
    void aTypedValueReachesTheModelOnlyWhenTheTableIsRead()
    {
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
        QCOMPARE(Stored(other), ModelWords[other]);
        QCOMPARE(notified.columns, RowColumns(motor));
        QCOMPARE(StatusLine(), "before");
    }

    void anEmptyCellStopsTheReading_data() { AddRows(); }
    void anEmptyCellStopsTheReading()
    {
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
        QCOMPARE(notified.columns, RowColumns(motor, row));
        QCOMPARE(Stored(motor), expected);
        QCOMPARE(TableTexts(motor), texts);
        QCOMPARE(TheDeviceDatabase()->GetMotorValidationError(motor),
            QString("Invalid value for %1 %2!")
                .arg(NameOf[motor], MotorParameterNames.value(ParameterOfRow[row])));
        QCOMPARE(TheDeviceDatabase()->GetMotorValidationError(other), QString());
        QCOMPARE(StatusLine(), "before");

        Overtype(Edit(motor, row), "7");
        Page(motor)->ReadParamValuesFromUi();
        QCOMPARE(TheDeviceDatabase()->GetMotorValidationError(motor), QString());
    }

    void aSpeedAboveTheMaximumStopsTheReading()
    {
        BeginWithSpeed(motor, 101);
        const Notified notified;
        Page(motor)->ReadParamValuesFromUi();
        QCOMPARE(notified.columns, RowColumns(motor, SpeedRow));
        QCOMPARE(TheDeviceDatabase()->GetMotorValidationError(motor),
            WithName("Invalid value for %1 Slow Motion Speed (SMS)!", motor));
    }

    void oneTabsSignalReadsBothTables()
    {
        for (const int typed : Motors) {
            Begin(typed);
            Overtype(Edit(typed, 1), "87");
            QCOMPARE(int(Stored(typed).at(1)), int(ModelWords[typed].at(1)));
            emit Page(motor)->ReadFromUi();
            QCOMPARE(int(Stored(typed).at(1)), 87);
        }
    }

    void aDigitAboveTheMaximumIsRefusedWithoutAWarning()
    {
        const struct
        {
            int row;
            const char* typed;
            const char* taken;
        } entries[] = {{SpeedRow, "101", "10"}, {SpeedRow, "100", "100"}, {SpeedRow, "200", "20"},
            {SpeedRow, "99", "99"}, {SpeedRow, "-5", "5"}, {0, "65536", "6553"},
            {0, "65535", "65535"}};
        Begin(motor);
        for (const auto& entry : entries) {
            ClickRowHeader(motor, entry.row);
            QCOMPARE(Table(motor)->currentRow(), entry.row);
            Overtype(Edit(motor, entry.row), entry.typed);
            QCOMPARE(Edit(motor, entry.row)->text(), entry.taken);
            QCOMPARE(StatusLine(), "before");
        }
    }

    void anyKeyInTheCurrentRowCutsAStoredValueToTheMaximum()
    {
        for (const Qt::Key key : {Qt::Key_Home, Qt::Key_X, Qt::Key_Minus, Qt::Key_5, Qt::Key_Space,
                 Qt::Key_Left, Qt::Key_Shift}) {
            BeginWithSpeed(motor, 200);
            QCOMPARE(Table(motor)->currentRow(), SpeedRow);
            QCOMPARE(Edit(motor, SpeedRow)->text(), "200");
            QCOMPARE(StatusLine(), "before");
            const Notified notified;
            Press(key);
            QCOMPARE(Edit(motor, SpeedRow)->text(), "100");
            QCOMPARE(StatusLine(), "Warning: SMS must be in in range 0 - 100");
            QCOMPARE(notified.columns, QVector<int>{StatusColumn});
            QCOMPARE(int(Stored(motor).at(10)), 200);
        }
    }

    void anyKeyInARowCutsItsTextToItsOwnMaximum_data() { AddRows(); }
    void anyKeyInARowCutsItsTextToItsOwnMaximum()
    {
        QFETCH(int, row);
        const char* const mnemonics[Rows] = {
            "SMD", "MHD", "SD", "OD", "ORS", "OLS", "MMHL", "MOT", "SMS"};
        const QString maximum = row == SpeedRow ? "100" : "65535";
        Begin(motor);
        Click(Edit(motor, row));
        QCOMPARE(Table(motor)->currentRow(), row);
        Edit(motor, row)->setText("99999");
        Press(Qt::Key_Home);
        QCOMPARE(Edit(motor, row)->text(), maximum);
        QCOMPARE(StatusLine(),
            QString("Warning: %1 must be in in range 0 - %2").arg(mnemonics[row], maximum));
    }

    // Of the rows only the speed has a maximum that the model's values can pass.
    void inAnotherCurrentRowNoKeyLengthensOrSpoilsAValueFromOutside_data() { AddRows(); }
    void inAnotherCurrentRowNoKeyLengthensOrSpoilsAValueFromOutside()
    {
        QFETCH(int, row);
        const QString outside = row == SpeedRow ? "200" : "99999";
        Begin(motor);
        QLineEdit* const edit = Edit(motor, row);
        Click(edit);
        edit->setText(outside);
        MakeCurrent(motor, -1);
        for (const Qt::Key key : {Qt::Key_X, Qt::Key_Minus, Qt::Key_Space, Qt::Key_5, Qt::Key_7}) {
            Press(key);
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

    // The digits that stay are the first and the last of all.
    void inAnotherCurrentRowAValueFromOutsideCanBeShortenedAndReplaced()
    {
        BeginWithSpeed(motor, 2090);
        MakeCurrent(motor, 0);
        QLineEdit* const edit = Edit(motor, SpeedRow);
        Press(Qt::Key_Home);
        QCOMPARE(edit->cursorPosition(), 0);
        Press(Qt::Key_Right, Qt::ShiftModifier);
        Press(Qt::Key_3);
        QCOMPARE(edit->text(), "3090");
        QCOMPARE(edit->cursorPosition(), 1);
        Press(Qt::Key_End);
        Press(Qt::Key_Backspace);
        QCOMPARE(edit->text(), "309");
        Press(Qt::Key_Backspace);
        QCOMPARE(edit->text(), "30");
        Press(Qt::Key_5);
        QCOMPARE(edit->text(), "30");
        QCOMPARE(StatusLine(), "before");
    }

    void anEntryThatTheRotorListHasNotDoesNothing()
    {
        Begin(motor);
        const int entries = motor == Azimuth ? 7 : 5;
        const Notified notified;
        for (const int entry : {-2, -1, entries, entries + 1, 1000000}) {
            Page(motor)->ChangeRotorType(entry);
            QCOMPARE(notified.columns, QVector<int>());
            QCOMPARE(Stored(motor), ModelWords[motor]);
        }
    }

    void noKeyReachesTheTable()
    {
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

    // The key passes the table.
    void controlAndTabInAFieldShowTheNextPage()
    {
        Begin(motor);
        auto* const pages = Find<QTabWidget>("tabWidget");
        const int page = pages->currentIndex();
        Click(Edit(motor, 2));
        Press(Qt::Key_Tab, Qt::ControlModifier);
        QCOMPARE(pages->currentIndex(), page + 1);
        QCOMPARE(TableTexts(motor), RowsOf(ModelWords[motor]));
    }

    void theWheelOverTheClosedListDoesNothing()
    {
        Begin(motor);
        auto* const list = Child<QComboBox>(motor, "listRotors");
        const int before = list->currentIndex();
        for (const int turn : {-120, 120, 1200}) {
            QWheelEvent wheel(list->rect().center(), list->mapToGlobal(list->rect().center()),
                QPoint(), QPoint(0, turn), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
            QCoreApplication::sendEvent(list, &wheel);
            QCOMPARE(list->currentIndex(), before);
        }
        QCOMPARE(Stored(motor), ModelWords[motor]);
    }

    void theCellTellsAScreenReaderWhatItsFieldHolds_data() { AddRows(); }
    void theCellTellsAScreenReaderWhatItsFieldHolds()
    {
        QFETCH(int, row);
        Begin(motor);
        QCOMPARE(ToldValue(motor, row), Edit(motor, row)->text());
        Overtype(Edit(motor, row), "7");
        QCOMPARE(ToldValue(motor, row), "7");
        QCOMPARE(Table(motor)->model()->index(row, 0).data().toString(), QString());
    }

    void aScreenReaderIsToldTheNamesOfWhatHasNoTextOfItsOwn()
    {
        const QPair<const char*, const char*> names[] = {
            {"tblMotorConfiguration", "Motor parameters"}, {"txtRotorType", "Rotor Type"},
            {"listRotors", "Rotor"}, {"btnReset", "Reset to Default Settings"}};
        for (const auto& [widget, name] : names) {
            QCOMPARE(Child<QWidget>(motor, widget)->accessibleName(), name);
        }
        for (int row = 0; row < Rows; ++row) {
            QCOMPARE(Edit(motor, row)->accessibleName(),
                NameOf[motor] + (" " + MotorParameterRanges.at(row).label));
        }
        const auto* const list = Child<QComboBox>(motor, "listRotors");
        QCOMPARE(list->view()->accessibleName(), "Rotor");
        QCOMPARE(list->itemData(0, Qt::AccessibleTextRole).toString(), "No rotor");
        for (int entry = 1; entry < list->count(); ++entry) {
            QVERIFY(list->itemData(entry, Qt::AccessibleTextRole).isNull());
        }
    }

    void aReleasedKeyIsGuardedToo()
    {
        BeginWithSpeed(motor, 200);
        MakeCurrent(motor, 0);
        QTest::keyPress(MainWindow()->windowHandle(), Qt::Key_Home);
        QCOMPARE(Edit(motor, SpeedRow)->text(), "200");
        MakeCurrent(motor, SpeedRow);
        QTest::keyRelease(MainWindow()->windowHandle(), Qt::Key_Home);
        QCOMPARE(Edit(motor, SpeedRow)->text(), "100");
    }

    void withoutACurrentRowAKeyChangesNothing()
    {
        BeginWithSpeed(motor, 200);
        MakeCurrent(motor, -1);
        QCOMPARE(Table(motor)->currentRow(), -1);
        Press(Qt::Key_Home);
        Press(Qt::Key_End);
        Type("1");
        QCOMPARE(Edit(motor, SpeedRow)->text(), "200");
        QCOMPARE(StatusLine(), "before");
    }

    void theCurrentRowAndNotTheEditsRowSetsTheMaximum()
    {
        BeginWithSpeed(motor, 200);
        MakeCurrent(motor, 0);
        Press(Qt::Key_Home);
        QCOMPARE(Edit(motor, SpeedRow)->text(), "200");
        QCOMPARE(StatusLine(), "before");

        Click(Edit(motor, 0));
        MakeCurrent(motor, SpeedRow);
        Type("5");
        QCOMPARE(Edit(motor, 0)->text(), "100");
        QCOMPARE(StatusLine(), "Warning: SMS must be in in range 0 - 100");
    }

    void aKeyTakesEffectOnce()
    {
        Begin(motor);
        Overtype(Edit(motor, 0), "1234");
        QCOMPARE(Edit(motor, 0)->text(), "1234");
        Press(Qt::Key_Backspace);
        QCOMPARE(Edit(motor, 0)->text(), "123");
    }

    void withoutALinkBothButtonsAreOffAndTheRestIsOn()
    {
        Begin(motor);
        QVERIFY(ButtonsAreEnabled(motor, false));
        for (const char* const name : {"btnReadFromFile", "btnWriteToFile", "btnReset",
                 "listRotors", "tblMotorConfiguration"}) {
            QVERIFY2(Child<QWidget>(motor, name)->isEnabled(), name);
        }
        ClickButton(motor, "btnSendToDevice");
        ClickButton(motor, "btnReceiveFromDevice");
        QCOMPARE(StatusLine(), "before");
    }

    void sendingWithoutALinkSaysSo()
    {
        Begin(motor);
        Overtype(Edit(motor, 0), "87");
        const Notified notified;
        Page(motor)->SendConfigurationButtonClicked();
        QCOMPARE(notified.statuses,
            (QStringList{WithName("Sending %1 Motor Configuration .. ", motor), NotConnected}));
        QCOMPARE(StatusLine(), NotConnected);
        QCOMPARE(int(Stored(motor).at(0)), 87);
    }

    void receivingWithoutALinkSaysSo()
    {
        Begin(motor);
        const Notified notified;
        Page(motor)->ReceiveConfigurationButtonClicked();
        QCOMPARE(notified.columns, QVector<int>{StatusColumn});
        QCOMPARE(StatusLine(), NotConnected);
    }

    void aLoadWithoutALinkShowsEverything()
    {
        Begin(motor);
        QVERIFY(TheDeviceDatabase()->IsFirmwareBelowVersion3());
        Page(motor)->ConnectionStatusChanged();
        QVERIFY(WhatOldFirmwareLacksIsHidden(motor, false));
        QVERIFY(ButtonsAreEnabled(motor, false));
        QCOMPARE(StatusLine(), NotConnected);
    }

    void aTabForNoMotorStoresNothing()
    {
        Begin(motor);
        CTabMotorConfiguration tab(nullptr, 2);
        tab.ChangeRotorType(1);
        QCOMPARE(Stored(motor), ModelWords[motor]);
    }

    // A unit with new firmware.
    void connectingToNewFirmwareFillsTheTable()
    {
        Begin(motor);
        Connect(NewFirmware);
        QCOMPARE(Stored(motor), UnitWords[motor]);
        QCOMPARE(TableTexts(motor), RowsOf(UnitWords[motor]));
        QCOMPARE(ShownRotorType(motor), motor == Azimuth ? "Pulse" : "Potentiometer");
        QCOMPARE(TheDeviceDatabase()->GetSubnetMask(), "255.255.0.0");
        QVERIFY(WhatOldFirmwareLacksIsHidden(motor, false));
        QVERIFY(ButtonsAreEnabled(motor, true));
    }

    void newFirmwareIsSentItsTwelveWords()
    {
        const struct
        {
            int entry;
            const char* frame;
        } rotors[][2] = {{{1, "send 4843460D01F40003009600010002000A0000000007D0001400320001"},
                             {6, "send 4843460D0046000300160001000200020000000001F4001400320000"}},
            {{1, "send 5643460D01F40003009600010002000A0000000007D0001400320001"},
                {2, "send 5643460D00630003003C0001000200050000000001F4001400320000"}}};
        BeginConnected(motor, NewFirmware);
        for (const auto& rotor : rotors[motor]) {
            ChooseRotor(motor, 0);
            ChooseRotor(motor, rotor.entry);
            scripted::ForgetEvents();
            const Notified notified;
            ClickButton(motor, "btnSendToDevice");
            QCOMPARE(SentFrames(), QStringList{rotor.frame});
            QCOMPARE(notified.columns,
                QVector<int>{StatusColumn} + RowColumns(motor) + QVector<int>{StatusColumn});
            QCOMPARE(notified.statuses,
                (QStringList{WithName("Sending %1 Motor Configuration .. ", motor),
                    WithName("%1 Motor configuration sent successfully.", motor)}));
        }
    }

    void whatIsTypedIsSent()
    {
        BeginConnected(motor, NewFirmware);
        Words expected = ModelWords[motor];
        for (int row = 0; row < Rows; ++row) {
            Overtype(Edit(motor, row), QString::number(51 + row));
            expected[ParameterOfRow[row]] = static_cast<ushort>(51 + row);
        }
        ClickButton(motor, "btnSendToDevice");
        QCOMPARE(StatusLine(), WithName("%1 Motor configuration sent successfully.", motor));
        QCOMPARE(SentFrames(), FramesOf(motor, expected));
        QCOMPARE(Stored(motor), expected);
    }

    void aReceiveChangesItsMotorAndTheMaskAndSoDoesALoad()
    {
        for (const bool load : {false, true}) {
            BeginConnected(motor, NewFirmware);
            const int entry = Child<QComboBox>(motor, "listRotors")->currentIndex();
            Child<QPushButton>(motor, "btnSendToDevice")->setEnabled(!load); // a load enables both
            Child<QPushButton>(motor, "btnReceiveFromDevice")->setEnabled(!load);
            const Notified notified;
            load ? Page(motor)->ConnectionStatusChanged()
                 : ClickButton(motor, "btnReceiveFromDevice");
            QCOMPARE(SentFrames(), QStringList{"send 4346300D"});
            QCOMPARE(notified.columns, ColumnsOfAReceive(motor, 12));
            QCOMPARE(notified.statuses, (QStringList{"Recieving Configuration from Device .. ",
                                            "Device motor configuration read successfully!"}));
            QCOMPARE(Stored(motor), UnitWords[motor]);
            QCOMPARE(TableTexts(motor), RowsOf(UnitWords[motor]));
            QCOMPARE(Stored(other), ModelWords[other]);
            QCOMPARE(TheDeviceDatabase()->GetSubnetMask(), "255.255.0.0");
            QCOMPARE(Child<QComboBox>(motor, "listRotors")->currentIndex(), entry);
            QVERIFY(WhatOldFirmwareLacksIsHidden(motor, false));
            QVERIFY(ButtonsAreEnabled(motor, true));
        }
    }

    void anEmptyCellIsNotSentAndReadsAsAMissingLink()
    {
        BeginConnected(motor, NewFirmware);
        Overtype(Edit(motor, 2), "87");
        Overtype(Edit(motor, 3), QString());
        Overtype(Edit(motor, 4), "88");
        ClickButton(motor, "btnSendToDevice");
        QCOMPARE(StatusLine(), NotConnected);
        QVERIFY(ButtonsAreEnabled(motor, true));
        Words expected = ModelWords[motor];
        expected[2] = 87;
        QCOMPARE(Stored(motor), expected);
        QCOMPARE(SentFrames(), QStringList());

        Overtype(Edit(motor, 3), "89");
        ClickButton(motor, "btnSendToDevice");
        expected[5] = 89;
        expected[6] = 88;
        QCOMPARE(SentFrames(), FramesOf(motor, expected));
    }

    void aSpeedOf200IsNotSent()
    {
        BeginConnected(motor, NewFirmware);
        TheDeviceDatabase()->SetMotorParameter(motor, 10, 200);
        ClickButton(motor, "btnSendToDevice");
        QCOMPARE(StatusLine(), NotConnected);
        QCOMPARE(SentFrames(), QStringList());
        ShowPage(TitleOf[other]);
        ClickButton(other, "btnSendToDevice");
        QCOMPARE(SentFrames(), FramesOf(other, ModelWords[other]));
    }

    void aTabForNoMotorHasTheWrongNumberOfWords()
    {
        BeginConnected(motor, NewFirmware);
        CTabMotorConfiguration tab(nullptr, 2);
        const Notified notified;
        tab.SendConfigurationButtonClicked();
        QCOMPARE(notified.statuses, (QStringList{"Sending UnknownMotor Motor Configuration .. ",
                                        "Error! Invalid number of Motor configuration params."}));
        QCOMPARE(SentFrames(), QStringList());
    }

    void aFailedReceiveLeavesTheModelAlone()
    {
        const QByteArray block = ConfigurationBlock(NewFirmware);
        const std::function<void()> answers[] = {
            [] {},                                        // none
            [&] { scripted::Deliver(block.left(37)); },   // half of it
            [&] { scripted::DeliverAfter(1001, block); }, // too late
            [] { scripted::CloseByPeer(1); },             // a broken link
        };
        for (const auto& answer : answers) {
            BeginConnected(motor, NewFirmware);
            scripted::WhenSent([answer](const QByteArray&) { answer(); });
            const Notified notified;
            ClickButton(motor, "btnReceiveFromDevice");
            QCOMPARE(notified.columns, (QVector<int>{StatusColumn, StatusColumn}));
            QCOMPARE(notified.statuses, (QStringList{"Recieving Configuration from Device .. ",
                                            "Device motor configuration could not be read!"}));
            QCOMPARE(Stored(motor), ModelWords[motor]);
            QCOMPARE(Stored(other), ModelWords[other]);
            QCOMPARE(TheDeviceDatabase()->GetSubnetMask(), "255.255.255.252");
            QVERIFY(ButtonsAreEnabled(motor, true));
        }
    }

    void aLinkThatWasClosedHereIsNoticedAtTheButton()
    {
        for (const char* const button : {"btnSendToDevice", "btnReceiveFromDevice"}) {
            BeginConnected(motor, NewFirmware);
            QVERIFY(ButtonsAreEnabled(motor, true));
            TheDeviceCommunication()->Disconnect();
            ClickButton(motor, button);
            QCOMPARE(StatusLine(), NotConnected);
            QVERIFY2(ButtonsAreEnabled(motor, false), button);
        }
    }

    void aLinkLostAtASendStillReportsSuccessAndTheTablesWorkOnTheModel()
    {
        BeginConnected(motor, NewFirmware);
        scripted::FailSendsFrom(1);
        ClickButton(motor, "btnSendToDevice");
        QCOMPARE(StatusLine(), WithName("%1 Motor configuration sent successfully.", motor));
        QVERIFY(!TheDeviceCommunication()->IsConnected());
        QCOMPARE(ConnectionLine(), "Not Connected ");
        for (const int any : Motors) {
            QVERIFY(ButtonsAreEnabled(any, false));
            QCOMPARE(TableTexts(any), RowsOf(ModelWords[any]));
            QVERIFY(WhatOldFirmwareLacksIsHidden(any, false));
        }
        QCOMPARE(TheDeviceDatabase()->GetFirmwareVersion().trimmed(), "3.10");

        Begin(motor);
        ClickButton(motor, "btnSendToDevice");
        ClickButton(motor, "btnReceiveFromDevice");
        QCOMPARE(StatusLine(), "before");
        QCOMPARE(SentFrames(), QStringList{"send fails"});
        ClickButton(motor, "btnReset");
        QCOMPARE(Edit(motor, 0)->text(), motor == Azimuth ? "30" : "20");
        ChooseRotor(motor, 0);
        ChooseRotor(motor, 1);
        QCOMPARE(Edit(motor, 0)->text(), "500");
    }

    // A unit with old firmware.
    void oldFirmwareHidesWhatItLacksAndNewFirmwareShowsItAgain()
    {
        ShowPage(TitleOf[motor]);
        Connect(OldFirmware);
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
        Connect(NewFirmware);
        QVERIFY(WhatOldFirmwareLacksIsHidden(motor, false));
    }

    void oldFirmwareIsSentItsTenWords()
    {
        BeginConnected(motor, OldFirmware);
        Page(motor)->ChangeRotorType(1); // the list is hidden
        ClickButton(motor, "btnSendToDevice");
        QCOMPARE(StatusLine(), WithName("%1 Motor configuration sent successfully.", motor));
        QCOMPARE(SentFrames(), FramesOf(motor, {500, 3, 150, 1, 2, 10, 0, 0, 2000, 20}));
    }

    void aReceiveFromOldFirmwareLeavesSpeedAndTypeAlone()
    {
        BeginConnected(motor, OldFirmware);
        const Notified notified;
        ClickButton(motor, "btnReceiveFromDevice");
        QCOMPARE(SentFrames(), QStringList{"send 4346300D"});
        QCOMPARE(notified.columns, ColumnsOfAReceive(motor, 10));
        QCOMPARE(Stored(motor), UnitWords[motor].mid(0, 10) + ModelWords[motor].mid(10));
        QCOMPARE(Stored(other), ModelWords[other]);
        QCOMPARE(TheDeviceDatabase()->GetSubnetMask(), "255.255.0.0");
        QCOMPARE(StatusLine(), "Device motor configuration read successfully!");
    }

    void whatOldFirmwareHidComesBackWithoutALink()
    {
        Connect(OldFirmware);
        TheDeviceCommunication()->Disconnect();
        Page(motor)->UpdateControls();
        QVERIFY(ButtonsAreEnabled(motor, false));
        QVERIFY(WhatOldFirmwareLacksIsHidden(motor, true)); // until the next load
        Page(motor)->ConnectionStatusChanged();
        QVERIFY(WhatOldFirmwareLacksIsHidden(motor, false));
        QCOMPARE(StatusLine(), NotConnected);
    }
};

VX440_WINDOW_TEST_MAIN(TabMotorConfigurationTest)
#include "TabMotorConfigurationTest.moc"
