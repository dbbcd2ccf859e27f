// What following nine elements costs when the trend window opens on a day:
// each item is probed on both sources and read with LoadItemHistory, while
// the viewer's window waits. In-process against the simulated accelerator,
// and, where the network layer is built, against the servers on loopback.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

#include "figure_reporter.h"
#include "history/item_history.h"
#include "sim/simulated_accelerator.h"
#include "vire/transport.h"
#include "vire/utils.h"

#ifdef LUMISCOPE_HISTORY_OVER_NETWORK
#include <iostream>

#include "bench_servers.h"
#include "net/network_transport.h"
#endif

namespace {

// Nothing fails in these runs; a question would mean a broken set-up.
class NoOperator : public history::Questions {
public:
    history::Answer AbortRetryIgnore(const std::string&) override { return history::Answer::Abort; }
    history::Answer RetryCancel(const std::string&) override { return history::Answer::Cancel; }
    void Tell(const std::string&) override {}
};

struct Element {
    const char* device;
    const char* plane;    // "X" or "Y"
    const char* quadrant;
};

// Nine monitors spread over the ring's four quadrants and both planes.
constexpr Element kNine[] = {
    {"BPM.S01.C1", "X", "Q1"}, {"BPM.S02.C3", "X", "Q1"}, {"BPM.S04.C8", "Y", "Q1"},
    {"BPM.S05.C1", "X", "Q2"}, {"BPM.S06.C4", "Y", "Q2"}, {"BPM.S09.C1", "X", "Q3"},
    {"BPM.S10.C2", "Y", "Q3"}, {"BPM.S13.C5", "X", "Q4"}, {"BPM.S16.C8", "Y", "Q4"},
};

std::vector<history::ItemHistory> NineItems() {
    std::vector<history::ItemHistory> items;
    for (const Element& e : kNine) {
        history::ItemHistory item;
        item.ItemTitle = item.ItemDevice = e.device;
        item.ItemProperty = std::string("ORBIT.") + e.plane;
        item.HstServer = "/ORKA/BPMHIST";
        item.HstProperty = item.ItemProperty + "." + e.quadrant + ".HIST";
        item.ArcServer = "/ORKA/OKHISTORY";
        item.ArcProperty = item.ItemProperty + "." + e.quadrant;
        items.push_back(item);
    }
    return items;
}

void NineItemsOneDay(benchmark::State& state, const std::shared_ptr<vire::Transport>& transport) {
    if (!transport) {
        state.SkipWithError("no servers to read from");
        return;
    }
    vire::SetTransport(transport);
    NoOperator questions;
    const int32_t now = vire::UNIXTIME();
    const history::HistoryWindow day{now - 86'400, now};
    int32_t points = 0;
    for (auto _ : state) {
        auto items = NineItems();
        points = 0;
        for (auto& item : items) {
            history::LoadItemHistory(item, 0, day, questions);
            if (!item.HistValid) state.SkipWithError("a history read failed");
            points += item.HistCount;
        }
        benchmark::DoNotOptimize(items.data());
    }
    state.counters["points"] = points;
    vire::SetTransport(nullptr);
}

void InProcess(benchmark::State& state) {
    static const auto accelerator = std::make_shared<sim::SimulatedAccelerator>(LUMISCOPE_SAMPLE_CONFIG_DIR);
    NineItemsOneDay(state, accelerator);
}
BENCHMARK(InProcess)->Name("figure:history-9-items")->Unit(benchmark::kMillisecond);

#ifdef LUMISCOPE_HISTORY_OVER_NETWORK
network_bench::BenchServers* servers = nullptr;

void OverNetwork(benchmark::State& state) {
    std::shared_ptr<vire::Transport> transport;
    if (servers) transport = std::make_shared<net::NetworkTransport>(net::NetworkSettings{servers->etcd.endpoint, "", ""});
    NineItemsOneDay(state, transport);
}
BENCHMARK(OverNetwork)->Name("figure:history-9-items-network")->Unit(benchmark::kMillisecond)->MinTime(2.0);
#endif

}  // namespace

int main(int argc, char** argv) {
#ifdef LUMISCOPE_HISTORY_OVER_NETWORK
    network_bench::BenchServers started;
    if (started.Start()) servers = &started;
    else std::cerr << "bench_history: no servers, no network figure\n";
#endif
    return lumiscope_bench::RunGroup(argc, argv);
}
