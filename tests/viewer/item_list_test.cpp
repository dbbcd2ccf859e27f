// The item list without a window: the limit, removal order, the grid
// column texts with their markers, and where the trend window
// may be placed.
#include <gtest/gtest.h>

#include "viewer/item_list.h"
#include "viewer/trend_window.h"

namespace {

using viewer::ItemList;
using viewer::SelectedItem;

SelectedItem Named(const std::string& name) { SelectedItem item; item.elementName = name; return item; }

SelectedItem WithValues(const std::vector<float>& values, const std::vector<int32_t>& times) {
    SelectedItem item;
    item.hasData = true;
    item.series.SetRecorded(values, times, history::ValueSource::LocalHistory);
    return item;
}

TEST(ItemList, NineItemsAtMostAndRemovalKeepsTheOrder) {
    ItemList list(9);
    for (int i = 0; i < 9; ++i) EXPECT_EQ(list.Add(Named("E" + std::to_string(i))), i);
    EXPECT_EQ(list.Add(Named("E9")), -1) << "the tenth item is refused although slots 9 and 10 exist";
    EXPECT_EQ(list.Count(), 9);

    EXPECT_FALSE(list.RemoveCurrent()) << "nothing is current";
    list.SetCurrent(3);
    list[3].traceNumber = 33;
    list[8].traceNumber = 88;
    list[8].markNumber = 8;
    ASSERT_TRUE(list.RemoveCurrent());
    EXPECT_EQ(list.Count(), 8);
    EXPECT_EQ(list.Current(), -1);
    std::vector<std::string> names;
    for (const SelectedItem& item : list.Items()) names.push_back(item.elementName);
    EXPECT_EQ(names, (std::vector<std::string>{"E0", "E1", "E2", "E4", "E5", "E6", "E7", "E8"}));
    EXPECT_EQ(list[7].traceNumber, 88) << "the last item moved down whole";
    EXPECT_TRUE(list[8].traceNumber == -1 && list[8].markNumber == -1 && list[8].unusedSlot) << "the freed slot";
    EXPECT_THROW(list[11], std::exception) << "slots end at 10";
}

TEST(ItemList, FindsByCaptionAndPlottedChannel) {
    ItemList list;
    SelectedItem x = Named("A"), y = Named("A");
    x.PropShort = "X";
    x.plottedChannel = 0;
    y.PropShort = "Y";
    y.plottedChannel = 4;
    list.Add(x);
    list.Add(y);
    EXPECT_EQ((std::vector<int16_t>{list.Find("Y", 4), list.Find("Y", 0), list.Find("X", 0)}),
              (std::vector<int16_t>{1, -1, 0}));
}

TEST(ItemGrid, MissingValuesInEachColumn) {
    ItemList list;
    list.Add(WithValues({1.0f, 2.0f}, {100, 160}));
    list.Add(Named("no history"));
    list.Add(WithValues({3.0f}, {130}));
    const struct { int32_t time; bool cursorColumn; std::vector<std::string> texts; } cases[] = {
        // The value at or after the time; an item without history is "???"
        // in the third column and leaves no line in the cursor column.
        {100, false, {"1.0000", "???", "3.0000"}}, {100, true, {"1.0000", "3.0000"}}, {130, true, {"2.0000", "3.0000"}},
        // Past the last point there is no value, not the last one again.
        {150, true, {"2.0000", ""}}, {161, false, {"???", "???", "???"}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(viewer::GridColumnTexts(list, c.time, c.cursorColumn, viewer::GridFormat::Items), c.texts)
            << c.time << (c.cursorColumn ? " cursor" : " now");
    // Each grid writes its own format (the formats' bounds: the value text tests).
    EXPECT_EQ(viewer::GridColumnTexts(list, 100, true, viewer::GridFormat::Overview),
              (std::vector<std::string>{"1.0", "3.0"}));
    EXPECT_EQ(viewer::GridBlock({"1", "", "3"}), "1\r\r3\r");
}

TEST(TrendWindow, PlacedWithinThePresentAndTheArchive) {
    constexpr int32_t now = 1'700'000'000;
    constexpr int32_t day = viewer::kSecondsPerDay;
    const struct { int32_t anchor, step, steps; int32_t stop; bool follows; } cases[] = {
        {now, 3600, 0, now, true}, {now, 3600, -2, now - 7200, false},
        {now, 3600, 5, now, true},                         // the future is not there yet
        {now - day, 3600, 1, now - day + 3600, false},     // a day back, one span on
        {now, day, -800, now - 730 * day + 3600, false},   // not before the archive's reach
    };
    for (const auto& c : cases) {
        const viewer::TrendWindow w = viewer::PlaceTrendWindow(c.anchor, now, 3600, c.step, c.steps);
        EXPECT_EQ(std::tuple(w.start, w.stop, w.followsPresent), std::tuple(c.stop - 3600, c.stop, c.follows));
    }
    EXPECT_EQ(viewer::SpanText(600), "10 min");
    EXPECT_EQ(viewer::SpanText(21600), "6 h");
}

}  // namespace
