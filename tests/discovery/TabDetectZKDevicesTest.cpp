#include "tests/support/scripted/ScriptedClock.h"
#include "tests/support/scripted/ScriptedNeighbours.h"
#include "tests/support/scripted/ScriptedThreads.h"

#include "discovery/CTabDetectZKDevices.h"
#include "model/CDeviceDatabase.h"

#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QProgressDialog>
#include <QPushButton>
#include <QTableWidget>
#include <QtTest>

namespace {

template<typename Widget>
Widget* Find(const CTabDetectZKDevices& tab, const char* name)
{
    return tab.findChild<Widget*>(QString::fromLatin1(name));
}

QTableWidget* TableOf(const CTabDetectZKDevices& tab)
{
    return Find<QTableWidget>(tab, "tblDetectDevices");
}

QStringList RowsOf(const CTabDetectZKDevices& tab)
{
    const QTableWidget* table = TableOf(tab);
    QStringList rows;
    for (int row = 0; row < table->rowCount(); ++row) {
        rows << table->item(row, 0)->text() + QLatin1Char(' ') + table->item(row, 1)->text();
    }
    return rows;
}

QString Status()
{
    const CDeviceDatabase* model = TheDeviceDatabase();
    return model->data(model->index(0, 1)).toString();
}

void SetRange(const CTabDetectZKDevices& tab, const char* start, const char* end)
{
    Find<QLineEdit>(tab, "txtStartIpAddress")->setText(QString::fromLatin1(start));
    Find<QLineEdit>(tab, "txtEndIpAddress")->setText(QString::fromLatin1(end));
}

void PressFind(const CTabDetectZKDevices& tab)
{
    Find<QPushButton>(tab, "btnFindDevices")->click();
}

// The hosts that answer to the search, from the end of its first pass on.
void LetAnswer(const QVector<QPair<const char*, const char*>>& hosts)
{
    ScriptedClock::SetDuringWait([hosts](unsigned milliseconds) {
        ScriptedThreads::RunAll();
        if (milliseconds == 100) {
            for (const auto& host : hosts) {
                ScriptedNeighbours::Add(host.first, host.second);
            }
        }
    });
}

} // namespace

class TabDetectZKDevicesTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        ScriptedThreads::RunAll();
        ScriptedThreads::Reset();
        ScriptedClock::Reset();
        ScriptedNeighbours::Reset();
        LetAnswer({});
        TheDeviceDatabase()->ResetData();
    }

    void theFieldsTakeDottedAddresses_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addRow("start") << "txtStartIpAddress";
        QTest::addRow("end") << "txtEndIpAddress";
    }

    void theFieldsTakeDottedAddresses()
    {
        QFETCH(QString, name);
        const CTabDetectZKDevices tab(nullptr);
        const auto* field = tab.findChild<QLineEdit*>(name);
        QCOMPARE(field->inputMask(), "000.000.000.000");
    }

    void theTableHasTwoStretchedColumnsAndKeepsItsOrder()
    {
        const CTabDetectZKDevices tab(nullptr);
        const QTableWidget* table = TableOf(tab);
        QCOMPARE(table->columnCount(), 2);
        QCOMPARE(table->rowCount(), 0);
        QCOMPARE(table->horizontalHeaderItem(0)->text(), "IP Address");
        QCOMPARE(table->horizontalHeaderItem(1)->text(), "MAC Address");
        QCOMPARE(table->horizontalHeader()->sectionResizeMode(0), QHeaderView::Stretch);
        QCOMPARE(table->horizontalHeader()->sectionResizeMode(1), QHeaderView::Stretch);
        QVERIFY(!table->isSortingEnabled());
    }

    void theTabKeyWalksTheFieldsTheButtonAndTheTable()
    {
        CTabDetectZKDevices tab(nullptr);
        tab.show();
        QVERIFY(QTest::qWaitForWindowActive(&tab));
        Find<QWidget>(tab, "txtStartIpAddress")->setFocus();
        QStringList walked;
        for (int stop = 0; stop < 5; ++stop) {
            walked << tab.focusWidget()->objectName();
            QTest::keyClick(tab.focusWidget(), Qt::Key_Tab);
        }
        QCOMPARE(walked, (QStringList{"txtStartIpAddress", "txtEndIpAddress", "btnFindDevices",
                             "tblDetectDevices", "txtStartIpAddress"}));
    }

    void onlyTheMakersPrefixIsListed_data()
    {
        QTest::addColumn<QString>("mac");
        QTest::addColumn<bool>("listed");
        const auto add = [](const char* mac, bool listed) {
            QTest::addRow("%s", mac) << QString::fromLatin1(mac) << listed;
        };
        add("02:4c:7e:00:00:01", true);
        add("02:4C:7E:00:00:01", true);
        add("02:4c:7E:ff:ff:ff", true);
        add("02:4c:7d:00:00:01", false);
        add("02:4d:7e:00:00:01", false);
        add("03:4c:7e:00:00:01", false);
        add("02-4c-7e-00-00-01", false);
        add("00:02:4c:7e:00:00", false);
        add("00:00:00:00:00:00", false);
        add("02:4c:7e", false);
        add("", false);
    }

    void onlyTheMakersPrefixIsListed()
    {
        QFETCH(QString, mac);
        QFETCH(bool, listed);
        CTabDetectZKDevices tab(nullptr);
        tab.SetDeviceToTableWidget(sDEVICE{"10.0.0.1", mac});
        QCOMPARE(RowsOf(tab), listed ? QStringList{QString("10.0.0.1 ") + mac} : QStringList());
    }

    void itemsCanBeSelectedButNotEdited()
    {
        CTabDetectZKDevices tab(nullptr);
        tab.SetDeviceToTableWidget(sDEVICE{"10.0.0.1", "02:4c:7e:00:00:01"});
        QCOMPARE(int(TableOf(tab)->item(0, 0)->flags()), 49);
        QCOMPARE(int(TableOf(tab)->item(0, 1)->flags()), 49);
    }

    void rowsAreAddedBehindTheOthers()
    {
        CTabDetectZKDevices tab(nullptr);
        tab.SetDeviceToTableWidget(sDEVICE{"10.0.0.9", "02:4c:7e:00:00:09"});
        tab.SetDeviceToTableWidget(sDEVICE{"10.0.0.1", "02:4c:7e:00:00:01"});
        QCOMPARE(
            RowsOf(tab), (QStringList{"10.0.0.9 02:4c:7e:00:00:09", "10.0.0.1 02:4c:7e:00:00:01"}));
    }

    void aSearchListsTheUnitsInAscendingOrder()
    {
        LetAnswer({{"192.168.1.200", "02:4c:7e:00:02:00"}, {"192.168.1.7", "aa:4c:7e:00:00:07"},
            {"192.168.1.30", "02:4c:7e:00:00:30"}, {"192.168.1.4", "02:4c:7e:00:00:04"}});
        const CTabDetectZKDevices tab(nullptr);
        PressFind(tab);
        QCOMPARE(
            RowsOf(tab), (QStringList{"192.168.1.4 02:4c:7e:00:00:04",
                             "192.168.1.30 02:4c:7e:00:00:30", "192.168.1.200 02:4c:7e:00:02:00"}));
    }

    void theFieldsGiveTheRange()
    {
        const CTabDetectZKDevices tab(nullptr);
        SetRange(tab, "10.1.2.5", "99.99.99.6");
        PressFind(tab);
        QCOMPARE(ScriptedNeighbours::Calls("resolve"),
            (QStringList{"resolve 10.1.2.5", "resolve 10.1.2.6"}));
    }

    void theStatusIsEmptyFor200MillisecondsAndThenInProgressAndReady()
    {
        const CTabDetectZKDevices tab(nullptr);
        SetRange(tab, "10.0.0.1", "10.0.0.1");
        TheDeviceDatabase()->SetApplicationStatus("of before");
        QStringList statusInWaits;
        ScriptedClock::SetDuringWait([&](unsigned milliseconds) {
            ScriptedThreads::RunAll();
            statusInWaits << QString("%1 %2").arg(milliseconds).arg(Status());
        });
        PressFind(tab);
        QCOMPARE(statusInWaits,
            (QStringList{"200 ", "5 Detect Z&K Devices: in progress",
                "80 Detect Z&K Devices: in progress", "100 Detect Z&K Devices: in progress"}));
        QCOMPARE(Status(), "Detect Z&K Devices: Ready");
    }

    void aRefusedRangeGoesStraightToReadyWithAnEmptyTable_data()
    {
        QTest::addColumn<QByteArray>("start");
        QTest::addColumn<QByteArray>("end");
        QTest::addRow("start above end") << QByteArray("10.0.0.9") << QByteArray("10.0.0.8");
        QTest::addRow("start with 0") << QByteArray("10.0.0.0") << QByteArray("10.0.0.8");
        QTest::addRow("empty fields") << QByteArray() << QByteArray();
    }

    void aRefusedRangeGoesStraightToReadyWithAnEmptyTable()
    {
        QFETCH(QByteArray, start);
        QFETCH(QByteArray, end);
        CTabDetectZKDevices tab(nullptr);
        tab.SetDeviceToTableWidget(sDEVICE{"10.0.0.1", "02:4c:7e:00:00:01"});
        SetRange(tab, start.constData(), end.constData());
        PressFind(tab);
        QCOMPARE(TableOf(tab)->rowCount(), 0);
        QCOMPARE(ScriptedThreads::Starts(), 0);
        QVERIFY(ScriptedNeighbours::Calls().isEmpty());
        QCOMPARE(ScriptedClock::Waits(), QVector<unsigned>{200});
        QCOMPARE(Status(), "Detect Z&K Devices: Ready");
    }

    void aNewSearchRemovesTheOldRowsBeforeAnythingElse()
    {
        CTabDetectZKDevices tab(nullptr);
        SetRange(tab, "10.0.0.1", "10.0.0.2");
        for (int row = 0; row < 3; ++row) {
            tab.SetDeviceToTableWidget(sDEVICE{"10.0.0.1", "02:4c:7e:00:00:01"});
        }
        TheDeviceDatabase()->SetApplicationStatus("of before");
        int rowsAtFirstStatus = -1;
        connect(TheDeviceDatabase(), &CDeviceDatabase::dataChanged, &tab, [&] {
            if (rowsAtFirstStatus == -1) {
                rowsAtFirstStatus = TableOf(tab)->rowCount();
            }
        });
        PressFind(tab);
        QCOMPARE(rowsAtFirstStatus, 0);
        QCOMPARE(TableOf(tab)->rowCount(), 0);
    }

    void theProgressDialogSaysWhatGoesOnAndIsGoneAfterwards()
    {
        const CTabDetectZKDevices tab(nullptr);
        SetRange(tab, "10.0.0.1", "10.0.0.2");
        QString label;
        Qt::WindowModality modality = Qt::NonModal;
        ScriptedClock::SetDuringWait([&](unsigned) {
            ScriptedThreads::RunAll();
            const auto* dialog = tab.findChild<QProgressDialog*>();
            label = dialog->labelText();
            modality = dialog->windowModality();
        });
        PressFind(tab);
        QCOMPARE(label, "Searching Z&K Devices in progress... ");
        QCOMPARE(modality, Qt::WindowModal);
        QVERIFY(tab.findChild<QProgressDialog*>() == nullptr);
    }

    void closingTheProgressDialogListsNothingAndIsReady()
    {
        const CTabDetectZKDevices tab(nullptr);
        ScriptedNeighbours::Add("192.168.1.1", "02:4c:7e:00:00:01");
        ScriptedNeighbours::RefuseDeletesAfter(0);
        ScriptedClock::SetDuringWait([&](unsigned milliseconds) {
            ScriptedThreads::RunAll();
            if (milliseconds == 80) {
                tab.findChild<QProgressDialog*>()->close();
            }
        });
        PressFind(tab);
        QCOMPARE(ScriptedClock::Waits(), (QVector<unsigned>{200, 5, 80, 5, 100}));
        QCOMPARE(TableOf(tab)->rowCount(), 0);
        QCOMPARE(Status(), "Detect Z&K Devices: Ready");
    }

    void escapeDoesNotEndASearch()
    {
        CTabDetectZKDevices tab(nullptr);
        tab.show();
        QVERIFY(QTest::qWaitForWindowExposed(&tab));
        SetRange(tab, "10.0.0.1", "10.0.0.4");
        ScriptedClock::SetDuringWait([&](unsigned) {
            ScriptedThreads::RunAll();
            QTest::keyClick(tab.findChild<QProgressDialog*>(), Qt::Key_Escape);
        });
        PressFind(tab);
        QCOMPARE(ScriptedThreads::Starts(), 4);
    }

    void aSearchChangesNothingInTheModelButTheStatus()
    {
        LetAnswer({{"10.0.0.1", "02:4c:7e:00:00:01"}});
        const CTabDetectZKDevices tab(nullptr);
        SetRange(tab, "10.0.0.1", "10.0.0.2");
        QSet<int> columns;
        connect(TheDeviceDatabase(), &CDeviceDatabase::dataChanged, &tab,
            [&columns](const QModelIndex& index) { columns << index.column(); });
        PressFind(tab);
        QCOMPARE(columns, QSet<int>{1});
        QCOMPARE(RowsOf(tab).size(), 1);
    }

    void theConnectionChangesNothing()
    {
        CTabDetectZKDevices tab(nullptr);
        tab.SetDeviceToTableWidget(sDEVICE{"10.0.0.1", "02:4c:7e:00:00:01"});
        tab.ConnectionStatusChanged();
        tab.UpdateControls();
        QCOMPARE(RowsOf(tab).size(), 1);
        QVERIFY(tab.isEnabled());
        QVERIFY(Find<QPushButton>(tab, "btnFindDevices")->isEnabled());
        QVERIFY(ScriptedNeighbours::Calls().isEmpty());
    }

    void aClickIntoAnEmptyFieldPutsTheCursorAtItsStart_data()
    {
        theFieldsTakeDottedAddresses_data();
    }

    void aClickIntoAnEmptyFieldPutsTheCursorAtItsStart()
    {
        QFETCH(QString, name);
        CTabDetectZKDevices tab(nullptr);
        tab.show();
        QVERIFY(QTest::qWaitForWindowExposed(&tab));
        auto* field = tab.findChild<QLineEdit*>(name);
        field->clear();
        field->setCursorPosition(7);
        QTest::mouseClick(field, Qt::LeftButton, Qt::NoModifier, field->rect().center());
        QCOMPARE(field->cursorPosition(), 0);
    }

    void aClickIntoAFieldWithADigitWorksNormally_data() { theFieldsTakeDottedAddresses_data(); }

    void aClickIntoAFieldWithADigitWorksNormally()
    {
        QFETCH(QString, name);
        CTabDetectZKDevices tab(nullptr);
        tab.show();
        QVERIFY(QTest::qWaitForWindowExposed(&tab));
        auto* field = tab.findChild<QLineEdit*>(name);
        field->setText("1");
        field->setCursorPosition(0);
        QTest::mouseClick(field, Qt::LeftButton, Qt::NoModifier, field->rect().center());
        QVERIFY(field->cursorPosition() != 0);
    }

    void aDoubleClickOnARowHasNoEffect()
    {
        CTabDetectZKDevices tab(nullptr);
        tab.show();
        QVERIFY(QTest::qWaitForWindowExposed(&tab));
        tab.SetDeviceToTableWidget(sDEVICE{"10.0.0.1", "02:4c:7e:00:00:01"});
        QTableWidget* table = TableOf(tab);
        const QPoint place = table->visualItemRect(table->item(0, 0)).center();
        QTest::mouseClick(table->viewport(), Qt::LeftButton, Qt::NoModifier, place);
        QTest::mouseDClick(table->viewport(), Qt::LeftButton, Qt::NoModifier, place);
        QVERIFY(!table->isPersistentEditorOpen(table->item(0, 0)));
        QVERIFY(table->findChild<QLineEdit*>() == nullptr);
        QCOMPARE(RowsOf(tab), QStringList{"10.0.0.1 02:4c:7e:00:00:01"});
        QVERIFY(ScriptedNeighbours::Calls().isEmpty());
    }
};

QTEST_MAIN(TabDetectZKDevicesTest)
#include "TabDetectZKDevicesTest.moc"
