// SPDX-License-Identifier: MIT

#include "platform/SocketHandles.h"

#include <array>
#include <atomic>

namespace platform {
namespace {

// A system gives the number of a closed socket out again, also to the window system. So a handle is
// two numbers: the system's, and a generation that is never used twice.
constexpr std::uint32_t NoGeneration = 0;

std::array<std::atomic<std::uint32_t>, LargestSocketNumber + 1> generationOf{};
std::atomic<std::uint32_t> latestGeneration{NoGeneration};

std::uint32_t GenerationIn(SocketHandle socket)
{
    return static_cast<std::uint32_t>(socket >> 32);
}

std::uint32_t NumberIn(SocketHandle socket)
{
    return static_cast<std::uint32_t>(socket);
}

} // namespace

SocketHandle MakeSocketHandle(std::uint32_t number)
{
    const std::uint32_t generation = ++latestGeneration;
    generationOf[number] = generation;
    return (static_cast<SocketHandle>(generation) << 32) | number;
}

std::intptr_t SocketNumber(SocketHandle socket)
{
    const std::uint32_t number = NumberIn(socket);
    const bool inUse = number <= LargestSocketNumber && GenerationIn(socket) != NoGeneration &&
                       generationOf[number] == GenerationIn(socket);
    return inUse ? static_cast<std::intptr_t>(number) : -1;
}

bool RetireSocketHandle(SocketHandle socket)
{
    std::uint32_t generation = GenerationIn(socket);
    return SocketNumber(socket) != -1 &&
           generationOf[NumberIn(socket)].compare_exchange_strong(generation, NoGeneration);
}

} // namespace platform
