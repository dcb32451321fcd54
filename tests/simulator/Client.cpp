// SPDX-License-Identifier: MIT

#include "tests/simulator/Client.h"

namespace {

constexpr int LongestWaitMs = 10000;
constexpr quint16 Port = 50000;

} // namespace

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
