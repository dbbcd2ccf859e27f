// One selected item: an element of a spectrum channel followed over time on a
// trend plot, marked on the live spectrum and listed as one grid row. The
// extra-channel list uses the same record.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "history/time_series.h"

namespace viewer {

struct SelectedItem {
    std::string context;
    std::string server;
    std::string property;
    std::string archiveServer;
    std::string archiveProperty;
    std::string historyServer;
    std::string historyProperty;
    std::string elementName;
    bool hasLocation = false;
    std::string location;
    int16_t ExtraPropComboIndex = -1;
    std::string tag;
    std::string device;        // the plotted channel's device (context/server/device address)
    int32_t markNumber = -1;   // mark on PLEXPlotSpectrum
    int32_t traceNumber = -1;  // trace on the item's trend plot
    // The item's recorded past and live values, each with its source and
    // with the gaps where nothing was recorded; the trend trace, the grid
    // and the cursor read it.
    history::TimeSeries series;
    int16_t elementIndex1 = 0;
    int16_t elementIndex2 = 0;
    int16_t elementNumber = 0;
    int16_t sourceChannel = 0;
    int16_t plottedChannel = 0;
    std::string channelName;
    bool hasThresholds = false;
    bool hasData = false;        // the history was read (HistValid)
    int16_t pointCount = 0;      // points the history read delivered
    bool fromArchive = false;    // the source rule chose the archiver
    int32_t probeChosen = -1;    // probe result of the chosen source
    int32_t probeLocal = -1;     // -1: not configured or not read
    int32_t probeArchive = -1;
    int16_t propertyLink = 0;
    std::string PropShort;
    double liveUpper = 0.0;
    double liveLower = 0.0;
    double scaleFactor = 1.0;
    double offset = 0.0;
    std::string liveScaleType = "LIN";
    std::string axisLabel;
    double historyUpper = 0.0;
    double historyLower = 0.0;
    std::string historyScaleType = "LIN";
    int16_t zoomFlag = 0;
    bool rescaled = false;     // limits given back from the live-plot copy

    // Set at start-up for every slot: the slot holds no item yet.
    bool unusedSlot = true;
    bool unusedSlot2 = true;
    float currentValue = 0.0f;  // last live value
    int32_t linkHandle = -1;    // live link on the item's trend plot
    // The live link reads the plotted channel's whole spectrum; the item's
    // value is its element there (counted from the end when the channel
    // arrives reversed).
    int32_t linkElement = 0;
    int32_t linkSize = 1;
};

}  // namespace viewer
