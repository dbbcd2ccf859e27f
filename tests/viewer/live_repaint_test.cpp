// A live reading repaints the spectrum's traces and captions, nothing else:
// neither the plot's frame (axes, element labels) nor any other widget.
#include <gtest/gtest.h>

#include <QEvent>
#include <map>

#include "form_fixture.h"
#include "scratch_config.h"
#include "ui/plot/plex_plot.h"
#include "ui/plot/plot_canvas.h"

namespace {

struct PaintCounter : QObject {
    std::map<QObject*, int> painted;
    bool eventFilter(QObject* target, QEvent* event) override {
        if (event->type() == QEvent::Paint) ++painted[target];
        return false;
    }
};

TEST(LiveRepaint, AReadingRepaintsTheSpectrumAloneAndKeepsItsFrame) {
    viewer_test::ScratchConfig config({"T,S/D,P,400,Orbit,10,0,mm,,,,1,A"});
    auto devices = viewer_test::FakeDevices();
    devices->readings["/T/S/D P"].values = std::vector<float>(400, 2.5f);
    viewer_test::FormFixture f("", config.Dir(), "OPERATOR", devices);
    f.form->show();
    f.Advance(3000);
    ui::PlotCanvas* canvas = f.form->PLEXPlotSpectrum->Canvas();
    const int frames = canvas->FrameRenders(), xAxes = canvas->XAxisRenders();
    PaintCounter counter;
    qApp->installEventFilter(&counter);
    f.Advance(2000);
    qApp->removeEventFilter(&counter);
    EXPECT_EQ(counter.painted[canvas], 2) << "one repaint per reading";
    EXPECT_EQ(counter.painted.size(), 1u) << "no other widget repainted";
    EXPECT_EQ(canvas->FrameRenders(), frames) << "same caption, same limits: the frame is kept";
    EXPECT_EQ(canvas->XAxisRenders(), xAxes);
}

}  // namespace
