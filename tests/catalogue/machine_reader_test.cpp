// "config_machines.csv", the subsystem lists, the machine history files and
// the texts of their failures.
#include <gtest/gtest.h>

#include "catalogue/combined_entry.h"
#include "catalogue/readers.h"
#include "test_support.h"

namespace catalogue {
namespace {

using namespace catalogue_test;

TEST(ReadMachineFile, HeadersCommentsQuotesAndEmptyHeaderFields) {
    ScratchDir dir;
    struct Case { Texts lines; std::string record; };
    const Case cases[] = {
        {{"machinefile, Machine ,configfile", "ORKA.HIST,ORKA,ORKA_S.csv"}, "ORKA|ORKA_S.csv|ORKA.HIST"},
        {{"; c", "", "% c", "# c", "MACHINE,CONFIGFILE,MACHINEFILE", "", "ORKA, O.csv ,O.HIST"}, "ORKA|O.csv|O.HIST"},
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
        const std::string file = dir.Write("m.csv", Lines(Numbered({"MACHINE,CONFIGFILE"}, c.rows, "M", ".csv,S")));
        EXPECT_EQ(ReadMachineFile(cat, file), c.result);
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
        const std::string file = dir.Write("s.csv", Lines(Numbered({"FILENAME,DESCRIPTION"}, c.rows, "F", ".csv,S")));
        EXPECT_EQ(ReadSubsystemList(cat, window, file), c.result);
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

const std::string kHistoryHeader =
    "CONTEXT,SERVER,PROPERTY,HSTSERVER,HSTPROPERTY,ARCSERVER,ARCPROPERTY,DESCRIPTION,MAX,MIN,EGU,SHORTNAME";

TEST(ReadHistoryFile, ReadsAtMostTenQuantities) {
    ScratchDir dir;
    Catalogue cat;
    const Texts lines = Numbered({kHistoryHeader}, 12, "7,S,P", ",/O/H,P,ORKA,P,D,1,0,A,I");
    ASSERT_EQ(ReadHistoryFile(cat, dir.Write("h.HIST", Lines(lines))), 0);
    EXPECT_EQ(cat.HistoryCount, 10);
    EXPECT_EQ(cat.HistoryList[9].Property + "|" + cat.HistoryList[10].Property, "P9|") << "slot 10 is never filled";
    EXPECT_EQ(cat.HistoryList[0].Size, 1) << "the first field is read as the size, then replaced";
}

TEST(ReadHistoryFile, HistPropertyAndLabelRules) {
    ScratchDir dir;
    struct Case { std::string hst, egu, shortName, property, hstAfter, label; };
    const Case cases[] = {
        {"BEAM", "mA", "I", "CURRENT", "BEAM.HIST", "I    (mA)"}, {"BEAM.HIST", "", "I", "CURRENT", "BEAM.HIST", "I"},
        {"X.HIST.OLD", "", "", "CURRENT", "X.HIST.OLD", "CURRENT"}, {"", "GeV", "", "ENERGY", "", "ENERGY    (GeV)"},
    };
    for (const Case& c : cases) {
        Catalogue cat;
        ASSERT_EQ(ReadHistoryFile(cat, dir.Write("h.HIST", Lines({kHistoryHeader, "ORKA,S," + c.property + ",/O/H," + c.hst +
                                                                           ",ORKA,P,D,1,0," + c.egu + "," + c.shortName}))), 0);
        EXPECT_EQ(cat.HistoryList[0].HstProperty + "|" + cat.HistoryList[0].Label, c.hstAfter + "|" + c.label);
    }
}

TEST(ReadHistoryFile, HashAndEmptyLinesAreNotCommentsAndMissingColumnsReadEmptyButLimitsStay) {
    ScratchDir dir;
    Catalogue cat;
    cat.HistoryList[2].Max = 99.0f;
    cat.HistoryList[2].Egu = "old";
    cat.HistoryList[2].ArcServer = "old";
    // A first line beginning with "#" is the header; the real header is data.
    ASSERT_EQ(ReadHistoryFile(cat, dir.Write("h.HIST", Lines({"; skipped", "% skipped", "#PROPERTY,DESCRIPTION",
                                                                 "PROPERTY,DESCRIPTION", "", "I,Current"}))), 0);
    EXPECT_EQ(cat.HistoryCount, 3);
    EXPECT_EQ(cat.HistoryList[0].Property + "|" + cat.HistoryList[0].Description, "|DESCRIPTION");
    const SpectrumRecord& last = cat.HistoryList[2];
    EXPECT_EQ(last.Description + "|" + last.ArcServer + "|" + last.Label, "Current||    (old)") << "no PROPERTY column";
    EXPECT_EQ(last.Max, 99.0f);
}

TEST(ReadHistoryFile, FailuresReportTheLine) {
    ScratchDir dir;
    Catalogue cat;
    EXPECT_EQ(ReadHistoryFile(cat, dir.Path("none.HIST")), static_cast<int16_t>(ErrorKind::FileNotFound));
    for (const char* row : {"ORKA,S,P,,,,,D,1e99,0,,", "3000000000,S,P,,,,,D,1,0,,"}) {
        EXPECT_EQ(ReadHistoryFile(cat, dir.Write("h.HIST", Lines({kHistoryHeader, "ORKA,S,P,,,,,D,1,0,,", row}))),
                  static_cast<int16_t>(ErrorKind::Overflow)) << row;
        EXPECT_EQ(cat.LastReport.line, 3);
        EXPECT_EQ(cat.LastReport.rowsStored, 1);
    }
}

}  // namespace
}  // namespace catalogue
