// The network servers as child processes of a test, on free loopback ports:
// started with their command line and environment, found by the address they
// print, ended by their process id.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace net_test {

class ServerProcess {
public:
    ServerProcess() = default;
    ~ServerProcess() { Stop(); }
    ServerProcess(const ServerProcess&) = delete;
    ServerProcess& operator=(const ServerProcess&) = delete;

    // Starts bin/<program> of the build with args and extra environment
    // settings; true once it printed "listening on ADDR" (within 20 s).
    bool Start(const std::string& program, const std::vector<std::string>& args,
               const std::map<std::string, std::string>& environment = {});
    // SIGTERM and wait (SIGKILL after 5 s).
    void Stop();
    // SIGKILL: the server vanishes without a word.
    void Kill();
    const std::string& Address() const { return address_; }
    bool Running() const { return pid_ > 0; }
    pid_t Pid() const { return pid_; }

private:
    void Reap(int signal);
    pid_t pid_ = -1;
    std::string address_;
};

// A single etcd on loopback for the servers' names, with authentication on
// (scripts/local-etcd.sh), stopped by its process id.
struct LocalEtcd {
    std::string endpoint;  // "" when it did not start
    std::string serverPassword, readerPassword;
    std::string directory;
    pid_t pid = -1;

    LocalEtcd();
    ~LocalEtcd();
    LocalEtcd(const LocalEtcd&) = delete;
    LocalEtcd& operator=(const LocalEtcd&) = delete;
    // The settings of a server that registers names, and of a client (set in this process).
    std::map<std::string, std::string> ServerEnvironment() const;
    void BecomeReader() const;
};

// A loopback port nothing listens on (bound, read and closed again).
int DeadPort();

// Polls `done` every 10 ms until it is true or `limit` has passed.
bool WaitUntil(const std::function<bool()>& done, std::chrono::milliseconds limit);

}  // namespace net_test
