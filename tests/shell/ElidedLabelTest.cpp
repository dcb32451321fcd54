#include "model/CDeviceDatabase.h"
#include "shell/CElidedLabel.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"

#include <QHelpEvent>
#include <QTabWidget>
#include <QToolTip>
#include <QtTest>

namespace {

constexpr QChar Ellipsis(0x2026);

QLabel* StatusLabel()
{
    return Find<QLabel>("lblAppStatus");
}

QRect PlaceOf(const char* name)
{
    return Find<QWidget>(name)->geometry();
}

void SetStatus(const QString& text)
{
    TheDeviceDatabase()->SetApplicationStatus(text);
    QCoreApplication::processEvents();
}

void AskForTip(QWidget* widget)
{
    const QPoint middle = widget->rect().center();
    QHelpEvent event(QEvent::ToolTip, middle, widget->mapToGlobal(middle));
    QCoreApplication::sendEvent(widget, &event);
}

// Columns of the picture that are not of its background.
int InkedColumns(const QImage& image)
{
    int inked = 0;
    for (int x = 0; x < image.width(); ++x) {
        bool ink = false;
        for (int y = 0; y < image.height(); ++y) {
            ink = ink || image.pixel(x, y) != image.pixel(image.width() - 1, 0);
        }
        inked += ink ? 1 : 0;
    }
    return inked;
}

} // namespace

/// The window's status line, which takes texts of any length and make.
class ElidedLabelTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void cleanup()
    {
        SetStatus(QString());
        QToolTip::hideText();
        QTRY_VERIFY(!QToolTip::isVisible());
        WarningsFail::cleanup();
    }

    void noTextMovesThePagesOrTheLineBesideIt_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("short") << "Updating firmware ..";
        QTest::newRow("300 line feeds") << QString("to v3.") + QString(300, '\n') + "1";
        QTest::newRow("300 line separators") << QString(300, QChar(QChar::LineSeparator));
        QTest::newRow("300 paragraphs") << QString(300, QChar(QChar::ParagraphSeparator));
        QTest::newRow("300 carriage returns") << QString(300, '\r');
        QTest::newRow("300 form feeds") << QString(300, '\f');
        QTest::newRow("markup") << "<h1>x</h1><br><br><br>";
        QTest::newRow("a long word") << QString(100000, 'x');
        QTest::newRow("two hundred megabytes") << QString(200 * 1000 * 1000, 'x');
    }
    void noTextMovesThePagesOrTheLineBesideIt()
    {
        QFETCH(QString, text);
        SetStatus(QString());
        const QRect pages = PlaceOf("tabWidget");
        const QRect connection = PlaceOf("lblConnectionStatus");
        const QRect status = PlaceOf("lblAppStatus");
        SetStatus(text);
        QCOMPARE(StatusLine(), text);
        QCOMPARE(PlaceOf("tabWidget"), pages);
        QCOMPARE(PlaceOf("lblConnectionStatus"), connection);
        QCOMPARE(PlaceOf("lblAppStatus"), status);
        StatusLabel()->grab();
    }

    void whatDoesNotFitIsLeftOutInTheMiddle()
    {
        CElidedLabel label;
        label.resize(200, 20);
        label.setText(QString("aaa ") + QString(5000, 'x') + " zzz");
        const QImage whole = label.grab().toImage();
        label.setText(QString("aaa ") + QString(300, 'x') + " zzz");
        QCOMPARE(label.grab().toImage(), whole);
        label.setText(QString("aaa ") + QString(300, 'x') + " zzy");
        QVERIFY(label.grab().toImage() != whole);
        label.setText(label.fontMetrics().elidedText(
            QString("aaa ") + QString(300, 'x') + " zzz", Qt::ElideMiddle, 200));
        QVERIFY(label.text().contains(Ellipsis));
        QCOMPARE(label.grab().toImage(), whole);
    }

    void aLineFeedShowsAsABlank()
    {
        CElidedLabel label;
        label.resize(200, 20);
        label.setText("a b c d");
        const QImage blanks = label.grab().toImage();
        QVERIFY(InkedColumns(blanks) > 0);
        label.setText(QString("a\nb\rc") + QChar(QChar::LineSeparator) + 'd');
        QCOMPARE(label.grab().toImage(), blanks);
    }

    void aTextThatDoesNotFitIsWholeInItsTip()
    {
        const QString path =
            QString("Saved to file /") + QString("folder <b>/").repeated(30) + "a.txt";
        SetStatus(path);
        AskForTip(StatusLabel());
        const QString tip = QToolTip::text();
        QVERIFY(tip.contains(path.toHtmlEscaped()));
        QCOMPARE(StatusLabel()->toolTip(), QString());
    }

    void aTextThatFitsHasNoTip()
    {
        SetStatus("Options read from device successfully.");
        AskForTip(StatusLabel());
        QCOMPARE(QToolTip::text(), QString());
    }
};

VX440_WINDOW_TEST_MAIN(ElidedLabelTest)
#include "ElidedLabelTest.moc"
