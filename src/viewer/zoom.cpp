// Zooming the trend plots, which share one time axis: a zoom on one keeps
// the others on its time range and is remembered on the zoom stack. In
// archive mode the zoomed span is read again, so that it shows the detail
// the source holds rather than the overview stretched.
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <cmath>

#include "ui/controls/interval_timer.h"
#include "ui/plot/plex_plot.h"
#include "viewer/spectrum_form.h"

namespace viewer {

void SpectrumForm::ZoomRoutine(int16_t which, double newStart, double newEnd, double newYMin, double newYMax) {
    const bool replaying = MovieTimer->Enabled();
    if (replaying) MovieTimer->SetEnabled(false);
    ComUnZoom->setVisible(false);
    ui::PlexPlot* zoomed = TrendPlotOf(which);
    if (OptLiveData->isChecked()) {
        // Live, the stack stays as it is: the plots only keep one time range.
        for (int16_t other = 0; other < 3; ++other)
            if (other != which) TrendPlotOf(other)->SetXRange(newStart, newEnd);
        if (replaying) MovieTimer->SetEnabled(true);
        return;
    }
    std::array<std::array<double, 2>, kZoomColumns> ranges{};
    for (int16_t c = 0; c < 3; ++c) ranges[c] = {TrendPlotOf(c)->YMin(), TrendPlotOf(c)->YMax()};
    const ZoomStack::Step step =
        s_.Zoom.Zoom(which, {newStart, newEnd, newYMin, newYMax}, zoomed->IsZoomed(), ranges);
    ShowZoomControls(step != ZoomStack::Step::Reset);
    ReloadZoomedHistory();
    if (replaying) MovieTimer->SetEnabled(true);
}

void SpectrumForm::ZoomBack() {
    s_.Zoom.Back();
    ShowZoomControls(s_.Zoom.Depth() > 0);
    // A live window follows the present; there is no earlier one to go back to.
    if (OptLiveData->isChecked() && s_.Window.followsPresent) {
        if (s_.Zoom.Depth() == 0) {
            for (ui::PlexPlot* plot : {PLEXPlotSelected, PLEXPlotExtra, PLEXPlotAccelerator}) {
                plot->ResetZoom();
                plot->SetXRange(s_.HistoryStart, s_.HistoryStop);
            }
        } else {
            ApplyZoomEntry();
        }
        return;
    }
    ReloadZoomedHistory();
}

void SpectrumForm::ComUnZoom_Click() {
    // Back to the whole window chosen with the calendar and the time scale.
    s_.Zoom.SetFull(s_.Window.start, s_.Window.stop);
    ZoomBack();
}

void SpectrumForm::LabelZoom_Click() { ZoomBack(); }
void SpectrumForm::LabelZoom_DblClick() { ZoomBack(); }
void SpectrumForm::PicZoom_Click() { ZoomBack(); }
void SpectrumForm::PicZoom_DblClick() { ZoomBack(); }

void SpectrumForm::ShowZoomControls(bool shown) {
    ComUnZoom->setVisible(shown);
    PicZoom[0]->setVisible(shown);
    LabelZoom[0]->setVisible(shown);
    PicZoom[1]->setVisible(shown && s_.ExtrasMode > 0);
    LabelZoom[1]->setVisible(shown && s_.ExtrasMode > 0);
    if (!shown) return;
    LabelZoom[0]->setText(QString::fromStdString(ZoomStack::Caption(s_.Zoom.Depth())));
    LabelZoom[1]->setText(LabelZoom[0]->text());
}

void SpectrumForm::ApplyZoomEntry() {
    const ZoomEntry& entry = s_.Zoom.Top();
    for (int16_t c = 0; c < 3; ++c) {
        ui::PlexPlot* plot = TrendPlotOf(c);
        plot->SetXMax(entry.to);
        plot->SetXMin(entry.from);
        plot->SetYMax(entry.yMax[c]);
        plot->SetYMin(entry.yMin[c]);
        // Unzoomed, the plots follow the window again.
        if (s_.Zoom.Depth() == 0) plot->ResetZoom();
    }
}

void SpectrumForm::ReloadZoomedHistory() {
    const ZoomEntry& entry = s_.Zoom.Top();
    s_.HistoryStart = static_cast<int32_t>(std::lround(entry.from));
    s_.HistoryStop = static_cast<int32_t>(std::lround(entry.to));
    ReloadTrendHistories();
    ApplyZoomEntry();
    DrawMarkers();
}

void SpectrumForm::StoreFullYRanges() {
    for (int16_t c = 0; c < 3; ++c) s_.Zoom.SetFullYRange(c, TrendPlotOf(c)->YMin(), TrendPlotOf(c)->YMax());
}

}  // namespace viewer
