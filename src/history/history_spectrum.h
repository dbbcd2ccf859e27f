// The whole spectrum of a channel group as it was recorded at one time, for
// the replay and the history display.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "catalogue/catalogue.h"
#include "history/questions.h"

namespace history {

inline constexpr int32_t kMaxHistorySpectrumPoints = catalogue::kMaxSpectrumPoints;

struct HistorySpectrum {
    std::vector<float> values;        // the parts one after the other, at most 8000 points
    std::vector<std::string> labels;  // part tag and element name (as the live spectrum labels them), one per value
    std::vector<std::string> sources; // "History" or "Archiver", one per part read
};

// Reads each of the `parts` records from `head` on at `time` into its Values
// (sized to the record's Size) and assembles them into `trace`: from the
// local history unless the record has none or prefers the archive
// (UseArchive). A failed read is told ("GetArchivedTraceData : " and the
// code's text) and ends the load with false, the trace holding the parts
// before it. Points beyond 8000 are told once ("Array larger than 8000
// Points") and left out. A part index beyond the table throws catalogue's
// out-of-bounds error. Without `labelled` the labels stay empty (a picture
// of many spectra needs them once).
bool LoadHistorySpectrum(catalogue::SpectrumTable& list, int16_t head, int16_t parts, int32_t time, Questions& questions,
                         HistorySpectrum& trace, bool labelled = true);

}  // namespace history
