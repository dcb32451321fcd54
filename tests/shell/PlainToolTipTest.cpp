#include "shell/PlainToolTip.h"
#include "tests/support/Warnings.h"

#include <QHelpEvent>
#include <QLineEdit>
#include <QTextDocument>
#include <QToolTip>
#include <QtTest>

namespace {

// What the user reads: without the markup that the tip itself is made of, and without the places
// where a long word may be broken.
QString ReadableTip()
{
    QString text = QToolTip::text();
    if (Qt::mightBeRichText(text)) {
        QTextDocument document;
        document.setHtml(text);
        text = document.toPlainText();
    }
    return text.remove(QChar(0x200B));
}

} // namespace

class PlainToolTipTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void cleanup()
    {
        QToolTip::hideText();
        QTRY_VERIFY(!QToolTip::isVisible());
        WarningsFail::cleanup();
    }

    void aTipReadsAsItIsWritten_data()
    {
        QTest::addColumn<QString>("text");
        const auto row = [](const char* name, const QString& text) { QTest::newRow(name) << text; };
        row("plain", "10 dB");
        row("bold", "<b>10</b> dB");
        row("an image", "<img src=\"/dev/zero\">");
        row("an image elsewhere", "<img src='//host/share/x.png'> x");
        row("a style", "<qt style='x'>&amp;</qt>");
        row("an end of a paragraph", "</p><b>x");
        row("entities", "&lt;b&gt; <i>");
        row("blanks", "<b>  two  blanks ");
        row("two lines", "<i>\nx");
        row("a long word", QString(1000, 'x'));
        row("a long word of markup", QString("<b>").repeated(300));
    }
    void aTipReadsAsItIsWritten()
    {
        QFETCH(QString, text);
        QLineEdit line;
        new CPlainToolTip(&line);
        line.setToolTip(text);
        line.show();
        QHelpEvent event(QEvent::ToolTip, QPoint(1, 1), line.mapToGlobal(QPoint(1, 1)));
        QVERIFY(QCoreApplication::sendEvent(&line, &event));
        QCOMPARE(ReadableTip(), text);
        QCOMPARE(line.toolTip(), text);
        QVERIFY(!QToolTip::text().contains("<img"));
    }

    void ofALongTextTheFirst4000CharactersShow()
    {
        QLineEdit line;
        new CPlainToolTip(&line);
        line.setToolTip(QString(3999, 'x') + "yz");
        line.show();
        QHelpEvent event(QEvent::ToolTip, QPoint(1, 1), line.mapToGlobal(QPoint(1, 1)));
        QCoreApplication::sendEvent(&line, &event);
        QCOMPARE(ReadableTip(), QString(3999, 'x') + 'y');
    }

    void withoutATipNoneShows()
    {
        QLineEdit line;
        new CPlainToolTip(&line);
        line.show();
        QHelpEvent event(QEvent::ToolTip, QPoint(1, 1), line.mapToGlobal(QPoint(1, 1)));
        QCoreApplication::sendEvent(&line, &event);
        QCOMPARE(QToolTip::text(), QString());
    }
};

QTEST_MAIN(PlainToolTipTest)
#include "PlainToolTipTest.moc"
