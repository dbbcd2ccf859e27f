// The value grid beside the trend plots (GridSelected, GridExtra,
// GridAccelerator): a table of texts with per-cell colours, a block paste,
// column widths in twips and a size fitted to its rows and columns.
//
// Row 0 (and any further fixed rows or columns) is an ordinary row here: the
// window writes its headings into it like any other cell; fixed cells only
// differ in their default colours. Every row/column index is checked and an
// index outside the grid throws catalogue::RuntimeError (OutOfBounds).
#pragma once

#include <QTableWidget>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ui {

class ValueGrid : public QTableWidget {
    Q_OBJECT

public:
    // Mouse buttons and shift keys as the window's handlers test them.
    static constexpr int kLeftButton = 1;
    static constexpr int kRightButton = 2;
    static constexpr int kMiddleButton = 4;
    static constexpr int kShiftKey = 1;
    static constexpr int kCtrlKey = 2;
    static constexpr int kAltKey = 4;
    // Counts are 16-bit in the window logic.
    static constexpr int kMaxCount = 32767;

    // `name` is the grid's role ("GridSelected"); it names the grid in errors.
    explicit ValueGrid(const QString& name, QWidget* parent = nullptr);

    int Rows() const { return rowCount(); }
    int Cols() const { return columnCount(); }
    // 0..kMaxCount; rows or columns that go away lose their cells.
    void SetRows(int rows);
    void SetCols(int cols);
    int FixedRows() const { return fixedRows_; }
    int FixedCols() const { return fixedCols_; }
    void SetFixedRows(int rows);
    void SetFixedCols(int cols);

    std::string TextMatrix(int row, int col) const;
    void SetTextMatrix(int row, int col, const std::string& text);

    // Colours are 0x00BBGGRR values or system colours (0x800000NN). A cell
    // never given one reports its default: window / window text, or button
    // face / button text in fixed rows and columns.
    uint32_t CellBackColour(int row, int col) const;
    uint32_t CellForeColour(int row, int col) const;
    void SetCellBackColour(int row, int col, uint32_t colour);
    void SetCellForeColour(int row, int col, uint32_t colour);

    // Pastes `text` (see SplitBlock: CR-ended rows of tab-separated fields)
    // into the range spanned by (row, col) and (rowSel, colSel), in either
    // order, starting at its top-left cell. Text beyond the range is dropped;
    // cells the text does not reach keep their contents; an empty field
    // empties its cell. Colours are left as they are.
    void PasteBlock(int row, int col, int rowSel, int colSel, std::string_view text);

    // Empties every cell and drops every cell colour; counts and sizes stay.
    void Clear();

    // Widths and heights in twips at the screen's logical resolution. A
    // width of -1 puts the column back to the default width; other negative
    // values are errors. A width never set reports the current one.
    int32_t ColWidth(int col) const;
    void SetColWidth(int col, int32_t twips);
    int32_t RowHeight(int row) const;
    void SetRowHeight(int row, int32_t twips);

    // Makes the grid exactly as wide (high) as its columns (rows) and frame.
    void FitWidthToColumns();
    void FitHeightToRows();

signals:
    // A left click released over the grid; row/col of the press, -1 where
    // the press was beside the cells. A double click is one click (its
    // second press is a mouse-down only).
    void Click(int row, int col);
    // Every button press: button and shift as the k... constants above.
    void MouseDown(int button, int shift, int row, int col);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    friend class ValueGridDelegate;
    bool IsFixed(int row, int col) const { return row < fixedRows_ || col < fixedCols_; }
    void CheckCell(int row, int col) const;
    QTableWidgetItem* Cell(int row, int col);
    std::string What(const char* part) const;

    int fixedRows_ = 1;
    int fixedCols_ = 0;
    std::vector<int32_t> colTwips_;  // -1 = default width
    int pressRow_ = -1;
    int pressCol_ = -1;
    bool leftPressed_ = false;
};

}  // namespace ui
