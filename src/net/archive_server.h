// The archiver process's answers: the local history servers and the central
// archivers of a configuration, from the archive store.
//
// The recorded grid of times (one value a minute locally, a quarter hour in
// the archive, as far back as the retention reaches) is the simulation's, so
// that the network and the in-process answers ask for the same times. For
// each time the store holds, the stored value is answered (a recorded
// spectrum first, a back-filled value else); a time it does not hold is
// answered from the simulated past, which is computed again on every read.
// Reading never writes into the store: only the recorder does, so clients
// cannot fill the archive's disk by asking.
#pragma once

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "net/archive_store.h"
#include "net/link_service.h"
#include "sim/simulated_accelerator.h"

namespace net {

class ArchiveServer : public LinkHandler {
public:
    ArchiveServer(std::shared_ptr<sim::SimulatedAccelerator> accelerator, std::shared_ptr<ArchiveStore> store);

    vire::Status Answer(const LinkRequest& request, ServerBuffers& buffers, const CallContext& caller,
                        int32_t timeoutMs) override;
    int64_t MostElements(const LinkRequest&) const override { return mostElements_; }
    std::vector<std::string> Names() const override { return names_; }
    std::string Program() const override { return "lumiscope-archiver"; }

private:
    void AnswerSeries(const struct HistoryTarget& target, vire::DataObject& out);
    void AnswerSpectrum(const struct HistoryTarget& target, vire::DataObject& out);

    std::shared_ptr<sim::SimulatedAccelerator> accelerator_;
    std::shared_ptr<ArchiveStore> store_;
    std::vector<std::string> names_;
    std::set<std::string> served_;
    int64_t mostElements_ = 0;  // the longest recorded series or spectrum
};

}  // namespace net
