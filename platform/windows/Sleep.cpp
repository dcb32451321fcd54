// SPDX-License-Identifier: MIT

#include "platform/Sleep.h"

#include <chrono>

#include <windows.h>

namespace platform {

void Sleep(unsigned milliseconds)
{
    // The system counts in ticks of some 15 ms and may come back before a whole one has passed.
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
    auto rest = std::chrono::milliseconds(milliseconds);
    do {
        ::Sleep(static_cast<DWORD>(rest.count()));
        rest = std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
    } while (rest.count() > 0);
}

} // namespace platform
