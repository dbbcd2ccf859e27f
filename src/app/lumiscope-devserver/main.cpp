// lumiscope-devserver: serves a share of a configuration's device servers
// over the network, answered by the simulated accelerator.
//
//   lumiscope-devserver --config DIR [--shard I/N] [--listen ADDR]
//                       [--names HOST:PORT] [--advertise HOST:PORT]
//                       [--write-hosts LIST] [--lease-ms MS]
//
// --names defaults to LUMISCOPE_NAMES, --write-hosts to LUMISCOPE_WRITE_HOSTS
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
    "usage: lumiscope-devserver --config DIR [--shard I/N] [--listen ADDR] [--names HOST:PORT]"
    " [--advertise HOST:PORT] [--write-hosts LIST] [--lease-ms MS]\n";

int Usage(const std::string& problem) {
    std::cerr << "lumiscope-devserver: " << problem << "\n" << kUsage;
    return 2;
}

}  // namespace

int main(int argc, char** argv) {
    if (tool_support::AnswerHelp(argc, argv, kUsage)) return 0;
    net::BlockStopSignals();
    const auto options = net::ParseProgramOptions(
        argc, argv, {"--config", "--shard", "--listen", "--names", "--advertise", "--write-hosts", "--lease-ms"});
    if (!options.problem.empty()) return Usage(options.problem);
    const std::string config = options.Get("--config");
    if (config.empty()) return Usage("--config DIR is needed");
    int index = 0, count = 1;
    if (!ParseShard(options.Get("--shard", "0/1"), index, count)) return Usage("--shard must be I/N with 0 <= I < N");
    int64_t leaseMs = 3000;
    if (!catalogue::ParseInteger(options.Get("--lease-ms", "3000"), 300, 600000, leaseMs))
        return Usage("--lease-ms must be 300..600000");
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

    net::ServerSettings settings;
    settings.listen = options.Get("--listen", "127.0.0.1:0");
    settings.namesAddress = options.Get("--names", net::EnvironmentOr("LUMISCOPE_NAMES", ""));
    settings.advertise = options.Get("--advertise");
    settings.leaseMs = static_cast<int32_t>(leaseMs);
    return net::RunServer(server, settings);
}
