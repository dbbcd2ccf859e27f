#include "vire/fltint.h"

#include <gtest/gtest.h>

TEST(FltInt, RecordsAreLittleEndianAndNeverReadPastTheBuffer) {
    std::vector<std::byte> bytes(24);
    for (size_t i : {0, 1, 3}) vire::EncodeFltInt(bytes, i, {-2.0f * static_cast<float>(i), 0x01020304 + static_cast<int32_t>(i)});  // 3: beyond
    EXPECT_TRUE(bytes[4] == std::byte{0x04} && bytes[7] == std::byte{0x01});
    struct Case { size_t bytes; int32_t count; size_t records; };
    for (const Case& c : {Case{24, 2, 2}, Case{24, 5, 3}, Case{15, 2, 1}, Case{7, 1, 0}, Case{24, 0, 0}, Case{24, -1, 0}}) {
        const auto records = vire::DecodeFltInt(std::span(bytes).first(c.bytes), c.count);
        EXPECT_TRUE(records.size() == c.records && (c.records < 2 || (records[1].value == -2.0f && records[1].time == 0x01020305))) << c.bytes << " " << c.count;
    }
}
