#include "server_processes.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <thread>

namespace net_test {

std::string BuildProgram(const std::string& program) { return std::string(LUMISCOPE_BINARY_DIR) + "/bin/" + program; }

bool ServerProcess::Start(const std::string& program, const std::vector<std::string>& args,
                          const std::map<std::string, std::string>& environment) {
    Stop();
    int out[2];
    if (pipe(out) != 0) return false;
    const std::string path = BuildProgram(program);
    std::vector<std::string> argvText{path};
    argvText.insert(argvText.end(), args.begin(), args.end());
    std::vector<char*> argv;
    for (auto& a : argvText) argv.push_back(a.data());
    argv.push_back(nullptr);
    const pid_t pid = fork();
    if (pid < 0) return false;
    if (pid == 0) {
        dup2(out[1], STDOUT_FILENO);
        close(out[0]);
        close(out[1]);
        for (const auto& [name, value] : environment) setenv(name.c_str(), value.c_str(), 1);
        execv(path.c_str(), argv.data());
        _exit(127);
    }
    close(out[1]);
    pid_ = pid;
    // Read the first line within the limit.
    std::string line;
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (line.find('\n') == std::string::npos && std::chrono::steady_clock::now() < limit) {
        pollfd p{out[0], POLLIN, 0};
        if (poll(&p, 1, 100) <= 0) continue;
        char buffer[256];
        const ssize_t n = read(out[0], buffer, sizeof buffer);
        if (n <= 0) break;
        line.append(buffer, static_cast<size_t>(n));
    }
    close(out[0]);
    const std::string prefix = "listening on ";
    if (line.rfind(prefix, 0) != 0 || line.find('\n') == std::string::npos) {
        Kill();
        return false;
    }
    address_ = line.substr(prefix.size(), line.find('\n') - prefix.size());
    return true;
}

void ServerProcess::Reap(int signal) {
    if (pid_ <= 0) return;
    kill(pid_, signal);
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    int status = 0;
    while (waitpid(pid_, &status, WNOHANG) == 0) {
        if (std::chrono::steady_clock::now() > limit) {
            kill(pid_, SIGKILL);
            waitpid(pid_, &status, 0);
            break;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    pid_ = -1;
}

void ServerProcess::Stop() { Reap(SIGTERM); }
void ServerProcess::Kill() { Reap(SIGKILL); }

int DeadPort() {
    const int s = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = 0;
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
