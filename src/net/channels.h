// Connections to servers, one per address, shared by the calls and live links
// of one transport.
//
// The engine's own reconnect back-off grows to about ten seconds; a server
// that comes back must be found again within two, so the back-off is kept
// short and a connection that failed is dropped and made anew on next use.
// Each pool keeps its connections to itself (no sharing with other pools of
// the process), so that a dropped connection really starts over.
#pragma once

#include <grpcpp/grpcpp.h>

#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace net {

class ChannelPool {
public:
    std::shared_ptr<grpc::Channel> Get(const std::string& address);
    // Forgets the connection to address; the next Get connects anew.
    void Drop(const std::string& address);

private:
    std::mutex mutex_;
    std::map<std::string, std::shared_ptr<grpc::Channel>> channels_;
};

// A connection for one-off use (registration, tools): same settings.
std::shared_ptr<grpc::Channel> MakeChannel(const std::string& address);

// Client credentials from the environment (tls_settings.h): TLS when trusted
// certificates or a client certificate are set, with that certificate as the
// caller's identity; plain otherwise.
std::shared_ptr<grpc::ChannelCredentials> ClientCredentials();
// Server credentials: TLS when the set-up has a certificate, asking clients
// for theirs when it has certificates to check them against; plain otherwise.
struct TlsSetup;
std::shared_ptr<grpc::ServerCredentials> ServerCredentials(const TlsSetup& setup);

}  // namespace net
