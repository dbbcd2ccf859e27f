#include "history/item_history.h"

#include "catalogue/runtime_error.h"
#include "history_fixture.h"

namespace {

using history_test::HistoryTest;
constexpr int32_t kNow = static_cast<int32_t>(sim_test::kNowS), kDay = 86400, kOld = kNow - 10 * kDay;
constexpr int32_t kFirstLocal = kNow - 3 * kDay;  // the local history's oldest value
const std::string kHst = "/ORKA/BPMHIST", kArc = "/ORKA/OKHISTORY";

history::ItemHistory Item(const std::string& hst, const std::string& arc, const std::string& arcProperty = "ORBIT.X.Q1") {
    history::ItemHistory item;
    std::tie(item.ItemTitle, item.ItemDevice, item.ItemProperty, item.HstServer, item.HstProperty, item.ArcServer, item.ArcProperty) =
        std::make_tuple("BPM.S01.C2", "BPM.S01.C2", "ORBIT.X", hst, "ORBIT.X.Q1.HIST", arc, arcProperty);
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
    const std::string down = "link error: server not reachable", slow = "time-out: no answer from the server",
                      local = "Error Reading History Data: ", archive = "Error Reading Archive Data: ";
    // Faults of the local history server and the archiver. calls: l/a a probe of the local history/archive, L/A a read.
    // flags: Link returned, Valid, from Archive, Fell back, aBorted. count -1 = not checked.
    struct Case {
        const char* what; std::string hst, arc; int32_t start, stop; const char *localFault, *archiveFault, *answers, *calls, *flags;
        int16_t count; std::vector<std::string> questions;
    };
    const Case cases[] = {
        {"local holds more", kHst, kArc, kNow - kDay, kNow, "", "", "", "laL", "LV", 999, {}},
        {"old window", kHst, kArc, kOld, kOld + kDay, "", "", "", "laA", "LVA", 97, {}},
        {"empty local", kHst, kArc, kOld, kOld + kDay, "", "down*1", "I", "laLA", "LVF", 97, {archive + down}},
        {"failed local read", kHst, kArc, kNow - 3600, kNow, "down*2", "code:45*1", "II", "laLA", "LVF", 5, {local + down, archive + slow}},
        {"no archive", kHst, "", kOld, kOld + kDay, "", "", "", "lLLLLLL", "LV", 0, {}},
        {"same server", kHst, kHst, kOld, kOld + kDay, "", "", "", "laLLLLLL", "LV", 0, {}},
        {"archive widens", "", kArc, kNow - 800 * kDay, kNow - 800 * kDay, "", "", "", "aAAAAA", "LVA", 0, {}},
        {"last read kept", kHst, "", kFirstLocal - 5000, kFirstLocal - 5000, "", "", "", "lLLLLLL", "LV", 2, {}},
        {"widened once", kHst, kArc, kNow - 600, kNow - 600, "", "", "", "laLL", "LV", -1, {}},
        {"abort local", kHst, kArc, kNow - 3600, kNow, "down", "", "A", "l", "B", 0, {local + down}},
        {"retry local", kHst, kArc, kNow - 3600, kNow, "down*1", "", "R", "llaL", "LV", 62, {local + down}},
        {"abort archive", kHst, kArc, kNow - 3600, kNow, "", "down", "A", "la", "B", 0, {archive + down}},
        {"retry archive", kHst, kArc, kNow - 3600, kNow, "", "down*1", "R", "laaL", "LV", 62, {archive + down}},
        {"both down", kHst, kArc, kNow - 3600, kNow, "down", "down", "II", "laLA", "F", 0, {local + down, archive + down}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        recorder->calls.clear();
        if (*c.localFault) Fault(kHst, c.localFault);
        if (*c.archiveFault) Fault("OKHISTORY", c.archiveFault);
        history_test::ScriptedQuestions questions(c.answers);
        history::ItemHistory item = Item(c.hst, c.arc, c.arc == kHst ? "ORBIT.Y.Q1.HIST" : "ORBIT.X.Q1");
        std::string reads, calls;
        const bool link = history::LoadItemHistory(item, 0, {c.start, c.stop}, questions, [&](const history::LoadStep& s) {
            EXPECT_EQ(s.item + " " + std::to_string(s.attempt), "BPM.S01.C2 " + std::to_string(reads.size() + 1));
            reads += s.archive ? 'A' : 'L';
        });
        std::istringstream devices(Words(0)), properties(Words(1)), timeouts(Words(5));
        for (std::string device, property, timeout; devices >> device && properties >> property && timeouts >> timeout;) {
            EXPECT_TRUE(!device.ends_with("/#1") || timeout == "1000") << device;  // retries too
            calls += device.ends_with("/#1") ? (property == "ORBIT.X.Q1.HIST" ? 'l' : 'a') : (property == "ORBIT.X.Q1.HIST" ? 'L' : 'A');
        }
        std::string expectedReads = c.calls;  // the progress reports every read, none of the probes
        std::erase_if(expectedReads, [](char ch) { return ch == 'l' || ch == 'a'; });
        EXPECT_EQ(calls + " " + reads, std::string(c.calls) + " " + expectedReads);
        EXPECT_EQ(std::string(link ? "L" : "") + (item.HistValid && item.HistShown ? "V" : "") + (item.FromArchive ? "A" : "") +
                      (item.FellBack ? "F" : "") + (item.Aborted ? "B" : ""), c.flags);
        EXPECT_TRUE(c.count < 0 || item.HistCount == c.count) << item.HistCount;
        EXPECT_EQ(questions.texts, c.questions);
        accelerator->ClearFault(kHst);
        accelerator->ClearFault("OKHISTORY");
    }
}

TEST_F(HistoryTest, OnlyTheFirstTwoSlotsWithoutALinkGetOneAndOtherSlotsAreOutOfBounds) {
    struct Case { int16_t slot; int32_t linkHandle; const char* outcome; };
    for (const Case& c : {Case{0, -1, "link"}, Case{1, -1, "link"}, Case{2, -1, "none"}, Case{3, -1, "none"}, Case{0, 5, "none"},
                          Case{1, 0, "none"}, Case{4, -1, "out of bounds"}, Case{-1, -1, "out of bounds"}}) {
        history_test::ScriptedQuestions questions("");
        history::ItemHistory item = Item(kHst, kArc);
        item.LinkHandle = c.linkHandle;
        recorder->calls.clear();
        std::string outcome = "out of bounds";
        try {
            outcome = history::LoadItemHistory(item, c.slot, {kNow - 3600, kNow}, questions) ? "link" : "none";
        } catch (const catalogue::RuntimeError& e) {
            EXPECT_TRUE(e.kind() == catalogue::ErrorKind::OutOfBounds && recorder->calls.empty()) << e.what();
        }
        EXPECT_EQ(outcome, c.outcome) << c.slot << " " << c.linkHandle;
    }
}

}  // namespace
