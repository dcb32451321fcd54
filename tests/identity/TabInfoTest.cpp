// SPDX-License-Identifier: MIT

#include "link/CDeviceCommunication.h"
#include "model/CDeviceDatabase.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"

#include <QLineEdit>
#include <QtTest>

class TabInfoTest : public WarningsFail
{
    Q_OBJECT

private:
    static QString TextOf(const char* field) { return Find<QLineEdit>(field)->text(); }

private slots:
    void init()
    {
        WarningsFail::init();
        ShowPage("Info");
    }

    void onlyTheMacAddressHasAMask()
    {
        QCOMPARE(
            Find<QLineEdit>("txtMacAddress")->inputMask().section(';', 0, 0), "HH:HH:HH:HH:HH:HH");
        for (const char* const field :
            {"txtPartNumber", "txtProductIndex", "txtSerialNumber", "txtVersionNumber"}) {
            QCOMPARE(Find<QLineEdit>(field)->inputMask(), QString());
        }
    }

    void everyFieldFollowsItsColumn()
    {
        CDeviceDatabase* const database = TheDeviceDatabase();
        database->SetMacAddress("02:4c:7e:0a:0b:0c");
        database->SetPartNumber("part", 0);
        database->SetProductIndex("index", 0);
        database->SetSerialNumber("123456789", 0);
        database->SetFirmwareVersion("3.10");
        database->SetPartNumber("other", 1);
        database->SetSerialNumber("other", 1);
        QCOMPARE(TextOf("txtMacAddress"), "02:4C:7E:0A:0B:0C");
        QCOMPARE(TextOf("txtPartNumber"), "part");
        QCOMPARE(TextOf("txtProductIndex"), "index");
        QCOMPARE(TextOf("txtSerialNumber"), "123456");
        QCOMPARE(TextOf("txtVersionNumber"), "3.10");
    }

    void theNextConnectEmptiesTheFieldsWhenTheUnitIsNotThere()
    {
        TheDeviceDatabase()->SetPartNumber("part", 0);
        TheDeviceDatabase()->SetProductIndex("index", 0);
        TheDeviceDatabase()->SetFirmwareVersion("3.10");
        WhenProgressShows([] { CloseByTitleBar(VisibleProgress()); });
        ConnectTo("127.0.0.1"); // nobody listens there
        QCOMPARE(TextOf("txtPartNumber"), QString());
        QCOMPARE(TextOf("txtProductIndex"), QString());
        QCOMPARE(TextOf("txtVersionNumber"), QString());
        QCOMPARE(StatusLine(), "Not connected to any device.");
    }

    void aUnitWithoutAMacAddressInTheTableShowsNone()
    {
        SimulatorProcess unit; // on the loopback interface, which has no neighbours
        QVERIFY(unit.IsReady());
        ConnectTo(unit.Address());
        QCOMPARE(TheDeviceDatabase()->GetMacAddress(), QString());
        QCOMPARE(TextOf("txtSerialNumber"), "000129");
        TheDeviceCommunication()->Disconnect();
    }
};

VX440_WINDOW_TEST_MAIN(TabInfoTest)
#include "TabInfoTest.moc"
