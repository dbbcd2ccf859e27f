// The TLS set-up of a process, from the environment:
//   LUMISCOPE_TLS_CERT  certificate chain (PEM): a server's own, or a
//                       client's identity for writes
//   LUMISCOPE_TLS_KEY   the private key of that certificate (PEM)
//   LUMISCOPE_TLS_CA    certificates to trust (PEM): a client checks servers
//                       against them, a server the certificates of its clients
//
// Certificate and key come together or not at all, and every file named must
// be readable: a set-up that is only half there is refused with the missing
// piece named, never quietly served as plain text.
#pragma once

#include <functional>
#include <string>

namespace net {

struct TlsSetup {
    std::string certificate;  // PEM text, empty when none
    std::string key;
    std::string trusted;
    std::string problem;  // empty when the set-up is usable

    bool HasIdentity() const { return !certificate.empty(); }
};

// lookup(name) gives an environment setting ("" when unset).
TlsSetup ReadTlsSetup(const std::function<std::string(const char*)>& lookup);
TlsSetup TlsSetupFromEnvironment();

}  // namespace net
