// SPDX-License-Identifier: MIT

#include "tests/support/platform/FileSizeLimit.h"

#include <csignal>

#include <sys/resource.h>

namespace {

// Gives the limit that held before.
std::uint64_t Limit(std::uint64_t bytes)
{
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    const std::uint64_t before = limit.rlim_cur;
    limit.rlim_cur = bytes;
    setrlimit(RLIMIT_FSIZE, &limit);
    return before;
}

} // namespace

FileSizeLimit::FileSizeLimit(std::uint64_t bytes)
{
    std::signal(SIGXFSZ, SIG_IGN); // or the first write beyond it ends the process
    before = Limit(bytes);
}

FileSizeLimit::~FileSizeLimit()
{
    Limit(before);
}

bool FileSizeLimit::IsThere()
{
    return true;
}
