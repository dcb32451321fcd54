// SPDX-License-Identifier: MIT

#include "shell/CCustomProgressDialog.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"

#include <QLabel>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QToolTip>
#include <QWindow>
#include <QtTest>

#include <utility>

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
        QToolTip::showText(MainWindow()->pos(), "a tip", MainWindow());
        QLabel tip("a tip", nullptr, Qt::ToolTip);
        tip.show();
        QMessageBox question(MainWindow());
        question.setModal(false);
        question.show();
        QWidget* const parents[] = {nullptr, nullptr, MainWindow(), MainWindow()};
        for (int i = 0; i < 4; ++i) {
            CCustomProgressDialog dialog("Working ...", 0, 100, parents[i]);
            dialog.SetCloseButtonHidden(i % 2 != 0);
            dialog.setValue(1);
            QCOMPARE(dialog.windowHandle()->transientParent(), MainWindow()->windowHandle());
            QCOMPARE(dialog.windowHandle()->type(), Qt::Dialog);
            QCOMPARE(dialog.windowHandle()->modality(), Qt::WindowModal);
        }
        QToolTip::hideText();
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
