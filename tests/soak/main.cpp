// One run of random use, in a network of its own.
//
// vx440-soak SEED

#include "shell/CVX440_AccessApplication.h"
#include "tests/soak/Run.h"
#include "tests/support/OwnNetwork.h"

#include <cstdio>

namespace {

bool LayNetwork(OwnNetwork& network)
{
    return network.Lay() && network.AddSilentHost("192.168.77.200") &&
           network.AddHost("192.168.77.12", "02:4c:7e:0a:00:12");
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2 || !OwnNetwork::IsAllowed()) {
        std::fputs("to be run by scripts/soak\n", stderr);
        return 2;
    }
    OwnNetwork network;
    if (!LayNetwork(network)) {
        std::fprintf(stderr, "%s\n", qPrintable(network.Error()));
        return 2;
    }
    Run run(QByteArray(argv[1]).toUInt());
    QMetaObject::invokeMethod(&run, &Run::Begin, Qt::QueuedConnection);
    {
        const CVX440_AccessApplication application(argc, argv);
    }
    return run.ExitCode();
}
