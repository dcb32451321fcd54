// SPDX-License-Identifier: MIT

#include "tests/platform/contract/Results.h"

#include "tests/platform/contract/Differences.h"

#include <cstdio>

namespace results {
namespace {

int failures = 0;

void Print(const char* verdict, const std::string& sentence)
{
    std::printf("%-6s %s\n", verdict, sentence.c_str());
    std::fflush(stdout); // what comes next may hang
}

} // namespace

void Expect(const std::string& sentence, bool holds)
{
    const std::string why = holds ? std::string() : WhyThisSystemDiffers(sentence);
    if (holds) {
        Print("PASS", sentence);
    } else if (!why.empty()) {
        Print("OTHER", sentence);
        Print("", why);
    } else {
        Print("FAIL", sentence);
        ++failures;
    }
}

bool AllHold()
{
    return failures == 0;
}

} // namespace results
