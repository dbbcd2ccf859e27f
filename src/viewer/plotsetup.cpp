// Plot set-up: item colours, the three value grids and the trend plots'
// starting ranges (entry 0 of the zoom stack), then the layout.
#include <QLineEdit>
#include <QRadioButton>
#include <QSpinBox>

#include "ui/controls/value_grid.h"
#include "ui/plot/plex_plot.h"
#include "viewer/initialising_guard.h"
#include "viewer/spectrum_form.h"
#include "vire/utils.h"

namespace viewer {

namespace {

// Compact rows, so that ten of them stand beside a trend plot.
constexpr int32_t kGridRowTwips = 270;

// Item slot colours, 0x00BBGGRR; slot 10 stays black.
constexpr uint32_t kItemColourTable[] = {
    0x800000,  // navy
    0x000080,  // maroon
    0x0000C0,  // dark red
    0xFF0000,  // blue
    0x0000FF,  // red
    0x00FF00,  // green
    0x0080FF,  // orange
    0xFF00FF,  // magenta
    0xFF80FF,  // pink
    0x80FF80,  // light green
};

void SetItemGridHeader(ui::ValueGrid* grid, int rows) {
    grid->SetCols(3);
    grid->SetRows(rows);
    const char* headings[] = {"Item", "Cursor", "Now"};
    // Wide enough for an element name with its tag ("BPM.S01.C1/Q1").
    const int32_t widths[] = {1600, 1000, 1000};
    for (int c = 0; c < 3; ++c) {
        grid->SetTextMatrix(0, c, headings[c]);
        grid->SetColWidth(c, widths[c]);
    }
    for (int r = 0; r < rows; ++r) grid->SetRowHeight(r, kGridRowTwips);
    grid->FitWidthToColumns();
    grid->FitHeightToRows();
}

}  // namespace

void SpectrumForm::InitGraphics() {
    {
        FlagGuard initialising(s_.Initialising);
        // The trend plots start on the present time window.
        s_.HistoryStop = vire::UNIXTIME();
        s_.HistoryStart = s_.HistoryStop - s_.HistorySpan;
        UpDownTime->setRange(-999, 999);
        UpDownTime->setValue(0);
        TextTimeScale->setText(QString("%1 s").arg(s_.HistorySpan));
        // Item slot colours.
        for (int i = 0; i < 10; ++i) s_.ItemColours[i] = kItemColourTable[i];
        // The two item grids, a heading row and a row per item.
        SetItemGridHeader(GridSelected, s_.MaxItems + 1);
        SetItemGridHeader(GridExtra, s_.MaxItems + 1);
        // No item is highlighted; the overview slots take the item colours.
        s_.Items.SetCurrent(-1);
        for (int16_t i = 0; i <= kMaxItemSlot; ++i) s_.OverviewColours[i] = s_.ItemColours[i];
        // The machine overview grid, a row per quantity.
        GridAccelerator->SetCols(3);
        GridAccelerator->SetRows(s_.cat.HistoryCount + 1);
        const int32_t widths[] = {1600, 800, 800};
        for (int c = 0; c < 3; ++c) {
            GridAccelerator->SetTextMatrix(0, c, "");
            GridAccelerator->SetColWidth(c, widths[c]);
        }
        for (int r = 0; r < GridAccelerator->Rows(); ++r) GridAccelerator->SetRowHeight(r, kGridRowTwips);
        GridAccelerator->FitWidthToColumns();
        GridAccelerator->FitHeightToRows();
        // Entry 0 of the zoom stack: the full window and each plot's range.
        ui::PlexPlot* trends[] = {PLEXPlotSelected, PLEXPlotExtra, PLEXPlotAccelerator};
        s_.Zoom.SetFull(s_.HistoryStart, s_.HistoryStop);
        for (int p = 0; p < 3; ++p) {
            trends[p]->SetXRange(s_.HistoryStart, s_.HistoryStop);
            s_.Zoom.SetFullYRange(p, trends[p]->YMin(), trends[p]->YMax());
        }
    }
    // The layout follows the grids' new sizes.
    Form_Resize();
}

void SpectrumForm::DrawMarkers() {
    // Each item's mark on the spectrum, in the colour of its slot.
    PLEXPlotSpectrum->RemoveAllMarks();
    const ui::Colour markColour = PLEXPlotSpectrum->MarkColour();
    for (int16_t i = 0; i < s_.Items.Count(); ++i) {
        SelectedItem& item = s_.Items[i];
        PLEXPlotSpectrum->SetMarkColour(s_.ItemColours[i]);
        item.markNumber = PLEXPlotSpectrum->AddMark(item.elementIndex1);
    }
    PLEXPlotSpectrum->SetMarkColour(markColour);
    // Time markers of the trend plots: the reference time and the zoom-range
    // markers, each a mark with its caption.
    ui::PlexPlot* trends[] = {PLEXPlotSelected, PLEXPlotExtra, PLEXPlotAccelerator};
    for (ui::PlexPlot* plot : trends) {
        plot->RemoveAllMarks();
        // The captions of the marks drawn before go with them.
        std::vector<int32_t> captions;
        for (const auto& [handle, text] : plot->Model().texts)
            if (text.text.rfind("Marker:  ", 0) == 0) captions.push_back(handle);
        for (const int32_t handle : captions) plot->RemoveText(handle);
        std::vector<double> times;
        if (s_.ReferenceTrace >= 0) times.push_back(s_.ReferenceTime);
        for (double marker : s_.ZoomMarkers)
            if (marker >= 0) times.push_back(marker);
        for (double t : times) {
            plot->AddMark(t);
            const double y = (plot->YMax() - plot->YMin()) * 0.95 + plot->YMin();
            plot->DrawText(t, y, "Marker:  " + vire::CTIME(static_cast<int64_t>(t)).substr(4, 15));
        }
    }
}

}  // namespace viewer
