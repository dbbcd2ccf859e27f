// "config_machines.csv", the subsystem lists and the texts of their failures.
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
using Texts = std::vector<std::string>;

Texts Rows(const std::string& header, int n, const std::string& pattern) {
    Texts rows{header};
    for (int i = 0; i < n; ++i) rows.push_back(pattern + std::to_string(i) + ".csv,S" + std::to_string(i));
    return rows;
}

TEST(ReadMachineFile, HeadersCommentsQuotesAndEmptyHeaderFields) {
    ScratchDir dir;
    struct Case { Texts lines; std::string record; };
    const Case cases[] = {
        {{"machinefile, Machine ,configfile", "ORKA.HIST,ORKA,ORKA_S.csv"}, "ORKA|ORKA_S.csv|ORKA.HIST"},
        {{"; c", "", "% c", "# c", "MACHINE,CONFIGFILE,MACHINEFILE", "", "ORKA, O.csv ,O.HIST"}, "ORKA|O.csv|O.HIST"},
        {{",MACHINE,CONFIGFILE", "A,B,C"}, "A|A|A"},  // every key found at the leading empty field
        {{"MACHINE,CONFIGFILE,MACHINEFILE", "\"A,B\",c.csv,h"}, "\"A,B\"|c.csv|h"},
        {{"MACHINE,CONFIGFILE", "X,x.csv"}, "X|x.csv|OLD.HIST"},  // a missing column keeps the record's value
    };
    for (const Case& c : cases) {
        Catalogue cat;
        cat.MachineList[0].MachineFile = "OLD.HIST";
        ASSERT_EQ(ReadMachineFile(cat, dir.Write("m.csv", Lines(c.lines))), 0) << c.lines[0];
        EXPECT_EQ(cat.MachineCount, 1);
        const MachineRecord& m = cat.MachineList[0];
        EXPECT_EQ(m.Name + "|" + m.ConfigFile + "|" + m.MachineFile, c.record);
    }
}

TEST(ReadMachineFile, SixteenMachinesFitASeventeenthFailsLeavingTheCount) {
    ScratchDir dir;
    struct Case { int rows; int16_t result, count; int32_t line; };
    for (const Case c : {Case{16, 0, 16, 0}, {17, static_cast<int16_t>(ErrorKind::OutOfBounds), 3, 18}}) {
        Catalogue cat;
        cat.MachineCount = 3;
        EXPECT_EQ(ReadMachineFile(cat, dir.Write("m.csv", Lines(Rows("MACHINE,CONFIGFILE", c.rows, "M")))), c.result);
        EXPECT_EQ(cat.MachineCount, c.count) << c.rows;
        EXPECT_EQ(cat.MachineList[15].Name, "M15.csv") << "rows read before a failure stay";
        EXPECT_EQ(cat.LastReport.line, c.line);
    }
    Catalogue cat;
    EXPECT_EQ(ReadMachineFile(cat, dir.Path("none.csv")), static_cast<int16_t>(ErrorKind::FileNotFound));
}

TEST(ReadSubsystemList, LocalEntriesComeFirstAndCaptionTheMenu) {
    ScratchDir dir;
    dir.Write("prog/SpectrumInfo.csv", Lines({"FILENAME,DESCRIPTION", "LOCAL.csv,Local spectra"}));
    dir.Write("configs/ORKA_S.csv", Lines({"FILENAME,DESCRIPTION", "BPM.csv,Monitors", "BLM.csv, Losses "}));
    struct Case { std::string programPath; Texts captions; };
    const Case cases[] = {
        {dir.Path("prog") + "\\", {"menu 0 Local spectra shown", "menu 1 Monitors shown", "menu 2 Losses shown"}},
        {dir.Path("elsewhere") + "\\", {"menu 0 Monitors shown", "menu 1 Losses shown"}},
        {"", {"menu 0 Monitors shown", "menu 1 Losses shown"}},
    };
    for (const Case& c : cases) {
        Catalogue cat;
        cat.ProgramPath = c.programPath;
        cat.ConfigPath = dir.Path("configs") + "\\";
        RecordingWindow window;
        ASSERT_EQ(ReadSubsystemList(cat, window, cat.ConfigPath + "ORKA_S.csv"), 0);
        Texts expected = c.captions;
        for (auto i = expected.size(); i < 15; ++i) expected.push_back("hide " + std::to_string(i));
        EXPECT_EQ(window.events, expected);
        EXPECT_EQ(cat.SubsystemCount, static_cast<int16_t>(c.captions.size()));
        EXPECT_EQ(cat.SubsystemList[0].Directory, c.captions.size() == 3 ? cat.ProgramPath : cat.ConfigPath);
    }
}

TEST(ReadSubsystemList, FifteenFitTheMenuSixteenFailAtTheCaptionSeventeenAtTheTable) {
    ScratchDir dir;
    struct Case { int rows; int16_t result, count; size_t menuEntries; };
    const Case cases[] = {{15, 0, 15, 15}, {16, static_cast<int16_t>(ErrorKind::MenuEntryMissing), 16, 15},
                          {17, static_cast<int16_t>(ErrorKind::OutOfBounds), 0, 0}};
    for (const Case& c : cases) {
        Catalogue cat;
        RecordingWindow window;
        EXPECT_EQ(ReadSubsystemList(cat, window, dir.Write("s.csv", Lines(Rows("FILENAME,DESCRIPTION", c.rows, "F")))),
                  c.result);
        EXPECT_EQ(cat.SubsystemCount, c.count) << c.rows;
        EXPECT_EQ(window.events.size(), c.menuEntries) << c.rows;
    }
}

TEST(CombinedEntry, SubsystemFileNamePicksTheMachineInTheOrderOrkaVestaLyras) {
    struct Case { std::string fileName; std::optional<int16_t> machine; };
    const Case cases[] = {{"ORKA_PS.csv", 0}, {"vesta_ps.csv", 1}, {"Lyras_PS.csv", 2}, {"LYRAS_TO_ORKA.csv", 0},
                          {"VESTA_LYRAS.csv", 1}, {"KALM_BPM.csv", std::nullopt}, {"ORK_A.csv", std::nullopt}};
    for (const Case& c : cases) EXPECT_EQ(MachineNamedInFileName(c.fileName), c.machine) << c.fileName;
}

TEST(ReaderMessages, TextsAreTheSystemsOwn) {
    EXPECT_EQ(ReadMachineInfoFailedText(), "Read Machine-Info File config_machines.csv failed !");
    EXPECT_EQ(ReadDataSourceFailedText("O_S.csv"), "Read Data Source Config File: O_S.csv failed !");
    EXPECT_EQ(kReadMachineSourceFailedText, "Read Machine Source Config File failed !");
    EXPECT_EQ(kThresholdOutOfBoundsText, "Threshold array out of bounds !");
}

}  // namespace
}  // namespace catalogue
