#pragma once

#include <cstdint>
#include <vector>

/// The table in which the system keeps the link-layer addresses of its IPv4 neighbours (its ARP
/// cache). Addresses are in network byte order throughout.
namespace platform {

/// One neighbour. The first six bytes of `physicalAddress` are the MAC address, all zero while the
/// system has none for this neighbour. `type` is the entry's state in the system's own counting.
struct NeighbourRow
{
    std::uint32_t interfaceIndex;
    std::uint32_t physicalAddressLength;
    std::uint8_t physicalAddress[8];
    std::uint32_t ipAddress;
    std::uint32_t type;
};

/// All neighbours, in ascending order of the address. What the system keeps for loopback, multicast
/// and broadcast is left out. Empty when the system cannot read its table.
std::vector<NeighbourRow> ReadNeighbourTable();

/// Takes one row out of the table. 0, or the system's error number: it needs a privilege.
unsigned DeleteNeighbour(const NeighbourRow& row);

/// Makes the system resolve an address into its table, and blocks until it has an answer or has
/// given up, some seconds for a silent one; an address that the table already knows is an answer.
/// One that is not on a directly attached network, and one of this machine, returns at once.
/// `physicalAddress` has room for `*length` bytes and receives the answer. 0, or the system's error
/// number. `source` 0 leaves the choice of the sending address to the system. Any number of threads
/// may be inside at once, also while the process ends.
unsigned ResolveNeighbour(std::uint32_t destination, std::uint32_t source,
    std::uint8_t* physicalAddress, std::uint32_t* length);

/// The address that a dotted text names, with a part that begins with 0 read as octal. All ones
/// when it names none.
std::uint32_t ParseIpv4Address(const char* text);

/// Writes the dotted text, without padding, and its terminator. `size` is at least 16.
void FormatIpv4Address(std::uint32_t address, char* text, int size);

} // namespace platform
