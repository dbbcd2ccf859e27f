#include "ui/plot/live_links.h"

#include <algorithm>

#include "vire/formats.h"
#include "vire/scheduler.h"
#include "vire/wire.h"

namespace ui {

LiveLinks::LiveLinks(RoundHandler onRound) : onRound_(std::move(onRound)) {}

LiveLinks::~LiveLinks() {
    *alive_ = false;
    DetachAll();
}

std::string LiveLinks::FullDeviceName() const {
    return "/" + parameters.context + "/" + parameters.server + "/" + parameters.device;
}

int32_t LiveLinks::Attach(int32_t count) {
    if (parameters.accessMode != "POLL" || parameters.protocol != "VIRE") return -1;
    if (count < 1 || parameters.intervalMs < 1) return -1;
    auto transport = vire::CurrentTransport();
    if (!transport) return -1;

    vire::SubscriptionRequest request;
    request.fullDeviceName = FullDeviceName();
    request.property = parameters.property;
    request.format = vire::kFormatSingle;
    request.count = count;
    request.intervalMs = parameters.intervalMs;

    Link fresh;
    fresh.count = count;
    const int32_t link = links_.Add(std::move(fresh));
    std::weak_ptr<bool> alive = alive_;
    vire::SubscriptionId id = -1;
    try {
        id = transport->Subscribe(request, [this, alive, link](const vire::LinkData& data) {
            const auto guard = alive.lock();
            if (!guard || !*guard) return;
            Deliver(link, data);
        });
    } catch (...) {
        // A transport that fails to start a link gives no link, not an error.
        id = -1;
    }
    if (id < 0) {
        links_.Remove(link);
        return -1;
    }
    Link& entry = *links_.Find(link);
    entry.transport = std::move(transport);
    entry.request = request;
    entry.subscription = id;
    // Posted, not read here: every part of a spectrum is attached by the
    // caller's handler before the first round can end, and the round's event
    // never runs inside the handler that attached the link.
    if (vire::Scheduler* scheduler = vire::CurrentScheduler())
        scheduler->Post([this, alive, link] {
            const auto guard = alive.lock();
            if (guard && *guard) ReadFirst(link);
        });
    return link;
}

void LiveLinks::ReadFirst(int32_t link) {
    const Link* entry = links_.Find(link);
    // Detached meanwhile, or its first tick was quicker.
    if (!entry || entry->lastStatus != vire::kNoData ||
        std::find(delivered_.begin(), delivered_.end(), link) != delivered_.end())
        return;
    std::optional<vire::LinkData> reading;
    try {
        reading = entry->transport->ReadAtOnce(entry->request);
    } catch (...) {
        // No first reading, no error: the first tick reports the link's state.
        return;
    }
    if (reading) Deliver(link, *reading);
}

bool LiveLinks::Detach(int32_t link) {
    Link* entry = links_.Find(link);
    if (!entry) return false;
    if (entry->transport) entry->transport->Unsubscribe(entry->subscription);
    links_.Remove(link);
    // A link gone in the middle of a round no longer counts towards it.
    std::erase(delivered_, link);
    return true;
}

void LiveLinks::DetachAll() {
    while (!links_.empty()) Detach(links_.begin()->first);
    delivered_.clear();
}

vire::Status LiveLinks::Decode(const vire::LinkData& data, int32_t count, std::vector<float>& values) {
    // `values` is only written once the delivery is known to be good.
    if (data.status != 0) return data.status;
    // Only whole 32-bit floats that were asked for are taken.
    const size_t delivered = static_cast<size_t>(std::max<int32_t>(data.count, 0));
    if (vire::CanonicalFormat(data.format) != vire::kFormatSingle || delivered > static_cast<size_t>(count) ||
        data.bytes.size() < delivered * sizeof(float))
        return vire::kFormatMismatch;
    values.resize(delivered);
    const std::span<const std::byte> bytes(data.bytes);
    for (size_t i = 0; i < delivered; ++i) values[i] = vire::LoadFloat(bytes, 4 * i);
    return 0;
}

void LiveLinks::Deliver(int32_t link, const vire::LinkData& data) {
    if (!links_.Find(link)) return;
    // A second delivery before the others ends the round it belongs to
    // first, with the statuses and values of that round.
    if (std::find(delivered_.begin(), delivered_.end(), link) != delivered_.end()) {
        const std::shared_ptr<bool> alive = alive_;
        EndRound(link);
        // The round handler may detach links or even end the plot that holds us.
        if (!*alive || !links_.Find(link)) return;
    }
    Link& entry = *links_.Find(link);
    entry.lastStatus = Decode(data, entry.count, entry.values);
    delivered_.push_back(link);
    if (delivered_.size() >= links_.size()) EndRound(link);
}

vire::Status LiveLinks::RoundStatus() const {
    vire::Status first = 0;
    for (int32_t link : delivered_) {
        const vire::Status status = LastStatus(link);
        if (status == 0) return 0;
        if (first == 0) first = status;
    }
    return first;
}

void LiveLinks::EndRound(int32_t link) {
    const vire::Status status = RoundStatus();
    delivered_.clear();
    ++rounds_;
    // The handler may detach or attach links (even this one); nothing of the
    // round's state is used after it returns.
    if (onRound_) onRound_(link, status);
}

bool LiveLinks::Read(int32_t link, float& value) const {
    const Link* entry = links_.Find(link);
    if (!entry || entry->values.empty()) return false;
    value = entry->values.front();
    return true;
}

int32_t LiveLinks::Read(int32_t link, std::span<float> target) const {
    const Link* entry = links_.Find(link);
    if (!entry) return 0;
    const size_t n = std::min(target.size(), entry->values.size());
    std::copy_n(entry->values.begin(), n, target.begin());
    return static_cast<int32_t>(n);
}

vire::Status LiveLinks::LastStatus(int32_t link) const {
    const Link* entry = links_.Find(link);
    return entry ? entry->lastStatus : kUnknownLink;
}

}  // namespace ui
