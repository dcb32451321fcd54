#include "link/CDeviceCommunication.h"
#include "model/CDeviceDatabase.h"
#include "options/CTabOptions.h"
#include "tests/options/OptionsWorkbook.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"

#include <QFileDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTimer>
#include <QToolTip>
#include <QWindow>
#include <QtTest>

namespace {

constexpr int Groups = 7;
constexpr const char* BoxOf[Groups] = {"boxDcf", "boxAtt", "boxFilter1", "boxFilter2", "boxAmp",
    "boxOptionAzimuthRotator", "boxOptionPolarRotator"};
constexpr int FirstRotator = 5;

const char* const Internal = "GET:OPTION:INTERNAL?";
const char* const Descriptions = "GET:OPTION:DESC?";

// One unit with everything but a fifth filter, and one with nothing.
const char* const FullOptions =
    "VX440-DCF,VX440-DCF,VX440-ATT,VX440-FIL,VX440-FIL,VX440-A1+A2,VX440-F11,VX440-F12,VX440-F13,"
    "VX440-F14,0,VX440-F16,VX440-F21,VX440-F22,VX440-F23,VX440-F24,VX440-F25,ProSisTel,TD552";
const char* const FullDescriptions =
    "12 V;24 V;through,3,6,10,20,40;0;0;one,two;d11;d12;;d14;d15;d16;d21;d22;d23;d24;d25;round;up";
const char* const NoOptions = "0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0";
const char* const NoDescriptions = ";;;;;;;;;;;;;;;;;;";

const char* const ReadDone = "Options read from device successfully.";
const char* const ReadFailed = "Failed to read Options from device";
const char* const SendDone = "Options & description sent to device successfully.";
const char* const OptionsNotSent = "Failed to send options to device!";
const char* const DescriptionsNotSent = "Failed to send option descriptions to device!";
const char* const InvalidFile = "Error: Invalid options file!!";

QString Text(const char* text)
{
    return QString::fromLatin1(text);
}

QStringList Split(const char* texts)
{
    return Text(texts).split(QLatin1Char('|'));
}

QStringList UnitWith(const QString& options, const QString& descriptions)
{
    return {Text("--options"), options, Text("--option-descriptions"), descriptions};
}

QStringList UnitWith(const char* options, const char* descriptions)
{
    return UnitWith(Text(options), Text(descriptions));
}

QStringList FullUnit()
{
    return UnitWith(FullOptions, FullDescriptions);
}

QGroupBox* Box(const QWidget& tab, int group)
{
    return tab.findChild<QGroupBox*>(Text(BoxOf[group]));
}

// The lines of a group as they are laid out.
QVector<QLineEdit*> Lines(const QWidget& tab, int group)
{
    QVector<QLineEdit*> lines;
    const QLayout* const layout = Box(tab, group)->layout();
    for (int item = 0; layout != nullptr && item < layout->count(); ++item) {
        lines.append(qobject_cast<QLineEdit*>(layout->itemAt(item)->widget()));
    }
    return lines;
}

QStringList Shown(const QWidget& tab, int group)
{
    QStringList texts;
    for (const QLineEdit* const line : Lines(tab, group)) {
        texts.append(line->text());
    }
    return texts;
}

QVector<QStringList> Shown(const QWidget& tab)
{
    QVector<QStringList> groups;
    for (int group = 0; group < Groups; ++group) {
        groups.append(Shown(tab, group));
    }
    return groups;
}

const QVector<QStringList>& FullGroups()
{
    static const QVector<QStringList> groups{Split("DC-Feed1|DC-Feed2"),
        Split("Bypass|Att. 3dB|Att. 6dB|Att. 10dB|Att. 20dB|Att. 40dB"),
        Split("VX440-F11|VX440-F12|VX440-F13|VX440-F14||VX440-F16"),
        Split("VX440-F21|VX440-F22|VX440-F23|VX440-F24|VX440-F25"),
        Split("Bypass|Bypass|VX440-A1|VX440-A2"), Split("ProSisTel"), Split("TD552")};
    return groups;
}

// A second read lays its lines into the rotators' boxes as well.
const QVector<QStringList>& EmptyGroups()
{
    static const QVector<QStringList> groups{{}, {}, {}, {}, {}, {QString()}, {QString()}};
    return groups;
}

CTabOptions* PageOfTheWindow()
{
    return MainWindow()->findChild<CTabOptions*>();
}

QPushButton* Button(const QWidget& tab, const char* name)
{
    return tab.findChild<QPushButton*>(Text(name));
}

bool Connect(const SimulatorProcess& unit)
{
    CDeviceCommunication* const link = TheDeviceCommunication();
    link->StartConnection(unit.Address().toLatin1());
    return unit.IsReady() && QTest::qWaitFor([link] { return link->IsConnected(); });
}

QString Hex(const QString& text)
{
    return Text(text.toLatin1().toHex().toUpper().constData());
}

QString Sent(const char* mnemonic, const QString& text)
{
    return text.isEmpty() ? Text(mnemonic) : Text(mnemonic) + QLatin1Char(' ') + Hex(text);
}

// The flag is there for units that cannot do what the tab offers; no unit sets it yet.
template<bool CDeviceDatabase::*Flag>
struct FlagSetter
{
    friend void SetUnsupportedFlag(CDeviceDatabase& database, bool value)
    {
        database.*Flag = value;
    }
};
void SetUnsupportedFlag(CDeviceDatabase& database, bool value);
template struct FlagSetter<&CDeviceDatabase::unsupported>;

// What the progress dialog of a flow says and shows, from the moment that it comes up.
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
            label = dialog->labelText();
            status = StatusLine();
            minimum = dialog->minimum();
            maximum = dialog->maximum();
            values.append(dialog->value());
            connect(dialog->findChild<QProgressBar*>(), &QProgressBar::valueChanged, this,
                [this](int value) { values.append(value); });
        }
        return false;
    }

    QString label;
    QString status;
    int minimum = -1;
    int maximum = -1;
    QVector<int> values;
};

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
    return QStringList{Text("a"), Text("b")} + Text(FullOptions).split(QLatin1Char(',')) +
           QStringList{Text("c")};
}

QStringList FullTexts()
{
    return QStringList{QString(), QString()} + Text(FullDescriptions).split(QLatin1Char(';'));
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
        QCOMPARE(page.objectName(), Text("TabOptions"));
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
        const auto* const widget = page.findChild<QWidget*>(Text(QTest::currentDataTag()));
        QVERIFY(widget != nullptr);
        QTEST(widget->geometry(), "place");
    }

    void everyBoxHasItsTitle_data()
    {
        QTest::addColumn<QString>("title");
        QTest::newRow("boxDcf") << Text("VX440-DCF");
        QTest::newRow("boxAtt") << Text("VX440-ATT");
        QTest::newRow("boxFilter1") << Text("VX440-FIL 1");
        QTest::newRow("boxFilter2") << Text("VX440-FIL 2");
        QTest::newRow("boxAmp") << Text("VX440-AMP");
        QTest::newRow("boxOptionAzimuthRotator") << Text("Azimuth rotator");
        QTest::newRow("boxOptionPolarRotator") << Text("Pol/Eval rotator");
    }
    void everyBoxHasItsTitle()
    {
        const auto* const box = Find<QGroupBox>(QTest::currentDataTag());
        QTEST(box->title(), "title");
        QVERIFY(box->alignment().testFlag(Qt::AlignHCenter));
        QCOMPARE(box->styleSheet(),
            Text("QGroupBox\n{\n    font-size: 12px;\n    font-weight: bold;\n}"));
        QCOMPARE(box->font().pixelSize(), 12);
        QVERIFY(box->font().bold());
    }

    void everyButtonHasItsTextAndItsParent_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("btnSendDeviceOptions") << Text("Send to device");
        QTest::newRow("btnReadOptionsFromDevice") << Text("Read from device");
        QTest::newRow("btnReadDeviceOptions") << Text("Read Options File");
    }
    void everyButtonHasItsTextAndItsParent()
    {
        const auto* const button = Find<QPushButton>(QTest::currentDataTag());
        QTEST(button->text(), "text");
        QCOMPARE(button->parentWidget()->objectName(), Text("widNewFirmwareItems"));
        QVERIFY(!button->autoDefault());
    }

    void theNoticeIsBoldAndItalic()
    {
        const auto* const notice = Find<QLabel>("lblCompatibility");
        QCOMPARE(notice->text(), Text("This tab is not compatible with this device!"));
        QVERIFY(notice->font().bold());
        QVERIFY(notice->font().italic());
    }

    void connectingShowsWhatTheUnitIsFittedWith_data()
    {
        QTest::addColumn<QString>("firmware");
        QTest::newRow("new firmware") << Text("3.10");
        QTest::newRow("old firmware") << Text("2.50");
    }
    void connectingShowsWhatTheUnitIsFittedWith()
    {
        QFETCH(QString, firmware);
        const SimulatorProcess unit(FullUnit() << Text("--firmware") << firmware);
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
        QCOMPARE(StatusLine(), Text(ReadDone));
        Find<QPushButton>("btnReadOptionsFromDevice")->setFocus();
        Press(Qt::Key_Space);
        QCOMPARE(StatusLine(), Text(ReadDone));
        const QStringList once{Text(Internal), Text(Descriptions)};
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
        QTRY_COMPARE(QToolTip::text(), Text("10"));
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
        Type(Text("x"));
        Press(Qt::Key_Delete);
        QCOMPARE(line->text(), Text("DC-Feed1"));
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
            Text("0,0,0,0,0,%1,0,0,0,0,0,0,0,0,0,0,0,0,0").arg(Text(QTest::currentDataTag())),
            Text(NoDescriptions)));
        CTabOptions page(nullptr);
        QVERIFY(Connect(unit));
        page.ReadOptionsFromDeviceButtonClicked();
        QCOMPARE(StatusLine(), Text(ReadDone));
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
        QVERIFY(TheDeviceCommunication()->SendOptions(Text(NoOptions)));
        QVERIFY(TheDeviceCommunication()->SendOptionDescriptions(Text(NoDescriptions)));
        page.ReadOptionsFromDeviceButtonClicked();
        QCOMPARE(StatusLine(), Text(ReadDone));
        QCOMPARE(Shown(page), EmptyGroups());
        for (int group = 0; group < Groups; ++group) {
            const int lines = Box(page, group)->findChildren<QLineEdit*>().size();
            QCOMPARE(lines, group >= FirstRotator ? 2 : 0);
            QVERIFY(Box(page, group)->layout() != nullptr);
        }
        QTRY_VERIFY(Lines(page, 6).first()->isVisible());
        const auto inBox = Box(page, 6)->findChildren<QLineEdit*>();
        QCOMPARE(inBox.first()->text(), Text("TD552"));
        QCOMPARE(inBox.first()->toolTip(), Text("up"));
        QVERIFY(inBox.first()->isVisible());
        QCOMPARE(inBox.first()->geometry(), place);
        QCOMPARE(inBox.last()->text(), QString());
        QTRY_COMPARE(inBox.last()->geometry(), place); // children lie in the order of their making

        page.ReadOptionsFromDeviceButtonClicked();
        QCOMPARE(Box(page, 6)->findChildren<QLineEdit*>().size(), 3);
        QCOMPARE(Shown(page), EmptyGroups());
    }

    void theReadingShowsHowFarItIs()
    {
        const SimulatorProcess unit(FullUnit());
        CTabOptions page(nullptr);
        QVERIFY(Connect(unit));
        const ProgressWatch progress([&] { page.ReadOptionsFromDeviceButtonClicked(); });
        QCOMPARE(progress.label, Text("Reading options from device ... "));
        QCOMPARE(progress.status, Text("Reading options from device ..."));
        QCOMPARE(progress.minimum, 0);
        QCOMPARE(progress.maximum, 100);
        QCOMPARE(progress.values, (QVector<int>{10, 20, 40, 100}));
        QVERIFY(VisibleProgress() == nullptr);
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
        QCOMPARE(unit.Commands(), (QStringList{Text(Internal), Text(Descriptions)}));
    }

    void withoutALinkNothingIsRead()
    {
        CTabOptions page(nullptr);
        const ProgressWatch progress([&] { page.ReadOptionsFromDeviceButtonClicked(); });
        QCOMPARE(StatusLine(), Text(ReadFailed));
        QCOMPARE(progress.values, (QVector<int>{10, 100}));
        QVERIFY(Box(page, 0)->layout() == nullptr);
        QVERIFY(!Button(page, "btnReadOptionsFromDevice")->isEnabled());
        QVERIFY(!Button(page, "btnSendDeviceOptions")->isEnabled());
    }

    // A page that has read before holds the full record and shows it.
    void aBadAnswerIsJudged_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<bool>("readBefore");
        QTest::addColumn<bool>("success");
        QTest::addColumn<bool>("shown");
        QTest::addColumn<bool>("valid");
        const auto row = [](const char* name, const char* fault, bool before, bool success,
                             bool shown, bool valid) {
            QTest::newRow(name) << Text(fault) << before << success << shown << valid;
        };
        const bool no = false;
        const bool yes = true;
        row("silent at first", "silent:GET:OPTION:INTERNAL?", no, no, no, no);
        row("18 fields at first", "wrong:GET:OPTION:INTERNAL?", no, no, no, no);
        row("half the fields at first", "short:GET:OPTION:INTERNAL?", no, no, no, no);
        row("37 fields at first", "long:GET:OPTION:INTERNAL?", no, no, no, no);
        row("garbage at first", "garbage:GET:OPTION:INTERNAL?", no, no, no, no);
        row("no descriptions at first", "silent:GET:OPTION:DESC?", no, yes, yes, yes);
        row("18 descriptions at first", "wrong:GET:OPTION:DESC?", no, yes, yes, yes);
        row("a late answer", "slow:GET:OPTION:INTERNAL?", no, yes, yes, yes);
        row("late descriptions", "slow:GET:OPTION:DESC?", no, yes, yes, yes);
        row("byte by byte", "bytewise", no, yes, yes, yes);
        row("silent later: old data", "silent:GET:OPTION:INTERNAL?", yes, yes, yes, yes);
        row("18 fields later: old data", "wrong:GET:OPTION:INTERNAL?", yes, yes, yes, yes);
        row("18 descriptions later: old data", "wrong:GET:OPTION:DESC?", yes, yes, yes, yes);
        row("37 fields later", "long:GET:OPTION:INTERNAL?", yes, no, yes, no);
    }
    void aBadAnswerIsJudged()
    {
        QFETCH(QString, fault);
        QFETCH(bool, readBefore);
        QFETCH(bool, success);
        QFETCH(bool, shown);
        QFETCH(bool, valid);
        SimulatorProcess unit(FullUnit());
        CTabOptions page(nullptr);
        QVERIFY(Connect(unit));
        if (readBefore) {
            page.ReadOptionsFromDeviceButtonClicked();
        }
        QVERIFY(unit.Tell(Text("fault ") + fault));
        page.ReadOptionsFromDeviceButtonClicked();
        QCOMPARE(StatusLine(), Text(success ? ReadDone : ReadFailed));
        QCOMPARE(Shown(page), shown ? FullGroups() : QVector<QStringList>(Groups));
        QVERIFY(Button(page, "btnReadOptionsFromDevice")->isEnabled());
        QCOMPARE(Button(page, "btnSendDeviceOptions")->isEnabled(), valid);
        QVERIFY(TheDeviceCommunication()->IsConnected());
    }

    // It is taken for the descriptions, which follow it.
    void anAnswerThatComesTooLateIsForgottenByTheNextRead()
    {
        const SimulatorProcess unit(FullUnit()
                                    << Text("--slow-ms") << Text("3500") << Text("--fault")
                                    << Text("slow:GET:OPTION:INTERNAL?:1"));
        CTabOptions page(nullptr);
        QVERIFY(Connect(unit));
        page.ReadOptionsFromDeviceButtonClicked();
        QCOMPARE(StatusLine(), Text(ReadFailed));
        page.ReadOptionsFromDeviceButtonClicked();
        QCOMPARE(StatusLine(), Text(ReadDone));
        QCOMPARE(Shown(page), FullGroups());
        QCOMPARE(Lines(page, 0).first()->toolTip(), Text("12 V"));
    }

    void aStringOfTheWrongLengthIsRefused_data()
    {
        QTest::addColumn<QString>("options");
        QTest::addColumn<QString>("descriptions");
        QTest::addColumn<bool>("success");
        const QString empty = Text(NoOptions);
        QTest::newRow("18 options") << empty.mid(2) << Text(NoDescriptions) << false;
        QTest::newRow("20 options") << empty + Text(",0") << Text(NoDescriptions) << false;
        QTest::newRow("no options") << QString() << Text(NoDescriptions) << false;
        QTest::newRow("an empty option")
            << Text(",") + empty.mid(2) << Text(NoDescriptions) << false;
        QTest::newRow("643 characters")
            << empty << QString(643, QLatin1Char('x')) + Text(NoDescriptions) << true;
        QTest::newRow("644 characters")
            << empty << QString(644, QLatin1Char('x')) + Text(NoDescriptions) << false;
        QTest::newRow("longer than is read")
            << QString(1970, QLatin1Char('x')) + empty << Text(NoDescriptions) << false;
    }
    void aStringOfTheWrongLengthIsRefused()
    {
        QFETCH(QString, options);
        QFETCH(QString, descriptions);
        QFETCH(bool, success);
        const SimulatorProcess unit(UnitWith(options, descriptions));
        CTabOptions page(nullptr);
        QVERIFY(Connect(unit));
        page.ReadOptionsFromDeviceButtonClicked();
        QCOMPARE(StatusLine(), Text(success ? ReadDone : ReadFailed));
        QCOMPARE(Button(page, "btnSendDeviceOptions")->isEnabled(), success);
        QCOMPARE(Shown(page), success ? EmptyGroups() : QVector<QStringList>(Groups));
    }

    void lineFeedsAndZerosAreTakenOutOfTheAnswers()
    {
        const QString options = Text(NoOptions).replace(0, 1, Text("VX440\n-DCF\n"));
        const SimulatorProcess unit(UnitWith(options, Text("a\nb\n") + Text(NoDescriptions)));
        CTabOptions page(nullptr);
        QVERIFY(Connect(unit));
        page.ReadOptionsFromDeviceButtonClicked();
        QCOMPARE(Shown(page, 0), Split("DC-Feed1"));
        QCOMPARE(Lines(page, 0).first()->toolTip(), Text("ab"));
    }

    void aLostLinkLeavesTheBoxesFilled()
    {
        SimulatorProcess unit(FullUnit());
        ConnectTo(unit.Address());
        ShowPage("Options");
        QVERIFY(unit.Tell(Text("drop")));
        Click(Find<QPushButton>("btnReadOptionsFromDevice"));
        QCOMPARE(ConnectionLine(), Text("Not Connected "));
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
        QTest::newRow("old") << Text("2.99") << false << true;
        QTest::newRow("new") << Text("3.0") << false << true;
        QTest::newRow("old with the flag") << Text("2.99") << true << false;
        QTest::newRow("unknown with the flag") << QString() << true << false;
        QTest::newRow("new with the flag") << Text("3.0") << true << true;
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
        QCOMPARE(page.findChild<QLabel*>(Text("lblCompatibility"))->isVisible(), !served);
        QCOMPARE(unit.Commands().size(), served ? 2 : 0);
        QCOMPARE(Button(page, "btnReadOptionsFromDevice")->isEnabled(), served);
        SetUnsupportedFlag(*database, false);
        page.ConnectionStatusChanged(); // opens again
        QVERIFY(page.isEnabled());
        QVERIFY(!page.findChild<QLabel*>(Text("lblCompatibility"))->isVisible());
        QCOMPARE(Shown(page), FullGroups());
    }

    void sendingGivesTheUnitBothStrings()
    {
        SimulatorProcess unit(UnitWith(FullOptions, FullDescriptions));
        CTabOptions page(nullptr);
        QVERIFY(Connect(unit));
        page.ReadOptionsFromDeviceButtonClicked();
        unit.Forget();
        const ProgressWatch progress([&] { page.SendOptionsToDeviceButtonClicked(); });
        QCOMPARE(StatusLine(), Text(SendDone));
        QCOMPARE(unit.Commands(),
            (QStringList{Sent("CF9", Text(FullOptions)), Sent("CF10", Text(FullDescriptions))}));
        QCOMPARE(progress.label, Text("Sending options to device ... "));
        QCOMPARE(progress.status, Text("Sending options to device ..."));
        QCOMPARE(progress.minimum, 0);
        QCOMPARE(progress.maximum, 100);
        QCOMPARE(progress.values, (QVector<int>{1, 20, 50, 100}));
        QVERIFY(VisibleProgress() == nullptr);
    }

    void whatOneUnitHasAnotherCanBeGiven()
    {
        SimulatorProcess first(FullUnit());
        SimulatorProcess second(UnitWith(NoOptions, NoDescriptions));
        CTabOptions page(nullptr);
        QVERIFY(Connect(first));
        page.ReadOptionsFromDeviceButtonClicked();
        QVERIFY(Connect(second));
        page.SendOptionsToDeviceButtonClicked();
        QCOMPARE(StatusLine(), Text(SendDone));
        QCOMPARE(second.State(Text("options")), Text(FullOptions));
        QCOMPARE(second.State(Text("option-descriptions")), Text(FullDescriptions));
        CTabOptions other(nullptr);
        other.ReadOptionsFromDeviceButtonClicked();
        QCOMPARE(Shown(other), FullGroups());
    }

    void withoutALinkNothingIsSent()
    {
        CTabOptions page(nullptr);
        const ProgressWatch progress([&] { page.SendOptionsToDeviceButtonClicked(); });
        QCOMPARE(StatusLine(), Text(OptionsNotSent));
        QCOMPARE(progress.values, (QVector<int>{1, 20, 100}));
    }

    void anEmptyRecordSendsEmptyStrings()
    {
        SimulatorProcess unit(FullUnit());
        CTabOptions page(nullptr);
        QVERIFY(Connect(unit));
        page.SendOptionsToDeviceButtonClicked(); // its button is disabled
        QCOMPARE(StatusLine(), Text(SendDone));
        QCOMPARE(unit.Commands(), (QStringList{Text("CF9"), Text("CF10")}));
    }

    // Silence and a reset take the ten seconds that an acknowledgement is waited for.
    void aFaultAtEitherStepEndsInItsText_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<QString>("status");
        QTest::addColumn<bool>("optionsKept");
        QTest::addColumn<bool>("descriptionsSent");
        QTest::addColumn<bool>("descriptionsKept");
        const auto row = [](const char* fault, const char* status, bool optionsKept,
                             bool descriptionsSent, bool descriptionsKept) {
            QTest::newRow(fault) << Text(fault) << Text(status) << optionsKept << descriptionsSent
                                 << descriptionsKept;
        };
        row("refusing:CF9", OptionsNotSent, false, false, false);
        row("silent:CF9", OptionsNotSent, true, false, false);
        row("resetting:CF9", OptionsNotSent, true, false, false);
        row("long:CF9", OptionsNotSent, true, false, false);
        row("garbage:CF9", OptionsNotSent, true, false, false);
        row("refusing:CF10", DescriptionsNotSent, true, true, false);
        row("silent:CF10", DescriptionsNotSent, true, true, true);
        row("resetting:CF10", DescriptionsNotSent, true, true, true);
        row("long:CF10", DescriptionsNotSent, true, true, true);
        row("slow:CF9", SendDone, true, true, true);
        row("slow:CF10", SendDone, true, true, true);
        row("short:CF10", SendDone, true, true, true); // the first byte tells
    }
    void aFaultAtEitherStepEndsInItsText()
    {
        QFETCH(QString, fault);
        QFETCH(bool, optionsKept);
        QFETCH(bool, descriptionsSent);
        QFETCH(bool, descriptionsKept);
        SimulatorProcess full(FullUnit());
        SimulatorProcess unit(UnitWith(NoOptions, NoDescriptions) << Text("--fault") << fault);
        CTabOptions page(nullptr);
        QVERIFY(Connect(full));
        page.ReadOptionsFromDeviceButtonClicked();
        QVERIFY(Connect(unit));
        page.SendOptionsToDeviceButtonClicked();
        QTEST(StatusLine(), "status");
        QStringList sent{Sent("CF9", Text(FullOptions))};
        if (descriptionsSent) {
            sent.append(Sent("CF10", Text(FullDescriptions)));
        }
        QCOMPARE(unit.Commands(), sent);
        QCOMPARE(unit.State(Text("options")), Text(optionsKept ? FullOptions : NoOptions));
        QCOMPARE(unit.State(Text("option-descriptions")),
            Text(descriptionsKept ? FullDescriptions : NoDescriptions));
    }

    void aLinkThatBreaksBeforeTheSendingTellsTheUser()
    {
        SimulatorProcess unit(FullUnit());
        ConnectTo(unit.Address());
        ShowPage("Options");
        QVERIFY(unit.Tell(Text("drop")));
        auto* const button = Find<QPushButton>("btnSendDeviceOptions");
        button->show();
        Click(button);
        QCOMPARE(StatusLine(), Text(OptionsNotSent));
        QCOMPARE(ConnectionLine(), Text("Not Connected "));
        QVERIFY(!button->isEnabled());
        button->hide();
    }

    // In a frame the text stands behind the mnemonic and a carriage return.
    void aFrameOf1200BytesIsNotSent_data()
    {
        QTest::addColumn<int>("optionsFrame");
        QTest::addColumn<int>("descriptionsFrame");
        QTest::addColumn<QString>("status");
        QTest::addColumn<int>("sent");
        QTest::newRow("options of 1199") << 1199 << 100 << Text(SendDone) << 2;
        QTest::newRow("options of 1200") << 1200 << 100 << Text(OptionsNotSent) << 0;
        QTest::newRow("descriptions of 1199") << 100 << 1199 << Text(SendDone) << 2;
        QTest::newRow("descriptions of 1200") << 100 << 1200 << Text(DescriptionsNotSent) << 1;
    }
    void aFrameOf1200BytesIsNotSent()
    {
        QFETCH(int, optionsFrame);
        QFETCH(int, descriptionsFrame);
        QFETCH(QString, status);
        QFETCH(int, sent);
        const QString options =
            QString(optionsFrame - 4, QLatin1Char('x')).replace(1, 36, Text(NoOptions).mid(1));
        const QString descriptions =
            Text(NoDescriptions) + QString(descriptionsFrame - 5 - 18, QLatin1Char('y'));
        SimulatorProcess unit(UnitWith(options, descriptions));
        CTabOptions page(nullptr);
        QVERIFY(Connect(unit));
        page.ReadOptionsFromDeviceButtonClicked();
        unit.Forget();
        page.SendOptionsToDeviceButtonClicked();
        QCOMPARE(StatusLine(), status);
        const QStringList both{Sent("CF9", options), Sent("CF10", descriptions)};
        QCOMPARE(unit.Commands(), both.mid(0, sent));
    }

    void aWorkbookIsChosenAndShown_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("xlsx") << Text("unit.xlsx");
        QTest::newRow("cfg") << Text("options.cfg");
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
        QCOMPARE(dialog.title, Text("Select Options File"));
        QCOMPARE(dialog.filters, QStringList{Text("*.xlsx *.cfg")});
        QCOMPARE(dialog.mode, QFileDialog::ExistingFile);
        QCOMPARE(StatusLine(), Text("Options read from file successfully."));
        QCOMPARE(Shown(page), FullGroups());
        QVERIFY(Button(page, "btnSendDeviceOptions")->isEnabled());
    }

    void aFileThatCannotBeReadLeavesTheBoxes_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("status");
        const QString cut = folder.filePath(Text("cut.xlsx"));
        QVERIFY(WriteOptionsWorkbook(cut, FullNames().mid(1), FullTexts()));
        const QString narrow = folder.filePath(Text("narrow.xlsx"));
        QVERIFY(WriteOptionsWorkbook(narrow, FullNames()));
        const QString text = folder.filePath(Text("text.cfg"));
        QFile file(text);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("VX440-DCF\n") > 0);
        QTest::newRow("a cancelled dialog") << QString() << Text(InvalidFile);
        QTest::newRow("a text") << text << Text(InvalidFile);
        QTest::newRow("21 rows") << cut << Text(InvalidFile);
        QTest::newRow("one column")
            << narrow << Text("Error: Options description string too long!");
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
        const bool sendable = Text(QTest::currentDataTag()) == Text("one column");
        QCOMPARE(Button(page, "btnSendDeviceOptions")->isEnabled(), sendable);
    }

    void aWorkbookIsReadWithoutAUnitButCannotBeSent()
    {
        const QString path = folder.filePath(Text("alone.xlsx"));
        QVERIFY(WriteOptionsWorkbook(path, FullNames(), FullTexts()));
        CTabOptions page(nullptr);
        ChooseFile(path, [&page] { page.ReadOptionsFileButtonClicked(); });
        QCOMPARE(Shown(page), FullGroups());
        QVERIFY(!Button(page, "btnSendDeviceOptions")->isEnabled());
    }

    void aWorkbooksOptionsComeBackFromTheUnit()
    {
        const QString path = folder.filePath(Text("sent.xlsx"));
        QStringList names = FullNames();
        names[9] = Text("none"); // travels as 0
        names[15] = QString();
        QVERIFY(WriteOptionsWorkbook(path, names, FullTexts()));
        SimulatorProcess unit(UnitWith(NoOptions, NoDescriptions));
        ConnectTo(unit.Address());
        ShowPage("Options");
        CTabOptions& page = *PageOfTheWindow();
        ChooseFile(path, [&page] { page.ReadOptionsFileButtonClicked(); });
        auto fromFile = Shown(page);
        QCOMPARE(fromFile[2][1], Text("none"));
        auto* const button = Find<QPushButton>("btnSendDeviceOptions");
        button->show();
        Click(button);
        button->hide();
        QCOMPARE(StatusLine(), Text(SendDone));
        names[9] = Text("0");
        names[15] = Text("0");
        QCOMPARE(unit.State(Text("options")), QStringList(names.mid(2, 19)).join(QLatin1Char(',')));
        // The banks themselves have no description in a workbook.
        QCOMPARE(unit.State(Text("option-descriptions")),
            Text(FullDescriptions).replace(Text(";0;0;"), Text(";;;")));

        CTabOptions other(nullptr);
        other.ReadOptionsFromDeviceButtonClicked();
        QCOMPARE(StatusLine(), Text(ReadDone));
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
        QCOMPARE(StatusLine(), Text(SendDone));
        QCOMPARE(unit.Commands().size(), 2);
        button->hide();
    }
};

VX440_WINDOW_TEST_MAIN(TabOptionsTest)
#include "TabOptionsTest.moc"
