#include "tests/simulator/RunningSimulator.h"

#include <QCoreApplication>
#include <QElapsedTimer>

namespace {

constexpr int LongestWaitMs = 10000;
constexpr quint16 Port = 50000;

} // namespace

QString PrintedText(QByteArray output)
{
    return QString::fromLocal8Bit(output.replace("\r\n", "\n"));
}

RunningSimulator::RunningSimulator(const QStringList& arguments, const QStringList& launcher)
{
    QStringList words = launcher;
    words << qEnvironmentVariable("VX440_SIMULATOR") << "--end-with-input"
          << "--address" << Address(1) << arguments;
    const QString program = words.takeFirst();
    process.setProcessChannelMode(QProcess::SeparateChannels);
    process.start(program, words);
    ready = process.waitForStarted() && !LineThatBegins("ready ").isNull();
}

RunningSimulator::~RunningSimulator()
{
    process.kill();
    process.waitForFinished();
}

QString RunningSimulator::Address(int last)
{
    const qint64 id = QCoreApplication::applicationPid();
    return QString("127.%1.%2.%3").arg(1 + id / 256 % 254).arg(id % 256).arg(last);
}

QString RunningSimulator::NextLine()
{
    while (!process.canReadLine()) {
        if (!process.waitForReadyRead(LongestWaitMs)) {
            return QString();
        }
    }
    const QString line = PrintedText(process.readLine());
    return line.left(line.size() - 1);
}

QString RunningSimulator::LineThatBegins(const QString& beginning)
{
    QString line = NextLine();
    while (!line.isNull() && !line.startsWith(beginning)) {
        line = NextLine();
    }
    return line;
}

QStringList RunningSimulator::Tell(const QString& command)
{
    process.write(command.toLocal8Bit() + '\n');
    QStringList lines;
    QString line;
    do {
        line = NextLine();
        lines.append(line);
    } while (!line.isNull() && line != "ok" && !line.startsWith("error "));
    return lines;
}

QMap<QString, QString> RunningSimulator::State()
{
    QMap<QString, QString> state;
    const QStringList lines = Tell("state");
    for (const QString& line : lines) {
        if (line.startsWith("state ")) {
            state.insert(line.section(' ', 1, 1), line.section(' ', 2));
        }
    }
    return state;
}

Client::Client(const QString& address)
{
    socket.connectToHost(address, Port);
    socket.waitForConnected(LongestWaitMs);
    socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
}

void Client::Send(const QByteArray& bytes)
{
    socket.write(bytes);
    while (socket.bytesToWrite() > 0 && socket.waitForBytesWritten(LongestWaitMs)) {
    }
}

QByteArray Client::Read(int count)
{
    while (socket.bytesAvailable() < count && socket.waitForReadyRead(LongestWaitMs)) {
    }
    return socket.read(count);
}

QByteArray Client::ReadText()
{
    QByteArray text;
    do {
        const QByteArray byte = Read(1);
        if (byte.isEmpty()) {
            break;
        }
        text += byte;
    } while (!text.endsWith('\r'));
    return text;
}

QByteArray Client::Ask(const QByteArray& bytes, int count)
{
    Send(bytes);
    return Read(count);
}

bool Client::WaitForEnd(QByteArray* before)
{
    if (IsOpen()) {
        socket.waitForDisconnected(LongestWaitMs);
    }
    if (before) {
        *before = socket.readAll();
    }
    return !IsOpen();
}
