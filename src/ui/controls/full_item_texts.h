// Combo boxes whose entries are longer than the box: the popup list grows to
// the widest entry (up to the screen's width) and every entry, and the box
// itself, carries its full text as a tool tip, so no name is ever cut.
#pragma once

class QComboBox;

namespace ui {

// The box's tool tip follows its current entry from now on.
void ShowFullItemTexts(QComboBox* combo);

// After the entries were (re)filled: each entry's tool tip, the popup's width.
void FitToItemTexts(QComboBox* combo);

}  // namespace ui
