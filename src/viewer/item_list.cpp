#include "viewer/item_list.h"

#include <cmath>

#include "viewer/value_text.h"
#include "vire/history_servers.h"

namespace viewer {

namespace {

// A cleared slot: nothing drawn, nothing read; the record's texts stay.
void Release(SelectedItem& item) {
    item.hasData = false;
    item.traceNumber = -1;
    item.markNumber = -1;
    item.linkHandle = -1;
    item.series = history::TimeSeries();
    item.pointCount = 0;
}

// An item with the live, history and archive addresses of a catalogue row.
SelectedItem WithAddressesOf(const catalogue::SpectrumRecord& record) {
    SelectedItem item;
    item.context = record.Context;
    item.server = record.Server;
    item.device = record.Device;
    item.property = record.Property;
    item.archiveServer = record.ArcServer;
    item.archiveProperty = record.ArcProperty;
    item.historyServer = record.HstServer;
    item.historyProperty = record.HstProperty;
    return item;
}

}  // namespace

int16_t ItemList::Add(SelectedItem item) {
    if (Full()) return -1;
    const int16_t slot = count_;
    slots_[slot] = std::move(item);
    slots_[slot].unusedSlot = false;
    ++count_;
    return slot;
}

bool ItemList::RemoveCurrent() {
    if (!HasCurrent()) return false;
    for (int16_t i = current_; i + 1 < count_; ++i) slots_[i] = slots_[i + 1];
    SelectedItem& freed = slots_[count_ - 1];
    Release(freed);
    freed.unusedSlot = true;
    --count_;
    current_ = -1;
    return true;
}

void ItemList::Clear() {
    for (int16_t i = 0; i < count_; ++i) Release(slots_[i]);
    count_ = 0;
}

int16_t ItemList::Find(const std::string& propShort, int16_t plottedChannel) const {
    for (int16_t i = 0; i < count_; ++i)
        if (slots_[i].PropShort == propShort && slots_[i].plottedChannel == plottedChannel) return i;
    return -1;
}

std::vector<SelectedItem> ItemList::Items() const {
    std::vector<SelectedItem> items;
    for (int16_t i = 0; i < count_; ++i) items.push_back(slots_[i]);
    return items;
}

SelectedItem MakeSelectedItem(const catalogue::Catalogue& cat, int16_t element, int16_t sourceChannel,
                              int16_t elementNumber, int16_t plottedChannel) {
    const catalogue::SpectrumRecord& source = cat.SpectrumList[sourceChannel];
    const catalogue::SpectrumRecord& plotted = cat.SpectrumList[plottedChannel];
    SelectedItem item = WithAddressesOf(plotted);
    const auto at = static_cast<std::size_t>(elementNumber);
    item.elementName = elementNumber >= 0 && at < plotted.ElementNames.size() ? plotted.ElementNames[at]
                                                                               : "#" + std::to_string(elementNumber);
    item.hasLocation = plotted.HasLocations;
    item.location = plotted.HasLocations && elementNumber >= 0 && at < plotted.ElementLocations.size()
                        ? plotted.ElementLocations[at]
                        : std::string();
    item.ExtraPropComboIndex = plotted.ExtraPropComboIndex;
    item.tag = plotted.Tag;
    item.elementIndex1 = element;
    item.elementIndex2 = element;
    item.elementNumber = elementNumber;
    item.sourceChannel = sourceChannel;
    item.plottedChannel = plottedChannel;
    item.channelName = source.Description;
    item.hasThresholds = catalogue::SpectrumRecord::UpperBound(plotted.HighThresholds) >= 1;
    item.propertyLink = source.PropLink;
    item.PropShort = source.PropShort;
    item.liveUpper = plotted.Max;
    item.liveLower = plotted.Min;
    item.axisLabel = plotted.Egu;
    item.historyUpper = plotted.Max;
    item.historyLower = plotted.Min;
    // The live link reads the whole spectrum of the channel; a reversed
    // channel delivers its last element first.
    const int32_t size = std::max<int32_t>(plotted.Size, elementNumber + 1);
    item.linkSize = std::max<int32_t>(size, 1);
    item.linkElement = plotted.Reverse ? item.linkSize - 1 - elementNumber : elementNumber;
    return item;
}

SelectedItem MakeQuantityItem(const catalogue::SpectrumRecord& quantity) {
    SelectedItem item = WithAddressesOf(quantity);
    // A history file keeps "SERVER/DEVICE" in its server field.
    const std::size_t slash = quantity.Server.find('/');
    item.server = quantity.Server.substr(0, slash);
    item.device = slash == std::string::npos ? quantity.Device : quantity.Server.substr(slash + 1);
    // A history file names the archive by its machine ("ORKA"): the
    // quantity is read from that machine's archiver, addressed in full so
    // that the probe and the series read reach the same server.
    item.archiveServer = quantity.ArcServer.empty() || quantity.ArcServer[0] == '/'
                             ? quantity.ArcServer
                             : "/" + quantity.Context + "/" + vire::HistoryServerName(quantity.ArcServer);
    // A machine quantity is its own device: the history addresses name it
    // by its short name.
    item.elementName = !quantity.ShortName.empty() ? quantity.ShortName : quantity.Property;
    item.channelName = !quantity.Description.empty() ? quantity.Description : quantity.Label;
    item.liveUpper = item.historyUpper = quantity.Max;
    item.liveLower = item.historyLower = quantity.Min;
    item.axisLabel = quantity.Egu;
    item.linkSize = 1;
    item.linkElement = 0;
    return item;
}

std::string ItemRowCaption(const SelectedItem& item) { return item.elementName + item.tag; }

std::string ThirdHeading(bool archive) { return archive ? "Marker" : "Now"; }

std::vector<std::string> GridColumnTexts(const ItemList& items, int32_t time, bool cursorColumn,
                                         GridFormat format) {
    std::vector<std::string> texts;
    for (int16_t i = 0; i < items.Count(); ++i) {
        const SelectedItem& item = items[i];
        if (!item.hasData) {
            // Only the third column marks a missing history; the cursor
            // column writes nothing for it, so the texts of the items after
            // it move up a row there, as the grid always did.
            if (!cursorColumn) texts.emplace_back("???");
            continue;
        }
        const auto& points = item.series.Points();
        const int32_t index = item.series.IndexAt(time);
        if (index < 0 || index >= static_cast<int32_t>(points.size()) ||
            std::isnan(points[static_cast<std::size_t>(index)].value)) {
            texts.emplace_back(cursorColumn ? "" : "???");
            continue;
        }
        const float v = points[static_cast<std::size_t>(index)].value;
        texts.push_back(format == GridFormat::Overview ? OverviewValueText(v) : GridValueText(v));
    }
    return texts;
}

std::string GridBlock(const std::vector<std::string>& texts) {
    std::string block;
    for (const std::string& text : texts) block += text + "\r";
    return block;
}

}  // namespace viewer
