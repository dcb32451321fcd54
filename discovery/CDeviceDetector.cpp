// SPDX-License-Identifier: MIT

#include "discovery/CDeviceDetector.h"

#include "platform/NeighbourTable.h"
#include "platform/Sleep.h"

#include <QProgressDialog>
#include <QStringList>

namespace {

constexpr int Octets = 4;

// These two waits give an address' thread the time to pick it up. They also keep the rate of
// requests at twelve a second.
constexpr unsigned WaitBeforeCancelCheckMs = 5;
constexpr unsigned WaitBeforeNextAddressMs = 80;
constexpr unsigned WaitForLastAnswersMs = 100;

QStringList OctetsOf(const QString& ip)
{
    return ip.split(QLatin1Char('.'));
}

quint16 LastOctet(const QString& ip)
{
    return static_cast<quint16>(OctetsOf(ip).value(Octets - 1).toUInt());
}

QString WithLastOctet(const QString& ip, int octet)
{
    QStringList octets = OctetsOf(ip);
    octets[Octets - 1] = QString::number(octet);
    return octets.join(QLatin1Char('.'));
}

quint32 AddressOf(const QString& ip)
{
    return platform::ParseIpv4Address(ip.toLatin1().constData());
}

void ShowProgress(QProgressDialog* progress, int value)
{
    progress->setValue(value);
    progress->repaint();
}

} // namespace

CDeviceDetector::CDeviceDetector(QObject* parent)
    : QObject(parent)
    , CThreadObject(QStringLiteral("ARPThread"))
    , addressForThread(AddressOf(currentIpAddress))
{
}

CDeviceDetector::~CDeviceDetector()
{
    CloseToThreads();
}

bool CDeviceDetector::SearchDevices(
    const QString& startIp, const QString& endIp, QProgressDialog* progress)
{
    if (OctetsOf(startIp).size() != Octets || OctetsOf(endIp).size() != Octets ||
        !IsValidIpRange(startIp, endIp)) {
        return false;
    }
    ClearArpCache();
    const int first = LastOctet(startIp);
    const int last = LastOctet(endIp);
    progress->setMinimum(first);
    progress->setMaximum(2 * last);
    const bool complete = ProvokeAnswers(startIp, first, last, progress);
    platform::Sleep(WaitForLastAnswersMs);
    return complete && ReportAnswers(startIp, first, last, progress);
}

bool CDeviceDetector::ProvokeAnswers(
    const QString& startIp, int first, int last, QProgressDialog* progress)
{
    for (int octet = first; octet <= last; ++octet) {
        ShowProgress(progress, octet);
        SetCurrentIpAddress(WithLastOctet(startIp, octet));
        StartThread();
        platform::Sleep(WaitBeforeCancelCheckMs);
        if (progress->wasCanceled()) {
            return false;
        }
        platform::Sleep(WaitBeforeNextAddressMs);
    }
    return true;
}

bool CDeviceDetector::ReportAnswers(
    const QString& startIp, int first, int last, QProgressDialog* progress)
{
    for (int octet = first; octet <= last; ++octet) {
        const QString ip = WithLastOctet(startIp, octet);
        ShowProgress(progress, last + octet);
        if (GetMacFromArpCache(lastMacAddress, ip)) {
            emit DeviceFound(sDEVICE{ip, lastMacAddress});
        }
        if (progress->wasCanceled()) {
            return false;
        }
    }
    return true;
}

bool CDeviceDetector::IsValidIpRange(const QString& startIp, const QString& endIp) const
{
    const quint16 first = LastOctet(startIp);
    const quint16 last = LastOctet(endIp);
    return first >= 1 && first <= last && last <= 255;
}

bool CDeviceDetector::ResolveMacAddress(const QString& ip, QString& mac)
{
    mac.clear();
    const CArpCacheAccess resolution(AddressOf(ip));
    return GetMacFromArpCache(mac, ip);
}

void CDeviceDetector::OnThreadStart() {}

int CDeviceDetector::ThreadMain()
{
    const quint32 address = addressForThread;
    LeaveObject();
    const CArpCacheAccess resolution(address);
    return 1;
}

void CDeviceDetector::OnThreadEnd() {}

void CDeviceDetector::SetCurrentIpAddress(const QString& ip)
{
    currentIpAddress = ip;
    addressForThread = AddressOf(ip);
}
