// SPDX-License-Identifier: MIT

#include "platform/Sockets.h"

#include "platform/Sleep.h"
#include "tests/platform/contract/Contracts.h"
#include "tests/platform/contract/Peer.h"
#include "tests/platform/contract/Results.h"

#include <array>
#include <cstring>
#include <set>
#include <string>

using platform::SocketHandle;
using platform::SocketOption;
using results::Expect;

namespace contract {
namespace {

constexpr std::uint16_t Version1Point1 = 257;
constexpr std::uint16_t Stream = 1;
constexpr std::uint16_t Datagram = 2;

std::string Octets(std::uint32_t address)
{
    std::string octets(sizeof address, '\0');
    std::memcpy(&octets[0], &address, sizeof address);
    return octets;
}

std::uint32_t Loopback()
{
    std::uint32_t address = 0;
    std::memcpy(&address, "\x7f\x00\x00\x01", sizeof address);
    return address;
}

// One end through platform/, the other the peer's.
struct Connection
{
    Connection()
        : handle(platform::OpenSocket(Stream))
        , connected(platform::ConnectSocket(handle, Loopback(), peer.Port()))
        , accepted(connected == 0 && peer.Accept())
    {
    }
    ~Connection() { platform::CloseSocket(handle); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    int Receive()
    {
        char byte = 0;
        return platform::ReceiveFromSocket(handle, &byte, 1);
    }

    int Send() { return platform::SendToSocket(handle, "x", 1); }

    Peer peer;
    SocketHandle handle;
    int connected;
    bool accepted;
};

template<typename Call>
bool GivesEveryTime(int result, Call call)
{
    bool every = true;
    for (int time = 0; time < 5; ++time) {
        every = call() == result && every;
    }
    return every;
}

// False when it still has not after a multiple of what any system needs.
template<typename Call>
bool ComesToGive(int result, Call call)
{
    for (int time = 0; time < 1000; ++time) {
        if (call() == result) {
            return true;
        }
        platform::Sleep(10);
    }
    return false;
}

void CheckStart()
{
    Expect("sockets start with version 1.1", platform::StartSockets(Version1Point1) == 0);
    Expect("starting them again does no harm", platform::StartSockets(Version1Point1) == 0);
}

bool Opens(std::uint16_t type)
{
    const SocketHandle handle = platform::OpenSocket(type);
    platform::CloseSocket(handle);
    return handle != platform::InvalidSocket;
}

bool TakesEveryOption(std::uint16_t type)
{
    const SocketHandle handle = platform::OpenSocket(type);
    bool takes = true;
    for (const SocketOption option :
        {SocketOption::ReuseAddress, SocketOption::OutOfBandInline, SocketOption::Broadcast}) {
        takes = platform::EnableSocketOption(handle, option) == 0 && takes;
    }
    platform::CloseSocket(handle);
    return takes;
}

void CheckOpening()
{
    Expect("a stream socket opens", Opens(Stream));
    Expect("a datagram socket opens", Opens(Datagram));
    Expect("a socket of an unknown type does not open", !Opens(99));
    Expect("a stream socket takes every option", TakesEveryOption(Stream));
    Expect("a datagram socket takes every option", TakesEveryOption(Datagram));
}

bool Resolves(const char* host)
{
    std::uint32_t address = 0;
    return platform::ResolveHost(host, address);
}

// Of names that are none: nobody is asked about them.
void CheckResolution()
{
    std::uint32_t address = 0;
    Expect("a dotted address resolves to itself",
        platform::ResolveHost("127.1.2.3", address) && Octets(address) == "\x7f\x01\x02\x03");
    Expect("a name with an empty label does not resolve", !Resolves("no..host"));
    Expect("a name with a label that is too long does not resolve",
        !Resolves(std::string(64, 'x').c_str()));
    Expect("an empty name does not resolve", !Resolves(""));
}

void CheckConnection()
{
    Connection connection;
    Expect("a peer that listens is connected to", connection.connected == 0 && connection.accepted);
    const std::string sent("to\0it", 5);
    Expect("bytes that are sent are counted",
        platform::SendToSocket(connection.handle, sent.data(), 5) == 5);
    Expect("bytes reach the peer as they are", connection.peer.Receive(5) == sent);

    std::array<char, 8> buffer{};
    connection.peer.Send("back");
    const int first = platform::ReceiveFromSocket(connection.handle, buffer.data(), 2);
    const int second = platform::ReceiveFromSocket(connection.handle, buffer.data() + 2, 6);
    Expect("what is there is received in the pieces that are asked for",
        first == 2 && second == 2 && std::string(buffer.data()) == "back");
}

void CheckUrgentData()
{
    Connection connection;
    platform::EnableSocketOption(connection.handle, SocketOption::OutOfBandInline);
    connection.peer.SendUrgently('!');
    connection.peer.Send("y");
    connection.peer.CloseInOrder();
    std::array<char, 3> buffer{};
    const int first = platform::ReceiveFromSocket(connection.handle, buffer.data(), 1);
    const int second = platform::ReceiveFromSocket(connection.handle, buffer.data() + 1, 1);
    Expect("urgent data taken inline is received in its order",
        first == 1 && second == 1 && std::string(buffer.data()) == "!y");
}

bool ConnectsToBroadcast(SocketHandle datagrams)
{
    std::uint32_t broadcast = 0;
    std::memcpy(&broadcast, "\xc0\xa8\x4d\xff", sizeof broadcast);
    return platform::ConnectSocket(datagrams, broadcast, 9) == 0; // sends nothing
}

void CheckRefusal()
{
    std::uint16_t port = 0;
    {
        const Peer peer;
        port = peer.Port();
    }
    const SocketHandle handle = platform::OpenSocket(Stream);
    const int result = platform::ConnectSocket(handle, Loopback(), port);
    const int error = platform::LastSocketError();
    Expect("a port on which nobody listens refuses", result == -1);
    Expect("a refusal has an error number", error != 0);
    platform::CloseSocket(handle);
}

void CheckNonBlocking()
{
    Connection connection;
    Expect("a connected socket can be made non-blocking",
        platform::MakeSocketNonBlocking(connection.handle) == 0);
    Expect("receiving with nothing there gives -1 every time",
        GivesEveryTime(-1, [&connection] { return connection.Receive(); }));
    connection.peer.Send("y");
    Expect("what comes later is received nevertheless",
        ComesToGive(1, [&connection] { return connection.Receive(); }));
    const std::string block(65536, 'z');
    Expect("sending more than a peer reads gives -1", ComesToGive(-1, [&connection, &block] {
        return platform::SendToSocket(
            connection.handle, block.data(), static_cast<int>(block.size()));
    }));
}

void CheckOrderlyClose()
{
    Connection connection;
    connection.peer.Send("a");
    connection.peer.CloseInOrder();
    Expect("what the peer sent before it closed is received", connection.Receive() == 1);
    Expect("an orderly close gives 0 every time",
        GivesEveryTime(0, [&connection] { return connection.Receive(); }));
    Expect("sending to a peer that has closed comes to give -1",
        ComesToGive(-1, [&connection] { return connection.Send(); }));
    Expect("and gives -1 every time from then on",
        GivesEveryTime(-1, [&connection] { return connection.Send(); }));
    Expect("then receiving gives -1 every time, too",
        GivesEveryTime(-1, [&connection] { return connection.Receive(); }));
}

void CheckReset()
{
    Connection connection;
    connection.peer.Reset();
    Expect("receiving from a connection that was reset gives -1 every time",
        GivesEveryTime(-1, [&connection] { return connection.Receive(); }));
    Expect("sending to a connection that was reset gives -1 every time",
        GivesEveryTime(-1, [&connection] { return connection.Send(); }));

    Connection nonBlocking;
    platform::MakeSocketNonBlocking(nonBlocking.handle);
    nonBlocking.peer.Reset();
    Expect("a non-blocking socket whose connection was reset never gives 0",
        GivesEveryTime(-1, [&nonBlocking] { return nonBlocking.Receive(); }));
}

bool FailsEverywhere(SocketHandle handle)
{
    char byte = 0;
    const bool fails = platform::EnableSocketOption(handle, SocketOption::ReuseAddress) == -1 &&
                       platform::ConnectSocket(handle, Loopback(), 9) == -1 &&
                       platform::MakeSocketNonBlocking(handle) == -1 &&
                       platform::ReceiveFromSocket(handle, &byte, 1) == -1 &&
                       platform::SendToSocket(handle, "x", 1) == -1;
    platform::CloseSocket(handle);
    return fails;
}

void CheckHandles()
{
    Expect("the handle of no socket has every bit set",
        platform::InvalidSocket == 0xFFFFFFFFFFFFFFFFULL);
    Expect("the handle of no socket fails everywhere", FailsEverywhere(platform::InvalidSocket));
    for (const SocketHandle madeUp :
        {0ULL, 1ULL, 0x0012345600000001ULL, 0x0012345600000004ULL, 0x00000001FFFFFFF0ULL}) {
        Expect("the made-up handle " + std::to_string(madeUp) + " fails everywhere",
            FailsEverywhere(madeUp));
    }
    const SocketHandle closed = platform::OpenSocket(Stream);
    platform::CloseSocket(closed);
    Expect("a closed handle fails everywhere", FailsEverywhere(closed));

    std::set<SocketHandle> handles;
    for (int time = 0; time < 1000; ++time) {
        const SocketHandle handle = platform::OpenSocket(Datagram);
        handles.insert(handle);
        platform::CloseSocket(handle);
    }
    Expect("no handle is given twice", handles.size() == 1000);
}

void CheckStaleHandle()
{
    Peer peer;
    const SocketHandle stale = platform::OpenSocket(Stream);
    platform::CloseSocket(stale);
    // It gets what the system had for the stale one.
    const SocketHandle fresh = platform::OpenSocket(Stream);
    const bool connected =
        platform::ConnectSocket(fresh, Loopback(), peer.Port()) == 0 && peer.Accept();
    Expect("a stale handle does not reach the socket that was opened next",
        connected && FailsEverywhere(stale) && platform::SendToSocket(fresh, "x", 1) == 1 &&
            peer.Receive(1) == "x");
    platform::CloseSocket(fresh);
}

} // namespace

void CheckSockets()
{
    CheckStart();
    CheckOpening();
    CheckResolution();
    CheckConnection();
    CheckUrgentData();
    CheckRefusal();
    CheckNonBlocking();
    CheckOrderlyClose();
    CheckReset();
    CheckHandles();
    CheckStaleHandle();
}

void CheckUnknownNames()
{
    for (const char* host : {"127.0.0.256", "1.2.3.4.5", "127.0.0. 1"}) {
        Expect("the name '" + std::string(host) + "' does not resolve", !Resolves(host));
    }
}

void CheckBroadcast()
{
    const SocketHandle handle = platform::OpenSocket(Datagram);
    Expect("a datagram socket may not broadcast unasked", !ConnectsToBroadcast(handle));
    platform::EnableSocketOption(handle, SocketOption::Broadcast);
    Expect("a datagram socket that has asked may broadcast", ConnectsToBroadcast(handle));
    platform::CloseSocket(handle);
}

} // namespace contract
