// A device server process: its share of the configuration's device servers,
// answered by the simulated accelerator (faults included).
//
// The configuration's servers ("/ORKA/BPMQ1", ...) are sorted by name and
// dealt out: shard I of N serves every server whose position p has
// p mod N == I. History servers and archivers are the archiver's, not a
// device server's. A call to a server outside the share answers 2, as a
// server that is not there.
//
// Writes (access 3) are checked twice: who may write from where (see
// write_gate.h), then the proven user against the simulation's writers;
// anyone else gets 20. Values that are not finite are refused with 16.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "net/allow_list.h"
#include "net/link_service.h"
#include "sim/simulated_accelerator.h"

namespace net {

// Every device server address of a configuration, sorted.
std::vector<std::string> DeviceServerAddresses(const sim::Model& model);
// The share of shard `index` of `count`.
std::vector<std::string> ShareOf(const std::vector<std::string>& servers, int index, int count);

class DeviceServer : public LinkHandler {
public:
    DeviceServer(std::shared_ptr<sim::SimulatedAccelerator> accelerator, int shardIndex, int shardCount,
                 HostAllowList writeHosts);

    vire::Status Answer(const LinkRequest& request, ServerBuffers& buffers, const CallContext& caller,
                        int32_t timeoutMs) override;
    int64_t MostElements(const LinkRequest& request) const override;
    std::vector<std::string> Names() const override { return names_; }
    std::string Program() const override { return "lumiscope-devserver"; }

private:
    std::shared_ptr<sim::SimulatedAccelerator> accelerator_;
    std::vector<std::string> names_;
    std::set<std::string> served_;
    std::map<std::string, int64_t> mostElements_;  // by server address
    HostAllowList writeHosts_;
    // The simulation asks the process's user name of a writer: one write at a time.
    std::mutex writeMutex_;
};

}  // namespace net
