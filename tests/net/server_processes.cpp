#include "server_processes.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <thread>

namespace net_test {

bool ServerProcess::Start(const std::string& program, const std::vector<std::string>& args,
                          const std::map<std::string, std::string>& environment) {
    Stop();
    int out[2];
    if (pipe(out) != 0) return false;
    std::vector<std::string> argvText{std::string(LUMISCOPE_BINARY_DIR) + "/bin/" + program};
    argvText.insert(argvText.end(), args.begin(), args.end());
    std::vector<char*> argv;
    for (auto& a : argvText) argv.push_back(a.data());
    argv.push_back(nullptr);
    pid_ = fork();
    if (pid_ == 0) {
        dup2(out[1], STDOUT_FILENO);
        for (const auto& [name, value] : environment) setenv(name.c_str(), value.c_str(), 1);
        execv(argv[0], argv.data());
        _exit(127);
    }
    close(out[1]);
    // The first line, within the limit.
    std::string line;
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    pollfd p{out[0], POLLIN, 0};
    for (char c = 0; c != '\n' && std::chrono::steady_clock::now() < limit;) {
        if (poll(&p, 1, 100) <= 0) continue;
        if (read(out[0], &c, 1) != 1) break;  // closed without a line
        line += c;
    }
    close(out[0]);
    const std::string prefix = "listening on ";
    if (!line.starts_with(prefix) || !line.ends_with('\n')) {
        Kill();
        return false;
    }
    address_ = line.substr(prefix.size(), line.size() - prefix.size() - 1);
    return true;
}

void ServerProcess::Reap(int signal) {
    if (pid_ <= 0) return;
    kill(pid_, signal);
    int status = 0;
    if (!WaitUntil([&] { return waitpid(pid_, &status, WNOHANG) != 0; }, std::chrono::seconds(5))) {
        kill(pid_, SIGKILL);
        waitpid(pid_, &status, 0);
    }
    pid_ = -1;
}

void ServerProcess::Stop() { Reap(SIGTERM); }
void ServerProcess::Kill() { Reap(SIGKILL); }

LocalEtcd::LocalEtcd() : directory("/tmp/lumiscope-etcd-" + std::to_string(getpid())) {
    FILE* script = popen((std::string(LUMISCOPE_SCRIPTS_DIR) + "/local-etcd.sh " + directory + " 2>&1").c_str(), "r");
    if (script == nullptr) return;
    std::map<std::string, std::string> said;
    char line[512];
    while (fgets(line, sizeof line, script) != nullptr) {
        std::string text(line);
        if (!text.empty() && text.back() == '\n') text.pop_back();
        const size_t equals = text.find('=');
        if (equals != std::string::npos) said[text.substr(0, equals)] = text.substr(equals + 1);
    }
    pclose(script);
    pid = said.count("pid") != 0 ? std::stoi(said["pid"]) : -1;
    endpoint = said["endpoint"];
    serverPassword = said["server_password"];
    readerPassword = said["reader_password"];
}

LocalEtcd::~LocalEtcd() {
    if (pid <= 0) return;
    kill(pid, SIGTERM);
    WaitUntil([&] { return kill(pid, 0) != 0; }, std::chrono::seconds(5));
    std::error_code error;
    std::filesystem::remove_all(directory, error);
}

std::map<std::string, std::string> LocalEtcd::ServerEnvironment() const {
    return {{"LUMISCOPE_NAMES_USER", "lumiscope-server"}, {"LUMISCOPE_NAMES_PASSWORD", serverPassword}};
}

void LocalEtcd::BecomeReader() const {
    setenv("LUMISCOPE_NAMES_USER", "lumiscope-reader", 1);
    setenv("LUMISCOPE_NAMES_PASSWORD", readerPassword.c_str(), 1);
}

int DeadPort() {
    const int s = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{AF_INET, 0, {htonl(INADDR_LOOPBACK)}, {}};
    socklen_t size = sizeof address;
    int port = 0;
    if (bind(s, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
        getsockname(s, reinterpret_cast<sockaddr*>(&address), &size) == 0)
        port = ntohs(address.sin_port);
    close(s);
    return port;
}

bool WaitUntil(const std::function<bool()>& done, std::chrono::milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    for (;;) {
        if (done()) return true;
        if (std::chrono::steady_clock::now() > end) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

}  // namespace net_test
