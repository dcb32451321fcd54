// SPDX-License-Identifier: MIT

#include "model/CDeviceDatabase.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"
#include "widgets/CElidedLabel.h"

#include <QToolTip>
#include <QtTest>

#include <utility>

namespace {

constexpr QChar Ellipsis(0x2026);

QLabel* StatusLabel()
{
    return Find<QLabel>("lblAppStatus");
}

// Where the pages and the two status lines are.
QVector<QRect> Places()
{
    return {Find<QWidget>("tabWidget")->geometry(),
        Find<QWidget>("lblConnectionStatus")->geometry(), StatusLabel()->geometry()};
}

void SetStatus(const QString& text)
{
    TheDeviceDatabase()->SetApplicationStatus(text);
    QCoreApplication::processEvents();
}

// A label that has room for much more than the window.
template<class Label>
QImage WidePicture(const QString& text)
{
    Label label;
    label.setTextFormat(Qt::PlainText);
    label.resize(8000, 20);
    label.setText(text);
    return label.grab().toImage();
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

    void noTextMovesThePagesOrTheLineBesideIt()
    {
        const QVector<QRect> before = Places();
        const QString texts[] = {"Updating firmware ..", "to v3." + QString(300, '\n') + "1",
            QString(300, QChar(QChar::LineSeparator)),
            QString(300, QChar(QChar::ParagraphSeparator)), QString(300, '\r'), QString(300, '\f'),
            "<h1>x</h1><br><br><br>", QString(100000, 'x'), QString(200 * 1000 * 1000, 'x')};
        for (const QString& text : texts) {
            SetStatus(text);
            QVERIFY2(StatusLine() == text, qPrintable(text.left(20)));
            QVERIFY2(Places() == before, qPrintable(text.left(20)));
            StatusLabel()->grab();
        }
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
        label.setText(QString("a\fb\tc") + QChar(QChar::ParagraphSeparator) + 'd');
        QCOMPARE(label.grab().toImage(), blanks);
    }

    void ofMoreThan1000CharactersOnlyTheTwoEndsOf500AreLookedAt()
    {
        const QString end = QString(499, 'l');
        const std::pair<QString, QString> rows[] = {{end + "ab" + end, end + "ab" + end},
            {end + "abc" + end, end + 'a' + Ellipsis + 'c' + end},
            {end + 'a' + QString(5000, 'x') + 'c' + end, end + 'a' + Ellipsis + 'c' + end}};
        for (const auto& [text, shown] : rows) {
            QCOMPARE(WidePicture<CElidedLabel>(text), WidePicture<QLabel>(shown));
        }
    }

    void itAsksForTheRoomOfThreeLettersWhateverItsTextIs()
    {
        for (const char* const text : {"", "Updating firmware .."}) {
            CElidedLabel label;
            label.setText(text);
            const QFontMetrics letters = label.fontMetrics();
            const QSize room(3 * letters.averageCharWidth(), letters.height());
            QCOMPARE(label.sizeHint(), room);
            QCOMPARE(label.minimumSizeHint(), room);
        }
    }

    void aTextHasATipAsSoonAsItIsAPixelTooLong()
    {
        CElidedLabel label;
        label.setText(QString(1000, 'l'));
        const int width = label.fontMetrics().horizontalAdvance(label.text());
        label.resize(width, 20);
        QVERIFY(!AskForTip(&label));
        label.resize(width - 1, 20);
        QVERIFY(AskForTip(&label));
    }

    void aTextThatDoesNotFitIsWholeInItsTip()
    {
        const QString path =
            QString("Saved to file /") + QString("folder <b>/").repeated(30) + "a.txt";
        SetStatus(path);
        QVERIFY(AskForTip(StatusLabel()));
        const QString tip = QToolTip::text();
        QVERIFY(tip.contains(path.toHtmlEscaped()));
        QCOMPARE(StatusLabel()->toolTip(), QString());
    }

    void aTextThatFitsHasNoTip()
    {
        SetStatus("Options read from device successfully.");
        QVERIFY(!AskForTip(StatusLabel()));
        QCOMPARE(QToolTip::text(), QString());
    }
};

VX440_WINDOW_TEST_MAIN(ElidedLabelTest)
#include "ElidedLabelTest.moc"
