#include "simulator/Faults.h"
#include "simulator/Delivery.h"

#include <QtTest>

using namespace simulator;

Q_DECLARE_METATYPE(simulator::FaultKind)
Q_DECLARE_METATYPE(simulator::Command)

class FaultsTest : public QObject
{
    Q_OBJECT

private slots:
    void everyKindIsInTheTableOnce();
    void aTextNamesAFault_data();
    void aTextNamesAFault();
    void aTextThatNamesNoFaultIsRefused_data();
    void aTextThatNamesNoFaultIsRefused();
    void aFaultWithoutACommandMeetsEveryCommand();
    void aFaultWithACommandMeetsThatCommandOnly();
    void anOccurrenceIsCountedFromTheSettingOfTheFault();
    void theFaultSetLastWins();
    void clearedFaultsMeetNothing();
    void anAnswerIsGivenAsTheFaultHasIt_data();
    void anAnswerIsGivenAsTheFaultHasIt();
    void aLongBlockIsTheBlockTwice();
    void oneByOneEveryByteIsAStepWithAWait();
    void garbageIsAsLongAndHasNoCarriageReturn();
    void aCommandWithoutAnswerStaysWithoutOne();
};

void FaultsTest::everyKindIsInTheTableOnce()
{
    QStringList names;
    for (const FaultDescription& fault : FaultDescriptions()) {
        names.append(QString::fromLatin1(fault.name));
        QVERIFY(fault.kind != FaultKind::None);
        QVERIFY(qstrlen(fault.effect) > 0);
    }
    QCOMPARE(names.join(' '),
        "silent refusing slow bytewise garbage closing resetting short long wrong");
}

void FaultsTest::aTextNamesAFault_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<FaultKind>("kind");
    QTest::addColumn<Command>("command");
    QTest::addColumn<int>("occurrence");
    QTest::addRow("a kind alone") << "silent" << FaultKind::Silent << Command::Unknown << 0;
    QTest::addRow("a kind and a command")
        << "slow:CF10" << FaultKind::Slow << Command::SetOptionDescriptions << 0;
    QTest::addRow("a kind, a command and an occurrence")
        << "refusing:CF3:12" << FaultKind::Refusing << Command::FirmwareBlock << 12;
    QTest::addRow("a command with colons")
        << "short:GET:OPTION:INTERNAL?" << FaultKind::Short << Command::ReadOptions << 0;
    QTest::addRow("a command with colons and an occurrence")
        << "wrong:GET:OPTION:DESC?:2" << FaultKind::Wrong << Command::ReadOptionDescriptions << 2;
    QTest::addRow("an occurrence of any command")
        << "closing::3" << FaultKind::Closing << Command::Unknown << 3;
}

void FaultsTest::aTextNamesAFault()
{
    QFETCH(QString, text);
    QFETCH(FaultKind, kind);
    QFETCH(Command, command);
    QFETCH(int, occurrence);
    Fault fault;
    QString error;
    QVERIFY2(ParseFault(text, fault, error), qPrintable(error));
    QCOMPARE(fault.kind, kind);
    QCOMPARE(fault.command, command);
    QCOMPARE(fault.occurrence, occurrence);
    QCOMPARE(FaultText(fault), text);
}

void FaultsTest::aTextThatNamesNoFaultIsRefused_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("reason");
    QTest::addRow("nothing") << QString() << "no such fault: ";
    QTest::addRow("an unknown kind") << "lazy"
                                     << "no such fault: lazy";
    QTest::addRow("an unknown command") << "silent:CF11"
                                        << "no such command: CF11";
    QTest::addRow("a command in small letters") << "silent:cf0"
                                                << "no such command: cf0";
    QTest::addRow("occurrence 0") << "silent:CF0:0"
                                  << "occurrences count from 1: 0";
    QTest::addRow("an occurrence that is no number") << "silent:CF0:x"
                                                     << "no such command: CF0:x";
}

void FaultsTest::aTextThatNamesNoFaultIsRefused()
{
    QFETCH(QString, text);
    QFETCH(QString, reason);
    Fault fault;
    QString error;
    QVERIFY(!ParseFault(text, fault, error));
    QCOMPARE(error, reason);
}

void FaultsTest::aFaultWithoutACommandMeetsEveryCommand()
{
    Faults faults;
    faults.Add(Fault{FaultKind::Silent, Command::Unknown, 0});
    for (const CommandRule& rule : CommandRules()) {
        QCOMPARE(faults.Meet(rule.command), FaultKind::Silent);
    }
}

void FaultsTest::aFaultWithACommandMeetsThatCommandOnly()
{
    Faults faults;
    faults.Add(Fault{FaultKind::Short, Command::ReadEeprom, 0});
    for (const CommandRule& rule : CommandRules()) {
        QCOMPARE(
            faults.Meet(rule.command) == FaultKind::Short, rule.command == Command::ReadEeprom);
    }
}

void FaultsTest::anOccurrenceIsCountedFromTheSettingOfTheFault()
{
    Faults faults;
    faults.Meet(Command::FirmwareBlock);
    faults.Add(Fault{FaultKind::Refusing, Command::FirmwareBlock, 2});
    QCOMPARE(faults.Meet(Command::FirmwareBlock), FaultKind::None);
    QCOMPARE(faults.Meet(Command::ReadIdentity), FaultKind::None);
    QCOMPARE(faults.Meet(Command::FirmwareBlock), FaultKind::Refusing);
    QCOMPARE(faults.Meet(Command::FirmwareBlock), FaultKind::None);
}

void FaultsTest::theFaultSetLastWins()
{
    Faults faults;
    faults.Add(Fault{FaultKind::Slow, Command::ReadIdentity, 0});
    faults.Add(Fault{FaultKind::Silent, Command::Unknown, 0});
    QCOMPARE(faults.Meet(Command::ReadIdentity), FaultKind::Silent);
    QCOMPARE(faults.Texts(), (QStringList{"slow:*IDN?", "silent"}));
}

void FaultsTest::clearedFaultsMeetNothing()
{
    Faults faults;
    faults.Add(Fault{FaultKind::Silent, Command::Unknown, 0});
    faults.Clear();
    QCOMPARE(faults.Meet(Command::ReadIdentity), FaultKind::None);
    QVERIFY(faults.Texts().isEmpty());
}

void FaultsTest::anAnswerIsGivenAsTheFaultHasIt_data()
{
    QTest::addColumn<FaultKind>("kind");
    QTest::addColumn<int>("delayMs");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("ending");
    const int open = int(Ending::Open);
    QTest::addRow("none") << FaultKind::None << 0 << QByteArray("answer\r") << open;
    QTest::addRow("slow") << FaultKind::Slow << 77 << QByteArray("answer\r") << open;
    QTest::addRow("refusing") << FaultKind::Refusing << 0 << QByteArray("answer\r") << open;
    QTest::addRow("short") << FaultKind::Short << 0 << QByteArray("ans") << open;
    QTest::addRow("long") << FaultKind::Long << 0 << QByteArray("answeranswer\r") << open;
    QTest::addRow("wrong") << FaultKind::Wrong << 0 << QByteArray("other") << open;
    QTest::addRow("closing") << FaultKind::Closing << 0 << QByteArray() << int(Ending::Closed);
    QTest::addRow("resetting") << FaultKind::Resetting << 0 << QByteArray() << int(Ending::Reset);
}

void FaultsTest::anAnswerIsGivenAsTheFaultHasIt()
{
    QFETCH(FaultKind, kind);
    QFETCH(int, delayMs);
    QFETCH(QByteArray, bytes);
    QFETCH(int, ending);
    const QVector<Delivery> deliveries = Deliveries(kind, "answer\r", "other", 77);
    QCOMPARE(deliveries.size(), 1);
    QCOMPARE(deliveries.first().delayMs, delayMs);
    QCOMPARE(deliveries.first().bytes, bytes);
    QCOMPARE(int(deliveries.first().ending), ending);
}

void FaultsTest::aLongBlockIsTheBlockTwice()
{
    const QByteArray block("a\rb", 3);
    QCOMPARE(Deliveries(FaultKind::Long, block, "other", 77).first().bytes, block + block);
}

void FaultsTest::oneByOneEveryByteIsAStepWithAWait()
{
    QByteArray joined;
    const QVector<Delivery> deliveries = Deliveries(FaultKind::Bytewise, "answer\r", "other", 77);
    for (const Delivery& delivery : deliveries) {
        QCOMPARE(delivery.bytes.size(), 1);
        QVERIFY(delivery.delayMs > 0);
        joined += delivery.bytes;
    }
    QCOMPARE(joined, QByteArray("answer\r"));
}

void FaultsTest::garbageIsAsLongAndHasNoCarriageReturn()
{
    const QByteArray answer(5000, 'a');
    const QVector<Delivery> deliveries = Deliveries(FaultKind::Garbage, answer, "other", 77);
    QCOMPARE(deliveries.size(), 1);
    QCOMPARE(deliveries.first().bytes.size(), 5000);
    QVERIFY(!deliveries.first().bytes.contains('\r'));
    QVERIFY(deliveries.first().bytes != answer);
}

void FaultsTest::aCommandWithoutAnswerStaysWithoutOne()
{
    QVERIFY(Deliveries(FaultKind::Silent, "answer\r", "other", 77).isEmpty());
    for (const FaultDescription& fault : FaultDescriptions()) {
        const bool endsConnection =
            fault.kind == FaultKind::Closing || fault.kind == FaultKind::Resetting;
        QCOMPARE(Deliveries(fault.kind, QByteArray(), QByteArray(), 77).isEmpty(), !endsConnection);
    }
}

QTEST_APPLESS_MAIN(FaultsTest)
#include "FaultsTest.moc"
