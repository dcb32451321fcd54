// SPDX-License-Identifier: MIT

#include "tests/support/SimulatorProcess.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdio>

namespace {

constexpr int LongTimeMs = 60000;

bool IsCommand(const QString& line)
{
    static const QStringList Others{
        "ready ", "connected ", "disconnected", "> ", "state ", "ok", "error "};
    return std::none_of(Others.cbegin(), Others.cend(),
        [&line](const QString& other) { return line.startsWith(other); });
}

bool IsAnswer(const QString& line)
{
    return line == "ok" || line.startsWith("error ");
}

} // namespace

QString UnusedLoopbackAddress()
{
    constexpr quint32 LastHost = 254;
    static int used = 0;
    const auto pid = static_cast<quint32>(QCoreApplication::applicationPid());
    return QString("127.%1.%2.%3").arg(++used).arg(pid / LastHost % 256U).arg(1 + pid % LastHost);
}

QString PrintedText(QByteArray output)
{
    return QString::fromLocal8Bit(output.replace("\r\n", "\n"));
}

SimulatorProcess::SimulatorProcess(
    const QStringList& options, const QString& address, const QStringList& launcher)
    : address(address.isEmpty() ? UnusedLoopbackAddress() : address)
{
    QStringList words = launcher;
    words << qEnvironmentVariable("VX440_SIMULATOR") << "--end-with-input"
          << "--address" << this->address << options;
    const QString program = words.takeFirst();
    process.start(program, words);
    ready = process.waitForStarted(LongTimeMs) && !LineThatBegins("ready ").isNull();
}

SimulatorProcess::~SimulatorProcess()
{
    process.closeWriteChannel();
    process.kill();
    process.waitForFinished(LongTimeMs);
    std::fputs(process.readAllStandardError().constData(), stderr);
}

void SimulatorProcess::TakeOutput()
{
    while (process.canReadLine()) {
        lines.append(PrintedText(process.readLine()).chopped(1));
    }
}

bool SimulatorProcess::TakeMoreOutput()
{
    const bool more = process.waitForReadyRead(LongTimeMs);
    TakeOutput();
    return more;
}

// The unit looks at its connections between any two bytes of its input: when it answers a question,
// it has told of all that had come to them before.
QStringList SimulatorProcess::Lines()
{
    Answer("state");
    return lines;
}

QStringList SimulatorProcess::Commands()
{
    QStringList commands = Lines();
    commands.erase(
        std::remove_if(commands.begin(), commands.end(), std::not_fn(IsCommand)), commands.end());
    return commands;
}

void SimulatorProcess::Forget()
{
    Answer("state");
    lines.clear();
}

bool SimulatorProcess::WaitForLine(const std::function<bool(const QString&)>& wanted)
{
    TakeOutput();
    while (std::none_of(lines.cbegin(), lines.cend(), wanted)) {
        if (!TakeMoreOutput()) {
            return false;
        }
    }
    return true;
}

bool SimulatorProcess::WaitForLine(const QString& beginning)
{
    return WaitForLine([&beginning](const QString& line) { return line.startsWith(beginning); });
}

QString SimulatorProcess::LineThatBegins(const QString& beginning)
{
    if (!WaitForLine(beginning)) {
        return QString();
    }
    QString line;
    do {
        line = lines.takeFirst();
    } while (!line.startsWith(beginning));
    return line;
}

QStringList SimulatorProcess::Answer(const QString& line)
{
    TakeOutput();
    const int before = lines.size();
    process.write(line.toLocal8Bit() + '\n');
    for (;;) {
        const auto end = std::find_if(lines.cbegin() + before, lines.cend(), IsAnswer);
        if (end != lines.cend()) {
            return QStringList(lines.cbegin() + before, end + 1);
        }
        if (!TakeMoreOutput()) {
            return QStringList();
        }
    }
}

bool SimulatorProcess::Tell(const QString& line)
{
    return Answer(line).endsWith("ok");
}

QString SimulatorProcess::State(const QString& key)
{
    const QString beginning = QString("state %1 ").arg(key);
    const QStringList answer = Answer("state");
    for (const QString& line : answer) {
        if (line.startsWith(beginning)) {
            return line.mid(beginning.size());
        }
    }
    return QString();
}

QString SimulatorProcess::Errors()
{
    process.setReadChannel(QProcess::StandardError);
    while (!process.canReadLine() && process.waitForReadyRead(LongTimeMs)) {
    }
    process.setReadChannel(QProcess::StandardOutput);
    return PrintedText(process.readAllStandardError());
}

int SimulatorProcess::WaitForEnd()
{
    process.waitForFinished(LongTimeMs);
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}
