// SPDX-License-Identifier: MIT

#include "options/CDeviceOptions.h"
#include "tests/support/Warnings.h"
#include "tests/support/workbooks/OptionsWorkbook.h"

#include <QTemporaryDir>
#include <QtTest>

#include <tuple>

namespace {

const QString InvalidFile = "Error: Invalid options file!!";
const QString TooLong = "Error: Options description string too long!";
const QString Untouched = "as it was";

QStringList Numbered(const char* name, int count)
{
    QStringList texts;
    for (int index = 0; index < count; ++index) {
        texts.append(QString(name) + QString::number(index));
    }
    return texts;
}

QStringList With(QStringList texts, int index, const QString& text)
{
    texts[index] = text;
    return texts;
}

QVector<OptionItems> Shown(const CDeviceOptions& options)
{
    return {options.DcFeedItems, options.AttenuatorItems, options.Filter1Items,
        options.Filter2Items, options.AmplifierItems, options.AzimuthRotatorItems,
        options.PolarRotatorItems};
}

} // namespace

class OptionsFileTest : public WarningsFail
{
    Q_OBJECT

    QString NewPath() { return folder.filePath(QString::number(++paths)); }

    QString Workbook(const QStringList& names, const QStringList& descriptions = {})
    {
        const QString path = NewPath();
        return WriteOptionsWorkbook(path, names, descriptions) ? path : QString();
    }

    // Reads a workbook with another text in each cell.
    void Fill(CDeviceOptions& options)
    {
        QString error;
        QVERIFY(options.ReadOptionsFile(
            Workbook(Numbered("before ", 22), Numbered("text ", 22)), error));
    }

    QTemporaryDir folder;
    int paths = 0;

private slots:
    void everyRowIsReadIntoItsPosition()
    {
        CDeviceOptions options;
        QString error = Untouched;
        QVERIFY(
            options.ReadOptionsFile(Workbook(Numbered("name ", 22), Numbered("text ", 22)), error));
        QCOMPARE(error, Untouched);
        QVERIFY(options.IsValid());
        QCOMPARE(options.InternalOptions, Numbered("name ", 22).toVector());
        QCOMPARE(options.OptionDescriptions.size(), 22);
        for (int index = 0; index < 22; ++index) {
            const bool read = !QVector<int>{0, 1, 5, 6, 21}.contains(index);
            QCOMPARE(options.OptionDescriptions.at(index),
                read ? QString("text %1").arg(index) : QString());
        }
        QCOMPARE(options.AzimuthRotatorItems, (OptionItems{{"name 19", "text 19"}}));
        QCOMPARE(options.PolarRotatorItems, (OptionItems{{"name 20", "text 20"}}));
    }

    // A blank name is 0.
    void aCellIsTakenWithoutItsBlanks()
    {
        const std::pair<QString, QString> rows[] = {{QString(), ""}, {"", ""}, {"  \t ", ""},
            {"VX440-DCF", "VX440-DCF"}, {"  a ", "a"}, {"a  \n b", "a b"}, {"none", "none"},
            {"\u00FC", "\u00FC"}};
        for (const auto& [cell, text] : rows) {
            CDeviceOptions options;
            QString error;
            QVERIFY(options.ReadOptionsFile(
                Workbook(With(Numbered("n", 22), 3, cell), With(Numbered("d", 22), 3, cell)),
                error));
            QCOMPARE(options.InternalOptions.at(3), text.isEmpty() ? "0" : text);
            QCOMPARE(options.OptionDescriptions.at(3), text);
        }
    }

    void aFileIsJudged()
    {
        const QStringList names = Numbered("n", 22);
        const QStringList names23 = Numbered("n", 23);
        const QStringList texts = Numbered("d", 22);
        const QStringList texts23 = Numbered("d", 23);
        const QStringList empty = QString(21, '|').split('|');
        const QString x643(643, 'x');
        const QString x644(644, 'x');
        const QStringList unread = With(With(empty, 5, x643), 21, x643);
        const std::tuple<QStringList, QStringList, QString, int, int, bool> rows[] = {
            {names, texts, Untouched, 22, 22, true},
            {names.mid(1), texts.mid(1), InvalidFile, 21, 21, false},
            {names23, texts23, InvalidFile, 23, 22, false},
            {{}, {}, InvalidFile, 0, 0, false},
            {names.mid(0, 1), texts.mid(0, 1), InvalidFile, 1, 1, false},
            {names.mid(1), texts, Untouched, 22, 22, true}, // the last row has column B alone
            {names, texts23, InvalidFile, 23, 22, false},   // the last row has column B alone
            {names, {}, TooLong, 22, 0, true},
            {names.mid(1), {}, InvalidFile, 21, 0, false},
            {{}, texts, Untouched, 22, 22, true},
            {names, With(empty, 8, x643), Untouched, 22, 22, true},
            {names, With(empty, 8, x644), TooLong, 22, 22, false},
            {names, unread, Untouched, 22, 22, true},
            {names23, With(empty, 8, x644), InvalidFile, 23, 22, false},
        };
        for (const auto& [names, descriptions, error, internalSize, descriptionSize, valid] :
            rows) {
            CDeviceOptions options;
            Fill(options);
            const auto shownBefore = Shown(options);
            QString said = Untouched;
            const bool good = error == Untouched;
            QCOMPARE(options.ReadOptionsFile(Workbook(names, descriptions), said), good);
            QCOMPARE(said, error);
            QCOMPARE(options.InternalOptions.size(), internalSize);
            QCOMPARE(options.OptionDescriptions.size(), descriptionSize);
            QCOMPARE(options.InternalValid, internalSize == 22);
            QCOMPARE(options.IsValid(), valid);
            QCOMPARE(Shown(options) != shownBefore, good);
        }
    }

    // No name, no such file, a folder, and a text.
    void aFileThatIsNoWorkbookIsInvalid()
    {
        QFile text(NewPath());
        QVERIFY(text.open(QIODevice::WriteOnly) && text.write("VX440-DCF\n") > 0);
        text.close();
        for (const QString& path : {QString(), NewPath(), folder.path(), text.fileName()}) {
            CDeviceOptions options;
            Fill(options);
            const auto shownBefore = Shown(options);
            QString error;
            QVERIFY2(!options.ReadOptionsFile(path, error), qPrintable(path));
            QCOMPARE(error, InvalidFile);
            QVERIFY(!options.IsValid());
            QVERIFY(options.InternalOptions.isEmpty());
            QVERIFY(options.OptionDescriptions.isEmpty());
            QVERIFY(options.DescriptionValid); // no description is not too long
            QCOMPARE(Shown(options), shownBefore);
            QCOMPARE(options.GetInternalOptions(), QString());
        }
    }

    void eachColumnIsReadOnItsOwn()
    {
        const QString path = Workbook(Numbered("n", 22), Numbered("d", 22));
        CDeviceOptions options;
        QVERIFY(options.ReadInternalColumn(path));
        QVERIFY(options.InternalValid);
        QVERIFY(!options.DescriptionValid);
        QVERIFY(options.OptionDescriptions.isEmpty());
        QVERIFY(options.ReadDescriptionColumn(path));
        QVERIFY(options.IsValid());
        QCOMPARE(Shown(options), QVector<OptionItems>(7)); // for ReadOptionsFile to fill
    }

    void whatTheUnitAnswersNextReplacesAFile()
    {
        CDeviceOptions options;
        QString error;
        QVERIFY(!options.ReadOptionsFile(Workbook(Numbered("n", 23), Numbered("d", 23)), error));
        // Too few fields: what the file gave stands, and is judged again.
        QVERIFY(!options.ParseDeviceOptions("0,0", QString()));
        QCOMPARE(options.InternalOptions.size(), 23);
        QVERIFY(options.ParseDeviceOptions(Numbered("n", 19).join(','), QString(18, ';')));
        QCOMPARE(options.AzimuthRotatorItems, (OptionItems{{"n17", QString()}}));
    }
};

QTEST_GUILESS_MAIN(OptionsFileTest)
#include "OptionsFileTest.moc"
