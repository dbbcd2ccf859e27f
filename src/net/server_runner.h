// What every network server program does around its handler: listen, say
// where, register its names, serve until SIGTERM or SIGINT, and stop cleanly.
#pragma once

#include <functional>
#include <string>

#include "net/link_service.h"
#include "net/program_options.h"

namespace net {

struct ServerSettings {
    std::string listen = "127.0.0.1:0";  // port 0: any free port
    std::string namesAddress;            // etcd endpoints to register with ("host:port,..."), "" for none
    std::string advertise;               // address to register; the listening one when empty
    int32_t leaseMs = 3000;
    int32_t streamsPerClient = kDefaultStreamsPerClient;  // monitor streams one client address may hold open
};

// The options every server program takes besides its own (--listen,
// --names, --advertise, --lease-ms, --max-streams) as settings: --names falls back on LUMISCOPE_NAMES, --lease-ms
// must be 300..600000, --max-streams 1..1000000. Returns what is wrong, empty when they are usable.
std::string ReadServerOptions(const ProgramOptions& options, ServerSettings& settings);

// Blocks SIGTERM and SIGINT in the calling thread and every thread started
// after it, so that RunServer can wait for them. Call first thing in main.
void BlockStopSignals();

// Serves until a stop signal. Prints "listening on HOST:PORT" on standard
// output once the port is open and the names are registered. `started` runs then (for the archiver's
// recorder), `stopping` before the server goes down. Returns the program's
// exit code.
int RunServer(LinkHandler& handler, const ServerSettings& settings, const std::function<void()>& started = {},
              const std::function<void()>& stopping = {});

}  // namespace net
