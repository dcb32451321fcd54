// SPDX-License-Identifier: MIT

#include "shell/CCustomProgressDialog.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"

#include <QKeyEvent>
#include <QProgressBar>
#include <QPushButton>
#include <QWindow>
#include <QtTest>

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

namespace {

// How much of the bar's width has the colour of what is done, in percent. Looked at below the text.
int PercentFilled(const CCustomProgressDialog& dialog)
{
    auto* const bar = dialog.findChild<QProgressBar*>();
    const QImage image = bar->grab().toImage();
    const QColor done = bar->palette().color(QPalette::Highlight);
    int filled = 0;
    for (int x = 0; x < image.width(); ++x) {
        filled += image.pixelColor(x, image.height() - 3) == done ? 1 : 0;
    }
    return qRound(100.0 * filled / image.width());
}

QImage PictureOf(QProgressBar& bar, int value)
{
    bar.setValue(value);
    return bar.grab().toImage();
}

bool HasCorners(const QImage& image, const QRect& rectangle, const QColor& color)
{
    const QPoint corners[] = {
        rectangle.topLeft(), rectangle.topRight(), rectangle.bottomLeft(), rectangle.bottomRight()};
    return std::all_of(std::begin(corners), std::end(corners),
        [&](const QPoint& corner) { return image.pixel(corner) == color.rgb(); });
}

// Windows of all sorts. There are many of each, since Qt gives its windows in no certain order.
std::vector<std::unique_ptr<QWidget>> ShowOtherWindows()
{
    std::vector<std::unique_ptr<QWidget>> windows;
    for (int i = 0; i < 20; ++i) {
        windows.push_back(std::make_unique<QWidget>(nullptr, Qt::Tool));
        windows.push_back(std::make_unique<QDialog>(MainWindow()));
        windows.push_back(std::make_unique<QProgressDialog>());
    }
    for (const auto& window : windows) {
        window->show();
    }
    return windows;
}

} // namespace

class CustomProgressDialogTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void itHasNoCancelButtonAndBlocksItsWindow()
    {
        CCustomProgressDialog dialog("Working ...", 0, 100, MainWindow());
        QCOMPARE(dialog.labelText(), "Working ...");
        QCOMPARE(dialog.minimum(), 0);
        QCOMPARE(dialog.maximum(), 100);
        QCOMPARE(dialog.windowModality(), Qt::WindowModal);
        QCOMPARE(dialog.minimumDuration(), 0);
        QVERIFY(dialog.findChildren<QPushButton*>().isEmpty());
    }

    void itShowsAtItsFirstValue()
    {
        for (const auto& [maximum, value] : {std::pair{100, 1}, std::pair{0, 200}}) {
            CCustomProgressDialog dialog("Working ...", 0, maximum, MainWindow());
            QVERIFY(!dialog.isVisible());
            dialog.setValue(value);
            QVERIFY(dialog.isVisible());
        }
    }

    void theBarIsFilledAsFarAsTheWorkIs()
    {
        const struct
        {
            int minimum, maximum, value, percent;
        } rows[] = {{0, 100, 0, 0}, {0, 300064, 75016, 25}, {1, 401, 301, 75}, {0, 100, 97, 97}};
        for (const auto& row : rows) {
            CCustomProgressDialog dialog("Working ...", row.minimum, row.maximum, MainWindow());
            dialog.setValue(row.value);
            const int filled = PercentFilled(dialog);
            QVERIFY2(qAbs(filled - row.percent) <= 1, qPrintable(QString::number(filled)));
        }
    }

    void theBarHasARimAndIsFilledToItsEnds()
    {
        const CCustomProgressDialog dialog("Working ...", 0, 100, MainWindow());
        auto& bar = *dialog.findChild<QProgressBar*>();
        const QPalette colors = bar.palette();
        for (const auto& [value, color] : {std::pair{0, colors.color(QPalette::Base)},
                 std::pair{100, colors.color(QPalette::Highlight)}}) {
            const QImage image = PictureOf(bar, value);
            QVERIFY(HasCorners(image, image.rect(), colors.color(QPalette::Dark)));
            QVERIFY(HasCorners(image, image.rect().adjusted(1, 1, -1, -1), color));
        }
    }

    void theBarSaysHowFarItIs()
    {
        const CCustomProgressDialog dialog("Working ...", 0, 100, MainWindow());
        auto& bar = *dialog.findChild<QProgressBar*>();
        const QImage withText = PictureOf(bar, 50);
        bar.setFormat(QString());
        QVERIFY(PictureOf(bar, 50) != withText);
    }

    void aBarWithoutAnEndIsNeitherEmptyNorFull()
    {
        const CCustomProgressDialog dialog("Working ...", 0, 0, MainWindow());
        auto& bar = *dialog.findChild<QProgressBar*>();
        const QImage busy = PictureOf(bar, 200);
        bar.setRange(0, 200);
        bar.setFormat(QString());
        QVERIFY(PictureOf(bar, 0) != busy);
        QVERIFY(PictureOf(bar, 200) != busy);
    }

    void itAndItsBarHaveNames()
    {
        for (QWidget* const parent : {static_cast<QWidget*>(nullptr), MainWindow()}) {
            const CCustomProgressDialog dialog("Working ...", 0, 100, parent);
            QCOMPARE(dialog.windowTitle(), "Z&K VX440 Access Application");
            QCOMPARE(dialog.findChild<QProgressBar*>()->accessibleName(), "Working ...");
        }
    }

    void theTitleBarsButtonCancelsAndEscapeDoesNot()
    {
        CCustomProgressDialog dialog("Working ...", 0, 100, MainWindow());
        dialog.setValue(1);
        QTest::keyClick(dialog.windowHandle(), Qt::Key_Escape);
        QTest::keyClick(&dialog, Qt::Key_Escape);
        QVERIFY(dialog.isVisible());
        QVERIFY(!dialog.wasCanceled());
        CloseByTitleBar(&dialog);
        QVERIFY(!dialog.isVisible());
        QVERIFY(dialog.wasCanceled());
    }

    void everyEventOfEscapeEndsInIt()
    {
        CCustomProgressDialog dialog("Working ...", 0, 100, MainWindow());
        for (const auto type : {QEvent::ShortcutOverride, QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent escape(type, Qt::Key_Escape, Qt::NoModifier);
            escape.ignore();
            QVERIFY(QCoreApplication::sendEvent(&dialog, &escape));
            QVERIFY(escape.isAccepted());
        }
    }

    void withoutAParentItStillBlocksTheWindow()
    {
        CCustomProgressDialog dialog("Working ...", 0, 0);
        QVERIFY(dialog.parentWidget() == nullptr);
        dialog.setValue(1);
        QCOMPARE(dialog.windowHandle()->transientParent(), MainWindow()->windowHandle());
        CloseByTitleBar(MainWindow());
        QVERIFY(MainWindow()->isVisible());
    }

    void itStaysAboveTheMainWindowWhateverElseIsOnShow()
    {
        const auto others = ShowOtherWindows();
        QWidget* const parents[] = {nullptr, nullptr, MainWindow(), MainWindow()};
        for (int i = 0; i < 4; ++i) {
            CCustomProgressDialog dialog("Working ...", 0, 100, parents[i]);
            dialog.SetCloseButtonHidden(i % 2 != 0);
            dialog.setValue(1);
            QCOMPARE(dialog.windowTitle(), MainWindow()->windowTitle());
            QCOMPARE(dialog.windowHandle()->transientParent(), MainWindow()->windowHandle());
            QCOMPARE(dialog.windowHandle()->type(), Qt::Dialog);
            QCOMPARE(dialog.windowHandle()->modality(), Qt::WindowModal);
        }
    }

    void withItsCloseButtonHiddenNothingOfTheUsersClosesIt()
    {
        CCustomProgressDialog dialog("Working ...", 0, 100, MainWindow());
        dialog.SetCloseButtonHidden(true);
        dialog.setValue(1);
        CloseByTitleBar(&dialog);
        QVERIFY(dialog.isVisible());
        QVERIFY(!dialog.wasCanceled());
        dialog.close();
        QVERIFY(!dialog.isVisible());
    }

    void hidingTheCloseButtonLeavesABareTitleBar()
    {
        CCustomProgressDialog dialog("Working ...", 0, 0, MainWindow());
        const Qt::WindowFlags before = dialog.windowFlags();
        dialog.SetCloseButtonHidden(false);
        QCOMPARE(dialog.windowFlags(), before);
        dialog.SetCloseButtonHidden(true);
        QCOMPARE(int(dialog.windowFlags()), 0x02001001);
    }
};

VX440_WINDOW_TEST_MAIN(CustomProgressDialogTest)
#include "CustomProgressDialogTest.moc"
