#include "vire/completion_codes.h"

#include <array>

namespace vire {
namespace {
constexpr std::array<CompletionCode, 13> kCodes{{
    {kOk, "success"},
    {kLinkError, "link error: server not reachable"},
    {kUnknownDevice, "device name not known to the server"},
    {kUnknownProperty, "property not known to the server"},
    {kFormatMismatch, "data format not supported by the property"},
    {kOutOfRange, "element index or count out of range"},
    {kIllegalAccess, "access mode not supported by the property"},
    {kInvalidInput, "invalid or missing input data"},
    {kAccessDenied, "access denied: user not allowed to write"},
    {kNoData, "no data"},
    {kTimeout, "time-out: no answer from the server"},
    {kNoTransport, "no link transport installed"},
    {kServerError, "server error"},
}};
}  // namespace

std::span<const CompletionCode> CompletionCodes() { return kCodes; }

}  // namespace vire
