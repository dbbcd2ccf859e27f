#include "vire/link.h"

#include <cstdlib>
#include <cstring>
#include <mutex>
#include <optional>

#include "vire/completion_codes.h"
#include "vire/transport.h"

namespace vire {
namespace {
// Large enough for every text of the code table.
constexpr size_t kErrorTextBufferSize = 256;

std::mutex userMutex;
std::optional<std::string> userOverride;
}  // namespace

Status LinkCall(const std::string& fullDeviceName, const std::string& property,
                DataObject& out, const DataObject& in, int16_t access, int32_t timeoutMs) {
    const auto transport = CurrentTransport();
    if (!transport) {
        out.count = 0;
        return kNoTransport;
    }
    try {
        return transport->Call(fullDeviceName, property, out, in, access, timeoutMs);
    } catch (...) {
        out.count = 0;
        return kServerError;
    }
}

int16_t RPCERR(Status status, char* buffer, size_t bufferSize) {
    if (buffer == nullptr || bufferSize == 0) return -1;
    for (const auto& entry : CompletionCodes()) {
        if (entry.code != status) continue;
        const size_t length = std::min(std::strlen(entry.text), bufferSize - 1);
        std::memcpy(buffer, entry.text, length);
        buffer[length] = '\0';
        return 0;
    }
    return -1;
}

std::string ErrorText(Status status) {
    char buffer[kErrorTextBufferSize] = {};
    if (RPCERR(status, buffer, sizeof buffer) != 0) return "Error undefined";
    return std::string(buffer);  // up to the first NUL
}

std::string UserName() {
    std::lock_guard<std::mutex> lock(userMutex);
    if (userOverride) return *userOverride;
    if (const char* name = std::getenv("USERNAME"); name && *name) return name;
    // The login name, as the platform's sessions and services set it.
    for (const char* variable : {"USER", "LOGNAME"})
        if (const char* name = std::getenv(variable); name && *name) return name;
    return "";
}

void SetUserName(const std::string& name) {
    std::lock_guard<std::mutex> lock(userMutex);
    userOverride = name;
}

void ResetUserName() {
    std::lock_guard<std::mutex> lock(userMutex);
    userOverride.reset();
}

}  // namespace vire
