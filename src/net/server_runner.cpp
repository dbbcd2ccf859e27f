#include "net/server_runner.h"

#include <grpcpp/grpcpp.h>

#include <csignal>
#include <iostream>
#include <memory>
#include <optional>

#include "catalogue/numbers.h"
#include "net/channels.h"
#include "net/network_transport.h"
#include "net/registration.h"
#include "net/tls_settings.h"

namespace net {
namespace {

constexpr int kMostCallThreads = 24;

sigset_t StopSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    return signals;
}

// "127.0.0.1:0" with the port the engine chose.
std::string WithPort(const std::string& listen, int port) {
    const size_t colon = listen.rfind(':');
    return (colon == std::string::npos ? listen : listen.substr(0, colon)) + ":" + std::to_string(port);
}

std::string Advertised(const ServerSettings& settings, int port) {
    if (!settings.advertise.empty()) return settings.advertise;
    std::string address = WithPort(settings.listen, port);
    // A wildcard is no address to give others: the host's name is.
    for (const char* wildcard : {"0.0.0.0:", "[::]:"})
        if (address.rfind(wildcard, 0) == 0) address = LocalHostName() + ":" + std::to_string(port);
    return address;
}

}  // namespace

void BlockStopSignals() {
    const sigset_t signals = StopSignals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

int RunServer(LinkHandler& handler, const ServerSettings& settings, const std::function<void()>& started,
              const std::function<void()>& stopping) {
    const TlsSetup tls = TlsSetupFromEnvironment();
    if (!tls.problem.empty()) {
        std::cerr << handler.Program() << ": " << tls.problem << "\n";
        return 1;
    }
    LinkService service(handler, settings.streamsPerClient);
    grpc::ServerBuilder builder;
    int port = 0;
    builder.AddListeningPort(settings.listen, ServerCredentials(tls), &port);
    builder.RegisterService(&service);
    builder.SetMaxReceiveMessageSize(kMaxRequestBytes);
    // Calls wait for slow devices on threads of their own: never more than
    // these, however many clients call at once (the rest queue).
    grpc::ResourceQuota quota("lumiscope-calls");
    quota.SetMaxThreads(kMostCallThreads);
    builder.SetResourceQuota(quota);
    builder.SetMaxSendMessageSize(80 * 1024 * 1024);
    std::unique_ptr<grpc::Server> server = builder.BuildAndStart();
    if (!server || port == 0) {
        std::cerr << handler.Program() << ": cannot listen on " << settings.listen << "\n";
        return 1;
    }
    std::optional<Registration> registration;
    if (!settings.namesAddress.empty())
        registration.emplace(EtcdSettingsFrom(settings.namesAddress), handler.Names(), Advertised(settings, port),
                             settings.leaseMs);
    // Said once the names are registered: from then on clients find this server.
    std::cout << "listening on " << WithPort(settings.listen, port) << std::endl;
    if (started) started();

    const sigset_t signals = StopSignals();
    int received = 0;
    sigwait(&signals, &received);

    if (stopping) stopping();
    registration.reset();
    service.Stop();
    server->Shutdown(std::chrono::system_clock::now() + std::chrono::milliseconds(500));
    return 0;
}

std::string ReadServerOptions(const ProgramOptions& options, ServerSettings& settings) {
    int64_t leaseMs = 3000;
    if (!catalogue::ParseInteger(options.Get("--lease-ms", "3000"), 300, 600000, leaseMs))
        return "--lease-ms must be 300..600000";
    settings.listen = options.Get("--listen", "127.0.0.1:0");
    settings.namesAddress = options.Get("--names", EnvironmentOr("LUMISCOPE_NAMES", ""));
    settings.advertise = options.Get("--advertise");
    settings.leaseMs = static_cast<int32_t>(leaseMs);
    int64_t streams = kDefaultStreamsPerClient;
    if (!catalogue::ParseInteger(options.Get("--max-streams", std::to_string(kDefaultStreamsPerClient)), 1, 1'000'000,
                                 streams))
        return "--max-streams must be 1..1000000";
    settings.streamsPerClient = static_cast<int32_t>(streams);
    return "";
}

}  // namespace net
