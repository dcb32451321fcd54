// SPDX-License-Identifier: MIT

#include "widgets/FormLook.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"

#include <QGroupBox>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QStyleOptionButton>
#include <QTabBar>
#include <QtTest>

namespace {

QColor GroundOf(QLineEdit* edit)
{
    const QImage image = edit->grab().toImage();
    return image.pixelColor(image.width() - 4, image.height() - 4);
}

// The letters alone: the ground of what is active differs.
QImage LettersOf(QWidget& widget)
{
    return widget.grab().toImage().convertToFormat(QImage::Format_Mono, Qt::ThresholdDither);
}

// Without the shades at their rims, which the ground changes.
QFont BareFont()
{
    QFont font = MainWindow()->font();
    font.setStyleStrategy(QFont::NoAntialias);
    return font;
}

QImage ButtonIn(QWidget* parent, const char* text)
{
    QPushButton button(QString::fromLatin1(text), parent);
    button.setFont(BareFont());
    button.setAutoDefault(false);
    button.resize(200, 30);
    return LettersOf(button);
}

QImage TabIn(QWidget* parent, const char* text)
{
    QTabBar bar(parent);
    bar.setFont(BareFont());
    bar.addTab(QString::fromLatin1(text));
    bar.resize(200, 30);
    return LettersOf(bar);
}

// The text alone, as a style draws it on what it has drawn of a widget before.
template<class Option>
QImage LabelIn(QWidget* parent, QStyle::ControlElement element, const char* text)
{
    Option option;
    option.initFrom(parent);
    option.rect = QRect(0, 0, 200, 30);
    option.text = QString::fromLatin1(text);
    QImage image(option.rect.size(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    QApplication::style()->drawControl(element, &option, &painter, parent);
    return image;
}

} // namespace

class FormLookTest : public WarningsFail
{
    Q_OBJECT

private slots:
    // As a desktop's theme does, also after the window has come up.
    void noFontOfAThemeReachesTheForms()
    {
        struct Look
        {
            QWidget* widget;
            QFont font;
        };
        QVector<Look> before;
        const auto widgets = MainWindow()->findChildren<QWidget*>();
        for (QWidget* const widget : widgets) {
            before.append({widget, widget->font()});
        }
        const QFont ofTheForms = FormFont();
        const QFont application = QApplication::font(); // of what has no window of the program's
        QCOMPARE(application, ofTheForms);
        QFont large("DejaVu Serif", 30, QFont::Bold, true);
        large.setStretch(150);
        QApplication::setFont(large);
        for (const char* const name : {"QLabel", "QPushButton", "QLineEdit", "QTabBar", "QGroupBox",
                 "QComboBox", "QHeaderView", "QAbstractItemView", "QToolButton"}) {
            QApplication::setFont(large, name);
        }
        QCoreApplication::processEvents();
        QCOMPARE(FormFont(), ofTheForms);
        for (const Look& look : before) {
            QVERIFY2(look.widget->font() == look.font, qPrintable(look.widget->objectName()));
        }
        QApplication::setFont(application);
    }

    void anAmpersandIsLiteralInTheFormsAndAMnemonicInQtsDialogs()
    {
        QFileDialog dialog(MainWindow());
        for (QWidget* const form : {MainWindow(), Find<QWidget>("tabWidget")}) {
            QCOMPARE(ButtonIn(form, "Z&K"), ButtonIn(&dialog, "Z&&K"));
            QCOMPARE(ButtonIn(form, "&Open"), ButtonIn(&dialog, "&&Open"));
            QCOMPARE(TabIn(form, "Z&K"), TabIn(&dialog, "Z&&K"));
            const auto button = LabelIn<QStyleOptionButton>;
            QCOMPARE(button(form, QStyle::CE_PushButtonLabel, "Z&K"),
                button(&dialog, QStyle::CE_PushButtonLabel, "Z&&K"));
            const auto tab = LabelIn<QStyleOptionTab>;
            QCOMPARE(tab(form, QStyle::CE_TabBarTabLabel, "Z&K"),
                tab(&dialog, QStyle::CE_TabBarTabLabel, "Z&&K"));
        }
        QVERIFY(ButtonIn(MainWindow(), "&Open") != ButtonIn(&dialog, "&Open"));
        dialog.show(); // as long as no Alt key is down, some styles do not underline
        const auto buttons = dialog.findChildren<QPushButton*>();
        QVERIFY(!buttons.isEmpty());
        for (const QPushButton* const button : buttons) {
            QVERIFY(button->shortcut().isEmpty() == !button->text().contains('&'));
        }
    }

    void noButtonHasAHiddenShortcut()
    {
        const auto buttons = MainWindow()->findChildren<QAbstractButton*>();
        for (const QAbstractButton* const button : buttons) {
            QVERIFY2(button->shortcut().isEmpty(), qPrintable(button->objectName()));
        }
    }

    void aFieldThatCannotBeEditedHasTheWindowsGround()
    {
        const QColor window = MainWindow()->palette().color(QPalette::Window);
        QCOMPARE(GroundOf(Find<QLineEdit>("txtPartNumber")), window);
        QCOMPARE(GroundOf(Find<QLineEdit>("txtIpAddress")),
            MainWindow()->palette().color(QPalette::Base));
        ShowPage("Azimuth Configuration");
        QCOMPARE(GroundOf(Find<QLineEdit>("txtRotorType")), window);
        ShowPage("Info");
    }

    void aGroupIsATouchDarkerThanItsWindowWithinADarkerRim()
    {
        auto* const box = Find<QGroupBox>("groupBox");
        const QImage image = box->grab().toImage();
        const QRect whole = image.rect();
        const int indicator = box->style()->pixelMetric(QStyle::PM_IndicatorHeight);
        const QRect rim = whole.adjusted(0, qMax(indicator, box->fontMetrics().height()) + 3, 0, 0);
        const QRect inside = rim.adjusted(1, 1, -1, -1);
        const QColor window = box->palette().color(QPalette::Window);
        for (const auto& [rectangle, color] :
            {std::pair{rim, window.darker(112)}, std::pair{inside, window.darker(102)}}) {
            for (const QPoint& corner : {rectangle.topLeft(), rectangle.topRight(),
                     rectangle.bottomLeft(), rectangle.bottomRight()}) {
                QCOMPARE(image.pixelColor(corner).name(), color.name());
            }
        }
        QCOMPARE(image.pixelColor(rim.topRight() - QPoint(0, 1)).name(), window.name());
    }
};

VX440_WINDOW_TEST_MAIN(FormLookTest)
#include "FormLookTest.moc"
