#include "platform/Sleep.h"

#include <cerrno>
#include <ctime>

namespace platform {

void Sleep(unsigned milliseconds)
{
    timespec rest{};
    rest.tv_sec = milliseconds / 1000;
    rest.tv_nsec = static_cast<long>(milliseconds % 1000) * 1000000;
    while (clock_nanosleep(CLOCK_MONOTONIC, 0, &rest, &rest) == EINTR) {
    }
}

} // namespace platform
