// How the viewer window performs:
//   startup            process start to a shown window whose start-up has read
//                      the sample configuration (machine 0), median of 5 runs;
//   first-spectrum     process start to the first live spectrum drawn, the
//                      first channel picked at once (the links take their
//                      first reading at once, not one polling interval in);
//   live-handler-8000  the spectrum data handler for an 8000-point device of
//                      four appended parts, without repainting;
//   live-frame-8000    the same handler plus one repaint of the window;
//   plot-frame-8000    the plot component alone drawing an 8000-point frame
//                      (as the plots group measures it: 1200x600, all values
//                      new), so that "ratio live-frame-vs-plot-frame" sets
//                      the window's live frame against it in one run;
//   peak-rss           peak resident memory of the viewer showing that device;
//   cpu-1hz, cpu-10hz  CPU use (% of one core) of the viewer showing that
//                      device polled every 1000 ms and every 100 ms, measured
//                      after a warm-up of 3 s.
// LUMISCOPE_BENCH_SOAK_S sets how long the 1 Hz run (which also gives the
// peak memory) is watched (default 60 s); the 10 Hz run is watched 15 s.
#include <QApplication>
#include <QComboBox>
#include <QEvent>
#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "control/program_location.h"
#include "figure_reporter.h"
#include "paint_counter.h"
#include "sim/simulated_accelerator.h"
#include "ui/plot/plex_plot.h"
#include "ui/plot/plot_canvas.h"
#include "ui/qt_scheduler.h"
#include "viewer/spectrum_form.h"
#include "viewer_process.h"
#include "vire/transport.h"
#include "wide_config.h"

namespace {

using Clock = std::chrono::steady_clock;
constexpr int kWarmUpSeconds = 3;
constexpr int kFastPollSeconds = 15;

double MillisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

double Median(std::vector<double> v) {
    if (v.empty()) return 0.0;
    std::sort(v.begin(), v.end());
    const size_t m = v.size() / 2;
    return v.size() % 2 ? v[m] : (v[m - 1] + v[m]) / 2.0;
}

// Process start to exit of a viewer that quits at the given moment.
void TimeToExit(benchmark::State& state, std::vector<std::string> arguments, int runs) {
    std::vector<double> times;
    for (auto _ : state) {
        for (int run = 0; run < runs; ++run) {
            const auto start = Clock::now();
            viewer_bench::ViewerProcess viewer(arguments, {{"QT_QPA_PLATFORM", "offscreen"}});
            if (viewer.Wait() != 0) {
                state.SkipWithError("the viewer did not come up");
                return;
            }
            times.push_back(MillisecondsSince(start));
        }
    }
    state.counters["value"] = Median(times);
}

using lumiscope_bench::PaintCounter;

// The window on the wide device, fed by the simulated accelerator until the
// whole spectrum has arrived once.
struct WideWindow {
    viewer_bench::WideConfig config;
    ui::ScopedQtScheduler scheduler;
    std::shared_ptr<sim::SimulatedAccelerator> accelerator;
    std::unique_ptr<viewer::SpectrumForm> form;
    PaintCounter painted;

    bool Open() {
        if (!config.Ok()) return false;
        accelerator = sim::InstallSimulatedAccelerator(config.ConfigDir());
        form = std::make_unique<viewer::SpectrumForm>(viewer_bench::kWideStartArguments,
                                                      control::SystemPath(config.AppPath()));
        form->setAttribute(Qt::WA_DeleteOnClose, false);
        form->resize(1280, 800);
        form->show();
        emit form->SpectrumCombo->activated(0);  // the operator picks the wide device
        const auto start = Clock::now();
        while (form->State().LivePointCount < viewer_bench::kWideParts * viewer_bench::kWidePartSize &&
               MillisecondsSince(start) < 10'000)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
        form->PLEXPlotSpectrum->Canvas()->installEventFilter(&painted);
        return form->State().LivePointCount == viewer_bench::kWideParts * viewer_bench::kWidePartSize;
    }
    void PaintOnce() {
        const int before = painted.count;
        for (int i = 0; i < 1000 && painted.count == before; ++i) QCoreApplication::processEvents();
    }
    ~WideWindow() {
        form.reset();
        vire::SetTransport(nullptr);
    }
};

void LiveHandler(benchmark::State& state, bool repaint) {
    WideWindow window;
    if (!window.Open()) {
        state.SkipWithError("the wide device never delivered 8000 points");
        return;
    }
    std::vector<double> times;
    for (auto _ : state) {
        const auto start = Clock::now();
        window.form->PLEXPlotSpectrum_DataReceive(0, 0);
        if (repaint) window.PaintOnce();
        times.push_back(MillisecondsSince(start) * 1000.0);
    }
    state.counters["value"] = Median(times);
}

// The plot component alone: an 8000-point spectrum, every value new each frame.
void PlotFrame(benchmark::State& state) {
    constexpr int kPoints = 8000;
    ui::PlexPlot plot;
    PaintCounter painted;
    plot.resize(1200, 600);
    plot.show();
    QCoreApplication::processEvents();
    plot.Canvas()->installEventFilter(&painted);
    plot.SetXRange(-0.2, kPoints - 1 + 0.2);
    plot.SetYMin(0);
    plot.SetYMax(100);
    std::vector<std::vector<float>> data(8, std::vector<float>(kPoints));
    for (size_t f = 0; f < data.size(); ++f)
        for (int i = 0; i < kPoints; ++i)
            data[f][static_cast<size_t>(i)] =
                static_cast<float>(50.0 + 40.0 * std::sin(i * 0.013 + f * 0.2) + 5.0 * std::sin(i * 0.37 + f));
    const int32_t trace = plot.CreateTrace(kPoints, data[0]);
    const auto frame = [&](size_t f) {
        const int before = painted.count;
        plot.UpdateTrace(trace, data[f % data.size()], kPoints);
        for (int i = 0; i < 1000 && painted.count == before; ++i) QCoreApplication::processEvents();
    };
    for (size_t f = 0; f < 5; ++f) frame(f);  // first layout, label cache
    std::vector<double> times;
    size_t f = 5;
    for (auto _ : state) {
        const auto start = Clock::now();
        frame(f++);
        times.push_back(MillisecondsSince(start) * 1000.0);
    }
    state.counters["value"] = Median(times);
}

// The viewer on the wide device at a polling interval, watched for a while.
void Soak(benchmark::State& state, int pollMs, int watchSeconds, bool reportMemory) {
    viewer_bench::WideConfig config;
    double cpuPercent = -1, peakMB = -1;
    for (auto _ : state) {
        if (!config.Ok()) {
            state.SkipWithError("cannot write the wide configuration");
            return;
        }
        const int total = kWarmUpSeconds + watchSeconds + 30;  // ends by itself if this program dies
        viewer_bench::ViewerProcess viewer(
            {"--app-path", config.AppPath(), "--size", "1280x800", "--channel", "0", "--snapshot",
             config.AppPath() + "/soak.png",
             "--after", std::to_string(total), "ORKA", "FILL"},
            {{"QT_QPA_PLATFORM", "offscreen"}, {"LUMISCOPE_POLL_MS", std::to_string(pollMs)}});
        std::this_thread::sleep_for(std::chrono::seconds(kWarmUpSeconds));
        const double cpuBefore = viewer.CpuSeconds();
        const auto start = Clock::now();
        std::this_thread::sleep_for(std::chrono::seconds(watchSeconds));
        const double cpuAfter = viewer.CpuSeconds();
        const double wall = MillisecondsSince(start) / 1000.0;
        peakMB = viewer.PeakResidentMB();
        viewer.Stop();
        if (cpuBefore < 0 || cpuAfter < 0 || peakMB < 0) {
            state.SkipWithError("the viewer ended early");
            return;
        }
        cpuPercent = 100.0 * (cpuAfter - cpuBefore) / wall;
    }
    state.counters["value"] = reportMemory ? peakMB : cpuPercent;
    if (reportMemory) state.counters["cpu_percent"] = cpuPercent;
}

// Prints "figure NAME VALUE UNIT" for every benchmark named "measure:NAME",
// from its "value" counter.
class ViewerReporter : public lumiscope_bench::FigureReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            const std::string name = run.run_name.function_name;
            const auto value = run.counters.find("value");
            if (name.rfind("measure:", 0) != 0 || value == run.counters.end() || run.error_occurred) continue;
            const std::string figure = name.substr(8);
            figures_.push_back({figure, value->second.value});
            if (figure == "peak-rss") {
                const auto cpu = run.counters.find("cpu_percent");
                if (cpu != run.counters.end()) figures_.push_back({"cpu-1hz", cpu->second.value});
            }
        }
    }
    void Finalize() override {
        ConsoleReporter::Finalize();
        const std::map<std::string, const char*> units = {
            {"startup", "ms"}, {"first-spectrum", "ms"}, {"live-handler-8000", "us"}, {"live-frame-8000", "us"},
            {"plot-frame-8000", "us"},
            {"peak-rss", "MB"}, {"cpu-1hz", "%"}, {"cpu-10hz", "%"}};
        for (const auto& [name, value] : figures_)
            std::printf("figure %s %.2f %s\n", name.c_str(), value, units.at(name));
        std::map<std::string, double> values(figures_.begin(), figures_.end());
        const double live = values.count("live-frame-8000") ? values["live-frame-8000"] : 0.0;
        const double plot = values.count("plot-frame-8000") ? values["plot-frame-8000"] : 0.0;
        if (live > 0.0 && plot > 0.0)
            std::printf("ratio live-frame-vs-plot-frame %.2f\n", live / plot);
        else
            std::printf("ratio live-frame-vs-plot-frame nan\n");
        std::fflush(stdout);
    }

private:
    std::vector<std::pair<std::string, double>> figures_;
};

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const int soakSeconds = std::max(5, qEnvironmentVariableIntValue("LUMISCOPE_BENCH_SOAK_S") > 0
                                            ? qEnvironmentVariableIntValue("LUMISCOPE_BENCH_SOAK_S")
                                            : 60);
    benchmark::RegisterBenchmark("measure:startup", TimeToExit, std::vector<std::string>{"--quit-when-populated"}, 5)
        ->Iterations(1);
    benchmark::RegisterBenchmark("measure:first-spectrum", TimeToExit,
                                 std::vector<std::string>{"--channel", "0", "--quit-when-live"}, 3)
        ->Iterations(1);
    benchmark::RegisterBenchmark("measure:live-handler-8000", LiveHandler, false)->Iterations(500);
    benchmark::RegisterBenchmark("measure:live-frame-8000", LiveHandler, true)->Iterations(100);
    benchmark::RegisterBenchmark("measure:plot-frame-8000", PlotFrame)->Iterations(200);
    benchmark::RegisterBenchmark("measure:peak-rss", Soak, 1000, soakSeconds, true)->Iterations(1);
    benchmark::RegisterBenchmark("measure:cpu-10hz", Soak, 100, kFastPollSeconds, false)->Iterations(1);
    return lumiscope_bench::RunGroup<ViewerReporter>(argc, argv);
}
