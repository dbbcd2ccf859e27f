#include "net/tls_settings.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace net {
namespace {

constexpr const char* kCertVariable = "LUMISCOPE_TLS_CERT";
constexpr const char* kKeyVariable = "LUMISCOPE_TLS_KEY";
constexpr const char* kCaVariable = "LUMISCOPE_TLS_CA";

// The file's whole text; false when it cannot be read or is empty (an empty
// key or certificate would only fail later, at the first handshake).
bool ReadPem(const std::string& path, std::string& text) {
    std::ifstream file(path, std::ios::binary);
    if (!file) return false;
    std::ostringstream whole;
    whole << file.rdbuf();
    text = whole.str();
    return !text.empty();
}

}  // namespace

TlsSetup ReadTlsSetup(const std::function<std::string(const char*)>& lookup) {
    TlsSetup setup;
    const std::string cert = lookup(kCertVariable);
    const std::string key = lookup(kKeyVariable);
    const std::string ca = lookup(kCaVariable);
    if (!cert.empty() && key.empty()) {
        setup.problem = std::string("TLS is half set up: ") + kCertVariable + " is set but " + kKeyVariable +
                        " (the certificate's private key) is not";
        return setup;
    }
    if (cert.empty() && !key.empty()) {
        setup.problem = std::string("TLS is half set up: ") + kKeyVariable + " is set but " + kCertVariable +
                        " (the certificate for that key) is not";
        return setup;
    }
    const std::pair<const char*, std::string*> files[] = {
        {kCertVariable, &setup.certificate}, {kKeyVariable, &setup.key}, {kCaVariable, &setup.trusted}};
    for (const auto& [variable, text] : files) {
        const std::string path = lookup(variable);
        if (path.empty() || ReadPem(path, *text)) continue;
        setup = TlsSetup{};
        setup.problem = std::string("TLS is half set up: ") + variable + " names \"" + path +
                        "\", which cannot be read or is empty";
        return setup;
    }
    return setup;
}

TlsSetup TlsSetupFromEnvironment() {
    return ReadTlsSetup([](const char* name) {
        const char* value = std::getenv(name);
        return std::string(value != nullptr ? value : "");
    });
}

}  // namespace net
