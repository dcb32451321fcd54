// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <vector>

/// The table in which the system keeps the link-layer addresses of its IPv4 neighbours (its ARP
/// cache). Addresses are in network byte order throughout.
namespace platform {

/// One neighbour. The first six bytes of `physicalAddress` are the MAC address. They are zero while
/// the system has none. `type` is the state of the entry, in the system's own counting.
struct NeighbourRow
{
    std::uint32_t interfaceIndex;
    std::uint32_t physicalAddressLength;
    std::uint8_t physicalAddress[8];
    std::uint32_t ipAddress;
    std::uint32_t type;
};

/// All neighbours, in ascending order of the address; those of one address in the system's own
/// order. What the system keeps for loopback, multicast and broadcast is left out. Empty when the
/// system cannot read its table.
std::vector<NeighbourRow> ReadNeighbourTable();

/// Deletes one row of the table, which needs a privilege. 0, or the error number of the system.
unsigned DeleteNeighbour(const NeighbourRow& row);

/// Makes the system resolve an address into its table. Blocks until it has an answer or has given
/// up, which takes some seconds for a silent address. An entry that the table already has is an
/// answer. Returns at once for an address of this machine, and for one that is not on a directly
/// attached network.
///
/// `physicalAddress` has room for `*length` bytes and receives the answer. With `source` 0 the
/// system chooses the sending address. 0, or the error number of the system. Any number of threads
/// may be inside at once, also while the process ends.
unsigned ResolveNeighbour(std::uint32_t destination, std::uint32_t source,
    std::uint8_t* physicalAddress, std::uint32_t* length);

/// The address that a dotted text names. A part that begins with 0 is octal. All ones when the text
/// names no address.
std::uint32_t ParseIpv4Address(const char* text);

/// Writes the dotted text, without padding, and its terminator. `size` is at least 16.
void FormatIpv4Address(std::uint32_t address, char* text, int size);

} // namespace platform
