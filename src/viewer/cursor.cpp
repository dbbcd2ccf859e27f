// The cursor of the trend plots: a move shows the values at the cursor time
// in the grids' "Cursor" column and beside the cursor, naming where the
// value came from; a click fixes the marker the history view continues from.
// On the spectrum, the element under the mouse is shown in the chooser.
#include <QComboBox>
#include <QLabel>
#include <QRadioButton>
#include <algorithm>
#include <cmath>

#include "ui/plot/plex_plot.h"
#include "viewer/initialising_guard.h"
#include "viewer/spectrum_form.h"
#include "viewer/value_text.h"
#include "vire/utils.h"

namespace viewer {

namespace {

// Month, day and time of day of the 24-character time text.
std::string ShortTime(double x) {
    const std::string text = vire::CTIME(static_cast<int64_t>(std::llround(x)));
    return text.size() >= 19 ? text.substr(4, 15) : text;
}

}  // namespace

int16_t SpectrumForm::CursorMode() const {
    if (s_.Items.Current() >= 0) return 0;
    return OptArchiveData->isChecked() ? 2 : 1;
}

void SpectrumForm::PlotCursor_Move(int16_t which, double x, double /*y*/) {
    if (!std::isfinite(x)) return;
    ui::PlexPlot* plot = TrendPlotOf(which);
    LabelMisc[1]->setText(QString::fromStdString("Cursor:  " + PLEXPlotAccelerator->XToTimeText(x)));
    s_.CursorTime = static_cast<int32_t>(std::clamp(std::round(x), 0.0, 2147483647.0));
    if (!s_.Busy) {
        if (s_.Items.Count() > 0) FillAGrid(1, 0, s_.CursorTime, false);
        if (s_.ExtrasMode == 2 && s_.cat.HistoryCount > 0 && s_.Overview.Count() > 0)
            FillAGrid(1, 2, s_.CursorTime, false);
        else if (s_.ExtrasMode == 1 && s_.Extras.Count() > 0)
            FillAGrid(1, 1, s_.CursorTime, false);
    }
    const int16_t mode = which == 0 ? CursorMode() : 1;
    if (mode == 1 || mode == 2) {
        plot->SetCursorX(x);
        plot->SetCursorCaption(" at " + ShortTime(x));
        return;
    }
    const SelectedItem& item = s_.Items[s_.Items.Current()];
    const auto& points = item.series.Points();
    const int32_t index = item.series.IndexAt(s_.CursorTime);
    if (index < 0 || index >= static_cast<int32_t>(points.size()) ||
        std::isnan(points[static_cast<std::size_t>(index)].value)) {
        // Beyond the last point there is no value to show, not even the last one.
        plot->SetCursorCaption("");
        return;
    }
    const history::SeriesPoint& point = points[static_cast<std::size_t>(index)];
    plot->SetCursorCaption(GridValueText(point.value) + " " + item.axisLabel + " at " + ShortTime(point.time) + "  (" +
                           history::SourceName(point.source) + ")");
}

void SpectrumForm::PlotCursor_Click(int16_t which, double x, double /*y*/) {
    if (!std::isfinite(x)) return;
    const auto time = static_cast<int32_t>(std::clamp(std::round(x), 0.0, 2147483647.0));
    s_.MarkerTime = time;
    ItemList& items = ListOf(which);
    // The first point at or after the click in any item's history, the
    // scan starting at the second point; 1 when no item has one, so a click
    // before every recorded time lands on 1 as well.
    int32_t marker = -1;
    for (int16_t i = 0; i < items.Count() && marker < 0; ++i) {
        if (!items[i].hasData) continue;
        const int32_t index = std::max(items[i].series.IndexAt(time), 1);
        if (index < static_cast<int32_t>(items[i].series.Points().size())) marker = index;
    }
    s_.MarkerIndex = marker < 0 ? 1 : marker;
    // The history view continues from the marker: the grids show its values.
    s_.CursorTime = time;
    for (int16_t grid = 0; grid < 3; ++grid)
        if (ListOf(grid).Count() > 0) FillAGrid(1, grid, time, false);
    TrendPlotOf(which)->SetCursorX(x);
}

void SpectrumForm::PLEXPlotSpectrum_MouseMove(double x) {
    const std::string label = DeviceUnderCursor(x);
    PLEXPlotSpectrum->setToolTip(QString::fromStdString(label));
    const auto row = static_cast<int32_t>(std::lround(x));
    if (label.empty() || row < 0 || row >= ComboDevs->count()) return;
    // The chooser shows the element under the mouse; choosing it stays the operator's.
    FlagGuard initialising(s_.Initialising);
    ComboDevs->setCurrentIndex(row);
}

}  // namespace viewer
