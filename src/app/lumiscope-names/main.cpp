// lumiscope-names: the name service. Servers register their names here with
// a lease and renew it by heartbeats; clients ask where a name is served.
//
//   lumiscope-names [--listen ADDR]     (default 127.0.0.1:5900)
#include "command_line/server_options.h"
#include "net/name_registry.h"
#include "net/server_runner.h"

int main(int argc, char** argv) {
    command_line::CommandLine commandLine(
        {"lumiscope-names",
         {"[--listen ADDR]"},
         "The name service: servers register their /CONTEXT/SERVER names here with a\n"
         "lease and renew it by heartbeats; clients ask it where a name is served.\n"
         "Prints \"listening on HOST:PORT\" once it serves; stops on SIGTERM or SIGINT.\n",
         ""});
    net::ProgramOptions options;
    const command_line::ServerOption listen = command_line::CommonServerOptions("127.0.0.1:5900").front();
    command_line::DeclareServerOptions(commandLine, {listen}, options);
    if (const auto exitCode = commandLine.Parse(argc, argv)) return *exitCode;
    net::BlockStopSignals();
    net::NameRegistry registry;
    net::ServerSettings settings;
    settings.listen = options.Get("--listen", "127.0.0.1:5900");
    return net::RunServer(registry, settings);
}
