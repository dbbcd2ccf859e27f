// Benchmarks of the spectrum tools:
//   percent-8000                  the percent-of-threshold conversion of an
//                                 8000-point spectrum of four parts (with the
//                                 copy of the raw values it starts from);
//   live-frame-plain-8000         one live frame of the window (data handler
//                                 and repaint) on that spectrum;
//   live-frame-all-modes-8000     the same with thresholds drawn, a reference
//                                 taken and peak hold on;
// and "ratio live-frame-all-modes-vs-plain R", the two frames measured in
// the same run.
#include <benchmark/benchmark.h>

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "control/program_location.h"
#include "paint_counter.h"
#include "sim/simulated_accelerator.h"
#include "ui/plot/plot_canvas.h"
#include "ui/plot/plex_plot.h"
#include "ui/qt_scheduler.h"
#include "viewer/spectrum_form.h"
#include "viewer/threshold_display.h"
#include "vire/transport.h"

namespace {

using Clock = std::chrono::steady_clock;
constexpr int kParts = 4;
constexpr int kPartSize = 2000;
constexpr int kPoints = kParts * kPartSize;

// The sample configuration with ORKA's fill pattern made 8000 elements in
// four parts, each with thresholds its device serves.
class ThresholdConfig {
public:
    ThresholdConfig() {
        const QDir sample(LUMISCOPE_SAMPLE_CONFIG_DIR);
        QDir root(dir_.path());
        if (!dir_.isValid() || !root.mkpath("configs")) return;
        for (const QString& name : sample.entryList(QDir::Files))
            if (!QFile::copy(sample.filePath(name), root.filePath("configs/" + name))) return;
        QByteArray text =
            "CONTEXT,SERVER,PROPERTY,SIZE,HSTSERVER,HSTPROPERTY,DESCRIPTION,MAX,MIN,EGU,APPEND,HIGH,PROPLINK,PROPSHORT\r\n";
        for (int part = 1; part <= kParts; ++part) {
            const QByteArray p = QByteArray::number(part);
            text += "ORKA,BCMSRV/FILL.P" + p + ",CHARGE," + QByteArray::number(kPartSize) + ",/ORKA/BCMHIST,CHARGE.P" +
                    p + ".HIST,Fill part " + p + ",100,0,pC," + (part == 1 ? "" : "yes") + ",/ORKA/BCMSRV/FILL.P" + p +
                    "[THRESHOLD]," + (part == 1 ? "1,Q" : "0,") + "\r\n";
        }
        QFile fill(root.filePath("configs/ORKA_FILL.csv"));
        ok_ = fill.remove() && fill.open(QIODevice::WriteOnly) && fill.write(text) > 0;
    }
    bool Ok() const { return ok_; }
    std::string AppPath() const { return dir_.path().toStdString(); }
    std::string ConfigDir() const { return dir_.filePath("configs").toStdString() + "/"; }

private:
    QTemporaryDir dir_;
    bool ok_ = false;
};

void PercentOf8000(benchmark::State& state) {
    std::vector<float> raw(kPoints), values(kPoints);
    std::vector<std::vector<float>> high(kParts, std::vector<float>(kPartSize)), low(kParts, std::vector<float>(kPartSize));
    for (int i = 0; i < kPoints; ++i) raw[static_cast<std::size_t>(i)] = static_cast<float>((i * 37) % 200 - 50);
    std::vector<viewer::ThresholdPart> parts;
    for (int p = 0; p < kParts; ++p) {
        for (int j = 0; j < kPartSize; ++j) {
            high[p][static_cast<std::size_t>(j)] = 80.0f + static_cast<float>(j % 7);
            low[p][static_cast<std::size_t>(j)] = j % 3 == 0 ? 0.0f : -40.0f;
        }
        parts.push_back({high[p], low[p]});
    }
    for (auto _ : state) {
        values = raw;
        viewer::ConvertToPercent(values, kPoints, parts);
        benchmark::DoNotOptimize(values.data());
    }
}

// The window on the 8000-point device, every part delivered once.
struct ThresholdWindow {
    ThresholdConfig config;
    ui::ScopedQtScheduler scheduler;
    std::shared_ptr<sim::SimulatedAccelerator> accelerator;
    std::unique_ptr<viewer::SpectrumForm> form;
    lumiscope_bench::PaintCounter painted;

    bool Open(bool allModes) {
        if (!config.Ok()) return false;
        accelerator = sim::InstallSimulatedAccelerator(config.ConfigDir());
        form = std::make_unique<viewer::SpectrumForm>("ORKA FILL", control::SystemPath(config.AppPath()));
        form->setAttribute(Qt::WA_DeleteOnClose, false);
        form->resize(1280, 800);
        form->show();
        emit form->SpectrumCombo->activated(0);
        const auto start = Clock::now();
        while (form->State().LivePointCount < kPoints && Clock::now() - start < std::chrono::seconds(10))
            QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
        if (form->State().LivePointCount != kPoints) return false;
        if (allModes) {
            form->liveShowThreshold_Click();
            form->LivePeakHold_Click();
            form->refMark_Click();
            if (form->State().LiveThresholdTrace < 0 || form->State().ReferenceTrace < 0) return false;
        }
        form->PLEXPlotSpectrum->Canvas()->installEventFilter(&painted);
        return true;
    }
    void Frame() {
        form->PLEXPlotSpectrum_DataReceive(0, 0);
        const int before = painted.count;
        for (int i = 0; i < 1000 && painted.count == before; ++i) QCoreApplication::processEvents();
    }
    ~ThresholdWindow() {
        form.reset();
        vire::SetTransport(nullptr);
    }
};

double plainFrameUs = 0, allModesFrameUs = 0;

void PrintRatio() {
    if (plainFrameUs > 0 && allModesFrameUs > 0)
        std::printf("ratio live-frame-all-modes-vs-plain %.2f\n", allModesFrameUs / plainFrameUs);
    std::fflush(stdout);
}

void LiveFrame(benchmark::State& state, bool allModes) {
    ThresholdWindow window;
    if (!window.Open(allModes)) {
        state.SkipWithError("the 8000-point device with thresholds could not be shown");
        return;
    }
    double total = 0;
    int64_t frames = 0;
    for (auto _ : state) {
        const auto start = Clock::now();
        window.Frame();
        const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
        state.SetIterationTime(seconds);
        total += seconds;
        ++frames;
    }
    (allModes ? allModesFrameUs : plainFrameUs) = total / static_cast<double>(frames) * 1e6;
    // The ratio follows the figures, once both frames are measured.
    static const bool registered = std::atexit(PrintRatio) == 0;
    benchmark::DoNotOptimize(registered);
}

BENCHMARK(PercentOf8000)->Name("figure:percent-8000")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(LiveFrame, plain, false)
    ->Name("figure:live-frame-plain-8000")->UseManualTime()->Iterations(100)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(LiveFrame, all_modes, true)
    ->Name("figure:live-frame-all-modes-8000")->UseManualTime()->Iterations(100)->Unit(benchmark::kMicrosecond);

}  // namespace
