// SPDX-License-Identifier: MIT

#include "simulator/Faults.h"
#include "simulator/Delivery.h"
#include "tests/support/Warnings.h"

#include <QtTest>

using namespace simulator;

class FaultsTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void everyKindIsInTheTableOnce()
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

    void aTextNamesAFault()
    {
        static const struct
        {
            const char* text;
            FaultKind kind;
            Command command;
            int occurrence;
        } rows[] = {
            {"silent", FaultKind::Silent, Command::Unknown, 0},
            {"slow:CF10", FaultKind::Slow, Command::SetOptionDescriptions, 0},
            {"refusing:CF3:12", FaultKind::Refusing, Command::FirmwareBlock, 12},
            {"short:GET:OPTION:INTERNAL?", FaultKind::Short, Command::ReadOptions, 0},
            {"wrong:GET:OPTION:DESC?:2", FaultKind::Wrong, Command::ReadOptionDescriptions, 2},
            {"closing::3", FaultKind::Closing, Command::Unknown, 3},
        };
        for (const auto& row : rows) {
            Fault fault;
            QString error;
            QVERIFY2(ParseFault(row.text, fault, error), qPrintable(error));
            QVERIFY2(fault.kind == row.kind && fault.command == row.command, row.text);
            QVERIFY2(fault.occurrence == row.occurrence, row.text);
            QCOMPARE(FaultText(fault), row.text);
        }
    }

    void aTextThatNamesNoFaultIsRefused()
    {
        const QPair<QString, QString> rows[] = {{"", "no such fault: "},
            {"lazy", "no such fault: lazy"}, {"silent:CF11", "no such command: CF11"},
            {"silent:cf0", "no such command: cf0"}, {"silent:CF0:0", "occurrences count from 1: 0"},
            {"silent:CF0:x", "no such command: CF0:x"}};
        for (const auto& row : rows) {
            Fault fault;
            QString error;
            QVERIFY2(!ParseFault(row.first, fault, error), qPrintable(row.first));
            QCOMPARE(error, row.second);
        }
    }

    void aFaultMeetsItsCommandOrEveryOne()
    {
        Faults every;
        every.Add(Fault{FaultKind::Silent, Command::Unknown, 0});
        Faults one;
        one.Add(Fault{FaultKind::Short, Command::ReadEeprom, 0});
        for (const CommandRule& rule : CommandRules()) {
            QCOMPARE(every.Meet(rule.command), FaultKind::Silent);
            const bool isMet = rule.command == Command::ReadEeprom;
            QCOMPARE(one.Meet(rule.command), isMet ? FaultKind::Short : FaultKind::None);
        }
    }

    void anOccurrenceIsCountedFromTheSettingOfTheFault()
    {
        Faults faults;
        faults.Meet(Command::FirmwareBlock);
        faults.Add(Fault{FaultKind::Refusing, Command::FirmwareBlock, 2});
        QCOMPARE(faults.Meet(Command::FirmwareBlock), FaultKind::None);
        QCOMPARE(faults.Meet(Command::ReadIdentity), FaultKind::None);
        QCOMPARE(faults.Meet(Command::FirmwareBlock), FaultKind::Refusing);
        QCOMPARE(faults.Meet(Command::FirmwareBlock), FaultKind::None);
    }

    void theFaultSetLastWinsUntilTheyAreCleared()
    {
        Faults faults;
        faults.Add(Fault{FaultKind::Slow, Command::ReadIdentity, 0});
        faults.Add(Fault{FaultKind::Silent, Command::Unknown, 0});
        QCOMPARE(faults.Meet(Command::ReadIdentity), FaultKind::Silent);
        QCOMPARE(faults.Texts(), (QStringList{"slow:*IDN?", "silent"}));
        faults.Clear();
        QCOMPARE(faults.Meet(Command::ReadIdentity), FaultKind::None);
        QVERIFY(faults.Texts().isEmpty());
    }

    void anAnswerIsGivenAsTheFaultHasIt()
    {
        static const struct
        {
            FaultKind kind;
            QByteArray answer;
            int delayMs;
            QByteArray bytes;
            Ending ending;
        } rows[] = {
            {FaultKind::None, "answer\r", 0, "answer\r", Ending::Open},
            {FaultKind::Slow, "answer\r", 77, "answer\r", Ending::Open},
            {FaultKind::Refusing, "answer\r", 0, "answer\r", Ending::Open},
            {FaultKind::Short, "answer\r", 0, "ans", Ending::Open},
            {FaultKind::Long, "answer\r", 0, "answeranswer\r", Ending::Open},
            {FaultKind::Long, "a\rb", 0, "a\rba\rb", Ending::Open},
            {FaultKind::Wrong, "answer\r", 0, "other", Ending::Open},
            {FaultKind::Closing, "answer\r", 0, "", Ending::Closed},
            {FaultKind::Resetting, "answer\r", 0, "", Ending::Reset},
        };
        for (const auto& row : rows) {
            const QVector<Delivery> deliveries = Deliveries(row.kind, row.answer, "other", 77);
            QCOMPARE(deliveries.size(), 1);
            QCOMPARE(deliveries.first().bytes, row.bytes);
            QCOMPARE(deliveries.first().delayMs, row.delayMs);
            QCOMPARE(deliveries.first().ending, row.ending);
        }
    }

    void oneByOneEveryByteIsAStepWithAWait()
    {
        QByteArray joined;
        for (const Delivery& delivery : Deliveries(FaultKind::Bytewise, "answer\r", "other", 77)) {
            QCOMPARE(delivery.bytes.size(), 1);
            QVERIFY(delivery.delayMs > 0);
            joined += delivery.bytes;
        }
        QCOMPARE(joined, QByteArray("answer\r"));
    }

    void garbageIsAsLongAndHasNoCarriageReturn()
    {
        const QByteArray answer(5000, 'a');
        const QVector<Delivery> deliveries = Deliveries(FaultKind::Garbage, answer, "other", 77);
        QCOMPARE(deliveries.size(), 1);
        QCOMPARE(deliveries.first().bytes.size(), 5000);
        QVERIFY(!deliveries.first().bytes.contains('\r'));
        QVERIFY(deliveries.first().bytes != answer);
    }

    void aCommandWithoutAnswerStaysWithoutOne()
    {
        QVERIFY(Deliveries(FaultKind::Silent, "answer\r", "other", 77).isEmpty());
        for (const FaultDescription& fault : FaultDescriptions()) {
            const bool endsConnection =
                fault.kind == FaultKind::Closing || fault.kind == FaultKind::Resetting;
            QCOMPARE(
                Deliveries(fault.kind, QByteArray(), QByteArray(), 77).isEmpty(), !endsConnection);
        }
    }
};

QTEST_APPLESS_MAIN(FaultsTest)
#include "FaultsTest.moc"
