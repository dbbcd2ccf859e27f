// The recorded past of one selected item: which of its two sources to read
// (its local history server or the central archiver), the read itself, and a
// wider window when too little comes back.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "history/questions.h"
#include "vire/data_object.h"

namespace history {

// What the retrieval reads and writes of a selected item (the window's item
// record holds one of these).
struct ItemHistory {
    // in
    std::string ItemTitle, ItemProperty, ArcServer, ArcProperty, HstServer, HstProperty, ItemDevice;
    int32_t LinkHandle = -1;
    // out
    bool FromArchive = false;
    std::vector<float> HistValues;
    std::vector<int32_t> HistTimes;
    bool HistValid = false, HistShown = false;
    int16_t HistCount = 0;
    int32_t ProbeChosen = -1, ProbeLocal = -1, ProbeArchive = -1;
    // The one fallback to the archiver happened: the series came from the
    // archive although FromArchive stays as chosen. The window needs the real
    // source to label values honestly.
    bool FellBack = false;
    // The operator answered Abort to a failed probe: nothing was read, and a
    // window loading several items should stop there.
    bool Aborted = false;
    vire::Status LastStatus = 0;  // completion code of the last read
};

// Progress of a load, for the window's "loading item 3 of 9 from the
// archive" text. `attempt` counts the reads of this item, from 1.
struct LoadStep {
    std::string item;
    bool archive;
    int attempt;
};

// The trend plots' time window, seconds since 1970.
struct HistoryWindow {
    int32_t HistoryStart;
    int32_t HistoryStop;
};

// Asks each configured source for one sample of the window ("/#1"): its
// integer half is the source's result; -1 = not configured or not read. A
// failed probe asks Abort/Retry/Ignore. Returns false when the operator chose
// Abort (the caller then stops).
bool ProbeHistorySources(int32_t& localResult, int32_t& archiveResult, const ItemHistory& item,
                         const HistoryWindow& window, Questions& questions);

// Probes, chooses the source, reads the item's series over the window (with
// one fallback to the archiver and up to five widenings) and stores it in the
// item. Returns true when the caller must attach the item's live link: slot 0
// or 1, no link yet, and the read succeeded. `progress` (may be empty) is
// called before every read. A slot outside 0..3 throws catalogue's
// out-of-bounds error.
bool LoadItemHistory(ItemHistory& item, int16_t slot, const HistoryWindow& window, Questions& questions,
                     const std::function<void(const LoadStep&)>& progress = {});

// The archive is read when it holds more than 500 or more than the local
// history; an archive that is not configured (-1) therefore never wins.
bool UseArchive(int32_t localResult, int32_t archiveResult);
bool ChooseLocal(int32_t localResult, int32_t archiveResult);

}  // namespace history
