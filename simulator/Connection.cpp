// SPDX-License-Identifier: MIT

#include "simulator/Connection.h"

#include "simulator/platform/ConnectionReset.h"

#include <numeric>

namespace simulator {

namespace {

constexpr int QuietMs = 50;
constexpr int InputBufferSize = 65536;
constexpr qint64 MostOwed = 65536;
// What is read at a time. It is little, because a command of eight bytes may have an answer of
// 65535.
constexpr qint64 PortionSize = 64;

} // namespace

Connection::Connection(QTcpSocket* connectedSocket, Generation generation, QObject* parent)
    : QObject(parent)
    , socket(connectedSocket)
    , parser(generation)
    , peer(socket->peerAddress())
    , peerText(QStringLiteral("%1:%2").arg(peer.toString()).arg(socket->peerPort()))
{
    socket->setParent(this);
    socket->setReadBufferSize(InputBufferSize);
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    quietTimer.setSingleShot(true);
    quietTimer.setInterval(QuietMs);
    deliveryTimer.setSingleShot(true);
    deliveryTimer.setTimerType(Qt::PreciseTimer);
    connect(socket, &QTcpSocket::readyRead, this, &Connection::ReadInput);
    connect(socket, &QTcpSocket::disconnected, this, &Connection::ReportEnd);
    // Queued, because an answer may leave while the frames behind it are still to be taken.
    connect(socket, &QTcpSocket::bytesWritten, this, &Connection::ReadOn, Qt::QueuedConnection);
    connect(&quietTimer, &QTimer::timeout, this, &Connection::FinishQuietFrame);
    connect(&deliveryTimer, &QTimer::timeout, this, &Connection::DeliverNext);
}

QString Connection::PeerText() const
{
    return peerText;
}

void Connection::Deliver(const QVector<Delivery>& deliveries)
{
    for (const Delivery& delivery : deliveries) {
        pending.enqueue(delivery);
    }
    ScheduleDelivery();
}

void Connection::Close()
{
    GoDeaf();
    socket->disconnectFromHost();
}

void Connection::Reset()
{
    GoDeaf();
    platform::ResetOnClose(socket->socketDescriptor());
    socket->abort();
}

void Connection::GoDeaf()
{
    listening = false;
    quietTimer.stop();
    deliveryTimer.stop();
    pending.clear();
}

void Connection::ReadInput()
{
    quietTimer.stop();
    if (!listening) {
        socket->readAll();
    }
    while (listening && socket->bytesAvailable() > 0 && !OwesMuch()) {
        Take(parser.Take(socket->read(PortionSize)));
    }
    if (listening && socket->bytesAvailable() == 0 && parser.WaitsForQuiet()) {
        quietTimer.start();
    }
}

void Connection::ReadOn()
{
    if (socket->bytesAvailable() > 0) {
        ReadInput();
    }
}

bool Connection::OwesMuch() const
{
    const auto add = [](qint64 sum, const Delivery& delivery) {
        return sum + delivery.bytes.size();
    };
    return std::accumulate(pending.cbegin(), pending.cend(), socket->bytesToWrite(), add) >
           MostOwed;
}

void Connection::Take(const QVector<Frame>& frames)
{
    for (const Frame& frame : frames) {
        if (listening) {
            emit FrameTaken(frame);
        }
    }
}

void Connection::FinishQuietFrame()
{
    Take(parser.InputQuiet());
}

void Connection::ScheduleDelivery()
{
    // Steps without a wait go out at once. Nothing that comes later then finds them waiting.
    while (!deliveryTimer.isActive() && !pending.isEmpty()) {
        if (pending.head().delayMs > 0) {
            deliveryTimer.start(pending.head().delayMs);
        } else {
            DeliverNext();
        }
    }
}

void Connection::DeliverNext()
{
    const Delivery delivery = pending.dequeue();
    if (!delivery.bytes.isEmpty() && socket->state() == QAbstractSocket::ConnectedState) {
        socket->write(delivery.bytes);
        socket->flush();
        emit AnswerSent(delivery.bytes);
    }
    if (delivery.ending == Ending::Closed) {
        Close();
    } else if (delivery.ending == Ending::Reset) {
        Reset();
    } else {
        ScheduleDelivery();
    }
}

void Connection::ReportEnd()
{
    if (listening) {
        Take(parser.Take(socket->readAll()));
        FinishQuietFrame();
    }
    GoDeaf();
    emit Ended();
}

} // namespace simulator
