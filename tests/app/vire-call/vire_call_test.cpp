// vire-call run as a program against the sample's simulated accelerator.
#include <gtest/gtest.h>

#include <fstream>
#include <tuple>

#include <QJsonArray>
#include <QJsonObject>

#include "vire/completion_codes.h"
#include "vire/link.h"
#include "tool_run.h"

namespace {

using test_support::ToolRun;

ToolRun Call(const std::vector<std::string>& args, const std::vector<std::string>& env = {}) {
    return test_support::RunTool(VIRE_CALL_TOOL, args, env);
}

TEST(VireCall, ConversionsNeedNoServer) {
    struct Case { std::vector<std::string> args; std::string out; };
    const Case cases[] = {
        {{"--format-name", "5"}, "SINGLE\n"}, {{"--error-text", "999"}, "Error undefined\n"}, {{"--ctime", "-1"}, "\n"},
    };
    for (const Case& c : cases) {
        const ToolRun run = Call(c.args);
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_EQ(run.out, c.out) << c.args[0] << " " << c.args[1];
    }
    EXPECT_EQ(Call({"--ctime", "0"}, {"TZ=UTC"}).out, "Thu Jan  1 00:00:00 1970\n");
}

TEST(VireCall, JsonAnswersCarryStatusTextFormatAndValues) {
    // first: the first value if it is text.
    struct Case { std::vector<std::string> args; int status; QString format; int values; std::string first; };
    const Case cases[] = {
        {{"/ORKA/BPMQ1/ORBIT", "ORBIT.X", "--count", "32"}, 0, "SINGLE", 32, ""},
        {{"/ORKA/BPMQ1/ORBIT", "ORBIT.X"}, 0, "SINGLE", 1, ""},
        {{"--names", "/ORKA/BLMSRV", "LOSS.FAST"}, 0, "NAME16", 96, "BLM.S01.1"},
        {{"--props", "/ORKA/BLMSRV", "HV"}, 0, "NAME32", 4, "HV"},
        // Minute values: a window of 599 s holds ten whatever second "now" is.
        {{"--history", "/ORKA/BPMHIST/BPM.S01.C1", "ORBIT.X.Q1.HIST", "--from", "now-599", "--to", "now"},
         0, "FLTINT", 10, ""},
        {{"--spectrum", "/ORKA/OKHISTORY/#0", "CHARGE.P1", "--at", "now-86400", "--count", "1980"}, 0, "SINGLE", 1980, ""},
        {{"/ORKA/BLMSRV/LOSS.RING", "THRESHOLD[2]", "--write", "12.5", "--user", "operator"}, 0, "SINGLE", 0, ""},
        {{"/ORKA/BPMQ1/ORBIT", "ORBIT.X", "--format", "LONG"}, 13, "LONG", 0, ""},
        // Counts no buffer should be made for: the call's own code, no abort.
        {{"/ORKA/BPMQ1/ORBIT", "ORBIT.X", "--count", "-3"}, 14, "SINGLE", 0, ""},
        {{"/ORKA/BPMQ1/ORBIT", "ORBIT.X", "--count", "2000000000", "--format", "DOUBLE"}, 14, "DOUBLE", 0, ""},
        {{"--history", "OKHISTORY", "CURRENT", "--from", "now-60", "--to", "now", "--count", "2147483647"}, 14,
         "FLTINT", 0, ""},
    };
    for (const Case& c : cases) {
        std::vector<std::string> args = c.args;
        args.push_back("--json");
        const ToolRun run = Call(args);
        const QJsonObject doc = run.Json().object();
        const QJsonArray values = doc["values"].toArray();
        EXPECT_EQ(std::make_tuple(doc["status"].toInt(), run.exitCode, doc["format"].toString(), values.size()),
                  std::make_tuple(c.status, c.status == 0 ? 0 : 1, c.format, qsizetype{c.values})) << run.out;
        EXPECT_EQ(doc["errorText"].toString().toStdString(), vire::ErrorText(static_cast<vire::Status>(c.status)));
        EXPECT_EQ(values[0].toString().toStdString(), c.first) << "numbers and missing values read as \"\"";
        if (c.args[0] == "--spectrum") {
            EXPECT_GT(doc["stamp"].toInt(), 0) << "a spectrum comes with its stamp";
        }
        if (c.format == "FLTINT" && values.size() > 1) {  // each value with its time, oldest first
            EXPECT_LT(values[0]["time"].toInt(), values.last()["time"].toInt()) << run.out;
            EXPECT_NE(values[0]["value"].toDouble(), 0.0) << run.out;
        }
    }
}

TEST(VireCall, FaultsFromTheEnvironmentAndTextOutput) {
    struct Case { std::string fault; std::vector<std::string> args; int status; };
    const Case cases[] = {
        {"/KALM/BPMSRV=slow:1500", {"/KALM/BPMSRV/LINE", "POS.X", "--timeout", "500"}, vire::kTimeout},
        {"/KALM/BPMSRV=slow:1500", {"/KALM/BPMSRV/LINE", "POS.X", "--timeout", "2500"}, 0},
    };
    for (const Case& c : cases) {
        const ToolRun run = Call(c.args, {"LUMISCOPE_SIM_FAULTS=" + c.fault});
        EXPECT_EQ(run.exitCode, c.status == 0 ? 0 : 1) << c.fault;
        EXPECT_NE(run.out.find("\nstatus " + std::to_string(c.status) + ": " + vire::ErrorText(c.status) + "\n"),
                  std::string::npos) << c.fault << "\n" << run.out;
    }
    const ToolRun text = Call({"/KALM/BPMSRV/LINE", "POS.X", "--count", "2"});
    EXPECT_EQ(text.out.rfind("/KALM/BPMSRV/LINE POS.X: 2 SINGLE\n0  ", 0), 0u) << text.out;
}

TEST(VireCall, TheNetworkSettingsChooseTheServersUnlessTheSimulationIsForced) {
    // Every name at a loopback port nothing listens on: a network read cannot succeed.
    const std::string names = ::testing::TempDir() + "/vire-call-names.txt";
    std::ofstream(names) << "* 127.0.0.1:1\n";
    const std::vector<std::string> network{"LUMISCOPE_TRANSPORT=network", "LUMISCOPE_NAMES=",
                                           "LUMISCOPE_NAMES_FILE=" + names};
    const std::pair<std::vector<std::string>, int> cases[] = {
        {{"/ORKA/BPMQ1/ORBIT", "ORBIT.X", "--json"}, vire::kLinkError},
        {{"/ORKA/BPMQ1/ORBIT", "ORBIT.X", "--json", "--simulate"}, vire::kOk},
    };
    for (const auto& [args, status] : cases) {
        const ToolRun run = Call(args, network);
        EXPECT_EQ(run.Json().object()["status"].toInt(), status) << run.out;
    }
}

// A mistake is one line on standard error: the reason and where help is.
TEST(VireCall, UsageErrorsExitWith2AndCallNothing) {
    struct Case { std::vector<std::string> args; std::string reason; };
    const Case cases[] = {
        {{}, "needs ADDRESS and PROPERTY"},
        {{"/ORKA/BPMQ1/ORBIT"}, "needs ADDRESS and PROPERTY"},
        {{"/ORKA/BPMQ1/ORBIT", "ORBIT.X", "THIRD"}, "needs ADDRESS and PROPERTY"},
        {{"/ORKA/BPMQ1/ORBIT", "ORBIT.X", "--count"}, "--count needs a value"},
        {{"/ORKA/BPMQ1/ORBIT", "ORBIT.X", "--count", "1e3"}, "--count needs a 32-bit number"},
        {{"/ORKA/BPMQ1/ORBIT", "ORBIT.X", "--format", "FLOAT"}, "unknown format \"FLOAT\""},
        {{"/ORKA/BPMQ1/ORBIT", "ORBIT.X", "--write", "1,x"}, "unreadable value \"x\""},
        {{"--spectrum", "/ORKA/BPMHIST/#0", "P", "--at", "now"}, "--spectrum needs --count N"},
        {{"--history", "A", "P", "--from", "yesterday"}, "--from needs a time"},
        {{"--names", "--props", "/ORKA/BLMSRV"}, "one kind of call at a time"},
        {{"--format-name", "70000"}, "--format-name needs a number from -32768 to 32767"},
        {{"--ctime", "soon"}, "--ctime needs a number"},
        {{"--ctime", "0", "extra"}, "unexpected argument extra"},
        {{"--props"}, "--props needs /CONTEXT/SERVER [PROPERTY]"},
    };
    for (const Case& c : cases) {
        const ToolRun run = test_support::RunTool(VIRE_CALL_TOOL, c.args, {}, true);
        EXPECT_EQ(run.exitCode, 2) << run.out;
        EXPECT_EQ(run.out, "vire-call: " + c.reason + " (vire-call --help lists the options)\n");
    }
}

}  // namespace
