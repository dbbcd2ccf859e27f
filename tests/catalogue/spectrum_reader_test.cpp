// Data-source files: the channel catalogue and the spectrum chooser.
#include <gtest/gtest.h>

#include "catalogue/readers.h"
#include "test_support.h"

namespace catalogue {
namespace {

using namespace catalogue_test;

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
    struct Case { Texts rows; Texts events; std::vector<int16_t> comboToSpectrum; };
    const Case cases[] = {
        {{"C,S/D,P,10,Only,5,-5,mm,"}, {"hide combo", "add Only", "select 0", "prepare 0"}, {0}},
        // Rows 2 and 3 continue row 1 when EGU, MAX and MIN all match...
        {{"C,S/A,P,4,Head,5,-5,mm,", "C,S/B,P,4,Two,5,-5,mm,yes", "C,S/C,P,4,Three,5,-5,mm,True"},
         {"show combo", "add Head", "select 0"}, {0}},
        // ...and are listed when one of them differs; "no" never appends.
        {{"C,S/A,P,4,Head,5,-5,mm,", "C,S/B,P,4,Two,6,-5,mm,yes", "C,S/C,P,4,Three,6,-5,mm,YES", "C,S/D,P,4,Four,6,-5,mm,no"},
         {"show combo", "add Head", "add Two", "add Four", "select 0"}, {0, 1, 3}},
        {{"C,S/A,P,4,Head,5,-5,mm,", "C,S/B,P,4,Two,5,-5,cm,yes"}, {"show combo", "add Head", "add Two", "select 0"}, {0, 1}},
        {{"C,S/A,P,4,Head,5,-5,mm,", "C,S/B,P,4,Two,5,-4,mm,yes"}, {"show combo", "add Head", "add Two", "select 0"}, {0, 1}},
    };
    for (const Case& c : cases) {
        Texts lines{kHeader};
        lines.insert(lines.end(), c.rows.begin(), c.rows.end());
        Read read;
        read.cat.SpectrumList[static_cast<long>(c.rows.size())].Append = true;
        ASSERT_EQ(read.File(lines).result, 0);
        EXPECT_EQ(read.cat.SpectrumCount, static_cast<int16_t>(c.rows.size()));
        Texts events{"clear combo"};
        events.insert(events.end(), c.events.begin(), c.events.end());
        EXPECT_EQ(read.window.events, events) << c.rows.back();
        for (std::size_t p = 0; p < c.comboToSpectrum.size(); ++p)
            EXPECT_EQ(read.cat.ComboToSpectrum[static_cast<long>(p)], c.comboToSpectrum[p]) << p;
        EXPECT_FALSE(read.cat.SpectrumList[static_cast<long>(c.rows.size())].Append) << "the entry behind the last row";
        EXPECT_EQ(read.cat.CatalogueFresh, c.rows.size() == 1);
    }
}

TEST(ReadSpectrumConfig, ServerSplitsAtTheFirstSlashFirstRowsAppendIsIgnoredReverseStandsAloneExtNamesNeedAProperty) {
    Read read;
    read.File({kHeader + ",EXTDEVNAMEDEV,EXTDEVNAMEPROP", "C,SRV/DEV1,P,4,A,5,-5,mm,REVERSE yes,/C/S/LOC,LOCATION",
               "C,SRV2,P,4,B,5,-5,mm,yes reverse,,", "C,X/Y/Z,P,4,C,9,-5,mm,Reverse", "C,/LEAD,P,4,D,9,-5,mm,"});
    ASSERT_EQ(read.result, 0);
    // Server, device (kept from the row before without a "/"), Append, Reverse;
    // an external name without a property keeps the old property text.
    const char* expected[] = {"SRV DEV1 00 1 LOCATION|/C/S/LOC", "SRV2 DEV1 11 0 LOCATION|", "X Y/Z 01 0 LOCATION|",
                              " LEAD 00 0 LOCATION|"};
    for (int i = 0; i < 4; ++i) {
        const SpectrumRecord& r = read.Row(i);
        EXPECT_EQ(r.Server + " " + r.Device + " " + std::to_string(r.Append) + std::to_string(r.Reverse) + " " +
                      std::to_string(r.HasExtDevName) + " " + r.ExtDevNameProp + "|" + r.ExtDevNameDev, expected[i]) << i;
    }
}

TEST(ReadSpectrumConfig, LowReplacesHighEvenWhenEmpty) {
    struct Case { std::string columns, values, source; };
    const Case cases[] = {{"HIGH,LOW", "a.csv,b.csv", "b.csv"}, {"HIGH,LOW", "a.csv,", ""},
                          {"LOW,HIGH", "b.csv,a.csv", "b.csv"}, {"HIGH", "DEV[THR]", "DEV[THR]"}};
    for (const Case& c : cases) {
        Read read;
        read.cat.NewSpectrum.HighThresholds.assign(5, 1.0f);
        ASSERT_EQ(read.File({kHeader + "," + c.columns, "C,S/D,P,3,A,1,0,,," + c.values}).result, 0);
        EXPECT_EQ(read.Row(0).ThresholdSource, c.source) << c.columns << " " << c.values;
        EXPECT_EQ(read.Row(0).HighThresholds.size() + read.Row(0).LowThresholds.size(), 2u) << "one element each";
    }
}

TEST(ReadSpectrumConfig, SizesRoundHalvesToEvenAndMustFitASpectrum) {
    struct Case { std::string size; int16_t result; int32_t stored; };
    const int16_t outside = static_cast<int16_t>(ErrorKind::SizeOutOfRange);
    const Case cases[] = {
        {"2.5", 0, 2}, {"3.5", 0, 4}, {"-0.4", 0, 0}, {"", 0, 0}, {"8000", 0, 8000}, {"8000.5", 0, 8000},
        {"8000.51", outside, 7}, {"8001", outside, 7}, {"-1", outside, 7}, {"2000000000", outside, 7},
        {"1e40", static_cast<int16_t>(ErrorKind::Overflow), 7},
    };
    for (const Case& c : cases) {
        Read read;
        read.File({kHeader, "C,S/D,P,7,A,1,0,,", "C,S/D,P," + c.size + ",B,1,0,,"});
        EXPECT_EQ(read.result, c.result) << c.size;
        EXPECT_EQ(read.cat.NewSpectrum.Size, c.stored) << c.size;
        EXPECT_EQ(std::make_pair(int{read.cat.LastReport.line}, int{read.cat.LastReport.rowsStored}),
                  c.result == 0 ? std::make_pair(0, 2) : std::make_pair(3, 1)) << c.size;
        EXPECT_EQ(read.window.events.empty(), c.result != 0) << c.size;
    }
}

TEST(ReadSpectrumConfig, RowLimitIsOneHundredAndOneEntriesFailingAtTheEnd) {
    struct Case { int rows; int16_t result, stored; int32_t failedLine; int16_t count; };
    // 100 rows fit with the entry behind them; 101 fill the table, set the
    // count and fail when the entry behind the last row is reset; 102 fail
    // while storing row 102, before the count is touched.
    const int16_t bounds = static_cast<int16_t>(ErrorKind::OutOfBounds);
    for (const Case c : {Case{100, 0, 100, 0, 100}, {101, bounds, 101, 0, 101}, {102, bounds, 101, 103, 7}}) {
        Read read;
        read.cat.SpectrumCount = 7;
        EXPECT_EQ(read.File(Numbered({kHeader}, c.rows, "C,S/D,P,1,R", ",1,0,,")).result, c.result) << c.rows;
        EXPECT_EQ(read.cat.LastReport.rowsStored, c.stored) << c.rows;
        EXPECT_EQ(read.cat.LastReport.line, c.failedLine) << c.rows;
        EXPECT_EQ(read.cat.SpectrumCount, c.count) << c.rows;
        EXPECT_EQ(read.window.events.empty(), c.result != 0) << "a failure leaves the chooser alone";
    }
}

TEST(ReadSpectrumConfig, MissingColumnsCarryOverBetweenRowsAndFiles) {
    Read read;
    read.File({kHeader + ",HSTSERVER,TAG,PROPLINK,PROPSHORT,EXTRAPROPCOMBOINDEX",
               "ORKA,S/D,P,8,A,5,-5,mm,,/ORKA/H,T,3,X,1", "VESTA,S/E,Q,9,B,5,-5,mm,,/VESTA/H,U,4,Y,0"});
    // Neither CONTEXT nor HSTSERVER nor TAG nor PROPLINK in the second file;
    // its PROPSHORT is not read without PROPLINK.
    ASSERT_EQ(read.File({"SERVER,PROPERTY,DESCRIPTION,PROPSHORT", "S2/F,R,C,Z", "S3,S,D,Z"}).result, 0);
    const SpectrumRecord& c = read.Row(0);
    EXPECT_EQ(c.Context + " " + c.HstServer + " " + std::to_string(c.Size) + " " + c.Egu, "VESTA /VESTA/H 9 mm");
    // A missing PROPLINK column means -1, not carry-over.
    EXPECT_EQ(std::make_tuple(c.PropLink, c.PropShort, c.ExtraPropComboIndex), std::make_tuple(-1, "Y", -1));
    EXPECT_EQ(read.Row(0).Tag + " " + read.Row(1).Tag, "//U ///U") << "one more slash per row";
    EXPECT_EQ(read.Row(1).Server + " " + read.Row(1).Device, "S3 F");
}

TEST(ReadSpectrumConfig, EmptyLinesAreRowsCommentsAreNot) {
    Read read;
    read.cat.SpectrumTrace = 42;
    read.File({"; comment", "# comment", kHeader, "C,S/D,P,3,A,5,-5,mm,", "", "%x", "C,S/E,P,4,B,5,-5,mm,"});
    ASSERT_EQ(read.result, 0);
    EXPECT_EQ(read.cat.SpectrumCount, 3);
    EXPECT_EQ(read.Row(1).Description + "|" + std::to_string(read.Row(1).Size), "|0") << "the empty line reads empty fields";
    EXPECT_EQ(read.Row(2).Description, "B");
    EXPECT_EQ(read.cat.SpectrumTrace, -1);
    // Nothing read: the chooser still offers what row 0 held before.
    read.File({"; nothing"});
    EXPECT_EQ(read.cat.SpectrumCount, 0);
    EXPECT_EQ(read.window.events, (Texts{"clear combo", "hide combo", "add A", "select 0", "prepare 0"}));
}

}  // namespace
}  // namespace catalogue
