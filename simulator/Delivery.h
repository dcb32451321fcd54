// SPDX-License-Identifier: MIT

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

/// One step of an answer: first a wait, then the bytes, which go out as one piece, then what
/// becomes of the connection.
struct Delivery
{
    int delayMs = 0;
    QByteArray bytes;
    Ending ending = Ending::Open;
};

/// The steps in which a unit with this fault gives the answer. With FaultKind::Wrong `wrongAnswer`
/// goes out in its place. `slowMs` is the wait of FaultKind::Slow. An empty answer gives no steps,
/// unless the fault ends the connection.
QVector<Delivery> Deliveries(
    FaultKind fault, const QByteArray& answer, const QByteArray& wrongAnswer, int slowMs);

} // namespace simulator
