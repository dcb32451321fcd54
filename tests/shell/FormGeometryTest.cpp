// SPDX-License-Identifier: MIT

#include "discovery/CTabDetectZKDevices.h"
#include "firmware/CTabLoadFirmware.h"
#include "hardware/CTabBoardDataNew.h"
#include "identity/CTabInfo.h"
#include "identity/CTabIpConfiguration.h"
#include "options/CTabOptions.h"
#include "rotor/CTabMotorConfiguration.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"

#include <QComboBox>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QToolButton>
#include <QXmlStreamReader>
#include <QtTest>

#include <memory>

namespace {

/// A widget as its form lists it. Its name stands behind the name of the widget that holds it,
/// unless that is the form itself.
struct Record
{
    const char* name;
    const char* type;
    QRect place; ///< empty where a layout decides
    const char* text = "";
    const char* look = ""; ///< in the words of LookOf()
    const char* told = ""; ///< by a screen reader, in place of the text
};

struct Form
{
    const char* name;
    const char* title;
    QWidget* (*make)(); ///< none of the program's window, which is there
    QSize size, minimum, base, maximum;
    QVector<Record> records;
    QStringList walk; ///< of the Tab key, were all widgets enabled and in sight
};

template<class Tab>
QWidget* New()
{
    return new Tab(nullptr);
}

template<int motor>
QWidget* NewMotorTab()
{
    return new CTabMotorConfiguration(nullptr, motor);
}

const QVector<Record> MainDialogRecords{
    {"layoutWidget", "QWidget", {6, 6, 811, 491}},
    {"layoutWidget/groupBox", "QGroupBox", {}, "Connect"},
    {"groupBox/btnConnect", "QPushButton", {230, 20, 100, 22}, "Connect"},
    {"groupBox/txtIpAddress", "QLineEdit", {110, 20, 110, 20}, "192.168.0.129", "", "Device IP"},
    {"groupBox/label_2", "QLabel", {30, 20, 80, 20}, "Device IP"},
    {"layoutWidget/tabWidget", "QTabWidget", {}, "", "", "Pages"},
    {"layoutWidget/lblConnectionStatus", "QLabel", {}, "Not Connected "},
    {"layoutWidget/lblAppStatus", "CElidedLabel", {}},
};

const QVector<Record> InfoRecords{
    {"lblMacAddress", "QLabel", {20, 20, 80, 20}, "Mac Address"},
    {"txtMacAddress", "QLineEdit", {120, 20, 160, 20}, ":::::", "read-only", "Mac Address"},
    {"lblPartNumber", "QLabel", {20, 50, 80, 20}, "Part number"},
    {"txtPartNumber", "QLineEdit", {120, 50, 160, 20}, "", "read-only", "Part number"},
    {"lblProductIndex", "QLabel", {20, 80, 80, 20}, "Product index"},
    {"txtProductIndex", "QLineEdit", {120, 80, 160, 20}, "", "read-only", "Product index"},
    {"lblSerialNumber", "QLabel", {20, 110, 80, 20}, "Serial number"},
    {"txtSerialNumber", "QLineEdit", {120, 110, 160, 20}, "", "read-only", "Serial number"},
    {"lblVersionNumber", "QLabel", {20, 140, 80, 20}, "FW version"},
    {"txtVersionNumber", "QLineEdit", {120, 140, 160, 20}, "", "read-only", "FW version"},
};

const QVector<Record> LoadFirmwareRecords{
    {"lblFirmwareFile", "QLabel", {20, 20, 80, 20}, "Firmware File"},
    {"txtFirmwareFile", "QLineEdit", {120, 20, 160, 20}, "", "read-only", "Firmware File"},
    {"btnSelectFirmware", "QToolButton", {290, 20, 30, 20}, "...", "", "Select Firmware File"},
    {"btnLoadFirmware", "QPushButton", {330, 20, 100, 23}, "Send FW to Device", "disabled"},
    {"btnUpdateFirmware", "QPushButton", {330, 50, 100, 23}, "Initiate FW Update", "disabled"},
    {"lblCompatibility", "QLabel", {30, 290, 241, 20},
        "This tab is not compatible with this device!", "bold italic hidden"},
};

const QVector<Record> IpConfigurationRecords{
    {"lblNewIpAddress", "QLabel", {20, 20, 80, 20}, "New IP Address"},
    {"txtNewIpAddress", "QLineEdit", {120, 20, 160, 20}, "...", "", "New IP Address"},
    {"lblSubnetMask", "QLabel", {20, 50, 80, 20}, "Subnet Mask"},
    {"txtNewSubnetMask", "QLineEdit", {120, 50, 160, 20}, "...", "", "Subnet Mask"},
    {"btnSendIpAddress", "QPushButton", {290, 22, 111, 51}, "Change\nIp Address & \nSubnetMask",
        "disabled", "Change Ip Address & SubnetMask"},
    {"lblMacAddress", "QLabel", {20, 80, 80, 20}, "MAC Address", "hidden"},
    {"txtNewMacAddress", "QLineEdit", {120, 80, 160, 20}, ":::::", "hidden", "MAC Address"},
    {"btnSendMacAddress", "QPushButton", {290, 80, 111, 23}, "Change Mac Address",
        "disabled hidden"},
};

const QVector<Record> MotorRecords{
    {"tblMotorConfiguration", "QTableWidget", {20, 20, 400, 281}, "", "", "Motor parameters"},
    {"btnReadFromFile", "QPushButton", {440, 20, 100, 23}, "Read from File"},
    {"btnWriteToFile", "QPushButton", {440, 50, 100, 23}, "Write to File"},
    {"btnReceiveFromDevice", "QPushButton", {440, 90, 100, 23}, "Recv from Device", "disabled"},
    {"btnSendToDevice", "QPushButton", {440, 120, 100, 23}, "Send to Device", "disabled"},
    {"lblRotorName", "QLabel", {440, 160, 80, 20}, "Rotor", "bold"},
    {"lblRotorType", "QLabel", {630, 160, 80, 20}, "Rotor Type", "bold"},
    {"txtRotorType", "QLineEdit", {630, 180, 160, 20}, "Pulse", "read-only", "Rotor Type"},
    {"btnReset", "QPushButton", {630, 20, 100, 41}, "Reset to \nDefault Settings", "",
        "Reset to Default Settings"},
    {"listRotors", "QComboBox", {440, 180, 161, 22}, "", "", "Rotor"},
};

const QVector<Record> BoardDataNewRecords{
    {"groupBox", "QGroupBox", {20, 10, 390, 185}, "Device", "heading"},
    {"groupBox/txtDevicePartNumber", "QLineEdit", {170, 25, 190, 20}, "", "read-only",
        "Device part number"},
    {"groupBox/lblDeviceTestInstructionIndex", "QLabel", {20, 125, 140, 20},
        "Test instruction index"},
    {"groupBox/txtDeviceProductionDate", "QLineEdit", {170, 100, 190, 20}, "", "read-only",
        "Device production date"},
    {"groupBox/txtDeviceTestInstructionIndex", "QLineEdit", {170, 125, 190, 20}, "", "read-only",
        "Device test instruction index"},
    {"groupBox/txtDeviceSerialNumber", "QLineEdit", {170, 75, 190, 20}, "", "read-only",
        "Device serial number"},
    {"groupBox/txtDeviceName", "QLineEdit", {170, 150, 190, 20}, "", "read-only", "Device name"},
    {"groupBox/lblDeviceProductIndex", "QLabel", {20, 50, 140, 20}, "Product index"},
    {"groupBox/lblDevicePartNumber", "QLabel", {20, 25, 140, 20}, "Part number"},
    {"groupBox/txtDeviceProductIndex", "QLineEdit", {170, 50, 190, 20}, "", "read-only",
        "Device product index"},
    {"groupBox/lblDeviceSerialNumber", "QLabel", {20, 75, 140, 20}, "Serial number"},
    {"groupBox/lblDeviceName", "QLabel", {20, 150, 140, 20}, "Name"},
    {"groupBox/lblDeviceProductionDate", "QLabel", {20, 100, 140, 20}, "Production  date"},
    {"boxBoard", "QGroupBox", {430, 10, 390, 185}, "Board", "heading"},
    {"boxBoard/lblBoardProductionDate", "QLabel", {20, 100, 140, 20}, "Production  date"},
    {"boxBoard/lblBoardName", "QLabel", {20, 150, 140, 20}, "Name"},
    {"boxBoard/lblBoardTestInstructionIndex", "QLabel", {20, 125, 140, 20},
        "Test instruction index"},
    {"boxBoard/txtBoardPartNumber", "QLineEdit", {170, 25, 190, 20}, "", "read-only",
        "Board part number"},
    {"boxBoard/lblBoardPartNumber", "QLabel", {20, 25, 140, 20}, "Part number"},
    {"boxBoard/lblBoardProductIndex", "QLabel", {20, 50, 140, 20}, "Product index"},
    {"boxBoard/lblBoardSerialNumber", "QLabel", {20, 75, 140, 20}, "Serial number"},
    {"boxBoard/txtBoardSerialNumber", "QLineEdit", {170, 75, 190, 20}, "", "read-only",
        "Board serial number"},
    {"boxBoard/txtBoardTestInstructionIndex", "QLineEdit", {170, 125, 190, 20}, "", "read-only",
        "Board test instruction index"},
    {"boxBoard/txtBoardProductionDate", "QLineEdit", {170, 100, 190, 20}, "", "read-only",
        "Board production date"},
    {"boxBoard/txtBoardName", "QLineEdit", {170, 150, 190, 20}, "", "read-only", "Board name"},
    {"boxBoard/txtBoardProductIndex", "QLineEdit", {170, 50, 190, 20}, "", "read-only",
        "Board product index"},
    {"widOldFirmwareItems", "QWidget", {20, 200, 390, 35}},
    {"widOldFirmwareItems/btnWriteOld", "QPushButton", {170, 5, 130, 23}, "Write to Device",
        "disabled"},
    {"widNewFirmwareItems", "QWidget", {20, 236, 810, 70}},
    {"widNewFirmwareItems/btnReadAll", "QPushButton", {680, 10, 120, 23}, "Read All", "disabled"},
    {"widNewFirmwareItems/btnDeviceDataFileSelector", "QToolButton", {500, 10, 30, 22}, "...", "",
        "Select device data file"},
    {"widNewFirmwareItems/txtBoardDataFile", "QLineEdit", {130, 41, 360, 20}, "", "read-only",
        "Board data file"},
    {"widNewFirmwareItems/btnWriteDeviceData", "QPushButton", {540, 10, 130, 23},
        "Write Device Data", "disabled"},
    {"widNewFirmwareItems/btnBoardDataFileSelector", "QToolButton", {500, 40, 30, 22}, "...", "",
        "Select board data file"},
    {"widNewFirmwareItems/lblBoardDataFile", "QLabel", {20, 41, 105, 20}, "Board Data file"},
    {"widNewFirmwareItems/lblDeviceDataFile", "QLabel", {20, 11, 105, 20}, "Device Data file"},
    {"widNewFirmwareItems/txtDeviceDataFile", "QLineEdit", {130, 11, 360, 20}, "", "read-only",
        "Device data file"},
    {"widNewFirmwareItems/btnWriteBoardData", "QPushButton", {540, 40, 130, 23}, "Write Board Data",
        "disabled"},
};

const QVector<Record> OptionsRecords{
    {"boxDcf", "QGroupBox", {30, 30, 131, 180}, "VX440-DCF", "centred heading"},
    {"boxAtt", "QGroupBox", {170, 30, 131, 180}, "VX440-ATT", "centred heading"},
    {"boxFilter1", "QGroupBox", {310, 30, 131, 180}, "VX440-FIL 1", "centred heading"},
    {"boxFilter2", "QGroupBox", {450, 30, 131, 180}, "VX440-FIL 2", "centred heading"},
    {"boxAmp", "QGroupBox", {590, 30, 131, 180}, "VX440-AMP", "centred heading"},
    {"widNewFirmwareItems", "QWidget", {530, 230, 201, 91}},
    {"widNewFirmwareItems/btnSendDeviceOptions", "QPushButton", {90, 30, 100, 23}, "Send to device",
        "disabled hidden"},
    {"widNewFirmwareItems/btnReadOptionsFromDevice", "QPushButton", {90, 0, 100, 23},
        "Read from device", "disabled"},
    {"widNewFirmwareItems/btnReadDeviceOptions", "QPushButton", {90, 60, 100, 23},
        "Read Options File", "hidden"},
    {"lblCompatibility", "QLabel", {30, 300, 241, 20},
        "This tab is not compatible with this device!", "bold italic hidden"},
    {"boxOptionAzimuthRotator", "QGroupBox", {100, 230, 131, 61}, "Azimuth rotator",
        "centred heading"},
    {"boxOptionPolarRotator", "QGroupBox", {250, 230, 131, 61}, "Pol/Eval rotator",
        "centred heading"},
};

const QVector<Record> DetectZKDevicesRecords{
    {"lblStartIpAddress", "QLabel", {20, 20, 80, 20}, "Start IP Address"},
    {"txtStartIpAddress", "QLineEdit", {120, 20, 160, 20}, "192.168.1.1", "", "Start IP Address"},
    {"lblEndIpAddress", "QLabel", {320, 20, 80, 20}, "End IP Address"},
    {"txtEndIpAddress", "QLineEdit", {420, 20, 160, 20}, "192.168.1.255", "", "End IP Address"},
    {"btnFindDevices", "QPushButton", {600, 20, 100, 23}, "Find Z&K Devices", "",
        "Find Z&K Devices"},
    {"tblDetectDevices", "QTableWidget", {20, 50, 561, 192}, "", "", "Devices found"},
};

const QStringList MotorWalk{"btnReadFromFile", "btnWriteToFile", "btnReceiveFromDevice",
    "btnSendToDevice", "btnReset", "listRotors", "txtRotorType"};

const Form Forms[] = {
    {"MainDialog", "Z&K VX440 Access Application", nullptr, {820, 500}, {820, 500}, {0, 0},
        {820, 500}, MainDialogRecords, {"txtIpAddress", "btnConnect", "tabWidget"}},
    {"TabInfo", "Form", New<CTabInfo>, {850, 310}, {850, 310}, {850, 310}, {850, 340}, InfoRecords,
        {"txtMacAddress", "txtPartNumber", "txtProductIndex", "txtSerialNumber",
            "txtVersionNumber"}},
    {"TabLoadFirmware", "Form", New<CTabLoadFirmware>, {850, 340}, {850, 310}, {850, 310},
        {850, 340}, LoadFirmwareRecords,
        {"txtFirmwareFile", "btnSelectFirmware", "btnLoadFirmware", "btnUpdateFirmware"}},
    {"TabIpConfiguration", "Form", New<CTabIpConfiguration>, {850, 360}, {850, 360}, {850, 360},
        {850, 360}, IpConfigurationRecords,
        {"txtNewIpAddress", "txtNewSubnetMask", "btnSendIpAddress", "txtNewMacAddress",
            "btnSendMacAddress"}},
    {"TabMotorConfiguration", "Form", NewMotorTab<0>, {850, 340}, {850, 310}, {850, 310},
        {850, 340}, MotorRecords, MotorWalk},
    {"TabMotorConfiguration", "Form", NewMotorTab<1>, {850, 340}, {850, 310}, {850, 310},
        {850, 340}, MotorRecords, MotorWalk},
    {"TabBoardDataNew", "Form", New<CTabBoardDataNew>, {850, 310}, {850, 310}, {850, 310},
        {850, 340}, BoardDataNewRecords,
        {"txtDevicePartNumber", "txtDeviceProductIndex", "txtDeviceSerialNumber",
            "txtDeviceProductionDate", "txtDeviceTestInstructionIndex", "txtDeviceName",
            "txtBoardPartNumber", "txtBoardProductIndex", "txtBoardSerialNumber",
            "txtBoardProductionDate", "txtBoardTestInstructionIndex", "txtBoardName", "btnWriteOld",
            "txtDeviceDataFile", "btnDeviceDataFileSelector", "btnWriteDeviceData", "btnReadAll",
            "txtBoardDataFile", "btnBoardDataFileSelector", "btnWriteBoardData"}},
    {"TabOptions", "Form", New<CTabOptions>, {850, 340}, {850, 310}, {0, 0}, {850, 340},
        OptionsRecords,
        {"btnReadOptionsFromDevice", "btnSendDeviceOptions", "btnReadDeviceOptions"}},
    {"TabDetectZKDevices", "", New<CTabDetectZKDevices>, {850, 310}, {850, 310}, {850, 310},
        {850, 340}, DetectZKDevicesRecords,
        {"txtStartIpAddress", "txtEndIpAddress", "btnFindDevices", "tblDetectDevices"}},
};

QStringList FontOf(const QLabel& label)
{
    QStringList words;
    if (label.font().weight() == QFont::Bold) {
        words.append("bold");
    }
    if (label.font().italic()) {
        words.append("italic");
    }
    return words;
}

QStringList TitleOf(const QGroupBox& box)
{
    const bool isHeading =
        box.styleSheet() == "QGroupBox\n{\n    font-size: 12px;\n    font-weight: bold;\n}" &&
        box.font().pixelSize() == 12 && box.font().bold();
    if (!isHeading) {
        return {};
    }
    return box.alignment().testFlag(Qt::AlignHCenter) ? QStringList{"centred", "heading"}
                                                      : QStringList{"heading"};
}

// In the words of the table.
QString LookOf(QWidget& widget)
{
    widget.ensurePolished();
    QStringList words;
    if (widget.property("readOnly").toBool()) {
        words.append("read-only");
    }
    if (const auto* const label = qobject_cast<const QLabel*>(&widget)) {
        words.append(FontOf(*label));
    }
    if (const auto* const box = qobject_cast<const QGroupBox*>(&widget)) {
        words.append(TitleOf(*box));
    }
    if (!widget.isEnabledTo(widget.parentWidget())) {
        words.append("disabled");
    }
    if (widget.isHidden()) {
        words.append("hidden");
    }
    return words.join(' ');
}

// The text of a widget as it stands in the file of its form.
QString TextInForm(const QString& form, const QString& widget)
{
    QFile file(SOURCE_FOLDER "/" + form);
    file.open(QIODevice::ReadOnly);
    QXmlStreamReader reader(&file);
    QString inWidget;
    QString inProperty;
    while (!reader.atEnd()) {
        reader.readNext();
        if (!reader.isStartElement()) {
            continue;
        }
        const QString name = reader.attributes().value("name").toString();
        if (reader.name() == "widget") {
            inWidget = name;
        } else if (reader.name() == "property") {
            inProperty = name;
        } else if (reader.name() == "string" && inWidget == widget && inProperty == "text") {
            return reader.readElementText();
        }
    }
    return {};
}

// Those among the named widgets that the Tab key may come to, in its order.
QStringList WalkOf(const QWidget& form, const QStringList& names)
{
    QStringList walk;
    for (const QWidget* at = form.nextInFocusChain(); at != &form; at = at->nextInFocusChain()) {
        if (names.contains(at->objectName()) && (at->focusPolicy() & Qt::TabFocus) != 0) {
            walk.append(at->objectName());
        }
    }
    return walk;
}

template<class Widget>
void VerifyNamed(const QWidget& form)
{
    const auto found = form.findChildren<Widget*>();
    for (const Widget* const widget : found) {
        QVERIFY2(!widget->accessibleName().isEmpty() || widget->objectName().startsWith("qt_"),
            qPrintable(widget->objectName()));
    }
}

} // namespace

/// What every form holds, and where. The texts are those that a fresh form shows.
class FormGeometryTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void aFormHasItsWidgetsInTheirPlacesAndOrder_data()
    {
        QTest::addColumn<int>("index");
        for (int index = 0; index < int(std::size(Forms)); ++index) {
            QTest::addRow("%d %s", index, Forms[index].name) << index;
        }
    }
    void aFormHasItsWidgetsInTheirPlacesAndOrder()
    {
        QFETCH(int, index);
        const Form& expected = Forms[index];
        const std::unique_ptr<QWidget> made(expected.make != nullptr ? expected.make() : nullptr);
        const QWidget& form = made != nullptr ? *made : *MainWindow();
        QCOMPARE(form.objectName(), expected.name);
        QCOMPARE(form.windowTitle(), expected.title);
        QCOMPARE(form.size(), expected.size);
        QCOMPARE(form.minimumSize(), expected.minimum);
        QCOMPARE(form.baseSize(), expected.base);
        QCOMPARE(form.maximumSize(), expected.maximum);
        QStringList order;
        for (const Record& record : expected.records) {
            const QStringList path = (QString(expected.name) + '/' + record.name).split('/');
            auto* const widget = form.findChild<QWidget*>(path.last());
            QVERIFY2(widget != nullptr, record.name);
            const QString holder = widget->parentWidget()->objectName();
            QVERIFY2(holder == path.at(path.size() - 2), record.name);
            QVERIFY2(widget->inherits(record.type), record.name);
            QVERIFY2(record.place.isNull() || widget->geometry() == record.place, record.name);
            const char* const property = widget->inherits("QGroupBox") ? "title" : "text";
            QCOMPARE(widget->property(property).toString(), record.text);
            QVERIFY2(LookOf(*widget) == record.look, record.name);
            QVERIFY2(widget->accessibleName() == record.told, record.name);
            order.append(path.last());
        }
        QStringList found;
        const auto widgets = form.findChildren<QWidget*>();
        for (const QWidget* const widget : widgets) {
            if (order.contains(widget->objectName()) && !found.contains(widget->objectName())) {
                found.append(widget->objectName());
            }
        }
        QCOMPARE(found, order);
        QCOMPARE(WalkOf(form, order), expected.walk);
    }

    // The program replaces them before anybody sees them. Who edits the form does see them.
    void theFormHasTextsForWhatFollowsTheModel()
    {
        const QPair<const char*, const char*> rows[] = {{"btnConnect", "Connect"},
            {"lblConnectionStatus", "Not connected."}, {"lblAppStatus", "| "}};
        for (const auto& [widget, text] : rows) {
            QCOMPARE(TextInForm("shell/MainDialog.ui", widget), text);
        }
    }

    void noButtonIsADefaultAndEveryFieldHasANameForScreenReaders()
    {
        const std::unique_ptr<QWidget> boardData(New<CTabBoardDataNew>()); // not in the window
        for (const QWidget* const form : {MainWindow(), boardData.get()}) {
            const auto buttons = form->findChildren<QPushButton*>();
            for (const QPushButton* const button : buttons) {
                QVERIFY2(!button->autoDefault() && !button->isDefault(),
                    qPrintable(button->objectName()));
            }
            VerifyNamed<QLineEdit>(*form);
            VerifyNamed<QComboBox>(*form);
            VerifyNamed<QTableWidget>(*form);
            VerifyNamed<QToolButton>(*form);
        }
    }
};

VX440_WINDOW_TEST_MAIN(FormGeometryTest)
#include "FormGeometryTest.moc"
