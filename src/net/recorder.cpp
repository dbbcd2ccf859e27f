#include "net/recorder.h"

#include <chrono>
#include <iostream>
#include <set>
#include <vector>

#include "vire/clock.h"
#include "vire/completion_codes.h"
#include "vire/formats.h"
#include "vire/link.h"
#include "vire/wire.h"

namespace net {
namespace {

constexpr int64_t kSecondsPerDay = 86'400;
constexpr int32_t kLiveReadTimeoutMs = 1000;

}  // namespace

Recorder::Recorder(std::shared_ptr<sim::SimulatedAccelerator> accelerator, std::shared_ptr<ArchiveStore> store,
                   std::shared_ptr<vire::Transport> devices)
    : accelerator_(std::move(accelerator)), store_(std::move(store)), devices_(std::move(devices)) {}

Recorder::~Recorder() {
    {
        std::lock_guard<std::mutex> lock(mutex_);
        stopping_ = true;
    }
    wake_.notify_all();
    if (thread_.joinable()) thread_.join();
}

void Recorder::Start() { thread_ = std::thread([this] { Run(); }); }

int Recorder::RecordAt(int64_t t) {
    const auto& settings = accelerator_->settings();
    int stored = 0;
    std::set<std::string> local, archives;
    for (const auto& c : accelerator_->model().channels) {
        if (c.hstServer.empty() && c.archiver.empty()) continue;
        std::vector<std::byte> buffer(static_cast<size_t>(c.size) * 4);
        vire::DataObject out{c.size, vire::kFormatSingle, "", buffer};
        const vire::Status status = devices_->Call(c.serverAddress + "/" + c.device, c.property, out, {},
                                                   vire::kAccessRead, kLiveReadTimeoutMs);
        if (status != vire::kOk || out.count != c.size) continue;  // a server away leaves a gap, as it would
        // Stored in element order, whatever order the device reads out in.
        std::vector<float> values(static_cast<size_t>(c.size));
        for (int32_t i = 0; i < c.size; ++i)
            values[static_cast<size_t>(c.reverse ? c.size - 1 - i : i)] = vire::LoadFloat(buffer, 4 * static_cast<size_t>(i));
        try {
            if (!c.hstServer.empty()) {
                store_->PutSnapshot(c.hstServer, c.hstProperty, t, values, true);
                local.insert(c.hstServer);
                ++stored;
            }
            if (!c.archiver.empty() && t % settings.archiveStepS == 0) {
                store_->PutSnapshot(c.archiver, c.arcProperty, t, values, true);
                archives.insert(c.archiver);
                ++stored;
            }
        } catch (const StoreError& e) {
            std::cerr << "lumiscope-archiver: " << e.what() << "\n";
        }
    }
    try {
        for (const auto& s : local) store_->Prune(s, t - settings.localHistoryDays * kSecondsPerDay);
        for (const auto& s : archives) store_->Prune(s, t - settings.archiveDays * kSecondsPerDay);
    } catch (const StoreError& e) {
        std::cerr << "lumiscope-archiver: " << e.what() << "\n";
    }
    return stored;
}

void Recorder::Run() {
    const int64_t step = accelerator_->settings().localHistoryStepS;
    for (;;) {
        const int64_t nowMs = vire::NowMilliseconds();
        const int64_t next = (nowMs / 1000 / step + 1) * step;
        {
            std::unique_lock<std::mutex> lock(mutex_);
            if (wake_.wait_for(lock, std::chrono::milliseconds(next * 1000 - nowMs), [this] { return stopping_; }))
                return;
        }
        RecordAt(next);
    }
}

}  // namespace net
