// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// What each fuzz target defines, under the name that libFuzzer calls. Any bytes will do as input;
/// `data` may be null when `size` is 0. Always 0.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

/// Ends the process, which libFuzzer and the replay both report with the input, unless it holds.
inline void Require(bool holds)
{
    if (!holds) {
        std::abort();
    }
}
