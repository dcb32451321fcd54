// SPDX-License-Identifier: MIT

#pragma once

#include "tests/soak/Files.h"
#include "tests/soak/Watch.h"
#include "tests/support/SimulatorProcess.h"

#include <QFileDialog>
#include <QProgressDialog>

#include <memory>

/// A user who does anything with the window, and a unit that does anything wrong. Each action is
/// drawn from a number of its own, made of the seed and the step: what one action needed does not
/// change the next.
class User : public QObject
{
    Q_OBJECT

public:
    User(quint32 seed, Watch& watch);

    /// Sets up the first unit.
    void Begin();

    /// Prints one action and does it. While the program is busy in it, dialogs are answered and
    /// closed.
    void Act(int step);

    /// Goes back to a good unit, and connects to it.
    void Rest();

    /// Closes the window, in one of the ways that there are.
    void Leave();

private:
    void Connect();
    void TurnAPage();
    void PressAButton();
    void FillAField();
    void FillACell();
    void PressKeys();
    void UseTheMouse();
    void RestTheMouse();
    void ChangeTheAddress();
    void UpdateTheFirmware();
    void HaveAFault();
    void TakeAnotherUnit();

    void React();
    void ReactTo(QFileDialog& dialog);
    void ReactTo(QProgressDialog& dialog);
    void ReactToAny(QWidget& dialog);
    void Disturb();
    void Say(const QString& text);

    int Below(int bound) { return static_cast<int>(random.bounded(bound)); }
    bool OneIn(int count) { return Below(count) == 0; }
    template<class Values>
    auto Any(const Values& values)
    {
        return values.at(Below(values.size()));
    }

    quint32 seed;
    Watch& watch;
    QRandomGenerator random;
    Files files;
    std::unique_ptr<SimulatorProcess> unit;
    bool acting = false;
    int ticks = 0;
    int patience = 0;
};
