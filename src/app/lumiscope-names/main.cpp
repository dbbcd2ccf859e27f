// lumiscope-names: the name service. Servers register their names here with
// a lease and renew it by heartbeats; clients ask where a name is served.
//
//   lumiscope-names [--listen ADDR]     (default 127.0.0.1:5900)
#include "app/tool_support/help_request.h"
#include <iostream>

#include "net/name_registry.h"
#include "net/program_options.h"
#include "net/server_runner.h"

namespace {
const char* const kUsage = "usage: lumiscope-names [--listen ADDR]\n";
}  // namespace

int main(int argc, char** argv) {
    if (tool_support::AnswerHelp(argc, argv, kUsage)) return 0;
    net::BlockStopSignals();
    const auto options = net::ParseProgramOptions(argc, argv, {"--listen"});
    if (!options.problem.empty()) {
        std::cerr << "lumiscope-names: " << options.problem << "\n" << kUsage;
        return 2;
    }
    net::NameRegistry registry;
    net::ServerSettings settings;
    settings.listen = options.Get("--listen", "127.0.0.1:5900");
    return net::RunServer(registry, settings);
}
