// Column finder, field reader and trimming of the tables, and the numeric
// values of their fields.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>

#include "catalogue/numbers.h"
#include "catalogue/runtime_error.h"
#include "catalogue/table.h"

namespace catalogue {
namespace {

TEST(TrimAll, RemovesBlanksTabsNulAndLineEndsButKeepsQuotes) {
    struct Case { std::string in, out; };
    const Case cases[] = {{"\n\r \t abc \t\r\n", "abc"}, {std::string("\0abc\0", 5), "abc"}, {"a b", "a b"},
                          {" \"q\" ", "\"q\""}, {" \t\r\n", ""}};
    for (const Case& c : cases) EXPECT_EQ(TrimAll(c.in), c.out) << "[" << c.in << "]";
}

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

TEST(FieldConversion, RoundsHalvesToEvenAndThrowsOverflowOutsideTheField) {
    struct Case { double in; int32_t out; };
    for (const Case c : {Case{2.5, 2}, {3.5, 4}, {-2.5, -2}, {2.4999, 2}, {2.5001, 3}, {0.5, 0}}) {
        EXPECT_EQ(RoundToInt32(c.in), c.out) << c.in;
        EXPECT_EQ(RoundToInt16(c.in), c.out) << c.in;
    }
    EXPECT_EQ(RoundToInt16(32767.4), 32767);
    EXPECT_EQ(RoundToInt16(-32768.0), -32768);
    EXPECT_EQ(RoundToInt32(2147483647.0), 2147483647);
    EXPECT_FLOAT_EQ(ToSingle(FLT_MAX), FLT_MAX);
    EXPECT_EQ(CheckedAdd16(32766, 1), 32767);
    for (auto overflow : std::initializer_list<void (*)()>{
             [] { RoundToInt16(32767.5); }, [] { RoundToInt16(-32769.0); }, [] { RoundToInt32(2147483648.0); },
             [] { ToSingle(1e39); }, [] { ToSingle(NumericValue("1e400")); }, [] { CheckedAdd16(32767, 1); },
             [] { CheckedAdd16(-32768, -1); }}) {
        try {
            overflow();
            ADD_FAILURE() << "no overflow";
        } catch (const RuntimeError& error) {
            EXPECT_EQ(error.kind(), ErrorKind::Overflow);
        }
    }
}

}  // namespace
}  // namespace catalogue
