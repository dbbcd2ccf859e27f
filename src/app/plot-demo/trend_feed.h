// Feeds one of the demo's trend plots: each item's recent past read from its
// history server (through the data control), then one point per live round,
// on a time axis that follows the present until the user zooms.
#pragma once

#include <QObject>
#include <string>
#include <vector>

#include "ui/plot/plex_plot.h"

namespace demo {

struct TrendItem {
    std::string name;                       // legend text
    std::string context, server, device, property;
    int32_t count = 1;                      // elements the live link reads
    int32_t element = 0;                    // the one shown
    std::string historyDevice, historyProperty;  // full history address
    ui::Colour colour = 0;
    double min = 0.0, max = 1.0;            // own scale
};

class TrendFeed : public QObject {
    Q_OBJECT
public:
    TrendFeed(ui::PlexPlot& plot, int32_t spanSeconds);
    // ownScales: every item on its own range, the axis showing percent of it;
    // autoScale: the vertical range follows the data at every round.
    void Show(const std::string& caption, const std::string& units, double min, double max,
              const std::vector<TrendItem>& items, bool ownScales, bool autoScale);

private:
    void OnData(int32_t link, int16_t error);
    void Prefill(const TrendItem& item, std::vector<double>& times, std::vector<float>& values) const;
    void FollowPresent();
    void DrawLegend();
    void OnCursor(double x);

    ui::PlexPlot& plot_;
    int32_t span_;
    std::vector<TrendItem> items_;
    std::vector<int32_t> links_;
    std::vector<int32_t> traces_;
    std::vector<float> buffer_;
    bool autoScale_ = false;
};

}  // namespace demo
