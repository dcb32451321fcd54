// SPDX-License-Identifier: MIT

#include "platform/NeighbourTable.h"

#include <array>
#include <cstdio>
#include <cstring>

namespace platform {

void FormatIpv4Address(std::uint32_t address, char* text, int size)
{
    std::array<unsigned char, sizeof address> octets{};
    std::memcpy(octets.data(), &address, octets.size());
    std::snprintf(text, static_cast<std::size_t>(size), "%d.%d.%d.%d", octets[0], octets[1],
        octets[2], octets[3]);
}

} // namespace platform
