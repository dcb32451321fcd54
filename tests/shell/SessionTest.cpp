#include "tests/support/SimulatorProcess.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QtTest>

namespace {

QLineEdit* Cell(int row)
{
    return qobject_cast<QLineEdit*>(
        Find<QTableWidget>("tblMotorConfiguration")->cellWidget(row, 0));
}

void ChooseRotor(const char* name)
{
    auto* const list = Find<QComboBox>("listRotors");
    Click(list);
    QTest::keyClicks(list->view(), QLatin1String(name));
    QTest::keyClick(list->view(), Qt::Key_Return);
}

} // namespace

/// Whole sessions of a user, compared byte for byte with what the unit took.
class SessionTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void everyByteOfASessionWithNewFirmware()
    {
        SimulatorProcess unit({QStringLiteral("--firmware"), QStringLiteral("3.10")});
        QVERIFY(unit.IsReady());
        ConnectTo(unit.Address());

        ShowPage("Azimuth Configuration");
        ChooseRotor("ProSisTel");
        Click(Find<QPushButton>("btnSendToDevice"));
        QCOMPARE(StatusLine(), QStringLiteral("Azimuth Motor configuration sent successfully."));
        ShowPage("Pol/Eval Configuration");
        Overtype(Cell(0), QStringLiteral("300"));
        Overtype(Cell(8), QStringLiteral("75"));
        Click(Find<QPushButton>("btnSendToDevice"));
        QCOMPARE(StatusLine(), QStringLiteral("Polar Motor configuration sent successfully."));
        Click(Find<QPushButton>("btnReceiveFromDevice"));
        QCOMPARE(StatusLine(), QStringLiteral("Device motor configuration read successfully!"));
        QCOMPARE(Cell(0)->text(), QStringLiteral("300"));
        QCOMPARE(Cell(8)->text(), QStringLiteral("75"));

        QVERIFY(unit.Tell(QStringLiteral("drop")));
        Click(Find<QPushButton>("btnSendToDevice")); // goes nowhere
        QCOMPARE(ConnectionLine(), QStringLiteral("Not Connected "));
        Click(Find<QPushButton>("btnConnect"));
        QCOMPARE(ConnectionLine(), QStringLiteral("Connected to ") + unit.Address());
        QCOMPARE(Cell(0)->text(), QStringLiteral("300"));

        QCOMPARE(unit.Commands(),
            (QStringList{
                QStringLiteral("*IDN?"),
                QStringLiteral("GET:OPTION:INTERNAL?"),
                QStringLiteral("GET:OPTION:DESC?"),
                QStringLiteral("CF0"),
                QStringLiteral("CF0"),
                QStringLiteral("CF7 00400000"),
                QStringLiteral("CF7 004004B0"),
                QStringLiteral("HCF 01F40003009600010002000A0000000007D0001400320001"),
                QStringLiteral("VCF 012C0003003C0001000200050000000001F40014004B0000"),
                QStringLiteral("CF0"),
                QStringLiteral("*IDN?"),
                QStringLiteral("GET:OPTION:INTERNAL?"),
                QStringLiteral("GET:OPTION:DESC?"),
                QStringLiteral("CF0"),
                QStringLiteral("CF0"),
                QStringLiteral("CF7 00400000"),
                QStringLiteral("CF7 004004B0"),
            }));
    }

    void everyByteOfASessionWithOldFirmware()
    {
        SimulatorProcess unit({QStringLiteral("--firmware"), QStringLiteral("2.50"),
            QStringLiteral("--azimuth"), QStringLiteral("500,3,150,1,2,10,0,0,2000,20"),
            QStringLiteral("--polar"), QStringLiteral("99,3,60,1,2,5,0,0,500,20")});
        QVERIFY(unit.IsReady());
        ConnectTo(unit.Address());
        ShowPage("Azimuth Configuration");
        QVERIFY(!Find<QComboBox>("listRotors")->isVisible());
        Click(Find<QPushButton>("btnSendToDevice"));
        ShowPage("Pol/Eval Configuration");
        Overtype(Cell(7), QStringLiteral("65535"));
        Click(Find<QPushButton>("btnSendToDevice"));
        Click(Find<QPushButton>("btnReceiveFromDevice"));
        QCOMPARE(Cell(7)->text(), QStringLiteral("65535"));
        QCOMPARE(
            unit.Commands(), (QStringList{
                                 QStringLiteral("*IDN?"),
                                 QStringLiteral("GET:OPTION:INTERNAL?"),
                                 QStringLiteral("GET:OPTION:DESC?"),
                                 QStringLiteral("CF0"),
                                 QStringLiteral("CF0"),
                                 QStringLiteral("HCF 01F40003009600010002000A0000000007D00014"),
                                 QStringLiteral("VCF 00630003003C0001000200050000000001F4FFFF"),
                                 QStringLiteral("CF0"),
                             }));
    }

    void anAnswerInSingleBytesIsReadLikeAWholeOne()
    {
        SimulatorProcess unit({QStringLiteral("--fault"), QStringLiteral("bytewise"),
            QStringLiteral("--azimuth"), QStringLiteral("1,2,3,4,5,6,7,8,9,10,11,0")});
        QVERIFY(unit.IsReady());
        ConnectTo(unit.Address());
        ShowPage("Azimuth Configuration");
        QCOMPARE(Cell(0)->text(), QStringLiteral("1"));
        QCOMPARE(Cell(7)->text(), QStringLiteral("10"));
    }

    void aFaultOfTheIdentityLeavesTheUnitUnknownAndOld_data()
    {
        QTest::addColumn<QString>("fault");
        for (const char* const fault : {"silent", "wrong", "garbage"}) {
            QTest::newRow(fault) << QString::fromLatin1(fault);
        }
    }
    void aFaultOfTheIdentityLeavesTheUnitUnknownAndOld()
    {
        QFETCH(QString, fault);
        SimulatorProcess unit({QStringLiteral("--fault"), fault + QStringLiteral(":*IDN?")});
        QVERIFY(unit.IsReady());
        ConnectTo(unit.Address());
        QCOMPARE(ConnectionLine(), QStringLiteral("Connected to ") + unit.Address());
        ShowPage("Info");
        for (const char* const field : {"txtPartNumber", "txtSerialNumber", "txtVersionNumber"}) {
            QCOMPARE(Find<QLineEdit>(field)->text(), QString());
        }
        ShowPage("Azimuth Configuration");
        QVERIFY(!Find<QComboBox>("listRotors")->isVisible());
    }

    void aResetAtAnyCommandOfTheLoadEndsNotConnected_data()
    {
        QTest::addColumn<QString>("command");
        QTest::newRow("identity") << QStringLiteral("*IDN?");
        QTest::newRow("options") << QStringLiteral("GET:OPTION:INTERNAL?");
        QTest::newRow("option descriptions") << QStringLiteral("GET:OPTION:DESC?");
        QTest::newRow("first configuration") << QStringLiteral("CF0:1");
        QTest::newRow("first EEPROM block") << QStringLiteral("CF7:1");
    }
    void aResetAtAnyCommandOfTheLoadEndsNotConnected()
    {
        QFETCH(QString, command);
        SimulatorProcess unit({QStringLiteral("--fault"), QStringLiteral("resetting:") + command});
        QVERIFY(unit.IsReady());
        ConnectTo(unit.Address());
        QCOMPARE(ConnectionLine(), QStringLiteral("Not Connected "));
        QCOMPARE(Find<QPushButton>("btnConnect")->text(), QStringLiteral("Connect"));
        ShowPage("Azimuth Configuration");
        QVERIFY(!Find<QPushButton>("btnSendToDevice")->isEnabled());
    }
};

VX440_WINDOW_TEST_MAIN(SessionTest)
#include "SessionTest.moc"
