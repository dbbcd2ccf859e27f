// The programs' choice of transport, from the environment:
//   LUMISCOPE_TRANSPORT=network   use the network (anything else: not this one)
//   LUMISCOPE_NAMES=host:port,... the etcd endpoints where servers register
//                                 their names (LUMISCOPE_NAMES_USER and
//                                 LUMISCOPE_NAMES_PASSWORD: etcd's credentials)
//   LUMISCOPE_NAMES_FILE=PATH     static names file; without it, the file
//                                 "lumiscope-names.txt" of the configuration
//                                 directory when there is one
//
// A window's main installs the network transport with one line and keeps the
// simulated accelerator otherwise:
//   if (!net::InstallTransportFromEnvironment(configDir)) sim::InstallSimulatedAccelerator(configDir);
#pragma once

#include <memory>
#include <string>

#include "net/network_transport.h"

namespace net {

// The settings the environment gives; false when it does not ask for the network.
bool NetworkSettingsFromEnvironment(const std::string& configDir, NetworkSettings& settings);

// Installs a NetworkTransport as the transport of every link call when the
// environment asks for it and returns true; returns false and changes
// nothing otherwise.
bool InstallTransportFromEnvironment(const std::string& configDir);

}  // namespace net
