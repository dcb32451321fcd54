#include "platform/Sleep.h"

#include <cerrno>
#include <ctime>

#include <sys/prctl.h>

namespace platform {

void Sleep(unsigned milliseconds)
{
    prctl(PR_SET_TIMERSLACK, 1UL); // else the kernel adds up to 50 us to each of a thousand sleeps
    timespec rest{};
    rest.tv_sec = milliseconds / 1000;
    rest.tv_nsec = static_cast<long>(milliseconds % 1000) * 1000000;
    while (clock_nanosleep(CLOCK_MONOTONIC, 0, &rest, &rest) == EINTR) {
    }
}

} // namespace platform
