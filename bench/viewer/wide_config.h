// A configuration directory for measuring the viewer on a wide device: the
// sample configuration with ORKA's fill pattern made 8000 elements, read out
// in four appended parts of 2000 (the combined spectrum's limit).
#pragma once

#include <QTemporaryDir>
#include <string>

namespace viewer_bench {

inline constexpr int kWideParts = 4;
inline constexpr int kWidePartSize = 2000;
// The start arguments that choose the wide device (first channel of the subsystem).
inline constexpr char kWideStartArguments[] = "ORKA FILL";

class WideConfig {
public:
    WideConfig();
    bool Ok() const { return ok_; }
    // The program directory: its configs/ folder is the configuration.
    std::string AppPath() const;
    std::string ConfigDir() const;

private:
    QTemporaryDir dir_;
    bool ok_ = false;
};

}  // namespace viewer_bench
