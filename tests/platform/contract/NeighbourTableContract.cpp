// SPDX-License-Identifier: MIT

#include "platform/NeighbourTable.h"

#include "tests/platform/contract/Contracts.h"
#include "tests/platform/contract/Results.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <vector>

using platform::NeighbourRow;
using results::Expect;

namespace contract {
namespace {

std::string IpText(std::uint32_t address)
{
    std::array<char, 16> text{};
    platform::FormatIpv4Address(address, text.data(), static_cast<int>(text.size()));
    return text.data();
}

int FirstOctet(const NeighbourRow& row)
{
    return std::stoi(IpText(row.ipAddress));
}

bool IsAscending(const std::vector<NeighbourRow>& rows)
{
    return std::is_sorted(
        rows.cbegin(), rows.cend(), [](const NeighbourRow& left, const NeighbourRow& right) {
            return std::memcmp(&left.ipAddress, &right.ipAddress, sizeof left.ipAddress) < 0;
        });
}

bool HasNeighboursOnly(const std::vector<NeighbourRow>& rows)
{
    return std::none_of(rows.cbegin(), rows.cend(), [](const NeighbourRow& row) {
        return FirstOctet(row) == 127 || FirstOctet(row) >= 224 ||
               row.physicalAddressLength > sizeof row.physicalAddress;
    });
}

void CheckRows()
{
    const std::vector<NeighbourRow> rows = platform::ReadNeighbourTable();
    Expect("the rows are in ascending order of their addresses", IsAscending(rows));
    Expect("none of them is loopback, multicast or broadcast", HasNeighboursOnly(rows));
}

std::string MacText(const std::uint8_t* bytes)
{
    static constexpr char Digits[] = "0123456789abcdef";
    std::string text;
    for (int index = 0; index < 6; ++index) {
        text += Digits[bytes[index] / 16];
        text += Digits[bytes[index] % 16];
    }
    return text;
}

std::string Facts(const std::vector<NeighbourRow>& rows)
{
    std::string facts;
    for (const NeighbourRow& row : rows) {
        facts += IpText(row.ipAddress) + ' ' + MacText(row.physicalAddress) + ' ' +
                 std::to_string(row.physicalAddressLength) + '\n';
    }
    return facts;
}

void CheckRefusedDeletion()
{
    const std::vector<NeighbourRow> before = platform::ReadNeighbourTable();
    const unsigned result = before.empty() ? 0 : platform::DeleteNeighbour(before.front());
    Expect("a refused deletion gives an error number", result != 0);
    Expect("a refused deletion leaves the table as it was",
        Facts(platform::ReadNeighbourTable()) == Facts(before));
}

void CheckResolving()
{
    std::array<std::uint8_t, 8> address{};
    address.fill(0xFF);
    std::uint32_t length = 6;
    const unsigned result = platform::ResolveNeighbour(
        platform::ParseIpv4Address("192.168.77.9"), 0, address.data(), &length);
    Expect("a neighbour that the table knows is resolved to its physical address",
        result == 0 && length == 6 && MacText(address.data()) == "024c7e000009");
    Expect("no more bytes are written than there is room for",
        address[6] == 0xFF && address[7] == 0xFF);
    Expect("an address that no attached network has is not resolved",
        platform::ResolveNeighbour(
            platform::ParseIpv4Address("172.16.0.1"), 0, address.data(), &length) != 0);
}

void CheckAddressTexts()
{
    const auto octetsOf = [](const char* text) { return IpText(platform::ParseIpv4Address(text)); };
    const std::uint32_t address = platform::ParseIpv4Address("192.168.1.129");
    Expect("the octets of an address lie in their order",
        std::memcmp(&address, "\xc0\xa8\x01\x81", sizeof address) == 0);
    for (const char* text : {"0.0.0.0", "1.20.3.4", "192.168.1.129", "255.255.255.255"}) {
        Expect(std::string(text) + " is written as it is read", octetsOf(text) == text);
    }
    Expect("a part that begins with 0 is octal", octetsOf("010.0.0.1") == "8.0.0.1");
    Expect("a last part may stand for two octets", octetsOf("1.2.3") == "1.2.0.3");
    for (const char* text : {"256.1.1.1", "1.2.3.4.5", "...", "host", ""}) {
        Expect("the text '" + std::string(text) + "' names no address",
            octetsOf(text) == "255.255.255.255");
    }
}

} // namespace

void CheckNeighbourTable()
{
    CheckAddressTexts();
    CheckRows();
}

void CheckKnownNeighbours()
{
    Expect("both neighbours are in the table, with their physical addresses",
        Facts(platform::ReadNeighbourTable()) ==
            "192.168.77.9 024c7e000009 6\n192.168.77.10 024c7e00000a 6\n");
    CheckRefusedDeletion();
    CheckResolving();
}

} // namespace contract
