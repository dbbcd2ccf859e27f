// The recorded past: local history servers (fine steps over the last days)
// and the central archivers (coarser steps, reaching much further back).
//
// A history address is a server ("/ORKA/BPMHIST", or an archiver: "OKHISTORY",
// "/ORKA/OKHISTORY") followed by a device: an element name (or "#n") for its
// time series, "#1" for the probe, "#0" for a whole spectrum at one time.
// Values are the live signal's at the recorded times, so history and live
// data agree.
#pragma once

#include <cstdint>
#include <set>
#include <string>

#include "sim/model.h"
#include "sim/settings.h"
#include "vire/data_object.h"

namespace sim {

class HistoryService {
public:
    HistoryService(const Model& model, const SimulationSettings& settings);

    // True when the address names a history server or an archiver.
    bool Serves(const Address& address) const;

    // A read (access 1) of a history server; `asked` is the count the caller
    // asked for. Input: 32-bit integers start, stop[, mode] (format LONG).
    vire::Status Read(const Address& address, const std::string& property, vire::DataObject& out,
                      const vire::DataObject& in, int32_t asked) const;

    struct Recording {
        int32_t stepS;
        int64_t firstS;  // oldest recorded time
        int64_t lastS;   // newest recorded time (now, floored to the step)
    };
    // What a server has recorded as of now.
    Recording RecordingOf(const Address& address) const;

private:
    struct Source {
        const Channel* channel = nullptr;
        int32_t element = 0;
    };
    vire::Status FindSource(const Address& address, const std::string& property, Source& source) const;
    bool IsArchiver(const Address& address) const;

    const Model& model_;
    const SimulationSettings& settings_;
    std::set<std::string> localServers_;  // every channel's HstServer
};

}  // namespace sim
