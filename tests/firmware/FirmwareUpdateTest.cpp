// SPDX-License-Identifier: MIT

#include "tests/simulator/FirmwareBlocks.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QToolButton>
#include <QtTest>

using namespace firmwarestream;

namespace {

const QString Sent = "Firmware sent to device successfully!";
const QString TransmissionError = "An error occoured during transmission";

void ClickLoad()
{
    Click(Find<QPushButton>("btnLoadFirmware"));
}

bool CanUpdate()
{
    return Find<QPushButton>("btnUpdateFirmware")->isEnabled();
}

QStringList BlockCommands(const QByteArray& image, int blocks = -1)
{
    QStringList commands;
    for (const QByteArray& block : Blocks(image).mid(0, blocks)) {
        commands.append("CF3 " + QString::fromLatin1(block.toHex().toUpper()));
    }
    return commands;
}

QStringList ChecksumCommand(const QByteArray& image)
{
    return {"CF4 " + QString::fromLatin1(Checksum(image).toHex().toUpper())};
}

} // namespace

/// Transfers and an update over a real connection. TabLoadFirmwareTest has all the other cases, on
/// a scripted clock.
class FirmwareUpdateTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void anImageArrivesByteForByteAndItsUpdateEndsWithTheNewVersion()
    {
        const QByteArray image = Image(300000);
        QFile received(folder.filePath("received"));
        SimulatorProcess unit({"--new-firmware", "3.20", "--save-firmware", received.fileName()});
        QVERIFY(Begin(unit, image));
        ClickLoad();
        QCOMPARE(StatusLine(), Sent);
        QVERIFY(CanUpdate());
        QVERIFY(unit.WaitForLine("CF4 "));
        QCOMPARE(unit.State("firmware"), "3.10");
        QCOMPARE(unit.Commands(), BlockCommands(image) + ChecksumCommand(image));
        QVERIFY(received.open(QIODevice::ReadOnly));
        QCOMPARE(received.readAll(), image);

        unit.Forget();
        Click(Find<QPushButton>("btnUpdateFirmware"));
        QCOMPARE(StatusLine(), "Firmware Updated successfully to v3.20\r.");
        QCOMPARE(ConnectionLine(), "Connected to " + unit.Address());
        QVERIFY(VisibleProgress() == nullptr);
        QVERIFY(!CanUpdate());
        ShowPage("Info");
        QCOMPARE(Find<QLineEdit>("txtVersionNumber")->text(), "3.20\r");
        const QStringList commands = unit.Commands();
        QCOMPARE(commands.size(), 3);
        QVERIFY(commands.at(0).startsWith("CF5 "));
        QCOMPARE(commands.mid(1), (QStringList{"*IDN?", "CF8"}));
    }

    void aTransferThatTheUnitBreaksOffCanBeBegunAnewUntilTheLinkIsLost()
    {
        const QByteArray image = Image(5000);
        SimulatorProcess unit({"--firmware", "2.50", "--fault", "refusing:CF3:3"});
        QVERIFY(Begin(unit, image));
        ClickLoad();
        QCOMPARE(StatusLine(), TransmissionError);
        QVERIFY(!CanUpdate());
        QVERIFY(VisibleProgress() == nullptr);
        QCOMPARE(unit.Commands(), BlockCommands(image, 3));

        unit.Forget();
        ClickLoad();
        QCOMPARE(StatusLine(), Sent);
        QVERIFY(unit.WaitForLine(ChecksumCommand(image).first()));

        // The first block behind a reset meets the broken link when it is sent, or its answer does.
        QVERIFY(unit.Tell("fault resetting:CF3:3"));
        unit.Forget();
        ClickLoad();
        QCOMPARE(StatusLine(), "unknown error");
        QVERIFY(!CanUpdate());
        ClickLoad();
        QCOMPARE(StatusLine(), TransmissionError);
        QCOMPARE(ConnectionLine(), "Not Connected ");
        QVERIFY(!Find<QPushButton>("btnLoadFirmware")->isEnabled());
        QCOMPARE(unit.State("firmware"), "2.50");
        QCOMPARE(unit.Commands(), BlockCommands(image, 3));
    }

private:
    bool Begin(SimulatorProcess& unit, const QByteArray& image)
    {
        QFile file(folder.filePath("image.cyacd"));
        if (!unit.IsReady() || !file.open(QIODevice::WriteOnly) ||
            file.write(image) != image.size()) {
            return false;
        }
        file.close();
        ConnectTo(unit.Address());
        ShowPage("Update FW");
        ClickAndChooseFile(Find<QToolButton>("btnSelectFirmware"), file.fileName());
        unit.Forget();
        return true;
    }

    QTemporaryDir folder;
};

VX440_WINDOW_TEST_MAIN(FirmwareUpdateTest)
#include "FirmwareUpdateTest.moc"
