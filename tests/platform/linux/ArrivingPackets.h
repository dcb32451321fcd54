// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

#include <array>

#include <arpa/inet.h>
#include <linux/if_ether.h>
#include <linux/if_packet.h>
#include <net/if.h>
#include <sys/socket.h>
#include <unistd.h>

/// What arrives over IPv4 at one interface of this machine, whoever it is for. Needs a network of
/// the test's own.
class ArrivingPackets
{
public:
    explicit ArrivingPackets(const char* interface)
        : descriptor(::socket(AF_PACKET, SOCK_DGRAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_ll name{};
        name.sll_family = AF_PACKET;
        name.sll_protocol = htons(ETH_P_IP);
        name.sll_ifindex = static_cast<int>(if_nametoindex(interface));
        if (::bind(descriptor, reinterpret_cast<const sockaddr*>(&name), sizeof name) != 0) {
            qFatal("No packets can be seen at %s.", interface);
        }
    }
    ~ArrivingPackets() { ::close(descriptor); }
    ArrivingPackets(const ArrivingPackets&) = delete;
    ArrivingPackets& operator=(const ArrivingPackets&) = delete;

    /// The next one, from its IP header on. Waits for it.
    QByteArray Next()
    {
        std::array<char, 2048> packet{};
        const auto size = ::recv(descriptor, packet.data(), packet.size(), 0);
        return QByteArray(packet.data(), static_cast<int>(size));
    }

private:
    int descriptor;
};
