// What the operator reads about the live links in the status line.
#include <QLabel>

#include "ui/plot/plex_plot.h"
#include "viewer/spectrum_form.h"

namespace viewer {

std::string SpectrumForm::DeviceUnderCursor(double x) const {
    const auto index = static_cast<int32_t>(x + 0.5);
    if (index < 0 || index >= s_.LivePointCount || index > kMaxLivePoints) return std::string();
    return s_.LiveLabels[index];
}

void SpectrumForm::ShowLinkStatus() {
    const catalogue::Catalogue& cat = s_.cat;
    if (s_.ChannelsStarted == 0) {
        StatusLine->setText(tr("No live links"));
        return;
    }
    const catalogue::SpectrumRecord& head = cat.SpectrumList[cat.CurrentSpectrum];
    StatusLine->setText(QString("%1: %2 link(s) from /%3/%4")
                            .arg(QString::fromStdString(head.Description))
                            .arg(s_.ChannelsStarted)
                            .arg(QString::fromStdString(head.Context), QString::fromStdString(head.Server)));
}

}  // namespace viewer
