#include "net/status_mapping.h"

#include "vire/completion_codes.h"

namespace net {

vire::Status StatusOfFailedCall(const grpc::Status& status) {
    switch (status.error_code()) {
    case grpc::StatusCode::OK: return vire::kOk;
    case grpc::StatusCode::DEADLINE_EXCEEDED: return vire::kTimeout;
    case grpc::StatusCode::UNAVAILABLE: return vire::kLinkError;
    default: return vire::kServerError;
    }
}

}  // namespace net
