// SPDX-License-Identifier: MIT

#include "tests/support/WindowTest.h"
#include "walkthrough/Walk.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QHostAddress>

#include <algorithm>

namespace {

bool IsLoopback(const QString& address)
{
    return QHostAddress(address).isLoopback();
}

// The program makes its own application object later; this one is for the command line alone.
WalkSettings ReadCommandLine(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        "Drives the window of the tool by mouse and key events, prints what it did and what the\n"
        "units received, and leaves pictures. Exits with 1 if something was not as expected.");
    parser.addHelpOption();
    const QCommandLineOption address("address",
        "Unit to connect to; may be given several times. Default: 192.168.0.129 and "
        "192.168.0.130.",
        "IP");
    const QCommandLineOption search("search",
        "Addresses to search for units. Default: 192.168.0.125-192.168.0.145.", "FIRST-LAST",
        "192.168.0.125-192.168.0.145");
    const QCommandLineOption noSearch("no-search",
        "Leave the search out. So it is with a loopback address, which has no "
        "neighbours.");
    parser.addOptions({address, search, noSearch});
    parser.addPositionalArgument("PICTURE_DIR", "Where the pictures go.");
    parser.addPositionalArgument(
        "UNIT_LOG_DIR", "Where the units' output is, in unit-ADDRESS.log.");
    parser.process(application);

    const QStringList folders = parser.positionalArguments();
    const QStringList range = parser.value(search).split('-');
    if (folders.size() != 2 || range.size() != 2) {
        parser.showHelp(2);
    }
    WalkSettings settings;
    settings.addresses = parser.values(address);
    if (settings.addresses.isEmpty()) {
        settings.addresses = QStringList{"192.168.0.129", "192.168.0.130"};
    }
    settings.pictures.setPath(folders.at(0));
    settings.unitLogs.setPath(folders.at(1));
    const bool hasLoopback =
        std::any_of(settings.addresses.cbegin(), settings.addresses.cend(), IsLoopback);
    if (!parser.isSet(noSearch) && !hasLoopback) {
        settings.searchRange = range;
    }
    return settings;
}

} // namespace

int main(int argc, char** argv)
{
    const WalkSettings settings = ReadCommandLine(argc, argv);
    return RunInTheProgram([&settings] { return Walk(settings).Run() ? 0 : 1; }, argc, argv);
}
