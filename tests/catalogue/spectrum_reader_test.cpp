// Data-source files: the channel catalogue and the spectrum chooser.
#include <gtest/gtest.h>

#include "catalogue/readers.h"
#include "test_support.h"

namespace catalogue {
namespace {

using catalogue_test::Lines;
using catalogue_test::RecordingWindow;
using catalogue_test::ScratchDir;

const std::string kHeader = "CONTEXT,SERVER,PROPERTY,SIZE,DESCRIPTION,MAX,MIN,EGU,APPEND";

struct Read {
    Catalogue cat;
    RecordingWindow window;
    int16_t result = -99;
};

void ReadInto(Read& read, const ScratchDir& dir, const std::vector<std::string>& lines,
              const std::string& name = "c.csv") {
    read.window = RecordingWindow();
    read.result = ReadSpectrumConfig(read.cat, read.window, dir.Write(name, Lines(lines)));
}

TEST(ReadSpectrumConfig, OneRowHidesTheChooserAndPreparesTheChannel) {
    ScratchDir dir;
    Read read;
    ReadInto(read, dir, {kHeader, "ORKA,SRV/DEV,P,10,Only,5,-5,mm,"});
    ASSERT_EQ(read.result, 0);
    EXPECT_EQ(read.cat.SpectrumCount, 1);
    EXPECT_TRUE(read.cat.CatalogueFresh);
    EXPECT_TRUE(read.cat.CatalogueFresh2);
    EXPECT_EQ(read.window.events,
              (std::vector<std::string>{"clear combo", "hide combo", "add Only", "select 0", "prepare 0"}));
}

TEST(ReadSpectrumConfig, AppendedRowsLeaveTheChooserOnlyWhenUnitsAndLimitsMatch) {
    ScratchDir dir;
    struct Case { std::string row2Max; std::vector<std::string> combo; std::vector<bool> appended; };
    const Case cases[] = {
        {"5", {"Head"}, {false, true, true}},
        {"6", {"Head", "Two"}, {false, false, true}},
    };
    for (const Case& c : cases) {
        Read read;
        ReadInto(read, dir, {kHeader, "C,S/D1,P,4,Head,5,-5,mm,", "C,S/D2,P,4,Two," + c.row2Max + ",-5,mm,yes",
                             "C,S/D3,P,4,Three," + c.row2Max + ",-5,mm,True"});
        ASSERT_EQ(read.result, 0);
        EXPECT_EQ(read.window.combo, c.combo) << c.row2Max;
        for (int i = 0; i < 3; ++i) EXPECT_EQ(read.cat.SpectrumList[i].Append, c.appended[i]) << i;
        EXPECT_TRUE(read.window.comboVisible);
        EXPECT_EQ(read.window.events.back(), "select 0");
    }
}

TEST(ReadSpectrumConfig, ComboMapSkipsAppendedRows) {
    ScratchDir dir;
    Read read;
    ReadInto(read, dir, {kHeader, "C,S/A,P,4,A,5,-5,mm,", "C,S/A2,P,4,A2,5,-5,mm,YES", "C,S/B,P,4,B,1,0,V,",
                         "C,S/C,P,4,C,1,0,V,no"});
    ASSERT_EQ(read.result, 0);
    EXPECT_EQ(read.window.combo, (std::vector<std::string>{"A", "B", "C"}));
    EXPECT_EQ(read.cat.ComboToSpectrum[0], 0);
    EXPECT_EQ(read.cat.ComboToSpectrum[1], 2);
    EXPECT_EQ(read.cat.ComboToSpectrum[2], 3);
}

TEST(ReadSpectrumConfig, ReverseIsIgnoredOnTheFirstRowOnly) {
    ScratchDir dir;
    Read read;
    ReadInto(read, dir, {kHeader, "C,S/A,P,4,A,5,-5,mm,REVERSE", "C,S/B,P,4,B,5,-5,mm,yes reverse",
                         "C,S/C,P,4,C,9,-5,mm,Reverse"});
    ASSERT_EQ(read.result, 0);
    EXPECT_FALSE(read.cat.SpectrumList[0].Reverse);
    EXPECT_FALSE(read.cat.SpectrumList[0].Append);
    EXPECT_TRUE(read.cat.SpectrumList[1].Reverse);
    EXPECT_TRUE(read.cat.SpectrumList[1].Append);
    EXPECT_TRUE(read.cat.SpectrumList[2].Reverse);
    EXPECT_FALSE(read.cat.SpectrumList[2].Append);
}

TEST(ReadSpectrumConfig, ServerSplitsAtTheFirstSlashOrKeepsTheDevice) {
    ScratchDir dir;
    Read read;
    ReadInto(read, dir, {kHeader, "C,SRV/DEV1,P,1,A,1,0,,", "C,SRV,P,1,B,1,0,,", "C,X/Y/Z,P,1,C,1,0,,",
                         "C,/LEAD,P,1,D,1,0,,"});
    ASSERT_EQ(read.result, 0);
    struct Expect { std::string server, device; };
    const Expect expected[] = {{"SRV", "DEV1"}, {"SRV", "DEV1"}, {"X", "Y/Z"}, {"", "LEAD"}};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(read.cat.SpectrumList[i].Server, expected[i].server) << i;
        EXPECT_EQ(read.cat.SpectrumList[i].Device, expected[i].device) << i;
    }
}

TEST(ReadSpectrumConfig, LowReplacesHighEvenWhenEmpty) {
    ScratchDir dir;
    struct Case { std::string header, row, source; };
    const Case cases[] = {
        {kHeader + ",HIGH,LOW", "C,S/D,P,1,A,1,0,,,a.csv,b.csv", "b.csv"},
        {kHeader + ",HIGH,LOW", "C,S/D,P,1,A,1,0,,,a.csv,", ""},
        {kHeader + ",LOW,HIGH", "C,S/D,P,1,A,1,0,,,b.csv,a.csv", "b.csv"},
        {kHeader + ",HIGH", "C,S/D,P,1,A,1,0,,,a.csv", "a.csv"},
    };
    for (const Case& c : cases) {
        Read read;
        ReadInto(read, dir, {c.header, c.row});
        ASSERT_EQ(read.result, 0);
        EXPECT_EQ(read.cat.SpectrumList[0].ThresholdSource, c.source) << c.header << " | " << c.row;
        EXPECT_EQ(read.cat.SpectrumList[0].HighThresholds.size(), 1u);
        EXPECT_EQ(read.cat.SpectrumList[0].LowThresholds.size(), 1u);
    }
}

TEST(ReadSpectrumConfig, RowLimitIsOneHundredAndOneEntriesFailingAtTheEnd) {
    ScratchDir dir;
    auto rows = [](int n) {
        std::vector<std::string> lines{kHeader};
        for (int i = 0; i < n; ++i) lines.push_back("C,S/D" + std::to_string(i) + ",P,1,R" + std::to_string(i) + ",1,0,,");
        return lines;
    };
    struct Case { int rows; bool ok; int16_t stored; int32_t failedLine; int16_t count; };
    // 100 rows fit with the entry behind them; 101 fill the table, set the
    // count and fail when the entry behind the last row is reset; 102 fail
    // while storing row 102, before the count is touched.
    const Case cases[] = {{100, true, 100, 0, 100}, {101, false, 101, 0, 101}, {102, false, 101, 103, 7}};
    for (const Case& c : cases) {
        Read read;
        read.cat.SpectrumCount = 7;
        ReadInto(read, dir, rows(c.rows));
        EXPECT_EQ(read.result == 0, c.ok) << c.rows;
        EXPECT_EQ(read.cat.LastReport.rowsStored, c.stored) << c.rows;
        EXPECT_EQ(read.cat.LastReport.line, c.failedLine) << c.rows;
        EXPECT_EQ(read.cat.SpectrumCount, c.count) << c.rows;
        EXPECT_EQ(read.cat.SpectrumList[100].Description, c.rows >= 101 ? "R100" : "") << c.rows;
        if (!c.ok) {
            EXPECT_TRUE(read.window.events.empty()) << "the chooser is left alone";
        }
    }
}

TEST(ReadSpectrumConfig, MissingColumnsCarryOverBetweenRowsAndFiles) {
    ScratchDir dir;
    Read read;
    ReadInto(read, dir, {kHeader + ",HSTSERVER,TAG,PROPLINK,PROPSHORT,EXTRAPROPCOMBOINDEX",
                         "ORKA,S/D,P,8,A,5,-5,mm,,/ORKA/H,T,3,X,1", "VESTA,S/E,Q,9,B,5,-5,mm,,/VESTA/H,U,4,Y,0"},
             "first.csv");
    ASSERT_EQ(read.result, 0);
    // The second file has neither CONTEXT nor HSTSERVER nor TAG nor PROPLINK.
    ReadInto(read, dir, {"SERVER,PROPERTY,DESCRIPTION", "S2/F,R,C", "S3,S,D"}, "second.csv");
    ASSERT_EQ(read.result, 0);
    const SpectrumRecord& c = read.cat.SpectrumList[0];
    EXPECT_EQ(c.Context, "VESTA");
    EXPECT_EQ(c.HstServer, "/VESTA/H");
    EXPECT_EQ(c.Size, 9);
    EXPECT_EQ(c.Egu, "mm");
    EXPECT_EQ(c.PropLink, -1) << "a missing PROPLINK column means -1, not carry-over";
    EXPECT_EQ(c.PropShort, "Y") << "PROPSHORT is kept when PROPLINK is missing";
    EXPECT_EQ(c.ExtraPropComboIndex, -1);
    // The carried-over tag gets one more slash per row.
    EXPECT_EQ(read.cat.SpectrumList[0].Tag, "//U");
    EXPECT_EQ(read.cat.SpectrumList[1].Tag, "///U");
    EXPECT_EQ(read.cat.SpectrumList[1].Device, "F");
    EXPECT_EQ(read.cat.SpectrumList[1].Server, "S3");
}

TEST(ReadSpectrumConfig, ExternalDeviceNamesNeedANonEmptyProperty) {
    ScratchDir dir;
    Read read;
    ReadInto(read, dir, {kHeader + ",EXTDEVNAMEDEV,EXTDEVNAMEPROP", "C,S/D,P,1,A,1,0,,,/C/S/LOC,LOCATION",
                         "C,S/D,P,1,B,1,0,,,,"});
    ASSERT_EQ(read.result, 0);
    EXPECT_TRUE(read.cat.SpectrumList[0].HasExtDevName);
    EXPECT_EQ(read.cat.SpectrumList[0].ExtDevNameDev, "/C/S/LOC");
    EXPECT_FALSE(read.cat.SpectrumList[1].HasExtDevName);
    EXPECT_EQ(read.cat.SpectrumList[1].ExtDevNameProp, "LOCATION") << "the old text stays";
    EXPECT_EQ(read.cat.SpectrumList[1].ExtDevNameDev, "");
}

TEST(ReadSpectrumConfig, EmptyLinesAreRowsAndCommentsAreNot) {
    ScratchDir dir;
    Read read;
    ReadInto(read, dir, {"; comment", "# comment", kHeader, "C,S/D,P,3,A,5,-5,mm,", "", "%x", "C,S/E,P,4,B,5,-5,mm,"});
    ASSERT_EQ(read.result, 0);
    EXPECT_EQ(read.cat.SpectrumCount, 3);
    EXPECT_EQ(read.cat.SpectrumList[1].Description, "") << "the empty line reads empty fields";
    EXPECT_EQ(read.cat.SpectrumList[1].Size, 0);
    EXPECT_EQ(read.cat.SpectrumList[2].Description, "B");
}

TEST(ReadSpectrumConfig, ReadingResetsTheSpectrumTraceAndAFailureKeepsTheChooser) {
    ScratchDir dir;
    Read read;
    read.cat.SpectrumTrace = 42;
    ReadInto(read, dir, {kHeader, "C,S/D,P,3,A,5,-5,mm,"});
    EXPECT_EQ(read.cat.SpectrumTrace, -1);
    ReadInto(read, dir, {kHeader, "C,S/D,P,1e40,A,5,-5,mm,"});
    EXPECT_EQ(read.result, static_cast<int16_t>(ErrorKind::Overflow));
    EXPECT_EQ(read.cat.LastReport.line, 2);
    EXPECT_TRUE(read.window.events.empty());
}

}  // namespace
}  // namespace catalogue
