// SPDX-License-Identifier: MIT

#include "platform/Sleep.h"

#include <cerrno>
#include <chrono>
#include <ctime>

#include <sys/prctl.h>

namespace platform {
namespace {

using Clock = std::chrono::steady_clock;

// The system usually wakes a thread this late. The tool reads the unit's texts with a wait of a
// millisecond for each character, so this would make them a tenth slower.
constexpr std::chrono::microseconds WakeUpTime{120};

void SleepFor(std::chrono::nanoseconds time)
{
    prctl(PR_SET_TIMERSLACK, 1UL); // else the kernel adds up to 50 us
    timespec rest{};
    rest.tv_sec = time.count() / 1000000000;
    rest.tv_nsec = time.count() % 1000000000;
    while (clock_nanosleep(CLOCK_MONOTONIC, 0, &rest, &rest) == EINTR) {
    }
}

} // namespace

void Sleep(unsigned milliseconds)
{
    const std::chrono::milliseconds time(milliseconds);
    const Clock::time_point end = Clock::now() + time;
    if (time > WakeUpTime) {
        SleepFor(time - WakeUpTime);
    }
    while (Clock::now() < end) {
    }
}

} // namespace platform
