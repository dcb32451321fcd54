#include "platform/NeighbourTable.h"

#include "platform/NeighbourRows.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <vector>

namespace platform {
namespace {

bool IsBelow(const NeighbourRow& left, const NeighbourRow& right)
{
    return std::memcmp(&left.ipAddress, &right.ipAddress, sizeof left.ipAddress) < 0;
}

std::size_t BytesFor(std::size_t rows)
{
    return std::max(
        sizeof(NeighbourTable), offsetof(NeighbourTable, rows) + rows * sizeof(NeighbourRow));
}

void CopyOut(const std::vector<NeighbourRow>& rows, NeighbourTable* table)
{
    table->count = static_cast<std::uint32_t>(rows.size());
    if (!rows.empty()) {
        std::memcpy(reinterpret_cast<char*>(table) + offsetof(NeighbourTable, rows), rows.data(),
            rows.size() * sizeof(NeighbourRow));
    }
}

} // namespace

unsigned ReadNeighbourTable(NeighbourTable* table, std::uint32_t* size, bool sorted)
{
    // The rows that a call only counted, for the call that comes back for them.
    thread_local std::vector<NeighbourRow> counted;

    std::vector<NeighbourRow> rows;
    rows.swap(counted);
    const unsigned error = rows.empty() ? ReadNeighbourRows(rows) : 0;
    if (error != 0) {
        rows.clear();
    }
    const std::size_t needed = BytesFor(rows.size());
    if (table == nullptr) {
        counted = rows;
    }
    if (table == nullptr || *size < needed) {
        *size = static_cast<std::uint32_t>(needed);
        return error != 0 ? error : NeighbourBufferTooSmall;
    }
    if (sorted) {
        std::stable_sort(rows.begin(), rows.end(), IsBelow);
    }
    CopyOut(rows, table);
    return error;
}

void FormatIpv4Address(std::uint32_t address, char* text, int size)
{
    std::array<unsigned char, sizeof address> octets{};
    std::memcpy(octets.data(), &address, octets.size());
    std::snprintf(text, static_cast<std::size_t>(size), "%d.%d.%d.%d", octets[0], octets[1],
        octets[2], octets[3]);
}

} // namespace platform
