// SPDX-License-Identifier: MIT

#pragma once

#include "model/CDeviceDatabase.h"
#include "rotor/CTabMotorConfiguration.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"

#include <QLineEdit>
#include <QTabWidget>
#include <QTableWidget>
#include <QtTest>

using Words = QVector<ushort>;

constexpr int Azimuth = 0;
constexpr int Polar = 1;
constexpr int Motors[] = {Azimuth, Polar};
constexpr const char* NameOf[] = {"Azimuth", "Polar"};
constexpr const char* TitleOf[] = {"Azimuth Configuration", "Pol/Eval Configuration"};

/// The page of a motor in the program's window.
inline CTabMotorConfiguration* Page(int motor)
{
    const auto* const pages = Find<QTabWidget>("tabWidget");
    for (int page = 0; page < pages->count(); ++page) {
        if (pages->tabText(page) == TitleOf[motor]) {
            return qobject_cast<CTabMotorConfiguration*>(pages->widget(page));
        }
    }
    return nullptr;
}

template<class Widget>
Widget* Child(int motor, const char* name)
{
    return Page(motor)->findChild<Widget*>(name);
}

inline QTableWidget* Table(int motor)
{
    return Child<QTableWidget>(motor, "tblMotorConfiguration");
}

inline QLineEdit* Edit(int motor, int row)
{
    return qobject_cast<QLineEdit*>(Table(motor)->cellWidget(row, 0));
}

inline QString ShownRotorType(int motor)
{
    return Child<QLineEdit>(motor, "txtRotorType")->text();
}

/// What the model holds for a motor.
inline Words Stored(int motor)
{
    Words words;
    for (int parameter = 0; parameter < 12; ++parameter) {
        words.append(TheDeviceDatabase()->GetMotorParameter(motor, parameter));
    }
    return words;
}

/// Base of a test class whose functions run once for each of the two motors.
class MotorPageTest : public WarningsFail
{
    Q_OBJECT

protected:
    int motor = Azimuth;
    int other = Polar;

protected slots:
    void initTestCase_data()
    {
        QTest::addColumn<int>("ofMotor");
        for (const int any : Motors) {
            QTest::newRow(NameOf[any]) << any;
        }
    }

    void init()
    {
        WarningsFail::init();
        QFETCH_GLOBAL(int, ofMotor);
        motor = ofMotor;
        other = 1 - ofMotor;
    }
};
