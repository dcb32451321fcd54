// SPDX-License-Identifier: MIT

#pragma once

#include <QVector>

#include <functional>

/// Stands in for platform/Sleep.h: no call waits, each is written down. One thread only may sleep.
namespace ScriptedClock {

/// Forgets all waits and what is to happen in them.
void Reset();

/// The waits since Reset(), in milliseconds and in order.
const QVector<unsigned>& Waits();

/// Milliseconds since Reset(): the sum of the waits.
unsigned Now();

/// Called in each wait, after it was written down, for what happens meanwhile.
void SetDuringWait(std::function<void(unsigned milliseconds)> action);

} // namespace ScriptedClock
