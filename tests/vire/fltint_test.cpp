#include "vire/fltint.h"

#include <gtest/gtest.h>

namespace {

TEST(FltInt, RecordsAreLittleEndianAndNeverReadPastTheBuffer) {
    std::vector<std::byte> bytes(24);
    vire::EncodeFltInt(bytes, 0, {1.5f, 0x01020304});
    vire::EncodeFltInt(bytes, 1, {-2.0f, -7});
    vire::EncodeFltInt(bytes, 3, {9.0f, 9});  // beyond the buffer: ignored
    EXPECT_EQ(bytes[4], std::byte{0x04});
    EXPECT_EQ(bytes[7], std::byte{0x01});
    struct Case { size_t bytes; int32_t count; size_t records; };
    for (const Case& c : {Case{24, 2, 2}, Case{24, 5, 3}, Case{15, 2, 1}, Case{7, 1, 0}, Case{24, 0, 0}, Case{24, -1, 0}}) {
        const auto records = vire::DecodeFltInt(std::span(bytes).first(c.bytes), c.count);
        ASSERT_EQ(records.size(), c.records) << c.bytes << " " << c.count;
        EXPECT_TRUE(c.records < 2 || (records[1].value == -2.0f && records[1].time == -7));
    }
}

}  // namespace
