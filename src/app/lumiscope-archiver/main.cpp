// lumiscope-archiver: the local history servers and the central archivers of
// a configuration, served from a database that records what the device
// servers deliver.
//
//   lumiscope-archiver --config DIR [--db URI] [--listen ADDR] [--names ETCD[,ETCD...]]
//                      [--advertise HOST:PORT] [--lease-ms MS] [--record yes|no]
//
// --db is an SQLite file (default: archive.sqlite under the user's data
// directory) or "postgresql://user@host:port/database". --names defaults to
// LUMISCOPE_NAMES; the device servers are found through it (or through
// LUMISCOPE_NAMES_FILE) for the recording.
#include <iostream>

#include "command_line/server_options.h"
#include "net/archive_server.h"
#include "net/network_transport.h"
#include "net/program_options.h"
#include "net/recorder.h"
#include "net/server_runner.h"

namespace {

const command_line::ProgramText kText = {
    "lumiscope-archiver",
    {"--config DIR [--db URI] [--listen ADDR] [--names ETCD[,ETCD...]] [--advertise HOST:PORT] "
     "[--lease-ms MS] [--max-streams N] [--record yes|no]"},
    "Serves the local history servers and the central archivers of a configuration\n"
    "from a database that records what the device servers deliver.\n"
    "Prints \"listening on HOST:PORT\" once it serves; stops on SIGTERM or SIGINT.\n",
    "environment:\n"
    "  LUMISCOPE_NAMES        the etcd endpoints when --names is not given\n"
    "  LUMISCOPE_NAMES_USER, LUMISCOPE_NAMES_PASSWORD  the etcd user that may register names\n"
    "  LUMISCOPE_NAMES_FILE   a static names file for finding the device servers\n"};

}  // namespace

int main(int argc, char** argv) {
    command_line::CommandLine commandLine(kText);
    std::vector<command_line::ServerOption> known = {
        {"--config", "DIR", "the configuration directory whose history is served"},
        {"--db", "URI", "an SQLite file (default: archive.sqlite in the user's\n"
                        "data directory) or postgresql://USER@HOST:PORT/DATABASE"},
        {"--record", "yes|no", "record what the device servers deliver (default yes)"}};
    for (auto& option : command_line::CommonServerOptions("127.0.0.1:0, any free port")) known.push_back(option);
    net::ProgramOptions options;
    command_line::DeclareServerOptions(commandLine, known, options);
    if (const auto exitCode = commandLine.Parse(argc, argv)) return *exitCode;
    const auto Usage = [&](const std::string& problem) { return commandLine.Fail(problem); };
    net::BlockStopSignals();
    const std::string config = options.Get("--config");
    if (config.empty()) return Usage("--config DIR is needed");
    net::ServerSettings settings;
    if (const std::string problem = net::ReadServerOptions(options, settings); !problem.empty()) return Usage(problem);
    const std::string record = options.Get("--record", "yes");
    if (record != "yes" && record != "no") return Usage("--record must be yes or no");

    const std::string uri = options.Get("--db", net::DefaultArchivePath());
    std::shared_ptr<net::ArchiveStore> store;
    try {
        store = std::make_shared<net::ArchiveStore>(net::OpenSqlDatabase(uri));
    } catch (const net::StoreError& e) {
        std::cerr << "lumiscope-archiver: " << e.what() << "\n";
        return 1;
    }
    auto accelerator = std::make_shared<sim::SimulatedAccelerator>(config);
    for (const auto& p : accelerator->model().problems) std::cerr << "lumiscope-archiver: " << p << "\n";
    net::ArchiveServer server(accelerator, store);

    auto devices = std::make_shared<net::NetworkTransport>(
        net::NetworkSettings{settings.namesAddress, net::EnvironmentOr("LUMISCOPE_NAMES_FILE", ""), ""});
    net::Recorder recorder(accelerator, store, devices);
    return net::RunServer(server, settings, [&] {
        if (record == "yes") recorder.Start();
    });
}
