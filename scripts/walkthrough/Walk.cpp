#include "scripts/walkthrough/Walk.h"

#include "scripts/walkthrough/Steps.h"
#include "tests/support/WindowTest.h"

#include <QPixmap>
#include <QTextStream>

Walk::Walk(const WalkSettings& settings)
    : settings(settings)
{
}

bool Walk::Run()
{
    for (const QString& unit : qAsConst(settings.addresses)) {
        WalkThroughUnit(unit);
    }
    if (!settings.searchRange.isEmpty()) {
        address.clear();
        SearchUnits(*this);
    }
    Say(mistakes == 0 ? QStringLiteral("All was as expected.")
                      : QStringLiteral("%1 things were wrong, see above.").arg(mistakes));
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
        Say(QStringLiteral("    ") + command);
    }
}

void Walk::Say(const QString& line) const
{
    QTextStream(stdout) << line << '\n';
}

void Walk::Expect(const QString& line, const QString& seen, const QString& expected)
{
    Say(QStringLiteral("  %1: %2").arg(line, seen));
    if (seen != expected) {
        ++mistakes;
        Say(QStringLiteral("  WRONG: expected \"%1\"").arg(expected));
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
    if (!MainWindow()->grab().save(settings.pictures.filePath(name))) {
        ++mistakes;
        Say(QStringLiteral("  WRONG: the picture %1 cannot be written").arg(name));
    }
}
