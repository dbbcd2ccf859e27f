#include "viewer/movie_state.h"

namespace viewer {

MovieState::Start MovieState::Toggle(int16_t itemCount, int16_t currentItem, std::span<const int32_t> times) {
    if (itemCount == 0) {
        item_ = -1;
        return Start::NoItem;
    }
    item_ = currentItem >= 0 ? currentItem : 0;
    for (auto i = static_cast<int32_t>(times.size()) - 1; i >= 1; --i) {
        if (times[static_cast<size_t>(i)] < spectrumTime_) {
            pos_ = i;
            break;
        }
    }
    running_ = !running_;
    return running_ ? Start::Running : Start::Stopped;
}

std::optional<int32_t> MovieState::Tick(std::span<const int32_t> times) {
    if (item_ >= 0) {
        ++pos_;
        if (pos_ > static_cast<int32_t>(times.size()) - 1) {
            running_ = false;
            return std::nullopt;
        }
        replayTime_ = times[static_cast<size_t>(pos_)];
    }
    return replayTime_;
}

std::optional<int32_t> MovieState::Step(bool forward, std::span<const int32_t> times, int32_t upperBound) {
    running_ = false;
    if (forward) {
        if (pos_ > upperBound - 1) return std::nullopt;
        ++pos_;
    } else {
        if (pos_ < 1) return std::nullopt;
        --pos_;
    }
    if (pos_ < 0 || pos_ >= static_cast<int32_t>(times.size())) return std::nullopt;
    replayTime_ = times[static_cast<size_t>(pos_)];
    return replayTime_;
}

int16_t MovieState::SpeedUp() {
    speed_ = speed_ == 1 ? 2 : speed_ == 2 ? 4 : 1;
    return speed_ == 1 ? 0 : speed_ == 2 ? 1 : 2;
}

std::string MovieState::SpeedCaption(int16_t entry) {
    static const char* const kCaptions[] = {"Speed x1", "Speed x2", "Speed x4"};
    return entry >= 0 && entry <= 2 ? kCaptions[entry] : std::string();
}

}  // namespace viewer
