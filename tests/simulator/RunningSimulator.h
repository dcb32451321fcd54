#pragma once

#include <QByteArray>
#include <QMap>
#include <QProcess>
#include <QStringList>
#include <QTcpSocket>

/// What a program has printed, with lines that end as in this system's sources.
QString PrintedText(QByteArray output);

/// The simulator's own process on a loopback address that no other test uses at the same time. It
/// ends with the object, and with the test program if that aborts.
class RunningSimulator
{
public:
    /// Starts it with these arguments behind its address, and waits until it is ready. `launcher`
    /// are the words that run it somewhere else.
    explicit RunningSimulator(
        const QStringList& arguments = QStringList(), const QStringList& launcher = QStringList());
    ~RunningSimulator();

    /// An address of this test program: 127.x.y.`last`.
    static QString Address(int last);

    bool IsReady() const { return ready; }

    /// Waits for the next line that begins with that text, and takes it and all lines before it off
    /// the output. Null when none comes within ten seconds.
    QString LineThatBegins(const QString& beginning);

    /// Sends a line to the standard input, and gives what came back up to "ok" or "error ...".
    QStringList Tell(const QString& line);

    /// What "state" reports.
    QMap<QString, QString> State();

    QProcess& Process() { return process; }

private:
    QString NextLine();

    QProcess process;
    bool ready = false;
};

/// A client of the running simulator.
class Client
{
public:
    /// Connected when the constructor returns, or IsOpen() is false.
    explicit Client(const QString& address = RunningSimulator::Address(1));

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
