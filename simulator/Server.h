// SPDX-License-Identifier: MIT

#pragma once

#include "simulator/Connection.h"
#include "simulator/Faults.h"
#include "simulator/Unit.h"

#include <QObject>
#include <QTcpServer>

namespace simulator {

struct ServerSettings
{
    quint16 port = 50000;
    /// Empty: addresses and MAC addresses change in the unit only.
    QString interfaceName;
    /// Where the EEPROM goes at every change. Empty: nowhere.
    QString saveEeprom;
    /// Where a complete firmware image goes. Empty: nowhere.
    QString saveFirmware;
    int awayMs = 3000;
    int slowMs = 1500;
    bool trace = false;
};

/// The unit on the network. It listens on the unit's address, hands the commands of its clients to
/// the unit, and gives the answers back, with the faults that are set. It also carries out what a
/// command asks of the world around the unit.
class Server : public QObject
{
    Q_OBJECT

public:
    Server(const UnitSettings& unitSettings, const ServerSettings& settings);

    /// Begins to listen, unless it listens already. Says that it does, or that it failed.
    void Start();

    Faults& SetFaults() { return faults; }
    const Unit& TheUnit() const { return unit; }
    int ClientCount() const { return connections.size(); }

    /// Both end the connections of all clients now.
    void CloseClients();
    void ResetClients();

signals:
    /// A line for the standard output.
    void Said(const QString& line);

    /// A line for the standard error output.
    void Complained(const QString& line);

    /// The unit cannot be reached any more.
    void Failed();

private:
    void AcceptClients();
    void Forget(Connection* connection);
    void TakeFrame(Connection* connection, const Frame& frame);

    void SaveFiles(Effects effects);
    void ActOn(Effects effects);
    bool Listen();
    void LeaveOldAddress();
    bool MoveTo(const QHostAddress& address, const QHostAddress& mask);
    void MoveInterface(const QHostAddress& address, const QHostAddress& mask);
    void ChangeMac();
    void Announce();
    void GoAway();
    void ComeBack();
    void Save(const QString& path, const QByteArray& bytes);

    Unit unit;
    ServerSettings settings;
    Faults faults;
    QTcpServer listener;
    QVector<Connection*> connections;
    QTimer moveTimer;
    QTimer awayTimer;
    // Where the unit is now. While it is to move, the unit itself has its new address already.
    QHostAddress currentAddress;
    QHostAddress currentMask;
};

} // namespace simulator
