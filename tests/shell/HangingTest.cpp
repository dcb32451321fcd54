// SPDX-License-Identifier: MIT

#include "link/CDeviceCommunication.h"
#include "model/CDeviceDatabase.h"
#include "tests/support/NetworkTest.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"

#include <QElapsedTimer>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QTabWidget>
#include <QTimer>
#include <QWindow>
#include <QtTest>

namespace {

const QString SilentAddress = "192.168.77.200";

void FillRange(const char* start, const char* end)
{
    ShowPage("Detect Z&K Device");
    Overtype(Find<QLineEdit>("txtStartIpAddress"), start);
    Overtype(Find<QLineEdit>("txtEndIpAddress"), end);
}

} // namespace

/// The window towards hosts that answer, are silent, or are found, in a network of the test's own.
class HangingTest : public NetworkTest
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        NetworkTest::initTestCase();
        QVERIFY2(network.AddSilentHost(SilentAddress), qPrintable(network.Error()));
        MustAddHost("192.168.77.12", "02:4c:7e:0a:00:12");
    }

    // In connect and in a resolution.
    void theProcessEndsWithinASecondWhileAThreadHangs()
    {
        for (const auto& arguments :
            {QStringList{"connect", SilentAddress}, QStringList{"search", "192.168.77.100"}}) {
            QProcess program;
            program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
            program.start(QCoreApplication::applicationDirPath() + "/HangingProgram", arguments);
            QVERIFY(program.waitForReadyRead(60000));
            QCOMPARE(program.readLine().trimmed(), QByteArray("closing"));
            QElapsedTimer sinceClosing;
            sinceClosing.start();
            QVERIFY(program.waitForFinished(60000));
            QVERIFY2(
                sinceClosing.elapsed() < 1000, qPrintable(QString::number(sinceClosing.elapsed())));
            QCOMPARE(program.exitStatus(), QProcess::NormalExit);
            QCOMPARE(program.exitCode(), 0);
        }
    }

    void duringAnAttemptTheWindowTakesNoClicksAndNoClose()
    {
        QString label;
        int labelsOfFirstAttempts = 0;
        WhenProgressShows([&] {
            Click(Find<QPushButton>("btnConnect"));
            ShowPage("Detect Z&K Device");
            CloseByTitleBar(MainWindow());
            QTest::keyClick(VisibleProgress()->windowHandle(), Qt::Key_Escape);
            label = VisibleProgress()->labelText();
            for (const QWidget* const window : QApplication::topLevelWidgets()) {
                labelsOfFirstAttempts += qobject_cast<const QProgressDialog*>(window) != nullptr;
            }
            QTimer::singleShot(0, [] { CloseByTitleBar(VisibleProgress()); });
        });
        ConnectTo(SilentAddress);
        QCOMPARE(label, "Connecting to VX440 (Attempt 1) ...");
        QCOMPARE(labelsOfFirstAttempts, 1);
        QVERIFY(MainWindow()->isVisible());
        QCOMPARE(Find<QTabWidget>("tabWidget")->currentIndex(), 0);
        QCOMPARE(StatusLine(), "Not connected to any device.");
        QCOMPARE(ConnectionLine(), "Not Connected ");
    }

    void aNewAttemptStartsAtOnceWhileTheOldOneHangs()
    {
        WhenProgressShows([] { CloseByTitleBar(VisibleProgress()); });
        ConnectTo(SilentAddress);
        QVERIFY(TheDeviceCommunication()->isRunning());
        SimulatorProcess unit;
        QVERIFY(unit.IsReady());
        int attempts = 0;
        const auto counting = connect(TheDeviceDatabase(), &QAbstractItemModel::dataChanged, this,
            [&attempts](const QModelIndex& cell) {
                const bool isStatus = cell.column() == CDeviceDatabase::ConnectionStatusColumn;
                attempts += isStatus && cell.data().toString().startsWith("Reconnecting");
            });
        ConnectTo(unit.Address());
        disconnect(counting);
        QCOMPARE(ConnectionLine(), "Connected to " + unit.Address());
        QCOMPARE(attempts, 1);
        QVERIFY(!TheDeviceCommunication()->isRunning());
    }

    void anIdentityWithTooFewFieldsLeavesTheMacAddressShown()
    {
        SimulatorProcess unit({"--fault", "wrong:*IDN?"}, "192.168.77.12", network.InLatestHost());
        QVERIFY(unit.IsReady());
        ConnectTo(unit.Address());
        ShowPage("Info");
        QCOMPARE(Find<QLineEdit>("txtMacAddress")->text(), "02:4C:7E:0A:00:12");
        for (const char* const field : {"txtPartNumber", "txtSerialNumber", "txtVersionNumber"}) {
            QCOMPARE(Find<QLineEdit>(field)->text(), QString());
        }
    }

    void duringASearchTheWindowTakesNoClicksAndNoClose()
    {
        FillRange("192.168.77.10", "192.168.77.14");
        QString status;
        WhenProgressShows([&status] {
            Click(Find<QPushButton>("btnConnect"));
            Click(Find<QPushButton>("btnFindDevices"));
            ShowPage("Info");
            CloseByTitleBar(MainWindow());
            QTest::keyClick(VisibleProgress()->windowHandle(), Qt::Key_Escape);
            status = StatusLine();
        });
        Click(Find<QPushButton>("btnFindDevices"));
        QCOMPARE(status, "Detect Z&K Devices: in progress");
        QCOMPARE(StatusLine(), "Detect Z&K Devices: Ready");
        QVERIFY(MainWindow()->isVisible());
        QCOMPARE(ListedDevices(*MainWindow()), QStringList{"192.168.77.12 02:4c:7e:0a:00:12"});
        ShowPage("Info");
    }

    void closingTheSearchsDialogEndsItWithWhatIsListed()
    {
        FillRange("192.168.77.10", "192.168.77.250");
        WhenProgressShows([] { CloseByTitleBar(VisibleProgress()); });
        Click(Find<QPushButton>("btnFindDevices"));
        QCOMPARE(StatusLine(), "Detect Z&K Devices: Ready");
        QCOMPARE(ListedDevices(*MainWindow()), QStringList());
        ShowPage("Info");
    }
};

VX440_WINDOW_TEST_MAIN(HangingTest)
#include "HangingTest.moc"
