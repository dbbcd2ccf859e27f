#include "spectrum_feed.h"

#include <algorithm>

#include "vire/link.h"
#include "vire/queries.h"
#include "vire/utils.h"

namespace demo {
namespace {
constexpr ui::Colour kSpectrumGreen = 0x008000;
constexpr ui::Colour kCaptionBlue = 0xFF0000;
}  // namespace

SpectrumFeed::SpectrumFeed(ui::PlexPlot& plot) : plot_(plot) {
    connect(&plot_, &ui::PlexPlot::DataReceive, this, &SpectrumFeed::OnData);
}

void SpectrumFeed::Show(const SpectrumChoice& choice) {
    choice_ = choice;
    problem_.clear();
    plot_.Clear();
    links_.clear();
    parts_.clear();
    labels_.clear();
    int32_t total = 0;
    for (const SpectrumPart& part : choice_.parts) total += part.size;
    plot_.SetXRange(-0.2, total - 1 + 0.2);
    plot_.SetYMax(choice_.max);
    plot_.SetYMin(choice_.min);
    plot_.SetYLabel(choice_.units);
    plot_.SetXLabel("Device Name/Location");
    plot_.SetCaption(choice_.title);
    for (const SpectrumPart& part : choice_.parts) {
        int32_t count = part.size;
        std::vector<std::string> names;
        const vire::Status status =
            vire::GetDeviceNames("/" + part.context + "/" + part.server, part.property, count, names);
        if (status != 0) problem_ = "PROBLEMS!   " + vire::ErrorText(status);
        names.resize(static_cast<size_t>(part.size));
        for (const std::string& name : names) labels_.push_back(part.tag + name);
        plot_.SetAccessMode("POLL");
        plot_.SetPollingInterval(1000);
        plot_.SetProtocol("VIRE");
        plot_.SetContext(part.context);
        plot_.SetServer(part.server);
        plot_.SetDevice(part.device);
        plot_.SetProperty(part.property);
        parts_.emplace_back(static_cast<size_t>(part.size), 0.0f);
        links_.push_back(plot_.Attach(parts_.back()));
    }
    trace_ = -1;
}

void SpectrumFeed::OnData(int32_t, int16_t error) {
    if (error != 0) return;
    values_.clear();
    for (size_t p = 0; p < parts_.size(); ++p) {
        plot_.ReadLinkData(links_[p], parts_[p]);
        if (choice_.parts[p].reverse) std::reverse(parts_[p].begin(), parts_[p].end());
        values_.insert(values_.end(), parts_[p].begin(), parts_[p].end());
    }
    const auto count = static_cast<int32_t>(values_.size());
    if (trace_ < 0) {
        plot_.RemoveAllTexts();
        plot_.RemoveAllTraces();
        plot_.SetForeColour(kSpectrumGreen);
        trace_ = plot_.CreateTrace(count, values_, labels_);
        return;
    }
    plot_.UpdateTrace(trace_, values_, count);
    const double xmax = plot_.XMax(), xmin = plot_.XMin(), ymax = plot_.YMax(), ymin = plot_.YMin();
    const ui::Colour previous = plot_.ForeColour();
    plot_.RemoveAllTexts();
    plot_.SetForeColour(kCaptionBlue);
    const std::string now = vire::CTIME(vire::UNIXTIME());
    plot_.DrawText((xmax - xmin) * 0.65 + xmin, (ymax - ymin) * 0.85 + ymin,
                   "Live : " + (now.size() >= 19 ? now.substr(4, 15) : now));
    plot_.SetForeColour(previous);
}

}  // namespace demo
