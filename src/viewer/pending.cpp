// Procedures that the window already calls at the right places but whose
// behaviour arrives with later features. Each says what it will do; until
// then it does nothing (or only the part named), so the call order of the
// window stays as it will be.
#include <QComboBox>

#include "ui/controls/value_grid.h"
#include "ui/plot/plex_plot.h"
#include "viewer/spectrum_form.h"

namespace viewer {

// Selected items: adding an element as an item (trend trace, mark on the
// spectrum, grid row, history) comes with the item list.
void SpectrumForm::SelectAChannel(int16_t&, int16_t&, int16_t&, int16_t&) {}
// Removing every item of both lists (traces, marks, grid rows).
void SpectrumForm::RemoveAllItems() {}
// Removing the current item and closing the gap.
void SpectrumForm::RemoveSelectedItem() {}
// Making the clicked grid row's item current.
void SpectrumForm::ClickAGrid(int32_t) {}
// Trend plots' data events: values appended to the item traces and written
// into the grids come with the history display.
void SpectrumForm::Plot_DataReceive(int16_t, int32_t, int16_t) {}
// Cursor read-out of the trend plots.
void SpectrumForm::PlotCursor_Click(int16_t, double, double) {}
void SpectrumForm::PlotCursor_Move(int16_t, double, double) {}
// Zoom stack of the trend plots.
void SpectrumForm::ZoomRoutine(int16_t, double, double, double, double) {}

// Extra channels: for now only the mode is kept and the layout follows it;
// companions, menu captions and the extra plot's titles come with the extra
// channels.
void SpectrumForm::SwitchExtras(int16_t mode) {
    s_.ExtrasMode = mode;
    Form_Resize();
}
void SpectrumForm::PrepareExtraPlot() {}
// Grids and plots matching the live or archive data mode.
void SpectrumForm::EnterHistoryMode() {}
// Scale menu of the trend plots, and the scaling pass with its modes.
void SpectrumForm::SwitchScaleMenu(int16_t) {}
void SpectrumForm::AutoScaling(int16_t, int16_t) {}
void SpectrumForm::ScalingAction(int16_t) {}
// History addresses of the spectrum for the archive spectra.
void SpectrumForm::setSpectrumHistoryParameters() {}
// Time-step handler of the history time navigation.
void SpectrumForm::UpDownTime_Change(bool) {}
// Thresholds drawn on a plot, and the percent-of-threshold display.
void SpectrumForm::DrawThresholds(ui::PlexPlot*) {}
void SpectrumForm::ConvertToPercent() {}
// Reloading the archive data for a new channel.
void SpectrumForm::ReloadArchiveData() {}
// The extra information panel's toggle.
void SpectrumForm::MExtraInfo_Click() {}

// The machine overview: for now its grid lists the machine's history
// quantities; their live values and history come with the history display.
void SpectrumForm::InitAcceleratorHistory() {
    for (int16_t i = 0; i < s_.cat.HistoryCount && i + 1 < GridAccelerator->Rows(); ++i) {
        const catalogue::SpectrumRecord& quantity = s_.cat.HistoryList[i];
        GridAccelerator->SetTextMatrix(i + 1, 0, quantity.Label.empty() ? quantity.Description : quantity.Label);
    }
    s_.AcceleratorOverview = true;
}

}  // namespace viewer
