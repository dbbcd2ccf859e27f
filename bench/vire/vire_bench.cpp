// What a link call to the simulated accelerator costs: the viewer's window is
// blocked for each synchronous call, and live links run on its thread.
#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

#include "figure_reporter.h"
#include "sim/simulated_accelerator.h"
#include "vire/formats.h"
#include "vire/link.h"
#include "vire/scheduler.h"
#include "vire/utils.h"
#include "vire/wire.h"

namespace {

std::shared_ptr<sim::SimulatedAccelerator> Accelerator() {
    static auto accelerator = sim::InstallSimulatedAccelerator(LUMISCOPE_SAMPLE_CONFIG_DIR);
    return accelerator;
}

void Read(benchmark::State& state, const char* device, const char* property, int32_t count, int16_t format,
          std::vector<int32_t> input) {
    Accelerator();
    const int32_t width = vire::FormatSize(format);
    std::vector<std::byte> buffer(static_cast<size_t>(count) * static_cast<size_t>(width));
    std::vector<std::byte> in(input.size() * 4);
    for (size_t i = 0; i < input.size(); ++i) vire::StoreInt32(in, 4 * i, input[i]);
    for (auto _ : state) {
        vire::DataObject out{count, format, "", buffer};
        const vire::Status status = vire::LinkCall(
            device, property, out, vire::DataObject{static_cast<int32_t>(input.size()), vire::kFormatLong, "", in},
            vire::kAccessRead, 1000);
        if (status != 0 || out.count == 0) state.SkipWithError("the call failed");
        benchmark::DoNotOptimize(buffer.data());
    }
}

// One orbit part: the smallest live read.
void LinkRoundTrip(benchmark::State& state) {
    Read(state, "/ORKA/BPMQ1/ORBIT", "ORBIT.X", 32, vire::kFormatSingle, {});
}
BENCHMARK(LinkRoundTrip)->Name("figure:link-roundtrip")->Unit(benchmark::kMicrosecond);

// The largest spectrum: the four 1980-bucket parts of the fill pattern.
void Spectrum7920(benchmark::State& state) {
    Accelerator();
    std::vector<std::byte> buffer(1980 * 4);
    const char* parts[] = {"/ORKA/BCMSRV/FILL.P1", "/ORKA/BCMSRV/FILL.P2", "/ORKA/BCMSRV/FILL.P3",
                           "/ORKA/BCMSRV/FILL.P4"};
    for (auto _ : state) {
        for (const char* part : parts) {
            vire::DataObject out{1980, vire::kFormatSingle, "", buffer};
            if (vire::LinkCall(part, "CHARGE", out, {}, vire::kAccessRead, 1000) != 0) state.SkipWithError("failed");
        }
        benchmark::DoNotOptimize(buffer.data());
    }
}
BENCHMARK(Spectrum7920)->Name("figure:spectrum-8000-read")->Unit(benchmark::kMicrosecond);

// An item's history: the 999 points one archive read asks for, over a day.
void History999(benchmark::State& state) {
    const int32_t now = vire::UNIXTIME();
    Read(state, "/ORKA/BPMHIST/BPM.S03.C2", "ORBIT.X.Q1.HIST", 999, vire::kFormatFltInt, {now - 86400, now});
}
BENCHMARK(History999)->Name("figure:history-999")->Unit(benchmark::kMicrosecond);

// One part of a recorded spectrum, as the replay reads it each tick.
void HistorySpectrum(benchmark::State& state) {
    const int32_t at = vire::UNIXTIME() - 3600;
    Read(state, "/ORKA/OKHISTORY/#0", "CHARGE.P1", 1980, vire::kFormatSingle, {at, at, 0});
}
BENCHMARK(HistorySpectrum)->Name("figure:history-spectrum-1980")->Unit(benchmark::kMicrosecond);

// A live link's tick: the reading and its delivery through the scheduler.
void LiveTick(benchmark::State& state) {
    auto accelerator = Accelerator();
    vire::ManualScheduler scheduler;
    vire::SetScheduler(&scheduler);
    int64_t delivered = 0;
    const auto id = accelerator->Subscribe({"/ORKA/BCMSRV/FILL.P1", "CHARGE", vire::kFormatSingle, 1980, 1000},
                                           [&](const vire::LinkData& d) { delivered += d.count; });
    for (auto _ : state) scheduler.AdvanceBy(1000);
    accelerator->Unsubscribe(id);
    vire::SetScheduler(nullptr);
    if (delivered == 0) state.SkipWithError("nothing delivered");
}
BENCHMARK(LiveTick)->Name("figure:live-tick-1980")->Unit(benchmark::kMicrosecond);

}  // namespace

LUMISCOPE_BENCH_MAIN();
