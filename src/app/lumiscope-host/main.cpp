// A small host program with the viewer control on its window, on the
// simulated accelerator.
//
//   lumiscope-host [--open] [MACHINE [SUBSYSTEM [EXTRAS_ON]]]
//
// The control reads its configuration from "L:\bin.orka\spectrum\configs\".
// Unless LUMISCOPE_DRIVE_L is set, the drive is mapped to a directory whose
// bin.orka/spectrum/configs is the sample configuration: drive-l of the build
// tree, or of the installed tree's data directory.
#include <QApplication>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "catalogue/files.h"
#include "command_line/command_line.h"
#include "control/lumiscope.h"
#include "control/program_location.h"
#include "control/viewer_window.h"
#include "host_window.h"
#include "middleware.h"
#include "tool_support/installed_files.h"
#include "viewer/spectrum_form.h"

namespace {

const command_line::ProgramText kText = {
    "lumiscope-host",
    {"[--open] [MACHINE [SUBSYSTEM [EXTRAS_ON]]]"},
    "A host window with the Lumiscope control: double-click the control (or press\n"
    "\"Open viewer\") to open the spectrum viewer, choose a row of the viewer's item\n"
    "grid and press \"Select device\". The words that are not options are the\n"
    "viewer's start arguments.\n",
    "environment:\n"
    "  LUMISCOPE_DRIVE_L  the directory that stands for drive L: (the control reads\n"
    "                     L:\\bin.orka\\spectrum\\configs\\); default: a directory whose\n"
    "                     bin.orka/spectrum/configs is the sample configuration\n"};

struct HostOptions {
    bool open = false;
    std::vector<std::string> words;
};

// Parses the command line into `options`; an exit code when the program ends here.
std::optional<int> ParseHostOptions(int argc, char** argv, command_line::CommandLine::Pass pass, HostOptions& options) {
    command_line::CommandLine commandLine(kText);
    commandLine.Options().add_flag("--open", options.open, "open the viewer at once");
    commandLine.Options().add_option("MACHINE", options.words);
    return commandLine.Parse(argc, argv, pass);
}

// Drive L: of the build tree (beside bin/), else of the installed tree.
std::string SampleDrive() {
    const std::filesystem::path build = tool_support::ProgramDirectory().parent_path() / "drive-l";
    std::error_code error;
    if (std::filesystem::is_directory(build, error)) return build.string();
    return (tool_support::InstalledDataDirectory() / "drive-l").string();
}

}  // namespace

int main(int argc, char** argv) {
    {
        // Help, the version and mistakes need no display.
        HostOptions early;
        if (const auto exitCode = ParseHostOptions(argc, argv, command_line::CommandLine::Pass::BeforeQt, early))
            return *exitCode;
    }
    if (qEnvironmentVariableIsEmpty("LUMISCOPE_DRIVE_L")) qputenv("LUMISCOPE_DRIVE_L", SampleDrive().c_str());

    QApplication app(argc, argv);
    app.setApplicationName("lumiscope-host");
    // Again without the options Qt took for itself.
    HostOptions options;
    if (const auto exitCode = ParseHostOptions(argc, argv, command_line::CommandLine::Pass::Strict, options))
        return *exitCode;
    std::string commandLine;
    for (const std::string& word : options.words) commandLine += (commandLine.empty() ? "" : " ") + word;
    control::SetHostCommandLine(commandLine);

    std::string problem;
    // ---- The transport: the network when the environment asks for it
    // ---- (LUMISCOPE_TRANSPORT=network), else the simulated accelerator of
    // ---- the control's configuration.
    const std::string configDir = catalogue::NativePath(control::ControlConfigPath());
    std::shared_ptr<vire::Transport> transport = lumiscope_app::NetworkTransportFromEnvironment(configDir);
    if (!transport) transport = lumiscope_app::SimulatedTransport(configDir, problem);
    if (!transport) std::fprintf(stderr, "lumiscope-host: %s\n", problem.c_str());
    lumiscope_app::Middleware middleware(transport);

    int code = 0;
    {
        lumiscope_host::HostWindow host;
        host.resize(640, 220);
        host.show();
        if (options.open) host.Control()->DoSomething();
        code = app.exec();
        viewer::SpectrumForm::UnloadAllForms();
        delete control::ExistingViewerWindow();
    }
    return code;
}
