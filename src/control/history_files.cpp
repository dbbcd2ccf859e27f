#include "control/history_files.h"

#include "catalogue/files.h"
#include "catalogue/numbers.h"
#include "catalogue/runtime_error.h"
#include "catalogue/table.h"

namespace control {
namespace {

constexpr std::string_view kCommentMarks = ";%#";

// A value as a comma-separated text reader takes it: blanks around it dropped,
// and the quotes of a quoted string removed.
std::string Unquoted(std::string text) {
    if (text.size() >= 2 && text.front() == '"' && text.back() == '"') return text.substr(1, text.size() - 2);
    return text;
}

}  // namespace

int16_t CountHistoryConfigRows(const std::string& systemPath) {
    if (catalogue::FileSearch(systemPath).empty()) return 0;
    bool headerSeen = false;
    int16_t rows = 0;
    for (const std::string& line : catalogue::ReadTextLines(systemPath)) {
        // An empty line is no comment: it is a row like any other.
        if (catalogue::StartsWithAny(line, kCommentMarks)) continue;
        // The header names the quantities' columns; counting does not need them.
        if (!headerSeen) {
            headerSeen = true;
            continue;
        }
        rows = catalogue::CheckedAdd16(rows, 1);
    }
    return rows;
}

HistoryInfo ReadHistoryInfo(const std::string& systemPath) {
    HistoryInfo info;
    if (catalogue::FileSearch(systemPath).empty()) return info;
    const std::vector<std::string> lines = catalogue::ReadTextLines(systemPath);
    if (lines.size() < 2)
        throw catalogue::RuntimeError(catalogue::ErrorKind::FileRead,
                                      "Input past end of file: " + systemPath);
    const std::string& line = lines[1];
    if (line.find(',') == std::string::npos)
        throw catalogue::RuntimeError(catalogue::ErrorKind::FileRead,
                                      "Input past end of file: " + systemPath);
    const std::string modeText = catalogue::GetField(line, 1);
    if (!catalogue::IsCleanNumber(modeText))
        throw catalogue::RuntimeError(catalogue::ErrorKind::FileRead,
                                      "Type mismatch: \"" + modeText + "\" in " + systemPath);
    // Both values are read before either is kept: a bad line leaves the defaults.
    const int16_t mode = catalogue::RoundToInt16(catalogue::NumericValue(modeText));
    info.name = Unquoted(catalogue::GetField(line, 0));
    info.mode = (mode < 0 || mode > 2) ? int16_t{2} : mode;
    return info;
}

}  // namespace control
