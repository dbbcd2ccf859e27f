#include "sim/settings.h"

#include <cctype>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <filesystem>

#include "catalogue/files.h"
#include "catalogue/numbers.h"
#include "catalogue/runtime_error.h"
#include "catalogue/table.h"

namespace sim {
namespace {

std::vector<std::string> SplitList(const std::string& text, char separator) {
    std::vector<std::string> parts;
    size_t start = 0;
    for (;;) {
        const size_t end = text.find(separator, start);
        parts.push_back(catalogue::TrimAll(text.substr(start, end - start)));
        if (end == std::string::npos) return parts;
        start = end + 1;
    }
}


void AddFault(SimulationSettings& settings, const std::string& target, const std::string& text,
              const std::string& where) {
    Fault fault;
    if (target.empty() || !ParseFault(text, fault)) {
        settings.problems.push_back(where + ": unreadable fault \"" + target + "=" + text + "\"");
        return;
    }
    settings.faults[target] = fault;
}

void ApplySetting(SimulationSettings& settings, const std::string& name, const std::string& target,
                  const std::string& value, const std::string& where) {
    int64_t number = 0;
    auto positive = [&](int32_t& field) {
        if (catalogue::ParseInteger(value, 1, 36500, number)) field = static_cast<int32_t>(number);
        else settings.problems.push_back(where + ": unreadable " + name + " \"" + value + "\"");
    };
    if (name == "SEED") {
        if (catalogue::ParseInteger(value, 0, INT64_MAX, number)) settings.seed = static_cast<uint64_t>(number);
        else settings.problems.push_back(where + ": unreadable SEED \"" + value + "\"");
    } else if (name == "WRITER") {
        if (!value.empty()) settings.writers.insert(value);
    } else if (name == "FAULT") {
        AddFault(settings, target, value, where);
    } else if (name == "LOCALHISTORYSTEP") {
        positive(settings.localHistoryStepS);
    } else if (name == "LOCALHISTORYDAYS") {
        positive(settings.localHistoryDays);
    } else if (name == "ARCHIVESTEP") {
        positive(settings.archiveStepS);
    } else if (name == "ARCHIVEDAYS") {
        positive(settings.archiveDays);
    } else {
        settings.problems.push_back(where + ": unknown setting \"" + name + "\"");
    }
}

void ReadFile(SimulationSettings& settings, const std::string& configDir) {
    const std::filesystem::path file = std::filesystem::path(configDir) / kSimulationFileName;
    std::error_code error;
    if (!std::filesystem::exists(file, error)) return;
    std::vector<std::string> lines;
    try {
        lines = catalogue::ReadTextLines(file.string());
    } catch (const catalogue::RuntimeError& e) {
        settings.problems.push_back(file.string() + ": " + e.what());
        return;
    }
    bool header = true;
    for (size_t i = 0; i < lines.size(); ++i) {
        const std::string line = catalogue::TrimAll(lines[i]);
        if (line.empty() || line[0] == ';' || line[0] == '#') continue;
        if (header) {  // SETTING,TARGET,VALUE
            header = false;
            continue;
        }
        const auto fields = SplitList(line, ',');
        const std::string where = file.string() + " line " + std::to_string(i + 1);
        if (fields.size() != 3) {
            settings.problems.push_back(where + ": expected SETTING,TARGET,VALUE");
            continue;
        }
        ApplySetting(settings, catalogue::UpperCase(fields[0]), fields[1], fields[2], where);
    }
}

void ReadEnvironment(SimulationSettings& settings) {
    if (const char* seed = std::getenv("LUMISCOPE_SIM_SEED"))
        ApplySetting(settings, "SEED", "", seed, "LUMISCOPE_SIM_SEED");
    if (const char* writers = std::getenv("LUMISCOPE_SIM_WRITERS")) {
        settings.writers.clear();
        for (const auto& name : SplitList(writers, ','))
            if (!name.empty()) settings.writers.insert(name);
    }
    if (const char* faults = std::getenv("LUMISCOPE_SIM_FAULTS")) {
        for (const auto& pair : SplitList(faults, ',')) {
            if (pair.empty()) continue;
            const size_t equals = pair.find('=');
            if (equals == std::string::npos) {
                settings.problems.push_back("LUMISCOPE_SIM_FAULTS: unreadable fault \"" + pair + "\"");
                continue;
            }
            AddFault(settings, catalogue::TrimAll(pair.substr(0, equals)),
                     catalogue::TrimAll(pair.substr(equals + 1)), "LUMISCOPE_SIM_FAULTS");
        }
    }
}

}  // namespace

bool ParseFault(const std::string& text, Fault& fault) {
    std::string lower = text;
    for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    Fault parsed;
    int64_t number = 0;
    if (const size_t star = lower.find('*'); star != std::string::npos) {
        if (!catalogue::ParseInteger(lower.substr(star + 1), 1, kMaxFaultCalls, number)) return false;
        parsed.calls = static_cast<int32_t>(number);
        lower.resize(star);
    }
    if (lower == "down") {
        parsed.kind = Fault::Kind::Down;
    } else if (lower == "slow") {
        parsed.kind = Fault::Kind::Slow;
    } else if (lower.rfind("slow:", 0) == 0 && catalogue::ParseInteger(lower.substr(5), 1, kMaxFaultDelayMs, number)) {
        parsed.kind = Fault::Kind::Slow;
        parsed.delayMs = static_cast<int32_t>(number);
    } else if (lower.rfind("code:", 0) == 0 &&
               catalogue::ParseInteger(lower.substr(5), INT16_MIN, INT16_MAX, number) && number != 0) {
        parsed.kind = Fault::Kind::Code;
        parsed.code = static_cast<int16_t>(number);
    } else {
        return false;
    }
    fault = parsed;
    return true;
}

SimulationSettings LoadSimulationSettings(const std::string& configDir) {
    SimulationSettings settings;
    ReadFile(settings, configDir);
    ReadEnvironment(settings);
    return settings;
}

}  // namespace sim
