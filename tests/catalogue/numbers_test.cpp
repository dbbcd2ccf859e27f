// Numeric values of table fields and their conversion into record fields.
#include <gtest/gtest.h>

#include <cfloat>

#include "catalogue/numbers.h"
#include "catalogue/runtime_error.h"

namespace catalogue {
namespace {

TEST(NumericValue, ReadsTheLeadingNumber) {
    struct Case { std::string text; double value; };
    const Case cases[] = {
        {"12", 12}, {"-5", -5}, {"+3.25", 3.25}, {"1e3", 1000}, {"2.5E-1", 0.25}, {"1D2", 100},
        {"12abc", 12}, {"abc", 0}, {"", 0}, {"  7", 7}, {"1 2", 12}, {"\t-\t4", -4},
        {".5", 0.5}, {"5.", 5}, {"1e", 1}, {"1e+", 1}, {"3.1.4", 3.1}, {"-", 0}, {".", 0},
        {"\"12\"", 0},
    };
    for (const Case& c : cases) EXPECT_DOUBLE_EQ(NumericValue(c.text), c.value) << "[" << c.text << "]";
}

TEST(NumericValue, IsCleanOnlyForAWholeNumber) {
    struct Case { std::string text; bool clean; };
    const Case cases[] = {
        {"12", true}, {" -5.5 ", true}, {"1e-8", true}, {"", true}, {"12abc", false},
        {"abc", false}, {"1 2", false}, {"1e999", false}, {"\"3\"", false},
    };
    for (const Case& c : cases) EXPECT_EQ(IsCleanNumber(c.text), c.clean) << "[" << c.text << "]";
}

TEST(FieldConversion, RoundsHalvesToEven) {
    struct Case { double in; int32_t out; };
    const Case cases[] = {{2.5, 2}, {3.5, 4}, {-2.5, -2}, {2.4999, 2}, {2.5001, 3}, {0.5, 0}, {1.5, 2}};
    for (const Case& c : cases) {
        EXPECT_EQ(RoundToInt32(c.in), c.out) << c.in;
        EXPECT_EQ(RoundToInt16(c.in), c.out) << c.in;
    }
}

TEST(FieldConversion, ValuesOutsideTheFieldOverflow) {
    EXPECT_EQ(RoundToInt16(32767.4), 32767);
    EXPECT_EQ(RoundToInt16(-32768.0), -32768);
    EXPECT_THROW(RoundToInt16(32767.5), RuntimeError);
    EXPECT_THROW(RoundToInt16(-32769.0), RuntimeError);
    EXPECT_EQ(RoundToInt32(2147483647.0), 2147483647);
    EXPECT_THROW(RoundToInt32(2147483648.0), RuntimeError);
    EXPECT_FLOAT_EQ(ToSingle(FLT_MAX), FLT_MAX);
    EXPECT_THROW(ToSingle(1e39), RuntimeError);
    EXPECT_THROW(ToSingle(NumericValue("1e400")), RuntimeError);
    try {
        RoundToInt16(40000);
        FAIL();
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.kind(), ErrorKind::Overflow);
    }
}

TEST(CheckedAdd16, OverflowIsAnErrorNotAWrap) {
    EXPECT_EQ(CheckedAdd16(32766, 1), 32767);
    EXPECT_THROW(CheckedAdd16(32767, 1), RuntimeError);
    EXPECT_THROW(CheckedAdd16(-32768, -1), RuntimeError);
}

}  // namespace
}  // namespace catalogue
