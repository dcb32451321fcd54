// SPDX-License-Identifier: MIT

#pragma once

#include "discovery/CArpCacheAccess.h"
#include "discovery/CThreadObject.h"
#include "discovery/sDEVICE.h"

#include <QObject>

#include <atomic>

class QProgressDialog;

/// Finds the hosts of an address range that answer to ARP. May be destroyed while threads of a
/// search still wait for silent addresses.
class CDeviceDetector : public QObject, public CArpCacheAccess, public CThreadObject
{
    Q_OBJECT

public:
    explicit CDeviceDetector(QObject* parent = nullptr);
    ~CDeviceDetector() override;

    /// Searches the /24 network of the start address, from the last octet of `startIp` to that of
    /// `endIp`. Emits DeviceFound() for each host that is in the system's table afterwards. Blocks
    /// for 85 ms an address and keeps the window alive through `progress`. Closing that dialog
    /// cancels the search. False when the range is refused or the search was cancelled.
    bool SearchDevices(const QString& startIp, const QString& endIp, QProgressDialog* progress);

    /// Looks at the last octets only: both from 1 to 255, and in order.
    bool IsValidIpRange(const QString& startIp, const QString& endIp) const;

    /// The MAC address of one host. Empties `mac` first. Blocks until the system has resolved the
    /// address or given up, which takes some seconds for a silent one. True when the system's table
    /// has the address.
    bool ResolveMacAddress(const QString& ip, QString& mac);

    void OnThreadStart() override;
    int ThreadMain() override;
    void OnThreadEnd() override;

signals:
    /// Emitted for each host in the system's table, whoever made it known to the system.
    void DeviceFound(sDEVICE sDeviceToAdd);

private:
    bool ProvokeAnswers(const QString& startIp, int first, int last, QProgressDialog* progress);
    bool ReportAnswers(const QString& startIp, int first, int last, QProgressDialog* progress);
    void SetCurrentIpAddress(const QString& ip);

    QString currentIpAddress;
    QString lastMacAddress;
    std::atomic<quint32> addressForThread; ///< currentIpAddress as the search's threads may read it
};
