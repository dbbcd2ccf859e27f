// The plot demo: the four plot kinds of the viewer fed live by the simulated
// accelerator, for a person to look at.
//
//   lumiscope-plot-demo [--config DIR] [--spectrum N] [--screenshot FILE [--after MS]]
//
// --spectrum picks the spectrum (0 orbit horizontal, 1 orbit vertical, 2 fill
// pattern, 3 losses); --screenshot saves the window to FILE after MS
// milliseconds (default 3500) and quits.
#include "app/tool_support/help_request.h"
#include <QApplication>
#include <QTimer>
#include <cstdio>
#include <string>

#include "demo_window.h"
#include "sim/simulated_accelerator.h"
#include "ui/qt_scheduler.h"
#include "vire/transport.h"

namespace {
const char* const kUsage =
    "usage: lumiscope-plot-demo [--config DIR] [--spectrum N] [--screenshot FILE [--after MS]]\n";
}  // namespace

int main(int argc, char** argv) {
    if (tool_support::AnswerHelp(argc, argv, kUsage)) return 0;
    QApplication app(argc, argv);
    std::string config = LUMISCOPE_SAMPLE_CONFIG_DIR;
    QString screenshot;
    int after = 3500;
    int spectrum = 0;
    const QStringList args = app.arguments();
    for (int i = 1; i < args.size(); ++i) {
        const bool hasValue = i + 1 < args.size();
        if (args[i] == "--config" && hasValue) config = args[++i].toStdString();
        else if (args[i] == "--screenshot" && hasValue) screenshot = args[++i];
        else if (args[i] == "--after" && hasValue) after = args[++i].toInt();
        else if (args[i] == "--spectrum" && hasValue) spectrum = args[++i].toInt();
        else {
            std::fputs(kUsage, stderr);
            return 2;
        }
    }

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
