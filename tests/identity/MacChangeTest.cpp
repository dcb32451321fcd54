#include "identity/CTabIpConfiguration.h"
#include "model/CDeviceDatabase.h"
#include "tests/support/OwnNetwork.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"

#include <QLineEdit>
#include <QtTest>

namespace {

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
        QTest::newRow("new firmware") << "192.168.77.31"
                                      << "3.10";
        QTest::newRow("old firmware") << "192.168.77.32"
                                      << "2.50";
    }
    void theToolReachesTheUnitUnderItsNewMacAddress()
    {
        QFETCH(QString, address);
        QFETCH(QString, firmware);
        QVERIFY2(network.AddHost(address, "02:4c:7e:00:01:29"), qPrintable(network.Error()));
        SimulatorProcess unit(
            {"--interface", "host", "--firmware", firmware}, address, network.InLatestHost());
        QVERIFY(unit.IsReady());
        ConnectTo(address);
        QCOMPARE(TheDeviceDatabase()->GetMacAddress(), "02:4C:7E:00:01:29");

        auto* const field = Find<QLineEdit>("txtNewMacAddress");
        QCOMPARE(field->text(), "02:4C:7E:00:01:29");
        field->setText("02:4C:7E:00:01:AA");
        qobject_cast<CTabIpConfiguration*>(field->parentWidget())->SendMacAddressButtonClicked();
        QCOMPARE(StatusLine(), "Mac address changed successfully.");
        QCOMPARE(ConnectionLine(), QString("Connected to ") + address);
        QTRY_VERIFY(
            OwnNetwork::IpOutput(QString("neigh show ") + address).contains("02:4c:7e:00:01:aa"));

        Click(Find<QWidget>("btnConnect"));
        QCOMPARE(TheDeviceDatabase()->GetMacAddress(), "02:4C:7E:00:01:AA");
        QCOMPARE(unit.State("mac"), "02:4C:7E:00:01:AA");
    }
};

VX440_WINDOW_TEST_MAIN(MacChangeTest)
#include "MacChangeTest.moc"
