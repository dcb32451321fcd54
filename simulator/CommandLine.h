// SPDX-License-Identifier: MIT

#pragma once

#include "simulator/Faults.h"
#include "simulator/Server.h"

#include <QCoreApplication>

namespace simulator {

/// What the command line asks for.
struct CommandLine
{
    UnitSettings unit;
    ServerSettings server;
    QVector<Fault> faults;
    /// Print the names of the faults and do nothing else.
    bool listFaults = false;
    /// End when the standard input does.
    bool endWithInput = false;
};

/// False, with the reason in `error`, when an option has a value that it cannot have. For --help
/// and
/// --version, and for an unknown option, this prints a text and ends the program itself. An unknown
/// option gives exit code 1.
bool ReadCommandLine(const QCoreApplication& application, CommandLine& commandLine, QString& error);

} // namespace simulator
