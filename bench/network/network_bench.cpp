// The middleware over the network on loopback: what a read costs, how one
// device server copes with a hundred viewers and with a thousand monitor
// streams, how soon a restarted server is read again, what a name lookup in
// etcd costs, and how fast the archiver answers a day of history.
//
// Everything stays on 127.0.0.1 and every loop is bounded in count and time.
// The hundred viewers poll for LUMISCOPE_BENCH_VIEWER_SECONDS (default 20 s
// instead of a full minute, to keep a run short), the thousand streams run
// for LUMISCOPE_BENCH_STREAM_SECONDS (default 20 s).
#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "bench_servers.h"
#include "net/etcd_client.h"
#include "stream_load.h"
#include "figure_reporter.h"
#include "net/network_transport.h"
#include "thread_scheduler.h"
#include "vire/clock.h"
#include "vire/formats.h"
#include "vire/link.h"
#include "vire/wire.h"

namespace network_bench {
namespace {

BenchServers* servers = nullptr;

std::shared_ptr<net::NetworkTransport> NewTransport() {
    return std::make_shared<net::NetworkTransport>(net::NetworkSettings{servers->etcd.endpoint, "", ""});
}

int64_t NowUs() {
    return std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::system_clock::now().time_since_epoch())
        .count();
}

void RoundTrip8000(benchmark::State& state) {
    auto transport = NewTransport();
    std::vector<std::byte> buffer(kSpectrumSize * 4);
    for (auto _ : state) {
        vire::DataObject out{kSpectrumSize, vire::kFormatSingle, "", buffer};
        const vire::Status status =
            transport->Call(kSpectrumDevice, kSpectrumProperty, out, {}, vire::kAccessRead, 1000);
        if (status != 0 || out.count != kSpectrumSize) state.SkipWithError("the read failed");
    }
}
BENCHMARK(RoundTrip8000)->Name("figure:net-roundtrip-8000")->Unit(benchmark::kMicrosecond)->MinTime(2.0);

// The viewer's history load: 9 selected items, each a day of its local history.
void History9Items(benchmark::State& state) {
    auto transport = NewTransport();
    const char* items[] = {"BPM.S01.C1", "BPM.S01.C2", "BPM.S02.C3", "BPM.S03.C4", "BPM.S04.C5",
                           "BPM.S02.C6", "BPM.S03.C7", "BPM.S04.C8", "BPM.S01.C8"};
    std::vector<std::byte> buffer(1000 * 8);
    std::vector<std::byte> in(8);
    const int32_t now = static_cast<int32_t>(vire::NowMilliseconds() / 1000);
    vire::StoreInt32(in, 0, now - 86400 - 60);
    vire::StoreInt32(in, 4, now + 60);
    for (auto _ : state) {
        for (const char* item : items) {
            vire::DataObject out{999, vire::kFormatFltInt, "", buffer};
            const vire::Status status =
                transport->Call(std::string("/ORKA/BPMHIST/") + item, "ORBIT.X.Q1.HIST", out,
                                vire::DataObject{2, vire::kFormatLong, "", in}, vire::kAccessRead, 4500);
            if (status != 0 || out.count < 900) state.SkipWithError("a history read failed");
        }
    }
}
BENCHMARK(History9Items)->Name("figure:net-history-9-items")->Unit(benchmark::kMillisecond)->MinTime(2.0);

// One name looked up in etcd itself (a client's first lookup, or one after
// its watch broke; otherwise the watch answers from memory).
void ResolveInEtcd(benchmark::State& state) {
    net::EtcdClient etcd(net::EtcdSettingsFrom(servers->etcd.endpoint));
    std::map<std::string, std::string> keys;
    int64_t revision = 0;
    for (auto _ : state) {
        if (!etcd.GetPrefix(net::NameKey("/ORKA/BPMQ1"), keys, revision, std::chrono::seconds(1)).ok() || keys.empty())
            state.SkipWithError("the lookup failed");
    }
}
BENCHMARK(ResolveInEtcd)->Name("figure:net-resolve")->Unit(benchmark::kMicrosecond)->MinTime(2.0);

int64_t ThreadsOf(int pid) {
    std::ifstream status("/proc/" + std::to_string(pid) + "/status");
    std::string line;
    while (std::getline(status, line))
        if (line.rfind("Threads:", 0) == 0) return std::stoll(line.substr(8));
    return -1;
}

// 1000 monitor streams of the 8000-point spectrum at 1 Hz on one device
// server, from one client that reads them all on one thread.
void ThousandStreams(int seconds) {
    constexpr int kStreams = 1000;
    const int pid = servers->devices.Pid();
    double cpuBefore = 0, cpuAfter = 0;
    int64_t threads = 0;
    auto wallStart = std::chrono::steady_clock::now();
    double wall = 0;
    const StreamLoad load = RunStreams(
        servers->devices.Address(), kSpectrumDevice, kSpectrumProperty, kSpectrumSize, 1000, kStreams, 3, seconds,
        [&](bool atEnd) {
            threads = std::max(threads, ThreadsOf(pid));
            if (!atEnd) {
                cpuBefore = CpuSeconds(pid);
                wallStart = std::chrono::steady_clock::now();
            } else {
                cpuAfter = CpuSeconds(pid);
                wall = std::chrono::duration<double>(std::chrono::steady_clock::now() - wallStart).count();
            }
        });
    // Every stream should have had a reading at every tick the server made.
    const double expected = static_cast<double>(kStreams) * static_cast<double>(std::max<int64_t>(load.ticks, 1));
    std::printf("figure net-1000-streams-delivered %.2f %%\n", 100.0 * static_cast<double>(load.readings) / expected);
    std::printf("figure net-1000-streams-threads %lld threads\n", static_cast<long long>(threads));
    std::printf("figure net-1000-streams-cpu %.2f %%\n", wall > 0 ? 100.0 * (cpuAfter - cpuBefore) / wall : 0.0);
    std::printf("(1000 streams for %d s: %lld readings at %lld ticks, %lld failed)\n", seconds,
                static_cast<long long>(load.readings), static_cast<long long>(load.ticks),
                static_cast<long long>(load.failed));
}

double Percentile(std::vector<double> values, double p) {
    if (values.empty()) return 0;
    std::sort(values.begin(), values.end());
    const size_t index = std::min(values.size() - 1, static_cast<size_t>(p * static_cast<double>(values.size())));
    return values[index];
}

// 100 viewers, each its own transport and connection, polling the 8000-point
// spectrum at 1 Hz from one device server.
void HundredViewers(int seconds) {
    constexpr int kViewers = 100;
    ThreadScheduler scheduler;
    vire::SetScheduler(&scheduler);
    std::mutex mutex;
    std::vector<double> latenciesMs;
    std::atomic<bool> measuring{false};
    std::atomic<int64_t> delivered{0}, failed{0};
    std::vector<std::shared_ptr<net::NetworkTransport>> viewers;
    for (int i = 0; i < kViewers; ++i) {
        auto transport = NewTransport();
        transport->ObserveArrivals([&](const vire::LinkData& reading) {
            if (!measuring || reading.status != 0) return;
            const double latency = static_cast<double>(NowUs() - reading.stampMs * 1000) / 1000.0;
            std::lock_guard<std::mutex> lock(mutex);
            latenciesMs.push_back(latency);
        });
        transport->Subscribe(
            vire::SubscriptionRequest{kSpectrumDevice, kSpectrumProperty, vire::kFormatSingle, kSpectrumSize, 1000},
            [&](const vire::LinkData& data) {
                if (!measuring) return;
                (data.status == 0 && data.count == kSpectrumSize ? delivered : failed) += 1;
            });
        viewers.push_back(std::move(transport));
    }
    std::this_thread::sleep_for(std::chrono::seconds(3));  // every stream open
    const double cpuBefore = CpuSeconds(servers->devices.Pid());
    const auto start = std::chrono::steady_clock::now();
    measuring = true;
    std::this_thread::sleep_for(std::chrono::seconds(seconds));
    measuring = false;
    const double wall = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    const double cpu = CpuSeconds(servers->devices.Pid()) - cpuBefore;
    viewers.clear();
    vire::SetScheduler(nullptr);
    const double ticks = static_cast<double>(delivered + failed);
    std::printf("figure net-100-viewers-delivered %.2f %%\n", ticks > 0 ? 100.0 * static_cast<double>(delivered) / ticks : 0.0);
    std::printf("figure net-100-viewers-p99 %.2f ms\n", Percentile(latenciesMs, 0.99));
    std::printf("figure net-server-cpu %.2f %%\n", 100.0 * cpu / wall);
    std::printf("(100 viewers for %d s: %lld deliveries, %lld failures, %zu readings)\n", seconds,
                static_cast<long long>(delivered.load()), static_cast<long long>(failed.load()), latenciesMs.size());
}

// Kill the device server while a live link reads it, start it again (on a
// new port) and time from its "listening" (its names are in etcd by then) to
// the first reading that arrives through the client's watch.
void RestartRecovery() {
    ThreadScheduler scheduler;
    vire::SetScheduler(&scheduler);
    std::atomic<int64_t> lastGoodUs{0};
    auto transport = NewTransport();
    transport->ObserveArrivals([&](const vire::LinkData& reading) {
        if (reading.status == 0) lastGoodUs = NowUs();
    });
    transport->Subscribe(vire::SubscriptionRequest{"/ORKA/BPMQ1/ORBIT", "ORBIT.X", vire::kFormatSingle, 32, 200},
                         [](const vire::LinkData&) {});
    std::vector<double> recoveries;
    for (int round = 0; round < 3; ++round) {
        const auto waitGood = [&](int64_t afterUs) {
            for (int i = 0; i < 1000 && lastGoodUs <= afterUs; ++i) std::this_thread::sleep_for(std::chrono::milliseconds(5));
            return lastGoodUs > afterUs;
        };
        if (!waitGood(0)) break;
        servers->devices.Kill();
        std::this_thread::sleep_for(std::chrono::milliseconds(700));
        if (!servers->StartDevices()) break;
        const int64_t back = NowUs();
        if (!waitGood(back)) {
            recoveries.push_back(5000);
            continue;
        }
        recoveries.push_back(static_cast<double>(lastGoodUs - back) / 1000.0);
    }
    transport.reset();
    vire::SetScheduler(nullptr);
    std::printf("figure net-restart-recovery %.1f ms\n", Percentile(recoveries, 0.5));
}

}  // namespace
}  // namespace network_bench

int main(int argc, char** argv) {
    network_bench::BenchServers servers;
    if (!servers.Start()) return 1;
    network_bench::servers = &servers;
    const int status = lumiscope_bench::RunGroup(argc, argv);
    const char* seconds = std::getenv("LUMISCOPE_BENCH_VIEWER_SECONDS");
    network_bench::HundredViewers(std::clamp(seconds != nullptr ? std::atoi(seconds) : 20, 1, 60));
    const char* streamSeconds = std::getenv("LUMISCOPE_BENCH_STREAM_SECONDS");
    network_bench::ThousandStreams(std::clamp(streamSeconds != nullptr ? std::atoi(streamSeconds) : 20, 1, 60));
    network_bench::RestartRecovery();
    return status;
}
