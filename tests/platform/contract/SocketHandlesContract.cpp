// SPDX-License-Identifier: MIT

#include "platform/SocketHandles.h"

#include "tests/platform/contract/Contracts.h"
#include "tests/platform/contract/Results.h"

#include <set>
#include <string>

using platform::SocketHandle;
using results::Expect;

namespace contract {
namespace {

constexpr std::uint32_t LargestNumber = 65535;

bool IsStale(SocketHandle handle)
{
    return platform::SocketNumber(handle) == -1 && !platform::RetireSocketHandle(handle);
}

void CheckHandlesOf(std::uint32_t number)
{
    const std::string of = " of the number " + std::to_string(number);
    const SocketHandle first = platform::MakeSocketHandle(number);
    Expect("a handle" + of + " gives it back", platform::SocketNumber(first) == number);
    const SocketHandle second = platform::MakeSocketHandle(number);
    Expect("the handle" + of + " goes stale when the number is given out again",
        second != first && IsStale(first));
    Expect("the new handle" + of + " stays in use meanwhile",
        platform::SocketNumber(second) == number);
    Expect("the handle" + of + " is retired once",
        platform::RetireSocketHandle(second) && IsStale(second));
}

void CheckGenerations()
{
    std::set<SocketHandle> handles;
    for (const std::uint32_t number : {5U, LargestNumber, 5U, 6U, LargestNumber, 5U}) {
        const SocketHandle handle = platform::MakeSocketHandle(number);
        handles.insert(handle);
        platform::RetireSocketHandle(handle);
    }
    Expect("no two handles are the same", handles.size() == 6);
}

} // namespace

// Of numbers that no socket of this process has.
void CheckSocketHandles()
{
    for (const SocketHandle madeUp : {platform::InvalidSocket, SocketHandle{0}, SocketHandle{1},
             SocketHandle{LargestNumber}, SocketHandle{LargestNumber} + 1}) {
        Expect("the handle " + std::to_string(madeUp) + " was never made", IsStale(madeUp));
    }
    for (const std::uint32_t number : {0U, 1U, LargestNumber}) {
        CheckHandlesOf(number);
    }
    CheckGenerations();
}

} // namespace contract
