// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <string>

/// A TCP server on 127.0.0.1 for one connection, made by the system's own calls: what the sockets
/// of platform/ talk to. Every call blocks until it is done.
class Peer
{
public:
    /// Listens on a port that the system chooses.
    Peer();
    ~Peer();
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;

    /// In host byte order; 0 when it could not listen.
    std::uint16_t Port() const;

    /// Takes the connection that waits. What was asked for before is served now.
    bool Accept();

    bool Send(const std::string& bytes);

    /// As urgent data, which a receiver gets out of its order unless it takes it inline.
    bool SendUrgently(char byte);

    /// That many bytes, or what came before the connection ended.
    std::string Receive(std::size_t length);

    void CloseInOrder();
    void Reset();

private:
    std::uintptr_t listener;
    std::uintptr_t connection;
};
