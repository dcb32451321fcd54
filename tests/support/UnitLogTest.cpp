// SPDX-License-Identifier: MIT

#include "tests/support/UnitLog.h"

#include "tests/support/Warnings.h"

#include <QTemporaryDir>
#include <QtTest>

/// What the walk-through reads of a unit's log, and how it shows it.
class UnitLogTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void aShortCommandIsShownAsItIs();
    void aLongCommandShowsItsFirstBytesAndItsLength();
    void theLongestCommandFitsAScreen();
    void theLogKeepsAllOfALongCommand();
};

namespace {

// A firmware block: the longest command of all.
const QString LongestCommand = QString("CF3 04B0DCA5") + QString(1216 * 2, '0');

} // namespace

void UnitLogTest::aShortCommandIsShownAsItIs()
{
    // The twelve words of a rotator are the most that is shown in full.
    const QString rotator = QString("HCF ") + QString("01F4").repeated(12);
    QCOMPARE(ShortLine(rotator), rotator);
    QCOMPARE(ShortLine("*IDN?"), "*IDN?");
}

void UnitLogTest::aLongCommandShowsItsFirstBytesAndItsLength()
{
    QCOMPARE(
        ShortLine(LongestCommand), QString("CF3 04B0DCA5") + QString(40, '0') + "... (1220 bytes)");
    QCOMPARE(ShortLine(QString("CF10 ") + QString("3B").repeated(25)),
        QString("CF10 ") + QString("3B").repeated(24) + "... (25 bytes)");
}

void UnitLogTest::theLongestCommandFitsAScreen()
{
    constexpr int Columns = 80;
    constexpr int Indent = 4;
    QVERIFY(ShortLine(LongestCommand).size() <= Columns - Indent);
}

void UnitLogTest::theLogKeepsAllOfALongCommand()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath("unit.log"));
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    UnitLog log(file.fileName());
    file.write("connected 127.0.0.1:40000\n" + LongestCommand.toLatin1() + '\n');
    QCOMPARE(log.Commands(), QStringList{LongestCommand});
}

QTEST_APPLESS_MAIN(UnitLogTest)
#include "UnitLogTest.moc"
