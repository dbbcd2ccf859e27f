// The simulated accelerator: every device, history server and archiver that a
// configuration directory names, answering link calls in-process.
//
//   auto accelerator = sim::InstallSimulatedAccelerator(configDir);
//
// installs it as the transport of every link call and live link. What it
// answers, for an address "/CONTEXT/SERVER/DEVICE" and a property:
//   - a channel's live property: Size 32-bit floats (SINGLE) of moving physics,
//     last element first where the channel is read out in reverse;
//   - "/CONTEXT/SERVER/#0", "PROPERTY.NAM": the element names (NAME16; names
//     longer than a field continue in the next, marked by a final "&"; "#0"
//     for a server without names);
//   - "/CONTEXT/SERVER", "PROPS": the server's properties (NAME32 records);
//   - threshold tables of link sources "DEVICE[PROPERTY]": read as SINGLE;
//     written (access 3, SINGLE) as "PROPERTY[n]" for element n, or whole
//     from element 0, by the users on the writers list only;
//   - external device-name sources: the elements' locations (any NAMEn);
//   - history servers and archivers: see history_service.h.
// Faults of the settings (settings.h) come before everything else.
#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "sim/history_service.h"
#include "sim/model.h"
#include "sim/settings.h"
#include "vire/polling.h"

namespace sim {

class SimulatedAccelerator : public vire::PollingTransport {
public:
    // configDir: native path; the settings come from its Simulation.csv and
    // the environment.
    explicit SimulatedAccelerator(const std::string& configDir);
    SimulatedAccelerator(const std::string& configDir, SimulationSettings settings);

    vire::Status Call(const std::string& fullDeviceName, const std::string& property,
                      vire::DataObject& out, const vire::DataObject& in, int16_t access,
                      int32_t timeoutMs) override;

    const Model& model() const { return model_; }
    const SimulationSettings& settings() const { return settings_; }
    // Plays a fault from now on (target as in the settings); Fault-less
    // targets are cleared with ClearFault. A fault for the first K calls
    // counts from here and is gone after its K-th call.
    void SetFault(const std::string& target, Fault fault);
    void ClearFault(const std::string& target);

protected:
    vire::LinkData Poll(const vire::SubscriptionRequest& request) override;

private:
    // The fault this call of an address meets, if any; counts the call
    // against a fault of the first K calls (mutex_ held).
    std::optional<Fault> MeetFault(const Address& address);
    vire::Status Dispatch(const Address& address, const std::string& property, vire::DataObject& out,
                          const vire::DataObject& in, int16_t access, int32_t asked);
    vire::Status ReadLive(const Address& address, const std::string& property, vire::DataObject& out,
                          int32_t asked) const;
    vire::Status ReadNames(const Address& address, const std::string& property, vire::DataObject& out,
                           int32_t asked) const;
    vire::Status ReadProperties(const Address& address, vire::DataObject& out, const vire::DataObject& in,
                                int32_t asked) const;
    vire::Status AccessThreshold(const std::string& device, const std::string& property,
                                 vire::DataObject& out, const vire::DataObject& in, int16_t access,
                                 int32_t asked);
    vire::Status UnknownAddress(const Address& address) const;

    SimulationSettings settings_;
    Model model_;
    HistoryService history_;
    mutable std::mutex mutex_;  // calls may come from any thread
};

// Builds the simulated accelerator of configDir and installs it as the
// transport of the program.
std::shared_ptr<SimulatedAccelerator> InstallSimulatedAccelerator(const std::string& configDir);

}  // namespace sim
