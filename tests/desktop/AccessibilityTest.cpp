// SPDX-License-Identifier: MIT

#include "widgets/Accessibility.h"
#include "model/CDeviceDatabase.h"
#include "shell/CCustomProgressDialog.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"
#include "widgets/CElidedLabel.h"

#include <QAccessible>
#include <QApplication>
#include <QProgressBar>
#include <QtTest>

namespace {

int valuesTold = 0;
QStringList alerts; // the texts

// Stands in for the screen reader.
void Listen(QAccessibleEvent* event)
{
    valuesTold += event->type() == QAccessible::ValueChanged ? 1 : 0;
    if (event->type() == QAccessible::Alert) {
        alerts.append(event->accessibleInterface()->text(QAccessible::Name));
    }
}

QAccessibleInterface& BarOf(const CCustomProgressDialog& dialog)
{
    return *QAccessible::queryAccessibleInterface(dialog.findChild<QProgressBar*>());
}

} // namespace

class AccessibilityTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QAccessible::installUpdateHandler(Listen);
        InstallAccessibility();
        QTRY_VERIFY(QAccessible::isActive()); // the bus has answered
    }

    void aBarWithoutAnEndIsBusyAndHasNoValue()
    {
        CCustomProgressDialog dialog("Working ...", 0, 0);
        dialog.setValue(150);
        QAccessibleInterface& bar = BarOf(dialog);
        QCOMPARE(bar.role(), QAccessible::ProgressBar);
        QCOMPARE(bar.text(QAccessible::Name), "Working ...");
        QVERIFY(bar.state().busy);
        QVERIFY(bar.valueInterface() == nullptr);
        QCOMPARE(bar.text(QAccessible::Value), "busy");
        valuesTold = 0;
        for (int value = 0; value < 1000; ++value) {
            dialog.setValue(value);
        }
        QCOMPARE(valuesTold, 0);
    }

    void aBarTellsHowFarItIsOnceAPercent()
    {
        constexpr int Bytes = 100000;
        CCustomProgressDialog dialog("Working ...", 0, Bytes);
        dialog.setAutoReset(false);
        dialog.show();
        dialog.setValue(0);
        valuesTold = 0;
        for (int value = 1; value <= Bytes; ++value) {
            dialog.setValue(value);
            if (value % 25000 == 0) {
                QCOMPARE(BarOf(dialog).valueInterface()->currentValue().toInt(), value);
            }
        }
        QCOMPARE(valuesTold, 100);
        QAccessibleInterface& bar = BarOf(dialog);
        QVERIFY(!bar.state().busy);
        QVERIFY(bar.state().readOnly);
        QCOMPARE(bar.valueInterface()->minimumStepSize().toInt(), 1);
        QCOMPARE(bar.valueInterface()->minimumValue().toInt(), 0);
        QCOMPARE(bar.valueInterface()->maximumValue().toInt(), Bytes);
        QCOMPARE(bar.text(QAccessible::Value), "100%");
    }

    void theStatusLineIsAnAlertWithItsText()
    {
        CElidedLabel label;
        label.setText("Updating firmware ..");
        QAccessibleInterface* const told = QAccessible::queryAccessibleInterface(&label);
        QCOMPARE(told->role(), QAccessible::AlertMessage);
        QCOMPARE(told->text(QAccessible::Name), "Updating firmware ..");
    }

    void eachStatusIsAnAlertAndNothingElse()
    {
        alerts.clear();
        TheDeviceDatabase()->SetApplicationStatus("Updating firmware ..");
        TheDeviceDatabase()->SetConnectionStatus(CDeviceDatabase::ConnectionNotConnected);
        TheDeviceDatabase()->SetPartNumber("4400.1290.02");
        TheDeviceDatabase()->SetApplicationStatus("Firmware Update Failed!");
        QCOMPARE(alerts, (QStringList{"Updating firmware ..", "Firmware Update Failed!"}));
    }
};

VX440_WINDOW_TEST_MAIN(AccessibilityTest)
#include "AccessibilityTest.moc"
