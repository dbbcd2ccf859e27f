// How the engine's outcome of a call becomes a completion code: the caller's
// time-out ran out -> 45, the server could not be reached -> 2, anything else
// that went wrong on the way -> 60.
#pragma once

#include <grpcpp/support/status.h>

#include "vire/data_object.h"

namespace net {

vire::Status StatusOfFailedCall(const grpc::Status& status);

}  // namespace net
