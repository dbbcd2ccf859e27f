#include "net/archive_server.h"

#include <algorithm>

#include "net/history_keys.h"
#include "vire/completion_codes.h"
#include "vire/fltint.h"
#include "vire/formats.h"
#include "vire/link.h"
#include "vire/wire.h"

namespace net {

ArchiveServer::ArchiveServer(std::shared_ptr<sim::SimulatedAccelerator> accelerator,
                             std::shared_ptr<ArchiveStore> store)
    : accelerator_(std::move(accelerator)), store_(std::move(store)),
      names_(HistoryServerNames(accelerator_->model())), served_(names_.begin(), names_.end()) {
    const auto& settings = accelerator_->settings();
    for (const auto& [days, step] : {std::pair{settings.localHistoryDays, settings.localHistoryStepS},
                                     std::pair{settings.archiveDays, settings.archiveStepS}})
        if (step > 0) mostElements_ = std::max<int64_t>(mostElements_, int64_t{days} * 86400 / step + 1);
    for (const auto& c : accelerator_->model().channels) mostElements_ = std::max<int64_t>(mostElements_, c.size);
}

vire::Status ArchiveServer::Answer(const LinkRequest& request, ServerBuffers& buffers, const CallContext&,
                                   int32_t timeoutMs) {
    const sim::Address address = sim::ParseAddress(request.device());
    const bool archive = IsArchiverName(address.server);
    if (served_.count(archive ? address.server : address.ServerAddress()) == 0) return vire::kLinkError;
    if (request.access() != vire::kAccessRead) return vire::kIllegalAccess;
    // The simulation answers first: codes for what is wrong, the grid of
    // times, and the simulated past for what the store does not hold.
    vire::DataObject& out = buffers.outObject;
    const vire::Status status =
        accelerator_->Call(request.device(), request.property(), out, buffers.inObject, vire::kAccessRead, timeoutMs);
    if (status != vire::kOk || address.device == "#1") return status;
    HistoryTarget target;
    if (!FindHistoryTarget(accelerator_->model(), address, request.property(), target)) return status;
    if (address.device == "#0") AnswerSpectrum(target, out);
    else AnswerSeries(target, out);
    return status;
}

void ArchiveServer::AnswerSeries(const HistoryTarget& target, vire::DataObject& out) {
    if (out.count <= 0 || vire::CanonicalFormat(out.format) != vire::kFormatFltInt) return;
    // What the store recorded replaces the simulated past; a read never
    // writes into the archive.
    const auto records = vire::DecodeFltInt(out.buffer, out.count);
    if (records.empty()) return;
    const auto stored = store_->Series(target.server, target.property, target.element, records.front().time,
                                       records.back().time);
    for (size_t i = 0; i < records.size(); ++i) {
        const auto it = stored.find(records[i].time);
        if (it != stored.end()) vire::EncodeFltInt(out.buffer, i, vire::FltInt{it->second, records[i].time});
    }
}

void ArchiveServer::AnswerSpectrum(const HistoryTarget& target, vire::DataObject& out) {
    if (vire::CanonicalFormat(out.format) != vire::kFormatSingle) return;
    const int64_t t = out.stamp;
    if (const auto stored = store_->Snapshot(target.server, target.property, t)) {
        const int32_t n = std::min<int32_t>(out.count, static_cast<int32_t>(stored->size()));
        for (int32_t i = 0; i < n; ++i) vire::StoreFloat(out.buffer, 4 * static_cast<size_t>(i), (*stored)[i]);
        out.count = n;
    }
}

}  // namespace net
