#include <algorithm>

#include "catalogue/numbers.h"
#include "catalogue/reader_support.h"
#include "catalogue/reader_messages.h"
#include "catalogue/readers.h"
#include "catalogue/table.h"

namespace catalogue {
namespace {

void EmptyBoth(std::vector<float>& high, std::vector<float>& low) {
    high.assign(1, 0.0f);
    low.assign(1, 0.0f);
}

int16_t ReadThresholdLink(Catalogue& cat, std::string_view source, std::vector<float>& high,
                          std::vector<float>& low) {
    cat.LastReport = ReaderReport{std::string(source), 0, "", 0};
    const std::size_t open = source.find('[');
    const std::string device(source.substr(0, open));
    // Between the first "[" and the last character, which is dropped (the "]").
    const std::string property(source.substr(open + 1, source.size() - open - 2));
    int16_t status = -1;
    if (cat.ThresholdLink) {
        // The hook is the caller's: whatever it throws is a failed read here.
        try {
            status = cat.ThresholdLink(device, property, std::span<float>(high), kThresholdLinkTimeoutMs);
        } catch (const std::exception& error) {
            cat.LastReport.error = "link read of " + device + " " + property + " failed: " + error.what();
        }
    } else {
        cat.LastReport.error = "no middleware link to read " + device + " " + property;
    }
    if (status != 0) {
        if (cat.LastReport.error.empty())
            cat.LastReport.error = "link read of " + device + " " + property + " failed with code " +
                                   std::to_string(status);
        EmptyBoth(high, low);
        return kThresholdsFailed;
    }
    cat.LastReport.rowsStored = static_cast<int16_t>(std::min<std::size_t>(high.size(), 32767));
    return kThresholdsByLink;
}

}  // namespace

bool IsThresholdLinkSource(std::string_view source) {
    const std::string upper = UpperCase(source);
    const bool csvFile = upper.size() >= 4 && upper.compare(upper.size() - 4, 4, ".CSV") == 0;
    return !csvFile && source.find('[') != std::string_view::npos;
}

int16_t ReadThresholds(Catalogue& cat, CatalogueWindow& window, std::string_view source,
                       std::vector<float>& high, std::vector<float>& low) {
    if (IsThresholdLinkSource(source)) return ReadThresholdLink(cat, source, high, low);

    const std::string path = cat.ApplicationPath + "\\" + std::string(source);
    bool outOfBounds = false;
    const int16_t failed = detail::RunReader(cat, path, [&](ReaderReport& report) {
        const auto lines = ReadTextLines(path);
        int highColumn = -1, lowColumn = -1;
        int32_t r = 0;
        detail::WalkTable(
            lines, detail::SkipRule::TwoCharacterTest, report,
            [&](const std::string& header) {
                highColumn = FindColumn(header, "HIGH");
                lowColumn = FindColumn(header, "LOW");
                (void)FindColumn(header, "DEVICE");  // looked up, never used
            },
            [&](const std::string& line) {
                if (r > SpectrumRecord::UpperBound(high)) {
                    outOfBounds = true;
                    return false;
                }
                // A shorter low array than high is the caller's mistake: the
                // checked access ends the reader through its error path.
                const auto row = static_cast<std::size_t>(r);
                if (highColumn >= 0) high[row] = ToSingle(NumericValue(GetField(line, highColumn)));
                if (lowColumn >= 0) {
                    if (row >= low.size())
                        ThrowOutOfBounds("LowThresholds", r, 0, SpectrumRecord::UpperBound(low));
                    low[row] = ToSingle(NumericValue(GetField(line, lowColumn)));
                }
                ++r;
                report.rowsStored = static_cast<int16_t>(std::min<int32_t>(r, 32767));
                return true;
            });
    });
    if (outOfBounds) {
        window.ShowMessage(std::string(kThresholdOutOfBoundsText));
        cat.LastReport.error = "more threshold rows than the channel has elements (" +
                               std::to_string(high.size()) + ")";
        EmptyBoth(high, low);
        return kThresholdsFailed;
    }
    // A missing or unreadable file leaves the arrays as they were.
    return failed == 0 ? kThresholdsFromFile : kThresholdsFailed;
}

int16_t ReadChannelThresholds(Catalogue& cat, CatalogueWindow& window, int16_t channel) {
    SpectrumRecord& record = cat.SpectrumList[channel];
    if (record.ThresholdSource.empty()) return kThresholdsFailed;
    // A size set by hand beyond any spectrum would size the arrays past reason.
    if (record.Size > kMaxSpectrumPoints) {
        cat.LastReport = ReaderReport{record.ThresholdSource, 0,
                                      "channel SIZE " + std::to_string(record.Size) + " above " +
                                          std::to_string(kMaxSpectrumPoints) + ": thresholds not read",
                                      0};
        return kThresholdsFailed;
    }
    // One value per element; a channel without elements still gets the one
    // element every threshold array has.
    const auto elements = static_cast<std::size_t>(std::max<int32_t>(record.Size, 1));
    record.HighThresholds.assign(elements, 0.0f);
    record.LowThresholds.assign(elements, 0.0f);
    return ReadThresholds(cat, window, record.ThresholdSource, record.HighThresholds, record.LowThresholds);
}

}  // namespace catalogue
