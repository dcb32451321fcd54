#pragma once

#include "tests/soak/User.h"

/// One run: random actions, the same ones again, and the end of the program. What is held is
/// measured after each of these passes, with the same unit connected; where it has grown, there are
/// more of them.
class Run : public QObject
{
    Q_OBJECT

public:
    explicit Run(quint32 seed);

    /// Goes on from the event loop of the program, until it closes the window.
    void Begin();

    /// To be called behind the end of the program.
    int ExitCode() const;

private:
    void TakeStep();
    void Rest();
    void Measure();
    void End();

    quint32 seed;
    int step = 0;
    int pass = 0;
    bool ended = false;
    Watch watch;
    User user;
    Resources afterLastPass{};
};
