// SPDX-License-Identifier: MIT

#include "identity/CTabIpConfiguration.h"
#include "model/CDeviceDatabase.h"
#include "tests/support/NetworkTest.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"

#include <QLineEdit>
#include <QtTest>

/// Units that are hosts of their own get another MAC address, and the whole network sees it.
class MacChangeTest : public NetworkTest
{
    Q_OBJECT

private slots:
    void theToolReachesTheUnitUnderItsNewMacAddress_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<QString>("firmware");
        QTest::addColumn<int>("bytes");
        const QString network = "192.168.77.";
        QTest::newRow("new firmware") << network + "31" << QString("3.10") << 6;
        QTest::newRow("old firmware") << network + "32" << QString("2.50") << 127;
    }
    void theToolReachesTheUnitUnderItsNewMacAddress()
    {
        QFETCH(QString, address);
        QFETCH(QString, firmware);
        QFETCH(int, bytes);
        MustAddHost(address, "02:4c:7e:00:01:29");
        SimulatorProcess unit(
            {"--interface", "host", "--firmware", firmware, "--azimuth", "1,2,3,4,5,6,7,8,9,10",
                "--polar", "11,12,13,14,15,16,17,18,19,20"},
            address, network.InLatestHost());
        QVERIFY(unit.IsReady());
        ConnectTo(address);
        QCOMPARE(TheDeviceDatabase()->GetMacAddress(), "02:4C:7E:00:01:29");
        const auto rest = [&unit] {
            QStringList values;
            for (const char* const key :
                {"azimuth", "polar", "part", "serial", "address", "mask"}) {
                values.append(unit.State(key));
            }
            return values;
        };
        const QStringList before = rest();
        unit.Forget();

        auto* const field = Find<QLineEdit>("txtNewMacAddress");
        QCOMPARE(field->text(), "02:4C:7E:00:01:29");
        field->setText("02:4C:7E:00:01:AA");
        qobject_cast<CTabIpConfiguration*>(field->parentWidget())->SendMacAddressButtonClicked();
        QCOMPARE(StatusLine(), "Mac address changed successfully.");
        QCOMPARE(ConnectionLine(), "Connected to " + address);
        QTRY_VERIFY(OwnNetwork::IpOutput("neigh show " + address).contains("02:4c:7e:00:01:aa"));
        QCOMPARE(unit.Commands().size(), 1);
        QCOMPARE(unit.Commands().first().size(), QString("CF2 ").size() + 2 * bytes);

        Click(Find<QWidget>("btnConnect"));
        QCOMPARE(TheDeviceDatabase()->GetMacAddress(), "02:4C:7E:00:01:AA");
        QCOMPARE(unit.State("mac"), "02:4C:7E:00:01:AA");
        QCOMPARE(rest(), before);
    }
};

VX440_WINDOW_TEST_MAIN(MacChangeTest)
#include "MacChangeTest.moc"
