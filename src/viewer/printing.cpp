// Snapshot printing: the window's picture goes to the machine group's
// electronic logbook, always the "ORKA" one, whichever machine is chosen.
#include <QLabel>

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
    // Why an entry could not go anywhere the logbook tells in a box; where
    // it went the status line says, so that the operator can find it.
    const ui::LogbookResult result = ui::Logbook(kLogbookName).File(this, details);
    switch (result.outcome) {
        case ui::LogbookOutcome::Printed:
            StatusLine->setText(tr("Snapshot printed to the logbook printer %1").arg(result.where));
            break;
        case ui::LogbookOutcome::Filed:
            StatusLine->setText(tr("Snapshot filed in the %1 logbook: %2").arg(kLogbookName, result.where));
            break;
        case ui::LogbookOutcome::Refused:
            break;
    }
}

}  // namespace viewer
