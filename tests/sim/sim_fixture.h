// The sample configuration's simulated accelerator at a fixed moment, with
// helpers to call it as the viewer does.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "sim/simulated_accelerator.h"
#include "transport_read.h"
#include "vire/clock.h"
#include "vire/formats.h"
#include "vire/link.h"

namespace sim_test {

// 2026-11-22 18:30:00 UTC: a whole minute and a whole quarter hour, so that
// local history and archive both recorded a value at this very second.
inline constexpr int64_t kNowS = 1795372200;

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

    Answer Read(const std::string& device, const std::string& property, int32_t count,
                int16_t format = vire::kFormatSingle, const std::vector<int32_t>& input = {}, int32_t room = -1,
                int32_t timeoutMs = 1000) {
        return sim_test::Read(*accelerator, device, property, count, format, input, room, timeoutMs);
    }

    std::shared_ptr<sim::SimulatedAccelerator> accelerator;
};

}  // namespace sim_test
