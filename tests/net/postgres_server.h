// A PostgreSQL 15 server of a test's own, in a temporary directory, run by an
// unprivileged user (the "postgres" account when the tests run as root),
// listening on a free loopback port; stopped and removed afterwards.
#pragma once

#include <string>

namespace net_test {

class PostgresServer {
public:
    // Where the server programs live; Available() is false without them.
    static constexpr const char* kBinaries = "/usr/lib/postgresql/15/bin";
    static bool Available();

    ~PostgresServer() { Stop(); }
    // Makes the cluster and starts it; false (with a reason) when it could not.
    bool Start(std::string& problem);
    void Stop();
    // "postgresql://lumiscope@127.0.0.1:PORT/postgres"
    const std::string& Uri() const { return uri_; }

private:
    std::string Run(const std::string& command) const;
    std::string directory_;
    std::string uri_;
    bool running_ = false;
};

}  // namespace net_test
