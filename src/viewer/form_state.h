// The window's shared data: everything the concern files of SpectrumForm read
// and write besides the widgets. One plain struct, owned by the form, so that
// later features add fields here instead of reshaping the window.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "catalogue/catalogue.h"
#include "catalogue/fixed_array.h"
#include "viewer/item_list.h"
#include "viewer/trend_window.h"
#include "viewer/zoom_stack.h"

namespace viewer {

inline constexpr int kMaxLivePoints = 8000;    // the combined spectrum's limit
inline constexpr int kPropBoxes = 4;           // ChkProps(0..3)
inline constexpr int kPropMaps = 5;            // PropChannel / PropHeadChannel 0..4

using LiveValueTable = catalogue::FixedArray<float, 0, kMaxLivePoints>;
using LiveLabelTable = catalogue::FixedArray<std::string, 0, kMaxLivePoints>;
using PropMap = catalogue::FixedArray<int16_t, 0, kPropMaps - 1>;

// Values the viewer control and the window share for the whole library.
struct LibraryValues {
    std::string ProgramPath;      // the host program's directory, trailing "\"
    std::string ConfigPath;       // trailing "\"
    bool OpenedByControl = false; // the window takes the fixed configuration directory
    bool ViewerReady = false;     // the control has opened the window once
    bool ConfigOk = true;
};
LibraryValues& Library();
// The control and the window alike, when the fixed configuration directory is
// missing or empty: the operator is told where the files come from, and
// ConfigOk is cleared.
void ReportMissingConfiguration();

struct FormState {
    catalogue::Catalogue cat;

    // --- start-up ---
    int16_t MaxItems = 9;
    bool Initialising = false;
    bool Busy = false;               // the window's busy mark
    bool ExtrasRequested = false;
    int16_t ExtrasMode = 0;          // 0 none, 1 companions of the items, 2 extra plot only
    int16_t DisplayCounter0 = 0;     // the two display-state counters set at start-up
    int16_t DisplayCounter1 = 1;
    int16_t DisplayMode = 1;
    bool AcceleratorOverview = false;  // the machine overview has been started
    int16_t HistorySelections = 0;

    // --- channel selection ---
    int16_t PrevChannel = -1;
    PropMap PropChannel{};
    PropMap PropHeadChannel{};
    int16_t PropBoxesUsed = 0;
    int16_t ChannelsStarted = 0;
    std::string OpenFailure;         // the part the last channel choice could not open
    bool OversizeReported = false;   // a spectrum over the limit, told once per channel choice
    int16_t CompanionMarker = -1;    // every catalogue load sets it to -1
    int16_t LinkRestartCalls = 0;
    bool AxisReset = false;
    std::string CurrentElementName;
    // Address strings of the chosen channel for the history retrieval.
    std::string HistoryServer;
    std::string HistoryProperty;
    std::string ArchiveServer;
    std::string ArchiveProperty;
    int32_t PollIntervalMs = 1000;   // the live links' polling interval

    // --- selected items ---
    ItemList Items{9};               // SelectedItems on PLEXPlotSelected / GridSelected
    ItemList Extras{9};              // the extra channels on PLEXPlotExtra / GridExtra
    ItemList Overview{10};           // the machine's quantities on PLEXPlotAccelerator
    int16_t CommonScale = 1;         // 1: all curves share one scale
    ColourTable ItemColours{};
    ColourTable OverviewColours{};   // the machine overview's item slots
    // Per trend plot (selected, extra, overview): events counted against
    // the update divisor, and displayed updates counted towards the
    // strip chart's refresh.
    std::array<int32_t, 3> TrendEvents{};
    std::array<int32_t, 3> TrendDivisor{1, 1, 1};
    std::array<int32_t, 3> TrendUpdates{};
    int32_t CursorTime = 0;          // the last cursor position
    int32_t MarkerIndex = 0;         // set by a click on a trend plot
    int32_t MarkerTime = 0;          // where that click was
    std::string LoadStatus;          // what the history load is doing, for the status line

    // --- live spectrum ---
    LiveValueTable LiveValues{};
    LiveLabelTable LiveLabels;
    int16_t LivePointCount = 0;
    int32_t LastLiveUpdate = 0;
    int32_t SpectrumModeText = -1;
    int32_t TrendModeText = -1;
    bool SuppressSpectrumUpdates = false;  // gate flag of the spectrum plot
    bool SuppressTrendUpdates = false;     // gate flag of the trend plots
    bool PercentMode = false;              // values shown in percent of threshold
    int32_t ReferenceTrace = -1;
    int32_t ReferenceTime = 0;

    // --- time window and zoom ---
    int32_t HistoryStart = 0;
    int32_t HistoryStop = 0;
    int32_t HistorySpan = 3600;
    // Whether the trend window ends at the present and slides with it, or
    // shows a fixed stretch of the past chosen with the time scale or the
    // calendar.
    TrendWindow Window;
    // The trend plots' zooms; entry 0 is the whole window.
    ZoomStack Zoom;
    std::array<double, 4> ZoomMarkers{-1, -1, -1, -1};

    // --- judging the spectrum ---
    int32_t LiveThresholdTrace = -1;      // threshold trace on PLEXPlotSpectrum
    int32_t SelectedThresholdTrace = -1;  // threshold trace on PLEXPlotSelected
    bool ScaleModeChanged = false;        // the operator confirmed a change of scaling mode
    double CommonYMax = 0.0;              // the selected-item plot's common range, kept
    double CommonYMin = 0.0;              // while each item shows its own
    std::array<int32_t, 3> TrendCaptions{-1, -1, -1};  // mode caption handles of the trend plots

    // --- recorded spectra (archive mode) ---
    std::string SpectrumSource;      // "History" or "Archiver": where the spectrum on show came from
    int32_t HistorySpectrumTrace = -1;
    int32_t HistorySpectrumPoints = 0;
    int32_t HistorySpectrumLoads = 0;  // recorded spectra drawn, for the replay's bookkeeping
};

}  // namespace viewer
