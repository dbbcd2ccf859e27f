// Finding a server's network address by its name.
//
// Servers are known by their names ("/ORKA/BPMQ1", or a bare archiver name
// such as "OKHISTORY"), which they register in etcd (registration.h). A
// resolver reads all names once and then follows every change with a watch,
// so a server that moves is found at its new address as soon as it has
// registered there, without asking again on every failure. Where etcd is not
// set, cannot be reached or does not know a name, a static names file
// answers: one "NAME host:port" per line, "#" starts a comment, and the name
// "*" stands for every name not listed.
#pragma once

#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "net/etcd_client.h"
#include "vire/data_object.h"

namespace net {

inline constexpr int32_t kNamesCallTimeoutMs = 500;

// The names under which a server address may be registered, most specific
// first: "/ORKA/OKHISTORY/X" -> "/ORKA/OKHISTORY", "OKHISTORY".
std::vector<std::string> ServerNamesOf(const std::string& fullDeviceName);

// Reads a static names file; lines it cannot use are skipped.
std::map<std::string, std::string> ReadNamesFile(const std::string& path);

class NameResolver {
public:
    // etcdEndpoints: "host:port[,host:port...]", or "" for none;
    // namesFile: path of a static names file, or "".
    NameResolver(const std::string& etcdEndpoints, const std::string& namesFile);
    ~NameResolver();  // ends the watch
    NameResolver(const NameResolver&) = delete;
    NameResolver& operator=(const NameResolver&) = delete;

    // The address serving fullDeviceName: 0 and the address, or 2 when no
    // name of it is known anywhere.
    vire::Status Resolve(const std::string& fullDeviceName, int32_t timeoutMs, std::string& address);
    // Forgets what was read without the watch for fullDeviceName (what the
    // watch follows stays: it is current).
    void Forget(const std::string& fullDeviceName);

private:
    void Follow();
    bool Registered(const std::vector<std::string>& names, std::string& address) const;
    void Take(const std::map<std::string, std::string>& keys);

    std::unique_ptr<EtcdClient> etcd_;
    std::map<std::string, std::string> staticNames_;
    mutable std::mutex mutex_;
    std::condition_variable wake_;
    bool following_ = false;  // registered_ mirrors etcd through the watch
    bool tried_ = false;      // etcd was asked once (whatever it answered)
    bool stopping_ = false;
    std::map<std::string, std::string> registered_;  // name -> address
    std::thread watcher_;
};

}  // namespace net
