#include "history/item_history.h"

#include "catalogue/runtime_error.h"
#include "history/archived_data.h"

namespace history {
namespace {

constexpr int16_t kLastSlot = 3;
// Margin around the window, so that the plot's edges have a neighbour.
constexpr int32_t kMarginS = 60;
// Too few points to draw a trend: the window grows on both sides, at most up
// to the attempt counter's limit (the local history thus gets one read more
// than the archive, which starts at 1).
constexpr int16_t kFewPoints = 4;
constexpr int32_t kWidenS = 1000;
constexpr int16_t kLastAttempt = 5;

struct Source {
    std::string address, property;
    bool archive = false;
    int16_t attempt = 0;
};

Source LocalSource(const ItemHistory& item) { return {item.HstServer + "/" + item.ItemDevice, item.HstProperty, false, 0}; }
Source ArchiveSource(const ItemHistory& item) { return {item.ArcServer + "/" + item.ItemDevice, item.ArcProperty, true, 1}; }

}  // namespace

bool LoadItemHistory(ItemHistory& item, int16_t slot, const HistoryWindow& window, Questions& questions,
                     const std::function<void(const LoadStep&)>& progress) {
    if (slot < 0 || slot > kLastSlot) catalogue::ThrowOutOfBounds("plot slot", slot, 0, kLastSlot);
    item.FellBack = false;
    item.Aborted = false;

    int32_t local = -1, archive = -1;
    if (!ProbeHistorySources(local, archive, item, window, questions)) {
        item.Aborted = true;
        return false;
    }
    const bool useArchive = UseArchive(local, archive);
    Source source = useArchive ? ArchiveSource(item) : LocalSource(item);
    item.FromArchive = useArchive;
    item.ProbeChosen = useArchive ? archive : local;
    item.ProbeLocal = local;
    item.ProbeArchive = archive;

    int32_t from = window.HistoryStart - kMarginS;
    int32_t to = window.HistoryStop + kMarginS;
    int reads = 0;
    int16_t count = 0;
    int16_t status = 0;
    const auto read = [&] {
        if (progress) progress(LoadStep{item.ItemTitle, source.archive, ++reads});
        MYGetArchivedDataEx(source.address, source.property, 0, from, to, item.HistValues, item.HistTimes, count,
                            status);
        item.LastStatus = status;
    };

    read();
    // Nothing in the local history: the archive may have it. This comes
    // before the status test, so a local server that failed falls back too.
    if (count == 0 && source.attempt == 0 && !item.ArcServer.empty() && item.ArcServer != item.HstServer) {
        source = ArchiveSource(item);
        item.FellBack = true;
        read();
    }
    if (status != 0) {
        item.HistValid = false;
        return false;
    }
    while (count < kFewPoints && source.attempt < kLastAttempt) {
        ++source.attempt;
        count = 0;
        from -= kWidenS;
        to += kWidenS;
        read();
        if (status != 0) {
            item.HistValid = false;
            return false;
        }
    }
    item.HistCount = count;
    item.HistValid = true;
    item.HistShown = true;
    return slot <= 1 && item.LinkHandle < 0;
}

}  // namespace history
