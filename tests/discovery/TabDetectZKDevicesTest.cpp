// SPDX-License-Identifier: MIT

#include "discovery/CTabDetectZKDevices.h"
#include "model/CDeviceDatabase.h"
#include "tests/discovery/Answers.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"

#include <QHeaderView>
#include <QLineEdit>
#include <QProgressDialog>
#include <QPushButton>
#include <QScreen>
#include <QTableWidget>
#include <QtTest>

#include <memory>

namespace {

const QString Ready = "Detect Z&K Devices: Ready";

QString Status()
{
    return TheDeviceDatabase()
        ->index(0, CDeviceDatabase::ApplicationStatusColumn)
        .data()
        .toString();
}

} // namespace

class TabDetectZKDevicesTest : public WarningsFail
{
    Q_OBJECT

private:
    std::unique_ptr<CTabDetectZKDevices> tab;

    template<class Widget>
    Widget* Find(const char* name) const
    {
        return tab->findChild<Widget*>(name);
    }

    QTableWidget* Table() const { return Find<QTableWidget>("tblDetectDevices"); }

    QStringList Rows() const { return ListedDevices(*tab); }

    void List(const char* ip, const char* mac) const { tab->SetDeviceToTableWidget({ip, mac}); }

    void Show() const
    {
        tab->show();
        QVERIFY(QTest::qWaitForWindowActive(tab.get()));
    }

    QImage OnTheScreen() const { return tab->screen()->grabWindow(tab->winId()).toImage(); }

    void Search(const char* start, const char* end) const
    {
        Find<QLineEdit>("txtStartIpAddress")->setText(start);
        Find<QLineEdit>("txtEndIpAddress")->setText(end);
        Find<QPushButton>("btnFindDevices")->click();
    }

private slots:
    void init()
    {
        WarningsFail::init();
        ResetScripts();
        LetAnswer({});
        TheDeviceDatabase()->ResetData();
        tab = std::make_unique<CTabDetectZKDevices>(nullptr);
    }

    void cleanup()
    {
        tab.reset();
        WarningsFail::cleanup();
    }

    void theFieldsHaveMasksAndTheTableHasTwoStretchedColumns()
    {
        QCOMPARE(Find<QLineEdit>("txtStartIpAddress")->inputMask(), "000.000.000.000");
        QCOMPARE(Find<QLineEdit>("txtEndIpAddress")->inputMask(), "000.000.000.000");
        QCOMPARE(Table()->columnCount(), 2);
        QCOMPARE(Table()->rowCount(), 0);
        QCOMPARE(Table()->horizontalHeaderItem(0)->text(), "IP Address");
        QCOMPARE(Table()->horizontalHeaderItem(1)->text(), "MAC Address");
        QCOMPARE(Table()->horizontalHeader()->sectionResizeMode(0), QHeaderView::Stretch);
        QCOMPARE(Table()->horizontalHeader()->sectionResizeMode(1), QHeaderView::Stretch);
        QVERIFY(!Table()->isSortingEnabled());
    }

    void onlyTheMakersPrefixIsListed()
    {
        const QPair<const char*, bool> rows[] = {{"02:4c:7e:00:00:01", true},
            {"02:4C:7E:00:00:01", true}, {"02:4c:7E:ff:ff:ff", true}, {"02:4c:7d:00:00:01", false},
            {"02:4d:7e:00:00:01", false}, {"03:4c:7e:00:00:01", false},
            {"02-4c-7e-00-00-01", false}, {"00:02:4c:7e:00:00", false},
            {"00:00:00:00:00:00", false}, {"02:4c:7e", false}, {"", false}};
        QStringList listed;
        for (const auto& [mac, isListed] : rows) {
            List("10.0.0.1", mac);
            listed += isListed ? QStringList{QString("10.0.0.1 ") + mac} : QStringList();
            QCOMPARE(Rows(), listed);
        }
    }

    void rowsAreAddedBehindTheOthersAndCanBeSelectedButNotEdited()
    {
        List("10.0.0.9", "02:4c:7e:00:00:09");
        List("10.0.0.1", "02:4c:7e:00:00:01");
        QCOMPARE(Rows(), (QStringList{"10.0.0.9 02:4c:7e:00:00:09", "10.0.0.1 02:4c:7e:00:00:01"}));
        QCOMPARE(int(Table()->item(0, 0)->flags()), 49);
        QCOMPARE(int(Table()->item(0, 1)->flags()), 49);
    }

    void aSearchListsTheUnitsInAscendingOrder()
    {
        LetAnswer({{"192.168.1.200", "02:4c:7e:00:02:00"}, {"192.168.1.7", "aa:4c:7e:00:00:07"},
            {"192.168.1.30", "02:4c:7e:00:00:30"}, {"192.168.1.4", "02:4c:7e:00:00:04"}});
        Find<QPushButton>("btnFindDevices")->click();
        QCOMPARE(Rows(), (QStringList{"192.168.1.4 02:4c:7e:00:00:04",
                             "192.168.1.30 02:4c:7e:00:00:30", "192.168.1.200 02:4c:7e:00:02:00"}));
    }

    void aUnitIsSeenAsSoonAsItIsListed()
    {
        Show();
        const QImage empty = OnTheScreen();
        List("10.0.0.9", "02:4c:7e:00:00:09");
        QVERIFY(OnTheScreen() != empty);
    }

    void theTabKeyLeavesAListWithUnits()
    {
        Show();
        List("10.0.0.9", "02:4c:7e:00:00:09");
        List("10.0.0.1", "02:4c:7e:00:00:01");
        Table()->setFocus();
        QTest::keyClick(tab->windowHandle(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), Find<QLineEdit>("txtStartIpAddress"));
    }

    void theFieldsGiveTheRange()
    {
        Search("10.1.2.5", "99.99.99.6");
        QCOMPARE(ScriptedNeighbours::Calls("resolve"),
            (QStringList{"resolve 10.1.2.5", "resolve 10.1.2.6"}));
    }

    void theStatusIsEmptyFor200MillisecondsAndThenInProgressAndReady()
    {
        TheDeviceDatabase()->SetApplicationStatus("of before");
        QStringList statusInWaits;
        ScriptedClock::SetDuringWait([&](unsigned milliseconds) {
            ScriptedThreads::RunAll();
            statusInWaits << QString("%1 %2").arg(milliseconds).arg(Status());
        });
        Search("10.0.0.1", "10.0.0.1");
        QCOMPARE(statusInWaits,
            (QStringList{"200 ", "5 Detect Z&K Devices: in progress",
                "80 Detect Z&K Devices: in progress", "100 Detect Z&K Devices: in progress"}));
        QCOMPARE(Status(), Ready);
    }

    void aRefusedRangeGoesStraightToReadyWithAnEmptyTable()
    {
        const QPair<const char*, const char*> rows[] = {
            {"10.0.0.9", "10.0.0.8"}, {"10.0.0.0", "10.0.0.8"}, {"", ""}};
        for (const auto& [start, end] : rows) {
            ScriptedClock::Reset();
            List("10.0.0.1", "02:4c:7e:00:00:01");
            Search(start, end);
            QCOMPARE(Table()->rowCount(), 0);
            QCOMPARE(ScriptedThreads::Starts(), 0);
            QVERIFY(ScriptedNeighbours::Calls().isEmpty());
            QCOMPARE(ScriptedClock::Waits(), QVector<unsigned>{200});
            QCOMPARE(Status(), Ready);
        }
    }

    void aNewSearchRemovesTheOldRowsBeforeAnythingElse()
    {
        for (int row = 0; row < 3; ++row) {
            List("10.0.0.1", "02:4c:7e:00:00:01");
        }
        TheDeviceDatabase()->SetApplicationStatus("of before");
        QVector<int> rowsAtChanges;
        connect(TheDeviceDatabase(), &CDeviceDatabase::dataChanged, tab.get(),
            [&] { rowsAtChanges << Table()->rowCount(); });
        Search("10.0.0.1", "10.0.0.2");
        QCOMPARE(rowsAtChanges.value(0, -1), 0);
        QCOMPARE(Table()->rowCount(), 0);
    }

    void theProgressDialogSaysWhatGoesOnAndIsGoneAfterwards()
    {
        QString label;
        Qt::WindowModality modality = Qt::NonModal;
        QVector<QPair<int, int>> ranges;
        ScriptedClock::SetDuringWait([&](unsigned) {
            ScriptedThreads::RunAll();
            const auto* dialog = tab->findChild<QProgressDialog*>();
            label = dialog->labelText();
            modality = dialog->windowModality();
            ranges.append({dialog->minimum(), dialog->maximum()});
        });
        Search("10.0.0.3", "10.0.0.4");
        QCOMPARE(label, "Searching Z&K Devices in progress... ");
        QCOMPARE(modality, Qt::WindowModal);
        QCOMPARE(ranges.first(), qMakePair(0, 0)); // it has no end until the search has a range
        QCOMPARE(ranges.last(), qMakePair(3, 8));
        QVERIFY(tab->findChild<QProgressDialog*>() == nullptr);
    }

    void closingTheProgressDialogListsNothingAndIsReady()
    {
        LetStay({"192.168.1.1", "02:4c:7e:00:00:01"});
        ScriptedClock::SetDuringWait([&](unsigned milliseconds) {
            ScriptedThreads::RunAll();
            if (milliseconds == 80) {
                tab->findChild<QProgressDialog*>()->close();
            }
        });
        Search("192.168.1.1", "192.168.1.255");
        QCOMPARE(ScriptedClock::Waits(), (QVector<unsigned>{200, 5, 80, 5, 100}));
        QCOMPARE(Table()->rowCount(), 0);
        QCOMPARE(Status(), Ready);
    }

    void escapeDoesNotEndASearch()
    {
        Show();
        ScriptedClock::SetDuringWait([&](unsigned) {
            ScriptedThreads::RunAll();
            QTest::keyClick(tab->findChild<QProgressDialog*>(), Qt::Key_Escape);
        });
        Search("10.0.0.1", "10.0.0.4");
        QCOMPARE(ScriptedThreads::Starts(), 4);
    }

    void aSearchChangesNothingInTheModelButTheStatus()
    {
        LetAnswer({{"10.0.0.1", "02:4c:7e:00:00:01"}});
        QSet<int> columns;
        connect(TheDeviceDatabase(), &CDeviceDatabase::dataChanged, tab.get(),
            [&columns](const QModelIndex& index) { columns << index.column(); });
        Search("10.0.0.1", "10.0.0.2");
        QCOMPARE(columns, QSet<int>{1});
        QCOMPARE(Rows().size(), 1);
    }

    void theConnectionChangesNothing()
    {
        List("10.0.0.1", "02:4c:7e:00:00:01");
        tab->ConnectionStatusChanged();
        tab->UpdateControls();
        QCOMPARE(Rows().size(), 1);
        QVERIFY(tab->isEnabled());
        QVERIFY(Find<QPushButton>("btnFindDevices")->isEnabled());
        QVERIFY(ScriptedNeighbours::Calls().isEmpty());
    }

    void aDoubleClickOnARowHasNoEffect()
    {
        Show();
        List("10.0.0.1", "02:4c:7e:00:00:01");
        const QPoint place = Table()->visualItemRect(Table()->item(0, 0)).center();
        QTest::mouseClick(Table()->viewport(), Qt::LeftButton, Qt::NoModifier, place);
        QTest::mouseDClick(Table()->viewport(), Qt::LeftButton, Qt::NoModifier, place);
        QVERIFY(!Table()->isPersistentEditorOpen(Table()->item(0, 0)));
        QVERIFY(Table()->findChild<QLineEdit*>() == nullptr);
        QCOMPARE(Rows(), QStringList{"10.0.0.1 02:4c:7e:00:00:01"});
        QVERIFY(ScriptedNeighbours::Calls().isEmpty());
    }
};

QTEST_MAIN(TabDetectZKDevicesTest)
#include "TabDetectZKDevicesTest.moc"
