// The plot demo: the four plot kinds of the viewer fed live by the simulated
// accelerator, for a person to look at.
//
//   lumiscope-plot-demo [--config DIR] [--spectrum N] [--screenshot FILE [--after MS]]
//
// --spectrum picks the spectrum (0 orbit horizontal, 1 orbit vertical, 2 fill
// pattern, 3 losses); --screenshot saves the window to FILE after MS
// milliseconds (default 3500) and quits.
#include <QApplication>
#include <QTimer>
#include <cstdio>
#include <optional>
#include <string>

#include "command_line/command_line.h"
#include "demo_window.h"
#include "sim/simulated_accelerator.h"
#include "tool_support/installed_files.h"
#include "ui/qt_scheduler.h"
#include "vire/transport.h"

namespace {

struct DemoOptions {
    std::string config = tool_support::SampleConfigDirectory();
    std::string screenshot;
    int after = 3500;
    int spectrum = 0;
};

std::optional<int> ParseDemoOptions(int argc, char** argv, command_line::CommandLine::Pass pass, DemoOptions& options) {
    command_line::CommandLine commandLine(
        {"lumiscope-plot-demo",
         {"[--config DIR] [--spectrum N] [--screenshot FILE [--after MS]]"},
         "The four plot kinds of the viewer fed live by the simulated accelerator.\n",
         ""});
    CLI::App& app = commandLine.Options();
    app.add_option("--config", options.config, "the simulated accelerator's configuration directory\n"
                                                "(default: the sample configuration)")
        ->type_name("DIR");
    app.add_option("--spectrum", options.spectrum, "the spectrum: 0 orbit horizontal, 1 orbit vertical,\n"
                                                    "2 fill pattern, 3 losses")
        ->check(CLI::Range(0, 3).description(""))
        ->type_name("N");
    app.add_option("--screenshot", options.screenshot, "save the window to FILE after --after ms and quit")
        ->type_name("FILE");
    app.add_option("--after", options.after, "milliseconds before the screenshot (default 3500)")
        ->check(CLI::Range(0, 3'600'000).description(""))
        ->type_name("MS");
    return commandLine.Parse(argc, argv, pass);
}

}  // namespace

int main(int argc, char** argv) {
    {
        // Help, the version and mistakes need no display.
        DemoOptions early;
        if (const auto exitCode = ParseDemoOptions(argc, argv, command_line::CommandLine::Pass::BeforeQt, early))
            return *exitCode;
    }
    QApplication app(argc, argv);
    DemoOptions options;
    if (const auto exitCode = ParseDemoOptions(argc, argv, command_line::CommandLine::Pass::Strict, options))
        return *exitCode;
    const std::string& config = options.config;
    const QString screenshot = QString::fromStdString(options.screenshot);
    const int after = options.after;
    const int spectrum = options.spectrum;

    ui::ScopedQtScheduler scheduler;
    auto accelerator = sim::InstallSimulatedAccelerator(config);
    int result = 0;
    {
        demo::DemoWindow window;
        window.resize(1600, 1000);
        window.ChooseSpectrum(spectrum);
        window.show();
        if (!screenshot.isEmpty()) {
            QTimer::singleShot(after, &window, [&] {
                if (!window.grab().save(screenshot)) {
                    std::fprintf(stderr, "could not save %s\n", qPrintable(screenshot));
                    result = 1;
                }
                app.quit();
            });
        }
        const int code = app.exec();
        if (result == 0) result = code;
    }
    vire::SetTransport(nullptr);
    return result;
}
