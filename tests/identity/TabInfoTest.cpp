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

    void everyFieldStandsBehindItsLabel_data()
    {
        QTest::addColumn<QString>("label");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("field");
        QTest::addColumn<int>("top");
        const auto row = [](const char* name, const char* text, int top) {
            QTest::newRow(text) << QLatin1String("lbl") + name << QString::fromLatin1(text)
                                << QLatin1String("txt") + name << top;
        };
        row("MacAddress", "Mac Address", 20);
        row("PartNumber", "Part number", 50);
        row("ProductIndex", "Product index", 80);
        row("SerialNumber", "Serial number", 110);
        row("VersionNumber", "FW version", 140);
    }
    void everyFieldStandsBehindItsLabel()
    {
        QFETCH(QString, label);
        QFETCH(QString, text);
        QFETCH(QString, field);
        QFETCH(int, top);
        const auto* const caption = Find<QLabel>(label.toLatin1().constData());
        QCOMPARE(caption->text(), text);
        QCOMPARE(caption->geometry(), QRect(20, top, 80, 20));
        QCOMPARE(Field(field)->geometry(), QRect(120, top, 160, 20));
        QVERIFY(Field(field)->isReadOnly());
    }

    void thePageHasItsSizes()
    {
        const QWidget* const page = Field("txtMacAddress")->parentWidget();
        QCOMPARE(page->objectName(), "TabInfo");
        QCOMPARE(page->windowTitle(), "Form");
        QCOMPARE(page->minimumSize(), QSize(850, 310));
        QCOMPARE(page->maximumSize(), QSize(850, 340));
        QCOMPARE(page->baseSize(), QSize(850, 310));
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
