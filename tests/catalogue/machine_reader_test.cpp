// "config_machines.csv" and the subsystem lists.
#include <gtest/gtest.h>

#include "catalogue/combined_entry.h"
#include "catalogue/reader_messages.h"
#include "catalogue/readers.h"
#include "test_support.h"

namespace catalogue {
namespace {

using catalogue_test::Lines;
using catalogue_test::RecordingWindow;
using catalogue_test::ScratchDir;

std::vector<std::string> MachineRows(int n) {
    std::vector<std::string> rows{"MACHINE,CONFIGFILE,MACHINEFILE"};
    for (int i = 0; i < n; ++i)
        rows.push_back("M" + std::to_string(i) + ",M" + std::to_string(i) + ".csv,M" + std::to_string(i) + ".HIST");
    return rows;
}

TEST(ReadMachineFile, HeadersCommentsQuotesAndEmptyHeaderFields) {
    ScratchDir dir;
    struct Case { std::vector<std::string> lines; std::string name, configFile, machineFile; };
    const Case cases[] = {
        {{"MACHINE,CONFIGFILE,MACHINEFILE", "ORKA,ORKA_S.csv,ORKA.HIST"}, "ORKA", "ORKA_S.csv", "ORKA.HIST"},
        {{"machinefile, Machine ,configfile", "ORKA.HIST,ORKA,ORKA_S.csv"}, "ORKA", "ORKA_S.csv", "ORKA.HIST"},
        {{"; c", "", "% c", "# c", "MACHINE,CONFIGFILE,MACHINEFILE,X", "", "ORKA, ORKA_S.csv ,ORKA.HIST,x"},
         "ORKA", "ORKA_S.csv", "ORKA.HIST"},
        // A header that begins with a comma finds every key at position 0.
        {{",MACHINE,CONFIGFILE", "A,B,C"}, "A", "A", "A"},
        // A quoted field is one field and keeps its quotes.
        {{"MACHINE,CONFIGFILE,MACHINEFILE", "\"A,B\",c.csv,h"}, "\"A,B\"", "c.csv", "h"},
    };
    for (const Case& c : cases) {
        Catalogue cat;
        ASSERT_EQ(ReadMachineFile(cat, dir.Write("m.csv", Lines(c.lines))), 0) << c.lines[0];
        EXPECT_EQ(cat.MachineCount, 1);
        const MachineRecord& m = cat.MachineList[0];
        EXPECT_EQ(m.Name + "|" + m.ConfigFile + "|" + m.MachineFile, c.name + "|" + c.configFile + "|" + c.machineFile)
            << c.lines[0];
    }
}

TEST(ReadMachineFile, SixteenMachinesFitSeventeenFail) {
    ScratchDir dir;
    Catalogue cat;
    ASSERT_EQ(ReadMachineFile(cat, dir.Write("16.csv", Lines(MachineRows(16)))), 0);
    EXPECT_EQ(cat.MachineCount, 16);
    EXPECT_EQ(cat.MachineList[15].Name, "M15");

    Catalogue failing;
    failing.MachineCount = 3;
    EXPECT_NE(ReadMachineFile(failing, dir.Write("17.csv", Lines(MachineRows(17)))), 0);
    EXPECT_EQ(failing.MachineCount, 3) << "the count is only set at the end";
    EXPECT_EQ(failing.MachineList[15].Name, "M15") << "rows read before the failure stay";
    EXPECT_EQ(failing.LastReport.line, 18);
}

TEST(ReadMachineFile, MissingFileFailsAndMissingColumnsKeepTheRecords) {
    ScratchDir dir;
    Catalogue cat;
    EXPECT_EQ(ReadMachineFile(cat, dir.Path("none.csv")), static_cast<int16_t>(ErrorKind::FileNotFound));
    cat.MachineList[0].MachineFile = "OLD.HIST";
    ASSERT_EQ(ReadMachineFile(cat, dir.Write("m.csv", Lines({"MACHINE,CONFIGFILE", "X,x.csv"}))), 0);
    EXPECT_EQ(cat.MachineList[0].MachineFile, "OLD.HIST");
}

TEST(ReadSubsystemList, LocalEntriesComeFirstAndCaptionTheMenu) {
    ScratchDir dir;
    dir.Write("prog/SpectrumInfo.csv", Lines({"FILENAME,DESCRIPTION", "LOCAL.csv,Local spectra"}));
    dir.Write("configs/ORKA_S.csv", Lines({"FILENAME,DESCRIPTION", "BPM.csv,Monitors", "BLM.csv, Losses "}));
    Catalogue cat;
    cat.ProgramPath = dir.Path("prog") + "\\";
    cat.ConfigPath = dir.Path("configs") + "\\";
    RecordingWindow window;
    ASSERT_EQ(ReadSubsystemList(cat, window, cat.ConfigPath + "ORKA_S.csv"), 0);
    ASSERT_EQ(cat.SubsystemCount, 3);
    EXPECT_EQ(cat.SubsystemList[0].Directory, cat.ProgramPath);
    EXPECT_EQ(cat.SubsystemList[0].FileName, "LOCAL.csv");
    EXPECT_EQ(cat.SubsystemList[1].Directory, cat.ConfigPath);
    EXPECT_EQ(cat.SubsystemList[2].Description, "Losses");
    std::vector<std::string> expected{"menu 0 Local spectra shown", "menu 1 Monitors shown", "menu 2 Losses shown"};
    for (int i = 3; i < 15; ++i) expected.push_back("hide " + std::to_string(i));
    EXPECT_EQ(window.events, expected);
}

TEST(ReadSubsystemList, WithoutLocalListOnlyTheMachineFile) {
    ScratchDir dir;
    dir.Write("configs/ORKA_S.csv", Lines({"FILENAME,DESCRIPTION", "BPM.csv,Monitors"}));
    for (const std::string& programPath : {std::string(), dir.Path("prog-without-list") + "\\"}) {
        Catalogue cat;
        cat.ProgramPath = programPath;
        cat.ConfigPath = dir.Path("configs") + "\\";
        RecordingWindow window;
        ASSERT_EQ(ReadSubsystemList(cat, window, cat.ConfigPath + "ORKA_S.csv"), 0);
        EXPECT_EQ(cat.SubsystemCount, 1);
        EXPECT_EQ(cat.SubsystemList[0].FileName, "BPM.csv");
    }
}

TEST(ReadSubsystemList, FifteenFitTheMenuSixteenFailAtTheCaptionSeventeenAtTheTable) {
    ScratchDir dir;
    auto rows = [](int n) {
        std::vector<std::string> lines{"FILENAME,DESCRIPTION"};
        for (int i = 0; i < n; ++i) lines.push_back("F" + std::to_string(i) + ".csv,S" + std::to_string(i));
        return lines;
    };
    struct Case { int rows; bool ok; int16_t count; int menuEntries; };
    const Case cases[] = {{15, true, 15, 15}, {16, false, 16, 15}, {17, false, 0, 0}};
    for (const Case& c : cases) {
        Catalogue cat;
        RecordingWindow window;
        const int16_t result = ReadSubsystemList(cat, window, dir.Write("s.csv", Lines(rows(c.rows))));
        EXPECT_EQ(result == 0, c.ok) << c.rows;
        EXPECT_EQ(cat.SubsystemCount, c.count) << c.rows;
        EXPECT_EQ(static_cast<int>(window.events.size()), c.menuEntries) << c.rows;
        if (c.rows == 16) {
            EXPECT_EQ(result, static_cast<int16_t>(ErrorKind::MenuEntryMissing));
        }
    }
}

TEST(CombinedEntry, SubsystemFileNamePicksTheMachine) {
    struct Case { std::string fileName; std::optional<int16_t> machine; };
    const Case cases[] = {
        {"ORKA_PS.csv", 0}, {"vesta_ps.csv", 1}, {"Lyras_PS.csv", 2},
        // Searched in the order ORKA, VESTA, LYRAS, not by position in the name.
        {"LYRAS_TO_ORKA.csv", 0}, {"VESTA_LYRAS.csv", 1},
        {"KALM_BPM.csv", std::nullopt}, {"ORK_A.csv", std::nullopt}, {"", std::nullopt},
    };
    for (const Case& c : cases) EXPECT_EQ(MachineNamedInFileName(c.fileName), c.machine) << c.fileName;
}

TEST(ReaderMessages, TextsAreExact) {
    struct Case { std::string text, expected; };
    const Case cases[] = {
        {ReadMachineInfoFailedText(), "Read Machine-Info File config_machines.csv failed !"},
        {ReadDataSourceFailedText("ORKA_Subsystems.csv"), "Read Data Source Config File: ORKA_Subsystems.csv failed !"},
        {std::string(kReadMachineSourceFailedText), "Read Machine Source Config File failed !"},
        {std::string(kThresholdOutOfBoundsText), "Threshold array out of bounds !"},
    };
    for (const Case& c : cases) EXPECT_EQ(c.text, c.expected);
}

}  // namespace
}  // namespace catalogue
