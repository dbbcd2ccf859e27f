// Where the user wants a file saved: the real file dialog, or, while a test
// has installed its own chooser, that chooser's answer. Same seam as the
// message boxes, so a handler that asks for a file name runs unattended.
#pragma once

#include <functional>
#include <string>

namespace ui {

struct SaveFileRequest {
    std::string title;          // the dialog's title
    std::string suggestedPath;  // directory and name offered at first
    std::string filter;         // e.g. "CSV files (*.csv)"
};

// The path chosen, or "" when the user cancelled.
std::string ChooseSaveFile(const SaveFileRequest& request);

using SaveFileChooser = std::function<std::string(const SaveFileRequest&)>;
// Installs a chooser (empty: the real dialog again); returns the one before.
SaveFileChooser SetSaveFileChooser(SaveFileChooser chooser);

// Installs a chooser for its lifetime, the one before again afterwards.
class ScopedSaveFileChooser {
public:
    explicit ScopedSaveFileChooser(SaveFileChooser chooser);
    ~ScopedSaveFileChooser();
    ScopedSaveFileChooser(const ScopedSaveFileChooser&) = delete;
    ScopedSaveFileChooser& operator=(const ScopedSaveFileChooser&) = delete;

private:
    SaveFileChooser previous_;
};

}  // namespace ui
