// Column finder and field reader of the tables, the numeric values of their
// fields, and the file-system boundary.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstdlib>

#include "catalogue/files.h"
#include "catalogue/numbers.h"
#include "catalogue/runtime_error.h"
#include "catalogue/table.h"

namespace catalogue {
namespace {

TEST(FindColumn, WholeKeysInAnyCaseAndTheEmptyFieldThatMatchesEverything) {
    struct Case { std::string header, key; int column; };
    const Case cases[] = {
        {"MACHINE,CONFIGFILE,MACHINEFILE", "MACHINEFILE", 2}, {"machinefile, Machine ,configfile", "MACHINE", 1},
        {"A,B,C", "D", -1}, {"MACHINEFILE,MACHINE", "MACHINE", 1}, {"\tSIZE\t,MAX", "SIZE", 0},
        // A quoted field keeps its quotes and hides its commas.
        {"\"A,B\",C", "C", 1}, {"\"A,B\",C", "A", -1}, {"\"C\",C", "C", 1},
        // An empty field stops the search and answers every key not found before it.
        {",MACHINE,CONFIGFILE", "CONFIGFILE", 0}, {"MACHINE,,CONFIGFILE", "MACHINE", 0},
        {"MACHINE, ,CONFIGFILE", "CONFIGFILE", 1}, {"A,B,", "MISSING", 2}, {"", "CONTEXT", 0},
    };
    for (const Case& c : cases) EXPECT_EQ(FindColumn(c.header, c.key), c.column) << c.header << " / " << c.key;
}

// RowFields, which the readers use to split a row once, must agree with GetField.
TEST(GetField, TrimmedFieldOrEmpty) {
    struct Case { std::string line; int n; std::string field; };
    const Case cases[] = {
        {"a,b,c", 2, "c"}, {"a,b,c", 3, ""}, {"a,b,c", -1, ""}, {" a , b ", 1, "b"}, {"a,,c", 1, ""},
        {"\"A,B\",C", 0, "\"A,B\""}, {"x,\"1,2,3\",y", 2, "y"}, {"\"open,a,b", 0, "\"open,a,b"},
        {"\"open,a,b", 1, ""}, {"a,b\r", 1, "b"}, {",", 1, ""}, {"a,\"b\"c,d", 2, "d"},
        {std::string("a,\0b\0,c", 7), 1, "b"}, {"a,\t\"q, r\" ,z", 1, "\"q"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(GetField(c.line, c.n), c.field) << c.line << " #" << c.n;
        EXPECT_EQ(RowFields(c.line).Get(c.n), c.field) << c.line << " #" << c.n;
    }
}

TEST(NumericValue, ReadsTheLeadingNumberAndIsCleanOnlyForAWholeOne) {
    struct Case { std::string text; double value; bool clean; };
    const Case cases[] = {
        {"12", 12, true}, {" -5.5 ", -5.5, true}, {"+3.25", 3.25, true}, {"2.5E-1", 0.25, true}, {"1D2", 100, true},
        {"", 0, true}, {"12abc", 12, false}, {"abc", 0, false}, {"1 2", 12, false}, {"\t-\t4", -4, false},
        {".5", 0.5, true}, {"5.", 5, true}, {"1e", 1, false}, {"1e+", 1, false}, {"3.1.4", 3.1, false},
        {"-", 0, false}, {"\"12\"", 0, false}, {"1e999", HUGE_VAL, false},
    };
    for (const Case& c : cases) {
        EXPECT_DOUBLE_EQ(NumericValue(c.text), c.value) << "[" << c.text << "]";
        EXPECT_EQ(IsCleanNumber(c.text), c.clean) << "[" << c.text << "]";
    }
}

TEST(FieldConversion, RoundsHalvesToEvenWithinTheField) {
    struct Case { double in; int32_t out; };
    for (const Case c : {Case{2.5, 2}, {3.5, 4}, {-2.5, -2}, {2.4999, 2}, {2.5001, 3}, {0.5, 0}, {32767.4, 32767}}) {
        EXPECT_EQ(RoundToInt32(c.in), c.out) << c.in;
        EXPECT_EQ(RoundToInt16(c.in), c.out) << c.in;
    }
    EXPECT_EQ(RoundToInt32(2147483647.0) + RoundToInt16(-32768.0), 2147483647 - 32768);
    EXPECT_FLOAT_EQ(ToSingle(FLT_MAX), FLT_MAX);
    EXPECT_THROW(RoundToInt16(32767.5), RuntimeError);
    EXPECT_THROW(RoundToInt32(2147483648.0), RuntimeError);
    EXPECT_THROW(CheckedAdd16(32767, 1), RuntimeError);
}

// Paths of the system's form become native ones, drives mapped through the environment.
TEST(NativePath, MapsDrivesFromTheEnvironmentAndFoldsSeparators) {
    ::setenv("LUMISCOPE_DRIVE_L", "/srv/orka", 1);
    ::unsetenv("LUMISCOPE_DRIVE_Q");
    struct Case { std::string in, out; };
    const Case cases[] = {
        {"L:\\bin.orka\\spectrum\\configs\\", "/srv/orka/bin.orka/spectrum/configs/"}, {"l:\\x.csv", "/srv/orka/x.csv"},
        {"L:x.csv", "/srv/orka/x.csv"}, {"Q:\\x.csv", "Q:/x.csv"},  // unmapped: not found later, never guessed
        {"C:\\prog\\\\SpectrumInfo.csv", "C:/prog/SpectrumInfo.csv"}, {"dir/\\a.csv", "dir/a.csv"}, {"", ""},
    };
    for (const Case& c : cases) EXPECT_EQ(NativePath(c.in), c.out) << c.in;
    ::unsetenv("LUMISCOPE_DRIVE_L");
}

TEST(SplitLines, KnowsEveryLineEnd) {
    struct Case { std::string contents; std::vector<std::string> lines; };
    const Case cases[] = {
        {"a\r\nb\r\n", {"a", "b"}}, {"a\nb", {"a", "b"}}, {"a\rb\r", {"a", "b"}}, {"a\n\nb\n", {"a", "", "b"}},
        {"\n", {""}}, {"", {}}, {"a\r\r\nb", {"a", "", "b"}}, {std::string("a\0b\nc", 5), {std::string("a\0b", 3), "c"}},
    };
    for (const Case& c : cases) EXPECT_EQ(SplitLines(c.contents), c.lines);
}

}  // namespace
}  // namespace catalogue
