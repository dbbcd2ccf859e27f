// The replay of recorded spectra: the controls beside the calendar, the
// start/stop button, the timer's steps through the driving item's time
// stamps, steps by hand and the speed shown. The driving logic is
// MovieState; here it meets the widgets and the loads.
#include <QAction>
#include <QCursor>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <cmath>

#include "ui/controls/dialogs.h"
#include "ui/controls/interval_timer.h"
#include "ui/controls/mouse_relay.h"
#include "viewer/initialising_guard.h"
#include "viewer/spectrum_form.h"
#include "viewer/widget_names.h"

namespace viewer {

namespace {

constexpr const char* kNothingSelected = "Please Select Something first, Please!";

}  // namespace

void SpectrumForm::BuildReplayControls() {
    FrameMovie = Named(new QGroupBox(tr("Replay"), this), "FrameMovie", tr("Replay"));
    MovieButton = Named(new QPushButton("Start Movie", FrameMovie), "MovieButton", tr("Start or stop the replay"));
    StepButton[0] = Named(new QPushButton(QString::fromUtf8("\u25C0"), FrameMovie), "StepButton_0", tr("Step back"));
    StepButton[1] = Named(new QPushButton(QString::fromUtf8("\u25B6"), FrameMovie), "StepButton_1", tr("Step forward"));
    SpeedButton = Named(new QPushButton(FrameMovie), "SpeedButton", tr("Replay speed"));
    SpeedButton->setToolTip(tr("Click for the next speed, right-click for the list"));
    WaterfallButton = Named(new QPushButton(tr("&Waterfall"), FrameMovie), "WaterfallButton", tr("Waterfall"));
    WaterfallButton->setToolTip(tr("The spectrum over the trend window as an image; click a row to replay from there"));
    auto* layout = new QGridLayout(FrameMovie);
    layout->addWidget(MovieButton, 0, 0, 1, 2);
    layout->addWidget(StepButton[0], 0, 2);
    layout->addWidget(StepButton[1], 0, 3);
    layout->addWidget(SpeedButton, 1, 0, 1, 2);
    layout->addWidget(WaterfallButton, 1, 2, 1, 2);
    FrameMovie->setVisible(false);

    MovieSpeedOpts = new QMenu(tr("Replay &Speed"), this);
    MovieSpeedOpts->setObjectName("MovieSpeedOpts");
    for (int i = 0; i < 3; ++i) {
        mSpeedOpts[i] = MovieSpeedOpts->addAction(QString::fromStdString(MovieState::SpeedCaption(static_cast<int16_t>(i))));
        mSpeedOpts[i]->setObjectName(IndexedName("mSpeedOpts", i));
        mSpeedOpts[i]->setCheckable(true);
    }
    mSpeedOpts[0]->setChecked(true);
    SpeedButton->setText(mSpeedOpts[0]->text());
    // Keyboard users reach the speeds and the waterfall through the menu bar.
    displayOpts->addSeparator();
    displayOpts->addMenu(MovieSpeedOpts);
    WaterfallOpts = displayOpts->addAction(tr("&Waterfall..."));
    WaterfallOpts->setObjectName("WaterfallOpts");
    WaterfallOpts->setEnabled(false);  // the waterfall and its replay belong to archive mode

    // Under the calendar, where the live mode's frame is (the two take
    // turns), the replay; and the zoom depth of the extra plot.
    if (auto* timeBox = findChild<QGroupBox*>("FrameTime")) {
        if (auto* grid = qobject_cast<QGridLayout*>(timeBox->layout())) {
            grid->addWidget(FrameMovie, 4, 0, 1, 2);
            auto* extraZoom = new QHBoxLayout;
            extraZoom->addWidget(PicZoom[1]);
            extraZoom->addWidget(LabelZoom[1]);
            extraZoom->addStretch(1);
            grid->addLayout(extraZoom, 7, 0, 1, 2);
        }
    }
}

void SpectrumForm::ConnectReplayEvents() {
    const auto guarded = [this](const char* name, auto handler) {
        return [this, name, handler] { Guarded(name, handler); };
    };
    connect(OptArchiveData, &QRadioButton::clicked, this, guarded("OptArchiveData_Click", [this] { OptArchiveData_Click(); }));
    connect(OptLiveData, &QRadioButton::clicked, this, guarded("OptLiveData_Click", [this] { OptLiveData_Click(); }));
    connect(new ui::MouseRelay(OptLiveData), &ui::MouseRelay::MouseDown, this,
            [this](int) { Guarded("OptLiveData_MouseDown", [&] { OptLiveData_MouseDown(); }); });
    for (int16_t i = 0; i < 5; ++i)
        connect(scDepth[i], &QAction::triggered, this, [this, i] { Guarded("scDepth_Click", [&] { scDepth_Click(i); }); });
    connect(ComUnZoom, &QPushButton::clicked, this, guarded("ComUnZoom_Click", [this] { ComUnZoom_Click(); }));
    for (int k = 0; k < 2; ++k) {
        auto* label = new ui::MouseRelay(LabelZoom[k]);
        connect(label, &ui::MouseRelay::Click, this, guarded("LabelZoom_Click", [this] { LabelZoom_Click(); }));
        connect(label, &ui::MouseRelay::DblClick, this, guarded("LabelZoom_DblClick", [this] { LabelZoom_DblClick(); }));
        auto* picture = new ui::MouseRelay(PicZoom[k]);
        connect(picture, &ui::MouseRelay::Click, this, guarded("PicZoom_Click", [this] { PicZoom_Click(); }));
        connect(picture, &ui::MouseRelay::DblClick, this, guarded("PicZoom_DblClick", [this] { PicZoom_DblClick(); }));
    }
    connect(MovieButton, &QPushButton::clicked, this, guarded("MovieButton_Click", [this] { MovieButton_Click(); }));
    connect(MovieTimer, &ui::IntervalTimer::Tick, this, guarded("MovieTimer_Timer", [this] { MovieTimer_Timer(); }));
    for (int16_t k = 0; k < 2; ++k)
        connect(StepButton[k], &QPushButton::clicked, this,
                [this, k] { Guarded("StepButton_Click", [&] { StepButton_Click(k); }); });
    connect(new ui::MouseRelay(SpeedButton), &ui::MouseRelay::MouseDown, this,
            [this](int button) { Guarded("SpeedButton_MouseDown", [&] { SpeedButton_MouseDown(button); }); });
    for (int16_t i = 0; i < 3; ++i)
        connect(mSpeedOpts[i], &QAction::triggered, this,
                [this, i] { Guarded("mSpeedOpts_Click", [&] { mSpeedOpts_Click(i); }); });
    connect(WaterfallButton, &QPushButton::clicked, this, guarded("WaterfallButton_Click", [this] { WaterfallButton_Click(); }));
    connect(WaterfallOpts, &QAction::triggered, this, guarded("WaterfallButton_Click", [this] { WaterfallButton_Click(); }));
}

std::vector<int32_t> SpectrumForm::MovieTimes(int16_t item) const {
    // The item's recorded time stamps within the trend window.
    std::vector<int32_t> times;
    if (item < 0 || item >= s_.Items.Count()) return times;
    for (const history::SeriesPoint& point : s_.Items[item].series.Points())
        if (point.time >= s_.HistoryStart && point.time <= s_.HistoryStop && !std::isnan(point.value))
            times.push_back(point.time);
    return times;
}

void SpectrumForm::StopMovie() {
    MovieTimer->SetEnabled(false);
    movie_.Stop();
    MovieButton->setText("Start Movie");
}

void SpectrumForm::MovieButton_Click() {
    if (OptLiveData->isChecked()) return;
    const int16_t current = s_.Items.Current();
    const std::vector<int32_t> times = MovieTimes(current >= 0 ? current : 0);
    switch (movie_.Toggle(s_.Items.Count(), current, times)) {
        case MovieState::Start::NoItem: ui::MsgBox(kNothingSelected); break;
        case MovieState::Start::Running:
            MovieButton->setText("Stop Movie");
            MovieTimer->SetEnabled(true);
            break;
        case MovieState::Start::Stopped: StopMovie(); break;
    }
}

void SpectrumForm::MovieTimer_Timer() {
    const std::vector<int32_t> times = MovieTimes(movie_.Item());
    const std::optional<int32_t> next = movie_.Tick(times);
    if (!next) {
        StopMovie();
        return;
    }
    // A spectrum that cannot be read ends the replay rather than asking
    // again on every tick.
    if (!LoadHistorySpectrum(*next)) StopMovie();
}

void SpectrumForm::StepButton_Click(int16_t index) {
    if (OptLiveData->isChecked()) return;
    StopMovie();
    if (movie_.Item() < 0) {
        ui::MsgBox(kNothingSelected);
        return;
    }
    const std::vector<int32_t> times = MovieTimes(movie_.Item());
    const std::optional<int32_t> time = movie_.Step(index == 1, times, static_cast<int32_t>(times.size()) - 1);
    if (time) LoadHistorySpectrum(*time);
}

void SpectrumForm::SpeedButton_MouseDown(int button) {
    if (button == ui::MouseRelay::kRightButton) MovieSpeedOpts->popup(QCursor::pos());
    else MovieSpeedUp();
}

void SpectrumForm::mSpeedOpts_Click(int16_t /*index*/) {
    // Any entry is one step faster, whichever was picked.
    if (s_.Initialising) return;
    MovieSpeedUp();
}

void SpectrumForm::MovieSpeedUp() {
    FlagGuard initialising(s_.Initialising);
    for (QAction* entry : mSpeedOpts) entry->setChecked(false);
    const int16_t entry = movie_.SpeedUp();
    mSpeedOpts[entry]->setChecked(true);
    SpeedButton->setText(mSpeedOpts[entry]->text());
}

void SpectrumForm::StartMovieAt(int32_t time) {
    if (OptLiveData->isChecked()) return;
    StopMovie();
    if (!LoadHistorySpectrum(time)) return;
    // With an item to drive it the replay runs on from here.
    if (s_.Items.Count() > 0) MovieButton_Click();
}

}  // namespace viewer
