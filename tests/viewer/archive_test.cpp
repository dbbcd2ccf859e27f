// Looking back in time on the window, against the simulated accelerator: the
// live/archive switch, the time depths, zooming the trend plots, the replay of
// recorded spectra, a spectrum read that fails, and the waterfall.
#include <gtest/gtest.h>

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

#include "form_fixture.h"
#include "ui/controls/interval_timer.h"
#include "ui/controls/month_calendar.h"
#include "ui/controls/value_grid.h"
#include "ui/plot/plex_plot.h"
#include "ui/plot/plot_canvas.h"
#include "viewer/movie_state.h"
#include "viewer/waterfall_rows.h"

namespace {

using viewer::MovieState;
constexpr int32_t kNowS = static_cast<int32_t>(viewer_test::kStartMs / 1000);

// ORKA's orbit (four parts of 32) with `items` elements followed, live.
struct Window {
    explicit Window(int items = 1) {
        f.Load();
        for (int row = 0; row < items; ++row) {
            form().ComboDevs->setCurrentIndex(row + 3);
            form().ComSelDevice_Click();
        }
        f.Settle();
    }
    viewer::SpectrumForm& form() { return *f.form; }
    viewer::FormState& s() { return f.State(); }
    bool Shown(QWidget* w) { return w->isVisibleTo(f.form); }
    // A zoom rectangle dragged on a trend plot (0 selected, 1 extra, 2 overview).
    void Drag(int which, double x0, double x1, double y0, double y1) {
        ui::PlexPlot* plots[] = {form().PLEXPlotSelected, form().PLEXPlotExtra, form().PLEXPlotAccelerator};
        emit plots[which]->Canvas()->ZoomDragged(x0, x1, y0, y1);
    }
    int32_t StampsIn(int32_t from, int32_t to) {
        int32_t n = 0;
        for (const auto& p : s().Items[0].series.Points()) n += p.time >= from && p.time <= to;
        return n;
    }
    viewer_test::FormFixture f;
};

TEST(Archive, TheSwitchShowsTheLastDayAndItsMiddleAndOnlyRecoloursDuringSetUp) {
    for (const bool settingUp : {false, true}) {
        Window w;
        const int32_t liveStart = w.s().HistoryStart;
        w.s().Busy = settingUp;
        w.form().OptArchiveData_Click();
        w.s().Busy = false;
        EXPECT_EQ(w.form().OptArchiveData->property("backColour").toUInt(), 0xC0FFFFu);
        EXPECT_EQ(w.form().OptLiveData->property("backColour").toUInt(), 0x8000000Fu);
        EXPECT_EQ(w.form().GridSelected->TextMatrix(0, 2), "Marker");
        EXPECT_TRUE(w.form().PLEXPlotExtra->HistoryDisplay());
        EXPECT_EQ(w.Shown(w.form().MonthView1) && w.Shown(w.form().FrameMovie), !settingUp);
        if (settingUp) {
            EXPECT_EQ(w.s().HistoryStart, liveStart);
            EXPECT_EQ(w.s().HistorySpectrumLoads, 0);
            continue;
        }
        EXPECT_EQ(w.s().HistoryStart, kNowS - 86400);
        EXPECT_EQ(w.s().HistoryStop, kNowS);
        EXPECT_EQ(w.form().Movie().SpectrumTime(), kNowS - 43200);
        EXPECT_EQ(w.s().Zoom.Entry(0).from, kNowS - 86400);
        EXPECT_EQ(w.form().MonthView1->Value(), QDate(2023, 11, 14)) << "today in Berlin";
        // The recorded spectrum of the middle of the day, named by its source;
        // the trend cursor stands at its time.
        std::string texts;
        for (const auto& [handle, text] : w.form().PLEXPlotSpectrum->Model().texts) texts += text.text + "|";
        EXPECT_EQ(texts, "History : Nov 14 11:13:20| Autoscale|");
        EXPECT_EQ(w.form().PLEXPlotSpectrum->Model().traces.begin()->second.values.size(), 128u);
        EXPECT_EQ(w.form().PLEXPlotSelected->CursorX(), kNowS - 43200);
        EXPECT_TRUE(w.f.dialogs.Records().empty());
    }
}

TEST(Archive, EachTimeDepthGoesLiveWithItsSpan) {
    const int32_t spans[] = {600, 3600, 21600, 43200, 86400};
    Window w(0);
    w.form().OptArchiveData_Click();
    for (int16_t i = 0; i < 5; ++i) {
        w.form().scDepth[i]->trigger();
        EXPECT_EQ(w.s().HistoryStop - w.s().HistoryStart, spans[i]) << i;
        EXPECT_EQ(w.s().HistoryStop, kNowS);
        EXPECT_TRUE(w.form().OptLiveData->isChecked() && !w.Shown(w.form().MonthView1));
        for (int16_t k = 0; k < 5; ++k) EXPECT_EQ(w.form().scDepth[k]->isChecked(), k == i) << i << " " << k;
    }
}

TEST(Archive, AZoomReadsTheSpanAgainAndTheLabelGoesBack) {
    Window w;
    w.form().OptArchiveData_Click();
    const int32_t from = kNowS - 7200, to = kNowS - 3600;
    const int32_t overview = w.StampsIn(from, to);
    w.Drag(0, from, to, -1, 1);
    EXPECT_EQ(w.form().LabelZoom[0]->text(), "Zooms: 1");
    EXPECT_TRUE(w.Shown(w.form().ComUnZoom));
    EXPECT_EQ(w.form().PLEXPlotAccelerator->XMin(), from) << "the other plots share the time range";
    // The local history's minute step in full, not the day's 999 points stretched.
    EXPECT_GT(w.StampsIn(from, to), overview);
    EXPECT_GE(w.StampsIn(from, to), 60);
    w.Drag(0, from + 600, to - 600, -0.5, 0.5);
    w.Drag(0, from + 900, to - 900, -0.4, 0.4);
    // A double click as the mouse makes it: a click, the double click, its release.
    QTest::mouseClick(w.form().LabelZoom[0], Qt::LeftButton);
    QTest::mouseDClick(w.form().LabelZoom[0], Qt::LeftButton);
    QTest::mouseRelease(w.form().LabelZoom[0], Qt::LeftButton);
    EXPECT_EQ(w.s().Zoom.Depth(), 1) << "back two levels";
    EXPECT_EQ(w.s().HistoryStart, from);
    w.form().PicZoom_Click();
    w.form().PicZoom_Click();
    EXPECT_EQ(w.s().Zoom.Depth(), 0) << "at 0 a step back stays at 0";
    EXPECT_EQ(w.s().HistoryStart, kNowS - 86400);
    EXPECT_FALSE(w.Shown(w.form().ComUnZoom) || w.Shown(w.form().PicZoom[0]));
    // The live button's mouse-down pops a level before going live.
    w.Drag(0, from, to, -1, 1);
    w.Drag(0, from + 600, to - 600, -0.5, 0.5);
    QTest::mousePress(w.form().OptLiveData, Qt::LeftButton);
    EXPECT_EQ(w.s().Zoom.Depth(), 1);
    // Live, a zoom only shares its time range.
    w.form().OptLiveData_Click();
    const double yMax = w.form().PLEXPlotSelected->YMax();
    w.Drag(1, kNowS - 1800, kNowS - 600, -2, 2);
    EXPECT_EQ(w.s().Zoom.Depth(), 0);
    EXPECT_FALSE(w.Shown(w.form().ComUnZoom));
    EXPECT_EQ(w.form().PLEXPlotSelected->XMin(), kNowS - 1800);
    EXPECT_EQ(w.form().PLEXPlotSelected->YMax(), yMax);
    EXPECT_TRUE(w.f.dialogs.Records().empty());
}

TEST(Archive, StartPlacesBeforeTheSpectrumAndStepsStopAtBothEnds) {
    const std::vector<int32_t> times{100, 200, 300, 400};
    // Started at `earlier` (0: not), then at `spectrum`, then one step with
    // the stamps' upper bound `upper`.
    struct Case { int32_t earlier, spectrum; bool forward; int32_t upper, pos; std::optional<int32_t> load; };
    const Case cases[] = {
        {0, 350, true, 3, 3, 400},             // placed on 300, the last stamp before 350
        {350, 50, true, 3, 3, 400},            // nothing before 50: the position stays on 300
        {250, 150, false, 3, 0, 100},          // stamp 0 is never chosen: the position stays on 200
        {0, 150, false, 3, 0, std::nullopt},   // back at 0 does nothing
        {0, 250, false, 3, 0, 100},
        {0, 500, true, 3, 3, std::nullopt},    // forward at the last index does nothing
        {0, 500, true, 4, 4, std::nullopt},    // a bound past the stamps moves on, with nothing to load
    };
    for (const Case& c : cases) {
        MovieState movie;
        if (c.earlier) {
            movie.SetSpectrumTime(c.earlier);
            movie.Toggle(1, -1, times);
        }
        movie.SetSpectrumTime(c.spectrum);
        movie.Toggle(1, -1, times);
        EXPECT_EQ(movie.Step(c.forward, times, c.upper), c.load) << c.spectrum << " " << c.forward;
        EXPECT_EQ(movie.Pos(), c.pos) << c.spectrum;
        EXPECT_FALSE(movie.Running()) << "a step stops the replay";
    }
    MovieState movie;
    EXPECT_EQ(movie.Tick(times), 0) << "without an item the same time again";
    EXPECT_EQ(movie.Toggle(2, 1, times), MovieState::Start::Running);
    EXPECT_EQ(movie.Item(), 1) << "the highlighted item drives the replay";
}

TEST(Archive, AReplayStopsOnTheTickAfterTheLastPointAndGoingLiveEndsIt) {
    Window w;
    w.form().OptArchiveData_Click();
    w.Drag(0, kNowS - 3600, kNowS, -5, 5);
    w.form().Movie().SetSpectrumTime(kNowS - 90);
    const int32_t left = w.StampsIn(kNowS - 90, kNowS), loads = w.s().HistorySpectrumLoads;
    ASSERT_GE(left, 2);
    w.form().MovieButton->click();
    EXPECT_EQ(w.form().MovieButton->text(), "Stop Movie");
    w.f.Advance(500 * left, 500);
    EXPECT_TRUE(w.form().MovieTimer->Enabled()) << "the last stamp is shown for a tick";
    w.f.Advance(500, 500);
    EXPECT_EQ(w.s().HistorySpectrumLoads, loads + left);
    EXPECT_FALSE(w.form().MovieTimer->Enabled());
    EXPECT_EQ(w.form().MovieButton->text(), "Start Movie");
    EXPECT_EQ(w.form().PLEXPlotSelected->CursorX(), w.form().Movie().ReplayTime()) << "the cursor follows";
    w.form().StepButton[0]->click();
    EXPECT_EQ(w.s().HistorySpectrumLoads, loads + left + 1);
    w.form().MovieButton_Click();
    w.form().OptLiveData_Click();
    EXPECT_FALSE(w.form().MovieTimer->Enabled());
    w.form().MovieButton_Click();
    EXPECT_FALSE(w.form().MovieTimer->Enabled()) << "inert while live";
    EXPECT_TRUE(w.f.dialogs.Records().empty());
}

TEST(Archive, NoItemAsksForOneAndTheSpeedLabelCyclesOrOpensItsMenu) {
    Window w(0);
    w.form().OptArchiveData_Click();
    w.form().MovieButton_Click();
    w.form().StepButton_Click(1);
    EXPECT_EQ(w.f.dialogs.Texts(), (std::vector<std::string>(2, "Please Select Something first, Please!")));
    EXPECT_FALSE(w.form().MovieTimer->Enabled());
    std::string seen;
    for (int k = 0; k < 3; ++k) {
        QTest::mousePress(w.form().SpeedButton, Qt::LeftButton);
        seen += w.form().SpeedButton->text().toStdString() + "|";
    }
    w.form().mSpeedOpts[0]->trigger();  // any entry is the next speed
    EXPECT_EQ(seen + w.form().SpeedButton->text().toStdString(), "Speed x2|Speed x4|Speed x1|Speed x2");
    EXPECT_TRUE(w.form().mSpeedOpts[1]->isChecked() && !w.form().mSpeedOpts[0]->isChecked());
    QTest::mousePress(w.form().SpeedButton, Qt::RightButton);
    EXPECT_TRUE(w.form().MovieSpeedOpts->isVisible());
    EXPECT_EQ(w.form().Movie().Speed(), 2);
    w.form().MovieSpeedOpts->hide();
}

TEST(Archive, AFailedSpectrumReadIsRetriedOrCancelled) {
    for (const bool retry : {true, false}) {
        Window w;
        w.form().OptArchiveData_Click();
        w.f.accelerator->SetFault("/ORKA/BPMHIST", sim::Fault{sim::Fault::Kind::Down, 0, 0, 1});
        w.f.dialogs.Answer(retry ? ui::MsgBoxResult::Retry : ui::MsgBoxResult::Cancel).Answer(ui::MsgBoxResult::OK);
        const int32_t loads = w.s().HistorySpectrumLoads;
        EXPECT_EQ(w.form().LoadHistorySpectrum(kNowS - 600), retry);
        EXPECT_EQ(w.s().HistorySpectrumLoads, loads + (retry ? 1 : 0));
        std::vector<std::string> told{"Error Reading History Data: link error: server not reachable"};
        if (!retry) told.push_back("GetArchivedTraceData : link error: server not reachable");
        EXPECT_EQ(w.f.dialogs.Texts(), told);
    }
}

TEST(Archive, WaterfallRowsAreThinnedStampsOrAnEvenSpreadAndColoursRunBlueToRed) {
    const std::vector<int32_t> stamps{10, 20, 30, 40, 50, 60};
    struct Case { int32_t from, to, rows; std::vector<int32_t> times; };
    const Case cases[] = {
        {0, 100, 3, {10, 40, 60}},        // first and last kept
        {25, 45, 5, {30, 40}},            // fewer stamps than rows: all in the window
        {70, 100, 4, {70, 80, 90, 100}},  // no stamp: even over the window
        {70, 72, 9, {70, 71, 72}},        // never two rows at one second
        {0, 100, 0, {}},
    };
    for (const Case& c : cases) EXPECT_EQ(viewer::WaterfallRowTimes(stamps, c.from, c.to, c.rows), c.times) << c.from;
    const viewer::ValueRange range = viewer::WaterfallRange(std::vector<float>{2, NAN, -2, INFINITY});
    EXPECT_EQ(std::vector<uint32_t>({viewer::WaterfallColour(-3, range), viewer::WaterfallColour(2, range),
                                     viewer::WaterfallColour(NAN, range)}),
              std::vector<uint32_t>({0xFF000080u, 0xFFDC0000u, 0xFF808080u}));
    EXPECT_EQ(viewer::WaterfallRange(std::vector<float>{3, 3}).hi, 3.5f);
}

TEST(Archive, TheWaterfallOpensOnTheStampsAndAClickedRowReplaysFromIt) {
    Window w;
    w.form().OptArchiveData_Click();
    w.Drag(0, kNowS - 3600, kNowS, -5, 5);
    w.form().WaterfallButton->click();
    auto* view = w.form().findChild<viewer::WaterfallView*>("WaterfallView");
    ASSERT_NE(view, nullptr);
    const viewer::WaterfallPicture& picture = view->Picture();
    const auto rows = static_cast<int32_t>(picture.times.size());
    EXPECT_EQ(rows, w.StampsIn(kNowS - 3600, kNowS)) << "an hour of minutes, fewer than the picture's rows";
    EXPECT_EQ(view->Image().height(), rows);
    EXPECT_EQ(picture.labels.at(32), w.s().LiveLabels[32]) << "labelled as the spectrum is";
    EXPECT_EQ(picture.anchors, (std::vector<int32_t>{0, 32, 64, 96}));
    const QRect area = view->PictureArea();
    const int32_t row = 30;
    QTest::mouseClick(view, Qt::LeftButton, {}, QPoint(area.center().x(), area.top() + (2 * row + 1) * area.height() / (2 * rows)));
    EXPECT_TRUE(w.form().MovieTimer->Enabled());
    w.f.Advance(500, 500);
    EXPECT_EQ(w.form().Movie().ReplayTime(), picture.times[row]) << "the replay runs from the clicked row";
    EXPECT_TRUE(w.f.dialogs.Records().empty());
}

}  // namespace
