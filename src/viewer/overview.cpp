// The machine overview: the machine's history quantities (its history file)
// followed live on PLEXPlotAccelerator, each on its own scale, with their
// values in GridAccelerator.
#include <QAction>

#include "ui/controls/value_grid.h"
#include "ui/plot/plex_plot.h"
#include "viewer/initialising_guard.h"
#include "viewer/spectrum_form.h"

namespace viewer {

void SpectrumForm::InitAcceleratorHistory() {
    ui::PlexPlot* plot = PLEXPlotAccelerator;
    FlagGuard busy(s_.Busy);
    for (int16_t i = 0; i < s_.Overview.Count(); ++i) plot->DeleteTrace(s_.Overview[i].traceNumber);
    s_.Overview.Clear();
    plot->Clear();
    // Quantities differ by orders of magnitude (a current, a pressure): each
    // trace keeps its own scale, the grid gives the numbers.
    plot->SetAxisMode(0);
    plot->SetYMin(0.0);
    plot->SetYMax(1.0);
    plot->SetYLabel("own scale each");
    const int16_t count = std::min<int16_t>(s_.cat.HistoryCount, static_cast<int16_t>(kMaxItemSlot));
    for (int16_t i = 0; i < count; ++i) s_.Overview.Add(MakeQuantityItem(s_.cat.HistoryList[i]));
    GridAccelerator->SetRows(s_.Overview.Count() + 1);
    ResetItemGrid(2);
    for (int16_t i = 0; i < s_.Overview.Count(); ++i) {
        GridAccelerator->SetTextMatrix(i + 1, 0, s_.Overview[i].channelName);
        GridAccelerator->SetCellBackColour(i + 1, 0, s_.OverviewColours[i]);
        GridAccelerator->SetCellForeColour(i + 1, 0, 0xFFFFFF);
    }
    if (s_.Overview.Count() > 0) LoadHistories(2, 0, static_cast<int16_t>(s_.Overview.Count() - 1));
    DrawTrends(2);
    s_.AcceleratorOverview = true;
}

}  // namespace viewer
