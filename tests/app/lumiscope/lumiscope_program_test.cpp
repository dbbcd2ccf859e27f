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
    // printed: part of stdout and stderr
    struct Case { const char* program; std::vector<std::string> args; int exitCode; const char* printed; };
    const Case cases[] = {
        {LUMISCOPE_VIEWER, {"--size", "1280x"}, 2, "--size wants WIDTHxHEIGHT"},
        {LUMISCOPE_VIEWER, {"--after", "-1", "--snapshot", "x.png"}, 2, "--after wants seconds"},
        {LUMISCOPE_VIEWER, {"--snapshot"}, 2, "--snapshot needs a value"},
        {LUMISCOPE_HOST, {"--snapshot", "x.png"}, 2, "unknown option --snapshot"},
        // Qt's own options are Qt's, also before Qt has taken them.
        {LUMISCOPE_VIEWER, {"-platform", "offscreen", "--quit-when-populated", "VESTA"}, 0, "populated after"},
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

// One command line for all: --help and --version on standard output with
// exit code 0, a mistake as one line on standard error with exit code 2 and
// nothing on standard output. Help and version win over a mistake beside them.
TEST(Programs, EveryOneAnswersHelpVersionAndAMistakeAlike) {
    // out: the whole of stdout ("usage: " only its start), err: the whole of stderr
    struct Case { std::vector<std::string> args; int exitCode; std::string out, err; };
    for (const std::string program : {"lumiscope", "lumiscope-host", "lumiscope-config", "vire-call",
                                      "lumiscope-plot-demo", "lumiscope-devserver",
                                      "lumiscope-archiver"}) {
        const std::string path = std::string(LUMISCOPE_BINARY_DIR) + "/bin/" + program;
        if (!QFile::exists(QString::fromStdString(path))) continue;  // a build without that part
        const std::string mistake = program + ": unknown option --no-such-option (" + program + " --help lists the options)\n";
        const Case cases[] = {
            {{"--help"}, 0, "usage: " + program, ""},
            {{"--no-such-option", "-h"}, 0, "usage: " + program, ""},
            {{"--version"}, 0, program + " " LUMISCOPE_VERSION "\n", ""},
            {{"--no-such-option"}, 2, "", mistake},
            {{"--version", "--no-such-option"}, 0, program + " " LUMISCOPE_VERSION "\n", ""},
        };
        for (const Case& c : cases) {
            SCOPED_TRACE(program + " " + c.args.front());
            const test_support::ToolRun out = test_support::RunTool(path, c.args);
            const test_support::ToolRun both = test_support::RunTool(path, c.args, {}, true);
            EXPECT_EQ(out.exitCode, c.exitCode);
            if (c.out.rfind("usage: ", 0) == 0) {
                EXPECT_EQ(out.out.rfind(c.out, 0), 0u) << out.out;
                EXPECT_NE(out.out.find("\noptions:\n"), std::string::npos) << out.out;
            } else {
                EXPECT_EQ(out.out, c.out);
            }
            EXPECT_EQ(both.out.substr(out.out.size()), c.err);
        }
    }
}

}  // namespace
