#include "platform/SocketHandles.h"

#include <array>
#include <atomic>

namespace platform {
namespace {

// A system gives a closed socket's number out again, also to the window system. A handle is
// therefore a generation, never used twice, beside the number that it was given for.
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
