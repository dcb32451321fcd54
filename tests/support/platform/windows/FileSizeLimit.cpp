// SPDX-License-Identifier: MIT

#include "tests/support/platform/FileSizeLimit.h"

FileSizeLimit::FileSizeLimit(std::uint64_t) {}

FileSizeLimit::~FileSizeLimit() = default;

bool FileSizeLimit::IsThere()
{
    return false;
}
