// What the Lumiscope control talks to inside a host program.
//
// The viewer that the control opens reads its spectra through the middleware.
// A host program creates one HostMiddleware after its QApplication and keeps
// it for as long as it shows the control:
//
//     QApplication app(argc, argv);
//     lumiscope::HostMiddleware middleware;   // the simulated accelerator
//     control::Lumiscope scope;
//
// The transport is the simulated accelerator built from the control's own
// configuration directory ("L:\bin.orka\spectrum\configs\", drive L: mapped by
// LUMISCOPE_DRIVE_L).
#pragma once

#include <memory>
#include <string>

namespace lumiscope {

class HostMiddleware {
public:
    HostMiddleware();
    // The simulated accelerator of another configuration directory.
    explicit HostMiddleware(const std::string& configDirectory);
    ~HostMiddleware();
    HostMiddleware(const HostMiddleware&) = delete;
    HostMiddleware& operator=(const HostMiddleware&) = delete;

    // False when no transport could be built (every link call then fails with
    // its completion code); Problem() says why.
    bool Ready() const;
    const std::string& Problem() const;

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

}  // namespace lumiscope
