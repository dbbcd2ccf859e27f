// How fast the plots redraw live data, against pyqtgraph on the same
// workloads in the same run (pyqtgraph_plots.py):
//   - one spectrum trace of 8000 and of 64000 points, all values new each frame;
//   - 9 trend traces of 2000 points, one point appended to each per frame
//     (the oldest dropped) on a time axis that moves with them.
// A frame is: change the data, then run the event loop until the plot has
// painted once. Window 1200x600, offscreen, grid lines on and no antialiasing
// on either side (pyqtgraph also without grid lines and with antialiasing).
// Figures are median frame times; the closing ratio lines are pyqtgraph's
// median divided by ours. LUMISCOPE_PLOTS_NO_REFERENCE=1 skips pyqtgraph
// (for profiling ours alone; the ratios are then "nan").
#include <QApplication>
#include <QEvent>
#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "figure_reporter.h"
#include "paint_counter.h"
#include "ui/plot/plex_plot.h"
#include "ui/plot/plot_canvas.h"
#include "vire/clock.h"

namespace {

constexpr int kWidth = 1200, kHeight = 600;
constexpr int kTrendTraces = 9, kTrendPoints = 2000;
constexpr int64_t kStartSeconds = 1'700'000'000;

using lumiscope_bench::PaintCounter;

struct Window {
    ui::PlexPlot plot;
    PaintCounter painted;
    Window() {
        plot.resize(kWidth, kHeight);
        plot.show();
        QCoreApplication::processEvents();
        plot.Canvas()->installEventFilter(&painted);
    }
    void PaintOnce() {
        const int before = painted.count;
        for (int i = 0; i < 1000 && painted.count == before; ++i) QCoreApplication::processEvents();
        if (painted.count == before) std::fprintf(stderr, "the plot never painted\n");
    }
};

std::vector<float> SpectrumValues(int n, int frame) {
    std::vector<float> v(static_cast<size_t>(n));
    for (int i = 0; i < n; ++i)
        v[static_cast<size_t>(i)] = static_cast<float>(50.0 + 40.0 * std::sin(i * 0.013 + frame * 0.2) +
                                                       5.0 * std::sin(i * 0.37 + frame));
    return v;
}

double Median(std::vector<double> v) {
    if (v.empty()) return 0.0;
    std::sort(v.begin(), v.end());
    const size_t m = v.size() / 2;
    return v.size() % 2 ? v[m] : (v[m - 1] + v[m]) / 2.0;
}

using Clock = std::chrono::steady_clock;
double Microseconds(Clock::time_point from) {
    return std::chrono::duration<double, std::micro>(Clock::now() - from).count();
}

template <typename Step>
void MeasureFrames(benchmark::State& state, Window& window, Step step) {
    for (int f = 0; f < 5; ++f) {  // warm-up: first layout, label cache
        step(f);
        window.PaintOnce();
    }
    std::vector<double> frames;
    int f = 5;
    for (auto _ : state) {
        const auto start = Clock::now();
        step(f++);
        window.PaintOnce();
        frames.push_back(Microseconds(start));
    }
    state.counters["median_us"] = Median(frames);
}

void Spectrum(benchmark::State& state, int n) {
    Window window;
    window.plot.SetXRange(-0.2, n - 1 + 0.2);
    window.plot.SetYMin(0);
    window.plot.SetYMax(100);
    std::vector<std::vector<float>> data;
    for (int f = 0; f < 8; ++f) data.push_back(SpectrumValues(n, f));
    window.plot.SetForeColour(0x008000);
    const int32_t trace = window.plot.CreateTrace(n, data[0]);
    MeasureFrames(state, window, [&](int f) { window.plot.UpdateTrace(trace, data[static_cast<size_t>(f % 8)], n); });
}

void Trend(benchmark::State& state) {
    vire::SetTestClock((kStartSeconds + kTrendPoints - 1) * 1000);
    Window window;
    ui::PlexPlot& plot = window.plot;
    plot.SetTimeAxis(true);
    plot.SetYMin(-12);
    plot.SetYMax(12);
    plot.SetTrendCapacity(kTrendPoints);
    const ui::Colour colours[kTrendTraces] = {0x800000, 0x000080, 0x0000C0, 0xFF0000, 0x0000FF,
                                              0x00FF00, 0x0080FF, 0xFF00FF, 0xFF80FF};
    std::vector<double> times(kTrendPoints);
    for (int i = 0; i < kTrendPoints; ++i) times[static_cast<size_t>(i)] = static_cast<double>(kStartSeconds + i);
    std::vector<int32_t> traces;
    for (int k = 0; k < kTrendTraces; ++k) {
        std::vector<float> ys(kTrendPoints);
        for (int i = 0; i < kTrendPoints; ++i)
            ys[static_cast<size_t>(i)] = static_cast<float>(10.0 * std::sin(times[static_cast<size_t>(i)] * 0.01 + k));
        plot.SetForeColour(colours[k]);
        traces.push_back(plot.CreateTraceXY(kTrendPoints, times, ys));
    }
    plot.SetXRange(times.front(), times.back());
    MeasureFrames(state, window, [&](int) {
        vire::AdvanceTestClock(1000);
        const double now = static_cast<double>(vire::NowMilliseconds()) / 1000.0;
        for (int k = 0; k < kTrendTraces; ++k)
            plot.AppendPoint(traces[static_cast<size_t>(k)], static_cast<float>(10.0 * std::sin(now * 0.01 + k)),
                             plot.PointCounter(), 1);
        plot.SetXRange(now - (kTrendPoints - 1), now);
    });
    vire::UseSystemClock();
}

// Figures from the median frame time; then the reference run and the ratios.
class PlotsReporter : public lumiscope_bench::FigureReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            const std::string name = run.run_name.function_name;
            const auto median = run.counters.find("median_us");
            if (name.rfind("figure:", 0) != 0 || median == run.counters.end()) continue;
            ours_[name.substr(7)] = median->second.value;
        }
    }
    void Finalize() override {
        ConsoleReporter::Finalize();
        for (const auto& [name, value] : ours_) std::printf("figure %s %.1f us\n", name.c_str(), value);
        std::fflush(stdout);
        const std::map<std::string, double> reference = RunReference();
        for (const auto& [name, value] : reference)
            std::printf("figure plots-pyqtgraph-%s-frame %.1f us\n", name.c_str(), value);
        // Ours always draws grid lines without antialiasing: the -nogrid and
        // -antialias ratios set that picture against pyqtgraph's others.
        for (const char* workload : {"spectrum-8000", "spectrum-64000", "trend-9x2000"})
            for (const char* variant : {"", "-nogrid", "-antialias"}) {
                const std::string name = std::string(workload) + variant;
                const auto ours = ours_.find(std::string("plots-") + workload + "-frame");
                const auto theirs = reference.find(name);
                if (ours == ours_.end() || theirs == reference.end() || ours->second <= 0.0)
                    std::printf("ratio %s nan\n", name.c_str());
                else
                    std::printf("ratio %s %.2f\n", name.c_str(), theirs->second / ours->second);
            }
        std::fflush(stdout);
    }

private:
    static std::map<std::string, double> RunReference() {
        std::map<std::string, double> result;
        if (qEnvironmentVariableIntValue("LUMISCOPE_PLOTS_NO_REFERENCE") == 1) return result;
        const std::string command = std::string("/usr/bin/python3 ") + LUMISCOPE_PLOTS_REFERENCE + " 200";
        FILE* pipe = popen(command.c_str(), "r");
        if (!pipe) return result;
        char line[256];
        while (std::fgets(line, sizeof line, pipe)) {
            char name[64];
            double value = 0.0;
            if (std::sscanf(line, "reference %63s %lf", name, &value) == 2) result[name] = value;
        }
        if (pclose(pipe) != 0) std::fprintf(stderr, "the pyqtgraph reference failed: %s\n", command.c_str());
        return result;
    }
    std::map<std::string, double> ours_;
};

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::RegisterBenchmark("figure:plots-spectrum-8000-frame", Spectrum, 8000)
        ->Iterations(200)->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark("figure:plots-spectrum-64000-frame", Spectrum, 64000)
        ->Iterations(200)->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark("figure:plots-trend-9x2000-frame", Trend)
        ->Iterations(200)->Unit(benchmark::kMicrosecond);
    return lumiscope_bench::RunGroup<PlotsReporter>(argc, argv);
}
