#include "identity/CTabIpConfiguration.h"
#include "model/CDeviceDatabase.h"
#include "tests/support/OwnNetwork.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"

#include <QLineEdit>
#include <QtTest>

namespace {

QString Text(const char* text)
{
    return QString::fromLatin1(text);
}

} // namespace

/// Units that are hosts of their own get another MAC address, and the whole network sees it.
class MacChangeTest : public WarningsFail
{
    Q_OBJECT

private:
    OwnNetwork network;

private slots:
    void initTestCase()
    {
        QVERIFY2(OwnNetwork::IsAllowed(), "to be run in a network namespace of its own");
        QVERIFY2(network.Lay(), qPrintable(network.Error()));
    }

    void theToolReachesTheUnitUnderItsNewMacAddress_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<QString>("firmware");
        QTest::newRow("new firmware") << Text("192.168.77.31") << Text("3.10");
        QTest::newRow("old firmware") << Text("192.168.77.32") << Text("2.50");
    }
    void theToolReachesTheUnitUnderItsNewMacAddress()
    {
        QFETCH(QString, address);
        QFETCH(QString, firmware);
        QVERIFY2(network.AddHost(address, Text("02:4c:7e:00:01:29")), qPrintable(network.Error()));
        SimulatorProcess unit({Text("--interface"), Text("host"), Text("--firmware"), firmware},
            address, network.InLatestHost());
        QVERIFY(unit.IsReady());
        ConnectTo(address);
        QCOMPARE(TheDeviceDatabase()->GetMacAddress(), Text("02:4C:7E:00:01:29"));

        auto* const field = Find<QLineEdit>("txtNewMacAddress");
        QCOMPARE(field->text(), Text("02:4C:7E:00:01:29"));
        field->setText(Text("02:4C:7E:00:01:AA"));
        qobject_cast<CTabIpConfiguration*>(field->parentWidget())->SendMacAddressButtonClicked();
        QCOMPARE(StatusLine(), Text("Mac address changed successfully."));
        QCOMPARE(ConnectionLine(), Text("Connected to ") + address);
        QTRY_VERIFY(OwnNetwork::IpOutput(Text("neigh show ") + address)
                        .contains(Text("02:4c:7e:00:01:aa")));

        Click(Find<QWidget>("btnConnect"));
        QCOMPARE(TheDeviceDatabase()->GetMacAddress(), Text("02:4C:7E:00:01:AA"));
        QCOMPARE(unit.State(Text("mac")), Text("02:4C:7E:00:01:AA"));
    }
};

VX440_WINDOW_TEST_MAIN(MacChangeTest)
#include "MacChangeTest.moc"
