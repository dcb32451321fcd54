#include "discovery/CArpCacheAccess.h"

#include "platform/NeighbourTable.h"

#include <QVector>

#include <array>
#include <cstdio>
#include <cstring>
#include <vector>

namespace {

constexpr int TextSize = 1024;

QVector<platform::NeighbourRow> ReadRows()
{
    quint32 size = 0;
    platform::ReadNeighbourTable(nullptr, &size, true);
    // One element for each byte is far more than needed, so that the table may grow meanwhile. The
    // zeros are an empty table, in case that none can be read.
    std::vector<platform::NeighbourTable> buffer(size + 1);
    size = static_cast<quint32>(buffer.size() * sizeof(platform::NeighbourTable));
    platform::NeighbourTable* table = buffer.data();
    platform::ReadNeighbourTable(table, &size, true);
    QVector<platform::NeighbourRow> rows(static_cast<int>(table->count));
    if (!rows.isEmpty()) {
        std::memcpy(rows.data(),
            reinterpret_cast<const char*>(table) + offsetof(platform::NeighbourTable, rows),
            table->count * sizeof(platform::NeighbourRow));
    }
    return rows;
}

QString IpText(quint32 ipAddress)
{
    std::array<char, TextSize> text{};
    platform::FormatIpv4Address(ipAddress, text.data(), TextSize);
    return QString::fromLatin1(text.data());
}

QString MacText(const std::uint8_t* address)
{
    std::array<char, TextSize> text{};
    std::snprintf(text.data(), text.size(), "%02x:%02x:%02x:%02x:%02x:%02x", address[0], address[1],
        address[2], address[3], address[4], address[5]);
    return QString::fromLatin1(text.data());
}

} // namespace

CArpCacheAccess::CArpCacheAccess() = default;

CArpCacheAccess::CArpCacheAccess(quint32 ipAddress)
{
    std::array<std::uint8_t, 8> physicalAddress{};
    physicalAddress.fill(0xFF);
    std::uint32_t length = 6;
    platform::ResolveNeighbour(ipAddress, 0, physicalAddress.data(), &length);
}

CArpCacheAccess::~CArpCacheAccess() = default;

bool CArpCacheAccess::ClearArpCache()
{
    const QVector<platform::NeighbourRow> rows = ReadRows();
    for (const platform::NeighbourRow& row : rows) {
        if (platform::DeleteNeighbour(row) != 0) {
            break;
        }
    }
    return false;
}

bool CArpCacheAccess::GetMacFromArpCache(QString& mac, QString ip)
{
    const QVector<platform::NeighbourRow> rows = ReadRows();
    for (const platform::NeighbourRow& row : rows) {
        if (IpText(row.ipAddress) == ip) {
            mac = MacText(row.physicalAddress);
            return true;
        }
    }
    return false;
}
