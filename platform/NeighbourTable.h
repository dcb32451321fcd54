#pragma once

#include <cstdint>

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

/// A count with that many rows directly behind it. The type itself has room for one.
struct NeighbourTable
{
    std::uint32_t count;
    NeighbourRow rows[1];
};

/// Results of ReadNeighbourTable.
constexpr unsigned NeighbourTableRead = 0;
constexpr unsigned NeighbourBufferTooSmall = 122;

/// Copies the table to `table`, which has room for `*size` bytes, in ascending order of the address
/// when `sorted`. What the system keeps for loopback, multicast and broadcast is left out. When the
/// room is too small, or `table` is null, nothing is copied and `*size` becomes the number of bytes
/// needed. Any other result is the system's error number, and then a given table that has room for
/// one row has a count of 0.
///
/// A call without a table counts for the next one in the same thread, which gets the rows counted.
unsigned ReadNeighbourTable(NeighbourTable* table, std::uint32_t* size, bool sorted);

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
