#include "simulator/Connection.h"

#include "simulator/platform/ConnectionReset.h"

namespace simulator {

namespace {

constexpr int QuietMs = 50;
constexpr int InputBufferSize = 65536;

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
    const QByteArray bytes = socket->readAll();
    if (!listening) {
        return;
    }
    Take(parser.Take(bytes));
    if (listening && parser.WaitsForQuiet()) {
        quietTimer.start();
    } else {
        quietTimer.stop();
    }
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
    // Steps without a wait go out at once, so that nothing that comes after them finds them
    // waiting.
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
        ReadInput();
        FinishQuietFrame();
    }
    GoDeaf();
    emit Ended();
}

} // namespace simulator
