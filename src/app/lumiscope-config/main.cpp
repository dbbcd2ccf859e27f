// lumiscope-config: reads, dumps (JSON) and checks a configuration directory
// with the very readers the viewer uses.
#include "app/tool_support/help_request.h"
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <variant>
#include <string>
#include <vector>

#include "catalogue/config_check.h"
#include "catalogue/readers.h"
#include "tool_support/json_writer.h"
#include "sim/simulated_accelerator.h"
#include "vire/threshold_link.h"
#include "tool_window.h"

namespace {

const char* kUsage =
    "usage: lumiscope-config machines FILE\n"
    "       lumiscope-config subsystems CONFIGDIR FILE [--program-path DIR]\n"
    "       lumiscope-config channels FILE [FILE...] [--program-path DIR] [--sim-config DIR]\n"
    "       lumiscope-config history FILE\n"
    "       lumiscope-config thresholds SOURCE --size N [--program-path DIR] [--sim-config DIR]\n"
    "       lumiscope-config check CONFIGDIR\n"
    "Threshold link sources are read from the simulated accelerator of --sim-config\n"
    "(default: the sample configuration; for check: CONFIGDIR).\n";

// Link sources are answered by the simulated accelerator of simConfigDir,
// built once per run and installed as the transport of the link calls.
void UseSimulatedLinks(catalogue::Catalogue& cat, const std::string& simConfigDir) {
    static std::shared_ptr<sim::SimulatedAccelerator> accelerator;
    if (!accelerator) accelerator = sim::InstallSimulatedAccelerator(simConfigDir);
    vire::InstallThresholdLink(cat);
}

int Usage(const std::string& problem) {
    std::cerr << "lumiscope-config: " << problem << "\n" << kUsage;
    return 2;
}

std::string WithTrailingSeparator(std::string dir) {
    if (dir.empty() || (dir.back() != '/' && dir.back() != '\\')) dir += '/';
    return dir;
}

void Messages(JsonWriter& json, const std::vector<std::string>& messages) {
    json.Key("messages").StringArray(messages);
}

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
void Record(JsonWriter& json, const R& record, const RecordField (&fields)[N]) {
    json.BeginObject();
    for (const RecordField& field : fields)
        std::visit([&](auto member) { json.Field(field.key, record.*member); }, field.member);
    json.EndObject();
}

// Why a reader failed, on stderr: the document on stdout keeps its keys.
void Diagnose(int16_t result, const catalogue::ReaderReport& report) {
    if (result == 0 || report.error.empty()) return;
    std::cerr << "lumiscope-config: " << report.file;
    if (report.line > 0) std::cerr << ":" << report.line;
    std::cerr << ": " << report.error << " (result " << result << ")\n";
}

int Print(const JsonWriter& json, bool ok) {
    std::cout << json.Text() << "\n";
    return ok ? 0 : 1;
}

// Ends a reader's document with its messages and prints it.
int Finish(JsonWriter& json, int16_t result, const catalogue::ReaderReport& report,
           const std::vector<std::string>& messages) {
    Messages(json, messages);
    Diagnose(result, report);
    return Print(json.EndObject(), result == 0);
}

int Machines(const std::string& file) {
    catalogue::Catalogue cat;
    const int16_t result = catalogue::ReadMachineFile(cat, file);
    JsonWriter json;
    json.BeginObject().Field("result", result).Field("MachineCount", cat.MachineCount);
    json.Key("MachineList").BeginArray();
    for (int16_t i = 0; i < cat.LastReport.rowsStored; ++i) {
        const auto& m = cat.MachineList[i];
        json.BeginObject().Field("Name", m.Name).Field("ConfigFile", m.ConfigFile)
            .Field("MachineFile", m.MachineFile).EndObject();
    }
    json.EndArray();
    return Finish(json, result, cat.LastReport, {});
}

int Subsystems(const std::string& configDir, const std::string& file, const std::string& programPath) {
    catalogue::Catalogue cat;
    cat.ConfigPath = WithTrailingSeparator(configDir);
    if (!programPath.empty()) cat.ProgramPath = WithTrailingSeparator(programPath);
    ToolWindow window(cat);
    const int16_t result = catalogue::ReadSubsystemList(cat, window, cat.ConfigPath + file);
    JsonWriter json;
    json.BeginObject().Field("result", result).Field("SubsystemCount", cat.SubsystemCount);
    json.Key("SubsystemList").BeginArray();
    for (int16_t i = 0; i < cat.LastReport.rowsStored; ++i) {
        const auto& s = cat.SubsystemList[i];
        json.BeginObject().Field("Directory", s.Directory).Field("FileName", s.FileName)
            .Field("Description", s.Description).EndObject();
    }
    json.EndArray().Key("MenuSubsystem").BeginArray();
    for (const MenuEntry& entry : window.menu)
        json.BeginObject().Field("caption", entry.caption).Field("visible", entry.visible).EndObject();
    json.EndArray();
    return Finish(json, result, cat.LastReport, window.messages);
}

int Channels(const std::vector<std::string>& files, const std::string& programPath,
             const std::string& simConfig) {
    catalogue::Catalogue cat;  // one catalogue: values carry over from file to file
    cat.ApplicationPath = programPath.empty() ? "." : programPath;
    UseSimulatedLinks(cat, simConfig);
    JsonWriter json;
    json.BeginArray();
    bool allOk = true;
    for (const std::string& file : files) {
        ToolWindow window(cat);
        const int16_t result = catalogue::ReadSpectrumConfig(cat, window, file);
        allOk = allOk && result == 0;
        Diagnose(result, cat.LastReport);
        json.BeginObject().Field("result", result).Field("SpectrumCount", cat.SpectrumCount);
        json.Key("SpectrumList").BeginArray();
        for (int16_t i = 0; i < cat.LastReport.rowsStored; ++i) Record(json, cat.SpectrumList[i], kChannelFields);
        json.EndArray().Field("ComboVisible", window.comboVisible).Key("Combo").BeginArray();
        for (std::size_t p = 0; p < window.combo.size(); ++p)
            json.BeginObject().Field("text", window.combo[p])
                .Field("spectrum", cat.ComboToSpectrum[static_cast<long>(p)]).EndObject();
        json.EndArray();
        Messages(json, window.messages);
        json.EndObject();
    }
    return Print(json.EndArray(), allOk);
}

int History(const std::string& file) {
    catalogue::Catalogue cat;
    const int16_t result = catalogue::ReadHistoryFile(cat, file);
    JsonWriter json;
    json.BeginObject().Field("result", result).Field("HistoryCount", cat.HistoryCount);
    json.Key("HistoryList").BeginArray();
    for (int16_t i = 0; i < cat.LastReport.rowsStored; ++i) Record(json, cat.HistoryList[i], kHistoryFields);
    json.EndArray();
    return Finish(json, result, cat.LastReport, {});
}

int Thresholds(const std::string& source, long size, const std::string& programPath,
               const std::string& simConfig) {
    catalogue::Catalogue cat;
    cat.ApplicationPath = programPath.empty() ? "." : programPath;
    UseSimulatedLinks(cat, simConfig);
    ToolWindow window(cat);
    std::vector<float> high(static_cast<std::size_t>(size)), low(static_cast<std::size_t>(size));
    const int16_t result = catalogue::ReadThresholds(cat, window, source, high, low);
    JsonWriter json;
    json.BeginObject().Field("result", result);
    json.Key("HighThresholds").FloatArray(high).Key("LowThresholds").FloatArray(low);
    Messages(json, window.messages);
    if (result != catalogue::kThresholdsFromFile) Diagnose(result, cat.LastReport);
    return Print(json.EndObject(), result == catalogue::kThresholdsByLink ||
                                       result == catalogue::kThresholdsFromFile);
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

// The value of "--name VALUE" among args (removed from args), or nullopt.
std::optional<std::string> TakeOption(std::vector<std::string>& args, const std::string& name) {
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (args[i] != name) continue;
        if (i + 1 >= args.size()) return std::string();
        std::string value = args[i + 1];
        args.erase(args.begin() + static_cast<long>(i), args.begin() + static_cast<long>(i) + 2);
        return value;
    }
    return std::nullopt;
}

}  // namespace

int main(int argc, char** argv) try {
    if (tool_support::AnswerHelp(argc, argv, kUsage)) return 0;
    std::vector<std::string> args(argv + 1, argv + argc);
    if (args.empty()) return Usage("no command");
    const std::string command = args.front();
    args.erase(args.begin());
    const std::string programPath = TakeOption(args, "--program-path").value_or("");
    const std::optional<std::string> size = TakeOption(args, "--size");
    // Link sources are answered by the simulated accelerator of this directory.
    const std::string simConfig = TakeOption(args, "--sim-config").value_or(LUMISCOPE_SAMPLE_CONFIG_DIR);

    if (command == "machines" && args.size() == 1) return Machines(args[0]);
    if (command == "subsystems" && args.size() == 2) return Subsystems(args[0], args[1], programPath);
    if (command == "channels" && !args.empty()) return Channels(args, programPath, simConfig);
    if (command == "history" && args.size() == 1) return History(args[0]);
    if (command == "check" && args.size() == 1) return Check(args[0]);
    if (command == "thresholds" && args.size() == 1) {
        char* end = nullptr;
        const long n = size ? std::strtol(size->c_str(), &end, 10) : 0;
        if (!size || end == size->c_str() || *end != '\0' || n < 1 || n > catalogue::kMaxSpectrumPoints)
            return Usage("thresholds needs --size N with N from 1 to " + std::to_string(catalogue::kMaxSpectrumPoints));
        return Thresholds(args[0], n, programPath, simConfig);
    }
    return Usage("unknown command or wrong arguments: " + command);
} catch (const std::exception& error) {
    // The readers end with their result; anything else is said, not aborted on.
    std::cerr << "lumiscope-config: unexpected failure: " << error.what() << "\n";
    return 3;
}
