// The value grid: cell bounds and colours, the block paste, twips widths and
// fitted size, mouse signals; twips and colour conversions.
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

TEST(Twips, RoundToTheNearestPixelAtTheGivenResolution) {
    struct Case { int32_t twips; int dpi; int32_t pixels; };
    const Case cases[] = {{1440, 96, 96}, {1000, 96, 67}, {1100, 96, 73}, {7, 96, 0}, {8, 96, 1},
                          {1100, 120, 92}, {-1000, 96, -67}, {1000, 0, 0}, {2147483647, 96, 143165576}};
    for (const Case& c : cases) EXPECT_EQ(TwipsToPixels(c.twips, c.dpi), c.pixels) << c.twips << "@" << c.dpi;
    EXPECT_EQ(PixelsToTwips(67, 96), 1005);
    EXPECT_EQ(PixelsToTwips(2147483647, 1), 2147483647);  // clamped, not wrapped
}

TEST(Colour, ValuesAreBlueGreenRedAndSystemColoursComeFromThePalette) {
    const std::pair<uint32_t, QColor> cases[] = {{0x800000, QColor(0, 0, 128)}, {0x0080FF, QColor(255, 128, 0)},
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
    const std::string row10 = "GridSelected row: index 10 outside 0..9", col3 = "GridSelected column: index 3 outside 0..2";
    const std::pair<std::function<void()>, std::string> cases[] = {
        {[&] { grid->TextMatrix(10, 0); }, row10},
        {[&] { grid->SetTextMatrix(-1, 2, "x"); }, "GridSelected row: index -1 outside 0..9"},
        {[&] { grid->CellBackColour(9, 3); }, col3},
        {[&] { grid->SetCellForeColour(10, 0, 0); }, row10},
        {[&] { grid->PasteBlock(1, 1, 9, 3, "a"); }, col3},
        {[&] { grid->ColWidth(3); }, col3},
        {[&] { grid->SetRows(-1); }, "GridSelected row count: index -1 outside 0..32767"},
        {[&] { grid->SetCols(32768); }, "GridSelected column count: index 32768 outside 0..32767"},
        {[&] { grid->SetColWidth(0, -2); }, "GridSelected column width: index -2 outside -1..2147483647"},
    };
    for (const auto& [call, message] : cases) EXPECT_EQ(ErrorOf(call), message);
    EXPECT_EQ(grid->TextMatrix(1, 1), "");  // the failed paste wrote nothing
    grid->SetRows(0);
    EXPECT_EQ(ErrorOf([&] { grid->TextMatrix(0, 0); }), "GridSelected row: index 0 outside 0..-1");
}

TEST(ValueGrid, ColoursReadBackAsSetDefaultByFixedCellsAndClearDropsThem) {
    auto grid = ItemGrid();
    auto colours = [&](int r, int c) { return std::pair(grid->CellBackColour(r, c), grid->CellForeColour(r, c)); };
    EXPECT_EQ(colours(0, 1), std::pair(kSystemButtonFace, kSystemButtonText));  // heading row
    EXPECT_EQ(colours(1, 0), std::pair(kSystemWindow, kSystemWindowText));
    grid->SetFixedCols(1);
    EXPECT_EQ(colours(1, 0), std::pair(kSystemButtonFace, kSystemButtonText));
    grid->SetTextMatrix(1, 0, "BPM03/ORKA");
    grid->SetCellBackColour(1, 0, 0x800000);
    grid->SetCellForeColour(1, 0, 0xFFFFFF);
    EXPECT_EQ(colours(1, 0), std::pair(0x800000u, 0xFFFFFFu));
    EXPECT_EQ(grid->item(1, 0)->background().color(), QColor(0, 0, 128));
    EXPECT_EQ(grid->item(1, 0)->foreground().color(), QColor(255, 255, 255));
    EXPECT_EQ(colours(2, 0), std::pair(kSystemButtonFace, kSystemButtonText));  // the neighbour is untouched
    grid->Clear();
    EXPECT_EQ(grid->TextMatrix(1, 0), "");
    EXPECT_EQ(colours(1, 0), std::pair(kSystemButtonFace, kSystemButtonText));
}

TEST(ValueGrid, BlockPasteFillsTheRangeFromItsTopLeftCell) {
    struct Case { const char* name; int row, col, rowSel, colSel; std::string text, after; };
    // Every case starts from a 5 x 3 grid whose cells hold their row and column.
    const Case cases[] = {
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
    grid->SetColWidth(1, 1100);
    EXPECT_EQ(std::pair(grid->ColWidth(1), grid->columnWidth(1)),
              std::pair(1100, TwipsToPixels(1100, grid->logicalDpiX())));
    grid->SetRowHeight(0, 480);
    EXPECT_EQ(grid->rowHeight(0), TwipsToPixels(480, grid->logicalDpiY()));
    grid->FitWidthToColumns();
    grid->FitHeightToRows();
    grid->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(grid.get()));
    // Fitted: every cell shows, nothing to scroll, no spare room.
    EXPECT_EQ(std::tuple(grid->horizontalScrollBar()->maximum(), grid->verticalScrollBar()->maximum(),
                         grid->viewport()->size()),
              std::tuple(0, 0, QSize(grid->horizontalHeader()->length(), grid->verticalHeader()->length())));
    grid->SetColWidth(1, -1);
    EXPECT_EQ(grid->columnWidth(1), grid->horizontalHeader()->defaultSectionSize());
}

TEST(ValueGrid, PressesReportButtonShiftAndCellOnlyLeftClicksReleasedOverTheGridClickOnce) {
    auto grid = ItemGrid();
    grid->resize(600, 400);  // room beside the cells
    grid->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(grid.get()));
    QString events;
    QObject::connect(grid.get(), &ValueGrid::MouseDown, [&](int b, int s, int r, int c) {
        events += QString("down %1 %2 %3,%4|").arg(b).arg(s).arg(r).arg(c);
    });
    QObject::connect(grid.get(), &ValueGrid::Click,
                     [&](int r, int c) { events += QString("click %1,%2|").arg(r).arg(c); });
    auto at = [&](int row, int col) { return grid->visualRect(grid->model()->index(row, col)).center(); };
    // Events as Qt delivers them; a double click is a click, then press, double click and release.
    struct Case { const char* name; Qt::MouseButton button; Qt::KeyboardModifiers keys; QPoint at, releasedAt;
                  bool twice; QString events; };
    const Case cases[] = {
        {"left", Qt::LeftButton, {}, at(3, 1), at(3, 1), false, "down 1 0 3,1|click 3,1|"},
        {"middle, shift", Qt::MiddleButton, Qt::ShiftModifier, at(9, 2), at(9, 2), false, "down 4 1 9,2|"},
        {"right, ctrl alt", Qt::RightButton, Qt::ControlModifier | Qt::AltModifier, at(1, 2), at(1, 2), false,
         "down 2 6 1,2|"},
        {"beside the cells", Qt::LeftButton, {}, {590, 390}, {590, 390}, false, "down 1 0 -1,-1|click -1,-1|"},
        {"released away", Qt::LeftButton, {}, at(4, 1), {-30, -30}, false, "down 1 0 4,1|"},
        {"double click", Qt::LeftButton, {}, at(5, 0), at(5, 0), true, "down 1 0 5,0|click 5,0|down 1 0 5,0|"},
    };
    for (const Case& c : cases) {
        events.clear();
        auto send = [&](QEvent::Type type, QPoint p) {
            QMouseEvent event(type, p, grid->viewport()->mapToGlobal(p), c.button,
                              type == QEvent::MouseButtonRelease ? Qt::NoButton : c.button, c.keys);
            QApplication::sendEvent(grid->viewport(), &event);
        };
        send(QEvent::MouseButtonPress, c.at);
        send(QEvent::MouseButtonRelease, c.releasedAt);
        if (c.twice)
            for (auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonDblClick, QEvent::MouseButtonRelease})
                send(type, c.at);
        EXPECT_EQ(events.toStdString(), c.events.toStdString()) << c.name;
    }
}

}  // namespace
}  // namespace ui
