#include "link/CDeviceCommunication.h"
#include "model/CDeviceDatabase.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"

#include <QLabel>
#include <QLineEdit>
#include <QtTest>

class TabInfoTest : public WarningsFail
{
    Q_OBJECT

private:
    static QLineEdit* Field(const QString& name)
    {
        return Find<QLineEdit>(name.toLatin1().constData());
    }

private slots:
    void init()
    {
        WarningsFail::init();
        ShowPage("Info");
    }

    void onlyTheMacAddressHasAMask()
    {
        QCOMPARE(Field("txtMacAddress")->inputMask().section(';', 0, 0), "HH:HH:HH:HH:HH:HH");
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
        QCOMPARE(Field("txtMacAddress")->text(), "02:4C:7E:0A:0B:0C");
        QCOMPARE(Field("txtPartNumber")->text(), "part");
        QCOMPARE(Field("txtProductIndex")->text(), "index");
        QCOMPARE(Field("txtSerialNumber")->text(), "123456");
        QCOMPARE(Field("txtVersionNumber")->text(), "3.10");
    }

    void aKeyInAFieldChangesNothing()
    {
        TheDeviceDatabase()->SetPartNumber("part", 0);
        Click(Field("txtPartNumber"));
        Type("x");
        QCOMPARE(Field("txtPartNumber")->text(), "part");
    }

    void theNextConnectEmptiesTheFieldsWhenTheUnitIsNotThere()
    {
        TheDeviceDatabase()->SetPartNumber("part", 0);
        TheDeviceDatabase()->SetFirmwareVersion("3.10");
        WhenProgressShows([] { CloseByTitleBar(VisibleProgress()); });
        ConnectTo("127.0.0.1"); // nobody listens there
        QCOMPARE(Field("txtPartNumber")->text(), QString());
        QCOMPARE(Field("txtVersionNumber")->text(), QString());
        QCOMPARE(StatusLine(), "Not connected to any device.");
    }

    void aUnitWithoutAMacAddressInTheTableShowsNone()
    {
        SimulatorProcess unit; // on the loopback interface, which has no neighbours
        QVERIFY(unit.IsReady());
        ConnectTo(unit.Address());
        QCOMPARE(TheDeviceDatabase()->GetMacAddress(), QString());
        QCOMPARE(Field("txtSerialNumber")->text(), "000129");
        TheDeviceCommunication()->Disconnect();
    }
};

VX440_WINDOW_TEST_MAIN(TabInfoTest)
#include "TabInfoTest.moc"
