// Machine history files.
#include <gtest/gtest.h>

#include "catalogue/readers.h"
#include "test_support.h"

namespace catalogue {
namespace {

using catalogue_test::Lines;
using catalogue_test::ScratchDir;

const std::string kHeader =
    "CONTEXT,SERVER,PROPERTY,HSTSERVER,HSTPROPERTY,ARCSERVER,ARCPROPERTY,DESCRIPTION,MAX,MIN,EGU,SHORTNAME";

TEST(ReadHistoryFile, ReadsAtMostTenQuantities) {
    ScratchDir dir;
    std::vector<std::string> lines{kHeader};
    for (int i = 0; i < 12; ++i) lines.push_back("7,S,P" + std::to_string(i) + ",/O/H,P,ORKA,P,D,1,0,A,I");
    Catalogue cat;
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
        ASSERT_EQ(ReadHistoryFile(cat, dir.Write("h.HIST", Lines({kHeader, "ORKA,S," + c.property + ",/O/H," + c.hst +
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
        EXPECT_EQ(ReadHistoryFile(cat, dir.Write("h.HIST", Lines({kHeader, "ORKA,S,P,,,,,D,1,0,,", row}))),
                  static_cast<int16_t>(ErrorKind::Overflow)) << row;
        EXPECT_EQ(cat.LastReport.line, 3);
        EXPECT_EQ(cat.LastReport.rowsStored, 1);
    }
}

}  // namespace
}  // namespace catalogue
