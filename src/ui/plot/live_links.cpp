#include "ui/plot/live_links.h"

#include <algorithm>

#include "vire/completion_codes.h"
#include "vire/formats.h"
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
    entry.subscription = id;
    return link;
}

bool LiveLinks::Detach(int32_t link) {
    Link* entry = links_.Find(link);
    if (!entry) return false;
    if (entry->transport) entry->transport->Unsubscribe(entry->subscription);
    links_.Remove(link);
    delivered_.erase(link);
    return true;
}

void LiveLinks::DetachAll() {
    while (!links_.empty()) Detach(links_.begin()->first);
    delivered_.clear();
    roundStatus_ = 0;
}

void LiveLinks::Deliver(int32_t link, const vire::LinkData& data) {
    Link* found = links_.Find(link);
    if (!found) return;
    Link& entry = *found;
    vire::Status status = data.status;
    if (status == 0) {
        // Only whole 32-bit floats that were asked for are taken; anything
        // else is a reading the plot cannot use.
        const size_t delivered = static_cast<size_t>(std::max<int32_t>(data.count, 0));
        if (vire::CanonicalFormat(data.format) != vire::kFormatSingle ||
            delivered > static_cast<size_t>(entry.count) || data.bytes.size() < delivered * sizeof(float)) {
            status = vire::kFormatMismatch;
        } else {
            entry.values.resize(delivered);
            const std::span<const std::byte> bytes(data.bytes);
            for (size_t i = 0; i < delivered; ++i) entry.values[i] = vire::LoadFloat(bytes, 4 * i);
        }
    }
    entry.lastStatus = status;

    // The round handler may detach links or even end the plot that holds us.
    const std::shared_ptr<bool> alive = alive_;
    if (delivered_.count(link)) {
        EndRound(link);
        if (!*alive || !links_.Find(link)) return;
    }
    delivered_.insert(link);
    if (status != 0 && roundStatus_ == 0) roundStatus_ = status;
    if (delivered_.size() >= links_.size()) EndRound(link);
}

void LiveLinks::EndRound(int32_t link) {
    const vire::Status status = roundStatus_;
    delivered_.clear();
    roundStatus_ = 0;
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
    return entry ? entry->lastStatus : vire::Status{0};
}

}  // namespace ui
