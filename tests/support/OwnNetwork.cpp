// SPDX-License-Identifier: MIT

#include "tests/support/OwnNetwork.h"

#include <QCoreApplication>
#include <QNetworkInterface>
#include <QProcessEnvironment>

#include <algorithm>

namespace {

const QString UnprivilegedMark = "VX440_TEST_UNPRIVILEGED";

QStringList Words(const QString& text)
{
    return text.split(' ');
}

} // namespace

OwnNetwork::~OwnNetwork()
{
    for (const std::unique_ptr<QProcess>& host : namespaces) {
        host->closeWriteChannel();
        host->waitForFinished();
    }
}

bool OwnNetwork::IsAllowed()
{
    const QList<QNetworkInterface> interfaces = QNetworkInterface::allInterfaces();
    return IsUnprivileged() ||
           std::all_of(interfaces.cbegin(), interfaces.cend(), [](const QNetworkInterface& one) {
               return one.flags().testFlag(QNetworkInterface::IsLoopBack);
           });
}

bool OwnNetwork::Lay()
{
    return IsUnprivileged() ||
           (Ip("link set lo up") && Ip("link add silent type veth peer name nobody") &&
               Ip("addr add 192.168.77.1/24 dev silent") && Ip("link set silent up") &&
               Ip("link set nobody up"));
}

bool OwnNetwork::AddHost(const QString& ip, const QString& mac)
{
    if (IsUnprivileged()) {
        return true;
    }
    const QString number = QString::number(namespaces.size());
    auto host = std::make_unique<QProcess>();
    // Says that its namespace stands, and ends with its standard input.
    host->start("unshare", {"-n", "sh", "-c", "echo; exec cat"});
    if (!host->waitForReadyRead()) {
        error = QString("no namespace for ") + ip;
        return false;
    }
    const QString pid = QString::number(host->processId());
    namespaces.push_back(std::move(host));
    const QString inHost = QString("-t %1 -n ip ").arg(pid);
    const QString nsenter = "nsenter";
    return Ip(QString("link add to%1 type veth peer name host").arg(number)) &&
           Ip(QString("link set host netns ") + pid) &&
           Run(nsenter, Words(inHost + QString("link set host address ") + mac)) &&
           Run(nsenter, Words(inHost + QString("addr add %1/24 dev host").arg(ip))) &&
           Run(nsenter, Words(inHost + "link set host up")) &&
           Ip(QString("link set to%1 up").arg(number)) &&
           Ip(QString("route add %1/32 dev to%2 src 192.168.77.1").arg(ip, number));
}

QStringList OwnNetwork::InLatestHost() const
{
    return {"nsenter", "-t", QString::number(namespaces.back()->processId()), "-n"};
}

bool OwnNetwork::AddSilentHost(const QString& ip)
{
    return IsUnprivileged() ||
           Ip(QString("neigh replace %1 lladdr 02:00:00:00:00:99 dev silent nud permanent")
                   .arg(ip));
}

bool OwnNetwork::Ip(const QString& arguments)
{
    return Run("ip", Words(arguments));
}

QString OwnNetwork::IpOutput(const QString& arguments)
{
    QProcess process;
    process.start("ip", Words(arguments));
    process.waitForFinished();
    return QString::fromLocal8Bit(process.readAllStandardOutput());
}

QString OwnNetwork::Error() const
{
    return error;
}

int OwnNetwork::RunUnprivileged(const char* testFunction)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(UnprivilegedMark, "1");
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.start(
        "setpriv", {"--inh-caps=-all", "--bounding-set=-all",
                       QCoreApplication::applicationFilePath(), QString::fromLatin1(testFunction)});
    process.waitForFinished(-1);
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

bool OwnNetwork::IsUnprivileged()
{
    return qEnvironmentVariableIsSet(UnprivilegedMark.toLatin1().constData());
}

bool OwnNetwork::Run(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    const bool ok = process.waitForFinished() && process.exitStatus() == QProcess::NormalExit &&
                    process.exitCode() == 0;
    if (!ok) {
        error = program + QLatin1Char(' ') + arguments.join(' ') + QString(": ") +
                QString::fromLocal8Bit(process.readAllStandardError());
    }
    return ok;
}
