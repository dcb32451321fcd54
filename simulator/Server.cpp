// SPDX-License-Identifier: MIT

#include "simulator/Server.h"

#include "simulator/HostInterface.h"

#include <QFile>

namespace simulator {

namespace {

// The time from the command to the move. It leaves time to whoever waits for the log. It is less
// than the 100 ms after which the tool looks for the unit at its new address.
constexpr int MoveDelayMs = 50;

QString PlaceText(const QHostAddress& address, quint16 port)
{
    return QStringLiteral("%1:%2").arg(address.toString()).arg(port);
}

} // namespace

Server::Server(const UnitSettings& unitSettings, const ServerSettings& serverSettings)
    : unit(unitSettings)
    , settings(serverSettings)
    , currentAddress(unitSettings.address)
    , currentMask(unitSettings.mask)
{
    moveTimer.setSingleShot(true);
    awayTimer.setSingleShot(true);
    connect(&listener, &QTcpServer::newConnection, this, &Server::AcceptClients);
    connect(&moveTimer, &QTimer::timeout, this, &Server::LeaveOldAddress);
    connect(&awayTimer, &QTimer::timeout, this, &Server::ComeBack);
}

void Server::Start()
{
    if (!Listen()) {
        emit Failed();
        return;
    }
    settings.port = listener.serverPort();
    emit Said(QStringLiteral("ready ") + PlaceText(currentAddress, settings.port));
}

bool Server::Listen()
{
    if (listener.isListening() || listener.listen(currentAddress, settings.port)) {
        return true;
    }
    emit Complained(QStringLiteral("cannot listen on %1: %2")
                        .arg(PlaceText(currentAddress, settings.port), listener.errorString()));
    return false;
}

void Server::CloseClients()
{
    const QVector<Connection*> all = connections;
    for (Connection* connection : all) {
        connection->Close();
    }
}

void Server::ResetClients()
{
    const QVector<Connection*> all = connections;
    for (Connection* connection : all) {
        connection->Reset();
    }
}

void Server::AcceptClients()
{
    while (QTcpSocket* socket = listener.nextPendingConnection()) {
        auto* connection = new Connection(socket, unit.CurrentGeneration(), this);
        connections.append(connection);
        connect(connection, &Connection::FrameTaken, this,
            [this, connection](const Frame& frame) { TakeFrame(connection, frame); });
        connect(connection, &Connection::Ended, this, [this, connection] { Forget(connection); });
        connect(connection, &Connection::AnswerSent, this, [this](const QByteArray& bytes) {
            if (settings.trace) {
                emit Said(QStringLiteral("> ") + HexText(bytes));
            }
        });
        emit Said(QStringLiteral("connected ") + connection->PeerText());
    }
}

void Server::Forget(Connection* connection)
{
    connections.removeOne(connection);
    connection->deleteLater();
    emit Said(QStringLiteral("disconnected"));
}

void Server::TakeFrame(Connection* connection, const Frame& frame)
{
    emit Said(FrameText(frame));
    if (frame.command == Command::Unknown) {
        return;
    }
    const FaultKind fault = faults.Meet(frame.command);
    const QByteArray wrongAnswer = unit.WrongAnswer(frame);
    const Outcome outcome =
        fault == FaultKind::Refusing ? unit.Refuse(frame) : unit.CarryOut(frame);
    // The files come before the answer. Whoever has the answer then finds them up to date.
    SaveFiles(outcome.effects);
    connection->Deliver(Deliveries(fault, outcome.answer, wrongAnswer, settings.slowMs));
    ActOn(outcome.effects);
}

void Server::SaveFiles(Effects effects)
{
    if (effects.testFlag(Effect::EepromChanged)) {
        Save(settings.saveEeprom, unit.State().eeprom);
    }
    if (effects.testFlag(Effect::ImageComplete)) {
        Save(settings.saveFirmware, unit.FirmwareImage());
    }
}

void Server::ActOn(Effects effects)
{
    if (effects.testFlag(Effect::MacChanged)) {
        ChangeMac();
    }
    if (effects.testFlag(Effect::AddressChanged)) {
        moveTimer.start(MoveDelayMs);
    }
    if (effects.testFlag(Effect::Restarting)) {
        GoAway();
    }
}

void Server::LeaveOldAddress()
{
    const QHostAddress oldAddress = currentAddress;
    const QHostAddress oldMask = currentMask;
    if (!MoveTo(unit.State().address, unit.State().mask)) {
        unit.KeepAddress(oldAddress, oldMask);
        MoveTo(oldAddress, oldMask);
    } else if (currentAddress != oldAddress) {
        for (Connection* connection : qAsConst(connections)) {
            connection->GoDeaf();
        }
    }
    // A unit that is away does not listen now. It starts on its address when it is back.
    if (awayTimer.isActive()) {
        listener.close();
    } else {
        Start();
    }
    Announce();
}

bool Server::MoveTo(const QHostAddress& address, const QHostAddress& mask)
{
    if (address != currentAddress) {
        listener.close();
    }
    MoveInterface(address, mask);
    return Listen();
}

void Server::MoveInterface(const QHostAddress& address, const QHostAddress& mask)
{
    QString error;
    if (!settings.interfaceName.isEmpty() &&
        !HostInterface(settings.interfaceName)
             .ReplaceAddress(currentAddress, currentMask, address, mask, error)) {
        emit Complained(error);
    }
    currentAddress = address;
    currentMask = mask;
}

void Server::ChangeMac()
{
    QString error;
    if (!settings.interfaceName.isEmpty() &&
        !HostInterface(settings.interfaceName).SetMac(unit.State().mac, error)) {
        emit Complained(error);
    }
    Announce();
}

void Server::Announce()
{
    if (settings.interfaceName.isEmpty()) {
        return;
    }
    for (const Connection* connection : qAsConst(connections)) {
        HostInterface::AnnounceTo(connection->Peer());
    }
}

void Server::GoAway()
{
    listener.close();
    CloseClients();
    awayTimer.start(settings.awayMs);
}

void Server::ComeBack()
{
    unit.FinishUpdate();
    Start();
}

void Server::Save(const QString& path, const QByteArray& bytes)
{
    if (path.isEmpty()) {
        return;
    }
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush()) {
        emit Complained(QStringLiteral("cannot write %1: %2").arg(path, file.errorString()));
    }
}

} // namespace simulator
