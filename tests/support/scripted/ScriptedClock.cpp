// SPDX-License-Identifier: MIT

#include "tests/support/scripted/ScriptedClock.h"

#include "platform/Sleep.h"

#include <numeric>
#include <utility>

namespace {

QVector<unsigned> waits;
std::function<void(unsigned)> duringWait;

} // namespace

void ScriptedClock::Reset()
{
    waits.clear();
    duringWait = nullptr;
}

const QVector<unsigned>& ScriptedClock::Waits()
{
    return waits;
}

unsigned ScriptedClock::Now()
{
    return std::accumulate(waits.cbegin(), waits.cend(), 0U);
}

void ScriptedClock::SetDuringWait(std::function<void(unsigned)> action)
{
    duringWait = std::move(action);
}

void platform::Sleep(unsigned milliseconds)
{
    waits.append(milliseconds);
    if (duringWait) {
        duringWait(milliseconds);
    }
}
