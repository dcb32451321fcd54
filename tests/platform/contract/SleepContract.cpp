// SPDX-License-Identifier: MIT

#include "platform/Sleep.h"

#include "tests/platform/contract/Contracts.h"
#include "tests/platform/contract/Results.h"

#include <chrono>

using results::Expect;

namespace contract {
namespace {

bool LastsAtLeast(unsigned milliseconds)
{
    const auto start = std::chrono::steady_clock::now();
    platform::Sleep(milliseconds);
    return std::chrono::steady_clock::now() - start >= std::chrono::milliseconds(milliseconds);
}

} // namespace

void CheckSleep()
{
    for (const unsigned milliseconds : {0U, 1U, 10U, 25U, 100U}) {
        bool always = true;
        for (int time = 0; time < 5; ++time) {
            always = LastsAtLeast(milliseconds) && always;
        }
        Expect("a sleep of " + std::to_string(milliseconds) + " ms lasts at least as long", always);
    }
}

} // namespace contract
