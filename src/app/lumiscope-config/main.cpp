// lumiscope-config: reads, dumps (JSON) and checks a configuration directory
// with the very readers the viewer uses.
#include <iostream>
#include <string>
#include <variant>
#include <vector>

#include "catalogue/config_check.h"
#include "catalogue/readers.h"
#include "command_line/command_line.h"
#include "sim/simulated_accelerator.h"
#include "tool_support/installed_files.h"
#include "tool_support/json_document.h"
#include "vire/threshold_link.h"
#include "tool_window.h"

namespace {

using tool_support::JsonDocument;

const command_line::ProgramText kText = {
    "lumiscope-config",
    {"machines FILE", "subsystems CONFIGDIR FILE [--program-path DIR]",
     "channels FILE [FILE...] [--program-path DIR] [--sim-config DIR]", "history FILE",
     "thresholds SOURCE --size N [--program-path DIR] [--sim-config DIR]", "check CONFIGDIR"},
    "Reads a configuration file with the viewer's own readers and prints what they\n"
    "stored as one JSON document (channels: one per file), or checks a whole\n"
    "configuration directory. Exit code 0 when the readers succeed, 1 when one\n"
    "fails, 2 for a mistake in the command line.\n"
    "Threshold link sources are read from the simulated accelerator of --sim-config\n"
    "(default: the sample configuration; for check: CONFIGDIR).\n",
    ""};

// Link sources are answered by the simulated accelerator of simConfigDir,
// built once per run and installed as the transport of the link calls.
void UseSimulatedLinks(catalogue::Catalogue& cat, const std::string& simConfigDir) {
    static std::shared_ptr<sim::SimulatedAccelerator> accelerator;
    if (!accelerator) accelerator = sim::InstallSimulatedAccelerator(simConfigDir);
    vire::InstallThresholdLink(cat);
}

std::string WithTrailingSeparator(std::string dir) {
    if (dir.empty() || (dir.back() != '/' && dir.back() != '\\')) dir += '/';
    return dir;
}

JsonDocument Text(const std::string& text) { return tool_support::Utf8Text(text); }

JsonDocument Texts(const std::vector<std::string>& texts) {
    JsonDocument list = JsonDocument::array();
    for (const std::string& text : texts) list.push_back(Text(text));
    return list;
}

// A field of a record as the document holds it.
template <typename T>
JsonDocument Value(const T& value) { return value; }
JsonDocument Value(const std::string& value) { return Text(value); }

// A record field by its JSON key, which is the field's own name.
struct RecordField {
    const char* key;
    std::variant<std::string catalogue::SpectrumRecord::*, bool catalogue::SpectrumRecord::*,
                 int16_t catalogue::SpectrumRecord::*, int32_t catalogue::SpectrumRecord::*,
                 float catalogue::SpectrumRecord::*>
        member;
};

using R = catalogue::SpectrumRecord;

// The fields a data-source file fills, in the record's order.
const RecordField kChannelFields[] = {
    {"Description", &R::Description}, {"Context", &R::Context}, {"Server", &R::Server},
    {"Device", &R::Device}, {"Property", &R::Property}, {"ExtDevNameDev", &R::ExtDevNameDev},
    {"ExtDevNameProp", &R::ExtDevNameProp}, {"HasExtDevName", &R::HasExtDevName},
    {"ExtraPropComboIndex", &R::ExtraPropComboIndex}, {"Tag", &R::Tag}, {"HstServer", &R::HstServer},
    {"HstProperty", &R::HstProperty}, {"ArcServer", &R::ArcServer}, {"ArcProperty", &R::ArcProperty},
    {"Size", &R::Size}, {"ThresholdSource", &R::ThresholdSource}, {"Max", &R::Max}, {"Min", &R::Min},
    {"Egu", &R::Egu}, {"Append", &R::Append}, {"Reverse", &R::Reverse}, {"PropLink", &R::PropLink},
    {"PropShort", &R::PropShort},
};

// The fields a machine history file fills.
const RecordField kHistoryFields[] = {
    {"Description", &R::Description}, {"Context", &R::Context}, {"Server", &R::Server},
    {"Property", &R::Property}, {"HstServer", &R::HstServer}, {"HstProperty", &R::HstProperty},
    {"ArcServer", &R::ArcServer}, {"ArcProperty", &R::ArcProperty}, {"Size", &R::Size}, {"Max", &R::Max},
    {"Min", &R::Min}, {"Egu", &R::Egu}, {"ShortName", &R::ShortName}, {"Label", &R::Label},
};

template <std::size_t N>
JsonDocument Record(const R& record, const RecordField (&fields)[N]) {
    JsonDocument object = JsonDocument::object();
    for (const RecordField& field : fields)
        std::visit([&](auto member) { object[field.key] = Value(record.*member); }, field.member);
    return object;
}

// Why a reader failed, on stderr: the document on stdout keeps its keys.
void Diagnose(int16_t result, const catalogue::ReaderReport& report) {
    if (result == 0 || report.error.empty()) return;
    std::cerr << "lumiscope-config: " << report.file;
    if (report.line > 0) std::cerr << ":" << report.line;
    std::cerr << ": " << report.error << " (result " << result << ")\n";
}

int Print(const JsonDocument& document, bool ok) {
    std::cout << tool_support::JsonText(document) << "\n";
    return ok ? 0 : 1;
}

// Ends a reader's document with its messages and prints it.
int Finish(JsonDocument& document, int16_t result, const catalogue::ReaderReport& report,
           const std::vector<std::string>& messages) {
    document["messages"] = Texts(messages);
    Diagnose(result, report);
    return Print(document, result == 0);
}

int Machines(const std::string& file) {
    catalogue::Catalogue cat;
    const int16_t result = catalogue::ReadMachineFile(cat, file);
    JsonDocument document = {{"result", result}, {"MachineCount", cat.MachineCount}};
    JsonDocument& list = document["MachineList"] = JsonDocument::array();
    for (int16_t i = 0; i < cat.LastReport.rowsStored; ++i) {
        const auto& m = cat.MachineList[i];
        list.push_back(
            {{"Name", Text(m.Name)}, {"ConfigFile", Text(m.ConfigFile)}, {"MachineFile", Text(m.MachineFile)}});
    }
    return Finish(document, result, cat.LastReport, {});
}

int Subsystems(const std::string& configDir, const std::string& file, const std::string& programPath) {
    catalogue::Catalogue cat;
    cat.ConfigPath = WithTrailingSeparator(configDir);
    if (!programPath.empty()) cat.ProgramPath = WithTrailingSeparator(programPath);
    ToolWindow window(cat);
    const int16_t result = catalogue::ReadSubsystemList(cat, window, cat.ConfigPath + file);
    JsonDocument document = {{"result", result}, {"SubsystemCount", cat.SubsystemCount}};
    JsonDocument& list = document["SubsystemList"] = JsonDocument::array();
    for (int16_t i = 0; i < cat.LastReport.rowsStored; ++i) {
        const auto& s = cat.SubsystemList[i];
        list.push_back(
            {{"Directory", Text(s.Directory)}, {"FileName", Text(s.FileName)}, {"Description", Text(s.Description)}});
    }
    JsonDocument& menu = document["MenuSubsystem"] = JsonDocument::array();
    for (const MenuEntry& entry : window.menu)
        menu.push_back({{"caption", Text(entry.caption)}, {"visible", entry.visible}});
    return Finish(document, result, cat.LastReport, window.messages);
}

int Channels(const std::vector<std::string>& files, const std::string& programPath,
             const std::string& simConfig) {
    catalogue::Catalogue cat;  // one catalogue: values carry over from file to file
    cat.ApplicationPath = programPath.empty() ? "." : programPath;
    UseSimulatedLinks(cat, simConfig);
    JsonDocument documents = JsonDocument::array();
    bool allOk = true;
    for (const std::string& file : files) {
        ToolWindow window(cat);
        const int16_t result = catalogue::ReadSpectrumConfig(cat, window, file);
        allOk = allOk && result == 0;
        Diagnose(result, cat.LastReport);
        JsonDocument document = {{"result", result}, {"SpectrumCount", cat.SpectrumCount}};
        JsonDocument& list = document["SpectrumList"] = JsonDocument::array();
        for (int16_t i = 0; i < cat.LastReport.rowsStored; ++i)
            list.push_back(Record(cat.SpectrumList[i], kChannelFields));
        document["ComboVisible"] = window.comboVisible;
        JsonDocument& combo = document["Combo"] = JsonDocument::array();
        for (std::size_t p = 0; p < window.combo.size(); ++p)
            combo.push_back({{"text", Text(window.combo[p])}, {"spectrum", cat.ComboToSpectrum[static_cast<long>(p)]}});
        document["messages"] = Texts(window.messages);
        documents.push_back(std::move(document));
    }
    return Print(documents, allOk);
}

int History(const std::string& file) {
    catalogue::Catalogue cat;
    const int16_t result = catalogue::ReadHistoryFile(cat, file);
    JsonDocument document = {{"result", result}, {"HistoryCount", cat.HistoryCount}};
    JsonDocument& list = document["HistoryList"] = JsonDocument::array();
    for (int16_t i = 0; i < cat.LastReport.rowsStored; ++i) list.push_back(Record(cat.HistoryList[i], kHistoryFields));
    return Finish(document, result, cat.LastReport, {});
}

int Thresholds(const std::string& source, long size, const std::string& programPath,
               const std::string& simConfig) {
    catalogue::Catalogue cat;
    cat.ApplicationPath = programPath.empty() ? "." : programPath;
    UseSimulatedLinks(cat, simConfig);
    ToolWindow window(cat);
    std::vector<float> high(static_cast<std::size_t>(size)), low(static_cast<std::size_t>(size));
    const int16_t result = catalogue::ReadThresholds(cat, window, source, high, low);
    JsonDocument document = {{"result", result}, {"HighThresholds", high}, {"LowThresholds", low}};
    document["messages"] = Texts(window.messages);
    if (result != catalogue::kThresholdsFromFile) Diagnose(result, cat.LastReport);
    return Print(document, result == catalogue::kThresholdsByLink || result == catalogue::kThresholdsFromFile);
}

int Check(const std::string& configDir) {
    catalogue::ConfigCheckOptions options;
    catalogue::Catalogue linkHolder;
    UseSimulatedLinks(linkHolder, configDir);
    options.thresholdLink = linkHolder.ThresholdLink;
    const auto result = catalogue::CheckConfigDirectory(configDir, options);
    for (const auto& problem : result.problems) {
        std::cout << problem.file;
        if (problem.line > 0) std::cout << ":" << problem.line;
        std::cout << ": " << problem.message << "\n";
    }
    if (result.problems.empty())
        std::cout << "configuration OK: " << result.filesRead << " files read\n";
    else
        std::cout << result.problems.size() << " problem" << (result.problems.size() == 1 ? "" : "s")
                  << " found in " << result.filesRead << " files read\n";
    return result.problems.empty() ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) try {
    command_line::CommandLine commandLine(kText);
    CLI::App& options = commandLine.Options();
    options.require_subcommand(1);
    std::string file, configDir, programPath, source;
    std::vector<std::string> files;
    // Link sources are answered by the simulated accelerator of this directory.
    std::string simConfig = tool_support::SampleConfigDirectory();
    long size = 0;
    const auto programPathOption = [&](CLI::App* command) {
        command->add_option("--program-path", programPath,
                            "the program directory, where a local SpectrumInfo.csv and\n"
                            "relative threshold files are looked for")
            ->type_name("DIR");
    };
    const auto simConfigOption = [&](CLI::App* command) {
        command->add_option("--sim-config", simConfig, "the simulated accelerator's configuration directory")
            ->type_name("DIR");
    };
    CLI::App* machines = options.add_subcommand("machines");
    machines->add_option("FILE", file)->required();
    CLI::App* subsystems = options.add_subcommand("subsystems");
    subsystems->add_option("CONFIGDIR", configDir)->required();
    subsystems->add_option("FILE", file)->required();
    programPathOption(subsystems);
    CLI::App* channels = options.add_subcommand("channels");
    channels->add_option("FILE", files)->required();
    programPathOption(channels);
    simConfigOption(channels);
    CLI::App* history = options.add_subcommand("history");
    history->add_option("FILE", file)->required();
    CLI::App* thresholds = options.add_subcommand("thresholds");
    thresholds->add_option("SOURCE", source)->required();
    const std::string sizeHelp = "elements to read (1 to " + std::to_string(catalogue::kMaxSpectrumPoints) + ")";
    thresholds->add_option("--size", size, sizeHelp)
        ->required()
        ->check(CLI::Range(1L, static_cast<long>(catalogue::kMaxSpectrumPoints)).description(""))
        ->type_name("N");
    programPathOption(thresholds);
    simConfigOption(thresholds);
    CLI::App* check = options.add_subcommand("check");
    check->add_option("CONFIGDIR", configDir)->required();

    if (const auto exitCode = commandLine.Parse(argc, argv)) return *exitCode;
    if (*machines) return Machines(file);
    if (*subsystems) return Subsystems(configDir, file, programPath);
    if (*channels) return Channels(files, programPath, simConfig);
    if (*history) return History(file);
    if (*thresholds) return Thresholds(source, size, programPath, simConfig);
    return Check(configDir);
} catch (const std::exception& error) {
    // The readers end with their result; anything else is said, not aborted on.
    std::cerr << "lumiscope-config: unexpected failure: " << error.what() << "\n";
    return 3;
}
