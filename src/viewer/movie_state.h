// The replay of recorded spectra: which item's time stamps it walks, where it
// stands, whether it runs, and the speed shown beside it.
//
// Qt-free. The window hands in the driving item's time stamps (`times`,
// ascending) and turns what comes back into loads, captions and the timer.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace viewer {

class MovieState {
public:
    enum class Start { NoItem, Running, Stopped };

    int16_t Item() const { return item_; }      // -1 = none
    int32_t Pos() const { return pos_; }
    int16_t Speed() const { return speed_; }    // 1, 2 or 4
    bool Running() const { return running_; }
    int32_t ReplayTime() const { return replayTime_; }
    // The time of the recorded spectrum on show.
    int32_t SpectrumTime() const { return spectrumTime_; }
    void SetSpectrumTime(int32_t time) { spectrumTime_ = time; }

    // The start/stop button: with no item selected nothing runs. Otherwise
    // the current item (or the first) drives the replay, placed on the last
    // stamp before the spectrum on show (never on stamp 0; with none earlier
    // the position stays), and the running state is toggled.
    Start Toggle(int16_t itemCount, int16_t currentItem, std::span<const int32_t> times);
    void Stop() { running_ = false; }
    // A tick: the time to load next, or nothing. Past the item's last point
    // (its count) the replay ends without a load. Without an item the same
    // time is loaded again.
    std::optional<int32_t> Tick(std::span<const int32_t> times);
    // A step by hand (stops the replay); the time to load, or nothing at
    // either end. The forward limit is the stamps' upper bound, which may
    // differ from the count the ticks go by.
    std::optional<int32_t> Step(bool forward, std::span<const int32_t> times, int32_t upperBound);
    // 1 -> 2 -> 4 -> 1; the menu entry (0..2) of the new speed.
    int16_t SpeedUp();
    static std::string SpeedCaption(int16_t entry);

private:
    int16_t item_ = -1;
    int32_t pos_ = 0;
    int16_t speed_ = 1;
    bool running_ = false;
    int32_t replayTime_ = 0;
    int32_t spectrumTime_ = 0;
};

}  // namespace viewer
