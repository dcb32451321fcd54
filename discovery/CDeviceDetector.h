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

    /// Searches the start address's /24 network from the last octet of `startIp` to that of
    /// `endIp`, and emits DeviceFound() for each host that is in the system's table afterwards.
    /// Blocks for 85 ms an address and keeps the window alive through `progress`, whose closing
    /// cancels. False when the range is refused or the search was cancelled.
    bool SearchDevices(const QString& startIp, const QString& endIp, QProgressDialog* progress);

    /// Looks at the last octets only: both from 1 to 255, and in order.
    bool IsValidIpRange(const QString& startIp, const QString& endIp) const;

    /// The MAC address of one host. Empties `mac`, blocks until the system has resolved the address
    /// or given up, some seconds for a silent one, and answers whether the system's table has it.
    bool ResolveMacAddress(const QString& ip, QString& mac);

    void OnThreadStart() override;
    int ThreadMain() override;
    void OnThreadEnd() override;

signals:
    /// Each host in the table, whoever made it.
    void DeviceFound(sDEVICE sDeviceToAdd);

private:
    bool ProvokeAnswers(const QString& startIp, int first, int last, QProgressDialog* progress);
    bool ReportAnswers(const QString& startIp, int first, int last, QProgressDialog* progress);
    void SetCurrentIpAddress(const QString& ip);

    QString currentIpAddress;
    QString lastMacAddress;
    std::atomic<quint32> addressForThread; ///< currentIpAddress as the search's threads may read it
};
