#include "platform/NeighbourTable.h"

#include "platform/NeighbourRows.h"

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

// The system lists what it sends to all or to a group beside the neighbours.
bool IsNoNeighbour(const NeighbourRow& row)
{
    unsigned char network = 0;
    std::memcpy(&network, &row.ipAddress, sizeof network);
    return network == LoopbackNetwork || network >= FirstMulticastNetwork ||
           (row.physicalAddress[0] & GroupBit) != 0;
}

// What the system delivers: a count, and the rows behind it. Empty when `error` is set.
std::vector<char> ReadSystemTable(DWORD& error)
{
    std::vector<char> table;
    ULONG size = 0;
    // The table may grow between a call that counts it and the one that reads it.
    do {
        table.resize(size);
        error = GetIpNetTable(reinterpret_cast<MIB_IPNETTABLE*>(table.data()), &size, FALSE);
    } while (error == ERROR_INSUFFICIENT_BUFFER);
    if (error != NO_ERROR) {
        table.clear();
    }
    return table;
}

} // namespace

unsigned ReadNeighbourRows(std::vector<NeighbourRow>& rows)
{
    DWORD error = NO_ERROR;
    const std::vector<char> table = ReadSystemTable(error);
    if (error == ERROR_NO_DATA) {
        return 0; // no neighbours
    }
    if (error != NO_ERROR) {
        return error;
    }
    DWORD count = 0;
    std::memcpy(&count, table.data(), sizeof count);
    rows.resize(count);
    std::memcpy(
        rows.data(), table.data() + offsetof(MIB_IPNETTABLE, table), count * sizeof(NeighbourRow));
    rows.erase(std::remove_if(rows.begin(), rows.end(), IsNoNeighbour), rows.end());
    return 0;
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
