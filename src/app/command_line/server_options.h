// The options of the network server programs: each takes "--NAME VALUE"
// options, read by the network layer from a name-to-value table. Only for
// programs built with the network layer.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "command_line/command_line.h"
#include "net/program_options.h"

namespace command_line {

struct ServerOption {
    std::string name;  // "--listen"
    std::string value;  // how --help names its value: "ADDR"
    std::string help;
};

// The options every server program takes besides its own.
inline std::vector<ServerOption> CommonServerOptions(const std::string& listenDefault) {
    return {
        {"--listen", "ADDR", "where to listen (default " + listenDefault + ")"},
        {"--names", "ETCD[,ETCD...]", "the etcd endpoints to register the names with\n(default: LUMISCOPE_NAMES)"},
        {"--advertise", "HOST:PORT", "the address others reach this server at\n(default: the listening one)"},
        {"--lease-ms", "MS", "a name not renewed within this time is forgotten\n(300 to 600000, default 3000)"},
        {"--max-streams", "N", "open monitor streams one client address may hold\n(1 to 1000000, default 2000)"},
    };
}

// Declares the options on the command line; once it is parsed, the table
// holds the ones given.
inline void DeclareServerOptions(CommandLine& commandLine, const std::vector<ServerOption>& options,
                                 net::ProgramOptions& table) {
    for (const ServerOption& option : options) {
        commandLine.Options()
            .add_option_function<std::string>(
                option.name, [&table, name = option.name](const std::string& value) { table.values[name] = value; },
                option.help)
            ->type_name(option.value);
    }
}

}  // namespace command_line
