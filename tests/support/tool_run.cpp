#include "tool_run.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>

namespace test_support {
namespace {
std::string Quote(const std::string& arg) {
    std::string quoted = "'";
    for (char c : arg) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}
}  // namespace

QJsonDocument ToolRun::Json() const {
    QJsonParseError error;
    QJsonDocument doc = QJsonDocument::fromJson(QByteArray::fromStdString(out), &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << error.errorString().toStdString() << "\n" << out;
    return doc;
}

ToolRun RunTool(const std::string& program, const std::vector<std::string>& args,
                const std::vector<std::string>& environment, bool keepStderr) {
    std::string command;
    for (const auto& setting : environment) command += Quote(setting) + " ";
    if (!environment.empty()) command = "env " + command;
    command += Quote(program);
    for (const auto& arg : args) command += " " + Quote(arg);
    command += keepStderr ? " 2>&1" : " 2>/dev/null";
    ToolRun run;
    FILE* pipe = ::popen(command.c_str(), "r");
    if (pipe == nullptr) return run;
    std::array<char, 4096> buffer{};
    while (std::size_t n = std::fread(buffer.data(), 1, buffer.size(), pipe)) run.out.append(buffer.data(), n);
    const int status = ::pclose(pipe);
    run.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}

}  // namespace test_support
