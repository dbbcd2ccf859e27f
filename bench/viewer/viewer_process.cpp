#include "viewer_process.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <fstream>
#include <sstream>

extern char** environ;

namespace viewer_bench {

ViewerProcess::ViewerProcess(const std::vector<std::string>& arguments,
                             const std::map<std::string, std::string>& environment) {
    std::vector<std::string> env;
    for (char** e = environ; *e; ++e) {
        const std::string entry = *e;
        if (!environment.count(entry.substr(0, entry.find('=')))) env.push_back(entry);
    }
    for (const auto& [name, value] : environment) env.push_back(name + "=" + value);
    std::vector<std::string> args{LUMISCOPE_VIEWER_PROGRAM};
    args.insert(args.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv, envp;
    for (std::string& a : args) argv.push_back(a.data());
    argv.push_back(nullptr);
    for (std::string& e : env) envp.push_back(e.data());
    envp.push_back(nullptr);
    // The viewer's own chatter would drown the benchmark's report.
    posix_spawn_file_actions_t quiet;
    posix_spawn_file_actions_init(&quiet);
    posix_spawn_file_actions_addopen(&quiet, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&quiet, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    if (posix_spawn(&pid_, argv[0], &quiet, nullptr, argv.data(), envp.data()) != 0) pid_ = -1;
    posix_spawn_file_actions_destroy(&quiet);
}

ViewerProcess::~ViewerProcess() {
    if (pid_ > 0) Stop();
}

double ViewerProcess::CpuSeconds() const {
    std::ifstream stat("/proc/" + std::to_string(pid_) + "/stat");
    std::string text;
    std::getline(stat, text);
    // Fields after the command name (which may hold blanks) start at ")".
    const auto close = text.rfind(')');
    if (close == std::string::npos) return -1;
    std::istringstream fields(text.substr(close + 2));
    std::string field;
    long utime = 0, stime = 0;
    for (int i = 3; fields >> field; ++i) {
        if (i == 14) utime = std::stol(field);
        if (i == 15) {
            stime = std::stol(field);
            return static_cast<double>(utime + stime) / static_cast<double>(sysconf(_SC_CLK_TCK));
        }
    }
    return -1;
}

double ViewerProcess::PeakResidentMB() const {
    std::ifstream status("/proc/" + std::to_string(pid_) + "/status");
    std::string line;
    while (std::getline(status, line))
        if (line.rfind("VmHWM:", 0) == 0) return std::stod(line.substr(6)) / 1024.0;  // kB
    return -1;
}

int ViewerProcess::Wait() {
    if (pid_ <= 0) return -1;
    int status = 0;
    const pid_t done = waitpid(pid_, &status, 0);
    pid_ = -1;
    if (done < 0 || !WIFEXITED(status)) return -1;
    return WEXITSTATUS(status);
}

void ViewerProcess::Stop() {
    if (pid_ <= 0) return;
    kill(pid_, SIGTERM);
    Wait();
}

}  // namespace viewer_bench
