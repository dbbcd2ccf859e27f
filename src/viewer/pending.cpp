// Procedures that the window already calls at the right places but whose
// behaviour arrives with later features. Each says what it will do; until
// then it does nothing (or only the part named), so the call order of the
// window stays as it will be.
#include <QComboBox>

#include "ui/controls/value_grid.h"
#include "ui/plot/plex_plot.h"
#include "viewer/spectrum_form.h"

namespace viewer {

// Zoom stack of the trend plots.
void SpectrumForm::ZoomRoutine(int16_t, double, double, double, double) {}

// Grids and plots matching the live or archive data mode.
void SpectrumForm::EnterHistoryMode() {}
// Reloading the archive data for a new channel.
void SpectrumForm::ReloadArchiveData() {}

}  // namespace viewer
