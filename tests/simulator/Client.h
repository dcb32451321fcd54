// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>
#include <QTcpSocket>

/// A client of the running simulator.
class Client
{
public:
    /// Connected when the constructor returns, or IsOpen() is false.
    explicit Client(const QString& address);

    bool IsOpen() const { return socket.state() == QAbstractSocket::ConnectedState; }
    void Send(const QByteArray& bytes);

    /// Waits for that many bytes, and gives fewer when the connection ends or ten seconds are over.
    QByteArray Read(int count);

    /// Waits for a text up to its carriage return.
    QByteArray ReadText();

    /// Sends and waits for that many bytes.
    QByteArray Ask(const QByteArray& bytes, int count);

    /// Waits for the unit to close the connection, and tells what came before that.
    bool WaitForEnd(QByteArray* before = nullptr);

private:
    QTcpSocket socket;
};
