// The library's one viewer window as the control sees it: created when first
// needed, and created anew after it was closed (a closed window is deleted).
#pragma once

#include <string>

namespace viewer {
class SpectrumForm;
}

namespace control {

// The window, created (not yet loaded or shown) when there is none.
viewer::SpectrumForm& ViewerWindow();
// The window if one exists, else nullptr.
viewer::SpectrumForm* ExistingViewerWindow();

// The start arguments the control's window gets: what the host set with
// SetHostCommandLine, else the host process's arguments after its name,
// joined with " " (the process command line).
std::string HostCommandLine();
void SetHostCommandLine(const std::string& commandLine);

}  // namespace control
