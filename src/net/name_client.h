// Finding a server's network address by its name.
//
// Servers are known by their names ("/ORKA/BPMQ1", or a bare archiver name
// such as "OKHISTORY"). The name service answers link calls on the special
// device kNamesDevice, so it needs no call of its own:
//   RESOLVE     read,  input TEXT name            -> TEXT "host:port" (11 when unknown)
//   REGISTER    write, input TEXT "name address leaseMs"
//   UNREGISTER  write, input TEXT "name address"
// Where no name service is set or it does not know a name, a static names
// file answers: one "NAME host:port" per line, "#" starts a comment, and the
// name "*" stands for every name not listed.
#pragma once

#include <chrono>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "net/channels.h"
#include "vire/data_object.h"

namespace net {

inline constexpr const char* kNamesDevice = "/LUMISCOPE/NAMES";
inline constexpr int32_t kNamesCallTimeoutMs = 500;

// The names under which a server address may be registered, most specific
// first: "/ORKA/OKHISTORY/X" -> "/ORKA/OKHISTORY", "OKHISTORY".
std::vector<std::string> ServerNamesOf(const std::string& fullDeviceName);

// Reads a static names file; lines it cannot use are skipped.
std::map<std::string, std::string> ReadNamesFile(const std::string& path);

// One link call to the name service: TEXT in, TEXT out.
vire::Status CallNameService(const std::string& namesAddress, const std::string& property, int16_t access,
                             const std::string& input, int32_t timeoutMs, std::string& answer);

class NameResolver {
public:
    // namesAddress: "host:port" of the name service, or "" for none;
    // namesFile: path of a static names file, or "".
    NameResolver(std::string namesAddress, std::string namesFile);

    // The address serving fullDeviceName: 0 and the address, or 2 when no
    // name of it is known anywhere. Answers from a short-lived cache.
    vire::Status Resolve(const std::string& fullDeviceName, int32_t timeoutMs, std::string& address);
    // Forgets what the cache holds for the names of fullDeviceName.
    void Forget(const std::string& fullDeviceName);

private:
    struct Cached {
        std::string address;
        std::chrono::steady_clock::time_point until;
    };
    std::string namesAddress_;
    std::map<std::string, std::string> staticNames_;
    std::mutex mutex_;
    std::map<std::string, Cached> cache_;
};

}  // namespace net
