#include "vire/history_servers.h"

#include <array>
#include <utility>

namespace vire {
namespace {
// Tested in this order; the first match wins.
constexpr std::array<std::pair<const char*, const char*>, 10> kTable{{
    {"QMF", "QMFHISTORY"},
    {"VESTA", "VEHISTORY"},
    {"KALM", "KALMHISTORY"},
    {"VELOX", "KALMHISTORY"},
    {"VELOX2", "KALMHISTORY"},
    {"VELOX3", "KALMHISTORY"},
    {"KALM3", "KALMHISTORY"},
    {"KALM2", "KALMHISTORY"},
    {"LYRAS", "LYRASHISTORY"},
    {"ORKA", "OKHISTORY"},
}};
const std::array<std::string, 6> kArchivers{"QMFHISTORY", "VEHISTORY", "KALMHISTORY",
                                           "LYRASHISTORY", "OKHISTORY", "HISTORY"};
}  // namespace

std::string HistoryServerName(const std::string& name) {
    for (const auto& [given, server] : kTable)
        if (name == given) return server;
    if (!name.empty() && name[0] == '/') return name;
    return "HISTORY";
}

std::span<const std::string> ArchiverNames() { return kArchivers; }

}  // namespace vire
