#include "model/CDeviceDatabase.h"

#include <QSignalSpy>
#include <QtTest>

#include <functional>

namespace {

using Columns = QVector<int>;
using Action = std::function<void(CDeviceDatabase&)>;
using Words = QVector<ushort>;

constexpr int NoCell = -1;

QVariant DataOf(const CDeviceDatabase& database, int column, int role = Qt::DisplayRole)
{
    return database.data(database.index(0, column), role);
}

QString TextOf(const CDeviceDatabase& database, int column)
{
    return DataOf(database, column).toString();
}

// The columns that were notified since the last call, in order. NoCell stands for a notification
// that names no cell.
Columns NotifiedColumns(QSignalSpy& notifications)
{
    Columns columns;
    for (const QList<QVariant>& arguments : notifications) {
        columns << arguments.at(0).toModelIndex().column();
    }
    notifications.clear();
    return columns;
}

// Gives indexes of rows that the model does not have.
class AnyIndexDatabase : public CDeviceDatabase
{
public:
    QModelIndex IndexOf(int row, int column) const { return createIndex(row, column); }
};

// A setter of one text, and where the text goes.
struct TextSetter
{
    const char* name;
    void (CDeviceDatabase::*set)(QString, int);
    int columns[2];
};

constexpr TextSetter SettersOfBothSets[] = {
    {"SetPartNumber", &CDeviceDatabase::SetPartNumber, {7, 14}},
    {"SetProductIndex", &CDeviceDatabase::SetProductIndex, {9, 15}},
    {"SetSerialNumber", &CDeviceDatabase::SetSerialNumber, {10, 16}},
    {"SetProductionDate", &CDeviceDatabase::SetProductionDate, {11, 17}},
    {"SetTestInstructionIndex", &CDeviceDatabase::SetTestInstructionIndex, {12, 18}},
    {"SetBoardName", &CDeviceDatabase::SetBoardName, {13, 19}},
};

// A different value in every column and every other field.
void Fill(CDeviceDatabase& database)
{
    database.SetConnectionStatus(0);
    database.SetApplicationStatus("status");
    database.SetIpAddress("192.168.0.129");
    database.SetMacAddress("02:4C:7E:00:00:01");
    database.SetSubnetMask("255.255.255.0");
    database.SetFirmwareVersion("3.10");
    database.SetVariant("var");
    for (const TextSetter& setter : SettersOfBothSets) {
        for (int set = 0; set < 2; ++set) {
            (database.*setter.set)(QString("c%1").arg(setter.columns[set]), set);
        }
    }
    database.SetMotorParameters(0, {100, 101, 102, 103, 104, 105, 106, 107, 108, 109, 110, 1});
    database.SetMotorParameters(1, {200, 201, 202, 203, 204, 205, 206, 207, 208, 209, 210, 2});
    database.SetMotorValidationError(0, "azimuth");
    database.SetMotorValidationError(1, "polar");
}

} // namespace

Q_DECLARE_METATYPE(Action)

class DeviceDatabaseTest : public QObject
{
    Q_OBJECT

private slots:
    void aFreshModelHasOneRowAnd44Columns()
    {
        const CDeviceDatabase database;
        QCOMPARE(database.rowCount(), 1);
        QCOMPARE(database.columnCount(), 44);
        const QModelIndex cell = database.index(0, 3);
        QCOMPARE(database.rowCount(cell), 1);
        QCOMPARE(database.columnCount(cell), 44);
    }

    void aFreshModelShowsThatNothingIsConnected_data()
    {
        QTest::addColumn<int>("column");
        QTest::addColumn<QVariant>("value");
        for (int column = 0; column < 44; ++column) {
            QVariant value = QString();
            if (column == 0) {
                value = "Connect";
            } else if (column == 2) {
                value = "Not Connected ";
            } else if (column == 31 || column == 43) {
                value = "Potentiometer";
            } else if (column >= 20) {
                value = 0;
            }
            QTest::addRow("column %d", column) << column << value;
        }
    }
    void aFreshModelShowsThatNothingIsConnected()
    {
        QFETCH(int, column);
        QFETCH(QVariant, value);
        const CDeviceDatabase database;
        QCOMPARE(DataOf(database, column).type(), value.type());
        QCOMPARE(DataOf(database, column), value);
    }

    void theProcessHasOneDatabaseFromTheStart()
    {
        QVERIFY(TheDeviceDatabase() != nullptr);
        QCOMPARE(TheDeviceDatabase(), TheDeviceDatabase());
        QCOMPARE(TheDeviceDatabase()->ConnectionStatusText(), "Not Connected ");
    }

    void aColumnShowsItsValue_data()
    {
        QTest::addColumn<int>("column");
        QTest::addColumn<QVariant>("value");
        const auto add = [](int column, const QVariant& value) {
            QTest::addRow("column %d", column) << column << value;
        };
        add(0, "Connected");
        add(1, "status");
        add(2, "Connected to 192.168.0.129");
        add(3, "192.168.0.129");
        add(4, "02:4C:7E:00:00:01");
        add(5, "255.255.255.0");
        add(6, "3.10");
        add(8, "var");
        for (const int column : {7, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19}) {
            add(column, QString("c%1").arg(column));
        }
        for (int id = 0; id < 11; ++id) {
            add(20 + id, 100 + id);
            add(32 + id, 200 + id);
        }
        add(31, "Pulse");
        add(43, "Unknow Type");
    }
    void aColumnShowsItsValue()
    {
        QFETCH(int, column);
        QFETCH(QVariant, value);
        CDeviceDatabase database;
        Fill(database);
        for (const int role : {0, 2}) {
            QCOMPARE(DataOf(database, column, role).type(), value.type());
            QCOMPARE(DataOf(database, column, role), value);
        }
    }

    void everyRowReadsTheSame()
    {
        AnyIndexDatabase database;
        Fill(database);
        for (int column = 0; column < 44; ++column) {
            QCOMPARE(database.data(database.IndexOf(7, column)), DataOf(database, column));
        }
    }

    void thereIsNoDataElsewhere()
    {
        AnyIndexDatabase database;
        Fill(database);
        QVERIFY(!database.data(QModelIndex()).isValid());
        QVERIFY(!database.data(database.IndexOf(0, 44)).isValid());
        QVERIFY(!database.data(database.IndexOf(0, 1000)).isValid());
        for (const int role : {1, 3, 6, 8, 10, 13, 256, -1}) {
            QVERIFY(!DataOf(database, 3, role).isValid());
        }
    }

    void theItemInterfaceRefusesWrites()
    {
        CDeviceDatabase database;
        Fill(database);
        QSignalSpy notifications(&database, &QAbstractItemModel::dataChanged);
        QVERIFY(!database.setData(database.index(0, 3), "10.0.0.1"));
        QCOMPARE(TextOf(database, 3), "192.168.0.129");
        QVERIFY(!(database.flags(database.index(0, 3)) & Qt::ItemIsEditable));
        QCOMPARE(notifications.count(), 0);
    }

    void aSetterNotifiesItsColumnAlsoForTheSameValue_data()
    {
        QTest::addColumn<Action>("action");
        QTest::addColumn<Columns>("columns");
        const auto add = [](const QString& name, const Action& action, const Columns& columns) {
            QTest::newRow(qPrintable(name)) << action << columns;
        };
        const QString text = "text";
        using Database = CDeviceDatabase;
        add("SetConnectionStatus", [](Database& d) { d.SetConnectionStatus(2); }, {0, 2});
        add("SetApplicationStatus", [=](Database& d) { d.SetApplicationStatus(text); }, {1});
        add("SetIpAddress", [](Database& d) { d.SetIpAddress("10.0.0.1"); }, {3});
        add("SetIpAddress with no address", [=](Database& d) { d.SetIpAddress(text); }, {3});
        add("SetMacAddress", [=](Database& d) { d.SetMacAddress(text); }, {4});
        add("SetSubnetMask", [](Database& d) { d.SetSubnetMask("255.0.0.0"); }, {5});
        add("SetSubnetMask with no mask", [=](Database& d) { d.SetSubnetMask(text); }, {5});
        add("SetFirmwareVersion", [=](Database& d) { d.SetFirmwareVersion(text); }, {6});
        add("SetVariant", [=](Database& d) { d.SetVariant(text, 0); }, {8});
        for (const TextSetter& setter : SettersOfBothSets) {
            for (int set = 0; set < 2; ++set) {
                add(QString("%1 of set %2").arg(setter.name).arg(set),
                    [=](Database& d) { (d.*setter.set)(text, set); }, {setter.columns[set]});
            }
        }
        add("SetMotorParameter", [](Database& d) { d.SetMotorParameter(1, 5, 9); }, {37});
        add("SetMotorParameters, one for each value",
            [](Database& d) {
                d.SetMotorParameters(0, {7, 7, 7});
            },
            {20, 21, 22});
        add("SetMotorParameters without a value",
            [](Database& d) { d.SetMotorParameters(0, Words()); }, {});
        add("SetMotorValidationError notifies nothing",
            [=](Database& d) { d.SetMotorValidationError(0, text); }, {});
    }
    void aSetterNotifiesItsColumnAlsoForTheSameValue()
    {
        QFETCH(Action, action);
        QFETCH(Columns, columns);
        CDeviceDatabase database;
        QSignalSpy notifications(&database, &QAbstractItemModel::dataChanged);
        action(database);
        QCOMPARE(NotifiedColumns(notifications), columns);
        action(database);
        QCOMPARE(NotifiedColumns(notifications), columns);
    }

    void aNotificationNamesTheDisplayRoleTwice()
    {
        CDeviceDatabase database;
        QSignalSpy notifications(&database, &QAbstractItemModel::dataChanged);
        Fill(database);
        database.ResetData();
        QVERIFY(notifications.count() > 60);
        const QVector<int> expected{0, 0};
        for (const QList<QVariant>& arguments : qAsConst(notifications)) {
            const QModelIndex cell = arguments.at(0).toModelIndex();
            QCOMPARE(cell.row(), 0);
            QCOMPARE(arguments.at(1).toModelIndex(), cell);
            QCOMPARE(arguments.at(2).value<QVector<int>>(), expected);
        }
    }

    void aSetOutsideOf0And1StoresNothing_data()
    {
        QTest::addColumn<int>("set");
        for (const int set : {-1, 2, 44}) {
            QTest::addRow("set %d", set) << set;
        }
    }
    void aSetOutsideOf0And1StoresNothing()
    {
        QFETCH(int, set);
        CDeviceDatabase database;
        Fill(database);
        QSignalSpy notifications(&database, &QAbstractItemModel::dataChanged);
        for (const TextSetter& setter : SettersOfBothSets) {
            (database.*setter.set)("other", set);
            QVERIFY2(notifications.isEmpty(), setter.name);
        }
        for (int column = 0; column < 44; ++column) {
            QVERIFY(TextOf(database, column) != "other");
        }
    }

    void withoutASetTheFirstIsMeant()
    {
        CDeviceDatabase database;
        QSignalSpy notifications(&database, &QAbstractItemModel::dataChanged);
        const QString text = "text";
        database.SetPartNumber(text);
        database.SetVariant(text);
        database.SetProductIndex(text);
        database.SetSerialNumber(text);
        database.SetProductionDate(text);
        database.SetTestInstructionIndex(text);
        database.SetBoardName(text);
        const Columns expected{7, 8, 9, 10, 11, 12, 13};
        QCOMPARE(NotifiedColumns(notifications), expected);
    }

    void theVariantIsStoredForAnySet_data()
    {
        QTest::addColumn<int>("set");
        for (const int set : {0, 1, 2, -1}) {
            QTest::addRow("set %d", set) << set;
        }
    }
    void theVariantIsStoredForAnySet()
    {
        QFETCH(int, set);
        CDeviceDatabase database;
        Fill(database);
        QSignalSpy notifications(&database, &QAbstractItemModel::dataChanged);
        database.SetVariant("other", set);
        QCOMPARE(TextOf(database, 8), "other");
        QCOMPARE(NotifiedColumns(notifications), Columns{8});
    }

    void connectionStatusHasItsTexts_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("line");
        const auto add = [](int code, const char* button, const char* line) {
            QTest::addRow("code %d", code)
                << code << QString::fromLatin1(button) << QString::fromLatin1(line);
        };
        add(0, "Connected", "Connected to 192.168.0.129");
        add(1, "Connecting", "Connecting to 192.168.0.129 ...");
        add(2, "Connect", "Not Connected ");
        add(3, "Connect", "Connection Failed");
        add(4, "Connect", "Reconnecting to 192.168.0.129");
        add(5, "Connect", "");
        add(-1, "Connect", "");
        add(2147483647, "Connect", "");
        add(-2147483647 - 1, "Connect", "");
    }
    void connectionStatusHasItsTexts()
    {
        QFETCH(int, code);
        CDeviceDatabase database;
        database.SetIpAddress("192.168.0.129");
        database.SetConnectionStatus(code);
        QTEST(TextOf(database, 0), "button");
        QTEST(TextOf(database, 2), "line");
        QTEST(database.ConnectionStatusText(), "line");
    }

    void connectionStatusLeavesAllElseAlone()
    {
        CDeviceDatabase database;
        Fill(database);
        database.SetConnectionStatus(2);
        QCOMPARE(TextOf(database, 1), "status");
        QCOMPARE(TextOf(database, 3), "192.168.0.129");
        QCOMPARE(TextOf(database, 19), "c19");
        QCOMPARE(DataOf(database, 20), QVariant(100));
    }

    void addressesAreNormalised_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("valid");
        QTest::addColumn<QString>("stored");
        const auto add = [](const char* name, const char* text, bool valid, const char* stored) {
            QTest::newRow(name) << QString::fromLatin1(text) << valid
                                << QString::fromLatin1(stored);
        };
        add("an address stays", "192.168.0.129", true, "192.168.0.129");
        add("a mask stays", "255.255.255.0", true, "255.255.255.0");
        add("zeros stay", "0.0.0.0", true, "0.0.0.0");
        add("leading zeros go", "192.168.000.001", true, "192.168.0.1");
        add("an octet above 255 is refused", "192.168.0.256", false, "");
        add("a fifth octet is refused", "192.168.0.1.2", false, "");
        add("empty octets are refused", "...", false, "");
        add("a name is refused", "unit", false, "");
        add("nothing is refused", "", false, "");
    }
    void addressesAreNormalised()
    {
        QFETCH(QString, text);
        CDeviceDatabase database;
        Fill(database);
        QTEST(database.SetIpAddress(text), "valid");
        QTEST(database.GetIpAddress(), "stored");
        QTEST(TextOf(database, 3), "stored");
        QTEST(database.SetSubnetMask(text), "valid");
        QTEST(database.GetSubnetMask(), "stored");
        QTEST(TextOf(database, 5), "stored");
    }

    void theMacAddressIsStoredInUpperCase()
    {
        CDeviceDatabase database;
        database.SetMacAddress("02:4c:7e:0a:bc:df");
        QCOMPARE(database.GetMacAddress(), "02:4C:7E:0A:BC:DF");
        QCOMPARE(TextOf(database, 4), "02:4C:7E:0A:BC:DF");
    }

    void theSerialNumberIsCutToSixCharacters_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("stored");
        QTest::newRow("nine") << "123456789"
                              << "123456";
        QTest::newRow("seven") << "1234567"
                               << "123456";
        QTest::newRow("six") << "123456"
                             << "123456";
        QTest::newRow("five") << "12345"
                              << "12345";
        QTest::newRow("none") << QString() << QString();
    }
    void theSerialNumberIsCutToSixCharacters()
    {
        QFETCH(QString, text);
        CDeviceDatabase database;
        database.SetSerialNumber(text, 0);
        database.SetSerialNumber(text, 1);
        QTEST(TextOf(database, 10), "stored");
        QTEST(TextOf(database, 16), "stored");
        QTEST(database.GetSerialNumber(), "stored");
    }

    void theGettersGiveWhatWasStored()
    {
        CDeviceDatabase database;
        Fill(database);
        QCOMPARE(database.GetIpAddress(), "192.168.0.129");
        QCOMPARE(database.GetMacAddress(), "02:4C:7E:00:00:01");
        QCOMPARE(database.GetSubnetMask(), "255.255.255.0");
        QCOMPARE(database.GetPartNumber(), "c7");
        QCOMPARE(database.GetSerialNumber(), "c10");
        QCOMPARE(database.GetFirmwareVersion(), "3.10");
    }

    void theFirmwareTextTellsTheGeneration_data()
    {
        QTest::addColumn<QString>("version");
        QTest::addColumn<bool>("below");
        const auto add = [](const char* name, const char* version, bool below) {
            QTest::newRow(name) << QString::fromLatin1(version) << below;
        };
        add("an empty version is old", "", true);
        add("2.99 is old", "2.99", true);
        add("3.0 is new", "3.0", false);
        add("3 is new", "3", false);
        add("3.01 is new", "3.01", false);
        add("3.10 is new", "3.10", false);
        add("10.0 is new", "10.0", false);
        add("a letter makes it old", "3.10a", true);
        add("a letter in front makes it old", "V3.10", true);
        add("a second point makes it old", "3.1.0", true);
        add("a comma makes it old", "3,10", true);
        add("the answer's carriage return does not: 3.10", "3.10\r", false);
        add("the answer's carriage return does not: 3.0", "3.0\r", false);
        add("the answer's carriage return does not: 2.99", "2.99\r", true);
        add("a carriage return alone is old", "\r", true);
    }
    void theFirmwareTextTellsTheGeneration()
    {
        QFETCH(QString, version);
        CDeviceDatabase database;
        database.SetFirmwareVersion(version);
        QTEST(database.IsFirmwareBelowVersion3(), "below");
        QCOMPARE(database.GetFirmwareVersion(), version);
        QCOMPARE(TextOf(database, 6), version);
    }

    void theUnsupportedFlagIsNeverSet()
    {
        CDeviceDatabase database;
        QVERIFY(!database.GetUnsupportedFlag());
        Fill(database);
        QVERIFY(!database.GetUnsupportedFlag());
        database.ResetData();
        QVERIFY(!database.GetUnsupportedFlag());
    }

    void aMacAddressIsValidated_data()
    {
        QTest::addColumn<QString>("mac");
        QTest::addColumn<QString>("error"); // none when valid
        const auto add = [](const char* name, const char* mac, const char* error) {
            QTest::newRow(name) << QString::fromLatin1(mac) << QString::fromLatin1(error);
        };
        const char* const valid = "";
        const char* const empty = "MAC address is empty!";
        const char* const broadcast = "Invalid Mac address. Do not set a broadcast address";
        const char* const invalid = "Invalid Mac address.";
        add("colons", "02:4C:7E:00:00:01", valid);
        add("dashes", "02-4C-7E-00-00-01", valid);
        add("both", "02-4C:7E-00:00-01", valid);
        add("a letter that is not the first", "0F:FF:FF:FF:FF:FF", valid);
        add("a 9 in front", "9F:FF:FF:FF:FF:FF", valid);
        add("surplus characters around it", "  x02:4C:7E:00:00:01:99 ", valid);
        add("a line break behind it", "02:4C:7E:00:00:01\n", valid);
        add("nothing", "", empty);
        for (const char* const first :
            {"A", "B", "C", "D", "E", "F", "a", "b", "c", "d", "e", "f"}) {
            QTest::addRow("begins with %s", first)
                << QLatin1String(first) + "2:4C:7E:00:00:01" << QString::fromLatin1(broadcast);
        }
        add("only the first letter counts", "f", broadcast);
        add("all ones", "FF:FF:FF:FF:FF:FF", broadcast);
        add("lower case further on", "02:4c:7E:00:00:01", invalid);
        add("five pairs", "02:4C:7E:00:00", invalid);
        add("a single digit", "02:4C:7E:00:00:1", invalid);
        add("no separators", "024C7E000001", invalid);
        add("other separators", "02.4C.7E.00.00.01", invalid);
        add("the mask of an empty field", ":::::", invalid);
        add("a letter behind F", "02:4G:7E:00:00:01", invalid);
        add("a blank", " ", invalid);
        add("a letter behind F in front", "g", invalid);
    }
    void aMacAddressIsValidated()
    {
        QFETCH(QString, mac);
        QFETCH(QString, error);
        const CDeviceDatabase database;
        const bool valid = error.isEmpty();
        QString text = "as before";
        QCOMPARE(database.ValidateMacAddress(mac, text), valid);
        QCOMPARE(text, valid ? "as before" : error);
    }

    void aMissingParameterReads65535ThoughItsColumnShows0()
    {
        const CDeviceDatabase database;
        for (const int motor : {0, 1}) {
            for (int id = 0; id < 12; ++id) {
                bool found = true;
                QCOMPARE(int(database.GetMotorParameter(motor, id, &found)), 65535);
                QVERIFY(!found);
            }
            QCOMPARE(DataOf(database, motor == 0 ? 25 : 37), QVariant(0));
        }
    }

    void theAzimuthMotorDecidesWhatExists()
    {
        CDeviceDatabase polarOnly;
        polarOnly.SetMotorParameter(1, 5, 77);
        bool found = true;
        QCOMPARE(int(polarOnly.GetMotorParameter(1, 5, &found)), 65535);
        QVERIFY(!found);
        QCOMPARE(DataOf(polarOnly, 37), QVariant(0));

        CDeviceDatabase azimuthOnly;
        azimuthOnly.SetMotorParameter(0, 5, 77);
        QCOMPARE(int(azimuthOnly.GetMotorParameter(1, 5, &found)), 0);
        QVERIFY(found);
        QCOMPARE(int(azimuthOnly.GetMotorParameter(0, 5, &found)), 77);
        QVERIFY(found);

        azimuthOnly.SetMotorParameter(1, 5, 78);
        QCOMPARE(int(azimuthOnly.GetMotorParameter(1, 5, &found)), 78);
        QVERIFY(found);
    }

    void aFoundPointerMayBeNull()
    {
        CDeviceDatabase database;
        QCOMPARE(int(database.GetMotorParameter(0, 5, nullptr)), 65535);
        database.SetMotorParameter(0, 5, 65535);
        QCOMPARE(int(database.GetMotorParameter(0, 5)), 65535);
    }

    void everyParameterHasItsColumn_data()
    {
        QTest::addColumn<int>("motor");
        QTest::addColumn<int>("parameter");
        QTest::addColumn<int>("column");
        for (int id = 0; id < 12; ++id) {
            QTest::addRow("azimuth %d", id) << 0 << id << 20 + id;
            QTest::addRow("polar %d", id) << 1 << id << 32 + id;
        }
    }
    void everyParameterHasItsColumn()
    {
        QFETCH(int, motor);
        QFETCH(int, parameter);
        QFETCH(int, column);
        CDeviceDatabase database;
        Fill(database);
        QSignalSpy notifications(&database, &QAbstractItemModel::dataChanged);
        database.SetMotorParameter(motor, parameter, 65535);
        QCOMPARE(NotifiedColumns(notifications), Columns{column});
        QCOMPARE(int(database.GetMotorParameter(motor, parameter)), 65535);
        const QVariant shown = parameter == 11 ? QVariant(QString()) : QVariant(65535);
        QCOMPARE(DataOf(database, column), shown);
    }

    void theRotorTypeColumnShowsText_data()
    {
        QTest::addColumn<int>("value");
        QTest::addColumn<QString>("text");
        QTest::newRow("0") << 0 << "Potentiometer";
        QTest::newRow("1") << 1 << "Pulse";
        QTest::newRow("2") << 2 << "Unknow Type";
        QTest::newRow("3 is none") << 3 << QString();
        QTest::newRow("65535 is none") << 65535 << QString();
    }
    void theRotorTypeColumnShowsText()
    {
        QFETCH(int, value);
        CDeviceDatabase database;
        database.SetMotorParameter(0, 11, ushort(value));
        database.SetMotorParameter(1, 11, ushort(value));
        for (const int column : {31, 43}) {
            QCOMPARE(DataOf(database, column).type(), QVariant::String);
            QTEST(TextOf(database, column), "text");
        }
    }

    void parametersAreStoredFromAVectorOneByOne()
    {
        CDeviceDatabase database;
        Columns notified;
        QVector<int> stored;
        connect(&database, &QAbstractItemModel::dataChanged, this, [&](const QModelIndex& cell) {
            notified << cell.column();
            QMap<int, ushort> parameters;
            database.GetMotorParameters(1, parameters);
            stored << parameters.size();
        });
        database.SetMotorParameters(1, {9, 8, 7, 6, 5, 4, 3, 2, 1, 0, 10, 11});

        const Columns columns{32, 33, 34, 35, 36, 37, 38, 39, 40, 41, 42, 43};
        const QVector<int> growing{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
        QCOMPARE(notified, columns);
        QCOMPARE(stored, growing);
    }

    void aShortVectorLeavesTheRestAlone()
    {
        CDeviceDatabase database;
        Fill(database);
        database.SetMotorParameters(0, {1, 2});
        QCOMPARE(DataOf(database, 20), QVariant(1));
        QCOMPARE(DataOf(database, 21), QVariant(2));
        QCOMPARE(DataOf(database, 22), QVariant(102));
        QCOMPARE(DataOf(database, 32), QVariant(200));
    }

    void allParametersAreAddedToTheCallersMap()
    {
        CDeviceDatabase database;
        database.SetMotorParameters(0, {10, 11});
        database.SetMotorParameter(1, 7, 70);

        QMap<int, ushort> out{{1, 99}, {5, 55}};
        QVERIFY(database.GetMotorParameters(0, out));
        const QMap<int, ushort> azimuth{{0, 10}, {1, 11}, {5, 55}};
        QCOMPARE(out, azimuth);

        out.clear();
        QVERIFY(database.GetMotorParameters(1, out));
        const QMap<int, ushort> polar{{7, 70}};
        QCOMPARE(out, polar);
    }

    void noSuchMotorIsLeftAlone_data()
    {
        QTest::addColumn<int>("motor");
        for (const int motor : {2, 3, -1, 2147483647}) {
            QTest::addRow("motor %d", motor) << motor;
        }
    }
    void noSuchMotorIsLeftAlone()
    {
        QFETCH(int, motor);
        CDeviceDatabase database;
        Fill(database);

        QMap<int, ushort> out{{3, 33}};
        const QMap<int, ushort> before = out;
        QVERIFY(!database.GetMotorParameters(motor, out));
        QCOMPARE(out, before);

        bool found = false;
        QCOMPARE(int(database.GetMotorParameter(motor, 0, &found)), 0);
        QVERIFY(found);

        QSignalSpy notifications(&database, &QAbstractItemModel::dataChanged);
        database.SetMotorParameter(motor, 0, 1);
        QCOMPARE(NotifiedColumns(notifications), Columns{NoCell});
        QCOMPARE(DataOf(database, 20), QVariant(100));
        QCOMPARE(DataOf(database, 32), QVariant(200));

        database.SetMotorValidationError(motor, "other");
        QCOMPARE(database.GetMotorValidationError(motor), QString());
        QCOMPARE(database.GetMotorValidationError(0), "azimuth");
        QCOMPARE(database.GetMotorValidationError(1), "polar");
    }

    void aValidationErrorIsKeptForEachMotor()
    {
        CDeviceDatabase database;
        QCOMPARE(database.GetMotorValidationError(0), QString());
        QCOMPARE(database.GetMotorValidationError(1), QString());
        database.SetMotorValidationError(1, "Invalid value for SMD");
        QCOMPARE(database.GetMotorValidationError(0), QString());
        QCOMPARE(database.GetMotorValidationError(1), "Invalid value for SMD");
        database.SetMotorValidationError(1, QString());
        QCOMPARE(database.GetMotorValidationError(1), QString());
    }

    void resetForgetsAllButTheVariant()
    {
        CDeviceDatabase database;
        Fill(database);
        database.ResetData();

        const CDeviceDatabase fresh;
        for (int column = 0; column < 44; ++column) {
            const QVariant expected = column == 8 ? QVariant("var") : DataOf(fresh, column);
            QCOMPARE(DataOf(database, column), expected);
        }
        for (const int motor : {0, 1}) {
            QMap<int, ushort> parameters;
            QVERIFY(database.GetMotorParameters(motor, parameters));
            QVERIFY(parameters.isEmpty());
            QCOMPARE(database.GetMotorValidationError(motor), QString());
        }
        QVERIFY(database.IsFirmwareBelowVersion3());
    }

    void resetNotifiesInItsOrder()
    {
        CDeviceDatabase database;
        Fill(database);
        QSignalSpy notifications(&database, &QAbstractItemModel::dataChanged);
        database.ResetData();
        const Columns expected{0, 2, 1, 3, 4, 5, 14, 7, 15, 9, 17, 11, 18, 12, 16, 10, 19, 13, 6};
        QCOMPARE(NotifiedColumns(notifications), expected);
    }
};

QTEST_GUILESS_MAIN(DeviceDatabaseTest)
#include "DeviceDatabaseTest.moc"
