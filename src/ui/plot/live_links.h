// The live links a plot holds: POLL subscriptions of the middleware layer.
//
// The caller sets the link parameters, then attaches a buffer size and gets a
// link number. The first reading is taken as soon as the caller's handler has
// returned (where the transport can answer at once), not one interval later;
// then the link delivers at its interval. Each delivery keeps the link's last
// good values for reading.
// Deliveries are gathered into rounds: when every attached link has delivered
// since the last round (or one delivers a second time before the others, so a
// silent link cannot hold the plot back), the owner is told once. A spectrum
// read in four parts is thus redrawn once per interval, not four times.
//
// The round's completion code is non-zero only when every link heard in the
// round failed (it is then the code of the first failure in delivery order):
// one dead server must not silence the healthy links of the same plot. Each
// link's own state is its last completion code (LastStatus), and a failed
// delivery leaves its last good values in place.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "ui/plot/handle_table.h"
#include "vire/completion_codes.h"
#include "vire/transport.h"

namespace ui {

struct LinkParameters {
    std::string accessMode = "POLL";
    int32_t intervalMs = 1000;
    std::string protocol = "VIRE";
    std::string context;
    std::string server;
    std::string device;
    std::string property;
};

class LiveLinks {
public:
    // onRound(link that completed the round, the round's completion code).
    using RoundHandler = std::function<void(int32_t link, vire::Status status)>;

    explicit LiveLinks(RoundHandler onRound);
    ~LiveLinks();
    LiveLinks(const LiveLinks&) = delete;
    LiveLinks& operator=(const LiveLinks&) = delete;

    // What the next Attach uses.
    LinkParameters parameters;

    // Starts a link of `count` 32-bit floats on "/" + context + "/" + server +
    // "/" + device. -1 when the access mode is not "POLL", the protocol not
    // "VIRE", the count or interval below 1, or no transport (or scheduler)
    // can carry it.
    int32_t Attach(int32_t count);
    // Stops one link; no delivery of it arrives afterwards. False for unknown links.
    bool Detach(int32_t link);
    void DetachAll();

    // The last good values of a link: into one value (its first element) or
    // into `target` (as many as both hold). False / 0 when the link is unknown
    // or has delivered nothing good yet; the target is then left alone.
    bool Read(int32_t link, float& value) const;
    int32_t Read(int32_t link, std::span<float> target) const;

    int32_t Count() const { return static_cast<int32_t>(links_.size()); }
    // Completion code of a link's last delivery: 0 when it was good,
    // vire::kNoData before the link has delivered at all, kUnknownLink for a
    // link number that names no running link.
    vire::Status LastStatus(int32_t link) const;
    static constexpr vire::Status kUnknownLink = -1;
    std::string FullDeviceName() const;
    // Rounds completed so far.
    int32_t Rounds() const { return rounds_; }

private:
    struct Link {
        std::shared_ptr<vire::Transport> transport;
        vire::SubscriptionRequest request;
        vire::SubscriptionId subscription = -1;
        int32_t count = 0;
        std::vector<float> values;    // last good delivery (may be shorter than count)
        vire::Status lastStatus = vire::kNoData;
    };

    void Deliver(int32_t link, const vire::LinkData& data);
    // The first reading of a link that has not delivered yet.
    void ReadFirst(int32_t link);
    // Decodes a good delivery into `values` (untouched otherwise); its
    // completion code (a reading the plot cannot use is kFormatMismatch).
    static vire::Status Decode(const vire::LinkData& data, int32_t count, std::vector<float>& values);
    void EndRound(int32_t link);
    vire::Status RoundStatus() const;

    RoundHandler onRound_;
    HandleTable<Link> links_;
    std::vector<int32_t> delivered_;   // links heard from in the current round, in order
    int32_t rounds_ = 0;
    // Shared with the subscriptions' callbacks: a delivery queued behind our
    // end finds it false and does nothing.
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace ui
