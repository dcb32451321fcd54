// SPDX-License-Identifier: MIT

#include "rotor/RotorCatalogue.h"
#include "tests/support/Warnings.h"

#include <QtTest>

class RotorCatalogueTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void motorsAreNamedByIndex()
    {
        QCOMPARE(
            MotorNames, (QMap<int, QString>{{0, "Azimuth"}, {1, "Polar"}, {2, "UnknownMotor"}}));
    }

    // Users know the last text as it is spelt here.
    void rotorTypesAreNamedByCode()
    {
        QCOMPARE(RotorTypeNames,
            (QMap<int, QString>{{0, "Potentiometer"}, {1, "Pulse"}, {2, "Unknow Type"}}));
    }

    void parametersHaveTheirLabelAndMnemonic()
    {
        const struct
        {
            const char* label;
            const char* mnemonic;
        } parameters[] = {{"Slow Motion Difference (SMD)", "SMD"},
            {"Motion Hang Up Difference (MHD)", "MHD"}, {"Step Difference (SD)", "SD"},
            {"Step Sleep (SS)", "SS"}, {"Pulse Duration (PD)", "PD"},
            {"Max Position Difference (OD)", "OD"}, {"Max Position From Right (ORS)", "ORS"},
            {"Max Position From Left (OLS)", "OLS"}, {"Max Motion Hang Up Loop (MMHL)", "MMHL"},
            {"Loops Inside (MOT)", "MOT"}, {"Slow Motion Speed (SMS)", "SMS"}};
        QCOMPARE(MotorParameterNames.size(), 11);
        for (int id = 0; id < 11; ++id) {
            QCOMPARE(MotorParameterNames.value(id), parameters[id].label);
            QCOMPARE(ParameterMnemonic(parameters[id].label), parameters[id].mnemonic);
        }
    }

    void aRowOfTheUsersTableHasItsBounds()
    {
        const struct
        {
            int id;
            const char* label;
            int maximum;
        } rows[] = {{0, "Slow Motion Difference (SMD)", 65535},
            {1, "Motion Hang Up Difference (MHD)", 65535}, {2, "Step Difference (SD)", 65535},
            {5, "Max Position Difference (OD)", 65535}, {6, "Max Position From Right (ORS)", 65535},
            {7, "Max Position From Left (OLS)", 65535},
            {8, "Max Motion Hang Up Loop (MMHL)", 65535}, {9, "Loops Inside (MOT)", 65535},
            {10, "Slow Motion Speed (SMS)%", 100}};
        QCOMPARE(MotorParameterRanges.size(), 9);
        for (int row = 0; row < 9; ++row) {
            const sMOTOR_PARAM_RANGE& range = MotorParameterRanges.at(row);
            QCOMPARE(int(range.parameterId), rows[row].id);
            QCOMPARE(range.label, rows[row].label);
            QCOMPARE(int(range.minimum), 0);
            QCOMPARE(int(range.maximum), rows[row].maximum);
        }
    }

    void aPresetHoldsTheVendorsValues()
    {
        const QVector<ushort> none(11, 0);
        const QVector<ushort> proSisTel{500, 3, 150, 1, 2, 10, 0, 0, 2000, 20, 50};
        const QVector<ushort> azimuth{70, 3, 22, 1, 2, 2, 0, 0, 500, 20, 50};
        const QVector<ushort> yaesu{99, 3, 60, 1, 2, 5, 0, 0, 500, 20, 50};
        const QVector<ushort> polar{200, 3, 60, 1, 2, 5, 0, 0, 500, 20, 50};
        const QVector<sROTOR_PRESET> expected[] = {
            {{"", 1, none}, {"ProSisTel", 1, proSisTel}, {"YAESU G-2800", 0, azimuth},
                {"Winder AR/A1003", 0, azimuth}, {"Winder AR/A1023", 0, azimuth},
                {"Winder AR/AE1049", 0, azimuth}, {"TD552", 0, azimuth}},
            {{"", 1, none}, {"ProSisTel", 1, proSisTel}, {"YAESU G-550", 0, yaesu},
                {"Winder AR/AE1049", 0, polar}, {"TD552", 0, polar}}};
        for (const int motor : {0, 1}) {
            const auto& presets = motor == 0 ? AzimuthRotorPresets : PolarRotorPresets;
            QCOMPARE(presets.size(), expected[motor].size());
            for (int row = 0; row < presets.size(); ++row) {
                QCOMPARE(presets.at(row).name, expected[motor].at(row).name);
                QCOMPARE(presets.at(row).rotorType, expected[motor].at(row).rotorType);
                QCOMPARE(presets.at(row).values, expected[motor].at(row).values);
            }
        }
    }

    // The slow motion difference is the one that differs; there is no rotor type.
    void theResetDefaultsHoldTheUnitsOwnValues()
    {
        QMap<int, ushort> expected{{0, 30}, {1, 1}, {2, 250}, {3, 1}, {4, 1}, {5, 2}, {6, 0},
            {7, 0}, {8, 2000}, {9, 30}, {10, 100}};
        QCOMPARE(AzimuthResetDefaults, expected);
        expected[0] = 20;
        QCOMPARE(PolarResetDefaults, expected);
    }

    void theMnemonicIsTheLastWordWithoutBracketsAndPercent()
    {
        const QMap<QString, QString> mnemonics{{"Max Motion Hang Up Loop (MMHL)", "MMHL"},
            {"Max Motion Hang Up Loop (MMHL)%", "MMHL"}, {"Slow Motion Speed (SMS)", "SMS"},
            {"Slow Motion Speed (SMS)%", "SMS"}, {"SMS", "SMS"}, {"", ""},
            {"ends in a blank (SMS) ", ""}, {"(a) ((b)%)%(c", "bc"}, {"a\tb", "a\tb"}};
        for (const QString& label : mnemonics.keys()) {
            QCOMPARE(ParameterMnemonic(label), mnemonics.value(label));
        }
    }
};

QTEST_APPLESS_MAIN(RotorCatalogueTest)
#include "RotorCatalogueTest.moc"
