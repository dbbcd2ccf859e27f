// Feeds the demo's spectrum plot the way the viewer window does: one live
// link per part of the spectrum, the parts joined (reversed where a part is
// read out last element first), the trace made on the first round and
// updated on every later one, with the time of the last update as caption.
#pragma once

#include <QObject>
#include <string>
#include <vector>

#include "ui/plot/plex_plot.h"

namespace demo {

struct SpectrumPart {
    std::string context, server, device, property, tag;
    int32_t size = 0;
    bool reverse = false;
};

struct SpectrumChoice {
    std::string title, units;
    double min = 0.0, max = 1.0;
    std::vector<SpectrumPart> parts;
};

class SpectrumFeed : public QObject {
    Q_OBJECT
public:
    explicit SpectrumFeed(ui::PlexPlot& plot);
    void Show(const SpectrumChoice& choice);
    // What went wrong when the last spectrum was set up ("" when nothing did).
    const std::string& Problem() const { return problem_; }

private:
    void OnData(int32_t link, int16_t error);

    ui::PlexPlot& plot_;
    SpectrumChoice choice_;
    std::vector<int32_t> links_;
    std::vector<std::vector<float>> parts_;
    std::vector<std::string> labels_;
    std::vector<float> values_;
    int32_t trace_ = -1;
    std::string problem_;
};

}  // namespace demo
