// The control's two history settings files, "HistoryConfig.csv" (the
// quantities a host may offer) and "HistoryInfo.csv" (a name and a mode).
#pragma once

#include <cstdint>
#include <string>

namespace control {

inline constexpr char kHistoryConfigFile[] = "HistoryConfig.csv";
inline constexpr char kHistoryInfoFile[] = "HistoryInfo.csv";

// The data rows of a history configuration file (system path): lines whose
// first character is ";", "%" or "#" are comments; the first other line is the
// header; every later one counts, empty lines included. 0 when the file is not
// found. Throws catalogue::RuntimeError when the count passes 32767 or the
// file cannot be read.
int16_t CountHistoryConfigRows(const std::string& systemPath);

struct HistoryInfo {
    std::string name;  // "" when the file is missing
    int16_t mode = 2;  // 0..2; anything else reads as 2
};

// Reads the data line after the header of a history info file (system path).
// A missing file gives the defaults. A data line that is missing or whose
// second value is not a number throws catalogue::RuntimeError.
HistoryInfo ReadHistoryInfo(const std::string& systemPath);

}  // namespace control
