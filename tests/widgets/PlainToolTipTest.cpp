// SPDX-License-Identifier: MIT

#include "widgets/PlainToolTip.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"

#include <QLineEdit>
#include <QTextDocument>
#include <QToolTip>
#include <QtTest>

namespace {

// What Qt is given to show as the tip of a line.
QString ShownTip(const QString& tip)
{
    QLineEdit line;
    new CPlainToolTip(&line);
    line.setToolTip(tip);
    line.show();
    AskForTip(&line);
    return line.toolTip() == tip ? QToolTip::text() : "changed";
}

// What the user reads of a line's tip: without the markup that the tip itself is made of, and
// without the places where a long word may be broken.
QString ReadableTip(const QString& tip)
{
    QString text = ShownTip(tip);
    if (text.contains("<img")) {
        return "an image";
    }
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

    void aTipReadsAsItIsWritten()
    {
        for (const QString& text :
            {QString("10 dB"), QString("<b>10</b> dB"), QString("<img src=\"/dev/zero\">"),
                QString("<img src='//host/share/x.png'> x"), QString("<qt style='x'>&amp;</qt>"),
                QString("</p><b>x"), QString("&lt;b&gt; <i>"), QString("<b>  two  blanks "),
                QString("<i>\nx"), QString(1000, 'x'), QString("<b>").repeated(300)}) {
            QCOMPARE(ReadableTip(text), text);
        }
    }

    void ofALongTextTheFirst4000CharactersShow()
    {
        QCOMPARE(ReadableTip(QString(3999, 'x') + "yz"), QString(3999, 'x') + 'y');
    }

    void withoutATipNoneShows() { QCOMPARE(ReadableTip(QString()), QString()); }

    void withoutATipThatOfItsParentShows()
    {
        QWidget page;
        page.setToolTip("of the page");
        QLineEdit line(&page);
        new CPlainToolTip(&line);
        AskForTip(&line);
        QCOMPARE(QToolTip::text(), "of the page");
    }

    void aWidgetWithATipTakesKeys()
    {
        QLineEdit line;
        new CPlainToolTip(&line);
        line.setToolTip("a tip");
        QTest::keyClicks(&line, "abc");
        QCOMPARE(line.text(), "abc");
        QCOMPARE(QToolTip::text(), QString());
    }

    // A tip of 80 characters needs no such place, and no markup around it.
    void aWordMayBeBrokenBehindEach80Characters()
    {
        const QString eighty(80, 'x');
        const QString pair = QString::fromUcs4(U"\U0001F4E1"); // of two surrogates
        const QChar place(0x200B);
        const QPair<QString, QString> rows[] = {
            {eighty + 'y', eighty + place + 'y'},
            {eighty + eighty + 'y', eighty + place + eighty + place + 'y'},
            {eighty + ' ' + eighty, eighty + ' ' + eighty},
            {eighty + ' ' + eighty + 'y', eighty + ' ' + eighty + place + 'y'},
            {eighty.mid(1) + pair + "yz", eighty.mid(1) + pair + place + "yz"},
        };
        for (const auto& [tip, broken] : rows) {
            QCOMPARE(ShownTip(tip), "<p style='white-space:pre-wrap'>" + broken + "</p>");
        }
        QCOMPARE(ShownTip(eighty), eighty);
    }
};

QTEST_MAIN(PlainToolTipTest)
#include "PlainToolTipTest.moc"
