#include "simulator/FrameParser.h"

#include <QtTest>

using namespace simulator;

Q_DECLARE_METATYPE(simulator::Generation)

class FrameParserTest : public QObject
{
    Q_OBJECT

private slots:
    void aCommandIsTakenWholeAndByteByByte_data();
    void aCommandIsTakenWholeAndByteByByte();
    void theSecondCommandFollowsDirectlyBehindTheFirst_data();
    void theSecondCommandFollowsDirectlyBehindTheFirst();
    void everyBeginningOfACommandWaitsForTheRest_data();
    void everyBeginningOfACommandWaitsForTheRest();
    void quietEndsAnOpenPayloadAndShortWords_data();
    void quietEndsAnOpenPayloadAndShortWords();
    void quietDoesNotEndAPayloadOfKnownLength();
    void unknownBytesAreReportedUpToTheCarriageReturn();
    void bytesWithoutACarriageReturnAreReportedInPieces();
    void anEndlessPayloadIsCutAt4096Bytes();
    void aCarriageReturnInsideAPayloadIsData();
};

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

QVector<Frame> ByteByByte(FrameParser& parser, const QByteArray& bytes)
{
    QVector<Frame> frames;
    for (const char byte : bytes) {
        frames += parser.Take(QByteArray(1, byte));
    }
    return frames;
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

void AddEveryCommand()
{
    struct Row
    {
        const char* mnemonic;
        int below3;
        int from3;
        bool open;
    };
    const Row rows[] = {{"*IDN?", 0, 0, false}, {"CF0", 0, 0, false}, {"CF1", 8, 8, false},
        {"CF2", 127, 6, false}, {"CF3", 1220, 1220, false}, {"CF4", 8, 8, false},
        {"CF5", 255, 255, false}, {"CF6", 1202, 1202, true}, {"CF7", 4, 4, false},
        {"CF8", 0, 0, false}, {"CF9", 300, 300, true}, {"CF10", 300, 300, true},
        {"HCF", 20, 24, false}, {"VCF", 20, 24, false}, {"GET:OPTION:INTERNAL?", 0, 0, false},
        {"GET:OPTION:DESC?", 0, 0, false}};
    QTest::addColumn<Generation>("generation");
    QTest::addColumn<QByteArray>("mnemonic");
    QTest::addColumn<int>("size");
    QTest::addColumn<bool>("open");
    for (const Row& row : rows) {
        QTest::addRow("%s below 3.0", row.mnemonic)
            << Generation::Below3 << QByteArray(row.mnemonic) << row.below3 << row.open;
        QTest::addRow("%s from 3.0", row.mnemonic)
            << Generation::From3 << QByteArray(row.mnemonic) << row.from3 << row.open;
    }
}

} // namespace

void FrameParserTest::aCommandIsTakenWholeAndByteByByte_data()
{
    AddEveryCommand();
}

void FrameParserTest::aCommandIsTakenWholeAndByteByByte()
{
    QFETCH(Generation, generation);
    QFETCH(QByteArray, mnemonic);
    QFETCH(int, size);
    QFETCH(bool, open);
    const QByteArray payload = Payload(size);
    const QByteArray bytes = mnemonic + '\r' + payload;
    const QStringList expected{Line(mnemonic, payload)};

    FrameParser whole(generation);
    QStringList taken = Texts(whole.Take(bytes));
    QCOMPARE(taken.isEmpty(), open);
    QCOMPARE(whole.WaitsForQuiet(), open);
    QCOMPARE(taken + Texts(whole.InputQuiet()), expected);

    FrameParser slow(generation);
    taken = Texts(ByteByByte(slow, bytes));
    QCOMPARE(taken.isEmpty(), open);
    QCOMPARE(taken + Texts(slow.InputQuiet()), expected);
}

void FrameParserTest::theSecondCommandFollowsDirectlyBehindTheFirst_data()
{
    AddEveryCommand();
}

void FrameParserTest::theSecondCommandFollowsDirectlyBehindTheFirst()
{
    QFETCH(Generation, generation);
    QFETCH(QByteArray, mnemonic);
    QFETCH(int, size);
    QFETCH(bool, open);
    const QByteArray payload = Payload(size);
    FrameParser parser(generation);
    QVector<Frame> frames = parser.Take(mnemonic + '\r' + payload);
    if (open) {
        frames += parser.InputQuiet();
    }
    frames += parser.Take(QByteArrayLiteral("CF8\r"));
    QCOMPARE(Texts(frames), (QStringList{Line(mnemonic, payload), "CF8"}));
}

void FrameParserTest::everyBeginningOfACommandWaitsForTheRest_data()
{
    AddEveryCommand();
}

void FrameParserTest::everyBeginningOfACommandWaitsForTheRest()
{
    QFETCH(Generation, generation);
    QFETCH(QByteArray, mnemonic);
    QFETCH(int, size);
    const QByteArray payload = Payload(size);
    const QByteArray bytes = mnemonic + '\r' + payload;
    for (int cut = 1; cut < bytes.size(); ++cut) {
        FrameParser parser(generation);
        QVERIFY(parser.Take(bytes.left(cut)).isEmpty());
        QVector<Frame> frames = parser.Take(bytes.mid(cut));
        frames += parser.InputQuiet();
        QCOMPARE(Texts(frames), QStringList{Line(mnemonic, payload)});
    }
}

void FrameParserTest::quietEndsAnOpenPayloadAndShortWords_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("line");
    QTest::addRow("CF6 with the address only") << QByteArray("CF6\r\x04\xb0", 6) << "CF6 04B0";
    QTest::addRow("CF6 with nothing") << QByteArray("CF6\r") << "CF6";
    QTest::addRow("CF9 without text") << QByteArray("CF9\r") << "CF9";
    QTest::addRow("CF10 with text") << QByteArray("CF10\ra;b") << "CF10 613B62";
    QTest::addRow("HCF without words") << QByteArray("HCF\r") << "HCF";
    QTest::addRow("VCF with one word") << QByteArray("VCF\r\x01\xf4", 6) << "VCF 01F4";
}

void FrameParserTest::quietEndsAnOpenPayloadAndShortWords()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, line);
    FrameParser parser(Generation::From3);
    QVERIFY(parser.Take(bytes).isEmpty());
    QVERIFY(parser.WaitsForQuiet());
    QCOMPARE(Texts(parser.InputQuiet()), QStringList{line});
    QVERIFY(!parser.WaitsForQuiet());
    QVERIFY(parser.InputQuiet().isEmpty());
}

void FrameParserTest::quietDoesNotEndAPayloadOfKnownLength()
{
    FrameParser parser(Generation::From3);
    QVERIFY(parser.Take(QByteArrayLiteral("CF7\r\0")).isEmpty());
    QVERIFY(!parser.WaitsForQuiet());
    QVERIFY(parser.InputQuiet().isEmpty());
    QCOMPARE(Texts(parser.Take(QByteArray("\x40\x04\xb0", 3))), QStringList{"CF7 004004B0"});
}

void FrameParserTest::unknownBytesAreReportedUpToTheCarriageReturn()
{
    FrameParser parser(Generation::From3);
    QCOMPARE(Texts(parser.Take(QByteArrayLiteral("CF11\rcf0\r\rCF0\r"))),
        (QStringList{"unknown 43463131", "unknown 636630", "unknown", "CF0"}));
}

void FrameParserTest::bytesWithoutACarriageReturnAreReportedInPieces()
{
    FrameParser parser(Generation::From3);
    const QVector<Frame> frames = parser.Take(QByteArray(1000, 'x'));
    QCOMPARE(frames.size(), 3);
    for (const Frame& frame : frames) {
        QCOMPARE(FrameText(frame), Line("unknown", QByteArray(256, 'x')));
    }
    QCOMPARE(Texts(parser.Take(QByteArrayLiteral("\rCF8\r"))),
        (QStringList{Line("unknown", QByteArray(232, 'x')), "CF8"}));
}

void FrameParserTest::anEndlessPayloadIsCutAt4096Bytes()
{
    FrameParser parser(Generation::From3);
    const QVector<Frame> frames = parser.Take("CF6\r" + Payload(4096) + "CF8\r");
    QCOMPARE(Texts(frames), (QStringList{Line("CF6", Payload(4096)), "CF8"}));
}

void FrameParserTest::aCarriageReturnInsideAPayloadIsData()
{
    FrameParser parser(Generation::From3);
    QCOMPARE(
        Texts(parser.Take(QByteArray("CF1\rCF0\r\r\rCF"))), QStringList{"CF1 4346300D0D0D4346"});
}

QTEST_APPLESS_MAIN(FrameParserTest)
#include "FrameParserTest.moc"
