// Live links of a plot on a fake transport, driven by the test clock: what a
// link asks for, when data-received is raised with which error flag, each
// link's own status, what reading gives, the point counter, and that links stop.
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "plot_test_support.h"
#include "vire/completion_codes.h"

namespace {

using plot_test::FakeTransport;
using ui::PlexPlot;
using Event = std::pair<int32_t, int16_t>;  // link, error

class LiveLinkTest : public ::testing::Test {
public:  // the cases' lambdas reach in
    LiveLinkTest() { NewPlot(); }
    void NewPlot() {
        plot = std::make_unique<PlexPlot>();
        events.clear();
        QObject::connect(plot.get(), &PlexPlot::DataReceive, [this](int32_t l, int16_t e) {
            events.push_back({l, e});
            counters.push_back(plot->PointCounter());  // already advanced for this round
        });
    }
    int32_t Attach(const std::string& device, size_t count, int32_t interval = 1000) {
        plot->SetAccessMode("POLL");
        plot->SetPollingInterval(interval);
        plot->SetProtocol("VIRE");
        plot->SetContext("ORKA");
        plot->SetServer("BPMQ1");
        plot->SetDevice(device);
        plot->SetProperty("ORBIT.X");
        return plot->Attach(std::vector<float>(count));
    }
    FakeTransport::Reading& Reading(const std::string& device) {
        return live.transport->readings["/ORKA/BPMQ1/" + device + " ORBIT.X"];
    }

    plot_test::LiveFixture live;
    std::unique_ptr<PlexPlot> plot;
    std::vector<Event> events;
    std::vector<int32_t> counters;
};

TEST_F(LiveLinkTest, AttachAsksForTheBuffersCountOfFloatsOnTheFullDeviceName) {
    const int32_t link = Attach("ORBIT", 32, 500);
    ASSERT_GT(link, 0);
    const vire::SubscriptionRequest& r = live.transport->subscribed.at(0);
    EXPECT_EQ(r.fullDeviceName + " " + r.property, "/ORKA/BPMQ1/ORBIT ORBIT.X");
    EXPECT_EQ((std::array<int32_t, 3>{r.format, r.count, r.intervalMs}), (std::array<int32_t, 3>{517, 32, 500}));
    EXPECT_NE(Attach("ORBIT", 1), link);
    const std::pair<const char*, std::function<void()>> refused[] = {
        {"access mode other than POLL", [this] { plot->SetAccessMode("READ"); }},
        {"access mode in lower case", [this] { plot->SetAccessMode("poll"); }},
        {"another protocol", [this] { plot->SetProtocol("OTHER"); }},
        {"interval 0", [this] { plot->SetPollingInterval(0); }},
        {"no scheduler to tick it", [] { vire::SetScheduler(nullptr); }},
        {"no transport", [] { vire::SetTransport(nullptr); }},
    };
    for (const auto& [name, change] : refused) {
        Attach("ORBIT", 4);
        change();
        EXPECT_EQ(plot->Attach(std::vector<float>(4)), -1) << name;
        vire::SetScheduler(&live.scheduler);
        vire::SetTransport(live.transport);
    }
    EXPECT_EQ(Attach("ORBIT", 0), -1);  // empty buffer
    EXPECT_EQ(plot->LinkCount(), 2 + 6);
}

TEST_F(LiveLinkTest, ARoundRaisesOneEventFlaggedOnlyWhenEveryLinkFailed) {
    // Statuses per link, every round; the round's flag; detach that link just before this one is first polled.
    struct Case { const char* name; std::vector<vire::Status> statuses; int16_t error; int detach = -1, when = -1; };
    const Case cases[] = {
        {"one link, time-out", {vire::kTimeout}, vire::kTimeout},
        {"four parts, the third down: the others go on", {0, 0, vire::kLinkError, 0}, 0},
        {"only the last good", {vire::kTimeout, vire::kTimeout, 0}, 0},
        {"all failed: the first failure", {vire::kUnknownDevice, vire::kTimeout, vire::kLinkError}, vire::kUnknownDevice},
        // A link detached in the middle of a round no longer counts in it.
        {"detached once heard from: the round waits for the rest", {0, vire::kTimeout, vire::kTimeout}, vire::kTimeout,
         0, 1},
        {"a detached link's failure is not the round's", {vire::kTimeout, 0, 0}, 0, 0, 2},
        {"detached before heard from: the round ends without it", {0, 0, 0}, 0, 2, 1},
    };
    for (const Case& c : cases) {
        NewPlot();
        std::vector<int32_t> links;
        for (size_t i = 0; i < c.statuses.size(); ++i) {
            Reading("P" + std::to_string(i)) = {c.statuses[i], {float(i), 2}, 517};
            links.push_back(Attach("P" + std::to_string(i), 2));
        }
        live.scheduler.RunPending();  // the first readings, taken at once: one round
        ASSERT_EQ(events.size(), 1u) << c.name;
        events.clear();
        live.transport->beforePoll = [&](const std::string& device) {
            if (c.detach >= 0 && device == "/ORKA/BPMQ1/P" + std::to_string(c.when))
                plot->Detach(links[size_t(c.detach)]);
        };
        live.scheduler.AdvanceBy(3000);
        live.transport->beforePoll = nullptr;
        const int32_t last = links[links.size() - (c.detach == int(links.size()) - 1 ? 2 : 1)];
        EXPECT_EQ(events, std::vector<Event>(3, {last, c.error})) << c.name;
        for (size_t i = 0; i < links.size(); ++i) {  // each link's own state; the good parts' data
            const vire::Status status = int(i) == c.detach ? PlexPlot::kUnknownLink : c.statuses[i];
            float first = -1;
            EXPECT_EQ(plot->LinkStatus(links[i]), status) << c.name << " part " << i;
            EXPECT_EQ(plot->ReadLinkData(links[i], first), status == 0) << c.name << " part " << i;
            EXPECT_EQ(first, status == 0 ? float(i) : -1.0f) << c.name << " part " << i;
        }
    }
    // A slower link does not hold a faster one back: each delivery of FAST
    // after its first ends the round before it; at 3 s SLOW completes one.
    // The round a second delivery ends is judged by the statuses of its own.
    NewPlot();
    Reading("SLOW") = {vire::kTimeout, {1}, 517};
    const int32_t fast = Attach("FAST", 1, 1000), slow = Attach("SLOW", 1, 3000);
    live.scheduler.RunPending();
    events.clear();
    live.scheduler.AdvanceBy(2000);
    Reading("FAST") = {vire::kLinkError, {1}, 517};
    live.scheduler.AdvanceBy(1000);
    EXPECT_EQ(events, (std::vector<Event>{{fast, 0}, {fast, 0}, {slow, vire::kLinkError}}));
}

TEST_F(LiveLinkTest, ReadingKeepsTheLastGoodValuesAndEachRoundAdvancesTheCounter) {
    const int32_t link = Attach("ORBIT", 4);
    std::vector<float> target{9, 9, 9, 9, 9};
    EXPECT_EQ(plot->ReadLinkData(link, target), 0);  // nothing received yet
    live.scheduler.RunPending();  // the first reading (nothing set: nothing delivered)
    counters.clear();
    struct Step { const char* name; FakeTransport::Reading reading; int16_t status; std::vector<float> read; };
    const Step steps[] = {  // the event's flag and the link's status; read into a 5-float target of 9s
        {"good", {0, {1, 2, 3, 4}, 517}, 0, {1, 2, 3, 4, 9}},
        {"failed: the last good ones stay", {vire::kTimeout, {7, 7, 7, 7}, 517}, vire::kTimeout, {1, 2, 3, 4, 9}},
        {"another format: refused", {0, {5, 5, 5, 5}, 512}, vire::kFormatMismatch, {1, 2, 3, 4, 9}},
        {"more than asked: refused", {0, {5, 5, 5, 5, 5}, 517}, vire::kFormatMismatch, {1, 2, 3, 4, 9}},
        {"fewer than asked: only those", {0, {6, 6}, 517}, 0, {6, 6, 9, 9, 9}},
        {"format 5 is single too", {0, {8, 8, 8, 8}, 5}, 0, {8, 8, 8, 8, 9}},
    };
    for (const Step& s : steps) {
        Reading("ORBIT") = s.reading;
        events.clear();
        live.scheduler.AdvanceBy(1000);
        EXPECT_EQ(events, (std::vector<Event>{{link, s.status}})) << s.name;
        EXPECT_EQ(plot->LinkStatus(link), s.status) << s.name;
        target = {9, 9, 9, 9, 9};
        plot->ReadLinkData(link, target);
        EXPECT_EQ(target, s.read) << s.name;
    }
    float one = 0;  // a good read of one value: see the round test
    EXPECT_FALSE(plot->ReadLinkData(link + 1, one));
    EXPECT_EQ(counters, (std::vector<int32_t>{2, 3, 4, 5, 6, 7}));
    plot->Clear();
    EXPECT_EQ(plot->PointCounter(), 0);
}

// A transport that can only deliver at its ticks.
struct TickOnlyTransport : FakeTransport {
    std::optional<vire::LinkData> ReadAtOnce(const vire::SubscriptionRequest&) override { return std::nullopt; }
};

TEST_F(LiveLinkTest, TheFirstReadingComesAfterTheAttachingHandlerAndLinksStopWhenDetachedClearedOrThePlotGoes) {
    using Act = std::function<void(LiveLinkTest&, int32_t)>;
    const auto inEvent = [](std::function<void(LiveLinkTest&, int32_t)> act) {
        return [act](LiveLinkTest& t, int32_t) {
            QObject::connect(t.plot.get(), &PlexPlot::DataReceive, [&t, act](int32_t link, int16_t) { act(t, link); });
            t.live.scheduler.AdvanceBy(1000);
        };
    };
    const Act detach = [](LiveLinkTest& t, int32_t link) { EXPECT_TRUE(t.plot->Detach(link)); };
    const Act deleted = [](LiveLinkTest& t, int32_t) { t.plot.reset(); };
    struct Case { const char* name; vire::Status status; Act beforeFirst, afterFirst; size_t atOnce; bool tickOnly; };
    const Case cases[] = {
        {"failure known at once", vire::kLinkError, nullptr, detach, 1, false},
        {"detached before it", 0, detach, nullptr, 0, false},
        {"plot deleted before it", 0, deleted, nullptr, 0, false},
        {"detach all", 0, nullptr, [](LiveLinkTest& t, int32_t) { t.plot->DetachAll(); }, 1, false},
        {"clear", 0, nullptr, [](LiveLinkTest& t, int32_t) { t.plot->Clear(); }, 1, false},
        {"plot deleted", 0, nullptr, deleted, 1, false},
        {"detached inside the event", 0, nullptr, inEvent(detach), 1, false},
        {"plot deleted inside the event", 0, nullptr, inEvent(deleted), 1, false},
        {"a transport that reads only at ticks (last: it stays)", 0, nullptr, nullptr, 0, true},
    };
    for (const Case& c : cases) {
        if (c.tickOnly) vire::SetTransport(live.transport = std::make_shared<TickOnlyTransport>());
        NewPlot();
        Reading("ORBIT") = {c.status, {3, 4}, 517};
        const int32_t link = Attach("ORBIT", 2);
        EXPECT_TRUE(events.empty()) << c.name << ": never inside the handler that attached it";
        if (c.beforeFirst) c.beforeFirst(*this, link);
        live.scheduler.RunPending();
        EXPECT_EQ(events, std::vector<Event>(c.atOnce, {link, c.status})) << c.name;
        float first = -1;
        EXPECT_EQ(plot && plot->ReadLinkData(link, first), c.atOnce == 1 && c.status == 0) << c.name;
        if (!c.afterFirst) continue;
        c.afterFirst(*this, link);
        events.clear();
        live.scheduler.AdvanceBy(5000);
        EXPECT_TRUE(events.empty()) << c.name;
        EXPECT_EQ(live.transport->ActiveSubscriptions() + live.scheduler.ActiveTimers(), 0u) << c.name;
        EXPECT_TRUE(!plot || !plot->Detach(link)) << c.name;
    }
}

}  // namespace
