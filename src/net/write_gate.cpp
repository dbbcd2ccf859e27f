#include "net/write_gate.h"

namespace net {

WriteVerdict JudgeWrite(const CallContext& caller, const HostAllowList& writeHosts) {
    WriteVerdict verdict;
    if (!caller.certifiedUser.empty()) {
        if (!writeHosts.Allows(caller.peerAddress)) return verdict;
        verdict.user = caller.certifiedUser;
    } else {
        if (!IsLoopback(caller.peerAddress)) return verdict;
        verdict.user = caller.user;
    }
    verdict.status = vire::kOk;
    return verdict;
}

}  // namespace net
