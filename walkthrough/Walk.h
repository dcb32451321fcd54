// SPDX-License-Identifier: MIT

#pragma once

#include "tests/support/UnitLog.h"

#include <QDir>
#include <QStringList>
#include <QVector>

/// What the command line asks for.
struct WalkSettings
{
    QStringList addresses;
    QDir pictures;
    QDir unitLogs;
    /// First and last address of the search; empty for no search.
    QStringList searchRange;
};

/// The walk so far: the unit that it is at, what was wrong, and the ways to tell.
class Walk
{
public:
    explicit Walk(const WalkSettings& settings);

    /// All steps at each unit, then the search. True when all was as expected. Steps that follow a
    /// wrong one at the same unit are left out.
    bool Run();

    const WalkSettings& Settings() const { return settings; }
    /// Of the unit that it is at; empty in the search.
    QString Address() const { return address; }
    /// Of the unit that it is at or was at last.
    UnitLog& Log() { return *log; }

    /// Prints a line.
    void Say(const QString& line) const;
    /// Prints the line, and what was seen if that is not what was expected.
    void Expect(const QString& line, const QString& seen, const QString& expected);
    /// Saves a picture of the window, as "<address>-<number>-<name>.png" and, at the first unit, as
    /// "<name>.png" too; only as "<name>.png" when it is not at a unit.
    void TakePicture(const QString& name);

private:
    void WalkThroughUnit(const QString& unit);
    void Require(bool right, const QString& complaint);
    void Save(const QString& name);

    WalkSettings settings;
    QString address;
    QScopedPointer<UnitLog> log;
    int picturesOfUnit = 0;
    int mistakes = 0;
};
