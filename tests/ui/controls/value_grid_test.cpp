// The value grid: cell bounds and colours, the block paste, twips widths and
// fitted size, mouse signals.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QHeaderView>
#include <QScrollBar>
#include <QTest>
#include <functional>

#include "catalogue/runtime_error.h"
#include "ui/controls/colour.h"
#include "ui/controls/twips.h"
#include "ui/controls/value_grid.h"

namespace ui {
namespace {

using ::testing::ElementsAre;

TEST(Twips, RoundToTheNearestPixelAtTheGivenResolution) {
    struct Case { int32_t twips; int dpi; int32_t pixels; };
    const Case cases[] = {{1440, 96, 96}, {1000, 96, 67}, {1100, 96, 73}, {7, 96, 0}, {8, 96, 1},
                          {1100, 120, 92}, {-1000, 96, -67}, {1000, 0, 0}, {2147483647, 96, 143165576}};
    for (const Case& c : cases) EXPECT_EQ(TwipsToPixels(c.twips, c.dpi), c.pixels) << c.twips << "@" << c.dpi;
    EXPECT_EQ(PixelsToTwips(67, 96), 1005);
    EXPECT_EQ(PixelsToTwips(2147483647, 1), 2147483647);  // clamped, not wrapped
}

TEST(Colour, ValuesAreBlueGreenRedAndSystemColoursComeFromThePalette) {
    const std::pair<uint32_t, QColor> cases[] = {
        {0x800000, QColor(0, 0, 128)}, {0x0080FF, QColor(255, 128, 0)},
        {0xFFC0C0, QColor(192, 192, 255)}, {0x01123456, QColor(0x56, 0x34, 0x12)}};
    for (const auto& [value, colour] : cases) {
        EXPECT_EQ(ResolveColour(value), colour) << std::hex << value;
        EXPECT_EQ(ColourValue(colour), value & 0xFFFFFF) << std::hex << value;
    }
    QPalette palette;
    palette.setColor(QPalette::Button, QColor(1, 2, 3));
    palette.setColor(QPalette::Base, QColor(4, 5, 6));
    EXPECT_EQ(ResolveColour(kSystemButtonFace, &palette), QColor(1, 2, 3));
    EXPECT_EQ(ResolveColour(0x800000FF, &palette), QColor(4, 5, 6));  // unknown index: window
}

// The trend plots' grid: heading row and nine item rows, three columns.
std::unique_ptr<ValueGrid> ItemGrid() {
    auto grid = std::make_unique<ValueGrid>("GridSelected");
    grid->SetRows(10);
    grid->SetCols(3);
    return grid;
}

std::string ErrorOf(const std::function<void()>& call) {
    try {
        call();
    } catch (const catalogue::RuntimeError& error) {
        return error.kind() == catalogue::ErrorKind::OutOfBounds ? error.what() : "wrong kind";
    }
    return "no error";
}

TEST(ValueGrid, EveryAccessOutsideTheGridIsARuntimeError) {
    auto grid = ItemGrid();
    struct Case { int row, col; std::string message; };
    const Case cases[] = {{10, 0, "GridSelected row: index 10 outside 0..9"},
                          {-1, 2, "GridSelected row: index -1 outside 0..9"},
                          {9, 3, "GridSelected column: index 3 outside 0..2"}};
    for (const Case& c : cases) {
        const int r = c.row, k = c.col;
        EXPECT_EQ(ErrorOf([&] { grid->TextMatrix(r, k); }), c.message);
        EXPECT_EQ(ErrorOf([&] { grid->SetTextMatrix(r, k, "x"); }), c.message);
        EXPECT_EQ(ErrorOf([&] { grid->CellBackColour(r, k); }), c.message);
        EXPECT_EQ(ErrorOf([&] { grid->SetCellForeColour(r, k, 0); }), c.message);
        EXPECT_EQ(ErrorOf([&] { grid->PasteBlock(1, 1, r, k, "a"); }), c.message);
    }
    EXPECT_EQ(ErrorOf([&] { grid->SetRows(-1); }), "GridSelected row count: index -1 outside 0..32767");
    EXPECT_EQ(ErrorOf([&] { grid->SetCols(32768); }),
              "GridSelected column count: index 32768 outside 0..32767");
    EXPECT_EQ(ErrorOf([&] { grid->SetColWidth(0, -2); }),
              "GridSelected column width: index -2 outside -1..2147483647");
    EXPECT_EQ(grid->TextMatrix(1, 1), "");  // the failed paste wrote nothing
    grid->SetRows(0);
    EXPECT_EQ(ErrorOf([&] { grid->TextMatrix(0, 0); }), "GridSelected row: index 0 outside 0..-1");
}

TEST(ValueGrid, ColoursReadBackAsSetDefaultByFixedCellsAndClearDropsThem) {
    auto grid = ItemGrid();
    EXPECT_EQ(grid->CellBackColour(0, 1), kSystemButtonFace);  // heading row
    EXPECT_EQ(grid->CellForeColour(0, 1), kSystemButtonText);
    EXPECT_EQ(grid->CellBackColour(1, 0), kSystemWindow);
    EXPECT_EQ(grid->CellForeColour(1, 0), kSystemWindowText);
    grid->SetFixedCols(1);
    EXPECT_EQ(grid->CellBackColour(1, 0), kSystemButtonFace);

    grid->SetColWidth(0, 1000);
    grid->SetTextMatrix(1, 0, "BPM03/ORKA");
    grid->SetCellBackColour(1, 0, 0x800000);
    grid->SetCellForeColour(1, 0, 0xFFFFFF);
    EXPECT_EQ(grid->CellBackColour(1, 0), 0x800000u);
    EXPECT_EQ(grid->item(1, 0)->background().color(), QColor(0, 0, 128));
    EXPECT_EQ(grid->item(1, 0)->foreground().color(), QColor(255, 255, 255));
    EXPECT_EQ(grid->CellBackColour(2, 0), kSystemButtonFace);  // the neighbour is untouched

    grid->Clear();
    EXPECT_EQ(grid->TextMatrix(1, 0), "");
    EXPECT_EQ(grid->CellBackColour(1, 0), kSystemButtonFace);
    EXPECT_EQ(grid->CellForeColour(1, 0), kSystemButtonText);
    EXPECT_EQ(grid->ColWidth(0), 1000);
    EXPECT_EQ(std::pair(grid->Rows(), grid->Cols()), std::pair(10, 3));
}

TEST(ValueGrid, BlockPasteFillsTheRangeFromItsTopLeftCell) {
    struct Case { const char* name; int row, col, rowSel, colSel; std::string text, after; };
    // Every case starts from a 5 x 3 grid whose cells hold their row and column.
    const Case cases[] = {
        {"one column", 1, 2, 4, 2, "1.5\r2\r", "00 01 02/10 11 1.5/20 21 2/30 31 32/40 41 42"},
        {"more rows than the range", 1, 1, 2, 1, "a\rb\rc\r", "00 01 02/10 a 12/20 b 22/30 31 32/40 41 42"},
        {"more fields than columns", 1, 1, 1, 2, "a\tb\tc", "00 01 02/10 a b/20 21 22/30 31 32/40 41 42"},
        {"short rows", 1, 0, 2, 2, "a\rb\tc", "00 01 02/a 11 12/b c 22/30 31 32/40 41 42"},
        {"empty fields", 1, 2, 3, 2, "\r5\r", "00 01 02/10 11 /20 21 5/30 31 32/40 41 42"},
        {"CR LF", 1, 2, 4, 2, "1\r\n2\r\n", "00 01 02/10 11 1/20 21 2/30 31 32/40 41 42"},
        {"LF, then CR", 1, 2, 4, 2, "1\n\r2", "00 01 02/10 11 1/20 21 /30 31 2/40 41 42"},
        {"reversed range", 3, 2, 1, 1, "a\tb\rc\td\re\tf", "00 01 02/10 a b/20 c d/30 e f/40 41 42"},
        {"no items: rows 1..0, no text", 1, 2, 0, 2, "", "00 01 02/10 11 12/20 21 22/30 31 32/40 41 42"},
        {"last cell", 4, 2, 4, 2, "???\r", "00 01 02/10 11 12/20 21 22/30 31 32/40 41 ???"},
    };
    for (const Case& c : cases) {
        ValueGrid grid("GridExtra");
        grid.SetRows(5);
        grid.SetCols(3);
        for (int r = 0; r < 5; ++r)
            for (int k = 0; k < 3; ++k) grid.SetTextMatrix(r, k, std::to_string(r) + std::to_string(k));
        grid.SetCellBackColour(1, 2, 0xFFC0C0);
        grid.PasteBlock(c.row, c.col, c.rowSel, c.colSel, c.text);
        std::string after;
        for (int r = 0; r < 5; ++r)
            for (int k = 0; k < 3; ++k) after += (k ? " " : r ? "/" : "") + grid.TextMatrix(r, k);
        EXPECT_EQ(after, c.after) << c.name;
        EXPECT_EQ(grid.CellBackColour(1, 2), 0xFFC0C0u) << c.name;
    }
}

TEST(ValueGrid, ColumnWidthsInTwipsAndASizeFittedToRowsAndColumns) {
    auto grid = ItemGrid();
    const int32_t widths[] = {1000, 1100, 1100};
    for (int c = 0; c < 3; ++c) grid->SetColWidth(c, widths[c]);
    for (int c = 0; c < 3; ++c) {
        EXPECT_EQ(grid->ColWidth(c), widths[c]);
        EXPECT_EQ(grid->columnWidth(c), TwipsToPixels(widths[c], grid->logicalDpiX()));
    }
    grid->SetRowHeight(0, 480);
    EXPECT_EQ(grid->rowHeight(0), TwipsToPixels(480, grid->logicalDpiY()));
    grid->FitWidthToColumns();
    grid->FitHeightToRows();
    grid->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(grid.get()));
    // Fitted: every cell shows, nothing to scroll, no spare room.
    EXPECT_EQ(grid->horizontalScrollBar()->maximum(), 0);
    EXPECT_EQ(grid->verticalScrollBar()->maximum(), 0);
    EXPECT_EQ(grid->viewport()->width(), grid->columnWidth(0) + grid->columnWidth(1) + grid->columnWidth(2));
    int rowsHeight = 0;
    for (int r = 0; r < 10; ++r) rowsHeight += grid->rowHeight(r);
    EXPECT_EQ(grid->viewport()->height(), rowsHeight);
    grid->SetColWidth(1, -1);
    EXPECT_EQ(grid->columnWidth(1), grid->horizontalHeader()->defaultSectionSize());
}

class GridMouse : public ::testing::Test {
protected:
    void SetUp() override {
        grid_->resize(600, 400);  // room beside the cells
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
    QPoint At(int row, int col) const { return grid_->visualRect(grid_->model()->index(row, col)).center(); }
    void Send(QEvent::Type type, QPoint at) {
        QMouseEvent event(type, at, grid_->viewport()->mapToGlobal(at), Qt::LeftButton,
                          type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, {});
        QApplication::sendEvent(grid_->viewport(), &event);
    }
    std::unique_ptr<ValueGrid> grid_ = ItemGrid();
    std::vector<std::string> events_;
};

TEST_F(GridMouse, PressesReportButtonShiftAndCellAndOnlyLeftClicksClick) {
    struct Case { Qt::MouseButton button; Qt::KeyboardModifiers keys; int row, col; std::vector<std::string> events; };
    const Case cases[] = {
        {Qt::LeftButton, {}, 3, 1, {"down 1 0 3,1", "click 3,1"}},
        {Qt::RightButton, {}, 2, 0, {"down 2 0 2,0"}},
        {Qt::MiddleButton, {}, 9, 2, {"down 4 0 9,2"}},
        {Qt::LeftButton, Qt::ShiftModifier, 0, 0, {"down 1 1 0,0", "click 0,0"}},
        {Qt::RightButton, Qt::ControlModifier | Qt::AltModifier, 1, 2, {"down 2 6 1,2"}},
    };
    for (const Case& c : cases) {
        events_.clear();
        QTest::mouseClick(grid_->viewport(), c.button, c.keys, At(c.row, c.col));
        EXPECT_EQ(events_, c.events) << c.row << "," << c.col;
    }
    events_.clear();
    QTest::mouseClick(grid_->viewport(), Qt::LeftButton, {}, QPoint(590, 390));
    EXPECT_THAT(events_, ElementsAre("down 1 0 -1,-1", "click -1,-1"));
}

TEST_F(GridMouse, ReleaseAwayFromTheGridIsNoClickAndADoubleClickIsOneClick) {
    Send(QEvent::MouseButtonPress, At(4, 1));
    Send(QEvent::MouseButtonRelease, QPoint(-30, -30));
    EXPECT_THAT(events_, ElementsAre("down 1 0 4,1"));
    events_.clear();
    // As Qt delivers a double click: press, release, press, double-click, release.
    for (QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease, QEvent::MouseButtonPress,
                              QEvent::MouseButtonDblClick, QEvent::MouseButtonRelease})
        Send(type, At(5, 0));
    EXPECT_THAT(events_, ElementsAre("down 1 0 5,0", "click 5,0", "down 1 0 5,0"));
}

}  // namespace
}  // namespace ui
