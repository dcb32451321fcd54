// SPDX-License-Identifier: MIT

#include "discovery/CArpCacheAccess.h"

#include "platform/NeighbourTable.h"

#include <array>
#include <cstdio>

namespace {

constexpr int TextSize = 1024;

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
    for (const platform::NeighbourRow& row : platform::ReadNeighbourTable()) {
        if (platform::DeleteNeighbour(row) != 0) {
            break;
        }
    }
    return false;
}

bool CArpCacheAccess::GetMacFromArpCache(QString& mac, QString ip)
{
    for (const platform::NeighbourRow& row : platform::ReadNeighbourTable()) {
        if (IpText(row.ipAddress) == ip) {
            mac = MacText(row.physicalAddress);
            return true;
        }
    }
    return false;
}
