#pragma once

#include "simulator/Faults.h"

namespace simulator {

/// What becomes of a connection.
enum class Ending
{
    Open,
    Closed,
    Reset
};

/// One step of an answer: a wait, the bytes that then go out as one piece, and what then becomes of
/// the connection.
struct Delivery
{
    int delayMs = 0;
    QByteArray bytes;
    Ending ending = Ending::Open;
};

/// The steps in which a unit with this fault gives the answer. `wrongAnswer` goes out in place of
/// it where the fault is FaultKind::Wrong; `slowMs` is the wait of FaultKind::Slow. No steps for an
/// answer that is empty, unless the fault ends the connection.
QVector<Delivery> Deliveries(
    FaultKind fault, const QByteArray& answer, const QByteArray& wrongAnswer, int slowMs);

} // namespace simulator
