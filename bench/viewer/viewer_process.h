// The viewer program run as its own process, watched from outside through
// /proc: its wall time, its CPU time and its peak resident memory.
#pragma once

#include <sys/types.h>

#include <map>
#include <string>
#include <vector>

namespace viewer_bench {

class ViewerProcess {
public:
    // Starts the viewer (LUMISCOPE_VIEWER_PROGRAM) with the arguments and
    // these environment variables added to this process's own.
    ViewerProcess(const std::vector<std::string>& arguments, const std::map<std::string, std::string>& environment);
    ~ViewerProcess();
    bool Started() const { return pid_ > 0; }

    // CPU seconds (user + system) used so far; -1 when it cannot be read.
    double CpuSeconds() const;
    // Peak resident memory so far in MB; -1 when it cannot be read.
    double PeakResidentMB() const;
    // Waits for the end; the exit code, or -1 for a process that did not exit normally.
    int Wait();
    // Ends it (SIGTERM) and waits.
    void Stop();

private:
    pid_t pid_ = -1;
};

}  // namespace viewer_bench
