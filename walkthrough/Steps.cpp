// SPDX-License-Identifier: MIT

#include "walkthrough/Steps.h"

#include "model/CDeviceDatabase.h"
#include "rotor/RotorCatalogue.h"
#include "tests/support/WindowTest.h"
#include "walkthrough/Walk.h"

#include <QComboBox>
#include <QHostAddress>
#include <QLabel>
#include <QLineEdit>
#include <QTabWidget>
#include <QTableWidget>
#include <QTemporaryDir>

namespace {

struct Page
{
    const char* title;
    const char* picture;
};

constexpr Page Info{"Info", "info"};
constexpr Page UpdateFirmware{"Update FW", "update-fw"};
constexpr Page IpConfiguration{"IP Configuration", "ip-configuration"};
constexpr Page Azimuth{"Azimuth Configuration", "azimuth"};
constexpr Page Polar{"Pol/Eval Configuration", "polar"};
constexpr Page Options{"Options", "options"};
constexpr Page Detect{"Detect Z&K Device", "detect"};

constexpr const Page* Pages[] = {
    &Info, &UpdateFirmware, &IpConfiguration, &Azimuth, &Polar, &Options, &Detect};

// The words of a motor as they go over the wire, big-endian. Units with old firmware have the first
// ten only.
constexpr int OldWordsInHex = 40;
constexpr char ProSisTelWords[] = "01F4000300960001"
                                  "0002000A00000000"
                                  "07D000140032"
                                  "0001";
// What the simulated units begin with, with the cells that are typed here.
constexpr char TypedAzimuthWords[] = "0141000300960001"
                                     "0002000A00000000"
                                     "07D00019";
constexpr char TypedPolarWords[] = "007B0003003C0001"
                                   "0002000500000000"
                                   "01F400140032"
                                   "0000";

constexpr int FirmwareBytes = 5000;

QWidget* CurrentPage()
{
    return Find<QTabWidget>("tabWidget")->currentWidget();
}

// A table's cell goes by the short name in the brackets.
QString NameOf(const QLineEdit* field)
{
    const QString name = field->accessibleName();
    return name.contains('(') ? ParameterMnemonic(name) : name;
}

// "name value" of each field that is seen.
QString FieldsOf(const QWidget* page)
{
    QStringList texts;
    const auto fields = page->findChildren<QLineEdit*>();
    for (const QLineEdit* const field : fields) {
        if (field->isVisible()) {
            texts.append(NameOf(field) + QLatin1Char(' ') + field->text());
        }
    }
    return texts.join(", ");
}

bool HasRotorList()
{
    return Find<QComboBox>("listRotors")->isVisible();
}

QString WordsForUnit(const char* words)
{
    const QString all = QString::fromLatin1(words);
    return HasRotorList() ? all : all.left(OldWordsInHex);
}

void SendPage(Walk& walk, const QString& motor, const QString& mnemonic, const QString& words)
{
    Click(Find<QWidget>("btnSendToDevice"));
    walk.Expect(
        "clicked Send to Device", StatusLine(), motor + " Motor configuration sent successfully.");
    walk.Expect(
        QString("the unit received %1").arg(mnemonic), walk.Log().AwaitPayload(mnemonic), words);
}

void TypeIntoCell(Walk& walk, const char* row, const QString& value)
{
    auto* const cell = Find<QLineEdit>(row);
    Overtype(cell, value);
    walk.Expect(QString("typed into %1").arg(NameOf(cell)), cell->text(), value);
}

void Connect(Walk& walk)
{
    ConnectTo(walk.Address());
    walk.Expect("typed the address and clicked Connect", ConnectionLine(),
        QString("Connected to ") + walk.Address());
    walk.Say(QString("  status line: ") + StatusLine());
}

void LookAtPages(Walk& walk)
{
    for (const Page* const page : Pages) {
        ShowPage(page->title);
        const auto* const pages = Find<QTabWidget>("tabWidget");
        if (pages->tabText(pages->currentIndex()) == QLatin1String(page->title)) {
            walk.Say(
                QString("  page %1: %2").arg(QLatin1String(page->title), FieldsOf(CurrentPage())));
            walk.TakePicture(QLatin1String(page->picture));
        }
    }
}

void ReadOptions(Walk& walk)
{
    ShowPage(Options.title);
    Click(Find<QWidget>("btnReadOptionsFromDevice"));
    walk.Expect("clicked Read from device", StatusLine(), "Options read from device successfully.");
    walk.TakePicture("options-read");
}

// The reset before it, so that the choice has something to change.
void ChooseRotor(Walk& walk)
{
    ShowPage(Azimuth.title);
    if (!HasRotorList()) {
        return;
    }
    Click(Find<QWidget>("btnReset"));
    walk.Say(QString("  clicked Reset to Default Settings: ") + FieldsOf(CurrentPage()));
    auto* const rotors = Find<QComboBox>("listRotors");
    Click(rotors);
    Type("Pro");
    Press(Qt::Key_Return);
    walk.Expect("chose the rotor", rotors->currentText(), "ProSisTel");
    walk.Say(QString("  fields: ") + FieldsOf(CurrentPage()));
    walk.TakePicture("azimuth-prosistel");
    SendPage(walk, "Azimuth", "HCF", WordsForUnit(ProSisTelWords));
}

// Units with old firmware know no rotors: their parameters are typed.
void EditAzimuth(Walk& walk)
{
    ShowPage(Azimuth.title);
    if (HasRotorList()) {
        return;
    }
    TypeIntoCell(walk, "0", "321");
    TypeIntoCell(walk, "7", "25");
    walk.TakePicture("azimuth-typed");
    SendPage(walk, "Azimuth", "HCF", WordsForUnit(TypedAzimuthWords));
}

void EditPolar(Walk& walk)
{
    ShowPage(Polar.title);
    TypeIntoCell(walk, "0", "123");
    walk.TakePicture("polar-typed");
    SendPage(walk, "Polar", "VCF", WordsForUnit(TypedPolarWords));
}

void ReceivePolar(Walk& walk)
{
    TypeIntoCell(walk, "0", "77");
    Click(Find<QWidget>("btnReceiveFromDevice"));
    walk.Expect(
        "clicked Recv from Device", StatusLine(), "Device motor configuration read successfully!");
    auto* const cell = Find<QLineEdit>("0");
    walk.Expect(QString("the unit kept %1").arg(NameOf(cell)), cell->text(), "123");
    walk.TakePicture("polar-received");
}

// Another value is typed in between, so that the one at the end comes from the file.
void KeepConfiguration(Walk& walk)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("station.txt");
    ShowPage(Azimuth.title);
    auto* const cell = Find<QLineEdit>("0");
    const QString kept = cell->text();
    ClickAndChooseFile(Find<QWidget>("btnWriteToFile"), path);
    walk.Expect(
        "clicked Write to File and typed a name", StatusLine(), QString("Saved to file ") + path);
    TypeIntoCell(walk, "0", "78");
    ClickAndChooseFile(Find<QWidget>("btnReadFromFile"), path);
    walk.Expect("clicked Read from File", StatusLine(), "Read file successfully.");
    walk.Expect(QString("the file kept %1").arg(NameOf(cell)), cell->text(), kept);
    walk.TakePicture("azimuth-from-file");
}

QString MakeFirmwareImage(const QTemporaryDir& folder)
{
    QFile file(folder.filePath("VX440.cyacd"));
    const bool made = file.open(QIODevice::WriteOnly) &&
                      file.write(QByteArray(FirmwareBytes, 'x')) == FirmwareBytes;
    return made ? file.fileName() : QString();
}

// As the unit names the version that it has after an update, with its answer's carriage return.
QString NextVersion(const QString& version)
{
    const QStringList numbers = version.trimmed().split('.');
    return QString("%1.%2\r").arg(numbers.first()).arg(numbers.last().toInt() + 1);
}

void UpdateUnitsFirmware(Walk& walk)
{
    const QTemporaryDir folder;
    const QString version = TheDeviceDatabase()->GetFirmwareVersion();
    ShowPage(UpdateFirmware.title);
    ClickAndChooseFile(Find<QWidget>("btnSelectFirmware"), MakeFirmwareImage(folder));
    Click(Find<QWidget>("btnLoadFirmware"));
    walk.Expect("chose an image and clicked Send FW to Device", StatusLine(),
        "Firmware sent to device successfully!");
    walk.Expect(
        "the unit received the size in CF4", walk.Log().AwaitPayload("CF4").right(8), "000013C8");
    walk.TakePicture("update-fw-sent");
    walk.Say("  clicked Initiate FW Update; the unit has half a minute");
    Click(Find<QWidget>("btnUpdateFirmware"));
    walk.Expect("the update has ended", StatusLine(),
        QString("Firmware Updated successfully to v%1.").arg(NextVersion(version)));
    walk.TakePicture("update-fw-done");
}

QString InHex(const QString& address)
{
    return QString("%1")
        .arg(QHostAddress(address).toIPv4Address(), 8, 16, QLatin1Char('0'))
        .toUpper();
}

void SendMask(Walk& walk, const QString& mask)
{
    Overtype(Find<QWidget>("txtNewSubnetMask"), mask);
    Click(Find<QWidget>("btnSendIpAddress"));
    walk.Expect(QString("typed the mask %1 and clicked Change").arg(mask), StatusLine(),
        "Ip Address & Subset Mask changed successfully.");
    walk.Expect("the unit received CF1", walk.Log().AwaitPayload("CF1"),
        InHex(walk.Address()) + InHex(mask));
}

// There and back: the unit stays where the search is to find it.
void ChangeMask(Walk& walk)
{
    ShowPage(IpConfiguration.title);
    SendMask(walk, "255.255.0.0");
    walk.TakePicture("ip-configuration-changed");
    SendMask(walk, "255.255.255.0");
}

QString AddressesFound()
{
    QStringList addresses;
    const auto* const table = Find<QTableWidget>("tblDetectDevices");
    for (int row = 0; row < table->rowCount(); ++row) {
        addresses.append(table->item(row, 0)->text());
    }
    addresses.sort();
    return addresses.join(", ");
}

} // namespace

const QVector<Step>& UnitSteps()
{
    static const QVector<Step> steps{Connect, LookAtPages, ReadOptions, ChooseRotor, EditAzimuth,
        EditPolar, ReceivePolar, KeepConfiguration, ChangeMask, UpdateUnitsFirmware};
    return steps;
}

void SearchUnits(Walk& walk)
{
    const QStringList& range = walk.Settings().searchRange;
    QStringList units = walk.Settings().addresses;
    units.sort();
    walk.Say(QString("Search %1 to %2").arg(range.first(), range.last()));
    ShowPage(Detect.title);
    Overtype(Find<QWidget>("txtStartIpAddress"), range.first());
    Overtype(Find<QWidget>("txtEndIpAddress"), range.last());
    Click(Find<QWidget>("btnFindDevices"));
    walk.Expect("clicked Find Z&K Devices", StatusLine(), "Detect Z&K Devices: Ready");
    walk.Expect("found", AddressesFound(), units.join(", "));
    walk.TakePicture("search");
}
