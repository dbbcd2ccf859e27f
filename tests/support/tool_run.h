// Runs one of the command-line tools as a program and keeps what it printed.
#pragma once

#include <QJsonDocument>
#include <string>
#include <vector>

namespace test_support {

struct ToolRun {
    std::string out;
    int exitCode = -1;
    // stdout as one JSON document; a parse error fails the calling test.
    QJsonDocument Json() const;
};

// program: the tool's path; stderr is dropped unless keepStderr (then it
// follows stdout). `environment` entries ("NAME=value") are set for the run.
ToolRun RunTool(const std::string& program, const std::vector<std::string>& args,
                const std::vector<std::string>& environment = {}, bool keepStderr = false);

}  // namespace test_support
