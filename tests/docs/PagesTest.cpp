// SPDX-License-Identifier: MIT

#include "tests/support/Warnings.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QtTest>

namespace {

QDir Root()
{
    return QDir(QStringLiteral(SOURCE_FOLDER));
}

QString TextOf(const QString& path)
{
    QFile file(Root().filePath(path));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

// Those in the root and in its folders.
QStringList Pages()
{
    QStringList pages;
    const QStringList folders = Root().entryList(QDir::Dirs | QDir::NoDotDot);
    for (const QString& folder : folders) {
        const QStringList names = QDir(Root().filePath(folder)).entryList({"*.md"});
        for (const QString& name : names) {
            pages.append(QDir::cleanPath(folder + QLatin1Char('/') + name));
        }
    }
    return pages;
}

// As the page has them: a path from the page's folder, and a heading behind "#". Links to other
// sites are left out.
QStringList LinksOf(const QString& page)
{
    static const QRegularExpression form(R"(\]\(([^):]+)\))");
    QStringList links;
    auto found = form.globalMatch(TextOf(page));
    while (found.hasNext()) {
        links.append(found.next().captured(1));
    }
    return links;
}

// What a browser calls the place of a heading.
QString AnchorOf(const QString& heading)
{
    static const QRegularExpression dropped(R"([^\w\s-])");
    return heading.trimmed().toLower().remove(dropped).replace(' ', '-');
}

QStringList AnchorsOf(const QString& page)
{
    static const QRegularExpression form("^#+ (.+)$", QRegularExpression::MultilineOption);
    QStringList anchors;
    auto found = form.globalMatch(TextOf(page));
    while (found.hasNext()) {
        anchors.append(AnchorOf(found.next().captured(1)));
    }
    return anchors;
}

} // namespace

/// The pages of the documentation, as files that refer to each other.
class PagesTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void everyLinkLeadsToAFileAndToOneHeadingOfIt_data();
    void everyLinkLeadsToAFileAndToOneHeadingOfIt();
};

void PagesTest::everyLinkLeadsToAFileAndToOneHeadingOfIt_data()
{
    QTest::addColumn<QString>("page");
    QTest::addColumn<QString>("target");
    const QStringList pages = Pages();
    for (const QString& page : pages) {
        const QStringList links = LinksOf(page);
        for (const QString& target : links) {
            QTest::addRow("%s: %s", qPrintable(page), qPrintable(target)) << page << target;
        }
    }
}

void PagesTest::everyLinkLeadsToAFileAndToOneHeadingOfIt()
{
    QFETCH(QString, page);
    QFETCH(QString, target);
    const QString path = target.section('#', 0, 0);
    const QString anchor = target.section('#', 1);
    const QString file =
        path.isEmpty() ? page : QDir::cleanPath(QFileInfo(page).path() + QLatin1Char('/') + path);
    QVERIFY(Root().exists(file));
    if (!anchor.isEmpty()) {
        QCOMPARE(AnchorsOf(file).count(anchor), 1);
    }
}

QTEST_APPLESS_MAIN(PagesTest)
#include "PagesTest.moc"
