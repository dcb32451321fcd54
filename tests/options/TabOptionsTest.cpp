#include "link/CDeviceCommunication.h"
#include "model/CDeviceDatabase.h"
#include "options/CTabOptions.h"
#include "tests/options/OptionsPage.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/UnsupportedFlag.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"
#include "tests/support/platform/SystemFiles.h"
#include "tests/support/workbooks/OptionsWorkbook.h"

#include <QFileDialog>
#include <QGroupBox>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>
#include <QToolTip>
#include <QVBoxLayout>
#include <QWindow>
#include <QtTest>

namespace {

constexpr const char* InvalidFile = "Error: Invalid options file!!";

CTabOptions* PageOfTheWindow()
{
    return MainWindow()->findChild<CTabOptions*>();
}

// What a file dialog says, and the path that it is answered with by keys; none cancels.
struct FileDialog
{
    QString title;
    QStringList filters;
    QFileDialog::FileMode mode = QFileDialog::AnyFile;
};

FileDialog ChooseFile(const QString& path, const std::function<void()>& flow)
{
    FileDialog seen;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, &watch, [&] {
        auto* const dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        if (dialog == nullptr || !dialog->isVisible()) {
            return;
        }
        watch.stop();
        seen = {dialog->windowTitle(), dialog->nameFilters(), dialog->fileMode()};
        for (const QChar character : path) {
            QTest::keyClick(dialog->windowHandle(), character.toLatin1());
        }
        while (dialog->isVisible()) { // the list of suggestions may take the first key
            QTest::keyClick(
                dialog->windowHandle(), path.isEmpty() ? Qt::Key_Escape : Qt::Key_Return);
            QCoreApplication::processEvents();
        }
    });
    watch.start(0);
    flow();
    return seen;
}

// The full unit's options as a workbook.
QStringList FullNames()
{
    return QStringList{"a", "b"} + QString(FullOptions).split(',') + QStringList{"c"};
}

QStringList FullTexts()
{
    return QStringList{QString(), QString()} + QString(FullDescriptions).split(';');
}

} // namespace

class TabOptionsTest : public WarningsFail
{
    Q_OBJECT

private:
    QTemporaryDir folder;

private slots:
    void cleanup()
    {
        TheDeviceCommunication()->Disconnect();
        ShowPage("Info");
        WarningsFail::cleanup();
    }

    // Runs first: the page as the window comes up.
    void thePageComesUpEmpty()
    {
        const CTabOptions& page = *PageOfTheWindow();
        QCOMPARE(MainWindow()->findChildren<CTabOptions*>().size(), 1);
        for (int group = 0; group < Groups; ++group) {
            QVERIFY(Box(page, group)->layout() == nullptr);
            QVERIFY(Box(page, group)->findChildren<QLineEdit*>().isEmpty());
        }
        ShowPage("Options");
        QVERIFY(page.isVisible());
        QVERIFY(page.isEnabled());
        QVERIFY(!Find<QLabel>("lblCompatibility")->isVisible());
        QVERIFY(Find<QPushButton>("btnReadOptionsFromDevice")->isVisible());
        QVERIFY(!Find<QPushButton>("btnReadOptionsFromDevice")->isEnabled());
        QVERIFY(!Find<QPushButton>("btnSendDeviceOptions")->isVisible());
        QVERIFY(!Find<QPushButton>("btnSendDeviceOptions")->isEnabled());
        QVERIFY(!Find<QPushButton>("btnReadDeviceOptions")->isVisible());
        QVERIFY(Find<QPushButton>("btnReadDeviceOptions")->isEnabled());
    }

    void thePageHasItsSizes()
    {
        const CTabOptions page(nullptr);
        QCOMPARE(page.objectName(), "TabOptions");
        QCOMPARE(page.size(), QSize(850, 340));
        QCOMPARE(page.minimumSize(), QSize(850, 310));
        QCOMPARE(page.maximumSize(), QSize(850, 340));
    }

    void everyWidgetHasItsPlace_data()
    {
        QTest::addColumn<QRect>("place");
        QTest::newRow("boxDcf") << QRect(30, 30, 131, 180);
        QTest::newRow("boxAtt") << QRect(170, 30, 131, 180);
        QTest::newRow("boxFilter1") << QRect(310, 30, 131, 180);
        QTest::newRow("boxFilter2") << QRect(450, 30, 131, 180);
        QTest::newRow("boxAmp") << QRect(590, 30, 131, 180);
        QTest::newRow("widNewFirmwareItems") << QRect(530, 230, 201, 91);
        QTest::newRow("btnSendDeviceOptions") << QRect(90, 30, 100, 23);
        QTest::newRow("btnReadOptionsFromDevice") << QRect(90, 0, 100, 23);
        QTest::newRow("btnReadDeviceOptions") << QRect(90, 60, 100, 23);
        QTest::newRow("lblCompatibility") << QRect(30, 300, 241, 20);
        QTest::newRow("boxOptionAzimuthRotator") << QRect(100, 230, 131, 61);
        QTest::newRow("boxOptionPolarRotator") << QRect(250, 230, 131, 61);
    }
    void everyWidgetHasItsPlace()
    {
        const CTabOptions page(nullptr);
        const auto* const widget = page.findChild<QWidget*>(QString(QTest::currentDataTag()));
        QVERIFY(widget != nullptr);
        QTEST(widget->geometry(), "place");
    }

    void everyBoxHasItsTitle_data()
    {
        QTest::addColumn<QString>("title");
        QTest::newRow("boxDcf") << "VX440-DCF";
        QTest::newRow("boxAtt") << "VX440-ATT";
        QTest::newRow("boxFilter1") << "VX440-FIL 1";
        QTest::newRow("boxFilter2") << "VX440-FIL 2";
        QTest::newRow("boxAmp") << "VX440-AMP";
        QTest::newRow("boxOptionAzimuthRotator") << "Azimuth rotator";
        QTest::newRow("boxOptionPolarRotator") << "Pol/Eval rotator";
    }
    void everyBoxHasItsTitle()
    {
        const auto* const box = Find<QGroupBox>(QTest::currentDataTag());
        QTEST(box->title(), "title");
        QVERIFY(box->alignment().testFlag(Qt::AlignHCenter));
        QCOMPARE(
            box->styleSheet(), "QGroupBox\n{\n    font-size: 12px;\n    font-weight: bold;\n}");
        QCOMPARE(box->font().pixelSize(), 12);
        QVERIFY(box->font().bold());
    }

    void everyButtonHasItsTextAndItsParent_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("btnSendDeviceOptions") << "Send to device";
        QTest::newRow("btnReadOptionsFromDevice") << "Read from device";
        QTest::newRow("btnReadDeviceOptions") << "Read Options File";
    }
    void everyButtonHasItsTextAndItsParent()
    {
        const auto* const button = Find<QPushButton>(QTest::currentDataTag());
        QTEST(button->text(), "text");
        QCOMPARE(button->parentWidget()->objectName(), "widNewFirmwareItems");
        QVERIFY(!button->autoDefault());
    }

    void theNoticeIsBoldAndItalic()
    {
        const auto* const notice = Find<QLabel>("lblCompatibility");
        QCOMPARE(notice->text(), "This tab is not compatible with this device!");
        QVERIFY(notice->font().bold());
        QVERIFY(notice->font().italic());
    }

    void connectingShowsWhatTheUnitIsFittedWith_data()
    {
        QTest::addColumn<QString>("firmware");
        QTest::newRow("new firmware") << "3.10";
        QTest::newRow("old firmware") << "2.50";
    }
    void connectingShowsWhatTheUnitIsFittedWith()
    {
        QFETCH(QString, firmware);
        const SimulatorProcess unit(FullUnit() << "--firmware" << firmware);
        ConnectTo(unit.Address());
        ShowPage("Options");
        const CTabOptions& page = *PageOfTheWindow();
        QVERIFY(page.isEnabled());
        QCOMPARE(Shown(page), FullGroups());
        for (int group = 0; group < Groups; ++group) {
            for (const QLineEdit* const line : Lines(page, group)) {
                QTRY_VERIFY(line->isVisible());
            }
        }
        QVERIFY(!Find<QLabel>("lblCompatibility")->isVisible());
        QVERIFY(Find<QPushButton>("btnReadOptionsFromDevice")->isEnabled());
        QVERIFY(Find<QPushButton>("btnSendDeviceOptions")->isEnabled());
        QVERIFY(!Find<QPushButton>("btnSendDeviceOptions")->isVisible());
        QVERIFY(!Find<QPushButton>("btnReadDeviceOptions")->isVisible());
    }

    void theButtonReadsAgainByMouseAndByKey()
    {
        SimulatorProcess unit(FullUnit());
        ConnectTo(unit.Address());
        ShowPage("Options");
        unit.Forget();
        Click(Find<QPushButton>("btnReadOptionsFromDevice"));
        QCOMPARE(StatusLine(), QString(ReadDone));
        Find<QPushButton>("btnReadOptionsFromDevice")->setFocus();
        Press(Qt::Key_Space);
        QCOMPARE(StatusLine(), QString(ReadDone));
        const QStringList once{QString(QueryInternal), QString(QueryDescriptions)};
        QCOMPARE(unit.Commands(), once + once);
        QCOMPARE(Shown(*PageOfTheWindow()), FullGroups());
    }

    void theTabKeyWalksTheLinesAndThenTheButton()
    {
        const SimulatorProcess unit(
            UnitWith("VX440-DCF,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,round,up", NoDescriptions));
        ConnectTo(unit.Address());
        ShowPage("Options");
        Click(Find<QPushButton>("btnReadOptionsFromDevice")); // which covers lines of the rotators
        Click(Find<QLineEdit>("txtIpAddress"));
        QStringList walked;
        for (int step = 0; step < 7; ++step) {
            Press(Qt::Key_Tab);
            const QWidget* const focus = MainWindow()->focusWidget();
            const auto* const line = qobject_cast<const QLineEdit*>(focus);
            const bool ofAModule = line != nullptr && line->objectName().isEmpty();
            walked.append(ofAModule ? line->text() : focus->objectName());
        }
        QCOMPARE(walked, Split("btnConnect|qt_tabwidget_tabbar|DC-Feed1|round|up|"
                               "btnReadOptionsFromDevice|txtIpAddress"));
    }

    void theMouseOverALineShowsItsDescription()
    {
        const SimulatorProcess unit(FullUnit());
        ConnectTo(unit.Address());
        ShowPage("Options");
        const QLineEdit* const line = Lines(*PageOfTheWindow(), 1).at(3);
        QTRY_VERIFY(line->isVisible());
        const QPoint middle = line->mapTo(MainWindow(), line->rect().center());
        MainWindow()->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(MainWindow()));
        QTest::mouseMove(MainWindow()->windowHandle(), middle);
        QTest::mouseMove(MainWindow()->windowHandle(), middle + QPoint(1, 1));
        QTRY_COMPARE(QToolTip::text(), "10");
        QToolTip::hideText();
    }

    // A file that a description names is not opened: this pipe would be waited for.
    void aDescriptionIsNoMarkup()
    {
        if (!HasDeviceFiles()) {
            QSKIP("this system has no pipes among its files");
        }
        const QString pipe = folder.filePath("pipe.png");
        QCOMPARE(QProcess::execute("mkfifo", {pipe}), 0);
        const QString description = QString("<img src=\"%1\"><b>12</b> V").arg(pipe);
        const SimulatorProcess unit(
            UnitWith(QString(FullOptions), QString(FullDescriptions).replace("12 V", description)));
        ConnectTo(unit.Address());
        ShowPage("Options");
        QLineEdit* const line = Lines(*PageOfTheWindow(), 0).first();
        QCOMPARE(line->toolTip(), description);
        QHelpEvent event(QEvent::ToolTip, QPoint(1, 1), line->mapToGlobal(QPoint(1, 1)));
        QCoreApplication::sendEvent(line, &event);
        QVERIFY(QToolTip::text().contains(description.toHtmlEscaped()));
        QToolTip::hideText();
    }

    void noKeyChangesALine()
    {
        const SimulatorProcess unit(FullUnit());
        ConnectTo(unit.Address());
        ShowPage("Options");
        QLineEdit* const line = Lines(*PageOfTheWindow(), 0).first();
        QTRY_VERIFY(line->isVisible());
        Click(line);
        Type("x");
        Press(Qt::Key_Delete);
        QCOMPARE(line->text(), "DC-Feed1");
    }

    void everyLineIsForReadingOnlyAndHasItsDescription_data()
    {
        QTest::addColumn<int>("group");
        QTest::addColumn<QStringList>("descriptions");
        const auto row = [](int group, const char* descriptions) {
            QTest::newRow(BoxOf[group]) << group << Split(descriptions);
        };
        row(0, "12 V|24 V");
        row(1, "through|3|6|10|20|40");
        row(2, "d11|d12||d14|d15|d16"); // the third has none
        row(3, "d21|d22|d23|d24|d25");
        row(4, "||one|two");
        row(5, "round");
        row(6, "up");
    }
    void everyLineIsForReadingOnlyAndHasItsDescription()
    {
        QFETCH(int, group);
        const SimulatorProcess unit(FullUnit());
        CTabOptions page(nullptr);
        QVERIFY(Connect(unit));
        page.ReadOptionsFromDeviceButtonClicked();
        QStringList descriptions;
        for (const QLineEdit* const line : Lines(page, group)) {
            QVERIFY(line->isReadOnly());
            QCOMPARE(line->alignment(), Qt::Alignment(Qt::AlignCenter));
            QCOMPARE(line->font().weight(), group >= FirstRotator ? 75 : 50);
            QCOMPARE(line->font().pixelSize(), 11);
            QCOMPARE(line->accessibleName(), Box(page, group)->title());
            QCOMPARE(line->parentWidget(), Box(page, group));
            descriptions.append(line->toolTip());
        }
        QTEST(descriptions, "descriptions");
        QCOMPARE(Box(page, group)->layout()->alignment(), Qt::Alignment(Qt::AlignTop));
    }

    void theAmplifierStageIsShownAsTheUnitNamesIt_data()
    {
        QTest::addColumn<QStringList>("lines");
        QTest::newRow("VX440-AMP") << Split("Bypass|HF AMP|V/UHF AMP|SHF AMP");
        QTest::newRow("VX440-A1") << Split("Bypass|Bypass|VX440-A1|");
        QTest::newRow("VX440-A2") << Split("Bypass|Bypass||VX440-A2");
        QTest::newRow("VX440-A1+A2") << Split("Bypass|Bypass|VX440-A1|VX440-A2");
        QTest::newRow("0") << QStringList();
        QTest::newRow("none") << QStringList();
    }
    void theAmplifierStageIsShownAsTheUnitNamesIt()
    {
        QFETCH(QStringList, lines);
        const SimulatorProcess unit(UnitWith(
            QString("0,0,0,0,0,%1,0,0,0,0,0,0,0,0,0,0,0,0,0").arg(QString(QTest::currentDataTag())),
            QString(NoDescriptions)));
        CTabOptions page(nullptr);
        QVERIFY(Connect(unit));
        page.ReadOptionsFromDeviceButtonClicked();
        QCOMPARE(StatusLine(), QString(ReadDone));
        QCOMPARE(Shown(page, 4), lines);
        QVERIFY(Box(page, 4)->layout() != nullptr); // an empty one is set as well
        QVERIFY(qobject_cast<QVBoxLayout*>(Box(page, 4)->layout()) != nullptr);
    }

    void aSecondReadReplacesTheModulesAndCoversTheRotators()
    {
        SimulatorProcess unit(FullUnit());
        CTabOptions page(nullptr);
        page.show();
        QVERIFY(Connect(unit));
        page.ReadOptionsFromDeviceButtonClicked();
        QTRY_VERIFY(Lines(page, 6).first()->isVisible());
        const QRect place = Lines(page, 6).first()->geometry();
        QVERIFY(TheDeviceCommunication()->SendOptions(QString(NoOptions)));
        QVERIFY(TheDeviceCommunication()->SendOptionDescriptions(QString(NoDescriptions)));
        page.ReadOptionsFromDeviceButtonClicked();
        QCOMPARE(StatusLine(), QString(ReadDone));
        QCOMPARE(Shown(page), EmptyGroups());
        for (int group = 0; group < Groups; ++group) {
            const int lines = Box(page, group)->findChildren<QLineEdit*>().size();
            QCOMPARE(lines, group >= FirstRotator ? 2 : 0);
            QVERIFY(Box(page, group)->layout() != nullptr);
        }
        QTRY_VERIFY(Lines(page, 6).first()->isVisible());
        const auto inBox = Box(page, 6)->findChildren<QLineEdit*>();
        QCOMPARE(inBox.first()->text(), "TD552");
        QCOMPARE(inBox.first()->toolTip(), "up");
        QVERIFY(inBox.first()->isVisible());
        QCOMPARE(inBox.first()->geometry(), place);
        QCOMPARE(inBox.last()->text(), QString());
        QTRY_COMPARE(inBox.last()->geometry(), place); // children lie in the order of their making

        page.ReadOptionsFromDeviceButtonClicked();
        QCOMPARE(Box(page, 6)->findChildren<QLineEdit*>().size(), 3);
        QCOMPARE(Shown(page), EmptyGroups());
    }

    void whileItReadsTheWindowTakesNoClicks()
    {
        SimulatorProcess unit(FullUnit());
        ConnectTo(unit.Address());
        ShowPage("Options");
        unit.Forget();
        bool tried = false;
        WhenProgressShows([&tried] {
            tried = true;
            Click(Find<QPushButton>("btnReadOptionsFromDevice"));
            ShowPage("Info");
        });
        Click(Find<QPushButton>("btnReadOptionsFromDevice"));
        QVERIFY(tried);
        QVERIFY(PageOfTheWindow()->isVisible());
        QCOMPARE(
            unit.Commands(), (QStringList{QString(QueryInternal), QString(QueryDescriptions)}));
    }

    void aLostLinkLeavesTheBoxesFilled()
    {
        SimulatorProcess unit(FullUnit());
        ConnectTo(unit.Address());
        ShowPage("Options");
        QVERIFY(unit.Tell("drop"));
        Click(Find<QPushButton>("btnReadOptionsFromDevice"));
        QCOMPARE(ConnectionLine(), "Not Connected ");
        const CTabOptions& page = *PageOfTheWindow();
        QCOMPARE(Shown(page), FullGroups());
        QVERIFY(!Button(page, "btnReadOptionsFromDevice")->isEnabled());
        QVERIFY(!Button(page, "btnSendDeviceOptions")->isEnabled());
        QVERIFY(Button(page, "btnReadDeviceOptions")->isEnabled());
    }

    void theTabIsShutForOldUnitsWithTheFlagOnly_data()
    {
        QTest::addColumn<QString>("firmware");
        QTest::addColumn<bool>("flag");
        QTest::addColumn<bool>("served");
        QTest::newRow("old") << "2.99" << false << true;
        QTest::newRow("new") << "3.0" << false << true;
        QTest::newRow("old with the flag") << "2.99" << true << false;
        QTest::newRow("unknown with the flag") << QString() << true << false;
        QTest::newRow("new with the flag") << "3.0" << true << true;
    }
    void theTabIsShutForOldUnitsWithTheFlagOnly()
    {
        QFETCH(QString, firmware);
        QFETCH(bool, flag);
        QFETCH(bool, served);
        SimulatorProcess unit(FullUnit());
        CTabOptions page(nullptr);
        page.show();
        QVERIFY(Connect(unit));
        CDeviceDatabase* const database = TheDeviceDatabase();
        database->SetFirmwareVersion(firmware);
        SetUnsupportedFlag(*database, flag);
        page.ConnectionStatusChanged();
        QCOMPARE(page.isEnabled(), served);
        QCOMPARE(page.findChild<QLabel*>("lblCompatibility")->isVisible(), !served);
        QCOMPARE(unit.Commands().size(), served ? 2 : 0);
        QCOMPARE(Button(page, "btnReadOptionsFromDevice")->isEnabled(), served);
        SetUnsupportedFlag(*database, false);
        page.ConnectionStatusChanged(); // opens again
        QVERIFY(page.isEnabled());
        QVERIFY(!page.findChild<QLabel*>("lblCompatibility")->isVisible());
        QCOMPARE(Shown(page), FullGroups());
    }

    void aLinkThatBreaksBeforeTheSendingTellsTheUser()
    {
        SimulatorProcess unit(FullUnit());
        ConnectTo(unit.Address());
        ShowPage("Options");
        QVERIFY(unit.Tell("drop"));
        auto* const button = Find<QPushButton>("btnSendDeviceOptions");
        button->show();
        Click(button);
        QCOMPARE(StatusLine(), QString(OptionsNotSent));
        QCOMPARE(ConnectionLine(), "Not Connected ");
        QVERIFY(!button->isEnabled());
        button->hide();
    }

    void aWorkbookIsChosenAndShown_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("xlsx") << "unit.xlsx";
        QTest::newRow("cfg") << "options.cfg";
    }
    void aWorkbookIsChosenAndShown()
    {
        QFETCH(QString, name);
        const QString path = folder.filePath(name);
        QVERIFY(WriteOptionsWorkbook(path, FullNames(), FullTexts()));
        const SimulatorProcess unit(UnitWith(NoOptions, NoDescriptions));
        ConnectTo(unit.Address());
        ShowPage("Options");
        const CTabOptions& page = *PageOfTheWindow();
        QCOMPARE(Shown(page), EmptyGroups());
        auto* const button = Find<QPushButton>("btnReadDeviceOptions");
        button->show();
        const FileDialog dialog = ChooseFile(path, [button] { Click(button); });
        button->hide();
        QCOMPARE(dialog.title, "Select Options File");
        QCOMPARE(dialog.filters, QStringList{"*.xlsx *.cfg"});
        QCOMPARE(dialog.mode, QFileDialog::ExistingFile);
        QCOMPARE(StatusLine(), "Options read from file successfully.");
        QCOMPARE(Shown(page), FullGroups());
        QVERIFY(Button(page, "btnSendDeviceOptions")->isEnabled());
    }

    void aFileThatCannotBeReadLeavesTheBoxes_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("status");
        const QString cut = folder.filePath("cut.xlsx");
        QVERIFY(WriteOptionsWorkbook(cut, FullNames().mid(1), FullTexts()));
        const QString narrow = folder.filePath("narrow.xlsx");
        QVERIFY(WriteOptionsWorkbook(narrow, FullNames()));
        const QString text = folder.filePath("text.cfg");
        QFile file(text);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("VX440-DCF\n") > 0);
        QTest::newRow("a cancelled dialog") << QString() << QString(InvalidFile);
        QTest::newRow("a text") << text << QString(InvalidFile);
        QTest::newRow("21 rows") << cut << QString(InvalidFile);
        QTest::newRow("one column") << narrow << "Error: Options description string too long!";
    }
    void aFileThatCannotBeReadLeavesTheBoxes()
    {
        QFETCH(QString, path);
        const SimulatorProcess unit(FullUnit());
        CTabOptions page(nullptr);
        QVERIFY(Connect(unit));
        page.ReadOptionsFromDeviceButtonClicked();
        QVERIFY(Button(page, "btnSendDeviceOptions")->isEnabled());
        ChooseFile(path, [&page] { page.ReadOptionsFileButtonClicked(); });
        QTEST(StatusLine(), "status");
        QCOMPARE(Shown(page), FullGroups());
        const bool sendable = QString(QTest::currentDataTag()) == "one column";
        QCOMPARE(Button(page, "btnSendDeviceOptions")->isEnabled(), sendable);
    }

    void aWorkbookIsReadWithoutAUnitButCannotBeSent()
    {
        const QString path = folder.filePath("alone.xlsx");
        QVERIFY(WriteOptionsWorkbook(path, FullNames(), FullTexts()));
        CTabOptions page(nullptr);
        ChooseFile(path, [&page] { page.ReadOptionsFileButtonClicked(); });
        QCOMPARE(Shown(page), FullGroups());
        QVERIFY(!Button(page, "btnSendDeviceOptions")->isEnabled());
    }

    void aWorkbooksOptionsComeBackFromTheUnit()
    {
        const QString path = folder.filePath("sent.xlsx");
        QStringList names = FullNames();
        names[9] = "none"; // travels as 0
        names[15] = QString();
        QVERIFY(WriteOptionsWorkbook(path, names, FullTexts()));
        SimulatorProcess unit(UnitWith(NoOptions, NoDescriptions));
        ConnectTo(unit.Address());
        ShowPage("Options");
        CTabOptions& page = *PageOfTheWindow();
        ChooseFile(path, [&page] { page.ReadOptionsFileButtonClicked(); });
        auto fromFile = Shown(page);
        QCOMPARE(fromFile[2][1], "none");
        auto* const button = Find<QPushButton>("btnSendDeviceOptions");
        button->show();
        Click(button);
        button->hide();
        QCOMPARE(StatusLine(), QString(SendDone));
        names[9] = "0";
        names[15] = "0";
        QCOMPARE(unit.State("options"), QStringList(names.mid(2, 19)).join(','));
        // The banks themselves have no description in a workbook.
        QCOMPARE(
            unit.State("option-descriptions"), QString(FullDescriptions).replace(";0;0;", ";;;"));

        CTabOptions other(nullptr);
        other.ReadOptionsFromDeviceButtonClicked();
        QCOMPARE(StatusLine(), QString(ReadDone));
        fromFile[2][1].clear(); // the unit has no name for a filter that is not there
        QCOMPARE(Shown(other), fromFile);
        for (int group = 0; group < Groups; ++group) {
            for (int line = 0; line < fromFile.at(group).size(); ++line) {
                QCOMPARE(Lines(other, group).at(line)->toolTip(),
                    Lines(page, group).at(line)->toolTip());
            }
        }
    }

    void aHiddenButtonWorksWhenItIsShown()
    {
        SimulatorProcess unit(FullUnit());
        ConnectTo(unit.Address());
        ShowPage("Options");
        auto* const button = Find<QPushButton>("btnSendDeviceOptions");
        button->show();
        unit.Forget();
        Click(button);
        QCOMPARE(StatusLine(), QString(SendDone));
        QCOMPARE(unit.Commands().size(), 2);
        button->hide();
    }
};

VX440_WINDOW_TEST_MAIN(TabOptionsTest)
#include "TabOptionsTest.moc"
