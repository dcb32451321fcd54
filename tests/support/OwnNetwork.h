// SPDX-License-Identifier: MIT

#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

/// A small network inside the network namespace that the test runs in, which must be one of its
/// own: 192.168.77.0/24, in which this machine is 192.168.77.1 and nobody else answers, until hosts
/// are added. It goes with the namespace.
class OwnNetwork
{
    Q_DISABLE_COPY(OwnNetwork)

public:
    OwnNetwork() = default;
    ~OwnNetwork();

    /// True in a namespace that has nothing but a loopback interface, or one that this class laid.
    static bool IsAllowed();

    /// Lays the network, unless the process runs in one laid before. False when `ip` refuses; then
    /// Error() says what.
    bool Lay();

    /// A host that answers; in a network laid before it is there. False when the system refuses.
    bool AddHost(const QString& ip, const QString& mac);

    /// The words that run a command inside the latest host.
    QStringList InLatestHost() const;

    /// An address that the kernel sends to and that nobody has: a connect to it hangs. In a network
    /// laid before it is there. False when the system refuses.
    bool AddSilentHost(const QString& ip);

    /// Runs `ip` with these arguments, separated by blanks. False when it fails.
    bool Ip(const QString& arguments);

    /// What `ip` prints for these arguments.
    static QString IpOutput(const QString& arguments);

    QString Error() const;

    /// Runs one test function of this program again in the same network, without any privilege, and
    /// gives its exit code. In there IsUnprivileged() holds.
    static int RunUnprivileged(const char* testFunction);
    static bool IsUnprivileged();

private:
    bool Run(const QString& program, const QStringList& arguments);

    QString error;
    std::vector<std::unique_ptr<QProcess>> namespaces; // each lives as long as its process
};
