// The tools group runs its benchmarks through the figure reporter; the
// spectrum tools and the time tools each register their own with BENCHMARK.
// The window needs an application object, offscreen unless a display is asked for.
#include <QApplication>

#include "figure_reporter.h"

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    return lumiscope_bench::RunGroup<>(argc, argv);
}
