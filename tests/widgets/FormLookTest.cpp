// SPDX-License-Identifier: MIT

#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"

#include <QLineEdit>
#include <QPushButton>
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
        const QFont application = QApplication::font();
        QFont large("DejaVu Serif", 30, QFont::Bold, true);
        large.setStretch(150);
        QApplication::setFont(large);
        for (const char* const name : {"QLabel", "QPushButton", "QLineEdit", "QTabBar", "QGroupBox",
                 "QComboBox", "QHeaderView", "QAbstractItemView", "QToolButton"}) {
            QApplication::setFont(large, name);
        }
        QCoreApplication::processEvents();
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
        QVERIFY(GroundOf(Find<QLineEdit>("txtIpAddress")) != window);
        ShowPage("Azimuth Configuration");
        QCOMPARE(GroundOf(Find<QLineEdit>("txtRotorType")), window);
        ShowPage("Info");
    }
};

VX440_WINDOW_TEST_MAIN(FormLookTest)
#include "FormLookTest.moc"
