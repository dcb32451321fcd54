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

void ChooseFile(const QString& path)
{
    ShowPage("Update FW");
    ClickAndChooseFile(Find<QToolButton>("btnSelectFirmware"), path);
}

void ClickLoad()
{
    Click(Find<QPushButton>("btnLoadFirmware"));
}

void ClickUpdate()
{
    Click(Find<QPushButton>("btnUpdateFirmware"));
}

bool CanUpdate()
{
    return Find<QPushButton>("btnUpdateFirmware")->isEnabled();
}

QStringList CommandsFor(const QByteArray& image, int blocks)
{
    QStringList commands;
    for (const QByteArray& block : Blocks(image).mid(0, blocks)) {
        commands.append(QString("CF3 ") + QString::fromLatin1(block.toHex().toUpper()));
    }
    return commands;
}

QString ChecksumCommand(const QByteArray& image)
{
    return QString("CF4 ") + QString::fromLatin1(Checksum(image).toHex().toUpper());
}

QByteArray Content(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

} // namespace

/// Transfers and updates over a real connection.
class FirmwareUpdateTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void anImageArrivesByteForByte_data()
    {
        QTest::addColumn<int>("size");
        for (const int size : {0, 1, 1135, 1136, 1137, 1200, 2336, 300000}) {
            QTest::addRow("%d bytes", size) << size;
        }
    }
    void anImageArrivesByteForByte()
    {
        QFETCH(int, size);
        const QByteArray image = Image(size);
        const QString received = folder.filePath("received");
        QFile::remove(received);
        SimulatorProcess unit({"--save-firmware", received});
        QVERIFY(Begin(unit, image));
        ClickLoad();
        QCOMPARE(StatusLine(), Sent);
        QVERIFY(CanUpdate());
        QVERIFY(unit.WaitForLine("CF4 "));
        QCOMPARE(unit.State("firmware"), "3.10");
        QCOMPARE(unit.Commands(), CommandsFor(image, -1) + QStringList{ChecksumCommand(image)});
        QCOMPARE(Content(received), image);
    }

    void oldFirmwareTakesAnImageToo()
    {
        const QByteArray image = Image(3000);
        SimulatorProcess unit({"--firmware", "2.50"});
        QVERIFY(Begin(unit, image));
        ClickLoad();
        QCOMPARE(StatusLine(), Sent);
        QVERIFY(unit.WaitForLine(ChecksumCommand(image)));
    }

    void aFaultOfTheUnitEndsTheTransfer_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<int>("block");
        QTest::addColumn<QString>("text");
        const QString refused = "An error occoured during transmission";
        const QString unknown = "unknown error";
        QTest::newRow("first block refused") << "refusing" << 1 << refused;
        QTest::newRow("a middle block refused") << "refusing" << 3 << refused;
        QTest::newRow("the last block refused") << "refusing" << 5 << refused;
        QTest::newRow("garbage for the first block") << "garbage" << 1 << unknown;
        QTest::newRow("garbage for the last block") << "garbage" << 5 << unknown;
        QTest::newRow("a silent unit") << "silent" << 3 << unknown;
    }
    void aFaultOfTheUnitEndsTheTransfer()
    {
        QFETCH(QString, fault);
        QFETCH(int, block);
        const QByteArray image = Image(5000);
        SimulatorProcess unit({"--fault", QString("%1:CF3:%2").arg(fault).arg(block)});
        QVERIFY(Begin(unit, image));
        ClickLoad();
        QTEST(StatusLine(), "text");
        QVERIFY(!CanUpdate());
        QVERIFY(VisibleProgress() == nullptr);
        QCOMPARE(unit.State("firmware"), "3.10");
        QCOMPARE(unit.Commands(), CommandsFor(image, block));
    }

    // The first block behind a reset meets the broken link when it is sent, or its answer does.
    void aResetInTheMiddleSendsNothingMore()
    {
        const QByteArray image = Image(5000);
        SimulatorProcess unit({"--fault", "resetting:CF3:3"});
        QVERIFY(Begin(unit, image));
        ClickLoad();
        QCOMPARE(StatusLine(), "unknown error");
        QVERIFY(!CanUpdate());
        QCOMPARE(unit.Commands(), CommandsFor(image, 3));
        ClickLoad();
        QCOMPARE(StatusLine(), "An error occoured during transmission");
        QCOMPARE(ConnectionLine(), "Not Connected ");
        QVERIFY(!Find<QPushButton>("btnLoadFirmware")->isEnabled());
        QCOMPARE(unit.Commands(), CommandsFor(image, 3));
    }

    void aBrokenOffTransferCanBeBegunAnew()
    {
        const QByteArray image = Image(5000);
        SimulatorProcess unit({"--fault", "refusing:CF3:3"});
        QVERIFY(Begin(unit, image));
        ClickLoad();
        QVERIFY(!CanUpdate());
        ClickLoad();
        QCOMPARE(StatusLine(), Sent);
        QVERIFY(unit.WaitForLine(ChecksumCommand(image)));
    }

    void aFileRemovedBehindTheChoiceSendsNothing()
    {
        SimulatorProcess unit;
        QVERIFY(Begin(unit, Image(100)));
        ClickLoad();
        QVERIFY(unit.WaitForLine("CF4 "));
        unit.Forget();
        QVERIFY(QFile::remove(folder.filePath("image.cyacd")));
        ClickLoad();
        QCOMPARE(StatusLine(), QString());
        QCOMPARE(unit.State("firmware"), "3.10");
        QCOMPARE(unit.Commands(), QStringList());
    }

    void aWholeUpdateEndsWithTheNewVersion()
    {
        SimulatorProcess unit({"--new-firmware", "3.20"});
        QVERIFY(Begin(unit, Image(3000)));
        ClickLoad();
        QVERIFY(unit.WaitForLine("CF4 "));
        unit.Forget();
        ClickUpdate();
        QCOMPARE(StatusLine(), "Firmware Updated successfully to v3.20\r.");
        QCOMPARE(ConnectionLine(), QString("Connected to ") + unit.Address());
        QVERIFY(VisibleProgress() == nullptr);
        QVERIFY(!CanUpdate());
        ShowPage("Info");
        QCOMPARE(Find<QLineEdit>("txtVersionNumber")->text(), "3.20\r");
        const QStringList commands = unit.Commands();
        QCOMPARE(commands.size(), 3);
        QVERIFY(commands.at(0).startsWith("CF5 "));
        QCOMPARE(commands.mid(1), (QStringList{"*IDN?", "CF8"}));
    }

    // The user gives up waiting for it.
    void aUnitThatStaysAwayFailsTheUpdateAndLeavesNoDialog()
    {
        SimulatorProcess unit({"--away-ms", "3600000"});
        QVERIFY(Begin(unit, Image(3000)));
        ClickLoad();
        WhenAttempted([](QProgressDialog& attempt) { CloseByTitleBar(&attempt); });
        ClickUpdate();
        QCOMPARE(StatusLine(), "Firmware Update Failed!");
        QCOMPARE(ConnectionLine(), "Not Connected ");
        QVERIFY(VisibleProgress() == nullptr);
        QVERIFY(!CanUpdate());
        QCOMPARE(unit.Commands().filter("CF8"), QStringList());
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
        ChooseFile(file.fileName());
        unit.Forget();
        return true;
    }

    // The dialog of a connection attempt comes up over the update's own.
    static void WhenAttempted(const std::function<void(QProgressDialog&)>& action)
    {
        WhenShown<QProgressDialog>(action, [](const QProgressDialog& dialog) {
            return dialog.labelText().startsWith("Connecting");
        });
    }

    QTemporaryDir folder;
};

VX440_WINDOW_TEST_MAIN(FirmwareUpdateTest)
#include "FirmwareUpdateTest.moc"
