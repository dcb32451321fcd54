// SPDX-License-Identifier: MIT

#include "tests/support/platform/ProcessResources.h"

#include <filesystem>

namespace {

int EntriesOf(const char* folder)
{
    int entries = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(folder)) {
        ++entries;
    }
    return entries;
}

} // namespace

int OpenHandles()
{
    return EntriesOf("/proc/self/fd");
}

int RunningThreads()
{
    return EntriesOf("/proc/self/task");
}
