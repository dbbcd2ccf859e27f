// The selected-item list: up to MaxItems elements followed over time, kept
// in slots 0..10 without gaps, with the highlighted item. The same list type
// holds the extra channels and the machine overview's quantities.
//
// Qt-free: the window wires it to its plots and grids (items.cpp); what an
// item is made of and how its grid column reads is decided here.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "catalogue/catalogue.h"
#include "catalogue/fixed_array.h"
#include "viewer/item_record.h"

namespace viewer {

inline constexpr int kMaxItemSlot = 10;  // SelectedItems 0..10

using ItemTable = catalogue::FixedArray<SelectedItem, 0, kMaxItemSlot>;
using ColourTable = catalogue::FixedArray<uint32_t, 0, kMaxItemSlot>;

class ItemList {
public:
    // `maxItems`: how many items the user may add (9 for the selected
    // items); the slots above stay spare.
    explicit ItemList(int16_t maxItems = 9) : maxItems_(maxItems) {}

    int16_t Count() const { return count_; }          // SelectedItemCount
    int16_t MaxItems() const { return maxItems_; }
    void SetMaxItems(int16_t maxItems) { maxItems_ = maxItems; }
    bool Full() const { return count_ >= maxItems_; }

    // The highlighted item, -1 for none (CurrentItem).
    int16_t Current() const { return current_; }
    void SetCurrent(int16_t item) { current_ = item; }
    bool HasCurrent() const { return current_ >= 0 && current_ < count_; }

    // Slot access, checked against 0..10 (a slot beyond is a bounds fault).
    SelectedItem& operator[](int16_t slot) { return slots_[slot]; }
    const SelectedItem& operator[](int16_t slot) const { return slots_[slot]; }

    // Appends an item; its slot, or -1 when the list is full (nothing changes).
    int16_t Add(SelectedItem item);
    // Removes the current item and closes the gap (records move down whole,
    // order kept); the freed last slot is cleared. False when no item is
    // current. The current item becomes -1.
    bool RemoveCurrent();
    // Empties the list: every used slot loses its data, trace and mark; the
    // records stay for callers that re-add their elements.
    void Clear();

    // The first item showing `propShort` of catalogue entry `plottedChannel`; -1 for none.
    int16_t Find(const std::string& propShort, int16_t plottedChannel) const;
    // The used items, in slot order.
    std::vector<SelectedItem> Items() const;

private:
    ItemTable slots_;
    int16_t count_ = 0;
    int16_t current_ = -1;
    int16_t maxItems_;
};

// An item record of `element` (number `elementNumber` within the plotted
// channel) carrying the name, group and caption of `sourceChannel` and the
// addresses and limits of `plottedChannel`.
SelectedItem MakeSelectedItem(const catalogue::Catalogue& cat, int16_t element, int16_t sourceChannel,
                              int16_t elementNumber, int16_t plottedChannel);

// An item of a machine-wide quantity (a row of the machine's history file).
SelectedItem MakeQuantityItem(const catalogue::SpectrumRecord& quantity);

// What the item's grid row is called: the element name followed by its tag.
std::string ItemRowCaption(const SelectedItem& item);

// The third heading of an item grid: "Now" live, "Marker" in archive mode.
std::string ThirdHeading(bool archive);

// How a value is written into a grid column.
enum class GridFormat { Items, Overview };

// The texts of one grid column at `time`, one per item in slot order: the
// value recorded at or after `time` in the grid's format; without data (or
// past the last point) "???" in the third column and "" in the cursor column.
std::vector<std::string> GridColumnTexts(const ItemList& items, int32_t time, bool cursorColumn,
                                         GridFormat format);

// The texts joined as one block for the grid's paste, each ended by a CR.
std::string GridBlock(const std::vector<std::string>& texts);

}  // namespace viewer
