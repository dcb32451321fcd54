// SPDX-License-Identifier: MIT

#include "simulator/Console.h"

#include "simulator/Server.h"

namespace simulator {

namespace {

constexpr int LongestLine = 4096;

} // namespace

Console::Console(Server& server)
    : server(server)
{
}

void Console::Start()
{
    input.reset(new platform::StandardInput(
        [this](char byte) { TakeByte(byte); }, [this] { emit InputEnded(); }));
}

void Console::TakeByte(char byte)
{
    if (byte != '\n') {
        line.append(byte);
    }
    if (byte == '\n' || line.size() == LongestLine) {
        const QString command = QString::fromLocal8Bit(line).trimmed();
        line.clear();
        Execute(command);
    }
}

void Console::Execute(const QString& command)
{
    const QString verb = command.section(QLatin1Char(' '), 0, 0);
    const QString argument = command.section(QLatin1Char(' '), 1).trimmed();
    QString error;
    if (verb == QLatin1String("fault")) {
        AddFault(argument, error);
    } else if (verb == QLatin1String("clear")) {
        server.SetFaults().Clear();
    } else if (verb == QLatin1String("drop")) {
        server.ResetClients();
    } else if (verb == QLatin1String("close")) {
        server.CloseClients();
    } else if (verb == QLatin1String("state")) {
        SayState();
    } else if (verb == QLatin1String("quit")) {
        emit QuitAsked();
    } else {
        error = QStringLiteral("no such command: %1").arg(command);
    }
    emit Said(error.isEmpty() ? QStringLiteral("ok") : QStringLiteral("error ") + error);
}

bool Console::AddFault(const QString& text, QString& error)
{
    Fault fault;
    if (!ParseFault(text, fault, error)) {
        return false;
    }
    server.SetFaults().Add(fault);
    return true;
}

void Console::SayState()
{
    const QString form = QStringLiteral("state %1 %2");
    const auto report = server.TheUnit().Report();
    for (const auto& entry : report) {
        emit Said(form.arg(entry.first, entry.second));
    }
    emit Said(form.arg(QStringLiteral("clients")).arg(server.ClientCount()));
    emit Said(
        form.arg(QStringLiteral("faults"), server.SetFaults().Texts().join(QLatin1Char(' '))));
}

} // namespace simulator
