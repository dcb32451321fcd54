#pragma once

#include "simulator/platform/StandardInput.h"

#include <QObject>

namespace simulator {

class Server;

/// Takes commands for the simulator itself from the standard input, a line each, while it runs.
class Console : public QObject
{
    Q_OBJECT

public:
    /// The server stays the caller's.
    explicit Console(Server& server);

    /// Begins to read the standard input.
    void Start();

    /// One command. Says what it has to say, and then "ok" or "error TEXT".
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
