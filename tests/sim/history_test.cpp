#include <algorithm>

#include "sim_fixture.h"

namespace {

using sim_test::kNowS;
using sim_test::SimTest;

constexpr int32_t kDay = 86400;

TEST_F(SimTest, LocalHistoryCoversTheLastDaysTheArchiveReachesFurtherAtCoarserSteps) {
    // step: between consecutive time stamps; 0 = not checked.
    struct Case { const char* device; const char* property; int64_t from, to; int32_t count; size_t points; int32_t step; };
    const Case cases[] = {
        // Ten minutes of the local history: one value a minute, both ends included.
        {"/ORKA/BPMHIST/BPM.S01.C2", "ORBIT.X.Q1.HIST", kNowS - 600, kNowS, 999, 11, 60},
        // More recorded than asked for: spread over the window from end to end, at most the count.
        {"/ORKA/BPMHIST/BPM.S01.C2", "ORBIT.X.Q1.HIST", kNowS - kDay, kNowS, 100, 100, 0},
        {"/ORKA/BPMHIST/BPM.S01.C2", "ORBIT.X.Q1.HIST", kNowS - 600, kNowS, 5, 5, 0},
        // Before the local history's first day: nothing there, and no error.
        {"/ORKA/BPMHIST/BPM.S01.C2", "ORBIT.X.Q1.HIST", kNowS - 10 * kDay, kNowS - 9 * kDay, 999, 0, 0},
        // The archiver has it, a value every quarter hour.
        {"/ORKA/OKHISTORY/BPM.S01.C2", "ORBIT.X.Q1", kNowS - 10 * kDay, kNowS - 10 * kDay + 3600, 999, 5, 900},
        // The machine quantities of the history files, by the machine's archiver name.
        {"OKHISTORY", "CURRENT", kNowS - 3600, kNowS, 999, 5, 900},
        {"/ORKA/MACHHIST/RING", "LIFETIME.HIST", kNowS - 120, kNowS, 999, 3, 60},
        // Numbered elements of a server without names.
        {"/ORKA/BCMHIST/#17", "CHARGE.P1.HIST", kNowS - 60, kNowS, 999, 2, 60},
        // Start after stop, and a window in the future.
        {"/ORKA/BPMHIST/BPM.S01.C2", "ORBIT.X.Q1.HIST", kNowS, kNowS - 600, 999, 0, 0},
        {"/ORKA/BPMHIST/BPM.S01.C2", "ORBIT.X.Q1.HIST", kNowS + 60, kNowS + 600, 999, 0, 0},
    };
    for (const Case& c : cases) {
        // Into a buffer larger than the count asked: no more than the count is delivered.
        const auto r = Read(c.device, c.property, c.count, vire::kFormatFltInt,
                            {static_cast<int32_t>(c.from), static_cast<int32_t>(c.to)}, 999);
        ASSERT_EQ(r.status, 0) << c.device << " " << c.property;
        EXPECT_EQ(r.values.size(), c.points) << c.device << " " << c.property;
        const bool spread = c.step == 0 && c.points > 1;
        EXPECT_TRUE(!spread || (r.times.front() == c.from && r.times.back() == c.to)) << c.device << " spread";
        for (size_t i = 0; i < r.times.size(); ++i) {
            EXPECT_TRUE(r.times[i] >= c.from && r.times[i] <= c.to) << r.times[i];
            const int32_t step = i == 0 ? 0 : r.times[i] - r.times[i - 1];
            EXPECT_TRUE(i == 0 || (step > 0 && (c.step == 0 || step == c.step))) << c.device << " step " << step;
        }
    }
}

TEST_F(SimTest, HistoryAgreesWithWhatWasLiveAtTheSameMomentInElementOrder) {
    const int32_t now = static_cast<int32_t>(kNowS);
    // reversed: the live spectrum is read out last element first, the recorded one is in element order.
    struct Case { const char* device; const char* property; const char* history; const char* historyProperty; int16_t format; bool reversed; };
    const Case cases[] = {
        {"/ORKA/DCCT/RING", "CURRENT", "/ORKA/MACHHIST/RING", "CURRENT.HIST", vire::kFormatFltInt, false},
        {"/ORKA/DCCT/RING", "CURRENT", "OKHISTORY", "CURRENT", vire::kFormatFltInt, false},
        {"/ORKA/BPMQ2/ORBIT", "ORBIT.X", "/ORKA/BPMHIST/#0", "ORBIT.X.Q2.HIST", vire::kFormatSingle, false},
        {"/ORKA/BPMQ3/ORBIT", "ORBIT.X", "/ORKA/BPMHIST/#0", "ORBIT.X.Q3.HIST", vire::kFormatSingle, true},
    };
    for (const Case& c : cases) {
        auto live = Read(c.device, c.property, 32).values;
        if (c.reversed) std::reverse(live.begin(), live.end());
        const auto past = Read(c.history, c.historyProperty, 32, c.format, {now, now, 0});
        EXPECT_EQ(past.values, live) << c.history << " " << c.historyProperty;
        EXPECT_EQ(past.times.empty() ? past.stamp : past.times.back(), now) << c.history << " " << c.historyProperty;
    }
}

TEST_F(SimTest, WholeSpectraComeFromTheRecordedTimeAtOrBeforeTheOneAskedAndNoMoreThanAsked) {
    const int32_t t = static_cast<int32_t>(kNowS - 30);
    const auto at = Read("/ORKA/BCMHIST/#0", "CHARGE.P2.HIST", 1980, vire::kFormatSingle, {t, t, 0});
    ASSERT_EQ(at.values.size(), 1980u);
    EXPECT_EQ(at.stamp, kNowS - 60);
    const auto fewer = Read("/ORKA/BCMHIST/#0", "CHARGE.P2.HIST", 10, vire::kFormatSingle, {t, 0, 0}, 1980);
    EXPECT_EQ(std::vector<float>(at.values.begin(), at.values.begin() + 10), fewer.values);
}

// probe: what a "#1" probe counts in the window, even more than one read could fetch; -1 = no probe.
TEST_F(SimTest, HistoryReadsCheckTheirInputFormatElementAndTimeAndProbesCountTheWindow) {
    struct Case { const char* device; const char* property; std::vector<int32_t> input; int16_t format; vire::Status status; int32_t probe; };
    const int32_t from = static_cast<int32_t>(kNowS - 600), to = static_cast<int32_t>(kNowS), hour = from - 3000,
                  old = static_cast<int32_t>(kNowS - 30 * kDay), older = old + kDay, days = static_cast<int32_t>(kNowS - 10 * kDay);
    const int16_t fltInt = vire::kFormatFltInt, single = vire::kFormatSingle;
    const Case cases[] = {
        {"/ORKA/BPMHIST/BPM.S01.C2", "ORBIT.X.Q1.HIST", {from}, fltInt, vire::kInvalidInput, -1},
        {"/ORKA/BPMHIST/BPM.S01.C2", "ORBIT.X.Q1.HIST", {from, to, 1}, fltInt, 0, -1},
        {"/ORKA/BPMHIST/BPM.S01.C2", "ORBIT.X.Q1.HIST", {from, to}, single, vire::kFormatMismatch, -1},
        // An element of another quadrant is not in this quadrant's history.
        {"/ORKA/BPMHIST/BPM.S09.C1", "ORBIT.X.Q1.HIST", {from, to}, fltInt, vire::kUnknownDevice, -1},
        {"/ORKA/BPMHIST/BPM.S09.C1", "ORBIT.X.Q3.HIST", {from, to}, fltInt, 0, -1},
        {"/ORKA/BCMHIST/#1980", "CHARGE.P1.HIST", {from, to}, fltInt, vire::kUnknownDevice, -1},
        {"/ORKA/BPMHIST/BPM.S01.C2", "NOSUCH.HIST", {from, to}, fltInt, vire::kUnknownProperty, -1},
        {"/KALM/KALMHISTORY/KBPM.03", "POS.X", {from, to}, fltInt, 0, -1},
        {"HISTORY", "CURRENT", {from, to}, fltInt, vire::kUnknownProperty, -1},
        {"/ORKA/BPMHIST/#1", "ORBIT.X.Q1.HIST", {hour, to, 0}, fltInt, 0, 61},
        {"/ORKA/OKHISTORY/#1", "ORBIT.X.Q1", {hour, to, 0}, fltInt, 0, 5},
        {"/ORKA/BPMHIST/#1", "ORBIT.X.Q1.HIST", {old, older, 0}, fltInt, 0, 0},
        {"/ORKA/OKHISTORY/#1", "ORBIT.X.Q1", {old, older, 0}, fltInt, 0, 97},
        {"/ORKA/BPMHIST/#1", "ORBIT.X.Q1.HIST", {to - 2 * kDay, to, 0}, fltInt, 0, 2881},
        // Whole spectra: the local history's days, the archive's years, nothing in the future.
        {"/ORKA/BCMHIST/#0", "CHARGE.P2.HIST", {days, days, 0}, single, vire::kNoData, -1},
        {"/ORKA/OKHISTORY/#0", "CHARGE.P2", {days, days, 0}, single, 0, -1},
        {"/ORKA/OKHISTORY/#0", "CHARGE.P2", {to - 1000 * kDay, 0, 0}, single, vire::kNoData, -1},
        {"/ORKA/OKHISTORY/#0", "CHARGE.P2", {to + 3600, 0, 0}, single, vire::kNoData, -1},
        {"/ORKA/OKHISTORY/#0", "CHARGE.P2", {to, to, 0}, fltInt, vire::kFormatMismatch, -1},
        {"/ORKA/OKHISTORY/#0", "NOSUCH", {to, to, 0}, single, vire::kUnknownProperty, -1},
    };
    for (const Case& c : cases) {
        const auto r = Read(c.device, c.property, 999, c.format, c.input);
        EXPECT_EQ(r.status, c.status) << c.device << " " << c.property << " inputs " << c.input.size();
        EXPECT_EQ(c.probe < 0 ? c.probe : r.times.at(0), c.probe) << c.device << " " << c.input[0];
    }
}

}  // namespace
