// What the viewer programs talk to: the middleware's scheduler on the Qt event
// loop and a transport, by default the simulated accelerator built from the
// configuration directory.
#pragma once

#include <memory>
#include <string>

#include "ui/qt_scheduler.h"
#include "vire/transport.h"

namespace lumiscope_app {

// The network transport when the environment asks for it
// (LUMISCOPE_TRANSPORT=network, see net/environment.h) and the program was
// built with it; else nullptr.
std::shared_ptr<vire::Transport> NetworkTransportFromEnvironment(const std::string& configDir);

// The simulated accelerator built from a configuration directory (native
// path); nullptr with `problem` set when it cannot be built.
std::shared_ptr<vire::Transport> SimulatedTransport(const std::string& configDir, std::string& problem);

class Middleware {
public:
    // Installs the scheduler and the transport (nullptr: none, every link
    // call then fails with its code) for as long as this object lives.
    explicit Middleware(std::shared_ptr<vire::Transport> transport);
    ~Middleware();
    Middleware(const Middleware&) = delete;
    Middleware& operator=(const Middleware&) = delete;

private:
    ui::ScopedQtScheduler scheduler_;
    std::shared_ptr<vire::Transport> transport_;
};

// LUMISCOPE_POLL_MS when it holds a whole number of milliseconds (1..3600000),
// else 0: the polling interval of the window's channel links, for measuring
// the viewer at other rates.
int32_t PollIntervalSetting();

}  // namespace lumiscope_app
