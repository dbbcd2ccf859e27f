// lumiscope-devserver: serves a share of a configuration's device servers
// over the network, answered by the simulated accelerator.
//
//   lumiscope-devserver --config DIR [--shard I/N] [--listen ADDR]
//                       [--names ETCD[,ETCD...]] [--advertise HOST:PORT]
//                       [--write-hosts LIST] [--lease-ms MS]
//
// --names (etcd endpoints, credentials in LUMISCOPE_NAMES_USER and
// LUMISCOPE_NAMES_PASSWORD) defaults to LUMISCOPE_NAMES, --write-hosts to LUMISCOPE_WRITE_HOSTS
// and then to this machine only. The simulation's settings (seed, writers,
// faults) come from the configuration's Simulation.csv and LUMISCOPE_SIM_*.
#include "app/tool_support/help_request.h"
#include <iostream>

#include "catalogue/numbers.h"
#include "net/device_server.h"
#include "net/program_options.h"
#include "net/server_runner.h"

namespace {

bool ParseShard(const std::string& text, int& index, int& count) {
    const size_t slash = text.find('/');
    int64_t i = 0, n = 0;
    if (slash == std::string::npos || !catalogue::ParseInteger(text.substr(slash + 1), 1, 1000, n) ||
        !catalogue::ParseInteger(text.substr(0, slash), 0, n - 1, i))
        return false;
    index = static_cast<int>(i);
    count = static_cast<int>(n);
    return true;
}

const char* const kUsage =
    "usage: lumiscope-devserver --config DIR [--shard I/N] [--listen ADDR] [--names ETCD[,ETCD...]]"
    " [--advertise HOST:PORT] [--write-hosts LIST] [--lease-ms MS] [--max-streams N]\n";

int Usage(const std::string& problem) {
    std::cerr << "lumiscope-devserver: " << problem << "\n" << kUsage;
    return 2;
}

}  // namespace

int main(int argc, char** argv) {
    if (tool_support::AnswerHelp(argc, argv, kUsage)) return 0;
    net::BlockStopSignals();
    std::vector<std::string> known = net::kServerOptions;
    known.insert(known.end(), {"--config", "--shard", "--write-hosts"});
    const auto options = net::ParseProgramOptions(argc, argv, known);
    if (!options.problem.empty()) return Usage(options.problem);
    const std::string config = options.Get("--config");
    if (config.empty()) return Usage("--config DIR is needed");
    int index = 0, count = 1;
    if (!ParseShard(options.Get("--shard", "0/1"), index, count)) return Usage("--shard must be I/N with 0 <= I < N");
    net::ServerSettings settings;
    if (const std::string problem = net::ReadServerOptions(options, settings); !problem.empty()) return Usage(problem);
    net::HostAllowList hosts;
    std::string problem;
    if (!hosts.Parse(options.Get("--write-hosts", net::EnvironmentOr("LUMISCOPE_WRITE_HOSTS", net::kDefaultWriteHosts)),
                     problem))
        return Usage("--write-hosts: " + problem);

    auto accelerator = std::make_shared<sim::SimulatedAccelerator>(config);
    for (const auto& p : accelerator->model().problems) std::cerr << "lumiscope-devserver: " << p << "\n";
    for (const auto& p : accelerator->settings().problems) std::cerr << "lumiscope-devserver: " << p << "\n";
    net::DeviceServer server(accelerator, index, count, hosts);
    if (server.Names().empty()) std::cerr << "lumiscope-devserver: shard " << index << "/" << count << " serves nothing\n";

    return net::RunServer(server, settings);
}
