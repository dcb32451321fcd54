// SPDX-License-Identifier: MIT

#include "tests/support/scripted/ScriptedNeighbours.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <limits>
#include <mutex>
#include <utility>

namespace {

constexpr unsigned Refused = 1;
constexpr int NoLimit = std::numeric_limits<int>::max();

std::vector<platform::NeighbourRow> rows;
QStringList calls;
std::function<void(const QString&)> onCall;
std::mutex recording;
ScriptedNeighbours::Request latestResolution;
int deletesLeft = NoLimit;

QString TextOf(quint32 address)
{
    const auto* octets = reinterpret_cast<const quint8*>(&address);
    return QString("%1.%2.%3.%4").arg(octets[0]).arg(octets[1]).arg(octets[2]).arg(octets[3]);
}

bool IsBelow(const platform::NeighbourRow& left, const platform::NeighbourRow& right)
{
    return std::memcmp(&left.ipAddress, &right.ipAddress, sizeof left.ipAddress) < 0;
}

void Record(const QString& call)
{
    {
        const std::lock_guard<std::mutex> lock(recording);
        calls.append(call);
    }
    if (onCall) {
        onCall(call);
    }
}

} // namespace

void ScriptedNeighbours::Reset()
{
    Empty();
    calls.clear();
    onCall = nullptr;
    latestResolution = Request{};
    deletesLeft = NoLimit;
}

void ScriptedNeighbours::Add(const char* ip, const char* mac)
{
    platform::NeighbourRow row{};
    row.ipAddress = platform::ParseIpv4Address(ip);
    row.physicalAddressLength = 6;
    const QStringList pairs = QString::fromLatin1(mac).split(':');
    std::transform(pairs.cbegin(), pairs.cend(), row.physicalAddress,
        [](const QString& pair) { return static_cast<quint8>(pair.toUInt(nullptr, 16)); });
    rows.push_back(row);
}

void ScriptedNeighbours::Empty()
{
    rows.clear();
}

QStringList ScriptedNeighbours::Addresses()
{
    QStringList addresses;
    for (const platform::NeighbourRow& row : rows) {
        addresses.append(TextOf(row.ipAddress));
    }
    return addresses;
}

void ScriptedNeighbours::RefuseDeletesAfter(int deletes)
{
    deletesLeft = deletes;
}

void ScriptedNeighbours::SetOnCall(std::function<void(const QString&)> action)
{
    onCall = std::move(action);
}

QStringList ScriptedNeighbours::Calls()
{
    const std::lock_guard<std::mutex> lock(recording);
    return calls;
}

QStringList ScriptedNeighbours::Calls(const QString& word)
{
    const QStringList all = Calls();
    QStringList found;
    std::copy_if(all.cbegin(), all.cend(), std::back_inserter(found),
        [&word](const QString& call) { return call.startsWith(word); });
    return found;
}

ScriptedNeighbours::Request ScriptedNeighbours::LatestResolution()
{
    const std::lock_guard<std::mutex> lock(recording);
    return latestResolution;
}

std::vector<platform::NeighbourRow> platform::ReadNeighbourTable()
{
    Record("read");
    std::vector<NeighbourRow> sorted = rows;
    std::stable_sort(sorted.begin(), sorted.end(), IsBelow);
    return sorted;
}

unsigned platform::DeleteNeighbour(const NeighbourRow& row)
{
    Record(QString("delete ") + TextOf(row.ipAddress));
    if (deletesLeft == 0) {
        return Refused;
    }
    --deletesLeft;
    const auto found = std::find_if(rows.begin(), rows.end(),
        [&row](const NeighbourRow& other) { return other.ipAddress == row.ipAddress; });
    rows.erase(found);
    return 0;
}

unsigned platform::ResolveNeighbour(std::uint32_t destination, std::uint32_t source,
    std::uint8_t* physicalAddress, std::uint32_t* length)
{
    {
        const std::lock_guard<std::mutex> lock(recording);
        latestResolution = {source, *length, QVector<quint8>(physicalAddress, physicalAddress + 8)};
    }
    Record(QString("resolve ") + TextOf(destination));
    return 0;
}

std::uint32_t platform::ParseIpv4Address(const char* text)
{
    unsigned octets[4] = {};
    int length = 0;
    const bool ok = std::sscanf(text, "%3u.%3u.%3u.%3u%n", &octets[0], &octets[1], &octets[2],
                        &octets[3], &length) == 4 &&
                    text[length] == 0;
    const quint8 bytes[4] = {static_cast<quint8>(octets[0]), static_cast<quint8>(octets[1]),
        static_cast<quint8>(octets[2]), static_cast<quint8>(octets[3])};
    std::uint32_t address = 0;
    std::memcpy(&address, bytes, sizeof address);
    return ok ? address : ~std::uint32_t{0};
}

void platform::FormatIpv4Address(std::uint32_t address, char* text, int size)
{
    qstrncpy(text, TextOf(address).toLatin1().constData(), static_cast<uint>(size));
}
