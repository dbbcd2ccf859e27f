// Export of what the plots show: the visible traces as CSV (the spectrum
// with its element labels, the trends with times and the source of each
// value) and a plot or the whole window as PNG. The numbers come from what
// the plot holds, so the file matches the picture in every display mode.
#include <QAction>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QMenu>
#include <QPixmap>
#include <QRadioButton>
#include <QSaveFile>
#include <algorithm>
#include <cmath>

#include "history/time_series.h"
#include "ui/controls/dialogs.h"
#include "ui/controls/save_file_chooser.h"
#include "ui/plot/plex_plot.h"
#include "viewer/csv_text.h"
#include "viewer/shown_values.h"
#include "viewer/spectrum_form.h"
#include "viewer/widget_names.h"

namespace viewer {
namespace {

std::string OnOff(bool on) { return on ? "on" : "off"; }

// A file name out of a device description: letters, digits, '-' and '_' only.
QString FileStem(const std::string& description) {
    QString stem;
    for (const QChar c : QString::fromStdString(description))
        stem += c.isLetterOrNumber() || c == '-' || c == '_' ? c : QChar('_');
    return stem.isEmpty() ? QStringLiteral("lumiscope") : stem;
}

}  // namespace

void SpectrumForm::BuildExportEntries() {
    // Each plot's pop-up menu; the overview and the extra channels share one,
    // which exports the plot it was last popped up from.
    QMenu* menus[] = {liveOpts, displayOpts, machOptions};
    for (int m = 0; m < 3; ++m) {
        menus[m]->addSeparator();
        const auto entry = [&](const char* name, const QString& caption) {
            QAction* action = menus[m]->addAction(caption);
            action->setObjectName(IndexedName(name, m));
            action->setProperty("accessibleName", QString(caption).remove('&'));
            return action;
        };
        ExportCsv[m] = entry("ExportCsv", tr("Export &CSV..."));
        ExportPng[m] = entry("ExportPng", tr("Export P&NG..."));
        ExportWindowPng[m] = entry("ExportWindowPng", tr("Export &Window as PNG..."));
        const auto plot = [this, m] { return static_cast<int16_t>(m == 2 ? exportOverviewPlot_ : m); };
        connect(ExportCsv[m], &QAction::triggered, this,
                [this, plot] { Guarded("ExportCsv_Click", [&] { ExportCsv_Click(plot()); }); });
        connect(ExportPng[m], &QAction::triggered, this,
                [this, plot] { Guarded("ExportPng_Click", [&] { ExportPng_Click(plot()); }); });
        connect(ExportWindowPng[m], &QAction::triggered, this,
                [this] { Guarded("ExportPng_Click", [&] { ExportPng_Click(kExportWindow); }); });
    }
    connect(PLEXPlotExtra, &ui::PlexPlot::OptionsRequest, this, [this] { exportOverviewPlot_ = 2; });
    connect(PLEXPlotAccelerator, &ui::PlexPlot::OptionsRequest, this, [this] { exportOverviewPlot_ = 3; });
}

ui::PlexPlot* SpectrumForm::ExportedPlot(int16_t plot) const {
    return plot == 0 ? PLEXPlotSpectrum : TrendPlotOf(static_cast<int16_t>(plot - 1));
}

std::vector<std::string> SpectrumForm::ExportHeader(int16_t plot) const {
    const catalogue::Catalogue& cat = s_.cat;
    std::string machine, device, property;
    if (cat.CurrentMachine >= 0 && cat.CurrentMachine < cat.MachineCount)
        machine = cat.MachineList[cat.CurrentMachine].Name;
    if (cat.CurrentSpectrum >= 0 && cat.CurrentSpectrum < cat.SpectrumCount) {
        const catalogue::SpectrumRecord& record = cat.SpectrumList[cat.CurrentSpectrum];
        device = record.Description + " (/" + record.Context + "/" + record.Server + "/" + record.Device + ")";
        property = record.Property;
    }
    const ui::PlexPlot* shown = ExportedPlot(plot);
    const ui::AxisLimits& l = shown->Model().limits;
    std::string window;
    if (plot != 0)
        window = LocalTimeText(std::min(l.xMin, l.xMax)) + " to " + LocalTimeText(std::max(l.xMin, l.xMax));
    else if (OptArchiveData->isChecked())
        window = "archive, " + LocalTimeText(s_.HistoryStart) + " to " + LocalTimeText(s_.HistoryStop);
    else
        window = "live reading of " + (s_.LastLiveUpdate > 0 ? LocalTimeText(s_.LastLiveUpdate) : "(none yet)");
    const bool autoscale = plot == 0   ? LiveAutoScaleChecked()
                           : plot == 1 ? std::any_of(HistAutoScale.begin(), HistAutoScale.end(),
                                                     [](const QAction* a) { return a->isChecked(); })
                                       : MachAutoScale->isChecked();
    return {"Lumiscope: " + shown->accessibleName().toStdString(),
            "Machine: " + machine,
            "Device: " + device,
            "Property: " + property,
            "Time window: " + window,
            "Modes: percent " + OnOff(s_.PercentMode) + ", reference " + OnOff(refDisplay->isChecked()) +
                ", peak hold " + OnOff(LivePeakHold->isChecked()) + ", autoscale " + OnOff(autoscale) + ", zoom " +
                OnOff(shown->IsZoomed())};
}

std::string SpectrumForm::ValueSourceAt(int16_t plot, int32_t trace, double x) {
    const ItemList& items = ListOf(static_cast<int16_t>(plot - 1));
    // A live point lies at the moment it was appended, within the second
    // the series keeps.
    const auto second = static_cast<int32_t>(std::floor(x));
    for (int16_t i = 0; i < items.Count(); ++i) {
        if (items[i].traceNumber != trace) continue;
        const auto& points = items[i].series.Points();
        const int32_t at = items[i].series.IndexAt(second);
        if (at < static_cast<int32_t>(points.size()) && points[static_cast<size_t>(at)].time == second)
            return history::SourceName(points[static_cast<size_t>(at)].source);
    }
    return std::string();
}

std::string SpectrumForm::AskExportPath(int16_t plot, const char* suffix, const char* filter) {
    QString stem = plot == kExportWindow ? QStringLiteral("lumiscope") : FileStem(
        ExportedPlot(plot)->accessibleName().toStdString());
    if (plot == 0 && s_.cat.CurrentSpectrum >= 0 && s_.cat.CurrentSpectrum < s_.cat.SpectrumCount)
        stem = FileStem(s_.cat.SpectrumList[s_.cat.CurrentSpectrum].Description);
    const QString name = stem + QDateTime::currentDateTime().toString("-yyyyMMdd-HHmmss") + suffix;
    const QString dir = exportDirectory_.isEmpty() ? QDir::homePath() : exportDirectory_;
    const std::string path = ui::ChooseSaveFile(
        {tr("Export").toStdString(), QDir(dir).filePath(name).toStdString(), filter});
    if (!path.empty()) exportDirectory_ = QFileInfo(QString::fromStdString(path)).absolutePath();
    return path;
}

bool SpectrumForm::WriteExport(const std::string& path, const std::function<bool(QSaveFile&)>& write) {
    // Written beside the target and renamed over it when complete: a failure
    // halfway leaves no partial file, and an older file of that name intact.
    QSaveFile file(QString::fromStdString(path));
    if (file.open(QIODevice::WriteOnly) && write(file) && file.commit()) return true;
    const std::string reason = file.errorString().toStdString();
    file.cancelWriting();
    ui::MsgBox("Cannot write " + path + ": " + reason, ui::MsgBoxButtons::OK, ui::MsgBoxIcon::Exclamation);
    return false;
}

void SpectrumForm::ExportCsv_Click(int16_t plot) {
    const std::string path = AskExportPath(plot, ".csv", "CSV files (*.csv)");
    if (path.empty()) return;
    const ui::PlotModel& model = ExportedPlot(plot)->Model();
    const CsvTable table =
        plot == 0 ? SpectrumTable(model, ExportHeader(plot))
                  : TrendTable(model, ExportHeader(plot),
                               [this, plot](int32_t trace, double x) { return ValueSourceAt(plot, trace, x); });
    const std::string text = CsvText(table);
    WriteExport(path, [&](QSaveFile& file) {
        return file.write(text.data(), static_cast<qint64>(text.size())) == static_cast<qint64>(text.size());
    });
}

void SpectrumForm::ExportPng_Click(int16_t plot) {
    const std::string path = AskExportPath(plot, ".png", "PNG images (*.png)");
    if (path.empty()) return;
    QWidget* shown = plot == kExportWindow ? static_cast<QWidget*>(this) : ExportedPlot(plot);
    const QPixmap picture = shown->grab();
    WriteExport(path, [&](QSaveFile& file) { return picture.save(&file, "PNG"); });
}

}  // namespace viewer
