#include <gtest/gtest.h>

#include "vire/formats.h"
#include "vire/history_servers.h"

namespace {

// The middleware's table of format names, as the middleware defines it.
struct Named { int16_t code; const char* name; };
constexpr Named kNames[] = {
    {512, "DOUBLE"}, {513, "SHORT"}, {514, "BYTE"}, {515, "LONG"}, {516, "TEXT"}, {517, "SINGLE"}, {519, "STRUCT"},
    {520, "NAME8"}, {521, "NAME16"}, {522, "NAME16FI"}, {523, "BIT"}, {524, "HITTS"}, {525, "NAME32"},
    {526, "FLTINT"}, {527, "LNGINT"}, {528, "DBLINT"}, {530, "INTFLTINT"}, {531, "NAME48"}, {532, "NAME8I"},
    {533, "NAME16I"}, {534, "NAME32I"}, {535, "NAME48I"}, {536, "USTRING"}, {537, "FLTFLTINT"}, {538, "FLTINTINT"},
    {539, "INTFLTFLTFLT"}, {540, "SPECTRUM"}, {541, "INTINTINTINT"}, {542, "WINDOW"}, {543, "FLTFLT"},
    {544, "INTFLTSHTSHT"}, {545, "BOOLEAN"}, {546, "INTINTFLTFLT"}, {547, "FLTINTFLTINT"}, {548, "NAME64"},
    {549, "NAME64I"}, {550, "LNGDBL"}, {552, "DBLDBL"},
};

TEST(FormatName, EveryCodeOfTheTableBelow512RaisedAndTheGapsNull) {
    for (const Named& n : kNames) {
        EXPECT_EQ(vire::FormatName(n.code), n.name) << n.code;
        EXPECT_EQ(vire::FormatName(static_cast<int16_t>(n.code - 512)), n.name) << n.code - 512;
        EXPECT_EQ(vire::FormatCode(n.name), n.code) << n.name;
    }
    for (int16_t code : {518, 529, 551, 553, 600, 6, -1, -32768, 32767}) EXPECT_EQ(vire::FormatName(code), "NULL") << code;
    EXPECT_EQ(vire::FormatCode("single") + vire::FormatCode("NULL"), 0);
    // Element sizes of the formats the program copies.
    struct Sized { int16_t code; int32_t size; };
    for (const Sized s : {Sized{517, 4}, {5, 4}, {515, 4}, {512, 8}, {513, 2}, {521, 16}, {525, 32}, {526, 8}, {548, 64},
                          {518, 0}, {540, 0}})
        EXPECT_EQ(vire::FormatSize(s.code), s.size) << s.code;
    for (int16_t code : {520, 521, 525, 531, 548}) EXPECT_TRUE(vire::IsNameFormat(code)) << code;
    for (int16_t code : {522, 533, 549, 516, 517}) EXPECT_FALSE(vire::IsNameFormat(code)) << code;
}

TEST(HistoryServerName, EveryMachineOfTheTableComparedExactly) {
    struct Case { const char* given; const char* server; };
    const Case cases[] = {
        {"QMF", "QMFHISTORY"}, {"VESTA", "VEHISTORY"}, {"KALM", "KALMHISTORY"}, {"VELOX", "KALMHISTORY"},
        {"VELOX2", "KALMHISTORY"}, {"VELOX3", "KALMHISTORY"}, {"KALM3", "KALMHISTORY"}, {"KALM2", "KALMHISTORY"},
        {"LYRAS", "LYRASHISTORY"}, {"ORKA", "OKHISTORY"}, {"orka", "HISTORY"}, {"ORKA ", "HISTORY"}, {"", "HISTORY"},
        {"/ORKA/BPMHIST", "/ORKA/BPMHIST"}, {"VELOX4", "HISTORY"},
    };
    for (const Case& c : cases) EXPECT_EQ(vire::HistoryServerName(c.given), c.server) << c.given;
}

}  // namespace
