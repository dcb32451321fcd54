#include "options/CDeviceOptions.h"
#include "tests/support/Warnings.h"

#include <QtTest>

namespace {

using Items = QVector<QPair<QString, QString>>;
using Changes = QMap<int, QString>;

constexpr int Positions = 22;
constexpr int FirstOnTheWire = 2;
constexpr int LastOnTheWire = 20;

const QString Comma = ",";
const QString Semicolon = ";";

// The flat list of a record, with `filling` wherever there is no change.
QVector<QString> List(const Changes& changes, const QString& filling)
{
    QVector<QString> list(Positions, filling);
    for (auto change = changes.cbegin(); change != changes.cend(); ++change) {
        list[change.key()] = change.value();
    }
    return list;
}

QString OnTheWire(const QVector<QString>& list, const QString& separator)
{
    return QStringList(list.mid(FirstOnTheWire, LastOnTheWire - FirstOnTheWire + 1).toList())
        .join(separator);
}

// What a unit answers that holds these at their positions, and nothing elsewhere.
QString InternalText(const Changes& changes = {})
{
    return OnTheWire(List(changes, "0"), Comma);
}

QString DescriptionText(const Changes& changes = {})
{
    return OnTheWire(List(changes, QString()), Semicolon);
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
const Changes AllModules = {{2, "VX440-DCF"}, {3, "VX440-DCF"}, {4, "VX440-ATT"}, {5, "VX440-FIL"},
    {6, "VX440-FIL"}, {7, "VX440-A1+A2"}, {8, "VX440-F11"}, {9, "VX440-F12"}, {10, "VX440-F13"},
    {11, "VX440-F14"}, {12, "VX440-F15"}, {13, "VX440-F16"}, {14, "VX440-F21"}, {15, "VX440-F22"},
    {16, "VX440-F23"}, {17, "VX440-F24"}, {18, "VX440-F25"}, {19, "ProSisTel"},
    {20, "YAESU G-550"}};
const Changes AllDescriptions = {{2, "first feed"}, {3, "second feed"}, {4, "a0,a3,a6,a10,a20,a40"},
    {5, "bank one"}, {6, "bank two"}, {7, "stage one,stage two"}, {8, "d11"}, {9, "d12"},
    {10, "d13"}, {11, "d14"}, {12, "d15"}, {13, "d16"}, {14, "d21"}, {15, "d22"}, {16, "d23"},
    {17, "d24"}, {18, "d25"}, {19, "turns round"}, {20, "turns up"}};

bool ParseAll(CDeviceOptions& options)
{
    return options.ParseDeviceOptions(InternalText(AllModules), DescriptionText(AllDescriptions));
}

QVector<Items> Shown(const CDeviceOptions& options)
{
    return {options.DcFeedItems, options.AttenuatorItems, options.Filter1Items,
        options.Filter2Items, options.AmplifierItems, options.AzimuthRotatorItems,
        options.PolarRotatorItems};
}

Changes With(Changes changes, int position, const char* text)
{
    changes[position] = QString(text);
    return changes;
}

// One item for each pair of texts.
Items ItemsOf(const QStringList& texts)
{
    Items items;
    for (int text = 0; text + 1 < texts.size(); text += 2) {
        items.append({texts.at(text), texts.at(text + 1)});
    }
    return items;
}

QStringList Split(const char* texts)
{
    return QString(texts).split('|');
}

} // namespace

Q_DECLARE_METATYPE(Items)

class DeviceOptionsTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void aFreshRecordIsEmptyAndNotValid()
    {
        CDeviceOptions options;
        QVERIFY(options.InternalOptions.isEmpty());
        QVERIFY(options.OptionDescriptions.isEmpty());
        QVERIFY(!options.InternalValid);
        QVERIFY(!options.DescriptionValid);
        QVERIFY(!options.IsValid());
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

    void aUnitsStringsGoBackAsTheyCame_data()
    {
        QTest::addColumn<QString>("internal");
        QTest::addColumn<QString>("descriptions");
        QTest::newRow("a feed and an amplifier")
            << "VX440-DCF,0,0,0,0,VX440-A1,0,0,0,0,0,0,0,0,0,0,0,0,0"
            << QString("12 V") + QString(18, ';');
        QTest::newRow("everything") << InternalText(AllModules) << DescriptionText(AllDescriptions);
        QTest::newRow("nothing") << InternalText() << DescriptionText();
    }
    void aUnitsStringsGoBackAsTheyCame()
    {
        QFETCH(QString, internal);
        QFETCH(QString, descriptions);
        CDeviceOptions options;
        QVERIFY(options.ParseDeviceOptions(internal, descriptions));
        QCOMPARE(options.GetInternalOptions(), internal);
        QCOMPARE(options.GetOptionDescriptions(), descriptions);
    }

    void theFieldsAreCounted_data()
    {
        QTest::addColumn<bool>("filledBefore");
        QTest::addColumn<int>("internalFields");
        QTest::addColumn<int>("descriptionFields");
        QTest::addColumn<bool>("result");
        QTest::addColumn<int>("internalSize");
        QTest::addColumn<int>("descriptionSize");
        QTest::addColumn<bool>("listsAreNew");
        const auto row = [](const char* name, bool before, int internal, int descriptions,
                             bool result, int internalSize, int descriptionSize, bool listsAreNew) {
            QTest::newRow(name) << before << internal << descriptions << result << internalSize
                                << descriptionSize << listsAreNew;
        };
        row("fresh, both right", false, 19, 19, true, 22, 22, true);
        row("fresh, nothing came", false, 0, 0, false, 0, 0, false);
        row("fresh, one internal field", false, 1, 19, false, 0, 22, false);
        row("fresh, 18 internal fields", false, 18, 19, false, 0, 22, false);
        row("fresh, 20 internal fields", false, 20, 19, false, 23, 22, false);
        row("fresh, no descriptions", false, 19, 0, true, 22, 0, true);
        row("fresh, 18 descriptions", false, 19, 18, true, 22, 0, true);
        row("fresh, 20 descriptions", false, 19, 20, true, 22, 23, true);
        row("filled, both right", true, 19, 19, true, 22, 22, true);
        row("filled, nothing came", true, 0, 0, true, 22, 22, false);
        row("filled, 18 internal fields", true, 18, 18, true, 22, 22, false);
        row("filled, 20 internal fields", true, 20, 19, false, 23, 22, false);
        row("filled, 18 descriptions", true, 19, 18, true, 22, 22, true);
        row("filled, 20 descriptions", true, 19, 20, true, 22, 23, true);
    }
    void theFieldsAreCounted()
    {
        QFETCH(bool, filledBefore);
        QFETCH(int, internalFields);
        QFETCH(int, descriptionFields);
        QFETCH(int, internalSize);
        QFETCH(bool, result);
        CDeviceOptions options;
        if (filledBefore) {
            QVERIFY(ParseAll(options));
        }
        const auto shownBefore = Shown(options);
        const QVector<QString> internalBefore = options.InternalOptions;
        const QVector<QString> descriptionsBefore = options.OptionDescriptions;
        QCOMPARE(options.ParseDeviceOptions(
                     Fields("i", internalFields, Comma), Fields("d", descriptionFields, Semicolon)),
            result);
        QCOMPARE(options.InternalOptions.size(), internalSize);
        QTEST(options.OptionDescriptions.size(), "descriptionSize");
        QCOMPARE(options.InternalValid, internalSize == 22);
        QCOMPARE(options.IsValid(), result);
        QTEST(Shown(options) != shownBefore, "listsAreNew");
        if (internalFields < 19) {
            QCOMPARE(options.InternalOptions, internalBefore);
        }
        if (descriptionFields < 19) {
            QCOMPARE(options.OptionDescriptions, descriptionsBefore);
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
        QStringList fields = Fields("i", 20, Comma).split(Comma);
        fields[3].clear();
        QVERIFY(options.ParseDeviceOptions(fields.join(Comma), DescriptionText()));
        QCOMPARE(options.InternalOptions.size(), 22);
        QCOMPARE(
            options.InternalOptions.mid(2, 5), (QVector<QString>{"i1", "i2", "i3", "i5", "i6"}));
        QCOMPARE(options.InternalOptions.at(20), "i20");
    }

    void anEmptyInternalFieldAmong19IsOneTooFew()
    {
        CDeviceOptions options;
        QVERIFY(!options.ParseDeviceOptions(InternalText({{10, QString()}}), DescriptionText()));
        QVERIFY(options.InternalOptions.isEmpty());
    }

    void anEmptyDescriptionKeepsItsPlace()
    {
        CDeviceOptions options;
        QVERIFY(options.ParseDeviceOptions(
            InternalText(), DescriptionText({{8, "eight"}, {20, "last"}})));
        QCOMPARE(options.OptionDescriptions, List({{8, "eight"}, {20, "last"}}, QString()));
    }

    void blanksAreTakenOutOfTheFields()
    {
        CDeviceOptions options;
        QVERIFY(options.ParseDeviceOptions(
            InternalText({{2, "  VX440-DCF "}, {3, "   "}, {19, "\tG \n 550 "}}),
            DescriptionText({{2, " twelve   volts "}, {4, " a , b "}})));
        QCOMPARE(options.InternalOptions.at(2), "VX440-DCF");
        QCOMPARE(options.InternalOptions.at(3), QString()); // blanks alone are a field
        QCOMPARE(options.InternalOptions.at(19), "G 550");
        QCOMPARE(options.OptionDescriptions.at(2), "twelve volts");
        QCOMPARE(options.OptionDescriptions.at(4), "a , b");
    }

    void theDescriptionsMayHaveSoManyCharacters_data()
    {
        QTest::addColumn<int>("characters");
        QTest::addColumn<bool>("valid");
        QTest::newRow("643") << 643 << true; // and 21 gaps between 22 entries: 664
        QTest::newRow("644") << 644 << false;
    }
    void theDescriptionsMayHaveSoManyCharacters()
    {
        QFETCH(int, characters);
        QFETCH(bool, valid);
        CDeviceOptions options;
        QVERIFY(ParseAll(options));
        const auto shownBefore = Shown(options);
        const QString half(characters / 2, 'x');
        const QString rest(characters - half.size(), 'y');
        const QString internal = InternalText({{19, "rotator"}});
        const QString descriptions = DescriptionText({{8, half}, {20, rest}});
        QCOMPARE(descriptions.size(), characters + 18);
        QCOMPARE(options.ParseDeviceOptions(internal, descriptions), valid);
        QVERIFY(options.InternalValid);
        QCOMPARE(options.DescriptionValid, valid);
        QCOMPARE(options.IsValid(), valid);
        QCOMPARE(Shown(options) != shownBefore, valid);
        QCOMPARE(options.GetInternalOptions(), internal);
        QCOMPARE(options.GetOptionDescriptions(), descriptions);
    }

    void theLengthCountsAllEntriesAndTheGapsBetweenThem_data()
    {
        QTest::addColumn<QVector<QString>>("descriptions");
        QTest::addColumn<bool>("valid");
        const QString x664(664, 'x');
        const QString x665(665, 'x');
        QTest::newRow("no entry") << QVector<QString>() << true;
        QTest::newRow("22 empty entries") << QVector<QString>(22) << true;
        QTest::newRow("one of 664") << QVector<QString>{x664} << true;
        QTest::newRow("one of 665") << QVector<QString>{x665} << false;
        QTest::newRow("two with 663") << QVector<QString>{x664.mid(1), QString()} << true;
        QTest::newRow("two with 664") << QVector<QString>{x664, QString()} << false;
        QTest::newRow("23 with 642")
            << List({{5, x664.mid(22)}}, QString()) + QVector<QString>(1) << true;
        QTest::newRow("23 with 643")
            << List({{5, x664.mid(21)}}, QString()) + QVector<QString>(1) << false;
        QTest::newRow("665 empty entries") << QVector<QString>(665) << true;
        QTest::newRow("666 empty entries") << QVector<QString>(666) << false;
    }
    void theLengthCountsAllEntriesAndTheGapsBetweenThem()
    {
        QFETCH(QVector<QString>, descriptions);
        QFETCH(bool, valid);
        CDeviceOptions options;
        options.OptionDescriptions = descriptions;
        options.DescriptionValid = !valid;
        QCOMPARE(options.CheckDescriptionLength(), valid);
        QCOMPARE(options.DescriptionValid, valid);
    }

    void theUnusedEntriesDoNotTravel_data()
    {
        QTest::addColumn<QStringList>("list");
        QTest::addColumn<QStringList>("fields");
        QTest::newRow("empty") << QStringList() << QStringList();
        QTest::newRow("one") << Split("a") << QStringList();
        QTest::newRow("two") << Split("a|b") << QStringList();
        QTest::newRow("three") << Split("a|b|c") << QStringList();
        QTest::newRow("four") << Split("a|b|c|d") << Split("c");
        QTest::newRow("five") << Split("a|b|c|d|e") << Split("c|d");
        QTest::newRow("none") << Split("none|none|none|c|none|none") << Split("0|c|0");
        QTest::newRow("not quite none")
            << Split("a|b|None|NONE|none |nonesuch|z") << Split("None|NONE|none |nonesuch");
        QTest::newRow("empty entries") << Split("a|b||||z") << Split("||");
        QTest::newRow("separators inside") << Split("a|b|c,d|e;f|z") << Split("c,d|e;f");
    }
    void theUnusedEntriesDoNotTravel()
    {
        QFETCH(QStringList, list);
        QFETCH(QStringList, fields);
        CDeviceOptions options;
        options.InternalOptions = list.toVector();
        QCOMPARE(options.GetInternalOptions(), fields.join(Comma));
        QCOMPARE(options.GetOptionDescriptions(), QString());
        options.InternalOptions.clear();
        options.OptionDescriptions = list.toVector();
        QCOMPARE(options.GetInternalOptions(), QString());
        QCOMPARE(options.GetOptionDescriptions(), fields.join(Semicolon));
        QCOMPARE(options.OptionDescriptions, list.toVector()); // stays as it is
    }

    void theFeedsAreShown_data()
    {
        QTest::addColumn<QString>("first");
        QTest::addColumn<QString>("second");
        QTest::addColumn<Items>("items");
        const Items one = ItemsOf(Split("DC-Feed1|first feed"));
        const Items both = ItemsOf(Split("DC-Feed1|first feed|DC-Feed2|second feed"));
        const QString feed = "VX440-DCF";
        QTest::newRow("none") << "0"
                              << "0" << Items();
        QTest::newRow("the first") << feed << "0" << one;
        QTest::newRow("both") << feed << feed << both;
        QTest::newRow("the second without the first") << "0" << feed << Items();
        QTest::newRow("the word none") << "none"
                                       << "none" << Items();
        QTest::newRow("the second is the word none") << feed << "none" << one;
        QTest::newRow("small letters") << "vx440-dcf" << feed << Items();
        QTest::newRow("the second in small letters") << feed << "vx440-dcf" << one;
        QTest::newRow("another module") << "VX440-ATT" << feed << Items();
    }
    void theFeedsAreShown()
    {
        QFETCH(QString, first);
        QFETCH(QString, second);
        CDeviceOptions options;
        QVERIFY(options.ParseDeviceOptions(
            InternalText({{2, first}, {3, second}}), DescriptionText(AllDescriptions)));
        QTEST(options.DcFeedItems, "items");
    }

    void theAttenuatorIsShown_data()
    {
        QTest::addColumn<QString>("module");
        QTest::addColumn<QString>("description");
        QTest::addColumn<QStringList>("descriptions");
        const QString fitted = "VX440-ATT";
        QTest::newRow("six") << fitted << "a,b,c,d,e,f" << Split("a|b|c|d|e|f");
        QTest::newRow("none") << fitted << QString() << Split("|||||");
        QTest::newRow("one") << fitted << "a" << Split("a|||||");
        QTest::newRow("five") << fitted << "a,b,c,d,e" << Split("a|b|c|d|e|");
        QTest::newRow("seven") << fitted << "a,b,c,d,e,f,g" << Split("a|b|c|d|e|f");
        QTest::newRow("empty ones") << fitted << ",b,,d,,f" << Split("|b||d||f");
        QTest::newRow("blanks inside") << fitted << "a a, b,c ,d,e,f" << Split("a a| b|c |d|e|f");
        QTest::newRow("not fitted") << "0"
                                    << "a,b,c,d,e,f" << QStringList();
        QTest::newRow("the word none") << "none"
                                       << "a,b,c,d,e,f" << QStringList();
        QTest::newRow("small letters") << "vx440-att"
                                       << "a,b,c,d,e,f" << QStringList();
    }
    void theAttenuatorIsShown()
    {
        QFETCH(QString, module);
        QFETCH(QString, description);
        QFETCH(QStringList, descriptions);
        const QStringList labels = Split("Bypass|Att. 3dB|Att. 6dB|Att. 10dB|Att. 20dB|Att. 40dB");
        CDeviceOptions options;
        QVERIFY(options.ParseDeviceOptions(
            InternalText({{4, module}}), DescriptionText({{4, description}})));
        QCOMPARE(options.AttenuatorItems.size(), descriptions.size());
        for (int item = 0; item < descriptions.size(); ++item) {
            QCOMPARE(options.AttenuatorItems.at(item),
                (QPair<QString, QString>{labels.at(item), descriptions.at(item)}));
        }
    }

    void theAmplifierStageIsShown_data()
    {
        QTest::addColumn<QString>("module");
        QTest::addColumn<QString>("description");
        QTest::addColumn<Items>("items");
        const auto row = [](const char* name, const char* module, const char* description,
                             const char* items) {
            QTest::newRow(name) << QString(module) << QString(description) << ItemsOf(Split(items));
        };
        row("AMP", "VX440-AMP", "one,two", "Bypass||HF AMP||V/UHF AMP||SHF AMP|");
        row("A1", "VX440-A1", "one", "Bypass||Bypass||VX440-A1|one||");
        row("A1, two descriptions", "VX440-A1", "one,two", "Bypass||Bypass||VX440-A1|one||");
        row("A1, no description", "VX440-A1", "", "Bypass||Bypass||VX440-A1|||");
        row("A1, three descriptions", "VX440-A1", "one,two,three", "Bypass||Bypass||VX440-A1|||");
        row("A2", "VX440-A2", "one", "Bypass||Bypass||||VX440-A2|one");
        row("A2, two descriptions", "VX440-A2", "one,two", "Bypass||Bypass||||VX440-A2|one");
        row("A2, empty descriptions", "VX440-A2", ",,one,", "Bypass||Bypass||||VX440-A2|one");
        row("A1+A2", "VX440-A1+A2", "one,two", "Bypass||Bypass||VX440-A1|one|VX440-A2|two");
        row("A1+A2, one description", "VX440-A1+A2", "one",
            "Bypass||Bypass||VX440-A1|one|VX440-A2|");
        row("A1+A2, an empty description", "VX440-A1+A2", ",two",
            "Bypass||Bypass||VX440-A1|two|VX440-A2|");
        row("A1+A2, three descriptions", "VX440-A1+A2", "one,two,three",
            "Bypass||Bypass||VX440-A1||VX440-A2|");
        row("none", "none", "one,two", "");
        row("0", "0", "one,two", "");
        row("another", "VX440-A3", "one,two", "");
        row("small letters", "vx440-a1", "one", "");
    }
    void theAmplifierStageIsShown()
    {
        QFETCH(QString, module);
        QFETCH(QString, description);
        CDeviceOptions options;
        QVERIFY(options.ParseDeviceOptions(
            InternalText({{7, module}}), DescriptionText({{7, description}})));
        QTEST(options.AmplifierItems, "items");
    }

    void theFilterBanksAreShown_data()
    {
        QTest::addColumn<QString>("first");
        QTest::addColumn<QString>("second");
        QTest::addColumn<bool>("firstShown");
        QTest::addColumn<bool>("secondShown");
        const QString bank = "VX440-FIL";
        QTest::newRow("none") << "0"
                              << "0" << false << false;
        QTest::newRow("the first") << bank << "0" << true << false;
        QTest::newRow("both") << bank << bank << true << true;
        QTest::newRow("the second without the first") << "0" << bank << false << false;
        QTest::newRow("the word none") << "none" << bank << false << false;
        QTest::newRow("small letters") << "vx440-fil" << bank << false << false;
        QTest::newRow("the second in small letters") << bank << "vx440-fil" << true << false;
    }
    void theFilterBanksAreShown()
    {
        QFETCH(QString, first);
        QFETCH(QString, second);
        QFETCH(bool, firstShown);
        QFETCH(bool, secondShown);
        const Changes modules = With(
            With(AllModules, 5, first.toLatin1().constData()), 6, second.toLatin1().constData());
        CDeviceOptions options;
        QVERIFY(
            options.ParseDeviceOptions(InternalText(modules), DescriptionText(AllDescriptions)));
        QCOMPARE(options.Filter1Items,
            firstShown ? ItemsOf(Split("VX440-F11|d11|VX440-F12|d12|VX440-F13|d13|VX440-F14|d14|"
                                       "VX440-F15|d15|VX440-F16|d16"))
                       : Items());
        QCOMPARE(options.Filter2Items,
            secondShown ? ItemsOf(Split("VX440-F21|d21|VX440-F22|d22|VX440-F23|d23|VX440-F24|d24|"
                                        "VX440-F25|d25"))
                        : Items());
    }

    void anyTextIsTheNameOfAFilter()
    {
        CDeviceOptions options;
        QVERIFY(options.ParseDeviceOptions(
            InternalText({{5, "VX440-FIL"}, {6, "VX440-FIL"}, {8, "0"}, {9, "none"},
                {10, "vx440-f1"}, {11, "low pass"}, {14, "VX440-F"}}),
            DescriptionText({{8, "eight"}})));
        QCOMPARE(options.Filter1Items, ItemsOf(Split("0|eight|none||vx440-f1||low pass||0||0|")));
        QCOMPARE(options.Filter2Items, ItemsOf(Split("VX440-F||0||0||0||0|")));
    }

    void theRotatorsAreAlwaysShown_data()
    {
        QTest::addColumn<QString>("name");
        for (const char* const name : {"ProSisTel", "0", "none"}) {
            QTest::newRow(name) << QString(name);
        }
    }
    void theRotatorsAreAlwaysShown()
    {
        QFETCH(QString, name);
        CDeviceOptions options;
        QVERIFY(options.ParseDeviceOptions(InternalText({{19, name}, {20, name + name}}),
            DescriptionText({{19, "round"}, {20, "up"}})));
        QCOMPARE(options.AzimuthRotatorItems, (Items{{name, "round"}}));
        QCOMPARE(options.PolarRotatorItems, (Items{{name + name, "up"}}));
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

    void aRecordThatIsNotValidKeepsItsLists_data()
    {
        QTest::addColumn<bool>("internalValid");
        QTest::addColumn<bool>("descriptionValid");
        QTest::newRow("neither") << false << false;
        QTest::newRow("internal alone") << true << false;
        QTest::newRow("descriptions alone") << false << true;
        QTest::newRow("both") << true << true;
    }
    void aRecordThatIsNotValidKeepsItsLists()
    {
        QFETCH(bool, internalValid);
        QFETCH(bool, descriptionValid);
        CDeviceOptions options;
        QVERIFY(ParseAll(options));
        const auto before = Shown(options);
        options.InternalOptions.fill("x");
        options.InternalValid = internalValid;
        options.DescriptionValid = descriptionValid;
        const bool valid = internalValid && descriptionValid;
        QCOMPARE(options.IsValid(), valid);
        QCOMPARE(options.UpdateOptionLists(), valid);
        QCOMPARE(Shown(options) != before, valid);
    }

    void aDescriptionThatIsNotThereIsEmpty()
    {
        CDeviceOptions options;
        QVERIFY(options.ParseDeviceOptions(InternalText(AllModules), QString()));
        QVERIFY(options.OptionDescriptions.isEmpty());
        for (const Items& items : Shown(options)) {
            QVERIFY(!items.isEmpty());
            for (const auto& item : items) {
                QCOMPARE(item.second, QString());
            }
        }
        options.OptionDescriptions = Split("a|b|feed").toVector();
        QVERIFY(options.UpdateOptionLists());
        QCOMPARE(options.DcFeedItems, ItemsOf(Split("DC-Feed1|feed|DC-Feed2|")));
    }
};

QTEST_GUILESS_MAIN(DeviceOptionsTest)
#include "DeviceOptionsTest.moc"
