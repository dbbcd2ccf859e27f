// Benchmarks of the time tools on the viewer window, in archive mode:
//   movie-step          one replay step of an 8000-point device: the recorded
//                       spectrum read and the spectrum plot repainted;
//   zoom-history-9      a zoom into two hours of a 24-hour window with nine
//                       items, their histories read again for the zoomed span;
//   waterfall-day-8000  the waterfall of an 8000-point device over one day.
// In process against the simulated accelerator (ORKA's fill pattern made
// 8000 elements in four parts), and, where the network layer is built,
// against the servers on loopback (their 8000-point device in one part).
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <memory>

#include "../viewer/wide_config.h"
#include "control/program_location.h"
#include "paint_counter.h"
#include "sim/simulated_accelerator.h"
#include "ui/plot/plex_plot.h"
#include "ui/plot/plot_canvas.h"
#include "ui/qt_scheduler.h"
#include "viewer/spectrum_form.h"
#include "vire/transport.h"
#include "vire/utils.h"

#ifdef LUMISCOPE_TOOLS_OVER_NETWORK
#include <iostream>

#include "bench_servers.h"
#include "net/network_transport.h"
#endif

namespace {

// Where a window reads from: its configuration and start arguments, and the
// transport (the in-process simulation when none is given).
struct Source {
    std::string appPath;
    std::string startArguments;
    std::shared_ptr<vire::Transport> transport;
    std::string configDir;
};

struct ArchiveWindow {
    ui::ScopedQtScheduler scheduler;
    std::shared_ptr<sim::SimulatedAccelerator> accelerator;
    std::unique_ptr<viewer::SpectrumForm> form;
    lumiscope_bench::PaintCounter painted;

    // The window on the source's device with `items` elements followed,
    // switched to archive mode (the last 24 hours).
    bool Open(const Source& source, int items, int itemStep) {
        if (source.transport) vire::SetTransport(source.transport);
        else accelerator = sim::InstallSimulatedAccelerator(source.configDir);
        form = std::make_unique<viewer::SpectrumForm>(source.startArguments, control::SystemPath(source.appPath));
        form->setAttribute(Qt::WA_DeleteOnClose, false);
        form->resize(1280, 800);
        form->show();
        QCoreApplication::processEvents();
        for (int row = 0; row < items; ++row) {
            form->ComboDevs->setCurrentIndex(row * itemStep);
            form->ComSelDevice_Click();
        }
        form->OptArchiveData_Click();
        QCoreApplication::processEvents();
        form->PLEXPlotSpectrum->Canvas()->installEventFilter(&painted);
        return form->State().Items.Count() == items && form->State().HistorySpectrumLoads > 0;
    }
    void PaintOnce() {
        const int before = painted.count;
        for (int i = 0; i < 1000 && painted.count == before; ++i) QCoreApplication::processEvents();
    }
    ~ArchiveWindow() {
        form.reset();
        vire::SetTransport(nullptr);
    }
};

void MovieStep(benchmark::State& state, const Source& source) {
    ArchiveWindow window;
    if (!window.Open(source, 1, 0) || window.form->State().HistorySpectrumPoints != 8000) {
        state.SkipWithError("the recorded 8000-point spectrum could not be read");
        return;
    }
    window.form->MovieButton_Click();  // places the replay mid-day
    window.form->MovieButton_Click();
    int16_t direction = 1;
    for (auto _ : state) {
        window.form->StepButton_Click(direction);
        window.PaintOnce();
        direction = static_cast<int16_t>(1 - direction);
    }
}

void ZoomHistory(benchmark::State& state, const Source& source) {
    ArchiveWindow window;
    if (!window.Open(source, 9, 7)) {
        state.SkipWithError("nine items could not be followed");
        return;
    }
    const int32_t stop = window.form->State().HistoryStop;
    for (auto _ : state) {
        emit window.form->PLEXPlotSelected->Canvas()->ZoomDragged(stop - 9 * 3600, stop - 7 * 3600, -5, 5);
        state.PauseTiming();
        if (window.form->State().Zoom.Depth() != 1) state.SkipWithError("the zoom was not taken");
        window.form->ComUnZoom_Click();
        state.ResumeTiming();
    }
}

void WaterfallDay(benchmark::State& state, const Source& source) {
    ArchiveWindow window;
    if (!window.Open(source, 1, 0)) {
        state.SkipWithError("the window could not switch to archive");
        return;
    }
    int32_t rows = 0;
    for (auto _ : state) {
        window.form->WaterfallButton_Click();
        auto* view = window.form->findChild<viewer::WaterfallView*>("WaterfallView");
        if (!view || view->Picture().columns != 8000) {
            state.SkipWithError("the waterfall did not open on 8000 points");
            break;
        }
        rows = static_cast<int32_t>(view->Picture().times.size());
        QCoreApplication::processEvents();
    }
    state.counters["rows"] = rows;
}

Source InProcess() {
    static viewer_bench::WideConfig config;
    return {config.AppPath(), viewer_bench::kWideStartArguments, nullptr, config.ConfigDir()};
}

void MovieStepInProcess(benchmark::State& state) { MovieStep(state, InProcess()); }
void ZoomHistoryInProcess(benchmark::State& state) {
    static const std::string sample = LUMISCOPE_SAMPLE_CONFIG_DIR;
    ZoomHistory(state, {sample.substr(0, sample.find_last_of('/', sample.size() - 2)), "", nullptr, sample});
}
void WaterfallInProcess(benchmark::State& state) { WaterfallDay(state, InProcess()); }

}  // namespace

BENCHMARK(MovieStepInProcess)->Name("figure:movie-step")->Unit(benchmark::kMillisecond)->Iterations(40);
BENCHMARK(ZoomHistoryInProcess)->Name("figure:zoom-history-9")->Unit(benchmark::kMillisecond)->Iterations(10);
BENCHMARK(WaterfallInProcess)->Name("figure:waterfall-day-8000")->Unit(benchmark::kMillisecond)->Iterations(3);

#ifdef LUMISCOPE_TOOLS_OVER_NETWORK
namespace {

// The servers, started for the first network benchmark; the window finds
// their configuration as the "configs" folder of a program directory.
struct NetworkSource {
    network_bench::BenchServers servers;
    QTemporaryDir app;
    bool ok = false;
    NetworkSource() {
        ok = servers.Start() && app.isValid() &&
             QFile::link(QString::fromStdString(servers.config), QDir(app.path()).filePath("configs"));
        if (!ok) std::cerr << "bench_tools: no servers, no network figures\n";
    }
    Source Get(const char* startArguments) const {
        if (!ok) return {};
        return {app.path().toStdString(), startArguments,
                std::make_shared<net::NetworkTransport>(net::NetworkSettings{servers.etcd.endpoint, "", ""}),
                servers.config};
    }
};

const NetworkSource& Network() {
    static NetworkSource source;
    return source;
}

void MovieStepNetwork(benchmark::State& state) { MovieStep(state, Network().Get("ORKA BENCH")); }
void ZoomHistoryNetwork(benchmark::State& state) { ZoomHistory(state, Network().Get("")); }
void WaterfallNetwork(benchmark::State& state) { WaterfallDay(state, Network().Get("ORKA BENCH")); }

}  // namespace

BENCHMARK(MovieStepNetwork)->Name("figure:movie-step-network")->Unit(benchmark::kMillisecond)->Iterations(40);
BENCHMARK(ZoomHistoryNetwork)->Name("figure:zoom-history-9-network")->Unit(benchmark::kMillisecond)->Iterations(10);
BENCHMARK(WaterfallNetwork)->Name("figure:waterfall-day-8000-network")->Unit(benchmark::kMillisecond)->Iterations(3);
#endif
