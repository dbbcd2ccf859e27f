// Who may write, decided from what the server can prove about a call.
//
// A caller with a verified client certificate writes as the certificate's
// subject (its common name), whatever user it names, and from a host on the
// write-host list (matched by the address the call came from). A caller
// without one may write only from this machine (a loopback address), as the
// user it names; on another host anyone could claim any name.
#pragma once

#include <string>

#include "net/allow_list.h"
#include "net/link_service.h"
#include "vire/completion_codes.h"

namespace net {

struct WriteVerdict {
    vire::Status status = vire::kAccessDenied;
    std::string user;  // the writer's name when status is 0
};

WriteVerdict JudgeWrite(const CallContext& caller, const HostAllowList& writeHosts);

}  // namespace net
