// The synchronous link call and the client library's error texts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "vire/data_object.h"

namespace vire {

inline constexpr int16_t kAccessRead = 1;
inline constexpr int16_t kAccessWrite = 3;

// One blocking call through the installed transport: full device name
// ("/CONTEXT/SERVER/DEVICE"), property, output and input data objects, access
// mode (1 = read, 3 = write) and time-out in ms. Returns the completion code
// (completion_codes.h); out.count becomes the number of elements delivered.
// Without a transport the call answers kNoTransport. A transport that throws
// is reported as kServerError: no call raises an error of its own.
Status LinkCall(const std::string& fullDeviceName, const std::string& property,
                DataObject& out, const DataObject& in, int16_t access, int32_t timeoutMs);

// Writes the text of `status` into buffer (NUL-terminated, cut to fit) and
// returns 0; a code without a text (or a buffer of 0 bytes) returns -1 and
// leaves the buffer alone.
int16_t RPCERR(Status status, char* buffer, size_t bufferSize);

// The text of a completion code, or "Error undefined" for one without a text.
std::string ErrorText(Status status);

// Who is calling: writes are allowed or refused per user. The process's
// "USERNAME" (else the login name, "USER" or "LOGNAME") unless set.
std::string UserName();
void SetUserName(const std::string& name);
// Back to the process's own name (what SetUserName replaced).
void ResetUserName();

}  // namespace vire
