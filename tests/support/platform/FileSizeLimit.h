// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

/// No file of this process grows beyond `bytes` as long as the object lives: a disk that is full.
/// Not for several threads at once.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(std::uint64_t bytes);
    ~FileSizeLimit();
    /// Whether the system has such a limit. Without one the object does nothing.
    static bool IsThere();
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    std::uint64_t before = 0;
};
