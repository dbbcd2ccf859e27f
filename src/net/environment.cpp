#include "net/environment.h"

#include <cstdlib>
#include <filesystem>

#include "vire/transport.h"

namespace net {
namespace {

std::string Setting(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

}  // namespace

bool NetworkSettingsFromEnvironment(const std::string& configDir, NetworkSettings& settings) {
    if (Setting("LUMISCOPE_TRANSPORT") != "network") return false;
    settings.namesAddress = Setting("LUMISCOPE_NAMES");
    settings.namesFile = Setting("LUMISCOPE_NAMES_FILE");
    if (settings.namesFile.empty() && !configDir.empty()) {
        const auto candidate = std::filesystem::path(configDir) / "lumiscope-names.txt";
        std::error_code error;
        if (std::filesystem::exists(candidate, error)) settings.namesFile = candidate.string();
    }
    return true;
}

bool InstallTransportFromEnvironment(const std::string& configDir) {
    NetworkSettings settings;
    if (!NetworkSettingsFromEnvironment(configDir, settings)) return false;
    vire::SetTransport(std::make_shared<NetworkTransport>(std::move(settings)));
    return true;
}

}  // namespace net
