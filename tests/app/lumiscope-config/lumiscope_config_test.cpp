// lumiscope-config run as a program: its JSON documents, exit codes and check.
#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <filesystem>

#include "../../catalogue/test_support.h"
#include "tool_run.h"

namespace {

using namespace catalogue_test;
using test_support::ToolRun;

ToolRun Tool(const std::vector<std::string>& args) { return test_support::RunTool(LUMISCOPE_CONFIG_TOOL, args); }

const std::string kSample = LUMISCOPE_SAMPLE_CONFIG_DIR;

TEST(LumiscopeConfig, MachinesAndSubsystemsOfTheSampleWithAndWithoutTrailingSeparatorAndLocalList) {
    const ToolRun run = Tool({"machines", kSample + "/config_machines.csv"});
    const QJsonObject doc = run.Json().object();
    EXPECT_EQ(std::make_tuple(run.exitCode, doc["result"].toInt(), doc["MachineCount"].toInt()),
              std::make_tuple(0, 0, 5));
    EXPECT_EQ(doc["MachineList"][4]["Name"].toString(), "OPERATIONS");
    EXPECT_TRUE(doc["messages"].toArray().isEmpty());

    ScratchDir dir;
    dir.Write("prog/SpectrumInfo.csv", Lines({"FILENAME,DESCRIPTION", "L.csv,Local"}));
    for (const std::string& configDir : {kSample, kSample + "/"}) {
        const QJsonObject list = Tool({"subsystems", configDir, "VESTA_Subsystems.csv"}).Json().object();
        EXPECT_EQ(list["SubsystemCount"].toInt(), 3);
        EXPECT_EQ(list["MenuSubsystem"][2]["caption"].toString(), "Magnet Power Supplies");
        EXPECT_TRUE(list["MenuSubsystem"][2]["visible"].toBool() && !list["MenuSubsystem"][3]["visible"].toBool());
    }
    const QJsonObject local =
        Tool({"subsystems", kSample, "VESTA_Subsystems.csv", "--program-path", dir.Path("prog")}).Json().object();
    EXPECT_EQ(local["SubsystemCount"].toInt(), 4);
    EXPECT_EQ(local["SubsystemList"][0]["FileName"].toString(), "L.csv");
}

TEST(LumiscopeConfig, ThresholdsFromFilesLinksAndTheirMessages) {
    ScratchDir dir;
    dir.Write("thr.csv", Lines({"HIGH,LOW", "1.5,-1", "2.5,-2"}));
    // last: the last high threshold (kFromServer: the server's, above 0), low: the first low one
    constexpr double kFromServer = -1;
    struct Case { std::vector<std::string> args; int result, exitCode; QStringList messages; double last, low; };
    const Case cases[] = {
        {{"thr.csv", "--size", "2", "--program-path", dir.Path()}, 2, 0, {}, 2.5, -1},
        {{"thr.csv", "--size", "1", "--program-path", dir.Path()}, -1, 1, {"Threshold array out of bounds !"}, 0, 0},
        // Link sources are answered by the simulated accelerator of the sample.
        {{"/ORKA/BLMSRV/LOSS.RING[THRESHOLD]", "--size", "96"}, 3, 0, {}, kFromServer, 0},
        {{"/NOWHERE/SRV/DEV[THRESHOLD]", "--size", "4"}, -1, 1, {}, 0, 0},
        // More elements than the server's table: it delivers what it has.
        {{"/ORKA/BLMSRV/LOSS.RING[THRESHOLD]", "--size", "100"}, 3, 0, {}, 0, 0},
    };
    for (const Case& c : cases) {
        std::vector<std::string> args{"thresholds"};
        args.insert(args.end(), c.args.begin(), c.args.end());
        const ToolRun run = Tool(args);
        const QJsonObject doc = run.Json().object();
        EXPECT_EQ(std::make_pair(run.exitCode, doc["result"].toInt()), std::make_pair(c.exitCode, c.result)) << run.out;
        EXPECT_EQ(doc["messages"].toArray(), QJsonArray::fromStringList(c.messages)) << run.out;
        const double last = doc["HighThresholds"].toArray().last().toDouble();
        EXPECT_TRUE(c.last == kFromServer ? last > 0 : last == c.last) << run.out;
        EXPECT_EQ(doc["LowThresholds"][0].toDouble(), c.low) << run.out;
    }
}

// The window prepares the one channel: its thresholds are read (three rows
// into two elements here) and the reader's message lands in the document.
TEST(LumiscopeConfig, OneChannelFilePreparesItsThresholdsAndReportsTheMessage) {
    ScratchDir dir;
    dir.Write("prog/thr.csv", Lines({"HIGH", "1", "2", "3"}));
    const std::string file = dir.Write("one.csv", Lines({"CONTEXT,SERVER,PROPERTY,SIZE,DESCRIPTION,HIGH",
                                                           "ORKA,BLMSRV/L,LOSS,2,Losses,thr.csv"}));
    const ToolRun run = Tool({"channels", file, "--program-path", dir.Path("prog")});
    EXPECT_EQ(run.exitCode, 0) << "a threshold problem does not fail the reader";
    const QJsonObject doc = run.Json().array()[0].toObject();
    EXPECT_EQ(doc["SpectrumList"].toArray().size(), 1) << "the threshold read inside is not the file's report";
    EXPECT_EQ(doc["messages"].toArray(), QJsonArray{"Threshold array out of bounds !"});
}

// One catalogue for all the files: values carry over from file to file. A
// file that fails the reader fails the run, says why on standard error and
// keeps the files after it; bytes that are not UTF-8 still make valid JSON.
TEST(LumiscopeConfig, ChannelFilesShareOneCatalogueAndEachGetsItsDocument) {
    ScratchDir dir;
    std::string garbage = "CONTEXT,DESCRIPTION\r\n";
    for (int i = 0; i < 512; ++i) garbage += static_cast<char>((i * 37) % 256);
    garbage += "\r\nX,caf\xe9 \xc3\xa9\x01\r\n";
    const std::vector<std::string> args = {
        "channels",
        dir.Write("a.csv",
                  Lines({"CONTEXT,SERVER,PROPERTY,SIZE,DESCRIPTION,MAX,MIN,EGU", "ORKA,S/D,P,3,\"A, q\",0.1,-0.1,mm"})),
        dir.Write("b.csv", Lines({"SERVER,DESCRIPTION", "S2/E,B", "S3/F,C"})),
        dir.Write("huge.csv", Lines({"SIZE,DESCRIPTION,HIGH", "4,Fine,", "2000000000,Huge,D[T]"})),
        dir.Write("g.csv", garbage)};
    const ToolRun run = Tool(args);
    EXPECT_EQ(run.exitCode, 1) << "one file failed";
    const QJsonArray docs = run.Json().array();
    ASSERT_EQ(docs.size(), 4);
    EXPECT_NE(run.out.find("\"Max\":0.1,"), std::string::npos) << "0.1f printed as its shortest text";
    EXPECT_EQ(docs[0]["SpectrumList"][0]["Description"].toString(), "\"A, q\"");
    EXPECT_FALSE(docs[0]["ComboVisible"].toBool() || !docs[1]["ComboVisible"].toBool()) << "for two rows only";
    EXPECT_EQ(docs[1]["SpectrumList"][1]["Context"].toString(), "ORKA");
    EXPECT_EQ(docs[1]["Combo"][1]["spectrum"].toInt(), 1);
    EXPECT_EQ(docs[2]["result"].toInt(), 6);
    EXPECT_EQ(docs[2]["SpectrumList"].toArray().size(), 1);
    EXPECT_EQ(docs[3]["SpectrumList"].toArray().last()["Description"].toString(),
              QString::fromUtf8("caf\xc3\xa9 \xc3\xa9\x01"));
    const ToolRun said = test_support::RunTool(LUMISCOPE_CONFIG_TOOL, args, {}, true);
    const std::string diagnosis = "huge.csv:3: SIZE 2000000000 outside 0..8000: a spectrum holds at most 8000 points";
    EXPECT_NE(said.out.find(diagnosis + " (result 6)"), std::string::npos) << said.out;
}

// The sample passes the check in the installed tree's test.
TEST(LumiscopeConfig, CheckFailsABrokenCopyNamingTheProblem) {
    ScratchDir dir;
    std::filesystem::copy(kSample, dir.Path("configs"), std::filesystem::copy_options::recursive);
    dir.Write("configs/ORKA_Subsystems.csv", Lines({"FILENAME,DESCRIPTION", "NOPE.csv,Gone"}));
    const ToolRun bad = Tool({"check", dir.Path("configs")});
    EXPECT_EQ(bad.exitCode, 1);
    EXPECT_NE(bad.out.find("ORKA_Subsystems.csv:2: data-source file"), std::string::npos) << bad.out;
    EXPECT_NE(bad.out.find("1 problem found"), std::string::npos) << bad.out;
}

TEST(LumiscopeConfig, UsageErrorsExitWithTwo) {
    const std::vector<std::vector<std::string>> cases = {
        {}, {"bogus"}, {"machines"}, {"thresholds", "x.csv"}, {"thresholds", "x.csv", "--size", "0"},
        {"thresholds", "x.csv", "--size", "12x"}, {"thresholds", "x.csv", "--size", "8001"}, {"subsystems", "dir"},
    };
    for (const auto& args : cases) EXPECT_EQ(Tool(args).exitCode, 2) << (args.empty() ? "" : args[0]);
}

}  // namespace
