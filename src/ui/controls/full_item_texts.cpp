#include "ui/controls/full_item_texts.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QScreen>
#include <QScrollBar>
#include <algorithm>

namespace ui {
namespace {

// Room beside the text: the view's frame and item margins.
constexpr int kItemMargin = 24;

}  // namespace

void ShowFullItemTexts(QComboBox* combo) {
    QObject::connect(combo, &QComboBox::currentTextChanged, combo, [combo](const QString& text) { combo->setToolTip(text); });
    FitToItemTexts(combo);
}

void FitToItemTexts(QComboBox* combo) {
    QAbstractItemView* view = combo->view();
    const QFontMetrics metrics(view->font());
    int widest = 0;
    for (int i = 0; i < combo->count(); ++i) {
        const QString text = combo->itemText(i);
        combo->setItemData(i, text, Qt::ToolTipRole);
        widest = std::max(widest, metrics.horizontalAdvance(text));
    }
    int width = widest + kItemMargin + view->verticalScrollBar()->sizeHint().width();
    if (const QScreen* screen = combo->screen()) width = std::min(width, screen->availableGeometry().width());
    view->setMinimumWidth(width);
    combo->setToolTip(combo->currentText());
}

}  // namespace ui
