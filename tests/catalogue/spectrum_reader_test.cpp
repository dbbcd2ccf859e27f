// Data-source files: the channel catalogue and the spectrum chooser.
#include <gtest/gtest.h>

#include "catalogue/readers.h"
#include "test_support.h"

namespace catalogue {
namespace {

using catalogue_test::Lines;
using catalogue_test::RecordingWindow;
using catalogue_test::ScratchDir;
using Texts = std::vector<std::string>;

const std::string kHeader = "CONTEXT,SERVER,PROPERTY,SIZE,DESCRIPTION,MAX,MIN,EGU,APPEND";

struct Read {
    ScratchDir dir;
    Catalogue cat;
    RecordingWindow window;
    int16_t result = -99;

    // Reads the lines as one more file into the same catalogue.
    Read& File(const Texts& lines) {
        window = RecordingWindow();
        result = ReadSpectrumConfig(cat, window, dir.Write("c.csv", Lines(lines)));
        return *this;
    }
    const SpectrumRecord& Row(int i) const { return cat.SpectrumList[i]; }
};

TEST(ReadSpectrumConfig, ChooserListsHeadRowsAndHidesForASingleRow) {
    struct Case { Texts rows; Texts events; std::vector<int16_t> comboToSpectrum; std::vector<bool> appended; };
    const Case cases[] = {
        {{"C,S/D,P,10,Only,5,-5,mm,"},
         {"clear combo", "hide combo", "add Only", "select 0", "prepare 0"}, {0}, {false}},
        // Rows 2 and 3 continue row 1 when EGU, MAX and MIN match...
        {{"C,S/A,P,4,Head,5,-5,mm,", "C,S/B,P,4,Two,5,-5,mm,yes", "C,S/C,P,4,Three,5,-5,mm,True"},
         {"clear combo", "show combo", "add Head", "select 0"}, {0}, {false, true, true}},
        // ...and are listed when MAX differs; "no" never appends.
        {{"C,S/A,P,4,Head,5,-5,mm,", "C,S/B,P,4,Two,6,-5,mm,yes", "C,S/C,P,4,Three,6,-5,mm,YES",
          "C,S/D,P,4,Four,6,-5,mm,no"},
         {"clear combo", "show combo", "add Head", "add Two", "add Four", "select 0"}, {0, 1, 3},
         {false, false, true, false}},
    };
    for (const Case& c : cases) {
        Texts lines{kHeader};
        lines.insert(lines.end(), c.rows.begin(), c.rows.end());
        Read read;
        ASSERT_EQ(read.File(lines).result, 0);
        EXPECT_EQ(read.cat.SpectrumCount, static_cast<int16_t>(c.rows.size()));
        EXPECT_EQ(read.window.events, c.events);
        for (std::size_t p = 0; p < c.comboToSpectrum.size(); ++p)
            EXPECT_EQ(read.cat.ComboToSpectrum[static_cast<long>(p)], c.comboToSpectrum[p]) << p;
        for (std::size_t i = 0; i < c.appended.size(); ++i) EXPECT_EQ(read.Row(static_cast<int>(i)).Append, c.appended[i]);
        EXPECT_FALSE(read.cat.SpectrumList[static_cast<long>(c.rows.size())].Append) << "the entry behind the last row";
        EXPECT_EQ(read.cat.CatalogueFresh, c.rows.size() == 1);
    }
}

TEST(ReadSpectrumConfig, FirstRowsAppendIsIgnoredLaterReverseStandsAlone) {
    Read read;
    read.File({kHeader, "C,S/A,P,4,A,5,-5,mm,REVERSE yes", "C,S/B,P,4,B,5,-5,mm,yes reverse",
               "C,S/C,P,4,C,9,-5,mm,Reverse", "C,S/D,P,4,D,9,-5,mm,"});
    ASSERT_EQ(read.result, 0);
    const bool expected[][2] = {{false, false}, {true, true}, {false, true}, {false, false}};  // Append, Reverse
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(read.Row(i).Append, expected[i][0]) << i;
        EXPECT_EQ(read.Row(i).Reverse, expected[i][1]) << i;
    }
}

TEST(ReadSpectrumConfig, ServerSplitsAtTheFirstSlashOrKeepsTheDevice) {
    Read read;
    read.File({kHeader, "C,SRV/DEV1,P,1,A,1,0,,", "C,SRV2,P,1,B,1,0,,", "C,X/Y/Z,P,1,C,1,0,,", "C,/LEAD,P,1,D,1,0,,"});
    ASSERT_EQ(read.result, 0);
    const std::pair<std::string, std::string> expected[] = {{"SRV", "DEV1"}, {"SRV2", "DEV1"}, {"X", "Y/Z"}, {"", "LEAD"}};
    for (int i = 0; i < 4; ++i) EXPECT_EQ(std::make_pair(read.Row(i).Server, read.Row(i).Device), expected[i]) << i;
}

TEST(ReadSpectrumConfig, LowReplacesHighEvenWhenEmpty) {
    struct Case { std::string columns, values, source; };
    const Case cases[] = {
        {"HIGH,LOW", "a.csv,b.csv", "b.csv"}, {"HIGH,LOW", "a.csv,", ""}, {"LOW,HIGH", "b.csv,a.csv", "b.csv"},
        {"HIGH", "a.csv", "a.csv"}, {"HIGH", "DEV[THR]", "DEV[THR]"},
    };
    for (const Case& c : cases) {
        Read read;
        ASSERT_EQ(read.File({kHeader + "," + c.columns, "C,S/D,P,3,A,1,0,,," + c.values}).result, 0);
        EXPECT_EQ(read.Row(0).ThresholdSource, c.source) << c.columns << " " << c.values;
        EXPECT_EQ(read.Row(0).HighThresholds.size() + read.Row(0).LowThresholds.size(), 2u) << "one element each";
    }
}

TEST(ReadSpectrumConfig, RowLimitIsOneHundredAndOneEntriesFailingAtTheEnd) {
    struct Case { int rows; bool ok; int16_t stored; int32_t failedLine; int16_t count; };
    // 100 rows fit with the entry behind them; 101 fill the table, set the
    // count and fail when the entry behind the last row is reset; 102 fail
    // while storing row 102, before the count is touched.
    const Case cases[] = {{100, true, 100, 0, 100}, {101, false, 101, 0, 101}, {102, false, 101, 103, 7}};
    for (const Case& c : cases) {
        Texts lines{kHeader};
        for (int i = 0; i < c.rows; ++i) lines.push_back("C,S/D,P,1,R" + std::to_string(i) + ",1,0,,");
        Read read;
        read.cat.SpectrumCount = 7;
        read.File(lines);
        EXPECT_EQ(read.result == 0, c.ok) << c.rows;
        EXPECT_EQ(read.cat.LastReport.rowsStored, c.stored) << c.rows;
        EXPECT_EQ(read.cat.LastReport.line, c.failedLine) << c.rows;
        EXPECT_EQ(read.cat.SpectrumCount, c.count) << c.rows;
        EXPECT_EQ(read.Row(100).Description, c.rows >= 101 ? "R100" : "") << c.rows;
        EXPECT_EQ(read.window.events.empty(), !c.ok) << "a failure leaves the chooser alone";
    }
}

TEST(ReadSpectrumConfig, MissingColumnsCarryOverBetweenRowsAndFiles) {
    Read read;
    read.File({kHeader + ",HSTSERVER,TAG,PROPLINK,PROPSHORT,EXTRAPROPCOMBOINDEX",
               "ORKA,S/D,P,8,A,5,-5,mm,,/ORKA/H,T,3,X,1", "VESTA,S/E,Q,9,B,5,-5,mm,,/VESTA/H,U,4,Y,0"});
    // The second file has neither CONTEXT nor HSTSERVER nor TAG nor PROPLINK.
    ASSERT_EQ(read.File({"SERVER,PROPERTY,DESCRIPTION", "S2/F,R,C", "S3,S,D"}).result, 0);
    const SpectrumRecord& c = read.Row(0);
    EXPECT_EQ(c.Context + " " + c.HstServer + " " + std::to_string(c.Size) + " " + c.Egu, "VESTA /VESTA/H 9 mm");
    EXPECT_EQ(c.PropLink, -1) << "a missing PROPLINK column means -1, not carry-over";
    EXPECT_EQ(c.PropShort, "Y") << "PROPSHORT is kept when PROPLINK is missing";
    EXPECT_EQ(c.ExtraPropComboIndex, -1);
    // The carried-over tag gets one more slash per row.
    EXPECT_EQ(read.Row(0).Tag + " " + read.Row(1).Tag, "//U ///U");
    EXPECT_EQ(read.Row(1).Server + " " + read.Row(1).Device, "S3 F");
}

TEST(ReadSpectrumConfig, ExternalDeviceNamesNeedANonEmptyProperty) {
    Read read;
    read.File({kHeader + ",EXTDEVNAMEDEV,EXTDEVNAMEPROP", "C,S/D,P,1,A,1,0,,,/C/S/LOC,LOCATION", "C,S/D,P,1,B,1,0,,,,"});
    ASSERT_EQ(read.result, 0);
    EXPECT_TRUE(read.Row(0).HasExtDevName);
    EXPECT_EQ(read.Row(0).ExtDevNameDev, "/C/S/LOC");
    EXPECT_FALSE(read.Row(1).HasExtDevName);
    EXPECT_EQ(read.Row(1).ExtDevNameProp, "LOCATION") << "the old text stays";
    EXPECT_EQ(read.Row(1).ExtDevNameDev, "");
}

TEST(ReadSpectrumConfig, EmptyLinesAreRowsCommentsAreNotAndFailuresEndTheRead) {
    Read read;
    read.cat.SpectrumTrace = 42;
    read.File({"; comment", "# comment", kHeader, "C,S/D,P,3,A,5,-5,mm,", "", "%x", "C,S/E,P,4,B,5,-5,mm,"});
    ASSERT_EQ(read.result, 0);
    EXPECT_EQ(read.cat.SpectrumCount, 3);
    EXPECT_EQ(read.Row(1).Description + "|" + std::to_string(read.Row(1).Size), "|0") << "the empty line reads empty fields";
    EXPECT_EQ(read.Row(2).Description, "B");
    EXPECT_EQ(read.cat.SpectrumTrace, -1);
    // Numbers too large for their field end the reader at that line.
    for (const char* row : {"C,S/D,P,1e40,A,5,-5,mm,", "C,S/D,P,3,A,1e39,-5,mm,"}) {
        EXPECT_EQ(read.File({kHeader, row}).result, static_cast<int16_t>(ErrorKind::Overflow)) << row;
        EXPECT_EQ(read.cat.LastReport.line, 2);
        EXPECT_TRUE(read.window.events.empty());
    }
    EXPECT_EQ(ReadSpectrumConfig(read.cat, read.window, read.dir.Path("none.csv")),
              static_cast<int16_t>(ErrorKind::FileNotFound));
}

}  // namespace
}  // namespace catalogue
