// SPDX-License-Identifier: MIT

#include "tests/platform/contract/Contracts.h"
#include "tests/platform/contract/Results.h"

#include <cstdio>
#include <cstring>

namespace {

constexpr int UsageError = 2;

constexpr char Usage[] = "usage: PlatformContract [--neighbours]\n"
                         "Checks what the headers of platform/ promise, on 127.0.0.1 and without\n"
                         "changing anything. With --neighbours also what needs a network that\n"
                         "was made for it.\n";

} // namespace

int main(int argc, char* argv[])
{
    const bool hasNeighbours = argc == 2 && std::strcmp(argv[1], "--neighbours") == 0;
    if (argc > 1 && !hasNeighbours) {
        std::fputs(Usage, stderr);
        return UsageError;
    }
    contract::CheckSocketHandles();
    contract::CheckSockets();
    contract::CheckSleep();
    contract::CheckThreads();
    contract::CheckNeighbourTable();
    if (hasNeighbours) {
        contract::CheckUnknownNames();
        contract::CheckBroadcast();
        contract::CheckKnownNeighbours();
    }
    return results::AllHold() ? 0 : 1;
}
