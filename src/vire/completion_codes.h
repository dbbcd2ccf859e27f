// Completion codes of link calls: the one table of codes and their texts.
//
// 0 is success. The texts are what RPCERR writes and ErrorText returns; a code
// not in the table has no text ("Error undefined"). Servers, the simulated
// accelerator and the client layer answer only with codes from this table.
#pragma once

#include <cstdint>
#include <span>

#include "vire/data_object.h"

namespace vire {

inline constexpr Status kOk = 0;
inline constexpr Status kLinkError = 2;         // server not reachable
inline constexpr Status kUnknownDevice = 11;    // no such device on the server
inline constexpr Status kUnknownProperty = 12;  // no such property on the device
inline constexpr Status kFormatMismatch = 13;   // the property has no such format
inline constexpr Status kOutOfRange = 14;       // element index or count out of range
inline constexpr Status kIllegalAccess = 15;    // access mode the property does not allow
inline constexpr Status kInvalidInput = 16;     // input data missing or unreadable
inline constexpr Status kAccessDenied = 20;     // the user may not write here
inline constexpr Status kNoData = 36;           // nothing recorded / nothing answered
inline constexpr Status kTimeout = 45;          // the server did not answer in time
inline constexpr Status kNoTransport = 50;      // no transport installed in this program
inline constexpr Status kServerError = 60;      // the server failed while answering

struct CompletionCode {
    Status code;
    const char* text;
};

// Every code with its text, in code order.
std::span<const CompletionCode> CompletionCodes();

}  // namespace vire
