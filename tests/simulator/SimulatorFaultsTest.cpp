// SPDX-License-Identifier: MIT

#include "SocketErrors.h"
#include "platform/Sockets.h"
#include "tests/simulator/Client.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/Warnings.h"

#include <QElapsedTimer>
#include <QHostAddress>
#include <QStandardPaths>
#include <QtEndian>
#include <QtTest>

#include <functional>

namespace {

const QByteArray& ReadRequest()
{
    static const QByteArray request = "CF7\r" + QByteArray::fromHex("00400000");
    return request;
}

/// The first bytes of the device block: type 2.
bool IsDeviceBlock(const QByteArray& bytes)
{
    return bytes.size() == 64 && bytes.startsWith(QByteArray("\2\0\0\0", 4)) &&
           bytes.mid(30, 6) == QByteArray("VX440\0", 6);
}

bool StillAnswersOthers(const QString& address)
{
    Client client(address);
    client.Send("*IDN?\r");
    return client.ReadText().startsWith("ZELMA&KOVINTH,VX440,");
}

QStringList ListedFaults()
{
    QProcess process;
    process.start(qEnvironmentVariable("VX440_SIMULATOR"), {"--list-faults"});
    process.waitForFinished();
    return PrintedText(process.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
}

/// A client below Qt, which tells a reset from an orderly end.
class BareClient
{
public:
    explicit BareClient(const QString& address)
    {
        const quint32 host = QHostAddress(address).toIPv4Address();
        platform::ConnectSocket(socket, qToBigEndian(host), 50000);
    }
    ~BareClient() { platform::CloseSocket(socket); }

    void Send(const QByteArray& bytes)
    {
        QCOMPARE(platform::SendToSocket(socket, bytes.constData(), bytes.size()), bytes.size());
    }

    /// Blocks until something comes. The result of the receiving call.
    int Receive()
    {
        char byte = 0;
        const int received = platform::ReceiveFromSocket(socket, &byte, 1);
        error = received == -1 ? std::uint32_t(platform::LastSocketError()) : 0;
        return received;
    }

    std::uint32_t Error() const { return error; }

private:
    platform::SocketHandle socket = platform::OpenSocket(1);
    std::uint32_t error = 0;
};

void IsAnsweredLate(Client& client, int milliseconds)
{
    QElapsedTimer timer;
    timer.start();
    QVERIFY(IsDeviceBlock(client.Ask(ReadRequest(), 64)));
    QVERIFY(timer.elapsed() >= milliseconds);
}

void EndsUnanswered(Client& client)
{
    QByteArray before;
    client.Send(ReadRequest());
    QVERIFY(client.WaitForEnd(&before));
    QCOMPARE(before, QByteArray());
}

using Check = std::function<void(SimulatorProcess&, Client&)>;

/// One check for each fault: what a client sees on "CF7" and, where it matters, on "CF6".
const QMap<QString, Check>& Checks()
{
    static const QMap<QString, Check> checks = {
        {"silent",
            [](SimulatorProcess& simulator, Client& client) {
                client.Send(ReadRequest());
                QVERIFY(!simulator.LineThatBegins("CF7 00400000").isNull());
                // Had it been answered, the answer would stand before this one.
                QVERIFY(client.Ask("*IDN?\r", 5) == "ZELMA");
            }},
        {"refusing",
            [](SimulatorProcess& simulator, Client& client) {
                const QString before = simulator.State("eeprom-sha256");
                QCOMPARE(client.Ask("CF6\r" + QByteArray(20, 'x').prepend(QByteArray(2, '\0')), 2),
                    QByteArray("0\r"));
                QCOMPARE(simulator.State("eeprom-sha256"), before);
                QVERIFY(IsDeviceBlock(client.Ask(ReadRequest(), 64)));
            }},
        {"slow", [](SimulatorProcess&, Client& client) { IsAnsweredLate(client, 300); }},
        {"bytewise", [](SimulatorProcess&, Client& client) { IsAnsweredLate(client, 64); }},
        {"garbage",
            [](SimulatorProcess&, Client& client) {
                const QByteArray answer = client.Ask(ReadRequest(), 64);
                QCOMPARE(answer.size(), 64);
                QVERIFY(!answer.contains('\r'));
                QVERIFY(!IsDeviceBlock(answer));
                const QByteArray acknowledgement = client.Ask("CF6\r" + QByteArray(2, '\0'), 2);
                QCOMPARE(acknowledgement.size(), 2);
                QVERIFY(!acknowledgement.contains('\r'));
            }},
        {"closing", [](SimulatorProcess&, Client& client) { EndsUnanswered(client); }},
        {"resetting", [](SimulatorProcess&, Client& client) { EndsUnanswered(client); }},
        {"short",
            [](SimulatorProcess&, Client& client) {
                client.Send(ReadRequest());
                client.Send("*IDN?\r");
                const QByteArray text = client.ReadText();
                QCOMPARE(text.indexOf("ZELMA"), 32);
                QVERIFY(text.startsWith(QByteArray("\2\0\0\0", 4)));
            }},
        {"long",
            [](SimulatorProcess&, Client& client) {
                const QByteArray answer = client.Ask(ReadRequest(), 128);
                QVERIFY(IsDeviceBlock(answer.left(64)));
                QCOMPARE(answer.mid(64), answer.left(64));
                QCOMPARE(client.Ask("CF6\r" + QByteArray(2, '\0'), 3), QByteArray("11\r"));
            }},
        {"wrong",
            [](SimulatorProcess&, Client& client) {
                const QByteArray answer = client.Ask(ReadRequest(), 64);
                QCOMPARE(answer.size(), 64);
                QCOMPARE(answer.mid(30, 10), QByteArray("VX440-CTRL"));
            }},
    };
    return checks;
}

} // namespace

class SimulatorFaultsTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void everyFaultDoesWhatItsNameSays_data()
    {
        QTest::addColumn<QString>("name");
        const QStringList names = ListedFaults();
        QVERIFY(names.size() >= 10);
        for (const QString& name : names) {
            QTest::addRow("%s", qPrintable(name)) << name;
        }
    }

    void everyFaultDoesWhatItsNameSays()
    {
        QFETCH(QString, name);
        QVERIFY2(Checks().contains(name), "a fault without a check");
        const QString fault = "--fault";
        SimulatorProcess simulator(
            {"--slow-ms", "300", fault, name + ":CF7", fault, name + ":CF6"});
        Client client(simulator.Address());
        Checks().value(name)(simulator, client);
        QVERIFY(StillAnswersOthers(simulator.Address()));
    }

    void everyFaultCanBeSetWhileItRuns_data() { everyFaultDoesWhatItsNameSays_data(); }

    void everyFaultCanBeSetWhileItRuns()
    {
        QFETCH(QString, name);
        SimulatorProcess simulator({"--slow-ms", "300"});
        Client client(simulator.Address());
        QVERIFY(IsDeviceBlock(client.Ask(ReadRequest(), 64)));
        QVERIFY(simulator.Tell(QString("fault %1:CF7").arg(name)));
        QVERIFY(simulator.Tell(QString("fault %1:CF6").arg(name)));
        QCOMPARE(simulator.State("faults"), QString("%1:CF7 %1:CF6").arg(name));
        Checks().value(name)(simulator, client);

        QVERIFY(simulator.Tell("clear"));
        Client next(simulator.Address());
        QVERIFY(IsDeviceBlock(next.Ask(ReadRequest(), 64)));
    }

    void aFaultMeetsTheNamedOccurrenceOnly()
    {
        SimulatorProcess simulator({"--fault", "wrong:CF8:2"});
        Client client(simulator.Address());
        QCOMPARE(client.Ask("CF8\r", 2), QByteArray("0\r"));
        QCOMPARE(client.Ask("CF8\r", 2), QByteArray("2\r"));
        QCOMPARE(client.Ask("CF8\r", 2), QByteArray("0\r"));
    }

    void wrongAcknowledgementsAndAnswers()
    {
        SimulatorProcess simulator(
            {"--fault", "wrong", "--options", "a,b,c", "--option-descriptions", "d;e,f;g"});
        Client client(simulator.Address());
        client.Send("*IDN?\r");
        QCOMPARE(client.ReadText(), QByteArray("ZELMA&KOVINTH,VX440,4400.1290.02/000129\r"));
        QCOMPARE(client.Ask("GET:OPTION:INTERNAL?\r", 4), QByteArray("a,b\r"));
        QCOMPARE(client.Ask("GET:OPTION:DESC?\r", 6), QByteArray("d;e,f\r"));
        QCOMPARE(client.Ask("CF0\r", 67).size(), 67);
        QCOMPARE(client.Ask("CF9\rx", 2), QByteArray("2\r"));
        QCOMPARE(simulator.State("options"), "x");
    }

    void longOptionsHaveTheFieldsOfTwoAnswers()
    {
        SimulatorProcess simulator(
            {"--fault", "long", "--options", "a,b,c", "--option-descriptions", "d;e,f;g"});
        Client client(simulator.Address());
        QCOMPARE(client.Ask("GET:OPTION:INTERNAL?\r", 11), QByteArray("a,b,ca,b,c\r"));
        QCOMPARE(client.Ask("GET:OPTION:DESC?\r", 15), QByteArray("d;e,f;gd;e,f;g\r"));
    }

    void bytewiseAnswersComeInSegmentsOfTheirOwn()
    {
        SimulatorProcess simulator({"--fault", "bytewise", "--trace"});
        Client client(simulator.Address());
        QCOMPARE(client.Ask("CF8\r", 2), QByteArray("0\r"));
        QCOMPARE(simulator.LineThatBegins("> "), "> 30");
        QCOMPARE(simulator.LineThatBegins("> "), "> 0D");
    }

    void aResetIsSeenAsOne_data()
    {
        QTest::addColumn<QByteArray>("frame");
        QTest::addColumn<QString>("line");
        QTest::addRow("on a query") << QByteArray("*IDN?\r") << "*IDN?";
        QTest::addRow("on a command with a payload") << ReadRequest() << "CF7 00400000";
        QTest::addRow("on a command that quiet ends") << QByteArray("CF9\rx") << "CF9 78";
        QTest::addRow("on a command without an answer") << QByteArray("HCF\r") << "HCF";
    }

    void aResetIsSeenAsOne()
    {
        QFETCH(QByteArray, frame);
        QFETCH(QString, line);
        SimulatorProcess simulator({"--fault", "resetting"});
        BareClient client(simulator.Address());
        client.Send(frame);
        QCOMPARE(client.Receive(), -1);
        QCOMPARE(client.Error(), ConnectionReset);
        QCOMPARE(simulator.LineThatBegins(line), line);
        QCOMPARE(simulator.LineThatBegins("disconnected"), "disconnected");
    }

    void aCloseIsNoReset_data() { aResetIsSeenAsOne_data(); }

    void aCloseIsNoReset()
    {
        QFETCH(QByteArray, frame);
        QFETCH(QString, line);
        SimulatorProcess simulator({"--fault", "closing"});
        BareClient client(simulator.Address());
        client.Send(frame);
        QCOMPARE(client.Receive(), 0);
        QCOMPARE(simulator.LineThatBegins(line), line);

        BareClient idle(simulator.Address());
        QVERIFY(!simulator.LineThatBegins("connected").isNull());
        QVERIFY(simulator.Tell("close"));
        QCOMPARE(idle.Receive(), 0);
    }

    void theOldClientIsGoneAfterADropAndTheNextIsServed()
    {
        SimulatorProcess simulator;
        BareClient untouched(simulator.Address());
        BareClient used(simulator.Address());
        used.Send("CF8\r");
        QCOMPARE(used.Receive(), 1);
        QCOMPARE(used.Receive(), 1);
        QCOMPARE(simulator.State("clients"), "2");
        QVERIFY(simulator.Tell("drop"));
        for (BareClient* client : {&untouched, &used}) {
            QCOMPARE(client->Receive(), -1);
            QCOMPARE(client->Error(), ConnectionReset);
        }
        QVERIFY(StillAnswersOthers(simulator.Address()));
    }

    void unknownConsoleLinesAreErrors_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("answer");
        QTest::addRow("empty") << QString() << "error no such command: ";
        QTest::addRow("unknown") << "jump"
                                 << "error no such command: jump";
        QTest::addRow("no fault") << "fault"
                                  << "error no such fault: ";
        QTest::addRow("unknown fault") << "fault lazy"
                                       << "error no such fault: lazy";
        QTest::addRow("unknown command of a fault") << "fault slow:CF11"
                                                    << "error no such command: CF11";
    }

    void unknownConsoleLinesAreErrors()
    {
        QFETCH(QString, line);
        QFETCH(QString, answer);
        SimulatorProcess simulator;
        QCOMPARE(simulator.Answer(line).last(), answer);
        QCOMPARE(simulator.State("faults"), QString());
    }

    void theEndOfTheConsoleDoesNotEndTheUnit()
    {
        const QString address = UnusedLoopbackAddress();
        QProcess simulator;
        simulator.setStandardInputFile(QProcess::nullDevice());
        QStringList words{qEnvironmentVariable("VX440_SIMULATOR"), "--address", address};
        // Or a test that is ended here would leave the unit behind.
        const QString program = QStandardPaths::findExecutable("setpriv");
        if (!program.isEmpty()) {
            words = QStringList{"--pdeathsig", "KILL"} + words;
        }
        simulator.start(program.isEmpty() ? words.takeFirst() : program, words);
        QVERIFY(simulator.waitForReadyRead());
        for (int client = 0; client < 3; ++client) {
            QVERIFY(StillAnswersOthers(address));
        }
        QCOMPARE(simulator.state(), QProcess::Running);
        simulator.kill();
        QVERIFY(simulator.waitForFinished());
    }

    void theEndOfTheConsoleEndsTheUnitWhereThatIsAsked()
    {
        SimulatorProcess simulator;
        simulator.Tell("clear");
        simulator.EndInput();
        QCOMPARE(simulator.WaitForEnd(), 0);
    }

    void aUnitEndsWithTheProgramThatStartedIt()
    {
        QProcess program;
        program.start(QCoreApplication::applicationDirPath() + "/AbortingProgram", QStringList());
        QVERIFY(program.waitForReadyRead());
        Client client(QString::fromLatin1(program.readLine()).trimmed());
        QVERIFY(client.IsOpen());
        program.closeWriteChannel();
        QVERIFY(program.waitForFinished());
        // What a program that aborts gives is the system's own.
        QVERIFY(program.exitStatus() == QProcess::CrashExit || program.exitCode() != 0);
        QVERIFY(client.WaitForEnd());
    }

    void quitEndsItWithCode0()
    {
        SimulatorProcess simulator;
        QVERIFY(simulator.Tell("quit"));
        QCOMPARE(simulator.WaitForEnd(), 0);
    }
};

QTEST_GUILESS_MAIN(SimulatorFaultsTest)
#include "SimulatorFaultsTest.moc"
