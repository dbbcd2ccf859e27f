// The servers of the network benchmarks, on loopback: etcd for the names, one
// device server and the archiver, on a copy of the sample configuration that
// adds one 8000-point spectrum (/ORKA/BENCHSRV/SPECTRUM, VALUES) with its
// local history and archive.
#pragma once

#include <memory>
#include <string>

#include "server_processes.h"

namespace network_bench {

inline constexpr const char* kSpectrumDevice = "/ORKA/BENCHSRV/SPECTRUM";
inline constexpr const char* kSpectrumProperty = "VALUES";
inline constexpr int32_t kSpectrumSize = 8000;

struct BenchServers {
    std::string config;  // the configuration copy
    net_test::LocalEtcd etcd;
    net_test::ServerProcess devices, archiver;
    bool Start();        // false with a message on standard error
    bool StartDevices();
    ~BenchServers();
};

// CPU seconds (user + system) a process has used so far.
double CpuSeconds(int pid);

}  // namespace network_bench
