// Snapshot printing: the window's picture goes to the machine group's
// electronic logbook, always the "ORKA" one, whichever machine is chosen.
#include "ui/logbook/logbook.h"
#include "viewer/spectrum_form.h"

namespace viewer {
namespace {

constexpr char kLogbookName[] = "ORKA";

}  // namespace

void SpectrumForm::PrintOpts_Click() {
    const catalogue::Catalogue& cat = s_.cat;
    ui::LogbookDetails details;
    // The record names what the picture shows; before a catalogue is read
    // there is nothing to name.
    if (cat.CurrentMachine >= 0 && cat.CurrentMachine < cat.MachineCount)
        details.machine = cat.MachineList[cat.CurrentMachine].Name;
    if (cat.CurrentSpectrum >= 0 && cat.CurrentSpectrum < cat.SpectrumCount)
        details.device = cat.SpectrumList[cat.CurrentSpectrum].Description;
    // Where the entry went, or why it could not go anywhere, is the
    // logbook's to tell the operator.
    ui::Logbook(kLogbookName).File(this, details);
}

}  // namespace viewer
