// SPDX-License-Identifier: MIT

#include "options/CDeviceOptions.h"
#include "tests/support/Warnings.h"

#include <QtTest>

#include <tuple>

namespace {

using Items = QVector<QPair<QString, QString>>;
using Changes = QMap<int, QString>;

const QString Comma = ",";
const QString Semicolon = ";";

// What travels, with `filling` wherever there is no change.
QString OnTheWire(const Changes& changes, const QString& filling, const QString& separator)
{
    QStringList fields;
    for (int position = 2; position <= 20; ++position) {
        fields.append(changes.value(position, filling));
    }
    return fields.join(separator);
}

// What a unit answers that holds these at their positions, and nothing elsewhere.
QString InternalText(const Changes& changes = {})
{
    return OnTheWire(changes, "0", Comma);
}

QString DescriptionText(const Changes& changes = {})
{
    return OnTheWire(changes, QString(), Semicolon);
}

QString Fields(const char* name, int count, const QString& separator)
{
    QStringList fields;
    for (int field = 1; field <= count; ++field) {
        fields.append(QString(name) + QString::number(field));
    }
    return fields.join(separator);
}

// A unit with everything, and with other texts in each field.
const QString AllModules =
    "VX440-DCF,VX440-DCF,VX440-ATT,VX440-FIL,VX440-FIL,VX440-A1+A2,VX440-F11,VX440-F12,VX440-F13,"
    "VX440-F14,VX440-F15,VX440-F16,VX440-F21,VX440-F22,VX440-F23,VX440-F24,VX440-F25,ProSisTel,"
    "YAESU G-550";
const QString AllDescriptions =
    "first feed;second feed;a0,a3,a6,a10,a20,a40;bank one;bank two;stage one,stage two;d11;d12;d13;"
    "d14;d15;d16;d21;d22;d23;d24;d25;turns round;turns up";

bool ParseAll(CDeviceOptions& options)
{
    return options.ParseDeviceOptions(AllModules, AllDescriptions);
}

// What a unit with these at their positions is taken for.
struct Record : CDeviceOptions
{
    explicit Record(const Changes& modules, const Changes& descriptions = {})
        : isParsed(ParseDeviceOptions(InternalText(modules), DescriptionText(descriptions)))
    {
    }

    bool isParsed;
};

QVector<Items> Shown(const CDeviceOptions& options)
{
    return {options.DcFeedItems, options.AttenuatorItems, options.Filter1Items,
        options.Filter2Items, options.AmplifierItems, options.AzimuthRotatorItems,
        options.PolarRotatorItems};
}

// One item for each pair of texts between the bars.
Items ItemsOf(const char* list)
{
    const QStringList texts = QString(list).split('|');
    Items items;
    for (int text = 0; text + 1 < texts.size(); text += 2) {
        items.append({texts.at(text), texts.at(text + 1)});
    }
    return items;
}

} // namespace

class DeviceOptionsTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void aFreshRecordIsEmptyAndNotValid()
    {
        CDeviceOptions options;
        QVERIFY(options.InternalOptions.isEmpty() && options.OptionDescriptions.isEmpty());
        QVERIFY(!options.InternalValid && !options.DescriptionValid && !options.IsValid());
        QVERIFY(!options.UpdateOptionLists());
        QCOMPARE(Shown(options), QVector<Items>(7));
        QCOMPARE(options.GetInternalOptions(), QString());
        QCOMPARE(options.GetOptionDescriptions(), QString());
    }

    void everyFieldOfTheUnitStandsAtItsPosition()
    {
        CDeviceOptions options;
        QVERIFY(options.ParseDeviceOptions(Fields("i", 19, Comma), Fields("d", 19, Semicolon)));
        QVERIFY(options.IsValid());
        QCOMPARE(options.InternalOptions.size(), 22);
        QCOMPARE(options.OptionDescriptions.size(), 22);
        for (int field = 1; field <= 19; ++field) {
            QCOMPARE(options.InternalOptions.at(field + 1), QString("i%1").arg(field));
            QCOMPARE(options.OptionDescriptions.at(field + 1), QString("d%1").arg(field));
        }
        for (const int unused : {0, 1, 21}) {
            QCOMPARE(options.InternalOptions.at(unused), "-");
            QCOMPARE(options.OptionDescriptions.at(unused), QString());
        }
    }

    void aUnitsStringsGoBackAsTheyCame()
    {
        const std::pair<QString, QString> rows[] = {
            {"VX440-DCF,0,0,0,0,VX440-A1,0,0,0,0,0,0,0,0,0,0,0,0,0", "12 V" + QString(18, ';')},
            {AllModules, AllDescriptions},
            {InternalText(), DescriptionText()},
        };
        for (const auto& [internal, descriptions] : rows) {
            CDeviceOptions options;
            QVERIFY(options.ParseDeviceOptions(internal, descriptions));
            QCOMPARE(options.GetInternalOptions(), internal);
            QCOMPARE(options.GetOptionDescriptions(), descriptions);
        }
    }

    // A record that was filled before keeps what a string with too few fields does not replace.
    void theFieldsAreCounted()
    {
        const std::tuple<bool, int, int, bool, int, int, bool> rows[] = {
            {false, 19, 19, true, 22, 22, true}, {false, 0, 0, false, 0, 0, false},
            {false, 1, 19, false, 0, 22, false}, {false, 18, 19, false, 0, 22, false},
            {false, 20, 19, false, 23, 22, false}, {false, 19, 0, true, 22, 0, true},
            {false, 19, 18, true, 22, 0, true}, {false, 19, 20, true, 22, 23, true},
            {true, 19, 19, true, 22, 22, true}, {true, 0, 0, true, 22, 22, false},
            {true, 18, 18, true, 22, 22, false}, {true, 20, 19, false, 23, 22, false},
            {true, 19, 18, true, 22, 22, true}, {true, 19, 20, true, 22, 23, true}};
        for (const auto& [filledBefore, internalFields, descriptionFields, result, internalSize,
                 descriptionSize, listsAreNew] : rows) {
            CDeviceOptions options;
            QVERIFY(!filledBefore || ParseAll(options));
            const auto shownBefore = Shown(options);
            const QVector<QString> internalBefore = options.InternalOptions;
            const QVector<QString> descriptionsBefore = options.OptionDescriptions;
            QCOMPARE(options.ParseDeviceOptions(Fields("i", internalFields, Comma),
                         Fields("d", descriptionFields, Semicolon)),
                result);
            QCOMPARE(options.InternalOptions.size(), internalSize);
            QCOMPARE(options.OptionDescriptions.size(), descriptionSize);
            QCOMPARE(options.InternalValid, internalSize == 22);
            QCOMPARE(options.IsValid(), result);
            QCOMPARE(Shown(options) != shownBefore, listsAreNew);
            QCOMPARE(options.InternalOptions == internalBefore, internalFields < 19);
            QCOMPARE(options.OptionDescriptions == descriptionsBefore, descriptionFields < 19);
        }
    }

    void aWrongNumberOfInternalFieldsLeavesTheJudgementOfTheDescriptions()
    {
        CDeviceOptions options;
        QVERIFY(!options.ParseDeviceOptions(Fields("i", 20, Comma), Fields("d", 19, Semicolon)));
        QVERIFY(!options.DescriptionValid);
        QVERIFY(ParseAll(options));
        const QString tooLong(700, 'x');
        QVERIFY(
            !options.ParseDeviceOptions(Fields("i", 20, Comma), DescriptionText({{8, tooLong}})));
        QVERIFY(options.DescriptionValid);
    }

    void anEmptyInternalFieldIsLostAndTheOthersMoveUp()
    {
        CDeviceOptions options;
        QVERIFY(!options.ParseDeviceOptions(InternalText({{10, QString()}}), DescriptionText()));
        QVERIFY(options.InternalOptions.isEmpty()); // one too few
        QStringList fields = Fields("i", 20, Comma).split(Comma);
        fields[3].clear();
        QVERIFY(options.ParseDeviceOptions(fields.join(Comma), DescriptionText()));
        QCOMPARE(options.InternalOptions.size(), 22);
        QCOMPARE(
            options.InternalOptions.mid(2, 5), (QVector<QString>{"i1", "i2", "i3", "i5", "i6"}));
        QCOMPARE(options.InternalOptions.at(20), "i20");
    }

    void anEmptyDescriptionKeepsItsPlace()
    {
        const Record record({}, {{8, "eight"}, {20, "last"}});
        QCOMPARE(record.OptionDescriptions.at(8), "eight");
        QCOMPARE(record.OptionDescriptions.at(20), "last");
        QCOMPARE(record.OptionDescriptions.count(QString()), 20);
    }

    void blanksAreTakenOutOfTheFields()
    {
        const Record record({{2, "  VX440-DCF "}, {3, "   "}, {19, "\tG \n 550 "}},
            {{2, " twelve   volts "}, {4, " a , b "}});
        QCOMPARE(record.InternalOptions.at(2), "VX440-DCF");
        QCOMPARE(record.InternalOptions.at(3), QString()); // blanks alone are a field
        QCOMPARE(record.InternalOptions.at(19), "G 550");
        QCOMPARE(record.OptionDescriptions.at(2), "twelve volts");
        QCOMPARE(record.OptionDescriptions.at(4), "a , b");
    }

    // With the 21 gaps between 22 entries 643 characters are 664. What is too long is kept all the
    // same, but not shown.
    void theDescriptionsMayHaveSoManyCharacters()
    {
        for (const int characters : {643, 644}) {
            const bool valid = characters == 643;
            const Changes descriptions{
                {8, QString(300, 'x')}, {20, QString(characters - 300, 'y')}};
            const Record record({{19, "rotator"}}, descriptions);
            QCOMPARE(record.isParsed, valid);
            QVERIFY(record.InternalValid);
            QCOMPARE(record.DescriptionValid, valid);
            QCOMPARE(record.IsValid(), valid);
            QCOMPARE(record.AzimuthRotatorItems.size(), valid ? 1 : 0);
            QCOMPARE(record.GetInternalOptions(), InternalText({{19, "rotator"}}));
            QCOMPARE(record.GetOptionDescriptions(), DescriptionText(descriptions));
        }
    }

    void theLengthCountsAllEntriesAndTheGapsBetweenThem()
    {
        const auto text = [](int characters) { return QString(characters, 'x'); };
        const std::pair<QVector<QString>, bool> rows[] = {
            {{}, true},
            {QVector<QString>(22), true},
            {{text(664)}, true},
            {{text(665)}, false},
            {{text(663), ""}, true},
            {{text(664), ""}, false},
            {QVector<QString>(22) + QVector<QString>{text(642)}, true},
            {QVector<QString>(22) + QVector<QString>{text(643)}, false},
            {QVector<QString>(665), true},
            {QVector<QString>(666), false},
        };
        for (const auto& [descriptions, valid] : rows) {
            CDeviceOptions options;
            options.OptionDescriptions = descriptions;
            options.DescriptionValid = !valid;
            QCOMPARE(options.CheckDescriptionLength(), valid);
            QCOMPARE(options.DescriptionValid, valid);
        }
    }

    void theUnusedEntriesDoNotTravel()
    {
        const std::pair<QVector<QString>, QStringList> rows[] = {
            {{}, {}},
            {{"a"}, {}},
            {{"a", "b"}, {}},
            {{"a", "b", "c"}, {}},
            {{"a", "b", "c", "d"}, {"c"}},
            {{"a", "b", "c", "d", "e"}, {"c", "d"}},
            {{"none", "none", "none", "c", "none", "none"}, {"0", "c", "0"}},
            {{"a", "b", "None", "NONE", "none ", "nonesuch", "z"},
                {"None", "NONE", "none ", "nonesuch"}},
            {{"a", "b", "", "", "", "z"}, {"", "", ""}},
            {{"a", "b", "c,d", "e;f", "z"}, {"c,d", "e;f"}},
        };
        for (const auto& [list, fields] : rows) {
            CDeviceOptions options;
            options.InternalOptions = list;
            QCOMPARE(options.GetInternalOptions(), fields.join(Comma));
            QCOMPARE(options.GetOptionDescriptions(), QString());
            options.InternalOptions.clear();
            options.OptionDescriptions = list;
            QCOMPARE(options.GetInternalOptions(), QString());
            QCOMPARE(options.GetOptionDescriptions(), fields.join(Semicolon));
            QCOMPARE(options.OptionDescriptions, list); // stays as it is
        }
    }

    void theFeedsAreShown()
    {
        const Items one = ItemsOf("DC-Feed1|first feed");
        const Items both = ItemsOf("DC-Feed1|first feed|DC-Feed2|second feed");
        const QString feed = "VX440-DCF";
        const std::tuple<QString, QString, Items> rows[] = {{"0", "0", {}}, {feed, "0", one},
            {feed, feed, both}, {"0", feed, {}}, {"none", "none", {}}, {feed, "none", one},
            {"vx440-dcf", feed, {}}, {feed, "vx440-dcf", one}, {"VX440-ATT", feed, {}}};
        for (const auto& [first, second, items] : rows) {
            const Record record({{2, first}, {3, second}}, {{2, "first feed"}, {3, "second feed"}});
            QCOMPARE(record.DcFeedItems, items);
        }
    }

    void theAttenuatorIsShown()
    {
        const std::tuple<const char*, const char*, QStringList> rows[] = {
            {"VX440-ATT", "a,b,c,d,e,f", {"a", "b", "c", "d", "e", "f"}},
            {"VX440-ATT", "", {"", "", "", "", "", ""}},
            {"VX440-ATT", "a", {"a", "", "", "", "", ""}},
            {"VX440-ATT", "a,b,c,d,e", {"a", "b", "c", "d", "e", ""}},
            {"VX440-ATT", "a,b,c,d,e,f,g", {"a", "b", "c", "d", "e", "f"}},
            {"VX440-ATT", ",b,,d,,f", {"", "b", "", "d", "", "f"}},
            {"VX440-ATT", "a a, b,c ,d,e,f", {"a a", " b", "c ", "d", "e", "f"}},
            {"0", "a,b,c,d,e,f", {}},
            {"none", "a,b,c,d,e,f", {}},
            {"vx440-att", "a,b,c,d,e,f", {}},
        };
        const char* const labels[] = {
            "Bypass", "Att. 3dB", "Att. 6dB", "Att. 10dB", "Att. 20dB", "Att. 40dB"};
        for (const auto& [module, description, descriptions] : rows) {
            Items items;
            for (const QString& text : descriptions) {
                items.append({labels[items.size()], text});
            }
            QCOMPARE(Record({{4, module}}, {{4, description}}).AttenuatorItems, items);
        }
    }

    void theAmplifierStageIsShown()
    {
        const std::tuple<const char*, const char*, const char*> rows[] = {
            {"VX440-AMP", "one,two", "Bypass||HF AMP||V/UHF AMP||SHF AMP|"},
            {"VX440-A1", "one", "Bypass||Bypass||VX440-A1|one||"},
            {"VX440-A1", "one,two", "Bypass||Bypass||VX440-A1|one||"},
            {"VX440-A1", "", "Bypass||Bypass||VX440-A1|||"},
            {"VX440-A1", "one,two,three", "Bypass||Bypass||VX440-A1|||"},
            {"VX440-A2", "one", "Bypass||Bypass||||VX440-A2|one"},
            {"VX440-A2", "one,two", "Bypass||Bypass||||VX440-A2|one"},
            {"VX440-A2", ",,one,", "Bypass||Bypass||||VX440-A2|one"},
            {"VX440-A1+A2", "one,two", "Bypass||Bypass||VX440-A1|one|VX440-A2|two"},
            {"VX440-A1+A2", "one", "Bypass||Bypass||VX440-A1|one|VX440-A2|"},
            {"VX440-A1+A2", ",two", "Bypass||Bypass||VX440-A1|two|VX440-A2|"},
            {"VX440-A1+A2", "one,two,three", "Bypass||Bypass||VX440-A1||VX440-A2|"},
            {"none", "one,two", ""},
            {"0", "one,two", ""},
            {"VX440-A3", "one,two", ""},
            {"vx440-a1", "one", ""},
        };
        for (const auto& [module, description, items] : rows) {
            QCOMPARE(Record({{7, module}}, {{7, description}}).AmplifierItems, ItemsOf(items));
        }
    }

    // The second bank is not shown without the first.
    void theFilterBanksAreShown()
    {
        const QString bank = "VX440-FIL";
        const std::tuple<QString, QString, int> rows[] = {{"0", "0", 0}, {bank, "0", 1},
            {bank, bank, 2}, {"0", bank, 0}, {"none", bank, 0}, {"vx440-fil", bank, 0},
            {bank, "vx440-fil", 1}};
        const Items bank1 = ItemsOf("VX440-F11|d11|VX440-F12|d12|VX440-F13|d13|VX440-F14|d14|"
                                    "VX440-F15|d15|VX440-F16|d16");
        const Items bank2 = ItemsOf("VX440-F21|d21|VX440-F22|d22|VX440-F23|d23|VX440-F24|d24|"
                                    "VX440-F25|d25");
        for (const auto& [first, second, shown] : rows) {
            QStringList modules = AllModules.split(Comma);
            modules[3] = first;
            modules[4] = second;
            CDeviceOptions options;
            QVERIFY(options.ParseDeviceOptions(modules.join(Comma), AllDescriptions));
            QCOMPARE(options.Filter1Items, shown > 0 ? bank1 : Items());
            QCOMPARE(options.Filter2Items, shown > 1 ? bank2 : Items());
        }
    }

    void anyTextIsTheNameOfAFilter()
    {
        const Record record({{5, "VX440-FIL"}, {6, "VX440-FIL"}, {8, "0"}, {9, "none"},
                                {10, "vx440-f1"}, {11, "low pass"}, {14, "VX440-F"}},
            {{8, "eight"}});
        QCOMPARE(record.Filter1Items, ItemsOf("0|eight|none||vx440-f1||low pass||0||0|"));
        QCOMPARE(record.Filter2Items, ItemsOf("VX440-F||0||0||0||0|"));
    }

    void theRotatorsAreAlwaysShown()
    {
        for (const QString name : {"ProSisTel", "0", "none"}) {
            const Record record({{19, name}, {20, name + name}}, {{19, "round"}, {20, "up"}});
            QCOMPARE(record.AzimuthRotatorItems, (Items{{name, "round"}}));
            QCOMPARE(record.PolarRotatorItems, (Items{{name + name, "up"}}));
        }
    }

    void aSecondReadingReplacesEveryList()
    {
        CDeviceOptions options;
        QVERIFY(ParseAll(options));
        for (const Items& items : Shown(options)) {
            QVERIFY(!items.isEmpty());
        }
        QVERIFY(ParseAll(options)); // nothing is added to what there is
        QCOMPARE(options.AttenuatorItems.size(), 6);
        QCOMPARE(options.AmplifierItems.size(), 4);
        QVERIFY(options.ParseDeviceOptions(InternalText(), DescriptionText()));
        const Items blank{{"0", QString()}};
        QCOMPARE(Shown(options),
            (QVector<Items>{Items(), Items(), Items(), Items(), Items(), blank, blank}));
    }

    void aRecordThatIsNotValidKeepsItsLists()
    {
        for (const int flags : {0, 1, 2, 3}) {
            CDeviceOptions options;
            QVERIFY(ParseAll(options));
            const auto before = Shown(options);
            options.InternalOptions.fill("x");
            options.InternalValid = (flags & 1) != 0;
            options.DescriptionValid = (flags & 2) != 0;
            QCOMPARE(options.IsValid(), flags == 3);
            QCOMPARE(options.UpdateOptionLists(), flags == 3);
            QCOMPARE(Shown(options) != before, flags == 3);
        }
    }

    void aDescriptionThatIsNotThereIsEmpty()
    {
        CDeviceOptions options;
        QVERIFY(options.ParseDeviceOptions(AllModules, QString()));
        QVERIFY(options.OptionDescriptions.isEmpty());
        for (const Items& items : Shown(options)) {
            QVERIFY(!items.isEmpty());
            for (const auto& item : items) {
                QCOMPARE(item.second, QString());
            }
        }
        options.OptionDescriptions = {"a", "b", "feed"};
        QVERIFY(options.UpdateOptionLists());
        QCOMPARE(options.DcFeedItems, ItemsOf("DC-Feed1|feed|DC-Feed2|"));
    }
};

QTEST_GUILESS_MAIN(DeviceOptionsTest)
#include "DeviceOptionsTest.moc"
