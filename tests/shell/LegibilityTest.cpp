#include "link/CDeviceCommunication.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"

#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QStyleOptionButton>
#include <QStyleOptionComboBox>
#include <QStyleOptionFrame>
#include <QStyleOptionGroupBox>
#include <QTabBar>
#include <QTabWidget>
#include <QTableWidget>
#include <QToolButton>
#include <QtTest>

namespace {

QString NameOf(const QWidget* widget)
{
    const QWidget* page = widget;
    while (page->parentWidget() != nullptr && page->objectName() != "tabWidget" &&
           page->parentWidget()->objectName() != "qt_tabwidget_stackedwidget") {
        page = page->parentWidget();
    }
    return page->objectName() + QLatin1Char('/') + widget->objectName();
}

QSize TextSize(const QWidget* widget, const QString& text)
{
    return widget->fontMetrics().size(0, text);
}

bool Fits(const QSize& text, const QSize& room)
{
    return text.width() <= room.width() && text.height() <= room.height();
}

QSize RoomIn(const QPushButton* button)
{
    QStyleOptionButton option;
    option.initFrom(button);
    return button->style()->subElementRect(QStyle::SE_PushButtonContents, &option, button).size();
}

QSize RoomIn(const QLineEdit* edit)
{
    QStyleOptionFrame option;
    option.initFrom(edit);
    option.lineWidth = edit->style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &option, edit);
    const QRect content = edit->style()->subElementRect(QStyle::SE_LineEditContents, &option, edit);
    return content.size() - QSize(4, 0); // the edit keeps two pixels free at each side
}

QSize RoomIn(const QComboBox* box)
{
    QStyleOptionComboBox option;
    option.initFrom(box);
    return box->style()
        ->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, box)
        .size();
}

QSize RoomIn(const QLabel* label)
{
    const int margins = 2 * label->margin() + qMax(label->indent(), 0);
    return label->contentsRect().size() - QSize(margins, 2 * label->margin());
}

// The longest text that each field can get.
QString LongestTextOf(const QLineEdit* edit)
{
    const QString name = edit->objectName();
    if (name.contains("Mac")) {
        return "DD:DD:DD:DD:DD:DD";
    }
    if (name.contains("IpAddress") || name.contains("Mask")) {
        return "255.255.255.255";
    }
    if (name == "txtRotorType") {
        return "Potentiometer";
    }
    if (edit->validator() != nullptr) {
        return "65535";
    }
    return "4400.1290.02-1290";
}

QRect TitleOf(const QGroupBox* box)
{
    QStyleOptionGroupBox option;
    option.initFrom(box);
    option.text = box->title();
    option.textAlignment = box->alignment();
    option.subControls = QStyle::SC_GroupBoxLabel | QStyle::SC_GroupBoxFrame;
    return box->style()->subControlRect(
        QStyle::CC_GroupBox, &option, QStyle::SC_GroupBoxLabel, box);
}

// A unit with every module, and with the longest name that there is for each.
const QString AllOptions =
    "VX440-DCF,VX440-DCF,VX440-ATT,VX440-FIL,VX440-FIL,VX440-A1+A2,VX440-F100,VX440-F101,"
    "VX440-F102,VX440-F103,VX440-F104,VX440-F105,VX440-F106,VX440-F107,VX440-F108,VX440-F109,"
    "VX440-F110,Winder AR/AE1049,Winder AR/AE1049";

const QStringList OptionBoxes{"boxDcf", "boxAtt", "boxFilter1", "boxFilter2", "boxAmp",
    "boxOptionAzimuthRotator", "boxOptionPolarRotator"};

template<class Widget>
QVector<Widget*> OfTheForms()
{
    QVector<Widget*> widgets;
    const auto found = MainWindow()->findChildren<Widget*>();
    for (Widget* const widget : found) {
        if (!widget->objectName().isEmpty() && !widget->objectName().startsWith("qt_")) {
            widgets.append(widget);
        }
    }
    return widgets;
}

} // namespace

class LegibilityTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void theLettersAreThoseThatTheFormsWereCheckedWith()
    {
        const int expected = qEnvironmentVariableIntValue("VX440_FORM_FONT_PIXELS");
        QCOMPARE(MainWindow()->font().pixelSize(), expected != 0 ? expected : 11);
        QCOMPARE(Find<QLabel>("label_2")->fontInfo().pixelSize(), MainWindow()->font().pixelSize());
    }

    void noLabelIsCut()
    {
        for (const QLabel* const label : OfTheForms<QLabel>()) {
            QVERIFY2(Fits(TextSize(label, label->text()), RoomIn(label)),
                qPrintable(NameOf(label) + QLatin1Char(' ') + label->text()));
        }
    }

    void noButtonIsCut()
    {
        QStringList texts;
        for (const QPushButton* const button : OfTheForms<QPushButton>()) {
            texts.append(button->text());
            QVERIFY2(Fits(TextSize(button, button->text()), RoomIn(button)),
                qPrintable(NameOf(button) + QLatin1Char(' ') + button->text()));
        }
        QVERIFY(texts.contains("Find Z&K Devices"));
    }

    void theConnectButtonHasRoomForAllOfItsTexts()
    {
        const auto* const button = Find<QPushButton>("btnConnect");
        for (const char* const text : {"Connect", "Connecting", "Connected"}) {
            QVERIFY(Fits(TextSize(button, text), RoomIn(button)));
        }
    }

    void everyFieldHasRoomForItsLongestText()
    {
        for (const QLineEdit* const edit : OfTheForms<QLineEdit>()) {
            QVERIFY2(
                Fits(TextSize(edit, LongestTextOf(edit)), RoomIn(edit)), qPrintable(NameOf(edit)));
        }
    }

    void everyListHasRoomForItsLongestEntry()
    {
        for (const QComboBox* const box : OfTheForms<QComboBox>()) {
            for (int entry = 0; entry < box->count(); ++entry) {
                QVERIFY2(Fits(TextSize(box, box->itemText(entry)), RoomIn(box)),
                    qPrintable(box->itemText(entry)));
            }
        }
    }

    void noHeaderOfATableIsCut()
    {
        auto* const tabs = Find<QTabWidget>("tabWidget");
        for (const QTableWidget* const table : OfTheForms<QTableWidget>()) {
            tabs->setCurrentWidget(table->parentWidget()); // a page is laid out once it is seen
            QCoreApplication::processEvents();
            for (const QHeaderView* const header :
                {table->horizontalHeader(), table->verticalHeader()}) {
                const bool vertical = header->orientation() == Qt::Vertical;
                for (int section = 0; section < header->count() && !header->isHidden(); ++section) {
                    const QString text =
                        table->model()->headerData(section, header->orientation()).toString();
                    const int margin =
                        2 * header->style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, header);
                    const int width = vertical ? header->width() : header->sectionSize(section);
                    QVERIFY2(TextSize(header, text).width() + margin <= width, qPrintable(text));
                }
            }
        }
        tabs->setCurrentIndex(0);
    }

    void theTabBarShowsAllSevenTitlesWithoutScrollButtons()
    {
        auto* const tabs = Find<QTabWidget>("tabWidget");
        const QStringList titles{"Info", "Update FW", "IP Configuration", "Azimuth Configuration",
            "Pol/Eval Configuration", "Options", "Detect Z&K Device"};
        // A page that is not there yet still has to find its room.
        QVector<QWidget*> added;
        for (int page = 0; page < titles.size(); ++page) {
            if (tabs->tabText(page) != titles.at(page)) {
                added.append(new QWidget);
                tabs->insertTab(page, added.last(), titles.at(page));
            }
        }
        QCoreApplication::processEvents();
        const QTabBar* const bar = tabs->tabBar();
        QCOMPARE(bar->count(), 7);
        const auto scrollButtons = bar->findChildren<QToolButton*>();
        for (const QToolButton* const button : scrollButtons) {
            QVERIFY(!button->isVisible());
        }
        for (int page = 0; page < bar->count(); ++page) {
            QVERIFY2(bar->rect().contains(bar->tabRect(page)), qPrintable(bar->tabText(page)));
            const int room = bar->tabRect(page).width() -
                             bar->style()->pixelMetric(QStyle::PM_TabBarTabHSpace, nullptr, bar);
            QVERIFY2(
                TextSize(bar, bar->tabText(page)).width() <= room, qPrintable(bar->tabText(page)));
        }
        qDeleteAll(added);
    }

    void theTitleOfTheGroupBoxDoesNotRunIntoItsContent()
    {
        const auto* const box = Find<QGroupBox>("groupBox");
        const QRect title = TitleOf(box);
        QVERIFY(TextSize(box, box->title()).width() <= title.width());
        const auto children = box->findChildren<QWidget*>();
        QVERIFY(!children.isEmpty());
        for (const QWidget* const child : children) {
            QVERIFY2(!child->geometry().intersects(title), qPrintable(child->objectName()));
        }
    }

    void theFrameOfAGroupBeginsBelowItsTitle()
    {
        auto* const box = Find<QGroupBox>("groupBox");
        const QImage image = box->grab().toImage();
        const int titleBottom = TitleOf(box).bottom();
        const QColor window = box->palette().window().color();
        QCOMPARE(image.pixelColor(image.width() - 1, titleBottom), window);
        QVERIFY(image.pixelColor(image.width() - 1, titleBottom + 10) != window);
        QVERIFY(image.pixelColor(image.width() - 5, titleBottom + 10) != window);
    }

    void theModulesOfAFullUnitHaveRoomInTheirBoxes()
    {
        const SimulatorProcess unit({"--options", AllOptions});
        ConnectTo(unit.Address());
        ShowPage("Options");
        int lines = 0;
        for (const QString& name : OptionBoxes) {
            const auto* const box = Find<QGroupBox>(name.toLatin1().constData());
            const QRect title = TitleOf(box);
            QVERIFY2(Fits(TextSize(box, box->title()), title.size()), qPrintable(name));
            QVERIFY2(box->rect().contains(title), qPrintable(name));
            int free = title.bottom() + 1;
            for (int item = 0; item < box->layout()->count(); ++item) {
                const auto* const line =
                    qobject_cast<QLineEdit*>(box->layout()->itemAt(item)->widget());
                QTRY_VERIFY(line->isVisible());
                QVERIFY2(
                    Fits(TextSize(line, line->text()), RoomIn(line)), qPrintable(line->text()));
                QVERIFY2(box->contentsRect().contains(line->geometry()), qPrintable(line->text()));
                QVERIFY2(line->geometry().top() >= free, qPrintable(line->text()));
                free = line->geometry().bottom() + 1;
                ++lines;
            }
        }
        QCOMPARE(lines, 2 + 6 + 6 + 5 + 4 + 1 + 1);
        TheDeviceCommunication()->Disconnect();
        ShowPage("Info");
    }

    void theStatusLinesHaveRoomForTheirLongestTexts()
    {
        const auto* const connection = Find<QLabel>("lblConnectionStatus");
        // As wide as the label may become, not as it is for the text of the moment.
        const int room = connection->maximumWidth() - connection->indent();
        for (const char* const text :
            {"Connecting to 255.255.255.255 ...", "Reconnecting to 255.255.255.255",
                "Connected to 255.255.255.255", "Not Connected ", "Connection Failed"}) {
            QVERIFY2(TextSize(connection, text).width() <= room, text);
        }
        const auto* const status = Find<QLabel>("lblAppStatus");
        for (const char* const text : {"Error! Invalid number of Motor configuration params.",
                 "Error: Options description string too long!",
                 "Failed to send option descriptions to device!",
                 "Options & description sent to device successfully.",
                 "Recieving Configuration from Device .. ",
                 "Invalid value for Azimuth Max Motion Hang Up Loop (MMHL)!",
                 "Warning: SMS must be in in range 0 - 100"}) {
            QVERIFY2(TextSize(status, text).width() <=
                         MainWindow()->width() - connection->maximumWidth() - 24,
                text);
        }
    }

    void noTwoWidgetsOfAPageOverlap()
    {
        const auto* const tabs = Find<QTabWidget>("tabWidget");
        for (int page = 0; page < tabs->count(); ++page) {
            const auto children =
                tabs->widget(page)->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
            for (const QWidget* const one : children) {
                for (const QWidget* const other : children) {
                    QVERIFY2(one == other || !one->geometry().intersects(other->geometry()),
                        qPrintable(NameOf(one) + QLatin1Char(' ') + other->objectName()));
                }
            }
        }
    }

    void everyPageFitsTheWindow()
    {
        auto* const tabs = Find<QTabWidget>("tabWidget");
        for (int page = 0; page < tabs->count(); ++page) {
            tabs->setCurrentIndex(page);
            QCoreApplication::processEvents();
            const auto children =
                tabs->widget(page)->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
            const QRect room = tabs->rect();
            for (const QWidget* const child : children) {
                const QRect place(child->mapTo(tabs, QPoint(0, 0)), child->size());
                QVERIFY2(room.contains(place), qPrintable(NameOf(child)));
            }
        }
        tabs->setCurrentIndex(0);
    }
};

VX440_WINDOW_TEST_MAIN(LegibilityTest)
#include "LegibilityTest.moc"
