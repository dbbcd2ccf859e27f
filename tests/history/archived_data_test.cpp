#include "history/archived_data.h"
#include "history/archived_trace.h"
#include "history_fixture.h"

namespace {

using history_test::HistoryTest;
constexpr int32_t kNow = static_cast<int32_t>(sim_test::kNowS);

TEST_F(HistoryTest, ArchivedDataAsksTheTableServerForAtMost999PointsAndSendsTheModeOnlyWhenPositive) {
    // The call as recorded: device, property, count asked, format, access, time-out, input bytes.
    struct Case { const char* name; int16_t mode; int16_t count; const char* call; };
    for (const Case& c : {Case{"ORKA", 0, 0, "OKHISTORY CURRENT 999 526 1 500 8"}, Case{"orka", 1, 1, "HISTORY CURRENT 999 526 1 500 12"},
                          Case{"KALM2", -1, 2, "KALMHISTORY CURRENT 2 526 1 500 8"}, Case{"VELOX3", 2, 1000, "KALMHISTORY CURRENT 999 526 1 500 12"},
                          Case{"VESTA", 0, 999, "VEHISTORY CURRENT 999 526 1 500 8"}, Case{"/x", 0, -3, "/x CURRENT 999 526 1 500 8"},
                          Case{"LYRASX", 0, 998, "HISTORY CURRENT 998 526 1 500 8"}}) {
        recorder->calls.clear();
        outBytes.clear();
        std::vector<float> values;
        std::vector<int32_t> times;
        int16_t count = c.count, status = 0;
        history::MYGetArchivedDataEx(c.name, "CURRENT", c.mode, kNow - 60, kNow, values, times, count, status);
        ASSERT_EQ(recorder->calls, std::vector<std::string>{c.call}) << c.name;
        EXPECT_EQ(outBytes.at(0), 8u * (std::stoul(Words(2)) + 1)) << c.name;  // one record more than asked for
    }
}

TEST_F(HistoryTest, ArchivedDataRetriesTimeOutsTwiceAndKeepsTheCallersArraysUnlessPointsCame) {
    // times: the caller's array afterwards ("7 8 9" kept, "0 0" when nothing came; "first .. last" when long).
    struct Case { const char* fault; int16_t count; int32_t from; vire::Status status; int16_t countOut; const char *times, *timeouts; };
    const Case cases[] = {
        {"slow:1500", 0, kNow - 3600, 0, 61, "1795368600 .. 1795372200", "500 2500"}, {"slow:5000", 3, kNow - 3600, 45, 3, "7 8 9", "500 2500 4500"},
        {"code:45*2", 5, kNow - 3600, 0, 5, "1795368600 .. 1795372200", "500 2500 4500"}, {"down", 3, kNow - 3600, 2, 3, "7 8 9", "500"},
        {"code:36", 3, kNow - 3600, 36, 3, "7 8 9", "500"}, {"", 2, kNow - 3600, 0, 2, "1795368600 1795372200", "500"},
        {"", 0, kNow + 60, 0, 0, "0 0", "500"}, {"", 7, kNow + 60, 0, 7, "0 0", "500"},
    };
    for (const Case& c : cases) {
        recorder->calls.clear();
        accelerator->ClearFault("/ORKA/BPMHIST");
        if (*c.fault) Fault("/ORKA/BPMHIST", c.fault);
        std::vector<float> values{1, 2, 3};
        std::vector<int32_t> times{7, 8, 9};
        int16_t count = c.count, status = -1;
        const int32_t result = history::MYGetArchivedDataEx("/ORKA/BPMHIST/BPM.S01.C2", "ORBIT.X.Q1.HIST", 0, c.from, std::max(c.from + 540, kNow),
                                                            values, times, count, status);
        EXPECT_TRUE(result == c.status && status == c.status && count == c.countOut && values.size() == times.size()) << c.fault << " " << count;
        std::string seen = std::to_string(times.front()) + " .. " + std::to_string(times.back());
        if (times.size() <= 3) for (size_t i = 0; i < times.size(); ++i) seen = (i ? seen + " " : "") + std::to_string(times[i]);
        EXPECT_EQ(seen + " / " + Words(5), std::string(c.times) + " / " + c.timeouts) << c.fault;
    }
}

TEST_F(HistoryTest, ArchivedTraceAsksRetryOrCancelWithASecondMoreEachRetryAndReadsNothingIntoOneElement) {
    const std::string down = "Error Reading History Data: link error: server not reachable";
    struct Case { const char *fault, *answers; size_t size; int16_t result; const char* timeouts; size_t questions; int32_t reported; };
    for (const Case& c : {Case{"", "", 1980, 0, "1000", 0, kNow - 900}, Case{"", "", 1, 0, "", 0, -1}, Case{"down*1", "R", 1980, 0, "1000 2000", 1, kNow - 900},
                          Case{"down", "RC", 1980, 2, "1000 2000", 2, 0}, Case{"down", "C", 10, 2, "1000", 1, 0}}) {
        recorder->calls.clear();
        if (*c.fault) Fault("OKHISTORY", c.fault);
        history_test::ScriptedQuestions questions(c.answers);
        std::vector<float> values(c.size, -1.0f);
        int32_t reported = -1;
        EXPECT_EQ(history::MYGetArchivedTraceData("/ORKA/OKHISTORY/#0", "CHARGE.P2", kNow - 30, values, reported, questions), c.result) << c.fault;
        EXPECT_EQ(Words(5) + " " + std::to_string(reported), std::string(c.timeouts) + " " + std::to_string(c.reported)) << c.fault;
        EXPECT_EQ(questions.texts, std::vector<std::string>(c.questions, down)) << c.fault;
        EXPECT_EQ(values.back() == -1.0f, c.result != 0 || c.size == 1) << c.fault;  // kept unless read
        accelerator->ClearFault("OKHISTORY");
    }
}

}  // namespace
