// SPDX-License-Identifier: MIT

#include "tests/simulator/Client.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/Warnings.h"

#include <QTemporaryDir>
#include <QtTest>

namespace {

struct Result
{
    int code;
    QString output;
    QString errors;
};

Result Run(const QStringList& arguments)
{
    QProcess process;
    process.start(qEnvironmentVariable("VX440_SIMULATOR"), arguments);
    const bool ended = process.waitForFinished() && process.exitStatus() == QProcess::NormalExit;
    return {ended ? process.exitCode() : -1, PrintedText(process.readAllStandardOutput()),
        PrintedText(process.readAllStandardError())};
}

} // namespace

class SimulatorCommandLineTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void helpNamesEveryOptionAndFault()
    {
        const Result help = Run({"--help"});
        QCOMPARE(help.code, 0);
        for (const char* name : {"address", "port", "mask", "interface", "firmware", "new-firmware",
                 "part", "serial", "mac", "azimuth", "polar", "options", "option-descriptions",
                 "eeprom", "save-eeprom", "save-firmware", "away-ms", "slow-ms", "fault",
                 "list-faults", "trace", "end-with-input", "version", "help"}) {
            const QRegularExpression word(QString("--%1\\b(?!-)").arg(QString(name)));
            QVERIFY2(help.output.contains(word), name);
        }
        const QStringList faults = Run({"--list-faults"}).output.split('\n', Qt::SkipEmptyParts);
        for (const QString& fault : faults) {
            QVERIFY2(help.output.contains(QString("\n  ") + fault + " "), qPrintable(fault));
        }
        for (const char* line : {"fault KIND", "clear", "drop", "close", "state", "quit"}) {
            QVERIFY2(help.output.contains(QString("\n  ") + QString(line)), line);
        }
    }

    void versionIsPrinted()
    {
        const Result version = Run({"--version"});
        QCOMPARE(version.code, 0);
        QCOMPARE(version.output, "vx440-simulator " VX440_VERSION "\n");
    }

    void listFaultsPrintsOneNameALine()
    {
        const Result faults = Run({"--list-faults"});
        QCOMPARE(faults.code, 0);
        QCOMPARE(faults.output,
            "silent\nrefusing\nslow\nbytewise\ngarbage\nclosing\nresetting\nshort\nlong\nwrong\n");
    }

    void aBadValueEndsItWithCode1_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("message");
        const auto add = [](const char* option, const char* value, const char* message) {
            QTest::addRow("%s %s", option, value)
                << QStringList{QString(option), QString(value)}
                << QString("vx440-simulator: bad value of %1: %2\n")
                       .arg(QString(option), QString(message));
        };
        add("--address", "unit", "unit");
        add("--address", "::1", "::1");
        add("--mask", "", "");
        add("--port", "65536", "65536");
        add("--port", "-1", "-1");
        add("--mac", "02:4C:7E:00:01", "02:4C:7E:00:01");
        add("--mac", "02-4C-7E-00-01-29", "02-4C-7E-00-01-29");
        add("--azimuth", "1,2,x", "1,2,x");
        add("--azimuth", "65536", "65536");
        add("--polar", "1,2,3,4,5,6,7,8,9,10,11,12,13", "1,2,3,4,5,6,7,8,9,10,11,12,13");
        add("--eeprom", "/nowhere/file", "/nowhere/file");
        add("--away-ms", "soon", "soon");
        add("--slow-ms", "-5", "-5");
        add("--fault", "lazy", "no such fault: lazy");
        add("--fault", "slow:CF99", "no such command: CF99");
        QTest::addRow("an argument that is no option")
            << QStringList{"127.0.0.1"} << "vx440-simulator: unknown argument: 127.0.0.1\n";
    }

    void aBadValueEndsItWithCode1()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, message);
        const Result result = Run(arguments);
        QCOMPARE(result.errors, message);
        QCOMPARE(result.code, 1);
        QCOMPARE(result.output, QString());
    }

    void anAddressInUseEndsItWithCode1()
    {
        SimulatorProcess first;
        QVERIFY(first.IsReady());
        const Result second = Run({"--address", first.Address()});
        QCOMPARE(second.code, 1);
        QVERIFY2(second.errors.startsWith(
                     QString("vx440-simulator: cannot listen on %1:50000: ").arg(first.Address())),
            qPrintable(second.errors));
        QCOMPARE(second.output, QString());
    }

    void port0TakesAFreePort()
    {
        QProcess process;
        process.start(qEnvironmentVariable("VX440_SIMULATOR"),
            {"--address", UnusedLoopbackAddress(), "--port", "0", "--end-with-input"});
        while (!process.canReadLine() && process.waitForReadyRead()) {
        }
        const QString line = QString::fromLocal8Bit(process.readLine()).trimmed();
        QVERIFY2(line.section(':', 1).toUShort() > 0, qPrintable(line));
        process.kill();
        process.waitForFinished();
    }

    void anInterfaceThatIsNotThereIsReported()
    {
        SimulatorProcess simulator({"--interface", "vx440-no"});
        Client client(simulator.Address());
        client.Send("CF2\r" + QByteArray::fromHex("024C7E000130"));
        QVERIFY(!simulator.LineThatBegins("CF2 024C7E000130").isNull());
        QVERIFY(
            simulator.Errors().contains("ip link set dev vx440-no address 02:4c:7e:00:01:30: "));
        QCOMPARE(client.Ask("CF8\r", 2), QByteArray("0\r"));
    }
};

QTEST_GUILESS_MAIN(SimulatorCommandLineTest)
#include "SimulatorCommandLineTest.moc"
