// What the operator reads about the live links: the status line, and the
// notice on the spectrum plot when parts of the spectrum are missing.
#include <QLabel>
#include <cctype>

#include "ui/plot/plex_plot.h"
#include "viewer/channel_map.h"
#include "viewer/spectrum_form.h"
#include "vire/completion_codes.h"
#include "vire/link.h"

namespace viewer {

std::string SpectrumForm::DeviceUnderCursor(double x) const {
    const auto index = static_cast<int32_t>(x + 0.5);
    if (index < 0 || index >= s_.LivePointCount || index > kMaxLivePoints) return std::string();
    return s_.LiveLabels[index];
}

void SpectrumForm::ShowLinkStatus() {
    // A failing part does not stop the others: its state is named in the
    // plot's caption and the status line, the healthy parts keep updating.
    const catalogue::Catalogue& cat = s_.cat;
    const QString openFailure =
        s_.OpenFailure.empty() ? QString() : "  " + tr("FAILING: ") + QString::fromStdString(s_.OpenFailure);
    if (s_.ChannelsStarted == 0) {
        StatusLine->setText(tr("No live links") + openFailure);
        PLEXPlotSpectrum->SetNotice(MissingNotice(std::string()));
        return;
    }
    const catalogue::SpectrumRecord& head = cat.SpectrumList[cat.CurrentSpectrum];
    std::string failures;
    std::string failingParts;  // one line per part, for the plot's notice
    std::string firstError;
    int failing = 0;
    const int16_t parts = SpectrumPartCount(cat, cat.CurrentSpectrum);
    int waiting = 0;
    for (int16_t r = cat.CurrentSpectrum; r < cat.CurrentSpectrum + s_.ChannelsStarted; ++r) {
        const catalogue::SpectrumRecord& record = cat.SpectrumList[r];
        const vire::Status status = PLEXPlotSpectrum->LinkStatus(record.LinkHandle);
        if (status == 0) continue;
        if (status == vire::kNoData && !record.Started) continue;
        if (status == vire::kNoData && s_.LastLiveUpdate == 0) {
            ++waiting;
            continue;
        }
        if (!failures.empty()) failures += "; ";
        const std::string error = vire::ErrorText(status) + " (" + std::to_string(status) + ")";
        const std::string part =
            "/" + record.Context + "/" + record.Server + "/" + record.Device + " " + record.Property + ": " + error;
        failures += part;
        failingParts += "\nPart " + std::to_string(r - cat.CurrentSpectrum + 1) + " of " + std::to_string(parts) +
                        " failing, last values shown: " + part;
        if (++failing == 1) firstError = error;
    }
    // The caption names the channel the operator chose, not its last part.
    const std::string caption = TraceCaptionPrefix() + head.Description;
    // One failing part is named; several are counted, the status line names them.
    const std::string flagged = failing == 1 ? failures
                                             : std::to_string(failing) + " of " + std::to_string(s_.ChannelsStarted) +
                                                   " parts failing: " + firstError;
    PLEXPlotSpectrum->SetCaption(failing == 0 ? caption : caption + "  [" + flagged + "]");
    PLEXPlotSpectrum->SetNotice(MissingNotice(failingParts));
    QString text = QString("%1: %2 link(s), polled every %3 ms")
                       .arg(QString::fromStdString(head.Description))
                       .arg(s_.ChannelsStarted)
                       .arg(s_.PollIntervalMs);
    if (waiting > 0) text += tr(", waiting for the first reading");
    if (!failures.empty()) text += "  " + tr("FAILING: ") + QString::fromStdString(failures);
    StatusLine->setText(text + openFailure);
}

std::string SpectrumForm::MissingNotice(const std::string& failingParts) const {
    // Said in the plot itself: an empty or partly frozen spectrum must not
    // pass for a quiet machine when only the status line tells otherwise.
    std::string notice;
    if (!s_.OpenFailure.empty()) {
        notice = s_.OpenFailure;
        notice[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(notice[0])));
    }
    notice += failingParts;
    if (s_.OversizeReported)
        notice += "\nArray larger than " + std::to_string(kMaxLivePoints) + " Points: the spectrum is not drawn";
    if (!notice.empty() && notice[0] == '\n') notice.erase(0, 1);
    return notice;
}

}  // namespace viewer
