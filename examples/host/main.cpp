// A host window made in Qt Designer that holds the Lumiscope control. Double-
// click the control or press "Open viewer" to open the spectrum viewer; "Select
// device" makes the row in the box the viewer's chosen device.
//
//   lumiscope-example-host [--open]
//
// The control reads its configuration from L:\bin.orka\spectrum\configs\;
// LUMISCOPE_DRIVE_L names the directory that stands for drive L:. Without it,
// the installed tree's drive with the sample configuration is used.
#include <QApplication>
#include <QMainWindow>
#include <cstdio>

#include <control/lumiscope.h>
#include <embedding/host_middleware.h>

#include "ui_host_window.h"

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    if (qEnvironmentVariableIsEmpty("LUMISCOPE_DRIVE_L")) qputenv("LUMISCOPE_DRIVE_L", LUMISCOPE_SAMPLE_DRIVE);
    lumiscope::HostMiddleware middleware;
    if (!middleware.Ready()) std::fprintf(stderr, "lumiscope-example-host: %s\n", middleware.Problem().c_str());

    QMainWindow window;
    Ui::HostWindow form;
    form.setupUi(&window);
    QObject::connect(form.selectDevice, &QPushButton::clicked, &window,
                     [&form] { form.scope->SelectADevice(form.deviceRow->value()); });
    window.show();
    if (app.arguments().contains("--open")) form.scope->DoSomething();
    // The viewer window is a window of its own: the program ends with the host's.
    QObject::connect(&app, &QApplication::lastWindowClosed, &app, &QApplication::quit);
    return app.exec();
}
