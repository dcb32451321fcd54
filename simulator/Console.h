// SPDX-License-Identifier: MIT

#pragma once

#include "simulator/platform/StandardInput.h"

#include <QObject>

namespace simulator {

class Server;

/// Reads commands for the simulator itself from the standard input while it runs, one in a line.
class Console : public QObject
{
    Q_OBJECT

public:
    /// The caller keeps the server.
    explicit Console(Server& server);

    /// Begins to read the standard input.
    void Start();

    /// Carries out one command. Says what the command has to say, and then "ok" or "error TEXT".
    void Execute(const QString& line);

signals:
    /// A line for the standard output.
    void Said(const QString& line);

    void QuitAsked();

    /// Nothing more comes from the standard input.
    void InputEnded();

private:
    void TakeByte(char byte);
    bool AddFault(const QString& text, QString& error);
    void SayState();

    Server& server;
    QByteArray line;
    QScopedPointer<platform::StandardInput> input;
};

} // namespace simulator
