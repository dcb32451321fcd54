// SPDX-License-Identifier: MIT

#include "simulator/FrameParser.h"
#include "tests/support/Warnings.h"

#include <QtTest>

using namespace simulator;

namespace {

/// Bytes that do not repeat within 251.
QByteArray Payload(int size)
{
    QByteArray bytes;
    while (bytes.size() < size) {
        bytes.append(char(bytes.size() % 251 + 1));
    }
    return bytes;
}

QStringList Texts(const QVector<Frame>& frames)
{
    QStringList texts;
    for (const Frame& frame : frames) {
        texts.append(FrameText(frame));
    }
    return texts;
}

QString Line(const QByteArray& mnemonic, const QByteArray& payload)
{
    const QByteArray hex = payload.isEmpty() ? QByteArray() : ' ' + payload.toHex().toUpper();
    return QString::fromLatin1(mnemonic + hex);
}

/// A whole command, as a unit of this generation takes it. Quiet ends an open one.
struct sCOMMAND
{
    Generation generation;
    QByteArray bytes;
    QString line;
    bool open;
};

QVector<sCOMMAND> EveryCommand()
{
    static const struct
    {
        const char* mnemonic;
        int below3;
        int from3;
        bool open;
    } rows[] = {{"*IDN?", 0, 0, false}, {"CF0", 0, 0, false}, {"CF1", 8, 8, false},
        {"CF2", 127, 6, false}, {"CF3", 1220, 1220, false}, {"CF4", 8, 8, false},
        {"CF5", 255, 255, false}, {"CF6", 1202, 1202, true}, {"CF7", 4, 4, false},
        {"CF8", 0, 0, false}, {"CF9", 300, 300, true}, {"CF10", 300, 300, true},
        {"HCF", 20, 24, false}, {"VCF", 20, 24, false}, {"GET:OPTION:INTERNAL?", 0, 0, false},
        {"GET:OPTION:DESC?", 0, 0, false}};
    QVector<sCOMMAND> commands;
    for (const auto& row : rows) {
        for (const Generation generation : {Generation::Below3, Generation::From3}) {
            const QByteArray mnemonic(row.mnemonic);
            const QByteArray payload =
                Payload(generation == Generation::Below3 ? row.below3 : row.from3);
            commands.append(
                {generation, mnemonic + '\r' + payload, Line(mnemonic, payload), row.open});
        }
    }
    return commands;
}

} // namespace

class FrameParserTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void aCommandIsTakenWholeAndByteByByteAndTheNextBehindIt()
    {
        for (const sCOMMAND& command : EveryCommand()) {
            FrameParser whole(command.generation);
            QStringList taken = Texts(whole.Take(command.bytes));
            QCOMPARE(taken, command.open ? QStringList() : QStringList{command.line});
            QCOMPARE(whole.WaitsForQuiet(), command.open);
            taken += Texts(whole.InputQuiet());
            taken += Texts(whole.Take("CF8\r"));
            QCOMPARE(taken, (QStringList{command.line, "CF8"}));

            FrameParser slow(command.generation);
            taken.clear();
            for (const char byte : command.bytes) {
                taken += Texts(slow.Take(QByteArray(1, byte)));
            }
            QCOMPARE(taken.isEmpty(), command.open);
            QCOMPARE(taken + Texts(slow.InputQuiet()), QStringList{command.line});
        }
    }

    void everyBeginningOfACommandWaitsForTheRest()
    {
        for (const sCOMMAND& command : EveryCommand()) {
            for (int cut = 1; cut < command.bytes.size(); ++cut) {
                FrameParser parser(command.generation);
                QVERIFY2(parser.Take(command.bytes.left(cut)).isEmpty(), qPrintable(command.line));
                const QStringList taken = Texts(parser.Take(command.bytes.mid(cut)));
                QCOMPARE(taken + Texts(parser.InputQuiet()), QStringList{command.line});
            }
        }
    }

    void quietEndsAnOpenPayloadAndShortWords()
    {
        const QPair<QByteArray, QString> rows[] = {{QByteArray("CF6\r\x04\xb0", 6), "CF6 04B0"},
            {"CF6\r", "CF6"}, {"CF9\r", "CF9"}, {"CF10\ra;b", "CF10 613B62"}, {"HCF\r", "HCF"},
            {QByteArray("VCF\r\x01\xf4", 6), "VCF 01F4"}};
        for (const auto& row : rows) {
            FrameParser parser(Generation::From3);
            QVERIFY2(parser.Take(row.first).isEmpty(), qPrintable(row.second));
            QVERIFY2(parser.WaitsForQuiet(), qPrintable(row.second));
            QCOMPARE(Texts(parser.InputQuiet()), QStringList{row.second});
            QVERIFY2(!parser.WaitsForQuiet(), qPrintable(row.second));
            QCOMPARE(Texts(parser.InputQuiet()), QStringList());
        }
    }

    void quietDoesNotEndAPayloadOfKnownLength()
    {
        FrameParser parser(Generation::From3);
        QVERIFY(parser.Take(QByteArrayLiteral("CF7\r\0")).isEmpty());
        QVERIFY(!parser.WaitsForQuiet());
        QVERIFY(parser.InputQuiet().isEmpty());
        QCOMPARE(Texts(parser.Take(QByteArray("\x40\x04\xb0", 3))), QStringList{"CF7 004004B0"});
    }

    void unknownBytesAreReportedUpToTheCarriageReturn()
    {
        FrameParser parser(Generation::From3);
        QCOMPARE(Texts(parser.Take("CF11\rcf0\r\rCF0\r")),
            (QStringList{"unknown 43463131", "unknown 636630", "unknown", "CF0"}));
    }

    void bytesWithoutACarriageReturnAreReportedInPieces()
    {
        FrameParser parser(Generation::From3);
        const QString piece = Line("unknown", QByteArray(256, 'x'));
        QCOMPARE(Texts(parser.Take(QByteArray(1000, 'x'))), (QStringList{piece, piece, piece}));
        QCOMPARE(Texts(parser.Take("\rCF8\r")),
            (QStringList{Line("unknown", QByteArray(232, 'x')), "CF8"}));
    }

    void anEndlessPayloadIsCutAt4096Bytes()
    {
        FrameParser parser(Generation::From3);
        const QVector<Frame> frames = parser.Take("CF6\r" + Payload(4096) + "CF8\r");
        QCOMPARE(Texts(frames), (QStringList{Line("CF6", Payload(4096)), "CF8"}));
    }

    void aCarriageReturnInsideAPayloadIsData()
    {
        FrameParser parser(Generation::From3);
        QCOMPARE(Texts(parser.Take("CF1\rCF0\r\r\rCF")), QStringList{"CF1 4346300D0D0D4346"});
    }
};

QTEST_APPLESS_MAIN(FrameParserTest)
#include "FrameParserTest.moc"
