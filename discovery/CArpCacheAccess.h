// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// Reads, clears and fills the system's table of neighbours (its ARP cache). The tool never looks
/// at an ARP reply itself: it lets the system resolve an address and reads the answer out of the
/// table.
class CArpCacheAccess
{
public:
    CArpCacheAccess();

    /// Makes the system resolve an address, in network byte order. Blocks until the system has an
    /// answer or has given up, which takes some seconds for a silent address. The outcome shows in
    /// the table only.
    explicit CArpCacheAccess(quint32 ipAddress);

    ~CArpCacheAccess();

    /// Deletes the rows one by one and stops at the first that the system refuses. Without the
    /// privilege that is the very first. Always false.
    bool ClearArpCache();

    /// Looks up a dotted address without leading zeros. False, and `mac` as it was, when the table
    /// has no row for it. A row that is not resolved gives "00:00:00:00:00:00".
    bool GetMacFromArpCache(QString& mac, QString ip);
};
