#include "bench_servers.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

namespace network_bench {
namespace {

std::string MakeConfig() {
    const auto dir = std::filesystem::temp_directory_path() / ("lumiscope-bench-" + std::to_string(getpid()));
    std::filesystem::remove_all(dir);
    std::filesystem::copy(LUMISCOPE_SAMPLE_CONFIG_DIR, dir, std::filesystem::copy_options::recursive);
    std::ofstream(dir / "ORKA_Subsystems.csv", std::ios::app) << "ORKA_BENCH.csv,Benchmark spectrum\r\n";
    std::ofstream(dir / "ORKA_BENCH.csv")
        << "CONTEXT,SERVER,PROPERTY,SIZE,HSTSERVER,HSTPROPERTY,ARCSERVER,ARCPROPERTY,DESCRIPTION,MAX,MIN,EGU,"
           "APPEND,HIGH,TAG,PROPLINK,PROPSHORT,EXTDEVNAMEDEV,EXTDEVNAMEPROP,EXTRAPROPCOMBOINDEX\r\n"
        << "ORKA,BENCHSRV/SPECTRUM,VALUES,8000,/ORKA/BENCHHIST,VALUES.HIST,/ORKA/OKHISTORY,BENCH.VALUES,"
           "Benchmark spectrum,100,0,counts,,,B,1,V,,,-1\r\n";
    return dir.string();
}

}  // namespace

bool BenchServers::Start() {
    config = MakeConfig();
    if (etcd.endpoint.empty()) {
        std::cerr << "bench_network: etcd did not start (see " << etcd.directory << ")\n";
        return false;
    }
    etcd.BecomeReader();
    if (!StartDevices()) return false;
    const std::string db = config + "/archive.sqlite";
    if (!archiver.Start("lumiscope-archiver",
                        {"--config", config, "--db", db, "--names", etcd.endpoint, "--record", "no"},
                        etcd.ServerEnvironment())) {
        std::cerr << "bench_network: the archiver did not start\n";
        return false;
    }
    return true;
}

bool BenchServers::StartDevices() {
    if (!devices.Start("lumiscope-devserver", {"--config", config, "--names", etcd.endpoint, "--lease-ms", "1500"},
                       etcd.ServerEnvironment())) {
        std::cerr << "bench_network: the device server did not start\n";
        return false;
    }
    return true;
}

BenchServers::~BenchServers() {
    archiver.Stop();
    devices.Stop();
    std::error_code error;
    if (!config.empty()) std::filesystem::remove_all(config, error);
}

double CpuSeconds(int pid) {
    std::ifstream stat("/proc/" + std::to_string(pid) + "/stat");
    std::string text((std::istreambuf_iterator<char>(stat)), std::istreambuf_iterator<char>());
    const size_t close = text.rfind(')');
    if (close == std::string::npos) return 0;
    std::istringstream fields(text.substr(close + 2));
    std::string field;
    double ticks = 0;
    // After the name: state is field 3; utime and stime are fields 14 and 15.
    for (int i = 3; i <= 15 && fields >> field; ++i)
        if (i == 14 || i == 15) ticks += std::stod(field);
    return ticks / static_cast<double>(sysconf(_SC_CLK_TCK));
}

}  // namespace network_bench
