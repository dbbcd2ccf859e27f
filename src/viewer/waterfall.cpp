// The waterfall of the chosen channel over the trend window: the recorded
// spectra the replay would show, read at as many times as the picture has
// rows, and a click on a row replaying from there.
#include <QComboBox>
#include <QLabel>
#include <QRadioButton>
#include <algorithm>
#include <limits>

#include "history/history_spectrum.h"
#include "ui/controls/event_loop.h"
#include "viewer/channel_map.h"
#include "viewer/history_questions.h"
#include "viewer/spectrum_form.h"

namespace viewer {

bool SpectrumForm::ReadWaterfall(int32_t rows, WaterfallPicture& picture) {
    catalogue::Catalogue& cat = s_.cat;
    const int16_t head = cat.CurrentSpectrum;
    const int16_t parts = SpectrumPartCount(cat, head);
    const int16_t current = s_.Items.Current();
    const std::vector<int32_t> stamps = MovieTimes(current >= 0 ? current : 0);
    picture = {};
    picture.times = WaterfallRowTimes(stamps, s_.HistoryStart, s_.HistoryStop, rows);
    picture.title = SpectrumCombo->currentText().toStdString();
    MessageBoxQuestions questions;
    history::HistorySpectrum trace;
    for (size_t r = 0; r < picture.times.size(); ++r) {
        if (!history::LoadHistorySpectrum(cat.SpectrumList, head, parts, picture.times[r], questions, trace, r == 0))
            return false;
        if (r == 0) {
            picture.columns = static_cast<int32_t>(trace.values.size());
            picture.labels = std::move(trace.labels);
            for (int32_t start = 0, k = 0; k < static_cast<int32_t>(trace.sources.size()); ++k) {
                picture.anchors.push_back(start);
                start += std::max(cat.SpectrumList[head + k].Size, 1);
            }
            picture.values.reserve(picture.times.size() * trace.values.size());
        }
        // Every row as wide as the first, whatever a part delivered.
        trace.values.resize(static_cast<size_t>(picture.columns), std::numeric_limits<float>::quiet_NaN());
        picture.values.insert(picture.values.end(), trace.values.begin(), trace.values.end());
        if (r % 32 == 31) {
            StatusLine->setText(QString("Reading the waterfall: %1 of %2 rows").arg(r + 1).arg(picture.times.size()));
            ui::YieldToEventLoop();
        }
    }
    return true;
}

void SpectrumForm::WaterfallButton_Click() {
    if (s_.cat.SpectrumCount == 0) return;
    auto* view = findChild<WaterfallView*>("WaterfallView");
    if (!view) {
        view = new WaterfallView(this);
        connect(view, &WaterfallView::RowClicked, this,
                [this](int32_t time) { Guarded("Waterfall_RowClick", [&] { StartMovieAt(time); }); });
    }
    WaterfallPicture picture;
    const bool read = ReadWaterfall(view->PictureArea().height(), picture);
    ShowLinkStatus();
    if (!read) return;
    view->SetPicture(std::move(picture));
    view->show();
    view->raise();
}

}  // namespace viewer
