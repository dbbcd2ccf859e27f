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
#include "app/tool_support/help_request.h"
#include <iostream>

#include "net/archive_server.h"
#include "net/network_transport.h"
#include "net/program_options.h"
#include "net/recorder.h"
#include "net/server_runner.h"

namespace {

const char* const kUsage =
    "usage: lumiscope-archiver --config DIR [--db URI] [--listen ADDR] [--names ETCD[,ETCD...]]"
    " [--advertise HOST:PORT] [--lease-ms MS] [--max-streams N] [--record yes|no]\n";

int Usage(const std::string& problem) {
    std::cerr << "lumiscope-archiver: " << problem << "\n" << kUsage;
    return 2;
}

}  // namespace

int main(int argc, char** argv) {
    if (tool_support::AnswerHelp(argc, argv, kUsage)) return 0;
    net::BlockStopSignals();
    std::vector<std::string> known = net::kServerOptions;
    known.insert(known.end(), {"--config", "--db", "--record"});
    const auto options = net::ParseProgramOptions(argc, argv, known);
    if (!options.problem.empty()) return Usage(options.problem);
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
