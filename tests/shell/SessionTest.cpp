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
    QTest::keyClicks(list->view(), name);
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
        SimulatorProcess unit({"--firmware", "3.10"});
        QVERIFY(unit.IsReady());
        ConnectTo(unit.Address());

        ShowPage("Azimuth Configuration");
        ChooseRotor("ProSisTel");
        Click(Find<QPushButton>("btnSendToDevice"));
        QCOMPARE(StatusLine(), "Azimuth Motor configuration sent successfully.");
        ShowPage("Pol/Eval Configuration");
        Overtype(Cell(0), "300");
        Overtype(Cell(8), "75");
        Click(Find<QPushButton>("btnSendToDevice"));
        QCOMPARE(StatusLine(), "Polar Motor configuration sent successfully.");
        Click(Find<QPushButton>("btnReceiveFromDevice"));
        QCOMPARE(StatusLine(), "Device motor configuration read successfully!");
        QCOMPARE(Cell(0)->text(), "300");
        QCOMPARE(Cell(8)->text(), "75");

        QVERIFY(unit.Tell("drop"));
        Click(Find<QPushButton>("btnSendToDevice")); // goes nowhere
        QCOMPARE(ConnectionLine(), "Not Connected ");
        Click(Find<QPushButton>("btnConnect"));
        QCOMPARE(ConnectionLine(), QString("Connected to ") + unit.Address());
        QCOMPARE(Cell(0)->text(), "300");

        QCOMPARE(unit.Commands(), (QStringList{
                                      "*IDN?",
                                      "GET:OPTION:INTERNAL?",
                                      "GET:OPTION:DESC?",
                                      "CF0",
                                      "CF0",
                                      "CF7 00400000",
                                      "CF7 004004B0",
                                      "HCF 01F40003009600010002000A0000000007D0001400320001",
                                      "VCF 012C0003003C0001000200050000000001F40014004B0000",
                                      "CF0",
                                      "*IDN?",
                                      "GET:OPTION:INTERNAL?",
                                      "GET:OPTION:DESC?",
                                      "CF0",
                                      "CF0",
                                      "CF7 00400000",
                                      "CF7 004004B0",
                                  }));
    }

    void everyByteOfASessionWithOldFirmware()
    {
        SimulatorProcess unit({"--firmware", "2.50", "--azimuth", "500,3,150,1,2,10,0,0,2000,20",
            "--polar", "99,3,60,1,2,5,0,0,500,20"});
        QVERIFY(unit.IsReady());
        ConnectTo(unit.Address());
        ShowPage("Azimuth Configuration");
        QVERIFY(!Find<QComboBox>("listRotors")->isVisible());
        Click(Find<QPushButton>("btnSendToDevice"));
        ShowPage("Pol/Eval Configuration");
        Overtype(Cell(7), "65535");
        Click(Find<QPushButton>("btnSendToDevice"));
        Click(Find<QPushButton>("btnReceiveFromDevice"));
        QCOMPARE(Cell(7)->text(), "65535");
        QCOMPARE(unit.Commands(), (QStringList{
                                      "*IDN?",
                                      "GET:OPTION:INTERNAL?",
                                      "GET:OPTION:DESC?",
                                      "CF0",
                                      "CF0",
                                      "HCF 01F40003009600010002000A0000000007D00014",
                                      "VCF 00630003003C0001000200050000000001F4FFFF",
                                      "CF0",
                                  }));
    }

    void anAnswerInSingleBytesIsReadLikeAWholeOne()
    {
        SimulatorProcess unit({"--fault", "bytewise", "--azimuth", "1,2,3,4,5,6,7,8,9,10,11,0"});
        QVERIFY(unit.IsReady());
        ConnectTo(unit.Address());
        ShowPage("Azimuth Configuration");
        QCOMPARE(Cell(0)->text(), "1");
        QCOMPARE(Cell(7)->text(), "10");
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
        SimulatorProcess unit({"--fault", fault + ":*IDN?"});
        QVERIFY(unit.IsReady());
        ConnectTo(unit.Address());
        QCOMPARE(ConnectionLine(), QString("Connected to ") + unit.Address());
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
        QTest::newRow("identity") << "*IDN?";
        QTest::newRow("options") << "GET:OPTION:INTERNAL?";
        QTest::newRow("option descriptions") << "GET:OPTION:DESC?";
        QTest::newRow("first configuration") << "CF0:1";
        QTest::newRow("first EEPROM block") << "CF7:1";
    }
    void aResetAtAnyCommandOfTheLoadEndsNotConnected()
    {
        QFETCH(QString, command);
        SimulatorProcess unit({"--fault", QString("resetting:") + command});
        QVERIFY(unit.IsReady());
        ConnectTo(unit.Address());
        QCOMPARE(ConnectionLine(), "Not Connected ");
        QCOMPARE(Find<QPushButton>("btnConnect")->text(), "Connect");
        ShowPage("Azimuth Configuration");
        QVERIFY(!Find<QPushButton>("btnSendToDevice")->isEnabled());
    }
};

VX440_WINDOW_TEST_MAIN(SessionTest)
#include "SessionTest.moc"
