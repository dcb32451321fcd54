// SPDX-License-Identifier: MIT

#include "link/CDeviceCommunication.h"
#include "model/CDeviceDatabase.h"
#include "options/CTabOptions.h"
#include "tests/options/OptionsPage.h"
#include "tests/support/UnsupportedFlag.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"
#include "tests/support/scripted/ConnectingThread.h"
#include "tests/support/scripted/ScriptedLink.h"
#include "tests/support/workbooks/OptionsWorkbook.h"

#include <QLabel>
#include <QProgressBar>
#include <QStyle>
#include <QTemporaryDir>
#include <QToolTip>
#include <QVBoxLayout>
#include <QWindow>
#include <QtTest>

#include <tuple>

namespace {

constexpr char InvalidFile[] = "Error: Invalid options file!!";

CTabOptions& PageOfTheWindow()
{
    return *MainWindow()->findChild<CTabOptions*>();
}

QString Sent(const QByteArray& frame)
{
    return "send " + frame.toHex().toUpper();
}

const QStringList Queries{Sent("GET:OPTION:INTERNAL?\r"), Sent("GET:OPTION:DESC?\r")};

QStringList SentBoth(const QByteArray& options, const QByteArray& descriptions)
{
    return {Sent("CF9\r" + options), Sent("CF10\r" + descriptions)};
}

QByteArray Line(const QByteArray& text)
{
    return text + '\r';
}

// What the progress dialog of a flow says and shows, from the moment that it comes up, and whether
// it was closed.
class ProgressWatch : public QObject
{
public:
    explicit ProgressWatch(const std::function<void()>& flow)
    {
        qApp->installEventFilter(this);
        flow();
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        const auto* const dialog = qobject_cast<QProgressDialog*>(watched);
        if (dialog != nullptr && event->type() == QEvent::Show) {
            texts = QStringList{dialog->labelText(), StatusLine()};
            values = {dialog->minimum(), dialog->maximum(), dialog->value()};
            connect(dialog->findChild<QProgressBar*>(), &QProgressBar::valueChanged, this,
                [this](int value) { values.append(value); });
        }
        isClosed = isClosed || (dialog != nullptr && event->type() == QEvent::Close);
        return false;
    }

    QStringList texts;   // its label, and the status line
    QVector<int> values; // its minimum and maximum, and then as they follow
    bool isClosed = false;
};

// A page on which the reading does nothing.
struct PageThatDoesNotRead : CTabOptions
{
    PageThatDoesNotRead()
        : CTabOptions(nullptr)
    {
    }

    void ReadOptionsFromDeviceButtonClicked() override {}
};

// What a unit does with a command.
struct Reaction
{
    QByteArray command;
    QByteArray answer;
    int after = 0; // milliseconds
};

} // namespace

/// The page in the program, with a unit that the test scripts: no wait takes any time.
class TabOptionsTest : public WarningsFail
{
    Q_OBJECT

    // A unit that holds these and acknowledges what it gets, but for what `other` says.
    static void Connect(const QByteArray& options = FullOptions,
        const QByteArray& descriptions = FullDescriptions, const Reaction& other = {})
    {
        scripted::Reset();
        scripted::WhenSent([=](const QByteArray& frame) {
            const Reaction reactions[] = {other, {"GET:OPTION:INTERNAL?", Line(options)},
                {"GET:OPTION:DESC?", Line(descriptions)}, {"CF9", "1\r"}, {"CF10", "1\r"}};
            for (const Reaction& reaction : reactions) {
                if (frame.startsWith(Line(reaction.command))) {
                    scripted::DeliverAfter(reaction.after, reaction.answer);
                    return;
                }
            }
        });
        TheDeviceCommunication()->StartConnection("127.0.0.1");
        AwaitConnectingThread();
        scripted::ForgetEvents();
    }

    // With the page of the window on show.
    static CTabOptions& ConnectTheWindow()
    {
        Connect();
        ShowPage("Options");
        PageOfTheWindow().ConnectionStatusChanged();
        scripted::ForgetEvents();
        return PageOfTheWindow();
    }

    static AskedForFile ChooseFile(const QString& path)
    {
        auto* const button = Find<QPushButton>("btnReadDeviceOptions");
        button->show();
        const AskedForFile asked = ClickAndChooseFile(button, path);
        button->hide();
        return asked;
    }

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
        const CTabOptions& page = PageOfTheWindow();
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

    void everyWidgetHasItsPlaceAndText()
    {
        const CTabOptions page(nullptr);
        QCOMPARE(page.objectName(), "TabOptions");
        QCOMPARE(page.size(), QSize(850, 340));
        QCOMPARE(page.minimumSize(), QSize(850, 310));
        QCOMPARE(page.maximumSize(), QSize(850, 340));
        const std::tuple<const char*, QRect, const char*> rows[] = {
            {"boxDcf", {30, 30, 131, 180}, "VX440-DCF"},
            {"boxAtt", {170, 30, 131, 180}, "VX440-ATT"},
            {"boxFilter1", {310, 30, 131, 180}, "VX440-FIL 1"},
            {"boxFilter2", {450, 30, 131, 180}, "VX440-FIL 2"},
            {"boxAmp", {590, 30, 131, 180}, "VX440-AMP"},
            {"widNewFirmwareItems", {530, 230, 201, 91}, ""},
            {"btnSendDeviceOptions", {90, 30, 100, 23}, "Send to device"},
            {"btnReadOptionsFromDevice", {90, 0, 100, 23}, "Read from device"},
            {"btnReadDeviceOptions", {90, 60, 100, 23}, "Read Options File"},
            {"lblCompatibility", {30, 300, 241, 20},
                "This tab is not compatible with this device!"},
            {"boxOptionAzimuthRotator", {100, 230, 131, 61}, "Azimuth rotator"},
            {"boxOptionPolarRotator", {250, 230, 131, 61}, "Pol/Eval rotator"},
        };
        for (const auto& [name, place, text] : rows) {
            const auto* const widget = page.findChild<QWidget*>(name);
            QVERIFY2(widget != nullptr && widget->geometry() == place, name);
            QCOMPARE(
                widget->property("text").toString() + widget->property("title").toString(), text);
        }
    }

    void boxesButtonsAndNoticeHaveTheirLook()
    {
        for (const char* const name : BoxOf) {
            const auto* const box = Find<QGroupBox>(name);
            QVERIFY2(box->alignment().testFlag(Qt::AlignHCenter), name);
            QCOMPARE(
                box->styleSheet(), "QGroupBox\n{\n    font-size: 12px;\n    font-weight: bold;\n}");
            QCOMPARE(box->font().pixelSize(), 12);
            QVERIFY2(box->font().bold(), name);
        }
        for (const char* const name :
            {"btnSendDeviceOptions", "btnReadOptionsFromDevice", "btnReadDeviceOptions"}) {
            const auto* const button = Find<QPushButton>(name);
            QCOMPARE(button->parentWidget()->objectName(), "widNewFirmwareItems");
            QVERIFY2(!button->autoDefault(), name);
        }
        const QFont notice = Find<QLabel>("lblCompatibility")->font();
        QVERIFY(notice.bold() && notice.italic());
    }

    void theTabKeyWalksTheLinesAndThenTheButton()
    {
        ConnectTheWindow();
        Connect("VX440-DCF,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,round,up", NoDescriptions);
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

    // As it is written: it is no markup.
    void theMouseOverALineShowsItsDescription()
    {
        CTabOptions& page = ConnectTheWindow();
        Connect(FullOptions, QByteArray(FullDescriptions).replace("24 V", "<b>24</b> V"));
        page.ReadOptionsFromDeviceButtonClicked();
        const QLineEdit* const line = Lines(page, 0).last();
        QTRY_VERIFY(line->isVisible());
        const QPoint middle = line->mapTo(MainWindow(), line->rect().center());
        MainWindow()->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(MainWindow()));
        QTest::mouseMove(MainWindow()->windowHandle(), middle);
        QTest::mouseMove(MainWindow()->windowHandle(), middle + QPoint(1, 1));
        QTRY_VERIFY(QToolTip::text().contains("&lt;b&gt;24&lt;/b&gt; V"));
        QToolTip::hideText();
    }

    void everyLineIsForReadingOnlyAndHasItsDescription()
    {
        Connect();
        CTabOptions page(nullptr);
        page.ReadOptionsFromDeviceButtonClicked();
        QCOMPARE(Shown(page), FullGroups());
        // One filter has none.
        QCOMPARE(
            ToolTips(page), (QVector<QStringList>{Split("12 V|24 V"), Split("through|3|6|10|20|40"),
                                Split("d11|d12||d14|d15|d16"), Split("d21|d22|d23|d24|d25"),
                                Split("||one|two"), {"round"}, {"up"}}));
        for (int group = 0; group < Groups; ++group) {
            for (const QLineEdit* const line : Lines(page, group)) {
                QVERIFY(line->isReadOnly());
                QCOMPARE(line->alignment(), Qt::Alignment(Qt::AlignCenter));
                QCOMPARE(line->font().weight(), group >= FirstRotator ? 75 : 50);
                QCOMPARE(line->font().pixelSize(), 11);
                QCOMPARE(line->accessibleName(), Box(page, group)->title());
                QCOMPARE(line->parentWidget(), Box(page, group));
            }
            const auto* const layout = qobject_cast<QVBoxLayout*>(Box(page, group)->layout());
            QVERIFY(layout != nullptr);
            QCOMPARE(layout->alignment(), Qt::Alignment(Qt::AlignTop));
            // Bold names need the room.
            const QMargins margins = layout->contentsMargins();
            const int usual =
                page.style()->pixelMetric(QStyle::PM_LayoutLeftMargin, nullptr, Box(page, group));
            const int side = group >= FirstRotator ? 6 : usual;
            QCOMPARE(margins.left(), side);
            QCOMPARE(margins.right(), side);
        }
    }

    void aSecondReadReplacesTheModulesAndCoversTheRotators()
    {
        CTabOptions page(nullptr);
        page.show();
        Connect();
        page.ReadOptionsFromDeviceButtonClicked();
        QTRY_VERIFY(Lines(page, 6).first()->isVisible());
        const QRect place = Lines(page, 6).first()->geometry();
        Connect(NoOptions, NoDescriptions);
        for (const int read : {2, 3}) {
            page.ReadOptionsFromDeviceButtonClicked();
            QCOMPARE(StatusLine(), ReadDone);
            QCOMPARE(Shown(page), EmptyGroups());
            for (int group = 0; group < Groups; ++group) {
                const int lines = Box(page, group)->findChildren<QLineEdit*>().size();
                QCOMPARE(lines, group >= FirstRotator ? read : 0);
                QVERIFY(Box(page, group)->layout() != nullptr); // an empty one is set as well
            }
            QTRY_VERIFY(Lines(page, 6).first()->isVisible());
            const auto inBox = Box(page, 6)->findChildren<QLineEdit*>();
            QCOMPARE(inBox.first()->text(), "TD552");
            QCOMPARE(inBox.first()->toolTip(), "up");
            QVERIFY(inBox.first()->isVisible());
            QCOMPARE(inBox.first()->geometry(), place);
            QCOMPARE(inBox.last()->text(), QString());
            // Children lie in the order of their making.
            QTRY_COMPARE(inBox.last()->geometry(), place);
        }
    }

    void whileItReadsTheWindowTakesNoClicks()
    {
        const CTabOptions& page = ConnectTheWindow();
        bool tried = false;
        WhenProgressShows([&tried] {
            tried = true;
            Click(Find<QPushButton>("btnReadOptionsFromDevice"));
            ShowPage("Info");
        });
        Click(Find<QPushButton>("btnReadOptionsFromDevice"));
        QVERIFY(tried);
        QVERIFY(page.isVisible());
        QCOMPARE(scripted::Actions(), Queries);
    }

    void aLostLinkLeavesTheBoxesFilled()
    {
        const CTabOptions& page = ConnectTheWindow();
        scripted::FailSendsFrom(1);
        Click(Find<QPushButton>("btnReadOptionsFromDevice"));
        QCOMPARE(ConnectionLine(), "Not Connected ");
        QCOMPARE(Shown(page), FullGroups());
        QVERIFY(!Button(page, "btnReadOptionsFromDevice")->isEnabled());
        QVERIFY(!Button(page, "btnSendDeviceOptions")->isEnabled());
        QVERIFY(Button(page, "btnReadDeviceOptions")->isEnabled());
    }

    void theTabIsShutForOldUnitsWithTheFlagOnly()
    {
        const std::tuple<const char*, bool, bool> rows[] = {{"2.99", false, true},
            {"3.0", false, true}, {"2.99", true, false}, {"", true, false}, {"3.0", true, true}};
        CDeviceDatabase* const database = TheDeviceDatabase();
        for (const auto& [firmware, flag, served] : rows) {
            CTabOptions page(nullptr);
            page.show();
            Connect();
            database->SetFirmwareVersion(firmware);
            SetUnsupportedFlag(*database, flag);
            page.ConnectionStatusChanged();
            SetUnsupportedFlag(*database, false);
            QCOMPARE(page.isEnabled(), served);
            QCOMPARE(page.findChild<QLabel*>("lblCompatibility")->isVisible(), !served);
            QCOMPARE(scripted::Actions(), served ? Queries : QStringList());
            QCOMPARE(Button(page, "btnReadOptionsFromDevice")->isEnabled(), served);
            page.ConnectionStatusChanged(); // opens again
            QVERIFY(page.isEnabled());
            QVERIFY(!page.findChild<QLabel*>("lblCompatibility")->isVisible());
            QCOMPARE(Shown(page), FullGroups());
        }
    }

    void theButtonsFollowTheLinkWhateverTheReadingDoes()
    {
        PageThatDoesNotRead page;
        Connect();
        page.ConnectionStatusChanged();
        QVERIFY(Button(page, "btnReadOptionsFromDevice")->isEnabled());
    }

    void theReadingShowsHowFarItIs()
    {
        CTabOptions page(nullptr);
        Connect();
        const ProgressWatch progress([&] { page.ReadOptionsFromDeviceButtonClicked(); });
        QCOMPARE(progress.texts,
            Split("Reading options from device ... |Reading options from device ..."));
        QCOMPARE(progress.values, (QVector<int>{0, 100, 10, 20, 40, 100}));
        QVERIFY(progress.isClosed);
        QVERIFY(VisibleProgress() == nullptr);
    }

    void withoutALinkNothingTravels()
    {
        CTabOptions page(nullptr);
        const ProgressWatch reading([&] { page.ReadOptionsFromDeviceButtonClicked(); });
        QCOMPARE(StatusLine(), ReadFailed);
        QCOMPARE(reading.values, (QVector<int>{0, 100, 10, 100}));
        QVERIFY(Box(page, 0)->layout() == nullptr);
        QVERIFY(!Button(page, "btnReadOptionsFromDevice")->isEnabled());
        QVERIFY(!Button(page, "btnSendDeviceOptions")->isEnabled());
        const ProgressWatch sending([&] { page.SendOptionsToDeviceButtonClicked(); });
        QCOMPARE(StatusLine(), OptionsNotSent);
        QCOMPARE(sending.values, (QVector<int>{0, 100, 1, 20, 100}));
    }

    // A page that has read before holds the full record and shows it.
    void aBadAnswerIsJudged()
    {
        const QByteArray internal = "GET:OPTION:INTERNAL?";
        const QByteArray descriptions = "GET:OPTION:DESC?";
        const QByteArray options = Line(FullOptions);
        const QByteArray options18 = Line(QByteArray(NoOptions).mid(2));
        const QByteArray options37 = FullOptions + options;
        const QByteArray descriptions18 = Line(QByteArray(NoDescriptions).mid(1));
        const bool no = false;
        const bool yes = true;
        const std::tuple<Reaction, bool, bool, bool, bool> rows[] = {
            {{internal, ""}, no, no, no, no}, {{internal, options18}, no, no, no, no},
            {{internal, options.left(90)}, no, no, no, no}, {{internal, options37}, no, no, no, no},
            {{internal, QByteArray(200, '\xA5')}, no, no, no, no},
            {{internal, options, 1500}, no, yes, yes, yes},
            {{internal, options, 2500}, no, no, no, no}, // it is taken for the descriptions
            {{descriptions, ""}, no, yes, yes, yes},
            {{descriptions, descriptions18}, no, yes, yes, yes},
            {{descriptions, QByteArray(644, 'x') + NoDescriptions + "\r"}, no, no, no, no},
            {{internal, ""}, yes, yes, yes, yes},        // old data
            {{internal, options18}, yes, yes, yes, yes}, // old data
            {{internal, options37}, yes, no, yes, no},
            {{descriptions, descriptions18}, yes, yes, yes, yes}, // old data
        };
        for (const auto& [reaction, readBefore, success, shown, valid] : rows) {
            CTabOptions page(nullptr);
            if (readBefore) {
                Connect();
                page.ReadOptionsFromDeviceButtonClicked();
            }
            Connect(FullOptions, FullDescriptions, reaction);
            page.ReadOptionsFromDeviceButtonClicked();
            QCOMPARE(StatusLine(), success ? ReadDone : ReadFailed);
            QCOMPARE(Shown(page), shown ? FullGroups() : QVector<QStringList>(Groups));
            QVERIFY(Button(page, "btnReadOptionsFromDevice")->isEnabled());
            QCOMPARE(Button(page, "btnSendDeviceOptions")->isEnabled(), valid);
            QVERIFY(TheDeviceCommunication()->IsConnected());
        }
    }

    void lineFeedsAndZerosAreTakenOutOfTheAnswers()
    {
        CTabOptions page(nullptr);
        Connect(QByteArray(NoOptions).replace(0, 1, QByteArray("VX440\n-D\0CF\n", 12)),
            QByteArray("a\nb\0\n", 5) + NoDescriptions);
        page.ReadOptionsFromDeviceButtonClicked();
        QCOMPARE(Shown(page).first(), Split("DC-Feed1"));
        QCOMPARE(Lines(page, 0).first()->toolTip(), "ab");
    }

    void sendingGivesTheUnitBothStrings()
    {
        ConnectTheWindow();
        auto* const button = Find<QPushButton>("btnSendDeviceOptions");
        button->show();
        const ProgressWatch progress([button] { Click(button); });
        button->hide();
        QCOMPARE(StatusLine(), SendDone);
        QCOMPARE(scripted::Actions(), SentBoth(FullOptions, FullDescriptions));
        QCOMPARE(
            progress.texts, Split("Sending options to device ... |Sending options to device ..."));
        QCOMPARE(progress.values, (QVector<int>{0, 100, 1, 20, 50, 100}));
        QVERIFY(progress.isClosed);
        QVERIFY(VisibleProgress() == nullptr);
    }

    void anEmptyRecordSendsEmptyStrings()
    {
        CTabOptions page(nullptr);
        Connect();
        page.SendOptionsToDeviceButtonClicked(); // its button is disabled
        QCOMPARE(StatusLine(), SendDone);
        QCOMPARE(scripted::Actions(), SentBoth("", ""));
    }

    // The first byte of an acknowledgement tells.
    void aFaultAtEitherStepEndsInItsText()
    {
        const std::tuple<QByteArray, int, bool> rows[] = {{"0\r", 0, false}, {"", 0, false},
            {"11\r", 0, false}, {"2\r", 0, false}, {"\xA5\xA5", 0, false}, {"1\r", 1500, true},
            {"1", 0, true}};
        const QStringList both = SentBoth(FullOptions, FullDescriptions);
        for (const auto& [answer, after, done] : rows) {
            for (const bool atOptions : {true, false}) {
                CTabOptions page(nullptr);
                Connect(FullOptions, FullDescriptions, {atOptions ? "CF9" : "CF10", answer, after});
                page.ReadOptionsFromDeviceButtonClicked();
                scripted::ForgetEvents();
                page.SendOptionsToDeviceButtonClicked();
                QCOMPARE(StatusLine(), done        ? SendDone
                                       : atOptions ? OptionsNotSent
                                                   : DescriptionsNotSent);
                QCOMPARE(scripted::Actions(), both.mid(0, atOptions && !done ? 1 : 2));
            }
        }
    }

    void aLinkThatBreaksBeforeTheSendingTellsTheUser()
    {
        ConnectTheWindow();
        scripted::FailSendsFrom(1);
        auto* const button = Find<QPushButton>("btnSendDeviceOptions");
        button->show();
        Click(button);
        button->hide();
        QCOMPARE(StatusLine(), OptionsNotSent);
        QCOMPARE(ConnectionLine(), "Not Connected ");
        QVERIFY(!button->isEnabled());
    }

    void aWorkbookIsChosenAndShown()
    {
        for (const char* const name : {"unit.xlsx", "options.cfg"}) {
            const QString path = folder.filePath(name);
            QVERIFY(WriteOptionsWorkbook(path, FullNames(), FullTexts()));
            CTabOptions& page = ConnectTheWindow();
            Connect(NoOptions, NoDescriptions);
            page.ReadOptionsFromDeviceButtonClicked();
            QCOMPARE(Shown(page), EmptyGroups());
            const AskedForFile asked = ChooseFile(path);
            QCOMPARE(asked.title, "Select Options File");
            QCOMPARE(asked.filters, QStringList{"*.xlsx *.cfg"});
            QCOMPARE(asked.mode, QFileDialog::ExistingFile);
            QCOMPARE(StatusLine(), "Options read from file successfully.");
            QCOMPARE(Shown(page), FullGroups());
            QVERIFY(Button(page, "btnSendDeviceOptions")->isEnabled());
        }
    }

    void aFileThatCannotBeReadLeavesTheBoxes()
    {
        const QString cut = folder.filePath("cut.xlsx");
        QVERIFY(WriteOptionsWorkbook(cut, FullNames().mid(1), FullTexts()));
        const QString narrow = folder.filePath("narrow.xlsx");
        QVERIFY(WriteOptionsWorkbook(narrow, FullNames()));
        const std::tuple<QString, const char*, bool> rows[] = {{"", InvalidFile, false},
            {cut, InvalidFile, false},
            {narrow, "Error: Options description string too long!", true}};
        for (const auto& [path, status, sendable] : rows) {
            const CTabOptions& page = ConnectTheWindow();
            QVERIFY(Button(page, "btnSendDeviceOptions")->isEnabled());
            ChooseFile(path);
            QCOMPARE(StatusLine(), status);
            QCOMPARE(Shown(page), FullGroups());
            QCOMPARE(Button(page, "btnSendDeviceOptions")->isEnabled(), sendable);
        }
    }

    void aWorkbookIsReadWithoutAUnitButCannotBeSent()
    {
        const QString path = folder.filePath("alone.xlsx");
        QVERIFY(WriteOptionsWorkbook(path, FullNames(), FullTexts()));
        ShowPage("Options");
        ChooseFile(path);
        QCOMPARE(StatusLine(), "Options read from file successfully.");
        QCOMPARE(Shown(PageOfTheWindow()), FullGroups());
        QVERIFY(!Button(PageOfTheWindow(), "btnSendDeviceOptions")->isEnabled());
    }
};

VX440_WINDOW_TEST_MAIN(TabOptionsTest)

#include "TabOptionsTest.moc"
