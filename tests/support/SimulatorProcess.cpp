#include "tests/support/SimulatorProcess.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

constexpr int LongTimeMs = 60000;

// Another one for each process: none of them ends in 0 or 255.
QString UnusedLoopbackAddress()
{
    constexpr quint32 LastHost = 254;
    static int used = 0;
    const auto pid = static_cast<quint32>(QCoreApplication::applicationPid());
    return QString("127.%1.%2.%3").arg(++used).arg(pid / LastHost % 256U).arg(1 + pid % LastHost);
}

bool IsCommand(const QString& line)
{
    static const QStringList Others{
        "ready ", "connected ", "disconnected", "> ", "state ", "ok", "error "};
    return std::none_of(Others.cbegin(), Others.cend(),
        [&line](const QString& other) { return line.startsWith(other); });
}

} // namespace

SimulatorProcess::SimulatorProcess(
    const QStringList& options, const QString& address, const QStringList& launcher)
    : address(address.isEmpty() ? UnusedLoopbackAddress() : address)
{
    QStringList words = launcher;
    words << qEnvironmentVariable("VX440_SIMULATOR") << "--end-with-input"
          << "--address" << this->address << options;
    const QString program = words.takeFirst();
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, words);
    ready = process.waitForStarted(LongTimeMs) && WaitForLine("ready ");
}

SimulatorProcess::~SimulatorProcess()
{
    process.closeWriteChannel();
    process.kill();
    process.waitForFinished(LongTimeMs);
}

void SimulatorProcess::TakeOutput()
{
    while (process.canReadLine()) {
        lines.append(QString::fromLatin1(process.readLine()).trimmed());
    }
}

// The unit looks at its connections between any two bytes of its input: when it answers a question,
// it has told of all that had come to them before.
void SimulatorProcess::CatchUp()
{
    Tell("state");
}

QStringList SimulatorProcess::Lines()
{
    CatchUp();
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
    CatchUp();
    lines.clear();
}

bool SimulatorProcess::WaitForLine(const std::function<bool(const QString&)>& wanted)
{
    TakeOutput();
    while (std::none_of(lines.cbegin(), lines.cend(), wanted)) {
        if (!process.waitForReadyRead(LongTimeMs)) {
            return false;
        }
        TakeOutput();
    }
    return true;
}

bool SimulatorProcess::WaitForLine(const QString& beginning)
{
    return WaitForLine([&beginning](const QString& line) { return line.startsWith(beginning); });
}

bool SimulatorProcess::Tell(const QString& line)
{
    const int before = lines.count("ok");
    process.write(line.toLatin1() + '\n');
    while (lines.count("ok") == before) {
        if (!process.waitForReadyRead(LongTimeMs)) {
            return false;
        }
        TakeOutput();
    }
    return true;
}

QString SimulatorProcess::State(const QString& key)
{
    const QString beginning = QString("state ") + key + ' ';
    Tell("state");
    const auto line = std::find_if(lines.crbegin(), lines.crend(),
        [&beginning](const QString& other) { return other.startsWith(beginning); });
    return line == lines.crend() ? QString() : line->mid(beginning.size());
}
