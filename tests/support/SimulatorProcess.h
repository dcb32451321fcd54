#pragma once

#include <QProcess>
#include <QStringList>

#include <functional>

/// One simulated unit as a process of its own, at a loopback address that no other test uses. It
/// ends with the object, and with the test program if that aborts. Everything here waits for a line
/// of the unit, never for a time.
class SimulatorProcess
{
public:
    /// Starts a unit with these options and waits until it listens. `address` replaces the loopback
    /// address that the process would get; `launcher` are the words that run it somewhere else.
    explicit SimulatorProcess(const QStringList& options = {}, const QString& address = {},
        const QStringList& launcher = {});
    ~SimulatorProcess();
    Q_DISABLE_COPY(SimulatorProcess)

    bool IsReady() const { return ready; }
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

    /// Writes a line to the unit's standard input and waits for its "ok".
    bool Tell(const QString& line);
    /// One value of the unit's state.
    QString State(const QString& key);

private:
    void CatchUp();
    void TakeOutput();

    QProcess process;
    QString address;
    QStringList lines;
    bool ready = false;
};
