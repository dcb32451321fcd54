// SPDX-License-Identifier: MIT

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
#include <QProxyStyle>
#include <QPushButton>
#include <QStyleOptionButton>
#include <QStyleOptionComboBox>
#include <QStyleOptionFrame>
#include <QStyleOptionGroupBox>
#include <QTabBar>
#include <QTabWidget>
#include <QToolButton>
#include <QtTest>

#include <functional>

namespace {

QString NameOf(const QWidget* widget)
{
    const QWidget* page = widget;
    while (page->parentWidget() != nullptr && page->objectName() != "tabWidget" &&
           page->parentWidget()->objectName() != "qt_tabwidget_stackedwidget") {
        page = page->parentWidget();
    }
    return page->objectName() + '/' + widget->objectName();
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

template<class Widget>
void VerifyFits(const Widget* widget, const QString& text)
{
    QVERIFY2(Fits(TextSize(widget, text), RoomIn(widget)), qPrintable(NameOf(widget) + ' ' + text));
}

// Each page of the window in its turn, laid out as when it is seen, then the first one again.
void OnEachPage(const std::function<void(QTabWidget& tabs, QWidget& page)>& look)
{
    auto* const tabs = Find<QTabWidget>("tabWidget");
    for (int page = 0; page < tabs->count(); ++page) {
        tabs->setCurrentIndex(page);
        QCoreApplication::processEvents();
        look(*tabs, *tabs->widget(page));
    }
    tabs->setCurrentIndex(0);
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
        const QString family = qEnvironmentVariable("VX440_FORM_FONT_FAMILY");
        QVERIFY(family.isEmpty() || Find<QLabel>("label_2")->fontInfo().family() == family);
    }

    void theStyleIsTheOneThatTheFormsWereCheckedWith()
    {
        const auto* const style = qobject_cast<const QProxyStyle*>(QApplication::style());
        QCOMPARE(style->baseStyle()->objectName(), "fusion");
    }

    void noLabelIsCut()
    {
        for (const QLabel* const label : OfTheForms<QLabel>()) {
            VerifyFits(label, label->text());
        }
    }

    void noButtonIsCut()
    {
        QStringList texts;
        for (const QPushButton* const button : OfTheForms<QPushButton>()) {
            texts.append(button->text());
            VerifyFits(button, button->text());
        }
        QVERIFY(texts.contains("Find Z&K Devices"));
        for (const char* const text : {"Connect", "Connecting", "Connected"}) {
            VerifyFits(Find<QPushButton>("btnConnect"), text);
        }
    }

    void everyFieldHasRoomForItsLongestText()
    {
        for (const QLineEdit* const edit : OfTheForms<QLineEdit>()) {
            VerifyFits(edit, LongestTextOf(edit));
        }
    }

    void everyListHasRoomForItsLongestEntry()
    {
        for (const QComboBox* const box : OfTheForms<QComboBox>()) {
            for (int entry = 0; entry < box->count(); ++entry) {
                VerifyFits(box, box->itemText(entry));
            }
        }
    }

    void noHeaderOfATableIsCut()
    {
        OnEachPage([](const QTabWidget&, const QWidget& page) {
            const auto headers = page.findChildren<QHeaderView*>();
            for (const QHeaderView* const header : headers) {
                const bool vertical = header->orientation() == Qt::Vertical;
                const int margin =
                    2 * header->style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, header);
                for (int section = 0; section < header->count() && !header->isHidden(); ++section) {
                    const QString text =
                        header->model()->headerData(section, header->orientation()).toString();
                    const int width = vertical ? header->width() : header->sectionSize(section);
                    QVERIFY2(TextSize(header, text).width() + margin <= width, qPrintable(text));
                }
            }
        });
    }

    void theTabBarShowsAllSevenTitlesWithoutScrollButtons()
    {
        const QTabBar* const bar = Find<QTabWidget>("tabWidget")->tabBar();
        QCOMPARE(bar->count(), 7);
        const auto scrollButtons = bar->findChildren<QToolButton*>();
        for (const QToolButton* const button : scrollButtons) {
            QVERIFY(!button->isVisible());
        }
        for (int page = 0; page < bar->count(); ++page) {
            const QString title = bar->tabText(page);
            QVERIFY2(bar->rect().contains(bar->tabRect(page)), qPrintable(title));
            const int room = bar->tabRect(page).width() -
                             bar->style()->pixelMetric(QStyle::PM_TabBarTabHSpace, nullptr, bar);
            QVERIFY2(TextSize(bar, title).width() <= room, qPrintable(title));
        }
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

    void aFieldThatCannotBeEditedHasAFrameAndNoLightGround()
    {
        ShowPage("Info");
        for (const auto& [name, role] : {std::pair{"txtPartNumber", QPalette::Window},
                 std::pair{"txtIpAddress", QPalette::Base}}) {
            auto* const field = Find<QLineEdit>(name);
            const QImage image = field->grab().toImage();
            const QColor ground = field->palette().color(role);
            QVERIFY2(image.pixelColor(image.width() - 5, image.height() / 2) == ground, name);
            QVERIFY2(image.pixelColor(image.width() - 1, image.height() / 2) != ground, name);
            QVERIFY2(image.pixelColor(image.width() / 2, image.height() - 1) != ground, name);
        }
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
                VerifyFits(line, line->text());
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

    void everyPageFitsTheWindowAndNoTwoOfItsWidgetsOverlap()
    {
        OnEachPage([](const QTabWidget& tabs, const QWidget& page) {
            const auto children =
                page.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
            for (const QWidget* const one : children) {
                const QRect place(one->mapTo(&tabs, QPoint(0, 0)), one->size());
                QVERIFY2(tabs.rect().contains(place), qPrintable(NameOf(one)));
                for (const QWidget* const other : children) {
                    QVERIFY2(one == other || !one->geometry().intersects(other->geometry()),
                        qPrintable(NameOf(one) + ' ' + other->objectName()));
                }
            }
        });
    }
};

VX440_WINDOW_TEST_MAIN(LegibilityTest)
#include "LegibilityTest.moc"
