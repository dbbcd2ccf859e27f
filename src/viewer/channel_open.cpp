// Opening a catalogue entry: what the window learns of a channel before its
// live link starts (element names, their locations, the thresholds).
#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "catalogue/readers.h"
#include "viewer/spectrum_form.h"
#include "vire/completion_codes.h"
#include "vire/formats.h"
#include "vire/link.h"
#include "vire/queries.h"
#include "vire/utils.h"

namespace viewer {

namespace {

constexpr int32_t kLocationTimeoutMs = 1000;
constexpr int32_t kLocationWidth = 32;

// The elements' locations from the channel's external name source; empty
// when the source does not answer (the chooser then lists names alone).
std::vector<std::string> ReadLocations(const catalogue::SpectrumRecord& record) {
    const auto count = static_cast<std::size_t>(std::max(record.Size, 0));
    std::vector<std::byte> buffer(count * kLocationWidth);
    vire::DataObject out;
    out.count = static_cast<int32_t>(count);
    out.format = vire::kFormatName32;
    out.buffer = buffer;
    const vire::DataObject in;
    if (vire::LinkCall(record.ExtDevNameDev, record.ExtDevNameProp, out, in, vire::kAccessRead,
                       kLocationTimeoutMs) != 0)
        return {};
    std::vector<std::string> locations;
    for (int32_t i = 0; i < out.count; ++i) {
        std::string text = vire::Bytes2String(std::span(buffer).subspan(static_cast<std::size_t>(i) * kLocationWidth,
                                                                         kLocationWidth));
        while (!text.empty() && text.back() == ' ') text.pop_back();
        locations.push_back(std::move(text));
    }
    return locations;
}

}  // namespace

int16_t SpectrumForm::OpenChannel(int16_t channel) {
    catalogue::SpectrumRecord& record = s_.cat.SpectrumList[channel];
    // A size the combined spectrum cannot hold is refused before anything is
    // asked of the server; the live handler's 8000-point message covers the
    // sum of the parts.
    if (record.Size < 1 || record.Size > kMaxLivePoints + 1) return vire::kOutOfRange;
    // Room for the longest spectrum's names, not for Size fields: a name
    // longer than its field takes two or more of them, and a channel of long
    // names would otherwise get names for its first elements only.
    int32_t count = vire::kMaxNameCount;
    std::vector<std::string> names;
    const vire::Status status =
        vire::GetDeviceNames("/" + record.Context + "/" + record.Server, record.Property, count, names);
    if (status != 0) return status;
    names.resize(static_cast<std::size_t>(record.Size));
    record.ElementNames = std::move(names);
    record.ElementCount = record.Size;
    record.Values.assign(static_cast<std::size_t>(record.Size), 0.0f);
    record.ElementLocations.clear();
    record.HasLocations = false;
    if (record.HasExtDevName) {
        record.ElementLocations = ReadLocations(record);
        record.ElementLocations.resize(static_cast<std::size_t>(record.Size));
        record.HasLocations = true;
    }
    if (!record.ThresholdSource.empty()) catalogue::ReadChannelThresholds(s_.cat, *this, channel);
    return 0;
}

void SpectrumForm::PrepareChannel(int16_t channel) {
    // A catalogue of one channel: its thresholds and property information
    // are read at once; the chooser's handler opens it for display.
    catalogue::ReadChannelThresholds(s_.cat, *this, channel);
}

}  // namespace viewer
