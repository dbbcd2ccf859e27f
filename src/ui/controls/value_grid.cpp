#include "ui/controls/value_grid.h"

#include <QHeaderView>
#include <QMouseEvent>
#include <QStyledItemDelegate>
#include <algorithm>
#include <limits>

#include "ui/controls/block_text.h"
#include "ui/controls/checked_index.h"
#include "ui/controls/colour.h"
#include "ui/controls/twips.h"

namespace ui {
namespace {

// The colour values the window gave, kept beside the brushes Qt paints with,
// so that a system colour reads back as the value that was set.
constexpr int kBackValueRole = Qt::UserRole + 1;
constexpr int kForeValueRole = Qt::UserRole + 2;

int ButtonValue(Qt::MouseButton button) {
    switch (button) {
        case Qt::LeftButton: return ValueGrid::kLeftButton;
        case Qt::RightButton: return ValueGrid::kRightButton;
        case Qt::MiddleButton: return ValueGrid::kMiddleButton;
        default: return 0;
    }
}

int ShiftValue(Qt::KeyboardModifiers modifiers) {
    int shift = 0;
    if (modifiers & Qt::ShiftModifier) shift |= ValueGrid::kShiftKey;
    if (modifiers & Qt::ControlModifier) shift |= ValueGrid::kCtrlKey;
    if (modifiers & Qt::AltModifier) shift |= ValueGrid::kAltKey;
    return shift;
}

}  // namespace

// Paints the default colours of fixed cells, which need no item of their own.
class ValueGridDelegate : public QStyledItemDelegate {
public:
    explicit ValueGridDelegate(ValueGrid* grid) : QStyledItemDelegate(grid), grid_(grid) {}

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        if (!grid_->IsFixed(index.row(), index.column())) return;
        if (!index.data(Qt::BackgroundRole).isValid())
            option->backgroundBrush = ResolveColour(kSystemButtonFace, &grid_->palette());
        if (!index.data(Qt::ForegroundRole).isValid())
            option->palette.setColor(QPalette::Text, ResolveColour(kSystemButtonText, &grid_->palette()));
    }

private:
    ValueGrid* grid_;
};

ValueGrid::ValueGrid(const QString& name, QWidget* parent) : QTableWidget(parent) {
    setObjectName(name);
    setItemDelegate(new ValueGridDelegate(this));
    // A display of values: the window's own handlers react to clicks, Qt's
    // selection and editing would only paint over the cell colours.
    setSelectionMode(QAbstractItemView::NoSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setFocusPolicy(Qt::NoFocus);
    horizontalHeader()->hide();
    verticalHeader()->hide();
    horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    SetRows(2);
    SetCols(2);
}

std::string ValueGrid::What(const char* part) const {
    return objectName().toStdString() + " " + part;
}

void ValueGrid::SetRows(int rows) {
    CheckIndex(What("row count"), rows, 0, kMaxCount);
    setRowCount(rows);
}

void ValueGrid::SetCols(int cols) {
    CheckIndex(What("column count"), cols, 0, kMaxCount);
    setColumnCount(cols);
    colTwips_.resize(static_cast<size_t>(cols), -1);
}

void ValueGrid::SetFixedRows(int rows) {
    CheckIndex(What("fixed row count"), rows, 0, kMaxCount);
    fixedRows_ = rows;
    viewport()->update();
}

void ValueGrid::SetFixedCols(int cols) {
    CheckIndex(What("fixed column count"), cols, 0, kMaxCount);
    fixedCols_ = cols;
    viewport()->update();
}

void ValueGrid::CheckCell(int row, int col) const {
    CheckIndex(What("row"), row, 0, static_cast<long>(rowCount()) - 1);
    CheckIndex(What("column"), col, 0, static_cast<long>(columnCount()) - 1);
}

QTableWidgetItem* ValueGrid::Cell(int row, int col) {
    CheckCell(row, col);
    QTableWidgetItem* cell = item(row, col);
    if (cell == nullptr) {
        cell = new QTableWidgetItem;
        cell->setFlags(Qt::ItemIsEnabled);
        setItem(row, col, cell);
    }
    return cell;
}

std::string ValueGrid::TextMatrix(int row, int col) const {
    CheckCell(row, col);
    const QTableWidgetItem* cell = item(row, col);
    return cell ? cell->text().toStdString() : std::string();
}

void ValueGrid::SetTextMatrix(int row, int col, const std::string& text) {
    Cell(row, col)->setText(QString::fromStdString(text));
}

uint32_t ValueGrid::CellBackColour(int row, int col) const {
    CheckCell(row, col);
    const QTableWidgetItem* cell = item(row, col);
    if (cell && cell->data(kBackValueRole).isValid()) return cell->data(kBackValueRole).toUInt();
    return IsFixed(row, col) ? kSystemButtonFace : kSystemWindow;
}

uint32_t ValueGrid::CellForeColour(int row, int col) const {
    CheckCell(row, col);
    const QTableWidgetItem* cell = item(row, col);
    if (cell && cell->data(kForeValueRole).isValid()) return cell->data(kForeValueRole).toUInt();
    return IsFixed(row, col) ? kSystemButtonText : kSystemWindowText;
}

void ValueGrid::SetCellBackColour(int row, int col, uint32_t colour) {
    QTableWidgetItem* cell = Cell(row, col);
    cell->setData(kBackValueRole, colour);
    cell->setBackground(ResolveColour(colour, &palette()));
}

void ValueGrid::SetCellForeColour(int row, int col, uint32_t colour) {
    QTableWidgetItem* cell = Cell(row, col);
    cell->setData(kForeValueRole, colour);
    cell->setForeground(ResolveColour(colour, &palette()));
}

void ValueGrid::PasteBlock(int row, int col, int rowSel, int colSel, std::string_view text) {
    CheckCell(row, col);
    CheckCell(rowSel, colSel);
    const int top = std::min(row, rowSel);
    const int left = std::min(col, colSel);
    const size_t height = static_cast<size_t>(std::max(row, rowSel) - top + 1);
    const size_t width = static_cast<size_t>(std::max(col, colSel) - left + 1);
    const BlockRows rows = SplitBlock(text);
    for (size_t r = 0; r < std::min(rows.size(), height); ++r)
        for (size_t c = 0; c < std::min(rows[r].size(), width); ++c)
            SetTextMatrix(top + static_cast<int>(r), left + static_cast<int>(c), rows[r][c]);
}

void ValueGrid::Clear() { clearContents(); }

int32_t ValueGrid::ColWidth(int col) const {
    CheckIndex(What("column"), col, 0, static_cast<long>(columnCount()) - 1);
    const int32_t twips = colTwips_[static_cast<size_t>(col)];
    return twips >= 0 ? twips : PixelsToTwips(columnWidth(col), logicalDpiX());
}

void ValueGrid::SetColWidth(int col, int32_t twips) {
    CheckIndex(What("column"), col, 0, static_cast<long>(columnCount()) - 1);
    CheckIndex(What("column width"), twips, -1, std::numeric_limits<int32_t>::max());
    colTwips_[static_cast<size_t>(col)] = twips;
    setColumnWidth(col, twips < 0 ? horizontalHeader()->defaultSectionSize()
                                   : TwipsToPixels(twips, logicalDpiX()));
}

int32_t ValueGrid::RowHeight(int row) const {
    CheckIndex(What("row"), row, 0, static_cast<long>(rowCount()) - 1);
    return PixelsToTwips(rowHeight(row), logicalDpiY());
}

void ValueGrid::SetRowHeight(int row, int32_t twips) {
    CheckIndex(What("row"), row, 0, static_cast<long>(rowCount()) - 1);
    CheckIndex(What("row height"), twips, -1, std::numeric_limits<int32_t>::max());
    setRowHeight(row, twips < 0 ? verticalHeader()->defaultSectionSize()
                                : TwipsToPixels(twips, logicalDpiY()));
}

void ValueGrid::FitWidthToColumns() {
    long width = 2L * frameWidth();
    for (int c = 0; c < columnCount(); ++c) width += columnWidth(c);
    setFixedWidth(static_cast<int>(std::min<long>(width, QWIDGETSIZE_MAX)));
}

void ValueGrid::FitHeightToRows() {
    long height = 2L * frameWidth();
    for (int r = 0; r < rowCount(); ++r) height += rowHeight(r);
    setFixedHeight(static_cast<int>(std::min<long>(height, QWIDGETSIZE_MAX)));
}

void ValueGrid::mousePressEvent(QMouseEvent* event) {
    // Qt's own press handling would move a current cell and start drag
    // selections; the grid only reports the press.
    const QPoint at = event->position().toPoint();
    const int row = rowAt(at.y());
    const int col = columnAt(at.x());
    if (event->button() == Qt::LeftButton) {
        leftPressed_ = true;
        pressRow_ = row;
        pressCol_ = col;
    }
    event->accept();
    emit MouseDown(ButtonValue(event->button()), ShiftValue(event->modifiers()), row, col);
}

void ValueGrid::mouseReleaseEvent(QMouseEvent* event) {
    event->accept();
    if (event->button() != Qt::LeftButton || !leftPressed_) return;
    leftPressed_ = false;
    // Released away from the grid: no click, as with a button.
    if (!viewport()->rect().contains(event->position().toPoint())) return;
    emit Click(pressRow_, pressCol_);
}

void ValueGrid::mouseDoubleClickEvent(QMouseEvent* event) {
    // The second press of a double click is neither a mouse-down nor a click:
    // a handler that toggles a highlight on click must see one click only.
    event->accept();
    leftPressed_ = false;
}

void ValueGrid::mouseMoveEvent(QMouseEvent* event) {
    if (event->buttons() != Qt::NoButton) {
        event->accept();
        return;
    }
    QTableWidget::mouseMoveEvent(event);
}

}  // namespace ui
