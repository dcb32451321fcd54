#include "scripts/walkthrough/Walk.h"

#include "scripts/walkthrough/Steps.h"
#include "tests/support/WindowTest.h"

#include <QPixmap>
#include <QTextStream>
#include <QtTest>

Walk::Walk(const WalkSettings& settings)
    : settings(settings)
{
}

bool Walk::Run()
{
    Require(QTest::qWaitForWindowExposed(MainWindow()), QStringLiteral("the window is not shown"));
    Require(settings.pictures.mkpath(QStringLiteral(".")),
        QStringLiteral("the folder of the pictures cannot be made"));
    for (const QString& unit : qAsConst(settings.addresses)) {
        WalkThroughUnit(unit);
    }
    if (settings.searchRange.isEmpty()) {
        Say(QStringLiteral("No search."));
    } else {
        address.clear();
        SearchUnits(*this);
    }
    Say(mistakes == 0 ? QStringLiteral("All was as expected.")
                      : QStringLiteral("Wrong above: %1.").arg(mistakes));
    return mistakes == 0;
}

void Walk::WalkThroughUnit(const QString& unit)
{
    address = unit;
    log.reset(new UnitLog(settings.unitLogs.filePath(QStringLiteral("unit-%1.log").arg(unit))));
    picturesOfUnit = 0;
    const int mistakesBefore = mistakes;
    Say(QStringLiteral("Unit %1").arg(unit));
    for (const Step& step : UnitSteps()) {
        if (mistakes == mistakesBefore) {
            step(*this);
        }
    }
    Say(QStringLiteral("  the unit received:"));
    const QStringList commands = log->Commands();
    for (const QString& command : commands) {
        Say(QStringLiteral("    ") + ShortLine(command));
    }
}

void Walk::Say(const QString& line) const
{
    QTextStream(stdout) << line << '\n';
}

void Walk::Expect(const QString& line, const QString& seen, const QString& expected)
{
    Say(QStringLiteral("  %1: %2").arg(line, seen));
    Require(seen == expected, QStringLiteral("expected \"%1\"").arg(expected));
}

void Walk::Require(bool right, const QString& complaint)
{
    if (!right) {
        ++mistakes;
        Say(QStringLiteral("  WRONG: ") + complaint);
    }
}

void Walk::TakePicture(const QString& name)
{
    if (!address.isEmpty()) {
        ++picturesOfUnit;
        Save(QStringLiteral("%1-%2-%3.png").arg(address).arg(picturesOfUnit).arg(name));
    }
    if (address.isEmpty() || address == settings.addresses.first()) {
        Save(name + QStringLiteral(".png"));
    }
}

void Walk::Save(const QString& name)
{
    Require(MainWindow()->grab().save(settings.pictures.filePath(name)),
        QStringLiteral("the picture %1 cannot be written").arg(name));
}
