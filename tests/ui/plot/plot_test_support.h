// What the ui tests share: the fake live transport, the
// test clock with a manual scheduler, and a plot shown at a known size.
#pragma once

#include <QCoreApplication>
#include <memory>

#include "fake_live_transport.h"
#include "ui/plot/plex_plot.h"
#include "ui/plot/plot_canvas.h"
#include "vire/clock.h"
#include "vire/scheduler.h"
#include "vire/transport.h"

namespace plot_test {

inline constexpr int64_t kStartMs = 1'700'000'000'000;

using FakeTransport = test_support::FakeLiveTransport;

// The test clock, a manual scheduler and a fake transport, installed for one test.
class LiveFixture {
public:
    LiveFixture() : transport(std::make_shared<FakeTransport>()) {
        vire::SetTestClock(kStartMs);
        vire::SetScheduler(&scheduler);
        vire::SetTransport(transport);
    }
    ~LiveFixture() {
        vire::SetTransport(nullptr);
        vire::SetScheduler(nullptr);
        vire::UseSystemClock();
    }
    vire::ManualScheduler scheduler;
    std::shared_ptr<FakeTransport> transport;
};

// The axis limits, set as the caller sets them.
inline void SetLimits(ui::PlexPlot& plot, double xMin, double xMax, double yMin, double yMax) {
    plot.SetXRange(xMin, xMax);
    plot.SetYMin(yMin);
    plot.SetYMax(yMax);
}

// A plot on screen (offscreen platform) at a known size, laid out.
inline void Show(ui::PlexPlot& plot, int width = 600, int height = 400) {
    plot.resize(width, height);
    plot.show();
    QCoreApplication::processEvents();
    plot.Canvas()->LayOut();
}

}  // namespace plot_test
