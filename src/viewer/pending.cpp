// Procedures that the window already calls at the right places but whose
// behaviour arrives with later features. Each says what it will do; until
// then it does nothing (or only the part named), so the call order of the
// window stays as it will be.
#include <QComboBox>

#include "ui/controls/value_grid.h"
#include "ui/plot/plex_plot.h"
#include "viewer/spectrum_form.h"

namespace viewer {

// Extra channels: for now only the mode is kept and the layout follows it;
// companions, menu captions and the extra plot's titles come with the extra
// channels.
void SpectrumForm::SwitchExtras(int16_t mode) {
    s_.ExtrasMode = mode;
    Form_Resize();
}
void SpectrumForm::PrepareExtraPlot() {}
// Scale menu of the trend plots, and the scaling pass with its modes.
void SpectrumForm::SwitchScaleMenu(int16_t) {}
void SpectrumForm::AutoScaling(int16_t, int16_t) {}
void SpectrumForm::ScalingAction(int16_t) {}
// Thresholds drawn on a plot, and the percent-of-threshold display.
void SpectrumForm::DrawThresholds(ui::PlexPlot*) {}
void SpectrumForm::ConvertToPercent() {}
// The extra information panel's toggle.
void SpectrumForm::MExtraInfo_Click() {}

}  // namespace viewer
