// Exports of what the plots show: the file read back against what the plot
// holds, the quoting of labels, and a file that cannot be written.
#include <gtest/gtest.h>

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <fstream>
#include <sstream>

#include "form_fixture.h"
#include "ui/controls/save_file_chooser.h"
#include "ui/plot/plex_plot.h"
#include "viewer/csv_text.h"
#include "viewer/shown_values.h"

namespace {

using Rows = std::vector<std::vector<std::string>>;

// The file's rows below the column names (no field of these files is quoted).
Rows ReadRows(const std::string& path, std::vector<std::string>* header = nullptr) {
    std::ifstream in(path);
    Rows rows;
    for (std::string line; std::getline(in, line);) {
        if (line.rfind("# ", 0) == 0) {
            if (header) header->push_back(line.substr(2));
            continue;
        }
        std::vector<std::string> fields;
        std::stringstream split(line);
        for (std::string field; std::getline(split, field, ',');) fields.push_back(field);
        if (line.back() == ',') fields.emplace_back();
        rows.push_back(fields);
    }
    if (!rows.empty()) rows.erase(rows.begin());
    return rows;
}

struct ExportWindow {
    ExportWindow() {
        f.Load();
        f.Advance(3000);
    }
    std::string Export(int16_t plot, const std::string& name) {
        const std::string path = dir.filePath(QString::fromStdString(name)).toStdString();
        ui::ScopedSaveFileChooser chooser([&](const ui::SaveFileRequest&) { return path; });
        f.form->ExportCsv_Click(plot);
        return path;
    }
    viewer_test::FormFixture f;
    QTemporaryDir dir;
};

TEST(Export, LabelsWithCommasQuotesAndBreaksAreQuoted) {
    const struct { std::string label, field; } cases[] = {
        {"QD1", "QD1"}, {"QD1,2", "\"QD1,2\""}, {"say \"hi\"", "\"say \"\"hi\"\"\""}, {"a\nb", "\"a\nb\""}, {"", ""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(viewer::CsvField(c.label), c.field) << c.label;
        EXPECT_EQ(viewer::CsvText({{"one\ntwo"}, {"label"}, {{c.label}}}), "# one two\nlabel\n" + c.field + "\n");
    }
}

TEST(Export, TheSpectrumFileHoldsTheZoomedRelativeValuesAsDrawn) {
    ExportWindow w;
    ui::PlexPlot* plot = w.f.form->PLEXPlotSpectrum;
    const ui::PlotModel& model = plot->Model();
    const int32_t trace = w.f.State().cat.SpectrumTrace;
    const std::vector<float> reference(20, 0.5f);
    plot->SetReferenceData(trace, reference, 20);
    plot->SetRelativeDisplay(true, trace);
    plot->SetXRange(3.5, 30);  // elements 4 to 30; the reference covers 4 to 19
    std::vector<std::string> header;
    const Rows rows = ReadRows(w.Export(0, "spectrum.csv"), &header);
    ASSERT_EQ(rows.size(), 27u);
    const ui::Trace& drawn = *model.traces.Find(trace);
    for (const auto& row : rows) {
        const size_t e = std::stoul(row.at(0));
        ASSERT_EQ(row.size(), 3u);
        EXPECT_EQ(row[1], w.f.State().LiveLabels[static_cast<int32_t>(e)]);
        EXPECT_EQ(std::stof(row[2]), drawn.values.at(e) - (e < 20 ? 0.5f : 0.0f)) << e;
    }
    EXPECT_EQ(rows.front()[0], "4");
    EXPECT_EQ(header.at(1), "Machine: ORKA");
    EXPECT_EQ(header.at(5), "Modes: percent off, reference off, peak hold off, autoscale on, zoom off");
    EXPECT_TRUE(w.f.dialogs.Records().empty());
}

TEST(Export, TheTrendFileHoldsTimesValuesAndTheirSources) {
    ExportWindow w;
    w.f.form->ComboDevs->setCurrentIndex(2);
    w.f.form->ComSelDevice_Click();
    w.f.Advance(4000);
    const viewer::SelectedItem& item = w.f.State().Items[0];
    std::vector<float> values;
    std::vector<double> xs;
    w.f.form->PLEXPlotSelected->ReadTracePoints(item.traceNumber, values, xs);
    const Rows rows = ReadRows(w.Export(1, "trend.csv"));
    ASSERT_FALSE(rows.empty());
    size_t live = 0, recorded = 0;
    for (const auto& row : rows) {
        ASSERT_EQ(row.size(), 5u);
        const double x = std::stod(row[2]);
        const auto at = std::find(xs.begin(), xs.end(), x);
        ASSERT_NE(at, xs.end()) << row[2];
        EXPECT_EQ(std::stof(row[3]), values[static_cast<size_t>(at - xs.begin())]);
        EXPECT_EQ(row[1], viewer::LocalTimeText(x));
        (row[4] == "live" ? live : recorded) += 1;
        EXPECT_TRUE(row[4] == "live" || row[4] == "local history" || row[4] == "archive") << row[4];
    }
    EXPECT_EQ(live, 5u) << "the first reading and one per second";
    EXPECT_GT(recorded, 0u);
}

TEST(Export, AnUnwritableDirectoryIsToldAndLeavesNoFile) {
    ExportWindow w;
    // A plain file where the directory should be: refused even to root.
    std::ofstream(w.dir.filePath("plain").toStdString()) << "kept";
    const std::string path = w.dir.filePath("plain/spectrum.csv").toStdString();
    ui::ScopedSaveFileChooser chooser([&](const ui::SaveFileRequest&) { return path; });
    w.f.form->ExportCsv_Click(0);
    w.f.form->ExportPng_Click(viewer::SpectrumForm::kExportWindow);
    ASSERT_EQ(w.f.dialogs.Texts().size(), 2u);
    for (const std::string& text : w.f.dialogs.Texts()) EXPECT_EQ(text.rfind("Cannot write " + path + ": ", 0), 0u) << text;
    EXPECT_EQ(QDir(w.dir.path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::Hidden),
              QStringList{"plain"});
}

}  // namespace
