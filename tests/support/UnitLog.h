// SPDX-License-Identifier: MIT

#pragma once

#include <QFile>
#include <QStringList>

/// A command of the log as a line that fits a screen of 80 columns. Of a payload of more than 24
/// bytes it has the first ones, and how many there are.
QString ShortLine(const QString& command);

/// What a simulated unit writes to its log, from the moment on that this is made. A log that is
/// not there reads as an empty one.
class UnitLog
{
public:
    explicit UnitLog(const QString& fileName);

    /// The commands that came since, one "MNEMONIC HEX" each.
    QStringList Commands();

    /// The payload, in hexadecimal, of the next command of this name behind the last one that was
    /// awaited. Lets events through until it is there, for 5 s at most; null when it did not come.
    QString AwaitPayload(const QString& mnemonic);

private:
    void TakeLines();
    bool TakePayload(const QString& mnemonic, QString& payload);

    QFile file;
    QStringList commands;
    // How many of them were awaited or passed over.
    int given = 0;
};
