#pragma once

#include "simulator/Delivery.h"
#include "simulator/FrameParser.h"

#include <QHostAddress>
#include <QObject>
#include <QQueue>
#include <QTcpSocket>
#include <QTimer>

namespace simulator {

/// One client. Cuts what it sends into frames and gives it the answers, in order. Ends the frames
/// whose length is not on the wire once nothing has come for 50 ms. While the client leaves many
/// answers unread, nothing more of it is read: it cannot make the unit hold more than a megabyte or
/// two.
class Connection : public QObject
{
    Q_OBJECT

public:
    /// Takes the connected socket over.
    Connection(QTcpSocket* socket, Generation generation, QObject* parent);

    /// The client's.
    QHostAddress Peer() const { return peer; }

    /// "ADDRESS:PORT" of the client.
    QString PeerText() const;

    /// Queues the steps of one answer behind those of earlier ones.
    void Deliver(const QVector<Delivery>& deliveries);

    /// Ends the connection now. What is still to be delivered is dropped.
    void Close();
    void Reset();

    /// Leaves the connection open, but takes no frame and answers nothing from here on, like a unit
    /// that has left its address.
    void GoDeaf();

signals:
    /// A frame is there. Emitted after the end of the connection as well, for a frame that the end
    /// completes.
    void FrameTaken(const simulator::Frame& frame);

    void AnswerSent(const QByteArray& bytes);

    /// The last signal. The object may be deleted later, not within it.
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
