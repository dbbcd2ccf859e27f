// The value grid: cell texts and colours within bounds, the block paste,
// twips widths and fitted size, mouse signals.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QHeaderView>
#include <QPalette>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <functional>

#include "catalogue/runtime_error.h"
#include "ui/controls/block_text.h"
#include "ui/controls/colour.h"
#include "ui/controls/twips.h"
#include "ui/controls/value_grid.h"

namespace ui {
namespace {

using ::testing::ElementsAre;

TEST(SplitBlock, RowsEndAtCrLfOrCrLfPairsAndFieldsAtTabs) {
    struct Case { std::string text; BlockRows rows; };
    const Case cases[] = {
        {"", {}},
        {"1", {{"1"}}},
        {"1\r", {{"1"}}},
        {"1\r2\r", {{"1"}, {"2"}}},
        {"\r", {{""}}},
        {"\r\r5\r", {{""}, {""}, {"5"}}},
        {"1\r\n2\r\n", {{"1"}, {"2"}}},
        {"1\n\r2", {{"1"}, {""}, {"2"}}},
        {"1\n2\n", {{"1"}, {"2"}}},
        {"1\r\r\n2", {{"1"}, {""}, {"2"}}},
        {"a\tb\t", {{"a", "b", ""}}},
        {"\t\r x \t", {{"", ""}, {" x ", ""}}},
    };
    for (const Case& c : cases) EXPECT_EQ(SplitBlock(c.text), c.rows) << "[" << c.text << "]";
}

TEST(Twips, ConvertAtTheScreenResolutionRoundingToNearest) {
    struct Case { int32_t twips; int dpi; int32_t pixels; };
    const Case cases[] = {
        {1440, 96, 96}, {1000, 96, 67}, {1100, 96, 73}, {1600, 96, 107}, {800, 96, 53},
        {7, 96, 0}, {8, 96, 1}, {15, 96, 1}, {0, 96, 0}, {1000, 144, 100}, {1100, 120, 92},
        {-1000, 96, -67}, {1000, 0, 0}, {1000, -96, 0}, {2147483647, 96, 143165576},
    };
    for (const Case& c : cases)
        EXPECT_EQ(TwipsToPixels(c.twips, c.dpi), c.pixels) << c.twips << " at " << c.dpi;
    EXPECT_EQ(PixelsToTwips(67, 96), 1005);
    EXPECT_EQ(PixelsToTwips(96, 96), 1440);
    EXPECT_EQ(PixelsToTwips(96, 0), 0);
    EXPECT_EQ(PixelsToTwips(2147483647, 1), 2147483647);  // clamped, not wrapped
}

TEST(Colour, ValuesAreBlueGreenRedAndSystemColoursComeFromThePalette) {
    struct Case { uint32_t value; QColor colour; };
    const Case cases[] = {
        {0x800000, QColor(0, 0, 128)},     {0x000080, QColor(128, 0, 0)},
        {0x0080FF, QColor(255, 128, 0)},   {0xFFC0C0, QColor(192, 192, 255)},
        {0xFFFFFF, QColor(255, 255, 255)}, {0, QColor(0, 0, 0)},
        {0x01123456, QColor(0x56, 0x34, 0x12)},  // only the low 24 bits count
    };
    for (const Case& c : cases) {
        EXPECT_EQ(ToQColor(c.value), c.colour) << std::hex << c.value;
        EXPECT_EQ(FromQColor(c.colour), c.value & 0xFFFFFF) << std::hex << c.value;
    }
    QPalette palette;
    palette.setColor(QPalette::Button, QColor(1, 2, 3));
    palette.setColor(QPalette::Base, QColor(4, 5, 6));
    palette.setColor(QPalette::WindowText, QColor(7, 8, 9));
    EXPECT_EQ(ToQColor(kSystemButtonFace, &palette), QColor(1, 2, 3));
    EXPECT_EQ(ToQColor(kSystemWindow, &palette), QColor(4, 5, 6));
    EXPECT_EQ(ToQColor(kSystemWindowText, &palette), QColor(7, 8, 9));
    EXPECT_EQ(ToQColor(0x800000FF, &palette), QColor(4, 5, 6));  // unknown index: window
}

// A grid of the trend plots' shape: heading row and nine item rows, three columns.
std::unique_ptr<ValueGrid> ItemGrid() {
    auto grid = std::make_unique<ValueGrid>("GridSelected");
    grid->SetRows(10);
    grid->SetCols(3);
    return grid;
}

std::string OutOfBoundsMessage(const std::function<void()>& call) {
    try {
        call();
    } catch (const catalogue::RuntimeError& error) {
        return error.kind() == catalogue::ErrorKind::OutOfBounds ? error.what() : "wrong kind";
    }
    return "no error";
}

TEST(ValueGrid, EveryCellAccessOutsideTheGridIsARuntimeError) {
    auto grid = ItemGrid();
    struct Case { int row, col; std::string message; };
    const Case cases[] = {
        {10, 0, "GridSelected row: index 10 outside 0..9"},
        {-1, 0, "GridSelected row: index -1 outside 0..9"},
        {0, 3, "GridSelected column: index 3 outside 0..2"},
        {9, -1, "GridSelected column: index -1 outside 0..2"},
    };
    for (const Case& c : cases) {
        const int r = c.row, k = c.col;
        EXPECT_EQ(OutOfBoundsMessage([&] { grid->TextMatrix(r, k); }), c.message);
        EXPECT_EQ(OutOfBoundsMessage([&] { grid->SetTextMatrix(r, k, "x"); }), c.message);
        EXPECT_EQ(OutOfBoundsMessage([&] { grid->CellBackColour(r, k); }), c.message);
        EXPECT_EQ(OutOfBoundsMessage([&] { grid->SetCellBackColour(r, k, 0); }), c.message);
        EXPECT_EQ(OutOfBoundsMessage([&] { grid->CellForeColour(r, k); }), c.message);
        EXPECT_EQ(OutOfBoundsMessage([&] { grid->SetCellForeColour(r, k, 0); }), c.message);
    }
    EXPECT_EQ(OutOfBoundsMessage([&] { grid->SetRows(-1); }),
              "GridSelected row count: index -1 outside 0..32767");
    EXPECT_EQ(OutOfBoundsMessage([&] { grid->SetCols(32768); }),
              "GridSelected column count: index 32768 outside 0..32767");
    EXPECT_EQ(OutOfBoundsMessage([&] { grid->SetFixedRows(-1); }),
              "GridSelected fixed row count: index -1 outside 0..32767");
    EXPECT_EQ(grid->Rows(), 10);
    EXPECT_EQ(grid->Cols(), 3);

    // The corners are inside.
    grid->SetTextMatrix(9, 2, "last");
    grid->SetTextMatrix(0, 0, "Item");
    EXPECT_EQ(grid->TextMatrix(9, 2), "last");
    EXPECT_EQ(grid->TextMatrix(0, 0), "Item");

    grid->SetRows(0);
    EXPECT_EQ(OutOfBoundsMessage([&] { grid->TextMatrix(0, 0); }),
              "GridSelected row: index 0 outside 0..-1");
}

TEST(ValueGrid, RowsThatGoAwayLoseTheirCells) {
    auto grid = ItemGrid();
    grid->SetTextMatrix(9, 1, "1.0000");
    grid->SetCellBackColour(9, 0, 0xFF0000);
    grid->SetRows(5);
    grid->SetRows(10);
    EXPECT_EQ(grid->TextMatrix(9, 1), "");
    EXPECT_EQ(grid->CellBackColour(9, 0), kSystemWindow);
}

TEST(ValueGrid, CellColoursReadBackAsSetAndDefaultByFixedRowsAndColumns) {
    auto grid = ItemGrid();
    // Defaults: heading row is fixed, the rest are window cells.
    EXPECT_EQ(grid->CellBackColour(0, 1), kSystemButtonFace);
    EXPECT_EQ(grid->CellForeColour(0, 1), kSystemButtonText);
    EXPECT_EQ(grid->CellBackColour(1, 0), kSystemWindow);
    EXPECT_EQ(grid->CellForeColour(1, 0), kSystemWindowText);
    grid->SetFixedCols(1);
    EXPECT_EQ(grid->CellBackColour(1, 0), kSystemButtonFace);
    EXPECT_EQ(grid->CellBackColour(1, 1), kSystemWindow);

    // Item rows: name cell in the slot's colour with white text.
    grid->SetCellBackColour(1, 0, 0x800000);
    grid->SetCellForeColour(1, 0, 0xFFFFFF);
    grid->SetCellBackColour(2, 2, kSystemButtonFace);
    EXPECT_EQ(grid->CellBackColour(1, 0), 0x800000u);
    EXPECT_EQ(grid->CellForeColour(1, 0), 0xFFFFFFu);
    EXPECT_EQ(grid->item(1, 0)->background().color(), QColor(0, 0, 128));
    EXPECT_EQ(grid->item(1, 0)->foreground().color(), QColor(255, 255, 255));
    EXPECT_EQ(grid->CellBackColour(2, 2), kSystemButtonFace);
    EXPECT_EQ(grid->item(2, 2)->background().color(), grid->palette().color(QPalette::Button));
    // Neighbours are untouched.
    EXPECT_EQ(grid->CellBackColour(1, 1), kSystemWindow);
    EXPECT_EQ(grid->CellBackColour(2, 0), kSystemButtonFace);
}

TEST(ValueGrid, ClearEmptiesTextsAndColoursButKeepsShape) {
    auto grid = ItemGrid();
    grid->SetColWidth(0, 1000);
    grid->SetTextMatrix(0, 2, "Marker");
    grid->SetTextMatrix(3, 0, "BPM03/ORKA");
    grid->SetCellBackColour(3, 0, 0x0000FF);
    grid->SetCellForeColour(3, 0, 0xFFFFFF);
    grid->Clear();
    EXPECT_EQ(grid->TextMatrix(0, 2), "");
    EXPECT_EQ(grid->TextMatrix(3, 0), "");
    EXPECT_EQ(grid->CellBackColour(3, 0), kSystemWindow);
    EXPECT_EQ(grid->CellForeColour(3, 0), kSystemWindowText);
    EXPECT_EQ(grid->Rows(), 10);
    EXPECT_EQ(grid->Cols(), 3);
    EXPECT_EQ(grid->ColWidth(0), 1000);
}

// The grid's texts as one string per row, cells joined by "|".
std::vector<std::string> Dump(const ValueGrid& grid) {
    std::vector<std::string> rows;
    for (int r = 0; r < grid.Rows(); ++r) {
        std::string row;
        for (int c = 0; c < grid.Cols(); ++c) row += (c ? "|" : "") + grid.TextMatrix(r, c);
        rows.push_back(row);
    }
    return rows;
}

TEST(ValueGrid, BlockPasteFillsTheRangeFromItsTopLeftCell) {
    struct Case {
        const char* name;
        int row, col, rowSel, colSel;
        std::string text;
        std::vector<std::string> after;
    };
    // Every case starts from a 5 x 3 grid whose cells hold "rc".
    const Case cases[] = {
        {"one column", 1, 2, 4, 2, "1.5000\r2.0000\r",
         {"00|01|02", "10|11|1.5000", "20|21|2.0000", "30|31|32", "40|41|42"}},
        {"more rows than the range", 1, 1, 2, 1, "a\rb\rc\r",
         {"00|01|02", "10|a|12", "20|b|22", "30|31|32", "40|41|42"}},
        {"more fields than columns", 1, 1, 1, 2, "a\tb\tc",
         {"00|01|02", "10|a|b", "20|21|22", "30|31|32", "40|41|42"}},
        {"fewer fields than columns", 1, 0, 2, 2, "a\rb\tc\r",
         {"00|01|02", "a|11|12", "b|c|22", "30|31|32", "40|41|42"}},
        {"empty fields empty their cells", 1, 2, 3, 2, "\r5\r",
         {"00|01|02", "10|11|", "20|21|5", "30|31|32", "40|41|42"}},
        {"CR LF ends a row once", 1, 2, 4, 2, "1\r\n2\r\n",
         {"00|01|02", "10|11|1", "20|21|2", "30|31|32", "40|41|42"}},
        {"reversed range", 3, 2, 1, 1, "a\tb\rc\td\re\tf",
         {"00|01|02", "10|a|b", "20|c|d", "30|e|f", "40|41|42"}},
        {"empty text changes nothing", 1, 2, 4, 2, "",
         {"00|01|02", "10|11|12", "20|21|22", "30|31|32", "40|41|42"}},
        {"no items: rows 1..0 with no text", 1, 2, 0, 2, "",
         {"00|01|02", "10|11|12", "20|21|22", "30|31|32", "40|41|42"}},
        {"last row and column", 4, 2, 4, 2, "???\r",
         {"00|01|02", "10|11|12", "20|21|22", "30|31|32", "40|41|???"}},
    };
    for (const Case& c : cases) {
        ValueGrid grid("GridExtra");
        grid.SetRows(5);
        grid.SetCols(3);
        for (int r = 0; r < 5; ++r)
            for (int k = 0; k < 3; ++k) grid.SetTextMatrix(r, k, std::to_string(r) + std::to_string(k));
        grid.PasteBlock(c.row, c.col, c.rowSel, c.colSel, c.text);
        EXPECT_EQ(Dump(grid), c.after) << c.name;
    }
}

TEST(ValueGrid, BlockPasteKeepsColoursAndChecksItsRangeFirst) {
    auto grid = ItemGrid();
    grid->SetCellForeColour(2, 2, 0x000000);
    grid->SetCellBackColour(2, 2, 0xFFC0C0);
    grid->PasteBlock(1, 2, 2, 2, "0\r9999.0000\r");
    EXPECT_EQ(grid->TextMatrix(2, 2), "9999.0000");
    EXPECT_EQ(grid->CellBackColour(2, 2), 0xFFC0C0u);
    EXPECT_EQ(grid->CellForeColour(2, 2), 0u);

    // A range reaching past the grid writes nothing at all.
    EXPECT_EQ(OutOfBoundsMessage([&] { grid->PasteBlock(1, 1, 10, 1, "a\rb\r"); }),
              "GridSelected row: index 10 outside 0..9");
    EXPECT_EQ(OutOfBoundsMessage([&] { grid->PasteBlock(1, -1, 2, 1, "a\rb\r"); }),
              "GridSelected column: index -1 outside 0..2");
    EXPECT_EQ(grid->TextMatrix(1, 1), "");
    EXPECT_EQ(grid->TextMatrix(1, 2), "0");
}

TEST(ValueGrid, ColumnWidthsInTwipsAndAGridFittedToThem) {
    auto grid = ItemGrid();
    const int32_t widths[] = {1000, 1100, 1100};
    for (int c = 0; c < 3; ++c) grid->SetColWidth(c, widths[c]);
    for (int c = 0; c < 3; ++c) {
        EXPECT_EQ(grid->ColWidth(c), widths[c]);
        EXPECT_EQ(grid->columnWidth(c), TwipsToPixels(widths[c], grid->logicalDpiX()));
    }
    grid->SetRowHeight(0, 480);
    EXPECT_EQ(grid->rowHeight(0), TwipsToPixels(480, grid->logicalDpiY()));
    EXPECT_NEAR(grid->RowHeight(0), 480, 1440 / grid->logicalDpiY());

    EXPECT_EQ(OutOfBoundsMessage([&] { grid->SetColWidth(0, -2); }),
              "GridSelected column width: index -2 outside -1..2147483647");
    EXPECT_EQ(OutOfBoundsMessage([&] { grid->SetColWidth(3, 800); }),
              "GridSelected column: index 3 outside 0..2");
    EXPECT_EQ(OutOfBoundsMessage([&] { grid->RowHeight(10); }),
              "GridSelected row: index 10 outside 0..9");
    EXPECT_EQ(grid->ColWidth(0), 1000);

    grid->FitWidthToColumns();
    grid->FitHeightToRows();
    grid->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(grid.get()));
    // Fitted: every cell visible, nothing to scroll, no spare room.
    EXPECT_EQ(grid->horizontalScrollBar()->maximum(), 0);
    EXPECT_EQ(grid->verticalScrollBar()->maximum(), 0);
    EXPECT_EQ(grid->viewport()->width(), grid->columnWidth(0) + grid->columnWidth(1) + grid->columnWidth(2));
    int rowsHeight = 0;
    for (int r = 0; r < 10; ++r) rowsHeight += grid->rowHeight(r);
    EXPECT_EQ(grid->viewport()->height(), rowsHeight);

    // -1 puts a column back to the default width; the fit follows a refit.
    grid->SetColWidth(1, -1);
    EXPECT_EQ(grid->columnWidth(1), grid->horizontalHeader()->defaultSectionSize());
    grid->FitWidthToColumns();
    EXPECT_EQ(grid->width(), grid->columnWidth(0) + grid->columnWidth(1) + grid->columnWidth(2) +
                                 2 * grid->frameWidth());
}

class GridMouse : public ::testing::Test {
protected:
    void SetUp() override {
        grid_ = ItemGrid();
        grid_->FitWidthToColumns();
        grid_->FitHeightToRows();
        grid_->resize(grid_->width(), grid_->height());
        grid_->setMinimumSize(0, 0);
        grid_->setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
        // Room below and beside the cells, to press beside them.
        grid_->resize(grid_->width() + 40, grid_->height() + 40);
        grid_->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(grid_.get()));
        QObject::connect(grid_.get(), &ValueGrid::MouseDown, [this](int b, int s, int r, int c) {
            events_.push_back("down " + std::to_string(b) + " " + std::to_string(s) + " " +
                              std::to_string(r) + "," + std::to_string(c));
        });
        QObject::connect(grid_.get(), &ValueGrid::Click, [this](int r, int c) {
            events_.push_back("click " + std::to_string(r) + "," + std::to_string(c));
        });
    }
    QPoint CellCentre(int row, int col) const {
        return grid_->visualRect(grid_->model()->index(row, col)).center();
    }
    std::unique_ptr<ValueGrid> grid_;
    std::vector<std::string> events_;
};

TEST_F(GridMouse, PressesReportButtonShiftAndCellAndOnlyLeftClicksClick) {
    struct Case {
        Qt::MouseButton button;
        Qt::KeyboardModifiers modifiers;
        int row, col;
        std::vector<std::string> events;
    };
    const Case cases[] = {
        {Qt::LeftButton, {}, 3, 1, {"down 1 0 3,1", "click 3,1"}},
        {Qt::RightButton, {}, 2, 0, {"down 2 0 2,0"}},
        {Qt::MiddleButton, {}, 9, 2, {"down 4 0 9,2"}},
        {Qt::LeftButton, Qt::ShiftModifier, 0, 0, {"down 1 1 0,0", "click 0,0"}},
        {Qt::RightButton, Qt::ControlModifier | Qt::AltModifier, 1, 2, {"down 2 6 1,2"}},
    };
    for (const Case& c : cases) {
        events_.clear();
        QTest::mouseClick(grid_->viewport(), c.button, c.modifiers, CellCentre(c.row, c.col));
        EXPECT_EQ(events_, c.events) << c.row << "," << c.col;
    }
}

TEST_F(GridMouse, PressBesideTheCellsGivesMinusOne) {
    const QRect last = grid_->visualRect(grid_->model()->index(9, 2));
    QTest::mouseClick(grid_->viewport(), Qt::LeftButton, {}, last.bottomRight() + QPoint(20, 20));
    EXPECT_THAT(events_, ElementsAre("down 1 0 -1,-1", "click -1,-1"));
}

TEST_F(GridMouse, ReleaseAwayFromTheGridIsNoClickAndADoubleClickIsOneClick) {
    QTest::mousePress(grid_->viewport(), Qt::LeftButton, {}, CellCentre(4, 1));
    QTest::mouseRelease(grid_->viewport(), Qt::LeftButton, {}, QPoint(-30, -30));
    EXPECT_THAT(events_, ElementsAre("down 1 0 4,1"));

    // A double click as Qt delivers it: press, release, press, double-click, release.
    events_.clear();
    const QPoint at = CellCentre(5, 0);
    QTest::mousePress(grid_->viewport(), Qt::LeftButton, {}, at);
    QTest::mouseRelease(grid_->viewport(), Qt::LeftButton, {}, at);
    QTest::mousePress(grid_->viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(grid_->viewport(), Qt::LeftButton, {}, at);
    QTest::mouseRelease(grid_->viewport(), Qt::LeftButton, {}, at);
    EXPECT_THAT(events_, ElementsAre("down 1 0 5,0", "click 5,0", "down 1 0 5,0"));
}

}  // namespace
}  // namespace ui
