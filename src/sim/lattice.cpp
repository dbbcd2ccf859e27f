#include "sim/lattice.h"

#include <cstdio>

namespace sim {
namespace {

// A naming rule: %S is the section (two digits), %C the element within its
// section (from 1), %N the running number (two digits, from 1).
struct NamingRule {
    const char* context;
    const char* server;
    const char* pattern;  // nullptr: the server has no names
    int32_t perSection;
    int32_t firstSection;
};

constexpr NamingRule kRules[] = {
    {"ORKA", "BPMQ1", "BPM.S%S.C%C", 8, 1},
    {"ORKA", "BPMQ2", "BPM.S%S.C%C", 8, 5},
    {"ORKA", "BPMQ3", "BPM.S%S.C%C", 8, 9},
    {"ORKA", "BPMQ4", "BPM.S%S.C%C", 8, 13},
    {"ORKA", "BPMSRV", "BPM.S%S.C%C", 8, 1},
    {"ORKA", "BLMSRV", "BLM.S%S.%C", 6, 1},
    {"ORKA", "BCMSRV", nullptr, 1, 1},
    {"ORKA", "PSDIP", "BEND.S%S", 1, 1},
    {"ORKA", "PSQUAD", "QUAD.S%S.%C", 4, 1},
    {"ORKA", "PSSEXT", "SEXT.S%S.%C", 3, 1},
    {"ORKA", "PSCORH", "HCOR.S%S.%C", 8, 1},
    {"ORKA", "PSCORV", "VCOR.S%S.%C", 8, 1},
    {"VESTA", "BPMSRV", "VBPM.C%S.%C", 2, 1},
    {"VESTA", "BLMSRV", "VBLM.C%S", 1, 1},
    {"VESTA", "PSDIP", "VBEND.C%S", 1, 1},
    {"VESTA", "PSQUAD", "VQUAD.C%S.%C", 2, 1},
    {"LYRAS", "BPMSRV", "LBPM.%N", 1, 1},
    {"LYRAS", "PSQUAD", "LQUAD.%N", 1, 1},
    // Steerer names are longer than a name field: the server continues them.
    {"LYRAS", "PSSTEER", "LINAC.STEERER.H%N", 1, 1},
    {"KALM", "BPMSRV", "KBPM.%N", 1, 1},
};

std::string TwoDigits(int32_t n) {
    char text[16];
    std::snprintf(text, sizeof text, "%02d", static_cast<int>(n));
    return text;
}

std::string Expand(const NamingRule& rule, int32_t index) {
    const int32_t section = rule.firstSection + index / rule.perSection;
    const int32_t within = index % rule.perSection + 1;
    std::string name;
    for (const char* p = rule.pattern; *p; ++p) {
        if (p[0] == '%' && p[1] != '\0') {
            ++p;
            if (*p == 'S') name += TwoDigits(section);
            else if (*p == 'C') name += std::to_string(within);
            else if (*p == 'N') name += TwoDigits(index + 1);
            else name += *p;
            continue;
        }
        name += *p;
    }
    return name;
}

}  // namespace

std::vector<std::string> ElementNames(const std::string& context, const std::string& server,
                                      const std::string& device, int32_t count) {
    std::vector<std::string> names;
    for (const auto& rule : kRules) {
        if (context != rule.context || server != rule.server) continue;
        if (rule.pattern == nullptr) return names;
        for (int32_t i = 0; i < count; ++i) names.push_back(Expand(rule, i));
        return names;
    }
    for (int32_t i = 0; i < count; ++i) {
        char number[16];
        std::snprintf(number, sizeof number, "%03d", static_cast<int>(i + 1));
        names.push_back((device.empty() ? server : device) + "." + number);
    }
    return names;
}

std::vector<std::string> ElementLocations(const std::vector<std::string>& names) {
    std::vector<std::string> locations;
    locations.reserve(names.size());
    for (size_t i = 0; i < names.size(); ++i) {
        // Girders are numbered along the machine, four elements to a girder.
        locations.push_back("Girder " + TwoDigits(static_cast<int32_t>(i / 4 + 1)) + " pos " +
                            std::to_string(i % 4 + 1));
    }
    return locations;
}

}  // namespace sim
