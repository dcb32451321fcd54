// SPDX-License-Identifier: MIT

#include "simulator/CommandLine.h"
#include "simulator/Console.h"
#include "simulator/Server.h"

#include <QCoreApplication>
#include <QTextStream>

#include <cstdio>

namespace {

void PrintTo(FILE* file, const QString& line)
{
    QTextStream(file) << line << '\n';
    std::fflush(file);
}

void Print(const QString& line)
{
    PrintTo(stdout, line);
}

void PrintError(const QString& line)
{
    PrintTo(stderr, QStringLiteral("vx440-simulator: ") + line);
}

int ListFaults()
{
    for (const simulator::FaultDescription& fault : simulator::FaultDescriptions()) {
        Print(QString::fromLatin1(fault.name));
    }
    return 0;
}

int Run(QCoreApplication& application, const simulator::CommandLine& commandLine)
{
    simulator::Server server(commandLine.unit, commandLine.server);
    simulator::Console console(server);
    for (const simulator::Fault& fault : commandLine.faults) {
        server.SetFaults().Add(fault);
    }
    // Queued, so that these also end an event loop that has not begun yet.
    QObject::connect(
        &server, &simulator::Server::Failed, &application, [] { QCoreApplication::exit(1); },
        Qt::QueuedConnection);
    QObject::connect(&console, &simulator::Console::QuitAsked, &application,
        &QCoreApplication::quit, Qt::QueuedConnection);
    if (commandLine.endWithInput) {
        QObject::connect(&console, &simulator::Console::InputEnded, &application,
            &QCoreApplication::quit, Qt::QueuedConnection);
    }
    QObject::connect(&server, &simulator::Server::Said, Print);
    QObject::connect(&server, &simulator::Server::Complained, PrintError);
    QObject::connect(&console, &simulator::Console::Said, Print);

    server.Start();
    console.Start();
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("vx440-simulator"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VX440_SIMULATOR_VERSION));

    simulator::CommandLine commandLine;
    QString error;
    if (!simulator::ReadCommandLine(application, commandLine, error)) {
        PrintError(error);
        return 1;
    }
    return commandLine.listFaults ? ListFaults() : Run(application, commandLine);
}
