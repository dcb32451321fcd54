// SPDX-License-Identifier: MIT

#include "bench/Flows.h"

#include "bench/Table.h"
#include "tests/support/ProcessMemory.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/WindowTest.h"

#include <QElapsedTimer>
#include <QLineEdit>
#include <QTableWidget>
#include <QTemporaryDir>

#include <functional>

namespace {

// The waits, in milliseconds. The tool drains the input before each command, gives an answer of a
// fixed length one second, and reads a text at one character a millisecond.
constexpr double DrainMs = 10;
constexpr double AnswerMs = 1000;
constexpr double ConnectPollMs = 100;
constexpr double AddressMs = 85;
constexpr double SearchMs = 100 + 200;
// The tool looks for an acknowledgement each millisecond. The first look comes right behind the
// block. Even when the unit answers at once, only the second look finds the answer.
constexpr double AcknowledgementMs = 2;

constexpr int ImageBytes = 300000;
// This is so large that nothing else counts.
constexpr int LargeImageBytes = 50 * 1024 * 1024;
constexpr int BlockBytes = 1200;
constexpr int Blocks = (64 + ImageBytes + BlockBytes - 1) / BlockBytes;

constexpr char NewIdentity[] = "ZELMA&KOVINTH,VX440,4400.1290.02/000129,3.10\r";
constexpr char OldIdentity[] = "ZELMA&KOVINTH,VX440,4400.1290.02/000129,2.50\r";

// The units get these texts, so that the waits do not depend on the simulator's defaults.
constexpr char Options[] =
    "VX440-DCF,0,VX440-ATT,VX440-FIL,0,VX440-A1+A2,VX440-F1,VX440-F2,VX440-F3,"
    "0,0,0,0,0,0,0,0,ProSisTel,YAESU G-550\r";
constexpr char Descriptions[] = "Feed 12 V;0;Straight through,3 dB,6 dB,10 dB,20 dB,40 dB;0;0;"
                                "Stage 1,Stage 2;Filter 1;Filter 2;Filter 3;0;0;0;0;0;0;0;0;"
                                "Azimuth rotator;Polar rotator\r";

QStringList OptionsOfTheUnit()
{
    return {"--options", QString::fromLatin1(Options).trimmed(), "--option-descriptions",
        QString::fromLatin1(Descriptions).trimmed()};
}

double TextWaits(const char* answer)
{
    return DrainMs + static_cast<double>(qstrlen(answer));
}

// A load reads the texts of the info and the options tab, and a configuration block for each of the
// two motor tabs. From firmware 3.0 on it also reads two EEPROM blocks.
double LoadWaits(const char* identity, int blocks)
{
    return ConnectPollMs + TextWaits(identity) + TextWaits(Options) + TextWaits(Descriptions) +
           blocks * (DrainMs + AnswerMs);
}

double MedianMs(
    int repetitions, const std::function<void()>& prepare, const std::function<void()>& flow)
{
    QVector<double> times;
    for (int i = 0; i < repetitions; ++i) {
        prepare();
        QElapsedTimer timer;
        timer.start();
        flow();
        times.append(static_cast<double>(timer.nsecsElapsed()) / 1e6);
    }
    return Median(times);
}

void Require(const QString& seen, const QString& expected)
{
    if (seen != expected) {
        qFatal("seen \"%s\", expected \"%s\"", qPrintable(seen), qPrintable(expected));
    }
}

double ConnectAndLoadMs(const QString& address, const char* status, int repetitions)
{
    const double milliseconds = MedianMs(
        repetitions, [&address] { Overtype(Find<QLineEdit>("txtIpAddress"), address); },
        [] { Click(Find<QWidget>("btnConnect")); });
    Require(StatusLine(), QString::fromLatin1(status));
    return milliseconds;
}

double SendMs(int repetitions)
{
    ShowPage("Azimuth Configuration");
    const double milliseconds = MedianMs(
        repetitions, [] {}, [] { Click(Find<QWidget>("btnSendToDevice")); });
    Require(StatusLine(), "Azimuth Motor configuration sent successfully.");
    return milliseconds;
}

QString MakeImage(const QTemporaryDir& folder, int bytes)
{
    QFile file(folder.filePath(QString("%1.cyacd").arg(bytes)));
    if (!file.open(QIODevice::WriteOnly) || file.write(QByteArray(bytes, 'x')) != bytes) {
        qFatal("no image could be made");
    }
    return file.fileName();
}

void ChooseImage(const QString& image)
{
    ClickAndChooseFile(Find<QWidget>("btnSelectFirmware"), image);
}

void Transfer()
{
    Click(Find<QWidget>("btnLoadFirmware"));
    Require(StatusLine(), "Firmware sent to device successfully!");
}

// The peak memory of a transfer, in kB. The transfer has all the memory that it needs before its
// first block, so the user ends it there.
double TransferKb(const QString& image)
{
    ChooseImage(image);
    WhenProgressShows([] { CloseByTitleBar(VisibleProgress()); });
    if (!ForgetPeakMemory()) {
        qFatal("the peak of the memory cannot be reset");
    }
    const double before = MemoryInUseKb();
    Click(Find<QWidget>("btnLoadFirmware"));
    Require(StatusLine(), "FW send cancelled!");
    return PeakMemoryKb() - before;
}

int LastOctet(const QString& address)
{
    return address.section('.', -1).toInt();
}

} // namespace

void MeasureFlows(Table& table, int repetitions)
{
    const struct
    {
        QString name;
        QStringList options;
        const char* identity;
        int blocks;
        const char* status;
        double target;
    } generations[] = {
        {"new", {}, NewIdentity, 4, "Eeprom data valid", 1.02},
        {"old", {"--firmware", "2.50"}, OldIdentity, 2,
            "Device motor configuration read successfully!", 1.03},
    };
    for (const auto& generation : generations) {
        const SimulatorProcess unit(generation.options + OptionsOfTheUnit());
        table.Add(QString("connect and load, %1 firmware").arg(generation.name), "ms",
            ConnectAndLoadMs(unit.Address(), generation.status, repetitions),
            LoadWaits(generation.identity, generation.blocks), generation.target);
        table.Add(QString("send a motor, %1 firmware").arg(generation.name), "ms",
            SendMs(5 * repetitions), DrainMs, 0);
    }
}

void MeasureSearch(Table& table, const QStringList& range, int units, int repetitions)
{
    const int addresses = LastOctet(range.last()) - LastOctet(range.first()) + 1;
    ShowPage("Detect Z&K Device");
    Overtype(Find<QLineEdit>("txtStartIpAddress"), range.first());
    Overtype(Find<QLineEdit>("txtEndIpAddress"), range.last());
    const double milliseconds = MedianMs(
        repetitions, [] {}, [] { Click(Find<QWidget>("btnFindDevices")); });
    Require(QString::number(Find<QTableWidget>("tblDetectDevices")->rowCount()),
        QString::number(units));
    table.Add(QString("search of %1 addresses").arg(addresses), "ms", milliseconds,
        addresses * AddressMs + SearchMs, 1.02);
}

void MeasureTransfer(Table& table, int repetitions)
{
    const QTemporaryDir folder;
    const SimulatorProcess unit;
    ConnectTo(unit.Address());
    ShowPage("Update FW");
    ChooseImage(MakeImage(folder, ImageBytes));
    const double milliseconds = MedianMs(
        repetitions, [] {}, Transfer);
    const double waits = Blocks * (DrainMs + AcknowledgementMs) + DrainMs;
    table.Add(QString("%1 bytes of firmware").arg(ImageBytes), "ms", milliseconds, waits, 0);
    table.Add(
        "a byte of them above the waits", "us", (milliseconds - waits) * 1000 / ImageBytes, 4, 1);
    table.Add("memory for a large image", "kB", TransferKb(MakeImage(folder, LargeImageBytes)),
        (LargeImageBytes + BlockBytes) / 1024.0, 1.01);
}
