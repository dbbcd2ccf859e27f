// The viewer programs from the shell: help, option mistakes, and unattended
// snapshots (the messages a run without an operator would have shown go to
// standard error).
#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "tool_run.h"

namespace {

// Unattended runs: a snapshot shows the window at the asked size, and the
// messages the window would have shown go to standard error (here: no
// configs/ beside the program, which is the otherwise empty scratch directory).
TEST(ViewerPrograms, AnswerTheirCommandLines) {
    QTemporaryDir scratch;
    const std::string emptyDir = scratch.path().toStdString();
    struct Case {
        const char* program;
        std::vector<std::string> args;
        int exitCode;
        const char* printed;  // part of stdout and stderr
    };
    const Case cases[] = {
        {LUMISCOPE_VIEWER, {"--colour", "red"}, 2, "unknown option --colour"},
        {LUMISCOPE_VIEWER, {"--size", "1280x"}, 2, "--size wants WIDTHxHEIGHT"},
        {LUMISCOPE_VIEWER, {"--after", "-1", "--snapshot", "x.png"}, 2, "--after wants seconds"},
        {LUMISCOPE_VIEWER, {"--snapshot"}, 2, "--snapshot needs a value"},
        {LUMISCOPE_HOST, {"--snapshot", "x.png"}, 2, "unknown option --snapshot"},
        {LUMISCOPE_VIEWER, {"--snapshot", "/nonexistent/dir/x.png", "--after", "0"}, 1,
         "cannot save the snapshot to /nonexistent/dir/x.png"},
        {LUMISCOPE_VIEWER, {"--app-path", emptyDir, "--snapshot", emptyDir + "/v.png", "--after", "0"}, 0,
         "lumiscope: message: Read Machine-Info File config_machines.csv failed !"},
        {LUMISCOPE_VIEWER, {"--snapshot", emptyDir + "/viewer.png", "--after", "0.2", "--size", "1440x900", "VESTA"}, 0,
         ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.args.front());
        const test_support::ToolRun run = test_support::RunTool(c.program, c.args, {}, true);
        EXPECT_EQ(run.exitCode, c.exitCode) << run.out;
        EXPECT_NE(run.out.find(c.printed), std::string::npos) << run.out;
    }
    EXPECT_EQ(QImage(QString::fromStdString(emptyDir + "/viewer.png")).size(), QSize(1440, 900));
}

TEST(Programs, EveryOneAnswersHelpWithItsUsageAndExitCodeZero) {
    for (const std::string program : {"lumiscope", "lumiscope-host", "lumiscope-config", "vire-call",
                                      "lumiscope-plot-demo", "lumiscope-devserver",
                                      "lumiscope-archiver"}) {
        const std::string path = std::string(LUMISCOPE_BINARY_DIR) + "/bin/" + program;
        if (!QFile::exists(QString::fromStdString(path))) continue;  // a build without that part
        const test_support::ToolRun run = test_support::RunTool(path, {"--help"});
        EXPECT_EQ(run.exitCode, 0) << program;
        EXPECT_EQ(run.out.rfind("usage: " + program, 0), 0u) << program << ": " << run.out;
    }
}

}  // namespace
