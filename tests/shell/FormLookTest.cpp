#include "options/CTabOptions.h"
#include "shell/CMainDialog.h"
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

// Whether two texts look the same on buttons of the same kind.
bool LookAlike(QWidget* parent, const char* one, const char* other)
{
    QImage images[2];
    const char* const texts[2] = {one, other};
    for (int i = 0; i < 2; ++i) {
        QPushButton button(QString::fromLatin1(texts[i]), parent);
        button.resize(200, 30);
        images[i] = button.grab().toImage();
    }
    return images[0] == images[1];
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
        QFont large(QStringLiteral("DejaVu Serif"), 30, QFont::Bold, true);
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
        QVERIFY(!LookAlike(MainWindow(), "&Open", "Open"));
        QVERIFY(!LookAlike(MainWindow(), "Z&K", "Z&&K"));
        CTabOptions page(nullptr);
        QVERIFY(!LookAlike(&page, "&Open", "Open"));
        QFileDialog dialog(MainWindow());
        QVERIFY(!LookAlike(&dialog, "&Open", "&&Open"));
        dialog.show(); // as long as no Alt key is down, some styles do not underline
        const auto buttons = dialog.findChildren<QPushButton*>();
        QVERIFY(!buttons.isEmpty());
        for (const QPushButton* const button : buttons) {
            QVERIFY(button->shortcut().isEmpty() == !button->text().contains(QLatin1Char('&')));
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
