#include <gtest/gtest.h>

#include "vire/formats.h"
#include "vire/history_servers.h"

namespace {

TEST(FormatName, CodesBelow512AreRaisedAndGapsAreNull) {
    struct Case { int16_t code; const char* name; int32_t size; };
    const Case cases[] = {
        {5, "SINGLE", 4},    {517, "SINGLE", 4},   {0, "DOUBLE", 8},     {512, "DOUBLE", 8},
        {9, "NAME16", 16},   {521, "NAME16", 16},  {526, "FLTINT", 8},   {14, "FLTINT", 8},
        {552, "DBLDBL", 16}, {550, "LNGDBL", 12},  {549, "NAME64I", 68}, {531, "NAME48", 48},
        // No name: the gaps of the table, anything above it, and codes that
        // stay below 512 after raising.
        {518, "NULL", 0},    {529, "NULL", 0},     {551, "NULL", 0},     {553, "NULL", 0},
        {600, "NULL", 0},    {6, "NULL", 0},       {-1, "NULL", 0},      {-32768, "NULL", 0},
        {32767, "NULL", 0},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(vire::FormatName(c.code), c.name) << c.code;
        EXPECT_EQ(vire::FormatSize(c.code), c.size) << c.code;
    }
}

TEST(FormatName, EveryNamedCodeReadsBackByName) {
    int named = 0;
    for (int code = 512; code <= 560; ++code) {
        const std::string name = vire::FormatName(static_cast<int16_t>(code));
        if (name == "NULL") {
            EXPECT_EQ(vire::FormatCode(name), 0);
            continue;
        }
        ++named;
        EXPECT_EQ(vire::FormatCode(name), code) << name;
    }
    EXPECT_EQ(named, 38);
    EXPECT_EQ(vire::FormatCode("single"), 0);  // names are upper case, exactly
}

TEST(HistoryServerName, MachineNamesAreComparedExactly) {
    struct Case { const char* given; const char* server; };
    const Case cases[] = {
        {"ORKA", "OKHISTORY"},      {"VESTA", "VEHISTORY"},       {"QMF", "QMFHISTORY"},
        {"KALM", "KALMHISTORY"},    {"VELOX3", "KALMHISTORY"},    {"KALM2", "KALMHISTORY"},
        {"LYRAS", "LYRASHISTORY"},  {"orka", "HISTORY"},          {"ORKA ", "HISTORY"},
        {"", "HISTORY"},            {"/ORKA/BPMHIST", "/ORKA/BPMHIST"}, {"/", "/"},
        {"VELOX4", "HISTORY"},
    };
    for (const Case& c : cases) EXPECT_EQ(vire::HistoryServerName(c.given), c.server) << c.given;
}

}  // namespace
