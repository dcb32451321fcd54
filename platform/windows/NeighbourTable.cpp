// SPDX-License-Identifier: MIT

#include "platform/NeighbourTable.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include <winsock2.h>
// Needs the one above before it.
#include <iphlpapi.h>

namespace platform {
namespace {

static_assert(sizeof(NeighbourRow) == sizeof(MIB_IPNETROW) &&
              offsetof(NeighbourRow, physicalAddress) == offsetof(MIB_IPNETROW, bPhysAddr) &&
              offsetof(NeighbourRow, ipAddress) == offsetof(MIB_IPNETROW, dwAddr) &&
              offsetof(NeighbourRow, type) == offsetof(MIB_IPNETROW, dwType));

constexpr unsigned char LoopbackNetwork = 127;
constexpr unsigned char FirstMulticastNetwork = 224; // and with 255 the broadcast address
constexpr unsigned char GroupBit = 1;                // of a physical address' first byte

// Beside the neighbours the system lists the addresses of groups and of all.
bool IsNoNeighbour(const NeighbourRow& row)
{
    unsigned char network = 0;
    std::memcpy(&network, &row.ipAddress, sizeof network);
    return network == LoopbackNetwork || network >= FirstMulticastNetwork ||
           (row.physicalAddress[0] & GroupBit) != 0;
}

// The table as the system gives it: a count, and the rows behind it. Empty when there is none.
std::vector<char> ReadSystemTable()
{
    std::vector<char> table;
    ULONG size = 0;
    DWORD error = NO_ERROR;
    // The table may grow after the call that tells its size.
    do {
        table.resize(size);
        error = GetIpNetTable(reinterpret_cast<MIB_IPNETTABLE*>(table.data()), &size, TRUE);
    } while (error == ERROR_INSUFFICIENT_BUFFER);
    if (error != NO_ERROR) {
        table.clear();
    }
    return table;
}

} // namespace

std::vector<NeighbourRow> ReadNeighbourTable()
{
    const std::vector<char> table = ReadSystemTable();
    if (table.empty()) {
        return {};
    }
    DWORD count = 0;
    std::memcpy(&count, table.data(), sizeof count);
    std::vector<NeighbourRow> rows(count);
    std::memcpy(
        rows.data(), table.data() + offsetof(MIB_IPNETTABLE, table), count * sizeof(NeighbourRow));
    rows.erase(std::remove_if(rows.begin(), rows.end(), IsNoNeighbour), rows.end());
    return rows;
}

unsigned DeleteNeighbour(const NeighbourRow& row)
{
    MIB_IPNETROW systemRow{};
    std::memcpy(&systemRow, &row, sizeof systemRow);
    return DeleteIpNetEntry(&systemRow);
}

unsigned ResolveNeighbour(std::uint32_t destination, std::uint32_t source,
    std::uint8_t* physicalAddress, std::uint32_t* length)
{
    ULONG room = *length;
    const DWORD error = SendARP(destination, source, physicalAddress, &room);
    if (error == NO_ERROR) {
        *length = room;
    }
    return error;
}

std::uint32_t ParseIpv4Address(const char* text)
{
    return inet_addr(text);
}

} // namespace platform
