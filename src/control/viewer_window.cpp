#include "control/viewer_window.h"

#include <QCoreApplication>
#include <QPointer>
#include <QStringList>
#include <optional>

#include "control/program_location.h"
#include "viewer/spectrum_form.h"

namespace control {
namespace {

QPointer<viewer::SpectrumForm>& Window() {
    static QPointer<viewer::SpectrumForm> window;
    return window;
}

std::optional<std::string>& CommandLineSetting() {
    static std::optional<std::string> commandLine;
    return commandLine;
}

}  // namespace

viewer::SpectrumForm& ViewerWindow() {
    QPointer<viewer::SpectrumForm>& window = Window();
    if (!window) window = new viewer::SpectrumForm(HostCommandLine(), HostApplicationPath());
    return *window;
}

viewer::SpectrumForm* ExistingViewerWindow() { return Window().data(); }

std::string HostCommandLine() {
    if (CommandLineSetting()) return *CommandLineSetting();
    QStringList arguments = QCoreApplication::arguments();
    if (!arguments.isEmpty()) arguments.removeFirst();
    return arguments.join(' ').toStdString();
}

void SetHostCommandLine(const std::string& commandLine) { CommandLineSetting() = commandLine; }

}  // namespace control
