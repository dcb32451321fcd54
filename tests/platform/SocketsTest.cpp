#include "platform/Sockets.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QtEndian>
#include <QtTest>

#include <memory>

using platform::SocketHandle;

namespace {

const quint32 Loopback = qToBigEndian(0x7F000001U);

// A connection to a server in this test: one end through platform/, the other through Qt.
class Connection
{
public:
    Connection()
    {
        server.listen(QHostAddress(QHostAddress::LocalHost));
        handle = platform::OpenSocket(1);
        connected = platform::ConnectSocket(handle, Loopback, server.serverPort());
        server.waitForNewConnection(5000);
        peer.reset(server.nextPendingConnection());
    }

    ~Connection() { platform::CloseSocket(handle); }

    // By the peer, once all that was sent to it is read.
    void CloseInOrder()
    {
        peer->disconnectFromHost();
        if (peer->state() != QAbstractSocket::UnconnectedState) {
            peer->waitForDisconnected(5000);
        }
    }

    void Reset()
    {
        // With bytes left unread at its end, closing is a reset.
        platform::SendToSocket(handle, "unread", 6);
        peer->waitForReadyRead(5000);
        platform::SendToSocket(handle, "unread", 6);
        peer->abort();
        peer.reset();
    }

    int Receive()
    {
        char byte = 0;
        return platform::ReceiveFromSocket(handle, &byte, 1);
    }

    QTcpServer server;
    SocketHandle handle = platform::InvalidSocket;
    std::unique_ptr<QTcpSocket> peer;
    int connected = -2;
};

} // namespace

class SocketsTest : public QObject
{
    Q_OBJECT

private slots:
    void socketsStart() { QCOMPARE(platform::StartSockets(257), 0); }

    void streamsAndDatagramsOpen_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<bool>("opens");
        QTest::addRow("stream") << 1 << true;
        QTest::addRow("datagram") << 2 << true;
        QTest::addRow("unknown") << 99 << false;
    }

    void streamsAndDatagramsOpen()
    {
        QFETCH(int, type);
        QFETCH(bool, opens);
        const SocketHandle handle = platform::OpenSocket(static_cast<quint16>(type));
        QCOMPARE(handle != platform::InvalidSocket, opens);
        platform::CloseSocket(handle);
    }

    void everyOptionIsAccepted_data()
    {
        QTest::addColumn<int>("option");
        QTest::addRow("reuse address") << int(platform::SocketOption::ReuseAddress);
        QTest::addRow("out of band inline") << int(platform::SocketOption::OutOfBandInline);
        QTest::addRow("broadcast") << int(platform::SocketOption::Broadcast);
    }

    void everyOptionIsAccepted()
    {
        QFETCH(int, option);
        const auto name = static_cast<platform::SocketOption>(option);
        for (quint16 type = 1; type <= 2; ++type) {
            const SocketHandle handle = platform::OpenSocket(type);
            QCOMPARE(platform::EnableSocketOption(handle, name), 0);
            platform::CloseSocket(handle);
        }
        QCOMPARE(platform::EnableSocketOption(platform::InvalidSocket, name), -1);
    }

    void aHostResolvesToItsFirstAddress_data()
    {
        QTest::addColumn<QByteArray>("host");
        QTest::addColumn<bool>("resolves");
        QTest::addColumn<QByteArray>("octets");
        QTest::addRow("dotted") << QByteArray("127.1.2.3") << true << QByteArray("7f010203");
        QTest::addRow("too large an octet") << QByteArray("127.0.0.256") << false << QByteArray();
        QTest::addRow("five parts") << QByteArray("1.2.3.4.5") << false << QByteArray();
        QTest::addRow("blank in it") << QByteArray("127.0.0. 1") << false << QByteArray();
        QTest::addRow("empty") << QByteArray("") << false << QByteArray();
    }

    void aHostResolvesToItsFirstAddress()
    {
        QFETCH(QByteArray, host);
        QFETCH(QByteArray, octets);
        quint32 address = 0;
        QTEST(platform::ResolveHost(host.constData(), address), "resolves");
        const QByteArray bytes(reinterpret_cast<const char*>(&address), 4);
        QCOMPARE(bytes.toHex(), octets.isEmpty() ? QByteArray("00000000") : octets);
    }

    void bytesGoBothWays()
    {
        Connection connection;
        QCOMPARE(connection.connected, 0);
        QCOMPARE(platform::SendToSocket(connection.handle, "to\0it", 5), 5);
        QVERIFY(connection.peer->waitForReadyRead(5000));
        QCOMPARE(connection.peer->readAll(), QByteArray("to\0it", 5));
        connection.peer->write("back");
        connection.peer->waitForBytesWritten(5000);
        char buffer[8] = {};
        QCOMPARE(platform::ReceiveFromSocket(connection.handle, buffer, 2), 2);
        QCOMPARE(platform::ReceiveFromSocket(connection.handle, buffer + 2, 6), 2);
        QCOMPARE(QByteArray(buffer), QByteArray("back"));
    }

    void nobodyListensIsAFailure()
    {
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress(QHostAddress::LocalHost)));
        const quint16 port = server.serverPort();
        server.close();
        const SocketHandle handle = platform::OpenSocket(1);
        QCOMPARE(platform::ConnectSocket(handle, Loopback, port), -1);
        QVERIFY(platform::LastSocketError() != 0);
        platform::CloseSocket(handle);
    }

    void anEmptyInputOfANonBlockingSocketIsAFailure()
    {
        Connection connection;
        QCOMPARE(platform::MakeSocketNonBlocking(connection.handle), 0);
        QCOMPARE(connection.Receive(), -1);
        QCOMPARE(connection.Receive(), -1);
    }

    void anOrderlyCloseGivesZeroEveryTime()
    {
        Connection connection;
        connection.peer->write("ab");
        connection.peer->waitForBytesWritten(5000);
        connection.CloseInOrder();
        QCOMPARE(connection.Receive(), 1);
        QCOMPARE(connection.Receive(), 1);
        for (int time = 0; time < 5; ++time) {
            QCOMPARE(connection.Receive(), 0);
        }
    }

    void aResetGivesMinusOneEveryTime()
    {
        Connection connection;
        connection.Reset();
        for (int time = 0; time < 5; ++time) {
            QCOMPARE(connection.Receive(), -1);
        }
    }

    void sendingToABrokenConnectionIsMinusOneAndRaisesNoSignal()
    {
        Connection connection;
        connection.Reset();
        QCOMPARE(connection.Receive(), -1); // the reset has arrived
        for (int time = 0; time < 5; ++time) {
            QCOMPARE(platform::SendToSocket(connection.handle, "x", 1), -1);
        }
    }

    void aClosedHandleFailsEverywhere_data()
    {
        QTest::addColumn<qulonglong>("handle");
        QTest::addRow("never given") << qulonglong(platform::InvalidSocket);
        QTest::addRow("zero") << 0ULL;
        QTest::addRow("bare descriptor") << 1ULL;
        QTest::addRow("made up") << 0x0012345600000001ULL;
        QTest::addRow("descriptor out of range") << 0x00000001FFFFFFF0ULL;
        const SocketHandle closed = platform::OpenSocket(1);
        platform::CloseSocket(closed);
        QTest::addRow("closed") << qulonglong(closed);
    }

    void aClosedHandleFailsEverywhere()
    {
        QFETCH(qulonglong, handle);
        char byte = 0;
        QCOMPARE(platform::SendToSocket(handle, "x", 1), -1);
        QCOMPARE(platform::ReceiveFromSocket(handle, &byte, 1), -1);
        QCOMPARE(platform::MakeSocketNonBlocking(handle), -1);
        QCOMPARE(platform::ConnectSocket(handle, Loopback, 9), -1);
        platform::CloseSocket(handle);
    }

    void aStaleHandleNeverReachesTheSocketThatReusesItsDescriptor()
    {
        const SocketHandle stale = platform::OpenSocket(1);
        platform::CloseSocket(stale);
        const SocketHandle fresh = platform::OpenSocket(1);
        // The system gives the lowest free descriptor: the low halves are the same.
        QCOMPARE(quint32(fresh), quint32(stale));
        QVERIFY(fresh != stale);
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress(QHostAddress::LocalHost)));
        QCOMPARE(platform::ConnectSocket(fresh, Loopback, server.serverPort()), 0);
        QCOMPARE(platform::SendToSocket(stale, "x", 1), -1);
        char byte = 0;
        QCOMPARE(platform::ReceiveFromSocket(stale, &byte, 1), -1);
        platform::CloseSocket(stale);
        QCOMPARE(platform::SendToSocket(fresh, "y", 1), 1);
        platform::CloseSocket(fresh);
    }

    void noHandleIsGivenTwice()
    {
        QSet<qulonglong> handles;
        for (int time = 0; time < 1000; ++time) {
            const SocketHandle handle = platform::OpenSocket(2);
            handles << handle;
            platform::CloseSocket(handle);
        }
        QCOMPARE(handles.size(), 1000);
    }
};

QTEST_GUILESS_MAIN(SocketsTest)
#include "SocketsTest.moc"
