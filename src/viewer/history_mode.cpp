// Live or archive: the trend plots either follow the present or show a fixed
// day of the past with the calendar, and the spectrum then comes from the
// record. The time depth restarts the live display with its new span.
#include <QAction>
#include <QDate>
#include <QDateTime>
#include <QFrame>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <cmath>

#include "history/item_history.h"
#include "ui/controls/colour.h"
#include "ui/controls/interval_timer.h"
#include "ui/controls/month_calendar.h"
#include "ui/controls/value_grid.h"
#include "ui/plot/plex_plot.h"
#include "viewer/channel_map.h"
#include "viewer/history_questions.h"
#include "viewer/initialising_guard.h"
#include "viewer/spectrum_form.h"
#include "vire/clock.h"
#include "vire/utils.h"

namespace viewer {

namespace {

constexpr uint32_t kSelectedMode = 0xC0FFFF;  // light yellow
constexpr int32_t kDepthSpans[] = {600, 3600, 21600, 43200, 86400};

void PaintModeButton(QWidget* button, uint32_t colour) {
    QPalette palette = button->palette();
    const QColor back = ui::ResolveColour(colour);
    for (QPalette::ColorRole role : {QPalette::Window, QPalette::Button}) palette.setColor(role, back);
    button->setPalette(palette);
    button->setAutoFillBackground(true);
    button->setProperty("backColour", colour);
}

}  // namespace

void SpectrumForm::OptArchiveData_Click() {
    PaintModeButton(OptLiveData, ui::kSystemButtonFace);
    PaintModeButton(OptArchiveData, kSelectedMode);
    OptArchiveData->setChecked(true);
    for (ui::ValueGrid* grid : {GridSelected, GridExtra}) grid->SetTextMatrix(0, 2, "Marker");
    for (ui::PlexPlot* plot : {PLEXPlotSelected, PLEXPlotAccelerator, PLEXPlotExtra}) plot->SetHistoryDisplay(true);
    // While the window is being set up the mode is all that changes.
    if (s_.Busy) return;
    s_.Zoom.Reset();
    ShowZoomControls(false);
    MonthView1->setVisible(true);
    FrameMisc4->setVisible(false);
    FrameMovie->setVisible(true);
    WaterfallOpts->setEnabled(true);
    s_.HistoryStop = vire::UNIXTIME();
    s_.HistoryStart = s_.HistoryStop - 86400;
    s_.Window = TrendWindow{s_.HistoryStart, s_.HistoryStop, false};
    s_.Zoom.SetFull(s_.HistoryStart, s_.HistoryStop);
    {
        // Today, shown and selected; the calendar's own change events must
        // not move the window again.
        FlagGuard initialising(s_.Initialising);
        MonthView1->SetValue(QDateTime::fromMSecsSinceEpoch(vire::NowMilliseconds()).date());
        MonthView1->setCurrentPage(MonthView1->Value().year(), MonthView1->Value().month());
        UpDownTime->setValue(0);
    }
    movie_.SetSpectrumTime(static_cast<int32_t>(
        std::lround(s_.HistoryStart + (static_cast<double>(s_.HistoryStop) - s_.HistoryStart) / 2)));
    EnterHistoryMode();
}

void SpectrumForm::EnterHistoryMode() {
    if (!OptArchiveData->isChecked()) return;
    catalogue::Catalogue& cat = s_.cat;
    if (cat.SpectrumCount > 0) {
        // Each part of the chosen spectrum reads its recorded spectra from
        // the source that holds more of this window.
        MessageBoxQuestions questions;
        const int16_t head = cat.CurrentSpectrum;
        const int16_t parts = SpectrumPartCount(cat, head);
        for (int16_t k = 0; k < parts; ++k) {
            catalogue::SpectrumRecord& record = cat.SpectrumList[head + k];
            history::ItemHistory source;
            source.HstServer = record.HstServer;
            source.HstProperty = record.HstProperty;
            source.ArcServer = record.ArcServer;
            source.ArcProperty = record.ArcProperty;
            int32_t local = -1, archive = -1;
            if (!history::ProbeHistorySources(local, archive, source, {s_.HistoryStart, s_.HistoryStop}, questions))
                break;
            record.UseArchive = history::UseArchive(local, archive);
        }
    }
    ReloadTrendHistories();
    StoreFullYRanges();
    if (cat.SpectrumCount > 0) LoadHistorySpectrum(movie_.SpectrumTime());
}

void SpectrumForm::ArchiveWindowMoved() {
    // A new stretch of the past: unzoomed, its spectrum from the middle.
    s_.Zoom.SetFull(s_.HistoryStart, s_.HistoryStop);
    ShowZoomControls(false);
    for (ui::PlexPlot* plot : {PLEXPlotSelected, PLEXPlotExtra, PLEXPlotAccelerator}) plot->ResetZoom();
    movie_.SetSpectrumTime(static_cast<int32_t>(
        std::lround(s_.HistoryStart + (static_cast<double>(s_.HistoryStop) - s_.HistoryStart) / 2)));
    StoreFullYRanges();
    if (s_.cat.SpectrumCount > 0) LoadHistorySpectrum(movie_.SpectrumTime());
}

void SpectrumForm::ReloadArchiveData() {
    // A new channel in archive mode: its recorded spectrum at the time on show.
    EnterHistoryMode();
}

void SpectrumForm::OptLiveData_MouseDown() { ZoomBack(); }

void SpectrumForm::OptLiveData_Click() {
    // A replay belongs to the past: going live ends it.
    StopMovie();
    PaintModeButton(OptLiveData, kSelectedMode);
    PaintModeButton(OptArchiveData, ui::kSystemButtonFace);
    OptLiveData->setChecked(true);
    PLEXPlotSpectrum->RemoveAllTexts();
    // The recorded spectrum makes way for the live one, drawn anew.
    if (s_.HistorySpectrumTrace >= 0) {
        PLEXPlotSpectrum->DeleteTrace(s_.HistorySpectrumTrace);
        s_.HistorySpectrumTrace = -1;
        s_.cat.SpectrumTrace = -1;
    }
    s_.SpectrumSource.clear();
    PLEXPlotSelected->RemoveAllTraces();
    for (int16_t i = 0; i < s_.Items.Count(); ++i) s_.Items[i].traceNumber = -1;
    for (ui::ValueGrid* grid : {GridSelected, GridExtra}) grid->SetTextMatrix(0, 2, "Now");
    MonthView1->setVisible(false);
    FrameMisc4->setVisible(true);
    FrameMovie->setVisible(false);
    WaterfallOpts->setEnabled(false);
    for (ui::PlexPlot* plot : {PLEXPlotSelected, PLEXPlotAccelerator, PLEXPlotExtra}) plot->SetHistoryDisplay(false);
    s_.Zoom.Reset();
    ShowZoomControls(false);
    for (ui::PlexPlot* plot : {PLEXPlotSelected, PLEXPlotExtra, PLEXPlotAccelerator}) plot->ResetZoom();
    {
        // Back on the present: today in the calendar, no steps.
        FlagGuard initialising(s_.Initialising);
        MonthView1->SetValue(QDateTime::fromMSecsSinceEpoch(vire::NowMilliseconds()).date());
        UpDownTime->setValue(0);
    }
    UpDownTime_Change(!OptTime[0]->isChecked());
}

void SpectrumForm::scDepth_Click(int16_t index) {
    for (QAction* entry : scDepth) entry->setChecked(false);
    scDepth.at(static_cast<size_t>(index))->setChecked(true);
    s_.HistorySpan = kDepthSpans[index];
    OptLiveData_Click();
}

}  // namespace viewer
