// A small host program with the viewer control on its window, on the
// simulated accelerator.
//
//   lumiscope-host [--open] [MACHINE [SUBSYSTEM [EXTRAS_ON]]]
//
// The control reads its configuration from "L:\bin.orka\spectrum\configs\".
// Unless LUMISCOPE_DRIVE_L is set, the drive is mapped to a directory of the
// build tree whose bin.orka/spectrum/configs is the sample configuration.
#include <QApplication>
#include <cstdio>
#include <cstring>
#include <string>

#include "catalogue/files.h"
#include "control/lumiscope.h"
#include "control/program_location.h"
#include "control/viewer_window.h"
#include "host_window.h"
#include "middleware.h"
#include "viewer/spectrum_form.h"

namespace {

constexpr char kUsage[] =
    "usage: lumiscope-host [--open] [MACHINE [SUBSYSTEM [EXTRAS_ON]]]\n"
    "\n"
    "A host window with the Lumiscope control: double-click the control (or press\n"
    "\"Open viewer\") to open the spectrum viewer, choose a row of the viewer's item\n"
    "grid and press \"Select device\". The words that are not options are the\n"
    "viewer's start arguments.\n"
    "\n"
    "options:\n"
    "  --open   open the viewer at once\n"
    "  --help   this text\n"
    "\n"
    "environment:\n"
    "  LUMISCOPE_DRIVE_L  the directory that stands for drive L: (the control reads\n"
    "                     L:\\bin.orka\\spectrum\\configs\\); default: the build tree's\n"
    "                     copy of the sample configuration\n";

}  // namespace

int main(int argc, char** argv) {
    bool open = false;
    std::string commandLine;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--help") == 0 || std::strcmp(argv[i], "-h") == 0) {
            std::fputs(kUsage, stdout);
            return 0;
        }
        if (std::strncmp(argv[i], "--", 2) == 0 && std::strcmp(argv[i], "--open") != 0) {
            std::fprintf(stderr, "lumiscope-host: unknown option %s (lumiscope-host --help lists the options)\n", argv[i]);
            return 2;
        }
    }
    if (qEnvironmentVariableIsEmpty("LUMISCOPE_DRIVE_L")) qputenv("LUMISCOPE_DRIVE_L", LUMISCOPE_HOST_DRIVE_L);

    QApplication app(argc, argv);
    app.setApplicationName("lumiscope-host");
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument == "--open") {
            open = true;
        } else {
            commandLine += (commandLine.empty() ? "" : " ") + argument;
        }
    }
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
        if (open) host.Control()->DoSomething();
        code = app.exec();
        viewer::SpectrumForm::UnloadAllForms();
        delete control::ExistingViewerWindow();
    }
    return code;
}
