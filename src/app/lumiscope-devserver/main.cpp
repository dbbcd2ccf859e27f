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
#include <iostream>

#include "catalogue/numbers.h"
#include "command_line/server_options.h"
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

const command_line::ProgramText kText = {
    "lumiscope-devserver",
    {"--config DIR [--shard I/N] [--listen ADDR] [--names ETCD[,ETCD...]] [--advertise HOST:PORT] "
     "[--write-hosts LIST] [--lease-ms MS] [--max-streams N]"},
    "Serves a share of a configuration's device servers over the network, answered\n"
    "by the simulated accelerator (its Simulation.csv and LUMISCOPE_SIM_* settings).\n"
    "Prints \"listening on HOST:PORT\" once it serves; stops on SIGTERM or SIGINT.\n",
    "environment:\n"
    "  LUMISCOPE_NAMES        the etcd endpoints when --names is not given\n"
    "  LUMISCOPE_NAMES_USER, LUMISCOPE_NAMES_PASSWORD  the etcd user that may register names\n"
    "  LUMISCOPE_WRITE_HOSTS  who may write when --write-hosts is not given\n"};

}  // namespace

int main(int argc, char** argv) {
    command_line::CommandLine commandLine(kText);
    std::vector<command_line::ServerOption> known = {
        {"--config", "DIR", "the configuration directory whose device servers are served"},
        {"--shard", "I/N", "the device servers sorted by name, every N-th from\nposition I (default 0/1: all)"},
        {"--write-hosts", "LIST", "who may write thresholds: host names, addresses and\n"
                                  "networks, comma-separated (default: this machine only)"}};
    for (auto& option : command_line::CommonServerOptions("127.0.0.1:0, any free port")) known.push_back(option);
    net::ProgramOptions options;
    command_line::DeclareServerOptions(commandLine, known, options);
    if (const auto exitCode = commandLine.Parse(argc, argv)) return *exitCode;
    const auto Usage = [&](const std::string& problem) { return commandLine.Fail(problem); };
    net::BlockStopSignals();
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
    if (server.Names().empty())
        std::cerr << "lumiscope-devserver: shard " << index << "/" << count << " serves nothing\n";

    return net::RunServer(server, settings);
}
