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

/// False, with the reason in `error`, when an option has a value that it cannot have. Prints and
/// ends the program itself for --help, for --version and, with exit code 1, for an unknown option.
bool ReadCommandLine(const QCoreApplication& application, CommandLine& commandLine, QString& error);

} // namespace simulator
