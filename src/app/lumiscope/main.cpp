// The stand-alone spectrum viewer: the viewer window with the start
// arguments (machine, subsystem, "EXTRAS_ON") on the simulated accelerator.
// See kViewerUsage (options.h) or run with --help.
//
// The window reads its configuration from the program directory's configs/
// folder, as it does at the sites; the build links <build>/bin/configs to the
// sample configuration, and --app-path names another program directory.
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

}  // namespace

int main(int argc, char** argv) {
    QElapsedTimer sinceStart;
    sinceStart.start();
    if (HasArgument(argc, argv, "--help") || HasArgument(argc, argv, "-h")) {
        std::fputs(lumiscope_app::kViewerUsage, stdout);
        return 0;
    }
    // Mistakes in the options are reported before any display is needed.
    std::string error;
    if (!lumiscope_app::ParseViewerOptions(std::vector<std::string>(argv + 1, argv + argc), error)) {
        std::fprintf(stderr, "lumiscope: %s (lumiscope --help lists the options)\n", error.c_str());
        return 2;
    }
    ChooseOffscreenWhenHeadless(argc, argv);
    QApplication app(argc, argv);
    app.setApplicationName("lumiscope");
    // Again without the options Qt took for itself ("-platform ...").
    const auto options = lumiscope_app::ParseViewerOptions(std::vector<std::string>(argv + 1, argv + argc), error);
    const std::string applicationPath =
        options->appPath.empty() ? control::HostApplicationPath()
                                 : control::SystemPath(QDir(QString::fromStdString(options->appPath)).absolutePath().toStdString());
    const std::string configDir = catalogue::NativePath(applicationPath + "\\configs\\");

    std::string problem;
    // ---- The transport: the network when the environment asks for it
    // ---- (LUMISCOPE_TRANSPORT=network), else the simulated accelerator.
    std::shared_ptr<vire::Transport> transport = lumiscope_app::NetworkTransportFromEnvironment(configDir);
    if (!transport) transport = lumiscope_app::SimulatedTransport(configDir, problem);
    if (!transport) std::fprintf(stderr, "lumiscope: %s\n", problem.c_str());
    lumiscope_app::Middleware middleware(transport);
    const bool quitWhenReady = options->quitWhenPopulated || options->quitWhenLive;
    const bool unattended = !options->snapshot.empty() || quitWhenReady;
    std::optional<lumiscope_app::UnattendedDialogs> dialogs;
    if (unattended) dialogs.emplace();
    // An unattended run ends by its own timer, even when start-up hid the window.
    if (unattended) app.setQuitOnLastWindowClosed(false);

    viewer::Library().OpenedByControl = false;
    QPointer<viewer::SpectrumForm> window = new viewer::SpectrumForm(options->commandLine, applicationPath);
    if (const int32_t interval = lumiscope_app::PollIntervalSetting(); interval > 0)
        window->State().PollIntervalMs = interval;
    if (options->width > 0) window->resize(options->width, options->height);
    window->show();
    if (options->channel >= 0) {
        // What an operator's pick in the chooser does, through the chooser's own event.
        if (window && window->SpectrumCombo && options->channel < window->SpectrumCombo->count()) {
            window->SpectrumCombo->setCurrentIndex(options->channel);
            emit window->SpectrumCombo->activated(options->channel);
        } else {
            std::fprintf(stderr, "lumiscope: the channel chooser has no entry %d\n", options->channel);
        }
    }

    if (!options->select.empty() && window) {
        // The elements to follow, as the operator would pick them in the chooser.
        for (const std::string& name : window->SelectElementsByName(options->select))
            std::fprintf(stderr, "lumiscope: the chosen channel has no element %s\n", name.c_str());
    }

    int result = 0;
    if (!options->snapshot.empty()) {
        result = 1;  // until the picture is saved
        const int afterMs = static_cast<int>(options->afterSeconds * 1000.0);
        QTimer::singleShot(afterMs, &app, [&] {
            const QString file = QString::fromStdString(options->snapshot);
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
            if (options->quitWhenLive ? ShowsLiveSpectrum(window) : Populated(window)) {
                std::printf("%s after %lld ms\n", options->quitWhenLive ? "live" : "populated",
                            static_cast<long long>(sinceStart.elapsed()));
                result = 0;
                app.quit();
            } else if (sinceStart.elapsed() > kPopulatedLimitMs) {
                std::fprintf(stderr, "lumiscope: the window was not %s within %d s\n",
                             options->quitWhenLive ? "live" : "populated", kPopulatedLimitMs / 1000);
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
