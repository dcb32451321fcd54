// SPDX-License-Identifier: MIT

#pragma once

#include <QProcess>
#include <QStringList>

#include <functional>

/// A loopback address that no other test program uses, another one at each call. None of them ends
/// in 0 or 255.
QString UnusedLoopbackAddress();

/// What a program has printed, with lines that end as in this system's sources.
QString PrintedText(QByteArray output);

/// One simulated unit as a process of its own, at a loopback address that no other test uses. It
/// ends with the object, and with the test program if that aborts. Everything here waits for a line
/// of the unit, never for a time.
class SimulatorProcess
{
public:
    /// Starts a unit with these options and waits until it listens. `address` replaces the loopback
    /// address that the process would get. `launcher` are the words that run it somewhere else.
    explicit SimulatorProcess(const QStringList& options = {}, const QString& address = {},
        const QStringList& launcher = {});
    ~SimulatorProcess();
    Q_DISABLE_COPY(SimulatorProcess)

    bool IsReady() const { return ready; }
    /// Where the unit was started; a CF1 may have moved it since.
    QString Address() const { return address; }

    /// The commands that have come to the unit, one "MNEMONIC HEX" each, without the lines about
    /// connections.
    QStringList Commands();
    /// Every line, also those of what has come to the unit and was not told yet.
    QStringList Lines();
    /// Forgets all of these lines.
    void Forget();

    /// Waits for a line among those not forgotten. False when the unit ends or stays quiet for
    /// long.
    bool WaitForLine(const std::function<bool(const QString&)>& wanted);
    bool WaitForLine(const QString& beginning);
    /// Waits for a line that begins so, and forgets it and all before it. Null when the unit ends
    /// or stays quiet for long.
    QString LineThatBegins(const QString& beginning);

    /// Writes a line to the unit's standard input and gives what the unit says to it: its lines up
    /// to "ok" or "error ...". Empty when the unit ends.
    QStringList Answer(const QString& line);
    /// Writes a line to the unit's standard input and waits for its "ok". False for any other
    /// answer.
    bool Tell(const QString& line);
    /// One value of the unit's state; null when it has none of that name.
    QString State(const QString& key);

    /// What the unit has printed to its standard error. Waits for a whole line there.
    QString Errors();
    /// Nothing more goes to the unit's standard input.
    void EndInput() { process.closeWriteChannel(); }
    /// Waits for the unit to end. Its exit code, or -1 when it crashed.
    int WaitForEnd();

private:
    void TakeOutput();
    bool TakeMoreOutput();

    QProcess process;
    QString address;
    QStringList lines;
    bool ready = false;
};
