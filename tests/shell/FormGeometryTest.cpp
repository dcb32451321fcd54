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
    QRect place; ///< empty where a layout or the form alone decides
    const char* text = "";
    const char* look = "";
};

struct Form
{
    const char* name;
    const char* title;
    QWidget* (*make)(); ///< none of the program's window, which is there
    QSize size, minimum, base, maximum;
    QVector<Record> records;
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
    {"groupBox/txtIpAddress", "QLineEdit", {110, 20, 110, 20}, "192.168.0.129"},
    {"groupBox/label_2", "QLabel", {30, 20, 80, 20}, "Device IP"},
    {"layoutWidget/tabWidget", "QTabWidget", {}},
    {"layoutWidget/lblConnectionStatus", "QLabel", {}, "Not Connected "},
    {"layoutWidget/lblAppStatus", "CElidedLabel", {}},
};

const QVector<Record> InfoRecords{
    {"lblMacAddress", "QLabel", {20, 20, 80, 20}, "Mac Address"},
    {"txtMacAddress", "QLineEdit", {120, 20, 160, 20}, ":::::", "read-only"},
    {"lblPartNumber", "QLabel", {20, 50, 80, 20}, "Part number"},
    {"txtPartNumber", "QLineEdit", {120, 50, 160, 20}, "", "read-only"},
    {"lblProductIndex", "QLabel", {20, 80, 80, 20}, "Product index"},
    {"txtProductIndex", "QLineEdit", {120, 80, 160, 20}, "", "read-only"},
    {"lblSerialNumber", "QLabel", {20, 110, 80, 20}, "Serial number"},
    {"txtSerialNumber", "QLineEdit", {120, 110, 160, 20}, "", "read-only"},
    {"lblVersionNumber", "QLabel", {20, 140, 80, 20}, "FW version"},
    {"txtVersionNumber", "QLineEdit", {120, 140, 160, 20}, "", "read-only"},
};

const QVector<Record> LoadFirmwareRecords{
    {"lblFirmwareFile", "QLabel", {20, 20, 80, 20}, "Firmware File"},
    {"txtFirmwareFile", "QLineEdit", {120, 20, 160, 20}, "", "read-only"},
    {"btnSelectFirmware", "QToolButton", {290, 20, 30, 20}, "..."},
    {"btnLoadFirmware", "QPushButton", {330, 20, 100, 23}, "Send FW to Device"},
    {"btnUpdateFirmware", "QPushButton", {330, 50, 100, 23}, "Initiate FW Update"},
    {"lblCompatibility", "QLabel", {30, 290, 241, 20},
        "This tab is not compatible with this device!", "bold italic"},
};

const QVector<Record> IpConfigurationRecords{
    {"lblNewIpAddress", "QLabel", {20, 20, 80, 20}, "New IP Address"},
    {"txtNewIpAddress", "QLineEdit", {120, 20, 160, 20}, "..."},
    {"lblSubnetMask", "QLabel", {20, 50, 80, 20}, "Subnet Mask"},
    {"txtNewSubnetMask", "QLineEdit", {120, 50, 160, 20}, "..."},
    {"btnSendIpAddress", "QPushButton", {290, 22, 111, 51}, "Change\nIp Address & \nSubnetMask"},
    {"lblMacAddress", "QLabel", {20, 80, 80, 20}, "MAC Address"},
    {"txtNewMacAddress", "QLineEdit", {120, 80, 160, 20}, ":::::"},
    {"btnSendMacAddress", "QPushButton", {290, 80, 111, 23}, "Change Mac Address"},
};

const QVector<Record> MotorRecords{
    {"tblMotorConfiguration", "QTableWidget", {20, 20, 400, 281}},
    {"btnReadFromFile", "QPushButton", {440, 20, 100, 23}, "Read from File"},
    {"btnWriteToFile", "QPushButton", {440, 50, 100, 23}, "Write to File"},
    {"btnReceiveFromDevice", "QPushButton", {440, 90, 100, 23}, "Recv from Device"},
    {"btnSendToDevice", "QPushButton", {440, 120, 100, 23}, "Send to Device"},
    {"lblRotorName", "QLabel", {440, 160, 80, 20}, "Rotor", "bold"},
    {"lblRotorType", "QLabel", {630, 160, 80, 20}, "Rotor Type", "bold"},
    {"txtRotorType", "QLineEdit", {630, 180, 160, 20}, "Pulse", "read-only"},
    {"btnReset", "QPushButton", {630, 20, 100, 41}, "Reset to \nDefault Settings"},
    {"listRotors", "QComboBox", {440, 180, 161, 22}},
};

const QVector<Record> BoardDataNewRecords{
    {"groupBox", "QGroupBox", {}, "Device", "heading"},
    {"groupBox/txtDevicePartNumber", "QLineEdit", {}, "", "read-only"},
    {"groupBox/lblDeviceTestInstructionIndex", "QLabel", {}, "Test instruction index"},
    {"groupBox/txtDeviceProductionDate", "QLineEdit", {}, "", "read-only"},
    {"groupBox/txtDeviceTestInstructionIndex", "QLineEdit", {}, "", "read-only"},
    {"groupBox/txtDeviceSerialNumber", "QLineEdit", {}, "", "read-only"},
    {"groupBox/txtDeviceName", "QLineEdit", {}, "", "read-only"},
    {"groupBox/lblDeviceProductIndex", "QLabel", {}, "Product index"},
    {"groupBox/lblDevicePartNumber", "QLabel", {}, "Part number"},
    {"groupBox/txtDeviceProductIndex", "QLineEdit", {}, "", "read-only"},
    {"groupBox/lblDeviceSerialNumber", "QLabel", {}, "Serial number"},
    {"groupBox/lblDeviceName", "QLabel", {}, "Name"},
    {"groupBox/lblDeviceProductionDate", "QLabel", {}, "Production  date"},
    {"boxBoard", "QGroupBox", {}, "Board", "heading"},
    {"boxBoard/lblBoardProductionDate", "QLabel", {}, "Production  date"},
    {"boxBoard/lblBoardName", "QLabel", {}, "Name"},
    {"boxBoard/lblBoardTestInstructionIndex", "QLabel", {}, "Test instruction index"},
    {"boxBoard/txtBoardPartNumber", "QLineEdit", {}, "", "read-only"},
    {"boxBoard/lblBoardPartNumber", "QLabel", {}, "Part number"},
    {"boxBoard/lblBoardProductIndex", "QLabel", {}, "Product index"},
    {"boxBoard/lblBoardSerialNumber", "QLabel", {}, "Serial number"},
    {"boxBoard/txtBoardSerialNumber", "QLineEdit", {}, "", "read-only"},
    {"boxBoard/txtBoardTestInstructionIndex", "QLineEdit", {}, "", "read-only"},
    {"boxBoard/txtBoardProductionDate", "QLineEdit", {}, "", "read-only"},
    {"boxBoard/txtBoardName", "QLineEdit", {}, "", "read-only"},
    {"boxBoard/txtBoardProductIndex", "QLineEdit", {}, "", "read-only"},
    {"widOldFirmwareItems", "QWidget", {}},
    {"widOldFirmwareItems/btnWriteOld", "QPushButton", {}, "Write to Device"},
    {"widNewFirmwareItems", "QWidget", {}},
    {"widNewFirmwareItems/btnReadAll", "QPushButton", {}, "Read All"},
    {"widNewFirmwareItems/btnDeviceDataFileSelector", "QToolButton", {}, "..."},
    {"widNewFirmwareItems/txtBoardDataFile", "QLineEdit", {}, "", "read-only"},
    {"widNewFirmwareItems/btnWriteDeviceData", "QPushButton", {}, "Write Device Data"},
    {"widNewFirmwareItems/btnBoardDataFileSelector", "QToolButton", {}, "..."},
    {"widNewFirmwareItems/lblBoardDataFile", "QLabel", {}, "Board Data file"},
    {"widNewFirmwareItems/lblDeviceDataFile", "QLabel", {}, "Device Data file"},
    {"widNewFirmwareItems/txtDeviceDataFile", "QLineEdit", {}, "", "read-only"},
    {"widNewFirmwareItems/btnWriteBoardData", "QPushButton", {}, "Write Board Data"},
};

const QVector<Record> OptionsRecords{
    {"boxDcf", "QGroupBox", {30, 30, 131, 180}, "VX440-DCF", "centred heading"},
    {"boxAtt", "QGroupBox", {170, 30, 131, 180}, "VX440-ATT", "centred heading"},
    {"boxFilter1", "QGroupBox", {310, 30, 131, 180}, "VX440-FIL 1", "centred heading"},
    {"boxFilter2", "QGroupBox", {450, 30, 131, 180}, "VX440-FIL 2", "centred heading"},
    {"boxAmp", "QGroupBox", {590, 30, 131, 180}, "VX440-AMP", "centred heading"},
    {"widNewFirmwareItems", "QWidget", {530, 230, 201, 91}},
    {"widNewFirmwareItems/btnSendDeviceOptions", "QPushButton", {90, 30, 100, 23},
        "Send to device"},
    {"widNewFirmwareItems/btnReadOptionsFromDevice", "QPushButton", {90, 0, 100, 23},
        "Read from device"},
    {"widNewFirmwareItems/btnReadDeviceOptions", "QPushButton", {90, 60, 100, 23},
        "Read Options File"},
    {"lblCompatibility", "QLabel", {30, 300, 241, 20},
        "This tab is not compatible with this device!", "bold italic"},
    {"boxOptionAzimuthRotator", "QGroupBox", {100, 230, 131, 61}, "Azimuth rotator",
        "centred heading"},
    {"boxOptionPolarRotator", "QGroupBox", {250, 230, 131, 61}, "Pol/Eval rotator",
        "centred heading"},
};

const QVector<Record> DetectZKDevicesRecords{
    {"lblStartIpAddress", "QLabel", {20, 20, 80, 20}, "Start IP Address"},
    {"txtStartIpAddress", "QLineEdit", {120, 20, 160, 20}, "192.168.1.1"},
    {"lblEndIpAddress", "QLabel", {320, 20, 80, 20}, "End IP Address"},
    {"txtEndIpAddress", "QLineEdit", {420, 20, 160, 20}, "192.168.1.255"},
    {"btnFindDevices", "QPushButton", {600, 20, 100, 23}, "Find Z&K Devices"},
    {"tblDetectDevices", "QTableWidget", {20, 50, 561, 192}},
};

const Form Forms[] = {
    {"MainDialog", "Z&K VX440 Access Application", nullptr, {820, 500}, {820, 500}, {0, 0},
        {820, 500}, MainDialogRecords},
    {"TabInfo", "Form", New<CTabInfo>, {850, 310}, {850, 310}, {850, 310}, {850, 340}, InfoRecords},
    {"TabLoadFirmware", "Form", New<CTabLoadFirmware>, {850, 340}, {850, 310}, {850, 310},
        {850, 340}, LoadFirmwareRecords},
    {"TabIpConfiguration", "Form", New<CTabIpConfiguration>, {850, 360}, {850, 360}, {850, 360},
        {850, 360}, IpConfigurationRecords},
    {"TabMotorConfiguration", "Form", NewMotorTab<0>, {850, 340}, {850, 310}, {850, 310},
        {850, 340}, MotorRecords},
    {"TabMotorConfiguration", "Form", NewMotorTab<1>, {850, 340}, {850, 310}, {850, 310},
        {850, 340}, MotorRecords},
    {"TabBoardDataNew", "Form", New<CTabBoardDataNew>, {850, 310}, {850, 310}, {850, 310},
        {850, 340}, BoardDataNewRecords},
    {"TabOptions", "Form", New<CTabOptions>, {850, 340}, {850, 310}, {0, 0}, {850, 340},
        OptionsRecords},
    {"TabDetectZKDevices", "", New<CTabDetectZKDevices>, {850, 310}, {850, 310}, {850, 310},
        {850, 340}, DetectZKDevicesRecords},
};

// In the words of the table.
QString LookOf(QWidget& widget)
{
    widget.ensurePolished();
    if (widget.property("readOnly").toBool()) {
        return "read-only";
    }
    const QFont& font = widget.font();
    if (widget.inherits("QLabel") && font.weight() == QFont::Bold) {
        return font.italic() ? "bold italic" : "bold";
    }
    const bool isHeading =
        widget.styleSheet() == "QGroupBox\n{\n    font-size: 12px;\n    font-weight: bold;\n}" &&
        font.pixelSize() == 12 && font.bold();
    const auto* const box = qobject_cast<const QGroupBox*>(&widget);
    if (isHeading && box != nullptr) {
        return box->alignment().testFlag(Qt::AlignHCenter) ? "centred heading" : "heading";
    }
    return {};
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
