#include "history/archived_data.h"

#include "history_fixture.h"

namespace {

using history::MYGetArchivedDataEx;
using history_test::HistoryTest;
constexpr int32_t kNow = static_cast<int32_t>(sim_test::kNowS);

TEST_F(HistoryTest, ArchivedDataAsksTheTableServerForAtMost999PointsAndSendsTheModeOnlyWhenPositive) {
    // The call as recorded: device, property, count asked, format, access, time-out, input bytes.
    struct Case { const char* name; int16_t mode; int16_t count; const char* call; };
    const Case cases[] = {
        {"ORKA", 0, 0, "OKHISTORY CURRENT 999 526 1 500 8"},
        {"orka", 1, 1, "HISTORY CURRENT 999 526 1 500 12"},
        {"KALM2", -1, 2, "KALMHISTORY CURRENT 2 526 1 500 8"},
        {"VELOX3", 2, 1000, "KALMHISTORY CURRENT 999 526 1 500 12"},
        {"VESTA", 0, 999, "VEHISTORY CURRENT 999 526 1 500 8"},
        {"/x", 0, -3, "/x CURRENT 999 526 1 500 8"},
        {"LYRASX", 0, 998, "HISTORY CURRENT 998 526 1 500 8"},
    };
    for (const Case& c : cases) {
        recorder->calls.clear();
        outBytes.clear();
        std::vector<float> values;
        std::vector<int32_t> times;
        int16_t count = c.count, status = 0;
        MYGetArchivedDataEx(c.name, "CURRENT", c.mode, kNow - 60, kNow, values, times, count, status);
        ASSERT_EQ(recorder->calls, std::vector<std::string>{c.call}) << c.name;
        // One record more than asked for.
        EXPECT_EQ(outBytes.at(0), 8u * (c.count >= 2 && c.count <= 999 ? c.count + 1 : 1000)) << c.name;
    }
}

TEST_F(HistoryTest, ArchivedDataRetriesTimeOutsTwiceAndKeepsTheCallersArraysUnlessPointsCame) {
    // size: values and times afterwards (the caller's 3 kept, or 2 zeros when nothing came).
    struct Case { const char* fault; int16_t count; int32_t from, to; vire::Status status; int16_t countOut; size_t size; std::vector<std::string> timeouts; };
    const Case cases[] = {
        {"slow:1500", 0, kNow - 3600, kNow, 0, 61, 61, {"500", "2500"}},
        {"slow:5000", 3, kNow - 3600, kNow, 45, 3, 3, {"500", "2500", "4500"}},
        {"code:45*2", 5, kNow - 3600, kNow, 0, 5, 5, {"500", "2500", "4500"}},
        {"down", 3, kNow - 3600, kNow, 2, 3, 3, {"500"}},
        {"code:36", 3, kNow - 3600, kNow, 36, 3, 3, {"500"}},
        {"", 2, kNow - 3600, kNow, 0, 2, 2, {"500"}},
        {"", 0, kNow + 60, kNow + 600, 0, 0, 2, {"500"}},
        {"", 7, kNow + 60, kNow + 600, 0, 7, 2, {"500"}},
    };
    for (const Case& c : cases) {
        recorder->calls.clear();
        accelerator->ClearFault("/ORKA/BPMHIST");
        if (*c.fault) Fault("/ORKA/BPMHIST", c.fault);
        std::vector<float> values{1, 2, 3};
        std::vector<int32_t> times{7, 8, 9};
        int16_t count = c.count, status = -1;
        const int32_t result = MYGetArchivedDataEx("/ORKA/BPMHIST/BPM.S01.C2", "ORBIT.X.Q1.HIST", 0, c.from, c.to,
                                                   values, times, count, status);
        EXPECT_EQ(status, c.status) << c.fault;
        EXPECT_EQ(result, c.status) << c.fault;
        EXPECT_EQ(count, c.countOut) << c.fault;
        ASSERT_EQ(values.size(), c.size) << c.fault;
        EXPECT_EQ(times.size(), c.size) << c.fault;
        std::vector<std::string> timeouts;
        for (const auto& call : recorder->calls) timeouts.push_back(history_test::Word(call, 5));
        EXPECT_EQ(timeouts, c.timeouts) << c.fault;
        const std::vector<int32_t> kept{7, 8, 9}, zeros{0, 0};
        EXPECT_EQ(c.status != 0 ? times == kept : c.size == 2 && c.countOut != 2 ? times == zeros : times.back() == kNow, true) << c.fault;
    }
}

}  // namespace
