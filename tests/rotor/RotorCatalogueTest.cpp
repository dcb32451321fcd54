#include "rotor/RotorCatalogue.h"

#include <QtTest>

Q_DECLARE_METATYPE(sROTOR_PRESET)

class RotorCatalogueTest : public QObject
{
    Q_OBJECT

private slots:
    void motorsAreNamedByIndex_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("name");
        QTest::newRow("0") << 0 << "Azimuth";
        QTest::newRow("1") << 1 << "Polar";
        QTest::newRow("2 is no motor") << 2 << "UnknownMotor";
    }
    void motorsAreNamedByIndex()
    {
        QFETCH(int, index);
        QTEST(MotorNames.value(index), "name");
    }

    void rotorTypesAreNamedByCode_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("text");
        QTest::newRow("0") << 0 << "Potentiometer";
        QTest::newRow("1") << 1 << "Pulse";
        QTest::newRow("2 as users know it") << 2 << "Unknow Type";
    }
    void rotorTypesAreNamedByCode()
    {
        QFETCH(int, code);
        QTEST(RotorTypeNames.value(code), "text");
    }

    void parametersHaveTheirLabelAndMnemonic_data()
    {
        QTest::addColumn<int>("id");
        QTest::addColumn<QString>("label");
        QTest::addColumn<QString>("mnemonic");
        const auto add = [](int id, const char* label, const char* mnemonic) {
            QTest::newRow(mnemonic)
                << id << QString::fromLatin1(label) << QString::fromLatin1(mnemonic);
        };
        add(0, "Slow Motion Difference (SMD)", "SMD");
        add(1, "Motion Hang Up Difference (MHD)", "MHD");
        add(2, "Step Difference (SD)", "SD");
        add(3, "Step Sleep (SS)", "SS");
        add(4, "Pulse Duration (PD)", "PD");
        add(5, "Max Position Difference (OD)", "OD");
        add(6, "Max Position From Right (ORS)", "ORS");
        add(7, "Max Position From Left (OLS)", "OLS");
        add(8, "Max Motion Hang Up Loop (MMHL)", "MMHL");
        add(9, "Loops Inside (MOT)", "MOT");
        add(10, "Slow Motion Speed (SMS)", "SMS");
    }
    void parametersHaveTheirLabelAndMnemonic()
    {
        QFETCH(int, id);
        QTEST(MotorParameterNames.value(id), "label");
        QTEST(ParameterMnemonic(MotorParameterNames.value(id)), "mnemonic");
    }

    void theTablesHoldNothingElse()
    {
        QCOMPARE(MotorNames.size(), 3);
        QCOMPARE(RotorTypeNames.size(), 3);
        QCOMPARE(MotorParameterNames.size(), 11);
        QCOMPARE(MotorParameterRanges.size(), 9);
        QCOMPARE(AzimuthRotorPresets.size(), 7);
        QCOMPARE(PolarRotorPresets.size(), 5);
        QCOMPARE(AzimuthResetDefaults.size(), 11);
        QCOMPARE(PolarResetDefaults.size(), 11);
    }

    void aRowOfTheUsersTableHasItsBounds_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<int>("id");
        QTest::addColumn<QString>("label");
        QTest::addColumn<int>("maximum");
        const auto add = [](int row, int id, const char* label, int maximum) {
            QTest::addRow("row %d", row) << row << id << QString::fromLatin1(label) << maximum;
        };
        add(0, 0, "Slow Motion Difference (SMD)", 65535);
        add(1, 1, "Motion Hang Up Difference (MHD)", 65535);
        add(2, 2, "Step Difference (SD)", 65535);
        add(3, 5, "Max Position Difference (OD)", 65535);
        add(4, 6, "Max Position From Right (ORS)", 65535);
        add(5, 7, "Max Position From Left (OLS)", 65535);
        add(6, 8, "Max Motion Hang Up Loop (MMHL)", 65535);
        add(7, 9, "Loops Inside (MOT)", 65535);
        add(8, 10, "Slow Motion Speed (SMS)%", 100);
    }
    void aRowOfTheUsersTableHasItsBounds()
    {
        QFETCH(int, row);
        const sMOTOR_PARAM_RANGE& range = MotorParameterRanges.at(row);
        QTEST(int(range.parameterId), "id");
        QTEST(range.label, "label");
        QCOMPARE(int(range.minimum), 0);
        QTEST(int(range.maximum), "maximum");
    }

    void aPresetHoldsTheVendorsValues_data()
    {
        QTest::addColumn<QVector<sROTOR_PRESET>>("presets");
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("type");
        QTest::addColumn<QVector<ushort>>("values");

        using Words = QVector<ushort>;
        const auto azimuth = [](int row, const char* name, int type, const Words& values) {
            QTest::addRow("azimuth %d", row)
                << AzimuthRotorPresets << row << QString::fromLatin1(name) << type << values;
        };
        const auto polar = [](int row, const char* name, int type, const Words& values) {
            QTest::addRow("polar %d", row)
                << PolarRotorPresets << row << QString::fromLatin1(name) << type << values;
        };
        azimuth(0, "", 1, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
        azimuth(1, "ProSisTel", 1, {500, 3, 150, 1, 2, 10, 0, 0, 2000, 20, 50});
        azimuth(2, "YAESU G-2800", 0, {70, 3, 22, 1, 2, 2, 0, 0, 500, 20, 50});
        azimuth(3, "Winder AR/A1003", 0, {70, 3, 22, 1, 2, 2, 0, 0, 500, 20, 50});
        azimuth(4, "Winder AR/A1023", 0, {70, 3, 22, 1, 2, 2, 0, 0, 500, 20, 50});
        azimuth(5, "Winder AR/AE1049", 0, {70, 3, 22, 1, 2, 2, 0, 0, 500, 20, 50});
        azimuth(6, "TD552", 0, {70, 3, 22, 1, 2, 2, 0, 0, 500, 20, 50});
        polar(0, "", 1, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
        polar(1, "ProSisTel", 1, {500, 3, 150, 1, 2, 10, 0, 0, 2000, 20, 50});
        polar(2, "YAESU G-550", 0, {99, 3, 60, 1, 2, 5, 0, 0, 500, 20, 50});
        polar(3, "Winder AR/AE1049", 0, {200, 3, 60, 1, 2, 5, 0, 0, 500, 20, 50});
        polar(4, "TD552", 0, {200, 3, 60, 1, 2, 5, 0, 0, 500, 20, 50});
    }
    void aPresetHoldsTheVendorsValues()
    {
        QFETCH(QVector<sROTOR_PRESET>, presets);
        QFETCH(int, row);
        const sROTOR_PRESET& preset = presets.at(row);
        QTEST(preset.name, "name");
        QTEST(int(preset.rotorType), "type");
        QTEST(preset.values, "values");
    }

    void theResetDefaultsHoldTheUnitsOwnValues_data()
    {
        QTest::addColumn<int>("id");
        QTest::addColumn<int>("azimuth");
        QTest::addColumn<int>("polar");
        QTest::newRow("SMD is the one that differs") << 0 << 30 << 20;
        QTest::newRow("MHD") << 1 << 1 << 1;
        QTest::newRow("SD") << 2 << 250 << 250;
        QTest::newRow("SS") << 3 << 1 << 1;
        QTest::newRow("PD") << 4 << 1 << 1;
        QTest::newRow("OD") << 5 << 2 << 2;
        QTest::newRow("ORS") << 6 << 0 << 0;
        QTest::newRow("OLS") << 7 << 0 << 0;
        QTest::newRow("MMHL") << 8 << 2000 << 2000;
        QTest::newRow("MOT") << 9 << 30 << 30;
        QTest::newRow("SMS") << 10 << 100 << 100;
        QTest::newRow("there is no rotor type") << 11 << -1 << -1;
    }
    void theResetDefaultsHoldTheUnitsOwnValues()
    {
        const auto valueOf = [](const QMap<int, ushort>& defaults, int id) {
            return defaults.contains(id) ? int(defaults.value(id)) : -1;
        };
        QFETCH(int, id);
        QTEST(valueOf(AzimuthResetDefaults, id), "azimuth");
        QTEST(valueOf(PolarResetDefaults, id), "polar");
    }

    void theMnemonicIsTheLastWordWithoutBracketsAndPercent_data()
    {
        QTest::addColumn<QString>("label");
        QTest::addColumn<QString>("mnemonic");
        const auto add = [](const char* label, const char* mnemonic) {
            QTest::addRow("\"%s\"", label)
                << QString::fromLatin1(label) << QString::fromLatin1(mnemonic);
        };
        add("Max Motion Hang Up Loop (MMHL)", "MMHL");
        add("Max Motion Hang Up Loop (MMHL)%", "MMHL");
        add("Slow Motion Speed (SMS)", "SMS");
        add("Slow Motion Speed (SMS)%", "SMS");
        add("SMS", "SMS");
        add("", "");
        add("ends in a blank (SMS) ", "");
        add("(a) ((b)%)%(c", "bc");
        add("a\tb", "a\tb");
    }
    void theMnemonicIsTheLastWordWithoutBracketsAndPercent()
    {
        QFETCH(QString, label);
        QTEST(ParameterMnemonic(label), "mnemonic");
    }
};

QTEST_APPLESS_MAIN(RotorCatalogueTest)
#include "RotorCatalogueTest.moc"
