#include "net/channels.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace net {
namespace {

std::string ReadWholeFile(const char* path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

const char* Setting(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr && *value != '\0' ? value : nullptr;
}

}  // namespace

std::shared_ptr<grpc::ChannelCredentials> ClientCredentials() {
    if (const char* ca = Setting("LUMISCOPE_TLS_CA")) {
        grpc::SslCredentialsOptions options;
        options.pem_root_certs = ReadWholeFile(ca);
        return grpc::SslCredentials(options);
    }
    return grpc::InsecureChannelCredentials();
}

std::shared_ptr<grpc::ServerCredentials> ServerCredentials() {
    const char* cert = Setting("LUMISCOPE_TLS_CERT");
    const char* key = Setting("LUMISCOPE_TLS_KEY");
    if (cert != nullptr && key != nullptr) {
        grpc::SslServerCredentialsOptions options;
        options.pem_key_cert_pairs.push_back({ReadWholeFile(key), ReadWholeFile(cert)});
        return grpc::SslServerCredentials(options);
    }
    return grpc::InsecureServerCredentials();
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
