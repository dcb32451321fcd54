// SPDX-License-Identifier: MIT

#include "platform/Sleep.h"

#include <chrono>
#include <thread>

#include <sys/prctl.h>

namespace platform {
namespace {

using Clock = std::chrono::steady_clock;

// The system usually wakes a thread this late. The tool reads the unit's texts with a wait of a
// millisecond for each character, so this would make them a tenth slower.
constexpr std::chrono::microseconds WakeUpTime{120};

} // namespace

void Sleep(unsigned milliseconds)
{
    const Clock::time_point end = Clock::now() + std::chrono::milliseconds(milliseconds);
    prctl(PR_SET_TIMERSLACK, 1UL); // else the kernel adds up to 50 us
    std::this_thread::sleep_until(end - WakeUpTime);
    while (Clock::now() < end) {
    }
}

} // namespace platform
