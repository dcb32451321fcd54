// SPDX-License-Identifier: MIT

#include "widgets/PlainToolTip.h"
#include "tests/support/Warnings.h"

#include <QHelpEvent>
#include <QLineEdit>
#include <QTextDocument>
#include <QToolTip>
#include <QtTest>

namespace {

// What the user reads of a line's tip: without the markup that the tip itself is made of, and
// without the places where a long word may be broken.
QString ReadableTip(const QString& tip)
{
    QLineEdit line;
    new CPlainToolTip(&line);
    line.setToolTip(tip);
    line.show();
    QHelpEvent event(QEvent::ToolTip, QPoint(1, 1), line.mapToGlobal(QPoint(1, 1)));
    const bool isTaken = QCoreApplication::sendEvent(&line, &event);
    QString text = QToolTip::text();
    if (!isTaken || line.toolTip() != tip || text.contains("<img")) {
        return "not taken, changed, or an image";
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
};

QTEST_MAIN(PlainToolTipTest)
#include "PlainToolTipTest.moc"
