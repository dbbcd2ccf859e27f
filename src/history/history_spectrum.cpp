#include "history/history_spectrum.h"

#include <algorithm>

#include "history/archived_trace.h"
#include "vire/link.h"

namespace history {

bool LoadHistorySpectrum(catalogue::SpectrumTable& list, int16_t head, int16_t parts, int32_t time, Questions& questions,
                         HistorySpectrum& trace, bool labelled) {
    trace = {};
    bool told = false;
    for (int16_t k = 0; k < parts; ++k) {
        catalogue::SpectrumRecord& record = list[head + k];
        const bool local = !record.HstServer.empty() && !record.UseArchive;
        const std::string address = (local ? record.HstServer : record.ArcServer) + "/#0";
        record.Values.assign(static_cast<size_t>(std::max(record.Size, 1)), 0.0f);
        int32_t reported = 0;
        const int16_t result = MYGetArchivedTraceData(address, local ? record.HstProperty : record.ArcProperty, time,
                                                      record.Values, reported, questions);
        if (result != 0) {
            questions.Tell("GetArchivedTraceData : " + vire::ErrorText(result));
            return false;
        }
        trace.sources.push_back(local ? "History" : "Archiver");
        for (size_t i = 0; i < record.Values.size(); ++i) {
            if (trace.values.size() >= static_cast<size_t>(kMaxHistorySpectrumPoints)) {
                if (!told) questions.Tell("Array larger than " + std::to_string(kMaxHistorySpectrumPoints) + " Points");
                told = true;
                break;
            }
            trace.values.push_back(record.Values[i]);
            if (!labelled) continue;
            const std::string name = i < record.ElementNames.size() ? record.ElementNames[i] : "#" + std::to_string(i);
            trace.labels.push_back(record.Tag + name);
        }
    }
    return true;
}

}  // namespace history
