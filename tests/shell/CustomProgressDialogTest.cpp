#include "shell/CCustomProgressDialog.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"

#include <QLabel>
#include <QPushButton>
#include <QWindow>
#include <QtTest>

class CustomProgressDialogTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void itHasNoCancelButtonAndBlocksItsWindow()
    {
        CCustomProgressDialog dialog(QStringLiteral("Working ..."), 0, 100, MainWindow());
        QCOMPARE(dialog.labelText(), QStringLiteral("Working ..."));
        QCOMPARE(dialog.minimum(), 0);
        QCOMPARE(dialog.maximum(), 100);
        QCOMPARE(dialog.windowModality(), Qt::WindowModal);
        QCOMPARE(dialog.minimumDuration(), 0);
        QVERIFY(dialog.findChildren<QPushButton*>().isEmpty());
    }

    void itShowsAtItsFirstValue_data()
    {
        QTest::addColumn<int>("maximum");
        QTest::addColumn<int>("value");
        QTest::newRow("a bar") << 100 << 1;
        QTest::newRow("busy") << 0 << 200;
    }
    void itShowsAtItsFirstValue()
    {
        QFETCH(int, maximum);
        QFETCH(int, value);
        CCustomProgressDialog dialog(QStringLiteral("Working ..."), 0, maximum, MainWindow());
        QVERIFY(!dialog.isVisible());
        dialog.setValue(value);
        QVERIFY(dialog.isVisible());
    }

    void escapeChangesNothing()
    {
        CCustomProgressDialog dialog(QStringLiteral("Working ..."), 0, 100, MainWindow());
        dialog.setValue(1);
        QTest::keyClick(dialog.windowHandle(), Qt::Key_Escape);
        QTest::keyClick(&dialog, Qt::Key_Escape);
        QVERIFY(dialog.isVisible());
        QVERIFY(!dialog.wasCanceled());
    }

    void theTitleBarsButtonCancels()
    {
        CCustomProgressDialog dialog(QStringLiteral("Working ..."), 0, 100, MainWindow());
        dialog.setValue(1);
        CloseByTitleBar(&dialog);
        QVERIFY(!dialog.isVisible());
        QVERIFY(dialog.wasCanceled());
    }

    void withoutAParentItStillBlocksTheWindow()
    {
        CCustomProgressDialog dialog(QStringLiteral("Working ..."), 0, 0);
        QVERIFY(dialog.parentWidget() == nullptr);
        dialog.setValue(1);
        QCOMPARE(dialog.windowHandle()->transientParent(), MainWindow()->windowHandle());
        CloseByTitleBar(MainWindow());
        QVERIFY(MainWindow()->isVisible());
    }

    void hidingTheCloseButtonLeavesABareTitleBar()
    {
        CCustomProgressDialog dialog(QStringLiteral("Working ..."), 0, 0, MainWindow());
        const Qt::WindowFlags before = dialog.windowFlags();
        dialog.SetCloseButtonHidden(false);
        QCOMPARE(dialog.windowFlags(), before);
        dialog.SetCloseButtonHidden(true);
        QCOMPARE(int(dialog.windowFlags()), 0x02001001);
    }
};

VX440_WINDOW_TEST_MAIN(CustomProgressDialogTest)
#include "CustomProgressDialogTest.moc"
