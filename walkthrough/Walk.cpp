// SPDX-License-Identifier: MIT

#include "walkthrough/Walk.h"

#include "tests/support/WindowTest.h"
#include "walkthrough/Steps.h"

#include <QPixmap>
#include <QTextStream>
#include <QtTest>

Walk::Walk(const WalkSettings& settings)
    : settings(settings)
{
}

bool Walk::Run()
{
    Require(QTest::qWaitForWindowExposed(MainWindow()), "the window is not shown");
    Require(settings.pictures.mkpath("."), "the folder of the pictures cannot be made");
    for (const QString& unit : qAsConst(settings.addresses)) {
        WalkThroughUnit(unit);
    }
    if (settings.searchRange.isEmpty()) {
        Say("No search.");
    } else {
        address.clear();
        SearchUnits(*this);
    }
    Say(mistakes == 0 ? "All was as expected." : QString("Wrong above: %1.").arg(mistakes));
    return mistakes == 0;
}

void Walk::WalkThroughUnit(const QString& unit)
{
    address = unit;
    log.reset(new UnitLog(settings.unitLogs.filePath(QString("unit-%1.log").arg(unit))));
    picturesOfUnit = 0;
    const int mistakesBefore = mistakes;
    Say(QString("Unit %1").arg(unit));
    for (const Step& step : UnitSteps()) {
        if (mistakes == mistakesBefore) {
            step(*this);
        }
    }
    Say("  the unit received:");
    const QStringList commands = log->Commands();
    for (const QString& command : commands) {
        Say(QString("    ") + ShortLine(command));
    }
}

void Walk::Say(const QString& line) const
{
    QTextStream(stdout) << line << '\n';
}

void Walk::Expect(const QString& line, const QString& seen, const QString& expected)
{
    Say(QString("  %1: %2").arg(line, seen));
    Require(seen == expected, QString("expected \"%1\"").arg(expected));
}

void Walk::Require(bool right, const QString& complaint)
{
    if (!right) {
        ++mistakes;
        Say(QString("  WRONG: ") + complaint);
    }
}

void Walk::TakePicture(const QString& name)
{
    if (!address.isEmpty()) {
        ++picturesOfUnit;
        Save(QString("%1-%2-%3.png").arg(address).arg(picturesOfUnit).arg(name));
    }
    if (address.isEmpty() || address == settings.addresses.first()) {
        Save(name + ".png");
    }
}

void Walk::Save(const QString& name)
{
    Require(MainWindow()->grab().save(settings.pictures.filePath(name)),
        QString("the picture %1 cannot be written").arg(name));
}
