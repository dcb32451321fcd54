// SPDX-License-Identifier: MIT

#pragma once

#include "simulator/Delivery.h"
#include "simulator/FrameParser.h"

#include <QHostAddress>
#include <QObject>
#include <QQueue>
#include <QTcpSocket>
#include <QTimer>

namespace simulator {

/// One client. Cuts what the client sends into frames, and gives it the answers in order. A frame
/// whose length is not on the wire ends once nothing has come for 50 ms. While the client leaves
/// many answers unread, nothing more is read from it. It therefore cannot make the unit hold more
/// than a megabyte or two.
class Connection : public QObject
{
    Q_OBJECT

public:
    /// Takes over the connected socket.
    Connection(QTcpSocket* socket, Generation generation, QObject* parent);

    /// The client's address.
    QHostAddress Peer() const { return peer; }

    /// "ADDRESS:PORT" of the client.
    QString PeerText() const;

    /// Queues the steps of one answer behind those of earlier answers.
    void Deliver(const QVector<Delivery>& deliveries);

    /// Both end the connection now and drop what is still to be delivered.
    void Close();
    void Reset();

    /// Leaves the connection open. From here on it takes no frame and answers nothing, like a unit
    /// that has left its address.
    void GoDeaf();

signals:
    /// A frame is there. This is also emitted when the connection has ended, for a frame that its
    /// end completes.
    void FrameTaken(const simulator::Frame& frame);

    void AnswerSent(const QByteArray& bytes);

    /// The last signal. Its receiver must not delete the object at once, but may do so later.
    void Ended();

private:
    void ReadInput();
    void ReadOn();
    bool OwesMuch() const;
    void Take(const QVector<Frame>& frames);
    void FinishQuietFrame();
    void ScheduleDelivery();
    void DeliverNext();
    void ReportEnd();

    QTcpSocket* socket;
    FrameParser parser;
    QTimer quietTimer;
    QTimer deliveryTimer;
    QQueue<Delivery> pending;
    QHostAddress peer;
    QString peerText;
    bool listening = true;
};

} // namespace simulator
