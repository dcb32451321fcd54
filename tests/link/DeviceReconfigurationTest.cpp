// SPDX-License-Identifier: MIT

#include "link/DeviceReconfiguration.h"
#include "link/CDeviceCommunication.h"
#include "model/CDeviceDatabase.h"
#include "tests/support/Notified.h"
#include "tests/support/Warnings.h"
#include "tests/support/scripted/ScriptedLink.h"

#include <QtTest>

namespace {

QString Column(int column)
{
    return TheDeviceDatabase()->index(0, column).data().toString();
}

constexpr int Mac = 4;
constexpr int Version = 6;
constexpr int Part = 7;
constexpr int Serial = 10;

void FillDeviceColumns()
{
    TheDeviceDatabase()->SetMacAddress("02:4C:7E:00:00:01");
    TheDeviceDatabase()->SetPartNumber("old", 0);
    TheDeviceDatabase()->SetSerialNumber("old", 0);
    TheDeviceDatabase()->SetFirmwareVersion("old");
}

} // namespace

class DeviceReconfigurationTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void init()
    {
        WarningsFail::init();
        scripted::Reset();
        TheDeviceDatabase()->ResetData();
        TheDeviceDatabase()->SetIpAddress("127.0.0.1");
        TheDeviceDatabase()->SetSubnetMask("255.0.0.0");
        TheDeviceCommunication()->StartConnection("127.0.0.1");
        TheDeviceCommunication()->wait();
        scripted::ForgetEvents();
    }

    void theIdentityAnswerFillsPartSerialAndVersion()
    {
        // The answer, and then the columns. The version keeps its carriage return.
        const QStringList answers[] = {
            {"ZELMA&KOVINTH,VX440,1234.5678/000123,3.10\r", "1234.5678", "000123", "3.10\r"},
            {"A,B,P/S,2.5\r", "P", "S", "2.5\r"},
            {"A,B,P/S,2.5,x\r", "P", "S", "2.5"},   // more than four fields
            {"A,B,P/S/T,2.5\r", "P", "S", "2.5\r"}, // more than two numbers
            {",,/,\r", "", "", "\r"},
            {"A,B,P/123456789,3.0\r", "P", "123456", "3.0\r"}, // the serial number is cut
            {"A,B,P/S\r", "", "", ""},
            {"A,B,PS,3.0\r", "", "", ""},
            {"hello\r", "", "", ""},
            {"\r", "", "", ""},
        };
        for (const QStringList& answer : answers) {
            FillDeviceColumns();
            scripted::ForgetEvents();
            scripted::WhenSent(
                [&answer](const QByteArray&) { scripted::Deliver(answer.first().toLatin1()); });
            ReadDeviceInfo();
            QCOMPARE((QStringList{Column(Part), Column(Serial), Column(Version)}), answer.mid(1));
            QCOMPARE(scripted::Actions(), QStringList{"send 2A49444E3F0D"});
        }
    }

    void withoutALinkTheFourColumnsAreEmptiedAndNothingIsSent()
    {
        TheDeviceCommunication()->Disconnect();
        scripted::ForgetEvents();
        FillDeviceColumns();
        ReadDeviceInfo();
        QCOMPARE(Column(Mac) + Column(Part) + Column(Serial) + Column(Version), QString());
        QCOMPARE(scripted::Events(), QStringList());
    }

    void theColumnsAreNotifiedInOrder()
    {
        const Notified notified;
        ReadDeviceInfo();
        QCOMPARE(notified.columns, (QVector<int>{Mac, Part, Serial, Version}));
    }

    void theIdentityForTheUnitHasNoVersion()
    {
        QCOMPARE(
            BuildDeviceIdentity("1234.5678", "000123"), "ZELMA&KOVINTH,VX440,1234.5678/000123\r");
    }

    void aChangeOfTheConfigurationWritesTheMotorsBackUnchanged()
    {
        for (int id = 0; id < 12; ++id) {
            TheDeviceDatabase()->SetMotorParameter(0, id, static_cast<ushort>(0x1100 + id));
            TheDeviceDatabase()->SetMotorParameter(1, id, static_cast<ushort>(0x2200 + id));
        }
        QVERIFY(ChangeDeviceConfiguration("S", "P", "02:4C:7E:00:01:29", "Board Data"));
        QCOMPARE(Column(1), "Changing Board Data ...");
        const QString frame = scripted::Actions().value(0).mid(5);
        QCOMPARE(frame.left(8), "4346320D");
        QCOMPARE(frame.mid(8, 80), "1100110111021103110411051106110711081109"
                                   "2200220122022203220422052206220722082209");
        QCOMPARE(frame.mid(88, 28), "024C7E0001297F000001FF000000");
        QVERIFY(frame.endsWith(
            QString::fromLatin1(QByteArray("ZELMA&KOVINTH,VX440,P/S\r").toHex().toUpper()) +
            QString("00").repeated(36)));
    }

    void theMacAddressOfOldFirmwareChangesWithTheStoredIdentity()
    {
        TheDeviceDatabase()->SetPartNumber("P", 0);
        TheDeviceDatabase()->SetSerialNumber("S", 0);
        QString error = "as it was";
        QVERIFY(ChangeMacViaConfiguration("02:00:00:00:00:09", error));
        QCOMPARE(Column(1), "Changing MAC Address ...");
        QCOMPARE(error, "as it was");
        const QString frame = scripted::Actions().value(0).mid(5);
        QCOMPARE(frame.size(), 2 * 131);
        QCOMPARE(frame.mid(88, 12), "020000000009");
        QVERIFY(frame.contains(QString::fromLatin1(QByteArray("P/S\r").toHex().toUpper())));
    }

    void theMacAddressOfNewFirmwareChangesAtOnceAndTakes100Ms()
    {
        QString error = "as it was";
        QVERIFY(ChangeMacDirect("02:00:00:00:00:09", error));
        QCOMPARE(error, "as it was");
        QCOMPARE(scripted::Events(),
            (QStringList{"sleep 10", "send 4346320D020000000009", "sleep 100"}));
    }

    void aMacAddressThatIsTooShortIsNotSentAndTakes100Ms()
    {
        QString error;
        QVERIFY(!ChangeMacDirect("02:00", error));
        QCOMPARE(scripted::Events(), QStringList{"sleep 100"});
    }

    void theAddressThatTheUnitHasIsASuccessWithoutAFrame()
    {
        QString error;
        for (bool changed : {false, true}) {
            const bool before = changed;
            QVERIFY(ChangeIpConfiguration("127.0.0.1", "255.0.0.0", error, &changed));
            QCOMPARE(changed, before);
        }
        QCOMPARE(scripted::Events(), QStringList());
    }

    void anotherAddressOrMaskTravelsWithBoth()
    {
        // Leading zeros are decimal; surplus parts are left out, missing ones are 0.
        const QStringList changes[] = {
            {"192.168.0.129", "255.0.0.0", "send 4346310DC0A80081FF000000"},
            {"127.0.0.1", "255.255.255.0", "send 4346310D7F000001FFFFFF00"},
            {"010.020.030.040", "255.0.0.0", "send 4346310D0A141E28FF000000"},
            {"1.2.3.4.5.6.7.8.9", "255.0.0.0.7", "send 4346310D01020304FF000000"},
            {"1.2.3", "255.240", "send 4346310D01020300FFF00000"},
        };
        for (const QStringList& change : changes) {
            scripted::ForgetEvents();
            QString error = "as it was";
            bool changed = false;
            QVERIFY(ChangeIpConfiguration(change.at(0), change.at(1), error, &changed));
            QVERIFY(changed);
            QCOMPARE(error, "as it was");
            QCOMPARE(scripted::Actions(), QStringList{change.at(2)});
        }
    }

    void whatCannotBeSentIsNoChange()
    {
        scripted::FailSendsFrom(1);
        QString error;
        bool changed = false;
        QVERIFY(!ChangeIpConfiguration("1.2.3.4", "255.0.0.0", error, &changed));
        QVERIFY(!changed);
        QVERIFY(!ChangeDeviceConfiguration({}, {}, {}, {}));
        QVERIFY(!TheDeviceCommunication()->IsConnected());
    }
};

QTEST_GUILESS_MAIN(DeviceReconfigurationTest)
#include "DeviceReconfigurationTest.moc"
