// The selected items on the window: adding an element (its mark on the
// spectrum, its trend with history, its grid row), removing one or all, the
// grids' columns, and the clicks and menus that act on them. What an item is
// and how its grid texts read is the item list's (item_list.h).
#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>

#include "catalogue/runtime_error.h"
#include "ui/controls/event_loop.h"
#include "ui/controls/value_grid.h"
#include "ui/plot/plex_plot.h"
#include "viewer/channel_map.h"
#include "viewer/initialising_guard.h"
#include "viewer/spectrum_form.h"
#include "viewer/value_text.h"
#include "vire/utils.h"

namespace viewer {

namespace {

constexpr uint32_t kWhite = 0xFFFFFF;
constexpr uint32_t kBlack = 0x000000;

}  // namespace

ItemList& SpectrumForm::ListOf(int16_t grid) {
    switch (grid) {
        case 0: return s_.Items;
        case 1: return s_.Extras;
        case 2: return s_.Overview;
        default: catalogue::ThrowOutOfBounds("grid", grid, 0, 2);
    }
}

ui::ValueGrid* SpectrumForm::GridOf(int16_t grid) const {
    ui::ValueGrid* grids[] = {GridSelected, GridExtra, GridAccelerator};
    if (grid < 0 || grid > 2) catalogue::ThrowOutOfBounds("grid", grid, 0, 2);
    return grids[grid];
}

ui::PlexPlot* SpectrumForm::TrendPlotOf(int16_t which) const {
    ui::PlexPlot* plots[] = {PLEXPlotSelected, PLEXPlotExtra, PLEXPlotAccelerator};
    if (which < 0 || which > 2) catalogue::ThrowOutOfBounds("plot", which, 0, 2);
    return plots[which];
}

uint32_t SpectrumForm::ColourOf(int16_t grid, int16_t slot) const {
    return grid == 2 ? s_.OverviewColours[slot] : s_.ItemColours[slot];
}

void SpectrumForm::SelectAChannel(int16_t& element, int16_t& sourceChannel, int16_t& elementNumber,
                                  int16_t& plottedChannel) {
    // A tenth item is refused without a word, although the list has 11 slots.
    if (s_.Items.Full()) return;
    ui::YieldToEventLoop();
    FlagGuard busy(s_.Busy);
    const int16_t n = s_.Items.Add(MakeSelectedItem(s_.cat, element, sourceChannel, elementNumber, plottedChannel));
    if (n < 0) return;
    PLEXPlotSpectrum->SetMarkColour(s_.ItemColours[n]);
    {
        FlagGuard initialising(s_.Initialising);
        s_.Items.SetCurrent(n);
        TxtSelect[2]->setText(QString::fromStdString(LimitText(s_.Items[n].historyUpper)));
        TxtSelect[3]->setText(QString::fromStdString(LimitText(s_.Items[n].historyLower)));
    }
    InitPropSelections(true);
    s_.Items[n].markNumber = PLEXPlotSpectrum->AddMark(element);
    // While the trends follow the present, a new item brings the window up to now.
    if (OptLiveData->isChecked() && s_.Window.followsPresent) MoveWindowToPresent();
    if (s_.Items.Count() == 1) {
        // The first item sets the common scale of the trend plot.
        PLEXPlotSelected->SetYMax(s_.Items[n].historyUpper);
        PLEXPlotSelected->SetYMin(s_.Items[n].historyLower);
    }
    LoadHistories(0, n, n);
    PlotTheHistoryData();
    // In the set-point comparison the item brings its companion along.
    if (s_.ExtrasMode == 1) SelectAnEXTRAChannel(false);
}

void SpectrumForm::RemoveAllItems() {
    FlagGuard busy(s_.Busy);
    const auto dropTraces = [](ItemList& items, ui::PlexPlot* plot) {
        for (int16_t i = 0; i < items.Count(); ++i) {
            items[i].hasData = false;
            plot->DeleteTrace(items[i].traceNumber);
            items[i].traceNumber = -1;
            ui::YieldToEventLoop();
        }
    };
    dropTraces(s_.Items, PLEXPlotSelected);
    s_.Items.Clear();
    ResetItemGrid(0);
    // Traces, texts and the items' links go; the trend plot starts afresh.
    PLEXPlotSelected->Clear();
    PLEXPlotSelected->RemoveAllTraces();
    PLEXPlotSpectrum->RemoveAllMarks();
    setSpectrumHistoryParameters();
    // The extra items keep their count: only their grid and traces go.
    if (s_.Extras.Count() > 0) {
        ResetItemGrid(1);
        dropTraces(s_.Extras, PLEXPlotExtra);
    }
    // Without items the label says again how the trends are scaled.
    LabelSelect[4]->setText(s_.CommonScale != 0 ? "All Curves" : "Selected Device");
}

void SpectrumForm::RemoveSelectedItem() {
    if (!s_.Items.HasCurrent()) return;
    FlagGuard busy(s_.Busy);
    SelectedItem& going = s_.Items[s_.Items.Current()];
    PLEXPlotSelected->DeleteTrace(going.traceNumber);
    PLEXPlotSpectrum->RemoveMark(going.markNumber);
    s_.Items.RemoveCurrent();
    ResetItemGrid(0);
    // The links of the items stay only for those that remain: every item
    // is set up again in its (possibly new) slot.
    PLEXPlotSelected->Clear();
    for (int16_t i = 0; i < s_.Items.Count(); ++i) {
        SelectedItem& item = s_.Items[i];
        item.traceNumber = -1;
        item.linkHandle = -1;
        GridSelected->SetTextMatrix(i + 1, 0, ItemRowCaption(item));
        GridSelected->SetCellBackColour(i + 1, 0, s_.ItemColours[i]);
        GridSelected->SetCellForeColour(i + 1, 0, kWhite);
    }
    LoadHistories(0, 0, static_cast<int16_t>(s_.Items.Count() - 1));
    DrawMarkers();
    PlotTheHistoryData();
    s_.Items.SetCurrent(-1);
}

void SpectrumForm::ResetItemGrid(int16_t grid) {
    ui::ValueGrid* target = GridOf(grid);
    target->Clear();
    target->SetTextMatrix(0, 0, grid == 2 ? "Quantity" : "Item");
    target->SetTextMatrix(0, 1, "Cursor");
    target->SetTextMatrix(0, 2, ThirdHeading(OptArchiveData->isChecked()));
}

void SpectrumForm::FillAGrid(int16_t column, int16_t grid, int32_t time, bool reload) {
    ItemList& items = ListOf(grid);
    ui::ValueGrid* target = GridOf(grid);
    target->SetTextMatrix(0, 2, ThirdHeading(OptArchiveData->isChecked()));
    if (reload) {
        // The series are the points the trend plot holds; a reload only
        // recounts them.
        for (int16_t i = 0; i < items.Count(); ++i)
            if (items[i].hasData) items[i].pointCount = static_cast<int16_t>(std::min<std::size_t>(items[i].series.Points().size(), INT16_MAX));
    }
    const bool cursorColumn = column == 1;
    const std::vector<std::string> texts =
        GridColumnTexts(items, time, cursorColumn, grid == 2 ? GridFormat::Overview : GridFormat::Items);
    if (items.Count() > 0) {
        const int targetColumn = cursorColumn ? 1 : 2;
        target->PasteBlock(1, targetColumn, items.Count(), targetColumn, GridBlock(texts));
        for (int16_t r = 1; r <= items.Count(); ++r) target->SetCellForeColour(r, targetColumn, kBlack);
    }
    for (int16_t r = 1; r <= items.Count(); ++r) {
        target->SetTextMatrix(r, 0, grid == 2 ? items[r - 1].channelName : ItemRowCaption(items[r - 1]));
        target->SetCellBackColour(r, 0, ColourOf(grid, static_cast<int16_t>(r - 1)));
        target->SetCellForeColour(r, 0, kWhite);
    }
}

void SpectrumForm::ClickAGrid(int32_t row) {
    // Row 0 holds the headings; a row below the items chooses none.
    const int32_t item = row - 1;
    if (item < 0 || item >= s_.Items.Count()) return;
    s_.Items.SetCurrent(static_cast<int16_t>(item));
    const SelectedItem& current = s_.Items[s_.Items.Current()];
    {
        FlagGuard initialising(s_.Initialising);
        TxtSelect[2]->setText(QString::fromStdString(LimitText(current.historyUpper)));
        TxtSelect[3]->setText(QString::fromStdString(LimitText(current.historyLower)));
    }
    InitPropSelections(true);
    ShowItemStatus(current);
}

void SpectrumForm::ShowItemStatus(const SelectedItem& item) {
    // Which source the item's past came from, and how much of it.
    std::string source = "no history";
    if (item.hasData)
        source = std::to_string(item.pointCount) + " points from the " +
                 (item.fromArchive ? std::string("archive") : std::string("local history"));
    LabelSelect[4]->setText(QString::fromStdString(item.elementName + ": " + source));
}

void SpectrumForm::selectedItemDelete_Click() {
    if (s_.Items.Current() >= 0) RemoveSelectedItem();
}

void SpectrumForm::allItemsDelete_Click() {
    s_.Items.SetCurrent(-1);
    RemoveAllItems();
}

std::vector<std::string> SpectrumForm::SelectElementsByName(const std::vector<std::string>& names) {
    std::vector<std::string> unknown;
    const catalogue::Catalogue& cat = s_.cat;
    for (const std::string& name : names) {
        // The chooser lists the elements of every part in order; a name is
        // matched as the spectrum labels it (tag and name) or bare.
        int32_t row = -1, offset = 0;
        const int16_t parts = s_.ChannelsStarted;
        for (int16_t p = 0; p < parts && row < 0; ++p) {
            const catalogue::SpectrumRecord& record = cat.SpectrumList[cat.CurrentSpectrum + p];
            for (std::size_t k = 0; k < record.ElementNames.size(); ++k) {
                if (record.ElementNames[k] == name || record.Tag + record.ElementNames[k] == name) {
                    row = offset + static_cast<int32_t>(k);
                    break;
                }
            }
            offset += std::max<int32_t>(record.Size, static_cast<int32_t>(record.ElementNames.size()));
        }
        if (row < 0 || row >= ComboDevs->count()) {
            unknown.push_back(name);
            continue;
        }
        ComboDevs->setCurrentIndex(row);
        ComSelDevice_Click();
    }
    return unknown;
}

}  // namespace viewer
