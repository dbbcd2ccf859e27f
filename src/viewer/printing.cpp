// Snapshot printing to the logbook.
#include "viewer/spectrum_form.h"

namespace viewer {

// The logbook component files the window's snapshot in the "ORKA" logbook.
void SpectrumForm::PrintOpts_Click() {}

}  // namespace viewer
