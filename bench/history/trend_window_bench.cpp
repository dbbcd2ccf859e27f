// The trend side of the viewer window with nine items of ORKA's orbit on
// the in-process simulated accelerator:
//   grid-fill-9    one FillAGrid of the cursor column for nine items;
//   trend-frame-9  one data-received round of the selected-item plot (nine
//                  live values appended, the grid's "Now" column written)
//                  and the repaint of that plot.
#include <QApplication>
#include <QComboBox>
#include <benchmark/benchmark.h>
#include <memory>

#include "control/program_location.h"
#include "paint_counter.h"
#include "sim/simulated_accelerator.h"
#include "ui/plot/plex_plot.h"
#include "ui/plot/plot_canvas.h"
#include "ui/qt_scheduler.h"
#include "viewer/spectrum_form.h"
#include "vire/transport.h"

namespace {

void EnsureApplication() {
    static int argc = 1;
    static char name[] = "bench_history";
    static char* argv[] = {name, nullptr};
    static std::unique_ptr<QApplication> application;
    if (!QCoreApplication::instance()) application = std::make_unique<QApplication>(argc, argv);
}

struct NineItemWindow {
    ui::ScopedQtScheduler scheduler;
    std::shared_ptr<sim::SimulatedAccelerator> accelerator;
    std::unique_ptr<viewer::SpectrumForm> form;
    lumiscope_bench::PaintCounter painted;

    NineItemWindow() {
        EnsureApplication();
        const std::string configs = LUMISCOPE_SAMPLE_CONFIG_DIR;
        accelerator = sim::InstallSimulatedAccelerator(configs);
        const std::string app = configs.substr(0, configs.find_last_of('/', configs.size() - 2));
        form = std::make_unique<viewer::SpectrumForm>("", control::SystemPath(app));
        form->setAttribute(Qt::WA_DeleteOnClose, false);
        form->resize(1280, 800);
        form->show();
        for (int row = 0; row < 9; ++row) {
            form->ComboDevs->setCurrentIndex(row * 7);
            form->ComSelDevice_Click();
        }
        QCoreApplication::processEvents();
        form->PLEXPlotSelected->Canvas()->installEventFilter(&painted);
    }
    bool Ready() const { return form->State().Items.Count() == 9; }
    void PaintOnce() {
        const int before = painted.count;
        for (int i = 0; i < 1000 && painted.count == before; ++i) QCoreApplication::processEvents();
    }
    ~NineItemWindow() {
        form.reset();
        vire::SetTransport(nullptr);
    }
};

void GridFill(benchmark::State& state) {
    NineItemWindow window;
    if (!window.Ready()) {
        state.SkipWithError("nine items could not be added");
        return;
    }
    const int32_t from = window.form->State().HistoryStart;
    int32_t t = from;
    for (auto _ : state) {
        window.form->FillAGrid(1, 0, t, false);
        t = t >= window.form->State().HistoryStop ? from : t + 37;
    }
}

void TrendFrame(benchmark::State& state) {
    NineItemWindow window;
    if (!window.Ready()) {
        state.SkipWithError("nine items could not be added");
        return;
    }
    for (auto _ : state) {
        window.form->Plot_DataReceive(0, 0, 0);
        window.PaintOnce();
    }
}

}  // namespace

BENCHMARK(GridFill)->Name("figure:grid-fill-9")->Unit(benchmark::kMicrosecond)->Repetitions(5)->Iterations(200);
BENCHMARK(TrendFrame)->Name("figure:trend-frame-9")->Unit(benchmark::kMicrosecond)->Repetitions(5)->Iterations(50);
