// SPDX-License-Identifier: MIT

#include "model/CDeviceDatabase.h"
#include "tests/support/Notified.h"
#include "tests/support/Warnings.h"

#include <QSignalSpy>
#include <QtTest>

#include <functional>

namespace {

using Columns = QVector<int>;

constexpr int NoCell = -1;

QVariant DataOf(const CDeviceDatabase& database, int column, int role = Qt::DisplayRole)
{
    return database.data(database.index(0, column), role);
}

QString TextOf(const CDeviceDatabase& database, int column)
{
    return DataOf(database, column).toString();
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

class DeviceDatabaseTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void aFreshModelHasOneRowAnd44Columns()
    {
        const CDeviceDatabase database;
        for (const QModelIndex& parent : {QModelIndex(), database.index(0, 3)}) {
            QCOMPARE(database.rowCount(parent), 1);
            QCOMPARE(database.columnCount(parent), 44);
        }
    }

    void aFreshModelShowsThatNothingIsConnected()
    {
        const QMap<int, QVariant> others{
            {0, "Connect"}, {2, "Not Connected "}, {31, "Potentiometer"}, {43, "Potentiometer"}};
        const CDeviceDatabase database;
        for (int column = 0; column < 44; ++column) {
            const QVariant usual = column < 20 ? QVariant(QString()) : QVariant(0);
            QCOMPARE(DataOf(database, column).type(), others.value(column, usual).type());
            QCOMPARE(DataOf(database, column), others.value(column, usual));
        }
    }

    void theProcessHasOneDatabaseFromTheStart()
    {
        QVERIFY(TheDeviceDatabase() != nullptr);
        QCOMPARE(TheDeviceDatabase(), TheDeviceDatabase());
        QCOMPARE(TheDeviceDatabase()->ConnectionStatusText(), "Not Connected ");
    }

    void aColumnShowsItsValue()
    {
        const QVector<QVariant> values{"Connected", "status", "Connected to 192.168.0.129",
            "192.168.0.129", "02:4C:7E:00:00:01", "255.255.255.0", "3.10", "c7", "var", "c9", "c10",
            "c11", "c12", "c13", "c14", "c15", "c16", "c17", "c18", "c19", 100, 101, 102, 103, 104,
            105, 106, 107, 108, 109, 110, "Pulse", 200, 201, 202, 203, 204, 205, 206, 207, 208, 209,
            210, "Unknow Type"};
        AnyIndexDatabase database;
        Fill(database);
        for (int column = 0; column < 44; ++column) {
            for (const int role : {0, 2}) {
                QCOMPARE(DataOf(database, column, role).type(), values.at(column).type());
                QCOMPARE(DataOf(database, column, role), values.at(column));
            }
            QCOMPARE(database.data(database.IndexOf(7, column)), values.at(column)); // in any row
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
        const Notified notified(database);
        QVERIFY(!database.setData(database.index(0, 3), "10.0.0.1"));
        QCOMPARE(TextOf(database, 3), "192.168.0.129");
        QVERIFY(!(database.flags(database.index(0, 3)) & Qt::ItemIsEditable));
        QVERIFY(notified.columns.isEmpty());
    }

    void aSetterNotifiesItsColumnAlsoForTheSameValue()
    {
        using Database = CDeviceDatabase;
        const QString text = "text";
        const struct
        {
            std::function<void(Database&)> set;
            Columns columns;
        } setters[] = {
            {[](Database& d) { d.SetConnectionStatus(2); }, {0, 2}},
            {[=](Database& d) { d.SetApplicationStatus(text); }, {1}},
            {[](Database& d) { d.SetIpAddress("10.0.0.1"); }, {3}},
            {[=](Database& d) { d.SetIpAddress(text); }, {3}},
            {[=](Database& d) { d.SetMacAddress(text); }, {4}},
            {[](Database& d) { d.SetSubnetMask("255.0.0.0"); }, {5}},
            {[=](Database& d) { d.SetSubnetMask(text); }, {5}},
            {[=](Database& d) { d.SetFirmwareVersion(text); }, {6}},
            {[=](Database& d) { d.SetVariant(text, 0); }, {8}},
            {[](Database& d) { d.SetMotorParameter(1, 5, 9); }, {37}},
            {[](Database& d) {
                 d.SetMotorParameters(0, {7, 7, 7});
             },
                {20, 21, 22}},
            {[](Database& d) { d.SetMotorParameters(0, {}); }, {}},
            {[=](Database& d) { d.SetMotorValidationError(0, text); }, {}},
        };
        CDeviceDatabase database;
        Notified notified(database);
        for (const auto& setter : setters) {
            for (int twice = 0; twice < 2; ++twice) {
                setter.set(database);
                QCOMPARE(notified.TakeColumns(), setter.columns);
            }
        }
        for (const TextSetter& setter : SettersOfBothSets) {
            for (const int set : {0, 0, 1, 1}) {
                (database.*setter.set)(text, set);
                QCOMPARE(notified.TakeColumns(), Columns{setter.columns[set]});
            }
        }
    }

    void aNotificationNamesTheDisplayRoleTwice()
    {
        CDeviceDatabase database;
        const QSignalSpy notifications(&database, &QAbstractItemModel::dataChanged);
        Fill(database);
        database.ResetData();
        QVERIFY(notifications.count() > 60);
        for (const QList<QVariant>& arguments : notifications) {
            const QModelIndex cell = arguments.at(0).toModelIndex();
            QCOMPARE(cell.row(), 0);
            QCOMPARE(arguments.at(1).toModelIndex(), cell);
            QCOMPARE(arguments.at(2).value<QVector<int>>(), (QVector<int>{0, 0}));
        }
    }

    void aSetOutsideOf0And1StoresNothing()
    {
        CDeviceDatabase database;
        Fill(database);
        const Notified notified(database);
        for (const int set : {-1, 2, 44}) {
            for (const TextSetter& setter : SettersOfBothSets) {
                (database.*setter.set)("other", set);
                QVERIFY2(notified.columns.isEmpty(), setter.name);
            }
        }
        for (int column = 0; column < 44; ++column) {
            QVERIFY(TextOf(database, column) != "other");
        }
    }

    void withoutASetTheFirstIsMeant()
    {
        CDeviceDatabase database;
        Notified notified(database);
        database.SetPartNumber("text");
        database.SetVariant("text");
        database.SetProductIndex("text");
        database.SetSerialNumber("text");
        database.SetProductionDate("text");
        database.SetTestInstructionIndex("text");
        database.SetBoardName("text");
        QCOMPARE(notified.TakeColumns(), (Columns{7, 8, 9, 10, 11, 12, 13}));
    }

    void theVariantIsStoredForAnySet()
    {
        for (const int set : {0, 1, 2, -1}) {
            CDeviceDatabase database;
            Fill(database);
            Notified notified(database);
            database.SetVariant("other", set);
            QCOMPARE(TextOf(database, 8), "other");
            QCOMPARE(notified.TakeColumns(), Columns{8});
        }
    }

    void connectionStatusHasItsTexts()
    {
        const struct
        {
            int code;
            const char* button;
            const char* line;
        } statuses[] = {{0, "Connected", "Connected to 192.168.0.129"},
            {1, "Connecting", "Connecting to 192.168.0.129 ..."}, {2, "Connect", "Not Connected "},
            {3, "Connect", "Connection Failed"}, {4, "Connect", "Reconnecting to 192.168.0.129"},
            {5, "Connect", ""}, {-1, "Connect", ""}, {2147483647, "Connect", ""},
            {-2147483647 - 1, "Connect", ""}};
        CDeviceDatabase database;
        database.SetIpAddress("192.168.0.129");
        for (const auto& status : statuses) {
            database.SetConnectionStatus(status.code);
            QCOMPARE(TextOf(database, 0), status.button);
            QCOMPARE(TextOf(database, 2), status.line);
            QCOMPARE(database.ConnectionStatusText(), status.line);
        }
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

    void addressesAreNormalised()
    {
        const struct
        {
            const char* text;
            const char* stored; // none where it is refused
        } addresses[] = {{"192.168.0.129", "192.168.0.129"}, {"255.255.255.0", "255.255.255.0"},
            {"0.0.0.0", "0.0.0.0"}, {"192.168.000.001", "192.168.0.1"}, {"192.168.0.256", ""},
            {"192.168.0.1.2", ""}, {"...", ""}, {"unit", ""}, {"", ""}};
        for (const auto& address : addresses) {
            CDeviceDatabase database;
            Fill(database);
            const bool valid = *address.stored != 0;
            QCOMPARE(database.SetIpAddress(address.text), valid);
            QCOMPARE(database.GetIpAddress(), address.stored);
            QCOMPARE(TextOf(database, 3), address.stored);
            QCOMPARE(database.SetSubnetMask(address.text), valid);
            QCOMPARE(database.GetSubnetMask(), address.stored);
            QCOMPARE(TextOf(database, 5), address.stored);
        }
    }

    void theMacAddressIsStoredInUpperCase()
    {
        CDeviceDatabase database;
        database.SetMacAddress("02:4c:7e:0a:bc:df");
        QCOMPARE(database.GetMacAddress(), "02:4C:7E:0A:BC:DF");
        QCOMPARE(TextOf(database, 4), "02:4C:7E:0A:BC:DF");
    }

    void theSerialNumberIsCutToSixCharacters()
    {
        CDeviceDatabase database;
        for (const QString text : {"123456789", "1234567", "123456", "12345", ""}) {
            database.SetSerialNumber(text, 0);
            database.SetSerialNumber(text, 1);
            const QString stored = text.size() > 6 ? "123456" : text;
            QCOMPARE(TextOf(database, 10), stored);
            QCOMPARE(TextOf(database, 16), stored);
            QCOMPARE(database.GetSerialNumber(), stored);
        }
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

    // The carriage return comes from the unit's answer.
    void theFirmwareTextTellsTheGeneration()
    {
        const QStringList oldVersions{
            "", "2.99", "3.10a", "V3.10", "3.1.0", "3,10", "2.99\r", "\r"};
        const QStringList newVersions{"3.0", "3", "3.01", "3.10", "10.0", "3.10\r", "3.0\r"};
        CDeviceDatabase database;
        for (const QString& version : oldVersions + newVersions) {
            database.SetFirmwareVersion(version);
            QVERIFY2(database.IsFirmwareBelowVersion3() == oldVersions.contains(version),
                qPrintable(version));
            QCOMPARE(database.GetFirmwareVersion(), version);
            QCOMPARE(TextOf(database, 6), version);
        }
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

    void aMacAddressIsValidated()
    {
        const QMap<QString, QStringList> addressesOfError{
            {"",
                {"02:4C:7E:00:00:01", "02-4C-7E-00-00-01", "02-4C:7E-00:00-01", "0F:FF:FF:FF:FF:FF",
                    "9F:FF:FF:FF:FF:FF", "  x02:4C:7E:00:00:01:99 ", "02:4C:7E:00:00:01\n"}},
            {"MAC address is empty!", {""}},
            {"Invalid Mac address. Do not set a broadcast address",
                {"A2:4C:7E:00:00:01", "B2:4C:7E:00:00:01", "C2:4C:7E:00:00:01", "D2:4C:7E:00:00:01",
                    "E2:4C:7E:00:00:01", "F2:4C:7E:00:00:01", "a2:4C:7E:00:00:01",
                    "b2:4C:7E:00:00:01", "c2:4C:7E:00:00:01", "d2:4C:7E:00:00:01",
                    "e2:4C:7E:00:00:01", "f2:4C:7E:00:00:01", "f", "FF:FF:FF:FF:FF:FF"}},
            {"Invalid Mac address.",
                {"02:4c:7E:00:00:01", "02:4C:7E:00:00", "02:4C:7E:00:00:1", "024C7E000001",
                    "02.4C.7E.00.00.01", ":::::", "02:4G:7E:00:00:01", " ", "g"}}};
        const CDeviceDatabase database;
        for (const QString& error : addressesOfError.keys()) {
            for (const QString& mac : addressesOfError.value(error)) {
                QString text = "as before";
                const bool valid = database.ValidateMacAddress(mac, text) != 0;
                QVERIFY2(valid == error.isEmpty(), qPrintable(mac));
                QCOMPARE(text, valid ? "as before" : error);
            }
        }
    }

    void aMissingParameterReads65535ThoughItsColumnShows0()
    {
        const CDeviceDatabase database;
        QCOMPARE(int(database.GetMotorParameter(0, 5, nullptr)), 65535);
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

    void everyParameterHasItsColumn()
    {
        CDeviceDatabase database;
        Fill(database);
        Notified notified(database);
        for (int column = 20; column < 44; ++column) {
            const int motor = column < 32 ? 0 : 1;
            const int parameter = column - (motor == 0 ? 20 : 32);
            database.SetMotorParameter(motor, parameter, 65535);
            QCOMPARE(notified.TakeColumns(), Columns{column});
            QCOMPARE(int(database.GetMotorParameter(motor, parameter)), 65535);
            const QVariant shown = parameter == 11 ? QVariant(QString()) : QVariant(65535);
            QCOMPARE(DataOf(database, column), shown);
        }
    }

    void theRotorTypeColumnShowsText()
    {
        const QMap<ushort, const char*> texts{
            {0, "Potentiometer"}, {1, "Pulse"}, {2, "Unknow Type"}, {3, ""}, {65535, ""}};
        CDeviceDatabase database;
        for (auto type = texts.cbegin(); type != texts.cend(); ++type) {
            database.SetMotorParameter(0, 11, type.key());
            database.SetMotorParameter(1, 11, type.key());
            for (const int column : {31, 43}) {
                QCOMPARE(DataOf(database, column).type(), QVariant::String);
                QCOMPARE(TextOf(database, column), type.value());
            }
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

        QCOMPARE(notified, (Columns{32, 33, 34, 35, 36, 37, 38, 39, 40, 41, 42, 43}));
        QCOMPARE(stored, (QVector<int>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
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
        QCOMPARE(out, (QMap<int, ushort>{{0, 10}, {1, 11}, {5, 55}}));

        out.clear();
        QVERIFY(database.GetMotorParameters(1, out));
        QCOMPARE(out, (QMap<int, ushort>{{7, 70}}));
    }

    void noSuchMotorIsLeftAlone()
    {
        for (const int motor : {2, 3, -1, 2147483647}) {
            CDeviceDatabase database;
            Fill(database);

            QMap<int, ushort> out{{3, 33}};
            QVERIFY(!database.GetMotorParameters(motor, out));
            QCOMPARE(out, (QMap<int, ushort>{{3, 33}}));

            bool found = false;
            QCOMPARE(int(database.GetMotorParameter(motor, 0, &found)), 0);
            QVERIFY(found);

            Notified notified(database);
            database.SetMotorParameter(motor, 0, 1);
            QCOMPARE(notified.TakeColumns(), Columns{NoCell});
            QCOMPARE(DataOf(database, 20), QVariant(100));
            QCOMPARE(DataOf(database, 32), QVariant(200));

            database.SetMotorValidationError(motor, "other");
            QCOMPARE(database.GetMotorValidationError(motor), QString());
            QCOMPARE(database.GetMotorValidationError(0), "azimuth");
            QCOMPARE(database.GetMotorValidationError(1), "polar");
        }
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
        Notified notified(database);
        database.ResetData();
        QCOMPARE(notified.TakeColumns(),
            (Columns{0, 2, 1, 3, 4, 5, 14, 7, 15, 9, 17, 11, 18, 12, 16, 10, 19, 13, 6}));
    }
};

QTEST_GUILESS_MAIN(DeviceDatabaseTest)
#include "DeviceDatabaseTest.moc"
