// How long reading the configuration takes: the whole sample directory as the
// viewer reads it at start-up and on navigation, and the largest data-source
// file the catalogue holds.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <unistd.h>

#include "catalogue/config_check.h"
#include "catalogue/files.h"
#include "catalogue/readers.h"
#include "figure_reporter.h"

namespace {

std::string SampleDir() {
    const char* dir = std::getenv("LUMISCOPE_SAMPLE_CONFIG_DIR");
    return std::string(dir && *dir ? dir : "configs") + "/";
}

// Every file the viewer reads from the directory: the machine list, each
// machine's subsystem list and history file, each subsystem's data-source file
// and each channel's threshold table.
int ReadWholeDirectory(const std::string& dir) {
    catalogue::Catalogue cat;
    catalogue::QuietWindow window;
    cat.ConfigPath = dir;
    cat.ApplicationPath = std::filesystem::path(dir).parent_path().parent_path().string();
    int files = 0;
    if (catalogue::ReadMachineFile(cat, dir + "config_machines.csv") != 0) return -1;
    ++files;
    const int16_t machines = cat.MachineCount;
    for (int16_t m = 0; m < machines; ++m) {
        const catalogue::MachineRecord machine = cat.MachineList[m];
        files += catalogue::ReadHistoryFile(cat, dir + machine.MachineFile) == 0;
        if (catalogue::ReadSubsystemList(cat, window, dir + machine.ConfigFile) != 0) continue;
        ++files;
        for (int16_t s = 0; s < cat.SubsystemCount; ++s) {
            const catalogue::SubsystemRecord subsystem = cat.SubsystemList[s];
            if (catalogue::ReadSpectrumConfig(cat, window, subsystem.Directory + subsystem.FileName) != 0) continue;
            ++files;
            for (int16_t i = 0; i < cat.SpectrumCount; ++i) {
                const std::string& source = cat.SpectrumList[i].ThresholdSource;
                if (source.empty() || catalogue::IsThresholdLinkSource(source)) continue;
                files += catalogue::ReadChannelThresholds(cat, window, i) == catalogue::kThresholdsFromFile;
            }
        }
    }
    return files;
}

void ConfigDirRead(benchmark::State& state) {
    const std::string dir = SampleDir();
    int files = 0;
    for (auto _ : state) benchmark::DoNotOptimize(files = ReadWholeDirectory(dir));
    state.counters["files"] = files;
}
BENCHMARK(ConfigDirRead)->Name("figure:config-dir-read")->Unit(benchmark::kMicrosecond);

void ConfigDirCheck(benchmark::State& state) {
    const std::string dir = SampleDir();
    for (auto _ : state) benchmark::DoNotOptimize(catalogue::CheckConfigDirectory(dir));
}
BENCHMARK(ConfigDirCheck)->Name("figure:config-dir-check")->Unit(benchmark::kMicrosecond);

// The largest data-source file: 101 data rows, all stored (the reader then
// fails on the entry behind the last row, as it must).
std::filesystem::path WriteFile101Rows() {
    const auto path = std::filesystem::temp_directory_path() /
                      ("lumiscope-bench-101-" + std::to_string(::getpid()) + ".csv");
    std::ofstream out(path, std::ios::binary);
    out << "CONTEXT,SERVER,PROPERTY,SIZE,HSTSERVER,HSTPROPERTY,ARCSERVER,ARCPROPERTY,DESCRIPTION,MAX,MIN,EGU,"
           "APPEND,HIGH,TAG,PROPLINK,PROPSHORT,EXTDEVNAMEDEV,EXTDEVNAMEPROP,EXTRAPROPCOMBOINDEX\r\n";
    for (int i = 0; i < 101; ++i)
        out << "ORKA,BPMSRV/ORBIT.Q" << i << ",ORBIT.X,32,/ORKA/BPMHIST,ORBIT.X.HIST,/ORKA/OKHISTORY,ORBIT.X,"
            << "Orbit part " << i << ",5,-5,mm," << (i % 4 ? "YES" : "") << ",,Q" << i << "," << (i % 4 ? 0 : 1)
            << ",X,,,-1\r\n";
    return path;
}

void SpectrumFile101Rows(benchmark::State& state) {
    const auto path = WriteFile101Rows();
    catalogue::Catalogue cat;
    catalogue::QuietWindow window;
    for (auto _ : state) {
        catalogue::ReadSpectrumConfig(cat, window, path.string());
        if (cat.LastReport.rowsStored != 101) state.SkipWithError("the file did not load 101 rows");
    }
    std::filesystem::remove(path);
}
BENCHMARK(SpectrumFile101Rows)->Name("figure:spectrum-file-101-rows")->Unit(benchmark::kMicrosecond);

// The reference for the reader: the same file only read and split into lines.
void SpectrumFile101RowsRawLines(benchmark::State& state) {
    const auto path = WriteFile101Rows();
    for (auto _ : state) benchmark::DoNotOptimize(catalogue::ReadTextLines(path.string()));
    std::filesystem::remove(path);
}
BENCHMARK(SpectrumFile101RowsRawLines)->Name("spectrum-file-101-rows-raw-lines")->Unit(benchmark::kMicrosecond);

// Adds "ratio spectrum-file-101-rows-vs-raw-lines R": how much the reader's
// column lookup, field parsing and records cost over reading the bytes.
class CatalogueReporter : public lumiscope_bench::FigureReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        FigureReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Aggregate && run.aggregate_name != "median") continue;
            times_[run.run_name.function_name] = run.GetAdjustedRealTime();
        }
    }
    void Finalize() override {
        FigureReporter::Finalize();
        const auto reader = times_.find("figure:spectrum-file-101-rows");
        const auto raw = times_.find("spectrum-file-101-rows-raw-lines");
        if (reader != times_.end() && raw != times_.end() && raw->second > 0)
            std::printf("ratio spectrum-file-101-rows-vs-raw-lines %.2f\n", reader->second / raw->second);
        std::fflush(stdout);
    }

private:
    std::map<std::string, double> times_;
};

}  // namespace

int main(int argc, char** argv) { return lumiscope_bench::RunGroup<CatalogueReporter>(argc, argv); }
