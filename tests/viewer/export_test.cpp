// Exports of what the plots show: the file read back against what the plot
// holds, the quoting of labels, and a file that cannot be written.
#include <gtest/gtest.h>

#include <QComboBox>
#include <QDir>
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

// Exports a plot of a window on the simulated accelerator and reads the
// file back: "# " lines into `header`, the rows below the column names
// (no field of these files needs quoting) into the result.
struct ExportWindow {
    ExportWindow() {
        f.Load();
        f.Advance(3000);
    }
    Rows Export(int16_t plot) {
        const std::string path = dir.filePath("export.csv").toStdString();
        ui::ScopedSaveFileChooser chooser([&](const ui::SaveFileRequest&) { return path; });
        f.form->ExportCsv_Click(plot);
        std::ifstream in(path);
        Rows rows;
        for (std::string line; std::getline(in, line);) {
            if (line.rfind("# ", 0) == 0) header.push_back(line.substr(2));
            if (line.rfind("# ", 0) == 0) continue;
            std::stringstream split(line + ",");
            rows.emplace_back();
            for (std::string field; std::getline(split, field, ',');) rows.back().push_back(field);
        }
        return Rows(rows.begin() + (rows.empty() ? 0 : 1), rows.end());
    }
    viewer_test::FormFixture f;
    QTemporaryDir dir;
    std::vector<std::string> header;
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
    const int32_t trace = w.f.State().cat.SpectrumTrace;
    plot->SetReferenceData(trace, std::vector<float>(20, 0.5f), 20);
    plot->SetRelativeDisplay(true, trace);
    plot->SetXRange(3.5, 30);  // elements 4 to 30; the reference covers 4 to 19
    const Rows rows = w.Export(0);
    ASSERT_EQ(rows.size(), 27u);
    EXPECT_EQ(rows.front()[0], "4");
    const ui::Trace& drawn = *plot->Model().traces.Find(trace);
    for (const auto& row : rows) {
        const size_t e = std::stoul(row.at(0));
        ASSERT_EQ(row.size(), 3u);
        EXPECT_EQ(row[1], w.f.State().LiveLabels[static_cast<int32_t>(e)]);
        EXPECT_EQ(std::stof(row[2]), drawn.values.at(e) - (e < 20 ? 0.5f : 0.0f)) << e;
    }
    EXPECT_EQ(w.header.at(1), "Machine: ORKA");
    EXPECT_EQ(w.header.at(5), "Modes: percent off, reference off, peak hold off, autoscale on, zoom off");
}

TEST(Export, TheTrendFileHoldsTimesValuesAndTheirSources) {
    ExportWindow w;
    w.f.form->ComboDevs->setCurrentIndex(2);
    w.f.form->ComSelDevice_Click();
    w.f.Advance(4000);
    std::vector<float> values;
    std::vector<double> xs;
    w.f.form->PLEXPlotSelected->ReadTracePoints(w.f.State().Items[0].traceNumber, values, xs);
    std::map<std::string, int> sources;
    for (const auto& row : w.Export(1)) {
        ASSERT_EQ(row.size(), 5u);
        const auto at = std::find(xs.begin(), xs.end(), std::stod(row[2]));
        ASSERT_NE(at, xs.end()) << row[2];
        EXPECT_EQ(std::stof(row[3]), values[static_cast<size_t>(at - xs.begin())]);
        EXPECT_EQ(row[1], viewer::LocalTimeText(*at));
        ++sources[row[4]];
    }
    EXPECT_EQ(sources.count(""), 0u) << "no value without its source";
    EXPECT_EQ(sources["live"], 5) << "the first reading and one per second";
    EXPECT_GT(sources["local history"] + sources["archive"], 0);
}

TEST(Export, AnUnwritableDirectoryIsToldAndLeavesNoFile) {
    ExportWindow w;
    std::ofstream(w.dir.filePath("plain").toStdString()) << "kept";  // a file is no directory, even for root
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
