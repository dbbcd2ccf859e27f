// Which history server records a machine's data.
#pragma once

#include <span>
#include <string>

namespace vire {

// The central archiver of a machine name ("ORKA" -> "OKHISTORY"), compared
// exactly, letter case included; a name starting with "/" is already a full
// server address and is used as it is; any other name gets "HISTORY".
std::string HistoryServerName(const std::string& name);

// The archiver names of that table, "HISTORY" last.
std::span<const std::string> ArchiverNames();

}  // namespace vire
