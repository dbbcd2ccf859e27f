#include "history/item_history.h"

#include "catalogue/runtime_error.h"
#include "history_fixture.h"

namespace {

using history_test::HistoryTest;
using history_test::ScriptedQuestions;
constexpr int32_t kNow = static_cast<int32_t>(sim_test::kNowS);
constexpr int32_t kDay = 86400;
constexpr int32_t kFirstLocal = kNow - 3 * kDay;  // the local history's oldest value

history::ItemHistory Item(const std::string& hst, const std::string& arc, const std::string& arcProperty) {
    history::ItemHistory item;
    item.ItemTitle = item.ItemDevice = "BPM.S01.C2";
    item.ItemProperty = "ORBIT.X";
    item.HstServer = hst;
    item.HstProperty = "ORBIT.X.Q1.HIST";
    item.ArcServer = arc;
    item.ArcProperty = arcProperty;
    return item;
}

TEST(SourceRule, TheArchiveWinsAbove500OrAboveTheLocalHistoryAndNeverWhenNotConfigured) {
    struct Case { int32_t local, archive; bool archiveUsed; };
    const Case cases[] = {{-1, -1, false}, {-1, 10, true}, {10, -1, false}, {0, 0, false}, {20, 10, false},
                          {10, 20, true}, {500, 500, false}, {501, 501, true}, {9000, 501, true}, {-1, 0, true}};
    for (const Case& c : cases) {
        EXPECT_EQ(history::UseArchive(c.local, c.archive), c.archiveUsed) << c.local << " " << c.archive;
        EXPECT_EQ(history::ChooseLocal(c.local, c.archive), !c.archiveUsed) << c.local << " " << c.archive;
    }
}

TEST_F(HistoryTest, LoadItemHistoryProbesChoosesFallsBackOnceAndWidensUntilFourPoints) {
    const std::string localDown = "Error Reading History Data: link error: server not reachable";
    const std::string archiveDown = "Error Reading Archive Data: link error: server not reachable";
    const std::string archiveSlow = "Error Reading Archive Data: time-out: no answer from the server";
    const std::string hst = "/ORKA/BPMHIST", arc = "/ORKA/OKHISTORY";
    struct FaultAt { const char* target; const char* fault; };
    // calls: l/a a probe of the local history/archive, L/A a read; count -1 = not checked.
    struct Case {
        const char* what; std::string hst, arc, arcProperty; int32_t start, stop; std::vector<FaultAt> faults;
        const char* answers; const char* calls; bool link, valid, fromArchive, fellBack; int16_t count;
        std::vector<std::string> questions;
    };
    const Case cases[] = {
        {"local holds more", hst, arc, "ORBIT.X.Q1", kNow - kDay, kNow, {}, "", "laL", true, true, false, false, 999, {}},
        {"old window", hst, arc, "ORBIT.X.Q1", kNow - 10 * kDay, kNow - 9 * kDay, {}, "", "laA", true, true, true, false, 97, {}},
        {"ignored archive probe, empty local", hst, arc, "ORBIT.X.Q1", kNow - 10 * kDay, kNow - 9 * kDay,
         {{"OKHISTORY", "down*1"}}, "I", "laLA", true, true, false, true, 97, {archiveDown}},
        {"failed local read falls back", hst, arc, "ORBIT.X.Q1", kNow - 3600, kNow,
         {{"/ORKA/BPMHIST", "down*2"}, {"OKHISTORY", "code:45*1"}}, "II", "laLA", true, true, false, true, 5,
         {localDown, archiveSlow}},
        {"no archive, no fallback", hst, "", "", kNow - 10 * kDay, kNow - 9 * kDay, {}, "", "lLLLLLL", true, true, false, false, 0, {}},
        {"same server, no fallback", hst, hst, "ORBIT.Y.Q1.HIST", kNow - 10 * kDay, kNow - 9 * kDay, {}, "", "laLLLLLL",
         true, true, false, false, 0, {}},
        {"archive widens 4 times", "", arc, "ORBIT.X.Q1", kNow - 800 * kDay, kNow - 800 * kDay, {}, "", "aAAAAA", true, true,
         true, false, 0, {}},
        {"last read kept", hst, "", "", kFirstLocal - 5000, kFirstLocal - 5000, {}, "", "lLLLLLL", true, true, false, false, 2, {}},
        {"widened once", hst, arc, "ORBIT.X.Q1", kNow - 600, kNow - 600, {}, "", "laLL", true, true, false, false, -1, {}},
        {"abort local probe", hst, arc, "ORBIT.X.Q1", kNow - 3600, kNow, {{"/ORKA/BPMHIST", "down"}}, "A", "l", false, false,
         false, false, 0, {localDown}},
        {"retry local probe", hst, arc, "ORBIT.X.Q1", kNow - 3600, kNow, {{"/ORKA/BPMHIST", "down*1"}}, "R", "llaL", true, true,
         false, false, 62, {localDown}},
        {"abort archive probe", hst, arc, "ORBIT.X.Q1", kNow - 3600, kNow, {{"OKHISTORY", "down"}}, "A", "la", false, false,
         false, false, 0, {archiveDown}},
        {"retry archive probe", hst, arc, "ORBIT.X.Q1", kNow - 3600, kNow, {{"OKHISTORY", "down*1"}}, "R", "laaL", true, true,
         false, false, 62, {archiveDown}},
        {"both down", hst, arc, "ORBIT.X.Q1", kNow - 3600, kNow, {{"/ORKA/BPMHIST", "down"}, {"OKHISTORY", "down"}}, "II",
         "laLA", false, false, false, true, 0, {localDown, archiveDown}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        recorder->calls.clear();
        for (const FaultAt& f : c.faults) Fault(f.target, f.fault);
        ScriptedQuestions questions(c.answers);
        history::ItemHistory item = Item(c.hst, c.arc, c.arcProperty);
        std::string reads;
        const bool link = history::LoadItemHistory(item, 0, {c.start, c.stop}, questions, [&](const history::LoadStep& s) {
            EXPECT_EQ(s.item, "BPM.S01.C2");
            EXPECT_EQ(s.attempt, static_cast<int>(reads.size()) + 1);
            reads += s.archive ? 'A' : 'L';
        });
        std::string calls;
        for (const auto& call : recorder->calls) {
            const bool probe = history_test::Word(call, 0).ends_with("/#1");
            EXPECT_TRUE(!probe || history_test::Word(call, 5) == "1000") << call;
            const bool local = history_test::Word(call, 1) == "ORBIT.X.Q1.HIST";
            calls += probe ? (local ? 'l' : 'a') : (local ? 'L' : 'A');
        }
        EXPECT_EQ(calls, c.calls);
        std::string expectedReads(c.calls);
        std::erase_if(expectedReads, [](char ch) { return ch == 'l' || ch == 'a'; });
        EXPECT_EQ(reads, expectedReads);
        EXPECT_EQ(link, c.link);
        EXPECT_EQ(item.HistValid, c.valid);
        EXPECT_EQ(item.HistShown, c.valid);
        EXPECT_EQ(item.FromArchive, c.fromArchive);
        EXPECT_EQ(item.FellBack, c.fellBack);
        EXPECT_EQ(item.Aborted, std::string(c.answers).find('A') != std::string::npos);
        EXPECT_TRUE(c.count < 0 || item.HistCount == c.count) << item.HistCount;
        EXPECT_EQ(questions.texts, c.questions);
        for (const FaultAt& f : c.faults) accelerator->ClearFault(f.target);
    }
}

TEST_F(HistoryTest, OnlyTheFirstTwoSlotsWithoutALinkGetOneAndOtherSlotsAreOutOfBounds) {
    struct Case { int16_t slot; int32_t linkHandle; bool link; bool throws; };
    const Case cases[] = {{0, -1, true, false}, {1, -1, true, false}, {2, -1, false, false}, {3, -1, false, false},
                          {0, 5, false, false},  {1, 0, false, false}, {4, -1, false, true}, {-1, -1, false, true}};
    for (const Case& c : cases) {
        ScriptedQuestions questions("");
        history::ItemHistory item = Item("/ORKA/BPMHIST", "/ORKA/OKHISTORY", "ORBIT.X.Q1");
        item.LinkHandle = c.linkHandle;
        recorder->calls.clear();
        try {
            EXPECT_EQ(history::LoadItemHistory(item, c.slot, {kNow - 3600, kNow}, questions), c.link) << c.slot;
            EXPECT_FALSE(c.throws) << c.slot;
        } catch (const catalogue::RuntimeError& e) {
            EXPECT_TRUE(c.throws && e.kind() == catalogue::ErrorKind::OutOfBounds) << c.slot;
            EXPECT_TRUE(recorder->calls.empty()) << c.slot;
        }
    }
}

}  // namespace
