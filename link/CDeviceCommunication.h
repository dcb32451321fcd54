// SPDX-License-Identifier: MIT

#pragma once

#include "link/RavoSocketStream.h"

#include <QByteArray>
#include <QMap>
#include <QScopedPointer>
#include <QString>
#include <QThread>
#include <QVector>

#include <atomic>

class RavoSocket;

/// The one link to the unit: a TCP connection to port 50000, and a method for each command.
///
/// As a thread it only makes the connection. Commands run in the calling thread, which is always
/// the main one, and block it until they are done. That takes at least 10 ms before each send, and
/// the waits that the methods name.
///
/// Commands do not look at IsConnected(); their callers do. On a link that is down a command fails
/// as on a broken one. A failed send takes the link down and emits ConnectionLost().
class CDeviceCommunication : public QThread
{
    Q_OBJECT

public:
    /// How a wait for an acknowledgement ended.
    enum AckResult : ushort
    {
        AckRefused = 0,
        AckDone = 1,
        AckUnclear = 2, ///< no answer, or another one
    };

    CDeviceCommunication();
    ~CDeviceCommunication() override;

    /// Drops the link and any earlier attempt, and starts an attempt in the background.
    /// IsConnected() tells when it has succeeded; nothing tells that it failed. The result is the
    /// state of the link right after the start, and so usually false. Throws
    /// RavoSocket::RavoSocketException.
    bool StartConnection(QByteArray host);
    /// Drops the link, without a signal.
    void Disconnect();
    bool IsConnected() const;

    /// An AckResult, of the latest wait for an acknowledgement. AckRefused before the first one,
    /// and after a firmware block that could not be sent.
    ushort GetLastResult() const;

    /// "*IDN?": the answer with its carriage return. In front of it stands a zero character for
    /// each millisecond that the unit took to begin. In a later gap the last character is repeated.
    /// 2000 characters at most, in about as many milliseconds; a silent unit gives 2000 zero
    /// characters.
    QString ReadIdentity();
    /// CF0: the configuration block of `size` bytes. All of it has to be there a second later.
    /// False leaves `buffer` alone.
    bool ReadConfiguration(uchar* buffer, ushort size);
    /// CF1: 4 octets of the address, 4 of the mask. The unit does not answer.
    bool SendIpConfiguration(const uchar* addressAndMask);
    /// The long CF2, for firmware below 3.0. Only the parameters 0 to 9 of the maps travel, 0 for a
    /// missing one, and the first 60 characters of `identity`. The unit does not answer.
    bool SendDeviceConfiguration(QString identity, QString mac, QString ip, QString mask,
        QMap<int, ushort> motor0, QMap<int, ushort> motor1);
    /// The short CF2, for firmware 3.0 and later. A text of fewer than 10 characters is not sent. A
    /// text without six parts is sent as six zeros. The unit does not answer.
    bool SendMacAddress(QString mac);
    /// CF3: 1220 bytes as the unit takes them, see the firmware transfer. Waits for the
    /// acknowledgement.
    bool SendFirmwareBlock(const uchar* block);
    /// CF4: 8 bytes, the sum over all blocks and the size, both big-endian. The unit does not
    /// answer.
    bool SendFirmwareChecksum(const uchar* sumAndSize);
    /// CF5: the unit installs what it has received. It does not answer.
    bool StartFirmwareUpdate();
    /// CF6: `block` is a big-endian EEPROM address and `length` data bytes. More than 1200 data
    /// bytes are not sent. Waits for the acknowledgement.
    bool WriteEeprom(const uchar* block, ushort length);
    /// CF7: `request` is a big-endian length and address. The length is turned into host order in
    /// place. Appends that many bytes to `out` a second later, 255 for each that has not come.
    /// False only when the request could not be sent.
    bool ReadEeprom(uchar* request, QVector<uchar>& out);
    /// CF8. True when sent; the unit's answer is GetLastResult() only.
    bool ValidateFirmware();
    /// CF9. A frame of 1200 bytes or more is not sent. Waits for the acknowledgement.
    bool SendOptions(QString text);
    /// CF10. A frame of 1200 bytes or more is not sent. Waits for the acknowledgement.
    bool SendOptionDescriptions(QString text);
    /// HCF for `channel` 0, VCF for 1. Each value is sent big-endian. Another channel is not sent.
    /// The unit does not answer.
    bool SendMotorConfiguration(int channel, QVector<ushort> values);
    /// "GET:OPTION:INTERNAL?": what came of the answer in about two seconds, with its carriage
    /// return. Empty from a silent unit.
    QString ReadOptions();
    /// "GET:OPTION:DESC?": as ReadOptions().
    QString ReadOptionDescriptions();

signals:
    /// Emitted in the thread of the command whose send failed, before that command returns.
    void ConnectionLost();

protected:
    /// The attempt: blocks in the system's connect.
    void run() override;

private:
    void EndAttempt();
    void CloseSocket();
    RavoSocketStream& Stream();

    bool SendFrame(const QByteArray& frame);
    bool SendAcknowledgedFrame(const QByteArray& frame);
    bool SendTextCommand(QString mnemonic, QString text);
    QString QueryText(QString command);
    int SendRaw(char* buffer, uint length);
    void DrainInput();
    ushort WaitForAck(int polls);

    QScopedPointer<RavoSocket> socket;
    QScopedPointer<RavoSocketStream> stream;
    /// What the commands use while there is no stream: every send on it fails.
    RavoSocketStream brokenStream;
    std::atomic<bool> connected{false};
    QByteArray host;
    std::atomic<qint32> connectState;
    quint16 lastResult = AckRefused;
};

/// The one object, valid from before main until the process ends.
CDeviceCommunication* TheDeviceCommunication();
