#include "net/channels.h"

#include <iostream>
#include <mutex>

#include "net/tls_settings.h"

namespace net {

std::shared_ptr<grpc::ChannelCredentials> ClientCredentials() {
    const TlsSetup setup = TlsSetupFromEnvironment();
    if (!setup.problem.empty()) {
        // No call goes out in plain text when TLS was asked for: every call
        // fails to connect (2), and the reason is told once.
        static std::once_flag told;
        std::call_once(told, [&] { std::cerr << "lumiscope: " << setup.problem << "\n"; });
        grpc::SslCredentialsOptions unusable;
        unusable.pem_root_certs = "unusable";
        return grpc::SslCredentials(unusable);
    }
    if (setup.trusted.empty() && !setup.HasIdentity()) return grpc::InsecureChannelCredentials();
    grpc::SslCredentialsOptions options;
    options.pem_root_certs = setup.trusted;
    options.pem_private_key = setup.key;
    options.pem_cert_chain = setup.certificate;
    return grpc::SslCredentials(options);
}

std::shared_ptr<grpc::ServerCredentials> ServerCredentials(const TlsSetup& setup) {
    if (!setup.HasIdentity()) return grpc::InsecureServerCredentials();
    // Clients may come without a certificate (they read, and write from
    // loopback only); one that shows a certificate must show a valid one.
    grpc::SslServerCredentialsOptions options(setup.trusted.empty()
                                                  ? GRPC_SSL_DONT_REQUEST_CLIENT_CERTIFICATE
                                                  : GRPC_SSL_REQUEST_CLIENT_CERTIFICATE_AND_VERIFY);
    options.pem_root_certs = setup.trusted;
    options.pem_key_cert_pairs.push_back({setup.key, setup.certificate});
    return grpc::SslServerCredentials(options);
}

std::shared_ptr<grpc::Channel> MakeChannel(const std::string& address) {
    grpc::ChannelArguments args;
    args.SetInt(GRPC_ARG_INITIAL_RECONNECT_BACKOFF_MS, 100);
    args.SetInt(GRPC_ARG_MIN_RECONNECT_BACKOFF_MS, 100);
    args.SetInt(GRPC_ARG_MAX_RECONNECT_BACKOFF_MS, 500);
    args.SetInt(GRPC_ARG_USE_LOCAL_SUBCHANNEL_POOL, 1);
    // A call is answered within its time-out or not at all: no hidden retries.
    args.SetInt(GRPC_ARG_ENABLE_RETRIES, 0);
    args.SetMaxReceiveMessageSize(80 * 1024 * 1024);
    return grpc::CreateCustomChannel(address, ClientCredentials(), args);
}

std::shared_ptr<grpc::Channel> ChannelPool::Get(const std::string& address) {
    std::lock_guard<std::mutex> lock(mutex_);
    auto& channel = channels_[address];
    if (!channel) channel = MakeChannel(address);
    return channel;
}

void ChannelPool::Drop(const std::string& address) {
    std::lock_guard<std::mutex> lock(mutex_);
    channels_.erase(address);
}

}  // namespace net
