// The sample configuration's simulated accelerator at a fixed moment, with
// helpers to call it as the viewer does.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "sim/simulated_accelerator.h"
#include "vire/clock.h"
#include "vire/completion_codes.h"
#include "vire/formats.h"
#include "vire/link.h"
#include "vire/wire.h"

namespace sim_test {

// 2026-11-22 18:30:00 UTC: a whole minute and a whole quarter hour, so that
// local history and archive both recorded a value at this very second.
inline constexpr int64_t kNowS = 1795372200;

struct Reading {
    vire::Status status = -1;
    std::vector<float> values;
    std::vector<int32_t> times;  // FLTINT reads
    int32_t stamp = 0;
};

class SimTest : public ::testing::Test {
protected:
    void SetUp() override {
        vire::SetTestClock(kNowS * 1000);
        accelerator = std::make_shared<sim::SimulatedAccelerator>(LUMISCOPE_SAMPLE_CONFIG_DIR, Settings());
        vire::SetTransport(accelerator);
    }
    void TearDown() override {
        vire::SetTransport(nullptr);
        vire::UseSystemClock();
        vire::ResetUserName();
    }
    virtual sim::SimulationSettings Settings() {
        sim::SimulationSettings settings;
        settings.seed = 7;
        settings.writers = {"operator"};
        return settings;
    }

    // `count` SINGLEs of a live property.
    Reading Floats(const std::string& device, const std::string& property, int32_t count,
                   int16_t format = vire::kFormatSingle, int32_t timeoutMs = 1000) {
        Reading r;
        std::vector<std::byte> buffer(static_cast<size_t>(count) * 4);
        vire::DataObject out{count, format, "", buffer};
        r.status = vire::LinkCall(device, property, out, vire::DataObject{}, vire::kAccessRead, timeoutMs);
        for (int32_t i = 0; i < out.count; ++i) r.values.push_back(vire::LoadFloat(buffer, 4 * static_cast<size_t>(i)));
        r.stamp = out.stamp;
        return r;
    }

    // A history read with input start, stop (and mode when given), into a
    // buffer with room for `room` elements (default: the count asked).
    Reading History(const std::string& device, const std::string& property, std::vector<int32_t> input,
                    int32_t count, int16_t format = vire::kFormatFltInt, int32_t room = -1) {
        Reading r;
        const int32_t width = vire::FormatSize(format);
        std::vector<std::byte> buffer(static_cast<size_t>(room < 0 ? count : room) * static_cast<size_t>(width));
        std::vector<std::byte> in(input.size() * 4);
        for (size_t i = 0; i < input.size(); ++i) vire::StoreInt32(in, 4 * i, input[i]);
        vire::DataObject out{count, format, "", buffer};
        r.status = vire::LinkCall(device, property, out,
                                  vire::DataObject{static_cast<int32_t>(input.size()), vire::kFormatLong, "", in},
                                  vire::kAccessRead, 500);
        for (int32_t i = 0; i < out.count; ++i) {
            r.values.push_back(vire::LoadFloat(buffer, static_cast<size_t>(i * width)));
            if (width == 8) r.times.push_back(vire::LoadInt32(buffer, static_cast<size_t>(i * width + 4)));
        }
        r.stamp = out.stamp;
        return r;
    }

    vire::Status WriteFloat(const std::string& device, const std::string& property, float value,
                            int16_t format = vire::kFormatSingle) {
        std::vector<std::byte> in(4);
        vire::StoreFloat(in, 0, value);
        vire::DataObject out{};
        return vire::LinkCall(device, property, out, vire::DataObject{1, format, "", in}, vire::kAccessWrite, 3000);
    }

    std::shared_ptr<sim::SimulatedAccelerator> accelerator;
};

}  // namespace sim_test
