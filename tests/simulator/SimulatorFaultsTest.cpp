#include "SocketErrors.h"
#include "platform/Sockets.h"
#include "tests/simulator/RunningSimulator.h"

#include <QElapsedTimer>
#include <QHostAddress>
#include <QStandardPaths>
#include <QtEndian>
#include <QtTest>

#include <functional>

class SimulatorFaultsTest : public QObject
{
    Q_OBJECT

private slots:
    void everyFaultDoesWhatItsNameSays_data();
    void everyFaultDoesWhatItsNameSays();
    void everyFaultCanBeSetWhileItRuns_data();
    void everyFaultCanBeSetWhileItRuns();
    void aFaultMeetsTheNamedOccurrenceOnly();
    void wrongAcknowledgementsAndAnswers();
    void longOptionsHaveTheFieldsOfTwoAnswers();
    void bytewiseAnswersComeInSegmentsOfTheirOwn();
    void aResetIsSeenAsOne_data();
    void aResetIsSeenAsOne();
    void aCloseIsNoReset_data();
    void aCloseIsNoReset();
    void theOldClientIsGoneAfterADropAndTheNextIsServed();
    void unknownConsoleLinesAreErrors_data();
    void unknownConsoleLinesAreErrors();
    void theEndOfTheConsoleDoesNotEndTheUnit();
    void theEndOfTheConsoleEndsTheUnitWhereThatIsAsked();
    void aUnitEndsWithTheProgramThatStartedIt_data();
    void aUnitEndsWithTheProgramThatStartedIt();
    void quitEndsItWithCode0();

private:
    /// One check for each fault: what a client sees on "CF7" and, where it matters, on "CF6".
    static const QMap<QString, std::function<void(RunningSimulator&)>>& Checks();
};

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

bool StillAnswersOthers()
{
    Client client;
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
    BareClient()
    {
        const QHostAddress address(RunningSimulator::Address(1));
        platform::ConnectSocket(socket, qToBigEndian(address.toIPv4Address()), 50000);
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

} // namespace

const QMap<QString, std::function<void(RunningSimulator&)>>& SimulatorFaultsTest::Checks()
{
    static const QMap<QString, std::function<void(RunningSimulator&)>> checks = {
        {"silent",
            [](RunningSimulator& simulator) {
                Client client;
                client.Send(ReadRequest());
                QVERIFY(!simulator.LineThatBegins("CF7 00400000").isNull());
                // Had it been answered, the answer would stand before this one.
                QVERIFY(client.Ask("*IDN?\r", 5) == "ZELMA");
            }},
        {"refusing",
            [](RunningSimulator& simulator) {
                Client client;
                const QString before = simulator.State().value("eeprom-sha256");
                QCOMPARE(client.Ask("CF6\r" + QByteArray(20, 'x').prepend(QByteArray(2, '\0')), 2),
                    QByteArray("0\r"));
                QCOMPARE(simulator.State().value("eeprom-sha256"), before);
                QVERIFY(IsDeviceBlock(client.Ask(ReadRequest(), 64)));
            }},
        {"slow",
            [](RunningSimulator&) {
                Client client;
                QElapsedTimer timer;
                timer.start();
                QVERIFY(IsDeviceBlock(client.Ask(ReadRequest(), 64)));
                QVERIFY(timer.elapsed() >= 300);
            }},
        {"bytewise",
            [](RunningSimulator&) {
                Client client;
                QElapsedTimer timer;
                timer.start();
                QVERIFY(IsDeviceBlock(client.Ask(ReadRequest(), 64)));
                QVERIFY(timer.elapsed() >= 64);
            }},
        {"garbage",
            [](RunningSimulator&) {
                Client client;
                const QByteArray answer = client.Ask(ReadRequest(), 64);
                QCOMPARE(answer.size(), 64);
                QVERIFY(!answer.contains('\r'));
                QVERIFY(!IsDeviceBlock(answer));
                const QByteArray acknowledgement = client.Ask("CF6\r" + QByteArray(2, '\0'), 2);
                QCOMPARE(acknowledgement.size(), 2);
                QVERIFY(!acknowledgement.contains('\r'));
            }},
        {"closing",
            [](RunningSimulator&) {
                Client client;
                QByteArray before;
                client.Send(ReadRequest());
                QVERIFY(client.WaitForEnd(&before));
                QCOMPARE(before, QByteArray());
            }},
        {"resetting",
            [](RunningSimulator&) {
                Client client;
                QByteArray before;
                client.Send(ReadRequest());
                QVERIFY(client.WaitForEnd(&before));
                QCOMPARE(before, QByteArray());
            }},
        {"short",
            [](RunningSimulator&) {
                Client client;
                client.Send(ReadRequest());
                client.Send("*IDN?\r");
                const QByteArray text = client.ReadText();
                QCOMPARE(text.indexOf("ZELMA"), 32);
                QVERIFY(text.startsWith(QByteArray("\2\0\0\0", 4)));
            }},
        {"long",
            [](RunningSimulator&) {
                Client client;
                const QByteArray answer = client.Ask(ReadRequest(), 128);
                QVERIFY(IsDeviceBlock(answer.left(64)));
                QCOMPARE(answer.mid(64), answer.left(64));
                QCOMPARE(client.Ask("CF6\r" + QByteArray(2, '\0'), 3), QByteArray("11\r"));
            }},
        {"wrong",
            [](RunningSimulator&) {
                Client client;
                const QByteArray answer = client.Ask(ReadRequest(), 64);
                QCOMPARE(answer.size(), 64);
                QCOMPARE(answer.mid(30, 10), QByteArray("VX440-CTRL"));
            }},
    };
    return checks;
}

void SimulatorFaultsTest::everyFaultDoesWhatItsNameSays_data()
{
    QTest::addColumn<QString>("name");
    const QStringList names = ListedFaults();
    QVERIFY(names.size() >= 10);
    for (const QString& name : names) {
        QTest::addRow("%s", qPrintable(name)) << name;
    }
}

void SimulatorFaultsTest::everyFaultDoesWhatItsNameSays()
{
    QFETCH(QString, name);
    QVERIFY2(Checks().contains(name), "a fault without a check");
    const QString fault = "--fault";
    RunningSimulator simulator({"--slow-ms", "300", fault, name + ":CF7", fault, name + ":CF6"});
    Checks().value(name)(simulator);
    QVERIFY(StillAnswersOthers());
}

void SimulatorFaultsTest::everyFaultCanBeSetWhileItRuns_data()
{
    everyFaultDoesWhatItsNameSays_data();
}

void SimulatorFaultsTest::everyFaultCanBeSetWhileItRuns()
{
    QFETCH(QString, name);
    RunningSimulator simulator({"--slow-ms", "300"});
    {
        Client client;
        QVERIFY(IsDeviceBlock(client.Ask(ReadRequest(), 64)));
    }
    QCOMPARE(simulator.Tell(QString("fault %1:CF7").arg(name)).last(), "ok");
    QCOMPARE(simulator.Tell(QString("fault %1:CF6").arg(name)).last(), "ok");
    QCOMPARE(simulator.State().value("faults"), QString("%1:CF7 %1:CF6").arg(name));
    Checks().value(name)(simulator);

    QCOMPARE(simulator.Tell("clear").last(), "ok");
    Client client;
    QVERIFY(IsDeviceBlock(client.Ask(ReadRequest(), 64)));
}

void SimulatorFaultsTest::aFaultMeetsTheNamedOccurrenceOnly()
{
    RunningSimulator simulator({"--fault", "wrong:CF8:2"});
    Client client;
    QCOMPARE(client.Ask("CF8\r", 2), QByteArray("0\r"));
    QCOMPARE(client.Ask("CF8\r", 2), QByteArray("2\r"));
    QCOMPARE(client.Ask("CF8\r", 2), QByteArray("0\r"));
}

void SimulatorFaultsTest::wrongAcknowledgementsAndAnswers()
{
    RunningSimulator simulator(
        {"--fault", "wrong", "--options", "a,b,c", "--option-descriptions", "d;e,f;g"});
    Client client;
    client.Send("*IDN?\r");
    QCOMPARE(client.ReadText(), QByteArray("ZELMA&KOVINTH,VX440,4400.1290.02/000129\r"));
    QCOMPARE(client.Ask("GET:OPTION:INTERNAL?\r", 4), QByteArray("a,b\r"));
    QCOMPARE(client.Ask("GET:OPTION:DESC?\r", 6), QByteArray("d;e,f\r"));
    QCOMPARE(client.Ask("CF0\r", 67).size(), 67);
    QCOMPARE(client.Ask("CF9\rx", 2), QByteArray("2\r"));
    QCOMPARE(simulator.State().value("options"), "x");
}

void SimulatorFaultsTest::longOptionsHaveTheFieldsOfTwoAnswers()
{
    RunningSimulator simulator(
        {"--fault", "long", "--options", "a,b,c", "--option-descriptions", "d;e,f;g"});
    Client client;
    QCOMPARE(client.Ask("GET:OPTION:INTERNAL?\r", 11), QByteArray("a,b,ca,b,c\r"));
    QCOMPARE(client.Ask("GET:OPTION:DESC?\r", 15), QByteArray("d;e,f;gd;e,f;g\r"));
}

void SimulatorFaultsTest::bytewiseAnswersComeInSegmentsOfTheirOwn()
{
    RunningSimulator simulator({"--fault", "bytewise", "--trace"});
    Client client;
    QCOMPARE(client.Ask("CF8\r", 2), QByteArray("0\r"));
    QCOMPARE(simulator.LineThatBegins("> "), "> 30");
    QCOMPARE(simulator.LineThatBegins("> "), "> 0D");
}

void SimulatorFaultsTest::aResetIsSeenAsOne_data()
{
    QTest::addColumn<QByteArray>("frame");
    QTest::addColumn<QString>("line");
    QTest::addRow("on a query") << QByteArray("*IDN?\r") << "*IDN?";
    QTest::addRow("on a command with a payload") << ReadRequest() << "CF7 00400000";
    QTest::addRow("on a command that quiet ends") << QByteArray("CF9\rx") << "CF9 78";
    QTest::addRow("on a command without an answer") << QByteArray("HCF\r") << "HCF";
}

void SimulatorFaultsTest::aResetIsSeenAsOne()
{
    QFETCH(QByteArray, frame);
    QFETCH(QString, line);
    RunningSimulator simulator({"--fault", "resetting"});
    BareClient client;
    client.Send(frame);
    QCOMPARE(client.Receive(), -1);
    QCOMPARE(client.Error(), ConnectionReset);
    QCOMPARE(simulator.LineThatBegins(line), line);
    QCOMPARE(simulator.LineThatBegins("disconnected"), "disconnected");
}

void SimulatorFaultsTest::aCloseIsNoReset_data()
{
    aResetIsSeenAsOne_data();
}

void SimulatorFaultsTest::aCloseIsNoReset()
{
    QFETCH(QByteArray, frame);
    QFETCH(QString, line);
    RunningSimulator simulator({"--fault", "closing"});
    BareClient client;
    client.Send(frame);
    QCOMPARE(client.Receive(), 0);
    QCOMPARE(simulator.LineThatBegins(line), line);

    BareClient idle;
    QVERIFY(!simulator.LineThatBegins("connected").isNull());
    QCOMPARE(simulator.Tell("close").last(), "ok");
    QCOMPARE(idle.Receive(), 0);
}

void SimulatorFaultsTest::theOldClientIsGoneAfterADropAndTheNextIsServed()
{
    RunningSimulator simulator;
    BareClient untouched;
    BareClient used;
    used.Send("CF8\r");
    QCOMPARE(used.Receive(), 1);
    QCOMPARE(used.Receive(), 1);
    QCOMPARE(simulator.State().value("clients"), "2");
    QCOMPARE(simulator.Tell("drop").last(), "ok");
    for (BareClient* client : {&untouched, &used}) {
        QCOMPARE(client->Receive(), -1);
        QCOMPARE(client->Error(), ConnectionReset);
    }
    QVERIFY(StillAnswersOthers());
}

void SimulatorFaultsTest::unknownConsoleLinesAreErrors_data()
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

void SimulatorFaultsTest::unknownConsoleLinesAreErrors()
{
    QFETCH(QString, line);
    QFETCH(QString, answer);
    RunningSimulator simulator;
    QCOMPARE(simulator.Tell(line).last(), answer);
    QCOMPARE(simulator.State().value("faults"), QString());
}

void SimulatorFaultsTest::theEndOfTheConsoleDoesNotEndTheUnit()
{
    QProcess simulator;
    simulator.setStandardInputFile(QProcess::nullDevice());
    QStringList words{
        qEnvironmentVariable("VX440_SIMULATOR"), "--address", RunningSimulator::Address(1)};
    // Or a test that is ended here would leave the unit behind.
    const QString program = QStandardPaths::findExecutable("setpriv");
    if (!program.isEmpty()) {
        words = QStringList{"--pdeathsig", "KILL"} + words;
    }
    simulator.start(program.isEmpty() ? words.takeFirst() : program, words);
    QVERIFY(simulator.waitForReadyRead());
    for (int client = 0; client < 3; ++client) {
        QVERIFY(StillAnswersOthers());
    }
    QCOMPARE(simulator.state(), QProcess::Running);
    simulator.kill();
    QVERIFY(simulator.waitForFinished());
}

void SimulatorFaultsTest::theEndOfTheConsoleEndsTheUnitWhereThatIsAsked()
{
    RunningSimulator simulator;
    simulator.Tell("clear");
    simulator.Process().closeWriteChannel();
    QVERIFY(simulator.Process().waitForFinished());
    QCOMPARE(simulator.Process().exitStatus(), QProcess::NormalExit);
    QCOMPARE(simulator.Process().exitCode(), 0);
}

void SimulatorFaultsTest::aUnitEndsWithTheProgramThatStartedIt_data()
{
    QTest::addColumn<QString>("helper");
    QTest::newRow("of the simulator's tests") << "RunningSimulator";
    QTest::newRow("of all other tests") << "SimulatorProcess";
}

void SimulatorFaultsTest::aUnitEndsWithTheProgramThatStartedIt()
{
    QFETCH(QString, helper);
    QProcess program;
    program.start(QCoreApplication::applicationDirPath() + "/AbortingProgram", QStringList{helper});
    QVERIFY(program.waitForReadyRead());
    Client client(QString::fromLatin1(program.readLine()).trimmed());
    QVERIFY(client.IsOpen());
    program.closeWriteChannel();
    QVERIFY(program.waitForFinished());
    // What a program that aborts gives is the system's own.
    QVERIFY(program.exitStatus() == QProcess::CrashExit || program.exitCode() != 0);
    QVERIFY(client.WaitForEnd());
}

void SimulatorFaultsTest::quitEndsItWithCode0()
{
    RunningSimulator simulator;
    QCOMPARE(simulator.Tell("quit").last(), "ok");
    QVERIFY(simulator.Process().waitForFinished());
    QCOMPARE(simulator.Process().exitStatus(), QProcess::NormalExit);
    QCOMPARE(simulator.Process().exitCode(), 0);
}

QTEST_GUILESS_MAIN(SimulatorFaultsTest)
#include "SimulatorFaultsTest.moc"
