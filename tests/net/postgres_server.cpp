#include "postgres_server.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "server_processes.h"

namespace net_test {

bool PostgresServer::Available() {
    return std::filesystem::exists(std::string(kBinaries) + "/initdb") &&
           std::filesystem::exists(std::string(kBinaries) + "/pg_ctl");
}

// As root the server programs refuse to run: they run as "postgres" (or
// "nobody") through runuser.
std::string PostgresServer::Run(const std::string& command) const {
    if (geteuid() != 0) return command;
    const char* user = getpwnam("postgres") != nullptr ? "postgres" : "nobody";
    return std::string("runuser -u ") + user + " -- " + command;
}

bool PostgresServer::Start(std::string& problem) {
    char pattern[] = "/tmp/lumiscope-pg-XXXXXX";
    if (mkdtemp(pattern) == nullptr) {
        problem = "cannot make a temporary directory";
        return false;
    }
    directory_ = pattern;
    std::filesystem::permissions(directory_, std::filesystem::perms::all);
    const std::string bin = kBinaries;
    const std::string data = directory_ + "/data";
    const int port = DeadPort();
    const std::string quiet = " >" + directory_ + "/setup.log 2>&1";
    if (std::system(Run(bin + "/initdb -D " + data + " -A trust -U lumiscope --no-sync -E UTF8").append(quiet).c_str()) != 0) {
        problem = "initdb failed (see " + directory_ + "/setup.log)";
        return false;
    }
    const std::string options = "-p " + std::to_string(port) + " -k " + directory_ +
                                " -c listen_addresses=127.0.0.1 -c fsync=off";
    if (std::system(Run(bin + "/pg_ctl -D " + data + " -w -t 60 -l " + directory_ + "/server.log -o \"" + options +
                        "\" start")
                        .append(quiet)
                        .c_str()) != 0) {
        problem = "pg_ctl start failed (see " + directory_ + "/server.log)";
        return false;
    }
    running_ = true;
    uri_ = "postgresql://lumiscope@127.0.0.1:" + std::to_string(port) + "/postgres";
    return true;
}

void PostgresServer::Stop() {
    if (running_)
        [[maybe_unused]] const int stopped = std::system(
            Run(std::string(kBinaries) + "/pg_ctl -D " + directory_ + "/data -w -m immediate stop >/dev/null 2>&1")
                .c_str());
    running_ = false;
    if (!directory_.empty()) {
        std::error_code error;
        std::filesystem::remove_all(directory_, error);
        directory_.clear();
    }
}

}  // namespace net_test
