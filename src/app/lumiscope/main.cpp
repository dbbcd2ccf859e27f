// The stand-alone spectrum viewer: the viewer window with the start
// arguments (machine, subsystem, "EXTRAS_ON") on the simulated accelerator.
// See ViewerText (options.h) or run with --help.
//
// The window reads its configuration from the program directory's configs/
// folder, as it does at the sites; the build links <build>/bin/configs to the
// sample configuration, an installed viewer without one reads the installed
// sample, and --app-path names another program directory.
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QElapsedTimer>
#include <QPointer>
#include <QTimer>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "catalogue/files.h"
#include "control/program_location.h"
#include "middleware.h"
#include "options.h"
#include "tool_support/installed_files.h"
#include "unattended_dialogs.h"
#include "viewer/form_state.h"
#include "viewer/spectrum_form.h"

namespace {

constexpr int kPopulatedLimitMs = 30'000;

bool HasArgument(int argc, char** argv, const char* wanted) {
    for (int i = 1; i < argc; ++i)
        if (std::strcmp(argv[i], wanted) == 0) return true;
    return false;
}

// A run that nobody watches still needs a screen to draw on: without a
// display, draw off-screen.
void ChooseOffscreenWhenHeadless(int argc, char** argv) {
    const bool unattended = HasArgument(argc, argv, "--snapshot") || HasArgument(argc, argv, "--quit-when-populated") ||
                            HasArgument(argc, argv, "--quit-when-live");
    if (unattended && qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") &&
        qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
}

// Shown, with the start-up through: machines, subsystems and channels read.
bool Populated(const viewer::SpectrumForm* window) {
    return window && window->isVisible() && window->Loaded() && !window->State().Initialising &&
           window->SpectrumCombo && window->SpectrumCombo->count() > 0;
}

bool ShowsLiveSpectrum(const viewer::SpectrumForm* window) {
    return Populated(window) && window->State().LivePointCount > 0;
}

// The program directory in the system's form: the one asked for, else this
// program's own when configs/ sits beside it (as at the sites, and in the
// build tree), else the installed tree's data directory with its sample.
std::string ApplicationPath(const std::string& asked) {
    if (!asked.empty()) return control::SystemPath(QDir(QString::fromStdString(asked)).absolutePath().toStdString());
    const std::string own = control::HostApplicationPath();
    if (QDir(QString::fromStdString(catalogue::NativePath(own + "\\configs\\"))).exists()) return own;
    const std::string installed = tool_support::InstalledDataDirectory().string();
    if (!installed.empty() && QDir(QString::fromStdString(installed + "/configs")).exists())
        return control::SystemPath(installed);
    return own;
}

}  // namespace

int main(int argc, char** argv) {
    QElapsedTimer sinceStart;
    sinceStart.start();
    // Help, the version and mistakes in the options need no display.
    {
        lumiscope_app::ViewerOptions early;
        command_line::CommandLine commandLine(lumiscope_app::ViewerText());
        lumiscope_app::DeclareViewerOptions(commandLine, early);
        if (const auto exitCode = commandLine.Parse(argc, argv, command_line::CommandLine::Pass::BeforeQt))
            return *exitCode;
    }
    ChooseOffscreenWhenHeadless(argc, argv);
    QApplication app(argc, argv);
    app.setApplicationName("lumiscope");
    // Again without the options Qt took for itself ("-platform ...").
    lumiscope_app::ViewerOptions options;
    command_line::CommandLine commandLine(lumiscope_app::ViewerText());
    lumiscope_app::DeclareViewerOptions(commandLine, options);
    if (const auto exitCode = commandLine.Parse(argc, argv)) return *exitCode;
    const std::string applicationPath = ApplicationPath(options.appPath);
    const std::string configDir = catalogue::NativePath(applicationPath + "\\configs\\");

    std::string problem;
    // ---- The transport: the network when the environment asks for it
    // ---- (LUMISCOPE_TRANSPORT=network), else the simulated accelerator.
    std::shared_ptr<vire::Transport> transport = lumiscope_app::NetworkTransportFromEnvironment(configDir);
    if (!transport) transport = lumiscope_app::SimulatedTransport(configDir, problem);
    if (!transport) std::fprintf(stderr, "lumiscope: %s\n", problem.c_str());
    lumiscope_app::Middleware middleware(transport);
    const bool quitWhenReady = options.quitWhenPopulated || options.quitWhenLive;
    const bool unattended = !options.snapshot.empty() || quitWhenReady;
    std::optional<lumiscope_app::UnattendedDialogs> dialogs;
    if (unattended) dialogs.emplace();
    // An unattended run ends by its own timer, even when start-up hid the window.
    if (unattended) app.setQuitOnLastWindowClosed(false);

    viewer::Library().OpenedByControl = false;
    QPointer<viewer::SpectrumForm> window = new viewer::SpectrumForm(options.commandLine, applicationPath);
    if (const int32_t interval = lumiscope_app::PollIntervalSetting(); interval > 0)
        window->State().PollIntervalMs = interval;
    if (options.width > 0) window->resize(options.width, options.height);
    window->show();
    if (options.channel >= 0) {
        // What an operator's pick in the chooser does, through the chooser's own event.
        if (window && window->SpectrumCombo && options.channel < window->SpectrumCombo->count()) {
            window->SpectrumCombo->setCurrentIndex(options.channel);
            emit window->SpectrumCombo->activated(options.channel);
        } else {
            std::fprintf(stderr, "lumiscope: the channel chooser has no entry %d\n", options.channel);
        }
    }

    if (!options.select.empty() && window) {
        // The elements to follow, as the operator would pick them in the chooser.
        for (const std::string& name : window->SelectElementsByName(options.select))
            std::fprintf(stderr, "lumiscope: the chosen channel has no element %s\n", name.c_str());
    }

    int result = 0;
    if (!options.snapshot.empty()) {
        result = 1;  // until the picture is saved
        const int afterMs = static_cast<int>(options.afterSeconds * 1000.0);
        QTimer::singleShot(afterMs, &app, [&] {
            const QString file = QString::fromStdString(options.snapshot);
            if (!window || !window->isVisible()) {
                std::fprintf(stderr, "lumiscope: the viewer window is not shown, no snapshot taken\n");
            } else if (!window->grab().save(file)) {
                std::fprintf(stderr, "lumiscope: cannot save the snapshot to %s\n", qPrintable(file));
            } else {
                result = 0;
            }
            app.quit();
        });
    }
    QTimer readyCheck;
    if (quitWhenReady) {
        result = 1;
        QObject::connect(&readyCheck, &QTimer::timeout, &app, [&] {
            if (options.quitWhenLive ? ShowsLiveSpectrum(window) : Populated(window)) {
                std::printf("%s after %lld ms\n", options.quitWhenLive ? "live" : "populated",
                            static_cast<long long>(sinceStart.elapsed()));
                result = 0;
                app.quit();
            } else if (sinceStart.elapsed() > kPopulatedLimitMs) {
                std::fprintf(stderr, "lumiscope: the window was not %s within %d s\n",
                             options.quitWhenLive ? "live" : "populated", kPopulatedLimitMs / 1000);
                app.quit();
            }
        });
        readyCheck.start(1);
    }

    const int code = app.exec();
    // The windows' live links end before the transport they run on.
    viewer::SpectrumForm::UnloadAllForms();
    delete window.data();
    return result != 0 ? result : code;
}
